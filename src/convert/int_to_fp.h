// Integer to floating conversions with an explicit rounding mode (OpenCL
// convert_float_rtn, convert_double_rtz, ...): the kernels of the cvti32tofp,
// cvtu32tofp, cvti64tofp and cvtu64tofp families, and the rounding-mode tag
// that the double to float narrowing (cvtfp64tofp32) uses too.
//
// Every result is the exact integer rounded once in the named mode:
// correctly rounded, 0 ULP. No 64-bit hardware conversion is used and only the
// exact 32-bit one (int32 to double); MXCSR is neither read nor written.
//
// Method. The integer magnitude m is cut into pieces that are exact in the
// target format; each piece becomes a float by the shifter trick (its bits
// or-ed into the mantissa of a power of two P, then P subtracted: exact). One
// hardware addition adds the pieces with a single rounding, in the caller's
// MXCSR mode. Whatever that mode, the sum t is one of the two neighbours of the
// exact value (a faithful rounding), so:
// - rte returns t as it is: nearest even in the library's default
//   environment; in a caller's directed mode, the magnitude rounded in that
//   mode (the sign is put back afterwards);
// - rtn, rtp and rtz compare t with the exact value (back = t - hi is exact,
//   so t was rounded up in magnitude when back > lo and down when back < lo)
//   and step t one unit in the last place on its bit pattern when it lies on
//   the wrong side. Stepping the bit pattern of a positive magnitude crosses
//   binade boundaries correctly, so the directed results do not depend on the
//   caller's rounding mode.
// The sign is or-ed back at the end. The magnitude's sign bit is cleared
// first: with the caller in round-down mode an exact zero difference such as
// 2^52 - 2^52 is -0, and the integer 0 must convert to +0.
#pragma once

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
// Float 2^69 (bits 0x62000000): mantissa unit 2^46.
constexpr float kF2p69 = 0x1p69f;
constexpr uint32_t kF2p69Bits = 0x62000000u;
// Float 2^47: from here on (in a 64-bit source) the sum of the two upper
// pieces may need more than 24 bits and the low piece only counts as a
// sticky bit.
constexpr float kF2p47 = 0x1p47f;
// Float 2^22: the sticky bit that stands for a nonzero low piece (below the
// 2^23 grid of every rounding boundary from 2^47 on).
constexpr float kF2p22 = 0x1p22f;
// Double 2^52 (bits 0x4330000000000000): mantissa unit 1.
constexpr double kD2p52 = 0x1p52;
constexpr uint64_t kD2p52Bits = 0x4330000000000000ull;
// Double 2^104 (bits 0x4670000000000000): mantissa unit 2^52.
constexpr double kD2p104 = 0x1p104;
constexpr uint64_t kD2p104Bits = 0x4670000000000000ull;

constexpr uint32_t kLow23 = 0x007FFFFFu;
constexpr uint64_t kLow52 = 0x000FFFFFFFFFFFFFull;
constexpr uint32_t kSign32 = 0x80000000u;
constexpr uint64_t kSign64 = 0x8000000000000000ull;

// ---- the directed step ----------------------------------------------------------

// The bit pattern `mag` of a nonnegative float or double (the magnitude of
// the result), rounded faithfully; `up` and `down` (-1 or 0 per lane) say
// whether it lies above or below the exact magnitude; `neg` (-1 or 0) whether
// the final result is negative. Returns the magnitude in mode rm: one unit
// toward zero when the mode rounds this sign's magnitudes down and mag was
// rounded up, one unit away from zero when the mode rounds them up and mag was
// rounded down.
template <Rm rm, bool is_signed, class I>
RAVL_INLINE I directed(I mag, I up, I down, I neg) {
  if constexpr (rm == Rm::rte) {
    return mag;
  } else if constexpr (rm == Rm::rtz) {
    return mag + up;
  } else if constexpr (!is_signed) {
    // A nonnegative result: rtn rounds its magnitude down, rtp up.
    return rm == Rm::rtn ? mag + up : mag - down;
  } else if constexpr (rm == Rm::rtn) {
    return mag + (up & ~neg) - (down & neg);
  } else {
    return mag + (up & neg) - (down & ~neg);
  }
}

