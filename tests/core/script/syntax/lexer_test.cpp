#include "core/script/syntax/lexer.h"

#include <gtest/gtest.h>

#include <utility>

#include "core/script/numeric/number_text.h"
#include "core/script/syntax/foreign_words.h"

namespace tavrel::core::script {
namespace {

std::string TextOf(const Token& token) {
    switch (token.kind) {
        case Tok::End: return "end";
        case Tok::Newline: return "nl";
        case Tok::Name: return std::string(token.text);
        case Tok::Comment: return "<" + std::string(token.text) + ">";
        case Tok::TextLiteral: return "'" + std::string(token.text) + "'";
        case Tok::IntegerLiteral: return IntegerToText(token.integer);
        case Tok::RealLiteral: return RealToText(token.real) + "r";
        default: return Describe(token.kind);
    }
}

struct Lexed {
    std::string tokens;  // one word each, without the last one, the end
    std::string reports;
};

Lexed Lex(std::string text, bool keepComments = false) {
    const SourceFile source("t", std::move(text));
    Diagnostics diagnostics;
    const TokenList list = Tokenize(source, diagnostics, keepComments);
    Lexed lexed;
    for (const Token& token : list.tokens) {
        if (token.kind != Tok::End) lexed.tokens += (lexed.tokens.empty() ? "" : " ") + TextOf(token);
    }
    EXPECT_EQ(list.tokens.back().kind, Tok::End);
    lexed.reports = diagnostics.Describe();
    return lexed;
}

struct Row {
    std::string source;
    std::string tokens;
    std::string reports;
};

void ExpectRows(std::initializer_list<Row> rows) {
    for (const Row& row : rows) {
        SCOPED_TRACE(row.source);
        const Lexed lexed = Lex(row.source);
        EXPECT_EQ(lexed.tokens, row.tokens);
        EXPECT_EQ(lexed.reports, row.reports);
    }
}

TEST(Lexer, Lines) {
    ExpectRows({{"", "nl", ""},
                {"a\n\n\nb\n", "a nl b nl", ""},
                {"\n\na", "nl a nl", ""},
                {"(1,\n2)", "\"(\" 1 \",\" 2 \")\" nl", ""},
                {")\n]\n(\na", "\")\" nl \"]\" nl \"(\" a nl", ""},
                {"a\r\nb\rc", "a nl b c nl", ""}});
}

TEST(Lexer, Words) {
    ExpectRows({{"se Se SE", "\"se\" Se SE nl", ""},
                {"ação Ação função não", "\"acao\" Ação \"funcao\" \"nao\" nl", ""},
                {"e ee _e e1 vetor2 vetor4", "\"e\" ee _e e1 \"vetor2\" vetor4 nl", ""},
                {"comportamento dicionario x\xFFy", "\"comportamento\" \"dicionario\" x\xFFy nl", ""}});
}

TEST(Lexer, EveryKeywordIsFound) {
    for (auto kind = static_cast<int>(Tok::Se); kind <= static_cast<int>(Tok::Dicionario); ++kind) {
        const std::string text = Describe(static_cast<Tok>(kind));
        EXPECT_EQ(Lex(text.substr(1, text.size() - 2)).tokens, text + " nl");
    }
    EXPECT_STREQ(Describe(static_cast<Tok>(66)), "um simbolo");
}

TEST(Lexer, UnknownCharacterEndsTheLine) {
    ExpectRows(
        {{"a @ b", "a nl b nl", "t:1:3: erro: \"@\" nao e usado nesta linguagem\n"},
         {"!a", "nl a nl", "t:1:1: erro: \"!\" nao e usado nesta linguagem\n"},
         {"(\f)", "\"(\" nl \")\" nl", "t:1:2: erro: \"\f\" nao e usado nesta linguagem\n"},
         {"$\x80\x80\x80\x80", "nl \x80 nl", "t:1:1: erro: \"$\x80\x80\x80\" nao e usado nesta linguagem\n"},
         {std::string("\0a", 2), "nl a nl", std::string("t:1:1: erro: \"\0\" nao e usado nesta linguagem\n", 45)}});
}

// The bytes of each token but the last, and of each report, with a "|" behind them.
TEST(Lexer, Spans) {
    struct SpanRow {
        const char* source;
        const char* tokens;
        const char* reports;
    };
    for (const SpanRow& row : {
             SpanRow{"", "|", ""},
             SpanRow{" ação\t<= 0x1F.a", "ação|<=|0x1F|.|a||", ""},
             SpanRow{"1_0.5e-3_ 1e+ \"a\\n\"", "1_0.5e-3|_|1|e|+|\"a\\n\"||", ""},
             SpanRow{"a // b \t\r\n\n", "a|// b|\n|", ""},
             SpanRow{"x <- @\x80.", "x|<-|@\x80|.||", "<-|@\x80|"},
             SpanRow{"\"a\\q\\é\"", "\"a\\q\\é\"||", "\\q|\\\xC3|"},
             SpanRow{"\"ab\nc", "\"ab|\n|c||", "\"ab\n|"},
             SpanRow{"c \"ab", "c|\"ab||", "\"ab|"},
             SpanRow{"0x+99999999999999999999 1e99.b", "0x|+|99999999999999999999|1e99|.|b||",
                     "0x|99999999999999999999|1e99|"},
         }) {
        SCOPED_TRACE(row.source);
        const SourceFile source("t", row.source);
        Diagnostics diagnostics;
        const TokenList list = Tokenize(source, diagnostics, true);
        std::string tokens;
        for (const Token& token : list.tokens) {
            if (token.kind != Tok::End) tokens += source.Slice(token.span) + "|";
        }
        std::string reports;
        for (const Diagnostic& item : diagnostics.items) reports += source.Slice(item.span) + "|";
        EXPECT_EQ(list.tokens.back().span.start, source.text.size());
        EXPECT_EQ(tokens, row.tokens);
        EXPECT_EQ(reports, row.reports);
    }
}

TEST(Lexer, CommentsAreTokensOnDemand) {
    EXPECT_EQ(Lex("a // b  \r\n//\nc").tokens, "a nl c nl");
    EXPECT_EQ(Lex("a // b  \r\n//\nc", true).tokens, "a <// b> nl <//> nl c nl");
}

TEST(Lexer, ForeignWordsInAnySpelling) {
    EXPECT_EQ(LegacyHint("FIMSE"), "termine o bloco com \"fim\"");
    EXPECT_EQ(LegacyHint("Faça"), "nao existe: a condicao termina no fim da linha");
    EXPECT_EQ(LegacyHint("fim"), "");
}

}  // namespace
}  // namespace tavrel::core::script
