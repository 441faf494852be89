#include "tests/random/forms.h"

#include <cstddef>
#include <fstream>
#include <sstream>
#include <string_view>
#include <utility>

namespace tavrel::tests {

namespace {

struct Pair {
    const char* key;
    const char* value;
};

constexpr const char* Elements[] = {"inteiro", "real",   "texto",   "Rumo",   "vetor3",          "Ponto",
                                    "Linha",   "objeto", "Contato", "Acerto", "lista de inteiro"};
constexpr Pair Pairs[] = {
    {"texto", "inteiro"}, {"inteiro", "texto"}, {"Rumo", "vetor3"}, {"texto", "lista de real"}, {"objeto", "Ponto"}};
constexpr const char* Scalars[] = {"logico",    "vetor2",      "cor",  "Categoria", "corpo", "som",
                                   "Andarilho", "TipoContato", "Chao", "Agua",      "camera"};
constexpr const char* Records[] = {"Ponto", "Linha", "Contato", "Acerto", "Andarilho", "Chao", "Agua", "camera"};

constexpr std::pair<std::string_view, std::uint32_t> HooksByWord[] = {
    {"tick", 0x10}, {"frame", 0x20}, {"shown", 0xE0}, {"draws", 0xC10}, {"inputs", 0x30}};

std::string Replaced(std::string text, std::string_view mark, std::string_view by) {
    for (std::size_t at = text.find(mark); at != std::string::npos; at = text.find(mark, at + by.size())) {
        text.replace(at, mark.size(), by);
    }
    return text;
}

// A line "TYPE | FORM | WHERE" of the file `forms`.
Form FormOf(const std::string& line) {
    const std::size_t first = line.find("| ");
    const std::size_t second = line.find(" | ", first + 2);
    Form form;
    if (first > 0) form.result = line.substr(0, first - 1);
    form.text = line.substr(first + 2, second == std::string::npos ? second : second - first - 2);
    std::istringstream words(second == std::string::npos ? "" : line.substr(second + 3));
    for (std::string word; words >> word;) {
        for (const auto& [name, hooks] : HooksByWord) {
            if (word == name) form.hooks = hooks;
        }
        if (word == "world") form.use = Use::World;
        if (word == "risky") form.use = Use::Risky;
        if (word == "literal") form.use = Use::Literal;
    }
    return form;
}

std::vector<Form> ReadForms() {
    std::vector<Form> forms;
    std::ifstream file(TAVREL_FORMS);
    for (std::string line; std::getline(file, line);) {
        if (!line.starts_with('#')) forms.push_back(FormOf(line));
    }
    return forms;
}

std::string WithElement(const std::string& text, const char* element) {
    return Replaced(text, "$", element);
}

std::string WithPair(const std::string& text, const Pair& pair) {
    return Replaced(Replaced(text, "@k", pair.key), "@v", pair.value);
}

}  // namespace

const std::vector<std::string>& AllTypes() {
    static const std::vector<std::string> all = [] {
        std::vector<std::string> types(std::begin(Elements), std::end(Elements));
        types.insert(types.end(), std::begin(Scalars), std::end(Scalars));
        for (const char* element : Elements) types.push_back(WithElement("lista de $", element));
        for (const Pair& pair : Pairs) types.push_back(WithPair("dicionario de @k para @v", pair));
        return types;
    }();
    return all;
}

const std::vector<Form>& AllForms() {
    static const std::vector<Form> forms = ReadForms();
    return forms;
}

std::string LiteralOf(RandomNumbers& numbers, const std::string& type) {
    std::vector<std::string> literals;
    for (const Form& form : AllForms()) {
        if (form.use == Use::Literal && form.result == type) literals.push_back(form.text);
    }
    if (!literals.empty()) return numbers.OneOf(literals);
    if (type == "objeto" || type == "corpo" || type == "som") return "nenhum_" + type;
    if (type.starts_with("lista de ")) return "[" + LiteralOf(numbers, type.substr(9)) + "]";
    if (const std::size_t value = type.find(" para "); value != std::string::npos) {
        const std::string key = type.substr(14, value - 14);  // behind "dicionario de "
        return "[" + LiteralOf(numbers, key) + ": " + LiteralOf(numbers, type.substr(value + 6)) + "]";
    }
    return "novo_" + type + "()";
}

void AddBound(RandomNumbers& numbers, const Form& form, const std::string& type, std::vector<std::string>& texts) {
    if (form.result.find('$') != std::string::npos) {
        for (const char* element : Elements) {
            if (WithElement(form.result, element) == type) texts.push_back(WithElement(form.text, element));
        }
    } else if (form.result.find('@') != std::string::npos) {
        for (const Pair& pair : Pairs) {
            if (WithPair(form.result, pair) == type) texts.push_back(WithPair(form.text, pair));
        }
    } else if (form.result == type) {
        texts.push_back(WithPair(WithElement(form.text, numbers.OneOf(Elements)), numbers.OneOf(Pairs)));
    }
}

std::vector<std::string> CommonDeclarations() {
    std::vector<std::string> all = {
        "enumeracao Rumo = NORTE, SUL, LESTE\n",
        "registro Ponto\nlugar: vetor3 = vetor3(1, 2, 3) * 2\nnome: texto = \"p\"\npeso: inteiro = 2 + 3\nfim\n",
        "registro Linha\nfim_dela: Ponto\nvizinhas: lista de Linha\nrumo: Rumo = LESTE\nfim\n",
        "acao pular = tecla espaco, controle a\n",
        "acao andar = tecla w, tecla s negativo, eixo_controle esquerdo_y\n",
        "acao comprar\n",
        "evento chegada: inteiro\n",
        "evento nota\n",
        "funcao curto(t: texto): texto\nse tamanho(t) > 60 entao retorne \"longo\"\nfim\nretorne t\nfim\n",
        "funcao desce(n: inteiro): inteiro\nse n <= 0 entao retorne 1\nfim\nretorne desce(n - 1) + n % 3\nfim\n",
    };
    for (const std::string record : Records) {
        all.push_back("funcao novo_" + record + "(): " + record + "\nfresco: " + record + "\nretorne fresco\nfim\n");
    }
    return all;
}

}  // namespace tavrel::tests
