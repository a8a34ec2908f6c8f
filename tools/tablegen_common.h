// Shared by the table generators tools/tablegen_*.cpp: the MPFR working
// precision, IEEE bit patterns, and the printing of a table file (its opening
// with the header comment and namespaces, each table, its closing).
#pragma once

#include <mpfr.h>

#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace tablegen {

// Working precision of every MPFR value; entries are rounded from it once.
constexpr mpfr_prec_t kPrec = 256;

inline uint64_t bits64(double d) {
  uint64_t b;
  std::memcpy(&b, &d, sizeof b);
  return b;
}
inline uint32_t bits32(float f) {
  uint32_t b;
  std::memcpy(&b, &f, sizeof b);
  return b;
}
inline double from_bits(uint64_t b) {
  double d;
  std::memcpy(&d, &b, sizeof d);
  return d;
}

// Checks of a generator's entries against the rows the documentation of the
// algorithm quotes and against the rules the table must keep: each mismatch
// is reported and counted in row_failures, and the generator exits non-zero
// when there is any (row -1: no row number).
inline int row_failures = 0;
inline void expect_row(bool ok, const char* what, int row = -1) {
  if (!ok) {
    std::fprintf(stderr, "%s (row %d) does not match\n", what, row);
    ++row_failures;
  }
}
inline void expect_row_bits(const char* what, int row, double got, double want) {
  if (bits64(got) != bits64(want)) {
    std::fprintf(stderr, "%s row %d: %a, want %a\n", what, row, got, want);
    ++row_failures;
  }
}
inline void expect_row_bits(const char* what, int row, uint64_t got, uint64_t want) {
  if (got != want) {
    std::fprintf(stderr, "%s row %d: 0x%016llx, want 0x%016llx\n", what, row, (unsigned long long)got,
                 (unsigned long long)want);
    ++row_failures;
  }
}
// The entry must be the quoted decimal (read as the nearest double).
inline void expect_quoted(const char* what, double got, const char* quoted) {
  expect_row_bits(what, -1, got, std::strtod(quoted, nullptr));
}

// An MPFR number of kPrec bits that clears itself.
struct M {
  mpfr_t v;
  M() { mpfr_init2(v, kPrec); }
  ~M() { mpfr_clear(v); }
  operator mpfr_ptr() { return v; }
};

// v = 2^(j/n) to kPrec bits.
inline void pow2_frac(mpfr_t v, int j, int n) {
  mpfr_set_si(v, j, MPFR_RNDN);
  mpfr_div_si(v, v, n, MPFR_RNDN);
  mpfr_exp2(v, v, MPFR_RNDN);
}

// (hi, lo): hi = v rounded to nearest on the grid 2^-k (fewer than 53
// significant bits by the caller's choice of k), lo = RN(v - hi).
inline void split_grid(mpfr_t v, int k, double* hi, double* lo) {
  mpfr_t t;
  mpfr_init2(t, kPrec);
  mpfr_mul_2si(t, v, k, MPFR_RNDN);
  mpfr_rint(t, t, MPFR_RNDN);
  mpfr_mul_2si(t, t, -k, MPFR_RNDN);
  *hi = mpfr_get_d(t, MPFR_RNDN);  // exact
  mpfr_sub(t, v, t, MPFR_RNDN);
  *lo = mpfr_get_d(t, MPFR_RNDN);
  mpfr_clear(t);
}

