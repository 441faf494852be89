// The small operations under the others: sign, floor, scaling by a power of two, and the results of errors. A double is
// taken apart by its bits: 1 of sign, 11 of exponent with 1023 added, 52 of mantissa.
// Floor adds 2^52 and takes it off again: at that size a double has no bits behind the point, so the sum is rounded to
// a whole number, and where that went up 1 comes off. The error results are computed so that they round and overflow
// like any other operation.
#include "core/script/numeric/float_internal.h"
#include "core/script/numeric/float_math.h"

namespace tavrel::core::script {

namespace {

constexpr int ExponentBias = 0x3ff;
constexpr int MantissaBits = 52;
constexpr int MaxExponent = 1023;
constexpr int MinExponent = -1022;
constexpr double TwoTo52 = 0x1p+52;
constexpr double ScaleUp = 0x1p+1023;
// Short of the smallest exponent by 53, so that what the last step takes to a subnormal is rounded there only.
constexpr double ScaleDown = 0x1p-969;
constexpr int ScaleDownStep = 969;

}  // namespace

float tavrel_libm_fabsf(float x) {
    return FloatOf(BitsOf(x) & FloatMagnitude);
}

double tavrel_libm_floor(double x) {
    const std::uint64_t bits = BitsOf(x);
    const int exponent = static_cast<int>(bits >> MantissaBits & 0x7ff);
    const bool negative = bits >> 63 != 0;
    if (exponent >= ExponentBias + MantissaBits || x == 0.0) return x;
    if (exponent < ExponentBias) return negative ? -1.0 : 0.0;
    const double toInteger = negative ? x - TwoTo52 + TwoTo52 - x : x + TwoTo52 - TwoTo52 - x;
    return toInteger > 0.0 ? x + toInteger - 1.0 : x + toInteger;
}

double tavrel_libm_scalbn(double x, int n) {
    for (int step = 0; step < 2 && n > MaxExponent; ++step) {
        x *= ScaleUp;
        n -= MaxExponent;
    }
    for (int step = 0; step < 2 && n < MinExponent; ++step) {
        x *= ScaleDown;
        n += ScaleDownStep;
    }
    if (n > MaxExponent) n = MaxExponent;
    if (n < MinExponent) n = MinExponent;
    return x * DoubleOf(static_cast<std::uint64_t>(ExponentBias + n) << MantissaBits);
}

float tavrel_libm__math_divzerof(int sign) {
    return (sign != 0 ? -1.0f : 1.0f) / 0.0f;
}

double tavrel_libm__math_invalid(double x) {
    return (x - x) / (x - x);
}

float tavrel_libm__math_invalidf(float x) {
    return (x - x) / (x - x);
}

float tavrel_libm__math_xflowf(std::uint32_t sign, float y) {
    return (sign != 0 ? -y : y) * y;
}

float tavrel_libm__math_oflowf(std::uint32_t sign) {
    return tavrel_libm__math_xflowf(sign, 0x1p+97f);
}

float tavrel_libm__math_uflowf(std::uint32_t sign) {
    return tavrel_libm__math_xflowf(sign, 0x1p-95f);
}

}  // namespace tavrel::core::script
