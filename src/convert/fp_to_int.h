// Floating to integer conversions: OpenCL convert_{int,uint,long,ulong}[_sat]_{rte,rtn,rtp,rtz}
// on double and float lanes. Exact for every input (a conversion has no rounding
// error beyond the chosen integral rounding); no special lanes, no callout.
//
// Every body first rounds the source to an integral floating value r with the
// round-to-integral instruction, its rounding given by the immediate (0 to
// nearest even, 1 down, 2 up, 3 toward zero) and never by MXCSR; the four
// rounding members of a body differ in that immediate only. The rest is
// branch-free mask arithmetic on r. No scalar conversion instruction is used:
// 32-bit results come from the packed truncating conversion (exact on integral
// r), 64-bit results are assembled from r's bit fields, since the instruction
// set has no packed conversion between floating and 64-bit integer lanes.
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
// there). The u32 sat NaN result follows the sign bit because that body tests
// only the sign and the exponent word of r, with no separate NaN compare.
#pragma once

#include "frame/entry.h"

namespace ravl {
namespace fp_to_int {

// Round-to-integral immediates (inexact not suppressed).
constexpr int kRte = 0, kRtn = 1, kRtp = 2, kRtz = 3;

constexpr int64_t kI64Min = (int64_t)0x8000000000000000ull;  // also the nosat out-of-range pattern
constexpr int64_t kI64Max = 0x7FFFFFFFFFFFFFFF;
constexpr uint64_t kMant52 = 0x000FFFFFFFFFFFFFull;          // double significand field
constexpr uint64_t kHidden52 = 0x0010000000000000ull;        // double hidden bit
constexpr uint32_t kMant23 = 0x007FFFFF, kHidden23 = 0x00800000;

// The upper 32 bits of each double lane (sign, exponent, top of significand).
template <int L> RAVL_INLINE Vec<int32_t, L> high_word(Vec<double, L> r) { return convert<int32_t>(as_int(r) >> 32); }
// A 32-bit lane mask widened to the 64-bit lanes of the same index.
template <int L> RAVL_INLINE Vec<int64_t, L> widen(Vec<int32_t, L> m) { return convert<int64_t>(m); }

// ---- 64-bit magnitude of an integral value --------------------------------
//
// For integral a with 0 <= a < 2^64 the integer a. Below 2^52 (2^23 for float)
// a + 2^52 is exact (a is integral, so independent of the caller's rounding
// mode) and has the bits of 2^52 with a in its significand field: removing the
// bits of 2^52 leaves a. The same constant is the path's bound. From 2^52 on,
// the significand with its hidden bit is shifted left by exponent - 52 (the
// per-lane variable shift gives 0 for a count that is negative, read as
// unsigned, or 64 and over). For a negative integral lane the small path is
// taken and its result is garbage: the callers replace it.
template <int L> RAVL_INLINE Vec<uint64_t, L> magnitude(Vec<double, L> a) {
  using U = Vec<uint64_t, L>;
  U ua = as_uint(a);
  U s = as_uint(a + 0x1p52) ^ bits_of(0x1p52);
  U m = (ua & kMant52) ^ kHidden52;
  U b = shl_var(m, (ua >> 52) - U(1075));  // 1075 = bias 1023 + 52
  return select(as_int(a) < (int64_t)bits_of(0x1p52), s, b);  // a < 2^52
}
// The same on 32-bit fields, the result widened to 64-bit lanes.
template <int L> RAVL_INLINE Vec<uint64_t, L> magnitude(Vec<float, L> a) {
  using U32 = Vec<uint32_t, L>;
  U32 ua = as_uint(a);
  U32 s = as_uint(a + 0x1p23f) ^ bits_of(0x1p23f);
  U32 m = (ua & kMant23) | kHidden23;
  U32 count = (ua >> 23) - U32(150);  // 150 = bias 127 + 23
  Vec<uint64_t, L> b = shl_var(convert<uint64_t>(m), convert<uint64_t>(count));
  return select(widen(a < 0x1p23f), convert<uint64_t>(s), b);
}

// ---- i32 ----------------------------------------------------------------------

// c = packed truncating conversion of r: exact, 0x80000000 for NaN and |r| >= 2^31.
// sat: |r| >= 2^31 (exponent word test, 0x41E00000 is the word of 2^31) clamps by
// the sign of r; NaN gives 0.
template <int imm, bool sat, int L> RAVL_INLINE Vec<int32_t, L> to_i32(Vec<double, L> x) {
  Vec<double, L> r = round_imm<imm>(x);
  Vec<int32_t, L> c = cvtt_i32(r);
  if constexpr (!sat) {
    return c;
  } else {
    Vec<int32_t, L> h = high_word(r);
    Vec<int32_t, L> clamp = (h >> 31) ^ 0x7FFFFFFF;  // 0x80000000 when negative, else 0x7FFFFFFF
    Vec<int32_t, L> v = select((h & 0x7FFFFFFF) < 0x41E00000, c, clamp);
    return v & convert<int32_t>(r == r);
  }
}
// Float source: the same on the float's own bits (0x4F000000 is 2^31).
template <int imm, bool sat, int L> RAVL_INLINE Vec<int32_t, L> to_i32(Vec<float, L> x) {
  Vec<float, L> r = round_imm<imm>(x);
  Vec<int32_t, L> c = cvtt_i32(r);
  if constexpr (!sat) {
    return c;
  } else {
    Vec<int32_t, L> b = as_int(r);
    Vec<int32_t, L> v = select((b & 0x7FFFFFFF) < 0x4F000000, c, (b >> 31) ^ 0x7FFFFFFF);
    return v & (x == x);
  }
}

// ---- u32 ----------------------------------------------------------------------
//
// Two paths: for 2^31 <= r < 2^32 (exponent field 0x41E, or 0x9E for float) the
// integer is the significand with its hidden bit, aligned to the top of 32 bits;
// otherwise the packed conversion (0x80000000 for r >= 2^32, infinity, NaN and,
// with the sign kept, r <= -2^31).

template <int L> RAVL_INLINE Vec<uint32_t, L> u32_of(Vec<double, L> r) {
  Vec<uint32_t, L> top = convert<uint32_t>(((as_uint(r) << 11) | 0x8000000000000000ull) >> 32);
  Vec<uint32_t, L> h = as_uint(high_word(r));
  return select((h >> 20) == 0x41Eu, top, as_uint(cvtt_i32(r)));
}
template <int L> RAVL_INLINE Vec<uint32_t, L> u32_of(Vec<float, L> r) {
  Vec<uint32_t, L> b = as_uint(r);
  return select((b >> 23) == 0x9Eu, (b << 8) | 0x80000000u, as_uint(cvtt_i32(r)));
}

// nosat converts |r|. sat converts r itself, then r >= 2^32 (exponent word
// 0x41F00000 and up: +infinity and NaNs with a clear sign bit too) gives
// 0xFFFFFFFF and a set sign bit gives 0.
template <int imm, bool sat, int L> RAVL_INLINE Vec<uint32_t, L> to_u32(Vec<double, L> x) {
  Vec<double, L> r = round_imm<imm>(x);
  if constexpr (!sat) {
    return u32_of(abs(r));
  } else {
    Vec<int32_t, L> h = high_word(r);
    Vec<uint32_t, L> v = select(h >= 0x41F00000, Vec<uint32_t, L>(0xFFFFFFFFu), u32_of(r));
    return v & ~as_uint(h >> 31);
  }
}
// Float source: "r below 2^32" is an ordered compare, so every NaN first
// becomes 0xFFFFFFFF, then its sign bit decides as for double.
template <int imm, bool sat, int L> RAVL_INLINE Vec<uint32_t, L> to_u32(Vec<float, L> x) {
  Vec<float, L> r = round_imm<imm>(x);
  if constexpr (!sat) {
    return u32_of(abs(r));
  } else {
    Vec<uint32_t, L> v = select(~(r < 0x1p32f), Vec<uint32_t, L>(0xFFFFFFFFu), u32_of(r));
    return v & ~as_uint(as_int(r) >> 31);
  }
}

// ---- i64 ----------------------------------------------------------------------
//
// The magnitude of |r|, negated when r < 0 (ordered: false for NaN). Out of
// range is |r| >= 2^63, infinity or NaN (exponent word 0x43E00000 and up,
// float bits 0x5F000000): nosat 2^63; sat 2^63 when negative, else 2^63 - 1,
// and NaN gives 0.
template <int imm, bool sat, int L> RAVL_INLINE Vec<int64_t, L> to_i64(Vec<double, L> x) {
  using I = Vec<int64_t, L>;
  Vec<double, L> r = round_imm<imm>(x);
  I neg = r < 0.0;
  Vec<double, L> a = abs(r);
  I v = (as_int(magnitude(a)) ^ neg) - neg;
  I out = as_int(a) >= (int64_t)0x43E0000000000000;
  if constexpr (!sat) {
    return select(out, I(kI64Min), v);
  } else {
    // NaN: the bits of a above those of infinity. An integer compare: the
    // floating self-compare would keep a zero register live to the end and
    // push the 4-lane body past the eight registers it may use freely.
    return select(out, neg ^ kI64Max, v) & ~(as_int(a) > (int64_t)0x7FF0000000000000);
  }
}
template <int imm, bool sat, int L> RAVL_INLINE Vec<int64_t, L> to_i64(Vec<float, L> x) {
  using I = Vec<int64_t, L>;
  Vec<float, L> r = round_imm<imm>(x);
  I neg = widen(r < 0.0f);
  Vec<float, L> a = abs(r);
  I v = (as_int(magnitude(a)) ^ neg) - neg;
  I out = widen(~(a < 0x1p63f));
  if constexpr (!sat) {
    return select(out, I(kI64Min), v);
  } else {
    return select(out, neg ^ kI64Max, v) & widen(a == a);
  }
}

// ---- u64 ----------------------------------------------------------------------
//
// nosat: the magnitude of |r|; |r| >= 2^64, infinity or NaN (exponent word
// 0x43F00000 and up, float bits 0x5F800000) gives 2^63.
// sat: the magnitude computed on r with its sign (a set sign bit leaves the
// shift count at 64 or more and takes the small path, both replaced below);
// r >= 2^64 or +infinity gives 2^64 - 1; a set sign bit or NaN gives 0.
template <int imm, bool sat, int L> RAVL_INLINE Vec<uint64_t, L> to_u64(Vec<double, L> x) {
  using U = Vec<uint64_t, L>;
  Vec<double, L> r = round_imm<imm>(x);
  if constexpr (!sat) {
    Vec<double, L> a = abs(r);
    return select(as_int(a) >= (int64_t)0x43F0000000000000, U(0x8000000000000000ull), magnitude(a));
  } else {
    Vec<int64_t, L> b = as_int(r);
    U v = select(b >= (int64_t)0x43F0000000000000, U(~0ull), magnitude(r));
    return v & as_uint((b >= (int64_t)0) & (x == x));
  }
}
template <int imm, bool sat, int L> RAVL_INLINE Vec<uint64_t, L> to_u64(Vec<float, L> x) {
  using U = Vec<uint64_t, L>;
  Vec<float, L> r = round_imm<imm>(x);
  if constexpr (!sat) {
    Vec<float, L> a = abs(r);
    return select(widen(~(a < 0x1p64f)), U(0x8000000000000000ull), magnitude(a));
  } else {
    Vec<int32_t, L> b = as_int(r);
    U v = select(widen(b >= 0x5F800000), U(~0ull), magnitude(r));
    return v & ~as_uint(widen((b < 0) | (x != x)));
  }
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
