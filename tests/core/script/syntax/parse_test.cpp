#include "core/script/syntax/parse.h"

#include <gtest/gtest.h>

#include <string>

namespace tavrel::core::script {
namespace {

std::string ReportsOf(const std::string& text) {
    Diagnostics diagnostics;
    Unit unit;
    const bool good = Parse(SourceFile("t", text), diagnostics, unit);
    EXPECT_EQ(good, diagnostics.errors == 0);
    return diagnostics.Describe();
}

TEST(Parse, NestingUpToTheLimitIsFine) {
    EXPECT_EQ(ReportsOf("modulo M\nconstante A = " + std::string(499, '(') + "1" + std::string(499, ')')), "");
    EXPECT_EQ(ReportsOf("modulo M\nconstante A = " + std::string(500, '(') + "1" + std::string(500, ')')),
              "t:2:515: erro: o codigo esta aninhado demais: o limite e de 500 niveis\n"
              "  divida esta parte em funcoes ou variaveis menores\n");
}

TEST(Parse, FaultsOfAnEarlierFileCount) {
    Diagnostics diagnostics;
    diagnostics.Add(SourceFile(), {}, "antes", "");
    Unit unit;
    EXPECT_FALSE(Parse(SourceFile("t", "modulo M"), diagnostics, unit));
}

// Whole words, statements and line ends, as an editor underlines them.
TEST(Parse, ReportSpans) {
    Diagnostics diagnostics;
    Unit unit;
    EXPECT_FALSE(
        Parse(SourceFile("t",
                         "modulo M\nao carregar\na cada hora\nacao a = teclado x\ncomportamento B\nestado\nfim\n"
                         "estado\nfim\ncamera\nparte.x + 1\npare\nfim\nregistro R\nfim\nconstante c\nfim\n"
                         "parametro p: real\nao nascer\nfim\nao nascer\nescolha x\nfim\n"),
              diagnostics, unit));
    std::string spans;
    for (const Diagnostic& report : diagnostics.items) spans += unit.source.Slice(report.span) + "|";
    EXPECT_EQ(spans, "ao|a|teclado|estado|camera|parte.x + 1|pare|registro|\n|parametro|ao|ao|escolha||ao|");
}

}  // namespace
}  // namespace tavrel::core::script
