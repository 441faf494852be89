// Takes the nearest multiple of pi/2 off an argument of any size.
//
// Up to 2^28 * pi/2 the multiple n is found by rounding x * 2/pi, and n * pi/2 is taken off in two parts, the first of
// which has so few bits that its product with n is exact.
//
// Beyond that x has no fraction, and a product with pi/2 to double precision would say nothing of the rest. Payne and
// Hanek's way: of x * 2/pi only the number modulo 8 and the fraction matter. 2/pi is stored to 1584 bits, 24 to an
// entry. x is a whole number times a power of two, so the leading entries of 2/pi give multiples of 8, which are
// skipped. The next entries, multiplied by x and added up, give the quadrant and the first bits of the fraction; as
// many more entries are taken as the wanted precision needs. If the fraction turns out to begin with zeros, that is x
// is close to a multiple of pi/2, entries are added until enough bits are left. A fraction above 1/2 is replaced by its
// distance to 1, with the quadrant one higher and the sign turned. At the end the fraction times pi/2 is the rest.
// A double has room for the product of two numbers of 24 bits and for sums of a few of them, so everything before the
// multiplication by pi/2 is exact.
#include "core/script/numeric/float_internal.h"
#include "core/script/numeric/float_math.h"

namespace tavrel::core::script {

namespace {

// 2/pi, 24 bits an entry: the sum of ipio2[i] * 2^(-24 (i + 1)), as far as the largest double needs it.
constexpr std::int32_t ipio2[66] = {
    0xA2F983, 0x6E4E44, 0x1529FC, 0x2757D1, 0xF534DD, 0xC0DB62, 0x95993C, 0x439041, 0xFE5163, 0xABDEBB, 0xC561B7,
    0x246E3A, 0x424DD2, 0xE00649, 0x2EEA09, 0xD1921C, 0xFE1DEB, 0x1CB129, 0xA73EE8, 0x8235F5, 0x2EBB44, 0x84E99C,
    0x7026B4, 0x5F7E41, 0x3991D6, 0x398353, 0x39F49C, 0x845F8B, 0xBDF928, 0x3B1FF8, 0x97FFDE, 0x05980F, 0xEF2F11,
    0x8B5A0A, 0x6D1F6D, 0x367ECF, 0x27CB09, 0xB74F46, 0x3F669E, 0x5FEA2D, 0x7527BA, 0xC7EBE5, 0xF17B3D, 0x0739F7,
    0x8A5292, 0xEA6BFB, 0x5FB11F, 0x8D5D08, 0x560330, 0x46FC7B, 0x6BABF0, 0xCFBC20, 0x9AF436, 0x1DA9E3, 0x91615E,
    0xE61B08, 0x659985, 0x5F14A0, 0x68408D, 0xFFD880, 0x4D7327, 0x310606, 0x1556CA, 0x73A8C9, 0x60E27B, 0xC08C6B};

// pi/2 in pieces of 24 bits.
constexpr double PIo2[8] = {0x1.921fb4p+0,  0x1.4442dp-24,   0x1.846988p-48,  0x1.8cc516p-72,
                            0x1.01b838p-96, 0x1.a25204p-120, 0x1.382228p-145, 0x1.9f31dp-169};

// The terms to start with, less one, by the precision asked for.
constexpr int init_jk[4] = {2, 3, 4, 6};

constexpr int MaxTerms = 20;
constexpr double TwoTo24 = 0x1p+24;
constexpr double TwoToMinus24 = 0x1p-24;

constexpr std::uint32_t MediumBelow = 0x4dc90fdb;  // 2^28 * pi/2
constexpr double WholeByRounding = 0x1.8p+52;      // added and taken off again, it leaves a whole number
constexpr double InverseHalfPi = 0x1.45f306dc9c883p-1;
constexpr double HalfPiHigh = 0x1.921fb5p+0;  // so short that its product with a multiple is exact
constexpr double HalfPiLow = 0x1.110b4611a6263p-26;
constexpr double QuarterPi = 0x1.921fb6p-1;

// Payne and Hanek's reduction: x * 2/pi is multiplied out from those bits of 2/pi that reach its fraction.
class LargeReduction {
public:
    LargeReduction(const double* pieces, int count, int firstExponent, int wantedPrecision);

