// asinh x on double lanes (family asinh) and on single lanes (family asinhf).
//
// asinh x = sign(x) ln(a + sqrt(a^2 + 1)), a = |x|, with the logarithm of the
// log1p family (hyperbolic/inv_hyp.h). Every member computes all lanes on a
// branch-free vector path on a and ORs the sign of x back (asinh(-x) =
// -asinh(x) bit for bit); below the tiny bound it returns x itself (+-0 and
// denormals included). It flags |x| above 2^1000 (double) or from 2^126
// (single), infinities and NaN for the scalar routine every class of a
// precision shares:
//   NaN -> quiet NaN, +-inf -> +-inf, |x| > 2^1000 -> +-ln(2|x|).
//
// Classes and measured max errors (tests/accuracy_test.cpp against MPFR; the
// test asserts the bounds kept in its table, kBounds):
//   asinh   plain     full   0.5007 ulp (x = 0x1.24836524d6217p+28): w as a double-double, ln full
//   asinh   _native   fast   2.543 ulp (x = 0x1.ffdaef14ded94p-12): the same w, the fast ln
//   asinhf  plain     full   all in single: w as u + d0, the single ln carrying d0, the series
//   asinhf  _native   fast   below 2^-5: one algorithm, 0.6422 ulp (x = 0x1.4edc14p-5; 1.5e7 samples,
//                           uniform and by bit pattern)
#include "hyperbolic/inv_hyp.h"

namespace ravl {
namespace asinh_detail {

using namespace inv_hyp;

// ---- double ---------------------------------------------------------------------
//
// w = a + sqrt(1 + a^2) as u + c:
//   p + pl = a^2                      exact (product and its fused error);
//   q + ql = 1 + a^2                  q = RN(1 + p), ql = its error (Fast2Sum of the
//                                     larger and smaller of 1, p) + pl, |ql| <= 2^-52 q;
//   s + sl = sqrt(q + ql)             sqrt_dd, relative error below 2^-101;
//   wh + wl = s + a                   wh = RN(s + a), its error (Fast2Sum, s > a) + sl;
//   u + c = wh + wl                   Fast2Sum, so that |c| <= ulp(u)/2.
// From a = 2^28 up, w = 2a (s = a, sl = 0: the dropped 1/(2a) is below 2^-58 w).
// Near a = 0, w - 1 = a + a^2/2 + ... keeps an absolute error near 2^-104, below
// 2^-77 relative to w - 1 for a >= 2^-27; below 2^-27 the result is x.
// The single series below 2^-5 (0x3d000000): the Taylor coefficients rounded to single.
constexpr float kSeriesF = 0x1p-5f;
constexpr float kS3f = f32_bits(0xbe2aaaabu);  // -1/6 = -0.166666672
constexpr float kS5f = f32_bits(0x3d99999au);  // 3/40 = 0.0750000030
constexpr float kS7f = f32_bits(0xbd36db6eu);  // -15/336 = -0.0446428582
constexpr float kS9f = f32_bits(0x3cf8e38eu);  // 105/3456 = 0.0303819440

// wh + wl (both precisions), from `big` up w = 2a.
template <class V> RAVL_INLINE void asinh_w(V a, LaneOf<V> big, V& wh, V& wl) {
  V one(1.0);
  V p = a * a;
  V pl = fms(a, a, p);
  V q = one + p;
  V ql = ((hw_max(p, one) - q) + hw_min(p, one)) + pl;
  plus_sqrt<true>(a, q, ql, big, wh, wl);
}

template <class Ln> struct Asinh : frame::Kernel {
  using sig = double(double);
  static constexpr bool has_callout = true;

  template <int L> static RAVL_INLINE VD<L> vec(VD<L> x) {
    VD<L> a = abs_of(x), wh, wl, u, c;
    asinh_w(a, kBig, wh, wl);
    fast2sum(wh, wl, u, c);
    return odd_result(x, a, Ln::ln(u, c), kTiny);
  }
  template <int L> static RAVL_INLINE Mask<double, L> special(VD<L> x, VD<L>) { return abs_above_huge(x); }
  static RAVL_INLINE int scalar(const double* xp, double* rp) {
    double x = *xp;
    double a = __builtin_fabs(x);
    if (x != x || a == __builtin_inf()) *rp = x + x;
    else if (a > kHuge) *rp = __builtin_copysign(ln_twice_huge(a), x);
    else *rp = vec<2>(F64x2(x))[0];
    return kStatusOk;
  }

  // ---- single: the same w in single, as u + d0 ----------------------------------------
  // asinh_w on the single lanes (wh + wl within about 2^-46 relative), w = 2a
  // from 2^12 up (kBigF), then ln(wh + wl) through the single kernel carrying
  // wl (ln_carry). Below 2^-5 the odd series a - a^3/6 + 3a^5/40 - 15a^7/336 +
  // 105a^9/3456 (remainder below 2^-55 a) is taken instead: it gives a itself
  // for tiny and denormal a, and near 0 the carried roundings of w would weigh
  // on a small result. The sign of x is ORed back.
  template <int L> static RAVL_INLINE Vec<float, L> svec(Vec<float, L> x) {
    using V = Vec<float, L>;
    V a = abs(x), u, d0;
    asinh_w(a, kBigF, u, d0);
    V y = ln_carry(u, d0);
    V a2 = a * a;
    V t = fma(fma(fma(V(kS9f), a2, V(kS7f)), a2, V(kS5f)), a2, V(kS3f));
    y = select(a < V(kSeriesF), fma(a * a2, t, a), y);
    return with_sign(x, y);
  }
  // Infinities, NaN and |x| >= 2^126.
  template <int L> static RAVL_INLINE Mask<float, L> fspecial(Vec<float, L> x) {
    return ~(abs(x) < Vec<float, L>(kHugeF));
  }
};

}  // namespace asinh_detail

namespace asinh_k {
using full = asinh_detail::Asinh<inv_hyp::LnFull>;
using fast = asinh_detail::Asinh<inv_hyp::LnFast>;
}  // namespace asinh_k
namespace asinhf_k {
using full = inv_hyp::Single<asinh_detail::Asinh<inv_hyp::LnFull>>;
using fast = full;
}  // namespace asinhf_k

}  // namespace ravl

#include "entries/asinh.inc"
#include "entries/asinhf.inc"
