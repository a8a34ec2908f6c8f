// logb(x): the unbiased exponent floor(log2 |x|) of x as a floating value.
// Exact for every input; no special lanes.
//   logb(+-0)   = -inf (C99/IEEE 754 pole; no flag is raised here)
//   logb(+-inf) = +inf
//   logb(NaN)   = NaN (x * x: quieted, payload kept)
//   denormals give their true exponent (logb(0x1p-1074) = -1074).
#include "ieee/exponent.h"

namespace ravl {

template <class T> struct LogbKernel : frame::Kernel {
  using sig = T(T);

  template <int L> static RAVL_INLINE Vec<T, L> vec(Vec<T, L> x) {
    using V = Vec<T, L>;
    using S = SIntOf<V>;
    using I = Ieee<T>;
    using UT = typename Bits<T>::U;
    // The integer e to floating: 1.5 * 2^mant_bits has e added to its low bits
    // exactly (|e| < 2^(mant_bits-1)); subtracting 1.5 * 2^mant_bits leaves e.
    // The subtraction gives -0 for e = 0 when rounding downward: e = 0 (x in
    // [1, 2)) is blended to +0.
    const UT shifter = ((UT)(I::bias + I::mant_bits) << I::mant_bits) | ((UT)1 << (I::mant_bits - 1));
    S e = unbiased_exponent(x);
    V r = as_float<V>(S((typename Bits<T>::S)shifter) + e) - V(__builtin_bit_cast(T, shifter));
    r = select(e == S(0), V(0), r);
    r = select(as_uint(abs(x)) == UIntOf<V>(0), V(-__builtin_inf()), r);
    return select(inf_or_nan(x), x * x, r);
  }
};

namespace logb_k { using full = LogbKernel<double>; }
namespace logbf_k { using full = LogbKernel<float>; }

}  // namespace ravl

#include "entries/logb.inc"
#include "entries/logbf.inc"
