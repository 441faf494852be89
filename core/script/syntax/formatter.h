// The one layout of a source text: indentation by block depth, one blank between tokens where the layout wants one, at
// most one empty line in a row, one line feed at the end. It works on tokens and parses nothing, so a file with faults
// of syntax is laid out as well, as long as it lexes. Every token keeps its bytes, and formatting a second time changes
// nothing. The caller owns all that goes in and out, and restores line ends of its own.
#pragma once

#include <string>

#include "core/script/source/diagnostics.h"
#include "core/script/source/source_file.h"

namespace tavrel::core::script {

// Lays `source` out into `out`, with LF line ends. False, with `out` left alone, when `diagnostics` then holds an
// error; pass a fresh one. Besides lexical faults only a layout too large to keep is refused.
[[nodiscard]] bool Format(const SourceFile& source, Diagnostics& diagnostics, std::string& out);

}  // namespace tavrel::core::script
