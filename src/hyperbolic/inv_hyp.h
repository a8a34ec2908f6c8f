// What the asinh, acosh and atanh families share: the choice of logarithm
// (the log1p family's full or fast ln(u + c), exp_log/log1p_core.h), the
// double-double steps that build the logarithm's argument w = u + c, the
// logarithm of 2a for huge a (the scalar routines) and the lane tests.
//
// Each double family computes w = 1 + z as an unevaluated sum u + c with u =
// RN(u + c), so that ln(w) keeps its relative accuracy when w is near 1 (z
// small): the log1p kernels read u's rounding error c into the reduced
// argument. The single families compute w in double (every single argument
// and the few roundings of its formula leave w within 2^-52 relative, or
// absolute near w = 1, far below a single's last place of ln(w)) and round
// the double logarithm once.
#pragma once

#include "exp_log/log1p_core.h"
#include "exp_log/log_core.h"
#include "frame/entry.h"

namespace ravl {
namespace inv_hyp {

template <int L> using VD = Vec<double, L>;
template <int L> using UD = Vec<uint64_t, L>;
template <int L> using ID = Vec<int64_t, L>;

// The logarithms: ln(u + c), u a positive normal below 2^1013, |c| <= ulp(u)/2.
struct LnFull {
  template <int L> static RAVL_INLINE VD<L> ln(VD<L> u, VD<L> c) { return log1p_detail::ln_sum(u, c); }
};
struct LnFast {
  template <int L> static RAVL_INLINE VD<L> ln(VD<L> u, VD<L> c) { return log1p_detail::ln_sum_fast(u, c); }
};

// ---- constants ----------------------------------------------------------------

// Sign bit 0x8000000000000000 and its complement.
constexpr uint64_t kSign = 0x8000000000000000ull;
constexpr uint64_t kAbs = 0x7fffffffffffffffull;
// 2^1000 (0x7e70000000000000): above it 2a would leave the log1p kernels'
// range (u < 2^1013 with room), so the scalar routine takes ln(2a) apart.
constexpr double kHuge = f64_bits(0x7e70000000000000ull);
// 2^28 (0x41b0000000000000): from here sqrt(a^2 +- 1) = a +- 1/(2a) and the
// correction 1/(2a) is below 2^-58 of w = 2a, so w = 2a is taken (a^2
// overflows from 2^512).
constexpr double kBig = f64_bits(0x41b0000000000000ull);
// 2^-27 (0x3e40000000000000): below it asinh(a) = a - a^3/6 and atanh(a) =
// a + a^3/3 round to a (a^2/3 < 2^-54 is below half an ulp), denormals
// included; the double paths return x there.
constexpr double kTiny = f64_bits(0x3e40000000000000ull);
// The smallest normal, 0x0010000000000000: a floor for the divisor 2 s_hi
// of the square root's correction (s_hi = 0 at acosh(1)).
constexpr double kMinNormal = f64_bits(0x0010000000000000ull);

// ---- double-double steps ----------------------------------------------------------

// (u, c) with u = RN(h + l) and u + c = h + l exactly (Fast2Sum, |h| >= |l| or h = 0).
template <class V> RAVL_INLINE void fast2sum(V h, V l, V& u, V& c) {
  u = h + l;
  c = l - (u - h);
}

// s_hi + s_lo = sqrt(q_hi + q_lo) for |q_lo| <= 2^-52 q_hi (single: 2^-23): s_hi =
// RN(sqrt(q_hi)), then one Newton step on the exact residual q_hi - s_hi^2 (one
// fused op) plus q_lo, s_lo = residual / (2 s_hi): relative error below
// 2^-104 + (2^-51)^2/8 (single: 2^-46 + (2^-22)^2/8). q = 0 gives s_hi = s_lo = 0
// (the divisor's floor is the smallest normal of the lane type, 0x0010000000000000
// or 0x00800000).
template <class V> RAVL_INLINE void sqrt_dd(V qh, V ql, V& sh, V& sl) {
  using T = LaneOf<V>;
  sh = sqrt_hw(qh);
  V e = ql - fms(sh, sh, qh);
  sl = e / hw_max(sh + sh, V(sizeof(T) == 4 ? (T)0x1p-126f : (T)kMinNormal));
}

// wh + wl = a + sqrt(q + ql) for a >= 0 (sqrt_dd, then Fast2Sum with the
// larger term first: the root when kRootLarger, else a), and 2a + 0 where a
// exceeds `big`.
template <bool kRootLarger, class V> RAVL_INLINE void plus_sqrt(V a, V q, V ql, LaneOf<V> big, V& wh, V& wl) {
  V s, sl;
  sqrt_dd(q, ql, s, sl);
  auto m = a > V(big);
  s = select(m, a, s);
  sl = select(m, V(0.0), sl);
  wh = s + a;
  wl = (kRootLarger ? a - (wh - s) : s - (wh - a)) + sl;
}

// ln(2a) for a above 2^1000 (the full class): ln(2a 2^-512) + 512 ln2 through
// the log1p reduction with its exponent moved (2a 2^-512 = a 2^-511 is exact).
RAVL_INLINE double ln_twice_huge(double a) {
  using namespace log1p_detail;
  const Log1pFullRows& k = rows(kLog1pFullRows);
  Log1pParts<2> q = reduce1p<false>(F64x2(a * 0x1p-511), F64x2(0.0), k);
  q.p.e += F64x2(512.0);
  return Log1pFull::core(q, k)[0];
}

// y with the sign bit of x ORed in (y >= 0), or x itself where |x| < tiny.
template <int L> RAVL_INLINE VD<L> odd_result(VD<L> x, VD<L> a, VD<L> y, double tiny) {
  using U = UD<L>;
  VD<L> r = as_float<VD<L>>(as_uint(y) | (as_uint(x) & U(kSign)));
  return select(a < VD<L>(tiny), x, r);
}
template <int L> RAVL_INLINE VD<L> abs_of(VD<L> x) { return as_float<VD<L>>(as_uint(x) & UD<L>(kAbs)); }

// |x| above 2^1000, infinities and NaN: one signed compare of the pattern of |x|.
template <int L> RAVL_INLINE Mask<double, L> abs_above_huge(VD<L> x) {
  return bitcast<ID<L>>(as_uint(x) & UD<L>(kAbs)) > ID<L>((int64_t)bits_of(kHuge));
}

// ---- single lanes, all in single ---------------------------------------------------

// 2^12 (0x45800000): from here w = 2a is taken (the dropped 1/(2a) is below
// 2^-25 of w, and ln(2a) within 1/(4a^2) < 2^-26, under 2^-29 of the result).
constexpr float kBigF = 0x1p12f;
// 2^126 (0x7e800000): from here 2a overflows; those lanes take the routine.
constexpr float kHugeF = 0x1p126f;

// ln(u + d0), u a positive normal single below 2^127 and |d0| within a few
// ulps of u: the log family's single kernel with d0 carried into its reduced
// argument (exp_log/log_core.h).
template <int L> RAVL_INLINE Vec<float, L> ln_carry(Vec<float, L> u, Vec<float, L> d0) {
  return log_core::ln_single<log_core::BaseE, true>(u, d0);
}
// y with the sign bit of x ORed in (y >= 0).
template <class V> RAVL_INLINE V with_sign(V x, V y) { return as_float<V>(as_uint(y) | sign_bit(x)); }

// A single family's kernel from its double kernel D: the vector path in
// single (D::svec), the lane test of the singles (D::fspecial) and the double
// scalar routine on the widened lane.
template <class D> struct Single : frame::Kernel {
  using sig = float(float);
  static constexpr bool has_callout = true;
  static constexpr bool has_width3_fill = D::has_width3_fill;
  static constexpr double width3_fill = D::width3_fill;
  template <int L> static RAVL_INLINE Vec<float, L> vec(Vec<float, L> x) {
    return D::template svec<L>(x);
  }
  template <int L> static RAVL_INLINE Mask<float, L> special(Vec<float, L> x, Vec<float, L>) {
    return D::fspecial(x);
  }
  static RAVL_INLINE int scalar(const float* xp, float* rp) {
    double x = *xp, r;
    int status = D::scalar(&x, &r);
    *rp = (float)r;
    return status;
  }
};

}  // namespace inv_hyp
}  // namespace ravl
