#include "bench/generate_script.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <cstdint>
#include <string_view>

#include "bench/script_templates.h"

namespace tavrel::bench {

namespace {

constexpr int BlocksInGroup = 10;
constexpr int DrawsPerBlock = 128;  // numbers set aside for the marks of one block

constexpr std::array<const char*, 24> Nouns = {"espada", "escudo",   "porta",   "ponte",   "barco",    "moinho",
                                               "farol",  "lanterna", "mochila", "tocha",   "flecha",   "pocao",
                                               "chave",  "corrente", "martelo", "bigorna", "cavalo",   "carroca",
                                               "moeda",  "torre",    "poco",    "forno",   "armadura", "mapa_velho"};

// One round of an integer mixer: neighbouring inputs give unrelated outputs.
std::uint32_t Mix(std::uint32_t value) {
    value = (value ^ (value >> 16)) * 0x7FEB352Du;
    value = (value ^ (value >> 15)) * 0x846CA68Bu;
    return value ^ (value >> 16);
}

std::string BlockName(int block) {
    return Nouns[static_cast<std::size_t>(block) % Nouns.size()] + std::to_string(block);
}

std::string Capital(std::string name) {
    name[0] = static_cast<char>(std::toupper(static_cast<unsigned char>(name[0])));
    return name;
}

std::string Upper(std::string name) {
    for (char& letter : name) letter = static_cast<char>(std::toupper(static_cast<unsigned char>(letter)));
    return name;
}

// Fills in the marks of one block's pieces, in order.
class Expander {
public:
    Expander(int ownBlock, int blockCount) : block(ownBlock), blocks(blockCount), drawn(ownBlock * DrawsPerBlock) {}

    void Append(std::string_view piece, int salt, std::string& out) {
        near = Mix(static_cast<std::uint32_t>(block * 16 + salt));
        for (std::size_t at = 0; at < piece.size(); ++at) {
            if (piece[at] == '$' && at + 1 < piece.size()) {
                out += Value(piece[++at]);
            } else {
                out += piece[at];
            }
        }
    }

private:
    [[nodiscard]] std::string Other(char mark) const {
        const int step = 1 + static_cast<int>(near % 8);
        const int far = static_cast<int>(near % static_cast<std::uint32_t>(blocks));
        const int other = mark == 'p' ? block - step : mark == 'q' ? block + step : far;
        return BlockName(((other % blocks) + blocks) % blocks);
    }

    std::string Value(char mark) {
        switch (mark) {
            case 'n': return BlockName(block);
            case 'T': return Capital(BlockName(block));
            case 'C': return Upper(BlockName(block));
            case 'P': return Upper(Other('p'));
            case 'i': return std::to_string(++drawn + 10);
            case 'd': return std::to_string(2 + Mix(static_cast<std::uint32_t>(++drawn)) % 8);
            case 'r': return Real();
            case 't': return Text();
            default: return Other(mark);
        }
    }

    std::string Real() {
        ++drawn;
        const std::uint32_t mixed = Mix(static_cast<std::uint32_t>(drawn));
        return std::to_string(drawn % 1000) + "." + std::to_string(100 + mixed % 900);
    }

    std::string Text() {
        ++drawn;
        const std::uint32_t mixed = Mix(static_cast<std::uint32_t>(drawn));
        return std::string(Nouns[mixed % Nouns.size()]) + " de " + Nouns[mixed / 64 % Nouns.size()] + " " +
               std::to_string(drawn);
    }

