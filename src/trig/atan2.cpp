// atan2(y, x) on double and single lanes (families atan2, atan2f). Plain
// class: the angle of the pair (|x|, |y|) around a node near |y|/|x| by one
// division on the pair itself (never the rounded quotient), the x < 0 rows
// (pi - angle) and the sign of y. Lanes with max(|x|, |y|) out of [2^-900,
// 2^1000] (singles: [2^-40, 2^100]), a nonzero ratio below 2^-60,
// infinities, zero pairs and NaN go to the scalar routine. The double
// _native class has no nodes and no table: three regions of |y|/|x| split at
// tan(pi/8) and its inverse, one division to |u| <= tan(pi/8) and an 8-term
// series; its scalar lanes are the pairs with |x| + |y| outside [2^-1000,
// DBL_MAX] (NaN, infinities and zero pairs among them). atan2f _native: only
// NaN, zero pairs and infinite pairs, the lanes whose ratio min/max is NaN.
// The scalar routine: NaN -> NaN, the C99 angles of zeros and infinities
// (+-0 and +-pi for y = +-0 by the sign of x, +-pi/2 for x = +-0, +-pi/4 and
// +-3pi/4 for infinite pairs), tiny ratios as a double-word quotient,
// scaling by 2^-+600 otherwise. Kernels in trig/atan_core.h.
// Measured max errors (tests/accuracy_test.cpp against MPFR: per range 2^17
// pairs (singles 2^18), uniform on [-4, 4]^2, bit patterns over every binade
// in each quadrant, huge and tiny pairs, one pair in eight with a random bit
// pattern; the double _native class also 2^24 pairs per range with
// `ravl ulp`):
//   atan2    plain    full   0.7447 ulp (y = 0x1.0000000000022p+0, x = 0x1.e7f9627195afap+1022)
//   atan2    _native  fast   249.5 ulp (y = 0x1.dc83a2aa791p-3, x = 0x1.dc1f0661798a4p+1; no nodes: one
//                            division to |u| <= tan(pi/8) and an 8-term series, relative 2^-45.0)
//   atan2f   plain    full   0.5065 ulp (y = -0x1.307bap+0, x = 0x1.a2c996p+0)
//   atan2f   _native  fast   2.001 ulp (y = -0x1.beb83ap+0, x = 0x1.b9b898p+0; no nodes: one division
//                            r = min/max and an 8-term series on [0, 1], special lanes only where r is NaN)
// The double _native class keeps the relative 2^-45.0 of its series (a few
// hundred ulp): fewer steps than the plain class, not a few-ulp target.
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
