// What the fuzz targets share: an input as text or as several sources, and the end of the process where a property does
// not hold, so that the fuzzer keeps the input.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <map>
#include <string>

#include "core/script/compiler/build.h"

namespace tavrel::fuzz {

inline void Require(bool holds) {
    if (!holds) std::abort();
}

inline std::string TextOf(const std::uint8_t* data, std::size_t size) {
    return {reinterpret_cast<const char*>(data), size};
}

// The main script and what it may import. A line "//// name" begins the source of that name.
struct Sources {
    core::script::SourceFile main;
    std::map<std::string, std::string> imports;

    explicit Sources(const std::string& text) {
        constexpr const char* Mark = "//// ";
        std::size_t end = std::min(text.find(Mark), text.size());
        main = core::script::SourceFile("m.tvl", text.substr(0, end));
        while (end < text.size()) {
            const std::size_t name = end + 5;
            const std::size_t line = std::min(text.find('\n', name), text.size());
            end = std::min(text.find(Mark, line), text.size());
            imports[text.substr(name, line - name)] = text.substr(line, end - line);
        }
    }

    [[nodiscard]] bool Build(core::script::Diagnostics& diagnostics, core::script::Program& program) const {
        const auto load = [this](const std::string& name, core::script::SourceFile& out) {
            const auto found = imports.find(name);
            if (found == imports.end()) return false;
            out = core::script::SourceFile(name + ".tvl", found->second);
            return true;
        };
        return core::script::BuildWithImports(main, load, diagnostics, program, &core::script::WorldApi());
    }
};

}  // namespace tavrel::fuzz
