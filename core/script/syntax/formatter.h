// The one layout of a source text: indentation by block depth, one blank between tokens where the layout wants one, at
// most one empty line in a row, one line feed at the end. It works on tokens and parses nothing, so a file with faults
// of syntax is laid out as well, as long as it lexes. Every token keeps its bytes, and formatting a second time changes
// nothing. The caller owns all that goes in and out, and restores line ends of its own.
#pragma once

#include <cstdint>
#include <string>

#include "core/script/source/diagnostics.h"
#include "core/script/source/source_file.h"

namespace tavrel::core::script {

enum class FormatResult : std::uint8_t {
    Done,
    Unreadable,  // lexical faults: the source cannot be read whole
    TooLarge,    // the layout would be many times larger than the source, as that of blocks that nothing ever closes
};

// Lays `source` out into `out`, with LF line ends. Whatever is refused leaves `out` alone and an error in
// `diagnostics`; pass a fresh one.
[[nodiscard]] FormatResult TryFormat(const SourceFile& source, Diagnostics& diagnostics, std::string& out);

// The same where the reason of a refusal does not matter: true when the layout was made.
[[nodiscard]] bool Format(const SourceFile& source, Diagnostics& diagnostics, std::string& out);

}  // namespace tavrel::core::script
