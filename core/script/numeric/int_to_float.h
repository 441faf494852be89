// 64-bit integers as floating-point numbers, rounded once to the nearest, ties to even, on every machine.
#pragma once

#include <cstdint>

namespace tavrel::core::script {

// Float is float or double. 32-bit x86 converts in the old registers, and g++ would go on with their wider number where
// the rounded one is meant, so there it is sent through memory.
template <class Float>
[[nodiscard]] inline Float IntToFloat(std::int64_t value) {
#if defined(__i386__)
    volatile Float rounded = static_cast<Float>(value);
    return rounded;
#else
    return static_cast<Float>(value);
#endif
}

}  // namespace tavrel::core::script
