// ln(1 + x) on double lanes (family log1p) and on single lanes (family log1pf).
//
// Every member computes all lanes on a branch-free vector path, flags the
// lanes that path cannot handle (x <= -1, NaN, +infinity, and for the double
// paths x above 2^1000) and hands them to the scalar routine of its precision,
// which every class shares. 1 + x is formed, but its rounding error c is kept
// (Fast2Sum) and carried into the reduced argument, so x near zero keeps its
// relative accuracy: tiny x returns x and -0 returns -0. Special inputs:
//   NaN -> quiet NaN, +inf -> +inf, -1 -> -inf (status 2),
//   x < -1 and -inf -> NaN (status 1), tiny x -> x (status 4 for a denormal x).
//
// Classes and measured max errors (tests/accuracy_test.cpp against MPFR,
// at 8 times its default counts: per row 2^20 doubles or 2^21 singles uniform
// over [-1, 3], log-uniform over [1, 2^1000] / [1, FLT_MAX] and over
// [2^-60, 1] / [2^-30, 1], random bit patterns, and +-64 ulps around -1, the
// ends of the reduction ranges, the vector bound and tiny x of both signs; the
// test asserts the bounds kept in its table):
//   log1p   plain       full   0.500 ulp
//   log1p   _native     fast   2.19 ulp
//   log1pf  plain       full   0.5005 ulp (computed in double, rounded once)
//   log1pf  _native     fast   3.14 ulp
// The lanes computed by the scalar routines are within the full bounds.
#include "frame/entry.h"
#include "tables/log.h"
#include "tables/log1p.h"

