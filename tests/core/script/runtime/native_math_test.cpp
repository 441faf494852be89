#include "core/script/runtime/native_math.h"

#include <gtest/gtest.h>

#include <bit>
#include <cstdint>

namespace tavrel::core::script {
namespace {

struct Row {
    float x;
    float floor;
    float ceil;
    float round;
};

const Row Rows[] = {
    {0.0F, 0.0F, 0.0F, 0.0F},
    {-0.0F, -0.0F, -0.0F, -0.0F},
    {0.5F, 0.0F, 1.0F, 1.0F},
    {-0.5F, -1.0F, -0.0F, -1.0F},
    {-0.4F, -1.0F, -0.0F, -0.0F},
    {0x1.fffffep-2F, 0.0F, 1.0F, 1.0F},  // just below a half, but 1 - x rounds to a half
    {2.5F, 2.0F, 3.0F, 3.0F},
    {-2.5F, -3.0F, -2.0F, -3.0F},
    {-3.0F, -3.0F, -3.0F, -3.0F},
    {0x1.fffffep+22F, 0x1.fffffcp+22F, 0x1p+23F, 0x1p+23F},  // the greatest float with a fraction
    {-0x1p+23F, -0x1p+23F, -0x1p+23F, -0x1p+23F},
    {-0x1p+100F, -0x1p+100F, -0x1p+100F, -0x1p+100F},
};

std::uint32_t Bits(float x) {
    return std::bit_cast<std::uint32_t>(x);
}

TEST(NativeMath, RoundsWithTheSignOfZero) {
    for (const Row& row : Rows) {
        EXPECT_EQ(Bits(FloorReal(row.x)), Bits(row.floor)) << row.x;
        EXPECT_EQ(Bits(CeilReal(row.x)), Bits(row.ceil)) << row.x;
        EXPECT_EQ(Bits(RoundReal(row.x)), Bits(row.round)) << row.x;
    }
}

// Infinities and NaN among them.
TEST(NativeMath, InstructionAndFunctionAgreeOnRoots) {
    for (std::uint64_t bits = 0; bits <= 0xFFFFFFFF; bits += 40'503) {
        const float x = std::bit_cast<float>(static_cast<std::uint32_t>(bits));
        ASSERT_EQ(Bits(ExactSqrt(x)), Bits(tavrel_libm_sqrtf(x))) << bits;
    }
    for (const std::uint32_t bits : {0x80000000U, 1U, 0x7FFFFFU, 0x7F7FFFFFU, 0x7F800000U, 0x7FC00001U, 0xFFC00001U}) {
        const float x = std::bit_cast<float>(bits);
        EXPECT_EQ(Bits(ExactSqrt(x)), Bits(tavrel_libm_sqrtf(x))) << bits;
    }
}

TEST(NativeMath, NormalizesOnlyWhatHasALength) {
    const Value zero = NormalizeVector(MakeVector(Kind::Vec2, -0.0F, 0.0F), 2);
    EXPECT_EQ(Bits(zero.components[0]), 0x80000000U);
    const Value tiny = NormalizeVector(MakeVector(Kind::Vec3, 1e-30F, 0.0F, 0.0F), 3);
    EXPECT_EQ(tiny.components[0], 1e-30F);  // its square is nothing
    const Value unit = NormalizeVector(MakeVector(Kind::Vec3, 3.0F, 0.0F, 4.0F), 3);
    EXPECT_EQ(unit.components[0], 0.6F);
    EXPECT_EQ(unit.components[2], 0.8F);
}

}  // namespace
}  // namespace tavrel::core::script
