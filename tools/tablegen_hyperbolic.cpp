// Prints src/tables/hyperbolic.h: the constant tables of the sinh, cosh and
// tanh families, computed with MPFR at 256 bits and rounded once to nearest.
// Exits non-zero when a row that the families' documentation quotes does not
// come out as quoted, or when a tanh interval's fit misses its error budget.
//
//   ninja -C build tablegen_hyperbolic && build/tools/tablegen_hyperbolic > src/tables/hyperbolic.h
#include <cmath>
#include <cstdlib>
#include <vector>

#include "tablegen_common.h"

namespace {

using namespace tablegen;


// RN(2^(j/n) / 2).
double half_pow2(int j, int n) {
  mpfr_t v;
  mpfr_init2(v, kPrec);
  pow2_frac(v, j, n);
  mpfr_div_2ui(v, v, 1, MPFR_RNDN);
  const double d = mpfr_get_d(v, MPFR_RNDN);
  mpfr_clear(v);
  return d;
}

// ---- tanh: 60 intervals, a degree-10 polynomial in t = |x| - centre each ----------
//
// Entry i >= 1 serves the |x| whose upper word, masked with 0x7ffe0000, is
// 0x3fbe0000 + i * 0x20000 (an eighth of a binade; entry 58 is [18, 20)).
// The fit about the centre c keeps the first three Taylor terms, each rounded
// once (c0 = tanh c, c1 = 1 - tanh^2 c, c2 = -tanh c (1 - tanh^2 c)), and
// interpolates the rest, g(t) = (tanh(c + t) - T0 - T1 t - T2 t^2) / t^3 with
// the exact Taylor terms, at the 8 Chebyshev nodes of [-h, h] (h the half
// width) by a degree-7 polynomial: c3..c10.
constexpr int kEntries = 60, kStride = 16, kDegree = 10;
constexpr uint32_t kFirstWord = 0x3fbe0000u, kWordStep = 0x20000u;

double word_value(uint32_t w) { return from_bits((uint64_t)w << 32); }

// tanh(c + t) - T0 - T1 t - T2 t^2 over t^3 into g (t != 0).
void tanh_rest(mpfr_t g, const mpfr_t c, const mpfr_t t, const mpfr_t T0, const mpfr_t T1, const mpfr_t T2) {
  mpfr_t x, p;
  mpfr_inits2(kPrec, x, p, (mpfr_ptr)0);
  mpfr_add(x, c, t, MPFR_RNDN);
  mpfr_tanh(g, x, MPFR_RNDN);
  mpfr_fma(p, T2, t, T1, MPFR_RNDN);
  mpfr_fma(p, p, t, T0, MPFR_RNDN);
  mpfr_sub(g, g, p, MPFR_RNDN);
  mpfr_div(g, g, t, MPFR_RNDN);
  mpfr_div(g, g, t, MPFR_RNDN);
  mpfr_div(g, g, t, MPFR_RNDN);
  mpfr_clears(x, p, (mpfr_ptr)0);
}

// Coefficients of entry i (c0..c10, shift) for 1 <= i <= 58.
void fit_entry(int i, double* e) {
  const double lo = word_value(kFirstWord + i * kWordStep), hi = word_value(kFirstWord + (i + 1) * kWordStep);
  const double centre = (lo + hi) / 2, half = (hi - lo) / 2;  // both exact
  mpfr_t c, T0, T1, T2, t, g, s;
  mpfr_inits2(kPrec, c, T0, T1, T2, t, g, s, (mpfr_ptr)0);
  mpfr_set_d(c, centre, MPFR_RNDN);
  mpfr_tanh(T0, c, MPFR_RNDN);
  mpfr_sqr(T1, T0, MPFR_RNDN);
  mpfr_ui_sub(T1, 1, T1, MPFR_RNDN);
  mpfr_mul(T2, T0, T1, MPFR_RNDN);
  mpfr_neg(T2, T2, MPFR_RNDN);
  e[0] = mpfr_get_d(T0, MPFR_RNDN);
  e[1] = mpfr_get_d(T1, MPFR_RNDN);
  e[2] = mpfr_get_d(T2, MPFR_RNDN);
  // Interpolation at the nodes t_k = h cos((2k + 1) pi / 16): the Vandermonde
  // system in the scaled variable u = t / h, solved by Gaussian elimination.
  constexpr int n = kDegree - 2;
  std::vector<mpfr_t> a(n * (n + 1));
  for (auto& m : a) mpfr_init2(m, kPrec);
  for (int k = 0; k < n; ++k) {
    mpfr_const_pi(t, MPFR_RNDN);
    mpfr_mul_ui(t, t, 2 * k + 1, MPFR_RNDN);
    mpfr_div_ui(t, t, 2 * n, MPFR_RNDN);
    mpfr_cos(t, t, MPFR_RNDN);  // u_k
    mpfr_set_ui(s, 1, MPFR_RNDN);
    for (int p = 0; p < n; ++p) {
      mpfr_set(a[k * (n + 1) + p], s, MPFR_RNDN);
      mpfr_mul(s, s, t, MPFR_RNDN);
    }
    mpfr_mul_d(t, t, half, MPFR_RNDN);
    tanh_rest(a[k * (n + 1) + n], c, t, T0, T1, T2);
  }
  for (int col = 0; col < n; ++col) {
    int piv = col;
    for (int r = col + 1; r < n; ++r)
      if (mpfr_cmpabs(a[r * (n + 1) + col], a[piv * (n + 1) + col]) > 0) piv = r;
    for (int q = 0; q <= n; ++q) mpfr_swap(a[col * (n + 1) + q], a[piv * (n + 1) + q]);
    for (int r = 0; r < n; ++r) {
      if (r == col) continue;
      mpfr_div(s, a[r * (n + 1) + col], a[col * (n + 1) + col], MPFR_RNDN);
      for (int q = col; q <= n; ++q) {
        mpfr_mul(t, s, a[col * (n + 1) + q], MPFR_RNDN);
        mpfr_sub(a[r * (n + 1) + q], a[r * (n + 1) + q], t, MPFR_RNDN);
      }
    }
  }
  for (int p = 0; p < n; ++p) {
    mpfr_div(s, a[p * (n + 1) + n], a[p * (n + 1) + p], MPFR_RNDN);  // coefficient of u^p
    mpfr_set_d(t, half, MPFR_RNDN);
    mpfr_pow_ui(t, t, p, MPFR_RNDN);
    mpfr_div(s, s, t, MPFR_RNDN);  // of t^p
    e[3 + p] = mpfr_get_d(s, MPFR_RNDN);
  }
  e[kDegree + 1] = -centre;
  for (auto& m : a) mpfr_clear(m);
  mpfr_clears(c, T0, T1, T2, t, g, s, (mpfr_ptr)0);
}

// Max |p(t) - tanh(|x|)| / ulp(tanh(|x|)) over 4097 points of [lo, hi] with
// the entry's double coefficients taken exactly (the evaluation's own
// rounding is not included).
double fit_error_ulp(const double* e, double lo, double hi) {
  mpfr_t x, t, p, y, d;
  mpfr_inits2(kPrec, x, t, p, y, d, (mpfr_ptr)0);
  double worst = 0;
  for (int k = 0; k <= 4096; ++k) {
    const double xv = lo + (hi - lo) * k / 4096;
    mpfr_set_d(x, xv, MPFR_RNDN);
    mpfr_add_d(t, x, e[kDegree + 1], MPFR_RNDN);
    horner(p, e, kDegree + 1, t);
    mpfr_tanh(y, x, MPFR_RNDN);
    mpfr_sub(d, p, y, MPFR_RNDN);
    const double yd = mpfr_get_d(y, MPFR_RNDN);
    int ex;
    std::frexp(yd, &ex);
    const double err = std::fabs(mpfr_get_d(d, MPFR_RNDN)) / std::ldexp(1.0, ex - 53);
    if (err > worst) worst = err;
  }
  mpfr_clears(x, t, p, y, d, (mpfr_ptr)0);
  return worst;
}

}  // namespace