// Solves the n x n system a x = b in place (Gaussian elimination with partial
// pivoting): a row-major with `stride` entries a row, b the right side,
// which becomes x. Every value at kPrec bits.
inline void solve_linear(mpfr_ptr a, int stride, mpfr_ptr b, int n) {
  mpfr_t t, u;
  mpfr_inits2(kPrec, t, u, (mpfr_ptr)0);
  auto A = [&](int i, int k) { return a + i * stride + k; };
  for (int c = 0; c < n; ++c) {
    int p = c;
    for (int i = c + 1; i < n; ++i)
      if (mpfr_cmpabs(A(i, c), A(p, c)) > 0) p = i;
    for (int k = 0; k < n; ++k) mpfr_swap(A(c, k), A(p, k));
    mpfr_swap(b + c, b + p);
    for (int i = c + 1; i < n; ++i) {
      mpfr_div(t, A(i, c), A(c, c), MPFR_RNDN);
      for (int k = c; k < n; ++k) {
        mpfr_mul(u, t, A(c, k), MPFR_RNDN);
        mpfr_sub(A(i, k), A(i, k), u, MPFR_RNDN);
      }
      mpfr_mul(u, t, b + c, MPFR_RNDN);
      mpfr_sub(b + i, b + i, u, MPFR_RNDN);
    }
  }
  for (int c = n - 1; c >= 0; --c) {
    for (int k = c + 1; k < n; ++k) {
      mpfr_mul(u, A(c, k), b + k, MPFR_RNDN);
      mpfr_sub(b + c, b + c, u, MPFR_RNDN);
    }
    mpfr_div(b + c, b + c, A(c, c), MPFR_RNDN);
  }
  mpfr_clears(t, u, (mpfr_ptr)0);
}

// v rounded to nearest in the lane type: float (single) or double.
inline double round_lane(mpfr_t v, bool single) {
  return single ? (double)mpfr_get_flt(v, MPFR_RNDN) : mpfr_get_d(v, MPFR_RNDN);
}

// x = the k-th of the m Chebyshev nodes of [0, wmax]: (cos((2k + 1) pi/(2m)) + 1) wmax/2.
inline void cheb_node(mpfr_t x, int k, int m, double wmax) {
  M u;
  mpfr_const_pi(u, MPFR_RNDN);
  mpfr_mul_si(u, u, 2 * k + 1, MPFR_RNDN);
  mpfr_div_si(u, u, 2 * m, MPFR_RNDN);
  mpfr_cos(u, u, MPFR_RNDN);
  mpfr_add_ui(u, u, 1, MPFR_RNDN);
  mpfr_mul_d(x, u, wmax / 2, MPFR_RNDN);
}

// The n coefficients of p(w) ~ g(w) on [0, wmax], lowest power first, from
// the interpolant at the Chebyshev nodes of that interval (near-minimax in
// w), each rounded to the lane type. g(out, w) sets out = g(w). first0: the
// lowest coefficient is given (already rounded) and the others are fitted to
// (g - first0)/w.
template <class G>
void cheb_fit_w(G g, int n, double wmax, bool single, double* coef, const double* first0 = nullptr) {
  constexpr int kMax = 12;
  const int j = first0 ? 1 : 0, m = n - j;
  M a[kMax][kMax], b[kMax];
  for (int k = 0; k < m; ++k) {
    M x;
    cheb_node(x, k, m, wmax);
    g(b[k], x);
    if (j) {
      mpfr_sub_d(b[k], b[k], *first0, MPFR_RNDN);
      mpfr_div(b[k], b[k], x, MPFR_RNDN);
    }
    for (int i = 0; i < m; ++i) mpfr_pow_ui(a[k][i], x, i, MPFR_RNDN);
  }
  solve_linear(a[0][0], kMax, b[0], m);
  if (j) coef[0] = *first0;
  for (int i = 0; i < m; ++i) coef[j + i] = round_lane(b[i], single);
}

