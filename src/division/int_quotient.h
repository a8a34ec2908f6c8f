// The quotient kernels of the integer division families (idiv, udiv, irem,
// urem, idivrem, udivrem): x / y truncated toward zero on one register of
// 32-bit lanes, computed in double precision without an integer divide.
//
// Every 32-bit integer is a double exactly. From r0, the single-precision
// hardware reciprocal approximation of y (relative error d0 <= 1.5 * 2^-12,
// plus 2^-24 from rounding y to float), one Newton-Raphson step gives
//   r1 = r0 * (2 - y * r0) = (1 - d) / y,  |d| <= d0^2 + 2^-52 < 2^-22.7,
// and the second step, fused with the product, gives
//   c = (2 + 2^-42) - y * r1 = 1 + d + 2^-42 (one rounding, <= 2^-53),
//   q = (r1 * x) * c = (x / y) * (1 + 2^-42 - d^2 - 2^-42 d + e),  |e| <= 3 * 2^-53.
// So q = (x / y) * (1 + h) with 2^-42.2 < h < 2^-41.9, in magnitude just above
// the true quotient:
// - an exact quotient k lands in (|k|, |k| + 1) and truncates to k (k itself is
//   never missed from below);
// - an inexact one is at least 1/|y| below the next integer in magnitude, and
//   the push h * |x / y| < 2^-41.9 * 2^32 / |y| < 1/|y| never reaches it.
// Hence the truncated q is the exact truncated quotient for every y != 0.
//
// Fixed results, from the same arithmetic: y = 0 makes r0 infinite, y * r0 is
// 0 * inf = NaN and so is q (the default NaN, bits 0xFFF8000000000000); the
// signed conversion gives 0x80000000 and the unsigned path keeps the NaN's low
// 32 bits, 0. INT_MIN / -1 gives q = 2^31 (1 + h), out of the int32 range: the
// conversion gives 0x80000000 = INT_MIN. The remainder x - q * y in wrapping
// 32-bit arithmetic then gives x for y = 0 and 0 for INT_MIN / -1.
#pragma once

#include "frame/simd.h"

