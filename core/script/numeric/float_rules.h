// What the float functions ask of the compiler. A build that widens, fuses or reorders float operations would give
// other bits than every other machine, so such a build is refused here, as far as the compiler lets it be seen.
#pragma once

#include <cfloat>
#include <limits>

#if defined(__FAST_MATH__) || defined(_M_FP_FAST)
#error "the float functions need exact arithmetic: build without fast-math"
#endif
#if defined(__FINITE_MATH_ONLY__) && __FINITE_MATH_ONLY__ != 0
#error "the float functions need infinities and NaN: build without finite-math-only"
#endif
#if defined(__ASSOCIATIVE_MATH__) || defined(__RECIPROCAL_MATH__) || defined(__NO_SIGNED_ZEROS__)
#error "the float functions need their operations as written: build without unsafe math optimisations"
#endif
#if defined(__i386__) && !defined(__SSE2_MATH__)
#error "the float functions need SSE2 arithmetic: build with -msse2 -mfpmath=sse"
#endif
#if defined(_M_FP_CONTRACT)
#error "the float functions need every operation rounded alone: build without contraction"
#endif

// Fusing and, in clang, reordering leave no mark that the preprocessor could see. Here clang is told; g++ gets it by
// option, and the build defines TAVREL_NO_CONTRACTION along with that option.
#if defined(__clang__)
#pragma clang fp contract(off) reassociate(off)
#elif (defined(__FMA__) || defined(__FMA4__) || defined(__ARM_FEATURE_FMA)) && !defined(TAVREL_NO_CONTRACTION)
#error "the float functions need every operation rounded alone: build with -ffp-contract=off"
#endif

static_assert(FLT_EVAL_METHOD == 0, "float operations must not be widened");
static_assert(std::numeric_limits<float>::is_iec559 && std::numeric_limits<float>::digits == 24);
static_assert(std::numeric_limits<double>::is_iec559 && std::numeric_limits<double>::digits == 53);
