// The arc cosine, acos(x) in [0, pi], on double lanes (family acos) and
// single lanes (family acosf). The kernel is arc::Family (trig/acos_core.h):
// x is folded to y = min(x^2, (1 - |x|)/2) <= 1/4 and the arc sine series
// is evaluated at y; the inner region |x| < 1/2 gives pi/2 - x (1 + Q(x^2)),
// the outer one 2 asin(sqrt((1 - |x|)/2)) for x > 0 and pi minus that for
// x < 0. acos(1) = +0 and acos(-1) = pi come from the vector path.
//
// Special lanes: |x| > 1 and NaN (-|x| not >= -1), no inline pass; the
// scalar routine gives NaN (status 0 for NaN, 1 for +-infinity and |x| > 1).
//
// Classes and measured max errors (against MPFR; random bit patterns, the
// whole of [-1, 1], both sides of |x| = 1/2, near +-1, small |x|;
// tests/accuracy_test.cpp keeps and asserts the bounds):
//   acos   plain    acos_designed, four-term refinement, degree-11 series  1.485 ulp
//   acos   _native  acos_designed, two-term refinement, degree-5 series    4.70e6 ulp (relative 2^-30.6)
//   acosf  plain    arc_full in single                                     0.624 ulp (every single with |x| >= 1/2, every 997th below)
//   acosf  _native  arc_fast in single, degree-3 minimax series          2.787 ulp (every single in [-1, 1]; worst x = 0x1.f02f3cp-1)
#include "trig/acos_core.h"

namespace ravl {
namespace acos_k {
using full = arc::Family<arc::kAcos>::full;
using fast = arc::Family<arc::kAcos>::fast;
}  // namespace acos_k
namespace acosf_k {
using full = arc::Family<arc::kAcos>::fullf;
using fast = arc::Family<arc::kAcos>::fastf;
}  // namespace acosf_k
}  // namespace ravl

#include "entries/acos.inc"
#include "entries/acosf.inc"
