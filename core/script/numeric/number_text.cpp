// Reals to text and back in double arithmetic. Everything rests on a few facts about doubles: whole numbers below 2^53
// and the powers of ten up to 10^22 are exact in them, and a product or quotient of two doubles is rounded once. Each
// step below is one such operation in a fixed order, so every machine gives the same bits; some results are a last
// place off the best one, and are meant to be.
//
// Reading: up to 19 significant digits go into a 64-bit mantissa and the rest only into the exponent; the mantissa,
// rounded to a double, is multiplied or divided by exact powers of ten in steps of at most 22; and the double is
// rounded to a float.
//
// Writing: for 1, 2, ... 9 significant digits the value is scaled to a whole number of that many digits, laid out as
// text and read back; the first text that gives the same float is the shortest. Nine digits
// are as many as a float needs.
#include "core/script/numeric/number_text.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <limits>

#include "core/script/numeric/int_to_float.h"

namespace tavrel::core::script {

namespace {

// Every power of ten that a double holds exactly.
constexpr std::array<double, 23> ExactPowers = {1e0,  1e1,  1e2,  1e3,  1e4,  1e5,  1e6,  1e7,  1e8,  1e9,  1e10, 1e11,
                                                1e12, 1e13, 1e14, 1e15, 1e16, 1e17, 1e18, 1e19, 1e20, 1e21, 1e22};
constexpr int MaxExact = 22;

constexpr double MaxFloat = 3.4028234663852886e38;
constexpr int MantissaDigits = 19;  // as many as always fit 64 bits
constexpr int ExponentSaturation = 9999;
constexpr int MaxPrecision = 8;  // one less than the most significant digits
constexpr int MinExponent = -40;
constexpr int MaxExponent = 40;
constexpr int MinPlainExponent = -5;  // from here to the highest, no "e" is written
constexpr int MaxPlainExponent = 8;

bool IsDigit(char c) {
    return c >= '0' && c <= '9';
}

// Decimal text on its way into mantissa * 10 ^ exponent.
struct DecimalReader {
    explicit DecimalReader(std::string_view rest) : text(rest) {}

    char Next() const { return at < text.size() ? text[at] : '\0'; }
    bool AtDigit() const { return IsDigit(Next()); }

    bool ReadSign() {
        const bool negative = Next() == '-';
        if (negative || Next() == '+') ++at;
        return negative;
    }

    // Takes one digit into the mantissa; zeros at the very front are not significant.
    void TakeDigit() {
        const int digit = Next() - '0';
        mantissa = mantissa * 10 + static_cast<std::uint64_t>(digit);
        if (mantissa != 0) ++count;
    }

    void ReadInteger() {
        for (; AtDigit(); ++at) {
            sawDigit = true;
            if (count < MantissaDigits) {
                TakeDigit();
            } else {
                ++exponent;
            }
        }
    }

    void ReadFraction() {
        if (Next() != '.') return;
        for (++at; AtDigit(); ++at) {
            sawDigit = true;
            if (count == MantissaDigits) continue;
            TakeDigit();
            --exponent;
        }
    }

    void ReadExponent() {
        if (Next() != 'e' && Next() != 'E') return;
        ++at;
        const bool negative = ReadSign();
        int value = 0;
        for (; AtDigit(); ++at) {
            if (value < ExponentSaturation) value = value * 10 + (Next() - '0');
        }
        exponent += negative ? -value : value;
    }

