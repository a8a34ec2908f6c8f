// Prints src/tables/erf.h: the piecewise polynomials of the erf, erff, erfc and
// erfcf families, fitted with MPFR at 256 bits (Chebyshev interpolation, each
// coefficient rounded once to nearest) and measured here against MPFR. Exits
// non-zero when a fit misses its error budget or a quoted row differs.
//
//   ninja -C build tablegen_erf && build/tools/tablegen_erf > src/tables/erf.h
//
// Intervals. With w = upper word of a = |x| AND 0x7ffe0000 (exponent and
// three leading fraction bits) and a clamped to [0.1171875, last] first, the
// row is i = (w - 0x3fbe0000) >> 17: row 0 for a < 0.125, then one row per
// eighth of a binade ([0.125, 0.140625) is row 1, [4, 4.5) row 41, [6, 6.5)
// row 45, [28, 30) row 63).
//
// Row layout (stride doubles): c0, c1, ..., cn, shift, d, zero padding. On
// the row's interval, with t = a + shift (exact: shift is minus the centre,
// and a lies within a factor 2 of it),
//   f(a) ~ (c0 + d t) + t (c1 + t (c2 + ... + t cn)).
// Row 0 has shift 0 (t = a) and its c0 and d fixed (c0 + d t carries the
// function's value and slope at 0 exactly), the rest fitted to
// (f(t) - c0 - d t) / t, so that a tiny a keeps its relative accuracy.
//
// Functions:
//   erf table (rows 0..45):  f = erf a;  row 0: c0 = 0, d = 1; row 45 (a >= 6,
//     where erf rounds to 1 from 5.9215) the constant 1.
//   erfc table (rows 0..127): rows 0..63 (x >= 0) f = g(a) = erfc(a) e^(a^2),
//     which the caller multiplies by e^(-a^2); row 0: c0 = 1, d = 0. Rows
//     64..127 (x < 0) f = 1 + erf a = erfc(-a); row 64: c0 = 1, d = 0; the rows
//     from a = 6 on the constant 2 (1 + erf a rounds to 2 from 5.86).
#include <cmath>
#include <vector>

#include "tablegen_common.h"

