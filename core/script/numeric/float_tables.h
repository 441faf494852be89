// Read-only tables of the float functions, equal to those of the published sources, bit by bit. Private to this folder.
#pragma once

#include <cstdint>

namespace tavrel::core::script {

// ARM Optimized Routines. tab[i] holds the bits of 2^(i/32) less i << 47, so that adding k << 47 gives 2^(k/32).
struct Exp2fData {
    std::uint64_t tab[32];
    double shift_scaled;
    double poly[3];
    double shift;
    double invln2_scaled;
    double poly_scaled[3];
};

// Of a point c in the middle of a stretch of mantissas: 1/c and its logarithm, natural or of base 2.
struct InverseAndLog {
    double invc;
    double logc;
};

// ARM Optimized Routines.
struct LogfData {
    InverseAndLog tab[16];
    double ln2;
    double poly[3];
};

// ARM Optimized Routines.
struct PowfLog2Data {
    InverseAndLog tab[16];
    double poly[5];
};

extern "C" {

extern const Exp2fData tavrel_libm__exp2f_data;
extern const LogfData tavrel_libm__logf_data;
extern const PowfLog2Data tavrel_libm__powf_log2_data;

// musl. Estimates of 1/sqrt, by the low exponent bit and the top six mantissa bits.
extern const std::uint16_t tavrel_libm__rsqrt_tab[128];
}

}  // namespace tavrel::core::script
