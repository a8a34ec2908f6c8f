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

// The two of the first Newton-Raphson step.
constexpr double kTwo = 2.0;
// 2 + 2^-42 = 2.0000000000002274 (bits 0x4000000000000200): the two of the
// second step, biased so that q exceeds the true quotient by a relative 2^-42.
constexpr double kTwoBiased = f64_bits(0x4000000000000200);
// 1.5 * 2^52 = 6755399441055744.0 (bits 0x4338000000000000): with a 32-bit
// unsigned u in the low word of its bits it is the double 1.5 * 2^52 + u, and
// adding it to an integral double in [0, 2^32) puts that integer in the low word.
constexpr double kShifter = f64_bits(0x4338000000000000);
// The low 32-bit half of a 64-bit lane.
constexpr uint64_t kLow32 = 0x00000000FFFFFFFF;

// q = (x / y) * (1 + h) from the reciprocal approximation r0 of y (see above).
RAVL_INLINE F64x4 quotient_estimate(F64x4 xd, F64x4 yd, F64x4 r0) {
  F64x4 r1 = r0 * fnma(yd, r0, F64x4(kTwo));
  F64x4 c = fnma(yd, r1, F64x4(kTwoBiased));
  return (r1 * xd) * c;
}

// Four signed lanes; r0f is the float reciprocal approximation of y.
RAVL_INLINE I32x4 signed_group(I32x4 x, I32x4 y, F32x4 r0f) {
  F64x4 q = quotient_estimate(convert<double>(x), convert<double>(y), convert<double>(r0f));
  return cvtt_i32(q);
}

// The unsigned 32-bit integers held in the low halves of 64-bit lanes (upper
// halves zero), as doubles: exact, by the shifter.
RAVL_INLINE F64x4 u32_to_double(U64x4 w) {
  return as_float<F64x4>(w | U64x4(bits_of(kShifter))) - kShifter;
}

// Four unsigned lanes held in the low halves of 64-bit lanes; the quotients
// come back in the low halves (the upper halves hold the shifter's bits, or
// the NaN's for y = 0).
RAVL_INLINE U64x4 unsigned_group(U64x4 xw, U64x4 yw) {
  F64x4 xd = u32_to_double(xw), yd = u32_to_double(yw);
  F64x4 r0 = convert<double>(rcp_approx(convert<float>(yd)));
  F64x4 q = quotient_estimate(xd, yd, r0);
  // q is at most 2^32 (1 + h): truncated it is an integer below 2^32.
  return as_uint(round_imm<3>(q) + kShifter);
}

// x / y truncated toward zero, signed lanes; 0x80000000 for y = 0 and for
// INT_MIN / -1. L = 4 (one group of four doubles) or 8 (two groups).
template <int L>
RAVL_INLINE Vec<int32_t, L> signed_quotient(Vec<int32_t, L> x, Vec<int32_t, L> y) {
  static_assert(L == 4 || L == 8, "one 128-bit or 256-bit register of 32-bit lanes");
  Vec<float, L> r0f = rcp_approx(convert<float>(y));
  if constexpr (L == 4) {
    return signed_group(x, y, r0f);
  } else {
    return join(signed_group(slice<0, 4>(x), slice<0, 4>(y), slice<0, 4>(r0f)),
                signed_group(slice<4, 4>(x), slice<4, 4>(y), slice<4, 4>(r0f)));
  }
}

// x / y truncated toward zero, unsigned lanes; 0 for y = 0. The lanes go as
// the even and odd 32-bit halves of 64-bit lanes: a 256-bit register makes two
// groups of four doubles, a 128-bit one a single group (evens, then odds).
template <int L>
RAVL_INLINE Vec<uint32_t, L> unsigned_quotient(Vec<uint32_t, L> x, Vec<uint32_t, L> y) {
  static_assert(L == 4 || L == 8, "one 128-bit or 256-bit register of 32-bit lanes");
  using W = Vec<uint64_t, L / 2>;
  W xw = bitcast<W>(x), yw = bitcast<W>(y);
  W xe = xw & kLow32, ye = yw & kLow32;
  W xo = xw >> 32, yo = yw >> 32;
  W qe, qo;
  if constexpr (L == 4) {
    U64x4 q = unsigned_group(join(xe, xo), join(ye, yo));
    qe = slice<0, 2>(q);
    qo = slice<2, 2>(q);
  } else {
    qe = unsigned_group(xe, ye);
    qo = unsigned_group(xo, yo);
  }
  return bitcast<Vec<uint32_t, L>>((qe & kLow32) | (qo << 32));
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
