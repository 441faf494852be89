// Exact arithmetic and one rounding. A finite double is significand * 2^exponent, and that number has finitely many
// decimal digits: as an integer where the exponent is positive, and otherwise as significand * 5^n with the point moved
// n places to the left. So the number is built in limbs of decimal digits, its leading digits are taken, and they are
// rounded to the precision by looking at all digits behind them, ties to even. Numbers with few bits behind the point
// go a shorter way in one machine word. The hexadecimal form is a matter of shifts alone.
#include "core/float_text.h"

#include <algorithm>
#include <array>
#include <bit>
#include <charconv>
#include <cstddef>
#include <cstdint>

namespace tavrel::core {

namespace {

constexpr int FractionBits = 52;
constexpr int ExponentOfOne = 1023;
constexpr unsigned ExponentMask = 0x7FF;  // all set: an infinity or a NaN
constexpr std::size_t MaxPrecision = 17;
constexpr int MaxShortFractionBits = 60;  // times ten they still fit in 64

// significand * 2^exponent, the significand odd, or zero with exponent 0.
struct Binary {
    std::uint64_t significand;
    int exponent;
};

Binary Decompose(std::uint64_t bits) {
    const auto biased = static_cast<int>((bits >> FractionBits) & ExponentMask);
    std::uint64_t significand = bits & ((std::uint64_t{1} << FractionBits) - 1);
    if (biased != 0) significand |= std::uint64_t{1} << FractionBits;
    if (significand == 0) return {0, 0};
    const int zeros = std::countr_zero(significand);
    return {significand >> zeros, std::max(biased, 1) - ExponentOfOne - FractionBits + zeros};
}

// Appends the sign, and the whole text of an infinity or a NaN. Tells whether the value is one of those.
bool AppendSignAndSpecial(std::string& out, std::uint64_t bits) {
    if ((bits >> 63) != 0) out += '-';
    if (((bits >> FractionBits) & ExponentMask) != ExponentMask) return false;
    out += (bits << (64 - FractionBits)) == 0 ? "inf" : "nan";
    return true;
}

// A natural number in limbs of nine decimal digits, least significant first. The longest that a double asks for has
// 767 digits: the significand of a subnormal times 5^1074.
class BigDecimal {
public:
    static constexpr std::uint32_t LimbBase = 1'000'000'000;
    static constexpr std::size_t LimbDigits = 9;

    explicit BigDecimal(std::uint64_t value) {
        for (; value != 0; value /= LimbBase) limbs[size++] = static_cast<std::uint32_t>(value % LimbBase);
    }

    void MultiplyByPower(std::uint32_t base, int exponent, std::uint32_t step, int stepExponent) {
        for (; exponent >= stepExponent; exponent -= stepExponent) Multiply(step);
        std::uint32_t rest = 1;
        for (; exponent > 0; --exponent) rest *= base;
        if (rest != 1) Multiply(rest);
    }

    std::size_t Size() const { return size; }
    std::uint32_t Limb(std::size_t index) const { return limbs[index]; }

private:
    // With `factor` below LimbBase the last carry is one limb at most.
    void Multiply(std::uint32_t factor) {
        std::uint64_t carry = 0;
        for (std::size_t i = 0; i < size; ++i) {
            carry += std::uint64_t{limbs[i]} * factor;
            limbs[i] = static_cast<std::uint32_t>(carry % LimbBase);
            carry /= LimbBase;
        }
        if (carry != 0) limbs[size++] = static_cast<std::uint32_t>(carry);
    }

