// atanpi(x) = atan(x)/pi on double and single lanes (families atanpi,
// atanpif): atan's kernels in half turns (the node's angle from a table in
// the plain class; the double _native class's bases 0, 1/4, 1/2 exact, u
// times 1/pi and the series divided by pi); no special lanes (atanpi(+-inf)
// = +-0.5 exactly). Kernels and error analysis in trig/atan_core.h. Measured
// max errors (tests/accuracy_test.cpp against MPFR, the ranges of atan; the
// double _native class also 2^24 inputs per range with `ravl ulp`):
//   atanpi    plain    full   0.9701 ulp on results near 2^-1022 (x = 0x1.62c85f22a3c42p-1020:
//                             u/pi's low part below the normal range), 0.52 elsewhere
//   atanpi    _native  fast   249.9 ulp (worst x = 0x1.a82797b93a88ep-2)
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
