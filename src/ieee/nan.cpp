// nan(nancode) (OpenCL nan(ulong) / nan(uint)): a quiet NaN carrying the code
// in its significand. Defined here as
//   bits = exponent all ones | quiet bit | (nancode & mantissa mask)
// with the sign bit clear: the code's low 52 bits (double) or 23 bits (float)
// are the significand, the quiet bit is forced on (so a code bit at the quiet
// bit's position, 51 or 22, makes no difference), higher code bits are
// ignored. Every code gives a quiet NaN; no special lanes.
#include "ieee/ieee_fields.h"

namespace ravl {

template <class T> struct NanKernel : frame::Kernel {
  using UT = typename Bits<T>::U;
  using sig = T(UT);

  template <int L> static RAVL_INLINE Vec<T, L> vec(Vec<UT, L> code) {
    using I = Ieee<T>;
    const UT mant_mask = ((UT)1 << I::mant_bits) - 1;
    return as_float<Vec<T, L>>((code & Vec<UT, L>(mant_mask)) | Vec<UT, L>(I::exp_mask | I::quiet_bit));
  }
};

namespace nan_k { using full = NanKernel<double>; }
namespace nanf_k { using full = NanKernel<float>; }

}  // namespace ravl

#include "entries/nan.inc"
#include "entries/nanf.inc"
