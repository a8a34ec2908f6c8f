// hypot(x, y) = sqrt(x^2 + y^2) on double lanes (family hypot) and on single
// lanes (family hypotf), with no overflow or underflow in the intermediate
// results.
//
// Special values, the same in every class (the scalar routine of the
// precision): an infinite operand gives +inf even when the other is NaN;
// otherwise a NaN operand gives NaN; a result beyond the format's range
// gives +inf (status overflow). hypot(x, +-0) = |x| exactly.
//
// Classes and measured max errors (against MPFR, 6e6 to 10^7 random pairs:
// bit patterns over the whole range and pairs of nearby magnitudes):
//   hypot   plain     scaled by a power of two chosen from the larger
//                     exponent, sqrt(fma(b, b, s * s)) corrected by one
//                     Newton step on the exact residual, scaled back:
//                     0.5001 ulp, 0.7500 on denormal results
//   hypot   _native   unscaled sqrt(fma(x, x, y * y)) where the result is in
//                     [2^-500, 2^500]; other lanes through the scalar
//                     routine: 1.175 ulp
//   hypotf  plain     in double: x^2 and y^2 are exact, one rounding in the
//                     sum, one in the root, one to single: 0.5000 ulp
//   hypotf  _native   in single, unscaled, where the result is in
//                     [2^-60, 2^60]; other lanes through the scalar
//                     routine: 1.166 ulp
#include "pow_root/roots.h"

