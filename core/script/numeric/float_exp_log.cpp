// e^x and the natural logarithm, by table and polynomial in double, so that rounding to float at the end hides their
// error.
// e^x = 2^(k/32) * e^r with k the whole number nearest to x * 32 / ln 2. The whole number is found by adding 1.5 *
// 2^52, whose sum has no bits behind the point: k stands in its low bits, and taking the constant off again leaves k as
// a double. The table has 2^(i/32) for i = k mod 32, less i << 47, so that adding k << 47 puts k / 32 into the
// exponent. log x = exponent * ln 2 + log c + log(1 + r) with c the middle of one of 16 stretches of mantissas and r =
// m / c - 1, small enough for a polynomial of the fourth degree.
#include "core/script/numeric/float_internal.h"
#include "core/script/numeric/float_math.h"
#include "core/script/numeric/float_tables.h"

namespace tavrel::core::script {

namespace {

constexpr float MaxExponent = 0x1.62e42ep+6f;          // the logarithm of 2^128
constexpr float MinExponent = -0x1.9fe368p+6f;         // of 2^-150
constexpr std::uint32_t ExponentToCheck = 0x42b00000;  // 88

}  // namespace

float tavrel_libm_expf(float x) {
    const Exp2fData& data = tavrel_libm__exp2f_data;
    const std::uint32_t magnitude = BitsOf(x) & FloatMagnitude;
    if (magnitude >= ExponentToCheck) [[unlikely]] {
        if (BitsOf(x) == (FloatSign | FloatInfinity)) return 0.0f;
        if (magnitude >= FloatInfinity) return x + x;
        if (x > MaxExponent) return tavrel_libm__math_oflowf(0);
        if (x < MinExponent) return tavrel_libm__math_uflowf(0);
    }
    // x * 32 / ln 2 = k + r, with k the nearest whole number, left in the low bits of `shifted`.
    const double z = data.invln2_scaled * x;
    const double shifted = z + data.shift;
    const std::uint64_t k = BitsOf(shifted);
    const double r = z - (shifted - data.shift);
    const double scale = DoubleOf(data.tab[k % 32] + (k << 47));
    const double high = data.poly_scaled[0] * r + data.poly_scaled[1];
    const double low = data.poly_scaled[2] * r + 1.0;
    return static_cast<float>((high * (r * r) + low) * scale);
}

float tavrel_libm_logf(float x) {
    const LogfData& data = tavrel_libm__logf_data;
    std::uint32_t bits = BitsOf(x);
    if (bits == FloatOne) return 0.0f;
    if (!IsPositiveNormal(bits)) [[unlikely]] {
        if (bits * 2 == 0) return tavrel_libm__math_divzerof(1);
        if (bits == FloatInfinity) return x;
        if (bits > FloatInfinity) return tavrel_libm__math_invalidf(x);
        bits = NormalizedBits(x);
    }
    const SplitFloat split = SplitForLog(bits);
    const InverseAndLog& entry = data.tab[split.index];
    const double r = split.mantissa * entry.invc - 1.0;
    const double base = entry.logc + split.exponent * data.ln2;
    const double r2 = r * r;
    const double poly = data.poly[0] * r2 + (data.poly[1] * r + data.poly[2]);
    return static_cast<float>(poly * r2 + (base + r));
}

}  // namespace tavrel::core::script
