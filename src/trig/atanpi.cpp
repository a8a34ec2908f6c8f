// atanpi(x) = atan(x)/pi on double and single lanes (families atanpi,
// atanpif): one division on the pair (1, |x|) around a node near |x|
// (reciprocal node from 16, or from 2^2.5 for singles), the Taylor series of
// the reduced argument and the node's angle in half turns from a table; no
// special lanes (atanpi(+-inf) = +-0.5 exactly). Kernel and error analysis in
// trig/atan_core.h. Measured max errors (tests/accuracy_test.cpp against
// MPFR, the ranges of atan):
//   atanpi    plain    full   0.9701 ulp on results near 2^-1022 (x = 0x1.62c85f22a3c42p-1020:
//                             u/pi's low part below the normal range), 0.52 elsewhere
//   atanpi    _native  fast   473.6 ulp (worst x = 0x1.fffef8de4bd98p-5)
//   atanpif   plain    full   0.9797 ulp on results near 2^-126 (x = 0x1.298bf2p-124), 0.5132 elsewhere
//   atanpif   _native  fast   2.751 ulp (worst x = 0x1.6d758p-4)
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
