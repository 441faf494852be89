// Source files in, a compiled program out: parses the main script, follows its imports through a loader that the
// caller supplies, and compiles the lot. It knows no file system.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "core/script/program/program.h"
#include "core/script/source/diagnostics.h"
#include "core/script/source/source_file.h"
#include "core/script/world/world_api.h"

namespace tavrel::core::script {

// Fills the source of an import name as written; false when there is none.
using ImportLoader = std::function<bool(const std::string& name, SourceFile& out)>;

// True when the script and all it imports parsed and compiled. The caller owns `diagnostics` and `program`; `api` is
// the world's table, or null for a script without a world.
[[nodiscard]] bool BuildWithImports(SourceFile source, const ImportLoader& loader, Diagnostics& diagnostics,
                                    Program& program, const Api* api);

// Compiles a fixed list of files, the main script first, and follows no imports.
[[nodiscard]] bool Build(std::vector<SourceFile> files, Diagnostics& diagnostics, Program& program, const Api* api);

}  // namespace tavrel::core::script
