// Floating-point values as text for listings that people compare: exact, correctly rounded to nearest with ties to
// even, and the same on every system, whatever its own printing does. Text is appended to the caller's string; nothing
// here parses, and nothing here enters a digest.
#pragma once

#include <string>

namespace tavrel::core {

// Appends what "%.*g" of the C standard gives with `precision` significant digits, 1 to 17: no trailing zeros, an
// exponent of at least two digits, "inf" and "nan" in lower case with their sign.
void AppendDecimal(std::string& out, double value, int precision);

// Appends what "%a" gives for the value in extended precision: the leading hexadecimal digit holds the top four bits,
// so that 1.0 is 0x8p-3. Subnormal values come out normalised too.
void AppendHexadecimal(std::string& out, double value);

}  // namespace tavrel::core
