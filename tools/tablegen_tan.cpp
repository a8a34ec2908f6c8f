// Prints src/tables/tan.h: the node table of the double tangent's full-range
// path, computed with MPFR at 256 bits, and checks it: the rows quoted in the
// table's comment, and the tangent evaluated from every row (in double, the
// arithmetic of the vector path) against MPFR over the row's interval.
//
//   ninja -C build tablegen_tan && build/tools/tablegen_tan > src/tables/tan.h
//
// Row j (0..255) is the node a_j = 2 pi j / 512 in [0, pi); the reduction
// leaves x = a_j + r (mod pi) with |r| <= pi/512 plus rounding. The tangent
// there is written as
//   tan(a_j + r) = w_j / (T0 - r) + F_j(r),
// the pole term (w_j = 1 for the rows 64..191 within pi/4 of the pole at pi/2,
// else 0; T0 the double nearest pi/2 - a_j) and the regular part F_j, which is
// analytic on the interval: for w_j = 1 the pole of the tangent at pi/2 - a_j
// and that of the term at T0 (the same point for row 128, 2^-60 apart or less
// elsewhere, at least pi/512 from the interval) cancel to a term of size
// |T0 - (pi/2 - a_j)| / r'^2. The columns:
//   T0, T1   pi/2 - a_j as RN and RN of the rest (T1 is not read by the path:
//            the pole term uses T0, and F_j is taken against that T0)
//   T2       w_j
//   T3, T4   F_j(0) as RN and RN of the rest
//   T5, T6   F_j'(0) = T5 + T6: T5 the power of two nearest F_j'(0) (so T5 r
//            is exact), T6 = RN(F_j'(0) - T5)
//   T7..T12  c_2..c_7 of F_j(r) ~ F_j(0) + F_j'(0) r + c_2 r^2 + ... + c_7 r^7:
//            the polynomial c_2 + c_3 r + ... + c_7 r^5 interpolates
//            (F_j(r) - F_j(0) - F_j'(0) r) / r^2 at the six Chebyshev nodes
//            of |r| <= H = pi/512 (1 + 2^-20), the even and odd parts
//            separately (so that an odd F_j, rows 0 and 128, has exact zeros)
// Rows 129..255 other than 192 are the mirror images of rows 127..1
// (F_{256-j}(r) = -F_j(-r): T0, T1, T3, T4 and c_2, c_4, c_6 change sign), so
// that the table is exactly odd; row 192 (weight 0, its mirror row 64 has
// weight 1) is computed like the rows below 128.
#include <immintrin.h>

#include <cmath>
#include <cstdlib>

#include "tablegen_common.h"

#pragma clang fp contract(off)

