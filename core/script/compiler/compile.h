// Parsed units in, a compiled program out: the whole semantic analysis and code generation.
#pragma once

#include <vector>

#include "core/script/program/program.h"
#include "core/script/source/diagnostics.h"
#include "core/script/syntax/syntax_tree.h"
#include "core/script/world/world_api.h"

namespace tavrel::core::script {

// Compiles `units`, the main script first, into a fresh `program`. True means that no error was reported and that the
// program is complete with its digest; false leaves a partly filled program that must not be run. `api` is the
// world's table, or null for a script without a world.
[[nodiscard]] bool Compile(std::vector<Unit> units, Diagnostics& diagnostics, Program& program, const Api* api);

}  // namespace tavrel::core::script
