// Division by a constant through a multiplication, a fraction of the time of the processor's own division. The method
// and its proof: Granlund and Montgomery, "Division by Invariant Integers using Multiplication" (1994), for signed
// numbers and a divisor of at least 2 in size.
#pragma once

#include <cstdint>

namespace tavrel::core::script {

struct Divisor {
    std::int64_t number = 2;
    std::int64_t multiplier = 0;  // 2^(63 + shift) / |number| rounded up, less 2^64
    std::int32_t shift = 0;
};

#ifdef __SIZEOF_INT128__

// The constants for a number other than 0, 1, -1 and the least integer.
[[nodiscard]] inline Divisor MakeDivisor(std::int64_t number) {
    __extension__ using Wide = unsigned __int128;
    const std::uint64_t size =
        number < 0 ? std::uint64_t{0} - static_cast<std::uint64_t>(number) : static_cast<std::uint64_t>(number);
    Divisor divisor{number, 0, 0};
    while ((std::uint64_t{1} << static_cast<unsigned>(divisor.shift + 1)) < size) ++divisor.shift;
    const Wide power = Wide{1} << static_cast<unsigned>(64 + divisor.shift);
    divisor.multiplier = static_cast<std::int64_t>(static_cast<std::uint64_t>(power / size + 1));
    return divisor;
}

// a / number, toward zero.
[[nodiscard]] inline std::int64_t Quotient(std::int64_t a, const Divisor& divisor) {
    __extension__ using Wide = __int128;
    const auto high = static_cast<std::int64_t>((static_cast<Wide>(divisor.multiplier) * a) >> 64);
    const std::int64_t quotient = ((a + high) >> divisor.shift) - (a >> 63);
    return divisor.number < 0 ? -quotient : quotient;
}

#else

// Without a product of 128 bits the processor's own division serves.
[[nodiscard]] inline Divisor MakeDivisor(std::int64_t number) {
    return {number, 0, 0};
}
[[nodiscard]] inline std::int64_t Quotient(std::int64_t a, const Divisor& divisor) {
    return a / divisor.number;
}

#endif

// a % number, with the sign of a.
[[nodiscard]] inline std::int64_t Remainder(std::int64_t a, const Divisor& divisor) {
    return a - Quotient(a, divisor) * divisor.number;
}

}  // namespace tavrel::core::script
