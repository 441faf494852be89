// x^y = 2^(y * log2 x): the logarithm by table and polynomial as in float_exp_log.cpp, kept in double so that its
// error, which the product with y enlarges, stays below what a float shows; then 2 to that power by the same table as
// e^x. A negative x is allowed for whole y. An odd y makes the result negative: `signBias` is a bit that, added to k
// and shifted with it, lands in the sign of the double that the table gives.
#include "core/script/numeric/float_internal.h"
#include "core/script/numeric/float_math.h"
#include "core/script/numeric/float_tables.h"

namespace tavrel::core::script {

namespace {

constexpr std::uint32_t SignBias = 0x10000;  // reaches the sign of the table's double when added to k
constexpr double ExponentToCheck = 126.0;
constexpr double MaxExponent = 0x1.fffffffd1d571p+6;
constexpr double MinExponent = -150.0;

enum class Whole { No, Odd, Even };

// Of a finite y other than 0; an infinity counts as even.
Whole WholeOf(std::uint32_t bits) {
    const std::uint32_t exponent = bits >> 23 & 0xff;
    if (exponent < 0x7f) return Whole::No;
    if (exponent > 0x7f + 23) return Whole::Even;
    const std::uint32_t unit = 1u << (0x7f + 23 - exponent);
    if ((bits & (unit - 1)) != 0) return Whole::No;
    return (bits & unit) != 0 ? Whole::Odd : Whole::Even;
}

bool IsZeroInfinityOrNan(std::uint32_t bits) {
    return 2 * bits - 1 >= 2 * FloatInfinity - 1;
}

// x^y where y is zero, an infinity or NaN.
float PowerOfSpecial(float x, float y) {
    const std::uint32_t xBits = BitsOf(x);
    const std::uint32_t yBits = BitsOf(y);
    if (2 * yBits == 0 || xBits == FloatOne) return 1.0f;
    if (2 * xBits > 2 * FloatInfinity || 2 * yBits > 2 * FloatInfinity) return x + y;
    if (2 * xBits == 2 * FloatOne) return 1.0f;
    const bool small = 2 * xBits < 2 * FloatOne;
    const bool rising = (yBits & FloatSign) == 0;
    return small == rising ? 0.0f : y * y;
}

// x^y where x is zero, an infinity or NaN, and y is finite and not 0.
float SpecialToPower(float x, float y) {
    float power = x * x;
    if ((BitsOf(x) & FloatSign) != 0 && WholeOf(BitsOf(y)) == Whole::Odd) power = -power;
    return (BitsOf(y) & FloatSign) != 0 ? 1.0f / power : power;
}

double Log2(std::uint32_t bits) {
    const PowfLog2Data& data = tavrel_libm__powf_log2_data;
    const SplitFloat split = SplitForLog(bits);
    const InverseAndLog& entry = data.tab[split.index];
    const double r = split.mantissa * entry.invc - 1.0;
    const double base = entry.logc + split.exponent;
    const double r2 = r * r;
    const double high = data.poly[0] * r + data.poly[1];
    const double middle = data.poly[2] * r + data.poly[3];
    const double low = data.poly[4] * r + base;
    return high * (r2 * r2) + (middle * r2 + low);
}

float Exp2(double x, std::uint32_t signBias) {
    const Exp2fData& data = tavrel_libm__exp2f_data;
    const double shifted = x + data.shift_scaled;
    const std::uint64_t k = BitsOf(shifted);
    const double r = x - (shifted - data.shift_scaled);
    const double scale = DoubleOf(data.tab[k % 32] + ((k + signBias) << 47));
    const double high = data.poly[0] * r + data.poly[1];
    const double low = data.poly[2] * r + 1.0;
    return static_cast<float>((high * (r * r) + low) * scale);
}

}  // namespace

float tavrel_libm_powf(float x, float y) {
    std::uint32_t bits = BitsOf(x);
    std::uint32_t signBias = 0;
    if (IsZeroInfinityOrNan(BitsOf(y))) return PowerOfSpecial(x, y);
    if (!IsPositiveNormal(bits)) [[unlikely]] {
        if (IsZeroInfinityOrNan(bits)) return SpecialToPower(x, y);
        if ((bits & FloatSign) != 0) {
            const Whole whole = WholeOf(BitsOf(y));
            if (whole == Whole::No) return tavrel_libm__math_invalidf(x);
            if (whole == Whole::Odd) signBias = SignBias;
            bits &= FloatMagnitude;
        }
        if (bits < SmallestNormalFloat) bits = NormalizedBits(x);
    }
    const double exponent = y * Log2(bits);
    if ((BitsOf(exponent) >> 47 & 0xffff) >= BitsOf(ExponentToCheck) >> 47) [[unlikely]] {
        if (exponent > MaxExponent) return tavrel_libm__math_oflowf(signBias);
        if (exponent <= MinExponent) return tavrel_libm__math_uflowf(signBias);
    }
    return Exp2(exponent, signBias);
}

}  // namespace tavrel::core::script
