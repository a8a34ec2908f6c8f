// Prints src/tables/atan.h: the node tables of the arc tangent families
// (atan, atan2, atanpi, atan2pi and their single forms) and the series of
// the single _native kernel, computed with MPFR at 256 bits.
//
//   ninja -C build tablegen_atan && build/tools/tablegen_atan > src/tables/atan.h
//
// Checks what the kernels rely on and exits non-zero on a mismatch: every
// middle node has the bit pattern the kernels build from the argument's bits,
// hi + lo is the value to 2^-100 relative, and the row of node infinity holds
// the quarter turn exactly in hi (pi/2 rounded, or 0.5).
#include <cmath>

#include "tablegen_common.h"

namespace {

using namespace tablegen;


// v = atan(c) (or infinity's quarter turn), then as the unit asks: turned
// around (pi - v) for a negative first coordinate, divided by pi for the pi
// forms.
void angle(mpfr_t v, double c, bool inf, bool neg, bool pi_unit) {
  mpfr_t p;
  mpfr_init2(p, kPrec);
  mpfr_const_pi(p, MPFR_RNDN);
  if (inf) {
    mpfr_div_2ui(v, p, 1, MPFR_RNDN);
  } else {
    mpfr_set_d(v, c, MPFR_RNDN);
    mpfr_atan(v, v, MPFR_RNDN);
  }
  if (neg) mpfr_sub(v, p, v, MPFR_RNDN);
  if (pi_unit) mpfr_div(v, v, p, MPFR_RNDN);
  mpfr_clear(p);
}

// (hi, lo) of v: hi = RN(v), lo = RN(v - hi), as doubles or as floats.
void split(mpfr_t v, double* hi, double* lo, bool single) {
  mpfr_t t;
  mpfr_init2(t, kPrec);
  *hi = single ? (double)mpfr_get_flt(v, MPFR_RNDN) : mpfr_get_d(v, MPFR_RNDN);
  mpfr_sub_d(t, v, *hi, MPFR_RNDN);
  *lo = single ? (double)mpfr_get_flt(t, MPFR_RNDN) : mpfr_get_d(t, MPFR_RNDN);
  // hi + lo to 2^-100 (double) or 2^-45 (single) relative.
  mpfr_sub_d(t, t, *lo, MPFR_RNDN);
  if (!mpfr_zero_p(v)) {
    mpfr_div(t, t, v, MPFR_RNDN);
    expect_row((mpfr_abs(t, t, MPFR_RNDN), mpfr_cmp_ui_2exp(t, 1, single ? -45 : -100) <= 0), "hi + lo is not the value", 0);
  }
  mpfr_clear(t);
}

// Double nodes: row = (bits(t) >> 50) - 4072 for t = min(max(q, 2^-5), 16):
// rows 0-3 node 0 (q < 2^-4), rows 4-35 the node c = 2^e (1 + m/4 + 1/8) of
// t = 2^e (1 + m/4 + f), e = -4..3, m = 0..3, row 4 + 4 (e + 4) + m, the bit
// pattern (bits(t) & 0xfffc000000000000) | 0x0002000000000000; row 36 node
// infinity (q >= 16). Rows 64-100 the same nodes for a negative first
// coordinate (pi - angle). The other rows are zero.
constexpr int kRowsD = 128, kNegD = 64;
double node_d(int row, bool* inf) {
  *inf = row == 36;
  if (row < 4 || row >= 36) return 0;
  const int k = row - 4, e = -4 + k / 4, m = k % 4;
  const double c = (1 + m / 4.0 + 1 / 8.0) * (double)(1ll << (e + 4)) / 16;
  const uint64_t want = ((uint64_t)(1019 + k / 4) << 52) | ((uint64_t)m << 50) | 0x0002000000000000ull;
  expect_row(bits64(c) == want, "double node pattern", row);
  return c;
}

// Single nodes, at position p = E & 7 for the biased exponent E of t =
// min(max(q sqrt2, 2^-4), 8): E = 123 node 0, E = 124..129 the node c =
// 2^(E - 127) (for q in [c/sqrt2, c sqrt2)), E = 130 node infinity.
double node_s(int p, bool* inf) {
  int E = 0;
  for (int e = 123; e <= 130; ++e)
    if ((e & 7) == p) E = e;
  *inf = E == 130;
  if (E == 123 || E == 130) return 0;
  return E >= 127 ? (double)(1 << (E - 127)) : 1.0 / (1 << (127 - E));
}

void double_table(const char* name, bool pi_unit) {
  static uint64_t v[2 * kRowsD];
  mpfr_t a;
  mpfr_init2(a, kPrec);
  for (int row = 0; row < kRowsD; ++row) {
    const int base = row >= kNegD ? row - kNegD : row;
    bool inf = false;
    double c = base <= 36 ? node_d(base, &inf) : 0, hi = 0, lo = 0;
    if (base <= 36) {
      angle(a, c, inf, row >= kNegD, pi_unit);
      split(a, &hi, &lo, false);
    }
    if (inf && row < kNegD) expect_row(lo == 0 || !pi_unit, "node infinity is not 0.5", row);
    v[2 * row] = bits64(hi);
    v[2 * row + 1] = bits64(lo);
  }
  char decl[128];
  std::snprintf(decl, sizeof decl, "alignas(64) inline constexpr uint64_t %s[%d]", name, 2 * kRowsD);
  print_table64(decl, v, 2 * kRowsD);
  mpfr_clear(a);
}

// Single tables: the node b, a (0 at node infinity, else 1), then hi and lo
// for each unit and sign of the first coordinate.
void single_tables() {
  uint32_t b[8], a[8];
  for (int p = 0; p < 8; ++p) {
    bool inf = false;
    const double c = node_s(p, &inf);
    b[p] = bits32(inf ? 1.0f : (float)c);
    a[p] = bits32(inf ? 0.0f : 1.0f);
  }
  print_table32("alignas(32) inline constexpr uint32_t kNodeB[8]", b, 8, 8);
  print_table32("alignas(32) inline constexpr uint32_t kNodeA[8]", a, 8, 8);
  mpfr_t v;
  mpfr_init2(v, kPrec);
  const char* names[4] = {"kAtanF", "kAtanFNeg", "kAtanPiF", "kAtanPiFNeg"};
  for (int t = 0; t < 4; ++t) {
    uint32_t hi[8], lo[8];
    for (int p = 0; p < 8; ++p) {
      bool inf = false;
      const double c = node_s(p, &inf);
      angle(v, c, inf, t % 2 == 1, t >= 2);
      double h, l;
      split(v, &h, &l, true);
      hi[p] = bits32((float)h);
      lo[p] = bits32((float)l);
    }
    char decl[96];
    std::snprintf(decl, sizeof decl, "alignas(32) inline constexpr uint32_t %sHi[8]", names[t]);
    print_table32(decl, hi, 8, 8);
    std::snprintf(decl, sizeof decl, "alignas(32) inline constexpr uint32_t %sLo[8]", names[t]);
    print_table32(decl, lo, 8, 8);
  }
  mpfr_clear(v);
}

// The series r + r s P(s) of the _native kernels (s = r^2): the function P
// fits, (atan(r)/r - 1)/s, and the weight s r/atan(r) that makes the fit's
// error relative to atan(r); in the half-turn form P/pi, weight times pi.
void series_target(mpfr_t out, mpfr_t s, int pi_unit) {
  M r, p;
  mpfr_sqrt(r, s, MPFR_RNDN);
  mpfr_atan(out, r, MPFR_RNDN);
  mpfr_div(out, out, r, MPFR_RNDN);
  mpfr_sub_ui(out, out, 1, MPFR_RNDN);
  mpfr_div(out, out, s, MPFR_RNDN);
  if (pi_unit) mpfr_const_pi(p, MPFR_RNDN), mpfr_div(out, out, p, MPFR_RNDN);
}
void series_weight(mpfr_t out, mpfr_t s, int pi_unit) {
  M r, a, p;
  mpfr_sqrt(r, s, MPFR_RNDN);
  mpfr_atan(a, r, MPFR_RNDN);
  mpfr_mul(out, s, r, MPFR_RNDN);
  mpfr_div(out, out, a, MPFR_RNDN);
  if (pi_unit) mpfr_const_pi(p, MPFR_RNDN), mpfr_mul(out, out, p, MPFR_RNDN);
}

// Max relative error of the series u + u s P(s) (u/pi + u s P in the
// half-turn form, 1/pi exact here) against atan(u) (or atan(u)/pi) with the
// rounded coefficients c and exact arithmetic, on u = umax i/8192, i = 1 ..
// 8192.
double series_error(const double* c, int n, const mpfr_t umax, int pi_unit) {
  double worst = 0;
  for (int i = 1; i <= 8192; ++i) {
    M u, s, p, want, got, pi;
    mpfr_mul_d(u, umax, i / 8192.0, MPFR_RNDN);
    mpfr_sqr(s, u, MPFR_RNDN);
    horner(p, c, n, s);
    mpfr_mul(p, p, s, MPFR_RNDN);
    mpfr_const_pi(pi, MPFR_RNDN);
    if (pi_unit) mpfr_ui_div(got, 1, pi, MPFR_RNDN), mpfr_add(p, p, got, MPFR_RNDN);
    else mpfr_add_ui(p, p, 1, MPFR_RNDN);
    mpfr_mul(got, p, u, MPFR_RNDN);
    mpfr_atan(want, u, MPFR_RNDN);
    if (pi_unit) mpfr_div(want, want, pi, MPFR_RNDN);
    mpfr_sub(got, got, want, MPFR_RNDN);
    mpfr_div(got, got, want, MPFR_RNDN);
    worst = std::fmax(worst, std::fabs(mpfr_get_d(got, MPFR_RNDN)));
  }
  return worst;
}

// The single _native kernel's series: atan(r) = r + r s P(s) on r in [0, 1],
// s = r^2, P with kFastTerms coefficients (lowest power first), the minimax
// fit of (atan(r)/r - 1)/s in the relative error of the series (weight
// s r/atan(r); s from 2^-20, below which the weight is negligible), rounded
// to single; and P/pi for the half-turn forms (atanpi(r) = r/pi + r s P/pi).
// The series with the rounded coefficients (exact arithmetic) must stay
// within kFastBudget relative.
constexpr int kFastTerms = 8;
constexpr double kFastBudget = 0x1p-25;
void single_fast_series() {
  for (int pi_unit = 0; pi_unit < 2; ++pi_unit) {
    auto g = [pi_unit](mpfr_t out, mpfr_t s) { series_target(out, s, pi_unit); };
    auto wt = [pi_unit](mpfr_t out, mpfr_t s) { series_weight(out, s, pi_unit); };
    double c[kFastTerms];
    remez_fit_w(g, wt, kFastTerms, 0x1p-20, 1.0, true, c);
    // Max relative error of r + r s P(s) (times 1/pi in the half-turn form,
    // with 1/pi exact here) on 8192 points of (0, 1].
    M one;
    mpfr_set_ui(one, 1, MPFR_RNDN);
    double worst = series_error(c, kFastTerms, one, pi_unit);
    if (worst > kFastBudget) {
      std::fprintf(stderr, "single fast series (%s): fit error %.3g above %.3g\n", pi_unit ? "pi" : "radians", worst,
                   kFastBudget);
      ++row_failures;
    }
    uint32_t b[kFastTerms];
    for (int k = 0; k < kFastTerms; ++k) b[k] = bits32((float)c[k]);
    char decl[96];
    std::snprintf(decl, sizeof decl, "alignas(32) inline constexpr uint32_t %s[%d]",
                  pi_unit ? "kAtanPiFastF" : "kAtanFastF", kFastTerms);
    print_table32(decl, b, kFastTerms, 8);
  }
}

// The double _native kernel of the pairs: atan(u) = u + u s P(s) for |u| <=
// tan(pi/8), s = u^2, P with kFastTermsD coefficients (lowest power first),
// the minimax fit of (atan(u)/u - 1)/s in the relative error of the series
// (weight s u/atan(u); s from 2^-20) on s up to tan(pi/8)^2 (1 + 2^-40),
// which covers every |u| the kernel forms (its region tests use tan(pi/8)
// rounded, and u is rounded once); rounded to double; and P/pi for the
// half-turn forms (atanpi(u) = u/pi + u s P/pi). The series with the rounded
// coefficients (exact arithmetic, 1/pi exact) must stay within
// kFastBudgetD relative on 8192 points of |u| up to that bound. Also prints
// the region bound tan(pi/8) rounded, checked to be within that bound.
constexpr int kFastTermsD = 8;
constexpr double kFastBudgetD = 0x1.2p-45;  // 2^-44.83
void double_fast_series() {
  M t8;
  mpfr_const_pi(t8, MPFR_RNDN);
  mpfr_div_ui(t8, t8, 8, MPFR_RNDN);
  mpfr_tan(t8, t8, MPFR_RNDN);
  const double t8d = mpfr_get_d(t8, MPFR_RNDN);
  M smax;
  mpfr_sqr(smax, t8, MPFR_RNDN);
  mpfr_mul_d(smax, smax, 1 + 0x1p-40, MPFR_RNDN);
  const double smaxd = mpfr_get_d(smax, MPFR_RNDN);
  expect_row(t8d * t8d * (1 + 0x1p-50) < smaxd, "tan(pi/8) rounded within the fit's range");
  std::printf("inline constexpr uint64_t kTanPi8D = 0x%016llxull;  // tan(pi/8) rounded\n\n",
              (unsigned long long)bits64(t8d));
  for (int pi_unit = 0; pi_unit < 2; ++pi_unit) {
    auto g = [pi_unit](mpfr_t out, mpfr_t s) { series_target(out, s, pi_unit); };
    auto wt = [pi_unit](mpfr_t out, mpfr_t s) { series_weight(out, s, pi_unit); };
    double c[kFastTermsD];
    remez_fit_w(g, wt, kFastTermsD, 0x1p-20, smaxd, false, c);
    M umax;
    mpfr_sqrt(umax, smax, MPFR_RNDN);
    double worst = series_error(c, kFastTermsD, umax, pi_unit);
    if (worst > kFastBudgetD) {
      std::fprintf(stderr, "double fast series (%s): fit error %.3g above %.3g\n", pi_unit ? "pi" : "radians", worst,
                   kFastBudgetD);
      ++row_failures;
    }
    uint64_t b[kFastTermsD];
    for (int k = 0; k < kFastTermsD; ++k) b[k] = bits64(c[k]);
    char decl[96];
    std::snprintf(decl, sizeof decl, "alignas(64) inline constexpr uint64_t %s[%d]",
                  pi_unit ? "kAtanPiFastD" : "kAtanFastD", kFastTermsD);
    print_table64(decl, b, kFastTermsD);
  }
}

}  // namespace

