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
    const V a = as_float<V>(as_uint(x) & get<U>(rows(kIeeeRows<T>).abs));
    Lifted<V> lx = lift_denormals(x, a);
    const FrexpRows& c = rows(kFrexpRows);
    S e = lx.field - get<S>(c.half_field);
    V m = as_float<V>((as_uint(lx.x) & get<U>(c.not_exp)) | get<U>(c.half_bits));
    S keep = zero_inf_or_nan_abs(a);
    return {select(keep, x, m), convert<int32_t>(e & ~keep)};
  }

 private:
  // The field and the bit pattern of the binade [0.5, 1).
  struct FrexpRows {
    using UT = typename Bits<T>::U;
    Row<UT> half_field = row((UT)(I::bias - 1));
    Row<UT> half_bits = row((UT)((UT)(I::bias - 1) << I::mant_bits));
    Row<UT> not_exp = row((UT)~I::exp_mask);
  };
  static constexpr FrexpRows kFrexpRows{};
};

namespace frexp_k { using full = FrexpKernel<double>; }
namespace frexpf_k { using full = FrexpKernel<float>; }

}  // namespace ravl

#include "entries/frexp.inc"
#include "entries/frexpf.inc"
