// Scripts in, compiled programs and their reports out, for tests of the compiler.
#pragma once

#include <map>
#include <string>

#include "core/script/compiler/build.h"
#include "core/script/program/listing.h"
#include "core/script/world/world_api.h"

namespace tavrel::core::script {

struct Compiled {
    bool good = false;
    std::string reports;
    Program program;

    // The code of the function of that name as text.
    [[nodiscard]] std::string Code(const std::string& name) const {
        for (const Function& function : program.functions) {
            if (function.name == name) return ListFunction(program, function);
        }
        return "no function " + name;
    }
};

// Builds "m.tvl" with the given imports, by name.
inline Compiled CompileScript(const std::string& text, const std::map<std::string, std::string>& imports = {},
                              const Api* api = &WorldApi()) {
    Compiled result;
    Diagnostics diagnostics;
    auto loader = [&imports](const std::string& name, SourceFile& out) {
        auto found = imports.find(name);
        if (found == imports.end()) return false;
        out = SourceFile(name + ".tvl", found->second);
        return true;
    };
    result.good = BuildWithImports(SourceFile("m.tvl", text), loader, diagnostics, result.program, api);
    result.reports = diagnostics.Describe();
    return result;
}

}  // namespace tavrel::core::script
