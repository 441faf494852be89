// How a game embeds the language: compile a script, give it a world, run its hooks. Usage: host_example FILE [TICKS]
#include <cstdlib>
#include <fstream>
#include <iostream>
#include <iterator>

#include "core/script/compiler/build.h"
#include "core/script/world/world_api.h"
#include "examples/host/world.h"

namespace {

using tavrel::core::script::Diagnostics;
using tavrel::core::script::Program;
using tavrel::core::script::SourceFile;
using tavrel::core::script::WorldApi;

example::WorldNumbers Numbers() {
    example::WorldNumbers numbers;
    for (const auto& function : WorldApi().functions) numbers[function.name] = function.id;
    for (const auto& field : WorldApi().namespaceFields) {
        numbers[std::string(field.space).append(".").append(field.name)] = field.id;
    }
    for (const auto& field : WorldApi().valueFields) {
        const bool object = field.kind == tavrel::core::script::Kind::Object;
        numbers[std::string(object ? "objeto." : "corpo.").append(field.name)] = field.id;
    }
    return numbers;
}

bool Compile(const std::string& path, Program& program) {
    std::ifstream file(path, std::ios::binary);
    std::string text{std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
    if (!file.is_open()) {
        std::cerr << "erro: nao consegui ler " << path << "\n";
        return false;
    }
    Diagnostics diagnostics;
    const auto noImports = [](const std::string&, SourceFile&) { return false; };
    const bool built = tavrel::core::script::BuildWithImports(SourceFile("jogo.tvl", std::move(text)), noImports,
                                                              diagnostics, program, &WorldApi());
    std::cerr << diagnostics.Describe();
    return built;
}

}  // namespace

int main(int argc, char** argv) {
    Program program;
    if (argc < 2 || !Compile(argv[1], program)) return EXIT_FAILURE;
    example::TinyWorld world(Numbers());
    const std::string fault = example::Play(program, world, argc > 2 ? std::atoi(argv[2]) : 200);
    for (const std::string& line : world.log) std::cout << line << "\n";
    if (!fault.empty()) std::cerr << fault << "\n";
    return fault.empty() ? EXIT_SUCCESS : EXIT_FAILURE;
}
