// One pass over the words behind the command, in order. Paths are looked up as they come, so that the first wrong word
// is the one reported, and nothing has been read by then.
#include "tools/arguments.h"

#include <limits>

#include "tools/console.h"
#include "tools/script_files.h"

namespace tavrel::tools {

namespace {

constexpr std::size_t FirstArgument = 2;  // behind the program and the command

bool LooksLikeOption(const std::string& argument) {
    return !argument.empty() && argument[0] == '-';
}

bool RefuseOption(const std::string& argument) {
    PrintError("erro: nao conheco a opcao " + argument + "\n");
    return false;
}

// The number behind the option at `index`, which steps onto it.
bool TakeNumber(const std::vector<std::string>& args, std::size_t& index, unsigned long long& out) {
    const std::string& option = args[index];
    ++index;
    if (Number(args[index], out)) return true;
    PrintError("erro: " + option + " pede um numero\n");
    return false;
}

}  // namespace

bool Number(const std::string& text, unsigned long long& out) {
    constexpr unsigned long long MaxNumber = std::numeric_limits<unsigned long long>::max();
    if (text.empty()) return false;
    unsigned long long value = 0;
    for (const char character : text) {
        if (character < '0' || character > '9') return false;
        const auto digit = static_cast<unsigned long long>(character - '0');
        if (value > (MaxNumber - digit) / 10) return false;
        value = value * 10 + digit;
    }
    out = value;
    return true;
}

bool TakeFileArguments(const std::vector<std::string>& args, bool mayCheck, FileArguments& out) {
    for (std::size_t index = FirstArgument; index < args.size(); ++index) {
        const std::string& argument = args[index];
        if (mayCheck && argument == "--conferir") {
            out.check = true;
        } else if (LooksLikeOption(argument)) {
            return RefuseOption(argument);
        } else if (!Collect(argument, out.paths)) {
            return false;
        }
    }
    if (!out.paths.empty()) return true;
    PrintError("erro: diga qual arquivo ou pasta\n");
    return false;
}

bool TakeRunArguments(const std::vector<std::string>& args, RunArguments& out) {
    std::vector<std::filesystem::path> paths;
    for (std::size_t index = FirstArgument; index < args.size(); ++index) {
        const std::string& argument = args[index];
        const bool followed = index + 1 < args.size();
        if (argument == "--ticks" && followed) {
            if (!TakeNumber(args, index, out.ticks)) return false;
        } else if (argument == "--semente" && followed) {
            if (!TakeNumber(args, index, out.seed)) return false;
        } else if (LooksLikeOption(argument)) {
            return RefuseOption(argument);
        } else if (!Collect(argument, paths)) {
            return false;
        }
    }
    if (paths.size() != 1) {
        PrintError("erro: \"executar\" roda um arquivo por vez\n");
        return false;
    }
    out.path = paths[0];
    return true;
}

}  // namespace tavrel::tools
