// Square roots in whole numbers only, by Goldschmidt's iteration, rounded correctly.
// With m the mantissa and y near 1/sqrt(m), let s = m * y, near sqrt(m). Then u = 3 - s * y is near 2, and y * u / 2
// and s * u / 2 are nearer to what they are meant to be, with twice as many good bits each time. The table gives the
// first 7 bits or so. All numbers are fractions: y has no bits before the point, the others have two, and a shift
// behind HighProduct, which keeps the upper half of a product, halves and puts the point back. The last step leaves a
// root that is too small by at most a little over one last place, and an exact remainder says whether to round up. Odd
// exponents are made even by doubling m.
#include "core/script/numeric/float_internal.h"
#include "core/script/numeric/float_math.h"
#include "core/script/numeric/float_tables.h"

namespace tavrel::core::script {

namespace {

constexpr std::uint32_t Three = 0xc0000000;  // with 30 bits behind the point, and as such its arithmetic is modulo 4

std::uint32_t HighProduct(std::uint32_t a, std::uint32_t b) {
    return static_cast<std::uint32_t>(static_cast<std::uint64_t>(a) * b >> 32);
}

// Up to two less than the high half of the exact product, which the iterations allow for.
std::uint64_t HighProduct(std::uint64_t a, std::uint64_t b) {
    const std::uint64_t aHigh = a >> 32;
    const std::uint64_t aLow = a & 0xffffffff;
    const std::uint64_t bHigh = b >> 32;
    const std::uint64_t bLow = b & 0xffffffff;
    return aHigh * bHigh + (aHigh * bLow >> 32) + (aLow * bHigh >> 32);
}

// x = 4^e * m with m from 1 to below 4, two bits before the point.
// The two iterations keep inverse near 1/sqrt(m) and root near sqrt(m).
std::uint32_t RoundedRoot(std::uint32_t m, std::uint32_t estimate) {
    std::uint32_t inverse = estimate << 16;
    std::uint32_t root = HighProduct(m, inverse);
    std::uint32_t factor = Three - HighProduct(root, inverse);
    inverse = HighProduct(inverse, factor) << 1;
    root = HighProduct(root, factor) << 1;
    factor = Three - HighProduct(root, inverse);
    root = (HighProduct(root, factor) - 1) >> 6;
    // Now root is below sqrt(m) by at most a little over the last place: the square of the middle decides.
    const std::uint32_t remainder = (m << 16) - root * root;
    return root + ((root - remainder) >> 31);
}

std::uint64_t RoundedRoot(std::uint64_t m, std::uint32_t estimate) {
    std::uint32_t inverse32 = estimate << 16;
    std::uint32_t root32 = HighProduct(static_cast<std::uint32_t>(m >> 32), inverse32);
    std::uint32_t factor32 = Three - HighProduct(root32, inverse32);
    inverse32 = HighProduct(inverse32, factor32) << 1;
    root32 = HighProduct(root32, factor32) << 1;
    factor32 = Three - HighProduct(root32, inverse32);
    inverse32 = HighProduct(inverse32, factor32) << 1;

    const std::uint64_t inverse = static_cast<std::uint64_t>(inverse32) << 32;
    std::uint64_t root = HighProduct(m, inverse);
    const std::uint64_t factor = (static_cast<std::uint64_t>(Three) << 32) - HighProduct(root, inverse);
    root = (HighProduct(root, factor) - 2) >> 9;
    const std::uint64_t remainder = (m << 42) - root * root;
    return root + ((root - remainder) >> 63);
}

}  // namespace

float tavrel_libm_sqrtf(float x) {
    std::uint32_t bits = BitsOf(x);
    if (!IsPositiveNormal(bits)) [[unlikely]] {
        if (bits * 2 == 0 || bits == FloatInfinity) return x;
        if (bits > FloatInfinity) return tavrel_libm__math_invalidf(x);
        bits = NormalizedBits(x);
    }
    const bool even = (bits & SmallestNormalFloat) != 0;
    const std::uint32_t m = even ? (bits << 7) & FloatMagnitude : (bits << 8) | FloatSign;
    const std::uint32_t exponent = ((bits >> 1) + (FloatOne >> 1)) & FloatInfinity;
    const std::uint32_t root = RoundedRoot(m, tavrel_libm__rsqrt_tab[(bits >> 17) % 128]);
    return FloatOf((root & 0x007fffff) | exponent);
}

double tavrel_libm_sqrt(double x) {
    constexpr std::uint64_t Infinity = 0x7ff0000000000000;
    std::uint64_t bits = BitsOf(x);
    std::uint64_t top = bits >> 52;
    if (top - 1 >= 0x7fe) [[unlikely]] {
        if (bits * 2 == 0 || bits == Infinity) return x;
        if (bits > Infinity) return tavrel_libm__math_invalid(x);
        bits = BitsOf(x * 0x1p+52);
        top = (bits >> 52) - 52;
    }
    const std::uint64_t m = ((bits << 11) | 0x8000000000000000) >> (top & 1);
    const std::uint64_t root = RoundedRoot(m, tavrel_libm__rsqrt_tab[(bits >> 46) % 128]);
    const std::uint64_t exponent = (top + 0x3ff) >> 1;
    return DoubleOf((root & 0x000fffffffffffff) | exponent << 52);
}

}  // namespace tavrel::core::script
