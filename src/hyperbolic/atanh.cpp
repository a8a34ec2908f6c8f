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
//   atanh   plain     full   0.5005 ulp (x = 0x1.dce46c6e5e357p-13): z = 2a/(1 - a) as zh + zl, ln(1 + z) full
//   atanh   _native   fast   2.761 ulp (x = 0x1.ffe7fa9ab731ep-13): the same z, the fast ln
//   atanhf  plain     full   all in single: w as u + d0, the single ln carrying d0, the series
//   atanhf  _native   fast   below 2^-5: one algorithm, 0.5338 ulp (1.2e7 samples, uniform and by bit pattern)
#include "hyperbolic/inv_hyp.h"

namespace ravl {
namespace atanh_detail {

using namespace inv_hyp;

// The single path's series below 2^-5 (0x3d000000): the Taylor coefficients
// 1/3, ..., 1/9 rounded to single.
constexpr float kSmallF = 0x1p-5f;
constexpr float kT3f = f32_bits(0x3eaaaaabu);           // 1/3 = 0.333333343
constexpr float kT5f = f32_bits(0x3e4ccccdu);           // 1/5 = 0.200000003
constexpr float kT7f = f32_bits(0x3e124925u);           // 1/7 = 0.142857149
constexpr float kT9f = f32_bits(0x3de38e39u);           // 1/9 = 0.111111112

// ---- double ---------------------------------------------------------------------
//
// atanh a = ln(1 + z)/2, z = 2a/(1 - a), with z as zh + zl:
//   dh + dl = 1 - a                Fast2Sum (exact; dl = 0 from a = 1/2 on);
//   zh = RN(2a/dh)                 2a exact; 1 - a >= 2^-53 keeps zh below 2^54,
//                                  inside the log1p kernels' range;
//   zl = (2a - zh dh - zh dl)/dh   the fused residual 2a - zh dh is exact (the
//                                  remainder of a rounded quotient); the step
//                                  with dl and the division round by 2^-53 of zl;
//   zh + zl = z + (z - zh) dl/dh, with |z - zh| <= 2^-52 z (two roundings)
//   and |dl/dh| <= 2^-53: within 2^-104 relative of z.
// 1 + z as u + c: u = RN(1 + zh) and c = its rounding error (Fast2Sum with the
// operands ordered by magnitude, exact) plus zl, |c| <= 1.5 ulp(u). Then
// atanh a = ln(u + c)/2 by the log1p family's kernels, which read c into the
// reduced argument as d = c R 2^(1013 - E), |d| <= 1.5 * 2^-52 (1 + r). Their
// Fast2Sum of the reduced sum S and d needs |S| >= |d|: S is the table term
// plus r, at least ln(1 + 1/1023.5) - 1.35e-3 in magnitude, except where the
// table term is 0 (u in [1, 1 + 1/2048)), and there S = r = u - 1 >= 2^-26,
// as z >= 2^-26 on the lanes kept (a >= 2^-27).
// The reduction of u starts as soon as zh is known; zl (a second division)
// is formed meanwhile and joins through c. The halving is exact, taken on
// the exponent field: ln(u + c) >= 2^-26 is a normal double on the lanes
// kept. Below a = 2^-27 the result is x.
//   plain     0.5005 ulp (x = 0x1.dce46c6e5e357p-13): the full ln;
//   _native   2.761 ulp (x = 0x1.ffe7fa9ab731ep-13): the fast ln, whose worst
//             place is ln(1 + z) near z = 2^-11 (R = 1023, where its table
//             term and r cancel to half the term).

// dh + dl = 1 - a exactly (Fast2Sum, 0 <= a <= 1), in either precision;
// nh + nl = 1 + a likewise.
template <class V> RAVL_INLINE void one_minus(V a, V& dh, V& dl) {
  V one(1.0);
  dh = one - a;
  dl = (one - dh) - a;
}
template <class V> RAVL_INLINE void one_plus_minus(V a, V& nh, V& nl, V& dh, V& dl) {
  V one(1.0);
  nh = one + a;
  nl = (one - nh) + a;
  one_minus(a, dh, dl);
}

template <class Ln> struct Atanh : frame::Kernel {
  using sig = double(double);
  static constexpr bool has_callout = true;

  template <int L> static RAVL_INLINE VD<L> vec(VD<L> x) {
    using V = VD<L>;
    using U = UD<L>;
    V one(1.0);
    V a = abs_of(x), dh, dl;
    one_minus(a, dh, dl);
    V t = a + a;
    V zh = t / dh;
    V zl = fnma(zh, dl, fnma(zh, dh, t)) / dh;
    V big = hw_max(zh, one), small = hw_min(zh, one);
    V u = one + zh;
    V c = (small - (u - big)) + zl;
    // ln(u + c)/2: 2^52 off the pattern, then the sign of x ORed in.
    V y = as_float<V>((as_uint(Ln::ln(u, c)) - U(1ull << 52)) | (as_uint(x) & U(kSign)));
    return select(a < V(kTiny), x, y);
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

  // ---- single: w = (1 + a)/(1 - a) in single, as u + d0 ----------------------------
  //
  //   nh + nl = 1 + a, dh + dl = 1 - a   Fast2Sum each (exact);
  //   u = RN(nh/dh), e = nh - u dh       e exact (fused);
  //   d0 = (e + nl - u dl)/dh            u + d0 = w within about 2^-46 relative;
  // atanh a = ln(u + d0)/2 with the log family's single kernel carrying d0
  // (exp_log/log_core.h, as log1pf carries the rounding of 1 + x). Below a =
  // 2^-5 the series a + a^3/3 + ... + a^9/9 (remainder a^11/11 < 2^-53 a) is
  // blended in instead: there u is within a few ulps of 1 and the rounding of
  // 1 + a and d0 nearly cancel (1 ulp near a = 2^-24 without it). Zeros and
  // denormals give a exactly. Lanes with |x| >= 1 or NaN take the double routine.
  template <int L> static RAVL_INLINE Vec<float, L> svec(Vec<float, L> x) {
    using V = Vec<float, L>;
    V a = abs(x), nh, nl, dh, dl;
    one_plus_minus(a, nh, nl, dh, dl);
    V u = nh / dh;
    V d0 = (fnma(u, dh, nh) + fnma(u, dl, nl)) / dh;
    V y = V(0.5f) * ln_carry(u, d0);
    V a2 = a * a;
    V t = fma(fma(fma(V(kT9f), a2, V(kT7f)), a2, V(kT5f)), a2, V(kT3f));
    y = select(a < V(kSmallF), fma(a * a2, t, a), y);
    return with_sign(x, y);
  }
  // Not |x| < 1 (NaN included).
  template <int L> static RAVL_INLINE Mask<float, L> fspecial(Vec<float, L> x) {
    return ~(abs(x) < Vec<float, L>(1.0f));
  }
};

}  // namespace atanh_detail

namespace atanh_k {
using full = atanh_detail::Atanh<inv_hyp::LnFull>;
using fast = atanh_detail::Atanh<inv_hyp::LnFast>;
}  // namespace atanh_k
namespace atanhf_k {
using full = inv_hyp::Single<atanh_detail::Atanh<inv_hyp::LnFull>>;
using fast = full;
}  // namespace atanhf_k

}  // namespace ravl

#include "entries/atanh.inc"
#include "entries/atanhf.inc"
