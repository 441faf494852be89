// Writes random scripts into a folder, for comparing whole tools. usage: random_scripts FOLDER COUNT
#include <cstdint>
#include <cstdlib>
#include <string>

#include "tests/process.h"
#include "tests/random/script.h"

int main(int argc, char** argv) {
    if (argc != 3) return 2;
    const std::uint64_t count = std::strtoull(argv[2], nullptr, 10);
    for (std::uint64_t seed = 0; seed < count; ++seed) {
        const std::string file = std::string(argv[1]) + "/s" + std::to_string(seed) + ".tvl";
        tavrel::tests::WriteFile(file, tavrel::tests::RandomScript(seed, false));
    }
    return 0;
}