// ---- lane helpers -----------------------------------------------------------------

template <class T, int L, int... I>
RAVL_INLINE Vec<T, L> odd_lanes_impl(Vec<T, 2 * L> v, Ints<I...>) {
  return __builtin_shufflevector(v, v, (2 * I + 1)...);
}
// Lanes 1, 3, 5, ... of v: the upper 32-bit halves of 64-bit lanes.
template <class T, int L2>
RAVL_INLINE Vec<T, L2 / 2> odd_lanes(Vec<T, L2> v) {
  return odd_lanes_impl<T, L2 / 2>(v, typename MakeInts<L2 / 2>::type{});
}

// Magnitude of a two's-complement lane and its sign mask (-1 when negative).
// The most negative value keeps its bits, which read unsigned are its
// magnitude 2^31 or 2^63.
template <class S, int L>
RAVL_INLINE Vec<typename Bits<S>::U, L> magnitude(Vec<S, L> x, Vec<S, L> neg) {
  return bitcast<Vec<typename Bits<S>::U, L>>((x ^ neg) - neg);
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

// ---- 32-bit magnitude to float -------------------------------------------------------

// m < 2^32 as lo = m mod 2^23 and hi = m - lo = (m >> 23) * 2^23, both exact
// floats; t = lo + hi rounds once. back = t - hi is exact (t and hi are
// multiples of ulp(t) and differ by less than 2^24 ulp(t)).
template <Rm rm, bool is_signed, int L>
RAVL_INLINE Vec<uint32_t, L> mag32_to_float_bits(Vec<uint32_t, L> m, Vec<int32_t, L> neg) {
  using F = Vec<float, L>;
  using U = Vec<uint32_t, L>;
  F lo = as_float<F>((m & kLow23) | kF2p23Bits) - kF2p23;
  F hi = as_float<F>((m >> 23) | kF2p46Bits) - kF2p46;
  F t = lo + hi;
  U mag = as_uint(t);
  if constexpr (rm != Rm::rte) {
    F back = t - hi;
    mag = bitcast<U>(directed<rm, is_signed>(bitcast<Vec<int32_t, L>>(mag), back > lo, back < lo, neg));
  }
  return mag & ~kSign32;
}

template <Rm rm, int L> RAVL_INLINE Vec<float, L> to_float(Vec<uint32_t, L> x) {
  return as_float<Vec<float, L>>(mag32_to_float_bits<rm, false>(x, Vec<int32_t, L>(0)));
}
template <Rm rm, int L> RAVL_INLINE Vec<float, L> to_float(Vec<int32_t, L> x) {
  Vec<int32_t, L> neg = x >> 31;
  Vec<uint32_t, L> mag = mag32_to_float_bits<rm, true>(magnitude(x, neg), neg);
  return as_float<Vec<float, L>>(mag | (bitcast<Vec<uint32_t, L>>(x) & kSign32));
}

// ---- 64-bit magnitude to double -------------------------------------------------------

// lo = m mod 2^52 and hi = (m >> 52) * 2^52, both exact; t = lo + hi rounds
// once; back = t - hi is exact (as for 32 bits, with 53-bit doubles).
template <Rm rm, bool is_signed, int L>
RAVL_INLINE Vec<uint64_t, L> mag64_to_double_bits(Vec<uint64_t, L> m, Vec<int64_t, L> neg) {
  using D = Vec<double, L>;
  using U = Vec<uint64_t, L>;
  D lo = as_float<D>((m & kLow52) | kD2p52Bits) - kD2p52;
  D hi = as_float<D>((m >> 52) | kD2p104Bits) - kD2p104;
  D t = lo + hi;
  U mag = as_uint(t);
  if constexpr (rm != Rm::rte) {
    D back = t - hi;
    mag = bitcast<U>(directed<rm, is_signed>(bitcast<Vec<int64_t, L>>(mag), back > lo, back < lo, neg));
  }
  return mag & ~kSign64;
}

template <Rm rm, int L> RAVL_INLINE Vec<double, L> to_double(Vec<uint64_t, L> x) {
  return as_float<Vec<double, L>>(mag64_to_double_bits<rm, false>(x, Vec<int64_t, L>(0)));
}
template <Rm rm, int L> RAVL_INLINE Vec<double, L> to_double(Vec<int64_t, L> x) {
  Vec<int64_t, L> neg = x < 0;
  Vec<uint64_t, L> mag = mag64_to_double_bits<rm, true>(magnitude(x, neg), neg);
  return as_float<Vec<double, L>>(mag | (bitcast<Vec<uint64_t, L>>(x) & kSign64));
}

// ---- 64-bit magnitude to float ------------------------------------------------------------

// The float arithmetic runs in the upper 32-bit half of each 64-bit lane (the
// odd float lanes of the same register), so the pieces need no packing and
// the source's sign bit is already the float sign bit there; the even lanes
// compute harmless values that are dropped at the end.
//
// Pieces, all exact floats: C = m mod 2^23, B = bits 23-45 of m times 2^23,
// A = bits 46-63 times 2^46 (18 bits).
// - s = A + B rounded; err = B - (s - A) is its exact error: s - A and err are
//   multiples of 2^23 below 2^47 in magnitude, so both are exact floats.
// - Below 2^47, A + B has at most 24 bits: s = A + B, err = 0, and s + C is
//   the exact value.
// - From 2^47 on, A + B is a multiple of 2^23 and so is every rounding
//   boundary (floats there have ulp >= 2^24, midpoints lie on the 2^23 grid);
//   C < 2^23 only decides whether the exact value lies strictly inside the
//   grid interval above A + B. C is replaced by the sticky value 2^22 when
//   nonzero: z = err + 2^22 is exact (err < 2^40 on the 2^23 grid) and s + z
//   lies in the same open interval as the exact value, so the final rounding
//   of s + z is that of the exact value, and so is its comparison with any
//   float.
// - r = s + z is the single rounding. back = r - s is exact (Sterbenz, or
//   s = 0), and back versus z says how r lies to the exact value.
template <Rm rm, bool is_signed, int L>
RAVL_INLINE Vec<uint32_t, 2 * L> mag64_to_float_bits(Vec<uint64_t, L> m, Vec<int32_t, 2 * L> neg) {
  using F = Vec<float, 2 * L>;
  using U = Vec<uint32_t, 2 * L>;
  using I = Vec<int32_t, 2 * L>;
  constexpr uint64_t kHigh23 = (uint64_t)kLow23 << 32;
  F c = as_float<F>(bitcast<U>((m << 41) >> 9) | kF2p23Bits) - kF2p23;
  F b = as_float<F>(bitcast<U>((m << 9) & kHigh23) | kF2p46Bits) - kF2p46;
  F a = as_float<F>(bitcast<U>((m >> 46) << 32) | kF2p69Bits) - kF2p69;
  F s = a + b;
  F err = b - (s - a);
  F sticky = as_float<F>(bitcast<U>(c != 0.0f) & bits_of(kF2p22));
  F z = err + select(s >= kF2p47, sticky, c);
  F r = s + z;
  U mag = as_uint(r);
  if constexpr (rm != Rm::rte) {
    F back = r - s;
    mag = bitcast<U>(directed<rm, is_signed>(bitcast<I>(mag), back > z, back < z, neg));
  }
  return mag & ~kSign32;
}

template <Rm rm, int L> RAVL_INLINE Vec<float, L> to_float(Vec<uint64_t, L> x) {
  Vec<uint32_t, 2 * L> mag = mag64_to_float_bits<rm, false>(x, Vec<int32_t, 2 * L>(0));
  return odd_lanes(as_float<Vec<float, 2 * L>>(mag));
}
template <Rm rm, int L> RAVL_INLINE Vec<float, L> to_float(Vec<int64_t, L> x) {
  Vec<int64_t, L> neg = x < 0;
  Vec<uint32_t, 2 * L> mag = mag64_to_float_bits<rm, true>(magnitude(x, neg), bitcast<Vec<int32_t, 2 * L>>(neg));
  mag |= bitcast<Vec<uint32_t, 2 * L>>(bitcast<Vec<uint64_t, L>>(x) & kSign64);
  return odd_lanes(as_float<Vec<float, 2 * L>>(mag));
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
