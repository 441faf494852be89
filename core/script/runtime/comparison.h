// What the preparation of code needs to know of the six comparisons of the operation Compare, by their numbers:
// 0 "==", 1 "!=", 2 "<", 3 "<=", 4 ">", 5 ">=".
#pragma once

#include <cstdint>

namespace tavrel::core::script {

inline constexpr std::uint8_t ComparisonCount = 6;

// The comparison that is true exactly when the given one is false. A NaN is no exception, since it compares as equal
// in all that asks for an order.
[[nodiscard]] constexpr std::uint8_t OppositeOf(std::uint8_t comparison) {
    constexpr std::uint8_t Opposites[ComparisonCount] = {1, 0, 5, 4, 3, 2};
    return Opposites[comparison];
}

// The comparison that says the same with its operands exchanged.
[[nodiscard]] constexpr std::uint8_t MirroredOf(std::uint8_t comparison) {
    constexpr std::uint8_t Mirrored[ComparisonCount] = {0, 1, 4, 5, 2, 3};
    return Mirrored[comparison];
}

// The orders of two operands that make a comparison true, as bits: 1 less, 2 equal, 4 greater.
[[nodiscard]] constexpr std::uint16_t OrdersOf(std::uint8_t comparison) {
    constexpr std::uint16_t Orders[ComparisonCount] = {2, 5, 1, 3, 4, 6};
    return Orders[comparison];
}

}  // namespace tavrel::core::script
