// The exact remainder shared by fmod, remainder and remquo (double and float).
//
// All three compute r = x - n*y exactly (C99 Annex F, OpenCL C): n is the
// quotient x/y truncated toward zero (fmod) or rounded to the nearest integer,
// ties to even (remainder, remquo). The result is exact for every finite pair,
// a zero result has the sign of x, x infinite or y zero gives NaN (status 1),
// y infinite gives x for finite x, a NaN operand gives that NaN quieted (x's
// when both are NaN). remquo also returns the low 7 bits of |n| with the sign
// of x/y (0 for NaN results and for y infinite).
//
// Vector path: with ax = |x|, ay = |y| and t = ax/ay rounded (any rounding
// mode), let m = floor(ax/ay). When t < 2^p (p the mantissa field width, 52 or
// 23), m < 2^p is representable, so t >= m and t <= m + 1 after rounding and
// q = trunc(t) is m or m + 1. Then ax - q*ay lies in [-ay, ay); when ax >= ay
// it is a multiple of the unit of ay's last place (so is ax), hence
// representable; when ax < ay, q is 0 (value ax) or 1 (ax - ay, exact by
// Sterbenz since t rounded to 1 means ax > ay/2). So one fnma gives it
// exactly. A negative value means q = m + 1; adding ay back is exact for the
// same reasons. So r = ax mod ay and m come out exact with no
// dependence on the rounding mode, and m + 2^p holds m's low bits in its
// mantissa (parity and the quotient bits of remquo).
// Special lanes: t >= 2^p or NaN (x infinite, y zero, NaN operands, large
// exponent differences) and y infinite or NaN. The scalar routine settles
// them, the finite pairs by repeating the same exact step on y scaled by a
// power of two (a long division taking p - 2 quotient bits a step).
#pragma once

#include "ieee/ieee_fields.h"

