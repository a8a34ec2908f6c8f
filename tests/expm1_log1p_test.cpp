// expm1, expm1f, log1p, log1pf: accuracy rows (the Accuracy suite of
// tests/common/accuracy.h) and the special values, each placed in one lane of
// an otherwise ordinary vector in both classes at widths 1, 3 and 16: that lane
// must give the exact result (or MPFR's correctly rounded one where the scalar
// routine computes it), and the other lanes must keep the bits they have in the
// all-ordinary vector (the merge rule, inline overflow lanes included).
#include <gtest/gtest.h>

#include <cfloat>
#include <cmath>
#include <string>
#include <vector>

#include "tests/common/accuracy.h"

namespace ravl_test {
namespace {

// Bounds asserted, ulp (measured figures in the comments; the kernels quote them).
// Measured with RAVL_ACCURACY_SCALE=8.
constexpr double kExpm1Full = 0.51;    // measured 0.5044
constexpr double kExpm1Fast = 221;     // measured 220.2
constexpr double kExpm1fFull = 0.501;  // measured 0.5000
constexpr double kExpm1fFast = 8.7;    // measured 8.60
constexpr double kLog1pFull = 0.501;   // measured 0.5000
constexpr double kLog1pFast = 2.2;     // measured 2.18
constexpr double kLog1pfFull = 0.501;  // measured 0.5005
constexpr double kLog1pfFast = 3.2;    // measured 3.14

// expm1: the fast-path bound, the overflow bound, the -1 clamp, the first
// table steps (n = +-1 at +-ln2/128), t = 1/2 and 1/4 (x = -ln2, -2 ln2),
// t - 1 no longer exact (2^53), tiny x.
const std::vector<double> kExpm1Edges = {709.75, 709.78271289338397, 709.7773, -40, 0.0054152123481245725,
                                         0.0108304246962, 0.6931471805599453, 1.3862943611198906, 36.7368005696771,
                                         1e-5, 0x1p-20, 0x1p-40, 0x1p-54, 0x1p-1022, 0};
const std::vector<double> kExpm1fEdges = {88.0, 88.7228317, -20, 0.3465736, 0.6931472, 1.3862944, 16.6355,
                                          1e-5, 0x1p-20, 0x1p-30, 0};
// log1p: -1 and just above, -1/2 and -0.29 / 0.41 (ends of e = 0), 1, the
// vector bound, tiny x.
const std::vector<double> kLog1pEdges = {-1, -0.5, -0.2928932188134524, 0.41421356237309503, 1, 0x1p53, 0x1p1000,
                                         1e-5, 0x1p-20, 0x1p-40, 0x1p-54, 0x1p-1022, 0};
const std::vector<double> kLog1pfEdges = {-1, -0.5, -0.29289322, 0.41421357, 1, 0x1p24, 3.4028235e38,
                                          1e-5, 0x1p-20, 0x1p-30, 0};

// Uniform over the moderate range, where both signs and the table steps are dense.
const Row kRows[] = {
    {"expm1", "full", mpfr_expm1, kExpm1Full, -3, 3, kExpm1Edges},
    {"expm1", "fast", mpfr_expm1, kExpm1Fast, -3, 3, kExpm1Edges},
    {"expm1f", "full", mpfr_expm1, kExpm1fFull, -3, 3, kExpm1fEdges},
    {"expm1f", "fast", mpfr_expm1, kExpm1fFast, -3, 3, kExpm1fEdges},
    {"log1p", "full", mpfr_log1p, kLog1pFull, -1, 3, kLog1pEdges},
    {"log1p", "fast", mpfr_log1p, kLog1pFast, -1, 3, kLog1pEdges},
    {"log1pf", "full", mpfr_log1p, kLog1pfFull, -1, 3, kLog1pfEdges},
    {"log1pf", "fast", mpfr_log1p, kLog1pfFast, -1, 3, kLog1pfEdges},
};
// The whole domain: uniform up to overflow (expm1), log-uniform up to 2^1000 / FLT_MAX (log1p).
const Row kWideRows[] = {
    {"expm1", "full", mpfr_expm1, kExpm1Full, -45, 712, kExpm1Edges},
    {"expm1", "fast", mpfr_expm1, kExpm1Fast, -45, 712, kExpm1Edges},
    {"expm1f", "full", mpfr_expm1, kExpm1fFull, -25, 90, kExpm1fEdges},
    {"expm1f", "fast", mpfr_expm1, kExpm1fFast, -25, 90, kExpm1fEdges},
    {"log1p", "full", mpfr_log1p, kLog1pFull, 1, 0x1p1000, kLog1pEdges, true},
    {"log1p", "fast", mpfr_log1p, kLog1pFast, 1, 0x1p1000, kLog1pEdges, true},
    {"log1pf", "full", mpfr_log1p, kLog1pfFull, 1, 3.4028235e38, kLog1pfEdges, true},
    {"log1pf", "fast", mpfr_log1p, kLog1pfFast, 1, 3.4028235e38, kLog1pfEdges, true},
};
// Near zero, log-uniform over the binades (negative x through the edges and
// the random bit patterns).
const Row kTinyRows[] = {
    {"expm1", "full", mpfr_expm1, kExpm1Full, 0x1p-60, 2, kExpm1Edges, true},
    {"expm1", "fast", mpfr_expm1, kExpm1Fast, 0x1p-60, 2, kExpm1Edges, true},
    {"expm1f", "full", mpfr_expm1, kExpm1fFull, 0x1p-30, 2, kExpm1fEdges, true},
    {"expm1f", "fast", mpfr_expm1, kExpm1fFast, 0x1p-30, 2, kExpm1fEdges, true},
    {"log1p", "full", mpfr_log1p, kLog1pFull, 0x1p-60, 1, kLog1pEdges, true},
    {"log1p", "fast", mpfr_log1p, kLog1pFast, 0x1p-60, 1, kLog1pEdges, true},
    {"log1pf", "full", mpfr_log1p, kLog1pfFull, 0x1p-30, 1, kLog1pfEdges, true},
    {"log1pf", "fast", mpfr_log1p, kLog1pfFast, 0x1p-30, 1, kLog1pfEdges, true},
};

INSTANTIATE_TEST_SUITE_P(Expm1Log1p, Accuracy, ::testing::ValuesIn(kRows), row_name);
INSTANTIATE_TEST_SUITE_P(Expm1Log1pWide, Accuracy, ::testing::ValuesIn(kWideRows), row_name);
INSTANTIATE_TEST_SUITE_P(Expm1Log1pTiny, Accuracy, ::testing::ValuesIn(kTinyRows), row_name);

// want: the exact result; kCorrect: MPFR's correctly rounded value (lanes the
// shared scalar routine computes).
constexpr double kCorrect = 12345.0;
template <class T> struct Case {
  T x, want;
  const char* why;
};

const Case<double> kExpm1[] = {
    {NAN, NAN, "NaN"},
    {INFINITY, INFINITY, "+inf"},
    {-INFINITY, -1.0, "-inf gives -1"},
    {0.0, 0.0, "+0"},
    {-0.0, -0.0, "-0 keeps its sign"},
    {0x1p-1074, 0x1p-1074, "smallest denormal"},
    {-0x1p-1074, -0x1p-1074, "negative denormal"},
    {0x1p-1022, 0x1p-1022, "DBL_MIN"},
    {-1e-300, -1e-300, "tiny negative"},
    {0x1p-60, 0x1p-60, "tiny: x"},
    {-41.0, -1.0, "below the clamp"},
    {-1e308, -1.0, "large negative"},
    {710.0, INFINITY, "overflow, inline"},
    {709.78271289338403, INFINITY, "first double above the overflow bound"},
    {1e308, INFINITY, "overflow"},
    {709.78271289338397, kCorrect, "overflow bound itself: finite, 2^m needs m = 1024"},
    {709.76, kCorrect, "scalar routine"},
    {709.7773, kCorrect, "n = 65536"},
};
const Case<float> kExpm1f[] = {
    {NAN, NAN, "NaN"},
    {INFINITY, INFINITY, "+inf"},
    {-INFINITY, -1.0f, "-inf gives -1"},
    {0.0f, 0.0f, "+0"},
    {-0.0f, -0.0f, "-0 keeps its sign"},
    {0x1p-149f, 0x1p-149f, "smallest denormal"},
    {-0x1p-149f, -0x1p-149f, "negative denormal"},
    {0x1p-30f, 0x1p-30f, "tiny: x"},
    {-21.0f, -1.0f, "below the clamp"},
    {-1e30f, -1.0f, "large negative"},
    {89.0f, INFINITY, "overflow, inline"},
    {88.7228394f, INFINITY, "first single above the overflow bound"},
    {88.7228317f, (float)kCorrect, "overflow bound itself: finite"},
    {88.5f, (float)kCorrect, "above the fast bound"},
};
const Case<double> kLog1p[] = {
    {NAN, NAN, "NaN"},
    {INFINITY, INFINITY, "+inf"},
    {-INFINITY, NAN, "-inf: domain"},
    {-1.0, -INFINITY, "-1: pole"},
    {-1.0000000000000002, NAN, "just below -1: domain"},
    {-2.0, NAN, "domain"},
    {-DBL_MAX, NAN, "-DBL_MAX"},
    {0.0, 0.0, "+0"},
    {-0.0, -0.0, "-0 keeps its sign"},
    {0x1p-1074, 0x1p-1074, "smallest denormal"},
    {-0x1p-1074, -0x1p-1074, "negative denormal"},
    {1e-300, 1e-300, "tiny"},
    {-0x1p-60, -0x1p-60, "tiny negative"},
    {0x1.8p1000, kCorrect, "above 2^1000: scalar routine"},
    {DBL_MAX, kCorrect, "DBL_MAX"},
};
const Case<float> kLog1pf[] = {
    {NAN, NAN, "NaN"},
    {INFINITY, INFINITY, "+inf"},
    {-INFINITY, NAN, "-inf: domain"},
    {-1.0f, -INFINITY, "-1: pole"},
    {-1.00000012f, NAN, "just below -1: domain"},
    {-3.0f, NAN, "domain"},
    {0.0f, 0.0f, "+0"},
    {-0.0f, -0.0f, "-0 keeps its sign"},
    {0x1p-149f, 0x1p-149f, "smallest denormal"},
    {-0x1p-149f, -0x1p-149f, "negative denormal"},
    {0x1p-30f, 0x1p-30f, "tiny"},
    {-0x1p-30f, -0x1p-30f, "tiny negative"},
};

template <class T> bool same(T a, T b) { return std::isnan(a) ? std::isnan(b) : bits(a) == bits(b); }

template <class T, size_t N>
void check_cases(const char* family, MpfrFn fn, const Case<T> (&cases)[N]) {
  UlpRef<T> ref(fn);
  for (const char* cls : {"", "_native"}) {
    T base_in[16], base_out[16];
    for (int l = 0; l < 16; ++l) base_in[l] = (T)(-0.9 + 0.4375 * l);
    call(std::string(family) + "16" + cls, base_out, base_in);
    for (const Case<T>& t : cases) {
      T want = t.want == (T)kCorrect ? ref.correct(t.x) : t.want;
      for (int w : {1, 3, 16}) {
        int lane = (w - 1) * 2 / 3;  // 0, 1, 10
        T in[16], out[16];
        std::copy(base_in, base_in + 16, in);
        in[lane] = t.x;
        std::string name = std::string(family) + std::to_string(w) + cls;
        call(name, out, in);
        EXPECT_TRUE(same(want, out[lane])) << name << ": " << t.why << ": got " << hex(out[lane]) << " want " << hex(want);
        for (int l = 0; l < w; ++l)
          if (l != lane) EXPECT_TRUE(same(base_out[l], out[l])) << name << ": " << t.why << " changed lane " << l;
      }
    }
  }
}

TEST(Expm1Log1pSpecial, Expm1) { check_cases("expm1", mpfr_expm1, kExpm1); }
TEST(Expm1Log1pSpecial, Expm1f) { check_cases("expm1f", mpfr_expm1, kExpm1f); }
TEST(Expm1Log1pSpecial, Log1p) { check_cases("log1p", mpfr_log1p, kLog1p); }
TEST(Expm1Log1pSpecial, Log1pf) { check_cases("log1pf", mpfr_log1p, kLog1pf); }

}  // namespace
}  // namespace ravl_test
