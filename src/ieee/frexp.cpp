// frexp(x): the mantissa m with 0.5 <= |m| < 1 and x's sign, and the exponent
// e with x = m * 2^e, e through the pointer. Exact for every input (C99):
// denormals give their true exponent; +-0 gives +-0 and e = 0; infinities and
// NaN come back unchanged (bit for bit) with e = 0. No special lanes.
//
// Method: a denormal x is lifted to a normal by an exact power-of-two
// multiply, which leaves its significant bits as they are; m is then the
// lifted lane with its exponent field set to bias - 1 (the binade [0.5, 1)),
// and e is the true biased exponent minus (bias - 1).
#include "ieee/ieee_fields.h"

namespace ravl {

template <class T> struct FrexpKernel : frame::Kernel {
  using sig = T(T, int32_t*);
  using I = Ieee<T>;

  template <int L> static RAVL_INLINE Two<Vec<T, L>, Vec<int32_t, L>> vec(Vec<T, L> x) {
    using V = Vec<T, L>;
    using S = SIntOf<V>;
    using U = UIntOf<V>;
    Lifted<V> lx = lift_denormals(x);
    S e = lx.field - S(I::bias - 1);
    V m = as_float<V>((as_uint(lx.x) & ~U(I::exp_mask)) | U((typename Bits<T>::U)(I::bias - 1) << I::mant_bits));
    S keep = (x == V(0)) | inf_or_nan(x);
    return {select(keep, x, m), convert<int32_t>(e & ~keep)};
  }
};

namespace frexp_k { using full = FrexpKernel<double>; }
namespace frexpf_k { using full = FrexpKernel<float>; }

}  // namespace ravl

#include "entries/frexp.inc"
#include "entries/frexpf.inc"
