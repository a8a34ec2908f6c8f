// e^x - 1 on double lanes (family expm1) and on single lanes (family expm1f).
//
// Every member computes all lanes on a branch-free vector path that keeps the
// relative accuracy near zero (no 1 + x is ever formed and subtracted back:
// tiny x returns x, -0 returns -0), flags the lanes that path cannot handle
// (NaN, and x beyond a bound just under the overflow threshold), settles the
// overflowing lanes inline (+infinity) and hands the rest to the scalar
// routine of its precision, which every class shares. x below -40 (e^x <
// 2^-57, so e^x - 1 rounds to -1) is clamped to -40 on the vector path, so
// -infinity and large negative x give -1 without a call. Special inputs:
//   NaN -> quiet NaN, +inf -> +inf, -inf -> -1, x > ln(DBL_MAX) -> +inf
//   (status 3), +-0 -> +-0, tiny x -> x (status 4 for a denormal x).
//
// Classes and measured max errors (tests/accuracy_test.cpp against MPFR,
// at 8 times its default counts: per row 2^20 doubles or 2^21 singles uniform
// over [-3, 3] and over [-45, 712] / [-25, 90], log-uniform over [2^-60, 2] /
// [2^-30, 2], random bit patterns, and +-64 ulps around every bound, table
// step and tiny x of both signs; the test asserts the bounds kept in its table):
//   expm1   plain       full   0.505 ulp
//   expm1   _native     fast   221 ulp (relative 2.5e-14, near |x| = ln2/256)
//   expm1f  plain       full   0.500 ulp (the fast double algorithm, rounded once)
//   expm1f  _native     fast   8.6 ulp
// The lanes computed by the scalar routines are within the full bounds.
#include "exp_log/exp_common.h"
#include "frame/entry.h"
#include "tables/exp.h"
#include "exp_log/expm1_core.h"

namespace ravl {
namespace expm1_detail {

// The reduction constants (kShift, kShift48, kInvLn2x64, kLn2o64Hi/Lo with x -
// n hi exact for |n| < 2^17; kInvLn2x128, kLn2o128; the single kInvLn2f,
// kShiftf, kLn2f), the overflow bounds kOverflow and kOverflowf, and the
// overflow result and result status of the scalar routines come from
// exp_common.h.
using namespace exp_common;

// ---- bounds -------------------------------------------------------------------

// x above 709.75 (0x40862e0000000000), or NaN, leaves the double vector
// paths: below it n = round(x 64/ln2) <= 65533, so 2^floor(n/64) is a double
// and every intermediate stays finite.
constexpr double kFastBound = f64_bits(0x40862e0000000000ull);
// x above kOverflow = ln(DBL_MAX) rounded down overflows to +infinity.
// Single: x above 88.0 leaves the single fast path (there n = round(x/ln2)
// <= 127, so 2^n is a single); x above kOverflowf = 88.7228317 overflows; below -20 (e^-20 < 2^-28) the single result is -1.
constexpr float kFastBoundf = 88.0f;
constexpr float kLowf = -20.0f;

// ---- double, full class ---------------------------------------------------------
//
// e^x - 1, plain expm1. Max error 0.505 ulp (worst x = 0x1.6e36e2f7ed122p-8).
// n = round(x 64/ln2); r = rh + rl = x - n ln2/64 with rh = x - n hi exact;
// j = n mod 64, m = floor(n/64), t = 2^m hi_j, 2^(j/64) = hi_j (1 + lo_j).
// e^x - 1 = t (1 + lo_j)(1 + r + p) - 1, p = e^r - 1 - r ~ r^2 P(r), so
//   e^x - 1 = (t - 1) + t rh + t (rl + p + lo_j (1 + r))
// to 2^-106 relative. t - 1 and t rh are formed exactly (two-sum and
// two-product) and added with Fast2Sum (|t - 1| >= 2^(1/64) - 1 > |t rh|
// when n != 0; t - 1 = 0 when n = 0), so the sum rounds once more than its
// small terms: no cancellation near zero or at the table steps. For n = 0
// (|x| < ln2/128) t = 1, lo_0 = 0 and the result is x + x^2 P(x).

struct Expm1Full : frame::Kernel {
  using sig = double(double);
  static constexpr bool has_callout = true;

