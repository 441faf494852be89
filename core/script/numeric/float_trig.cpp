// Sine, cosine and tangent: the nearest multiple of pi/2 is taken off in double, a polynomial in double gives the sine
// or cosine of the rest, and the multiple says which of the two it is and with which sign. Multiples up to 4 are
// constants; larger arguments go to float_reduction.cpp. The order of the operations in the polynomials decides the
// last bit and may not change.
#include "core/script/numeric/float_internal.h"
#include "core/script/numeric/float_math.h"

namespace tavrel::core::script {

namespace {

constexpr std::uint32_t TinyBelow = 0x39800000;  // 2^-12: from here down the result is the argument, or 1

// Magnitudes up to these lie nearest to 0, 1, 2, 3 and 4 times pi/2.
constexpr std::uint32_t UpToPi4 = 0x3f490fda;
constexpr std::uint32_t UpTo3Pi4 = 0x4016cbe3;
constexpr std::uint32_t UpTo5Pi4 = 0x407b53d1;
constexpr std::uint32_t UpTo7Pi4 = 0x40afeddf;
constexpr std::uint32_t UpTo9Pi4 = 0x40e231d5;

// Those multiples, and their negatives for negative arguments.
constexpr double SignedMultiples[2][5] = {
    {0.0, 0x1.921fb54442d18p+0, 0x1.921fb54442d18p+1, 0x1.2d97c7f3321d2p+2, 0x1.921fb54442d18p+2},
    {0.0, -0x1.921fb54442d18p+0, -0x1.921fb54442d18p+1, -0x1.2d97c7f3321d2p+2, -0x1.921fb54442d18p+2}};

// An argument less a multiple of pi/2. The two lowest bits of the quadrant count.
struct ReducedAngle {
    double rest;
    int quadrant;
};

// Near 0 the multiple comes from comparisons without a branch: angles jump between quadrants too often to predict.
ReducedAngle Reduce(float x, std::uint32_t magnitude) {
    if (magnitude > UpTo9Pi4) {
        double rest = 0.0;
        const int quadrant = tavrel_libm__rem_pio2f(x, &rest);
        return {rest, quadrant};
    }
    const int multiple =
        (magnitude > UpToPi4) + (magnitude > UpTo3Pi4) + (magnitude > UpTo5Pi4) + (magnitude > UpTo7Pi4);
    const bool negative = (BitsOf(x) & FloatSign) != 0;
    return {x - SignedMultiples[negative][multiple], negative ? -multiple : multiple};
}

}  // namespace

float tavrel_libm__sindf(double x) {
    constexpr double S1 = -0x1.5555554cbac77p-3;
    constexpr double S2 = 0x1.11110896efbb2p-7;
    constexpr double S3 = -0x1.a00f9e2cae774p-13;
    constexpr double S4 = 0x1.6cd878c3b46a7p-19;
    const double z = x * x;
    const double w = z * z;
    const double r = S3 + z * S4;
    const double s = z * x;
    return static_cast<float>((x + s * (S1 + z * S2)) + s * w * r);
}

float tavrel_libm__cosdf(double x) {
    constexpr double C0 = -0x1.ffffffd0c5e81p-2;
    constexpr double C1 = 0x1.55553e1053a42p-5;
    constexpr double C2 = -0x1.6c087e80f1e27p-10;
    constexpr double C3 = 0x1.99342e0ee5069p-16;
    const double z = x * x;
    const double w = z * z;
    const double r = C2 + z * C3;
    return static_cast<float>(((1.0 + z * C0) + w * C1) + (w * z) * r);
}

float tavrel_libm__tandf(double x, int odd) {
    constexpr double T[6] = {0x1.5554d3418c99fp-2, 0x1.112fd38999f72p-3, 0x1.b54c91d865afep-5,
                             0x1.91df3908c33cep-6, 0x1.85dadfcecf44ep-9, 0x1.362b9bf971bcdp-7};
    const double z = x * x;
    const double r = T[4] + z * T[5];
    const double t = T[2] + z * T[3];
    const double w = z * z;
    const double s = z * x;
    const double u = T[0] + z * T[1];
    const double tangent = (x + s * u) + (s * w) * (t + w * r);
    return static_cast<float>(odd != 0 ? -1.0 / tangent : tangent);
}

float tavrel_libm_sinf(float x) {
    const std::uint32_t magnitude = BitsOf(x) & FloatMagnitude;
    if (magnitude < TinyBelow) return x;
    if (magnitude >= FloatInfinity) return x - x;
    const ReducedAngle angle = Reduce(x, magnitude);
    const float sine = (angle.quadrant & 1) != 0 ? tavrel_libm__cosdf(angle.rest) : tavrel_libm__sindf(angle.rest);
    return (angle.quadrant & 2) != 0 ? -sine : sine;
}

float tavrel_libm_cosf(float x) {
    const std::uint32_t magnitude = BitsOf(x) & FloatMagnitude;
    if (magnitude < TinyBelow) return 1.0f;
    if (magnitude >= FloatInfinity) return x - x;
    const ReducedAngle angle = Reduce(x, magnitude);
    const float cosine = (angle.quadrant & 1) != 0 ? tavrel_libm__sindf(angle.rest) : tavrel_libm__cosdf(angle.rest);
    return ((angle.quadrant + 1) & 2) != 0 ? -cosine : cosine;
}

float tavrel_libm_tanf(float x) {
    const std::uint32_t magnitude = BitsOf(x) & FloatMagnitude;
    if (magnitude < TinyBelow) return x;
    if (magnitude >= FloatInfinity) return x - x;
    const ReducedAngle angle = Reduce(x, magnitude);
    return tavrel_libm__tandf(angle.rest, angle.quadrant & 1);
}

}  // namespace tavrel::core::script
