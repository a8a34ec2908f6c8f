// IEEE field layout of double and float lanes, the exponent-field lane test,
// and the NaN rule shared by the two-operand selection families (fdim, fmax,
// fmin, maxmag, minmag) and their scalar callouts.
#pragma once

#include "frame/entry.h"

namespace ravl {

// Field layout of a binary64 or binary32 lane.
template <class T> struct Ieee;
template <> struct Ieee<double> {
  using U = uint64_t;
  static constexpr int mant_bits = 52;
  static constexpr int max_field = 0x7ff;    // all-ones biased exponent: infinity or NaN
  static constexpr int bias = 1023;
  static constexpr U exp_mask = 0x7ff0000000000000ull;
  static constexpr U sign_mask = 0x8000000000000000ull;
  static constexpr U quiet_bit = 0x0008000000000000ull;  // top mantissa bit
  static constexpr double two_norm = 0x1p54;              // lifts every denormal to a normal
  static constexpr int norm_shift = 54;
};
template <> struct Ieee<float> {
  using U = uint32_t;
  static constexpr int mant_bits = 23;
  static constexpr int max_field = 0xff;
  static constexpr int bias = 127;
  static constexpr U exp_mask = 0x7f800000u;
  static constexpr U sign_mask = 0x80000000u;
  static constexpr U quiet_bit = 0x00400000u;
  static constexpr float two_norm = 0x1p25f;  // 2^-149 * 2^25 = 2^-124, normal
  static constexpr int norm_shift = 25;
};

// Lanes whose exponent field is all ones: infinities and NaN (the bits alone
// decide, so the test is immune to the compare's treatment of NaN).
template <class V> RAVL_INLINE MaskOf<V> inf_or_nan(V x) {
  using I = Ieee<LaneOf<V>>;
  return (as_uint(x) & UIntOf<V>(I::exp_mask)) == UIntOf<V>(I::exp_mask);
}
// Biased exponent field of each lane, in lanes of the same width as T.
template <class V> RAVL_INLINE SIntOf<V> exponent_field(V x) {
  using I = Ieee<LaneOf<V>>;
  return as_int((as_uint(x) & UIntOf<V>(I::exp_mask)) >> I::mant_bits);
}

// Constants of the exponent-field helpers below, one 32-byte row each, read
// as memory operands (rows(), frame/simd.h).
template <class T> struct IeeeRows {
  using I = Ieee<T>;
  using U = typename I::U;
  using SI = typename Bits<T>::S;
  Row<U> abs = row((U)~I::sign_mask);
  Row<T> min_normal = row(__builtin_bit_cast(T, (U)((U)1 << I::mant_bits)));
  Row<T> two_norm = row(I::two_norm);
  Row<U> norm_shift = row((U)I::norm_shift);
  Row<U> max_field = row((U)I::max_field);
  // bits(|x|) + ~sign_mask wraps 0 to the largest positive integer and puts
  // every non-zero finite |x| at or below (exp_mask - 1) + ~sign_mask, read
  // as a signed integer, and infinities and NaN above it.
  Row<SI> zero_or_special_above = row((SI)(U)(I::exp_mask - 1 + ~I::sign_mask));
};
template <class T> inline constexpr IeeeRows<T> kIeeeRows{};

// Lanes that are +-0, +-infinity or NaN, from a = |x|: one integer add and
// one signed compare (see IeeeRows).
template <class V> RAVL_INLINE MaskOf<V> zero_inf_or_nan_abs(V a) {
  using T = LaneOf<V>;
  const IeeeRows<T>& c = rows(kIeeeRows<T>);
  return as_int(as_uint(a) + get<UIntOf<V>>(c.abs)) > get<SIntOf<V>>(c.zero_or_special_above);
}

// Denormal lanes lifted to normals: x, with denormal lanes multiplied by
// 2^norm_shift (exact: the product has the same significant bits and is
// normal), and the biased exponent field x would have if the field went below
// 1, i.e. the lifted lane's field minus norm_shift. Zero lanes come out as zero
// with a meaningless field; callers blend them. a is |x| (the lanes below the
// least normal are the denormals and zeros).
template <class V> struct Lifted {
  V x;
  SIntOf<V> field;
};
template <class V> RAVL_INLINE Lifted<V> lift_denormals(V x, V a) {
  using T = LaneOf<V>;
  using I = Ieee<T>;
  using S = SIntOf<V>;
  const IeeeRows<T>& c = rows(kIeeeRows<T>);
  S tiny = a < get<V>(c.min_normal);
  V xn = select(tiny, x * get<V>(c.two_norm), x);
  S field = as_int((as_uint(xn) >> I::mant_bits) & get<UIntOf<V>>(c.max_field));
  return {xn, field - (tiny & get<S>(c.norm_shift))};
}
template <class V> RAVL_INLINE Lifted<V> lift_denormals(V x) {
  return lift_denormals(x, as_float<V>(as_uint(x) & get<UIntOf<V>>(rows(kIeeeRows<LaneOf<V>>).abs)));
}

// ---- scalar helpers for the callouts ----------------------------------------

template <class T> RAVL_INLINE bool is_nan_scalar(T x) {
  using I = Ieee<T>;
  return (bits_of(x) & ~I::sign_mask) > I::exp_mask;  // all-ones exponent, mantissa non-zero
}
// The value of x * 1.0 on IEEE hardware: a NaN comes back with its quiet bit
// set (sign and payload kept), every other value unchanged. Written on the bits
// because a compiler may fold a literal x * 1.0 into x.
template <class T> RAVL_INLINE T times_one(T x) {
  if (!is_nan_scalar(x)) return x;
  return __builtin_bit_cast(T, bits_of(x) | Ieee<T>::quiet_bit);
}

// ---- the two-operand selection families ---------------------------------------
//
// Vector result: Op::apply(x, y), ordinary compares and the hardware max/min.
// Lane test: x or y has an all-ones exponent field. Lanes flagged only for an
// infinity keep the vector result, which is already right for infinities; the
// callout settles NaN operands in one of two orders:
// - NanFirst::x (fdim): x NaN -> x * 1.0; then y NaN -> y * 1.0. So fdim
//   returns the NaN operand, and y's NaN when both are NaN.
// - NanFirst::y (fmax, fmin, maxmag, minmag): y NaN -> x * 1.0; then x NaN ->
//   y * 1.0. So the other operand wins over a single NaN, and y's NaN
//   (quieted) when both are NaN.
// The second test runs after the first and decides when both are NaN.
enum class NanFirst { x, y };

template <class T, class Op, NanFirst order> struct NanRuleKernel : frame::Kernel {
  using sig = T(T, T);
  static constexpr bool has_callout = true;

  template <int L> static RAVL_INLINE Vec<T, L> vec(Vec<T, L> x, Vec<T, L> y) { return Op::apply(x, y); }

  template <int L> static RAVL_INLINE Mask<T, L> special(Vec<T, L> x, Vec<T, L> y, const Vec<T, L>&) {
    return inf_or_nan(x) | inf_or_nan(y);
  }

  // One routine per family and precision, shared by every width; status 0.
  static int scalar(const T* x, const T* y, T* r) {
    if constexpr (order == NanFirst::x) {
      if (is_nan_scalar(*x)) *r = times_one(*x);
      if (is_nan_scalar(*y)) *r = times_one(*y);
    } else {
      if (is_nan_scalar(*y)) *r = times_one(*x);
      if (is_nan_scalar(*x)) *r = times_one(*y);
    }
    return kStatusOk;
  }
};

}  // namespace ravl
