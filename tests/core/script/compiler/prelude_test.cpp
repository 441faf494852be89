// Worlds other than our own: what the compiler makes of a game's table, and how it reports a faulty one.
#include <gtest/gtest.h>

#include "tests/core/script/compiler/compile_support.h"

namespace tavrel::core::script {
namespace {

constexpr const char* Hint = "  defeito na tabela da API do host, e nao no script\n";

std::string FaultsOf(const Api& api) {
    return CompileScript("modulo M", {}, &api).reports;
}

std::string Fault(const std::string& subject, const std::string& what) {
    return "m.tvl:1:1: erro: a API do mundo declara \"" + subject + "\" e " + what + "\n" + Hint;
}

TEST(Prelude, NoWorldHasNoWorldNames) {
    Compiled compiled = CompileScript(
        "modulo M\nregistro Chao\n    o: objeto\nfim\nao iniciar\n    x: real = mapa.altura(1.0, 2.0)\n"
        "    c: Chao\n    y: real = c.o.x\nfim\n",
        {}, nullptr);
    EXPECT_EQ(compiled.reports,
              "m.tvl:6:15: erro: \"mapa\" nao foi declarada\n"
              "m.tvl:8:15: erro: objeto nao tem um campo chamado \"x\"\n"
              "  um script sem mundo nao alcanca os campos de objeto\n");
}

TEST(Prelude, ReportsNamesGivenTwice) {
    Api api;
    api.records = {{"R", {{"a", "inteiro", ""}, {"á", "real", ""}}}, {"R", {}}};
    api.enums = {{"R", {"X"}}, {"E", {"UM", "UM"}}};
    api.functions = {{1, "solta", "", {}, AllHooks, false},
                     {2, "m.f", "", {}, AllHooks, false},
                     {3, "m.f", "", {}, AllHooks, false},
                     {4, "m.g", "", {{"a", "real", "1.0"}, {"b", "real", ""}}, AllHooks, false}};
    api.namespaceFields = {{5, "", "x", "real", AllHooks}, {6, "m", "f", "real", AllHooks}};
    api.valueFields = {{7, Kind::Object, "x", "real", AllHooks}, {8, Kind::Object, "x", "real", AllHooks}};
    EXPECT_EQ(FaultsOf(api), Fault("R", "esse registro duas vezes") + Fault("R", "esse nome duas vezes") +
                                 Fault("UM", "esse valor duas vezes") + Fault("R.á", "esse campo duas vezes") +
                                 Fault("solta", "uma funcao sem agrupamento") + Fault("m.f", "essa funcao duas vezes") +
                                 Fault("m.g", "um parametro sem padrao depois de um com padrao") +
                                 Fault("x", "um campo sem agrupamento") + Fault("m.f", "esse nome duas vezes") +
                                 Fault("x", "esse campo duas vezes na mesma especie"));
}

TEST(Prelude, ReportsTypesAndDefaultsThatDoNotRead) {
    Api api;
    api.functions = {{1,
                      "m.f",
                      "listade",
                      {{"a", "lista de", ""},
                       {"b", "real", "vetor2(1.0)"},
                       {"c", "real", "vetor2(1.0, 1e39)"},
                       {"d", "real", "1e39"},
                       {"e", "inteiro", "12x"},
                       {"f", "inteiro", "9223372036854775808"}},
                      AllHooks,
                      false}};
    std::string unknown =
        "m.tvl:1:1: erro: o tipo \"listade\" nao foi declarado\n"
        "  declare um \"registro\" ou uma \"enumeracao\" com esse nome\n";
    EXPECT_EQ(FaultsOf(api), unknown + Fault("m.f", "o tipo \"listade\" nao foi reconhecido") +
                                 Fault("m.f(a)", "o tipo \"lista de\" nao existe nesta linguagem") +
                                 Fault("m.f(b)", "o valor padrao \"vetor2(1.0)\" nao e um valor desta linguagem") +
                                 Fault("m.f(c)", "o valor padrao \"vetor2(1.0, 1e39)\" tem um numero que nao se le") +
                                 Fault("m.f(d)", "o valor padrao \"1e39\" nao e um numero") +
                                 Fault("m.f(e)", "o valor padrao \"12x\" nao e um numero") +
                                 Fault("m.f(f)", "o valor padrao \"9223372036854775808\" nao e um numero"));
}

TEST(Prelude, ReadsEveryFormOfDefault) {
    Api api;
    api.enums = {{"E", {"UM", "DOIS"}}};
    api.functions = {{1,
                      "m.f",
                      "",
                      {{"a", "inteiro", "-1290"},
                       {"b", "real", "0"},
                       {"c", "logico", "verdadeiro"},
                       {"d", "texto", "\"a b\""},
                       {"e", "corpo", "nenhum_corpo"},
                       {"f", "cor", "cor( 1.0, 2.0,3.0, 4.5, )"},
                       {"g", "E", "DOIS"}},
                      AllHooks,
                      false}};
    Compiled compiled = CompileScript("modulo M\nao iniciar\nm.f()\nfim\n", {}, &api);
    ASSERT_TRUE(compiled.good) << compiled.reports;
    EXPECT_EQ(
        compiled.Listing("ao iniciar"),
        "0 PushInt -1290; 1 PushReal 0; 2 PushBool 1; 3 PushText \"a b\"; 4 PushHandle 1 0; 5 PushReal 1; "
        "6 PushReal 2; 7 PushReal 3; 8 PushReal 4.5; 9 MakeVector 4; 10 PushEnum 0 1; 11 CallHost 7 1; 12 Return");
}

}  // namespace
}  // namespace tavrel::core::script
