// ln(1 + x) on double lanes (family log1p).
//
// Every member computes all lanes on a branch-free vector path, flags the
// lanes that path cannot handle (x <= -1, NaN, +infinity, and for the double
// paths x above 2^1000) and hands them to the scalar routine of its precision,
// which every class shares. 1 + x is formed, but its rounding error c is kept
// (Fast2Sum) and carried into the reduced argument, so x near zero keeps its
// relative accuracy: tiny x returns x and -0 returns -0. Special inputs:
//   NaN -> quiet NaN, +inf -> +inf, -1 -> -inf (status 2),
//   x < -1 and -inf -> NaN (status 1), tiny x -> x (status 4 for a denormal x).
//
// Classes and measured max errors (tests/accuracy_test.cpp against MPFR,
// at 8 times its default counts: per row 2^20 doubles or 2^21 singles uniform
// over [-1, 3], log-uniform over [1, 2^1000] / [1, FLT_MAX] and over
// [2^-60, 1] / [2^-30, 1], random bit patterns, and +-64 ulps around -1, the
// ends of the reduction ranges, the vector bound and tiny x of both signs; the
// test asserts the bounds kept in its table):
//   log1p   plain       full   0.5003 ulp (worst x = 0x1.dd61e7277d8dp-12)
//   log1p   _native     fast   2.645 ulp (worst x = 0x1.0001c614543ap-11)
// (the double rows also over 1.6e8 random inputs: the ranges above, x near 0 of
// both signs, near 2^k - 1, near -1, up to 2^1000 and tiny x).
// The lanes computed by the scalar routines are within the full bounds.
#include "exp_log/log1p_core.h"

namespace ravl {

namespace log1p_k {
using full = log1p_detail::Log1pFull;
using fast = log1p_detail::Log1pFast;
}  // namespace log1p_k

}  // namespace ravl

#include "entries/log1p.inc"
