// exp2, exp2f, exp10, exp10f: accuracy rows for every algorithm, special
// values and bounds in every class at widths 1, 3 and 16 (each placed in one
// lane of an ordinary vector, the other lanes keeping their bits), the fast
// classes' values at 0, and the single scalar routines checked for correct
// rounding on every single they receive.
#include <gtest/gtest.h>

#include <cmath>
#include <string>
#include <vector>

#include "tests/common/accuracy.h"

namespace ravl_test {
namespace {

// ---- accuracy over the domain -----------------------------------------------------

// Fast-path bounds, overflow and underflow bounds, log of the smallest normal.
const std::vector<double> kExp2Edges = {1022, -1022, 1024, -1074, -1075, 1023.5, 0x1p-60, 0};
const std::vector<double> kExp2fEdges = {126, -126, 128, -149, -150, 0x1p-30, 0};
const std::vector<double> kExp10Edges = {307.65258789062494, -307.65258789062494, 308.25471555991669,
                                         -323.60724533877976, -307.65265556858878, 0x1p-60, 0};
const std::vector<double> kExp10fEdges = {37.9297791, -37.9297791, 38.5318375, -45.1544991, 0x1p-30, 0};

const Row kRows[] = {
    // exp2, plain: measured 0.522 ulp on normal results, 0.7503 on denormal
    // results (the scalar routine rounds twice there).
    {"exp2", "full", mpfr_exp2, 0.76, -1080, 1030, kExp2Edges},
    // exp2, _native _half _rm: measured 1.528e7 ulp (relative 1.9e-9).
    {"exp2", "fast", mpfr_exp2, 1.53e7, -1080, 1030, kExp2Edges},
    // exp2f, plain _rm: measured 0.615 ulp.
    {"exp2f", "full", mpfr_exp2, 0.62, -155, 130, kExp2fEdges},
    // exp2f, _native _half: measured 1230 ulp (OpenCL's half_exp2 allows 8192).
    {"exp2f", "fast", mpfr_exp2, 1235, -155, 130, kExp2fEdges},
    // exp10, plain: measured 0.508 ulp.
    {"exp10", "full", mpfr_exp10, 0.51, -330, 315, kExp10Edges},
    // exp10, _native _half _rm: measured 2.827e7 ulp (relative 4.4e-9).
    {"exp10", "fast", mpfr_exp10, 2.83e7, -330, 315, kExp10Edges},
    // exp10f, plain: measured 0.525 ulp.
    {"exp10f", "full", mpfr_exp10, 0.53, -46, 39, kExp10fEdges},
    // exp10f, _native _half _rm: measured 2148 ulp (OpenCL's half_exp10 allows 8192).
    {"exp10f", "fast", mpfr_exp10, 2150, -46, 39, kExp10fEdges},
};

// ---- special values and bounds, every class --------------------------------------

constexpr double kCorrect = -1.0;  // want: MPFR's correctly rounded value
template <class T> struct Case {
  T x, want;
  const char* why;
  const char* algo;  // nullptr: every class; else only the classes of that algorithm
};

const Case<double> kExp2[] = {
    {NAN, NAN, "NaN", nullptr},
    {INFINITY, INFINITY, "+inf", nullptr},
    {-INFINITY, 0.0, "-inf gives +0", nullptr},
    {1024.0, INFINITY, "overflow", nullptr},
    {1e300, INFINITY, "overflow", nullptr},
    {-1075.0, 0.0, "half the smallest denormal rounds to +0", nullptr},
    {-1e300, 0.0, "underflow to +0", nullptr},
    {-1074.0, 0x1p-1074, "smallest denormal", nullptr},
    {-1022.5, kCorrect, "denormal result", nullptr},
    {-1074.5, kCorrect, "rounds up to the smallest denormal", nullptr},
    {-1022.0, 0x1p-1022, "smallest normal, flagged", nullptr},
    {1023.0, 0x1p1023, "largest power of two", nullptr},
    {1023.5, kCorrect, "m = 1024: scaled by 2^1023 then doubled", nullptr},
    {1023.9999999999999, kCorrect, "just below overflow", nullptr},
    {1021.9999999999999, kCorrect, "just inside the fast path", "full"},
    {0.0, 1.0, "exp2(0) = 1", "full"},
    {-0.0, 1.0, "exp2(-0) = 1", "full"},
    {10.0, 1024.0, "integer x: exact", "full"},
    {-1021.0, 0x1p-1021, "integer x: exact", "full"},
    {0.0, 1.0000000005541665, "fast: the constant term at 0", "fast"},
    {-0.0, 1.0000000005541665, "fast: the constant term at 0", "fast"},
};

const Case<float> kExp2f[] = {
    {NAN, NAN, "NaN", nullptr},
    {INFINITY, INFINITY, "+inf", nullptr},
    {-INFINITY, 0.0f, "-inf gives +0", nullptr},
    {128.0f, INFINITY, "overflow", nullptr},
    {-150.0f, 0.0f, "half the smallest denormal rounds to +0", nullptr},
    {-149.0f, 0x1p-149f, "smallest denormal", nullptr},
    {-149.5f, 0x1p-149f, "rounds up to the smallest denormal", nullptr},
    {-130.3f, (float)kCorrect, "denormal result", nullptr},
    {127.0f, 0x1p127f, "largest power of two", nullptr},
    {127.99999f, (float)kCorrect, "just below overflow", nullptr},
    {-126.0f, 0x1p-126f, "smallest normal, fast path", "full"},
    {0.0f, 1.0f, "exp2f(0) = 1", "full"},
    {-0.0f, 1.0f, "exp2f(-0) = 1", "full"},
    {-7.0f, 0x1p-7f, "integer x: exact", "full"},
    {0.0f, 0.999928057f, "fast: the constant term at 0", "fast"},
    {-0.0f, 0.999928057f, "fast: the constant term at 0", "fast"},
};

const Case<double> kExp10[] = {
    {NAN, NAN, "NaN", nullptr},
    {INFINITY, INFINITY, "+inf", nullptr},
    {-INFINITY, 0.0, "-inf gives +0", nullptr},
    {0.0, 1.0, "exp10(0) = 1", nullptr},
    {-0.0, 1.0, "exp10(-0) = 1", nullptr},
    {0x1.34413509f79ffp+8, INFINITY, "first double past the overflow bound", nullptr},
    {400.0, INFINITY, "overflow", nullptr},
    {-0x1.439b746e36b53p+8, 0.0, "first double past the underflow bound", nullptr},
    {-400.0, 0.0, "underflow to +0", nullptr},
    {0x1.34413509f79fep+8, kCorrect, "overflow bound itself: DBL_MAX", nullptr},
    {308.0, kCorrect, "m = 1024 path", nullptr},
    {-0x1.439b746e36b52p+8, kCorrect, "underflow bound itself: smallest denormal", nullptr},
    {-310.0, kCorrect, "denormal result", nullptr},
    {-0x1.33a7146f72a42p+8, kCorrect, "just below log10 of the smallest normal", nullptr},
    {-0x1.33a7146f72a41p+8, kCorrect, "just above log10 of the smallest normal", nullptr},
    {307.7, kCorrect, "flagged, normal result", nullptr},
    {1.0, 10.0, "exp10(1) = 10", "full"},
    {22.0, 1e22, "exact power of ten", "full"},
};

const Case<float> kExp10f[] = {
    {NAN, NAN, "NaN", nullptr},
    {INFINITY, INFINITY, "+inf", nullptr},
    {-INFINITY, 0.0f, "-inf gives +0", nullptr},
    {0.0f, 1.0f, "exp10f(0) = 1", nullptr},
    {-0.0f, 1.0f, "exp10f(-0) = 1", nullptr},
    {0x1.344136p+5f, INFINITY, "first single past the overflow bound", nullptr},
    {-0x1.693c6cp+5f, 0.0f, "first single past the underflow bound", nullptr},
    {0x1.344134p+5f, (float)kCorrect, "overflow bound itself: FLT_MAX", nullptr},
    {-0x1.693c6ap+5f, 0x1p-149f, "underflow bound itself: smallest denormal", nullptr},
    {0x1.2f7032p+5f, (float)kCorrect, "just above the fast-path bound", nullptr},
    {-0x1.2f7032p+5f, (float)kCorrect, "just below the fast-path bound: denormal", nullptr},
    {-40.0f, (float)kCorrect, "denormal result", nullptr},
    {1.0f, 10.0f, "exp10f(1) = 10", "full"},
};

template <class T> bool same(T a, T b) { return std::isnan(a) ? std::isnan(b) : bits(a) == bits(b); }

const char* algorithm_of(const std::string& name) {
  for (int e = 0; e < kExportCount; ++e)
    if (name == kExports[e].name + std::strlen("__ocl_ravl_l9_")) return kExports[e].algorithm;
  return "";
}

template <class T, size_t N> void check_cases(const char* family, MpfrFn fn, const Case<T> (&cases)[N], T base0) {
  UlpRef<T> ref(fn);
  for (const char* cls : {"", "_native", "_half", "_rm"}) {
    T base_in[16], base_out[16];
    for (int l = 0; l < 16; ++l) base_in[l] = (T)(base0 + 0.8125 * l);
    call(std::string(family) + "16" + cls, base_out, base_in);
    const char* algo = algorithm_of(std::string(family) + "16" + cls);
    for (const Case<T>& t : cases) {
      if (t.algo && std::strcmp(t.algo, algo)) continue;
      T want = t.want == (T)kCorrect ? ref.correct(t.x) : t.want;
      for (int w : {1, 3, 16}) {
        int lane = (w - 1) * 2 / 3;  // 0, 1, 10
        T in[16], out[16];
        std::copy(base_in, base_in + 16, in);
        in[lane] = t.x;
        std::string name = std::string(family) + std::to_string(w) + cls;
        call(name, out, in);
        EXPECT_TRUE(same(want, out[lane])) << name << ": " << t.why << ": x = " << hex(t.x) << " got "
                                           << hex(out[lane]) << " want " << hex(want);
        for (int l = 0; l < w; ++l)
          if (l != lane) EXPECT_TRUE(same(base_out[l], out[l])) << name << ": " << t.why << " changed lane " << l;
      }
    }
  }
}

TEST(Exp2Special, DoubleEveryClass) { check_cases("exp2", mpfr_exp2, kExp2, -6.0); }
TEST(Exp2Special, SingleEveryClass) { check_cases("exp2f", mpfr_exp2, kExp2f, -6.0f); }
TEST(Exp10Special, DoubleEveryClass) { check_cases("exp10", mpfr_exp10, kExp10, -6.0); }
TEST(Exp10Special, SingleEveryClass) { check_cases("exp10f", mpfr_exp10, kExp10f, -6.0f); }

// ---- the single scalar routines: correctly rounded on every flagged single ----------
//
// Every single x with |x| beyond the fast-path bound up to the overflow and
// underflow bounds (a step of `stride` bit patterns; stride 1 under
// RAVL_ACCURACY_SCALE >= 4 covers them all) goes to the scalar routine in
// every class; its result must be MPFR's correctly rounded value.
void check_routine(const char* name, MpfrFn fn, float from, float to) {
  UlpRef<float> ref(fn);
  uint32_t stride = scale() >= 4 ? 1 : 7;
  uint32_t a = bits(from), b = bits(to);
  std::vector<float> in;
  for (uint32_t u = a; u <= b; u += stride) in.push_back(from_bits<float>(u));
  while (in.size() % 16) in.push_back(from);
  std::vector<float> out(in.size());
  for (size_t i = 0; i < in.size(); i += 16) call(name, &out[i], &in[i]);
  size_t bad = 0;
  for (size_t i = 0; i < in.size(); ++i) {
    float want = ref.correct(in[i]);
    if (!same(want, out[i]) && bad++ < 5)
      ADD_FAILURE() << name << " x = " << hex(in[i]) << ": got " << hex(out[i]) << " want " << hex(want);
  }
  EXPECT_EQ(bad, 0u) << name << " over " << in.size() << " inputs";
}

TEST(Exp2Routine, SingleCorrectlyRounded) {
  check_routine("exp2f16", mpfr_exp2, std::nextafter(126.0f, 200.0f), 128.5f);
  check_routine("exp2f16", mpfr_exp2, -std::nextafter(126.0f, 200.0f), -150.5f);
}
TEST(Exp10Routine, SingleCorrectlyRounded) {
  check_routine("exp10f16", mpfr_exp10, std::nextafter(37.9297791f, 100.0f), 38.6f);
  check_routine("exp10f16", mpfr_exp10, -std::nextafter(37.9297791f, 100.0f), -45.2f);
}

}  // namespace

INSTANTIATE_TEST_SUITE_P(Exp2Exp10, Accuracy, ::testing::ValuesIn(kRows), row_name);

}  // namespace ravl_test
