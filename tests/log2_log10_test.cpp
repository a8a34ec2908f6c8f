// logf, log2, log2f, log10, log10f: accuracy rows (the Accuracy suite of
// tests/common/accuracy.h), the special values in one lane of an ordinary
// vector in every class at widths 1, 3 and 16 (that lane exact, the others
// unchanged), and the exact results at powers of the base.
#include <gtest/gtest.h>

#include <cfloat>
#include <cmath>
#include <string>
#include <vector>

#include "tests/common/accuracy.h"

namespace ravl_test {
namespace {

// Asserted bounds; measured maxima in the comments (and in the sources).
const std::vector<double> kEdgesD = {1.0, 2.0, 0.5, 10.0, DBL_MIN, DBL_MAX, 1.4142135623730951, 0x1p-1000, 0x1p1000};
const std::vector<double> kEdgesF = {1.0, 2.0, 0.5, 10.0, FLT_MIN, FLT_MAX, 1.41421354f, 0x1p-100, 0x1p100};
constexpr double kMaxF = FLT_MAX;

// Whole positive normal range, log-uniform. Measured maxima (here or in the
// near-1 rows, whichever is larger): full classes 0.5 ulp (the single ones,
// over every positive normal single: logf 0.5018, log2f 0.5014, log10f
// 0.5022); log2 fast 2.394e6
// ulp and log10 fast 2.866e6 ulp (relative 3.3e-10 = 2^-31.5, the r^4/4
// truncation just below 1); logf fast 5.51, log2f fast 6.12, log10f fast
// 6.46 ulp; logf half 909.8 ulp (OpenCL's half_log allows 8192).
const Row kRows[] = {
    {"log2", "full", mpfr_log2, 0.52, DBL_MIN, DBL_MAX, kEdgesD, true},
    {"log2", "fast", mpfr_log2, 3e6, DBL_MIN, DBL_MAX, kEdgesD, true},
    {"log10", "full", mpfr_log10, 0.52, DBL_MIN, DBL_MAX, kEdgesD, true},
    {"log10", "fast", mpfr_log10, 3.5e6, DBL_MIN, DBL_MAX, kEdgesD, true},
    {"logf", "full", mpfr_log, 0.51, FLT_MIN, kMaxF, kEdgesF, true},
    {"logf", "fast", mpfr_log, 8, FLT_MIN, kMaxF, kEdgesF, true},
    {"logf", "half", mpfr_log, 1000, FLT_MIN, kMaxF, kEdgesF, true},
    {"log2f", "full", mpfr_log2, 0.51, FLT_MIN, kMaxF, kEdgesF, true},
    {"log2f", "fast", mpfr_log2, 8, FLT_MIN, kMaxF, kEdgesF, true},
    {"log10f", "full", mpfr_log10, 0.51, FLT_MIN, kMaxF, kEdgesF, true},
    {"log10f", "fast", mpfr_log10, 8, FLT_MIN, kMaxF, kEdgesF, true},
};
// Around 1, where the result is small (uniform over [0.5, 2]).
std::vector<Row> near1() {
  std::vector<Row> v;
  for (const Row& r : kRows) v.push_back({r.family, r.algorithm, r.fn, r.bound, 0.5, 2.0, {1.0}});
  return v;
}
// Denormal x: the scalar routines (one single row: the three single families
// share the routine's reduction).
const Row kDenormalRows[] = {
    {"log2", "full", mpfr_log2, 0.52, 0x1p-1074, 0x1p-1022 - 0x1p-1074, {0x1p-1030, 0x1p-1073, 0x1.fep-1040}, true},
    {"log10", "full", mpfr_log10, 0.52, 0x1p-1074, 0x1p-1022 - 0x1p-1074, {0x1p-1030, 0x1p-1073}, true},
    {"logf", "full", mpfr_log, 0.51, 0x1p-149, 0x1p-126 - 0x1p-149, {0x1p-140, 0x1p-148}, true},
};

INSTANTIATE_TEST_SUITE_P(Logs, Accuracy, ::testing::ValuesIn(kRows), row_name);
INSTANTIATE_TEST_SUITE_P(LogsNear1, Accuracy, ::testing::ValuesIn(near1()), row_name);
INSTANTIATE_TEST_SUITE_P(LogsDenormal, Accuracy, ::testing::ValuesIn(kDenormalRows), row_name);

// ---- special values, every class ------------------------------------------------

// want: the exact result; kCorrect: MPFR's correctly rounded value within
// 0.52 ulp (every such case goes to the scalar routine, which all classes share).
constexpr double kCorrect = 12345.0;
struct Case {
  double x, want;
  const char* why;
};

const Case kDoubleCases[] = {
    {NAN, NAN, "NaN"},
    {INFINITY, INFINITY, "+inf"},
    {-INFINITY, NAN, "-inf: domain"},
    {0.0, -INFINITY, "+0: pole"},
    {-0.0, -INFINITY, "-0: pole"},
    {-1.0, NAN, "negative"},
    {-0x1p-1074, NAN, "negative denormal"},
    {1.0, 0.0, "1 gives +0"},
    {0x1p-1074, kCorrect, "smallest denormal"},
    {0x1.ffffffffffffep-1023, kCorrect, "largest denormal"},
    {0x1.0000000000001p-1030, kCorrect, "denormal, mantissa just above 1"},
};
const Case kFloatCases[] = {
    {NAN, NAN, "NaN"},
    {INFINITY, INFINITY, "+inf"},
    {-INFINITY, NAN, "-inf: domain"},
    {0.0, -INFINITY, "+0: pole"},
    {-0.0, -INFINITY, "-0: pole"},
    {-1.0, NAN, "negative"},
    {-0x1p-149, NAN, "negative denormal"},
    {1.0, 0.0, "1 gives +0"},
    {0x1p-149, kCorrect, "smallest denormal"},
    {0x1.fffffcp-127, kCorrect, "largest denormal"},
    {0x1.000002p-130, kCorrect, "denormal, mantissa just above 1"},
};

struct Family {
  const char* name;
  MpfrFn fn;
  std::vector<const char*> classes;
};
const Family kDoubleFamilies[] = {{"log2", mpfr_log2, {"", "_native", "_half", "_rm"}},
                                  {"log10", mpfr_log10, {"", "_native", "_half"}}};
const Family kFloatFamilies[] = {{"logf", mpfr_log, {"", "_native", "_half", "_rm"}},
                                 {"log2f", mpfr_log2, {"", "_native", "_half", "_rm"}},
                                 {"log10f", mpfr_log10, {"", "_native", "_half"}}};

template <class T> bool same(T a, T b) { return std::isnan(a) ? std::isnan(b) : bits(a) == bits(b); }

template <class T, size_t N> void check_cases(const Family& f, const Case (&cases)[N]) {
  UlpRef<T> ref(f.fn);
  for (const char* cls : f.classes) {
    T base_in[16], base_out[16];
    for (int l = 0; l < 16; ++l) base_in[l] = (T)(0.3 + 1.375 * l);
    call(std::string(f.name) + "16" + cls, base_out, base_in);
    for (const Case& t : cases) {
      for (int w : {1, 3, 16}) {
        int lane = (w - 1) * 2 / 3;  // 0, 1, 10
        T in[16], out[16];
        std::copy(base_in, base_in + 16, in);
        in[lane] = (T)t.x;
        std::string name = f.name + std::to_string(w) + cls;
        call(name, out, in);
        if (t.want == kCorrect)
          EXPECT_LE(ref.ulp_error((T)t.x, out[lane]), 0.52) << name << ": " << t.why << ": got " << hex(out[lane]);
        else
          EXPECT_TRUE(same((T)t.want, out[lane])) << name << ": " << t.why << ": got " << hex(out[lane]);
        for (int l = 0; l < w; ++l)
          if (l != lane) EXPECT_TRUE(same(base_out[l], out[l])) << name << ": " << t.why << " changed lane " << l;
      }
    }
  }
}

TEST(LogsSpecial, DoubleEveryClass) {
  for (const Family& f : kDoubleFamilies) check_cases<double>(f, kDoubleCases);
}
TEST(LogsSpecial, SingleEveryClass) {
  for (const Family& f : kFloatFamilies) check_cases<float>(f, kFloatCases);
}

// ---- exact results at powers of the base ----------------------------------------

// log2(2^k) = k for every normal and denormal power of two, every class.
template <class T> void powers_of_two(const char* family, std::vector<const char*> classes, int kmin, int kmax) {
  for (const char* cls : classes) {
    std::string name = std::string(family) + "16" + cls;
    for (int k0 = kmin; k0 <= kmax; k0 += 16) {
      T in[16], out[16];
      for (int l = 0; l < 16; ++l) in[l] = std::ldexp((T)1, std::min(k0 + l, kmax));
      call(name, out, in);
      for (int l = 0; l < 16; ++l)
        EXPECT_EQ(out[l], (T)std::min(k0 + l, kmax)) << name << " at 2^" << std::min(k0 + l, kmax);
    }
  }
}
TEST(LogsExact, Log2OfPowersOfTwo) {
  powers_of_two<double>("log2", {"", "_native", "_half", "_rm"}, -1074, 1023);
  powers_of_two<float>("log2f", {"", "_native", "_half", "_rm"}, -149, 127);
}

// log10(10^k) = k for the powers of ten that are exact in the format (plain).
TEST(LogsExact, Log10OfPowersOfTen) {
  double in[16], out[16];
  float inf[16], outf[16];
  for (int k0 : {0, 16}) {
    for (int l = 0; l < 16; ++l) in[l] = std::pow(10.0, std::min(k0 + l, 22));
    call("log1016", out, in);
    for (int l = 0; l < 16; ++l) EXPECT_EQ(out[l], (double)std::min(k0 + l, 22)) << "log10 of 1e" << k0 + l;
  }
  for (int l = 0; l < 16; ++l) inf[l] = (float)std::pow(10.0, std::min(l, 10));
  call("log10f16", outf, inf);
  for (int l = 0; l < 16; ++l) EXPECT_EQ(outf[l], (float)std::min(l, 10)) << "log10f of 1e" << l;
}

}  // namespace
}  // namespace ravl_test