namespace {

using namespace tablegen;

enum Fn { kErf, kOnePlusErf, kErfcScaled };

// f(a) to kPrec bits.
void eval(mpfr_t y, Fn fn, const mpfr_t a) {
  mpfr_t s;
  mpfr_init2(s, kPrec);
  switch (fn) {
    case kErf:
      mpfr_erf(y, a, MPFR_RNDN);
      break;
    case kOnePlusErf:
      mpfr_erf(y, a, MPFR_RNDN);
      mpfr_add_ui(y, y, 1, MPFR_RNDN);
      break;
    case kErfcScaled:
      mpfr_erfc(y, a, MPFR_RNDN);
      mpfr_sqr(s, a, MPFR_RNDN);
      mpfr_exp(s, s, MPFR_RNDN);
      mpfr_mul(y, y, s, MPFR_RNDN);
      break;
  }
  mpfr_clear(s);
}

double word_value(uint32_t w) { return from_bits((uint64_t)w << 32); }
constexpr uint32_t kFirstWord = 0x3fbe0000u, kWordStep = 0x20000u;
double row_lo(int i) { return i == 0 ? 0.0 : word_value(kFirstWord + i * kWordStep); }
double row_hi(int i) { return word_value(kFirstWord + (i + 1) * kWordStep); }

// One row: coefficients c[0..n], c0's low part, shift, d.
struct Row {
  std::vector<double> c;
  double c0lo = 0, shift = 0, d = 0;
};

// The degree-(m-1) interpolant of h(t) = (f(t - shift) - c0 - d t) / t^k (k = 1
// for row 0, else 0) at the m Chebyshev nodes of [tlo, thi], as monomial
// coefficients in t, each rounded to a double; *lo = RN(constant term - its double).
std::vector<double> cheb_fit(Fn fn, int m, double tlo, double thi, double shift, bool row0, double c0, double d,
                             double* lo) {
  std::vector<mpfr_t> val(m), a(m), b(m), tj(m), tj1(m), tmp(m);
  for (int k = 0; k < m; ++k) {
    mpfr_inits2(kPrec, val[k], a[k], b[k], tj[k], tj1[k], tmp[k], (mpfr_ptr)0);
    mpfr_set_ui(b[k], 0, MPFR_RNDN);
  }
  mpfr_t u, t, x, y, w, alpha, beta;
  mpfr_inits2(kPrec, u, t, x, y, w, alpha, beta, (mpfr_ptr)0);
  // alpha = 2 / (thi - tlo), beta = -(thi + tlo) / (thi - tlo): u = alpha t + beta.
  mpfr_set_d(w, thi, MPFR_RNDN);
  mpfr_sub_d(w, w, tlo, MPFR_RNDN);
  mpfr_ui_div(alpha, 2, w, MPFR_RNDN);
  mpfr_set_d(beta, thi, MPFR_RNDN);
  mpfr_add_d(beta, beta, tlo, MPFR_RNDN);
  mpfr_div(beta, beta, w, MPFR_RNDN);
  mpfr_neg(beta, beta, MPFR_RNDN);
  // Values at the nodes u_k = cos((2k + 1) pi / (2m)).
  std::vector<mpfr_t> node(m);
  for (int k = 0; k < m; ++k) {
    mpfr_init2(node[k], kPrec);
    mpfr_const_pi(u, MPFR_RNDN);
    mpfr_mul_ui(u, u, 2 * k + 1, MPFR_RNDN);
    mpfr_div_ui(u, u, 2 * m, MPFR_RNDN);
    mpfr_cos(node[k], u, MPFR_RNDN);
    mpfr_sub(t, node[k], beta, MPFR_RNDN);
    mpfr_div(t, t, alpha, MPFR_RNDN);  // t_k
    mpfr_sub_d(x, t, shift, MPFR_RNDN);
    eval(y, fn, x);
    if (row0) {
      mpfr_sub_d(y, y, c0, MPFR_RNDN);
      mpfr_mul_d(w, t, d, MPFR_RNDN);
      mpfr_sub(y, y, w, MPFR_RNDN);
      mpfr_div(y, y, t, MPFR_RNDN);
    }
    mpfr_set(val[k], y, MPFR_RNDN);
  }
  // Chebyshev coefficients a_j = (2/m) sum_k h(u_k) T_j(u_k) (a_0 halved),
  // accumulated into monomials in u: b += a_j T_j, T_j by T_(j+1) = 2u T_j - T_(j-1).
  for (int k = 0; k < m; ++k) mpfr_set_ui(tj[k], 0, MPFR_RNDN), mpfr_set_ui(tj1[k], 0, MPFR_RNDN);
  mpfr_set_ui(tj1[0], 1, MPFR_RNDN);  // T_0 (tj1 holds T_j, tj holds T_(j-1))
  for (int j = 0; j < m; ++j) {
    mpfr_set_ui(a[j], 0, MPFR_RNDN);
    for (int k = 0; k < m; ++k) {
      mpfr_const_pi(u, MPFR_RNDN);
      mpfr_mul_ui(u, u, (unsigned long)j * (2 * k + 1), MPFR_RNDN);
      mpfr_div_ui(u, u, 2 * m, MPFR_RNDN);
      mpfr_cos(u, u, MPFR_RNDN);  // T_j(u_k)
      mpfr_fma(a[j], val[k], u, a[j], MPFR_RNDN);
    }
    mpfr_mul_ui(a[j], a[j], 2, MPFR_RNDN);
    mpfr_div_ui(a[j], a[j], j == 0 ? 2 * m : m, MPFR_RNDN);
    for (int q = 0; q < m; ++q) mpfr_fma(b[q], a[j], tj1[q], b[q], MPFR_RNDN);
    // Next T: 2u T_j - T_(j-1).
    for (int q = m - 1; q >= 0; --q) {
      if (j == 0) {  // T_1 = u
        mpfr_set_ui(tmp[q], q == 1, MPFR_RNDN);
        continue;
      }
      mpfr_mul_ui(tmp[q], q > 0 ? tj1[q - 1] : tj1[0], q > 0 ? 2 : 0, MPFR_RNDN);
      mpfr_sub(tmp[q], tmp[q], tj[q], MPFR_RNDN);
    }
    for (int q = 0; q < m; ++q) mpfr_swap(tj[q], tj1[q]), mpfr_swap(tj1[q], tmp[q]);
  }
  // Monomials in t: Horner on polynomials, P <- P (alpha t + beta) + b_k.
  std::vector<mpfr_t>& p = tmp;
  for (int q = 0; q < m; ++q) mpfr_set_ui(p[q], 0, MPFR_RNDN);
  for (int k = m - 1; k >= 0; --k) {
    for (int q = m - 1; q >= 0; --q) {
      mpfr_mul(w, p[q], beta, MPFR_RNDN);
      if (q > 0) mpfr_fma(w, p[q - 1], alpha, w, MPFR_RNDN);
      mpfr_set(p[q], w, MPFR_RNDN);
    }
    mpfr_add(p[0], p[0], b[k], MPFR_RNDN);
  }
  std::vector<double> out(m);
  for (int q = 0; q < m; ++q) out[q] = mpfr_get_d(p[q], MPFR_RNDN);
  mpfr_sub_d(w, p[0], out[0], MPFR_RNDN);
  *lo = mpfr_get_d(w, MPFR_RNDN);
  for (int k = 0; k < m; ++k) mpfr_clears(val[k], a[k], b[k], tj[k], tj1[k], tmp[k], node[k], (mpfr_ptr)0);
  mpfr_clears(u, t, x, y, w, alpha, beta, (mpfr_ptr)0);
  return out;
}

// Max |p - f| over 513 points of the row's interval (2^-30 up to 0.125 on a
// log scale for row 0), the row's coefficients taken exactly, in units of
// 2^-53 |f| (the relative error in double ulps at the top of a binade).
double fit_error(Fn fn, const Row& r, double lo, double hi) {
  mpfr_t a, t, p, y, e;
  mpfr_inits2(kPrec, a, t, p, y, e, (mpfr_ptr)0);
  const int n = (int)r.c.size() - 1;
  double worst = 0;
  for (int k = 0; k <= 512; ++k) {
    const double av = lo == 0.0 ? std::ldexp(1.0, -30 + (int)(27.0 * k / 512)) * (1 + (k % 7) / 8.0)
                                : lo + (hi - lo) * k / 512;
    if (av >= hi && lo == 0.0) continue;
    mpfr_set_d(a, av, MPFR_RNDN);
    mpfr_add_d(t, a, r.shift, MPFR_RNDN);
    horner(p, r.c.data() + 1, n, t);  // c1 + c2 t + ... + cn t^(n-1)
    mpfr_mul(p, p, t, MPFR_RNDN);
    mpfr_mul_d(e, t, r.d, MPFR_RNDN);
    mpfr_add(p, p, e, MPFR_RNDN);
    mpfr_add_d(p, p, r.c0lo, MPFR_RNDN);
    mpfr_add_d(p, p, r.c[0], MPFR_RNDN);
    eval(y, fn, a);
    mpfr_sub(e, p, y, MPFR_RNDN);
    mpfr_div(e, e, y, MPFR_RNDN);
    const double err = std::fabs(mpfr_get_d(e, MPFR_RNDN)) * 0x1p53;
    if (err > worst) worst = err;
  }
  mpfr_clears(a, t, p, y, e, (mpfr_ptr)0);
  return worst;
}

// Row i of a table of function fn at degree n; constant rows hold c0 only.
Row make_row(Fn fn, int i, int n, double constant_from, double constant) {
  Row r;
  r.c.assign(n + 1, 0.0);
  const double lo = row_lo(i), hi = row_hi(i);
  if (lo >= constant_from) {
    r.c[0] = constant;
    return r;
  }
  if (i == 0) {
    r.c[0] = fn == kErf ? 0.0 : 1.0;
    r.d = fn == kErf ? 1.0 : 0.0;
    double unused;
    std::vector<double> h = cheb_fit(fn, n, 0.0, 0.125, 0.0, true, r.c[0], r.d, &unused);
    for (int q = 0; q < n; ++q) r.c[q + 1] = h[q];
    return r;
  }
  const double centre = (lo + hi) / 2;  // exact
  r.shift = -centre;
  std::vector<double> h = cheb_fit(fn, n + 1, lo - centre, hi - centre, r.shift, false, 0, 0, &r.c0lo);
  for (int q = 0; q <= n; ++q) r.c[q] = h[q];
  return r;
}

struct Set {
  const char* name;  // the table's suffix
  int degree, stride;
  double budget;  // fit budget, units of 2^-53 |f|
  const char* use;
};

// Fits, measures and prints one table of `rows` rows: rows [first, first + count)
// of function fn (row index i - first within the function's own numbering).
struct Part {
  Fn fn;
  int first, count;
  double constant_from, constant;
  const char* what;
};

void emit(const char* decl, const Set& s, const Part* parts, int nparts, int rows) {
  std::vector<uint64_t> out((size_t)rows * s.stride, 0);
  for (int p = 0; p < nparts; ++p) {
    const Part& pt = parts[p];
    double worst = 0, worst0 = 0;
    for (int i = 0; i < pt.count; ++i) {
      const Row r = make_row(pt.fn, i, s.degree, pt.constant_from, pt.constant);
      uint64_t* o = &out[(size_t)(pt.first + i) * s.stride];
      o[0] = bits64(r.shift);
      o[1] = bits64(r.d);
      o[2] = bits64(r.c[0]);
      o[3] = bits64(r.c0lo);
      for (int q = 1; q <= s.degree; ++q) o[3 + q] = bits64(r.c[q]);
      if (row_lo(i) >= pt.constant_from) continue;
      const double err = fit_error(pt.fn, r, row_lo(i), row_hi(i));
      if (i == 0) worst0 = err;
      else worst = err > worst ? err : worst;
      if (err > s.budget) {
        std::fprintf(stderr, "%s %s row %d: fit error %.3g above %.3g\n", decl, pt.what, i, err, s.budget);
        ++row_failures;
      }
    }
    std::printf("// %s: fit error (units of 2^-53 |f|) row 0 %.3g, other rows at most %.3g.\n", pt.what, worst0,
                worst);
  }
  print_table64(decl, out.data(), (int)out.size());
}

}  // namespace

