// Float functions whose result depends on the bits of the arguments and on nothing else, so that machines agree on
// script state to the last bit. The algorithms and constants are published ones, kept to the order of operations; each
// group names its source. Nothing here keeps state, reads errno or calls the platform's math. Of a NaN result only
// the fact is fixed, not its sign and payload.
#pragma once

namespace tavrel::core::script {

extern "C" {

// Square roots, rounded correctly (musl: integer Goldschmidt iterations). NaN for a negative other than -0.
double tavrel_libm_sqrt(double x);
float tavrel_libm_sqrtf(float x);

// |x|, also of a NaN: clears the sign bit.
float tavrel_libm_fabsf(float x);

// The greatest integer not above x (musl). -0, infinities and NaN are returned as they are.
double tavrel_libm_floor(double x);

// x * 2^n, rounded once (musl).
double tavrel_libm_scalbn(double x, int n);

// Of an angle in radians of any size (FreeBSD msun). NaN for an infinity.
float tavrel_libm_sinf(float x);
float tavrel_libm_cosf(float x);
float tavrel_libm_tanf(float x);

// Angles in radians (FreeBSD msun). The first two give NaN for |x| > 1.
float tavrel_libm_asinf(float x);
float tavrel_libm_acosf(float x);
float tavrel_libm_atanf(float x);

// The angle of the point (x, y), from -pi to pi (FreeBSD msun). Zeros count with their signs.
float tavrel_libm_atan2f(float y, float x);

// e^x (ARM Optimized Routines). Infinity past the largest float, 0 below half the smallest.
float tavrel_libm_expf(float x);

// The natural logarithm (ARM Optimized Routines). -infinity for either zero, NaN for a negative.
float tavrel_libm_logf(float x);

// x^y (ARM Optimized Routines). 1 when y is 0 or x is 1, even beside a NaN; otherwise NaN for a negative x with a y
// that is no integer.
float tavrel_libm_powf(float x, float y);
}

}  // namespace tavrel::core::script