namespace ravl {
namespace int_div {

// The constants, one 32-byte row each, read as memory operands (rows(),
// frame/simd.h) where they are used, so that no register holds one across the
// computation.
struct QuotientRows {
  // The two of the first Newton-Raphson step.
  Row<double> two = row(2.0);
  // 2 + 2^-42 = 2.0000000000002274 (bits 0x4000000000000200): the two of the
  // second step, biased so that q exceeds the true quotient by a relative 2^-42.
  Row<double> two_biased = row(f64_bits(0x4000000000000200));
  // 1.5 * 2^52 = 6755399441055744.0 (bits 0x4338000000000000): with a 32-bit
  // unsigned u in the low word of its bits it is the double 1.5 * 2^52 + u,
  // and adding it to an integral double in [0, 2^32) puts that integer in the
  // low word.
  Row<double> shifter = row(f64_bits(0x4338000000000000));
};
inline constexpr QuotientRows kQuotientRows{};

// The low 32-bit half of a 64-bit lane (a blend with zero, no constant read).
constexpr uint64_t kLow32 = 0x00000000FFFFFFFF;

// Values the compiler takes as changed here, after `done` is computed: what
// is derived from them is computed after `done` and not before, so that few
// values are live at a time (the common paths stay within ymm0-5).
template <class D, class A> RAVL_INLINE void after(const D& done, A& a) { __asm__("" : "+x"(a) : "x"(done)); }
template <class D, class A, class B> RAVL_INLINE void after(const D& done, A& a, B& b) {
  __asm__("" : "+x"(a), "+x"(b) : "x"(done));
}

// The two Newton-Raphson steps from the reciprocal approximation r0 of y (see
// above): r1 and the factor c of the second step.
struct Reciprocal {
  F64x4 r1, c;
};
RAVL_INLINE Reciprocal reciprocal(F64x4 yd, F64x4 r0) {
  const QuotientRows& k = rows(kQuotientRows);
  F64x4 r1 = r0 * fnma(yd, r0, get<F64x4>(k.two));
  return {r1, fnma(yd, r1, get<F64x4>(k.two_biased))};
}
// q = (x / y) * (1 + h) (see above). x is converted by `to_double` only after
// the reciprocal is complete.
template <class X, class ToDouble>
RAVL_INLINE F64x4 quotient_estimate(X x, F64x4 yd, F64x4 r0, ToDouble to_double) {
  Reciprocal r = reciprocal(yd, r0);
  after(r.c, x);
  return (r.r1 * to_double(x)) * r.c;
}

// Four signed lanes, from lane Off of x and y; r0f is the float reciprocal
// approximation of y. x is read only once the reciprocal is complete.
template <int Off, int L> RAVL_INLINE I32x4 signed_group(Vec<int32_t, L> x, Vec<int32_t, L> y, Vec<float, L> r0f) {
  F64x4 q = quotient_estimate(x, convert<double>(slice<Off, 4>(y)), convert<double>(slice<Off, 4>(r0f)),
                              [](Vec<int32_t, L> v) { return convert<double>(slice<Off, 4>(v)); });
  return cvtt_i32(q);
}

// Doubles from 64-bit lanes whose low word holds an unsigned 32-bit integer
// and whose high word holds the shifter's (1.5 * 2^52 + u): exact.
RAVL_INLINE F64x4 shifted_to_double(U64x4 w) {
  return as_float<F64x4>(w) - get<F64x4>(rows(kQuotientRows).shifter);
}
// The even 32-bit lanes of v under the shifter's high word (one blend with
// the row as its memory operand), and the odd ones (a shift and an or).
RAVL_INLINE U64x4 even_shifted(U32x8 v) {
  U32x8 s = bitcast<U32x8>(get<U64x4>(rows(kQuotientRows).shifter));
  return bitcast<U64x4>(__builtin_shufflevector(v, s, 0, 9, 2, 11, 4, 13, 6, 15));
}
RAVL_INLINE U64x4 odd_shifted(U32x8 v) {
  return (bitcast<U64x4>(v) >> 32) | get<U64x4>(rows(kQuotientRows).shifter);
}

// Four unsigned lanes: those that `shifted` puts in the low words of 64-bit
// lanes under the shifter's high word. The quotients come back in the low
// words (the high words hold the shifter's bits, or the NaN's for y = 0).
template <class V, class Shifted> RAVL_INLINE U64x4 unsigned_group(V x, V y, Shifted shifted) {
  F64x4 yd = shifted_to_double(shifted(y));
  F64x4 r0 = convert<double>(rcp_approx(convert<float>(yd)));
  F64x4 q = quotient_estimate(x, yd, r0, [&](V v) { return shifted_to_double(shifted(v)); });
  // q is at most 2^32 (1 + h): truncated it is an integer below 2^32.
  return as_uint(round_imm<3>(q) + get<F64x4>(rows(kQuotientRows).shifter));
}

// x / y truncated toward zero, signed lanes; 0x80000000 for y = 0 and for
// INT_MIN / -1. L = 4 (one group of four doubles) or 8 (two groups: the
// upper four lanes, then the lower four). x and y come back unchanged (see
// after()); the callers' later uses read them from there.
template <int L>
RAVL_INLINE Vec<int32_t, L> signed_quotient(Vec<int32_t, L>& x, Vec<int32_t, L>& y) {
  static_assert(L == 4 || L == 8, "one 128-bit or 256-bit register of 32-bit lanes");
  Vec<float, L> r0f = rcp_approx(convert<float>(y));
  if constexpr (L == 4) {
    return signed_group<0>(x, y, r0f);
  } else {
    I32x4 hi = signed_group<4>(x, y, r0f);
    after(hi, x, y);
    return join(signed_group<0>(x, y, r0f), hi);
  }
}

// x / y truncated toward zero, unsigned lanes; 0 for y = 0. The lanes go as
// the even and odd 32-bit halves of 64-bit lanes: a 256-bit register makes two
// groups of four doubles (the odd lanes, then the even ones), a 128-bit one a
// single group (evens, then odds). x and y come back unchanged (see after()).
template <int L>
RAVL_INLINE Vec<uint32_t, L> unsigned_quotient(Vec<uint32_t, L>& x, Vec<uint32_t, L>& y) {
  static_assert(L == 4 || L == 8, "one 128-bit or 256-bit register of 32-bit lanes");
  if constexpr (L == 4) {
    auto spread = [](U32x4 v) {  // evens, then odds
      using W = Vec<uint64_t, 2>;
      W w = bitcast<W>(v);
      return join(w & kLow32, w >> 32) | get<U64x4>(rows(kQuotientRows).shifter);
    };
    U64x4 q = unsigned_group(spread(x), spread(y), [](U64x4 w) { return w; });
    return bitcast<Vec<uint32_t, L>>((slice<0, 2>(q) & kLow32) | (slice<2, 2>(q) << 32));
  } else {
    U64x4 qo = unsigned_group(x, y, odd_shifted);
    after(qo, x, y);
    U64x4 qe = unsigned_group(x, y, even_shifted);
    return bitcast<U32x8>(__builtin_shufflevector(bitcast<U32x8>(qe), bitcast<U32x8>(qo << 32), 0, 9, 2, 11, 4, 13, 6,
                                                  15));
  }
}

// x - q * y with a wrapping 32-bit multiply and subtraction: the remainder
// with the sign of x when q is the truncated quotient; x when q * y wraps to
// zero (y = 0) and 0 for INT_MIN / -1 (q = INT_MIN, q * y wraps to INT_MIN).
template <class V>
RAVL_INLINE V wrapping_remainder(V x, V y, V q) {
  return bitcast<V>(as_uint(x) - as_uint(q) * as_uint(y));
}

}  // namespace int_div
}  // namespace ravl
