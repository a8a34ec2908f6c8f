// log: accuracy rows (the Accuracy suite of tests/common/accuracy.h) and the
// special values, each placed in one lane of an otherwise ordinary vector in
// every class at widths 1, 3 and 16: that lane must give the exact special
// result (or be within the class bound of MPFR), and the other lanes must keep
// the bits they have in the all-ordinary vector (the merge rule).
#include <gtest/gtest.h>

#include <cfloat>
#include <cmath>
#include <string>
#include <vector>

#include "tests/common/accuracy.h"

namespace ravl_test {
namespace {

// Bounds asserted (measured figures in the comments).
// Full: measured 0.732 ulp (just below 1).
constexpr double kFullBound = 1.0;
// Fast: measured 2.09e6 ulp just below 1, relative 2.3e-10 (the r^4/4
// truncation; a different reciprocal estimate moves the worst case).
constexpr double kFastBound = 3e6;
// Denormal x, the scalar routine: measured 0.9999 ulp; two roundings in the
// result's binade allow 1 ulp plus about 2^-20.
constexpr double kScalarBound = 1.001;

// 1 and its neighbours (cancellation), the smallest normal (vector path / scalar
// routine boundary), DBL_MAX, the R = 724 switch (m ~ 1.4142), powers of two.
const std::vector<double> kEdges = {1.0, 2.0, 0.5, DBL_MIN, DBL_MAX, 1.4142135623730951, 0x1p-1000, 0x1p1000};

const Row kRows[] = {
    {"log", "full", mpfr_log, kFullBound, DBL_MIN, DBL_MAX, kEdges, true},
    {"log", "fast", mpfr_log, kFastBound, DBL_MIN, DBL_MAX, kEdges, true},
};
// Around 1, where the result cancels to small values (uniform over [0.5, 2]).
const Row kNear1Rows[] = {
    {"log", "full", mpfr_log, kFullBound, 0.5, 2.0, {1.0}},
    {"log", "fast", mpfr_log, kFastBound, 0.5, 2.0, {1.0}},
};
// Denormal x: every lane goes to the scalar routine (mantissas near 1 and 2
// via the edges).
const Row kDenormalRows[] = {
    {"log", "full", mpfr_log, kScalarBound, 0x1p-1074, 0x1p-1022 - 0x1p-1074, {0x1p-1030, 0x1p-1073, 0x1.fep-1040}, true},
};

INSTANTIATE_TEST_SUITE_P(Log, Accuracy, ::testing::ValuesIn(kRows), row_name);
INSTANTIATE_TEST_SUITE_P(LogNear1, Accuracy, ::testing::ValuesIn(kNear1Rows), row_name);
INSTANTIATE_TEST_SUITE_P(LogDenormal, Accuracy, ::testing::ValuesIn(kDenormalRows), row_name);

// want: the exact result; kCorrect: within the class bound of MPFR's ln x.
constexpr double kCorrect = 12345.0;
struct Case {
  double x, want;
  const char* why;
};

const Case kCases[] = {
    {NAN, NAN, "NaN"},
    {-NAN, NAN, "-NaN"},
    {INFINITY, INFINITY, "+inf"},
    {-INFINITY, NAN, "-inf: domain"},
    {0.0, -INFINITY, "+0: pole"},
    {-0.0, -INFINITY, "-0: pole"},
    {-1.0, NAN, "negative"},
    {-DBL_MAX, NAN, "-DBL_MAX"},
    {-0x1p-1074, NAN, "negative denormal"},
    {1.0, 0.0, "log(1) = +0 exactly"},
    {0x1p-1074, kCorrect, "smallest denormal"},
    {0x1.ffffffffffffep-1023, kCorrect, "largest denormal"},
    {0x1.0000000000001p-1030, kCorrect, "denormal, mantissa just above 1"},
    {0x1.fffffffffffffp-1031, kCorrect, "denormal, mantissa just below 2"},
    {0x1.8p-1050, kCorrect, "denormal, table path"},
    {DBL_MIN, kCorrect, "smallest normal: vector path"},
    {DBL_MAX, kCorrect, "DBL_MAX: vector path"},
    {0x1.fffffffffffffp-1, kCorrect, "just below 1"},
    {0x1.0000000000001p+0, kCorrect, "just above 1"},
    {2.0, kCorrect, "2"},
    {0.5, kCorrect, "0.5"},
};

bool same(double a, double b) { return std::isnan(a) ? std::isnan(b) : bits(a) == bits(b); }

TEST(LogSpecial, EveryClass) {
  UlpRef<double> ref(mpfr_log);
  for (const char* cls : {"", "_native", "_half", "_rm"}) {
    double bound = *cls ? kFastBound : kFullBound;
    double base_in[16], base_out[16];
    for (int l = 0; l < 16; ++l) base_in[l] = 0.3 + 1.375 * l;
    call(std::string("log16") + cls, base_out, base_in);
    for (const Case& t : kCases) {
      for (int w : {1, 3, 16}) {
        int lane = (w - 1) * 2 / 3;  // 0, 1, 10
        double in[16], out[16];
        std::copy(base_in, base_in + 16, in);
        in[lane] = t.x;
        std::string name = "log" + std::to_string(w) + cls;
        call(name, out, in);
        if (t.want == kCorrect) {
          double b = t.x < DBL_MIN ? kScalarBound : bound;
          EXPECT_LE(ref.ulp_error(t.x, out[lane]), b) << name << ": " << t.why << ": got " << hex(out[lane]);
        } else {
          EXPECT_TRUE(same(t.want, out[lane])) << name << ": " << t.why << ": got " << hex(out[lane]);
        }
        for (int l = 0; l < w; ++l)
          if (l != lane) EXPECT_TRUE(same(base_out[l], out[l])) << name << ": " << t.why << " changed lane " << l;
      }
    }
  }
}

}  // namespace
}  // namespace ravl_test
