#include "tools/arguments.h"
#include "tools/commands.h"
#include "tools/console.h"

namespace tavrel::tools {

int FormatCommand(const std::vector<std::string>& args) {
    FileArguments arguments;
    if (!TakeFileArguments(args, true, arguments)) return RefusedExit;
    PrintError("erro: \"formatar\" ainda nao existe nesta versao\n");
    return FailedExit;
}

}  // namespace tavrel::tools