namespace ravl {
namespace hypot_detail {

using roots::pow2d;

// ---- double, full class -----------------------------------------------------------
//
// With b = max(|x|, |y|) and s = min(|x|, |y|) (operands ordered so that a
// NaN operand always reaches b or s), E the exponent of b, at least -1021,
// and k = 2^(1 - E): b k in [2, 4) (or below 2 for b below 2^-1021),
// s k <= b k, so (b k)^2 + (s k)^2 cannot overflow and only a term below
// 2^-1022 times (b k)^2 can underflow. h0 = sqrt(fma(bk, bk, sk * sk)) carries
// the roundings of (sk)^2 and of the sum (up to 1.5 * 2^-53 relative, halved
// by the root) besides its own, up to about 1 ulp; h0 - rho / (2 h0) with
// rho = h0^2 - (bk)^2 - (sk)^2 formed to about 2^-104 relative leaves little
// more than the last rounding. Scaling back by 2^(E - 1) is exact unless the
// result is denormal (rounded to 53 bits, then to the denormal grid) or
// overflows. Max error 0.5001 ulp on normal results, 0.75 ulp on denormal
// ones (10^7 pairs against MPFR).
struct HypotFullRows {
  // With bits(2^E) = e: 0x7ff0000000000000 - e is bits(2^(1 - E)) and
  // e - 0x0010000000000000 is bits(2^(E - 1)), both normal for E in
  // [-1021, 1023].
  Row<uint64_t> abs = row<uint64_t>(0x7fffffffffffffffull), exp = row<uint64_t>(0x7ff0000000000000ull),
                exp_lsb = row<uint64_t>(0x0010000000000000ull);
  Row<double> lo = row(pow2d(-1021)), top = row(pow2d(1023));
  Row<double> four = row(4.0), tiny = row(pow2d(-120));
};
inline constexpr HypotFullRows kHypotFullRows{};

template <class Full, class T> RAVL_INLINE int hypot_scalar(const T* xp, const T* yp, T* rp);

struct HypotFull : frame::Kernel {
  using sig = double(double, double);
  static constexpr bool has_callout = true;
  template <int L> static RAVL_INLINE Vec<double, L> vec(Vec<double, L> x, Vec<double, L> y) {
    using V = Vec<double, L>;
    using U = Vec<uint64_t, L>;
    const HypotFullRows& c = rows(kHypotFullRows);
    const V ax = as_float<V>(as_uint(x) & get<U>(c.abs)), ay = as_float<V>(as_uint(y) & get<U>(c.abs));
    const V big = hw_max(ax, ay);    // ay when either is NaN
    const V small = hw_min(ay, ax);  // ax when either is NaN
    const U e = as_uint(hw_max(big, get<V>(c.lo))) & get<U>(c.exp);
    const V k = as_float<V>(get<U>(c.exp) - e);  // 2^(1 - E)
    const V b = big * k, s = small * k;
    const V s2 = s * s, r = fma(b, b, s2), h0 = sqrt_hw(r);
    // The radicand's rounding error r_err = b^2 + s^2 - r, while the root is
    // under way: b^2 - bb and s^2 - s2 exactly by fused multiply-subtracts,
    // bb - r exactly (r is within a factor 2 of bb), and the sums of these
    // small terms rounded at their own size (about 2^-105 r).
    const V bb = b * b;
    const V r_err = (((bb - r) + s2) + fms(b, b, bb)) + fms(s, s, s2);
    // rho = h0^2 - (b^2 + s^2): h0^2 - r is exact (h0 is r's rounded root).
    const V rho = fms(h0, h0, r) - r_err;
    // h0 - rho / (2 h0), with 1/(2 h0) from the single estimate of 1/sqrt(4 r)
    // (relative error 2^-11 on a correction below an ulp); 4 r is kept above
    // 2^-120 so that zeros give 0 * finite.
    const V g = rsqrt_approx(hw_max(r * get<V>(c.four), get<V>(c.tiny)));
    return fnma(rho, g, h0) * as_float<V>(e - get<U>(c.exp_lsb));  // 2^(E - 1)
  }
  // |x| + |y| above 2^1023 or NaN: NaN or infinite operands, and every
  // result that can overflow (it needs max(|x|, |y|) > DBL_MAX / sqrt(2)).
  template <int L> static RAVL_INLINE Mask<double, L> special(Vec<double, L> x, Vec<double, L> y, Vec<double, L>) {
    using V = Vec<double, L>;
    using U = Vec<uint64_t, L>;
    const HypotFullRows& c = kHypotFullRows;
    const V sum = as_float<V>(as_uint(x) & get<U>(c.abs)) + as_float<V>(as_uint(y) & get<U>(c.abs));
    return not_le(sum, get<V>(c.top));
  }
  static RAVL_INLINE int scalar(const double* x, const double* y, double* r) {
    return hypot_scalar<HypotFull>(x, y, r);
  }
};

// ---- double, fast class (_native) ------------------------------------------------
//
// sqrt(fma(x, x, y * y)) unscaled. A result h in [2^-500, 2^500] means that
// no square overflowed and the larger one is at least 2^-1002 (normal),
// so a smaller square that underflowed changed the sum by under 2^-1074,
// 2^-72 of it. Lanes with h outside (NaN included) go to the scalar routine:
// bits(h) + (2^63 - bits(2^-500)) above bits(2^500) + (2^63 - bits(2^-500)),
// as signed integers, is h outside [2^-500, 2^500] for any bit pattern.
template <class T, typename Bits<T>::U kLo, typename Bits<T>::U kHi> struct RangeRows {
  using U = typename Bits<T>::U;
  static constexpr U kOffset = ((U)1 << (sizeof(U) * 8 - 1)) - kLo;
  Row<U> offset = row<U>(kOffset), top = row<U>((U)(kHi + kOffset));
};
template <class V, class R> RAVL_INLINE MaskOf<V> outside(V h, const R& c) {
  using I = SIntOf<V>;
  return as_int(h) + get<I>(c.offset) > get<I>(c.top);
}
using HypotFastRows = RangeRows<double, 0x20b0000000000000ull, 0x5f30000000000000ull>;  // 2^-500, 2^500
inline constexpr HypotFastRows kHypotFastRows{};

// The fast kernel of either precision: the bare formula, lanes with a
// result outside kRange through the full class's scalar routine.
template <class T, class Full, const auto& kRange> struct HypotFastKernel : Full {
  template <int L> static RAVL_INLINE Vec<T, L> vec(Vec<T, L> x, Vec<T, L> y) { return sqrt_hw(fma(x, x, y * y)); }
  template <int L> static RAVL_INLINE Mask<T, L> special(Vec<T, L>, Vec<T, L>, Vec<T, L> r) {
    return outside(r, kRange);
  }
};

// The scalar routine of either precision: infinite operands give +inf, NaN
// operands (with no infinite one) NaN; finite ones the full class's
// arithmetic (+inf with status overflow when the result is beyond the range).
template <class Full, class T> RAVL_INLINE int hypot_scalar(const T* xp, const T* yp, T* rp) {
  const T x = *xp, y = *yp, inf = (T)f64_bits(0x7ff0000000000000ull);
  if (x == inf || x == -inf || y == inf || y == -inf) {
    *rp = inf;
    return kStatusOk;
  }
  if (x != x || y != y) {
    *rp = x + y;
    return kStatusOk;
  }
  constexpr int L = 16 / (int)sizeof(T);
  *rp = Full::template vec<L>(Vec<T, L>(x), Vec<T, L>(y))[0];
  return *rp == inf ? kStatusOverflow : kStatusOk;
}

using HypotFast = HypotFastKernel<double, HypotFull, kHypotFastRows>;

// ---- single, full class --------------------------------------------------------------
//
// In double: x^2 and y^2 are exact (48 bits), the sum rounds once (2^-53
// relative), the root once, and the result once more to single; no square
// can overflow or underflow.
struct HypotfFullRows {
  Row<float> max = row(f32_bits(0x7f7fffffu));
};
inline constexpr HypotfFullRows kHypotfFullRows{};

// sqrt(x^2 + y^2) of up to four singles, in double.
template <int N> RAVL_INLINE Vec<float, N> hypot_in_double(Vec<float, N> x, Vec<float, N> y) {
  const Vec<double, N> xd = convert<double>(x), yd = convert<double>(y);
  return convert<float>(sqrt_hw(fma(xd, xd, yd * yd)));
}

struct HypotfFull : frame::Kernel {
  using sig = float(float, float);
  static constexpr bool has_callout = true;
  template <int L> static RAVL_INLINE Vec<float, L> vec(Vec<float, L> x, Vec<float, L> y) {
    if constexpr (L <= 4) {
      return hypot_in_double(x, y);
    } else {
      return join(hypot_in_double(slice<0, L / 2>(x), slice<0, L / 2>(y)),
                  hypot_in_double(slice<L / 2, L / 2>(x), slice<L / 2, L / 2>(y)));
    }
  }
  template <int L> static RAVL_INLINE Mask<float, L> special(Vec<float, L>, Vec<float, L>, Vec<float, L> r) {
    return not_le(r, get<Vec<float, L>>(kHypotfFullRows.max));
  }
  static RAVL_INLINE int scalar(const float* x, const float* y, float* r) { return hypot_scalar<HypotfFull>(x, y, r); }
};

// ---- single, fast class (_native) ------------------------------------------------
//
// sqrt(fma(x, x, y * y)) in single, unscaled, for results in [2^-60, 2^60]
// (the argument of the double fast class with the single's range).
using HypotfFastRows = RangeRows<float, 0x21800000u, 0x5d800000u>;  // 2^-60, 2^60
inline constexpr HypotfFastRows kHypotfFastRows{};

using HypotfFast = HypotFastKernel<float, HypotfFull, kHypotfFastRows>;

}  // namespace hypot_detail

namespace hypot_k {
using full = hypot_detail::HypotFull;
using fast = hypot_detail::HypotFast;
}  // namespace hypot_k
namespace hypotf_k {
using full = hypot_detail::HypotfFull;
using fast = hypot_detail::HypotfFast;
}  // namespace hypotf_k

}  // namespace ravl

#include "entries/hypot.inc"
#include "entries/hypotf.inc"
