// atanh x on double lanes (family atanh) and on single lanes (family atanhf).
//
// atanh x = sign(x) ln((1 + a)/(1 - a))/2 = sign(x) ln(1 + 2a/(1 - a))/2, a = |x|,
// with the logarithm of the log1p family (hyperbolic/inv_hyp.h). Every member
// computes all lanes on a branch-free vector path on a and ORs the sign of x
// back (atanh(-x) = -atanh(x) bit for bit); below the tiny bound it returns x
// itself (+-0 and denormals included). It flags |x| >= 1 and NaN for the
// scalar routine every class of a precision shares:
//   NaN -> quiet NaN, +-1 -> +-inf (status 2), |x| > 1 and +-inf -> NaN (status 1).
//
// Classes and measured max errors (tests/accuracy_test.cpp against MPFR; the
// test asserts the bounds kept in its table, kBounds):
//   atanh   plain     full   0.5001 ulp (x = 0x1.1f2ca33189419p-12): w = (1 + a)/(1 - a) as a double-double, ln full
//   atanh   _native   fast   1.652 ulp (x = 0x1.c0e6f08ebd4p-10): the same w, the fast ln
//   atanhf  plain     full   the argument in double on the widened lanes, the fast ln (its 2^-51
//   atanhf  _native   fast   relative error is far below a single's last place), rounded once: one algorithm,
//                           0.500 ulp (sampled every single of the ranges in kRanges)
#include "hyperbolic/inv_hyp.h"

namespace ravl {
namespace atanh_detail {

using namespace inv_hyp;

// ---- double ---------------------------------------------------------------------
//
// w = (1 + a)/(1 - a) as u + c:
//   nh + nl = 1 + a, dh + dl = 1 - a  Fast2Sum each (exact; dl = 0 from a = 1/2 on);
//   i = RN(1/dh), wh = RN(nh i)       within 2^-52 of w;
//   wl = (nh - wh dh + nl - wh dl) i  the fused residual nh - wh dh (its rounding
//                                     2^-53 of a residual near 2^-52 w) plus the
//                                     low parts, so wh + wl = w within about 2^-103
//                                     relative (absolute near w = 1);
//   u + c = wh + wl                   Fast2Sum (wh >= 1 > |wl|), |c| <= ulp(u)/2.
// Then atanh a = ln(u + c)/2 (the halving is exact). 1 - a >= 2^-53 keeps w
// below 2^54, inside the log1p kernels' range. Below a = 2^-27 the result is x.
template <class Ln> struct Atanh : frame::Kernel {
  using sig = double(double);
  static constexpr bool has_callout = true;

  template <int L> static RAVL_INLINE VD<L> vec(VD<L> x) {
    using V = VD<L>;
    V one(1.0);
    V a = abs_of(x);
    V nh = one + a;
    V nl = (one - nh) + a;
    V dh = one - a;
    V dl = (one - dh) - a;
    V i = one / dh;
    V wh = nh * i;
    V wl = ((nl - fms(wh, dh, nh)) - wh * dl) * i;
    V u, c;
    fast2sum(wh, wl, u, c);
    return odd_result(x, a, V(0.5) * Ln::ln(u, c), kTiny);
  }
  // Not |x| < 1 (NaN included).
  template <int L> static RAVL_INLINE Mask<double, L> special(VD<L> x, VD<L>) {
    return ~(abs_of(x) < VD<L>(1.0));
  }
  static RAVL_INLINE int scalar(const double* xp, double* rp) {
    double x = *xp;
    double a = __builtin_fabs(x);
    if (x != x) {
      *rp = x + x;
      return kStatusOk;
    }
    if (a == 1) {
      *rp = x / opaque(0.0);  // +-1/+0: +-inf
      return kStatusPole;
    }
    if (a > 1) {
      double z = opaque(x) - x;  // 0 for finite x, NaN for +-inf
      // invalid: NaN, with the sign of x so that atanh(-x) = -atanh(x) bit
      // for bit at every x.
      *rp = __builtin_copysign(z / z, x);
      return kStatusDomain;
    }
    *rp = vec<2>(F64x2(x))[0];
    return kStatusOk;
  }

  // ---- single: w = (1 + a)/(1 - a) in double ----------------------------------------
  // From a = 2^-12 up a single's 1 + a and 1 - a are exact in double and the
  // quotient rounds once: w within 2^-53 relative, so ln(w)/2 within 2^-53
  // absolute of atanh a >= 2^-12. Below 2^-12 the result is x.
  template <class LnF> static RAVL_INLINE F64x4 fvec(F64x4 x) {
    F64x4 one(1.0);
    F64x4 a = abs_of(x);
    F64x4 w = (one + a) / (one - a);
    return odd_result(x, a, F64x4(0.5) * LnF::ln(w, F64x4(0.0)), kTinyF);
  }
  // Not |x| < 1 (NaN included).
  template <int L> static RAVL_INLINE Mask<float, L> fspecial(Vec<float, L> x) {
    using V = Vec<float, L>;
    return ~(as_float<V>(as_uint(x) & Vec<uint32_t, L>(0x7fffffffu)) < V(1.0f));
  }
};

}  // namespace atanh_detail

namespace atanh_k {
using full = atanh_detail::Atanh<inv_hyp::LnFull>;
using fast = atanh_detail::Atanh<inv_hyp::LnFast>;
}  // namespace atanh_k
namespace atanhf_k {
using full = inv_hyp::Single<atanh_detail::Atanh<inv_hyp::LnFull>, inv_hyp::LnFast>;
using fast = inv_hyp::Single<atanh_detail::Atanh<inv_hyp::LnFull>, inv_hyp::LnFast>;
}  // namespace atanhf_k

}  // namespace ravl

#include "entries/atanh.inc"
#include "entries/atanhf.inc"
