// Floating to integer conversions: OpenCL convert_{int,uint,long,ulong}[_sat]_{rte,rtn,rtp,rtz}
// on double and float lanes. Exact for every input (a conversion has no rounding
// error beyond the chosen integral rounding); no special lanes, no callout.
//
// Every body first rounds the source to an integral floating value r with the
// round-to-integral instruction, its rounding given by the immediate (0 to
// nearest even, 1 down, 2 up, 3 toward zero) and never by MXCSR; the four
// rounding members of a body differ in that immediate only. The rest is
// branch-free: out-of-range and NaN lanes are clamped or replaced by the
// hardware min and max (whose NaN rule is used: a NaN operand gives the second
// operand), compares and blends. No scalar conversion instruction is used:
// 32-bit results come from the packed truncating conversion (exact on integral
// r); 64-bit results are built from r's two 32-bit words, each computed
// exactly in double (int64_words), since the instruction set has no packed
// conversion between floating and 64-bit integer lanes. Float sources of
// 64-bit results are widened to double first.
//
// Results outside the range (for every rounding mode; "too large" is judged on
// r, after rounding):
//
//   body          NaN                     too large   too small   negative in range
//   i32 nosat     0x80000000              0x80000000  0x80000000  the value
//   i32 sat       0                       0x7FFFFFFF  0x80000000  the value
//   u32 nosat     0x80000000              0x80000000  0x80000000  |r|
//   u32 sat       0xFFFFFFFF, or 0 when   0xFFFFFFFF  0           0
//                 its sign bit is set
//   i64 nosat     2^63                    2^63        2^63        the value
//   i64 sat       0                       2^63 - 1    2^63        the value
//   u64 nosat     2^63                    2^63        2^63        |r|
//   u64 sat       0                       2^64 - 1    0           0
//
// (the unsigned nosat bodies convert |r|, so "too large" is |r| >= 2^32 or 2^64
// there). The u32 sat NaN result follows the sign bit because that body finds
// "r >= 2^32" by a signed integer compare of r's bits, with no separate NaN
// compare.
#pragma once

#include "frame/entry.h"