int main() {
  open_file(
      "// Node tables of the arc tangent families. Generated by tools/tablegen_atan.cpp\n"
      "// (MPFR, 256 bits); do not edit. Regenerate with\n"
      "//   ninja -C build tablegen_atan && build/tools/tablegen_atan > src/tables/atan.h\n"
      "// Entries are IEEE bit patterns.\n",
      "atan_tables");
  std::printf(
      "// Double nodes, pairs (hi, lo) = RN(A), RN(A - hi), 16 bytes a row, A the\n"
      "// angle of the node c: atan(c) in rows 0-36, pi - atan(c) in rows 64-100\n"
      "// (for x < 0), in radians (kAtanD) or half turns (A / pi, kAtanPiD). Row\n"
      "// (bits(t) >> 50) - 4072 for t = min(max(q, 2^-5), 16): rows 0-3 c = 0,\n"
      "// rows 4-35 c = 2^e (1 + m/4 + 1/8) for t = 2^e (1 + m/4 + f) (e = -4..3,\n"
      "// m = 0..3, f < 1/4), row 36 c = infinity (A = pi/2 or 1/2).\n");
  double_table("kAtanD", false);
  double_table("kAtanPiD", true);
  std::printf(
      "// Single nodes at position E & 7, E the biased exponent of t =\n"
      "// min(max(q sqrt2, 2^-4), 8): b the node c (c = 0 at E = 123, 2^(E - 127) at\n"
      "// E = 124..129, and 1 at E = 130, node infinity, where a = 0; a = 1 elsewhere),\n"
      "// then (hi, lo) of atan(c) (pi/2 at node infinity) as singles, and of pi -\n"
      "// atan(c) (Neg), in radians and in half turns.\n");
  single_tables();
  std::printf(
      "// The single _native series: atan(r) = r + r s P(s), s = r^2, r in [0, 1],\n"
      "// P's coefficients lowest power first (minimax in the series' relative error\n"
      "// on r in [0, 1], rounded to single; max relative error of the series with\n"
      "// these coefficients below 2^-25), and P/pi (kAtanPiFastF) for half turns.\n");
  single_fast_series();
  std::printf(
      "// The double _native series of the pairs: atan(u) = u + u s P(s), s = u^2,\n"
      "// |u| <= tan(pi/8), P's coefficients lowest power first (minimax in the\n"
      "// series' relative error, rounded to double; max relative error of the\n"
      "// series with these coefficients below 1.125 * 2^-45), and P/pi (kAtanPiFastD)\n"
      "// for half turns; the region bound tan(pi/8) rounded.\n");
  double_fast_series();
  close_file("atan_tables");
  return row_failures ? 1 : 0;
}
