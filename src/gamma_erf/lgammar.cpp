// ln |Gamma(x)| and the sign of Gamma(x) (lgamma_r) on double lanes (family
// lgammar) and on single lanes (family lgammarf), plain class only: the first
// result in the vector registers, the sign (+1 or -1 as 32-bit integer lanes)
// through the pointer.
//
// The first result is lgamma's, bit for bit (gamma_erf/gamma_core.h: the same
// vector path, lane test and scalar routine). The vector path serves positive
// x only, whose sign is +1; the scalar routine gives the others: (-1)^floor(x)
// for non-integer x < 0, -1 for -0, and +1 for +0, the negative integers (a
// pole: C leaves the sign unspecified, ours is +1), +-inf and NaN.
#include "gamma_erf/gamma_core.h"

namespace ravl {
namespace lgammar_detail {

using namespace gamma_core;

template <class T, int (*Scalar)(T, T*, int32_t*)> struct LgammarKernel : frame::Kernel {
  using sig = T(T, int32_t*);
  static constexpr bool has_callout = true;
  template <int L> static RAVL_INLINE Mask<T, L> special(Vec<T, L>, Two<Vec<T, L>, Vec<int32_t, L>> r) {
    return is_nan(r.first);
  }
  static RAVL_INLINE int scalar(const T* x, T* r, int32_t* s) { return Scalar(*x, r, s); }
};

struct Lgammar : LgammarKernel<double, lgamma_rules> {
  template <int L> static RAVL_GAMMA_BODY Vec<double, L> first(Vec<double, L> x) {
    return on_doubles([](F64x4 a) __attribute__((always_inline)) { return lgamma_vec4(a); }, x);
  }
  template <int L> static RAVL_INLINE Two<Vec<double, L>, Vec<int32_t, L>> vec(Vec<double, L> x) {
    return {first<L>(x), Vec<int32_t, L>(1)};
  }
};
struct Lgammarf : LgammarKernel<float, lgammaf_rules> {
  template <int L> static RAVL_GAMMA_BODY Vec<float, L> first(Vec<float, L> x) {
    return via_double<L>(x, [](F64x4 a) __attribute__((always_inline)) { return lgammaf_vec4(a); });
  }
  template <int L> static RAVL_INLINE Two<Vec<float, L>, Vec<int32_t, L>> vec(Vec<float, L> x) {
    return {first<L>(x), Vec<int32_t, L>(1)};
  }
};

}  // namespace lgammar_detail

namespace lgammar_k { using full = lgammar_detail::Lgammar; }
namespace lgammarf_k { using full = lgammar_detail::Lgammarf; }

}  // namespace ravl

#include "entries/lgammar.inc"
#include "entries/lgammarf.inc"
