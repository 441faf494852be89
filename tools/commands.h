// The commands of the tool. Each takes the whole command line, prints what it has to say and returns the exit code.
#pragma once

#include <string>
#include <vector>

namespace tavrel::tools {

// "verificar": compiles each file and shows its faults, or what it holds and its digest.
[[nodiscard]] int CheckCommand(const std::vector<std::string>& args);

// "formatar": brings each file into the canonical layout.
[[nodiscard]] int FormatCommand(const std::vector<std::string>& args);

// "executar": runs one script without a world.
[[nodiscard]] int RunCommand(const std::vector<std::string>& args);

}  // namespace tavrel::tools