namespace {

using namespace tablegen;

constexpr int kRows = 256, kCols = 13, kCoefs = 6;
// The evaluated tangent's error bound over every row's interval, ulp. Rows
// without the pole term measure 1.0-1.7 ulp; with it up to 3.0 (row 64,
// where the pole term ~1.27 and the regular part ~-0.27 add to a result
// below 1: the double y alone carries half an ulp of 1.27).
constexpr double kEvalBound = 3.25;

double rnd(mpfr_t v) { return mpfr_get_d(v, MPFR_RNDN); }

// a_j = 2 pi j / 512.
void node(mpfr_t a, int j) {
  mpfr_const_pi(a, MPFR_RNDN);
  mpfr_mul_si(a, a, j, MPFR_RNDN);
  mpfr_div_si(a, a, 256, MPFR_RNDN);
}

// tan(a_j + r), with the exact identities at rows 0 and 128 (so that those
// rows are odd in r bit for bit).
void tan_at(mpfr_t out, int j, mpfr_t r) {
  if (j == 0) {
    mpfr_tan(out, r, MPFR_RNDN);
  } else if (j == 128) {
    mpfr_cot(out, r, MPFR_RNDN);
    mpfr_neg(out, out, MPFR_RNDN);
  } else {
    M a;
    node(a, j);
    mpfr_add(out, a, r, MPFR_RNDN);
    mpfr_tan(out, out, MPFR_RNDN);
  }
}

// F_j(r) = tan(a_j + r) - w / (d - r).
void regular(mpfr_t out, int j, int w, double d, mpfr_t r) {
  tan_at(out, j, r);
  if (w) {
    M p;
    mpfr_d_sub(p, d, r, MPFR_RNDN);
    mpfr_si_div(p, 1, p, MPFR_RNDN);
    mpfr_sub(out, out, p, MPFR_RNDN);
  }
}

// The fit interval's half width H = pi/512 (1 + 2^-20).
void half_width(mpfr_t h) {
  mpfr_const_pi(h, MPFR_RNDN);
  mpfr_div_si(h, h, 512, MPFR_RNDN);
  M e;
  mpfr_set_d(e, 1 + 0x1p-20, MPFR_RNDN);
  mpfr_mul(h, h, e, MPFR_RNDN);
}

// Row j computed from its rule (not mirrored).
void make_row(int j, double* t) {
  const int w = j >= 64 && j <= 191;
  M a, d, f0, f1, v;
  node(a, j);
  mpfr_const_pi(d, MPFR_RNDN);
  mpfr_div_si(d, d, 2, MPFR_RNDN);
  mpfr_sub(d, d, a, MPFR_RNDN);
  t[0] = rnd(d);
  mpfr_sub_d(v, d, t[0], MPFR_RNDN);
  t[1] = rnd(v);
  t[2] = w;
  // F_j(0) and F_j'(0): tan a - w/T0 and 1 + tan^2 a - w/T0^2; at row 128
  // their limits 0 and 1/3 (F = 1/r - cot r = r/3 + r^3/45 + ...).
  if (j == 128) {
    mpfr_set_si(f0, 0, MPFR_RNDN);
    mpfr_set_si(f1, 1, MPFR_RNDN);
    mpfr_div_si(f1, f1, 3, MPFR_RNDN);
  } else {
    M tn, p;
    mpfr_tan(tn, a, MPFR_RNDN);
    mpfr_sqr(f1, tn, MPFR_RNDN);
    mpfr_add_si(f1, f1, 1, MPFR_RNDN);
    mpfr_set(f0, tn, MPFR_RNDN);
    if (w) {
      mpfr_set_d(p, t[0], MPFR_RNDN);
      mpfr_si_div(p, 1, p, MPFR_RNDN);
      mpfr_sub(f0, f0, p, MPFR_RNDN);
      mpfr_sqr(p, p, MPFR_RNDN);
      mpfr_sub(f1, f1, p, MPFR_RNDN);
    }
  }
  t[3] = rnd(f0);
  mpfr_sub_d(v, f0, t[3], MPFR_RNDN);
  t[4] = rnd(v);
  {
    mpfr_t p1;
    mpfr_init2(p1, 1);
    mpfr_set(p1, f1, MPFR_RNDN);  // the nearest power of two
    t[5] = mpfr_get_d(p1, MPFR_RNDN);
    mpfr_clear(p1);
  }
  mpfr_sub_d(v, f1, t[5], MPFR_RNDN);
  t[6] = rnd(v);
  // g(u) = (F(H u) - F(0) - F'(0) H u) / (H u)^2 at the Chebyshev nodes
  // u_k = cos((2k+1) pi / 12), k = 0..2, and at -u_k; its even part is fitted
  // by b_0 + b_2 u^2 + b_4 u^4, its odd part by b_1 u + b_3 u^3 + b_5 u^5;
  // c_{i+2} = b_i / H^i.
  M h;
  half_width(h);
  mpfr_t ev[3][3], od[3][3], be[3], bo[3];
  for (int k = 0; k < 3; ++k) {
    M u, r, gp, gm, s;
    mpfr_const_pi(u, MPFR_RNDN);
    mpfr_mul_si(u, u, 2 * k + 1, MPFR_RNDN);
    mpfr_div_si(u, u, 12, MPFR_RNDN);
    mpfr_cos(u, u, MPFR_RNDN);
    for (int sgn = 1; sgn >= -1; sgn -= 2) {
      mpfr_mul(r, h, u, MPFR_RNDN);
      if (sgn < 0) mpfr_neg(r, r, MPFR_RNDN);
      mpfr_ptr g = sgn > 0 ? gp : gm;
      regular(g, j, w, t[0], r);
      mpfr_sub(g, g, f0, MPFR_RNDN);
      mpfr_mul(s, f1, r, MPFR_RNDN);
      mpfr_sub(g, g, s, MPFR_RNDN);
      mpfr_sqr(s, r, MPFR_RNDN);
      mpfr_div(g, g, s, MPFR_RNDN);
    }
    mpfr_init2(be[k], kPrec);
    mpfr_init2(bo[k], kPrec);
    mpfr_add(be[k], gp, gm, MPFR_RNDN);
    mpfr_div_2ui(be[k], be[k], 1, MPFR_RNDN);
    mpfr_sub(bo[k], gp, gm, MPFR_RNDN);
    mpfr_div_2ui(bo[k], bo[k], 1, MPFR_RNDN);
    for (int i = 0; i < 3; ++i) {
      mpfr_init2(ev[k][i], kPrec);
      mpfr_init2(od[k][i], kPrec);
      mpfr_pow_ui(ev[k][i], u, 2 * i, MPFR_RNDN);
      mpfr_pow_ui(od[k][i], u, 2 * i + 1, MPFR_RNDN);
    }
  }
  solve_linear(ev[0][0], 3, be[0], 3);
  solve_linear(od[0][0], 3, bo[0], 3);
  for (int i = 0; i < kCoefs; ++i) {
    M c, hp;
    mpfr_pow_ui(hp, h, i, MPFR_RNDN);
    mpfr_div(c, i % 2 ? bo[i / 2] : be[i / 2], hp, MPFR_RNDN);
    t[7 + i] = rnd(c) + 0.0;  // a zero coefficient as +0
  }
  for (int k = 0; k < 3; ++k) {
    mpfr_clears(be[k], bo[k], (mpfr_ptr)0);
    for (int i = 0; i < 3; ++i) mpfr_clears(ev[k][i], od[k][i], (mpfr_ptr)0);
  }
}

// Row 256 - j from row j: F_{256-j}(r) = -F_j(-r).
void mirror(const double* s, double* t) {
  static const int odd[kCols] = {1, 1, 0, 1, 1, 0, 0, 1, 0, 1, 0, 1, 0};  // columns that change sign
  for (int k = 0; k < kCols; ++k) t[k] = odd[k] ? -s[k] : s[k];
}

// The tangent at node row t and reduced argument r, in the vector path's
// arithmetic: y ~ 1/(T0 - r) from the single reciprocal estimate refined to
// double, base = y T2 + (T5 r + T3), result = Pc r + base.
double evaluate(const double* t, double r) {
  double g = t[0] - r;
  float gf = (float)g;
  double y0 = (double)_mm_cvtss_f32(_mm_rcp_ss(_mm_set_ss(gf)));
  double e = std::fma(-g, y0, 1.0);
  double y = std::fma(std::fma(y0, e * e, y0), e + e * e, y0);
  double base = std::fma(y, t[2], std::fma(t[5], r, t[3]));
  double r2 = r * r, r4 = r2 * r2;
  double pa = std::fma(t[7], r, t[6]);
  double pb = std::fma(t[9], r, t[8]);
  double pc = std::fma(t[11], r, t[10]);
  pc = std::fma(t[12], r2, pc);
  pb = std::fma(pb, r2, pa);
  pc = std::fma(pc, r4, pb);
  return std::fma(pc, r, base);
}

// |got - tan(a_j + r)| in ulps of the correctly rounded result.
double ulp_error(int j, double r, double got) {
  M rr, want, diff;
  mpfr_set_d(rr, r, MPFR_RNDN);
  tan_at(want, j, rr);
  double c = rnd(want);
  int e = std::ilogb(c);
  // A power of two approached from below: the ulp of the binade below.
  if (std::fabs(c) == std::ldexp(1.0, e) && mpfr_cmpabs_ui(want, 0) != 0 && mpfr_cmp_d(want, c) * (c > 0 ? 1 : -1) < 0) --e;
  mpfr_sub_d(diff, want, got, MPFR_RNDN);
  mpfr_abs(diff, diff, MPFR_RNDN);
  mpfr_mul_2si(diff, diff, 52 - e, MPFR_RNDN);
  return rnd(diff);
}

// The rows the table's comment quotes, as printed (decimal, 17 digits), and
// how far the table may be from them: 0 for an exact match, else a bound
// relative to the quantity the column is part of. Row 1's quoted T4 and T6
// were rounded from a less precise evaluation: they are 1.2e-21 from the
// value tan(a_1) - T3 and 4.5e-18 from the derivative's remainder
// 1 + tan^2(a_1) - 1, that is 2^-63 of the value and 2^-57.6 of the
// derivative; the table holds the correctly rounded values.
struct Quoted {
  int row, col;
  const char* value;
  double tol;  // allowed |table - quoted| / |value or derivative|
};
const Quoted kQuoted[] = {
    {0, 0, "1.5707963267948966"},        {0, 1, "6.123233995736766e-17"}, {1, 0, "1.5585244804918115"},
    {1, 1, "1.9120598878007353e-17"},    {128, 0, "0"},                    {128, 1, "0"},
    {1, 3, "0.012272462379566276"},      {1, 4, "-3.5440691863268951e-19", 0x1p-62},
    {0, 5, "1"},                         {0, 6, "0"},                      {1, 5, "1"},
    {1, 6, "0.00015061333285787404", 0x1p-57},
    {128, 5, "0.25"},                    {128, 6, "0.083333333333333329"}, {0, 7, "0"},
    {0, 9, "0"},                         {0, 11, "0"},                     {0, 2, "0"},
    {1, 2, "0"},                         {63, 2, "0"},                     {64, 2, "1"},
    {191, 2, "1"},                       {192, 2, "0"},                    {255, 2, "0"},
};
// Row 0's odd coefficients c_3, c_5, c_7 as quoted (a fit of (tan r - r)/r^2
// over the interval): the generator's interpolation is another fit of the
// same function, so the two polynomials must agree far below the last bit of
// the tangent (checked within 2^-64 relative).
const double kRow0Odd[3] = {0.33333333333333354, 0.13333333329957756, 0.053969822841774005};

}  // namespace

