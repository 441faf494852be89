#include "core/script/syntax/parse.h"

#include <gtest/gtest.h>

#include "tests/core/script/syntax/tree_text.h"

namespace tavrel::core::script {
namespace {

TEST(Parse, NestingUpToTheLimitIsFine) {
    EXPECT_EQ(ParseFile("modulo M\nconstante A = " + std::string(499, '(') + "1" + std::string(499, ')')).reports, "");
    EXPECT_EQ(ParseFile("modulo M\nconstante A = " + std::string(500, '(') + "1" + std::string(500, ')')).reports,
              "t:2:515: erro: o codigo esta aninhado demais: o limite e de 500 niveis\n"
              "  divida esta parte em funcoes ou variaveis menores\n");
}

TEST(Parse, MovedUnitKeepsItsTree) {
    Parsed parsed = ParseBody("f(n = \"a\\nb\", x)");
    const Unit moved = std::move(parsed.unit);
    EXPECT_EQ(TreeText(moved).BlockText(moved.functions.at(0).body), "{(call f n='a\nb' x)}");
}

TEST(Parse, FaultsOfAnEarlierFileCount) {
    Diagnostics diagnostics;
    diagnostics.Add(SourceFile(), {}, "antes", "");
    Unit unit;
    EXPECT_FALSE(Parse(SourceFile("t", "modulo M"), diagnostics, unit));
}

TEST(Parse, FaultyTypesStandInTheTree) {
    struct Row {
        const char* source;
        const char* type;
        const char* reports;
    };
    for (const Row& row : {
             Row{"dicionario texto real", "dicionario<texto,real>",
                 "t:2:15: erro: depois de \"dicionario\" vem \"de\", o tipo da chave, \"para\" e o tipo do valor\n"
                 "  por exemplo: dicionario de texto para inteiro\n"
                 "t:2:21: erro: depois do tipo da chave vem \"para\" e o tipo do valor\n"},
             Row{"lista de", "lista<?>",
                 "t:2:12: erro: esperava um tipo, e veio o fim da linha\n"
                 "  os tipos sao inteiro, real, logico, texto, vetor2, vetor3, cor, objeto, corpo, som, lista de ... e "
                 "dicionario de ... para ...\n"},
         }) {
        const Parsed parsed = ParseFile(std::string("modulo M\nx: ") + row.source);
        EXPECT_EQ(TreeText(parsed.unit).Type(parsed.unit.module.derived.at(0).type), row.type);
        EXPECT_EQ(parsed.reports, row.reports);
    }
}

TEST(ParseTypeText, ReadsOneTypeAndPutsTheSourceBack) {
    Parsed parsed = ParseFile("modulo M");
    Diagnostics diagnostics;
    TypeRefId type;
    EXPECT_TRUE(ParseTypeText("dicionario de texto para lista de Corpo", parsed.unit, diagnostics, type));
    EXPECT_EQ(TreeText(parsed.unit).Type(type), "dicionario<texto,lista<Corpo>>");
    EXPECT_FALSE(ParseTypeText("inteiro real", parsed.unit, diagnostics, type));
    EXPECT_FALSE(ParseTypeText("1", parsed.unit, diagnostics, type));
    const std::string hint = "  defeito na tabela da API do host, e nao no script\n";
    EXPECT_EQ(
        diagnostics.Describe(),
        "<api>:1:1: erro: \"inteiro real\" nao e um tipo desta linguagem\n" + hint +
            "<api>:1:1: erro: esperava um tipo, e veio um inteiro\n"
            "  os tipos sao inteiro, real, logico, texto, vetor2, vetor3, cor, objeto, corpo, som, lista de ... e "
            "dicionario de ... para ...\n"
            "<api>:1:1: erro: \"1\" nao e um tipo desta linguagem\n" +
            hint);
    EXPECT_EQ(parsed.unit.source.name, "t");
}

}  // namespace
}  // namespace tavrel::core::script
