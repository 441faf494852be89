// Scripts in, compiled programs and their reports out, for tests of the compiler.
#pragma once

#include <gtest/gtest.h>

#include <map>
#include <string>
#include <vector>

#include "core/script/compiler/build.h"
#include "core/script/program/listing.h"
#include "core/script/world/world_api.h"

namespace tavrel::core::script {

struct Compiled {
    bool good = false;
    std::string reports;
    Program program;

    // The code of the function of that name on one line, "; " between the operations.
    [[nodiscard]] std::string Listing(const std::string& name) const {
        for (const Function& function : program.functions) {
            if (function.name != name) continue;
            std::string listing;
            for (char letter : ListFunction(program, function)) {
                listing += letter == '\n' ? std::string("; ") : std::string(1, letter);
            }
            return listing.substr(0, listing.find_last_not_of("; ") + 1);
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
