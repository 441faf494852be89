#include "script_lsp/symbols.h"

#include <gtest/gtest.h>

#include <string>
#include <utility>

#include "core/script/syntax/parse.h"

namespace tavrel::script_lsp {

namespace {

using core::script::Diagnostics;
using core::script::SourceFile;
using core::script::Unit;

std::string Listed(const Word& word) {
    return "[" + word.text + "|" + word.qualifier + "|" + std::to_string(word.start) + "-" + std::to_string(word.end) +
           (word.dotted ? "|." : "") + "]";
}

TEST(WordAt, FindsTheWordAndTheNamesBeforeIt) {
    const struct {
        const char* text;
        std::uint64_t offset;
        const char* word;
    } rows[] = {
        {"alfa", 2, "[alfa||0-4]"},
        {"alfa", 99, "[alfa||0-4]"},
        {"a  b", 2, "[||2-2]"},
        {"pos.", 4, "[|pos|4-4|.]"},
        {"x = a.b.c", 9, "[c|a.b|8-9|.]"},
        {"a.b.c", 2, "[b|a|2-3|.]"},
        {"a.b", 1, "[a||0-1]"},
        {"f().x", 5, "[x||4-5|.]"},
        {"..x", 3, "[x||2-3|.]"},
        {".a.x", 4, "[x|a|3-4|.]"},
        {"a. x", 4, "[x||3-4]"},
        {"a\xC3\xA7\xC3\xA3o.\xF0\x9F\x98\x80", 8, "[\xF0\x9F\x98\x80|a\xC3\xA7\xC3\xA3o|7-11|.]"},
        {"", 0, "[||0-0]"},
    };
    for (const auto& row : rows) EXPECT_EQ(Listed(WordAt(row.text, row.offset)), row.word) << row.text;
}

TEST(WordAt, ReadsAChainOfMillionsOfNames) {
    std::string text;
    for (int i = 0; i < 3'000'000; ++i) text += "a.";
    EXPECT_EQ(WordAt(text, text.size()).qualifier.size(), text.size() - 1);
}

// Each name of a behaviour carries the behaviour's own, so the whole list could be the square of the script.
TEST(Symbols, StayWithinBounds) {
    std::string text = "modulo M\ncomportamento " + std::string(100'000, 'b') + "\n";
    for (int i = 0; i < 100'000; ++i) text += "a" + std::to_string(i) + ": real\n";
    Diagnostics ignored;
    Unit unit;
    ASSERT_TRUE(Parse(SourceFile("m.tvl", text + "fim\n"), ignored, unit));
    std::uint64_t bytes = 0;
    for (const Symbol& symbol : Symbols(unit)) bytes += symbol.detail.size();
    EXPECT_LE(bytes, MaxDetailBytes);
    EXPECT_GT(bytes, MaxDetailBytes - 200'000);
}

// A script with faults still has what could be read of it.
TEST(Symbols, OfAFaultyScript) {
    Diagnostics ignored;
    Unit unit;
    EXPECT_FALSE(Parse(SourceFile("m.tvl", "modulo M\nestado\n a\n b: lista de\n c: dicionario de texto para [\nfim\n"),
                       ignored, unit));
    std::string all;
    for (const Symbol& symbol : Symbols(unit)) all += symbol.detail + ";";
    EXPECT_EQ(all, "estado b: lista de o fim do arquivo;estado c: dicionario de texto para o fim do arquivo;");
}

}  // namespace

}  // namespace tavrel::script_lsp
