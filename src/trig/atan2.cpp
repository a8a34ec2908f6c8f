// atan2(y, x) on double and single lanes (families atan2, atan2f): the angle
// of the pair (|x|, |y|) around a node near |y|/|x| by one division on the
// pair itself (never the rounded quotient), the x < 0 rows (pi - angle) and
// the sign of y. Lanes with max(|x|, |y|) out of [2^-900, 2^1000] (singles:
// [2^-40, 2^100]), a nonzero ratio below 2^-60 (plain class only),
// infinities, zero pairs and NaN go to the scalar routine (atan2f _native:
// only NaN, zero pairs and infinite pairs, the lanes whose ratio min/max is
// NaN):
// NaN -> NaN, the C99 angles of zeros and infinities (+-0 and +-pi for y =
// +-0 by the sign of x, +-pi/2 for x = +-0, +-pi/4 and +-3pi/4 for infinite
// pairs), tiny ratios as a double-word quotient, scaling by 2^-+600
// otherwise. Kernel in trig/atan_core.h.
// Measured max errors (tests/accuracy_test.cpp against MPFR: per range 2^17
// pairs (singles 2^18), uniform on [-4, 4]^2, bit patterns over every binade
// in each quadrant, huge and tiny pairs, one pair in eight with a random bit
// pattern):
//   atan2    plain    full   0.7447 ulp (y = 0x1.0000000000022p+0, x = 0x1.e7f9627195afap+1022)
//   atan2    _native  fast   736.2 ulp (y = -0x1.8c2a56be06bep-3, x = 0x1.8c74b367b9c8p+1)
//   atan2f   plain    full   0.5065 ulp (y = -0x1.307bap+0, x = 0x1.a2c996p+0)
//   atan2f   _native  fast   2.001 ulp (y = -0x1.beb83ap+0, x = 0x1.b9b898p+0; no nodes: one division
//                            r = min/max and an 8-term series on [0, 1], special lanes only where r is NaN)
// The double _native classes keep the relative 2^-43 of the Taylor series
// to u^9 (hundreds of ulp): fewer steps than the plain class, not a
// few-ulp target.
#include "trig/atan_core.h"

namespace ravl {
namespace atan2_k {
using full = atan_core::Atan2D<false, true>;
using fast = atan_core::Atan2D<false, false>;
}  // namespace atan2_k
namespace atan2f_k {
using full = atan_core::Atan2F<false, true>;
using fast = atan_core::Atan2F<false, false>;
}  // namespace atan2f_k
}  // namespace ravl

#include "entries/atan2.inc"
#include "entries/atan2f.inc"
