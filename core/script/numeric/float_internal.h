// What the sources of the float functions share: bits of a float, the polynomial kernels, the argument reduction and
// the results of errors. Private to this folder; each of its sources includes this.
#pragma once

#include <bit>
#include <cstdint>

#include "core/script/numeric/float_rules.h"

namespace tavrel::core::script {

constexpr std::uint32_t FloatSign = 0x80000000;
constexpr std::uint32_t FloatMagnitude = 0x7fffffff;
constexpr std::uint32_t FloatInfinity = 0x7f800000;
constexpr std::uint32_t FloatOne = 0x3f800000;
constexpr std::uint32_t SmallestNormalFloat = 0x00800000;

inline std::uint32_t BitsOf(float x) {
    return std::bit_cast<std::uint32_t>(x);
}

inline std::uint64_t BitsOf(double x) {
    return std::bit_cast<std::uint64_t>(x);
}

inline float FloatOf(std::uint32_t bits) {
    return std::bit_cast<float>(bits);
}

inline double DoubleOf(std::uint64_t bits) {
    return std::bit_cast<double>(bits);
}

// False for a zero, a subnormal, a negative, an infinity and a NaN, which the tables of mantissas cannot take.
inline bool IsPositiveNormal(std::uint32_t bits) {
    return bits - SmallestNormalFloat < FloatInfinity - SmallestNormalFloat;
}

// The bits of a subnormal of either sign, without the sign, as if the exponent reached below its range.
inline std::uint32_t NormalizedBits(float subnormal) {
    return (BitsOf(subnormal * 0x1p+23f) & FloatMagnitude) - (23u << 23);
}

// x = 2^exponent * mantissa, the mantissa about 0.7 to 1.4 and in the stretch `index` of the tables of logarithms.
struct SplitFloat {
    float mantissa;
    std::int32_t exponent;
    std::uint32_t index;
};

// Of the bits of a positive normal float or of a normalized subnormal. 1 stands inside a stretch, not at its end.
inline SplitFloat SplitForLog(std::uint32_t bits) {
    constexpr std::uint32_t LowestMantissa = 0x3f330000;
    const std::uint32_t offset = bits - LowestMantissa;
    return {FloatOf(bits - (offset & 0xff800000)), static_cast<std::int32_t>(offset) >> 23, (offset >> 19) % 16};
}

extern "C" {

// Sine, cosine and tangent of |x| up to about pi/4; `odd` gives -1/tan instead.
float tavrel_libm__sindf(double x);
float tavrel_libm__cosdf(double x);
float tavrel_libm__tandf(double x, int odd);

// Takes the nearest multiple of pi/2 off x, leaves the rest in *y and returns the multiple, of which the two lowest
// bits count.
int tavrel_libm__rem_pio2f(float x, double* y);

// The same for an x of any size: the sum of x[i] * 2^(e0 - 24 i), `nx` whole numbers below 2^24, the first not 0.
// `prec` 0 to 3 asks for 24, 53, 64 or 113 bits, in y[0] alone, two, two or three doubles. Returns the multiple mod 8.
int tavrel_libm__rem_pio2_large(const double* x, double* y, int e0, int nx, int prec);

// Results of errors, computed by ordinary arithmetic: an infinity, a NaN, too large and too small.
float tavrel_libm__math_divzerof(int sign);
double tavrel_libm__math_invalid(double x);
float tavrel_libm__math_invalidf(float x);
float tavrel_libm__math_oflowf(std::uint32_t sign);
float tavrel_libm__math_uflowf(std::uint32_t sign);
float tavrel_libm__math_xflowf(std::uint32_t sign, float y);
}

}  // namespace tavrel::core::script
