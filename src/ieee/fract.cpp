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

  // Two results from the hardware min and max when an operand is NaN: the
  // second operand. So max(min(kBelowOne, |x - floor(x)|), +0) is the clamped
  // fraction, and +0 for infinite x, where x - floor(x) is NaN.
  template <int L> static RAVL_INLINE Two<Vec<T, L>, Vec<T, L>> vec(Vec<T, L> x) {
    using V = Vec<T, L>;
    using U = UIntOf<V>;
    V fl = round_imm<1 | 8>(x);  // floor, no inexact exception
    const Rows& c = rows(kRows);
    V r = hw_max(hw_min(get<V>(c.below_one), as_float<V>(as_uint(x - fl) & get<U>(c.abs))), get<V>(c.zero));
    // Zeros and NaN (|x| > 0 false): floor(x) itself, i.e. x (NaN quieted).
    V ax = as_float<V>(as_uint(x) & get<U>(c.abs));
    return {select(~(ax > get<V>(c.zero)), fl, r), fl};
  }

 private:
  struct Rows {
    using UT = typename Bits<T>::U;
    // The largest value below 1: 1 - 2^-53 (double), 1 - 2^-24 (float).
    Row<T> below_one = row(sizeof(T) == 8 ? T(0x1.fffffffffffffp-1) : T(0x1.fffffep-1f));
    Row<UT> abs = row((UT)~Ieee<T>::sign_mask);
    Row<T> zero = row((T)0);
  };
  static constexpr Rows kRows{};
};

namespace fract_k { using full = FractKernel<double>; }
namespace fractf_k { using full = FractKernel<float>; }

}  // namespace ravl

#include "entries/fract.inc"
#include "entries/fractf.inc"
