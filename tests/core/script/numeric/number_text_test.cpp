#include "core/script/numeric/number_text.h"

#include <gtest/gtest.h>

#include <bit>
#include <limits>

namespace tavrel::core::script {
namespace {

using Float = std::numeric_limits<float>;

std::uint32_t Bits(float value) {
    return std::bit_cast<std::uint32_t>(value);
}

TEST(NumberText, RealToText) {
    struct Row {
        float value;
        const char* text;
    };
    const Row rows[] = {
        {0.1f, "0.1"},
        {1.0f, "1"},
        {100000000.0f, "100000000"},
        {1000000000.0f, "1e9"},
        {1.5e9f, "1.5e9"},
        {0.00001f, "0.00001"},
        {0.000001f, "1e-6"},
        {-2.5f, "-2.5"},
        {-0.0f, "0"},
        {1.0f / 3.0f, "0.33333334"},
        {Float::max(), "3.40282347e38"},
        {-Float::max(), "-3.40282347e38"},
        {123456.789f, "123456.79"},
        {0.99999994f, "0.99999994"},
        {1e-40f, "1e-40"},
        {Float::denorm_min(), "1.401e-40"},
        {Float::infinity(), "inf"},
        {-Float::infinity(), "-inf"},
        {Float::quiet_NaN(), "nan"},
    };
    for (const Row& row : rows) EXPECT_EQ(RealToText(row.value), row.text);
}

TEST(NumberText, ParseRealDigits) {
    struct Row {
        std::string text;
        float value;
    };
    const Row rows[] = {
        {"", 0.0f},
        {"-", 0.0f},
        {".", 0.0f},
        {"-0.0", 0.0f},
        {"x1", 0.0f},
        {"+2.", 2.0f},
        {"-.25", -0.25f},
        {"1e", 1.0f},
        {"1e+", 1.0f},
        {"15E-1", 1.5f},
        {"1.5x7", 1.5f},
        {"1e-50", 0.0f},
        {"-1e-50", -0.0f},
        {"0e99999999999", 0.0f},
        {"1e-99999999999", 0.0f},
        {"3.402823466e38", Float::max()},
        {"1234567890123456789012345", 1234567890123456789e6f},
        {"0.00012345678901234567899", 0.00012345679f},
        {"9999999999999999999", 1e19f},
        {"9007199791611905", 9007199254740992.0f},  // first to a double, a tie, then to a float, another
        {"18446744073709551615.9", 1.8446744e19f},
        {"1" + std::string(100000, '0') + "e-99989", 1e11f},
        {"0." + std::string(100000, '0') + "1e99989", 1e-12f},
    };
    for (const Row& row : rows) {
        float value = 9;
        EXPECT_TRUE(ParseRealDigits(row.text, value)) << row.text.substr(0, 40);
        EXPECT_EQ(Bits(value), Bits(row.value)) << row.text.substr(0, 40) << " gives " << value;
    }
}

TEST(NumberText, ParseRealDigitsReportsWhatNoFloatHolds) {
    for (const std::string text : {"1e39", "3.4028235e38", "9e99999999999", "1e2147483648"}) {
        float value = 0;
        EXPECT_FALSE(ParseRealDigits(text, value)) << text;
        EXPECT_EQ(value, Float::max()) << text;
        EXPECT_FALSE(ParseRealDigits("-" + text, value)) << text;
        EXPECT_EQ(value, -Float::max()) << text;
    }
}

TEST(NumberText, EveryRealFrom1e40thUpwardReadsBackToItsBits) {
    const std::uint32_t first = Bits(1e-40f);
    const std::uint32_t last = Bits(Float::max());
    for (std::uint32_t bits = first; bits <= last; bits += 42013) {
        for (const float value : {std::bit_cast<float>(bits), -std::bit_cast<float>(bits)}) {
            float read = 0;
            const std::string text = RealToText(value);
            ASSERT_TRUE(ParseRealDigits(text, read)) << text;
            ASSERT_EQ(Bits(read), Bits(value)) << text;
        }
    }
}

TEST(NumberText, Integers) {
    EXPECT_EQ(IntegerToText(0), "0");
    EXPECT_EQ(IntegerToText(-70), "-70");
    EXPECT_EQ(IntegerToText(std::numeric_limits<std::int64_t>::max()), "9223372036854775807");
    EXPECT_EQ(IntegerToText(std::numeric_limits<std::int64_t>::min()), "-9223372036854775808");
    EXPECT_EQ(Counted(1, "item", "itens"), "1 item");
    EXPECT_EQ(Counted(-1, "item", "itens"), "-1 item");
    EXPECT_EQ(Counted(0, "item", "itens"), "0 itens");
}

}  // namespace
}  // namespace tavrel::core::script
