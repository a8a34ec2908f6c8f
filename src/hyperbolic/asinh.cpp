// asinh x on double lanes (family asinh) and on single lanes (family asinhf).
//
// asinh x = sign(x) ln(a + sqrt(a^2 + 1)), a = |x|, with the logarithm of the
// log1p family (hyperbolic/inv_hyp.h). Every member computes all lanes on a
// branch-free vector path on a and ORs the sign of x back (asinh(-x) =
// -asinh(x) bit for bit); below the tiny bound it returns x itself (+-0 and
// denormals included). It flags |x| above 2^1000 (double) and infinities and
// NaN for the scalar routine every class of a precision shares:
//   NaN -> quiet NaN, +-inf -> +-inf, |x| > 2^1000 -> +-ln(2|x|).
//
// Classes and measured max errors (tests/accuracy_test.cpp against MPFR; the
// test asserts the bounds kept in its table, kBounds):
//   asinh   plain     full   0.5007 ulp (x = 0x1.24836524d6217p+28): w as a double-double, ln full
//   asinh   _native   fast   2.543 ulp (x = 0x1.ffdaef14ded94p-12): the same w, the fast ln
//   asinhf  plain     full   the argument in double on the widened lanes, the fast ln (its 2^-51
//   asinhf  _native   fast   relative error is far below a single's last place), rounded once: one algorithm,
//                           0.500 ulp (sampled every single of the ranges in kRanges)
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
template <class Ln> struct Asinh : frame::Kernel {
  using sig = double(double);
  static constexpr bool has_callout = true;

  template <int L> static RAVL_INLINE VD<L> vec(VD<L> x) {
    using V = VD<L>;
    V a = abs_of(x);
    V one(1.0);
    V p = a * a;
    V pl = fms(a, a, p);
    V q = one + p;
    V ql = ((hw_max(p, one) - q) + hw_min(p, one)) + pl;
    V s, sl;
    sqrt_dd(q, ql, s, sl);
    auto big = a > V(kBig);
    s = select(big, a, s);
    sl = select(big, V(0.0), sl);
    V wh = s + a;
    V wl = (a - (wh - s)) + sl;
    V u, c;
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

  // ---- single: w = a + sqrt(a^2 + 1) in double -------------------------------------
  // a^2 is exact, 1 + a^2, its square root and the sum round once each: w
  // within 1.5 * 2^-53 absolute (near 1) or relative; below 2^-12 the result is x.
  template <class LnF> static RAVL_INLINE F64x4 fvec(F64x4 x) {
    F64x4 a = abs_of(x);
    F64x4 w = a + sqrt_hw(fma(a, a, F64x4(1.0)));
    return odd_result(x, a, LnF::ln(w, F64x4(0.0)), kTinyF);
  }
  // Infinities and NaN.
  template <int L> static RAVL_INLINE Mask<float, L> fspecial(Vec<float, L> x) {
    return bitcast<Vec<int32_t, L>>(as_uint(x) & Vec<uint32_t, L>(0x7fffffffu)) > Vec<int32_t, L>(0x7f7fffff);
  }
};

}  // namespace asinh_detail

namespace asinh_k {
using full = asinh_detail::Asinh<inv_hyp::LnFull>;
using fast = asinh_detail::Asinh<inv_hyp::LnFast>;
}  // namespace asinh_k
namespace asinhf_k {
using full = inv_hyp::Single<asinh_detail::Asinh<inv_hyp::LnFull>, inv_hyp::LnFast>;
using fast = inv_hyp::Single<asinh_detail::Asinh<inv_hyp::LnFull>, inv_hyp::LnFast>;
}  // namespace asinhf_k

}  // namespace ravl

#include "entries/asinh.inc"
#include "entries/asinhf.inc"
