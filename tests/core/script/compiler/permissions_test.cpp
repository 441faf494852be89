// What code may write, draw and reach: the law of each hook, and what functions inherit from those who call them.
#include <gtest/gtest.h>

#include <sstream>

#include "tests/core/script/compiler/compile_support.h"

namespace tavrel::core::script {
namespace {

// A world whose functions are named after where they are valid.
const Api& SmallWorld() {
    static const Api world = [] {
        Api api;
        api.functions = {{1, "m.quadro", "real", {}, HookMask::Frame, false},
                         {2, "m.mapa", "real", {}, HookMask::UpdateMap, true},
                         {3, "m.tudo", "real", {}, AllHooks, false},
                         {4, "m.muda", "real", {}, AllHooks, true},
                         {5, "m.nunca", "real", {}, HookMask::None, false}};
        return api;
    }();
    return world;
}

std::string Reports(const std::string& text, const Api* api) {
    return CompileScript("modulo M\n" + text, {}, api).reports;
}

std::string At(int line, int column, const std::string& text) {
    return "m.tvl:" + std::to_string(line) + ":" + std::to_string(column) + ": erro: " + text + "\n";
}

// The reports without their hints, which say the same at every place.
std::string Heads(const std::string& text) {
    std::istringstream lines(Reports(text, nullptr));
    std::string heads;
    for (std::string line; std::getline(lines, line);) {
        if (line[0] != ' ') heads += line + "\n";
    }
    return heads;
}

std::string Refused(char variable, int line) {
    const std::map<char, std::string> blocks = {
        {'s', "estado"}, {'v', "visual"}, {'p', "progresso"}, {'d', "derivado do mapa"}};
    return At(
        line, 1,
        std::string("\"") + variable + "\" e do bloco \"" + blocks.at(variable) + "\" e nao pode ser mudada aqui");
}

const std::string NoHook =
    "  o valor inicial de uma variavel e calculado antes de haver mapa (use \"ao carregar "
    "mapa\"), e foco_do_jogador so le o estado, entre ticks";

TEST(Permissions, LawOfEachCaller) {
    struct {
        const char* head;
        std::string end;  // what follows the body
        std::string writes;
        bool random;
    } const rows[] = {
        {"ao iniciar", "", "vpd", false},
        {"ao carregar mapa", "", "vpd", false},
        {"ao reiniciar mapa", "", "svpd", false},
        {"ao interromper", "", "vp", false},
        {"a cada tick (x: real)", "", "sp", true},
        {"a cada quadro (x: real)", "", "vp", false},
        {"ao desenhar (x: real)", "", "vp", false},
        {"camera", "", "p", false},
        {"ao encerrar", "", "p", false},
        {"ao nascer", "fim", "svpd", false},
        {"ao tocar (x: objeto)", "fim", "sp", true},
        {"ao soltar (x: objeto)", "fim", "sp", true},
        {"procedimento livre()", "", "svpd", true},
        {"procedimento f()", "funcao atualizar_mapa(): logico\nf()\nretorne falso\nfim", "vpd", false},
    };
    for (const auto& row : rows) {
        std::string text =
            "d: inteiro\nestado\ns: inteiro\nfim\nvisual\nv: inteiro\nfim\n"
            "progresso \"p\"\np: inteiro\nfim\n";
        text += std::string(row.end == "fim" ? "comportamento C\n" : "\n") + row.head + "\n";
        text += "s = 1\nv = 1\np = 1\nd = 1\ny: real = aleatorio()\nfim\n" + row.end;
        std::string expected;
        int line = 14;
        for (char variable : {'s', 'v', 'p', 'd'}) {
            if (row.writes.find(variable) == std::string::npos) expected += Refused(variable, line);
            ++line;
        }
        if (!row.random) {
            expected += At(line, 11, "\"aleatorio\" so pode ser chamada dentro de \"a cada tick\"");
        }
        EXPECT_EQ(Heads(text), expected) << row.head << row.end;
    }
}

// A call that the walk misses would leave `f` free to write everything.
TEST(Permissions, CallsAreFoundWhereverTheyStand) {
    std::istringstream bodies(
        "f()|n: inteiro = f()|l[f()] = 1|l[0] = f()|se f() == 1\nfim|se falso\nsenao se f() == 1\nfim|"
        "se falso\nf()\nfim|se falso\nsenao\nf()\nfim|enquanto f() == 1\nfim|enquanto falso\nf()\nfim|para i de f() "
        "ate 2\nfim|"
        "para i de 1 ate f()\nfim|para i de 1 ate 2 passo f()\nfim|para i de 1 ate 2\nf()\nfim|"
        "para cada i em [f()]\nfim|para cada i em l\nf()\nfim|escolha f()\ncaso 1\nfim|escolha 1\ncaso 2, f()\nfim|"
        "escolha 1\ncaso 2\nf()\nfim|escolha 1\ncaso 2\nsenao\nf()\nfim|retorne f()|l.adicionar(f())|"
        "[f()].adicionar(1)|n: inteiro = g(2 - -f() + tamanho([1]))|b: logico = falso e nao (f() == 1)|"
        "n: inteiro = [1: 2, 3: f()][1]|n: inteiro = [f(): 2][1]|n: inteiro = l[f()]|n: inteiro = inteiro(f())|"
        "n: inteiro = g(g(f()))");
    for (std::string body; std::getline(bodies, body, '|');) {
        std::string text =
            "visual\nv: inteiro\nfim\nfuncao f(): inteiro\nv = 1\nretorne 1\nfim\n"
            "funcao g(n: inteiro): inteiro\nretorne n\nfim\n"
            "funcao h(l: lista de inteiro): inteiro\n" +
            body + "\nretorne 0\nfim\na cada tick (x: real)\nh([1])\nfim\n";
        EXPECT_EQ(Heads(text), Refused('v', 6)) << body;
    }
}

TEST(Permissions, WorldWithinTheHooksThatReachTheCode) {
    const std::string nowhere = "\"m.tudo\" precisa do mundo, e aqui nao ha gancho que o alcance\n";
    struct {
        std::string text;
        std::string expected;
    } const rows[] = {
        {"funcao f(): real\nretorne m.quadro()\nfim\na cada tick (x: real)\nf()\nfim\na cada quadro "
         "(x: real)\nf()\nfim",
         At(3, 9,
            "\"m.quadro\" nao vale em todos os ganchos que chamam esta funcao\n"
            "  ela vale em: a cada quadro; esta funcao e chamada de: a cada tick, a cada quadro")},
        {"a cada tick (x: real)\nm.quadro()\nm.mapa()\nm.nunca()\nfim",
         At(3, 1, "\"m.quadro\" nao pode ser chamada aqui\n  ela vale em: a cada quadro") +
             At(4, 1, "\"m.mapa\" nao pode ser chamada aqui\n  ela vale em: atualizar_mapa") +
             At(5, 1, "\"m.nunca\" nao pode ser chamada aqui\n  ela vale em: nenhum gancho")},
        {"funcao atualizar_mapa(): logico\nf()\nm.mapa()\nretorne falso\nfim\nprocedimento f()\nm.mapa()\nfim\n"
         "ao encerrar\nf()\nfim",
         At(8, 1,
            "\"m.mapa\" nao vale em todos os ganchos que chamam esta funcao\n"
            "  ela vale em: atualizar_mapa; esta funcao e chamada de: ao encerrar, atualizar_mapa")},
        // Two functions that only call each other are as free as one that nobody calls, but have no world.
        {"estado\ns: inteiro\nfim\nprocedimento f()\ns = 1\ng()\nfim\nprocedimento g()\nf()\nm.tudo()\nfim",
         At(11, 1, nowhere + NoHook)},
        {"constante C: real = m.tudo()\ncomportamento B\nestado\na: real = m.tudo()\nfim\nfim\n"
         "funcao foco_do_jogador(n: inteiro): vetor3\nm.tudo()\nretorne vetor3(0, 0, 0)\nfim",
         At(2, 21, nowhere + NoHook) + At(5, 11, nowhere + NoHook) + At(9, 1, nowhere + NoHook)},
        // A helper of a rule that a hook calls too is a rule that has the world.
        {"estado\ns: real\nfim\nfuncao altura_do_corpo(): real\nretorne f()\nfim\nfuncao f(): real\nm.muda()\ns = 1\n"
         "retorne m.tudo()\nfim\na cada tick (x: real)\nf()\nfim",
         At(9, 1,
            "\"m.muda\" muda o mundo, e esta funcao e uma regra de relevo ou de chao\n"
            "  ela roda sobre uma copia do terreno, fora do quadro, e so le o que recebe") +
             At(10, 1, "\"s\" nao pode ser mudada aqui: esta funcao e uma regra de relevo ou de chao")},
        {"funcao altura_do_corpo(): real\nretorne m.tudo()\nfim",
         At(3, 9,
            nowhere + "  esta funcao e uma regra de relevo: ela roda sobre uma copia do terreno, fora do quadro")},
    };
    for (const auto& row : rows) EXPECT_EQ(Reports(row.text, &SmallWorld()), row.expected) << row.text;
}

// The behaviour's own function is the one its hook calls; the module's of that name stays out of reach.
TEST(Permissions, BehaviourHidesFunctionsOfTheModule) {
    const std::string text =
        "visual\nv: inteiro\nfim\nprocedimento f()\nv = 1\nfim\n"
        "comportamento C\nprocedimento f()\nv = 1\nfim\na cada tick (x: real)\nf()\nfim\nfim\n"
        "comportamento D\nprocedimento f()\nv = 1\nfim\nfim\n";
    EXPECT_EQ(Heads(text), Refused('v', 10));
}

// A write into a container is one of the variable that holds it; what hangs below locals and calls is free.
TEST(Permissions, ContainersAreWrittenThroughTheirVariable) {
    const std::string text =
        "registro R\nw: vetor3\nl: lista de R\nfim\nestado\ns: R\nfim\nfuncao r(): R\nretorne s\nfim\n"
        "a cada quadro (x: real)\n"
        "s.l[0].w = vetor3(0, 0, 0)\ns.l[0].l[1] = r()\ns.w.x = 1\ns.l[0].w.x = 1\n"
        "t: R = r()\nt.l[0].w.x = 1\nr().w = vetor3(0, 0, 0)\nr().l[0].w.x = 1\nfim\n";
    EXPECT_EQ(Heads(text), Refused('s', 13) + Refused('s', 14) + Refused('s', 15) + Refused('s', 16));
}

}  // namespace
}  // namespace tavrel::core::script
