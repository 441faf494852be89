#include "core/script/syntax/formatter.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <vector>

#include "core/script/syntax/lexer.h"

namespace tavrel::core::script {
namespace {

namespace fs = std::filesystem;

// Kinds and bytes, without the empty lines at the start, which no layout keeps.
std::vector<std::string> TokensOf(const std::string& text) {
    const SourceFile source("t", text);
    Diagnostics diagnostics;
    const TokenList list = Tokenize(source, diagnostics, true);
    std::vector<std::string> tokens;
    for (const Token& token : list.tokens) {
        if (token.kind == Tok::Newline && tokens.empty()) continue;
        const std::string bytes = token.kind == Tok::Newline ? "" : source.Slice(token.span);
        tokens.push_back(Describe(token.kind) + (" " + bytes));
    }
    return tokens;
}

bool FormatText(const std::string& text, std::string& out) {
    Diagnostics diagnostics;
    const bool formatted = Format(SourceFile("t", text), diagnostics, out);
    EXPECT_EQ(formatted, diagnostics.errors == 0);
    return formatted;
}

// The layout of a text that lexes, held to what must be true of any.
std::string Formatted(const std::string& text) {
    std::string once;
    std::string twice;
    if (!FormatText(text, once)) return "refused";
    EXPECT_TRUE(FormatText(once, twice));
    EXPECT_EQ(once, twice);
    if (once.empty()) return once;
    EXPECT_EQ(TokensOf(text), TokensOf(once)) << text;
    return once;
}

struct Row {
    std::string source;
    std::string layout;
};

void ExpectRows(std::initializer_list<Row> rows) {
    for (const Row& row : rows) EXPECT_EQ(Formatted(row.source), row.layout) << row.source;
}

TEST(Formatter, Lines) {
    ExpectRows({{"", ""},
                {"\n \r\n\t\n", ""},
                {"\n\na", "a\n"},
                {"modulo a\n\n\n\nx: inteiro\n", "modulo a\n\nx: inteiro\n"},
                {"a\n \t\r\nb\n\n\n", "a\n\nb\n"},
                {"a\rb\r\nc", "a b\nc\n"},
                {"f(\n  1,\n\n  2\n)", "f(1, 2)\n"},
                {"a // um \t\r\n  // dois\n\n\n//", "a // um\n// dois\n\n//\n"}});
}

TEST(Formatter, Blocks) {
    ExpectRows({
        {"se a\nb()\nsenao\nc()\nfim\n", "se a\n    b()\nsenao\n    c()\nfim\n"},
        {"se a entao b() fim\nc", "se a entao b() fim\nc\n"},
        {"escolha i\ncaso 1,2\na\nsenao\nb\nfim", "escolha i\ncaso 1, 2\n    a\nsenao\n    b\nfim\n"},
        {"fim\nfim\nsenao\na\nfim", "fim\nfim\nsenao\n    a\nfim\n"},
        {"estado\n// um\nx: real\nfim", "estado\n    // um\n    x: real\nfim\n"},
        {"função f()\nvisual\nprogresso\nfim\nfim\nfim",
         "função f()\n    visual\n        progresso\n        fim\n    fim\nfim\n"},
        {"se a entao b() fim // um\nc // fim\nse // dois\nd",
         "se a entao b() fim // um\nc // fim\nse // dois\n    d\n"},
        {"escolha i // fim\ncaso 1 // fim\na\nfim // fim\nb",
         "escolha i // fim\ncaso 1 // fim\n    a\nfim // fim\nb\n"},
    });
}

TEST(Formatter, Hooks) {
    ExpectRows({
        {"ao tocar(outro:objeto)\nf(a)\nfim", "ao tocar (outro: objeto)\n    f(a)\nfim\n"},
        {"A cada tick\nfim\na=cada\na cada=1", "A cada tick\nfim\na = cada\na cada = 1\n"},
        {"Câmera\nfim\ncamera x\na cada\na Câda x\nfim", "Câmera\nfim\ncamera x\na cada\na Câda x\nfim\n"},
        {"ao: inteiro\nx", "ao: inteiro\n    x\n"},
        {"ao a[((b))]", "ao a[ ( (b))]\n"},
        {"camera // um\nx\nfim\na cada tick // dois\nx", "camera // um\n    x\nfim\na cada tick // dois\n    x\n"},
        {"ao // um\na cada // dois\nao", "ao // um\na cada // dois\nao\n"},
    });
}

TEST(Formatter, Blanks) {
    ExpectRows({
        {"x=-1", "x = -1\n"},
        {"x=a-1*- -b+1.5", "x = a - 1 * --b + 1.5\n"},
        {"x=[ ]-\"t\"-verdadeiro-falso-nulo()-(-a)", "x = [] - \"t\" - verdadeiro - falso - nulo() - (-a)\n"},
        {"- a", "-a\n"},
        {"retorne+b", "retorne +b\n"},
        {"lista de inteiro=[1,2,3]", "lista de inteiro = [1, 2, 3]\n"},
        {"f (x) (y) [1] . z", "f(x)(y)[1].z\n"},
        {"inteiro (x)-real\n[ a ]", "inteiro(x) - real\n[a]\n"},
        {"se(a)e nao(b)<=[1]", "se (a) e nao (b) <= [1]\n"},
    });
}

// Here the table alone would make other tokens of what stands there.
TEST(Formatter, TokensStayApart) {
    ExpectRows({
        {"1 . 5", "1. 5\n"},
        {"a.1 .5e3", "a.1. 5e3\n"},
        {"1.5 . 5 . x", "1.5.5.x\n"},
        {"0x1F . 5 . 6+0B1 .2.5", "0x1F.5. 6 + 0B1.2.5\n"},
        {"x = [ // a\n1, // b\n\n// c\n2\n]\ny", "x = [ // a\n    1, // b\n    // c\n    2]\ny\n"},
        {"se a\nf(1 // um\n-1,-//dois\n1)", "se a\n    f(1 // um\n        - 1, - //dois\n        1)\n"},
        {"(a //", "(a //\n"},
        {"(//\n//\n", "( //\n    //\n"},
    });
}

TEST(Formatter, RefusesLexicalFaults) {
    std::string out = "kept";
    for (const char* text : {"x = \"aberto\ny", "a @ b", "\"\\q\"", "99999999999999999999", "a <- b", "0x"}) {
        EXPECT_FALSE(FormatText(text, out)) << text;
    }
    EXPECT_EQ(out, "kept");
}

TEST(Formatter, EveryScriptKeepsItsTokens) {
    int formatted = 0;
    for (const char* folder : {TAVREL_EXAMPLES, TAVREL_CASES}) {
        for (const auto& entry : fs::recursive_directory_iterator(folder)) {
            if (entry.path().extension() != ".tvl" || !entry.is_regular_file()) continue;
            std::ifstream stream(entry.path(), std::ios::binary);
            const std::string text{std::istreambuf_iterator<char>(stream), {}};
            formatted += Formatted(text) == "refused" ? 0 : 1;
        }
    }
    EXPECT_GT(formatted, 50);
}

TEST(Formatter, AnyTokensStayWhatTheyAre) {
    const std::vector<std::string> pieces{
        "a", "ao", "cada", "câmera", "e5", "_", "1",  "0x1F", "1_", "2.5", "1e5",  "\"t\"", "\"\\n\r\"",  "(",   "[",
        ")", "]",  ".",    ".",      ",",  ":", "=",  "==",   "!=", "<",   "<=",   ">",     ">=",         "+",   "-",
        "*", "/",  "%",    "//c",    "//", "e", "se", "fim",  "se", "fim", "caso", "senao", "verdadeiro", "real"};
    const std::vector<std::string> gaps{"", " ", " ", "\n", "\r\n", "\n\n\n", "\t ", "// x\r \n", "\n//y\n"};
    std::mt19937 random(7);
    int formatted = 0;
    for (int round = 0; round < 20'000; ++round) {
        std::string text;
        for (std::size_t left = random() % 24; left > 0; --left) {
            text += pieces[random() % pieces.size()] + gaps[random() % gaps.size()];
        }
        formatted += Formatted(text) == "refused" ? 0 : 1;
        if (HasFailure()) FAIL() << text;
    }
    EXPECT_GT(formatted, 10'000);
}

}  // namespace
}  // namespace tavrel::core::script