int main() {
  static double tab[kRows][kCols];
  for (int j = 0; j <= 128; ++j) make_row(j, tab[j]);
  make_row(192, tab[192]);
  for (int j = 129; j < kRows; ++j)
    if (j != 192) mirror(tab[256 - j], tab[j]);

  int bad = 0;
  for (const Quoted& q : kQuoted) {
    double want = std::strtod(q.value, nullptr), got = tab[q.row][q.col];
    const double* t = tab[q.row];
    double scale = q.col == 4 ? t[3] : t[5] + t[6];
    if (q.tol ? !(std::fabs(got - want) <= q.tol * std::fabs(scale)) : bits64(got) != bits64(want)) {
      std::fprintf(stderr, "row %d column T%d: %.17g, quoted %s\n", q.row, q.col, tab[q.row][q.col], q.value);
      ++bad;
    }
  }
  // Row 0's published odd coefficients against the interpolation's.
  {
    double worst = 0;
    for (int i = 0; i <= 1000; ++i) {
      double r = M_PI / 512 * i / 1000;
      double r2 = r * r, ours = 0, pub = 0;
      for (int k = 2; k >= 0; --k) {
        ours = ours * r2 + tab[0][8 + 2 * k];
        pub = pub * r2 + kRow0Odd[k];
      }
      if (r > 0) worst = std::fmax(worst, std::fabs(ours - pub) * r2 * r / std::tan(r));
    }
    std::fprintf(stderr, "row 0: published and interpolated r^3..r^7 terms differ by %.3g relative\n", worst);
    if (!(worst < 0x1p-64)) ++bad;
  }
  // Every row's tangent over its interval.
  {
    double worst = 0, at_r = 0;
    int at_j = 0;
    uint64_t s = 0x9e3779b97f4a7c15ull;
    const double h = M_PI / 512 * (1 + 0x1p-20);
    for (int j = 0; j < kRows; ++j)
      for (int i = 0; i < 4096; ++i) {
        s = s * 6364136223846793005ull + 1442695040888963407ull;
        double r = i < 2 ? (i ? -h : h) : (double)((int64_t)(s >> 11) - (int64_t)(1ll << 52)) * 0x1p-52 * h;
        if (i >= 2048) r = std::ldexp(r / h, -(int)(s >> 58) - 8);  // small |r|: 2^-8 .. 2^-71
        if (r == 0) continue;
        double e = ulp_error(j, r, evaluate(tab[j], r));
        if (!(e <= worst)) worst = e, at_j = j, at_r = r;
      }
    std::fprintf(stderr, "evaluated tangent: max %.4f ulp (row %d, r = %a)\n", worst, at_j, at_r);
    if (!(worst < kEvalBound)) ++bad;
  }
  if (bad) {
    std::fprintf(stderr, "tablegen_tan: %d check(s) failed\n", bad);
    return 1;
  }

  uint64_t flat[kRows * kCols];
  for (int j = 0; j < kRows; ++j)
    for (int k = 0; k < kCols; ++k) flat[j * kCols + k] = bits64(tab[j][k]);
  // The header comment quotes rows 0, 1 and 128 from the table itself.
  static char head[4096];
  const double* r0 = tab[0];
  const double* r1 = tab[1];
  const double* r128 = tab[128];
  std::snprintf(
      head, sizeof head,
      "// Node table of the double tangent's full-range path. Generated by\n"
      "// tools/tablegen_tan.cpp (MPFR, 256 bits); do not edit. Regenerate with\n"
      "//   ninja -C build tablegen_tan && build/tools/tablegen_tan > src/tables/tan.h\n"
      "// Row j = 0..255 is the node a_j = 2 pi j / 512 in [0, pi); 13 doubles (IEEE bit\n"
      "// patterns) a row, kTanNodes[13 j + k] = Tk:\n"
      "//   T0, T1   pi/2 - a_j, high and low\n"
      "//   T2       weight of the pole term 1/(T0 - r): 1 for rows 64..191, else 0\n"
      "//   T3, T4   the regular part tan(a_j + r) - T2/(T0 - r) at r = 0, high and low\n"
      "//   T5, T6   its derivative at r = 0: T5 the nearest power of two, T6 the rest\n"
      "//   T7..T12  its coefficients of r^2..r^7 on |r| <= pi/512 (interpolated at\n"
      "//            Chebyshev nodes)\n"
      "// Row 0:   %.17g, %.17g, 0, 0, 0, 1, 0,\n"
      "//          0, %.17g, 0, %.17g, 0, %.17g\n"
      "// Row 1:   %.17g, %.17g, 0, %.17g,\n"
      "//          %.17g, 1, %.17g, ...\n"
      "// Row 128: 0, 0, 1, 0, 0, 0.25, %.17g, ...\n"
      "// Rows 129..255 (but 192) mirror rows 127..1: F_{256-j}(r) = -F_j(-r).\n",
      r0[0], r0[1], r0[8], r0[10], r0[12], r1[0], r1[1], r1[3], r1[4], r1[6], r128[6]);
  open_file(head, "tan_tables");
  print_table64("alignas(64) inline constexpr uint64_t kTanNodes[256 * 13]", flat, kRows * kCols);
  close_file("tan_tables");
  return 0;
}
