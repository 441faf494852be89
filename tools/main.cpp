// The entry of the tool: takes the command from the command line and hands the rest to it.
#include <new>
#include <stdexcept>
#include <string>
#include <vector>

#include "core/platform.h"
#include "tools/arguments.h"
#include "tools/commands.h"
#include "tools/console.h"
#include "tools/memory.h"
#include "tools/serve.h"
#include "tools/usage.h"

namespace tavrel::tools {

namespace {

// A cut output must not pass for a whole one.
int Finish(int code) {
    if (Flush() || code != GoodExit) return code;
    PrintError("erro: nao consegui escrever a saida\n");
    return FailedExit;
}

int Dispatch(const std::vector<std::string>& args) {
    if (args.size() < 2) {
        Usage();
        return RefusedExit;
    }
    const std::string& command = args[1];
    if (command == "--lsp") {
        static_cast<void>(Serve());
        return GoodExit;
    }
    PrepareMemory();
    if (command == "--ajuda" || command == "-h" || command == "--help") {
        Usage();
        return GoodExit;
    }
    if (command == "verificar") return Finish(CheckCommand(args));
    if (command == "formatar") return Finish(FormatCommand(args));
    if (command == "executar") return Finish(RunCommand(args));
    PrintError("erro: nao conheco o comando \"" + command + "\"\n");
    Usage();
    return RefusedExit;
}

}  // namespace

}  // namespace tavrel::tools

// The standard library throws only when memory ends; nothing of ours throws.
int main(int argc, char** argv) {
    try {
        return tavrel::tools::Dispatch(tavrel::core::Arguments(argc, argv));
    } catch (const std::bad_alloc&) {
        tavrel::tools::PrintError("erro: faltou memoria\n");
    } catch (const std::length_error&) {
        tavrel::tools::PrintError("erro: faltou memoria\n");
    }
    return tavrel::tools::FailedExit;
}
