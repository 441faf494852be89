#include "core/script/runtime/random.h"

#include <bit>

namespace tavrel::core::script {

namespace {

constexpr std::uint64_t Multiplier = 0x5851F42D4C957F2D;
constexpr std::uint64_t SeededIncrement = 11;

// The finisher of SplitMix64.
std::uint64_t Mix(std::uint64_t z) {
    z = (z ^ (z >> 30U)) * 0xBF58476D1CE4E5B9;
    z = (z ^ (z >> 27U)) * 0x94D049BB133111EB;
    return z ^ (z >> 31U);
}

}  // namespace

RandomWords SeedWords(std::uint64_t seed, std::uint64_t salt) {
    const std::uint64_t mixed = Mix(seed + salt + 0x9E3779B97F4A7C15);
    return {(SeededIncrement + mixed) * Multiplier + SeededIncrement, SeededIncrement};
}

std::uint32_t DrawRandom(std::uint64_t& state, std::uint64_t& increment) {
    const std::uint64_t old = state;
    increment |= 1U;
    state = old * Multiplier + increment;
    const auto word = static_cast<std::uint32_t>(((old >> 18U) ^ old) >> 27U);
    return std::rotr(word, static_cast<int>(old >> 59U));
}

}  // namespace tavrel::core::script