namespace ravl {
namespace fp_to_int {

// Round-to-integral immediates (inexact not suppressed).
constexpr int kRte = 0, kRtn = 1, kRtp = 2, kRtz = 3;

constexpr int64_t kI64Min = (int64_t)0x8000000000000000ull;  // also the nosat out-of-range pattern
constexpr int64_t kI64Max = 0x7FFFFFFFFFFFFFFF;

// The vector paths' constants, one 32-byte row each, read as memory operands
// (no register holds a constant across the body).
struct Rows {
  // Split into 32-bit words (int64_words): 1.5 2^84 - 0x43380000 2^32, bits
  // 0x4537FFFFBCC80000 (mantissa unit 2^32, low word -0x43380000), and that
  // plus 1.5 2^52, bits 0x4537FFFFBCE00000.
  Row<double> shift84 = row(0x1.7ffffbcc80000p+84);
  Row<double> shift84_52 = row(0x1.7ffffbce00000p+84);
  // 64-bit range ends.
  Row<double> min_i64 = row(-0x1p63);    // -2^63, bits 0xC3E0000000000000
  Row<double> two_63 = row(0x1p63);      // 2^63, bits 0x43E0000000000000
  Row<double> two_64 = row(0x1p64);      // 2^64, bits 0x43F0000000000000
  Row<int64_t> max_i64 = row(kI64Max);
  Row<int64_t> min_i64_bits = row(kI64Min);
  Row<uint64_t> abs64 = row<uint64_t>(0x7FFFFFFFFFFFFFFFull);
  // 32-bit targets from double.
  Row<double> min_i32 = row(-0x1p31);            // -2^31, bits 0xC1E0000000000000
  Row<double> max_i32 = row(0x1.fffffffcp30);    // 2^31 - 1, bits 0x41DFFFFFFFC00000
  Row<double> two_31 = row(0x1p31);              // 2^31, bits 0x41E0000000000000
  Row<double> two_32 = row(0x1p32);              // 2^32, bits 0x41F0000000000000
  Row<double> max_u32 = row(0x1.fffffffep31);    // 2^32 - 1, bits 0x41EFFFFFFFE00000
  Row<int64_t> below_2p32 = row<int64_t>(0x41EFFFFFFFE00000);  // bits of 2^32 - 1: above it, r >= 2^32
  Row<uint32_t> sign32 = row<uint32_t>(0x80000000u);
  // 32-bit targets from float.
  Row<float> f_two_31 = row(0x1p31f);            // bits 0x4F000000
  Row<int32_t> f_below_2p32 = row<int32_t>(0x4F7FFFFF);  // bits of the float below 2^32 (0x4F800000)
  Row<uint32_t> abs32 = row<uint32_t>(0x7FFFFFFFu);
};
inline constexpr Rows kRows{};

// ---- 64-bit integer from an integral double ---------------------------------
//
// For integral t with |t| <= 2^64: s = t + S, S = 1.5 2^84 - 0x43380000 2^32,
// rounds t, in the caller's mode whichever it is, to a multiple h 2^32 of 2^32
// with |t - h 2^32| < 2^32; s lies in [2^84, 2^85), where the mantissa's unit
// is 2^32, so the low word of s is h - 0x43380000 modulo 2^32. u = s - (S +
// 1.5 2^52) = h 2^32 - 1.5 2^52 is exact (multiples of 2^32 below 2^66), and
// so is t - u = l + 1.5 2^52 with l = t - h 2^32 (an integer within 2^32 of
// 1.5 2^52): its bits are 0x4338000000000000 + l as 64-bit integers. The
// upper word of those is 0x43380000, which the low word of s shifted up
// takes away: (bits(s) << 32) + bits(t - u) = h 2^32 + l = t, modulo 2^64:
// the two's-complement bits of t (t = 2^63 gives 0x8000000000000000, t = 2^64
// gives 0). Infinity and NaN give garbage, which the callers replace.
template <int L> RAVL_INLINE Vec<uint64_t, L> int64_words(Vec<double, L> t, const Rows& c) {
  using V = Vec<double, L>;
  V s = t + get<V>(c.shift84);
  V l = t - (s - get<V>(c.shift84_52));
  return (as_uint(s) << 32) + as_uint(l);
}

// ---- i32 ----------------------------------------------------------------------

// nosat: the packed truncating conversion of r, exact (0x80000000 for NaN and
// |r| >= 2^31). sat, double: NaN lanes become 0 (r AND the mask of r == r),
// then r is clamped to [-2^31, 2^31 - 1], both ends exact doubles.
template <int imm, bool sat, int L> RAVL_INLINE Vec<int32_t, L> to_i32(Vec<double, L> x) {
  using V = Vec<double, L>;
  V r = round_imm<imm>(x);
  if constexpr (!sat) {
    return cvtt_i32(r);
  } else {
    const Rows& c = rows(kRows);
    V t = as_float<V>(as_uint(r) & as_uint(r == r));
    return cvtt_i32(hw_min(hw_max(t, get<V>(c.min_i32)), get<V>(c.max_i32)));
  }
}
// Float source, sat: the conversion gives 0x80000000 for r >= 2^31, which the
// mask of (r >= 2^31) turns into 0x7FFFFFFF; NaN lanes are then cleared.
template <int imm, bool sat, int L> RAVL_INLINE Vec<int32_t, L> to_i32(Vec<float, L> x) {
  using F = Vec<float, L>;
  F r = round_imm<imm>(x);
  Vec<int32_t, L> v = cvtt_i32(r);
  if constexpr (!sat) {
    return v;
  } else {
    const Rows& c = rows(kRows);
    return (v ^ (r >= get<F>(c.f_two_31))) & (r == r);
  }
}

// ---- u32 ----------------------------------------------------------------------

// Double t integral in [0, 2^32): t - 2^31 is exact and in the int32 range;
// its conversion with the top bit flipped is t.
template <int L> RAVL_INLINE Vec<uint32_t, L> u32_in_range(Vec<double, L> t, const Rows& c) {
  using V = Vec<double, L>;
  return as_uint(cvtt_i32(t - get<V>(c.two_31))) ^ get<Vec<uint32_t, L>>(c.sign32);
}
// Float a, integral and nonnegative, or NaN. lo = conversion of a: a below
// 2^31, else 0x80000000. hi = conversion of a - 2^31: exact for 2^31 <= a <
// 2^32; below 2^31, a - 2^31 <= -128 rounds to a negative value in every
// mode; from 2^32 on and for NaN it is 0x80000000, negative too. So
// lo | max(hi, 0) is a for a < 2^32 and 0x80000000 above and for NaN.
template <int L> RAVL_INLINE Vec<uint32_t, L> u32_of(Vec<float, L> a, const Rows& c) {
  using F = Vec<float, L>;
  using I = Vec<int32_t, L>;
  I lo = cvtt_i32(a);
  I hi = cvtt_i32(a - get<F>(c.f_two_31));
  return as_uint(lo | select(hi > 0, hi, I(0)));
}

// nosat converts |r|: |r| >= 2^32, infinity and NaN give 0x80000000 (for
// double, |r| not below 2^32 is replaced by 2^31, which converts to it).
// sat converts r clamped below at 0 (the hardware max takes its second
// operand for NaN: 0); r >= 2^32 gives 0xFFFFFFFF, found by a signed integer
// compare of r's bits, which also takes +infinity and NaNs with a clear sign
// bit and leaves every lane with a set sign bit (these give 0).
template <int imm, bool sat, int L> RAVL_INLINE Vec<uint32_t, L> to_u32(Vec<double, L> x) {
  using V = Vec<double, L>;
  const Rows& c = rows(kRows);
  V r = round_imm<imm>(x);
  if constexpr (!sat) {
    V a = as_float<V>(as_uint(r) & get<Vec<uint64_t, L>>(c.abs64));
    return u32_in_range(select(~(a < get<V>(c.two_32)), get<V>(c.two_31), a), c);
  } else {
    Vec<int64_t, L> over = as_int(r) > get<Vec<int64_t, L>>(c.below_2p32);
    return u32_in_range(select(over, get<V>(c.max_u32), hw_max(r, V(0.0))), c);
  }
}
template <int imm, bool sat, int L> RAVL_INLINE Vec<uint32_t, L> to_u32(Vec<float, L> x) {
  using F = Vec<float, L>;
  const Rows& c = rows(kRows);
  F r = round_imm<imm>(x);
  if constexpr (!sat) {
    return u32_of(as_float<F>(as_uint(r) & get<Vec<uint32_t, L>>(c.abs32)), c);
  } else {
    Vec<int32_t, L> over = as_int(r) > get<Vec<int32_t, L>>(c.f_below_2p32);
    return u32_of(hw_max(r, F(0.0f)), c) | as_uint(over);
  }
}

// ---- i64 ----------------------------------------------------------------------
//
// nosat: r clamped to [-2^63, 2^63] (the hardware min takes its second
// operand, 2^63, for NaN); both ends give 0x8000000000000000.
// sat: r clamped below at -2^63 (NaN: -2^63 too); r >= 2^63 gives 2^63 - 1;
// NaN lanes are then cleared.
template <int imm, bool sat, int L> RAVL_INLINE Vec<int64_t, L> to_i64(Vec<double, L> x) {
  using V = Vec<double, L>;
  using I = Vec<int64_t, L>;
  const Rows& c = rows(kRows);
  V r = round_imm<imm>(x);
  if constexpr (!sat) {
    V t = hw_max(hw_min(r, get<V>(c.two_63)), get<V>(c.min_i64));
    return as_int(int64_words(t, c));
  } else {
    V t = hw_max(r, get<V>(c.min_i64));  // not NaN: "not below 2^63" is t >= 2^63
    I v = select(~(t < get<V>(c.two_63)), get<I>(c.max_i64), as_int(int64_words(t, c)));
    return v & (r == r);
  }
}

// ---- u64 ----------------------------------------------------------------------
//
// nosat: |r|; |r| not below 2^64 (infinity and NaN too) gives
// 0x8000000000000000.
// sat: r clamped below at 0 (NaN: 0); r >= 2^64 or +infinity gives 2^64 - 1
// (all bits or-ed in).
template <int imm, bool sat, int L> RAVL_INLINE Vec<uint64_t, L> to_u64(Vec<double, L> x) {
  using V = Vec<double, L>;
  using U = Vec<uint64_t, L>;
  const Rows& c = rows(kRows);
  V r = round_imm<imm>(x);
  if constexpr (!sat) {
    V a = as_float<V>(as_uint(r) & get<U>(c.abs64));
    return select(~(a < get<V>(c.two_64)), get<U>(c.min_i64_bits), int64_words(a, c));
  } else {
    V t = hw_max(r, V(0.0));  // not NaN: "not below 2^64" is t >= 2^64
    return int64_words(t, c) | as_uint(~(t < get<V>(c.two_64)));
  }
}

// Float sources of 64-bit targets: widened to double (exact), which rounds to
// the same integral value and meets the same bounds.
template <int imm, bool sat, int L> RAVL_INLINE Vec<int64_t, L> to_i64(Vec<float, L> x) {
  return to_i64<imm, sat>(convert<double>(x));
}
template <int imm, bool sat, int L> RAVL_INLINE Vec<uint64_t, L> to_u64(Vec<float, L> x) {
  return to_u64<imm, sat>(convert<double>(x));
}

// ---- the kernels ----------------------------------------------------------------

enum class Target { i32, u32, i64, u64 };
template <Target t> struct ResultLane;
template <> struct ResultLane<Target::i32> { using type = int32_t; };
template <> struct ResultLane<Target::u32> { using type = uint32_t; };
template <> struct ResultLane<Target::i64> { using type = int64_t; };
template <> struct ResultLane<Target::u64> { using type = uint64_t; };

// One family: target, saturation, source lane type T and rounding immediate.
template <Target t, bool sat, class T, int imm> struct Convert : frame::Kernel {
  using R = typename ResultLane<t>::type;
  using sig = R(T);
  template <int L> static RAVL_INLINE Vec<R, L> vec(Vec<T, L> x) {
    if constexpr (t == Target::i32) return to_i32<imm, sat>(x);
    else if constexpr (t == Target::u32) return to_u32<imm, sat>(x);
    else if constexpr (t == Target::i64) return to_i64<imm, sat>(x);
    else return to_u64<imm, sat>(x);
  }
};

}  // namespace fp_to_int
}  // namespace ravl

