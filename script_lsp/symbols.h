// What the server's answers are made of: the names that a script declares, with one line of text each, types and
// signatures as text, and the word under the cursor. It all comes from the syntax tree, which a script with faults has
// as well; no name is resolved, and every result owns its texts.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "core/script/source/source_file.h"
#include "core/script/syntax/syntax_tree.h"
#include "core/script/world/world_api.h"

namespace tavrel::script_lsp {

// What a name is, in the protocol's numbers for items of completion.
enum ItemKind : std::int32_t {
    FunctionItem = 3,
    FieldItem = 5,
    VariableItem = 6,
    ModuleItem = 9,
    EnumItem = 13,
    KeywordItem = 14,
    EnumMemberItem = 20,
    StructItem = 22,
};

struct Symbol {
    std::string name;
    std::string detail;  // the one line shown for it
    ItemKind kind = VariableItem;
    core::script::Span span;  // the place to jump to
};

// Past this many bytes of detail a script gives no more symbols: each name in a behaviour repeats that of the
// behaviour, so a hostile script could ask for the square of its size.
inline constexpr std::uint64_t MaxDetailBytes = std::uint64_t{128} * 1024 * 1024;

// The tree of a file, as far as it can be read; what is wrong with it is not reported.
[[nodiscard]] core::script::Unit TreeOf(core::script::SourceFile file);

// The module's names, then those of behaviours, records, enumerations with their members, actions, and the behaviours
// themselves. A search takes the first match, so the order is part of the answer. Parameters of functions, locals,
// record fields, hooks and events are not among them.
[[nodiscard]] std::vector<Symbol> Symbols(const core::script::Unit& unit);

// A type as the script writes it, with one blank between words; empty for none.
[[nodiscard]] std::string TypeText(const core::script::Unit& unit, core::script::TypeRefId type);

// One line for a function of the world.
[[nodiscard]] std::string ApiSignature(const core::script::ApiFunction& function);

struct Word {
    std::string text;         // may be empty
    std::string qualifier;    // the dotted names before it, without the last point: "a.b" for "a.b.c"
    std::uint32_t start = 0;  // span of `text` alone
    std::uint32_t end = 0;
    bool dotted = false;  // a point stands directly before `text`
};

// The word around an offset, or ending there. White space is not looked through.
[[nodiscard]] Word WordAt(const std::string& text, std::uint64_t offset);

}  // namespace tavrel::script_lsp
