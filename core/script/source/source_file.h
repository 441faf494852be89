// A source text with its name and line table. All positions in the front end are byte offsets into the text, carried
// as a Span; a line and column are worked out only when something is reported. Nothing here decodes or validates the
// bytes.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace tavrel::core::script {

// A half-open range of byte offsets.
struct Span {
    std::uint32_t start = 0;
    std::uint32_t end = 0;
};

// A place as people count it, from 1; the column counts characters, not bytes.
struct LineColumn {
    std::int32_t line = 1;
    std::int32_t column = 1;
};

// Offsets have 32 bits; a text above this size has no usable positions and is refused by the lexer.
inline constexpr std::size_t MaxSourceSize = 0xFFFFFFFF;

// Owns its strings. The text is kept off the small-string buffer, so that views into it survive a move of the file;
// a copy has a text of its own.
struct SourceFile {
    std::string name;
    std::string text;
    std::vector<std::uint32_t> lineStarts;  // offset of each line; entry 0 is 0

    SourceFile();
    SourceFile(std::string name, std::string text);

    // False for a text whose offsets do not fit a Span.
    [[nodiscard]] bool FitsOffsets() const { return text.size() <= MaxSourceSize; }

    // Line and column of an offset; one past the end answers for the end.
    [[nodiscard]] LineColumn At(std::uint32_t offset) const;

    // The text of a line, counted from 1, without its line end; empty for a line that is not there.
    [[nodiscard]] std::string Line(int number) const;

    // The bytes of a span, cut to the text.
    [[nodiscard]] std::string Slice(Span span) const { return std::string(View(span)); }

    // As Slice, without a copy: valid while this file, or the file it is moved into, lives.
    [[nodiscard]] std::string_view View(Span span) const;
};

}  // namespace tavrel::core::script
