// ilogb(x): the unbiased exponent floor(log2 |x|) of x as an int32. Exact for
// every input; no special lanes.
//
// Conventions (OpenCL C leaves FP_ILOGB0 as INT_MIN or -INT_MAX and
// FP_ILOGBNAN as INT_MAX or INT_MIN; we take the pair the common OpenCL
// headers define, FP_ILOGB0 = INT_MIN and FP_ILOGBNAN = INT_MAX):
//   ilogb(+-0)   = INT_MIN (-2147483648)
//   ilogb(NaN)   = INT_MAX (2147483647), any sign or payload
//   ilogb(+-inf) = INT_MAX (C99)
//   denormals give their true exponent (ilogb(0x1p-1074) = -1074,
//   ilogbf(0x1p-149f) = -149).
#include "ieee/exponent.h"

namespace ravl {

constexpr int32_t kIlogbZero = -2147483647 - 1;  // FP_ILOGB0 = INT_MIN
constexpr int32_t kIlogbNan = 2147483647;        // FP_ILOGBNAN = INT_MAX, also ilogb(+-inf)
static_assert(kIlogbZero == ~kIlogbNan, "zeros take the NaN value with every bit flipped");

template <class T> struct IlogbKernel : frame::Kernel {
  using sig = int32_t(T);

  template <int L> static RAVL_INLINE Vec<int32_t, L> vec(Vec<T, L> x) {
    using V = Vec<T, L>;
    using S = SIntOf<V>;
    using U = UIntOf<V>;
    const V a = as_float<V>(as_uint(x) & get<U>(rows(kIeeeRows<T>).abs));
    S e = unbiased_exponent(x, a);
    // Zeros and infinities or NaN: INT_MAX with every bit flipped (INT_MIN) for
    // the zeros (the low 32 bits are the result, also of a double lane).
    const Rows& c = rows(kRows);
    S special = get<S>(c.nan_value) ^ S(a == get<V>(c.zero));
    return convert<int32_t>(select(zero_inf_or_nan_abs(a), special, e));  // double lanes: every value fits in 32 bits
  }

 private:
  struct Rows {
    using UT = typename Bits<T>::U;
    Row<UT> nan_value = row((UT)kIlogbNan);
    Row<T> zero = row((T)0);
  };
  static constexpr Rows kRows{};
};

namespace ilogb_k { using full = IlogbKernel<double>; }
namespace ilogbf_k { using full = IlogbKernel<float>; }

}  // namespace ravl

#include "entries/ilogb.inc"
#include "entries/ilogbf.inc"
