// The world's table, which is all text, in the compiler's own terms.
#pragma once

#include "core/script/compiler/declare/compiler.h"
#include "core/script/compiler/declare/declarations.h"

namespace tavrel::core::script {

// Declares everything of the world's table, so that a script sees it as if it had been declared, except that it cannot
// be redefined. Does nothing without a table. A fault of the table is reported like a fault of the script, with a hint
// that names the table. Types that the table writes are appended to the types of the main unit.
void Prelude(Compiler& compiler, Declarations& declarations);

// Whether the table lets scripts read actions through "entrada".
[[nodiscard]] bool HasInput(const Api* api);

}  // namespace tavrel::core::script
