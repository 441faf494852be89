// What code may write, draw and reach: the hooks that reach it, and what functions inherit from those who call them.
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

const std::string NoHook =
    "  o valor inicial de uma variavel e calculado antes de haver mapa (use \"ao carregar "
    "mapa\"), e foco_do_jogador so le o estado, entre ticks";

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
        const std::string reports = Reports(text, nullptr);
        EXPECT_EQ(reports.substr(0, reports.find('\n') + 1),
                  At(6, 1, "\"v\" e do bloco \"visual\" e nao pode ser mudada aqui"))
            << body;
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

}  // namespace
}  // namespace tavrel::core::script
