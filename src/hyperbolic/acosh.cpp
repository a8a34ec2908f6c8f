// acosh x on double lanes (family acosh) and on single lanes (family acoshf).
//
// acosh x = ln(x + sqrt(x^2 - 1)) for x >= 1, with the logarithm of the log1p
// family (hyperbolic/inv_hyp.h), which keeps the relative accuracy of w - 1
// near x = 1 (acosh(1) = +0). Every member computes all lanes on a
// branch-free vector path and flags the lanes outside [1, 2^1000] (double) or
// [1, 2^126) (single), NaN included, for the scalar routine every class of a
// precision shares:
//   NaN -> quiet NaN, x < 1 and -inf -> NaN (status 1), +inf -> +inf,
//   x > 2^1000 -> ln(2x).
//
// Classes and measured max errors (tests/accuracy_test.cpp against MPFR; the
// test asserts the bounds kept in its table, kBounds):
//   acosh   plain     full   0.5008 ulp (x = 0x1.04f67bc868144p+28): w as a double-double, ln full
//   acosh   _native   fast   1.661 ulp (x = 0x1.000061f56c3eep+0): the same w, the fast ln
//   acoshf  plain     full   all in single: w as u + d0, the single ln carrying d0: one
//   acoshf  _native   fast   algorithm, 0.5971 ulp (x = 0x1.003fc8p+0; 1.5e7 samples,
//                           uniform and by bit pattern)
#include "hyperbolic/inv_hyp.h"

namespace ravl {
namespace acosh_detail {

using namespace inv_hyp;

// ---- double ---------------------------------------------------------------------
//
// w = x + sqrt(x^2 - 1) as u + c:
//   p + pl = x^2                      exact;
//   q + ql = x^2 - 1                  q = RN(p - 1) (exact for p <= 2, Sterbenz),
//                                     its error (Fast2Sum, p >= 1) + pl, renormalised
//                                     (Fast2Sum) so that |ql| <= ulp(q)/2: near x = 1,
//                                     q = 2t + t^2 (t = x - 1) exactly;
//   s + sl = sqrt(q + ql)             sqrt_dd (q = 0 at x = 1 gives 0);
//   wh + wl = x + s                   Fast2Sum (x > s) + sl;
//   u + c = wh + wl                   Fast2Sum.
// From x = 2^28 up, w = 2x (the dropped -1/(2x) is below 2^-58 w). Near x = 1,
// w - 1 = t + sqrt(2t + t^2) >= 2^-26 keeps an absolute error near 2^-104.
// wh + wl (both precisions), from `big` up w = 2x.
template <class V> RAVL_INLINE void acosh_w(V x, LaneOf<V> big, V& wh, V& wl) {
  V one(1.0);
  V p = x * x;
  V pl = fms(x, x, p);
  V q0 = p - one;
  V ql0 = ((p - q0) - one) + pl;
  V q, ql;
  fast2sum(q0, ql0, q, ql);
  plus_sqrt<false>(x, q, ql, big, wh, wl);
}

template <class Ln> struct Acosh : frame::Kernel {
  using sig = double(double);
  static constexpr bool has_callout = true;
  static constexpr bool has_width3_fill = true;  // the unused lane is 1: never flagged
  static constexpr double width3_fill = 1.0;

  template <int L> static RAVL_INLINE VD<L> vec(VD<L> x) {
    VD<L> wh, wl, u, c;
    acosh_w(x, kBig, wh, wl);
    fast2sum(wh, wl, u, c);
    return Ln::ln(u, c);
  }
  // Not 1 <= x <= 2^1000 (NaN included).
  template <int L> static RAVL_INLINE Mask<double, L> special(VD<L> x, VD<L>) {
    return ~((x >= VD<L>(1.0)) & (x <= VD<L>(kHuge)));
  }
  static RAVL_INLINE int scalar(const double* xp, double* rp) {
    double x = *xp;
    int status;
    // NaN, x < 1 (domain) and +inf as the logarithm of x - 1 gives them.
    if (x != x || x < 1 || x == __builtin_inf()) {
      logd::log_special(x - 1, rp, &status);
      return status;
    }
    *rp = x > kHuge ? ln_twice_huge(x) : vec<2>(F64x2(x))[0];
    return kStatusOk;
  }

  // ---- single: the same w in single, as u + d0 ----------------------------------------
  // acosh_w on the single lanes (wh + wl within about 2^-46 relative; near 1,
  // q = 2t + t^2 exactly as in double), w = 2x from 2^12 up (kBigF), then
  // ln(wh + wl) through the single kernel carrying wl (ln_carry); acosh(1) = +0.
  template <int L> static RAVL_INLINE Vec<float, L> svec(Vec<float, L> x) {
    Vec<float, L> u, d0;
    acosh_w(x, kBigF, u, d0);
    return ln_carry(u, d0);
  }
  // Not 1 <= x < 2^126 (NaN included).
  template <int L> static RAVL_INLINE Mask<float, L> fspecial(Vec<float, L> x) {
    using V = Vec<float, L>;
    return ~((x >= V(1.0f)) & (x < V(kHugeF)));
  }
};

}  // namespace acosh_detail

namespace acosh_k {
using full = acosh_detail::Acosh<inv_hyp::LnFull>;
using fast = acosh_detail::Acosh<inv_hyp::LnFast>;
}  // namespace acosh_k
namespace acoshf_k {
using full = inv_hyp::Single<acosh_detail::Acosh<inv_hyp::LnFull>>;
using fast = full;
}  // namespace acoshf_k

}  // namespace ravl

#include "entries/acosh.inc"
#include "entries/acoshf.inc"
