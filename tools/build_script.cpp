// The way from a path to a program that "verificar" and "executar" share: read, build with imports from the script's
// own folder, and print what the build reports, warnings too.
#include "tools/build_script.h"

#include <string>
#include <utility>

#include "core/script/compiler/build.h"
#include "core/script/world/world_api.h"
#include "tools/console.h"
#include "tools/script_files.h"

namespace tavrel::tools {

bool BuildScript(const std::filesystem::path& path, core::script::Program& program) {
    const std::string name = Shown(path);
    std::string text;
    if (!ReadText(path, text)) {
        PrintError("erro: nao consegui ler " + name + "\n");
        return false;
    }
    core::script::Diagnostics diagnostics;
    const bool built = core::script::BuildWithImports(core::script::SourceFile(name, std::move(text)), LoaderFor(path),
                                                      diagnostics, program, &core::script::WorldApi());
    if (!diagnostics.items.empty()) PrintError(diagnostics.Describe());
    return built;
}

}  // namespace tavrel::tools
