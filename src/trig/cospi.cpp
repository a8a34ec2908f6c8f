// cospi(x) = cos(pi x) on double lanes (family cospi) and single lanes
// (family cospif): cos(pi x) = sin(pi (|x| + 1/2)), taken as the sine of
// trig/sinpi_core.h one quadrant on: |x| = 2k + n/2 + r exactly, cos(pi r)
// for even n and sin(pi r) for odd n, negated for n mod 4 = 1, 2.
//
// No special lanes: every lane is computed by the vector path. cospi(+-0) =
// 1, cospi(n + 1/2) = +0 for every integer n, cospi of an integer is +-1
// exactly (every |x| >= 2^53 is even: 1; 2^24 for singles), infinities and
// NaN give NaN.
//
// Classes and measured max errors (against MPFR; tests/accuracy_test.cpp
// keeps and asserts the bounds; singles over every float,
// tools/exhaustive/exhaustive_trigf.cpp):
//   cospi    plain    full   see tests/accuracy_rows.cpp
//   cospi    _native  fast
//   cospif   plain    full
//   cospif   _native  fast
#include "trig/sinpi_core.h"

namespace ravl {
namespace sinpi_core {

template <class T, bool kFull> struct CosPi : frame::Kernel {
  using sig = T(T);
  template <int L> static RAVL_INLINE Vec<T, L> vec(Vec<T, L> x) {
    const Rows<T>& k = rows(kRows<T>);
    Reduced<Vec<T, L>> red = reduce(abs(x), k);
    red.q = red.q + 1;
    return quadrant_sin<kFull>(red, UIntOf<Vec<T, L>>(0), k);
  }
};

}  // namespace sinpi_core

namespace cospi_k {
using full = sinpi_core::CosPi<double, true>;
using fast = sinpi_core::CosPi<double, false>;
}  // namespace cospi_k
namespace cospif_k {
using full = sinpi_core::CosPi<float, true>;
using fast = sinpi_core::CosPi<float, false>;
}  // namespace cospif_k
}  // namespace ravl

#include "entries/cospi.inc"
#include "entries/cospif.inc"