// The sixteen families of one target: `ravl::cvtfpto<tgt><rm><sat>[f]_k::full`.
#define RAVL_FP_TO_INT_MODE(tgt, rm, imm)                                                                        \
  namespace cvtfpto##tgt##rm##sat_k { using full = fp_to_int::Convert<fp_to_int::Target::tgt, true, double, imm>; }    \
  namespace cvtfpto##tgt##rm##satf_k { using full = fp_to_int::Convert<fp_to_int::Target::tgt, true, float, imm>; }    \
  namespace cvtfpto##tgt##rm##nosat_k { using full = fp_to_int::Convert<fp_to_int::Target::tgt, false, double, imm>; } \
  namespace cvtfpto##tgt##rm##nosatf_k { using full = fp_to_int::Convert<fp_to_int::Target::tgt, false, float, imm>; }
#define RAVL_FP_TO_INT_FAMILIES(tgt)               \
  namespace ravl {                                 \
  RAVL_FP_TO_INT_MODE(tgt, rte, fp_to_int::kRte)   \
  RAVL_FP_TO_INT_MODE(tgt, rtn, fp_to_int::kRtn)   \
  RAVL_FP_TO_INT_MODE(tgt, rtp, fp_to_int::kRtp)   \
  RAVL_FP_TO_INT_MODE(tgt, rtz, fp_to_int::kRtz)   \
  }