    // Returns the multiple of pi/2 that was taken off, modulo 8.
    int Run(double* y);

private:
    void AddProduct(int index);
    double SplitIntoDigits();
    double TakeQuadrant(double top);
    void TakeCarry();
    bool ComplementDigits();
    bool NeedsMoreTerms() const;
    void AddMissingTerms();
    void DropZeroDigits();
    void AppendFraction(double fraction);
    void MultiplyByHalfPi();
    void Write(double* y);
    void WriteThree(double* y);
    double SumDownTo(int first) const;
    void CarryRoundingDown(int first);
    double WithSign(double value) const { return half == 0 ? value : -value; }

    const double* x;
    int last;        // index of the last piece of x
    int firstChunk;  // index of the first piece of 2/pi that matters
    int startTerms;  // less one, as the precision asks
    int terms;       // in use, less one
    int exponent;    // of what stands above the digits; below 3
    int precision;
    int quadrant = 0;
    int half = 0;  // above 0 when the fraction passed 1/2 and was taken from 1
    double chunks[MaxTerms] = {};
    double products[MaxTerms] = {};      // of x and 2/pi, the most significant first
    std::int32_t digits[MaxTerms] = {};  // of 24 bits, the least significant first
    double parts[MaxTerms] = {};         // of the result, the most significant first
};

LargeReduction::LargeReduction(const double* pieces, int count, int firstExponent, int wantedPrecision)
    : x(pieces),
      last(count - 1),
      firstChunk(firstExponent < 27 ? 0 : (firstExponent - 3) / 24),
      startTerms(init_jk[wantedPrecision]),
      terms(startTerms),
      exponent(firstExponent - 24 * (firstChunk + 1)),
      precision(wantedPrecision) {
    for (int i = 0; i <= last + startTerms; ++i) {
        const int chunk = firstChunk - last + i;
        chunks[i] = chunk < 0 ? 0.0 : static_cast<double>(ipio2[chunk]);
    }
    for (int i = 0; i <= startTerms; ++i) AddProduct(i);
}

int LargeReduction::Run(double* y) {
    double fraction = TakeQuadrant(SplitIntoDigits());
    while (fraction == 0.0 && NeedsMoreTerms()) {
        AddMissingTerms();
        fraction = TakeQuadrant(SplitIntoDigits());
    }
    if (fraction == 0.0) {
        DropZeroDigits();
    } else {
        AppendFraction(tavrel_libm_scalbn(fraction, -exponent));
    }
    MultiplyByHalfPi();
    Write(y);
    return quadrant & 7;
}

void LargeReduction::AddProduct(int index) {
    double sum = 0.0;
    for (int j = 0; j <= last; ++j) sum += x[j] * chunks[last + index - j];
    products[index] = sum;
}

// Returns what stands above the digits.
double LargeReduction::SplitIntoDigits() {
    double rest = products[terms];
    for (int i = 0; i < terms; ++i) {
        const double carried = static_cast<std::int32_t>(TwoToMinus24 * rest);
        digits[i] = static_cast<std::int32_t>(rest - TwoTo24 * carried);
        rest = products[terms - i - 1] + carried;
    }
    return rest;
}

// Sets the quadrant and whether the fraction passes 1/2; returns the fraction above the digits.
double LargeReduction::TakeQuadrant(double top) {
    double fraction = tavrel_libm_scalbn(top, exponent);
    fraction -= 8.0 * tavrel_libm_floor(fraction * 0.125);
    quadrant = static_cast<int>(fraction);
    fraction -= quadrant;
    half = 0;
    if (exponent > 0) {
        TakeCarry();
    } else if (exponent == 0) {
        half = digits[terms - 1] >> 23;
    } else if (fraction >= 0.5) {
        half = 2;
    }
    if (half == 0) return fraction;
    ++quadrant;
    const bool borrowed = ComplementDigits();
    if (half != 2) return fraction;
    fraction = 1.0 - fraction;
    return borrowed ? fraction - tavrel_libm_scalbn(1.0, exponent) : fraction;
}

// With the point inside the top digit, its high bits belong to the quadrant.
void LargeReduction::TakeCarry() {
    std::int32_t& top = digits[terms - 1];
    const std::int32_t carried = top >> (24 - exponent);
    quadrant += carried;
    top -= carried << (24 - exponent);
    half = top >> (23 - exponent);
}

// Takes the digits from 1; false when they are all 0, and so nothing is borrowed from above them.
bool LargeReduction::ComplementDigits() {
    bool borrowed = false;
    for (int i = 0; i < terms; ++i) {
        if (borrowed) {
            digits[i] = 0xffffff - digits[i];
        } else if (digits[i] != 0) {
            borrowed = true;
            digits[i] = 0x1000000 - digits[i];
        }
    }
    if (exponent > 0) digits[terms - 1] &= (1 << (24 - exponent)) - 1;
    return borrowed;
}

bool LargeReduction::NeedsMoreTerms() const {
    std::int32_t any = 0;
    for (int i = terms - 1; i >= startTerms; --i) any |= digits[i];
    return any == 0;
}

void LargeReduction::AddMissingTerms() {
    int missing = 1;
    while (digits[startTerms - missing] == 0) ++missing;
    for (int i = terms + 1; i <= terms + missing; ++i) {
        chunks[last + i] = static_cast<double>(ipio2[firstChunk + i]);
        AddProduct(i);
    }
    terms += missing;
}

void LargeReduction::DropZeroDigits() {
    do {
        --terms;
        exponent -= 24;
    } while (digits[terms] == 0);
}

// The fraction above the digits becomes one or two digits more.
void LargeReduction::AppendFraction(double fraction) {
    if (fraction >= TwoTo24) {
        const std::int32_t high = static_cast<std::int32_t>(TwoToMinus24 * fraction);
        digits[terms] = static_cast<std::int32_t>(fraction - TwoTo24 * high);
        ++terms;
        exponent += 24;
        digits[terms] = high;
    } else {
        digits[terms] = static_cast<std::int32_t>(fraction);
    }
}

void LargeReduction::MultiplyByHalfPi() {
    double scale = tavrel_libm_scalbn(1.0, exponent);
    for (int i = terms; i >= 0; --i) {
        products[i] = scale * digits[i];
        scale *= TwoToMinus24;
    }
    for (int i = terms; i >= 0; --i) {
        double sum = 0.0;
        for (int k = 0; k <= startTerms && k <= terms - i; ++k) sum += PIo2[k] * products[i + k];
        parts[terms - i] = sum;
    }
}

double LargeReduction::SumDownTo(int first) const {
    double sum = 0.0;
    for (int i = terms; i >= first; --i) sum += parts[i];
    return sum;
}

void LargeReduction::Write(double* y) {
    if (precision == 3) {
        WriteThree(y);
        return;
    }
    const double sum = SumDownTo(0);
    y[0] = WithSign(sum);
    if (precision == 0) return;
    double rest = parts[0] - sum;
    for (int i = 1; i <= terms; ++i) rest += parts[i];
    y[1] = WithSign(rest);
}

// Moves what rounding would lose of each part into the part below it, the least significant first.
void LargeReduction::CarryRoundingDown(int first) {
    for (int i = terms; i > first; --i) {
        const double sum = parts[i - 1] + parts[i];
        parts[i] += parts[i - 1] - sum;
        parts[i - 1] = sum;
    }
}

void LargeReduction::WriteThree(double* y) {
    CarryRoundingDown(0);
    CarryRoundingDown(1);
    y[0] = WithSign(parts[0]);
    y[1] = WithSign(parts[1]);
    y[2] = WithSign(SumDownTo(2));
}

}  // namespace

int tavrel_libm__rem_pio2_large(const double* x, double* y, int e0, int nx, int prec) {
    return LargeReduction(x, nx, e0, prec).Run(y);
}

int tavrel_libm__rem_pio2f(float x, double* y) {
    const std::uint32_t magnitude = BitsOf(x) & FloatMagnitude;
    if (magnitude < MediumBelow) {
        double multiple = x * InverseHalfPi + WholeByRounding - WholeByRounding;
        double rest = x - multiple * HalfPiHigh - multiple * HalfPiLow;
        if (rest < -QuarterPi || rest > QuarterPi) [[unlikely]] {
            multiple += rest < 0.0 ? -1.0 : 1.0;
            rest = x - multiple * HalfPiHigh - multiple * HalfPiLow;
        }
        *y = rest;
        return static_cast<int>(multiple);
    }
    if (magnitude >= FloatInfinity) {
        *y = x - x;
        return 0;
    }
    // The argument as a whole number of 24 bits, and the power of two that it was multiplied by.
    const int exponent = static_cast<int>(magnitude >> 23) - (0x7f + 23);
    const double whole = FloatOf(magnitude - (static_cast<std::uint32_t>(exponent) << 23));
    double rest = 0.0;
    const int quadrant = tavrel_libm__rem_pio2_large(&whole, &rest, exponent, 1, 0);
    const bool negative = (BitsOf(x) & FloatSign) != 0;
    *y = negative ? -rest : rest;
    return negative ? -quadrant : quadrant;
}

}  // namespace tavrel::core::script
