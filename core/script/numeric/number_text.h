// Numbers to text and back, the same bits on every machine: plain IEEE double arithmetic in fixed steps, with no
// locale and nothing of the platform's own float printing or parsing.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace tavrel::core::script {

// Ten to the power `exponent`, rounded as the fixed steps round it.
[[nodiscard]] double PowerOfTen(int exponent);

// Reads a sign, digits, a point, digits and an exponent, stopping at the first character that does not fit. False when
// the magnitude passes the largest finite float, which `out` then holds with the sign.
[[nodiscard]] bool ParseRealDigits(std::string_view text, float& out);

// Reads one optional sign and decimal digits, and nothing else. False, with `out` as it was, for any other text and for
// a magnitude above 2^63 - 1; so the least integer cannot be read.
[[nodiscard]] bool ParseIntegerDigits(std::string_view text, std::int64_t& out);

[[nodiscard]] std::string IntegerToText(std::int64_t value);

// The shortest text, up to nine significant digits, that ParseRealDigits reads back to the same float. Infinities and
// NaN give "inf", "-inf" and "nan".
[[nodiscard]] std::string RealToText(float value);

// The count, a blank, and `one` for 1 and -1, else `many`.
[[nodiscard]] std::string Counted(std::int64_t count, const char* one, const char* many);

}  // namespace tavrel::core::script
