// copysign(x, y): the magnitude bits of x with the sign bit of y. Exact for
// every input, NaN payloads included (copysign(NaN, -1) is that NaN with its
// sign bit set); no special lanes.
#include "ieee/ieee_fields.h"

namespace ravl {

template <class T> struct CopysignKernel : frame::Kernel {
  using sig = T(T, T);
  template <int L> static RAVL_INLINE Vec<T, L> vec(Vec<T, L> x, Vec<T, L> y) {
    return as_float<Vec<T, L>>(as_uint(abs(x)) | sign_bit(y));
  }
};

namespace copysign_k { using full = CopysignKernel<double>; }
namespace copysignf_k { using full = CopysignKernel<float>; }

}  // namespace ravl

#include "entries/copysign.inc"
#include "entries/copysignf.inc"
