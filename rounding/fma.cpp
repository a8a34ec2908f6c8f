// fma(x, y, z): x * y + z with one rounding, the hardware fused multiply-add.
// Exact (correctly rounded in the current rounding mode) for every input,
// IEEE special cases included (inf * 0 + z is NaN, NaN operands propagate
// quieted); no special lanes. The `_rm` members are the same entry points.
#include "rounding/ieee_fields.h"

namespace ravl {

template <class T> struct FmaKernel : frame::Kernel {
  using sig = T(T, T, T);
  template <int L> static RAVL_INLINE Vec<T, L> vec(Vec<T, L> x, Vec<T, L> y, Vec<T, L> z) { return fma(x, y, z); }
};

namespace fma_k { using full = FmaKernel<double>; }
namespace fmaf_k { using full = FmaKernel<float>; }

}  // namespace ravl

#include "entries/fma.inc"
#include "entries/fmaf.inc"
