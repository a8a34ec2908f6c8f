// 32-bit words and sign bits of 64-bit lanes, for the conversions from
// 64-bit integer lanes (convert/int_to_fp.h).
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

// Per 64-bit lane, a where the sign bit of m is set, else b (vblendvpd, which
// reads only that bit: an integer's own sign selects, with no compare). An
// intrinsic here because the ext-vector select needs a full lane mask.
template <class T, int L> RAVL_INLINE Vec<T, L> select_by_sign(Vec<int64_t, L> m, Vec<T, L> a, Vec<T, L> b) {
  static_assert(sizeof(T) == 8 && (L == 2 || L == 4), "64-bit lanes");
  using D = Vec<double, L>;
  if constexpr (L == 4)
    return bitcast<Vec<T, L>>((D)_mm256_blendv_pd((__m256d)bitcast<D>(b), (__m256d)bitcast<D>(a), (__m256d)bitcast<D>(m)));
  else
    return bitcast<Vec<T, L>>((D)_mm_blendv_pd((__m128d)bitcast<D>(b), (__m128d)bitcast<D>(a), (__m128d)bitcast<D>(m)));
}

}  // namespace cvt
}  // namespace ravl
