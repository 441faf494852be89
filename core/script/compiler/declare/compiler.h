// What all passes of one compile share: the units, where reports go, the program that grows, the world's table and the
// numbers of names. Compile makes one for each call. The passes leave what they find out in Declarations, and what
// runs in the Program.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "core/script/compiler/declare/name_table.h"
#include "core/script/program/program.h"
#include "core/script/source/diagnostics.h"
#include "core/script/syntax/syntax_tree.h"
#include "core/script/world/world_api.h"

namespace tavrel::core::script {

struct Compiler {
    std::vector<Unit> units;  // the main script first, then its imports; never grows, so that pointers into it hold
    Diagnostics& diagnostics;
    Program& program;
    const Api* api;  // null for a script without a world
    NameTable names;

    [[nodiscard]] const Unit& Main() const { return units[0]; }

    // Reports a fault at a place of a unit. An empty hint means none.
    void Error(const Unit& where, Span span, std::string message, std::string hint = {});

    // The text of a type in a report. Empty once reports are dropped: names are long where a script wants them so.
    [[nodiscard]] std::string TypeName(TypeId type) const;
    [[nodiscard]] Kind KindOf(TypeId type) const { return program.types.KindOf(type); }
};

// Appends a function without code to a program.
FunctionId AppendFunction(Program& program, std::string name, std::size_t params, TypeId result, FileId file);

// A name in double quotes, as messages show it.
[[nodiscard]] std::string Quoted(std::string_view name);

// `text` where one of the two types is real and the other inteiro, else empty.
[[nodiscard]] std::string ConversionHint(TypeId one, TypeId other, const char* text);

}  // namespace tavrel::core::script
