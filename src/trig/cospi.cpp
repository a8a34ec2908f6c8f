// cospi(x) = cos(pi x) on double lanes (family cospi) and single lanes
// (family cospif): cos(pi x) = sin(pi (|x| + 1/2)), taken as the sine of
// trig/sinpi_core.h one quadrant on: |x| = n/2 + r exactly, cos(pi r)
// for even n and sin(pi r) for odd n, negated for n mod 4 = 1, 2.
//
// No special lanes: every lane is computed by the vector path. cospi(+-0) =
// 1, cospi(n + 1/2) = +0 for every integer n, cospi of an integer is +-1
// exactly (every |x| >= 2^53 is even: 1; 2^24 for singles), infinities and
// NaN give NaN.
//
// Classes and measured max errors (against MPFR's cospi; tests/accuracy_test.cpp
// keeps and asserts the bounds in tests/accuracy_rows.cpp; doubles: the
// ranges of sinpi; singles: every positive float from 2^-30 to 2^23,
// tools/exhaustive/exhaustive_trigf.cpp; below 2^-30 the result is 1, above
// 2^23 +-1, exactly):
//   cospi    plain    full   0.7465 ulp (worst x = -0x1.40bb278da7ebcp+0)
//   cospi    _native  fast   121.9 ulp (x = 0x1.0000000000021p-2)
//   cospif   plain    full   0.7621 ulp (every float; worst x = 0x1.bde474p+0)
//   cospif   _native  fast   2.1434 ulp (every float from 2^-30; x = 0x1.ec2e4ep-2)
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
