#include <cstdio>
#include <cstdlib>
#include <string>

#include "bench/generate_script.h"
int main(int argc, char** argv) {
    std::string s = tavrel::bench::GenerateScript(std::atoi(argv[1]), argc > 2 ? tavrel::bench::Language::Lua : tavrel::bench::Language::Script);
    std::fwrite(s.data(), 1, s.size(), stdout);
}
