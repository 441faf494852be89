// What expressions compile to where the order and the pools matter, and what the compiler says about bad ones.
#include <gtest/gtest.h>

#include "tests/core/script/compiler/compile_support.h"

namespace tavrel::core::script {
namespace {

constexpr const char* Declarations =
    "\nfim\nenumeracao Cor = AZUL, VERDE\nregistro P\nc: Cor\nnome: texto = \"oi\"\n"
    "q: lista de Cor = [VERDE]\nfim\nestado\ng: vetor2\nl: lista de inteiro\n"
    "d: dicionario de texto para real\nfim\nprocedimento nada_()\nfim\n";

// From line 3 on stands what is tested.
const std::string Tick = "modulo M\na cada tick (r: real)\n";

std::string Script(const std::string& body) {
    return Tick + body + Declarations;
}

void ExpectCode(const std::string& body, const char* expected) {
    Compiled compiled = CompileScript(Script(body));
    EXPECT_EQ(compiled.reports, "") << body;
    EXPECT_EQ(compiled.Listing("a cada tick"), expected) << body;
}

std::string Inexact(int column) {
    return "m.tvl:3:" + std::to_string(column) +
           ": erro: este numero nao cabe exatamente num real\n"
           "  escreva-o com ponto, para dizer qual real voce quer\n";
}

TEST(Expressions, InexactLiteralsAreReportedOnceAndNothingMore) {
    ExpectReports(Tick, Declarations,
                  {
                      {"r = 2.5 + r*-16777217", Inexact(13)},
                      {"r = 2.5 + -(-16777217)", Inexact(11)},
                      {"g = vetor2(16777217, \"a\")", Inexact(12)},
                      {"d[\"a\"] = 16777217", Inexact(10)},
                      {"l.adicionar(16777217)", ""},
                      {"r = 16777216 - -16777216 + 2.5",
                       "m.tvl:3:5: erro: nao da para juntar inteiro com real\n"
                       "  nao ha conversao automatica; escreva real(...) ou inteiro(...) num dos dois\n"},
                  });
}

TEST(Expressions, NamespacesAndProceduresAreNoOperands) {
    ExpectReports(Tick, Declarations,
                  {
                      {"r = -mapa", "m.tvl:3:5: erro: nao da para trocar o sinal de mapa\n"},
                      {"r = 1 + mapa.ambiente", "m.tvl:3:5: erro: nao da para juntar inteiro com mapa.ambiente\n"},
                      {"r = nada_().x", "m.tvl:3:5: erro: nada nao tem campos\n"},
                      {"r = vetor2(1, nada_())", "m.tvl:3:15: erro: cada valor aqui e um real, e este e nada\n"},
                      {"se nada_() == nada_() fim",
                       "m.tvl:3:4: erro: nada nao se compara com \"==\"\n"
                       "  compare os campos que interessam, um a um\n"},
                  });
}

// A fault in one operand is told once; what stands beside it still tells its own.
TEST(Expressions, FailuresTravelInSilence) {
    ExpectReports(Tick, Declarations,
                  {
                      {"r = -nope.a[1].f(2) + nada",
                       "m.tvl:3:6: erro: \"nope\" nao foi declarada\nm.tvl:3:23: erro: \"nada\" nao foi declarada\n"},
                      {"se (nope e 1) ou outra fim",
                       "m.tvl:3:5: erro: \"nope\" nao foi declarada\n"
                       "m.tvl:3:12: erro: \"e\" so junta logicos, e este lado e inteiro\n"
                       "m.tvl:3:18: erro: \"outra\" nao foi declarada\n"},
                      {"r = [nope, [1, nope], 2][0]",
                       "m.tvl:3:6: erro: \"nope\" nao foi declarada\nm.tvl:3:16: erro: \"nope\" nao foi declarada\n"},
                      {"r = d[l[\"a\"]]",
                       "m.tvl:3:9: erro: o indice de uma lista e um inteiro, e este e texto\n"
                       "m.tvl:3:7: erro: a chave deste dicionario e texto, e esta e inteiro\n"},
                      {"g[nope].x = nada",
                       "m.tvl:3:3: erro: \"nope\" nao foi declarada\n"
                       "m.tvl:3:1: erro: vetor2 nao aceita indice\n"
                       "m.tvl:3:13: erro: \"nada\" nao foi declarada\n"},
                  });
}

TEST(Expressions, NamesAndOperators) {
    ExpectCode("o: objeto = nenhum_objeto\nc: corpo = nenhum_corpo\ns: som = nenhum_som\nx: real = PÍ * -r",
               "0 PushHandle 0 0; 1 StoreLocal 1; 2 PushHandle 1 0; 3 StoreLocal 2; 4 PushHandle 2 0; 5 StoreLocal 3; "
               "6 PushReal 3.1415927; 7 LoadLocal 0; 8 NegReal; 9 MulReal; 10 StoreLocal 4; 11 Return");
    ExpectCode("PI: inteiro = 3\nx: logico = nao PI >= 2 e verdadeiro ou falso",
               "0 PushInt 3; 1 StoreLocal 1; 2 LoadLocal 1; 3 PushInt 2; 4 Compare 5; 5 Not; 6 JumpIfFalseKeep 9; "
               "7 Pop; 8 PushBool 1; 9 JumpIfTrueKeep 12; 10 Pop; 11 PushBool 0; 12 StoreLocal 2; 13 Return");
}

TEST(Expressions, DefaultsOfRecords) {
    ExpectCode("a: Contato\nc: camera\np: P\nk: Categoria",
               "0 NewRecord 3; 1 Dup; 2 PushHandle 1 0; 3 FieldSet 1; 4 Dup; 5 PushHandle 1 0; 6 FieldSet 2; "
               "7 StoreLocal 1; 8 NewRecord 5; 9 Dup; 10 PushReal 0; 11 PushReal 1; 12 PushReal 0; 13 MakeVector 3; "
               "14 FieldSet 2; 15 Dup; 16 PushReal 60; 17 FieldSet 3; 18 StoreLocal 2; 19 NewRecord 6; 20 Dup; "
               "21 PushText \"oi\"; 22 FieldSet 1; 23 Dup; 24 PushEnum 2 1; 25 MakeList 1; 26 FieldSet 2; "
               "27 StoreLocal 3; 28 PushEnum 1 0; 29 StoreLocal 4; 30 Return");
}

// A default belongs to the file that declares the record, and its names mean what they mean where it is used.
TEST(Expressions, DefaultsOfImportedRecords) {
    const std::map<std::string, std::string> imports = {
        {"t", "modulo t\nregistro Q\n    n: inteiro = base\n    t: texto = 1\nfim\n"}};
    EXPECT_EQ(CompileScript("modulo M\nimportar \"t\"\nprocedimento p(base: real)\n    q: Q\nfim\n", imports).reports,
              "t.tvl:3:18: erro: o valor inicial do campo \"n\" e real, e o campo e inteiro\n"
              "t.tvl:4:16: erro: o valor inicial do campo \"t\" e inteiro, e o campo e texto\n");
}

// Promoted literals leave their entries in the pool, and so does what is compiled only to learn its type.
TEST(Expressions, PoolsKeepWhatWasTried) {
    Compiled compiled = CompileScript(Script("r = 2 * 1.5 + -3\nd[\"a\"] = 9\nl[7] = 8\nr = d[\"b\"]"));
    ASSERT_TRUE(compiled.good) << compiled.reports;
    EXPECT_EQ(compiled.program.integers, (std::vector<std::int64_t>{2, 3, 9, 7, 8}));
    EXPECT_EQ(compiled.program.texts, (std::vector<std::string>{"a", "b"}));
}

}  // namespace
}  // namespace tavrel::core::script
