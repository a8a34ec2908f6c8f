// The unbiased binary exponent floor(log2 |x|) of double and float lanes,
// shared by ilogb and logb.
//
// A normal x has it in its exponent field: field - bias. A denormal x is
// m * 2^(1 - bias - mant_bits) with m its mantissa field read as an integer
// (1 <= m < 2^mant_bits); m is made exact as a normal floating value by the
// integer-to-floating trick below, whose exponent field then gives
// floor(log2 m). The method uses only integer operations, one subtraction
// of normal numbers and a compare of |x| with the least normal (which a
// denormal passes as zero would), so it stays exact when the caller runs with
// denormals flushed to zero on input (DAZ), unlike a lift by multiplication.
#pragma once

#include "ieee/ieee_fields.h"

namespace ravl {

// The constants below, one 32-byte row each, read as memory operands (rows(),
// frame/simd.h).
template <class T> struct ExponentRows {
  using I = Ieee<T>;
  using U = typename I::U;
  Row<U> abs = row((U)~I::sign_mask);
  Row<U> mant_mask = row((U)(((U)1 << I::mant_bits) - 1));
  // 2^mant_bits: its bits OR an integer m < 2^mant_bits are 2^mant_bits + m,
  // so subtracting 2^mant_bits leaves m exactly (a normal number, m >= 1).
  Row<T> two_p = row(__builtin_bit_cast(T, (U)((U)(I::bias + I::mant_bits) << I::mant_bits)));
  Row<T> min_normal = row(__builtin_bit_cast(T, (U)((U)1 << I::mant_bits)));
  Row<U> tiny_offset = row((U)(I::bias + I::mant_bits - 1));
  Row<U> bias = row((U)I::bias);
};
template <class T> inline constexpr ExponentRows<T> kExponentRows{};

// floor(log2 |x|) for finite non-zero x, in lanes as wide as x's, from a =
// |x|. Zero, infinity and NaN lanes give meaningless values: callers blend
// them.
template <class V> RAVL_INLINE SIntOf<V> unbiased_exponent(V x, V a) {
  using T = LaneOf<V>;
  using I = Ieee<T>;
  using S = SIntOf<V>;
  using U = UIntOf<V>;
  const ExponentRows<T>& c = rows(kExponentRows<T>);
  // The field of a normal |x| (the sign bit is clear), and that of the
  // mantissa field m read as an integer and made a normal number exactly.
  S field = as_int(as_uint(a) >> I::mant_bits);
  V m = as_float<V>((as_uint(x) & get<U>(c.mant_mask)) | get<U>(c.two_p)) - get<V>(c.two_p);
  S field_m = as_int(as_uint(m) >> I::mant_bits);
  // Denormal: floor(log2 m) + 1 - bias - mant_bits
  //         = field(m) - bias + 1 - bias - mant_bits = (field(m) - (bias + mant_bits - 1)) - bias.
  S tiny = a < get<V>(c.min_normal);
  return select(tiny, field_m - get<S>(c.tiny_offset), field) - get<S>(c.bias);
}
template <class V> RAVL_INLINE SIntOf<V> unbiased_exponent(V x) {
  return unbiased_exponent(x, as_float<V>(as_uint(x) & get<UIntOf<V>>(rows(kExponentRows<LaneOf<V>>).abs)));
}

}  // namespace ravl
