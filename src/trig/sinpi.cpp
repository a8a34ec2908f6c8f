// sinpi(x) = sin(pi x) on double lanes (family sinpi) and single lanes
// (family sinpif): the exact half-turn reduction |x| = n/2 + r and the
// kernels of trig/sinpi_core.h, sin(pi r) for even n and cos(pi r) for odd
// n, negated for n mod 4 = 2, 3, then the sign of x.
//
// No special lanes: every lane is computed by the vector path. sinpi(+-0) =
// +-0, sinpi of an integer (every |x| >= 2^52, or 2^23 for singles) is a
// zero with the sign of x, sinpi(n + 1/2) = +-1 exactly, infinities and NaN
// give NaN (the bits of |x| - |x| OR-ed in).
//
// Classes and measured max errors (against MPFR's sinpi; tests/accuracy_test.cpp
// keeps and asserts the bounds in tests/accuracy_rows.cpp; doubles: random
// bit patterns over every binade, [-1000, 1000], [-2, 2], the neighbourhoods
// of integers and half-integers up to 2^52, about 1.7e5 inputs a row;
// singles: every positive float below 2^23, tools/exhaustive/exhaustive_trigf.cpp,
// above which every single is an integer and the result an exact zero):
//   sinpi    plain    full   0.7116 ulp (worst x = 0x1.399fab6979d72p+9); denormal results 0.69
//   sinpi    _native  fast   121.8 ulp (x = 0x1.fffffffffffc5p-3: the degree-11 kernel at r near 1/4)
//   sinpif   plain    full   0.7705 ulp (every float; worst x = 0x1.fa1ee2p-3)
//   sinpif   _native  fast   2.1434 ulp (every float from 2^-30; x = 0x1.3d1b2p-6)
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
