// The accuracy rows of every floating family: its MPFR function (one- and
// two-argument, and the second result of the two-result families), its
// odd/even symmetry, the asserted bound of each algorithm (the one place it
// is kept; the kernels' comments quote the measured figures) and its input
// ranges. Read by the accuracy and parity tests and by the ravl tool; no test
// framework here.
#include <cfloat>
#include <cmath>
#include <cstring>
#include <map>

#include "tests/common/tables.h"

namespace ravl_test {
namespace {

int lgamma_ref(mpfr_ptr r, mpfr_srcptr x, mpfr_rnd_t rnd) {
  int sign;
  return mpfr_lgamma(r, &sign, x, rnd);
}
const std::map<std::string, MpfrFn> kMpfr = {
    {"exp", mpfr_exp},     {"exp2", mpfr_exp2}, {"exp10", mpfr_exp10}, {"expm1", mpfr_expm1},
    {"log", mpfr_log},     {"log2", mpfr_log2}, {"log10", mpfr_log10}, {"log1p", mpfr_log1p},
    {"sin", mpfr_sin},     {"cos", mpfr_cos},   {"tan", mpfr_tan},     {"sincos", mpfr_sin},
    {"sincosreg", mpfr_sin}, {"sqrt", mpfr_sqrt}, {"cbrt", mpfr_cbrt},
    // 1/sqrt(x) with 1/sqrt(-0) = -inf (MPFR's rec_sqrt gives +inf for both zeros).
    {"rsqrt",
     [](mpfr_ptr r, mpfr_srcptr x, mpfr_rnd_t rnd) {
       if (!mpfr_zero_p(x)) return mpfr_rec_sqrt(r, x, rnd);
       mpfr_set_inf(r, mpfr_signbit(x) ? -1 : 1);
       return 0;
     }},
    {"rcbrt", [](mpfr_ptr r, mpfr_srcptr x, mpfr_rnd_t rnd) { return mpfr_rootn_si(r, x, -3, rnd); }},
    {"acos", mpfr_acos},   {"asin", mpfr_asin},   {"acospi", mpfr_acospi}, {"asinpi", mpfr_asinpi},
    {"atan", mpfr_atan},   {"atanpi", mpfr_atanpi},
    {"sinpi", mpfr_sinpi}, {"cospi", mpfr_cospi}, {"tanpi", mpfr_tanpi},
    {"sinh", mpfr_sinh},   {"cosh", mpfr_cosh},   {"tanh", mpfr_tanh},
    {"asinh", mpfr_asinh}, {"acosh", mpfr_acosh}, {"atanh", mpfr_atanh},
    {"erf", mpfr_erf},     {"erfc", mpfr_erfc},
    // ln |Gamma(x)| (+inf at the poles), the first result of lgammar too; Gamma(x).
    {"lgamma", lgamma_ref}, {"lgammar", lgamma_ref}, {"tgamma", mpfr_gamma}};
// OpenCL's powr: pow on x >= 0 (-0 as +0), NaN for x < 0 and for the
// indeterminate 0^0, inf^0 and 1^inf.
int powr_ref(mpfr_ptr r, mpfr_srcptr x, mpfr_srcptr y, mpfr_rnd_t rnd) {
  if (mpfr_sgn(x) < 0 || (mpfr_zero_p(x) && mpfr_zero_p(y)) || (mpfr_inf_p(x) && mpfr_zero_p(y)) ||
      (mpfr_cmp_ui(x, 1) == 0 && mpfr_inf_p(y))) {
    mpfr_set_nan(r);
    return 0;
  }
  if (mpfr_zero_p(x)) return mpfr_pow(r, Mp(0.0), y, rnd);
  return mpfr_pow(r, x, y, rnd);
}
// rootn(x, n) = x^(1/n): NaN for n = 0, through 1/rootn(x, -n) at 64 more
// bits for n < 0.
int rootn_ref(mpfr_ptr r, mpfr_srcptr x, mpfr_srcptr y, mpfr_rnd_t rnd) {
  const long n = mpfr_get_si(y, MPFR_RNDN);
  if (n == 0) {
    mpfr_set_nan(r);
    return 0;
  }
  if (n > 0) return mpfr_rootn_ui(r, x, (unsigned long)n, rnd);
  Mp t(0, (int)mpfr_get_prec(r) + 64);
  mpfr_rootn_ui(t, x, (unsigned long)-n, MPFR_RNDN);
  return mpfr_ui_div(r, 1, t, rnd);
}
// The two-argument families; pown's integer is the second argument.
const std::map<std::string, MpfrFn2> kMpfr2 = {
    {"pow", mpfr_pow}, {"powr", powr_ref}, {"pown", mpfr_pow}, {"rootn", rootn_ref}, {"hypot", mpfr_hypot},
    {"atan2", mpfr_atan2}, {"atan2pi", mpfr_atan2pi}};

// The second result of the two-result families.
const std::map<std::string, MpfrFn> kMpfrSecond = {{"sincos", mpfr_cos}, {"sincosreg", mpfr_cos}};
// The sign of Gamma(x) that lgammar stores: MPFR's at finite non-integer x,
// -1 at -0, +1 at +0, at the poles (negative integers) and at infinities and NaN.
int gamma_sign(double x) {
  if (!std::isfinite(x) || (x < 0 && x == std::floor(x))) return 1;
  if (x == 0) return std::signbit(x) ? -1 : 1;
  mpfr_t r, m;
  mpfr_inits2(64, r, m, (mpfr_ptr)nullptr);
  mpfr_set_d(m, x, MPFR_RNDN);
  int sign;
  mpfr_lgamma(r, &sign, m, MPFR_RNDN);
  mpfr_clears(r, m, (mpfr_ptr)nullptr);
  return sign;
}
const std::map<std::string, IntSecond> kIntSecond = {{"lgammar", gamma_sign}};

// Families whose results are odd (o) or even (e) in x, one letter per
// result: f(-x) must be -f(x) or f(x) bit for bit at every finite x, in every
// algorithm.
const Parity kParity[] = {{"sin", "o"},   {"cos", "e"},    {"tanf", "o"},  {"sincos", "oe"}, {"sincosreg", "oe"},
                {"cbrt", "o"},  {"rcbrt", "o"},  {"asin", "o"},  {"asinpi", "o"},  {"atan", "o"},
                {"atanpi", "o"}, {"sinh", "o"},  {"cosh", "e"},  {"tanh", "o"},    {"asinh", "o"},
                {"atanh", "o"}, {"erf", "o"},    {"sinpi", "o"}, {"cospi", "e"},   {"tanpi", "o"}};
// tan (double) is not odd bit for bit above 128000: its full-range path works
// on the signed argument, and the mirror nodes pi/4 and 3pi/4 of its table
// differ in the pole term's weight (1 and 0), so tan(-x) and -tan(x) may
// differ in the last bits there (both within the bound).

// Asserted max error, ulp; the measured maxima (2^24 samples or more) in the comments.
// normal_only: the algorithm has no lane test by design and is held to its
// bound on normal finite inputs only (its zeros, denormals and infinities
// are the special-value table's rows).
const struct {
  const char *family, *algorithm;
  double ulp;
  bool normal_only = false;
} kBounds[] = {
    {"exp", "full", 1.0},       // 0.519
    {"exp", "fast", 2.98e7},    // 2.972e7 (relative 3.3e-9: the degree-2 polynomial's r^3/6 at ln2/256)
    {"expf", "full", 1.0},      // 0.748
    {"expf", "fast", 1780},     // 1775.5 (half_exp allows 8192)
    {"exp2", "full", 0.76},     // 0.522 on normal results, 0.7503 on denormal ones (two roundings)
    {"exp2", "fast", 1.53e7},   // 1.528e7 (relative 1.9e-9)
    {"exp2f", "full", 0.62},    // 0.615
    {"exp2f", "fast", 1235},    // 1230
    {"exp10", "full", 0.51},    // 0.508
    {"exp10", "fast", 2.83e7},  // 2.827e7 (relative 4.4e-9)
    {"exp10f", "full", 0.53},   // 0.525
    {"exp10f", "fast", 2150},   // 2148
    {"expm1", "full", 0.51},    // 0.5044
    {"expm1", "fast", 221},     // 220.2
    {"expm1f", "full", 0.501},  // 0.5000
    {"expm1f", "fast", 8.7},    // 8.60
    {"log", "full", 1.001},     // 0.732; denormal x (the scalar routine, two roundings) 0.9999
    {"log", "fast", 3e6},       // 2.09e6 just below 1 on Ice Lake and Zen (the r^4/4 truncation)
    {"log2", "full", 0.502},    // 0.5004
    {"log2", "fast", 2.7e6},    // 1.782e6 Ice Lake, 2.426e6 Zen (the reciprocal estimate differs)
    {"log10", "full", 0.502},   // 0.5007
    {"log10", "fast", 3.2e6},   // 1.823e6 Ice Lake, 2.921e6 Zen (the reciprocal estimate differs)
    {"logf", "full", 0.59},     // 0.5871 (every positive normal single)
    {"logf", "fast", 2.7},      // 2.645
    {"logf", "half", 1000},     // 909.8 (half_log allows 8192)
    {"log2f", "full", 0.64},    // 0.6336
    {"log2f", "fast", 4},       // 3.987
    {"log10f", "full", 0.58},   // 0.5777
    {"log10f", "fast", 3},      // 2.918
    {"log1p", "full", 0.501},   // 0.5003
    {"log1p", "fast", 2.7},     // 2.645 (x near 2^-11: T(1023) + r cancels to half)
    {"log1pf", "full", 0.67},   // 0.6602 (every single in (-1, 2^127))
    {"log1pf", "fast", 3.5},    // 3.419
    {"sqrt", "full", 0.5},      // correctly rounded (tests/exact_test.cpp: bit for bit)
    {"sqrtf", "full", 0.5},     // correctly rounded
    {"sqrtf", "fast", 6145, true},  // the estimate's 1.5 * 2^-12 on any processor; every positive normal single: 4095 Ice Lake, 4156 Zen
    {"sqrtf", "half", 6145},    // as _native (half_sqrt allows 8192)
    {"rsqrt", "full", 0.54},    // 0.5290 (7e6 doubles: every binade, both range ends)
    {"rsqrt", "fast", 2.8e5},   // 2.763e5 (relative 3.1e-11: the series cut after d^2)
    {"rsqrtf", "full", 0.52},   // 0.5095 (every positive single)
    {"rsqrtf", "fast", 3.8},    // 3.783 (every positive single)
    {"cbrt", "full", 0.52},     // 0.5112 (5e6 doubles of both signs)
    {"cbrt", "fast", 1.7e7},    // 1.675e7 (relative 1.9e-9: the series cut after u^2)
    {"cbrtf", "full", 0.52},    // 0.5106 (every positive single; odd bit for bit)
    {"cbrtf", "fast", 360},     // 355.4 (every positive single)
    {"rcbrt", "full", 0.55},    // 0.5385 (5e6 doubles of both signs)
    {"rcbrt", "fast", 7.4e7},   // 7.326e7 (relative 8.1e-9)
    {"rcbrtf", "full", 0.52},   // 0.5129 (every positive single)
    {"rcbrtf", "fast", 890},    // 888.7 (every positive single)
    {"hypot", "full", 0.76},    // 0.5001 on normal results, 0.7500 on denormal ones (8e6 pairs)
    {"hypot", "fast", 1.2},     // 1.175 (6e6 pairs)
    {"hypotf", "full", 0.51},   // 0.5000 (10^7 pairs: x^2 + y^2 rounds once in double)
    {"hypotf", "fast", 1.2},    // 1.166 (10^7 pairs)
    // sin, cos: the degree-15 kernels on |r| <= pi/2 err by up to 1.66 (sin) and 1.77 (cos) ulp
    // near |r| = pi/2 before rounding; the full-range path (0.503) and the scalar routine (0.504)
    // are far inside.
    {"sin", "full", 3.5},       // 3.274
    {"sin", "fast", 6.2e7},     // 6.142e7 (relative 6.8e-9: the degree-9 kernel near |r| = pi/2)
    {"cos", "full", 3.6},       // 3.430
    {"cos", "fast", 6.2e7},     // 6.142e7
    {"tan", "full", 3.1},             // 3.036 fast path (|x| <= 128000), 2.945 full-range path
    {"tan", "fast", 2.2e5},           // 1.99e5 (relative 2.2e-11: the scaled rational of degree 5/4)
    {"sincos", "full", 3.2},          // sine 3.18, cosine 3.19 (|r| up to pi/2 in the degree-15 kernel)
    {"sincos", "fast", 6.2e7},        // 6.142e7 near +-1 (relative 6.8e-9: the degree-9 kernel at |r| = pi/2)
    {"sincosreg", "full", 3.2},       // the bits of sincos
    {"sincosreg", "fast", 6.2e7},     // the bits of sincos
    {"acos", "full", 1.6},     // 1.485 (the designed series and final addition)
    {"acos", "fast", 5e6},     // 4.699e6 (relative 2^-30.6, the degree-5 series)
    {"acosf", "full", 0.7},    // 0.6238 (every single with |x| >= 1/2, every 997th below)
    {"acosf", "fast", 2.85},   // 2.787 (every single in [-1, 1]; the minimax series of tables/acos.h)
    {"asin", "full", 1.0},     // 0.8632
    {"asin", "fast", 5.1e6},   // 4.697e6 (relative 2^-30.6)
    {"asinf", "full", 0.7},    // 0.6339
    {"asinf", "fast", 3.3},    // 3.248 (every single in [-1, 1])
    {"acospi", "full", 0.85},  // 0.7811
    {"acospi", "fast", 5e6},   // 4.483e6
    {"acospif", "full", 0.7},  // 0.5956
    {"acospif", "fast", 4.0},  // 3.937 (every single in [-1, 1])
    {"asinpi", "full", 1.0},   // 0.9294
    {"asinpi", "fast", 6.5e6}, // 5.981e6
    {"asinpif", "full", 0.8},  // 0.7499 (denormal results: two roundings)
    {"asinpif", "fast", 4.5},  // 4.441 (every single in [-1, 1])
    {"atan", "full", 0.52},     // 0.5107
    {"atan", "fast", 260},      // 248.7 (atan2's _native kernel on (1, |x|): relative 2^-45.0)
    {"atanf", "full", 0.51},    // 0.5066
    {"atanf", "fast", 1.6},     // 1.573
    {"atanpi", "full", 1.0},    // 0.9701 on results near 2^-1022 (the u/pi split below the normal range), 0.52 elsewhere
    {"atanpi", "fast", 260},    // 249.9
    {"atanpif", "full", 1.0},   // 0.9797 on results near 2^-126, 0.51 elsewhere
    {"atanpif", "fast", 2.8},   // 2.751
    {"atan2", "full", 0.75},    // 0.7447
    {"atan2", "fast", 260},     // 249.5 (one division to |u| <= tan(pi/8), an 8-term series: relative 2^-45.0)
    {"atan2f", "full", 0.51},   // 0.5065
    {"atan2f", "fast", 2.1},    // 2.001 (the single series r + r s P(s) on r in [0, 1], no nodes)
    {"atan2pi", "full", 0.75},  // 0.738
    {"atan2pi", "fast", 260},   // 250.2 (atan2's _native kernel in half turns)
    {"atan2pif", "full", 0.52}, // 0.5125
    {"atan2pif", "fast", 1.7},  // 1.641
    // The pi-scaled forms (the ranges below; singles also every positive float below 2^23,
    // tools/exhaustive/exhaustive_trigf.cpp: above it every single is an integer, exact).
    {"sinpi", "full", 0.75},     // 0.7116
    {"sinpi", "fast", 125},      // 121.8 (relative 2^-45.6, the degree-11 kernel near |r| = 1/4)
    {"sinpif", "full", 0.8},     // 0.7705 (every float)
    {"sinpif", "fast", 2.2},     // 2.1434 (every float from 2^-30)
    {"cospi", "full", 0.78},     // 0.7465
    {"cospi", "fast", 125},      // 121.9
    {"cospif", "full", 0.8},     // 0.7621 (every float from 2^-30; below it 1 exactly)
    {"cospif", "fast", 2.2},     // 2.1434 (every float from 2^-30)
    {"tanpi", "full", 0.85},     // 0.7956
    {"tanpi", "fast", 180},      // 175.4
    {"tanpif", "full", 0.9},     // 0.8792 (every float)
    {"tanpif", "fast", 4.5},     // 4.4253 (every float from 2^-30)
    {"sinh", "full", 1.85},     // 1.843 (small x: the designed degree-5 sinh r and the rounding of S Cp)
    {"sinh", "fast", 213},      // 212.4 (one-constant reduction at |x| near 707)
    {"sinhf", "full", 0.501},   // 0.500
    {"sinhf", "fast", 2.8},     // 2.733 (the pair kernel in single; 1.2e7 samples)
    {"cosh", "full", 1.5},      // 1.478
    {"cosh", "fast", 214},      // 213.0 (one-constant reduction at |x| near 707)
    {"coshf", "full", 0.501},   // 0.500
    {"coshf", "fast", 2.6},     // 2.554 (the pair kernel in single)
    {"tanh", "full", 1.2},      // 1.188
    {"tanh", "fast", 221},      // 220.0 (expm1's fast kernel near 2|x| = ln2/256)
    {"tanhf", "full", 0.501},   // 0.5001 (every single, x = 0x1.f93e88p-10; E/(E + 2) in double)
    // The gamma families (about 1.7e5 inputs per double range, 3.3e5 per single
    // one, with the 64 doubles around each special-value row). lgamma: 0.87 on
    // every range (x = -3.1436, beside the zero -3.1435808883499798, on the
    // polynomial about it); 1.08 over the 41 doubles nearest each negative zero
    // down to -24 and across the edges of their windows (a separate sweep);
    // positive x 0.76 (x = 1.1212857406640862, the vector path's row about the
    // zero 1). The bound 4 is the one promised on the negative axis.
    {"lgamma", "full", 4},
    {"lgammaf", "full", 4},      // 0.5055 (every positive single: the double-arithmetic path rounded once;
                                 // 0.5 on every negative one)
    {"lgammar", "full", 4},      // lgamma's bits
    {"lgammarf", "full", 4},     // lgammaf's bits
    {"tgamma", "full", 2},       // 0.73 (denormal results near -170.7), 0.52 on the vector path
    {"tgammaf", "full", 2},      // 0.501 (every positive single; 2^f's polynomial, 2^-34 relative, before the
                                 // rounding; 0.5 on every negative one)
    {"tanhf", "fast", 2.5},     // 2.456 (every single; E/(E + 2), E = e^(2|x|) - 1 in single)
    // asinh, acosh: the log1p family's ln(u + c) on a double-double w; atanh:
    // the same ln on 1 + z, z = 2|x|/(1 - |x|) as a double-double;
    // the singles in double, rounded once (one algorithm for both classes).
    {"asinh", "full", 0.51},    // 0.5007 (x = 0x1.24836524d6217p+28, w = 2x from 2^28)
    {"asinh", "fast", 2.6},     // 2.543 (x = 0x1.ffdaef14ded94p-12, the fast ln near w = 1)
    {"asinhf", "full", 0.66},   // 0.6422 (single: ln(u + d0), the series below 2^-5; 1.5e7 samples)
    {"asinhf", "fast", 0.66},   // the plain algorithm
    {"acosh", "full", 0.51},    // 0.5008 (x = 0x1.04f67bc868144p+28)
    {"acosh", "fast", 1.7},     // 1.661 (x = 0x1.000061f56c3eep+0)
    {"acoshf", "full", 0.61},   // 0.5971 near 1 (single: ln(u + d0); 1.5e7 samples)
    {"acoshf", "fast", 0.61},   // the plain algorithm
    {"atanh", "full", 0.51},    // 0.5005 (x = 0x1.dce46c6e5e357p-13)
    {"atanh", "fast", 2.8},     // 2.761 (x = 0x1.ffe7fa9ab731ep-13, the fast ln near 1 + z = 1 + 2^-11)
    {"atanhf", "full", 0.54},   // 0.5338 (single: ln(u + d0)/2 and the series below 2^-5)
    {"atanhf", "fast", 0.54},   // the plain algorithm
    {"erf", "full", 0.7},       // 0.692 (x near 0.054: c0 + t p rounded once, the fit 0.05)
    {"erf", "fast", 5930},      // 5927 at x = 2 (the degree-7 rows)
    {"erff", "full", 0.501},    // 0.5007 (every float, x = 0x1.c4c7dcp-23)
    {"erff", "fast", 3.81},     // 3.805 (every float, x = 0x1.c79edp-4; the degree-4 rows)
    {"erfc", "full", 0.76},     // 0.7547 at x = 26.55 (a denormal result), 0.7388 on normal ones
    {"erfc", "fast", 9400},     // 9387 at x = 17.0 (the degree-7 rows)
    {"erfcf", "full", 0.501},   // 0.5005 (every float, x = 0x1.06a856p+3)
    {"erfcf", "fast", 1.47},    // 1.464 (every float, x = 0x1.fffa0cp-4)
    // Single trigonometric families: every positive single (tools/exhaustive/exhaustive_trigf.cpp).
    {"sinf", "full", 2.38},       // 2.370 fast path (the designed kernel), 0.5005 full range
    {"sinf", "fast", 2525},       // 2524.5 (the degree-5 kernel; half_sin allows 8192)
    {"cosf", "full", 2.36},       // 2.356, 0.5005 full range
    {"cosf", "fast", 2536},       // 2535.97
    {"tanf", "full", 3.66},       // 3.651 fast path, 0.5011 full range
    {"tanf", "fast", 984},        // 983.7 near odd multiples of pi/2 (pi/2 in two pieces)
    {"sincosf", "full", 2.19},    // sine 2.148, cosine 2.152; above 2^19 2.182 and 2.176
    {"sincosregf", "full", 2.19},  // the bits of sincosf
    {"sincosregf", "fast", 2.19},  // the bits of sincosf
    // The powers (about 1.7e5 inputs per double range, 3.4e5 per single
    // one; the plain double paths' flagged lanes: the accurate routine, 0.51).
    {"pow", "full", 1.1},        // 1.015 (2^(j/256) rounded to double, no low part)
    {"pow", "fast", 1.3e8},      // 1.289e8 (relative 1.43e-8: the chord of 2^(f/2048))
    {"powf", "full", 0.76},      // 0.740 (the chord, 0.12 ulp, then the narrowing)
    {"powf", "fast", 150},       // 135.4 (z in one single: |z| 2^-24 near |z| = 125)
    {"powr", "full", 1.1},       // 1.014
    {"powr", "fast", 1.3e8},     // 1.289e8
    {"powrf", "full", 1.3},      // 1.283 (2^(j/8) rounded to single, the cubic for 2^R)
    {"powrf", "fast", 150},      // 132.3
    {"pown", "full", 0.52},      // 0.5094
    {"pown", "fast", 1.3e8},     // 1.289e8
    {"pownf", "full", 0.76},     // 0.7394
    {"pownf", "fast", 150},      // 130.2
    {"rootn", "full", 0.52},     // 0.508
    {"rootn", "fast", 1.3e8},    // 1.289e8
    {"rootnf", "full", 0.76},    // 0.7396
    {"rootnf", "fast", 50},      // 44.0
};

}  // namespace

bool normal_only_bound(const std::string& family, const std::string& algorithm) {
  for (const auto& b : kBounds)
    if (family == b.family && algorithm == b.algorithm) return b.normal_only;
  return false;
}

namespace {


constexpr double kDMin = DBL_MIN, kDMax = DBL_MAX, kFMin = FLT_MIN, kFMax = FLT_MAX;
const Range kRanges[] = {
    {"exp", "wide", -750, 720},
    {"expf", "wide", -105, 90},
    {"exp2", "wide", -1080, 1030},
    {"exp2f", "wide", -155, 130},
    // The single scalar routines, correctly rounded on every single they get.
    {"exp2f", "flagged_above", 0x1.f80002p6, 128.5, kEvery, 0.5},
    {"exp2f", "flagged_below", -0x1.f80002p6, -150.5, kEvery, 0.5},
    {"exp10", "wide", -330, 315},
    {"exp10f", "wide", -46, 39},
    {"exp10f", "flagged_above", 0x1.2f7032p+5, 38.6, kEvery, 0.5},
    {"exp10f", "flagged_below", -0x1.2f7032p+5, -45.2, kEvery, 0.5},
    {"expm1", "moderate", -3, 3},
    {"expm1", "wide", -45, 712},
    {"expm1", "tiny", 0x1p-60, 2, kBitPatterns},
    {"expm1f", "moderate", -3, 3},
    {"expm1f", "wide", -25, 90},
    {"expm1f", "tiny", 0x1p-30, 2, kBitPatterns},
    {"log1p", "moderate", -1, 3},
    {"log1p", "wide", 1, 0x1p1000, kBitPatterns},
    {"log1p", "tiny", 0x1p-60, 1, kBitPatterns},
    {"log1pf", "moderate", -1, 3},
    {"log1pf", "wide", 1, kFMax, kBitPatterns},
    {"log1pf", "tiny", 0x1p-30, 1, kBitPatterns},
    // hypot: operands of one size (x^2 and y^2 alike: the sum's roundings
    // matter most), every pair of bit patterns, the ends of the range.
    {"hypot", "moderate", -4, 4, kUniform, 0, -4, 4},
    {"hypot", "wide", 0x1p-1074, kDMax, kBitPatterns, 0, 0x1p-1074, kDMax, kBitPatterns},
    {"hypot", "huge", 0x1p1000, kDMax, kBitPatterns, 0, -0x1p1000, -kDMax, kBitPatterns},
    {"hypot", "tiny", 0x1p-1074, 0x1p-1000, kBitPatterns, 0, 0x1p-1074, 0x1p-1000, kBitPatterns},
    {"hypotf", "moderate", -4, 4, kUniform, 0, -4, 4},
    {"hypotf", "wide", 0x1p-149, kFMax, kBitPatterns, 0, 0x1p-149, kFMax, kBitPatterns},
    {"hypotf", "huge", 0x1p100, kFMax, kBitPatterns, 0, -0x1p100, -kFMax, kBitPatterns},
    {"hypotf", "tiny", 0x1p-149, 0x1p-100, kBitPatterns, 0, 0x1p-149, 0x1p-100, kBitPatterns},
    // sin and cos: the bench range, every binade of the fast reduction, the
    // full-range reduction (inline in the plain class, the scalar routine in
    // the reduced ones) up to DBL_MAX, and the tiny arguments. The points near
    // multiples of pi/2 and around the bounds are special-value rows (their
    // neighbourhoods are tested here).
    {"sin", "moderate", -1000, 1000},
    {"sin", "fast_binades", 0x1p-20, 0x1p24, kBitPatterns},
    {"sin", "huge", 0x1p24, kDMax, kBitPatterns},
    {"sin", "tiny", 0x1p-1074, 0x1p-20, kBitPatterns},
    {"cos", "moderate", -1000, 1000},
    {"cos", "fast_binades", 0x1p-20, 0x1p23, kBitPatterns},
    {"cos", "huge", 0x1p23, kDMax, kBitPatterns},
    {"cos", "tiny", 0x1p-1074, 0x1p-20, kBitPatterns},
    // The trigonometric families: the fast path, the thresholds (tan 128000,
    // sincos 2^23) and the full-range path above them up to DBL_MAX; the
    // neighbours of odd multiples of pi/2 come from the special-value table.
    {"tan", "moderate", -10, 10},
    {"tan", "fast", -128000, 128000},
    {"tan", "threshold", 127000, 129000},
    {"tan", "huge", 128000, kDMax, kBitPatterns},
    {"tan", "small", 0x1p-60, 1, kBitPatterns},
    {"sincos", "moderate", -10, 10},
    {"sincos", "fast", -8388608, 8388608},
    {"sincos", "threshold", 8388000, 8389000},
    {"sincos", "huge", 8388608, kDMax, kBitPatterns},
    {"sincos", "small", 0x1p-60, 1, kBitPatterns},
    {"sincosreg", "moderate", -10, 10},
    {"sincosreg", "huge", 8388608, kDMax, kBitPatterns},
    // Single sine, cosine and tangent: the fast paths, every single within
    // 100 of their bounds, and the full-range paths up to FLT_MAX.
    {"sinf", "moderate", -10000, 10000},
    {"sinf", "tiny", 0x1p-40, 2, kBitPatterns},
    {"sinf", "bound", 9900, 10100, kEvery},
    {"sinf", "huge", 10000, kFMax, kBitPatterns},
    {"cosf", "moderate", -10000, 10000},
    {"cosf", "bound", 9900, 10100, kEvery},
    {"cosf", "huge", 10000, kFMax, kBitPatterns},
    {"tanf", "moderate", -8256, 8256},
    {"tanf", "tiny", 0x1p-40, 2, kBitPatterns},
    {"tanf", "bound", 8156, 8356, kEvery},
    {"tanf", "huge", 8256, kFMax, kBitPatterns},
    {"sincosf", "moderate", -524288, 524288},
    {"sincosf", "bound", 520000, 530000, kEvery},
    {"sincosf", "huge", 524288, kFMax, kBitPatterns},
    {"sincosregf", "moderate", -524288, 524288},
    {"sincosregf", "huge", 524288, kFMax, kBitPatterns},
    // sinh, cosh: the vector range, the scalar routine's (|x| >= 707.7) and
    // small x, where sinh keeps its relative accuracy.
    {"sinh", "moderate", -30, 30},
    {"sinh", "wide", -712, 712},
    {"sinh", "small", 0x1p-60, 1, kBitPatterns},
    {"sinh", "large", 1, 712, kBitPatterns},
    {"cosh", "moderate", -30, 30},
    {"cosh", "wide", -712, 712},
    {"cosh", "small", 0x1p-60, 1, kBitPatterns},
    {"cosh", "large", 1, 712, kBitPatterns},
    {"sinhf", "every", 0, 90, kEvery},
    {"coshf", "every", 0, 90, kEvery},
    // tanh: every interval of the table, small x (entry 0), huge x.
    {"tanh", "moderate", -20, 20},
    {"tanh", "small", 0x1p-60, 0.25, kBitPatterns},
    {"tanh", "intervals", 0.125, 22, kBitPatterns},
    {"tanh", "huge", 22, kDMax, kBitPatterns},
    {"tanhf", "every", 0, kFMax, kEvery},
    // asinh, acosh, atanh: moderate arguments, the tiny bound (2^-27 double,
    // 2^-12 single), x near 1 (acosh) and |x| near 1 (atanh), the switch to w =
    // 2|x| at 2^28 and the scalar routine's range above 2^1000.
    {"asinh", "moderate", -4, 4},
    {"asinh", "small", 0x1p-60, 1, kBitPatterns},
    {"asinh", "tiny_bound", 0x1p-28, 0x1p-26, kBitPatterns},
    {"asinh", "wide", 1, 0x1p1000, kBitPatterns},
    {"asinh", "big_bound", 0x1p27, 0x1p29, kBitPatterns},
    {"asinh", "huge", 0x1p1000, kDMax, kBitPatterns},
    {"acosh", "moderate", 1, 4},
    {"acosh", "near_one", 1, 1.0001},
    {"acosh", "one_binade", 1, 2, kBitPatterns},
    {"acosh", "wide", 2, 0x1p1000, kBitPatterns},
    {"acosh", "big_bound", 0x1p27, 0x1p29, kBitPatterns},
    {"acosh", "huge", 0x1p1000, kDMax, kBitPatterns},
    {"atanh", "moderate", -1, 1},
    {"atanh", "small", 0x1p-60, 0.5, kBitPatterns},
    {"atanh", "tiny_bound", 0x1p-28, 0x1p-26, kBitPatterns},
    {"atanh", "near_one", 0.5, 1, kBitPatterns},
    {"atanh", "very_near_one", 0.9999999, 1, kBitPatterns},
    // x near 2^-12: 1 + z = 1 + 2|x|/(1 - |x|) near 1 + 2^-11, the fast ln's
    // worst place (R = 1023, where its table term and r cancel to half).
    {"atanh", "fast_ln_worst", 0x1.ff8p-13, 0x1.0008p-12},
    {"asinhf", "every", 0, kFMax, kEvery},
    {"acoshf", "every", 1, kFMax, kEvery},
    {"acoshf", "near_one", 1, 1.001, kEvery},
    {"atanhf", "every", 0, 1, kEvery},
    {"atanhf", "near_one", 0.999, 1, kEvery},
    // erf: every row of the table, tiny and denormal x (row 0: x + x Q(x)),
    // the rounding to 1 from 5.9215863 and beyond.
    {"erf", "moderate", -6.5, 6.5},
    {"erf", "tiny", 0x1p-1074, 0.25, kBitPatterns},
    {"erf", "rows", 0.125, 6.5, kBitPatterns},
    {"erf", "huge", 5.5, kDMax, kBitPatterns},
    {"erff", "every", 0, kFMax, kEvery},
    // erfc: the tail x from 0.5 to the underflow at 27.2299 (denormal results
    // from 26.55) and beyond, negative x (2 - erfc|x|, 2 from -5.8636), small x.
    {"erfc", "moderate", -6, 28},
    {"erfc", "tail", 0.5, 27.3, kBitPatterns},
    {"erfc", "denormal", 26.4, 27.3},
    {"erfc", "beyond", 27.2, kDMax, kBitPatterns},
    {"erfc", "negative", -0x1p-1074, -7, kBitPatterns},
    {"erfc", "small", 0x1p-1074, 0.5, kBitPatterns},
    {"erfcf", "every", 0, kFMax, kEvery},
    {"erfcf", "negative", -0x1p-149, -kFMax, kEvery},
};
// The gamma families: the shifted and the Stirling ranges, tiny and huge x,
// around the zeros 1 and 2 of ln Gamma, the negative axis (poles and the
// reflection), and the neighbourhoods of the negative zeros of ln |Gamma|
// (the family's loosest bound); Gamma up to its overflow and down into the
// denormals on the negative axis.
std::vector<Range> gamma_ranges() {
  std::vector<Range> v;
  for (const char* f : {"lgamma", "lgammar", "lgammaf", "lgammarf"}) {
    const bool single = f[std::strlen(f) - 1] == 'f';
    v.push_back({f, "moderate", 0, 100, kUniform, 2});
    v.push_back({f, "wide", single ? 0x1p-149 : 0x1p-1074, single ? kFMax : kDMax, kBitPatterns, 2});
    v.push_back({f, "near1", 0.75, 1.25, kUniform, 2});
    v.push_back({f, "near2", 1.75, 2.25, kUniform, 2});
    v.push_back({f, "tiny", single ? 0x1p-149 : 0x1p-1074, 0x1p-4, kBitPatterns, 2});
    v.push_back({f, "negative", -0.5, -2.4, kUniform, 4});
    v.push_back({f, "negative_far", -3.2, -3.9, kUniform, 4});
    v.push_back({f, "negative_wide", -0x1p-60, single ? -0x1p23 : -0x1p52, kBitPatterns, 4});
    v.push_back({f, "negative_roots", -2.2, -8, kUniform});
  }
  for (const char* f : {"tgamma", "tgammaf"}) {
    const bool single = f[std::strlen(f) - 1] == 'f';
    v.push_back({f, "moderate", 0.5, single ? 35.0 : 170.0});
    v.push_back({f, "small", single ? 0x1p-149 : 0x1p-1074, 8, kBitPatterns});
    v.push_back({f, "overflow", single ? 34.0 : 170.0, single ? 36.0 : 172.0});
    v.push_back({f, "negative", single ? -30.0 : -170.0, 0});
    v.push_back({f, "denormal", single ? -50.0 : -190.0, single ? -34.0 : -170.0});
  }
  return v;
}
// The arc tangents: the nodes' range, every binade (huge and tiny included);
// atan2 in each quadrant over every exponent difference, near the diagonal,
// and with both arguments huge or tiny (the scaled pairs of the scalar
// routines).
std::vector<Range> atan_ranges() {
  std::vector<Range> v;
  for (const char* f : {"atan", "atanpi", "atanf", "atanpif"}) {
    const bool single = f[std::strlen(f) - 1] == 'f';
    v.push_back({f, "nodes", -20, 20});
    v.push_back({f, "wide", single ? 0x1p-149 : 0x1p-1074, single ? kFMax : kDMax, kBitPatterns});
    v.push_back({f, "middle", 0x1p-5, 32, single ? kEvery : kBitPatterns});
    // Across tan(pi/8) and tan(3pi/8), where the _native kernels change region.
    v.push_back({f, "tan_pi8", 0.4141, 0.4143});
    v.push_back({f, "tan_3pi8", -2.4141, -2.4143});
  }
  for (const char* f : {"atan2", "atan2pi", "atan2f", "atan2pif"}) {
    const bool single = f[std::strlen(f) - 1] == 'f';
    const double tiny = single ? 0x1p-149 : 0x1p-1074, big = single ? kFMax : kDMax;
    v.push_back({f, "near", -4, 4, kUniform, 0, -4, 4});
    // |y/x| across tan(pi/8) and tan(3pi/8) in the second and first quadrants.
    v.push_back({f, "tan_pi8", 0.4141, 0.4143, kUniform, 0, -1, -1.0001});
    v.push_back({f, "tan_3pi8", 2.4141, 2.4143, kUniform, 0, 1, 1.0001});
    v.push_back({f, "q1", tiny, big, kBitPatterns, 0, tiny, big, kBitPatterns});
    v.push_back({f, "q2", tiny, big, kBitPatterns, 0, -tiny, -big, kBitPatterns});
    v.push_back({f, "q3", -tiny, -big, kBitPatterns, 0, -tiny, -big, kBitPatterns});
    v.push_back({f, "q4", -tiny, -big, kBitPatterns, 0, tiny, big, kBitPatterns});
    v.push_back({f, "huge", single ? 0x1p90 : 0x1p990, big, kBitPatterns, 0, single ? -0x1p90 : -0x1p990, -big,
                 kBitPatterns});
    v.push_back({f, "tiny", tiny, single ? 0x1p-90 : 0x1p-890, kBitPatterns, 0, tiny, single ? 0x1p-90 : 0x1p-890,
                 kBitPatterns});
  }
  return v;
}
// The logarithms: every positive normal, around 1 (where the result
// cancels), and the denormals (the scalar routines).
}  // namespace

std::vector<Range> ranges() {
  std::vector<Range> v(std::begin(kRanges), std::end(kRanges));
  for (const Range& r : atan_ranges()) v.push_back(r);
  for (const Range& r : gamma_ranges()) v.push_back(r);
  for (const char* f : {"log", "log2", "log10", "logf", "log2f", "log10f"}) {
    const bool single = f[std::strlen(f) - 1] == 'f';
    v.push_back({f, "wide", single ? kFMin : kDMin, single ? kFMax : kDMax, kBitPatterns});
    v.push_back({f, "near1", 0.5, 2.0});
    v.push_back({f, "denormal", single ? 0x1p-149 : 0x1p-1074, single ? 0x1p-126 : kDMin, kBitPatterns});
  }
  // The pi-scaled sine, cosine and tangent: the bench range, [-2, 2], every
  // binade below 2 (denormals included) and above (up to the integers from
  // 2^52, or 2^23), the neighbourhoods of integers and half-integers, small
  // and near the top of the non-integers (the single families: every float in
  // tools/exhaustive/exhaustive_trigf.cpp).
  for (const char* f : {"sinpi", "cospi", "tanpi", "sinpif", "cospif", "tanpif"}) {
    const bool single = f[std::strlen(f) - 1] == 'f';
    const double top = single ? 0x1p23 : 0x1p52, d = single ? 0x1p-10 : 0x1p-20;
    v.push_back({f, "moderate", -1000, 1000});
    v.push_back({f, "unit", -2, 2});
    v.push_back({f, "small", single ? 0x1p-149 : 0x1p-1074, 2, kBitPatterns});
    v.push_back({f, "wide", 2, single ? kFMax : kDMax, kBitPatterns});
    for (double c : {0.5, 1.0, 1.5, 2.0, 1000.5, 1001.0, top / 4 + 0.5})
      v.push_back({f, c == 0.5 ? "near_half" : c == 1 ? "near_1" : c == 1.5 ? "near_3_2" : c == 2 ? "near_2"
                              : c == 1000.5 ? "near_2001_2" : c == 1001 ? "near_1001" : "near_top",
                   c - d * (c > 2 ? c : 1), c + d * (c > 2 ? c : 1)});
    v.push_back({f, "top", top / 2, top});
  }
  // The roots: every positive normal (and negative one for the odd cube
  // roots), [0.5, 8) (every exponent remainder mod 3 and parity), the denormals.
  for (const char* f : {"sqrt", "sqrtf", "rsqrt", "rsqrtf", "cbrt", "cbrtf", "rcbrt", "rcbrtf"}) {
    const bool single = f[std::strlen(f) - 1] == 'f', odd = std::strstr(f, "cbrt");
    v.push_back({f, "wide", single ? kFMin : kDMin, single ? kFMax : kDMax, kBitPatterns});
    if (odd) v.push_back({f, "wide_negative", single ? -kFMin : -kDMin, single ? -kFMax : -kDMax, kBitPatterns});
    v.push_back({f, "near1", 0.5, 8.0});
    v.push_back({f, "denormal", single ? 0x1p-149 : 0x1p-1074, single ? 0x1p-126 : kDMin, kBitPatterns});
  }
  // The powers: moderate arguments; every binade of x with small |y| (and
  // rootn with any n); x near 1 with large |y|; results across the overflow
  // and underflow bounds; negative x with integer y.
  for (const char* f : {"pow", "powr", "pown", "rootn", "powf", "powrf", "pownf", "rootnf"}) {
    const bool s = f[std::strlen(f) - 1] == 'f', root = f[0] == 'r' && f[1] == 'o', powr = !strncmp(f, "powr", 4);
    const double top = s ? 128 : 1024, near = s ? 0x1p-12 : 0x1p-20, big = s ? 3e5 : 5e8, mn = s ? 0x1p-149 : 0x1p-1074;
    const double mx = s ? kFMax : kDMax;
    const Sampling whole = f[3] == 'n' ? kUniform : kIntegers;  // pow's y rounded to integers; n is one
    v.push_back({f, "moderate", 0.5, 2, kUniform, 0, root ? -40 : -top / 5, root ? 40 : top / 5});
    v.push_back({f, "wide", mn, mx, kBitPatterns, 0, root ? -1e6 : -3, root ? 1e6 : 3});
    if (!root) v.push_back({f, "near1", 1 - near, 1 + near, kUniform, 0, -big, big});
    v.push_back({f, "edges", 2, 4, kUniform, 0, -top * 0.72, top * 0.68});
    if (root) v.push_back({f, "negative", -mn, -mx, kBitPatterns, 0, -25, 25});
    else if (!powr) v.push_back({f, "negative", -4, -0.25, kUniform, 0, -top / 2, top / 2, whole});
  }
  // The arc sines and cosines: the whole domain, both sides of the fold at
  // |x| = 1/2, near +-1 (the square root of 1 - |x|), small |x| by bit
  // pattern (and the denormals for the odd families, whose result is ~x).
  for (const char* f : {"acos", "asin", "acospi", "asinpi", "acosf", "asinf", "acospif", "asinpif"}) {
    const bool single = f[std::strlen(f) - 1] == 'f';
    const double tiny = single ? 0x1p-30 : 0x1p-60;
    v.push_back({f, "unit", -1, 1});
    v.push_back({f, "fold", 0.45, 0.55});
    v.push_back({f, "fold_neg", -0.55, -0.45});
    v.push_back({f, "near1", 0.99, 1});
    v.push_back({f, "near_neg1", -1, -0.99});
    v.push_back({f, "small", tiny, 1, kBitPatterns});
    v.push_back({f, "small_neg", -tiny, -1, kBitPatterns});
    if (f[1] == 's') v.push_back({f, "denormal", single ? 0x1p-149 : 0x1p-1074, single ? kFMin : kDMin, kBitPatterns});
  }
  return v;
}

std::vector<Parity> parity_rows() { return std::vector<Parity>(std::begin(kParity), std::end(kParity)); }

template <class F> F lookup(const std::map<std::string, F>& m, const std::string& family) {
  auto it = m.find(family);
  if (it == m.end() && !family.empty() && family.back() == 'f') it = m.find(family.substr(0, family.size() - 1));
  return it == m.end() ? nullptr : it->second;
}
MpfrFn mpfr_of(const std::string& family, int result) {
  return result > 1 ? nullptr : lookup(result == 0 ? kMpfr : kMpfrSecond, family);
}
MpfrFn2 mpfr2_of(const std::string& family) { return lookup(kMpfr2, family); }
IntSecond int_second_of(const std::string& family) { return lookup(kIntSecond, family); }

double class_bound(const std::string& family, const std::string& algorithm) {
  for (const auto& b : kBounds)
    if (family == b.family && algorithm == b.algorithm) return b.ulp;
  return 0;
}

}  // namespace ravl_test