    std::array<std::uint32_t, 86> limbs;  // not cleared: only the first `size` are ever read
    std::size_t size = 0;
};

// d.ddd * 10^exponent: the leading digits, and whether others than zero follow them.
struct Digits {
    std::array<char, 3 * BigDecimal::LimbDigits> text;
    std::size_t count = 0;
    int exponent = 0;
    bool more = false;
};

// Three limbs hold 19 digits or more: MaxPrecision and what rounding asks of the next ones.
Digits LeadingDigits(const BigDecimal& number, int scale) {
    Digits digits;
    const std::size_t last = number.Size() - std::min<std::size_t>(number.Size(), 3);
    for (std::size_t i = number.Size(); i-- > last;) {
        std::array<char, BigDecimal::LimbDigits> group;
        std::uint32_t rest = number.Limb(i);
        for (auto place = group.rbegin(); place != group.rend(); ++place, rest /= 10) {
            *place = static_cast<char>('0' + rest % 10);
        }
        auto first = group.begin();
        if (digits.count == 0) first = std::find_if(first, group.end(), [](char digit) { return digit != '0'; });
        std::copy(first, group.end(), digits.text.data() + digits.count);
        digits.count += static_cast<std::size_t>(group.end() - first);
    }
    for (std::size_t i = 0; i < last && !digits.more; ++i) digits.more = number.Limb(i) != 0;
    digits.exponent = static_cast<int>(digits.count + last * BigDecimal::LimbDigits) - 1 - scale;
    return digits;
}

// The same where the fraction's bits and a decimal digit above them fit in one word, which is true of most numbers that
// people write.
Digits LeadingDigitsOfShort(const Binary& binary) {
    const int fractionBits = -binary.exponent;
    const std::uint64_t below = (std::uint64_t{1} << fractionBits) - 1;
    std::uint64_t fraction = binary.significand & below;
    Digits digits;
    digits.exponent = -1;
    if (const std::uint64_t whole = binary.significand >> fractionBits; whole != 0) {
        char* const text = digits.text.data();
        digits.count = static_cast<std::size_t>(std::to_chars(text, text + digits.text.size(), whole).ptr - text);
        digits.exponent = static_cast<int>(digits.count) - 1;
    }
    while (digits.count < MaxPrecision + 1 && fraction != 0) {
        fraction *= 10;
        const std::uint64_t digit = fraction >> fractionBits;
        fraction &= below;
        if (digits.count == 0 && digit == 0) {
            --digits.exponent;
        } else {
            digits.text[digits.count++] = static_cast<char>('0' + digit);
        }
    }
    digits.more = fraction != 0;
    return digits;
}

Digits LeadingDigitsOf(const Binary& binary) {
    if (binary.exponent < 0 && binary.exponent >= -MaxShortFractionBits) return LeadingDigitsOfShort(binary);
    // Dividing by 2^n is multiplying by 5^n and moving the point n places.
    BigDecimal number(binary.significand);
    if (binary.exponent >= 0) {
        number.MultiplyByPower(2, binary.exponent, 1U << 29, 29);
    } else {
        number.MultiplyByPower(5, -binary.exponent, 244'140'625, 12);
    }
    return LeadingDigits(number, std::max(-binary.exponent, 0));
}

bool RoundsUp(const Digits& digits, std::size_t precision) {
    const char* next = digits.text.data() + precision;
    if (*next != '5') return *next > '5';
    const char* end = digits.text.data() + digits.count;
    if (digits.more || std::any_of(next + 1, end, [](char digit) { return digit != '0'; })) return true;
    return (next[-1] - '0') % 2 != 0;
}

// Leaves at most `precision` digits, without trailing zeros. Rounding up turns trailing nines into such zeros.
void Round(Digits& digits, std::size_t precision) {
    const bool up = digits.count > precision && RoundsUp(digits, precision);
    digits.count = std::min(digits.count, precision);
    while (digits.count > 0 && digits.text[digits.count - 1] == (up ? '9' : '0')) --digits.count;
    if (!up) return;
    if (digits.count == 0) {
        digits.text[digits.count++] = '0';
        ++digits.exponent;
    }
    ++digits.text[digits.count - 1];
}

void AppendExponent(std::string& out, char letter, int exponent, std::size_t leastDigits) {
    const std::string text = std::to_string(exponent < 0 ? -exponent : exponent);
    out += letter;
    out += exponent < 0 ? '-' : '+';
    if (text.size() < leastDigits) out += '0';
    out += text;
}

void AppendLayout(std::string& out, const Digits& digits, int precision) {
    std::size_t whole = 1;  // digits before the point
    const bool scientific = digits.exponent < -4 || digits.exponent >= precision;
    if (!scientific && digits.exponent < 0) {
        out += "0.";
        out.append(static_cast<std::size_t>(-digits.exponent - 1), '0');
        whole = digits.count;
    } else if (!scientific) {
        whole = static_cast<std::size_t>(digits.exponent) + 1;
    }
    out.append(digits.text.data(), std::min(whole, digits.count));
    if (whole > digits.count) out.append(whole - digits.count, '0');
    if (whole < digits.count) {
        out += '.';
        out.append(digits.text.data() + whole, digits.count - whole);
    }
    if (scientific) AppendExponent(out, 'e', digits.exponent, 2);
}

}  // namespace

void AppendDecimal(std::string& out, double value, int precision) {
    const auto bits = std::bit_cast<std::uint64_t>(value);
    if (AppendSignAndSpecial(out, bits)) return;
    const Binary binary = Decompose(bits);
    if (binary.significand == 0) {
        out += '0';
        return;
    }
    Digits digits = LeadingDigitsOf(binary);
    Round(digits, static_cast<std::size_t>(precision));
    AppendLayout(out, digits, precision);
}

void AppendHexadecimal(std::string& out, double value) {
    const auto bits = std::bit_cast<std::uint64_t>(value);
    if (AppendSignAndSpecial(out, bits)) return;
    const Binary binary = Decompose(bits);
    const int zeros = std::countl_zero(binary.significand) % 64;
    std::uint64_t rest = binary.significand << zeros;
    out += "0x";
    out += "0123456789abcdef"[rest >> 60];
    rest <<= 4;
    if (rest != 0) out += '.';
    for (; rest != 0; rest <<= 4) out += "0123456789abcdef"[rest >> 60];
    // The leading digit weighs 2^60 in a significand moved up by `zeros`.
    AppendExponent(out, 'p', binary.significand == 0 ? 0 : binary.exponent - zeros + 60, 1);
}

}  // namespace tavrel::core