int main() {
  open_file(
      "// Piecewise polynomials of the erf, erff, erfc and erfcf families. Generated by\n"
      "// tools/tablegen_erf.cpp (MPFR, 256 bits, Chebyshev interpolation, each coefficient\n"
      "// rounded once to nearest); do not edit. Regenerate with\n"
      "//   ninja -C build tablegen_erf && build/tools/tablegen_erf > src/tables/erf.h\n"
      "// Entries are IEEE bit patterns.\n"
      "//\n"
      "// Row i serves a = |x| with (upper word of a AND 0x7ffe0000) = 0x3fbe0000 + i 0x20000 after\n"
      "// a is clamped to [0.1171875, last]: row 0 a < 0.125, then an eighth of a binade a row.\n"
      "// A row is c0, c1, ..., cn, shift, d (then zeros to the stride); with t = a + shift,\n"
      "//   f(a) ~ (c0 + d t) + t (c1 + t (c2 + ... + t cn)).\n"
      "// Row 0: shift 0, c0 and d fixed, c1..cn fitted to (f(t) - c0 - d t)/t on [0, 0.125];\n"
      "// other rows: shift = minus the interval's centre, c0..cn the interpolant at the n + 1\n"
      "// Chebyshev nodes of the interval. Fit errors: the coefficients taken exactly, 513\n"
      "// points a row (row 0 from 2^-30), relative to f, in units of 2^-53.\n"
      "//   kErf<n>:  46 rows, f = erf a; row 0 c0 = 0, d = 1; row 45 (a >= 6) the constant 1.\n"
      "//   kErfc<n>: 128 rows; rows 0..63 f = erfc(a) e^(a^2) (row 0 c0 = 1, d = 0), rows\n"
      "//             64..127 f = 1 + erf a = erfc(-a) (row 64 c0 = 1, d = 0; from a = 6 the\n"
      "//             constant 2).\n\n",
      "erf_tables");
  const Set sets[] = {
      {"11", 11, 16, 0.15, "erf, erfc plain"},
      {"7", 7, 16, 12288, "erf, erfc _native"},
      {"6", 6, 16, 0x1p25, "erff, erfcf plain"},
      {"4", 4, 8, 0x1p32, "erff, erfcf _native"},
  };
  for (const Set& s : sets) {
    char decl[128];
    std::printf("// Degree %d (%s), %d doubles a row.\n", s.degree, s.use, s.stride);
    const Part erf_parts[] = {{kErf, 0, 46, 6.0, 1.0, "erf"}};
    std::snprintf(decl, sizeof decl, "alignas(64) inline constexpr uint64_t kErf%s[%d]", s.name, 46 * s.stride);
    emit(decl, s, erf_parts, 1, 46);
    const Part erfc_parts[] = {{kErfcScaled, 0, 64, 1e300, 0.0, "erfc(a) e^(a^2)"},
                               {kOnePlusErf, 64, 64, 6.0, 2.0, "1 + erf a"}};
    std::snprintf(decl, sizeof decl, "alignas(64) inline constexpr uint64_t kErfc%s[%d]", s.name, 128 * s.stride);
    emit(decl, s, erfc_parts, 2, 128);
  }
  close_file("erf_tables");
  return row_failures ? 1 : 0;
}
