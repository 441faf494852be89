// The pure arithmetic of natives that the interpreter also runs inside operations of its own, so that both give the
// same bits. Single precision, every operation rounded, in the order written.
#pragma once

#include <bit>
#include <cstdint>

#include "core/script/numeric/float_math.h"
#include "core/script/numeric/float_rules.h"
#include "core/script/runtime/value.h"

#if defined(__SSE2__) || defined(_M_X64)
#include <xmmintrin.h>
#elif defined(__aarch64__) || defined(_M_ARM64)
#include <arm_neon.h>
#endif

namespace tavrel::core::script {

// |x|, also of a NaN.
[[nodiscard]] inline float Magnitude(float x) {
    return std::bit_cast<float>(std::bit_cast<std::uint32_t>(x) & 0x7FFFFFFFU);
}

// Sets the sign bit if `sign` has it.
[[nodiscard]] inline float WithSignOf(float x, float sign) {
    return std::bit_cast<float>(std::bit_cast<std::uint32_t>(x) | (std::bit_cast<std::uint32_t>(sign) & 0x80000000U));
}

// False for infinities and NaN.
[[nodiscard]] inline bool IsFinite(float x) {
    constexpr float Largest = 3.4028235e38F;
    return x >= -Largest && x <= Largest;
}

// From 2^23 up a float has no fraction, and one below converts to 32 bits.
[[nodiscard]] inline bool MayHaveFraction(float x) {
    return Magnitude(x) < 0x1p23F;
}

// The fraction cut off, of an x that may have one. The zero loses its sign.
[[nodiscard]] inline float CutFraction(float x) {
    return static_cast<float>(static_cast<std::int32_t>(x));
}

// The greatest integer not above x. Zeros keep their sign; infinities and NaN are returned.
[[nodiscard]] inline float FloorReal(float x) {
    if (!MayHaveFraction(x)) return x;
    const float cut = CutFraction(x);
    return WithSignOf(cut > x ? cut - 1.0F : cut, x);
}

// The least integer not below x; -0.0 for an x between -1 and 0.
[[nodiscard]] inline float CeilReal(float x) {
    if (!MayHaveFraction(x)) return x;
    const float cut = CutFraction(x);
    return WithSignOf(cut < x ? cut + 1.0F : cut, x);
}

// The nearest integer, halves away from zero, under the sign of x.
[[nodiscard]] inline float RoundReal(float x) {
    const float magnitude = Magnitude(x);
    const float above = CeilReal(magnitude);
    return WithSignOf(above - magnitude > 0.5F ? above - 1.0F : above, x);
}

// tavrel_libm_sqrtf, by an instruction where the processor has one: a root rounded to the nearest float is a single
// number, and the standard of floats asks of the instruction just that. NaN results are left to the function, since an
// instruction may choose other bits for them.
[[nodiscard]] inline float ExactSqrt(float x) {
    if (!(x >= 0.0F)) return tavrel_libm_sqrtf(x);
#if defined(__SSE2__) || defined(_M_X64)
    return _mm_cvtss_f32(_mm_sqrt_ss(_mm_set_ss(x)));
#elif defined(__aarch64__) || defined(_M_ARM64)
    return vget_lane_f32(vsqrt_f32(vdup_n_f32(x)), 0);
#else
    return tavrel_libm_sqrtf(x);
#endif
}

// The length of the vector of the first `count` components.
[[nodiscard]] inline float LengthOf(const Value& vector, int count) {
    float sum = 0.0F;
    for (int i = 0; i < count; ++i) sum += vector.components[i] * vector.components[i];
    return ExactSqrt(sum);
}

// The vector of length 1 in the same direction, over the first `count` components; what stands behind them, in a Color,
// stays. One whose length is 0 or a NaN comes back as it is.
[[nodiscard]] inline Value NormalizeVector(const Value& vector, int count) {
    Value result = vector;
    result.kind = count == 3 ? Kind::Vec3 : vector.kind == Kind::Color ? Kind::Color : Kind::Vec2;
    const float length = LengthOf(vector, count);
    if (length > 0.0F) {
        for (int i = 0; i < count; ++i) result.components[i] = vector.components[i] / length;
    }
    return result;
}

}  // namespace tavrel::core::script
