// atan2(y, x) on double and single lanes (families atan2, atan2f): the angle
// of the pair (|x|, |y|) around a node near |y|/|x| by one division on the
// pair itself (never the rounded quotient), the x < 0 rows (pi - angle) and
// the sign of y. Lanes with max(|x|, |y|) out of [2^-900, 2^1000] (singles:
// [2^-40, 2^100]), a nonzero ratio below 2^-60, infinities, zero pairs and
// NaN go to the scalar routine:
// NaN -> NaN, the C99 angles of zeros and infinities (+-0 and +-pi for y =
// +-0 by the sign of x, +-pi/2 for x = +-0, +-pi/4 and +-3pi/4 for infinite
// pairs), tiny ratios as a double-word quotient, scaling by 2^-+600
// otherwise. Kernel in trig/atan_core.h.
// Measured max errors (tests/accuracy_test.cpp, MPFR): see kBounds.
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
