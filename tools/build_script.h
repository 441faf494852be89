// From a path to a compiled program, with everything that there is to say about it said.
#pragma once

#include <filesystem>

#include "core/script/program/program.h"

namespace tavrel::tools {

// Reads a script, compiles it and its imports against the world's table, and prints errors and warnings. False when the
// file cannot be read or has errors.
[[nodiscard]] bool BuildScript(const std::filesystem::path& path, core::script::Program& program);

}  // namespace tavrel::tools
