// 1/sqrt(x) on double lanes (family rsqrt) and on single lanes (family rsqrtf).
//
// Every member starts from the hardware reciprocal-square-root estimate
// (single precision, relative error at most 1.5 * 2^-12) and refines it; the
// lanes outside the vector path's range go to the scalar routine of the
// precision, which every class shares:
//   NaN -> NaN, +inf -> +0, -inf and x < 0 -> NaN (status domain),
//   +-0 -> +-inf (status pole), positive numbers -> 1/sqrt(x).
//
// Classes and measured max errors (against MPFR; tests/accuracy_test.cpp
// keeps and asserts the bounds):
//   rsqrt   plain               estimate, series of degree 3 in d   0.5290 ulp
//   rsqrt   _native _half       estimate, series of degree 2        2.763e5 ulp
//   rsqrtf  plain               9-bit estimate, series of degree 3  0.5095 ulp
//   rsqrtf  _native _half       estimate, one Newton step           3.783 ulp
// (rsqrt: 7e6 doubles over every binade and both range ends; rsqrtf: every
// positive single.)
#include "pow_root/roots.h"

namespace ravl {
namespace rsqrt_detail {

using roots::pow2d;

// ---- double -------------------------------------------------------------------
//
// x = M 2^(2k) with M in [1, 4): the parity of x's exponent decides whether
// M is the significand (odd biased exponent) or twice it (even). M is built
// as a single from the top 23 fraction bits and the exponent's lowest bit,
// its estimate y0 taken and widened exactly to a double, and
// y = y0 * 2^-k approximates 1/sqrt(x) within 1.5 * 2^-12 (relative).
// d = 1 - x y^2 (y^2 is exact: y0 has 24 bits) is then within about
// 2^-10.4, and 1/sqrt(x) = y (1 - d)^(-1/2) = y (1 + d/2 + 3/8 d^2 + ...).

// The rows of the start, shared by both classes.
struct RsqrtStartRows {
  // The exponent's lowest bit (0x0010000000000000) and the bits below the
  // exponent's second bit (0x001fffffffffffff).
  Row<uint64_t> exp_lsb = row<uint64_t>(0x0010000000000000ull), mant_lsb = row<uint64_t>(0x001fffffffffffffull);
  // 0x07f0000000000000 >> 29 is 0x3f800000, 1.0f: with the parity bit p
  // added (0x0800000000000000 >> 29 = 2.0f) the exponent of M.
  Row<uint64_t> one_f = row<uint64_t>(0x07f0000000000000ull);
  // A single's bits f, positive normal, as a double: (f << 29) + (1023 - 127) << 52.
  Row<uint64_t> f_to_d = row<uint64_t>(0x3800000000000000ull);
  // bits(-0.25) = 0xbfd0000000000000 and the exponent field 0x7ff0000000000000:
  // ((p + bits(-0.25)) - (x & exp)) >> 1 is the bit pattern of 2^-k.
  Row<uint64_t> neg_quarter = row<uint64_t>(0xbfd0000000000000ull), exp = row<uint64_t>(0x7ff0000000000000ull);
  Row<double> one = row(1.0);
};

// y ~ 1/sqrt(x) within 1.5 * 2^-12 and d = 1 - x y^2, for x in the range of
// the lane test (2^-1020 <= x < 2^1022 at the widest).
template <int L, class R> RAVL_INLINE void rsqrt_start(Vec<double, L> x, const R& c, Vec<double, L>& y,
                                                       Vec<double, L>& d) {
  using V = Vec<double, L>;
  using U = Vec<uint64_t, L>;
  using F = Vec<float, 2 * L>;
  const U xb = as_uint(x);
  const U p = ~xb & get<U>(c.exp_lsb);  // 2^52 when the biased exponent is even
  // M's single bit pattern in the low word of each lane (the high word is 0,
  // whose estimate +inf is shifted out below).
  const U m = ((xb & get<U>(c.mant_lsb)) >> 29) | ((p + get<U>(c.one_f)) >> 29);
  const U e = bitcast<U>(rsqrt_approx(bitcast<F>(m)));
  const V y0 = as_float<V>((e << 29) + get<U>(c.f_to_d));
  const V s = as_float<V>(((p + get<U>(c.neg_quarter)) - (xb & get<U>(c.exp))) >> 1);
  y = y0 * s;
  d = fnma(x, y * y, get<V>(c.one));
}

// The vector path's lane test: x below the range's bottom B (negative
// numbers included), at or above 2^1022, infinite or NaN, as one signed
// compare: bits(x) + (2^63 - bits(B)) maps [B, 2^1022) onto
// [INT64_MIN, top].
template <uint64_t kOffset, uint64_t kTop> struct RsqrtRangeRows {
  Row<uint64_t> offset = row<uint64_t>(kOffset), top = row<uint64_t>(kTop);
};
template <int L, class R> RAVL_INLINE Mask<double, L> rsqrt_out_of_range(Vec<double, L> x, const R& c) {
  using I = Vec<int64_t, L>;
  return as_int(x) + get<I>(c.offset) > get<I>(c.top);
}

// The double scalar routine, shared by every member of rsqrt and rsqrtf.
// Positive x outside the plain path's range is scaled by 2^+-200 into it
// (exactly) and the plain arithmetic's result scaled back by 2^-+100.
RAVL_INLINE int rsqrt_scalar(const double* xp, double* rp);

// ---- double, full class ------------------------------------------------------------
//
// 1/sqrt(x), plain rsqrt, for 2^-970 <= x < 2^1022: y (1 + d q(d)) with
// q(d) = 1/2 + 3/8 d + 5/16 d^2 + 35/128 d^3 tuned; y + y (q d) is one
// fused multiply-add.
constexpr double kQ0 = f64_bits(0x3fdffffffffffe71ull);  // 0.49999999999997785
constexpr double kQ1 = f64_bits(0x3fd80000000000f6ull);  // 0.37500000000001366
constexpr double kQ2 = f64_bits(0x3fd40000b13001d9ull);  // 0.31250016501874495
constexpr double kQ3 = f64_bits(0x3fd1800032338cbbull);  // 0.27343754675366555

// Lanes outside [2^-970, 2^1022): upper word - 0x83500000 > 0xfc7fffff.
struct RsqrtFullRows : RsqrtRangeRows<0x7cb0000000000000ull, 0xfc7fffffffffffffull>, RsqrtStartRows {
  Row<double> q0 = row(kQ0), q1 = row(kQ1), q2 = row(kQ2), q3 = row(kQ3);
};
inline constexpr RsqrtFullRows kRsqrtFullRows{};

struct RsqrtFull : frame::Kernel {
  using sig = double(double);
  static constexpr bool has_callout = true;
  template <int L> static RAVL_INLINE Vec<double, L> vec(Vec<double, L> x) {
    using V = Vec<double, L>;
    const RsqrtFullRows& c = rows(kRsqrtFullRows);
    V y, d;
    rsqrt_start(x, c, y, d);
    const V q = fma(fma(fma(get<V>(c.q3), d, get<V>(c.q2)), d, get<V>(c.q1)), d, get<V>(c.q0));
    return fma(y, q * d, y);
  }
  template <int L> static RAVL_INLINE Mask<double, L> special(Vec<double, L> x, Vec<double, L>) {
    return rsqrt_out_of_range(x, kRsqrtFullRows);
  }
  static RAVL_INLINE int scalar(const double* x, double* r) { return rsqrt_scalar(x, r); }
};

// ---- double, fast classes (_native, _half) ---------------------------------------
//
// For 2^-1020 <= x < 2^1022: y (r0 + r1 d + r2 d^2), the series
// 1 + d/2 + 3/8 d^2 tuned.
constexpr double kR0 = f64_bits(0x3fefffffffffff4full);  // 0.99999999999998035
constexpr double kR1 = f64_bits(0x3fe000004379adb7ull);  // 0.50000012568255314
constexpr double kR2 = f64_bits(0x3fd80000c4cd9197ull);  // 0.37500018328707924

// Lanes outside [2^-1020, 2^1022): upper word - 0x80300000 > 0xff9fffff.
struct RsqrtFastRows : RsqrtRangeRows<0x7fd0000000000000ull, 0xff9fffffffffffffull>, RsqrtStartRows {
  Row<double> r0 = row(kR0), r1 = row(kR1), r2 = row(kR2);
};
inline constexpr RsqrtFastRows kRsqrtFastRows{};

struct RsqrtFast : RsqrtFull {
  template <int L> static RAVL_INLINE Vec<double, L> vec(Vec<double, L> x) {
    using V = Vec<double, L>;
    const RsqrtFastRows& c = rows(kRsqrtFastRows);
    V y, d;
    rsqrt_start(x, c, y, d);
    return y * fma(fma(get<V>(c.r2), d, get<V>(c.r1)), d, get<V>(c.r0));
  }
  template <int L> static RAVL_INLINE Mask<double, L> special(Vec<double, L> x, Vec<double, L>) {
    return rsqrt_out_of_range(x, kRsqrtFastRows);
  }
};

RAVL_INLINE int rsqrt_scalar(const double* xp, double* rp) {
  const double x = *xp;
  if (x != x) {
    *rp = x + x;
    return kStatusOk;
  }
  if (x == 0.0) {
    *rp = 1.0 / x;
    return kStatusPole;
  }
  if (x < 0.0) {
    *rp = roots::domain_nan<double>();
    return kStatusDomain;
  }
  if (x == f64_bits(0x7ff0000000000000ull)) {
    *rp = 0.0;
    return kStatusOk;
  }
  if (x < pow2d(-970)) *rp = roots::one_lane<RsqrtFull>(x * pow2d(200)) * pow2d(100);
  else if (x >= pow2d(1022)) *rp = roots::one_lane<RsqrtFull>(x * pow2d(-200)) * pow2d(-100);
  else *rp = roots::one_lane<RsqrtFull>(x);
  return kStatusOk;
}

// ---- single ------------------------------------------------------------------------
//
// Both classes serve the positive normal singles; the rest goes to the
// double routine, its result rounded to single.
RAVL_INLINE int rsqrtf_scalar(const float* xp, float* rp) {
  const double x = *xp;
  double r;
  const int status = rsqrt_scalar(&x, &r);
  *rp = (float)r;
  return status;
}

struct RsqrtfBase : frame::Kernel {
  using sig = float(float);
  static constexpr bool has_callout = true;
  template <int L> static RAVL_INLINE Mask<float, L> special(Vec<float, L> x, Vec<float, L>) {
    using I = Vec<int32_t, L>;
    return as_int(x) + I(roots::kPosNormalOffsetf) > I(roots::kPosNormalTopf);
  }
  static RAVL_INLINE int scalar(const float* x, float* r) { return rsqrtf_scalar(x, r); }
};

// rsqrtf plain: e = the estimate cut to 8 fraction bits (0xffff8000), so
// that e^2 is exact and d = x e^2 - 1 is one rounding (|d| <= 2^-7.4);
// 1/sqrt(x) = e (1 + d)^(-1/2) = e + e d (-1/2 + 3/8 d - 5/16 d^2 ...).
struct RsqrtfFullRows {
  Row<uint32_t> cut = row<uint32_t>(0xffff8000u);
  Row<float> one = row(1.0f), p0 = row(f32_bits(0xbf000000u)) /* -0.5 */, p1 = row(f32_bits(0x3ec00000u)) /* 0.375 */,
             p2 = row(f32_bits(0xbea00000u)) /* -0.3125 */;
};
inline constexpr RsqrtfFullRows kRsqrtfFullRows{};

struct RsqrtfFull : RsqrtfBase {
  template <int L> static RAVL_INLINE Vec<float, L> vec(Vec<float, L> x) {
    using V = Vec<float, L>;
    using U = Vec<uint32_t, L>;
    const RsqrtfFullRows& c = rows(kRsqrtfFullRows);
    const V e = as_float<V>(as_uint(rsqrt_approx(x)) & get<U>(c.cut));
    const V d = fms(x, e * e, get<V>(c.one));
    const V p = fma(fma(get<V>(c.p2), d, get<V>(c.p1)), d, get<V>(c.p0));
    return fma(e, d * p, e);
  }
};

// rsqrtf _native and _half: one Newton step, (e * -1/2) (x e e - 3).
struct RsqrtfFastRows {
  Row<float> neg_half = row(-0.5f), three = row(3.0f);
};
inline constexpr RsqrtfFastRows kRsqrtfFastRows{};

struct RsqrtfFast : RsqrtfBase {
  template <int L> static RAVL_INLINE Vec<float, L> vec(Vec<float, L> x) {
    using V = Vec<float, L>;
    const RsqrtfFastRows& c = rows(kRsqrtfFastRows);
    const V e = rsqrt_approx(x);
    return (e * get<V>(c.neg_half)) * fms(x * e, e, get<V>(c.three));
  }
};

}  // namespace rsqrt_detail

namespace rsqrt_k {
using full = rsqrt_detail::RsqrtFull;
using fast = rsqrt_detail::RsqrtFast;
}  // namespace rsqrt_k
namespace rsqrtf_k {
using full = rsqrt_detail::RsqrtfFull;
using fast = rsqrt_detail::RsqrtfFast;
}  // namespace rsqrtf_k

}  // namespace ravl

#include "entries/rsqrt.inc"
#include "entries/rsqrtf.inc"
