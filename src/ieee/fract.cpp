// fract(x) (OpenCL): min(x - floor(x), largest value below 1), and floor(x)
// through the pointer. Exact: the result is x - floor(x) rounded once in the
// current rounding mode, then clamped. No special lanes.
//   fract(+-0)  = +-0, floor +-0
//   fract(+inf) = +0, floor +inf;  fract(-inf) = +0, floor -inf
//   fract(NaN)  = NaN, floor NaN (both x quieted, payload and sign kept)
//
// For x >= 0 the difference is exact (x's own low bits). For negative
// non-integral x it lies in (0, 1) and may round up to 1 (x = -0x1p-60 gives
// 1 - 2^-60, nearest 1.0): the clamp to 0x1.fffffffffffffp-1 / 0x1.fffffep-1f
// keeps the result below 1. A zero difference (x integral) is made +0 in every
// rounding mode by clearing the sign.
#include "ieee/ieee_fields.h"

namespace ravl {

template <class T> struct FractKernel : frame::Kernel {
  using sig = T(T, T*);
  // The largest value below 1: 1 - 2^-53 (double), 1 - 2^-24 (float).
  static constexpr T kBelowOne = sizeof(T) == 8 ? T(0x1.fffffffffffffp-1) : T(0x1.fffffep-1f);

  template <int L> static RAVL_INLINE Two<Vec<T, L>, Vec<T, L>> vec(Vec<T, L> x) {
    using V = Vec<T, L>;
    V fl = round_imm<1 | 8>(x);  // floor, no inexact exception
    V r = hw_min(V(kBelowOne), abs(x - fl));
    r = select(abs(x) == V(__builtin_inf()), V(0), r);
    // Zeros and NaN (|x| > 0 false): floor(x) itself, i.e. x (NaN quieted).
    r = select(~(abs(x) > V(0)), fl, r);
    return {r, fl};
  }
};

namespace fract_k { using full = FractKernel<double>; }
namespace fractf_k { using full = FractKernel<float>; }

}  // namespace ravl

#include "entries/fract.inc"
#include "entries/fractf.inc"
