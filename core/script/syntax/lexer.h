// Source text in, tokens out, in one pass. A lexical fault is reported and a token is produced all the same, so that
// the parser always gets a complete stream.
#pragma once

#include "core/script/source/diagnostics.h"
#include "core/script/source/source_file.h"
#include "core/script/syntax/token.h"

namespace tavrel::core::script {

// The tokens of `source`, which must outlive them or be moved into what does. Comments are tokens only with
// `keepComments`. A source too large for 32-bit offsets is reported and reads as empty.
[[nodiscard]] TokenList Tokenize(const SourceFile& source, Diagnostics& diagnostics, bool keepComments);

}  // namespace tavrel::core::script
