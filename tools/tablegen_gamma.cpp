// Prints src/tables/gamma.h: the constants of the lgamma, lgammar and tgamma
// families (double and single), computed with MPFR at 256 bits and rounded
// once to nearest. Exits non-zero when the Stirling fit misses its error
// budget or a quoted row does not come out as quoted.
//
//   ninja -C build tablegen_gamma && build/tools/tablegen_gamma > src/tables/gamma.h
#include <cmath>
#include <string>
#include <vector>

#include "tablegen_common.h"

namespace {

using namespace tablegen;

// (hi, lo) = RN(v), RN(v - hi).
void split(mpfr_t v, uint64_t* out) {
  M t;
  const double hi = mpfr_get_d(v, MPFR_RNDN);
  mpfr_sub_d(t, v, hi, MPFR_RNDN);
  out[0] = bits64(hi);
  out[1] = bits64(mpfr_get_d(t, MPFR_RNDN));
}

// ---- Stirling's remainder ---------------------------------------------------------
//
// ln Gamma(z) = (z - 1/2) ln z - z + ln(2 pi)/2 + S(z) for z >= 8, and
//   S(z) log2(e) = (1/z) g(w), w = 1/z^2 in (0, 1/64],
// g a polynomial of degree kStirDeg interpolating z S(z) log2(e) (S from
// mpfr_lngamma) at the Chebyshev nodes of [0, 1/64], c0 as a double-word
// value (its rounding alone would be 2^-60 at z = 8). The budget: |S log2(e)
// - g/z| below 2^-66 at every sampled z >= 8, the doubles' rounding included,
// well under the other errors of the sums that use it.
constexpr int kStirDeg = 7;
constexpr double kWMax = 1.0 / 64;

void stirling_g(mpfr_t g, const mpfr_t w) {  // z S(z) log2(e) at z = 1/sqrt(w)
  M z, t, s, l;
  mpfr_rec_sqrt(z, w, MPFR_RNDN);
  mpfr_lngamma(s, z, MPFR_RNDN);
  mpfr_log(l, z, MPFR_RNDN);
  mpfr_sub_d(t, z, 0.5, MPFR_RNDN);
  mpfr_mul(t, t, l, MPFR_RNDN);
  mpfr_sub(s, s, t, MPFR_RNDN);
  mpfr_add(s, s, z, MPFR_RNDN);
  mpfr_const_pi(t, MPFR_RNDN);
  mpfr_mul_2ui(t, t, 1, MPFR_RNDN);
  mpfr_log(t, t, MPFR_RNDN);
  mpfr_div_2ui(t, t, 1, MPFR_RNDN);
  mpfr_sub(s, s, t, MPFR_RNDN);
  mpfr_mul(s, s, z, MPFR_RNDN);
  mpfr_const_log2(t, MPFR_RNDN);
  mpfr_div(g, s, t, MPFR_RNDN);
}

// Interpolation at n = kStirDeg + 1 Chebyshev nodes of [0, kWMax]: the
// Vandermonde system solved by Gaussian elimination, each coefficient rounded once.
void fit_stirling(double* c, double* c0_lo) {
  constexpr int n = kStirDeg + 1;
  std::vector<M> a(n * (n + 1));
  M w, t;
  for (int k = 0; k < n; ++k) {
    cheb_node(w, k, n, kWMax);
    mpfr_set_ui(t, 1, MPFR_RNDN);
    for (int j = 0; j < n; ++j) {
      mpfr_set(a[k * (n + 1) + j], t, MPFR_RNDN);
      mpfr_mul(t, t, w, MPFR_RNDN);
    }
    stirling_g(a[k * (n + 1) + n], w);
  }
  for (int p = 0; p < n; ++p)
    for (int r = p + 1; r < n; ++r) {
      mpfr_div(t, a[r * (n + 1) + p], a[p * (n + 1) + p], MPFR_RNDN);
      for (int j = p; j <= n; ++j) {
        M u;
        mpfr_mul(u, t, a[p * (n + 1) + j], MPFR_RNDN);
        mpfr_sub(a[r * (n + 1) + j], a[r * (n + 1) + j], u, MPFR_RNDN);
      }
    }
  std::vector<M> x(n);
  for (int p = n - 1; p >= 0; --p) {
    mpfr_set(t, a[p * (n + 1) + n], MPFR_RNDN);
    for (int j = p + 1; j < n; ++j) {
      M u;
      mpfr_mul(u, a[p * (n + 1) + j], x[j], MPFR_RNDN);
      mpfr_sub(t, t, u, MPFR_RNDN);
    }
    mpfr_div(x[p], t, a[p * (n + 1) + p], MPFR_RNDN);
    c[p] = mpfr_get_d(x[p], MPFR_RNDN);
  }
  mpfr_sub_d(t, x[0], c[0], MPFR_RNDN);
  *c0_lo = mpfr_get_d(t, MPFR_RNDN);
}

// Max |P(w) + c0_lo - g(w)|/z over z = 8 * 1.01^i, w = 1/z^2 (the doubles'
// polynomial P = c[0] + ... + c[n-1] w^(n-1) evaluated exactly, the rounding
// of 1/z aside), as a power of two; g is z S(z) log2(e) (stirling_g) or z S(z)
// (stirling_ln_g).
double stirling_error(void (*g_of)(mpfr_t, const mpfr_t), const double* c, int n, double c0_lo = 0) {
  double worst = 0;
  M w, g, p, t;
  for (int i = 0; i < 4000; ++i) {
    const double z = 8 * std::pow(1.01, i);
    mpfr_set_d(w, z, MPFR_RNDN);
    mpfr_sqr(w, w, MPFR_RNDN);
    mpfr_ui_div(w, 1, w, MPFR_RNDN);
    g_of(g, w);
    horner(p, c, n, w);
    mpfr_add_d(p, p, c0_lo, MPFR_RNDN);
    mpfr_sub(t, g, p, MPFR_RNDN);
    mpfr_div_d(t, t, z, MPFR_RNDN);
    worst = std::fmax(worst, std::fabs(mpfr_get_d(t, MPFR_RNDN)));
  }
  return std::log2(worst);
}

// ---- sin(pi t) and cos(pi t) -------------------------------------------------------
//
// sin(pi t) = t sum_k S_k t^(2k), cos(pi t) = sum_k C_k t^(2k), k = 0..kTrigTerms-1,
// each as (hi, lo): on |t| <= 1/4 the first omitted term is below 2^-104.
constexpr int kTrigTerms = 14;

// ---- the negative zeros of ln |Gamma| ---------------------------------------------
//
// Each unit interval (-n - 1, -n), n >= 2, holds two zeros of ln |Gamma(x)|,
// one near each pole (|Gamma| >= 1 there, below 1 in the middle). Row j =
// 2 (n - 2) + side (side 0: the zero nearer -n) of kRoots holds
//   r_hi, r_lo  the zero as a double-word value,
//   delta       the half width of its window: 2^-14 / |psi(r)|, where
//               ln |Gamma(r + t)| is below 2^-14 and the reflection's absolute
//               error (about 2^-68) would be more than 2^-54 of the result,
//   c1_hi, c1_lo, c2, c3, c4: ln |Gamma(r + t)| = t (c1 + c2 t + c3 t^2 + c4 t^3) on
//               |t| <= delta (interpolated at 4 Chebyshev nodes of the window:
//               the next term is below 2^-60 of the first there).
constexpr int kRootFirst = 2, kRootLast = 23, kRootStride = 8;

void lgamma_abs(mpfr_t r, const mpfr_t x) {
  int sign;
  mpfr_lgamma(r, &sign, x, MPFR_RNDN);
}

// The zero of ln |Gamma| between lo and hi (opposite signs), by bisection to kPrec bits.
void bisect(mpfr_t root, double lo_d, double hi_d) {
  M lo, hi, mid, v, vlo;
  mpfr_set_d(lo, lo_d, MPFR_RNDN);
  mpfr_set_d(hi, hi_d, MPFR_RNDN);
  lgamma_abs(vlo, lo);
  for (int k = 0; k < kPrec - 8; ++k) {
    mpfr_add(mid, lo, hi, MPFR_RNDN);
    mpfr_div_2ui(mid, mid, 1, MPFR_RNDN);
    lgamma_abs(v, mid);
    if (mpfr_sgn(v.v) == mpfr_sgn(vlo.v)) mpfr_set(lo, mid, MPFR_RNDN);
    else mpfr_set(hi, mid, MPFR_RNDN);
  }
  mpfr_set(root, lo, MPFR_RNDN);
}

void root_row(int n, int side, uint64_t* row) {
  // ln |Gamma| is positive near the poles, negative in the middle: the zero
  // nearer -n lies between -n - 2^-60 (just past the pole, large) and the middle.
  M r, t, g, psi;
  const double mid = -n - 0.5;
  // The minimum of |Gamma| on the interval is near its middle; ln |Gamma| < 0 there for n >= 2.
  if (side == 0) bisect(r, -n - 0x1p-60 * n, mid);
  else bisect(r, mid, -n - 1 + 0x1p-60 * (n + 1));

  split(r, row);

  mpfr_digamma(psi, r, MPFR_RNDN);
  const double delta = std::ldexp(1.0, -14) / std::fabs(mpfr_get_d(psi, MPFR_RNDN));
  row[2] = bits64(delta);
  // Interpolation of g(t) = ln |Gamma(r + t)| / t at 4 Chebyshev nodes of [-delta, delta].
  constexpr int m = 4;
  std::vector<M> a(m * (m + 1)), x(m);
  for (int k = 0; k < m; ++k) {
    mpfr_const_pi(t, MPFR_RNDN);
    mpfr_mul_ui(t, t, 2 * k + 1, MPFR_RNDN);
    mpfr_div_ui(t, t, 2 * m, MPFR_RNDN);
    mpfr_cos(t, t, MPFR_RNDN);
    mpfr_mul_d(t, t, delta, MPFR_RNDN);
    M u, p;
    mpfr_add(u, r, t, MPFR_RNDN);
    lgamma_abs(g, u);
    mpfr_div(a[k * (m + 1) + m], g, t, MPFR_RNDN);
    mpfr_set_ui(p, 1, MPFR_RNDN);
    for (int j = 0; j < m; ++j) {
      mpfr_set(a[k * (m + 1) + j], p, MPFR_RNDN);
      mpfr_mul(p, p, t, MPFR_RNDN);
    }
  }
  for (int p = 0; p < m; ++p)
    for (int q = p + 1; q < m; ++q) {
      mpfr_div(t, a[q * (m + 1) + p], a[p * (m + 1) + p], MPFR_RNDN);
      for (int j = p; j <= m; ++j) {
        M u;
        mpfr_mul(u, t, a[p * (m + 1) + j], MPFR_RNDN);
        mpfr_sub(a[q * (m + 1) + j], a[q * (m + 1) + j], u, MPFR_RNDN);
      }
    }
  for (int p = m - 1; p >= 0; --p) {
    mpfr_set(t, a[p * (m + 1) + m], MPFR_RNDN);
    for (int j = p + 1; j < m; ++j) {
      M u;
      mpfr_mul(u, a[p * (m + 1) + j], x[j], MPFR_RNDN);
      mpfr_sub(t, t, u, MPFR_RNDN);
    }
    mpfr_div(x[p], t, a[p * (m + 1) + p], MPFR_RNDN);
  }
  split(x[0], row + 3);
  for (int j = 1; j < m; ++j) row[4 + j] = bits64(mpfr_get_d(x[j], MPFR_RNDN));

}


// ---- the vector paths: pieces of ln Gamma on [1, 8), Stirling in ln ---------------
//
// The vector paths take ln Gamma(x) for 1 <= x < kPieceEnd from one of
// kPieces rows of width kPieceW = 1/8 (row i: [1 + i/8, 1 + (i + 1)/8)):
//   ln Gamma(c + u) = c0 + u (p0 + p1 u + ... + p_{n-1} u^(n-1)),
// c the row's expansion point: the zero 1 of ln Gamma for the row that starts
// there, the zero 2 for the two rows beside it (so that the result keeps its
// relative accuracy down to the zeros: c0 = 0 there), the row's middle
// elsewhere (|u| <= 1/16). c0 = ln Gamma(c) and p0 are double-word values;
// p0..p_{n-1} interpolate (ln Gamma(c + u) - c0)/u at the Chebyshev nodes of
// the row (psi(c) at a node u = 0). The single families' rows are shorter:
// c0 one double, p0..p_{m-1} with m = kPieceTermsF, all doubles (those
// families compute in double).
// Row layout, double: c, c0_hi, c0_lo, p0_hi, p0_lo, p1 .. p_{n-1} (16 doubles,
// 128 bytes); single: c, c0, p0 .. p_{m-1} (8 doubles, 64 bytes).
// Budgets (every row, 801 points each, coefficients exact as stored, the
// arithmetic's roundings aside): relative error below 2^-56 and absolute
// below 2^-60 (double), relative below 2^-30 (single).
constexpr double kPieceW = 0.125;
constexpr int kPieceEnd = 8, kPieceRows = (int)((kPieceEnd - 1) / kPieceW);
constexpr int kPieceTerms = 12, kPieceStride = 16;
constexpr int kPieceTermsF = 6, kPieceStrideF = 8;

// ln Gamma(c + u) - c0 over u, or psi(c) at u = 0.
void piece_g(mpfr_t out, const mpfr_t u, double c, const mpfr_t c0) {
  M x;
  mpfr_set_d(x, c, MPFR_RNDN);
  mpfr_add(x, x, u, MPFR_RNDN);
  if (mpfr_zero_p(u)) {
    mpfr_digamma(out, x, MPFR_RNDN);
    return;
  }
  lgamma_abs(out, x);
  mpfr_sub(out, out, c0, MPFR_RNDN);
  mpfr_div(out, out, u, MPFR_RNDN);
}

double piece_center(int i) {
  const double a = 1 + i * kPieceW, b = a + kPieceW;
  if (a == 1) return 1;
  if (a == 2 || b == 2) return 2;
  return a + kPieceW / 2;
}

// Row i of the double (single false) or single table into row[]; returns the
// row's max relative error (and its max absolute error in *abs_err).
double piece_row(int i, bool single, uint64_t* row, double* abs_err) {
  const double a = 1 + i * kPieceW, c = piece_center(i);
  const double lo = a - c, hi = a + kPieceW - c;
  const int n = single ? kPieceTermsF : kPieceTerms;
  M c0;
  {
    M cm;
    mpfr_set_d(cm, c, MPFR_RNDN);
    lgamma_abs(c0, cm);
  }
  std::vector<M> A(n * n), b(n);
  for (int k = 0; k < n; ++k) {
    M u;
    cheb_node(u, k, n, hi - lo);
    mpfr_add_d(u, u, lo, MPFR_RNDN);
    // The middle node of an odd count is u = 0 up to the working precision.
    if (std::fabs(mpfr_get_d(u, MPFR_RNDN)) < 1e-60) mpfr_set_zero(u, 1);
    piece_g(b[k], u, c, c0);
    for (int j = 0; j < n; ++j) mpfr_pow_ui(A[k * n + j], u, j, MPFR_RNDN);
  }
  solve_linear(A[0], n, b[0], n);
  double p[kPieceTerms], p0_lo = 0, c0_lo = 0;
  const double c0_hi = mpfr_get_d(c0, MPFR_RNDN);
  for (int j = 0; j < n; ++j) p[j] = mpfr_get_d(b[j], MPFR_RNDN);
  {
    M t;
    mpfr_sub_d(t, c0, c0_hi, MPFR_RNDN);
    if (!single) c0_lo = mpfr_get_d(t, MPFR_RNDN);
    mpfr_sub_d(t, b[0], p[0], MPFR_RNDN);
    if (!single) p0_lo = mpfr_get_d(t, MPFR_RNDN);
  }
  int w = 0;
  row[w++] = bits64(c);
  row[w++] = bits64(c0_hi);
  if (!single) row[w++] = bits64(c0_lo);
  row[w++] = bits64(p[0]);
  if (!single) row[w++] = bits64(p0_lo);
  for (int j = 1; j < n; ++j) row[w++] = bits64(p[j]);
  // The error of c0 + u P(u) with the stored values, at 801 points of the row.
  double rel = 0, ab = 0;
  for (int j = 0; j <= 800; ++j) {
    const double u = lo + (hi - lo) * j / 800;
    if (u == 0 && c0_hi == 0) continue;  // the zero itself: exactly 0
    M x, ref, v, e;
    mpfr_set_d(x, c, MPFR_RNDN);
    mpfr_add_d(x, x, u, MPFR_RNDN);
    lgamma_abs(ref, x);
    mpfr_set_d(v, p[n - 1], MPFR_RNDN);
    for (int k = n - 2; k >= 0; --k) {
      mpfr_mul_d(v, v, u, MPFR_RNDN);
      mpfr_add_d(v, v, p[k], MPFR_RNDN);
    }
    mpfr_add_d(v, v, p0_lo, MPFR_RNDN);
    mpfr_mul_d(v, v, u, MPFR_RNDN);
    mpfr_add_d(v, v, c0_lo, MPFR_RNDN);
    mpfr_add_d(v, v, c0_hi, MPFR_RNDN);
    mpfr_sub(e, v, ref, MPFR_RNDN);
    ab = std::fmax(ab, std::fabs(mpfr_get_d(e, MPFR_RNDN)));
    mpfr_div(e, e, ref, MPFR_RNDN);
    rel = std::fmax(rel, std::fabs(mpfr_get_d(e, MPFR_RNDN)));
  }
  *abs_err = ab;
  return rel;
}

// Stirling's remainder in ln for the vector paths: S(z) = (1/z) h(w), w =
// 1/z^2 in (0, 1/64], h interpolating z S(z) at the Chebyshev nodes of [0,
// 1/64] (cheb_fit_w), kStirLnDeg + 1 doubles (double path) and kStirLnDegF + 1
// (single path). Budgets: |S - h/z| below 2^-60 (double) and 2^-36 (single)
// at every sampled z >= 8.
constexpr int kStirLnDeg = 6, kStirLnDegF = 2;

void stirling_ln_g(mpfr_t g, const mpfr_t w) {  // z S(z) at z = 1/sqrt(w)
  M l;
  stirling_g(g, w);
  mpfr_const_log2(l, MPFR_RNDN);
  mpfr_mul(g, g, l, MPFR_RNDN);
}

// 2^f on [-1/2, 1/2] for the single Gamma path: kExp2Terms doubles q0 .. q7
// interpolating 2^f at the Chebyshev nodes. Budget: relative error below
// 2^-33 at 2001 points (the coefficients exact as stored).
constexpr int kExp2Terms = 8;

double fit_exp2(double* q) {
  constexpr int n = kExp2Terms;
  std::vector<M> A(n * n), b(n);
  for (int k = 0; k < n; ++k) {
    M f;
    cheb_node(f, k, n, 1.0);
    mpfr_sub_d(f, f, 0.5, MPFR_RNDN);
    mpfr_ui_pow(b[k], 2, f, MPFR_RNDN);
    for (int i = 0; i < n; ++i) mpfr_pow_ui(A[k * n + i], f, i, MPFR_RNDN);
  }
  solve_linear(A[0], n, b[0], n);
  for (int i = 0; i < n; ++i) q[i] = mpfr_get_d(b[i], MPFR_RNDN);
  double worst = 0;
  for (int j = 0; j <= 2000; ++j) {
    const double f = -0.5 + j / 2000.0;
    M v, r, e, ff;
    mpfr_set_d(v, q[n - 1], MPFR_RNDN);
    for (int i = n - 2; i >= 0; --i) {
      mpfr_mul_d(v, v, f, MPFR_RNDN);
      mpfr_add_d(v, v, q[i], MPFR_RNDN);
    }
    mpfr_set_d(ff, f, MPFR_RNDN);
    mpfr_ui_pow(r, 2, ff, MPFR_RNDN);
    mpfr_sub(e, v, r, MPFR_RNDN);
    mpfr_div(e, e, r, MPFR_RNDN);
    worst = std::fmax(worst, std::fabs(mpfr_get_d(e, MPFR_RNDN)));
  }
  return worst;
}

}  // namespace