namespace ravl {

enum class RemMode { fmod, nearest };

// ---- scalar: long division by exact steps ---------------------------------

// |x| = m * 2^e with m an integer; nonzero m normalized to [2^mant_bits, 2^(mant_bits+1)).
template <class T> struct Unpacked {
  uint64_t m;
  int e;
};
template <class T> RAVL_INLINE Unpacked<T> unpack(T a) {
  using I = Ieee<T>;
  constexpr int emin_unit = 1 - I::bias - I::mant_bits;  // exponent of the least denormal
  const uint64_t b = bits_of(a) & ~I::sign_mask;
  const int field = (int)(b >> I::mant_bits);
  uint64_t m = b & ((uint64_t(1) << I::mant_bits) - 1);
  if (field != 0) return {m | (uint64_t(1) << I::mant_bits), field - I::bias - I::mant_bits};
  const int s = __builtin_clzll(m) - (63 - I::mant_bits);  // m != 0 here
  return {m << s, emin_unit - s};
}
// 2^e for emin_unit <= e <= the largest unit exponent, built from its bits.
template <class T> RAVL_INLINE T pow2(int e) {
  using I = Ieee<T>;
  using U = typename I::U;
  constexpr int emin_unit = 1 - I::bias - I::mant_bits;
  if (e >= 1 - I::bias) return __builtin_bit_cast(T, (U)((U)(e + I::bias) << I::mant_bits));
  return __builtin_bit_cast(T, (U)((U)1 << (e - emin_unit)));
}
// m * 2^e for a significand m < 2^(mant_bits+1), when that value is
// representable (then below the least denormal's exponent m's low bits are 0).
template <class T> RAVL_INLINE T scaled(uint64_t m, int e) {
  constexpr int emin_unit = 1 - Ieee<T>::bias - Ieee<T>::mant_bits;
  return e >= emin_unit ? (T)m * pow2<T>(e) : (T)(m >> (emin_unit - e)) * pow2<T>(emin_unit);
}

// |x| mod |y| in [0, |y|) and the low 32 bits of floor(|x| / |y|), for finite
// x and finite nonzero y, in any rounding mode.
//
// Each step is the vector path's exact step: while ax/ay >= 2^p, ys = ay * 2^s
// with s chosen so that 2^(p-2) <= ax/ys < 2^p (ys is representable: it lies
// between ay and ax and its last place is at least ay's), q = trunc(ax/ys) is
// the integer quotient or one more, and ax - q*ys in [-ys, ys) is exact. So
// ax mod ys replaces ax (ax mod ay is unchanged since ys is a multiple of ay)
// and each step removes p - 2 bits of the exponent difference (at most 42
// steps for double, 11 for float). The quotient is the sum of the q * 2^s.
template <class T> struct RemParts {
  T r;
  uint32_t n;
};
template <class T> RAVL_INLINE T trunc_scalar(T a) {
  if constexpr (sizeof(T) == 8) return __builtin_trunc(a);
  else return __builtin_truncf(a);
}
template <class T> RAVL_INLINE RemParts<T> rem_core(T ax, T ay) {
  using I = Ieee<T>;
  constexpr T two_p = (T)(uint64_t(1) << I::mant_bits);
  constexpr int P = I::mant_bits + 1;
  const Unpacked<T> y = unpack(ay);
  uint32_t n = 0;
  // ax/ay overflowing to infinity also takes the loop.
  while (!(ax / ay < two_p)) {
    const int s = unpack(ax).e - y.e - (P - 2);  // >= 1 here
    const T ys = scaled<T>(y.m, y.e + s);
    T q = trunc_scalar(ax / ys);
    T r = fma(-q, ys, ax);
    if (r < T(0)) r = r + ys, q = q - T(1);
    if (s < 32) n += (uint32_t)((uint64_t)(int64_t)q << s);
    ax = r;
  }
  T q = trunc_scalar(ax / ay);
  T r = fma(-q, ay, ax);
  if (r < T(0)) r = r + ay, q = q - T(1);
  n += (uint32_t)(int64_t)q;
  return {__builtin_bit_cast(T, bits_of(r) & ~I::sign_mask), n};  // a -0 of directed rounding becomes +0
}

template <class T, RemMode mode> RAVL_INLINE int rem_scalar(T x, T y, T* r, int32_t* quo) {
  using I = Ieee<T>;
  *quo = 0;
  if (is_nan_scalar(x) || is_nan_scalar(y)) {
    *r = times_one(is_nan_scalar(x) ? x : y);
    return kStatusOk;
  }
  const T ax = __builtin_bit_cast(T, bits_of(x) & ~I::sign_mask);
  const T ay = __builtin_bit_cast(T, bits_of(y) & ~I::sign_mask);
  if (ax == __builtin_inf() || ay == T(0)) {
    *r = __builtin_bit_cast(T, (typename I::U)(I::exp_mask | I::quiet_bit));
    return kStatusDomain;
  }
  if (ay == __builtin_inf()) {
    *r = x;
    return kStatusOk;
  }
  RemParts<T> p = rem_core(ax, ay);
  T v = p.r;
  uint32_t n = p.n;
  if constexpr (mode == RemMode::nearest) {
    // Round half to even on 2v against ay, tested as v against h = ay - v (see
    // half_rest below); v - ay is exact (Sterbenz).
    const T h = ay - v;
    if (v > h || (v == h && (n & 1))) v = v - ay, n += 1;
  }
  const bool neg_x = (bits_of(x) & I::sign_mask) != 0;
  *r = __builtin_bit_cast(T, bits_of(v) ^ (neg_x ? I::sign_mask : 0));
  const int32_t q7 = (int32_t)(n & 127);
  *quo = ((bits_of(x) ^ bits_of(y)) & I::sign_mask) ? -q7 : q7;
  return kStatusOk;
}

// half_rest: the remainder rounds the quotient half to even, so with v = ax mod ay
// in [0, ay) it subtracts ay when 2v > ay, or 2v == ay and the quotient is odd.
// 2v itself may overflow to the largest finite value in the downward and
// toward-zero modes (x in the top binade), so v is compared with h = ay - v
// instead, which is right in every rounding mode: for v >= ay/2, h is exact
// (Sterbenz); for v < ay/2, ay - 2v is a positive multiple of 2 ulp(v), so
// ay - v >= v + 2 ulp(v), a representable value, and h rounds to more than v.

// ---- vector path -----------------------------------------------------------------

// The vector path's constants, one 32-byte row each, read as memory operands
// (rows(), frame/simd.h) where they are used.
template <class T> struct RemRows {
  using U = typename Bits<T>::U;
  Row<U> abs = row((U)(~(U)0 >> 1));                          // clears the sign bit
  Row<T> two_p = row((T)(uint64_t(1) << Ieee<T>::mant_bits));  // 2^p: integers below it sit in the mantissa
  Row<U> low7 = row((U)127);
  Row<U> low1 = row((U)1);
  Row<U> sign = row((U)~(~(U)0 >> 1));
  Row<T> zero = row((T)0);
};
template <class T> inline constexpr RemRows<T> kRemRows{};

template <class T, int L> struct RemVec {
  Vec<T, L> r;              // the result
  Vec<int32_t, L> quo;      // remquo's quotient bits with sign
};

// |x|, |y| and t = |x|/|y|: the lane test and the vector path compute them
// alike (no constant read from a row between), so that the compiler computes
// them once for both.
template <class V> struct RemStart {
  V ax, ay, t;
};
template <class V> RAVL_INLINE RemStart<V> rem_start(V x, V y) {
  const V ax = abs(x), ay = abs(y);
  return {ax, ay, ax / ay};
}

// All ones in the lanes of u whose sign bit is set, zero in the others, by
// arithmetic shifts of 32-bit lanes (a 64-bit lane takes its high word's),
// without a zero register.
template <class U> RAVL_INLINE SIntOf<U> sign_fill(U u) {
  if constexpr (sizeof(LaneOf<U>) == 4) {
    return as_int(u) >> 31;
  } else {
    using W = Vec<int32_t, 2 * lanes_of<U>>;
    W w = bitcast<W>(u) >> 31;
    if constexpr (lanes_of<U> == 2) return bitcast<SIntOf<U>>(__builtin_shufflevector(w, w, 1, 1, 3, 3));
    else return bitcast<SIntOf<U>>(__builtin_shufflevector(w, w, 1, 1, 3, 3, 5, 5, 7, 7));
  }
}

// The lanes the vector path settles are those rem_special leaves: x finite,
// y finite and nonzero, ax/ay < 2^p. In them:
// - v + (over ? ay : +0) is v + ay or v itself (v + 0 is v but for the sign of
//   a zero, which abs clears as before);
// - m + 2^p = (q + 2^p) - over: q + 2^p is exact, and over (all ones, -1) is
//   added to its bit pattern as an integer, which gives (q - 1) + 2^p since
//   over implies q >= 1 (ax - q*ay < 0 needs q > ax/ay >= 0);
// - the quotient bits with the sign of x/y are (q7 ^ s) - s, s all ones when
//   x and y differ in sign (-q7) and zero when not (q7).
template <class T, RemMode mode, int L> RAVL_INLINE RemVec<T, L> rem_vec(Vec<T, L> x, Vec<T, L> y) {
  using V = Vec<T, L>;
  using S = SIntOf<V>;
  using U = UIntOf<V>;
  const RemStart<V> a = rem_start(x, y);
  const V ax = a.ax, ay = a.ay;
  const V q = round_imm<3 | 8>(a.t);                       // m or m + 1 (see above)
  const RemRows<T>& c = rows(kRemRows<T>);
  V v = fnma(q, ay, ax);                                   // ax - q*ay, exact
  const S over = v < get<V>(c.zero);
  U nb = as_uint(q + get<V>(c.two_p)) + as_uint(over);     // m in the low bits
  v = as_float<V>(as_uint(v + as_float<V>(over & as_int(ay))) & get<U>(c.abs));  // ax mod ay
  if constexpr (mode == RemMode::fmod) {
    return {as_float<V>(as_uint(v) | (as_uint(x) & get<U>(rows(kRemRows<T>).sign))), Vec<int32_t, L>(0)};
  } else {
    const V h = ay - v;  // see half_rest
    // v > h, or v == h and m odd: v and h are not negative, so their bit
    // patterns as integers order as they do, and the test is one integer
    // compare of bits(v) + (m & 1) with bits(h).
    const S up = as_int(v) + as_int(nb & get<U>(c.low1)) > as_int(h);
    v = select(up, v - ay, v);
    nb = nb - as_uint(up);
    const RemRows<T>& c2 = rows(kRemRows<T>);  // read after the above: x's sign is not held
    const S s = sign_fill(as_uint(x) ^ as_uint(y));
    const S q7 = (as_int(nb & get<U>(c2.low7)) ^ s) - s;
    return {as_float<V>(as_uint(v) ^ (as_uint(x) & get<U>(c2.sign))), convert<int32_t>(q7)};
  }
}

// Lanes the vector path cannot settle: |x|/|y| >= 2^p or NaN, y infinite or
// NaN. t + |y|*0 is t but for y infinite (inf*0 = NaN), so one compare of it
// with 2^p flags them all (the fma is not on the vector path's chain).
template <class T, int L> RAVL_INLINE Mask<T, L> rem_special(Vec<T, L> x, Vec<T, L> y) {
  using V = Vec<T, L>;
  const RemStart<V> a = rem_start(x, y);
  return ~(fma(a.ay, V(0), a.t) < get<V>(rows(kRemRows<T>).two_p));
}

// The kernels: one result (fmod, remainder) or the quotient bits through the
// pointer (remquo). The fourth lane of width 3 is filled with 1 % 1.
template <class T, RemMode mode> struct RemKernel : frame::Kernel {
  using sig = T(T, T);
  static constexpr bool has_callout = true;
  static constexpr bool has_width3_fill = true;
  static constexpr double width3_fill = 1.0;
  template <int L> static RAVL_INLINE Vec<T, L> vec(Vec<T, L> x, Vec<T, L> y) { return rem_vec<T, mode>(x, y).r; }
  template <int L> static RAVL_INLINE Mask<T, L> special(Vec<T, L> x, Vec<T, L> y, const Vec<T, L>&) {
    return rem_special(x, y);
  }
  static int scalar(const T* x, const T* y, T* r) {
    int32_t q;
    return rem_scalar<T, mode>(*x, *y, r, &q);
  }
};

template <class T> struct RemquoKernel : frame::Kernel {
  using sig = T(T, T, int32_t*);
  static constexpr bool has_callout = true;
  static constexpr bool has_width3_fill = true;
  static constexpr double width3_fill = 1.0;
  template <int L> static RAVL_INLINE Two<Vec<T, L>, Vec<int32_t, L>> vec(Vec<T, L> x, Vec<T, L> y) {
    RemVec<T, L> v = rem_vec<T, RemMode::nearest>(x, y);
    return {v.r, v.quo};
  }
  template <int L, class O> static RAVL_INLINE Mask<T, L> special(Vec<T, L> x, Vec<T, L> y, const O&) {
    return rem_special(x, y);
  }
  static int scalar(const T* x, const T* y, T* r, int32_t* q) { return rem_scalar<T, RemMode::nearest>(*x, *y, r, q); }
};

}  // namespace ravl