// Max relative error of got(r) against want(r) over r = h i/4096, i = -4096
// .. 4096 except 0 (the short series' fit checks).
template <class Got, class Want> double worst_relative(double h, Got got, Want want) {
  double worst = 0;
  for (int i = -4096; i <= 4096; ++i) {
    if (i == 0) continue;
    M r, v, w;
    mpfr_set_d(r, h * i / 4096, MPFR_RNDN);
    got(v, r);
    want(w, r);
    mpfr_sub(v, v, w, MPFR_RNDN);
    mpfr_div(v, v, w, MPFR_RNDN);
    worst = std::fmax(worst, std::fabs(mpfr_get_d(v, MPFR_RNDN)));
  }
  return worst;
}

int main() {
  open_file(
      "// Constant tables of the sinh, cosh and tanh families. Generated by\n"
      "// tools/tablegen_hyperbolic.cpp (MPFR, 256 bits, each entry rounded once to nearest);\n"
      "// do not edit. Regenerate with\n"
      "//   ninja -C build tablegen_hyperbolic && build/tools/tablegen_hyperbolic > src/tables/hyperbolic.h\n"
      "// Entries are IEEE bit patterns.\n",
      "hyperbolic_tables");

  // cosh: T[i] = RN(2^(i/256) / 2), i = 0..256.
  uint64_t ct[257];
  for (int i = 0; i <= 256; ++i) ct[i] = bits64(half_pow2(i, 256));
  expect_quoted("cosh T[0]", from_bits(ct[0]), "0.5");
  expect_quoted("cosh T[1]", from_bits(ct[1]), "0.50135563752510126");
  expect_quoted("cosh T[2]", from_bits(ct[2]), "0.50271495055640136");
  expect_quoted("cosh T[256]", from_bits(ct[256]), "1");
  std::printf(
      "// cosh (double): T[i] = RN(2^(i/256) / 2), i = 0..256; T[j] and T[256 - j] scaled by\n"
      "// 2^k on their exponent fields are 2^(j/256 + k) / 2 and 2^(1 - j/256 - k) / 2.\n");
  print_table64("alignas(64) inline constexpr uint64_t kCosh257[257]", ct, 257);

  // sinh: pairs (A_j, B_j) = (RN(sinh(j ln2/128)), RN(2^(-j/128) / 2)), j = 0..127.
  uint64_t st[256];
  for (int j = 0; j < 128; ++j) {
    mpfr_t v;
    mpfr_init2(v, kPrec);
    mpfr_const_log2(v, MPFR_RNDN);
    mpfr_mul_si(v, v, j, MPFR_RNDN);
    mpfr_div_ui(v, v, 128, MPFR_RNDN);
    mpfr_sinh(v, v, MPFR_RNDN);
    st[2 * j] = bits64(mpfr_get_d(v, MPFR_RNDN));
    st[2 * j + 1] = bits64(half_pow2(-j, 128));
    mpfr_clear(v);
  }
  expect_quoted("sinh A_0", from_bits(st[0]), "0");
  expect_quoted("sinh B_0", from_bits(st[1]), "0.5");
  expect_quoted("sinh A_1", from_bits(st[2]), "0.0054152388145848225");
  expect_quoted("sinh B_1", from_bits(st[3]), "0.49729971174181659");
  expect_quoted("sinh A_2", from_bits(st[4]), "0.010830636428862488");
  expect_quoted("sinh B_2", from_bits(st[5]), "0.49461400659698773");
  std::printf(
      "// sinh (double): pairs (A_j, B_j), j = 0..127, 16 bytes a pair:\n"
      "//   A_j = RN(sinh(j ln2/128)) = RN(2^(j/128)/2 - 2^(-j/128)/2),  B_j = RN(2^(-j/128) / 2).\n");
  print_table64("alignas(64) inline constexpr uint64_t kSinh128[256]", st, 256);

  // tanh: 60 entries of 16 doubles (c0..c10, shift, 4 unused).
  static double tt[kEntries][kStride] = {};
  // Entry 0, |x| < 0.125: the fixed polynomial with shift 0.
  const char* e0[kDegree + 1] = {"0",
                                 "1",
                                 "-2.2641324065961031e-14",
                                 "-0.33333333332733495",
                                 "-6.1657913857114935e-10",
                                 "0.13333336553530611",
                                 "-9.6680215638798597e-07",
                                 "-0.053950559160515929",
                                 "-0.00020089404395508289",
                                 "0.023253339490596985",
                                 "-0.0053200028115862903"};
  for (int q = 0; q <= kDegree; ++q) tt[0][q] = std::strtod(e0[q], nullptr);
  for (int i = 1; i < kEntries - 1; ++i) fit_entry(i, tt[i]);
  tt[kEntries - 1][0] = 1.0;  // |x| >= 20: tanh rounds to 1
  expect_quoted("tanh entry 1 shift", tt[1][kDegree + 1], "-0.1328125");
  expect_quoted("tanh entry 1 c0", tt[1][0], "0.13203707039220292");
  expect_quoted("tanh entry 1 c1", tt[1][1], "0.98256621204224448");
  expect_quoted("tanh entry 1 c2", tt[1][2], "-0.12973516410442201");

  // The fit error of every interval (coefficients exact, no evaluation
  // rounding): the rounding of c0 alone is up to 0.5 ulp; the budget of 1 ulp
  // leaves the evaluation most of the family's bound (5 ulp).
  double worst[kEntries] = {};
  for (int i = 0; i < kEntries; ++i) {
    const double lo = i == 0 ? 0x1p-20 : word_value(kFirstWord + i * kWordStep);
    const double hi = i == 0 ? 0.125 : i == kEntries - 1 ? 40.0 : word_value(kFirstWord + (i + 1) * kWordStep);
    worst[i] = fit_error_ulp(tt[i], lo, hi);
    constexpr double kBudget = 1.0;
    if (i > 0 && worst[i] > kBudget) {
      std::fprintf(stderr, "tanh entry %d: fit error %.3g ulp above %.3g\n", i, worst[i], kBudget);
      ++row_failures;
    }
  }
  std::printf(
      "// tanh (double): 60 entries of 16 doubles, (c0, c1, ..., c10, shift, 0, 0, 0, 0): on its\n"
      "// interval tanh|x| ~ c0 + t (c1 + t (c2 + ... + t c10)), t = |x| + shift. Entry 0 serves\n"
      "// |x| < 0.125 (shift 0); entry i in 1..58 the |x| whose upper word masked with 0x7ffe0000 is\n"
      "// 0x3fbe0000 + i 0x20000 (an eighth of a binade), shift = minus its centre c, c0..c2 the\n"
      "// Taylor terms tanh c, 1 - tanh^2 c, -tanh c (1 - tanh^2 c) rounded, c3..c10 the\n"
      "// interpolant of the rest at 8 Chebyshev nodes; entry 59 (|x| >= 20) the constant 1.\n"
      "// Fit error (exact arithmetic on the double coefficients, 4097 points an interval):\n"
      "// entry 0 %.3f ulp; entries 1-58 at most %.3f ulp.\n",
      worst[0], [&] {
        double m = 0;
        for (int i = 1; i < kEntries - 1; ++i) m = worst[i] > m ? worst[i] : m;
        return m;
      }());
  uint64_t tb[kEntries * kStride];
  for (int i = 0; i < kEntries; ++i)
    for (int q = 0; q < kStride; ++q) tb[i * kStride + q] = bits64(tt[i][q]);
  print_table64("alignas(64) inline constexpr uint64_t kTanh60[960]", tb, kEntries * kStride);

  // The pair kernel of the single families: on |r| <= ln2/2, w = r^2,
  //   cosh r = 1 + w Pc(w),   sinh r = r + r w Ps(w),
  // 3 coefficients each, rounded to single. The fit error with the rounded
  // coefficients (exact arithmetic) must stay below 2^-28 relative.
  M ln2;
  mpfr_const_log2(ln2, MPFR_RNDN);
  const double wmax = std::pow(mpfr_get_d(ln2, MPFR_RNDU) / 2, 2) * (1 + 0x1p-40);
  auto pc = [](mpfr_t g, mpfr_t w) {  // (cosh(sqrt w) - 1)/w
    M r;
    mpfr_sqrt(r, w, MPFR_RNDN);
    mpfr_cosh(g, r, MPFR_RNDN);
    mpfr_sub_ui(g, g, 1, MPFR_RNDN);
    mpfr_div(g, g, w, MPFR_RNDN);
  };
  auto ps = [](mpfr_t g, mpfr_t w) {  // (sinh(sqrt w)/sqrt w - 1)/w
    M r;
    mpfr_sqrt(r, w, MPFR_RNDN);
    mpfr_sinh(g, r, MPFR_RNDN);
    mpfr_div(g, g, r, MPFR_RNDN);
    mpfr_sub_ui(g, g, 1, MPFR_RNDN);
    mpfr_div(g, g, w, MPFR_RNDN);
  };
  {
    constexpr int n = 3;
    double cc[n], sc[n];
    cheb_fit_w(pc, n, wmax, true, cc);
    cheb_fit_w(ps, n, wmax, true, sc);
    // Max relative error of 1 + w Pc and r + r w Ps on 4097 points of (0, ln2/2].
    double worst = 0;
    for (int i = 1; i <= 4096; ++i) {
      M r, w, want, got, p;
      mpfr_set_d(r, std::sqrt(wmax) * i / 4096, MPFR_RNDN);
      mpfr_sqr(w, r, MPFR_RNDN);
      for (int f = 0; f < 2; ++f) {
        const double* c = f ? sc : cc;
        horner(p, c, n, w);
        mpfr_mul(p, p, w, MPFR_RNDN);
        mpfr_add_ui(got, p, 1, MPFR_RNDN);
        if (f) mpfr_mul(got, got, r, MPFR_RNDN), mpfr_sinh(want, r, MPFR_RNDN);
        else mpfr_cosh(want, r, MPFR_RNDN);
        mpfr_sub(got, got, want, MPFR_RNDN);
        mpfr_div(got, got, want, MPFR_RNDN);
        worst = std::fmax(worst, std::fabs(mpfr_get_d(got, MPFR_RNDN)));
      }
    }
    if (worst > 0x1p-28) {
      std::fprintf(stderr, "pair kernel: fit error %.3g above 2^-28\n", worst);
      ++row_failures;
    }
    std::printf("// Pair kernel (float lanes): cosh r = 1 + w Pc(w), sinh r = r + r w Ps(w), w = r^2,\n"
                "// |r| <= ln2/2; Chebyshev interpolants, lowest power first; max relative fit\n"
                "// error 2^%.1f.\n", std::log2(worst));
    uint32_t b[8];
    for (int k = 0; k < n; ++k) b[k] = bits32((float)cc[k]), b[4 + k] = bits32((float)sc[k]);
    b[3] = b[7] = 0;
    print_table32("alignas(32) inline constexpr uint32_t kPairF[8]", b, 8, 4);
  }

  // tanhf's fast class: e^r - 1 = r + r^2 Q(r) on |r| <= ln2/2 (with room
  // for the single reduction's rounding), Q of degree 4 interpolating
  // (e^r - 1 - r)/r^2 at its 5 Chebyshev nodes, coefficients rounded to
  // single. The relative fit error of r + r^2 Q (exact arithmetic on the
  // rounded coefficients) must stay below 2^-25, at most half a single's
  // last place.
  {
    constexpr int m = 5;
    const double h = mpfr_get_d(ln2, MPFR_RNDU) / 2 * (1 + 0x1p-20);
    auto g = [](mpfr_t out, mpfr_t r) {  // (e^r - 1 - r)/r^2
      mpfr_expm1(out, r, MPFR_RNDN);
      mpfr_sub(out, out, r, MPFR_RNDN);
      mpfr_div(out, out, r, MPFR_RNDN);
      mpfr_div(out, out, r, MPFR_RNDN);
    };
    M a[m][m], b[m];
    for (int k = 0; k < m; ++k) {
      M r;
      cheb_node(r, k, m, 2 * h);  // in [0, 2h]
      mpfr_sub_d(r, r, h, MPFR_RNDN);
      if (2 * k + 1 == m) {
        mpfr_set_ui(r, 0, MPFR_RNDN);  // the middle node, 0: the limit 1/2
        mpfr_set_d(b[k], 0.5, MPFR_RNDN);
      } else {
        g(b[k], r);
      }
      for (int i = 0; i < m; ++i) mpfr_pow_ui(a[k][i], r, i, MPFR_RNDN);
    }
    solve_linear(a[0][0], m, b[0], m);
    double q[m];
    for (int i = 0; i < m; ++i) q[i] = round_lane(b[i], true);
    double worst = worst_relative(h, [&](mpfr_t p, mpfr_t r) {  // r + r^2 Q(r) against e^r - 1
      horner(p, q, m, r);
      mpfr_mul(p, p, r, MPFR_RNDN);
      mpfr_mul(p, p, r, MPFR_RNDN);
      mpfr_add(p, p, r, MPFR_RNDN);
    }, [](mpfr_t want, mpfr_t r) { mpfr_expm1(want, r, MPFR_RNDN); });
    if (worst > 0x1p-25) {
      std::fprintf(stderr, "tanhf expm1 fit: error %.3g above 2^-25\n", worst);
      ++row_failures;
    }
    std::printf("// tanhf's fast class (float lanes): e^r - 1 = r + r^2 (q0 + q1 r + q2 r^2 + q3 r^3 + q4 r^4)\n"
                "// on |r| <= ln2/2; Chebyshev interpolant of (e^r - 1 - r)/r^2, lowest power first;\n"
                "// max relative fit error 2^%.1f.\n", std::log2(worst));
    uint32_t bq[m];
    for (int k = 0; k < m; ++k) bq[k] = bits32((float)q[k]);
    print_table32("inline constexpr uint32_t kExpm1F[5]", bq, m, 5);
  }

  // tanhf's plain class (double arithmetic on the widened lanes): with
  // r = |x| - n ln2/2, |r| <= ln2/4 (with room for the reduction's rounding),
  //   e^(2r) - 1 = r P(r),  P(r) = p0 + p1 r + ... + p7 r^7,
  // P the minimax fit of (e^(2r) - 1)/r (the limit 2 at r = 0) in relative
  // error (weight r/(e^(2r) - 1)), coefficients rounded to double. The
  // relative fit error of r P (exact arithmetic on the rounded coefficients)
  // must stay below 2^-37: the single result then rounds as if from the exact
  // value up to 2^-13 ulp.
  {
    constexpr int m = 8;
    const double h = mpfr_get_d(ln2, MPFR_RNDU) / 4 * (1 + 0x1p-20);
    auto g = [](mpfr_t out, mpfr_t r) {  // (e^(2r) - 1)/r
      if (mpfr_zero_p(r)) {
        mpfr_set_ui(out, 2, MPFR_RNDN);
        return;
      }
      mpfr_mul_2ui(out, r, 1, MPFR_RNDN);
      mpfr_expm1(out, out, MPFR_RNDN);
      mpfr_div(out, out, r, MPFR_RNDN);
    };
    auto wt = [&](mpfr_t out, mpfr_t r) {
      g(out, r);
      mpfr_ui_div(out, 1, out, MPFR_RNDN);
    };
    double p[m];
    remez_fit_w(g, wt, m, -h, h, false, p);
    double worst = worst_relative(h, [&](mpfr_t v, mpfr_t r) {  // r P(r) against e^(2r) - 1
      horner(v, p, m, r);
      mpfr_mul(v, v, r, MPFR_RNDN);
    }, [](mpfr_t want, mpfr_t r) {
      mpfr_mul_2ui(want, r, 1, MPFR_RNDN);
      mpfr_expm1(want, want, MPFR_RNDN);
    });
    if (worst > 0x1p-37) {
      std::fprintf(stderr, "tanhf e^(2r) - 1 fit: error %.3g above 2^-37\n", worst);
      ++row_failures;
    }
    std::printf("// tanhf (double lanes): e^(2r) - 1 = r (p0 + p1 r + ... + p7 r^7) on |r| <= ln2/4;\n"
                "// minimax in relative error, lowest power first; max relative fit error 2^%.1f.\n",
                std::log2(worst));
    uint64_t bp[m];
    for (int k = 0; k < m; ++k) bp[k] = bits64(p[k]);
    print_table64("alignas(64) inline constexpr uint64_t kTanhfExp2[8]", bp, m);
  }

  close_file("hyperbolic_tables");
  return row_failures ? 1 : 0;
}