int main() {
  double stir[kStirDeg + 2];
  fit_stirling(stir, &stir[kStirDeg + 1]);
  const double err = stirling_error(stirling_g, stir, kStirDeg + 1, stir[kStirDeg + 1]);
  expect_row(err < -66, "Stirling remainder fit error budget 2^-66");
  std::fprintf(stderr, "Stirling remainder: max error 2^%.2f\n", err);

  open_file(
      "// Constants of the lgamma, lgammar and tgamma families (double and single).\n"
      "// Generated by tools/tablegen_gamma.cpp (MPFR, 256 bits, each entry rounded\n"
      "// once to nearest); do not edit. Regenerate with\n"
      "//   ninja -C build tablegen_gamma && build/tools/tablegen_gamma > src/tables/gamma.h\n"
      "// Entries are IEEE bit patterns.\n",
      "gamma_tables");

  uint64_t s[kStirDeg + 2];
  for (int k = 0; k <= kStirDeg + 1; ++k) s[k] = bits64(stir[k]);
  std::printf(
      "// Stirling's remainder in base 2: ln Gamma(z) = (z - 1/2) ln z - z + ln(2 pi)/2 + S(z),\n"
      "// S(z) log2(e) = (1/z) ((c0 + c0_lo) + c1 w + ... + c%d w^%d), w = 1/z^2, for z >= 8\n"
      "// (interpolated at the Chebyshev nodes of [0, 1/64]; the last entry is c0_lo, the rest\n"
      "// of c0; max error %.1f bits below 1 over z = 8..8e17).\n",
      kStirDeg, kStirDeg, -err);
  print_table64((std::string("alignas(64) inline constexpr uint64_t kStirling[") + std::to_string(kStirDeg + 2) + "]").c_str(), s,
                kStirDeg + 2);

  // Double-word constants (hi, lo).
  M v, t;
  uint64_t dw[12];
  mpfr_const_pi(v, MPFR_RNDN);
  mpfr_mul_2ui(v, v, 1, MPFR_RNDN);
  mpfr_log2(v, v, MPFR_RNDN);
  mpfr_div_2ui(v, v, 1, MPFR_RNDN);
  split(v, dw + 0);  // log2(2 pi)/2
  mpfr_const_log2(v, MPFR_RNDN);
  mpfr_ui_div(v, 1, v, MPFR_RNDN);
  split(v, dw + 2);  // log2(e)
  mpfr_const_log2(v, MPFR_RNDN);
  split(v, dw + 4);  // ln 2
  mpfr_const_pi(v, MPFR_RNDN);
  mpfr_log2(v, v, MPFR_RNDN);
  split(v, dw + 6);  // log2(pi)
  mpfr_const_euler(v, MPFR_RNDN);
  mpfr_neg(v, v, MPFR_RNDN);
  split(v, dw + 8);  // -gamma
  mpfr_const_pi(v, MPFR_RNDN);
  mpfr_mul_2ui(v, v, 1, MPFR_RNDN);
  mpfr_log(v, v, MPFR_RNDN);
  mpfr_div_2ui(v, v, 1, MPFR_RNDN);
  split(v, dw + 10);  // ln(2 pi)/2
  std::printf(
      "// Double-word constants (hi, lo): log2(2 pi)/2, log2(e), ln 2, log2(pi), -gamma (Euler's\n"
      "// constant), ln(2 pi)/2.\n");
  print_table64("alignas(64) inline constexpr uint64_t kConstants[12]", dw, 12);
  expect_quoted("ln 2 high part", from_bits(dw[4]), "0.69314718055994531");

  uint64_t sp[2 * kTrigTerms], cp[2 * kTrigTerms];
  for (int k = 0; k < kTrigTerms; ++k) {
    mpfr_const_pi(v, MPFR_RNDN);
    mpfr_pow_ui(v, v, 2 * k + 1, MPFR_RNDN);
    mpfr_fac_ui(t, 2 * k + 1, MPFR_RNDN);
    mpfr_div(v, v, t, MPFR_RNDN);
    if (k & 1) mpfr_neg(v, v, MPFR_RNDN);
    split(v, sp + 2 * k);
    mpfr_const_pi(v, MPFR_RNDN);
    mpfr_pow_ui(v, v, 2 * k, MPFR_RNDN);
    mpfr_fac_ui(t, 2 * k, MPFR_RNDN);
    mpfr_div(v, v, t, MPFR_RNDN);
    if (k & 1) mpfr_neg(v, v, MPFR_RNDN);
    split(v, cp + 2 * k);
  }
  std::printf(
      "// sin(pi t) = t sum_k S_k t^(2k), S_k = (-1)^k pi^(2k+1)/(2k+1)!, and cos(pi t) = sum_k C_k\n"
      "// t^(2k), C_k = (-1)^k pi^(2k)/(2k)!, k = 0..%d, as (hi, lo) pairs.\n",
      kTrigTerms - 1);
  print_table64((std::string("alignas(64) inline constexpr uint64_t kSinPi[") + std::to_string(2 * kTrigTerms) + "]").c_str(), sp,
                2 * kTrigTerms);
  print_table64((std::string("alignas(64) inline constexpr uint64_t kCosPi[") + std::to_string(2 * kTrigTerms) + "]").c_str(), cp,
                2 * kTrigTerms);
  constexpr int nroots = 2 * (kRootLast - kRootFirst + 1);
  std::vector<uint64_t> roots(nroots * kRootStride);
  for (int n = kRootFirst; n <= kRootLast; ++n)
    for (int side = 0; side < 2; ++side) root_row(n, side, &roots[(2 * (n - kRootFirst) + side) * kRootStride]);
  expect_quoted("first negative zero", from_bits(roots[0]), "-2.4570247382208006");
  std::printf(
      "// The zeros of ln |Gamma(x)| on (-n - 1, -n), n = %d..%d: row 2 (n - %d) + side (side 0 the\n"
      "// zero nearer -n) holds r_hi, r_lo, delta, c1_hi, c1_lo, c2, c3, c4 with\n"
      "// ln |Gamma(r + t)| = t (c1 + c2 t + c3 t^2 + c4 t^3) for |t| <= delta = 2^-14 / |psi(r)|.\n",
      kRootFirst, kRootLast, kRootFirst);
  print_table64((std::string("alignas(64) inline constexpr uint64_t kRoots[") + std::to_string(nroots * kRootStride) + "]").c_str(),
                roots.data(), nroots * kRootStride);

  // The vector paths' pieces and Stirling remainder.
  std::vector<uint64_t> pieces(kPieceRows * kPieceStride), pieces_f(kPieceRows * kPieceStrideF);
  double rel = 0, ab = 0, rel_f = 0;
  for (int i = 0; i < kPieceRows; ++i) {
    double a;
    rel = std::fmax(rel, piece_row(i, false, &pieces[i * kPieceStride], &a));
    ab = std::fmax(ab, a);
    rel_f = std::fmax(rel_f, piece_row(i, true, &pieces_f[i * kPieceStrideF], &a));
  }
  expect_row(rel < 0x1p-56 && ab < 0x1p-60, "pieces (double) error budget 2^-56 relative, 2^-60 absolute");
  expect_row(rel_f < 0x1p-30, "pieces (single) error budget 2^-30 relative");
  std::fprintf(stderr, "pieces: double 2^%.2f relative, 2^%.2f absolute; single 2^%.2f relative\n", std::log2(rel),
               std::log2(ab), std::log2(rel_f));
  expect_quoted("the expansion point of row 7 (the zero 2)", from_bits(pieces[7 * kPieceStride]), "2");
  std::printf(
      "// ln Gamma(x) for 1 <= x < %d on rows of width 1/8 (row i: [1 + i/8, 1 + (i + 1)/8)):\n"
      "// ln Gamma(c + u) = c0 + u (p0 + p1 u + ... + p%d u^%d), c the zero 1 (row 0) or 2 (rows 7\n"
      "// and 8) or the row's middle; rows of 16 doubles c, c0_hi, c0_lo, p0_hi, p0_lo, p1 .. p%d\n"
      "// (interpolated at the Chebyshev nodes of each row; max error 2^%.1f relative, 2^%.1f\n"
      "// absolute, the arithmetic's roundings aside).\n",
      kPieceEnd, kPieceTerms - 1, kPieceTerms - 1, kPieceTerms - 1, std::log2(rel), std::log2(ab));
  print_table64((std::string("alignas(64) inline constexpr uint64_t kPieces[") + std::to_string(kPieceRows * kPieceStride) + "]").c_str(),
                pieces.data(), kPieceRows * kPieceStride);
  std::printf(
      "// The same rows for the single families (computed in double): 8 doubles c, c0, p0 .. p%d\n"
      "// (max error 2^%.1f relative).\n",
      kPieceTermsF - 1, std::log2(rel_f));
  print_table64((std::string("alignas(64) inline constexpr uint64_t kPiecesF[") + std::to_string(kPieceRows * kPieceStrideF) + "]").c_str(),
                pieces_f.data(), kPieceRows * kPieceStrideF);

  double sl[kStirLnDeg + 1], slf[kStirLnDegF + 1];
  cheb_fit_w([](mpfr_t o, const mpfr_t w) { stirling_ln_g(o, w); }, kStirLnDeg + 1, kWMax, false, sl);
  cheb_fit_w([](mpfr_t o, const mpfr_t w) { stirling_ln_g(o, w); }, kStirLnDegF + 1, kWMax, false, slf);
  const double el = stirling_error(stirling_ln_g, sl, kStirLnDeg + 1),
               elf = stirling_error(stirling_ln_g, slf, kStirLnDegF + 1);
  expect_row(el < -60, "Stirling remainder in ln (double path) error budget 2^-60");
  expect_row(elf < -36, "Stirling remainder in ln (single path) error budget 2^-36");
  std::fprintf(stderr, "Stirling remainder in ln: double 2^%.2f, single 2^%.2f\n", el, elf);
  uint64_t slb[kStirLnDeg + 1], slfb[kStirLnDegF + 1];
  for (int k = 0; k <= kStirLnDeg; ++k) slb[k] = bits64(sl[k]);
  for (int k = 0; k <= kStirLnDegF; ++k) slfb[k] = bits64(slf[k]);
  std::printf(
      "// Stirling's remainder in ln for the vector paths: S(z) = (1/z) (h0 + h1 w + ... + h%d w^%d),\n"
      "// w = 1/z^2, z >= 8 (interpolated at the Chebyshev nodes of [0, 1/64]; max error 2^%.1f);\n"
      "// the single paths' h0 .. h%d (max error 2^%.1f).\n",
      kStirLnDeg, kStirLnDeg, el, kStirLnDegF, elf);
  print_table64((std::string("alignas(64) inline constexpr uint64_t kStirlingLn[") + std::to_string(kStirLnDeg + 1) + "]").c_str(), slb,
                kStirLnDeg + 1);
  print_table64((std::string("alignas(64) inline constexpr uint64_t kStirlingLnF[") + std::to_string(kStirLnDegF + 1) + "]").c_str(), slfb,
                kStirLnDegF + 1);

  double q[kExp2Terms];
  const double eq = fit_exp2(q);
  expect_row(eq < 0x1p-33, "2^f (single Gamma path) error budget 2^-33");
  std::fprintf(stderr, "2^f: 2^%.2f\n", std::log2(eq));
  uint64_t qb[kExp2Terms];
  for (int k = 0; k < kExp2Terms; ++k) qb[k] = bits64(q[k]);
  std::printf(
      "// 2^f = q0 + q1 f + ... + q%d f^%d on [-1/2, 1/2] for the single Gamma path (interpolated\n"
      "// at the Chebyshev nodes; max relative error 2^%.1f).\n",
      kExp2Terms - 1, kExp2Terms - 1, std::log2(eq));
  print_table64((std::string("alignas(64) inline constexpr uint64_t kExp2[") + std::to_string(kExp2Terms) + "]").c_str(), qb,
                kExp2Terms);
  close_file("gamma_tables");
  return row_failures ? 1 : 0;
}