namespace ravl {
namespace log1p_detail {

// ---- bounds and shared constants ----------------------------------------------

// x above 2^1000 (0x7e70000000000000) leaves the double vector paths: below
// it 1 + x < 2^1013 and the scale 2^(1013 - E) below is a normal double.
constexpr double kBig = f64_bits(0x7e70000000000000ull);
constexpr float kMaxf = f32_bits(0x7f7fffffu);  // FLT_MAX

// ln 2 split for the full class: hi = RN(ln 2) on the grid 2^-36
// (0x3fe62e42fefa0000), lo = RN(ln 2 - hi) (0x3d7cf79abc9e3b3a), the same
// split as row R = 512 of the full table, so that e = -1, R = 512 cancels exactly.
constexpr double kLn2Hi = f64_bits(0x3fe62e42fefa0000ull);
constexpr double kLn2Lo = f64_bits(0x3d7cf79abc9e3b3aull);
static_assert(bits_of(kLn2Hi) == log1p_tables::kLog1pFull[0] && bits_of(kLn2Lo) == log1p_tables::kLog1pFull[1],
              "ln 2 split differs from the table's row R = 512");
// ln 2 rounded to nearest (0x3fe62e42fefa39ef), for the fast class.
constexpr double kLn2 = f64_bits(0x3fe62e42fefa39efull);

// 2^52 (0x4330000000000000): or-ed under a biased exponent field E it makes 2^52 + E.
constexpr uint64_t kTwo52Bits = 0x4330000000000000ull;
constexpr double kTwo52 = f64_bits(kTwo52Bits);
constexpr uint64_t kFracMask = 0x000fffffffffffffull;
constexpr uint64_t kExpMask = 0x7ff0000000000000ull;
// Exponent field of 2^-10 (0x3f50000000000000).
constexpr uint64_t kTwoM10Bits = 0x3f50000000000000ull;

RAVL_INLINE double opaque(double v) {
  __asm__("" : "+x"(v));
  return v;
}

// ---- argument reduction shared by the double algorithms ------------------------
//
// u = 1 + x rounded and c = (1 + x) - u by Fast2Sum: exact in the full class,
// which orders the operands by magnitude; the fast class's Fast2Sum(1, x) is
// exact for |x| < 2^53, and beyond that its c stays below ulp(u), so |c/u|
// < 2^-52 is far below the last place of ln u > 36. With E the biased exponent of u and m' = u 2^(1013 - E) in
// [2^-10, 2^-9) (u's fraction under the exponent of 2^-10), R = nearest
// integer to the single reciprocal estimate of m' (512..1024: the estimate's
// relative error 1.5 * 2^-12 moves 1/m' by at most 0.375) and r = R m' - 1,
// exact in one fms (|r| <= 0.875 * 2^-9 = 0.0017, on the grid 2^-62):
//   1 + x = 2^(E - 1013) (1 + r + d) / R,   d = c R 2^(1013 - E),
//   ln(1 + x) = (E - 1023) ln 2 - ln(R / 1024) + ln(1 + r + d).
template <int L> struct Reduced {
  Vec<double, L> R, r, d;
  Vec<uint64_t, L> ub;  // bits of u
};

// The nearest integer to the single reciprocal estimate of m'.
RAVL_INLINE F64x4 recip_index(F64x4 mp) {
  return round_imm<8>(convert<double>(rcp_approx(convert<float>(mp))));
}
RAVL_INLINE F64x2 recip_index(F64x2 mp) {
  Vec<float, 2> f = convert<float>(mp);
  return round_imm<8>(convert<double>(slice<0, 2>(rcp_approx(join(f, f)))));
}

template <int L> RAVL_INLINE Reduced<L> reduce(Vec<double, L> u, Vec<double, L> c) {
  using V = Vec<double, L>;
  using U = Vec<uint64_t, L>;
  Reduced<L> q;
  q.ub = as_uint(u);
  V mp = as_float<V>((q.ub & U(kFracMask)) | U(kTwoM10Bits));
  q.R = recip_index(mp);
  q.r = fms(q.R, mp, V(1.0));  // exact
  V scale = as_float<V>(U(2036ull << 52) - (q.ub & U(kExpMask)));  // 2^(1013 - E)
  q.d = (c * q.R) * scale;
  return q;
}
// Row R - 512 of a table indexed by R (an integer 512..1024 as a double):
// bits(R) >> 43 = 1032 * 512 + (R - 512); shifted by 42, twice the row (pairs).
template <int L> RAVL_INLINE Vec<int64_t, L> row(Vec<double, L> R, int shift) {
  return bitcast<Vec<int64_t, L>>((as_uint(R) >> shift) - Vec<uint64_t, L>(1032ull << (52 - shift)));
}
// (E - 1023 + bias) as a double, from the bits of u.
template <int L> RAVL_INLINE Vec<double, L> unbiased(Vec<uint64_t, L> ub, Vec<double, L> bias) {
  using V = Vec<double, L>;
  return as_float<V>((ub >> 52) | Vec<uint64_t, L>(kTwo52Bits)) - (V(kTwo52 + 1023) - bias);
}

// ---- double, full class ---------------------------------------------------------
//
// ln(1 + x), plain log1p. Max error 0.500 ulp (below 0.50005 over the test's inputs).
// With e = E - 1023 and the table's -ln(R/1024) = hi + lo (hi on the grid
// 2^-36, like ln2_hi):
//   H = e ln2_hi + hi     exact (a multiple of 2^-36 below 2^10)
//   S + err = H + r       exact (Fast2Sum: H is a multiple of 2^-36, r of 2^-62)
//   Y + err2 = S + d      exact (Fast2Sum: |d| <= 2^-53 is below |S| unless S = 0)
//   result = Y + (err + (e ln2_lo + lo) + err2 + (r + d)^2 P(r)),
// ln(1 + v) - v = v^2 P(v), P the Taylor coefficients -1/2, 1/3, ..., 1/7
// (remainder v^8/8 < 2^-70 v on |v| <= 0.0017), taken at v = r + d with P
// evaluated at r (the difference, below v^2 d/3, is far under the last place;
// the d^2/2 it keeps matters when r is as small as d). Near x = 0 (u in
// [1/2, 2)): R = 1024, e = 0 or R = 512, e = -1 make H = 0 and
// e ln2_lo + lo = 0 exactly, so the result is r + d + (r + d)^2 P(r),
// rounded once after the exact sums.
constexpr double kP2 = -0.5;
constexpr double kP3 = 1.0 / 3;
constexpr double kP4 = -0.25;
constexpr double kP5 = 0.2;
constexpr double kP6 = -1.0 / 6;
constexpr double kP7 = 1.0 / 7;

struct Log1pFull : frame::Kernel {
  using sig = double(double);
  static constexpr bool has_callout = true;

