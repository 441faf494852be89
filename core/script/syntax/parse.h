// Source text in, syntax tree out. The parser never stops on a fault: it reports, puts something in the tree, and
// goes on, so that one run shows as many faults as the collection holds.
#pragma once

#include <string>

#include "core/script/source/diagnostics.h"
#include "core/script/syntax/syntax_tree.h"

namespace tavrel::core::script {

// How deep expressions, types and blocks may nest, all counted together; far above what people write, and low enough
// for the smallest main stack that we run on. A deeper source is reported once and not read further.
inline constexpr int MaxNesting = 500;

// Moves `source` into `unit`, reads it, and leaves in `unit` what could be read. True when `diagnostics` holds no
// error at the end, faults reported there before included.
[[nodiscard]] bool Parse(SourceFile source, Diagnostics& diagnostics, Unit& unit);

// Reads one written type out of `text`, a row of the world's table, and appends it to the types of `unit`; its index
// goes to `out`. False when the text is no type, which is reported against a source named "<api>".
[[nodiscard]] bool ParseTypeText(const std::string& text, Unit& unit, Diagnostics& diagnostics, TypeRefId& out);

}  // namespace tavrel::core::script
