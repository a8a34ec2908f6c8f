// exp and expf against MPFR: accuracy of every class over the whole domain,
// the fast-path and overflow/underflow boundaries, special values, the merge
// of callout lanes into vector results, and the class identities.
#include <gtest/gtest.h>
#include <mpfr.h>

#include <cfloat>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <limits>
#include <random>
#include <vector>

#include "ocl_ravl_l9.h"

namespace {

// Max error in ulp of each algorithm, the one place the tests keep them
// (the kernels' comments quote the measured figures).
struct Bounds {
  double exp_full = 1.0;     // plain exp: measured 0.519
  double exp_fast = 2.98e7;  // exp _native _half _rm: measured 2.972e7; r^3/6 at |r| = ln2/256 allows 2.98e7
  double expf_full = 1.0;    // expf and expf_rm: measured 0.748
  double expf_fast = 1780;   // expf _native _half: measured 1775.5 (OpenCL's half_exp allows 8192)
};
constexpr Bounds kBound;

uint64_t bits(double x) {
  uint64_t b;
  std::memcpy(&b, &x, 8);
  return b;
}
uint32_t bits(float x) {
  uint32_t b;
  std::memcpy(&b, &x, 4);
  return b;
}
template <class T> bool same_bits(T a, T b) { return bits(a) == bits(b); }

// ---- MPFR reference and the ulp measure ---------------------------------------

// Error of got against e^x in ulp of the correctly rounded result's binade (a
// power of two result that e^x rounds up to uses the ulp below it; denormals
// and zero the smallest denormal). NaN inputs must give NaN; an infinite correctly rounded result
// must be matched exactly. Mismatches count as an infinite error.
template <class T> class Reference {
 public:
  Reference() { mpfr_inits2(kPrec, x_, e_, d_, (mpfr_ptr)0); }
  ~Reference() { mpfr_clears(x_, e_, d_, (mpfr_ptr)0); }
  T correct(T x) {
    eval(x);
    return round();
  }
  double ulp_error(T x, T got) {
    if (std::isnan(x)) return std::isnan(got) ? 0 : INFINITY;
    eval(x);
    T cr = round();
    if (std::isinf(cr)) return got == cr ? 0 : INFINITY;
    if (!std::isfinite(got)) return INFINITY;
    mpfr_set_d(d_, (double)got, MPFR_RNDN);  // exact
    mpfr_sub(d_, d_, e_, MPFR_RNDN);
    mpfr_abs(d_, d_, MPFR_RNDN);
    mpfr_div_d(d_, d_, ulp(cr), MPFR_RNDN);  // before leaving MPFR: the difference may be below DBL_MIN
    return mpfr_get_d(d_, MPFR_RNDN);
  }

 private:
  static constexpr int kMant = std::numeric_limits<T>::digits - 1;  // 52 or 23
  static constexpr int kPrec = 2 * (kMant + 1) + 24;                // bits of e^x: 130 or 72
  static constexpr int kMinExp = std::numeric_limits<T>::min_exponent - 1 - kMant;  // -1074 or -149
  void eval(T x) {
    mpfr_set_d(x_, (double)x, MPFR_RNDN);
    mpfr_exp(e_, x_, MPFR_RNDN);
  }
  T round() { return round_to(T()); }
  double round_to(double) { return mpfr_get_d(e_, MPFR_RNDN); }
  float round_to(float) {
    // Round once to single, denormals included: to the grid of e's binade,
    // 2^(ex-1-23), or the denormal grid 2^-149 when that is coarser.
    if (mpfr_inf_p(e_) || mpfr_zero_p(e_)) return (float)mpfr_get_d(e_, MPFR_RNDN);
    long ex = mpfr_get_exp(e_);  // e_ in [2^(ex-1), 2^ex)
    if (ex <= kMinExp) return ex == kMinExp ? std::ldexp(1.0f, kMinExp) : 0.0f;  // above or below half 2^-149
    long lsb = ex - 1 - kMant > kMinExp ? ex - 1 - kMant : kMinExp;
    mpfr_t t;
    mpfr_init2(t, kPrec);
    mpfr_set(t, e_, MPFR_RNDN);
    mpfr_prec_round(t, ex - lsb, MPFR_RNDN);
    double v = mpfr_get_d(t, MPFR_RNDN);
    mpfr_clear(t);
    return (float)v;  // exact, or past FLT_MAX: infinity
  }
  // The ulp of cr's binade; when cr is a power of two reached from below
  // (the exact value lies in the binade under it), the smaller ulp of that binade.
  double ulp(T cr) {
    int ex;
    double m = std::frexp((double)cr, &ex);  // cr = m 2^ex, m in [0.5, 1)
    bool from_below = std::fabs(m) == 0.5 && mpfr_cmp_d(e_, (double)cr) < 0;
    double u = std::ldexp(1.0, ex - 1 - kMant - (from_below ? 1 : 0));
    double denorm = std::ldexp(1.0, kMinExp);
    return cr == 0 || u < denorm ? denorm : u;
  }
  mpfr_t x_, e_, d_;
};

// Results of an entry point over a list of inputs, a whole vector per call
// (the list is padded to a multiple of the width with zeros).
template <class T, class Img, class Fn> std::vector<T> run_vec(Fn f, std::vector<T> in, int width) {
  while (in.size() % width) in.push_back(0);
  std::vector<T> out(in.size());
  for (size_t i = 0; i < in.size(); i += width) {
    Img x;
    std::memcpy(&x, &in[i], sizeof x);
    Img r = f(x);
    std::memcpy(&out[i], &r, sizeof r);
  }
  return out;
}
template <class T, class Fn> std::vector<T> run_1(Fn f, const std::vector<T>& in) {
  std::vector<T> out(in.size());
  for (size_t i = 0; i < in.size(); ++i) out[i] = f(in[i]);
  return out;
}

// ---- entry points per class -----------------------------------------------------

struct DoubleClass {
  const char* name;
  ocl_ravl_double4(OCL_RAVL_CC* v4)(ocl_ravl_double4);
  double(OCL_RAVL_CC* s1)(double);
  ocl_ravl_double8(OCL_RAVL_CC* v8)(ocl_ravl_double4, ocl_ravl_double4);
  ocl_ravl_double4(OCL_RAVL_CC* v3)(ocl_ravl_double4);
  std::vector<double> vec(const std::vector<double>& in) const { return run_vec<double, ocl_ravl_double4>(v4, in, 4); }
  std::vector<double> one(const std::vector<double>& in) const { return run_1(s1, in); }
};
struct FloatClass {
  const char* name;
  ocl_ravl_float8(OCL_RAVL_CC* v8)(ocl_ravl_float8);
  float(OCL_RAVL_CC* s1)(float);
  ocl_ravl_float16(OCL_RAVL_CC* v16)(ocl_ravl_float8, ocl_ravl_float8);
  std::vector<float> vec(const std::vector<float>& in) const { return run_vec<float, ocl_ravl_float8>(v8, in, 8); }
  std::vector<float> one(const std::vector<float>& in) const { return run_1(s1, in); }
};
// Index 0 is the plain class; the algorithm of each class is in kDoubleAlgo / kFloatAlgo.
const DoubleClass kDouble[] = {
    {"exp", __ocl_ravl_l9_exp4, __ocl_ravl_l9_exp1, __ocl_ravl_l9_exp8, __ocl_ravl_l9_exp3},
    {"exp_native", __ocl_ravl_l9_exp4_native, __ocl_ravl_l9_exp1_native, __ocl_ravl_l9_exp8_native, __ocl_ravl_l9_exp3_native},
    {"exp_half", __ocl_ravl_l9_exp4_half, __ocl_ravl_l9_exp1_half, __ocl_ravl_l9_exp8_half, __ocl_ravl_l9_exp3_half},
    {"exp_rm", __ocl_ravl_l9_exp4_rm, __ocl_ravl_l9_exp1_rm, __ocl_ravl_l9_exp8_rm, __ocl_ravl_l9_exp3_rm},
};
const FloatClass kFloat[] = {
    {"expf", __ocl_ravl_l9_expf8, __ocl_ravl_l9_expf1, __ocl_ravl_l9_expf16},
    {"expf_native", __ocl_ravl_l9_expf8_native, __ocl_ravl_l9_expf1_native, __ocl_ravl_l9_expf16_native},
    {"expf_half", __ocl_ravl_l9_expf8_half, __ocl_ravl_l9_expf1_half, __ocl_ravl_l9_expf16_half},
    {"expf_rm", __ocl_ravl_l9_expf8_rm, __ocl_ravl_l9_expf1_rm, __ocl_ravl_l9_expf16_rm},
};
// Algorithm per class (0 full, 1 fast) and the bound of each algorithm.
constexpr int kDoubleAlgo[] = {0, 1, 1, 1};
constexpr int kFloatAlgo[] = {0, 1, 1, 0};
const double kDoubleBound[] = {kBound.exp_full, kBound.exp_fast};
const double kFloatBound[] = {kBound.expf_full, kBound.expf_fast};

// ---- inputs -----------------------------------------------------------------------

template <class T> T next(T x, int k) {
  for (; k > 0; --k) x = std::nextafter(x, (T)INFINITY);
  for (; k < 0; ++k) x = std::nextafter(x, -(T)INFINITY);
  return x;
}

std::vector<double> double_inputs() {
  std::mt19937_64 rng(0x5eed0e4);
  std::vector<double> v;
  std::uniform_real_distribution<double> whole(-750, 720), denorm(-745.2, -708.3);
  for (int i = 0; i < (1 << 20); ++i) v.push_back(whole(rng));
  for (int i = 0; i < (1 << 14); ++i) v.push_back(denorm(rng));
  for (int i = 0; i < (1 << 15); ++i) {
    uint64_t b = rng();
    double d;
    std::memcpy(&d, &b, 8);
    v.push_back(d);
  }
  // Small and tiny |x|, every binade down to 2^-80.
  for (int e = -80; e <= 0; ++e)
    for (int i = 0; i < 64; ++i) {
      double m = std::uniform_real_distribution<double>(1, 2)(rng);
      v.push_back(std::ldexp(i & 1 ? -m : m, e));
    }
  // Around every named bound, ln 2^-1074 and two points inside the callout ranges.
  const double named[] = {708.39599609374989, 709.78271289338397, -745.13321910194111, -708.39641853226408,
                          -708.39599609374989, 708.3964843750, 709.0, -709.0, -744.44007192138122};
  for (double b : named)
    for (int k = -64; k <= 64; ++k) v.push_back(next(b, k));
  return v;
}

std::vector<float> float_inputs() {
  std::mt19937_64 rng(0x5eed0e5);
  std::vector<float> v;
  std::uniform_real_distribution<float> whole(-105, 90), denorm(-104, -87);
  for (int i = 0; i < (1 << 21); ++i) v.push_back(whole(rng));
  for (int i = 0; i < (1 << 16); ++i) v.push_back(denorm(rng));
  for (int i = 0; i < (1 << 18); ++i) {
    uint32_t b = (uint32_t)rng();
    float f;
    std::memcpy(&f, &b, 4);
    v.push_back(f);
  }
  for (int e = -60; e <= 0; ++e)
    for (int i = 0; i < 64; ++i) {
      float m = std::uniform_real_distribution<float>(1, 2)(rng);
      v.push_back(std::ldexp(i & 1 ? -m : m, e));
    }
  const float named[] = {87.3365402f, -87.3365402f, 88.7228317f, -103.972076f, -87.3365447f, -88.0f, 88.0f};
  for (float b : named)
    for (int k = -256; k <= 256; ++k) v.push_back(next(b, k));
  return v;
}

// ---- accuracy over the domain, width identities, class identities ---------------

// Max error of each algorithm over the inputs, and the identities: width 1
// gives the bits of the vector width, and the classes of one algorithm give
// the same bits. algo[c] is class c's algorithm; classes[0] must be plain.
template <class T, class Classes, size_t N>
void check_accuracy(const std::vector<T>& in, const Classes (&classes)[N], const int (&algo)[N],
                    const double (&bound)[2], const char* const (&algo_name)[2]) {
  std::vector<T> vec[N], one[N];
  for (size_t c = 0; c < N; ++c) {
    vec[c] = classes[c].vec(in);
    one[c] = classes[c].one(in);
  }
  Reference<T> ref;
  int first_of[2] = {-1, -1};
  for (size_t c = 0; c < N; ++c)
    if (first_of[algo[c]] < 0) first_of[algo[c]] = (int)c;
  for (size_t c = 0; c < N; ++c) {
    int width_mismatch = 0, class_mismatch = 0;
    for (size_t i = 0; i < in.size(); ++i) {
      if (!same_bits(vec[c][i], one[c][i]) && width_mismatch++ < 3)
        ADD_FAILURE() << classes[c].name << ": width 1 differs from the vector at x = " << std::hexfloat << in[i];
      if (!same_bits(vec[c][i], vec[first_of[algo[c]]][i]) && class_mismatch++ < 3)
        ADD_FAILURE() << classes[c].name << " differs from " << classes[first_of[algo[c]]].name
                      << " at x = " << std::hexfloat << in[i];
    }
  }
  for (int a = 0; a < 2; ++a) {
    const std::vector<T>& got = vec[first_of[a]];
    double worst = 0;
    size_t at = 0;
    for (size_t i = 0; i < in.size(); ++i) {
      double err = ref.ulp_error(in[i], got[i]);
      if (!(err <= worst)) worst = err, at = i;
    }
    std::printf("%s: max %.4g ulp over %zu inputs, worst x = %a (got %a, want %a)\n", algo_name[a], worst,
                in.size(), (double)in[at], (double)got[at], (double)ref.correct(in[at]));
    EXPECT_LE(worst, bound[a]) << algo_name[a] << " at x = " << std::hexfloat << in[at] << " got " << got[at];
  }
}

TEST(ExpAccuracy, DoubleEveryClass) {
  const char* const names[2] = {"exp full", "exp fast"};
  check_accuracy(double_inputs(), kDouble, kDoubleAlgo, kDoubleBound, names);
}

TEST(ExpAccuracy, SingleEveryClass) {
  const char* const names[2] = {"expf full", "expf fast"};
  check_accuracy(float_inputs(), kFloat, kFloatAlgo, kFloatBound, names);
  EXPECT_LE(kBound.expf_fast, 8192.0);  // OpenCL's half_exp bound
}

// ---- special values: every class and width gives the same, exact result -------------

// want: the exact result; kCorrect: MPFR's correctly rounded e^x; NaN: any NaN.
constexpr double kCorrect = -1.0;
struct DoubleCase {
  double x, want;
  const char* why;
};
const DoubleCase kDoubleCases[] = {
    {NAN, NAN, "NaN"},
    {INFINITY, INFINITY, "+inf"},
    {-INFINITY, 0.0, "-inf gives +0"},
    {0.0, 1.0, "exp(0) = 1"},
    {-0.0, 1.0, "exp(-0) = 1"},
    {0x1p-60, 1.0, "tiny x"},
    {-0x1p-60, 1.0, "tiny -x"},
    {0x1p-1074, 1.0, "smallest denormal x"},
    {710.0, INFINITY, "overflow, inline"},
    {709.78271289338403, INFINITY, "first double above the overflow bound"},
    {1e308, INFINITY, "overflow"},
    {-746.0, 0.0, "underflow to +0, inline"},
    {-1e308, 0.0, "underflow to +0"},
    {709.78, kCorrect, "callout m = 1024, finite near DBL_MAX"},
    {709.78271289338397, kCorrect, "overflow bound itself: finite"},
    {709.0, kCorrect, "callout normal range"},
    {-720.0, kCorrect, "callout denormal result"},
    {-745.0, kCorrect, "callout deep denormal"},
    {-745.13321910194111, kCorrect, "underflow bound itself: smallest denormal"},
    {-708.39641853226408, kCorrect, "ln of the smallest normal"},
    {-708.4, kCorrect, "callout denormal, split path"},
};

TEST(ExpSpecial, DoubleValuesEveryClassAndWidth) {
  Reference<double> ref;
  for (const DoubleCase& t : kDoubleCases) {
    double want = t.want == kCorrect ? ref.correct(t.x) : t.want;
    for (const DoubleClass& c : kDouble) {
      double got[3] = {c.s1(t.x), c.v4(ocl_ravl_double4(t.x))[2], c.v8(ocl_ravl_double4(t.x), ocl_ravl_double4(t.x))[7]};
      for (double g : got) {
        if (std::isnan(want))
          EXPECT_TRUE(std::isnan(g)) << c.name << ": " << t.why;
        else
          EXPECT_TRUE(same_bits(g, want)) << c.name << ": " << t.why << std::hexfloat << " got " << g << " want " << want;
      }
    }
  }
  EXPECT_TRUE(std::isfinite(__ocl_ravl_l9_exp1(709.78)));
  EXPECT_GT(__ocl_ravl_l9_exp1(709.78), 0.99 * DBL_MAX);
  EXPECT_LT(__ocl_ravl_l9_exp1(-720.0), DBL_MIN);
  EXPECT_GT(__ocl_ravl_l9_exp1(-720.0), 0.0);
}

struct FloatCase {
  float x, want;
  const char* why;
};
const FloatCase kFloatCases[] = {
    {NAN, NAN, "NaN"},
    {INFINITY, INFINITY, "+inf"},
    {-INFINITY, 0.0f, "-inf gives +0"},
    {0.0f, 1.0f, "expf(0) = 1"},
    {-0.0f, 1.0f, "expf(-0) = 1"},
    {0x1p-60f, 1.0f, "tiny x"},
    {-0x1p-60f, 1.0f, "tiny -x"},
    {0x1p-149f, 1.0f, "smallest denormal x"},
    {89.0f, INFINITY, "overflow, inline"},
    {88.7228394f, INFINITY, "first single above the overflow bound"},
    {-104.0f, 0.0f, "underflow to +0, inline"},
    {-1e30f, 0.0f, "underflow to +0"},
    {88.7228317f, (float)kCorrect, "overflow bound itself: FLT_MAX range"},
    {88.0f, (float)kCorrect, "callout normal range"},
    {-100.0f, (float)kCorrect, "callout denormal result"},
    {-103.972076f, (float)kCorrect, "underflow bound itself: smallest denormal"},
    {-87.5f, (float)kCorrect, "callout denormal, near the normal range"},
};

TEST(ExpSpecial, SingleValuesEveryClassAndWidth) {
  Reference<float> ref;
  for (const FloatCase& t : kFloatCases) {
    float want = t.want == (float)kCorrect ? ref.correct(t.x) : t.want;
    for (const FloatClass& c : kFloat) {
      float got[3] = {c.s1(t.x), c.v8(ocl_ravl_float8(t.x))[3], c.v16(ocl_ravl_float8(t.x), ocl_ravl_float8(t.x))[15]};
      for (float g : got) {
        if (std::isnan(want))
          EXPECT_TRUE(std::isnan(g)) << c.name << ": " << t.why;
        else
          EXPECT_TRUE(same_bits(g, want)) << c.name << ": " << t.why << std::hexfloat << " got " << g << " want " << want;
      }
    }
  }
}

// ---- the merge rule ---------------------------------------------------------------

// Ordinary lanes of a mixed vector keep the bits they have in an all-ordinary
// vector; callout lanes give what width 1 gives; inline lanes +inf and +0.
TEST(ExpMerge, DoubleSpecialLanesLeaveOthersAlone) {
  const double ordinary[8] = {0.5, -3.25, 100.0, 1e-3, -700.0, 42.0, 7.0, -1.0};
  struct Put {
    int lane;
    double x;
  };
  const Put puts[] = {{2, -720.0}, {5, NAN}, {0, 710.0}, {7, -746.0}, {3, 709.78}};
  for (const DoubleClass& c : kDouble) {
    ocl_ravl_double4 a = {ordinary[0], ordinary[1], ordinary[2], ordinary[3]};
    ocl_ravl_double4 b = {ordinary[4], ordinary[5], ordinary[6], ordinary[7]};
    ocl_ravl_double8 base = c.v8(a, b);
    double mixed_in[8];
    std::memcpy(mixed_in, ordinary, sizeof mixed_in);
    for (const Put& p : puts) mixed_in[p.lane] = p.x;
    ocl_ravl_double8 mixed = c.v8(ocl_ravl_double4{mixed_in[0], mixed_in[1], mixed_in[2], mixed_in[3]},
                                  ocl_ravl_double4{mixed_in[4], mixed_in[5], mixed_in[6], mixed_in[7]});
    for (int l = 0; l < 8; ++l) {
      double want = mixed_in[l] == ordinary[l] ? base[l] : c.s1(mixed_in[l]);
      if (std::isnan(want))
        EXPECT_TRUE(std::isnan(mixed[l])) << c.name << " lane " << l;
      else
        EXPECT_TRUE(same_bits((double)mixed[l], want)) << c.name << " lane " << l;
    }
    EXPECT_EQ(mixed[0], INFINITY) << c.name;
    EXPECT_TRUE(same_bits((double)mixed[7], 0.0)) << c.name;
    // Width 3: a special fourth lane never reaches lanes 0-2.
    ocl_ravl_double4 w3out = c.v3(ocl_ravl_double4{ordinary[0], ordinary[1], ordinary[2], NAN});
    for (int l = 0; l < 3; ++l) EXPECT_TRUE(same_bits((double)w3out[l], (double)base[l])) << c.name << " width 3";
  }
}

TEST(ExpMerge, SingleSpecialLanesLeaveOthersAlone) {
  float ordinary[16];
  for (int l = 0; l < 16; ++l) ordinary[l] = -80.0f + 10.5f * l;  // -80 .. 77.5
  struct Put {
    int lane;
    float x;
  };
  const Put puts[] = {{2, -100.0f}, {5, NAN}, {9, 89.0f}, {11, -104.0f}, {15, 88.5f}, {0, -INFINITY}};
  for (const FloatClass& c : kFloat) {
    ocl_ravl_float8 a, b, ma, mb;
    float mixed_in[16];
    std::memcpy(mixed_in, ordinary, sizeof mixed_in);
    for (const Put& p : puts) mixed_in[p.lane] = p.x;
    for (int l = 0; l < 8; ++l) {
      a[l] = ordinary[l], b[l] = ordinary[8 + l];
      ma[l] = mixed_in[l], mb[l] = mixed_in[8 + l];
    }
    ocl_ravl_float16 base = c.v16(a, b), mixed = c.v16(ma, mb);
    for (int l = 0; l < 16; ++l) {
      float want = mixed_in[l] == ordinary[l] ? base[l] : c.s1(mixed_in[l]);
      if (std::isnan(want))
        EXPECT_TRUE(std::isnan(mixed[l])) << c.name << " lane " << l;
      else
        EXPECT_TRUE(same_bits((float)mixed[l], want)) << c.name << " lane " << l;
    }
    EXPECT_EQ(mixed[9], INFINITY) << c.name;
    EXPECT_TRUE(same_bits((float)mixed[11], 0.0f)) << c.name;
    EXPECT_TRUE(same_bits((float)mixed[0], 0.0f)) << c.name;
  }
}

}  // namespace
