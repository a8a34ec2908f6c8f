// nextafter(x, y): the representable value next to x in the direction of y
// (C99/OpenCL). Exact for every input; no special lanes.
//   x == y (+0 == -0 included) -> y
//   x = +-0, y != 0            -> the smallest denormal with y's sign
//   x = +-inf toward y         -> +-largest finite; largest finite away from
//                                 zero -> infinity
//   x or y NaN                 -> x + y (the NaN operand quieted, x's first)
//
// On the bits: for x non-zero and finite or infinite, the neighbour away from
// zero has bits(x) + 1 and the one toward zero bits(x) - 1 (sign-magnitude
// order of IEEE encodings, across the denormal/normal and the finite/infinite
// boundaries alike).
#include "ieee/ieee_fields.h"

namespace ravl {

template <class T> struct NextafterKernel : frame::Kernel {
  using sig = T(T, T);

  template <int L> static RAVL_INLINE Vec<T, L> vec(Vec<T, L> x, Vec<T, L> y) {
    using V = Vec<T, L>;
    using S = SIntOf<V>;
    S ix = as_int(x);
    // Toward zero when y is below a positive x or above a negative x: then
    // (x < y) agrees with x's sign bit. Step -1 toward zero, +1 away.
    S toward = ~((x < y) ^ (ix < S(0)));
    V r = as_float<V>(ix + (toward | S(1)));
    r = select(x == V(0), as_float<V>(sign_bit(y) | UIntOf<V>(1)), r);
    r = select(x == y, y, r);
    return select(is_nan(x) | is_nan(y), x + y, r);
  }
};

namespace nextafter_k { using full = NextafterKernel<double>; }
namespace nextafterf_k { using full = NextafterKernel<float>; }

}  // namespace ravl

#include "entries/nextafter.inc"
#include "entries/nextafterf.inc"
