// What Format takes it gives back token for token, in a layout that it does not change again.
#include <cstddef>
#include <cstdint>
#include <string>

#include "core/script/syntax/formatter.h"
#include "core/script/syntax/lexer.h"
#include "tests/fuzz/require.h"

namespace tavrel::fuzz {

namespace {

using namespace core::script;

// Every token that means something, and every comment, in order; the ends of lines are the formatter's to place.
std::string TokensOf(const SourceFile& source) {
    Diagnostics ignored;
    const TokenList list = Tokenize(source, ignored, true);
    std::string all;
    for (const Token& token : list.tokens) {
        if (token.kind == Tok::Newline || token.kind == Tok::End) continue;
        std::string_view text = source.View(token.span);
        if (token.kind == Tok::Comment) text = token.text;
        all.append(std::to_string(static_cast<int>(token.kind))).append(" ").append(text).append("\n");
    }
    return all;
}

}  // namespace

}  // namespace tavrel::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace tavrel::fuzz;
    using namespace tavrel::core::script;
    const SourceFile source("m.tvl", TextOf(data, size));
    Diagnostics diagnostics;
    std::string text;
    if (!Format(source, diagnostics, text)) {
        Require(diagnostics.errors > 0 && text.empty());
        return 0;
    }
    const SourceFile formatted("m.tvl", text);
    Require(TokensOf(source) == TokensOf(formatted));
    Diagnostics again;
    std::string second;
    Require(Format(formatted, again, second) && second == text);
    return 0;
}
