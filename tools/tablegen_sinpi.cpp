// Prints src/tables/sinpi.h: the polynomial coefficients of the pi-scaled
// sine, cosine and tangent families (sinpi, cospi, tanpi and their single
// forms), fitted with MPFR at 256 bits on the reduced interval |r| <= 1/4,
// w = r^2 in [0, 1/16].
//
//   ninja -C build tablegen_sinpi && build/tools/tablegen_sinpi > src/tables/sinpi.h
//
// The fits interpolate at the Chebyshev nodes of [0, 1/16] (near-minimax in
// w), then round each coefficient to the lane type. The forms:
//   full  sin(pi r) = pi r + r^3 P(w)                 (pi as hi + lo)
//         cos(pi r) = 1 + c1 w + w^2 Q(w)             (c1 = -pi^2/2 as hi + lo)
//   fast  sin(pi r) = r S(w),  cos(pi r) = 1 + w C(w)
// Each table's comment states the fit's max relative error on [0, 1/16] with
// the rounded coefficients (exact arithmetic), measured on 4097 points.
#include <cmath>
#include <cstdio>

#include "tablegen_common.h"

namespace {

using namespace tablegen;

constexpr int kMaxCoefs = 8;

// The function to fit at w (r = sqrt(w) > 0), with the known low terms taken
// off and divided by the power of w they leave: the target g(w) such that the
// approximation is lead(r) + r^k w^j p(w).
enum class Form { kSinP, kCosQ, kSinS, kCosC };
void target(mpfr_t g, Form f, mpfr_t w, mpfr_t c1) {
  M r, pr, t;
  mpfr_sqrt(r, w, MPFR_RNDN);
  mpfr_const_pi(pr, MPFR_RNDN);
  mpfr_mul(pr, pr, r, MPFR_RNDN);
  switch (f) {
    case Form::kSinP:  // (sin(pi r) - pi r) / r^3
      mpfr_sin(t, pr, MPFR_RNDN);
      mpfr_sub(t, t, pr, MPFR_RNDN);
      mpfr_div(t, t, r, MPFR_RNDN);
      mpfr_div(g, t, w, MPFR_RNDN);
      break;
    case Form::kCosQ:  // (cos(pi r) - 1 - c1 w) / w^2
      mpfr_cos(t, pr, MPFR_RNDN);
      mpfr_sub_ui(t, t, 1, MPFR_RNDN);
      {
        M u;
        mpfr_mul(u, c1, w, MPFR_RNDN);
        mpfr_sub(t, t, u, MPFR_RNDN);
      }
      mpfr_div(t, t, w, MPFR_RNDN);
      mpfr_div(g, t, w, MPFR_RNDN);
      break;
    case Form::kSinS:  // sin(pi r) / r
      mpfr_sin(t, pr, MPFR_RNDN);
      mpfr_div(g, t, r, MPFR_RNDN);
      break;
    case Form::kCosC:  // (cos(pi r) - 1) / w
      mpfr_cos(t, pr, MPFR_RNDN);
      mpfr_sub_ui(t, t, 1, MPFR_RNDN);
      mpfr_div(g, t, w, MPFR_RNDN);
      break;
  }
}

// The n coefficients of p(w) ~ g(w) on [0, 1/16], each rounded to the lane
// type (first0: the lowest one is given, already rounded; the others are
// then fitted to g - first0).
void fit(Form f, int n, bool single, mpfr_t c1, double* coef, const double* first0 = nullptr) {
  cheb_fit_w([&](mpfr_t g, mpfr_t w) { target(g, f, w, c1); }, n, 1.0 / 16, single, coef, first0);
}

// Max relative error of the approximation with the rounded coefficients
// (hi + lo leads exact), against sin(pi r) or cos(pi r), on 4097 points of
// r in (0, 1/4].
double fit_error(Form f, const double* coef, int n, const double* lead) {
  M worst;
  mpfr_set_ui(worst, 0, MPFR_RNDN);
  for (int i = 1; i <= 4096; ++i) {
    M r, w, pr, want, p, got, t;
    mpfr_set_d(r, i / 16384.0, MPFR_RNDN);
    mpfr_sqr(w, r, MPFR_RNDN);
    mpfr_const_pi(pr, MPFR_RNDN);
    mpfr_mul(pr, pr, r, MPFR_RNDN);
    const bool is_sin = f == Form::kSinP || f == Form::kSinS;
    if (is_sin) mpfr_sin(want, pr, MPFR_RNDN);
    else mpfr_cos(want, pr, MPFR_RNDN);
    horner(p, coef, n, w);
    switch (f) {
      case Form::kSinP:  // (lead0 + lead1) r + r^3 P
        mpfr_mul(got, p, w, MPFR_RNDN);
        mpfr_add_d(got, got, lead[0], MPFR_RNDN);
        mpfr_add_d(got, got, lead[1], MPFR_RNDN);
        mpfr_mul(got, got, r, MPFR_RNDN);
        break;
      case Form::kCosQ:  // 1 + (lead0 + lead1) w + w^2 Q
        mpfr_mul(got, p, w, MPFR_RNDN);
        mpfr_add_d(got, got, lead[0], MPFR_RNDN);
        mpfr_add_d(got, got, lead[1], MPFR_RNDN);
        mpfr_mul(got, got, w, MPFR_RNDN);
        mpfr_add_ui(got, got, 1, MPFR_RNDN);
        break;
      case Form::kSinS:
        mpfr_mul(got, p, r, MPFR_RNDN);
        break;
      case Form::kCosC:
        mpfr_mul(got, p, w, MPFR_RNDN);
        mpfr_add_ui(got, got, 1, MPFR_RNDN);
        break;
    }
    mpfr_sub(t, got, want, MPFR_RNDN);
    mpfr_div(t, t, want, MPFR_RNDN);
    mpfr_abs(t, t, MPFR_RNDN);
    if (mpfr_cmp(t, worst) > 0) mpfr_set(worst, t, MPFR_RNDN);
  }
  return mpfr_get_d(worst, MPFR_RNDU);
}

void print_coefs(const char* decl, const char* comment, const double* c, int n, bool single, double err) {
  if (err > 0) std::printf("// %s; max relative error 2^%.1f.\n", comment, std::log2(err));
  else std::printf("// %s.\n", comment);
  if (single) {
    uint32_t b[kMaxCoefs];
    for (int i = 0; i < n; ++i) b[i] = bits32((float)c[i]);
    print_table32(decl, b, n, 4);
  } else {
    uint64_t b[kMaxCoefs];
    for (int i = 0; i < n; ++i) b[i] = bits64(c[i]);
    print_table64(decl, b, n);
  }
}

// (hi, lo) of v rounded to the lane type.
void split(mpfr_t v, bool single, double* hl) {
  M t;
  hl[0] = round_lane(v, single);
  mpfr_sub_d(t, v, hl[0], MPFR_RNDN);
  hl[1] = round_lane(t, single);
}

}  // namespace