  // ln(u + c) with u = 1 + x, c its rounding error; ebias is added to the
  // exponent (the scalar routine passes u scaled by 2^-ebias).
  template <int L> static RAVL_INLINE Vec<double, L> core(Vec<double, L> u, Vec<double, L> c, double ebias) {
    using V = Vec<double, L>;
    Reduced<L> q = reduce<L>(u, c);
    V th, tl;
    gather_pairs(reinterpret_cast<const double*>(log1p_tables::kLog1pFull), row<L>(q.R, 42), th, tl);
    V e = unbiased<L>(q.ub, V(ebias));
    V H = fma(e, V(kLn2Hi), th);  // exact
    V lo = fma(e, V(kLn2Lo), tl);
    V S = H + q.r;
    V err = q.r - (S - H);
    V Y = S + q.d;
    V err2 = q.d - (Y - S);
    V r = q.r;
    V poly = fma(r, fma(r, fma(r, fma(r, fma(r, V(kP7), V(kP6)), V(kP5)), V(kP4)), V(kP3)), V(kP2));
    V rho = r + q.d;
    V tail = fma(rho * rho, poly, (err + lo) + err2);
    return Y + tail;
  }
  template <int L> static RAVL_INLINE Vec<double, L> vec(Vec<double, L> x) {
    using V = Vec<double, L>;
    // Fast2Sum with the operands ordered by magnitude: c is exact for every x
    // (the reduction's Fast2Sum(1, x) is exact only below 2^53).
    V a = hw_max(x, V(1.0)), b = hw_min(x, V(1.0));
    V u = a + b;
    V c = b - (u - a);
    V y = core<L>(u, c, 0.0);
    // ln(1 + x) has the sign of x: keeps -0 (the sums above give +0 there).
    return as_float<V>(as_uint(y) | sign_bit(x));
  }
  // Not -1 < x <= 2^1000 (NaN included).
  template <int L> static RAVL_INLINE Mask<double, L> special(Vec<double, L> x, Vec<double, L>) {
    using V = Vec<double, L>;
    return ~((x > V(-1.0)) & (x <= V(kBig)));
  }
  // The double special-lane routine, shared by both double classes.
  static RAVL_INLINE int scalar(const double* xp, double* rp) {
    double x = *xp;
    if (x != x) {
      *rp = x + x;
      return kStatusOk;
    }
    if (x <= -1.0) {
      if (x == -1.0) {
        *rp = -1.0 / opaque(0.0);  // -infinity, divide-by-zero
        return kStatusPole;
      }
      *rp = opaque(0.0) / 0.0;  // NaN, invalid
      return kStatusDomain;
    }
    if (x > kBig) {
      // ln(1 + x) = ln x + 1/x with 1/x < 2^-1000: ln(x 2^-512) + 512 ln 2.
      *rp = x == __builtin_inf() ? x : core<2>(F64x2(x * 0x1p-512), F64x2(0.0), 512.0)[0];
      return kStatusOk;
    }
    double y = vec<2>(F64x2(x))[0];
    *rp = y;
    uint64_t ay = bits_of(y) & 0x7fffffffffffffffull;
    return ay != 0 && ay < 0x0010000000000000ull ? kStatusUnderflow : kStatusOk;
  }
};

// ---- double, fast class (_native) -------------------------------------------------
//
// ln(1 + x) with one double per table row and a degree-5 polynomial. Max
// error 2.19 ulp (worst x = 0x1.0001d9cac5a68p-11). Same reduction; the table holds T(R) = -ln(R/512) for
// R <= 724 and -ln(R/1024) above, with e' = E - 1022 or E - 1023 to match, so
// u just below 1 (R = 512, E = 1022) and just above (R = 1024, E = 1023) both
// have e' = 0 and T = 0:
//   result = fma(e', ln2, T) + (r + (d + r^2 (-1/2 + r/3 - r^2/4 + r^3/5))).
// The rounding of T and of the first sum, and the remainder r^6/6, make the error.
template <int L> RAVL_INLINE Vec<double, L> log1p_fast(Vec<double, L> x) {
  using V = Vec<double, L>;
  V u = V(1.0) + x;
  V c = x - (u - V(1.0));
  Reduced<L> q = reduce<L>(u, c);
  V t = gather(reinterpret_cast<const double*>(log_tables::kLogFast), row<L>(q.R, 43));
  V e = unbiased<L>(q.ub, select(q.R <= V(724.0), V(1.0), V(0.0)));
  V r = q.r;
  V p = fma(r * r, fma(r, fma(r, fma(r, V(kP5), V(kP4)), V(kP3)), V(kP2)), q.d);
  V y = fma(e, V(kLn2), t) + (r + p);
  return as_float<V>(as_uint(y) | sign_bit(x));
}

struct Log1pFast : Log1pFull {
  template <int L> static RAVL_INLINE Vec<double, L> vec(Vec<double, L> x) { return log1p_fast<L>(x); }
};

// ---- single, full class (plain) --------------------------------------------------
//
// ln(1 + x) on singles, computed in double on the widened lanes and rounded
// once to single. Max error 0.5005 ulp (worst x = -0x1.288274p-2; the double
// value's relative error is below 2^-34).
// u = 1 + x in double (exact for single x with |x| >= 2^-29 up to 2^29; beyond,
// its rounding is below 2^-53 relative) = 2^e m with m in [sqrt(1/2), sqrt(2));
// f = m - 1 (exact), or f = x itself when e = 0 (x in about [-0.29, 0.41]:
// tiny x keeps all its bits). ln(1 + f) = 2 atanh(s), s = f/(2 + f) (one
// division), |s| <= 0.1716:
//   ln(1 + f) = 2s + s w (2/3 + 2/5 w + 2/7 w^2 + 2/9 w^3 + 2/11 w^4), w = s^2
// (remainder 2 s^13/13 < 2^-34 |2s|); result = e ln2 + ln(1 + f).
constexpr uint64_t kSqrtHalfBitsD = 0x3fe6a09e667f3bcdull;  // sqrt(1/2)
constexpr uint64_t kHighMask = 0xfff0000000000000ull;

template <int L> RAVL_INLINE Vec<double, L> log1pf_core(Vec<double, L> x) {
  using V = Vec<double, L>;
  using U = Vec<uint64_t, L>;
  V u = V(1.0) + x;
  U ix = as_uint(u) - U(kSqrtHalfBitsD);
  U eb = ix & U(kHighMask);  // e in the exponent field (with sign bits)
  V m = as_float<V>(as_uint(u) - eb);
  // e + 1024 as an integer, then as a double: the magic 2^52 takes it exactly.
  V e = as_float<V>(((ix + U(1024ull << 52)) >> 52) | U(kTwo52Bits)) - V(kTwo52 + 1024);
  V f = select(eb == U(0), x, m - V(1.0));
  V s = f / (f + V(2.0));
  V w = s * s;
  V q = fma(w, fma(w, fma(w, fma(w, V(2.0 / 11), V(2.0 / 9)), V(2.0 / 7)), V(0.4)), V(2.0 / 3));
  V lg = fma(s * w, q, s + s);
  return fma(e, V(kLn2), lg);
}

template <int L, class F> RAVL_INLINE Vec<float, L> via_double(Vec<float, L> x, F f) {
  if constexpr (L == 4) {
    return convert<float>(f(convert<double>(x)));
  } else {
    return join(via_double<4>(slice<0, 4>(x), f), via_double<4>(slice<4, 4>(x), f));
  }
}

struct Log1pfFull : frame::Kernel {
  using sig = float(float);
  static constexpr bool has_callout = true;
  template <int L> static RAVL_INLINE Vec<float, L> vec(Vec<float, L> x) {
    Vec<float, L> y = via_double<L>(x, [](F64x4 v) { return log1pf_core<4>(v); });
    return as_float<Vec<float, L>>(as_uint(y) | sign_bit(x));
  }
  // Not -1 < x <= FLT_MAX (NaN included).
  template <int L> static RAVL_INLINE Mask<float, L> special(Vec<float, L> x, Vec<float, L>) {
    using V = Vec<float, L>;
    return ~((x > V(-1.0f)) & (x <= V(kMaxf)));
  }
  // The single special-lane routine, shared by both single classes.
  static RAVL_INLINE int scalar(const float* xp, float* rp) {
    float x = *xp;
    if (x != x) {
      *rp = x + x;
      return kStatusOk;
    }
    if (x <= -1.0f) {
      if (x == -1.0f) {
        *rp = (float)(-1.0 / opaque(0.0));
        return kStatusPole;
      }
      *rp = (float)(opaque(0.0) / 0.0);
      return kStatusDomain;
    }
    if (x == __builtin_inff()) {
      *rp = x;
      return kStatusOk;
    }
    float y = (float)log1pf_core<2>(F64x2((double)x))[0];
    y = x < 0 ? -__builtin_fabsf(y) : y;  // -0 stays -0
    *rp = y;
    uint32_t ay = bits_of(y) & 0x7fffffffu;
    return ay != 0 && ay < 0x00800000u ? kStatusUnderflow : kStatusOk;
  }
};

// ---- single, fast class (_native) -------------------------------------------------
//
// ln(1 + x) in single precision with no table. Max error 3.14 ulp (worst
// x = 0x1.a9752cp-2).
// u = 1 + x = 2^e m with m in [sqrt(1/2), sqrt(2)); f = m - 1 (exact), or
// f = x itself when e = 0 (x in about [-0.29, 0.41]: no rounding of 1 + x
// there, so x near zero keeps its relative accuracy).
// ln(1 + f) = 2 atanh(s), s = f/(2 + f), |s| <= 0.1716:
//   ln(1 + f) = f - f s + s (2/3 s^2 + 2/5 s^4 + 2/7 s^6)   (2s = f - f s),
// so tiny f returns f; 1/(2 + f) from the reciprocal estimate and one Newton
// step. result = e ln2 + ln(1 + f). Elsewhere the rounding of 1 + x (up to
// half an ulp of u) is the main error.
constexpr uint32_t kSqrtHalfBits = 0x3f3504f3u;  // sqrt(1/2) = 0.707106769
constexpr float kLn2f = f32_bits(0x3f317218u);   // ln2 = 0.693147182

struct Log1pfFast : Log1pfFull {
  template <int L> static RAVL_INLINE Vec<float, L> vec(Vec<float, L> x) {
    using V = Vec<float, L>;
    using I = Vec<int32_t, L>;
    V u = V(1.0f) + x;
    I e = (as_int(u) - I((int32_t)kSqrtHalfBits)) >> 23;
    V m = as_float<V>(as_int(u) - (e << 23));
    V f = select(e == I(0), x, m - V(1.0f));
    V d = f + V(2.0f);
    V y0 = rcp_approx(d);
    V y1 = fma(y0, fnma(d, y0, V(1.0f)), y0);
    V s = f * y1;
    V w = s * s;
    V q = w * fma(w, fma(w, V(2.0f / 7), V(0.4f)), V(2.0f / 3));
    V lg = fma(s, q - f, f);
    V res = fma(convert<float>(e), V(kLn2f), lg);
    return as_float<V>(as_uint(res) | sign_bit(x));
  }
};

}  // namespace log1p_detail

namespace log1p_k {
using full = log1p_detail::Log1pFull;
using fast = log1p_detail::Log1pFast;
}  // namespace log1p_k
namespace log1pf_k {
using full = log1p_detail::Log1pfFull;
using fast = log1p_detail::Log1pfFast;
}  // namespace log1pf_k

}  // namespace ravl

#include "entries/log1p.inc"
#include "entries/log1pf.inc"
