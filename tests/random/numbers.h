// The choices of a random test: a row of numbers that is the same on every machine, which the standard library's
// distributions are not.
#pragma once

#include <cstdint>
#include <iterator>

namespace tavrel::tests {

class RandomNumbers {
public:
    explicit RandomNumbers(std::uint64_t seed) : state(seed) {}

    // SplitMix64 (Steele, Lea, Flood: Fast splittable pseudorandom number generators).
    std::uint64_t Below(std::uint64_t count) {
        std::uint64_t word = (state += 0x9E3779B97F4A7C15U);
        word = (word ^ (word >> 30U)) * 0xBF58476D1CE4E5B9U;
        word = (word ^ (word >> 27U)) * 0x94D049BB133111EBU;
        return (word ^ (word >> 31U)) % count;
    }
    bool OneIn(std::uint64_t count) { return Below(count) == 0; }

    template <class List>
    const auto& OneOf(const List& list) {
        return *(std::begin(list) + static_cast<std::ptrdiff_t>(Below(std::size(list))));
    }

private:
    std::uint64_t state;
};

}  // namespace tavrel::tests
