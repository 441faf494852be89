// "verificar": builds each script by itself, with a program of its own, and sums up. One that fails stops no other.
#include <cstdint>
#include <filesystem>
#include <string>

#include "core/script/program/program.h"
#include "core/sha256.h"
#include "tools/arguments.h"
#include "tools/build_script.h"
#include "tools/commands.h"
#include "tools/console.h"
#include "tools/script_files.h"

namespace tavrel::tools {

namespace {

using core::script::Program;

void PrintSummary(const std::string& name, const Program& program) {
    Print(name + ": modulo " + program.name + ", " + std::to_string(program.functions.size()) + " funcao(oes), " +
          std::to_string(program.globals.size()) + " variavel(is), resumo " + core::ToHex(program.digest) + "\n");
}

bool CheckFile(const std::filesystem::path& path) {
    Program program;
    if (!BuildScript(path, program)) return false;
    PrintSummary(Shown(path), program);
    return true;
}

}  // namespace

int CheckCommand(const std::vector<std::string>& args) {
    FileArguments arguments;
    if (!TakeFileArguments(args, false, arguments)) return RefusedExit;
    std::int32_t failed = 0;
    for (const std::filesystem::path& path : arguments.paths) {
        if (!CheckFile(path)) ++failed;
    }
    const std::string count = std::to_string(arguments.paths.size());
    if (failed > 0) {
        PrintError(std::to_string(failed) + " de " + count + " arquivo(s) com erro\n");
        return FailedExit;
    }
    Print(count + " arquivo(s) sem erro\n");
    return GoodExit;
}

}  // namespace tavrel::tools
