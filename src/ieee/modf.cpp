// modf(x): the fractional part x - trunc(x), with x's sign, and the integral
// part trunc(x) through the pointer. Exact for every input; no special lanes.
//   modf(+-inf) = +-0, integral part +-inf
//   modf(NaN)   = NaN, integral part NaN (both x quieted, payload kept)
//   zeros keep their sign: modf(-3.0) = -0 with -3.0, modf(-0) = -0 with -0.
//
// x - trunc(x) is exact: trunc(x) has x's sign, |trunc(x)| <= |x|, and both
// share x's exponent or trunc(x) is zero, so the difference is made of x's
// own low bits. Its sign is then set from x, which also gives the sign of a
// zero fraction in every rounding mode.
#include "ieee/ieee_fields.h"

namespace ravl {

template <class T> struct ModfKernel : frame::Kernel {
  using sig = T(T, T*);

  template <int L> static RAVL_INLINE Two<Vec<T, L>, Vec<T, L>> vec(Vec<T, L> x) {
    using V = Vec<T, L>;
    using U = UIntOf<V>;
    V i = round_imm<3 | 8>(x);  // toward zero, no inexact exception
    V d = x - i;                // NaN for infinite x, x quieted for NaN x
    const Rows& c = rows(kRows);
    U ax = as_uint(x) & get<U>(c.abs);
    d = as_float<V>(as_uint(d) & get<U>(c.abs) & as_uint(as_float<V>(ax) != get<V>(c.inf)));  // |d|, +0 for infinite x
    return {as_float<V>(as_uint(d) | (as_uint(x) & get<U>(c.sign))), i};
  }

 private:
  struct Rows {
    using UT = typename Bits<T>::U;
    Row<UT> abs = row((UT)~Ieee<T>::sign_mask);
    Row<UT> sign = row((UT)Ieee<T>::sign_mask);
    Row<T> inf = row((T)__builtin_inf());
  };
  static constexpr Rows kRows{};
};

namespace modf_k { using full = ModfKernel<double>; }
namespace modff_k { using full = ModfKernel<float>; }

}  // namespace ravl

#include "entries/modf.inc"
#include "entries/modff.inc"
