// fma(x, y, z): x * y + z with one rounding, the hardware fused multiply-add.
// Exact (correctly rounded in the current rounding mode) for every input,
// IEEE special cases included (inf * 0 + z is the default NaN); no special
// lanes. The `_rm` members are the same entry points.
//
// NaN operands: the result is the first NaN among x, y, z, quieted, at every
// width. The hardware returns the NaN of a fixed operand position of the
// instruction, and a compiler picks among the instruction's three forms (132,
// 213, 231) by register allocation, differently at different widths; so the
// form is pinned here with inline assembly. vfmadd213 with y in the
// destination, x as the second operand and z as the third computes x * y + z
// (the product is commutative, so the value is the same) and prefers the
// second operand's NaN, then the destination's, then the third's: x, y, z.
#include "ieee/ieee_fields.h"

namespace ravl {

template <class V> RAVL_INLINE V fma_first_nan(V x, V y, V z) {
  if constexpr (sizeof(LaneOf<V>) == 8)
    __asm__("vfmadd213pd %[z], %[x], %[y]" : [y] "+x"(y) : [x] "x"(x), [z] "x"(z));
  else
    __asm__("vfmadd213ps %[z], %[x], %[y]" : [y] "+x"(y) : [x] "x"(x), [z] "x"(z));
  return y;
}

template <class T> struct FmaKernel : frame::Kernel {
  using sig = T(T, T, T);
  template <int L> static RAVL_INLINE Vec<T, L> vec(Vec<T, L> x, Vec<T, L> y, Vec<T, L> z) {
    return fma_first_nan(x, y, z);
  }
};

namespace fma_k { using full = FmaKernel<double>; }
namespace fmaf_k { using full = FmaKernel<float>; }

}  // namespace ravl

#include "entries/fma.inc"
#include "entries/fmaf.inc"
