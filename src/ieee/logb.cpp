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
    using U = UIntOf<V>;
    const V a = as_float<V>(as_uint(x) & get<U>(rows(kIeeeRows<T>).abs));
    S e = unbiased_exponent(x, a);
    // The integer e to floating: 1.5 * 2^mant_bits has e added to its low bits
    // exactly (|e| < 2^(mant_bits-1)); subtracting 1.5 * 2^mant_bits leaves e.
    // The subtraction gives -0 for e = 0 when rounding downward: e = 0 (x in
    // [1, 2)) is blended to +0.
    const Rows& c = rows(kRows);
    V r = as_float<V>(e + get<S>(c.shifter)) - get<V>(c.shifter);
    r = as_float<V>(as_uint(r) & ~as_uint(e == S(0)));
    // Zeros: x * x - inf = -inf; infinities: +inf; NaN: x * x (quieted,
    // payload kept).
    V special = x * x - as_float<V>(as_uint(a == get<V>(c.zero)) & get<U>(c.inf));
    return select(zero_inf_or_nan_abs(a), special, r);
  }

 private:
  struct Rows {
    using UT = typename Bits<T>::U;
    static constexpr UT kShifter = ((UT)(Ieee<T>::bias + Ieee<T>::mant_bits) << Ieee<T>::mant_bits) |
                                   ((UT)1 << (Ieee<T>::mant_bits - 1));
    Row<UT> shifter = row(kShifter);  // 1.5 * 2^mant_bits
    Row<T> zero = row((T)0);
    Row<T> inf = row((T)__builtin_inf());
  };
  static constexpr Rows kRows{};
};

namespace logb_k { using full = LogbKernel<double>; }
namespace logbf_k { using full = LogbKernel<float>; }

}  // namespace ravl

#include "entries/logb.inc"
#include "entries/logbf.inc"
