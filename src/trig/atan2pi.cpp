// atan2pi(y, x) = atan2(y, x)/pi on double and single lanes (families
// atan2pi, atan2pif): atan2's kernels in half turns (the x < 0 rows 1 -
// angle; the double _native class's bases 0, 1/4, 1/2, 3/4, 1 exact, u
// times 1/pi and the series divided by pi), the same scalar lanes and the
// same scalar routine: NaN -> NaN, the C99 angles of zeros and infinities
// (+-0 and +-1 for y = +-0 by the sign of x, +-1/2 for x = +-0, +-1/4 and
// +-3/4 for infinite pairs), tiny ratios as a double-word quotient, scaling
// by 2^-+600 otherwise. Kernels in trig/atan_core.h.
// Measured max errors (tests/accuracy_test.cpp against MPFR, the ranges of
// atan2; the double _native class also 2^24 pairs per range with `ravl ulp`):
//   atan2pi    plain    full   0.738 ulp (y = 0x1.44fd2ee6efd36p-948, x = 0x1.fefff9b9e7e7dp+72)
//   atan2pi    _native  fast   250.2 ulp (y = 0x1.a7b333f68439cp+0, x = 0x1.ff741e2dfadc8p+1; atan2's _native kernel in half turns)
//   atan2pif   plain    full   0.5125 ulp (y = 0x1.3470dp+1, x = 0x1.b1f48ep+1)
//   atan2pif   _native  fast   1.641 ulp (y = -0x1.0f78dp+1, x = 0x1.233a9ap+1; atan2f's kernel in half turns)
#include "trig/atan_core.h"

namespace ravl {
namespace atan2pi_k {
using full = atan_core::Atan2D<true, true>;
using fast = atan_core::Atan2D<true, false>;
}  // namespace atan2pi_k
namespace atan2pif_k {
using full = atan_core::Atan2F<true, true>;
using fast = atan_core::Atan2F<true, false>;
}  // namespace atan2pif_k
}  // namespace ravl

#include "entries/atan2pi.inc"
#include "entries/atan2pif.inc"
