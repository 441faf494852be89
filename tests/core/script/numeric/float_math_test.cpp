#include "core/script/numeric/float_math.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <fstream>
#include <limits>
#include <sstream>
#include <string>

#include "core/script/numeric/float_internal.h"

namespace tavrel::core::script {
namespace {

// Every NaN counts as one: neither sign nor payload is promised.
std::uint32_t ResultBits(float value) {
    return value == value ? BitsOf(value) : 0x7fc00000;
}

struct Function {
    const char* name;
    float (*ofOne)(float);
    float (*ofTwo)(float, float);
};

const Function Functions[] = {
    {"sin", tavrel_libm_sinf, nullptr},   {"cos", tavrel_libm_cosf, nullptr},    {"tan", tavrel_libm_tanf, nullptr},
    {"asin", tavrel_libm_asinf, nullptr}, {"acos", tavrel_libm_acosf, nullptr},  {"atan", tavrel_libm_atanf, nullptr},
    {"exp", tavrel_libm_expf, nullptr},   {"log", tavrel_libm_logf, nullptr},    {"sqrt", tavrel_libm_sqrtf, nullptr},
    {"pow", nullptr, tavrel_libm_powf},   {"atan2", nullptr, tavrel_libm_atan2f}};

// The file `float_math_rows`: a function, the bits of its arguments and those of its result on a line.
TEST(FloatMath, GivesTheBitsOfEachRow) {
    std::ifstream file(TAVREL_FLOAT_ROWS);
    int rows = 0;
    for (std::string line; std::getline(file, line);) {
        std::istringstream words(line);
        std::string name;
        std::uint32_t first = 0;
        std::uint32_t second = 0;
        std::uint32_t result = 0;
        words >> name >> std::hex >> first >> second;
        for (const Function& function : Functions) {
            if (name != function.name) continue;
            ++rows;
            if (function.ofOne != nullptr) {
                EXPECT_EQ(ResultBits(function.ofOne(FloatOf(first))), second) << line;
            } else if (words >> result) {
                EXPECT_EQ(ResultBits(function.ofTwo(FloatOf(first), FloatOf(second))), result) << line;
            }
        }
    }
    EXPECT_GT(rows, 200);
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
