// The command line of each command, taken whole before any script is read. A refused argument has printed its message,
// and the caller ends with `RefusedExit`.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace tavrel::tools {

inline constexpr int GoodExit = 0;
inline constexpr int FailedExit = 1;   // the command ran, and some file did not pass
inline constexpr int RefusedExit = 2;  // the command line itself is wrong

// What "verificar" and "formatar" are asked to do.
struct FileArguments {
    std::vector<std::filesystem::path> paths;
    bool check = false;  // "--conferir": look, and write nothing
};

// What "executar" is asked to do.
struct RunArguments {
    std::filesystem::path path;
    unsigned long long ticks = 60;
    unsigned long long seed = 1;
};

// Reads a plain decimal number of 64 bits. On false `out` keeps what it held.
[[nodiscard]] bool Number(const std::string& text, unsigned long long& out);

// Takes the arguments behind the command, `args[2]` and up. Only with `mayCheck` is "--conferir" an option.
[[nodiscard]] bool TakeFileArguments(const std::vector<std::string>& args, bool mayCheck, FileArguments& out);

// As TakeFileArguments, for exactly one script and the options of a run.
[[nodiscard]] bool TakeRunArguments(const std::vector<std::string>& args, RunArguments& out);

}  // namespace tavrel::tools
