// sinpi(x) = sin(pi x) on double lanes (family sinpi) and single lanes
// (family sinpif): the exact half-turn reduction |x| = 2k + n/2 + r and the
// kernels of trig/sinpi_core.h, sin(pi r) for even n and cos(pi r) for odd
// n, negated for n mod 4 = 2, 3, then the sign of x.
//
// No special lanes: every lane is computed by the vector path. sinpi(+-0) =
// +-0, sinpi of an integer (every |x| >= 2^52, or 2^23 for singles) is a
// zero with the sign of x, sinpi(n + 1/2) = +-1 exactly, infinities and NaN
// give NaN (the reduction's inf - inf).
//
// Classes and measured max errors (against MPFR; tests/accuracy_test.cpp
// keeps and asserts the bounds; singles over every float,
// tools/exhaustive/exhaustive_trigf.cpp):
//   sinpi    plain    full   see tests/accuracy_rows.cpp
//   sinpi    _native  fast
//   sinpif   plain    full
//   sinpif   _native  fast
#include "trig/sinpi_core.h"

namespace ravl {
namespace sinpi_core {

template <class T, bool kFull> struct SinPi : frame::Kernel {
  using sig = T(T);
  template <int L> static RAVL_INLINE Vec<T, L> vec(Vec<T, L> x) {
    const Rows<T>& k = rows(kRows<T>);
    return quadrant_sin<kFull>(reduce(abs(x), k), sign_bit(x), k);
  }
};

}  // namespace sinpi_core

namespace sinpi_k {
using full = sinpi_core::SinPi<double, true>;
using fast = sinpi_core::SinPi<double, false>;
}  // namespace sinpi_k
namespace sinpif_k {
using full = sinpi_core::SinPi<float, true>;
using fast = sinpi_core::SinPi<float, false>;
}  // namespace sinpif_k
}  // namespace ravl

#include "entries/sinpi.inc"
#include "entries/sinpif.inc"
