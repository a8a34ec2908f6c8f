// atanpi(x) = atan(x)/pi on double and single lanes (families atanpi, atanpif): one division
// on the pair (1, |x|) around a node near |x| (reciprocal node above 16, or
// above 8 for singles), the Taylor series of the reduced argument and the
// node's angle in half turns from a table; no special lanes. Kernel and error analysis in
// trig/atan_core.h. Measured max errors (tests/accuracy_test.cpp, MPFR):
//   atanpi    plain    full   see kBounds
//   atanpi    _native  fast
//   atanpif   plain    full
//   atanpif   _native  fast
#include "trig/atan_core.h"

namespace ravl {
namespace atanpi_k {
using full = atan_core::AtanD<true, true>;
using fast = atan_core::AtanD<true, false>;
}  // namespace atanpi_k
namespace atanpif_k {
using full = atan_core::AtanF<true, true>;
using fast = atan_core::AtanF<true, false>;
}  // namespace atanpif_k
}  // namespace ravl

#include "entries/atanpi.inc"
#include "entries/atanpif.inc"
