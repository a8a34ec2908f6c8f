// atan(x) on double and single lanes (families atan, atanf): one division
// on the pair (1, |x|) around a node near |x| (reciprocal node above 16, or
// above 8 for singles), the Taylor series of the reduced argument and the
// node's angle from a table; no special lanes. Kernel and error analysis in
// trig/atan_core.h. Measured max errors (tests/accuracy_test.cpp, MPFR):
//   atan    plain    full   see kBounds
//   atan    _native  fast
//   atanf   plain    full
//   atanf   _native  fast
#include "trig/atan_core.h"

namespace ravl {
namespace atan_k {
using full = atan_core::AtanD<false, true>;
using fast = atan_core::AtanD<false, false>;
}  // namespace atan_k
namespace atanf_k {
using full = atan_core::AtanF<false, true>;
using fast = atan_core::AtanF<false, false>;
}  // namespace atanf_k
}  // namespace ravl

#include "entries/atan.inc"
#include "entries/atanf.inc"
