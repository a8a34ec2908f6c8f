// asinpi(x) = asin(x)/pi in [-1/2, 1/2], on double lanes (family asinpi)
// and single lanes (family asinpif), computed directly through acos's fold
// and series (trig/acos_core.h) with 1/pi in two parts: (x/pi) (1 + Q(x^2))
// for |x| < 1/2, 1/2 - (s/pi) (1 + Q(z)) above, on |x| with the sign of x
// at the end (odd bit for bit; asinpi(+-1) = +-1/2, asinpi(-0) = -0). The
// plain class works at 2^64 (2^32 for singles) times the result so that
// denormal results x/pi are rounded once to the denormal grid.
//
// Special lanes: |x| > 1 and NaN, no inline pass; the scalar routine gives
// NaN (status 0 for NaN, 1 for +-infinity and |x| > 1).
//
// Classes and measured max errors (against MPFR; random bit patterns, the
// whole of [-1, 1], both sides of |x| = 1/2, near +-1, small and denormal |x|;
// tests/accuracy_test.cpp keeps and asserts the bounds):
//   asinpi   plain    arc_full   0.929 ulp
//   asinpi   _native  arc_fast   5.98e6 ulp (relative 2^-30.3)
//   asinpif  plain    arc_full   0.750 ulp (denormal results: two roundings)
//   asinpif  _native  arc_fast   4.441 ulp (every single in [-1, 1]; worst x = 0x1.4af1b4p-1)
#include "trig/acos_core.h"

namespace ravl {
namespace asinpi_k {
using full = arc::Family<arc::kAsinpi>::full;
using fast = arc::Family<arc::kAsinpi>::fast;
}  // namespace asinpi_k
namespace asinpif_k {
using full = arc::Family<arc::kAsinpi>::fullf;
using fast = arc::Family<arc::kAsinpi>::fastf;
}  // namespace asinpif_k
}  // namespace ravl

#include "entries/asinpi.inc"
#include "entries/asinpif.inc"