  // kDown = 1 (scalar routine only): t is formed as 2^(m-1) hi_j, giving
  // (e^x - 2)/2, which the caller doubles; used where 2^m overflows (n >= 65536).
  template <int L, int kDown = 0> static RAVL_INLINE Vec<double, L> core(Vec<double, L> x) {
    using V = Vec<double, L>;
    using U = Vec<uint64_t, L>;
    using I = Vec<int64_t, L>;
    V k = fma(x, V(kInvLn2x64), V(kShift));
    V n = k - V(kShift);
    U s = as_uint(n + V(kShift48));
    U j16 = s & U(0x3ff);
    U e = ((s & ~U(0x3ff)) << 42) - U((uint64_t)kDown << 52);  // floor(n/64) - kDown in the exponent field
    V rh = fnma(n, V(kLn2o64Hi), x);  // exact
    V rl = n * V(-kLn2o64Lo);
    V r = rh + rl;
    V hi, lo;
    gather_pairs(reinterpret_cast<const double*>(exp_tables::kExpScalar64), bitcast<I>(j16 >> 3), hi, lo);
    V t = as_float<V>(as_uint(hi) + e);
    // t - 1 = sh + sl exactly (two-sum).
    V sh = t - V(1.0);
    V bb = sh - t;
    V sl = (t - (sh - bb)) + (V(-1.0) - bb);
    // t rh = ah + al exactly.
    V ah = t * rh;
    V al = fms(t, rh, ah);
    // sh + ah = S + err exactly (Fast2Sum).
    V S = sh + ah;
    V err = ah - (S - sh);
    V r2 = r * r;
    V poly = fma(r, fma(r, fma(r, fma(r, fma(r, V(kE7), V(kE6)), V(kE5)), V(kE4)), V(kE3)), V(kE2));
    V w = fma(r2, poly, rl) + fma(lo, r, lo);
    V c = (sl + al) + err;
    return S + fma(t, w, c);
  }
  template <int L> static RAVL_INLINE Vec<double, L> vec(Vec<double, L> x) {
    using V = Vec<double, L>;
    // max(x, -40): -infinity and large negative x give -1 (NaN lanes are flagged).
    V y = core<L>(hw_max(x, V(kLow)));
    // e^x - 1 has the sign of x: keeps -0 (the sums above give +0 there).
    return as_float<V>(as_uint(y) | sign_bit(x));
  }
  // x > 709.75 or NaN (unordered).
  template <int L> static RAVL_INLINE Mask<double, L> special(Vec<double, L> x, Vec<double, L>) {
    return not_le(x, Vec<double, L>(kFastBound));
  }
  // x above the overflow bound gives +infinity (ordered: NaN lanes stay flagged).
  template <int L, class M>
  static RAVL_INLINE M settle(M flagged, Vec<double, L> x, Vec<double, L>& r) {
    return settle_overflow(flagged, x, r, kOverflow);
  }
  // The double special-lane routine, shared by both double classes.
  static RAVL_INLINE int scalar(const double* xp, double* rp) {
    double x = *xp;
    if (x != x) {  // NaN, quietened
      *rp = x + x;
      return kStatusOk;
    }
    if (x > kOverflow) {
      if (x == __builtin_inf()) {
        *rp = x;
        return kStatusOk;
      }
      return overflow_result(rp);
    }
    if (x > kFastBound) {  // e^x near DBL_MAX: 2 ((e^x - 2)/2), the -2 far below the last place
      *rp = core<2, 1>(F64x2(x))[0] * 2.0;
      return kStatusOk;
    }
    *rp = vec<2>(F64x2(x))[0];
    return denormal_status(*rp);
  }
};

// ---- double, fast class (_native): expm1_fast (exp_log/expm1_core.h) ----------------

struct Expm1Fast : Expm1Full {
  template <int L> static RAVL_INLINE Vec<double, L> vec(Vec<double, L> x) { return expm1_fast<L>(x); }
};

// ---- single, full class (plain) --------------------------------------------------
//
// e^x - 1 on singles by the fast double algorithm above on the widened lanes,
// rounded once to single. Its relative error (below 2^-45) leaves the single
// result within 0.5 + 2^-21 ulp: measured 0.500 ulp.

struct Expm1fFull : frame::Kernel {
  using sig = float(float);
  static constexpr bool has_callout = true;
  template <int L> static RAVL_INLINE Vec<float, L> vec(Vec<float, L> x) {
    return via_double<L>(x, [](F64x4 v) { return expm1_fast<4>(v); });
  }
  // x > 88.7228317 or NaN (unordered); the settle pass leaves only NaN.
  template <int L> static RAVL_INLINE Mask<float, L> special(Vec<float, L> x, Vec<float, L>) {
    return not_le(x, Vec<float, L>(kOverflowf));
  }
  template <int L, class M>
  static RAVL_INLINE M settle(M flagged, Vec<float, L> x, Vec<float, L>& r) {
    return settle_overflow(flagged, x, r, kOverflowf);
  }
  // The single special-lane routine, shared by both single classes: the
  // fast double algorithm, rounded once to single.
  static RAVL_INLINE int scalar(const float* xp, float* rp) {
    float x = *xp;
    if (x != x) {
      *rp = x + x;
      return kStatusOk;
    }
    if (x > kOverflowf) {
      if (x == __builtin_inff()) {
        *rp = x;
        return kStatusOk;
      }
      return overflow_result(rp);
    }
    *rp = (float)expm1_fast<2>(F64x2((double)x))[0];
    return denormal_status(*rp);
  }
};

// ---- single, fast class (_native) -------------------------------------------------
//
// e^x - 1 with no table. Max error 8.6 ulp (worst x = 0x1.63055ep-2, at n = 1).
// n = round(x/ln2); r = x - n ln2 (one constant), |r| <= ln2/2; t = 2^n;
// e^x - 1 = fma(t, p, t - 1), p = r + r^2 (1/2 + r/6 + r^2/24 + r^3/120 + r^4/720)
// (Taylor; the remainder r^7/5040 is the main error). t - 1 is exact for
// -1 <= n <= 24; for n = 0 the result is p, so x near zero keeps its
// relative accuracy and tiny x returns x.

struct Expm1fFast : Expm1fFull {
  template <int L> static RAVL_INLINE Vec<float, L> vec(Vec<float, L> x0) {
    using V = Vec<float, L>;
    using U = Vec<uint32_t, L>;
    V x = hw_max(x0, V(kLowf));
    V k = fma(x, V(kInvLn2f), V(kShiftf));
    V n = k - V(kShiftf);
    V r = fnma(n, V(kLn2f), x);
    V p = fma(r * r, fma(r, fma(r, fma(r, fma(r, V(1.0f / 720), V(1.0f / 120)), V(1.0f / 24)), V(1.0f / 6)), V(0.5f)), r);
    // k's low bits hold n: shifted by 23 and added to the bits of 1.0 they
    // make 2^n (the shifter's own bits leave the register).
    V t = as_float<V>((as_uint(k) << 23) + U(0x3f800000u));
    V y = fma(t, p, t - V(1.0f));
    return as_float<V>(as_uint(y) | sign_bit(x0));
  }
  // x > 88.0 or NaN (unordered).
  template <int L> static RAVL_INLINE Mask<float, L> special(Vec<float, L> x, Vec<float, L>) {
    return not_le(x, Vec<float, L>(kFastBoundf));
  }
};

}  // namespace expm1_detail

namespace expm1_k {
using full = expm1_detail::Expm1Full;
using fast = expm1_detail::Expm1Fast;
}  // namespace expm1_k
namespace expm1f_k {
using full = expm1_detail::Expm1fFull;
using fast = expm1_detail::Expm1fFast;
}  // namespace expm1f_k

}  // namespace ravl

#include "entries/expm1.inc"
#include "entries/expm1f.inc"
