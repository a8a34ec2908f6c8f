// The arithmetic shared by the gamma families (lgamma, lgammar, tgamma and
// their single forms, in lgamma.cpp, lgammar.cpp and tgamma.cpp): the 4-lane
// vector paths, the special-value rules and the scalar routines.
//
// Positive x in [2^-1000, 2^1000] (the vector paths, "the 4-lane vector
// paths" below): plain double arithmetic with a few double-word steps, from
// rows of width 1/8 on [1, 8) (expanded about the zeros 1 and 2 on the rows
// that touch them), ln Gamma(1 + x) - ln x below 1 and Stirling in ln from 8;
// Gamma = e^(ln Gamma) with the exponent as a double-word value.
//
// The scalar routines' accurate positive path (log2_gamma, shifted), for
// the reflection below and for Gamma between 171.6 and its overflow:
//   z = x + n, n = the number of k in 0..7 with x + k < 8 (so z >= 8 up to a
//   rounding), P = x (x + 1) ... (x + n - 1), each factor x + k and the
//   product carried as double-word values (P = 1 for x >= 8);
//   log2 Gamma(z) = (z - 1/2) log2 z - z log2(e) + log2(2 pi)/2 + S(z) log2(e)
//   (Stirling), log2 z from pow_core's log2_accurate (double-word, relative
//   error below 2^-70), every product with its fused rounding error, S from
//   the fitted remainder (tables/gamma.h, absolute error 2^-68.3);
//   log2 Gamma(x) = log2 Gamma(z) - log2 P, the difference exact, its
//   absolute error below about 2^-64 for moderate x.
//
// Negative x (the scalar routines), reflection without a subtraction of
// nearly equal large arguments:
//   |Gamma(x)| = pi / (|x sin(pi x)| Gamma(-x)),
//   log2 |Gamma(x)| = log2 pi - log2 |x sin(pi x)| - log2 Gamma(-x),
// with sin(pi x) from an exact reduction of |x| to [0, 1/4] (the fractional
// part and its mirrors are exact) and double-word series, every term a
// double-word value; the sign of Gamma(x) is (-1)^(floor(x)) for
// non-integer x < 0 (negative on (-1, 0), positive on (-2, -1), ...).
// Near the negative zeros of ln |Gamma| (-2.4570247382208006 and the others,
// one pair per unit interval) that difference of double-word terms keeps an
// absolute error near 2^-68 while the result goes to zero; within 2^-14 /
// |psi(r)| of each zero r down to -24 the scalar routine evaluates instead a
// polynomial in x - r fitted about r (r as a double-word value), which keeps
// the relative accuracy (measured: the accuracy table's comments).
#pragma once

#include "exp_log/log1p_core.h"
#include "frame/entry.h"
#include "pow_root/pow_core.h"
#include "tables/gamma.h"

