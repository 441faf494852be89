#include "tools/arguments.h"
#include "tools/commands.h"
#include "tools/console.h"

namespace tavrel::tools {

int RunCommand(const std::vector<std::string>& args) {
    RunArguments arguments;
    if (!TakeRunArguments(args, arguments)) return RefusedExit;
    PrintError("erro: \"executar\" ainda nao existe nesta versao\n");
    return FailedExit;
}

}  // namespace tavrel::tools
