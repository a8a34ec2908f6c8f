// acospi(x) = acos(x)/pi in [0, 1], on double lanes (family acospi) and
// single lanes (family acospif), computed directly through acos's fold and
// series (trig/acos_core.h) with 1/pi in two parts: 1/2 - (x/pi) (1 + Q(x^2))
// for |x| < 1/2, (s/pi) (1 + Q(z)) for x >= 1/2 and 1 minus that for
// x <= -1/2 (s = sqrt(2 (1 - |x|))). acospi(1) = +0, acospi(-1) = 1,
// acospi(+-0) = 1/2 exactly.
//
// Special lanes: |x| > 1 and NaN, no inline pass; the scalar routine gives
// NaN (status 0 for NaN, 1 for +-infinity and |x| > 1).
//
// Classes and measured max errors (against MPFR; random bit patterns, the
// whole of [-1, 1], both sides of |x| = 1/2, near +-1, small |x|;
// tests/accuracy_test.cpp keeps and asserts the bounds):
//   acospi   plain    arc_full   0.781 ulp
//   acospi   _native  arc_fast   4.48e6 ulp (relative 2^-30.6)
//   acospif  plain    arc_full   0.596 ulp
//   acospif  _native  arc_fast   3.937 ulp (every single in [-1, 1]; worst x = 0x1.f6552cp-1)
#include "trig/acos_core.h"

namespace ravl {
namespace acospi_k {
using full = arc::Family<arc::kAcospi>::full;
using fast = arc::Family<arc::kAcospi>::fast;
}  // namespace acospi_k
namespace acospif_k {
using full = arc::Family<arc::kAcospi>::fullf;
using fast = arc::Family<arc::kAcospi>::fastf;
}  // namespace acospif_k
}  // namespace ravl

#include "entries/acospi.inc"
#include "entries/acospif.inc"