    int block;
    int blocks;
    int drawn;               // the last number given out
    std::uint32_t near = 0;  // picks the other blocks that this piece names
};

// The parts of a file that gather something of every block.
struct Sections {
    std::string declarations;
    std::string state;
    std::string visual;
    std::string derived;
    std::string functions;
};

std::string_view In(const Template& piece, Language language) {
    return language == Language::Script ? piece.script : piece.lua;
}

void AppendBlock(int block, int blocks, Language language, Sections& sections) {
    Expander expander(block, blocks);
    expander.Append(In(Declarations(), language), 0, sections.declarations);
    expander.Append(In(StateFields(), language), 0, sections.state);
    expander.Append(In(VisualFields(), language), 0, sections.visual);
    expander.Append(In(DerivedFields(), language), 0, sections.derived);
    int salt = 0;
    for (const std::span<const Template> family : FunctionFamilies()) {
        ++salt;
        const std::uint32_t pick = Mix(static_cast<std::uint32_t>(block * 8 + salt));
        expander.Append(In(family[pick % family.size()], language), salt, sections.functions);
    }
    if (block % BlocksInGroup == 0) expander.Append(In(Behaviour(), language), 0, sections.functions);
}

// A procedure that calls `callee` of each block of a group, handing on its own argument.
void AppendGroup(int group, int blocks, const char* callee, const char* param, Language language, std::string& out) {
    const bool script = language == Language::Script;
    const std::string name = std::string(callee) + "_grupo" + std::to_string(group);
    const std::string type = *param != '\0' && script ? ": real" : "";
    out += std::string(script ? "\nprocedimento " : "\nfunction ") + name + "(" + param + type + ")\n";
    const int first = group * BlocksInGroup;
    for (int block = first; block < std::min(first + BlocksInGroup, blocks); ++block) {
        out += std::string("    ") + callee + "_" + BlockName(block) + "(" + param + ")\n";
    }
    out += script ? "fim\n" : "end\n";
}

void AppendGroups(int blocks, Language language, std::string& out) {
    for (int group = 0; group * BlocksInGroup < blocks; ++group) {
        AppendGroup(group, blocks, "preparar", "", language, out);
        AppendGroup(group, blocks, "atualizar", "passo", language, out);
        AppendGroup(group, blocks, "mostrar", "dt", language, out);
    }
}

// A hook that calls `callee` of each group.
void AppendHook(const char* head, const char* callee, const char* param, int blocks, Language language,
                std::string& out) {
    out += head;
    for (int group = 0; group * BlocksInGroup < blocks; ++group) {
        out += std::string("    ") + callee + "_grupo" + std::to_string(group) + "(" + param + ")\n";
    }
    out += language == Language::Script ? "fim\n" : "end\n";
}

void AppendHooks(int blocks, Language language, std::string& out) {
    const bool script = language == Language::Script;
    AppendHook(script ? "\nao carregar mapa\n" : "\nfunction ao_carregar_mapa()\n", "preparar", "", blocks, language,
               out);
    AppendHook(script ? "\na cada tick (passo: real)\n" : "\nfunction a_cada_tick(passo)\n", "atualizar", "passo",
               blocks, language, out);
    AppendHook(script ? "\na cada quadro (dt: real)\n" : "\nfunction a_cada_quadro(dt)\n", "mostrar", "dt", blocks,
               language, out);
}

std::string Assemble(int blocks, Language language) {
    Sections sections;
    for (int block = 0; block < blocks; ++block) AppendBlock(block, blocks, language, sections);
    AppendGroups(blocks, language, sections.functions);
    AppendHooks(blocks, language, sections.functions);
    if (language == Language::Lua) {
        return sections.declarations + "\n" + sections.state + "\n" + sections.visual + "\n" + sections.derived +
               sections.functions;
    }
    return "modulo Gerado\n" + sections.declarations + "\nestado\n" + sections.state + "fim\n\nvisual\n" +
           sections.visual + "fim\n\n" + sections.derived + sections.functions;
}

int CountLines(const std::string& text) {
    return static_cast<int>(std::count(text.begin(), text.end(), '\n'));
}

// The most blocks whose script has at most `lines` lines.
int BlocksFor(int lines) {
    int blocks = std::max(1, lines / 128);
    while (true) {
        const int have = CountLines(Assemble(blocks, Language::Script));
        if (have <= lines || blocks == 1) return blocks;
        blocks = std::max(1, std::min(blocks - 1, static_cast<int>(std::int64_t{blocks} * lines / have)));
    }
}

// Small functions, then comments, that bring a script to its number of lines.
void Pad(int missing, Language language, std::string& out) {
    const bool script = language == Language::Script;
    for (int count = 0; missing >= 4; missing -= 4, ++count) {
        const std::string number = std::to_string(count);
        out += script ? "\nfuncao resto" + number + "(valor: inteiro): inteiro\n    retorne valor % " + number +
                            "7 + 1\nfim\n"
                      : "\nfunction resto" + number + "(valor)\n    return valor % " + number + "7 + 1\nend\n";
    }
    for (; missing > 0; --missing) out += script ? "// fim do arquivo\n" : "-- fim do arquivo\n";
}

}  // namespace

std::string GenerateScript(int lines, Language language) {
    const int blocks = BlocksFor(lines);
    const int missing = lines - CountLines(Assemble(blocks, Language::Script));
    std::string out = Assemble(blocks, language);
    Pad(missing, language, out);
    return out;
}

}  // namespace tavrel::bench
