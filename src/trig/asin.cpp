// The arc sine, asin(x) in [-pi/2, pi/2], on double lanes (family asin) and
// single lanes (family asinf), through acos's fold and series
// (trig/acos_core.h): x (1 + Q(x^2)) for |x| < 1/2, pi/2 - 2 asin(sqrt((1 -
// |x|)/2)) above, computed on |x| and given the sign of x at the end (odd bit
// for bit; asin(-0) = -0, asin(+-1) = +-pi/2 rounded).
//
// Special lanes: |x| > 1 and NaN, no inline pass; the scalar routine gives
// NaN (status 0 for NaN, 1 for +-infinity and |x| > 1).
//
// Classes and measured max errors (against MPFR; random bit patterns, the
// whole of [-1, 1], both sides of |x| = 1/2, near +-1, small and denormal |x|;
// tests/accuracy_test.cpp keeps and asserts the bounds):
//   asin   plain    arc_full (pi/2 and the square root in two parts)  0.863 ulp
//   asin   _native  arc_fast, acos's _native series                    4.70e6 ulp (relative 2^-30.6)
//   asinf  plain    arc_full in single                                0.634 ulp
//   asinf  _native  arc_fast in single, degree-3 minimax series      3.248 ulp (every single in [-1, 1]; worst x = 0x1.00377ep-1)
//
// The double _native class keeps the accuracy of acos's designed _native
// class (relative 2^-30.6, not a few ulp): a few-ulp double would need the
// plain class's degree-11 series, and this class is the fast one (its cost
// is the hardware square root's; a refined estimate in its place measured
// slower, 16.2 against 12.2 cycles a call).
#include "trig/acos_core.h"

namespace ravl {
namespace asin_k {
using full = arc::Family<arc::kAsin>::full;
using fast = arc::Family<arc::kAsin>::fast;
}  // namespace asin_k
namespace asinf_k {
using full = arc::Family<arc::kAsin>::fullf;
using fast = arc::Family<arc::kAsin>::fastf;
}  // namespace asinf_k
}  // namespace ravl

#include "entries/asin.inc"
#include "entries/asinf.inc"
