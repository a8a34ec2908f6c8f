// What the sinh and cosh families share: the lane bound of their double vector
// paths, the single lane test, and the scalar routines (double and single),
// which compute e^|x| and e^-|x| with the exp family's scalar reduction
// (exp_common.h: 64 steps of ln2/64, hi_j + hi_j q).
#pragma once

#include "exp_log/exp_common.h"
#include "frame/entry.h"
#include "tables/hyperbolic.h"
#include "tables/logtab.h"

namespace ravl {
namespace sinh_cosh {

using namespace exp_common;

// ---- bounds ------------------------------------------------------------------

// The double vector paths keep the |x| whose upper word is at most 0x40861d99:
// |x| < 707.7001953125 (0x40861d9a00000000), where 2^k (k = N >> 8 or N >> 7)
// and every scaled table entry stay normal. Tested as one signed compare of
// the whole pattern of |x| with 0x40861d99ffffffff: infinities and NaN
// included.
constexpr uint64_t kBoundBits = 0x40861d99ffffffffull;
// The single vector paths (the double algorithms on the widened lanes) keep
// |x| <= 89.0 (0x42b20000): sinh and cosh overflow a single above
// ln(2 FLT_MAX) = 89.4159862.
constexpr uint32_t kBoundfBits = 0x42b20000u;
// |x| at or above 710.475860073944 (0x408633ce8fb9f87e, ln(2 DBL_MAX) =
// ln DBL_MAX + ln 2 rounded) overflows e^|x|/2.
constexpr double kOverflowArg = f64_bits(0x408633ce8fb9f87eull);
// |x| >= 21.487562597358306 (0x40357cd0e7026820): e^-|x| is below half an ulp
// of e^|x| (e^(-2|x|) < 2^-62), so sinh and cosh are e^|x|/2 with the sign.
constexpr double kBig = f64_bits(0x40357cd0e7026820ull);
// sinh: |x| < 0.02720470510300388 (0x3f9bdb8cdadbe120) takes the odd series.
constexpr double kSeries = f64_bits(0x3f9bdb8cdadbe120ull);
// sinh series x + x^3/3! + ... + x^9/9!: x^11/11! < 2^-60 x on that range.
constexpr double kT3 = f64_bits(0x3fc5555555555555ull);  // 1/6 = 0.16666666666666666
constexpr double kT5 = f64_bits(0x3f81111111111111ull);  // 1/120 = 0.008333333333333333
constexpr double kT7 = f64_bits(0x3f2a01a01a01a01aull);  // 1/5040 = 0.0001984126984126984
constexpr double kT9 = f64_bits(0x3ec71de3a556c734ull);  // 1/362880 = 2.7557319223985893e-6
// DBL_MIN = 2.2250738585072014e-308 (0x0010000000000000): x + x DBL_MIN is x
// and raises underflow for a denormal x.
constexpr double kDblMin = f64_bits(0x0010000000000000ull);

// ---- constants of both double vector paths ------------------------------------------

constexpr double kInvLn2 = f64_bits(0x3ff71547652b82feull);  // 1/ln2 = 1.4426950408889634
// cosh r - 1 ~ r^2 (c2 + c4 r^2), the same in both families.
constexpr double kC2 = f64_bits(0x3fdffffffffffdbdull);  // 0.49999999999996786
constexpr double kC4 = f64_bits(0x3fa55555cf16d299ull);  // 0.041666680840909361
// ln2 = kLn2Hi + kLn2Lo (sinh's full class): the high part
// with 17 trailing zero bits, 0.69314718055829871, and 1.6465949582897082e-12.
constexpr double kLn2Hi = f64_bits(0x3fe62e42fefa0000ull);
constexpr double kLn2Lo = f64_bits(0x3d7cf79abc9e3b3aull);
// ln2 as one double, 0.69314718055994529 (the fast classes' reduction).
constexpr double kLn2 = f64_bits(0x3fe62e42fefa39efull);

// ---- the double scalar routine --------------------------------------------------

// e^(+-a)/2 = H + V: H = hi_j 2^(m-1) exact, V = v 2^(m-1).
struct HalfExp {
  double h, v;
};
RAVL_INLINE HalfExp half_exp(double a) {
  const ExpSplit e = exp_split(a);
  const double s = pow2(e.m - 1 + 1023);
  return {e.hi * s, e.v * s};
}

// e^a/2 for kBig <= a < kOverflowArg (m up to 1025: scaled by 2^(m-1)).
RAVL_INLINE double half_exp_big(double a) {
  const ExpSplit e = exp_split(a);
  return scale_pow2(e.v + e.hi, e.m - 1);
}

// cosh (kOdd = false) or sinh (kOdd = true) of any double. Results: NaN ->
// quiet NaN; cosh(+-inf) = +inf, sinh(+-inf) = +-inf; |x| >= 710.4758600739439
// overflows (status 3); cosh(|x| < 2^-54) = 1; sinh of a tiny x is x (status
// 4 when x is denormal). Max error below 0.52 ulp (e^|x|/2 alone: the exp
// routine's 0.51 ulp; mid range: the sum and difference of H+ and H- exact by
// Fast2Sum, the small parts adding under 2^-56 of the result, which takes the
// place of a Dekker-split product of the two exponentials).
template <bool kOdd> RAVL_INLINE int scalar(const double* xp, double* rp) {
  const double x = *xp;
  const double a = __builtin_fabs(x);
  const uint64_t e = bits_of(x) >> 52 & 2047;
  const double sign = kOdd && x < 0 ? -1.0 : 1.0;
  if (e == 2047) {
    *rp = kOdd ? x + x : x * x;  // NaN quietened; +-inf
    return kStatusOk;
  }
  if (a >= kOverflowArg) {
    *rp = sign * (opaque(kHuge) * 2.0);
    return kStatusOverflow;
  }
  if (a >= kBig) {
    *rp = sign * half_exp_big(a);
    return kStatusOk;
  }
  if (kOdd) {
    if (e < 970) {  // |x| < 2^-52: x^3/6 far below half an ulp of x
      *rp = x + x * opaque(kDblMin);
      return denormal_status(*rp);
    }
    if (a < kSeries) {
      const double x2 = x * x;
      *rp = fma(x, x2 * fma(x2, fma(x2, fma(x2, kT9, kT7), kT5), kT3), x);
      return kStatusOk;
    }
  } else if (e < 0x3c9) {  // |x| < 2^-54: cosh rounds to 1
    *rp = 1.0;
    return kStatusOk;
  }
  const HalfExp p = half_exp(a), m = half_exp(-a);
  const double mh = kOdd ? -m.h : m.h, mv = kOdd ? -m.v : m.v;
  // p.h + mh = s + err exactly (|p.h| >= |mh|).
  const double s = p.h + mh;
  const double err = mh - (s - p.h);
  *rp = sign * (s + ((p.v + mv) + err));
  return kStatusOk;
}

// The single routine: the double one on the widened x, rounded once.
template <bool kOdd> RAVL_INLINE int scalarf(const float* xp, float* rp) {
  const double x = *xp;
  double y;
  scalar<kOdd>(&x, &y);
  *rp = (float)y;
  if (__builtin_isinf(*rp) && !__builtin_isinf(x)) return kStatusOverflow;
  return denormal_status(*rp);
}

// The single lane test: |x| > 89.0, infinities and NaN (one integer compare).
struct FloatRows : BoundRows<float, kBoundfBits> {};
inline constexpr FloatRows kFloatRows{};

// ---- the pair kernel: sinh and cosh from one reduction on single lanes ---------------
//
// For a >= 0: n = round(a/ln2) (the shifter's low bits), r = a - n ln2 in two
// fused steps (ln2's high part has trailing zeros: n ln2_hi is exact for every
// n in use), w = r^2, |r| <= ln2/2, and
//   C = cosh r = 1 + w Pc(w),  S = sinh r = r + r w Ps(w)
// (tables/hyperbolic.h kPairF; fit error 2^-30.8). As e^a = 2^n (C + S) and
// e^-a = 2^-n (C - S), with P = 2^(n-1), Q = 2^(-n-1):
//   sinh a = Dm C + Dp S,  cosh a = Dp C + Dm S,  Dm = P - Q, Dp = P + Q.
// At n = 0, Dm = 0 and Dp = 1 exactly: sinh a = S and cosh a = C, so a small
// a keeps its relative accuracy (a tiny or denormal a gives S = a exactly).
// For n >= 1 the two products have the same sign (|S| <= 0.36 C) and nothing
// cancels. P is finite for n up to 128 (a up to 89.0, the lane bound of sinhf
// and coshf); Q is built from min(n, 125) so that it stays normal, and is
// then far below half an ulp of P.
struct PairRows {
  static constexpr int kN = 3;  // coefficients of Pc and of Ps
  static constexpr float coef(int i) { return f32_bits(hyperbolic_tables::kPairF[i]); }
  // 1/ln2 rounded to single (the log tables' constant).
  Row<float> inv_ln2 = row(f32_bits(logtab::kLog2ef));
  // 1.5 * 2^23 (0x4b400000): a/ln2 + shift rounds to an integer n held in the
  // low bits of the pattern.
  Row<float> shift = row(f32_bits(0x4b400000u));
  // ln2 = hi + lo (the log family's pair, hi on the grid 2^-17).
  Row<float> ln2_hi = row(f32_bits(logtab::kLn2HiF)), ln2_lo = row(f32_bits(logtab::kLn2LoF));
  Row<float> pc[kN] = {row(coef(0)), row(coef(1)), row(coef(2))};
  Row<float> ps[kN] = {row(coef(4)), row(coef(5)), row(coef(6))};
  Row<float> one = row(1.0f);
  // n = (pattern of a/ln2 + shift) - shift_bits. P's pattern: (n + 126)
  // moved to the exponent field, i.e. (pattern - p_off) << 23; Q's:
  // (126 - min(n, q_cap)) << 23.
  Row<int32_t> shift_bits = row<int32_t>(0x4b400000), p_off = row<int32_t>(0x4b400000 - 126),
               q_cap = row<int32_t>(125), q_top = row<int32_t>(126);
  Row<uint32_t> sign = row(0x80000000u), abs = row(0x7fffffffu);
};
inline constexpr PairRows kPairRows{};

template <int L> struct PairParts {
  Vec<float, L> dm, dp, c, s;  // P - Q, P + Q, cosh r, sinh r
};

// The parts for a = |x| (0 <= a <= 89.0; a NaN a gives NaN parts).
template <int L> RAVL_INLINE PairParts<L> pair_parts(Vec<float, L> a, const PairRows& k) {
  using V = Vec<float, L>;
  using I = Vec<int32_t, L>;
  constexpr int kN = PairRows::kN;
  V v = fma(a, get<V>(k.inv_ln2), get<V>(k.shift));
  V n = v - get<V>(k.shift);
  V r = fnma(n, get<V>(k.ln2_hi), a);
  r = fnma(n, get<V>(k.ln2_lo), r);
  V w = r * r;
  V pc = get<V>(k.pc[kN - 1]), ps = get<V>(k.ps[kN - 1]);
  for (int i = kN - 2; i >= 0; --i) {
    pc = fma(pc, w, get<V>(k.pc[i]));
    ps = fma(ps, w, get<V>(k.ps[i]));
  }
  I vi = as_int(v);
  I ni = vi - get<I>(k.shift_bits);
  I nq = select(ni > get<I>(k.q_cap), get<I>(k.q_cap), ni);
  V p = as_float<V>((vi - get<I>(k.p_off)) << 23);
  V q = as_float<V>((get<I>(k.q_top) - nq) << 23);
  return {p - q, p + q, fma(w, pc, get<V>(k.one)), fma(r * w, ps, r)};
}

// The four kernels of a family from its double path Path::run<kFull, L>: the
// double classes (full: the two-part reduction; fast: one constant) with the
// double lane test and routine, the single classes the same paths on the
// widened lanes with the single lane test and routine.
template <const auto& kRows, bool kOdd, class Path> struct Kernels {
  using Base = AbsBoundKernel<double, kRows, scalar<kOdd>>;
  using BaseF = AbsBoundKernel<float, kFloatRows, scalarf<kOdd>>;
  template <bool kFull> struct Double : Base {
    template <int L> static RAVL_INLINE Vec<double, L> vec(Vec<double, L> x) { return Path::template run<kFull, L>(x); }
  };
  template <bool kFull> struct Single : BaseF {
    template <int L> static RAVL_INLINE Vec<float, L> vec(Vec<float, L> x) {
      return via_double<L>(x, [](F64x4 v) { return Path::template run<kFull, 4>(v); });
    }
  };
  // The single _native class: the pair kernel on the float lanes (the lanes
  // above 89.0 go to the routine), sign ORed back for sinh.
  struct SingleFast : BaseF {
    template <int L> static RAVL_INLINE Vec<float, L> vec(Vec<float, L> x) {
      using V = Vec<float, L>;
      using U = Vec<uint32_t, L>;
      const PairRows& k = rows(kPairRows);
      const PairParts<L> t = pair_parts<L>(as_float<V>(as_uint(x) & get<U>(k.abs)), k);
      V y = kOdd ? fma(t.dm, t.c, t.dp * t.s) : fma(t.dp, t.c, t.dm * t.s);
      return kOdd ? as_float<V>(as_uint(y) | (as_uint(x) & get<U>(k.sign))) : y;
    }
  };
};

}  // namespace sinh_cosh
}  // namespace ravl
