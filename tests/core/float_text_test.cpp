#include "core/float_text.h"

#include <gtest/gtest.h>

#include <bit>
#include <cstdint>

namespace tavrel::core {
namespace {

TEST(FloatText, DecimalAndHexadecimal) {
    struct Row {
        std::uint64_t bits;
        int precision;
        const char* decimal;
        const char* hexadecimal;
    };
    const Row rows[] = {
        {0x0000000000000000, 9, "0", "0x0p+0"},
        {0x8000000000000000, 17, "-0", "-0x0p+0"},
        {0x3FF0000000000000, 9, "1", "0x8p-3"},
        {0xBFF8000000000000, 9, "-1.5", "-0xcp-3"},
        {0x7FF0000000000000, 9, "inf", "inf"},
        {0xFFF0000000000000, 17, "-inf", "-inf"},
        {0x7FF8000000000000, 9, "nan", "nan"},
        {0xFFF0000000000001, 9, "-nan", "-nan"},  // signalling, negative
        {0x3FB999999999999A, 9, "0.1", "0xc.cccccccccccdp-7"},
        {0x3FB999999999999A, 17, "0.10000000000000001", "0xc.cccccccccccdp-7"},
        {0x3FB99999A0000000, 9, "0.100000001", "0xc.ccccdp-7"},      // 0.1 as a float
        {0x3F1A36E2EB1C432D, 9, "0.0001", "0xd.1b71758e21968p-17"},  // the last without an exponent
        {0x3F1A36E2EB1B22F2, 9, "0.0001", "0xd.1b71758d9179p-17"},   // rounds up into it
        {0x41CDCD64FFC00000, 9, "1e+09", "0xe.e6b27fep+26"},  // a tie that carries through every nine into an exponent
        {0x4197D78402000000, 9, "100000000", "0xb.ebc201p+23"},                      // a tie that goes down to even
        {0x4197D78406000000, 9, "100000002", "0xb.ebc203p+23"},                      // a tie that goes up to even
        {0x4197D78402000001, 9, "100000001", "0xb.ebc2010000008p+23"},               // just above a tie
        {0x3DDFB18425ECB7B0, 17, "1.1530000000000001e-10", "0xf.d8c212f65bd8p-37"},  // above a tie by a far digit
        {0x44B52D02C7E14AF6, 17, "9.9999999999999992e+22", "0xa.968163f0a57bp+73"},
        {0x4059000000000000, 9, "100", "0xc.8p+3"},  // zeros before the point stay
        {0x4341C37937E08000, 17, "10000000000000000", "0x8.e1bc9bf04p+50"},
        {0x4376345785D8A000, 17, "1e+17", "0xb.1a2bc2ec5p+53"},
        {0x36A0000000000000, 9, "1.40129846e-45", "0x8p-152"},  // the least float
        {0x47EFFFFFE0000000, 9, "3.40282347e+38", "0xf.fffffp+124"},
        {0x0000000000000001, 17, "4.9406564584124654e-324", "0x8p-1077"},               // the least double
        {0x000FFFFFFFFFFFFF, 17, "2.2250738585072009e-308", "0xf.ffffffffffffp-1026"},  // the longest, 767 digits
        {0x7FEFFFFFFFFFFFFF, 17, "1.7976931348623157e+308", "0xf.ffffffffffff8p+1020"},
        {0x4004000000000000, 1, "2", "0xap-2"},
    };
    for (const Row& row : rows) {
        const auto value = std::bit_cast<double>(row.bits);
        std::string decimal;
        AppendDecimal(decimal, value, row.precision);
        EXPECT_EQ(decimal, row.decimal) << std::hex << row.bits;
        std::string hexadecimal;
        AppendHexadecimal(hexadecimal, value);
        EXPECT_EQ(hexadecimal, row.hexadecimal) << std::hex << row.bits;
    }
}

}  // namespace
}  // namespace tavrel::core
