// The generator behind "aleatorio": PCG32 (Melissa O'Neill, pcg-random.org), XSH-RR with 64 bits of state, seeded
// through the finisher of SplitMix64.
#pragma once

#include <cstdint>

namespace tavrel::core::script {

struct RandomWords {
    std::uint64_t state = 0;
    std::uint64_t increment = 1;
};

// The words after seeding.
[[nodiscard]] RandomWords SeedWords(std::uint64_t seed, std::uint64_t salt);

// One draw of 32 bits; steps `state` and writes `increment` back with its lowest bit set.
[[nodiscard]] std::uint32_t DrawRandom(std::uint64_t& state, std::uint64_t& increment);

}  // namespace tavrel::core::script
