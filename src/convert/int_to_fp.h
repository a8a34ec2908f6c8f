// Integer to floating conversions with an explicit rounding mode (OpenCL
// convert_float_rtn, convert_double_rtz, ...): the kernels of the cvti32tofp,
// cvtu32tofp, cvti64tofp and cvtu64tofp families, and the rounding-mode tag
// that the double to float narrowing (cvtfp64tofp32) uses too.
//
// Every result is the exact integer rounded once in the named mode:
// correctly rounded, 0 ULP. No 64-bit hardware conversion is used; MXCSR is
// neither read nor written.
//
// Semantics of the modes:
// - rte rounds in the caller's MXCSR mode: nearest even in the library's
//   default environment; a caller's directed mode rounds the magnitude (the
//   sign is put back afterwards), so its result is the rounding of |x| in
//   that mode with the sign of x;
// - rtn, rtp and rtz never depend on the caller's mode.
//
// Method. A hardware addition or conversion rounds once in the caller's
// mode: whatever that mode, its result t is one of the two neighbours of the
// exact value (a faithful rounding). The directed members compare t with the
// exact value, exactly, and step t one unit in the last place on its bit
// pattern when it lies on the wrong side; the step of a bit pattern crosses
// binade boundaries correctly. The rte members give the caller's rounding of
// the magnitude directly. Every exact zero difference may be -0 in the
// caller's round-down mode, so results that may be a zero built by a
// subtraction get their sign from the integer, never from the arithmetic.
//
// 32-bit integers to float: the hardware conversion (vcvtdq2ps, signed) is
// the faithful t; for rte it converts |x| (exact for |x| <= 2^24, and
// 0x80000000 converts to -2^31, whose sign is put back anyway).
// 64-bit integers: the integer is cut into two exact doubles P + L (its
// upper word times 2^32 less 2^52, and 2^52 plus its lower word); their
// hardware sum is faithful, with a difference against P that is exact. To
// float, the double sum s is narrowed: for rte after rounding it to odd (its
// last bit set when inexact, which keeps every float rounding of s that of
// the exact value); for the directed modes after moving it one unit toward
// the exact value when it lies on the wrong side and rounding its bits to
// float precision, so that the narrowing is exact.
// Unsigned 32-bit integers to float: pieces of 23 and 9 bits (below).
#pragma once

#include "convert/words.h"
#include "frame/entry.h"

