// exp and expf: special values and the lanes the scalar routines compute,
// in every class at widths 1, 3 and 16, each placed in one lane of an
// otherwise ordinary vector: that lane must be exact (or MPFR's correctly
// rounded value), and the other lanes must keep the bits they have in the
// all-ordinary vector (the merge rule; inline overflow/underflow lanes too).
// Accuracy over the domain is in accuracy_test.cpp.
#include <gtest/gtest.h>

#include <cmath>
#include <string>
#include <vector>

#include "tests/common/call.h"
#include "tests/common/fp_bits.h"
#include "tests/common/ulp.h"

namespace {

using namespace ravl_test;

// want: the exact result; kCorrect: MPFR's correctly rounded e^x.
constexpr double kCorrect = -1.0;
template <class T> struct Case {
  T x, want;
  const char* why;
};

const Case<double> kDouble[] = {
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
    {709.78, kCorrect, "m = 1024: finite near DBL_MAX"},
    {709.78271289338397, kCorrect, "overflow bound itself: finite"},
    {709.0, kCorrect, "scalar routine, normal range"},
    {-720.0, kCorrect, "denormal result"},
    {-745.0, kCorrect, "deep denormal"},
    {-745.13321910194111, kCorrect, "underflow bound itself: smallest denormal"},
    {-708.39641853226408, kCorrect, "ln of the smallest normal"},
    {-708.4, kCorrect, "denormal, split path"},
};

const Case<float> kFloat[] = {
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
    {88.7228317f, (float)kCorrect, "overflow bound itself"},
    {88.0f, (float)kCorrect, "scalar routine, normal range"},
    {-100.0f, (float)kCorrect, "denormal result"},
    {-103.972076f, (float)kCorrect, "underflow bound itself: smallest denormal"},
    {-87.5f, (float)kCorrect, "denormal, near the normal range"},
};

template <class T> bool same(T a, T b) { return std::isnan(a) ? std::isnan(b) : bits(a) == bits(b); }

template <class T, size_t N> void check_cases(const char* family, const Case<T> (&cases)[N]) {
  UlpRef<T> ref(mpfr_exp);
  for (const char* cls : {"", "_native", "_half", "_rm"}) {
    // All-ordinary vector and its results.
    T base_in[16], base_out[16];
    for (int l = 0; l < 16; ++l) base_in[l] = (T)(-10.0 + 1.375 * l);
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

TEST(ExpSpecial, DoubleEveryClass) { check_cases("exp", kDouble); }
TEST(ExpSpecial, SingleEveryClass) { check_cases("expf", kFloat); }

}  // namespace
