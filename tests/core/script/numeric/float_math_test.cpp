#include "core/script/numeric/float_math.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <limits>

#include "core/script/numeric/float_internal.h"

namespace tavrel::core::script {
namespace {

// Every NaN counts as one: neither sign nor payload is promised.
std::uint32_t ResultBits(float value) {
    return value == value ? BitsOf(value) : 0x7fc00000;
}

TEST(FloatMath, OneArgument) {
    struct Function {
        const char* name;
        float (*call)(float);
    };
    struct Row {
        Function function;
        std::uint32_t argument;
        std::uint32_t result;
    };
    constexpr Function Sin = {"sinf", tavrel_libm_sinf};
    constexpr Function Cos = {"cosf", tavrel_libm_cosf};
    constexpr Function Tan = {"tanf", tavrel_libm_tanf};
    constexpr Function Asin = {"asinf", tavrel_libm_asinf};
    constexpr Function Acos = {"acosf", tavrel_libm_acosf};
    constexpr Function Atan = {"atanf", tavrel_libm_atanf};
    constexpr Function Exp = {"expf", tavrel_libm_expf};
    constexpr Function Log = {"logf", tavrel_libm_logf};
    constexpr Function Sqrt = {"sqrtf", tavrel_libm_sqrtf};
    const Row rows[] = {{Sin, 0x80000000, 0x80000000},  {Sin, 0x00000001, 0x00000001},  {Sin, 0x397fffff, 0x397fffff},
                        {Sin, 0x39800000, 0x39800000},  {Sin, 0x3f490fda, 0x3f3504f3},  {Sin, 0x3f490fdb, 0x3f3504f3},
                        {Sin, 0xbf490fdb, 0xbf3504f3},  {Sin, 0x40000000, 0x3f68c7b7},  {Sin, 0xc0000000, 0xbf68c7b7},
                        {Sin, 0x4016cbe3, 0x3f3504f6},  {Sin, 0x4016cbe4, 0x3f3504f3},  {Sin, 0xc0400000, 0xbe1081c3},
                        {Sin, 0x407b53d1, 0xbf3504f2},  {Sin, 0x407b53d2, 0xbf3504f5},  {Sin, 0xc0a00000, 0x3f757c10},
                        {Sin, 0x40afeddf, 0xbf3504f5},  {Sin, 0x40afede0, 0xbf3504ef},  {Sin, 0xc0c00000, 0x3e8f0f8c},
                        {Sin, 0x40e231d5, 0x3f3504ee},  {Sin, 0x40e231d6, 0x3f3504f3},  {Sin, 0xc2c80000, 0x3f01a12e},
                        {Sin, 0x447a0000, 0x3f53ae61},  {Sin, 0x42ca0000, 0x3ee76fed},  {Sin, 0x42cc0000, 0x3f7eacf8},
                        {Sin, 0x42ce0000, 0x3f1f7c2f},  {Sin, 0x4dc90fda, 0xbf7cf804},  {Sin, 0x4dc90fdb, 0xbf3d5f98},
                        {Sin, 0xcdc90fdb, 0x3f3d5f98},  {Sin, 0x4df5e440, 0x35b0a5bc},  {Sin, 0x4f800000, 0xbeec8981},
                        {Sin, 0x57000000, 0xbd84e24a},  {Sin, 0x57000022, 0xbf627db2},  {Sin, 0x57800008, 0xbf7fd469},
                        {Sin, 0x636c1b4a, 0x33a2e86a},  {Sin, 0x7f7fffff, 0xbf0599b3},  {Sin, 0xff7fffff, 0x3f0599b3},
                        {Sin, 0x7f800000, 0x7fc00000},  {Sin, 0x7fc00000, 0x7fc00000},  {Cos, 0x80000000, 0x3f800000},
                        {Cos, 0x397fffff, 0x3f800000},  {Cos, 0x39800000, 0x3f800000},  {Cos, 0x3f490fdb, 0x3f3504f3},
                        {Cos, 0xbf490fdb, 0x3f3504f3},  {Cos, 0x40000000, 0xbed51133},  {Cos, 0xc0000000, 0xbed51133},
                        {Cos, 0xc0400000, 0xbf7d7026},  {Cos, 0xc0a00000, 0x3e913c2c},  {Cos, 0x40afede0, 0x3f3504f7},
                        {Cos, 0xc0c00000, 0x3f75cdb8},  {Cos, 0x40e231d6, 0x3f3504f3},  {Cos, 0xc2c80000, 0x3f5cc0ee},
                        {Cos, 0x42ca0000, 0x3f645a6e},  {Cos, 0x42cc0000, 0x3dd00c2a},  {Cos, 0x42ce0000, 0xbf484049},
                        {Cos, 0x4dc90fda, 0x3e1d1cf0},  {Cos, 0xcdc90fdb, 0x3f2c42b6},  {Cos, 0x4f800000, 0xbf630b05},
                        {Cos, 0x7f7fffff, 0x3f5a5f96},  {Cos, 0xff800000, 0x7fc00000},  {Tan, 0x80000001, 0x80000001},
                        {Tan, 0x39800000, 0x39800000},  {Tan, 0xbf490fda, 0xbf7ffffe},  {Tan, 0x3f490fdb, 0x3f800000},
                        {Tan, 0xc0000000, 0x400bd7b1},  {Tan, 0x40400000, 0xbe11f7b8},  {Tan, 0xc0a00000, 0x40585a5b},
                        {Tan, 0x40c00000, 0xbe94fec4},  {Tan, 0x40e231d6, 0x3f800000},  {Tan, 0xc2c80000, 0x3f1653a7},
                        {Tan, 0x4dc90fdb, 0xbf8cb742},  {Tan, 0xff7fffff, 0x3f1c9eca},  {Tan, 0x7f800000, 0x7fc00000},
                        {Asin, 0x80000000, 0x80000000}, {Asin, 0x00000001, 0x00000001}, {Asin, 0x00800000, 0x00800000},
                        {Asin, 0x39800000, 0x39800000}, {Asin, 0xbeffffff, 0xbf060a91}, {Asin, 0x3f000000, 0x3f060a92},
                        {Asin, 0xbf400000, 0xbf591a99}, {Asin, 0x3f7fffff, 0x3fc9048a}, {Asin, 0x3f800000, 0x3fc90fdb},
                        {Asin, 0xbf800000, 0xbfc90fdb}, {Asin, 0x3f800001, 0x7fc00000}, {Acos, 0x32800000, 0x3fc90fda},
                        {Acos, 0x32800001, 0x3fc90fdb}, {Acos, 0xbeffffff, 0x40060a92}, {Acos, 0x3f000000, 0x3f860a92},
                        {Acos, 0xbf000000, 0x40060a92}, {Acos, 0xbf400000, 0x401ace94}, {Acos, 0x3f400000, 0x3f39051d},
                        {Acos, 0x3f7fffff, 0x39b504f3}, {Acos, 0x3f800000, 0x00000000}, {Acos, 0xbf800000, 0x40490fda},
                        {Acos, 0xbf800001, 0x7fc00000}, {Atan, 0x80000000, 0x80000000}, {Atan, 0x00000001, 0x00000001},
                        {Atan, 0xb97fffff, 0xb97fffff}, {Atan, 0x39800000, 0x39800000}, {Atan, 0x3edfffff, 0x3ed32775},
                        {Atan, 0x3ee00000, 0x3ed32776}, {Atan, 0xbf300000, 0xbf1a2f81}, {Atan, 0x3f980000, 0x3f5ef387},
                        {Atan, 0x401c0000, 0x3f973ab9}, {Atan, 0xcc7fffff, 0xbfc90fdb}, {Atan, 0x4c800000, 0x3fc90fda},
                        {Atan, 0xff800000, 0xbfc90fda}, {Atan, 0x7fc00000, 0x7fc00000}, {Exp, 0x80000000, 0x3f800000},
                        {Exp, 0x3f800000, 0x402df854},  {Exp, 0xbf800000, 0x3ebc5ab2},  {Exp, 0x42afffff, 0x7ef8823b},
                        {Exp, 0x42b00000, 0x7ef882b7},  {Exp, 0x42b17217, 0x7f7fff84},  {Exp, 0x42b17218, 0x7f800000},
                        {Exp, 0xc2b10000, 0x0027fce2},  {Exp, 0xc2cff1b4, 0x00000001},  {Exp, 0xc2cff1b5, 0x00000000},
                        {Exp, 0xff800000, 0x00000000},  {Exp, 0x7f800000, 0x7f800000},  {Exp, 0x7fc00000, 0x7fc00000},
                        {Exp, 0x3d317218, 0x3f85aac3},  {Log, 0x00000000, 0xff800000},  {Log, 0x80000000, 0xff800000},
                        {Log, 0x00000001, 0xc2ce8ed0},  {Log, 0x007fffff, 0xc2aeac50},  {Log, 0x00800000, 0xc2aeac50},
                        {Log, 0x3f32ffff, 0xbeb7307a},  {Log, 0x3f330000, 0xbeb73077},  {Log, 0x3f7fffff, 0xb3800000},
                        {Log, 0x3f800000, 0x00000000},  {Log, 0x3f800001, 0x33ffffff},  {Log, 0x40200000, 0x3f6a9208},
                        {Log, 0x7f7fffff, 0x42b17218},  {Log, 0x7f800000, 0x7f800000},  {Log, 0xbf800000, 0x7fc00000},
                        {Log, 0xff800000, 0x7fc00000},  {Sqrt, 0x80000000, 0x80000000}, {Sqrt, 0x00000001, 0x1a3504f3},
                        {Sqrt, 0x007fffff, 0x1fffffff}, {Sqrt, 0x00800000, 0x20000000}, {Sqrt, 0x40000000, 0x3fb504f3},
                        {Sqrt, 0x40400000, 0x3fddb3d7}, {Sqrt, 0x3f7fffff, 0x3f7fffff}, {Sqrt, 0x3f800001, 0x3f800000},
                        {Sqrt, 0x7f7fffff, 0x5f7fffff}, {Sqrt, 0x7f800000, 0x7f800000}, {Sqrt, 0xbf800000, 0x7fc00000},
                        {Sqrt, 0x7fc00000, 0x7fc00000}};
    for (const Row& row : rows) {
        EXPECT_EQ(ResultBits(row.function.call(FloatOf(row.argument))), row.result)
            << row.function.name << " of " << std::hex << row.argument;
    }
}

TEST(FloatMath, TwoArguments) {
    struct Function {
        const char* name;
        float (*call)(float, float);
    };
    struct Row {
        Function function;
        std::uint32_t first;
        std::uint32_t second;
        std::uint32_t result;
    };
    constexpr Function Pow = {"powf", tavrel_libm_powf};
    constexpr Function Atan2 = {"atan2f", tavrel_libm_atan2f};
    const Row rows[] = {{Pow, 0x7fc00000, 0x00000000, 0x3f800000},   {Pow, 0x3f800000, 0x7fc00000, 0x3f800000},
                        {Pow, 0x7fc00000, 0x3f800000, 0x7fc00000},   {Pow, 0x40000000, 0x7fc00000, 0x7fc00000},
                        {Pow, 0xbf800000, 0x7f800000, 0x3f800000},   {Pow, 0x3f000000, 0x7f800000, 0x00000000},
                        {Pow, 0x40000000, 0x7f800000, 0x7f800000},   {Pow, 0x3f000000, 0xff800000, 0x7f800000},
                        {Pow, 0x40000000, 0xff800000, 0x00000000},   {Pow, 0x80000000, 0x40400000, 0x80000000},
                        {Pow, 0x80000000, 0x40000000, 0x00000000},   {Pow, 0x80000000, 0xc0400000, 0xff800000},
                        {Pow, 0x00000000, 0xbf000000, 0x7f800000},   {Pow, 0xff800000, 0x40400000, 0xff800000},
                        {Pow, 0xff800000, 0xc0400000, 0x80000000},   {Pow, 0xff800000, 0x3f000000, 0x7f800000},
                        {Pow, 0x7f800000, 0xc0000000, 0x00000000},   {Pow, 0x7fc00000, 0x40000000, 0x7fc00000},
                        {Pow, 0xc0000000, 0x40400000, 0xc1000000},   {Pow, 0xc0000000, 0x40800000, 0x41800000},
                        {Pow, 0xc0000000, 0x3f000000, 0x7fc00000},   {Pow, 0xc0000000, 0x40200000, 0x7fc00000},
                        {Pow, 0xbfc00000, 0x4b7fffff, 0xff800000},   {Pow, 0xbf800000, 0x4b800001, 0x3f800000},
                        {Pow, 0x00000001, 0x3f000000, 0x1a3504f3},   {Pow, 0x80000001, 0xc0400000, 0xff800000},
                        {Pow, 0x80000003, 0xbf800000, 0xff800000},   {Pow, 0x40000000, 0x42ff0000, 0x7f3504f3},
                        {Pow, 0x40000000, 0x43000000, 0x7f800000},   {Pow, 0xc0000000, 0x43010000, 0xff800000},
                        {Pow, 0x40000000, 0xc3150000, 0x00000001},   {Pow, 0x40000000, 0xc3160000, 0x00000000},
                        {Pow, 0xc0000000, 0xc3170000, 0x80000000},   {Pow, 0x40400000, 0xc2bc0000, 0x00000001},
                        {Pow, 0x41200000, 0xc0000000, 0x3c23d70a},   {Pow, 0x3f800001, 0x4e6e6b28, 0x7f800000},
                        {Pow, 0x3f333333, 0x3e99999a, 0x3f6605a2},   {Atan2, 0x7fc00000, 0x3f800000, 0x7fc00000},
                        {Atan2, 0x3f800000, 0x7fc00000, 0x7fc00000}, {Atan2, 0xbf000000, 0x3f800000, 0xbeed6338},
                        {Atan2, 0x00000000, 0x40000000, 0x00000000}, {Atan2, 0x80000000, 0x40000000, 0x80000000},
                        {Atan2, 0x00000000, 0xc0000000, 0x40490fdb}, {Atan2, 0x80000000, 0xc0000000, 0xc0490fdb},
                        {Atan2, 0x00000000, 0x80000000, 0x40490fdb}, {Atan2, 0x80000000, 0x00000000, 0x80000000},
                        {Atan2, 0x00000001, 0x00000000, 0x3fc90fdb}, {Atan2, 0xbf800000, 0x80000000, 0xbfc90fdb},
                        {Atan2, 0x7f800000, 0x7f800000, 0x3f490fdb}, {Atan2, 0xff800000, 0x7f800000, 0xbf490fdb},
                        {Atan2, 0x7f800000, 0xff800000, 0x4016cbe4}, {Atan2, 0xff800000, 0xff800000, 0xc016cbe4},
                        {Atan2, 0x40400000, 0x7f800000, 0x00000000}, {Atan2, 0xc0400000, 0x7f800000, 0x80000000},
                        {Atan2, 0x40400000, 0xff800000, 0x40490fdb}, {Atan2, 0xc0400000, 0xff800000, 0xc0490fdb},
                        {Atan2, 0x7f800000, 0x40400000, 0x3fc90fdb}, {Atan2, 0xff800000, 0xc0400000, 0xbfc90fdb},
                        {Atan2, 0x7149f2ca, 0xbf800000, 0x3fc90fdb}, {Atan2, 0xf149f2ca, 0x40000000, 0xbfc90fdb},
                        {Atan2, 0x0da24260, 0xc0000000, 0x40490fdb}, {Atan2, 0x8da24260, 0xc0000000, 0xc0490fdb},
                        {Atan2, 0x0da24260, 0x40000000, 0x0d224260}, {Atan2, 0xbf800000, 0x7f7fffff, 0x80200000},
                        {Atan2, 0x3f800000, 0x40000000, 0x3eed6338}, {Atan2, 0xbf800000, 0x40000000, 0xbeed6338},
                        {Atan2, 0x3f800000, 0xc0000000, 0x402b6374}, {Atan2, 0xbf800000, 0xc0000000, 0xc02b6374},
                        {Atan2, 0x40400000, 0xbe800000, 0x3fd3b43a}};
    for (const Row& row : rows) {
        EXPECT_EQ(ResultBits(row.function.call(FloatOf(row.first), FloatOf(row.second))), row.result)
            << row.function.name << " of " << std::hex << row.first << ", " << row.second;
    }
}

// These arguments give other bits where a multiplication and an addition are fused into one rounding.
TEST(FloatMath, EveryOperationIsRoundedAlone) {
    EXPECT_EQ(BitsOf(tavrel_libm_asinf(FloatOf(0x3ef843b4))), 0x3f0198e4u);
    EXPECT_EQ(BitsOf(tavrel_libm_acosf(FloatOf(0x3f3c3706))), 0x3f3eac13u);
    EXPECT_EQ(BitsOf(tavrel_libm_atanf(FloatOf(0xbfa40370))), 0xbf6879acu);
}

TEST(FloatMath, DoubleRoot) {
    struct Row {
        std::uint64_t argument;
        std::uint64_t result;
    };
    const Row rows[] = {{0x8000000000000000, 0x8000000000000000}, {0x0000000000000001, 0x1e60000000000000},
                        {0x000fffffffffffff, 0x1fffffffffffffff}, {0x0010000000000000, 0x2000000000000000},
                        {0x3fefffffffffffff, 0x3fefffffffffffff}, {0x3ff0000000000001, 0x3ff0000000000000},
                        {0x4000000000000000, 0x3ff6a09e667f3bcd}, {0x4008000000000000, 0x3ffbb67ae8584caa},
                        {0x7fefffffffffffff, 0x5fefffffffffffff}, {0x7ff0000000000000, 0x7ff0000000000000},
                        {0xbff0000000000000, 0x7ff8000000000000}, {0x7ff8000000000000, 0x7ff8000000000000}};
    for (const Row& row : rows) {
        const double root = tavrel_libm_sqrt(DoubleOf(row.argument));
        EXPECT_EQ(root == root ? BitsOf(root) : 0x7ff8000000000000, row.result) << std::hex << row.argument;
    }
}

TEST(FloatMath, FloorAndScale) {
    struct Row {
        double argument;
        double floor;
    };
    for (const float x : {0.0F, -0.0F, -2.5F, -std::numeric_limits<float>::infinity()}) {
        EXPECT_EQ(BitsOf(tavrel_libm_fabsf(x)), BitsOf(x) & 0x7FFFFFFFU);
    }
    const Row floors[] = {{-0.0, -0.0}, {0.25, 0.0},  {-0.25, -1.0},  {2.5, 2.0},
                          {-2.5, -3.0}, {-3.0, -3.0}, {1e300, 1e300}, {0x1.fffffffffffffp+51, 0x1.ffffffffffffep+51}};
    for (const Row& row : floors) EXPECT_EQ(BitsOf(tavrel_libm_floor(row.argument)), BitsOf(row.floor)) << row.argument;

    constexpr double Least = std::numeric_limits<double>::denorm_min();
    constexpr double Infinity = std::numeric_limits<double>::infinity();
    EXPECT_EQ(tavrel_libm_scalbn(Least, 2097), 0x1p+1023);
    EXPECT_EQ(tavrel_libm_scalbn(0x1p+1023, -2097), Least);
    EXPECT_EQ(tavrel_libm_scalbn(0x1.4000000000001p-9, -1064), 3 * Least);  // rounded twice it would be two
    EXPECT_EQ(tavrel_libm_scalbn(-1.0, std::numeric_limits<int>::max()), -Infinity);
    EXPECT_EQ(BitsOf(tavrel_libm_scalbn(-1.0, std::numeric_limits<int>::min())), BitsOf(-0.0));
}

// The functions of this folder ask for one piece and the least precision only.
TEST(FloatMath, LargeReductionByPrecision) {
    constexpr double Pieces[3] = {0x1.fffffcp+23, 0x1.579bdep+23, 0x1.ffffc4p+22};
    constexpr double Rests[4][3] = {{0x1.067d5c03c9042p-3, 0, 0},
                                    {0x1.067d5c1e37f3cp-3, 0x1.2559a251086p-58, 0},
                                    {0x1.067d5c1e37f3ep-3, -0x1.e639667ec8aabp-58, 0},
                                    {0x1.067d5c1e37f3ep-3, -0x1.e63956410395bp-58, 0x1.7b42c92f1a839p-113}};
    for (int precision = 0; precision < 4; ++precision) {
        double rest[3] = {};
        EXPECT_EQ(tavrel_libm__rem_pio2_large(Pieces, rest, 977, 3, precision), 6) << precision;
        for (int i = 0; i < 3; ++i) EXPECT_EQ(rest[i], Rests[precision][i]) << precision << ", " << i;
    }
}

}  // namespace
}  // namespace tavrel::core::script
