// Random scripts that are valid and of the right types throughout, for checking what must hold for every script. They
// go through all statements, operators and natives, deeply enough to surprise; what they compute means nothing, and
// faults while they run are part of it.
#pragma once

#include <cstdint>
#include <string>

namespace tavrel::tests {

// The script of a seed: the same text on every machine. With `world` it calls the world's functions and reads its
// values, so it needs a host; without, it runs by itself. Blanks, empty lines and comments are strewn about.
[[nodiscard]] std::string RandomScript(std::uint64_t seed, bool world);

}  // namespace tavrel::tests
