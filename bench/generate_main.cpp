// generate_script LINES [--lua]          a long game of LINES lines, to standard output
// generate_script --many KIND COUNT      a script with COUNT of one thing, to standard output
// generate_script --imports COUNT FOLDER the files of a script with COUNT imports; the main one is FOLDER/main.tvl
// generate_script --kinds                the kinds that "--many" knows
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <iostream>
#include <string>
#include <vector>

#include "bench/generate_many.h"
#include "bench/generate_script.h"

namespace {

using namespace tavrel::bench;

constexpr int MaxCount = 10'000'000;

int Usage() {
    std::cerr << "usage: generate_script LINES [--lua] | --many KIND COUNT | --imports COUNT FOLDER | --kinds\n";
    return 2;
}

// A count from 1 to MaxCount; 0 for anything else.
int Count(const std::string& text) {
    char* end = nullptr;
    const long value = std::strtol(text.c_str(), &end, 10);
    return *end == '\0' && value >= 1 && value <= MaxCount ? static_cast<int>(value) : 0;
}

int WriteImports(int count, const std::string& folder) {
    std::ofstream(folder + "/main.tvl", std::ios::binary) << GenerateImporter(count);
    for (int number = 0; number < count; ++number) {
        std::ofstream file(folder + "/m" + std::to_string(number) + ".tvl", std::ios::binary);
        file << GenerateImported(number);
        if (!file.flush()) {
            std::cerr << "cannot write into " << folder << "\n";
            return 1;
        }
    }
    return 0;
}

int WriteMany(const std::string& name, int count) {
    for (const ManyKind& kind : ManyKinds()) {
        if (kind.name != name) continue;
        std::cout << kind.generate(count);
        return 0;
    }
    return Usage();
}

int WriteKinds() {
    for (const ManyKind& kind : ManyKinds()) std::cout << kind.name << "\n";
    return 0;
}

}  // namespace

int main(int argc, char** argv) {
    const std::vector<std::string> args(argv + 1, argv + argc);
    if (args.size() == 1 && args[0] == "--kinds") return WriteKinds();
    if (args.size() == 3 && args[0] == "--many" && Count(args[2]) > 0) return WriteMany(args[1], Count(args[2]));
    if (args.size() == 3 && args[0] == "--imports" && Count(args[1]) > 0) return WriteImports(Count(args[1]), args[2]);
    const bool lua = args.size() == 2 && args[1] == "--lua";
    if ((args.size() != 1 && !lua) || Count(args[0]) == 0) return Usage();
    std::cout << GenerateScript(Count(args[0]), lua ? Language::Lua : Language::Script);
    return 0;
}