int main() {
  open_file(
      "// Polynomial coefficients of the pi-scaled sine, cosine and tangent (sinpi,\n"
      "// cospi, tanpi and their single forms) on |r| <= 1/4, w = r^2. Generated by\n"
      "// tools/tablegen_sinpi.cpp (MPFR, 256 bits); do not edit. Regenerate with\n"
      "//   ninja -C build tablegen_sinpi && build/tools/tablegen_sinpi > src/tables/sinpi.h\n"
      "// Entries are IEEE bit patterns, lowest power first.\n",
      "sinpi_tables");
  M pi, c1;
  mpfr_const_pi(pi, MPFR_RNDN);
  mpfr_sqr(c1, pi, MPFR_RNDN);
  mpfr_div_si(c1, c1, -2, MPFR_RNDN);
  const double zero[2] = {0, 0};
  for (int s = 0; s < 2; ++s) {
    const bool single = s == 1;
    const char* T = single ? "alignas(16) inline constexpr uint32_t" : "alignas(32) inline constexpr uint64_t";
    const char* suf = single ? "F" : "D";
    char decl[128];
    double pih[2], c1h[2];
    split(pi, single, pih);
    split(c1, single, c1h);
    M c1r;  // the leads as the kernels hold them: hi + lo
    mpfr_set_d(c1r, c1h[0], MPFR_RNDN);
    mpfr_add_d(c1r, c1r, c1h[1], MPFR_RNDN);
    std::snprintf(decl, sizeof decl, "%s kPi%s[2]", T, suf);
    print_coefs(decl, "pi = hi + lo", pih, 2, single, 0);
    std::snprintf(decl, sizeof decl, "%s kC1%s[2]", T, suf);
    print_coefs(decl, "c1 = -pi^2/2 = hi + lo", c1h, 2, single, 0);
    // Full: P and Q; fast: S (S(0) = pi rounded) and C.
    const int np = single ? 4 : 7, nq = single ? 4 : 6, ns = single ? 4 : 6, nc = single ? 4 : 6;
    double p[kMaxCoefs], q[kMaxCoefs], sc[kMaxCoefs], cc[kMaxCoefs];
    fit(Form::kSinP, np, single, c1r, p);
    fit(Form::kCosQ, nq, single, c1r, q);
    fit(Form::kSinS, ns, single, c1r, sc, &pih[0]);
    fit(Form::kCosC, nc, single, c1r, cc);
    std::snprintf(decl, sizeof decl, "%s kSinP%s[%d]", T, suf, np);
    print_coefs(decl, "full: sin(pi r) = pi r + r^3 P(w)", p, np, single, fit_error(Form::kSinP, p, np, pih));
    std::snprintf(decl, sizeof decl, "%s kCosQ%s[%d]", T, suf, nq);
    print_coefs(decl, "full: cos(pi r) = 1 + c1 w + w^2 Q(w)", q, nq, single, fit_error(Form::kCosQ, q, nq, c1h));
    std::snprintf(decl, sizeof decl, "%s kSinS%s[%d]", T, suf, ns);
    print_coefs(decl, "fast: sin(pi r) = r S(w), S(0) = pi rounded", sc, ns, single,
                fit_error(Form::kSinS, sc, ns, zero));
    std::snprintf(decl, sizeof decl, "%s kCosC%s[%d]", T, suf, nc);
    print_coefs(decl, "fast: cos(pi r) = 1 + w C(w)", cc, nc, single, fit_error(Form::kCosC, cc, nc, zero));
  }
  close_file("sinpi_tables");
  return row_failures ? 1 : 0;
}