// The n coefficients of p(w) ~ g(w) on [lo, hi], lowest power first, that
// minimize the weighted error max |(p(w) - g(w)) wt(w)| (Remez's exchange:
// the n + 1 reference points start at the Chebyshev extrema and move to the
// alternating extrema of the error on a grid of 8193 points until the
// levelled error and the grid's maximum agree to 1e-6), each rounded to the
// lane type. g(out, w) and wt(out, w) set out; wt > 0 on [lo, hi]. Returns
// the levelled error of the unrounded fit.
template <class G, class Wt>
double remez_fit_w(G g, Wt wt, int n, double lo, double hi, bool single, double* coef) {
  constexpr int kMax = 12, kGrid = 8193;
  static double gx[kGrid], gg[kGrid], gw[kGrid];
  for (int i = 0; i < kGrid; ++i) {
    M x, v;
    gx[i] = lo + (hi - lo) * i / (kGrid - 1);
    mpfr_set_d(x, gx[i], MPFR_RNDN);
    g(v, x);
    gg[i] = mpfr_get_d(v, MPFR_RNDN);
    wt(v, x);
    gw[i] = mpfr_get_d(v, MPFR_RNDN);
  }
  double ref[kMax + 1], c[kMax], level = 0;
  for (int i = 0; i <= n; ++i) ref[i] = (lo + hi) / 2 - (hi - lo) / 2 * std::cos(3.14159265358979323846 * i / n);
  auto err = [&](int i) {
    long double p = c[n - 1];
    for (int k = n - 2; k >= 0; --k) p = p * gx[i] + c[k];
    return (double)((p - gg[i]) * gw[i]);
  };
  for (int iter = 0; iter < 60; ++iter) {
    // p(ref_i) + (-1)^i E / wt(ref_i) = g(ref_i): n + 1 equations in c and E.
    M a[kMax + 1][kMax + 1], b[kMax + 1];
    for (int i = 0; i <= n; ++i) {
      M x, v;
      mpfr_set_d(x, ref[i], MPFR_RNDN);
      g(b[i], x);
      for (int k = 0; k < n; ++k) mpfr_pow_ui(a[i][k], x, k, MPFR_RNDN);
      wt(v, x);
      mpfr_ui_div(a[i][n], 1, v, MPFR_RNDN);
      if (i % 2) mpfr_neg(a[i][n], a[i][n], MPFR_RNDN);
    }
    solve_linear(a[0][0], kMax + 1, b[0], n + 1);
    for (int k = 0; k < n; ++k) c[k] = mpfr_get_d(b[k], MPFR_RNDN);
    level = std::fabs(mpfr_get_d(b[n], MPFR_RNDN));
    // The extremum of each run of one sign, then the n + 1 largest in a row.
    int at[kGrid], m = 0;
    double worst = 0;
    for (int i = 0; i < kGrid; ++i) {
      const double e = err(i);
      worst = std::fmax(worst, std::fabs(e));
      if (m > 0 && (e < 0) == (err(at[m - 1]) < 0)) {
        if (std::fabs(e) > std::fabs(err(at[m - 1]))) at[m - 1] = i;
      } else {
        at[m++] = i;
      }
    }
    int first = 0;
    while (m - first > n + 1) {
      if (std::fabs(err(at[first])) < std::fabs(err(at[m - 1]))) ++first;
      else --m;
    }
    if (m - first < n + 1) break;
    for (int i = 0; i <= n; ++i) ref[i] = gx[at[first + i]];
    if (worst <= level * (1 + 1e-6)) break;
  }
  for (int k = 0; k < n; ++k) {
    M v;
    mpfr_set_d(v, c[k], MPFR_RNDN);
    coef[k] = round_lane(v, single);
  }
  return level;
}

// The opening of a table file: the header comment (whole "// ...\n" lines),
// #pragma once, <stdint.h> and namespace ravl::<ns>.
inline void open_file(const char* comment, const char* ns) {
  std::printf("%s#pragma once\n\n#include <stdint.h>\n\nnamespace ravl {\nnamespace %s {\n\n", comment, ns);
}
inline void close_file(const char* ns) { std::printf("}  // namespace %s\n}  // namespace ravl\n", ns); }

// The entries of a table, four doubles (or per_line singles) to a line.
inline void print64(const uint64_t* v, int count) {
  for (int i = 0; i < count; ++i)
    std::printf("%s0x%016llxull,%s", i % 4 == 0 ? "    " : " ", (unsigned long long)v[i],
                i % 4 == 3 || i == count - 1 ? "\n" : "");
}
inline void print32(const uint32_t* v, int count, int per_line) {
  for (int i = 0; i < count; ++i)
    std::printf("%s0x%08xu,%s", i % per_line == 0 ? "    " : " ", v[i],
                i % per_line == per_line - 1 || i == count - 1 ? "\n" : "");
}

// A whole table: "<decl> = {", its entries, "};" and a blank line.
inline void print_table64(const char* decl, const uint64_t* v, int count) {
  std::printf("%s = {\n", decl);
  print64(v, count);
  std::printf("};\n\n");
}
inline void print_table32(const char* decl, const uint32_t* v, int count, int per_line) {
  std::printf("%s = {\n", decl);
  print32(v, count, per_line);
  std::printf("};\n\n");
}

}  // namespace tablegen
