// The one crossing between byte offsets of UTF-8, as the front end counts, and the line and UTF-16 unit by which the
// protocol tells a place. Every text is accepted, broken UTF-8 too.
#pragma once

#include <cstdint>

#include "core/json.h"
#include "core/script/source/source_file.h"

namespace tavrel::script_lsp {

// Both counted from 0; `character` in UTF-16 code units within the line.
struct Position {
    std::int32_t line = 0;
    std::int32_t character = 0;
};

// An offset past the end answers for the end; one inside a character for the place behind it.
[[nodiscard]] Position PositionOf(const core::script::SourceFile& file, std::uint32_t offset);

// Always an offset within the text: past the last line its end, past the end of a line the place of its line feed,
// inside a surrogate pair the place behind the character.
[[nodiscard]] std::uint32_t OffsetOf(const core::script::SourceFile& file, Position position);

// A span in the protocol's form.
[[nodiscard]] core::Json RangeOf(const core::script::SourceFile& file, core::script::Span span);

}  // namespace tavrel::script_lsp
