// The inverses of sine, cosine and tangent, mostly in float. Near 0 a polynomial or a quotient of two gives how far the
// result is from the argument. Elsewhere the argument is moved near 0 by an identity: asin x = pi/2 - 2 asin(sqrt((1 -
// x) / 2)), and atan x = atan c + atan((x - c) / (1 + c x)) for c = 1/2, 1, 3/2 and infinity. Constants such as pi/2
// come in two parts, high and low, so that a difference keeps the bits that a single float would lose. Where a tiny
// constant is added, it changes no bit of the result.
#include "core/script/numeric/float_internal.h"
#include "core/script/numeric/float_math.h"

namespace tavrel::core::script {

namespace {

constexpr std::uint32_t Half = 0x3f000000;
constexpr std::uint32_t TinyBelow = 0x39800000;  // 2^-12: from here down the result is the argument

constexpr double HalfPi = 0x1.921fb54442d18p+0;
constexpr float HalfPiHigh = 0x1.921fb4p+0f;
constexpr float HalfPiLow = 0x1.4442dp-24f;
constexpr float Pi = 0x1.921fb6p+1f;
constexpr float PiLow = -0x1.777a5cp-24f;

constexpr std::uint32_t CosineTinyUpTo = 0x32800000;  // 2^-26
constexpr std::uint32_t RootHighMask = 0xfffff000;    // leaves a root whose square is exact

constexpr std::uint32_t TangentTopFrom = 0x4c800000;        // 2^26: from here up the result is pi/2
constexpr std::uint32_t SmallBelow = 0x3ee00000;            // 7/16
constexpr std::uint32_t NearHalfBelow = 0x3f300000;         // 11/16
constexpr std::uint32_t NearOneBelow = 0x3f980000;          // 19/16
constexpr std::uint32_t NearThreeHalvesBelow = 0x401c0000;  // 39/16
constexpr std::uint32_t ExponentGap = 0x0d000000;           // 2^26 between two magnitudes

// (asin(x) - x) / x, of z = x * x up to 0.25.
float AsinExcess(float z) {
    constexpr float pS0 = 0x1.5554eap-3f;
    constexpr float pS1 = -0x1.5e2774p-5f;
    constexpr float pS2 = -0x1.1ba6d6p-7f;
    constexpr float qS1 = -0x1.69cb5cp-1f;
    const float numerator = z * (pS0 + z * (pS1 + z * pS2));
    const float denominator = 1.0f + z * qS1;
    return numerator / denominator;
}

// (x - atan(x)) / x, of |x| up to 7/16.
float AtanDeficit(float x) {
    constexpr float aT[5] = {0x1.555552p-2f, -0x1.99953p-3f, 0x1.23ea1ap-3f, -0x1.b4248ep-4f, 0x1.f9584ap-5f};
    const float z = x * x;
    const float w = z * z;
    const float odd = z * (aT[0] + w * (aT[2] + w * aT[4]));
    const float even = w * (aT[1] + w * aT[3]);
    return odd + even;
}

// atan of a reference point, in two parts, and the tangent of what the argument's angle has beyond it.
struct AtanStep {
    float high;
    float low;
    float rest;
};

AtanStep StepFrom(float x, std::uint32_t magnitude) {
    if (magnitude < NearHalfBelow) return {0x1.dac67p-2f, 0x1.586ed2p-28f, (2.0f * x - 1.0f) / (2.0f + x)};
    if (magnitude < NearOneBelow) return {0x1.921fb4p-1f, 0x1.4442dp-25f, (x - 1.0f) / (x + 1.0f)};
    if (magnitude < NearThreeHalvesBelow) {
        return {0x1.f730bcp-1f, 0x1.281f68p-25f, (x - 1.5f) / (1.0f + 1.5f * x)};
    }
    return {HalfPiHigh, HalfPiLow, -1.0f / x};
}

// atan2f where a magnitude is zero or infinite, or the two are 2^26 apart with y the larger: the angle of an axis or
// of a diagonal.
float AxisAngle(std::uint32_t yMagnitude, std::uint32_t xMagnitude, bool left) {
    if (xMagnitude == FloatInfinity && yMagnitude == FloatInfinity) return left ? 3.0f * Pi / 4.0f : Pi / 4.0f;
    if (xMagnitude == FloatInfinity || yMagnitude == 0) return left ? Pi : 0.0f;
    return Pi / 2.0f;
}

}  // namespace

float tavrel_libm_asinf(float x) {
    const std::uint32_t bits = BitsOf(x);
    const std::uint32_t magnitude = bits & FloatMagnitude;
    if (magnitude >= FloatOne) [[unlikely]] {
        if (magnitude == FloatOne) return static_cast<float>(x * HalfPi + 0x1p-120f);
        return 0.0f / (x - x);
    }
    if (magnitude < Half) {
        if (magnitude < TinyBelow && magnitude >= SmallestNormalFloat) return x;
        return x + x * AsinExcess(x * x);
    }
    const float z = (1.0f - FloatOf(magnitude)) * 0.5f;
    const double root = tavrel_libm_sqrt(z);
    const float angle = static_cast<float>(HalfPi - 2.0 * (root + root * AsinExcess(z)));
    return FloatOf(BitsOf(angle) | (bits & FloatSign));
}

float tavrel_libm_acosf(float x) {
    const std::uint32_t bits = BitsOf(x);
    const std::uint32_t magnitude = bits & FloatMagnitude;
    const bool negative = (bits & FloatSign) != 0;
    if (magnitude >= FloatOne) [[unlikely]] {
        if (magnitude == FloatOne) return negative ? 2.0f * HalfPiHigh + 0x1p-120f : 0.0f;
        return 0.0f / (x - x);
    }
    if (magnitude < Half) {
        if (magnitude <= CosineTinyUpTo) return HalfPiHigh + 0x1p-120f;
        return HalfPiHigh - (x - (HalfPiLow - x * AsinExcess(x * x)));
    }
    const float z = (1.0f - FloatOf(magnitude)) * 0.5f;
    const float root = tavrel_libm_sqrtf(z);
    if (negative) return 2.0f * (HalfPiHigh - (root + (AsinExcess(z) * root - HalfPiLow)));
    const float high = FloatOf(BitsOf(root) & RootHighMask);
    const float low = (z - high * high) / (root + high);
    return 2.0f * (high + (AsinExcess(z) * root + low));
}

float tavrel_libm_atanf(float x) {
    const std::uint32_t bits = BitsOf(x);
    const std::uint32_t magnitude = bits & FloatMagnitude;
    const std::uint32_t sign = bits & FloatSign;
    if (magnitude >= TangentTopFrom) [[unlikely]] {
        if (magnitude > FloatInfinity) return x;
        return FloatOf(BitsOf(HalfPiHigh + 0x1p-120f) | sign);
    }
    if (magnitude < SmallBelow) {
        if (magnitude < TinyBelow) return x;
        return x - x * AtanDeficit(x);
    }
    const AtanStep step = StepFrom(FloatOf(magnitude), magnitude);
    const float angle = step.high - ((step.rest * AtanDeficit(step.rest) - step.low) - step.rest);
    return FloatOf(BitsOf(angle) | sign);
}

float tavrel_libm_atan2f(float y, float x) {
    const std::uint32_t xMagnitude = BitsOf(x) & FloatMagnitude;
    const std::uint32_t yMagnitude = BitsOf(y) & FloatMagnitude;
    if (xMagnitude > FloatInfinity || yMagnitude > FloatInfinity) return x + y;
    if (BitsOf(x) == FloatOne) return tavrel_libm_atanf(y);
    const bool left = (BitsOf(x) & FloatSign) != 0;
    const std::uint32_t sign = BitsOf(y) & FloatSign;
    const bool upright = xMagnitude == 0 || yMagnitude == FloatInfinity || xMagnitude + ExponentGap < yMagnitude;
    if (yMagnitude == 0 || xMagnitude == FloatInfinity || upright) [[unlikely]] {
        return FloatOf(BitsOf(AxisAngle(yMagnitude, xMagnitude, left)) | sign);
    }
    const bool flat = left && yMagnitude + ExponentGap < xMagnitude;
    const float steep = flat ? 0.0f : tavrel_libm_atanf(FloatOf(BitsOf(y / x) & FloatMagnitude));
    return FloatOf(BitsOf(left ? Pi - (steep - PiLow) : steep) | sign);
}

}  // namespace tavrel::core::script