    std::string_view text;
    std::size_t at = 0;
    std::uint64_t mantissa = 0;
    int count = 0;              // significant digits in the mantissa
    std::int64_t exponent = 0;  // wide enough for a text of any length
    bool sawDigit = false;
};

// One rounding. Above the signed range the lowest bit is kept sticky through the halving, so that the rounding is that
// of the whole number.
double ToDouble(std::uint64_t mantissa) {
    if (mantissa >> 63 == 0) return IntToFloat<double>(static_cast<std::int64_t>(mantissa));
    const std::uint64_t half = (mantissa >> 1) | (mantissa & 1);
    return IntToFloat<double>(static_cast<std::int64_t>(half)) * 2.0;
}

// Scales in steps of at most 10^22. Stops where further steps would not change the outcome, however long the exponent.
double Scale(double value, std::int64_t exponent) {
    while (exponent > 0 && value <= MaxFloat) {
        const auto step = std::min<std::int64_t>(exponent, MaxExact);
        value = value * ExactPowers[static_cast<std::size_t>(step)];
        exponent -= step;
    }
    while (exponent < 0 && value != 0) {
        const auto step = std::min<std::int64_t>(-exponent, MaxExact);
        value = value / ExactPowers[static_cast<std::size_t>(step)];
        exponent += step;
    }
    return value;
}

int DecimalExponent(double value) {
    int exponent = 0;
    while (exponent < MaxExponent && value >= PowerOfTen(exponent + 1)) ++exponent;
    while (exponent > MinExponent && PowerOfTen(exponent) > value) --exponent;
    return exponent;
}

// `digits` is a number from 1 to 9.99 with its point left out, to be shown as that number * 10 ^ exponent.
std::string Layout(const std::string& digits, int exponent) {
    std::string text;
    if (exponent < MinPlainExponent || exponent > MaxPlainExponent) {
        text.append(digits, 0, 1);
        if (digits.size() > 1) text.append(".").append(digits, 1);
        return text.append("e").append(IntegerToText(exponent));
    }
    if (exponent < 0) return text.append("0.").append(static_cast<std::size_t>(-exponent - 1), '0').append(digits);
    const auto whole = static_cast<std::size_t>(exponent) + 1;
    if (digits.size() <= whole) return text.append(digits).append(whole - digits.size(), '0');
    return text.append(digits, 0, whole).append(".").append(digits, whole);
}

// The text of a positive value at precision + 1 significant digits, given its decimal exponent.
std::string TextAtPrecision(double value, int exponent, int precision) {
    auto number = static_cast<std::int64_t>(value / PowerOfTen(exponent - precision) + 0.5);
    if (IntToFloat<double>(number) >= ExactPowers[static_cast<std::size_t>(precision) + 1]) {
        ++exponent;
        number /= 10;
    }
    std::string digits = IntegerToText(number);
    while (digits.size() > 1 && digits.back() == '0') digits.pop_back();
    return Layout(digits, exponent);
}

bool ReadsBackTo(const std::string& text, double value) {
    float read = 0;
    return ParseRealDigits(text, read) && static_cast<double>(read) == value;
}

}  // namespace

double PowerOfTen(int exponent) {
    unsigned int rest = exponent < 0 ? 0u - static_cast<unsigned int>(exponent) : static_cast<unsigned int>(exponent);
    double power = 1;
    if (rest <= MaxExact) {
        power = ExactPowers[rest];
    } else {
        power = ExactPowers[MaxExact];
        for (rest -= MaxExact; rest > MaxExact; rest -= MaxExact) power = power * ExactPowers[MaxExact];
        power = power * ExactPowers[rest];
    }
    return exponent < 0 ? 1.0 / power : power;
}

bool ParseRealDigits(std::string_view text, float& out) {
    DecimalReader reader(text);
    const bool negative = reader.ReadSign();
    reader.ReadInteger();
    reader.ReadFraction();
    if (reader.sawDigit) reader.ReadExponent();
    if (reader.mantissa == 0) {
        out = 0;  // never a negative zero
        return true;
    }
    const double magnitude = Scale(ToDouble(reader.mantissa), reader.exponent);
    const bool fits = magnitude <= MaxFloat;
    const auto nearest = static_cast<float>(fits ? magnitude : MaxFloat);
    out = negative ? -nearest : nearest;
    return fits;
}

bool ParseIntegerDigits(std::string_view text, std::int64_t& out) {
    constexpr std::int64_t Max = std::numeric_limits<std::int64_t>::max();
    const bool negative = text.starts_with('-');
    if (negative || text.starts_with('+')) text.remove_prefix(1);
    if (text.empty()) return false;
    std::int64_t magnitude = 0;
    for (const char letter : text) {
        if (letter < '0' || letter > '9') return false;
        const int digit = letter - '0';
        if (magnitude > (Max - digit) / 10) return false;
        magnitude = magnitude * 10 + digit;
    }
    out = negative ? -magnitude : magnitude;
    return true;
}

std::string IntegerToText(std::int64_t value) {
    std::array<char, 20> digits;  // the least integer has a sign and 19 digits
    std::size_t first = digits.size();
    std::uint64_t rest = value < 0 ? 0 - static_cast<std::uint64_t>(value) : static_cast<std::uint64_t>(value);
    do {
        digits[--first] = static_cast<char>('0' + rest % 10);
        rest /= 10;
    } while (rest != 0);
    if (value < 0) digits[--first] = '-';
    return {digits.data() + first, digits.size() - first};
}

std::string RealToText(float value) {
    if (value != value) return "nan";
    if (value == 0) return "0";
    const std::string sign = value < 0 ? "-" : "";
    const double magnitude = value < 0 ? -static_cast<double>(value) : static_cast<double>(value);
    if (magnitude > MaxFloat) return sign + "inf";
    const int exponent = DecimalExponent(magnitude);
    std::string text;
    for (int precision = 0; precision <= MaxPrecision; ++precision) {
        text = TextAtPrecision(magnitude, exponent, precision);
        if (ReadsBackTo(text, magnitude)) break;
    }
    return sign + text;
}

std::string Counted(std::int64_t count, const char* one, const char* many) {
    return IntegerToText(count) + " " + (count == 1 || count == -1 ? one : many);
}

}  // namespace tavrel::core::script
