// The six comparisons, as the operand of Compare.
#pragma once

#include <cstdint>

namespace tavrel::core::script {

// The numbers enter program digests.
enum class Comparison : std::uint8_t {
    Equal = 0,
    NotEqual = 1,
    Less = 2,
    LessEqual = 3,
    Greater = 4,
    GreaterEqual = 5
};

// The comparison that holds exactly where the other does not, NaN aside.
constexpr Comparison Opposite(Comparison comparison) {
    switch (comparison) {
        case Comparison::Equal: return Comparison::NotEqual;
        case Comparison::NotEqual: return Comparison::Equal;
        case Comparison::Less: return Comparison::GreaterEqual;
        case Comparison::LessEqual: return Comparison::Greater;
        case Comparison::Greater: return Comparison::LessEqual;
        case Comparison::GreaterEqual: return Comparison::Less;
    }
    return comparison;
}

}  // namespace tavrel::core::script
