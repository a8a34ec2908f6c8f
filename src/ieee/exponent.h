// The unbiased binary exponent floor(log2 |x|) of double and float lanes,
// shared by ilogb and logb.
//
// A normal x has it in its exponent field: field - bias. A denormal x is
// m * 2^(1 - bias - mant_bits) with m its mantissa field read as an integer
// (1 <= m < 2^mant_bits); m is made exact as a normal floating value by the
// integer-to-floating trick below, whose exponent field then gives
// floor(log2 m). The method uses only integer operations and one subtraction
// of normal numbers, so it stays exact when the caller runs with denormals
// flushed to zero on input (DAZ), unlike a lift by multiplication.
#pragma once

#include "ieee/ieee_fields.h"

namespace ravl {

// floor(log2 |x|) for finite non-zero x, in lanes as wide as x's. Zero,
// infinity and NaN lanes give meaningless values: callers blend them.
template <class V> RAVL_INLINE SIntOf<V> unbiased_exponent(V x) {
  using T = LaneOf<V>;
  using I = Ieee<T>;
  using S = SIntOf<V>;
  using U = UIntOf<V>;
  using UT = typename Bits<T>::U;
  const UT mant_mask = ((UT)1 << I::mant_bits) - 1;
  // 2^mant_bits: its bits OR an integer m < 2^mant_bits are 2^mant_bits + m,
  // so subtracting 2^mant_bits leaves m exactly (a normal number, m >= 1).
  const UT two_p = (UT)(I::bias + I::mant_bits) << I::mant_bits;
  const V two_pf = V(__builtin_bit_cast(T, two_p));
  S field = exponent_field(x);
  V m = as_float<V>((as_uint(x) & U(mant_mask)) | U(two_p)) - two_pf;
  // Denormal: floor(log2 m) + 1 - bias - mant_bits = field(m) - bias + 1 - bias - mant_bits.
  S e_tiny = exponent_field(m) - S(2 * I::bias + I::mant_bits - 1);
  return select(field == S(0), e_tiny, field - S(I::bias));
}

}  // namespace ravl