namespace ravl {
namespace cvt {

enum class Rm { rte, rtn, rtp, rtz };

// ---- constants ----------------------------------------------------------------

// Float 2^23 (bits 0x4B000000): a 23-bit integer or-ed into its mantissa is
// 2^23 + v.
constexpr float kF2p23 = 0x1p23f;
constexpr uint32_t kF2p23Bits = 0x4B000000u;
// Float 2^46 (bits 0x56800000): its mantissa's unit is 2^23, so v or-ed in is
// 2^46 + v * 2^23.
constexpr float kF2p46 = 0x1p46f;
constexpr uint32_t kF2p46Bits = 0x56800000u;
// Double 2^52 (bits 0x4330000000000000): mantissa unit 1.
constexpr double kD2p52 = 0x1p52;
constexpr uint64_t kD2p52Bits = 0x4330000000000000ull;

constexpr uint32_t kLow23 = 0x007FFFFFu;
constexpr uint32_t kSign32 = 0x80000000u;
constexpr uint64_t kSign64 = 0x8000000000000000ull;

// The constants of the signed 32-bit and the 64-bit conversions, one 32-byte
// row each, read as memory operands.
struct Rows {
  // The upper word w of an unsigned integer, xor-ed into the low bits of
  // 2^84 (bits 0x4530000000000000, mantissa unit 2^32): 2^84 + w 2^32. For a
  // signed integer the word's top bit is flipped too (bits
  // 0x4530000080000000): 2^84 + (w + 2^31) 2^32.
  Row<uint64_t> hi_bits_u = row<uint64_t>(0x4530000000000000ull);
  Row<uint64_t> hi_bits_s = row<uint64_t>(0x4530000080000000ull);
  // What the upper piece loses so that it is w 2^32 - 2^52: 2^84 + 2^52 (bits
  // 0x4530000000100000), or 2^84 + 2^63 + 2^52 (bits 0x4530000080100000).
  Row<double> hi_off_u = row(0x1p84 + 0x1p52);
  Row<double> hi_off_s = row(0x1p84 + 0x1p63 + 0x1p52);
  // The upper word of 2^52: the lower piece is 2^52 + the lower word.
  Row<uint64_t> lo_bits = row<uint64_t>(kD2p52Bits);
  Row<uint64_t> abs64 = row<uint64_t>(~kSign64);
  Row<uint64_t> sign64 = row<uint64_t>(kSign64);
  Row<int32_t> sign32 = row<int32_t>((int32_t)kSign32);
  Row<uint64_t> one64 = row<uint64_t>(1);
  // The low 29 mantissa bits of a double, which a float lacks, and the rest.
  Row<uint64_t> below_float = row<uint64_t>(0x1FFFFFFFull);
  Row<uint64_t> float_bits = row<uint64_t>(~0x1FFFFFFFull);
};
inline constexpr Rows kRows{};

// ---- the directed step (unsigned 32-bit to float) ------------------------------

// The bit pattern `mag` of a nonnegative float (the magnitude of the result),
// rounded faithfully; `up` and `down` (-1 or 0 per lane) say whether it lies
// above or below the exact magnitude. Returns the magnitude in mode rm (the
// result is nonnegative: rtn and rtz round it down, rtp up).
template <Rm rm, class I> RAVL_INLINE I directed_unsigned(I mag, I up, I down) {
  if constexpr (rm == Rm::rte) return mag;
  else if constexpr (rm == Rm::rtp) return mag - down;
  else return mag + up;
}

// ---- exact conversions to double --------------------------------------------------

template <int L> RAVL_INLINE Vec<double, L> to_double(Vec<int32_t, L> x) {
  return convert<double>(x);  // vcvtdq2pd: exact
}
template <int L> RAVL_INLINE Vec<double, L> to_double(Vec<uint32_t, L> x) {
  Vec<uint64_t, L> w = convert<uint64_t>(x);  // zero-extended
  Vec<double, L> d = as_float<Vec<double, L>>(w | kD2p52Bits) - kD2p52;
  return abs(d);  // +0 for 0 in every caller mode
}

// ---- 32-bit integers to float -----------------------------------------------------------

// vpsignd: v, -v or 0 by the sign of s. An intrinsic here because the
// directed step of a signed result needs exactly this per-lane negation.
RAVL_INLINE Vec<int32_t, 4> sign_of(Vec<int32_t, 4> v, Vec<int32_t, 4> s) {
  return (Vec<int32_t, 4>)_mm_sign_epi32((__m128i)v, (__m128i)s);
}
RAVL_INLINE Vec<int32_t, 8> sign_of(Vec<int32_t, 8> v, Vec<int32_t, 8> s) {
  return (Vec<int32_t, 8>)_mm256_sign_epi32((__m256i)v, (__m256i)s);
}

template <Rm rm, int L> RAVL_INLINE Vec<float, L> to_float(Vec<int32_t, L> x) {
  using F = Vec<float, L>;
  using I = Vec<int32_t, L>;
  if constexpr (rm == Rm::rte) {
    // |x| rounded in the caller's mode, the sign of x or-ed back (0x80000000
    // has no positive magnitude: it converts to -2^31 and keeps its sign).
    const Rows& c = rows(kRows);
    return as_float<F>(as_int(convert<float>(sign_of(x, x))) | (x & get<I>(c.sign32)));
  } else {
    // t faithful; back = its conversion back, exact (t is integral; t = 2^31
    // gives 0x80000000, which is 2^31 modulo 2^32). d = x - back is then
    // exactly x - t, |d| < 2^8, so its sign says where t lies.
    F t = convert<float>(x);
    I tb = as_int(t);
    I d = x - cvtt_i32(t);
    if constexpr (rm == Rm::rtn) return as_float<F>(tb + sign_of(d >> 31, x));         // t > x: down
    else if constexpr (rm == Rm::rtp) return as_float<F>(tb - sign_of((-d) >> 31, x));  // t < x: up
    else return as_float<F>(tb + (sign_of(d, x) >> 31));  // |t| > |x|: d and x of opposite signs
  }
}

// ---- unsigned 32-bit integers to float ---------------------------------------------------

// m < 2^32 as lo = m mod 2^23 and hi = m - lo = (m >> 23) * 2^23, both exact
// floats; t = lo + hi rounds once. back = t - hi is exact (t and hi are
// multiples of ulp(t) and differ by less than 2^24 ulp(t)).
template <Rm rm, int L> RAVL_INLINE Vec<float, L> to_float(Vec<uint32_t, L> m) {
  using F = Vec<float, L>;
  using U = Vec<uint32_t, L>;
  F lo = as_float<F>((m & kLow23) | kF2p23Bits) - kF2p23;
  F hi = as_float<F>((m >> 23) | kF2p46Bits) - kF2p46;
  F t = lo + hi;
  U mag = as_uint(t);
  if constexpr (rm != Rm::rte) {
    F back = t - hi;
    mag = bitcast<U>(directed_unsigned<rm>(bitcast<Vec<int32_t, L>>(mag), back > lo, back < lo));
  }
  return as_float<F>(mag & ~kSign32);
}

// ---- 64-bit integers: two exact double pieces --------------------------------------------

// x = w 2^32 + v with v = x mod 2^32 and w the upper word (signed for a
// signed x). P = w 2^32 - 2^52 and L = 2^52 + v are exact doubles (P has at
// most 33 significant bits, L at most 53) and P + L = x. P is 2^84 + (w or
// w + 2^31) 2^32, the word xor-ed into the mantissa of 2^84, less the offset;
// L is x's lower word under the upper word of 2^52.
template <bool is_signed, int L> struct Pieces64 {
  Vec<double, L> p, l;
};
template <bool is_signed, int L>
RAVL_INLINE Pieces64<is_signed, L> pieces64(Vec<uint64_t, L> x, const Rows& c) {
  using D = Vec<double, L>;
  using U = Vec<uint64_t, L>;
  D h = as_float<D>((x >> 32) ^ get<U>(is_signed ? c.hi_bits_s : c.hi_bits_u));
  D p = h - get<D>(is_signed ? c.hi_off_s : c.hi_off_u);
  D l = as_float<D>(low_high(x, get<U>(c.lo_bits)));
  return {p, l};
}

// Which side of the exact value P + L the faithful sum s lies on: s - P is
// exact, so it is compared with L. (s - P = L + (s - x) lies within 2^11 of
// L, below 2^53 + 2^11, and is a multiple of ulp(s), since P is a multiple of
// 2^32: s itself when ulp(s) = 1, fewer than 2^53 units of ulp(s) >= 2
// otherwise.)

// ---- 64-bit integers to double ----------------------------------------------------------

template <Rm rm, int L> RAVL_INLINE Vec<double, L> to_double(Vec<uint64_t, L> x) {
  using D = Vec<double, L>;
  using U = Vec<uint64_t, L>;
  const Rows& c = rows(kRows);
  Pieces64<false, L> q = pieces64<false>(x, c);
  D t = q.p + q.l;
  U mag = as_uint(t) & get<U>(c.abs64);  // +0 for 0 in every caller mode
  if constexpr (rm != Rm::rte) {
    D back = t - q.p;
    mag = rm == Rm::rtp ? mag - as_uint(back < q.l) : mag + as_uint(back > q.l);
  }
  return as_float<D>(mag);
}
template <Rm rm, int L> RAVL_INLINE Vec<double, L> to_double(Vec<int64_t, L> x) {
  using D = Vec<double, L>;
  using I = Vec<int64_t, L>;
  using U = Vec<uint64_t, L>;
  const Rows& c = rows(kRows);
  if constexpr (rm == Rm::rte) {
    // |x| rounded in the caller's mode (the most negative value keeps its
    // bits, which read unsigned are 2^63), the sign of x or-ed back.
    Pieces64<false, L> q = pieces64<false>(bitcast<U>(select_by_sign(x, -x, x)), c);
    U mag = as_uint(q.p + q.l) & get<U>(c.abs64);
    return as_float<D>(mag | (bitcast<U>(x) & get<U>(c.sign64)));
  } else {
    Pieces64<true, L> q = pieces64<true>(bitcast<U>(x), c);
    D t = q.p + q.l;
    D back = t - q.p;
    I above = back > q.l, below = back < q.l;
    // t is -0 only for x = 0 in the caller's round-down mode: a nonnegative
    // x takes |t| (x | 0x7FFF...F is all ones for a negative x, else the
    // magnitude mask).
    I tb = as_int(t) & (x | get<I>(c.abs64));
    // rtn: a t above x goes one unit down, bits - 1 when positive, + 1 when
    // negative; rtp: a t below goes up; rtz: bits - 1 when |t| > |x|.
    if constexpr (rm == Rm::rtn) return as_float<D>(select_by_sign(x, tb - above, tb + above));
    else if constexpr (rm == Rm::rtp) return as_float<D>(select_by_sign(x, tb + below, tb - below));
    else return as_float<D>(tb + select_by_sign(x, below, above));
  }
}

// ---- 64-bit integers to float -----------------------------------------------------------

// The float lanes of a 4- or 2-lane double vector: vcvtpd2ps, which rounds in
// the caller's mode (exactly when the double has at most 24 significant
// bits and is in the float range, as every integer below 2^64 is).
template <int L> RAVL_INLINE Vec<float, L> narrow(Vec<double, L> d) { return convert<float>(d); }

// s = P + L faithful (a nonnegative source takes |s|: s is -0 only for 0 in
// round-down mode); d = s - P is exact, so d > L says that s lies above the
// exact value x and d < L below.
//
// rte, on the magnitude: s rounded to odd. Above x, the truncation of x to
// 53 bits is s one unit lower; the truncated bits with their last bit set
// when s was inexact (d != L) are x rounded to odd, and narrowing that rounds
// in every mode as x would (53 bits carry the 24 of a float and two more).
//
// Directed: the bits of the float result are those of a double with its
// low 29 mantissa bits cleared, which narrows exactly. s is first moved one
// unit toward x when it lies on the side the mode rounds away from (above x
// for a rounding down, below for up): no float lies strictly between s and x,
// so the moved s and x have the same rounding to float in that mode. Then,
// on the bits of a sign and magnitude: clearing the low 29 bits truncates the
// magnitude; adding 2^29 - 1 first rounds it up. Moving one unit down is
// bits - 1 on a positive s and + 1 on a negative one; up the reverse.
template <Rm rm, int L> RAVL_INLINE Vec<float, L> to_float(Vec<uint64_t, L> x) {
  using D = Vec<double, L>;
  using U = Vec<uint64_t, L>;
  const Rows& c = rows(kRows);
  Pieces64<false, L> q = pieces64<false>(x, c);
  D s = q.p + q.l;
  D d = s - q.p;
  U a = as_uint(s) & get<U>(c.abs64);
  if constexpr (rm == Rm::rte) {
    return narrow(as_float<D>((a + as_uint(d > q.l)) | (as_uint(d != q.l) & get<U>(c.one64))));
  } else if constexpr (rm == Rm::rtp) {
    return narrow(as_float<D>((a - as_uint(d < q.l) + get<U>(c.below_float)) & get<U>(c.float_bits)));
  } else {  // rtn, rtz: down
    return narrow(as_float<D>((a + as_uint(d > q.l)) & get<U>(c.float_bits)));
  }
}
// Signed: rte converts |x| as above and puts the sign back (narrowed from
// x's sign bit as a double, +-0). Directed: signed pieces, and the move and
// the rounding up of the magnitude chosen by the sign: rtn moves s above x
// down and rounds a negative magnitude up; rtp moves s below x up and rounds
// a positive magnitude up; rtz moves s of too large a magnitude toward zero.
template <Rm rm, int L> RAVL_INLINE Vec<float, L> to_float(Vec<int64_t, L> x) {
  using D = Vec<double, L>;
  using I = Vec<int64_t, L>;
  using U = Vec<uint64_t, L>;
  const Rows& c = rows(kRows);
  if constexpr (rm == Rm::rte) {
    Vec<float, L> mag = to_float<rm>(bitcast<U>(select_by_sign(x, -x, x)));
    Vec<float, L> sign = narrow(as_float<D>(bitcast<U>(x) & get<U>(c.sign64)));
    return as_float<Vec<float, L>>(as_int(mag) | as_int(sign));
  } else {
    Pieces64<true, L> q = pieces64<true>(bitcast<U>(x), c);
    D s = q.p + q.l;
    D d = s - q.p;
    I sb = as_int(s) & (x | get<I>(c.abs64));  // |s| for a nonnegative x, as for double
    // A full sign mask, so that the choice stays an integer blend between the
    // integer operations around it.
    I neg = x < 0, add;
    if constexpr (rm == Rm::rtn) add = select(neg, get<I>(c.below_float) - (d > q.l), d > q.l);
    else if constexpr (rm == Rm::rtp) add = select(neg, d < q.l, get<I>(c.below_float) - (d < q.l));
    else add = select(neg, d < q.l, d > q.l);
    return narrow(as_float<D>((sb + add) & get<I>(c.float_bits)));
  }
}

// ---- the kernel ----------------------------------------------------------------------------

// S lanes to D lanes (D double or float), rounded in mode rm.
template <class S, class D, Rm rm> struct IntToFp : frame::Kernel {
  using sig = D(S);
  template <int L> static RAVL_INLINE Vec<D, L> vec(Vec<S, L> x) {
    if constexpr (__is_same(D, float)) {
      return to_float<rm>(x);
    } else if constexpr (sizeof(S) == 4) {
      return to_double(x);  // exact: the mode cannot matter
    } else {
      return to_double<rm>(x);
    }
  }
};

}  // namespace cvt
}  // namespace ravl
