// 32-bit words of 64-bit lanes, shared by the conversions between floating
// and 64-bit integer lanes (convert/fp_to_int.h, convert/int_to_fp.h).
#pragma once

#include "frame/simd.h"

namespace ravl {
namespace cvt {

template <class T, int L, int... I>
RAVL_INLINE Vec<T, L> low_high_impl(Vec<uint32_t, 2 * L> lo, Vec<uint32_t, 2 * L> hi, Ints<I...>) {
  return bitcast<Vec<T, L>>(__builtin_shufflevector(lo, hi, (I % 2 ? 2 * L + I : I)...));
}
// Each 64-bit lane made of the low 32-bit word of lo's lane and the high word
// of hi's (one vpblendd).
template <class T, int L> RAVL_INLINE Vec<T, L> low_high(Vec<T, L> lo, Vec<T, L> hi) {
  static_assert(sizeof(T) == 8, "64-bit lanes");
  using W = Vec<uint32_t, 2 * L>;
  return low_high_impl<T, L>(bitcast<W>(lo), bitcast<W>(hi), typename MakeInts<2 * L>::type{});
}

}  // namespace cvt
}  // namespace ravl
