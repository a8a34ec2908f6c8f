// The branch-free kernels of the erf, erff, erfc and erfcf families: one
// piecewise polynomial per eighth of a binade of |x| (tables/erf.h), fetched
// for every lane by one gather of the row's columns, and for erfc x >= 0 the
// factor e^(-x^2) with x^2 split exactly. Every lane is computed here, special
// ones included (no scalar routine): the row choice clamps |x|, so infinities
// reach a constant row, and a NaN runs through the arithmetic.
//
// Rows (tables/erf.h): a = |x| clamped to [0.1171875, last] gives the row
// i = ((upper word of a) AND 0x7ffe0000 - 0x3fbe0000) >> 17: row 0 for
// a < 0.125, then one row per eighth of a binade. A row holds shift, d, c0,
// c0lo, c1..cn; with t = min(a, last) + shift (exact: shift is minus the
// interval's centre, or 0 on row 0),
//   f(a) ~ (c0 + d t) + (c0lo + t (c1 + t (c2 + ... + t cn))),
// the value c0 + c0lo of the centre carried in two words, so that the one
// rounding of the sum is most of the error.
#pragma once

#include "exp_log/exp_common.h"
#include "frame/entry.h"
#include "tables/erf.h"
#include "tables/exp.h"

namespace ravl {
namespace erf_core {

// 0.1171875 (0x3fbe000000000000): the smallest value whose word gives row 0.
constexpr double kFirst = f64_bits(0x3fbe000000000000ull);
// erf: a from 6 (0x4018000000000000, row 45, the constant 1) up: erf(a)
// rounds to 1 from 5.9215871957945074 on.
constexpr double kErfLast = f64_bits(0x4018000000000000ull);
// erfc: a from 28 (0x403c000000000000, row 63) up: for x >= 0 the result
// underflows to +0 (erfc(x) rounds to +0 from 27.226017111108366 on); for x < 0 rows
// 64 + 45 and on are the constant 2 (erfc(-a) rounds to 2 from 5.8636 on).
constexpr double kErfcLast = f64_bits(0x403c000000000000ull);

struct Rows {
  Row<uint64_t> abs = row<uint64_t>(0x7fffffffffffffffull), sign = row<uint64_t>(0x8000000000000000ull);
  // Row byte offset: ((bits >> 42) AND 0x1fff80) - 0xfef80 for 128-byte rows
  // (the masked word less 0x3fbe0000, shifted right by 10).
  Row<uint64_t> word = row<uint64_t>(0x1fff80), base = row<uint64_t>(0xfef80);
  Row<double> first = row(kFirst), erf_last = row(kErfLast), erfc_last = row(kErfcLast);
  Row<double> eighth = row(0.125);  // a < 0.125: row 0
  // e^z, z = -a^2 (exp_common.h): n = round(z 64/ln2) by the shifter,
  // r = z - n ln2/64 in two steps (n hi exact for |n| < 2^17; here |n| <=
  // 784 * 92.4 < 72500), e^z = 2^(n >> 6) T_j (1 + lo_j) e^r, j = n mod 64.
  Row<double> inv_ln2x64 = row(exp_common::kInvLn2x64), shift = row(exp_common::kShift),
              ln2o64_hi = row(exp_common::kLn2o64Hi), ln2o64_lo = row(exp_common::kLn2o64Lo),
              s3 = row(exp_common::kS3), s4 = row(exp_common::kS4), s5 = row(exp_common::kS5),
              s6 = row(exp_common::kS6), half = row(0.5);
  Row<uint64_t> j63 = row<uint64_t>(63), bias = row<uint64_t>(1023);
};
inline constexpr Rows kRows{};

// Bytes a row of the degree-kDeg tables: 8 doubles up to degree 4, else 16.
template <int kDeg> constexpr int kRowBytes = kDeg + 4 <= 8 ? 64 : 128;

// The row's columns for a = |x| clamped to [first, last]: col[0] shift,
// col[1] d, col[2] c0, col[3] c0lo, col[3 + q] c_q. sign_row: 1 in the lanes
// that read the second half of a 128-row table (erfc of x < 0), else 0.
// Returns min(a, last), a NaN a kept (hw_min returns its second operand).
template <int kDeg, int N, int L>
RAVL_INLINE Vec<double, L> fetch(const uint64_t* table, Vec<double, L> a, Vec<double, L> last,
                                 Vec<uint64_t, L> sign_row, const Rows& c, Vec<double, L> (&col)[N]) {
  using U = Vec<uint64_t, L>;
  Vec<double, L> ac = hw_min(hw_max(a, get<Vec<double, L>>(c.first)), last);
  U off = ((as_uint(ac) >> 42) & get<U>(c.word)) - get<U>(c.base);
  if constexpr (kRowBytes<kDeg> == 64) off = (off >> 1) + (sign_row << 12);
  else off = off + (sign_row << 13);
  gather_cols<N>(reinterpret_cast<const double*>(table), bitcast<Vec<int64_t, L>>(off), col);
  return hw_min(last, a);
}

// c1 + t (c2 + ... + t cn) by Horner's rule in fused multiply-adds.
template <int kDeg, int N, class V> RAVL_INLINE V horner(const V (&col)[N], V t) {
  V p = col[3 + kDeg];
  for (int q = kDeg - 1; q >= 1; --q) p = fma(p, t, col[3 + q]);
  return p;
}

// erf x. Row 0 (a < 0.125, c0 = 0, d = 1): erf a = a + a Q(a) with p = Q(a)
// ~ 0.128, one rounding in fma(p, t, t): tiny and denormal a keep their
// relative accuracy (no product underflows before the last rounding). Other
// rows: (c0 + d t) + (c0lo + t p), one rounding of a sum whose second part is
// below 0.06 of the first. The sign of x is ORed back: erf(-x) = -erf(x) bit
// for bit, erf(-0) = -0. +-inf reach row 45 (t = 6): +-1; NaN stays NaN
// through t. kC0Lo false (the single families, whose one rounding to single
// hides c0's own rounding): fma(p, t, c0 + d t) on every row, no c0lo and no
// blend.
template <int kDeg, int L, bool kC0Lo = true>
RAVL_INLINE Vec<double, L> erf_eval(Vec<double, L> x, const uint64_t* table) {
  using V = Vec<double, L>;
  using U = Vec<uint64_t, L>;
  const Rows& c = rows(kRows);
  constexpr int N = (kDeg + 5) & ~1;
  V a = as_float<V>(as_uint(x) & get<U>(c.abs));
  V col[N];
  V t = fetch<kDeg, N>(table, a, get<V>(c.erf_last), U(0), c, col) + col[0];
  V p = horner<kDeg>(col, t);
  V w = fma(t, col[1], col[2]);  // exact: t on row 0, c0 elsewhere
  V y;
  if constexpr (kC0Lo) y = select(a < get<V>(c.eighth), fma(p, t, w), w + fma(p, t, col[3]));
  else y = fma(p, t, w);
  return as_float<V>(as_uint(y) | (as_uint(x) & get<U>(c.sign)));
}

// e^(-a^2) polynomial degree: e^r - 1 ~ r + r^2 (1/2 + s3 r + ... ) up to
// r^kExpDeg (|r| <= ln2/128: truncation below 2^-34.7 relative at degree 3,
// 2^-44.6 at 4, 2^-65 at 6).
template <int kExpDeg, class V> RAVL_INLINE V exp_poly(V r, const Rows& c) {
  V p;
  if constexpr (kExpDeg >= 6) p = fma(r, fma(r, fma(r, get<V>(c.s6), get<V>(c.s5)), get<V>(c.s4)), get<V>(c.s3));
  else if constexpr (kExpDeg == 4) p = fma(r, get<V>(c.s4), get<V>(c.s3));
  else p = get<V>(c.s3);
  return fma(r, p, get<V>(c.half));
}

// erfc x. x >= 0 (sign bit clear): erfc a = e^(-a^2) g(a), g from rows
// 0..63. -a^2 = -(s + s_lo) with s = RN(a^2) and s_lo = a^2 - s exact (fms),
// so the reduction r = -s - n ln2/64 - s_lo has an error relative to r, not
// to a^2: the result's error does not grow with a. e^(-a^2) = 2^m T_j (1 + q),
// q = r + r^2 P(r) + lo_j; g = c0 + u, u = c0lo + t p; then
//   erfc a = 2^m T_j (c0 + u + g q) = 2^m fma(T_j, c0, T_j (u + g q)),
// with c0 and T_j exact: one rounding of the sum plus the small rounding of
// its second part. 2^m (down to 2^-1131 at a = 28) is applied in two normal
// factors 2^(m >> 1) and 2^(m - (m >> 1)): the first product is exact, the
// second rounds once, also into the denormal range (erfc(27) =
// 5.2370464393526e-319). From a = 28 (+inf included) the result is +0.
// x < 0 (sign bit set, -0 included): erfc x = 1 + erf a from rows 64..127,
// and the exponential is made 1 (z = 0: n = 0, T_0 = 1, lo_0 = 0, q = 0), so
// the same last step gives c0 + u; -inf reaches a constant row: 2.
template <int kDeg, int kExpDeg, int L> RAVL_INLINE Vec<double, L> erfc_eval(Vec<double, L> x, const uint64_t* table) {
  using V = Vec<double, L>;
  using U = Vec<uint64_t, L>;
  using I = Vec<int64_t, L>;
  const Rows& c = rows(kRows);
  constexpr int N = (kDeg + 5) & ~1;
  // Rows 64..127 for a set sign bit. From a = 28 on (+inf included) the
  // clamped ae gives the same +0 (or 2).
  V col[N];
  V ae = fetch<kDeg, N>(table, as_float<V>(as_uint(x) & get<U>(c.abs)), get<V>(c.erfc_last), as_uint(x) >> 63, c, col);
  V t = ae + col[0];
  V u = fma(horner<kDeg>(col, t), t, col[3]);
  V g = col[2] + u;
  // z + z_lo = -a^2 for x >= 0, 0 for x < 0.
  V s = ae * ae;
  V z = select_sign(as_uint(x), -s, V(0.0));
  V z_lo = select_sign(as_uint(x), fnma(ae, ae, s), V(0.0));  // s - a^2, exact
  V k = fma(z, get<V>(c.inv_ln2x64), get<V>(c.shift));
  V n = k - get<V>(c.shift);
  I ni = as_int(k) - as_int(get<V>(c.shift));
  V r = fnma(n, get<V>(c.ln2o64_hi), z);  // exact
  r = fnma(n, get<V>(c.ln2o64_lo), r) + z_lo;
  V th, tl;
  gather_pairs<1>(reinterpret_cast<const double*>(exp_tables::kExpScalar64),
                  bitcast<I>((bitcast<U>(ni) & get<U>(c.j63)) << 4), th, tl);
  V q = fma(r * r, exp_poly<kExpDeg>(r, c), r + tl);
  V y = fma(th, col[2], th * fma(g, q, u));
  // 2^m in two factors, m = n >> 6 (floor), each field in [1, 2046].
  I m = ni >> 6;
  I m1 = m >> 1;
  V p1 = as_float<V>(bitcast<U>(m1 + bitcast<I>(get<U>(c.bias))) << 52);
  V p2 = as_float<V>(bitcast<U>(m - m1 + bitcast<I>(get<U>(c.bias))) << 52);
  return (y * p1) * p2;
}

}  // namespace erf_core
}  // namespace ravl