namespace ravl {
namespace gamma_core {

using pow_core::Dd;
using pow_core::F64x4;
using pow_core::Lanes;
using pow_core::two_sum;

// ---- constants ---------------------------------------------------------------------

template <int i> constexpr double kC = f64_bits(gamma_tables::kConstants[i]);
constexpr double kHalfLog2TwoPiHi = kC<0>, kHalfLog2TwoPiLo = kC<1>;  // log2(2 pi)/2 = 1.3257480647361593
constexpr double kLog2eHi = kC<2>, kLog2eLo = kC<3>;                  // log2(e) = 1.4426950408889634
constexpr double kLn2Hi = kC<4>, kLn2Lo = kC<5>;                      // ln 2 = 0.69314718055994531
constexpr double kLog2PiHi = kC<6>, kLog2PiLo = kC<7>;                // log2(pi) = 1.6514961294723187
constexpr double kMinusEulerHi = kC<8>, kMinusEulerLo = kC<9>;        // -gamma = -0.57721566490153287
constexpr double kHalfLnTwoPiHi = kC<10>, kHalfLnTwoPiLo = kC<11>;      // ln(2 pi)/2 = 0.91893853320467278
template <int i> constexpr double kS = f64_bits(gamma_tables::kStirling[i]);
constexpr double kShiftTo = 8.0;             // the Stirling series serves z >= 8
constexpr double kVecLo = 0x1p-1000;         // 9.3326361850321888e-302, the vector path's lower bound
constexpr double kVecHi = 0x1p1000;          // 1.0715086071862673e301, its upper bound (ln Gamma)
// The vector path's upper bound for Gamma, 0x4065733333333333: log2 Gamma(171.6)
// = 1023.83, so the scale 2^k of exp2_accurate stays at k <= 1023.
constexpr double kTgammaVecHi = 171.6;
// The largest x with a finite Gamma(x), 0x406573fae561f647; the next double up
// gives +inf.
constexpr double kTgammaMax = 171.62437695630271;

// ---- double-word helpers (one double or 4-lane chunks) -------------------------------

template <class V> RAVL_INLINE Dd<V> fast_two_sum(V a, V b) {  // |a| >= |b| or a = 0
  const V s = a + b;
  return {s, b - (s - a)};
}
template <class V> RAVL_INLINE Dd<V> mul(Dd<V> a, Dd<V> b) {
  const V p = a.hi * b.hi;
  return fast_two_sum(p, fma(a.hi, b.hi, -p) + fma(a.hi, b.lo, a.lo * b.hi));
}
template <class V> RAVL_INLINE Dd<V> add(Dd<V> a, Dd<V> b) {
  const Dd<V> s = two_sum(a.hi, b.hi);
  return fast_two_sum(s.hi, s.lo + (a.lo + b.lo));
}
template <class V> RAVL_INLINE Dd<V> neg(Dd<V> a) { return {-a.hi, -a.lo}; }
template <class V> RAVL_INLINE Dd<V> dd(double hi, double lo) { return {V(hi), V(lo)}; }

RAVL_INLINE double pick(bool m, double a, double b) { return m ? a : b; }
template <class M, class V> RAVL_INLINE V pick(M m, V a, V b) { return select(m, a, b); }

// log2 of a positive normal double-word value v (v.lo/v.hi below 2^-52).
template <class V> RAVL_INLINE Dd<V> log2_dd(Dd<V> v) {
  Dd<V> l = pow_core::log2_accurate(v.hi, V(0.0));
  l.lo = fma(v.lo / v.hi, V(kLog2eHi), l.lo);
  return l;
}

// ---- the positive path ---------------------------------------------------------------

template <class V> struct Shifted {
  Dd<V> g2;  // log2 Gamma(z)
  Dd<V> p;   // P, Gamma(x) = Gamma(z) / P
};

// z, P and log2 Gamma(z) for x in [2^-1000, 2^1000] (other lanes: garbage).
template <class V> RAVL_INLINE Shifted<V> shifted(V x) {
  const auto m0 = x < V(kShiftTo);
  Dd<V> f[8];
  f[0] = {pick(m0, x, V(1.0)), V(0.0)};
  V n = pick(m0, V(1.0), V(0.0));
  for (int k = 1; k < 8; ++k) {
    const Dd<V> s = two_sum(x, V((double)k));  // x + k exactly
    const auto mk = s.hi < V(kShiftTo);
    f[k] = {pick(mk, s.hi, V(1.0)), pick(mk, s.lo, V(0.0))};
    n = pick(mk, V((double)(k + 1)), n);
  }
  // The product as a tree of three levels (the factors are independent), so
  // that its latency is three double-word products rather than seven.
  const Dd<V> p = mul(mul(mul(f[0], f[1]), mul(f[2], f[3])), mul(mul(f[4], f[5]), mul(f[6], f[7])));
  const Dd<V> z = two_sum(x, n);
  // Stirling in base 2 on z = zh + zl (zh >= 8 up to a rounding).
  const V r = V(1.0) / z.hi;
  Dd<V> l = pow_core::log2_accurate(z.hi, V(0.0));
  l.lo = fma(z.lo * r, V(kLog2eHi), l.lo);
  const Dd<V> a = two_sum(z.hi, V(-0.5));  // z - 1/2 = a.hi + (a.lo + zl)
  const V al = a.lo + z.lo;
  const V pa = a.hi * l.hi;
  const V ea = fma(a.hi, l.hi, -pa) + fma(a.hi, l.lo, al * l.hi);
  const V q = z.hi * V(kLog2eHi);
  const V eq = fma(z.hi, V(kLog2eHi), -q) + fma(z.hi, V(kLog2eLo), z.lo * V(kLog2eHi));
  // S log2(e) = (r + r_lo) (c0 + (c0_lo + w Q(w))), 1/z = r + r_lo to about
  // 2^-100 (both roundings of r and of a single product would cost 2^-59 at
  // z = 8), the product r c0 exact.
  const V r_lo = (fma(-r, z.hi, V(1.0)) - z.lo * r) * r;
  const V w = r * r;
  const V qw = w * fma(fma(fma(fma(fma(fma(V(kS<7>), w, V(kS<6>)), w, V(kS<5>)), w, V(kS<4>)), w, V(kS<3>)), w,
                           V(kS<2>)), w, V(kS<1>));
  const V sh = r * V(kS<0>);
  const V sl = fma(r, V(kS<0>), -sh) + fma(r, qw + V(kS<8>), r_lo * V(kS<0>));  // kS<8>: c0's low part
  const Dd<V> s1 = two_sum(pa, -q);
  const Dd<V> s2 = two_sum(s1.hi, V(kHalfLog2TwoPiHi));
  const Dd<V> s3 = two_sum(s2.hi, sh);
  const V lo = ((s1.lo + s2.lo) + (ea - eq)) + ((s3.lo + V(kHalfLog2TwoPiLo)) + sl);
  return {fast_two_sum(s3.hi, lo), p};
}

// log2 Gamma(x) as a double-word value, x in [2^-1000, 2^1000].
template <class V> RAVL_INLINE Dd<V> log2_gamma(V x) {
  const Shifted<V> sh = shifted(x);
  const Dd<V> lp = log2_dd(sh.p);
  const Dd<V> d = two_sum(sh.g2.hi, -lp.hi);
  return fast_two_sum(d.hi, d.lo + (sh.g2.lo - lp.lo));
}

// v ln 2 rounded once.
template <class V> RAVL_INLINE V times_ln2(Dd<V> v) {
  const V h = v.hi * V(kLn2Hi);
  return h + (fma(v.hi, V(kLn2Hi), -h) + fma(v.hi, V(kLn2Lo), v.lo * V(kLn2Hi)));
}

// ---- the 4-lane vector paths (lanes they cannot serve made NaN) ----------------------
//
// ln Gamma(x) for x in [2^-1000, 2^1000] in plain double arithmetic with a
// few double-word steps, three forms chosen per lane:
//   1 <= x < 8: a row of tables/gamma.h (kPieces, rows of width 1/8 from 1):
//     ln Gamma(c + u) = c0 + u (p0 + p1 u + ... + p11 u^11), u = x - c exact
//     (c a multiple of 1/16 and |u| <= 1/8), c0 and p0 double-word; c is the
//     zero 1 or 2 of ln Gamma on the rows that touch one (c0 = 0), so the
//     result keeps its relative accuracy down to the zeros. Q = p1 + ... by
//     Horner's rule, p0 + u Q as ph + pl (Fast2Sum), then T = th + tl with
//     u ph exact (product and fused error) and th = c0_hi + u ph by Fast2Sum;
//   x < 1: ln Gamma(x) = ln Gamma(1 + x) - ln x, the first from the row of
//     1 + x with u = x - (c - 1) (exact: c - 1 is a multiple of 1/16 and
//     |u| <= 1/8, or c = 1 and u = x), ln x double-word (lh + ll, the log1p
//     family's full-table logarithm, error below 1e-20), the sum -lh + T_hi
//     exact (TwoSum). Near x = 1 (1 + x near the zero 2) the terms cancel to
//     0.58 of -ln x, whose error is far below the last place;
//   x >= 8: Stirling, (x - 1/2) ln x - x + ln(2 pi)/2 + S(x), the product
//     (x - 1/2)(lh + ll) double-word, S(x) = (1/x) h(1/x^2) (kStirlingLn,
//     error 2^-60.6), the sums (x - 1/2) lh - x (Fast2Sum: (x - 1/2) ln x
//     >= 15.6 > x) and + ln(2 pi)/2 (TwoSum) exact.
// The result is hi + lo (|lo| up to 0.0105 in Stirling's form): ln Gamma
// rounds it once, Gamma takes e^(hi + lo) with pow_core's accurate power of two. Its
// absolute error stays below about 2^-60 up to x = 171.6 (ln x 1e-20 times
// x - 1/2 at most 2^-59.5 at 171; the rows 2^-60.8, Stirling's S 2^-60.6),
// so Gamma's relative error before its rounding is near 2^-59.
constexpr double kPiecesEnd = 8.0;      // Stirling from here
constexpr int kPieceStride = 16;        // doubles a row (kPieces)
constexpr int kPieceStrideF = 8;        // doubles a row (kPiecesF)
constexpr int kPieceRows = (int)(sizeof gamma_tables::kPieces / sizeof gamma_tables::kPieces[0]) / kPieceStride;
template <int i> constexpr double kSL = f64_bits(gamma_tables::kStirlingLn[i]);
template <int i> constexpr double kSLF = f64_bits(gamma_tables::kStirlingLnF[i]);

// The row of x (1 + x for x < 1: d = 1) as a byte offset, kBytes a row:
// floor(8 (x + d - 1)) clamped to the table (NaN lanes to row 0; lanes
// from 8 up read the last row, which they do not use).
template <int kBytes> RAVL_INLINE I64x4 piece_offset(F64x4 xd) {
  const F64x4 t = hw_min(hw_max(fma(xd, F64x4(8.0), F64x4(-8.0)), F64x4(0.0)), F64x4(kPieceRows - 0.5));
  return convert<int64_t>(cvtt_i32(t)) * kBytes;
}

// ln x as lh + ll for x in [2^-1000, 2^1000] (log1p_core.h's reduction of x
// + 0 and its full table).
RAVL_INLINE F64x4 ln_dd(F64x4 x, F64x4& ll) {
  using namespace log1p_detail;
  const Log1pFullRows& k = rows(kLog1pFullRows);
  Log1pParts<4> q;
  q.p = logd::reduce<false>(x, k);
  q.d = F64x4(0.0);
  return Log1pFull::core_dd(q, k, ll);
}

// ln Gamma(x) = hi + lo (returned: hi) for x in [2^-1000, 2^1000].
RAVL_INLINE F64x4 lgamma_dd(F64x4 x, F64x4& lo) {
  using V = F64x4;
  const auto below1 = x < V(1.0);
  const auto stirling = x >= V(kPiecesEnd);
  const V d = select(below1, V(1.0), V(0.0));
  V col[kPieceStride];
  gather_cols<kPieceStride>(reinterpret_cast<const double*>(gamma_tables::kPieces),
                            piece_offset<8 * kPieceStride>(x + d), col);
  const V u = x - (col[0] - d);  // col: c, c0_hi, c0_lo, p0_hi, p0_lo, p1 .. p11
  V q = col[kPieceStride - 1];
  for (int j = kPieceStride - 2; j >= 5; --j) q = fma(q, u, col[j]);
  const V uq = u * q;
  const V ph = col[3] + uq;
  const V pl = ((col[3] - ph) + uq) + col[4];
  // T = c0 + u (ph + pl) as th + tl: u ph exactly (product and its fused
  // error), c0_hi + u ph by Fast2Sum (c0_hi = 0 on the rows of a zero, and
  // |u ph| <= |c0_hi| on the others: |u| <= 1/16 and |psi(c)| < 0.6 there).
  const V p = u * ph;
  const V th = col[1] + p;
  const V tl = ((col[1] - th) + p) + (fma(u, ph, -p) + fma(u, pl, col[2]));
  V ll;
  const V lh = ln_dd(x, ll);
  // Stirling (x >= 8).
  const V a = x - V(0.5);
  const V sh = a * lh;
  const V sl = fma(a, lh, -sh) + a * ll;
  const V h1 = sh - x;
  const V e1 = (sh - h1) - x;
  const V r = V(1.0) / x;
  const V w = r * r;
  const V s = r * fma(fma(fma(fma(fma(fma(V(kSL<6>), w, V(kSL<5>)), w, V(kSL<4>)), w, V(kSL<3>)), w, V(kSL<2>)), w,
                          V(kSL<1>)), w, V(kSL<0>));
  const V s_lo = ((sl + e1) + s) + V(kHalfLnTwoPiLo);
  // hi + lo = TwoSum(A, B) + L per form.
  const V A = select(stirling, h1, select(below1, -lh, th));
  const V B = select(stirling, V(kHalfLnTwoPiHi), select(below1, th, V(0.0)));
  const V L = select(stirling, s_lo, select(below1, tl - ll, tl));
  const Dd<V> sum = two_sum(A, B);
  lo = sum.lo + L;
  return sum.hi;
}

// ln Gamma: flags x not in [2^-1000, 2^1000] (NaN, zeros, negative x,
// infinities, tiny and huge x).
RAVL_INLINE F64x4 lgamma_vec4(F64x4 x) {
  const auto flagged = not_le(F64x4(kVecLo), x) | not_le(x, F64x4(kVecHi));
  F64x4 lo;
  const F64x4 hi = lgamma_dd(x, lo);
  return pow_core::mark(hi + lo, flagged);
}
// Gamma = e^(hi + lo) = 2^((hi + lo) log2(e)), the exponent double-word:
// flags x not in [2^-1000, 171.6] (log2 Gamma(171.6) = 1023.83, so the scale
// 2^(k >> 7) of exp2_accurate stays at k >> 7 <= 1023).
RAVL_INLINE F64x4 tgamma_vec4(F64x4 x) {
  using V = F64x4;
  using T = Lanes<V>;
  using U = typename T::U;
  const auto flagged = not_le(V(kVecLo), x) | not_le(x, V(kTgammaVecHi));
  V lo;
  // hi + lo made a double-word value (|lo| <= ulp(hi)/2; Stirling's lo holds S(x), up
  // to 0.0105), so that the reduction of exp2_accurate stays on its interval.
  const V hi = lgamma_dd(x, lo);  // before lo is read (argument order is unspecified)
  const Dd<V> g = fast_two_sum(hi, lo);
  const V zh = g.hi * V(kLog2eHi);
  const V zl = fma(g.hi, V(kLog2eHi), -zh) + fma(g.hi, V(kLog2eLo), g.lo * V(kLog2eHi));
  V eh, eq;
  const typename T::I k = pow_core::exp2_accurate(Dd<V>{zh, zl}, eh, eq);
  const V scale = T::num(((U)(k + 1023 * 128) >> 7) << 52);  // 2^(k >> 7)
  return pow_core::mark((eh + eq) * scale, flagged);
}

// ---- the single paths: the same forms in plain double ------------------------------
//
// For single x (exact as doubles) one double per step: the rows of kPiecesF
// (c, c0, p0 .. p5: relative error 2^-31.3), pow_core's ln_fast (within
// about 2^-48 absolute; relative near x = 1, where its table row is 0) and
// Stirling's S to 2^-36.8 (kStirlingLnF), so ln Gamma is within about 2^-30
// relative of the true value before the rounding to single (2^-6 of a
// single ulp); Gamma = exp_single(ln Gamma), within about 2^-28 relative,
// so the factorials that are singles come out exactly. The lane tests are
// the double paths'.
RAVL_INLINE F64x4 lgamma_plain(F64x4 x, const pow_core::FastRows& c) {
  using V = F64x4;
  const auto below1 = x < V(1.0);
  const V d = select(below1, V(1.0), V(0.0));
  V col[kPieceStrideF];
  gather_cols<kPieceStrideF>(reinterpret_cast<const double*>(gamma_tables::kPiecesF),
                             piece_offset<8 * kPieceStrideF>(x + d), col);
  const V u = x - (col[0] - d);  // col: c, c0, p0 .. p5
  V q = col[kPieceStrideF - 1];
  for (int j = kPieceStrideF - 2; j >= 2; --j) q = fma(q, u, col[j]);
  const V t = fma(u, q, col[1]);
  const V ln = pow_core::ln_fast(x, c);
  const V r = V(1.0) / x;
  const V w = r * r;
  const V s = r * fma(fma(V(kSLF<2>), w, V(kSLF<1>)), w, V(kSLF<0>));
  const V st = fma(x - V(0.5), ln, -x) + (s + V(kHalfLnTwoPiHi));
  return select(x >= V(kPiecesEnd), st, select(below1, t - ln, t));
}
// e^t for single Gamma, t in [-0.13, 708] (ln Gamma over [2^-1000, 171.6]):
// 2^z with z = t log2(e) (its rounding 2^-53 |z|, 2^-43 relative to Gamma at
// most), n = round(z) by the shifter 1.5 * 2^52, f = z - n in [-1/2, 1/2]
// exact, 2^f by the degree-7 polynomial kExp2 (relative error 2^-34.1), and n
// (0..1021, from the sum's low bits) added to the exponent field.
template <int i> constexpr double kE2 = f64_bits(gamma_tables::kExp2[i]);
RAVL_INLINE F64x4 exp_single(F64x4 t) {
  using V = F64x4;
  const V z = t * V(kLog2eHi);
  const V s = z + V(pow_core::kShift);
  const V f = z - (s - V(pow_core::kShift));
  const V p = fma(fma(fma(fma(fma(fma(fma(V(kE2<7>), f, V(kE2<6>)), f, V(kE2<5>)), f, V(kE2<4>)), f, V(kE2<3>)), f,
                          V(kE2<2>)), f, V(kE2<1>)), f, V(kE2<0>));
  return as_float<V>(as_uint(p) + (as_uint(s) << 52));
}
RAVL_INLINE F64x4 lgammaf_vec4(F64x4 x) {
  const pow_core::FastRows& c = rows(pow_core::kFastRows);
  const auto flagged = not_le(F64x4(kVecLo), x) | not_le(x, F64x4(kVecHi));
  return pow_core::mark(lgamma_plain(x, c), flagged);
}
RAVL_INLINE F64x4 tgammaf_vec4(F64x4 x) {
  const pow_core::FastRows& c = rows(pow_core::kFastRows);
  const auto flagged = not_le(F64x4(kVecLo), x) | not_le(x, F64x4(kTgammaVecHi));
  return pow_core::mark(exp_single(lgamma_plain(x, c)), flagged);
}

// ---- sin(pi x) ------------------------------------------------------------------------

// sum_k c_k T^k (c_k as (hi, lo) pairs, n of them) for a double-word T.
RAVL_INLINE Dd<double> series(const uint64_t* c, int n, Dd<double> t) {
  Dd<double> acc{f64_bits(c[2 * n - 2]), f64_bits(c[2 * n - 1])};
  for (int k = n - 2; k >= 0; --k) acc = add(mul(acc, t), Dd<double>{f64_bits(c[2 * k]), f64_bits(c[2 * k + 1])});
  return acc;
}

// |sin(pi a)| as a double-word value (relative error about 2^-100), for a >= 0
// not an integer, a < 2^52: r = a - floor(a) is exact, and so are 1 - r and
// 1/2 - r on the ranges where they are taken.
inline Dd<double> sinpi_abs(double a) {
  double r = a - __builtin_floor(a);
  if (r > 0.5) r = 1.0 - r;
  constexpr int n = (int)(sizeof gamma_tables::kSinPi / sizeof gamma_tables::kSinPi[0]) / 2;
  if (r > 0.25) {
    const double t = 0.5 - r;
    const double t2 = t * t;
    return series(gamma_tables::kCosPi, n, Dd<double>{t2, fma(t, t, -t2)});
  }
  const double t2 = r * r;
  const Dd<double> s = series(gamma_tables::kSinPi, n, Dd<double>{t2, fma(r, r, -t2)});
  const double h = s.hi * r;
  return fast_two_sum(h, fma(s.hi, r, -h) + s.lo * r);
}

// ln |Gamma(x)| near a negative zero r of it (tables/gamma.h, kRoots: -n - 1 <
// r < -n, n = 2..23, two per interval): t (c1 + c2 t + c3 t^2 + c4 t^3) with
// t = (x - r_hi) - r_lo, x - r_hi exact (x within 2^-14 relative of r), t as a
// double-word value and c1 t double-word, so the result keeps its relative
// accuracy down to the zero. Returns false outside every window.
inline bool near_negative_zero(double x, double* rp) {
  constexpr int kStride = 8, kRows = (int)(sizeof gamma_tables::kRoots / sizeof gamma_tables::kRoots[0]) / kStride;
  const double n = __builtin_floor(-x);
  if (!(n >= 2 && n < 2 + kRows / 2)) return false;
  for (int side = 0; side < 2; ++side) {
    const uint64_t* row = gamma_tables::kRoots + (2 * ((int)n - 2) + side) * kStride;
    const double th = x - f64_bits(row[0]);  // exact when x is near r
    if (!(__builtin_fabs(th) <= 2 * f64_bits(row[2]))) continue;
    const Dd<double> t = two_sum(th, -f64_bits(row[1]));
    // The window is on t (below 2^-60 the windows are narrower than an ulp of r).
    if (!(__builtin_fabs(t.hi) <= f64_bits(row[2]))) continue;
    const double c1h = f64_bits(row[3]), c1l = f64_bits(row[4]);
    const double q = fma(fma(f64_bits(row[7]), t.hi, f64_bits(row[6])), t.hi, f64_bits(row[5]));
    const double h = t.hi * c1h;
    *rp = h + (fma(t.hi, c1h, -h) + fma(t.hi, fma(t.hi, q, c1l), t.lo * c1h));
    return true;
  }
  return false;
}

// log2 |Gamma(x)| for x < 0, not an integer, 2^-60 <= |x| < 2^52.
inline Dd<double> log2_gamma_negative(double x) {
  const double a = -x;
  const Dd<double> s = sinpi_abs(a);
  const Dd<double> xs = mul(Dd<double>{a, 0.0}, s);
  const Dd<double> num = add(dd<double>(kLog2PiHi, kLog2PiLo), neg(log2_dd(xs)));
  return add(num, neg(log2_gamma(a)));
}

// ---- the scalar routines ---------------------------------------------------------------

constexpr double kInf = __builtin_inf();

// -ln(a) for positive a below 2^-1000 (denormals included): ln Gamma(a) =
// -ln a - gamma a + ..., the rest below 2^-1000 of the result.
inline double minus_log(double a) {
  double eoff = 0;
  if (a < 0x1p-1022) {
    a *= 0x1p200;  // exact for a denormal
    eoff = -200;
  }
  return -times_ln2(pow_core::log2_accurate(a, eoff));
}

// Sign of Gamma(x) for finite x < 0 that is not an integer: (-1)^floor(x).
inline int32_t negative_sign(double x) {
  const double f = __builtin_floor(x);
  return __builtin_floor(f * 0.5) * 2 == f ? 1 : -1;
}

// ln |Gamma(x)| and the sign of Gamma(x) (C99 F.9.5.3, lgamma_r): NaN -> NaN
// (sign +1); +-inf -> +inf (sign +1); +-0 -> +inf (pole, sign +-1); negative
// integers -> +inf (pole, sign +1, our rule: C leaves it unspecified).
inline int lgamma_rules(double x, double* rp, int32_t* sp) {
  *sp = 1;
  if (x != x) {
    *rp = x + x;
    return kStatusOk;
  }
  const double a = __builtin_fabs(x);
  if (a == kInf) {
    *rp = kInf;
    return kStatusOk;
  }
  if (x == 0) {
    *sp = __builtin_signbit(x) ? -1 : 1;
    *rp = 1.0 / opaque(0.0);
    return kStatusPole;
  }
  if (x > 0) {
    if (x < kVecLo) {
      *rp = minus_log(x);
    } else if (x > kVecHi) {
      // x (ln x - 1): the terms left out (-ln(x)/2 + ln(2 pi)/2 + ...) are below
      // 2^-990 of it. Overflows (+inf) from about 2.55e305.
      const Dd<double> l = pow_core::log2_accurate(x, 0.0);
      const double ln = times_ln2(l);
      const double lnl = fma(l.hi, kLn2Hi, -ln) + fma(l.hi, kLn2Lo, l.lo * kLn2Hi);
      *rp = fma(x, ln - 1.0, x * lnl);
      return __builtin_isinf(*rp) ? kStatusOverflow : kStatusOk;
    } else {
      *rp = lgamma_vec4(F64x4(x))[0];  // the vector path's value
    }
    return kStatusOk;
  }
  if (a >= 0x1p52 || __builtin_floor(a) == a) {
    *rp = 1.0 / opaque(0.0);
    return kStatusPole;
  }
  *sp = negative_sign(x);
  if (a < 0x1p-60) {
    *rp = minus_log(a) + (-kMinusEulerHi) * a;  // -ln|x| - gamma x
    return kStatusOk;
  }
  if (!near_negative_zero(x, rp)) *rp = times_ln2(log2_gamma_negative(x));
  return kStatusOk;
}

// Gamma(x) (C99 F.9.5.4): NaN -> NaN; +inf -> +inf; -inf -> NaN (domain);
// +-0 -> +-inf (pole); negative integers -> NaN (domain); x above
// 171.62437695630271 -> +inf (overflow); results below the normal range
// for x < -171 (denormals, zeros with the sign of Gamma) rounded once.
inline int tgamma_rules(double x, double* rp) {
  if (x != x) {
    *rp = x + x;
    return kStatusOk;
  }
  if (x == kInf) {
    *rp = kInf;
    return kStatusOk;
  }
  if (x == 0) {
    *rp = 1.0 / x;
    return kStatusPole;
  }
  const double a = __builtin_fabs(x);
  if (x < 0 && (a == kInf || a >= 0x1p52 || __builtin_floor(a) == a)) return pow_core::domain_error(rp);
  if (a < 0x1p-60) {
    // 1/x - gamma + O(x): gamma is below half an ulp of 1/x.
    *rp = 1.0 / x;
    return __builtin_isinf(*rp) ? kStatusOverflow : kStatusOk;
  }
  if (x > kTgammaMax) {
    *rp = opaque(pow_core::kHuge) * pow_core::kHuge;
    return kStatusOverflow;
  }
  if (x > 0 && x <= kTgammaVecHi) {
    *rp = tgamma_vec4(F64x4(x))[0];  // the vector path's value
    return kStatusOk;
  }
  // 2^(log2 |Gamma(x)|) with the sign, scaled in two steps near overflow and
  // rounded once into the denormals (pow_finite on base 2, whose logarithm
  // is exactly 1 + 0, so that the exponent is taken as given).
  const Dd<double> l = x > 0 ? shifted(x).g2 : log2_gamma_negative(x);
  return pow_core::pow_finite(2.0, l.hi, l.lo, x < 0 && negative_sign(x) < 0, rp);
}

// The single routines: the double ones on the widened x, rounded once.
inline int lgammaf_rules(float x, float* rp, int32_t* sp) {
  double d;
  const int s = lgamma_rules(x, &d, sp);
  return pow_core::narrow(s, d, rp);
}
inline int tgammaf_rules(float x, float* rp) {
  double d;
  const int s = tgamma_rules(x, &d);
  return pow_core::narrow(s, d, rp);
}

// ---- kernels -----------------------------------------------------------------------------

// The vec of the single kernels (two 4-lane double bodies at width 8) out of
// line, as the power families do with theirs.
#define RAVL_GAMMA_BODY __attribute__((noinline, const))

// A 4-lane double body on L double lanes (2-lane chunks run doubled).
template <class F, int L> RAVL_INLINE Vec<double, L> on_doubles(F f, Vec<double, L> x) {
  if constexpr (L == 2) return slice<0, 2>(f(join(x, x)));
  else return f(x);
}

// One-result kernels: the lanes the body marked (NaN results) go to Scalar.
template <class T, int (*Scalar)(const T*, T*)> struct MarkedKernel1 : frame::Kernel {
  using sig = T(T);
  static constexpr bool has_callout = true;
  template <int L> static RAVL_INLINE Mask<T, L> special(Vec<T, L>, Vec<T, L> r) { return is_nan(r); }
  static RAVL_INLINE int scalar(const T* x, T* r) { return Scalar(x, r); }
};

}  // namespace gamma_core
}  // namespace ravl
