// What the preparation of code needs to know of the six comparisons, beside their opposites.
#pragma once

#include <cstdint>

#include "core/script/program/comparison.h"

namespace tavrel::core::script {

// Whether the number that an instruction carries is one of a comparison.
[[nodiscard]] constexpr bool IsComparison(std::uint8_t number) {
    return number <= static_cast<std::uint8_t>(Comparison::GreaterEqual);
}

// The comparison that says the same with its operands exchanged.
[[nodiscard]] constexpr Comparison Mirrored(Comparison comparison) {
    switch (comparison) {
        case Comparison::Equal:
        case Comparison::NotEqual: return comparison;
        case Comparison::Less: return Comparison::Greater;
        case Comparison::LessEqual: return Comparison::GreaterEqual;
        case Comparison::Greater: return Comparison::Less;
        case Comparison::GreaterEqual: return Comparison::LessEqual;
    }
    return comparison;
}

// The orders of two operands that make a comparison true, as bits: 1 less, 2 equal, 4 greater.
[[nodiscard]] constexpr std::uint16_t OrdersOf(Comparison comparison) {
    switch (comparison) {
        case Comparison::Equal: return 2;
        case Comparison::NotEqual: return 5;
        case Comparison::Less: return 1;
        case Comparison::LessEqual: return 3;
        case Comparison::Greater: return 4;
        case Comparison::GreaterEqual: return 6;
    }
    return 0;
}

}  // namespace tavrel::core::script
