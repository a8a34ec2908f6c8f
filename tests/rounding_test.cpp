// ceil, floor, trunc, rint, nearbyint, round and their f forms, bit for bit
// against the integer-arithmetic reference of tests/common/ref_rounding.h:
// special values, every power of two and its neighbours, the halfway cases of
// both parities up to 2^(p-1), random bit patterns and random values with a
// fraction. Every family is also run under each of the four MXCSR rounding
// modes: rint and nearbyint must follow the mode, the others must not depend
// on it; nearbyint must not raise inexact.
#include <gtest/gtest.h>
#include <xmmintrin.h>

#include <cmath>
#include <cstdint>
#include <cstring>
#include <vector>

#include "ocl_ravl_l9.h"
#include "tests/common/fp_bits.h"
#include "tests/common/inputs.h"
#include "tests/common/ref_rounding.h"

namespace {

using namespace ravl_test;
using ravl_ref::Rounding;

// ---- callers: one per width, w lanes in and out ----------------------------------

using d2 = ocl_ravl_double2;
using d4 = ocl_ravl_double4;
using f4 = ocl_ravl_float4;
using f8 = ocl_ravl_float8;
template <class V, class T> V ld(const T* p) {
  V v;
  std::memcpy(&v, p, sizeof v);
  return v;
}
template <class V, class T> void st(T* p, const V& v, int w) { std::memcpy(p, &v, w * sizeof(T)); }

template <class T> using Fn = void (*)(const T* x, T* r);
#define P(name) __ocl_ravl_l9_##name
#define D1(F)                                                                                              \
  {[](const double* x, double* r) { r[0] = P(F##1)(x[0]); },                                               \
   [](const double* x, double* r) { st(r, P(F##2)(ld<d2>(x)), 2); },                                       \
   [](const double* x, double* r) { st(r, P(F##3)(ld<d4>(x)), 3); },                                       \
   [](const double* x, double* r) { st(r, P(F##4)(ld<d4>(x)), 4); },                                       \
   [](const double* x, double* r) { st(r, P(F##8)(ld<d4>(x), ld<d4>(x + 4)), 8); },                        \
   [](const double* x, double* r) {                                                                        \
     st(r, P(F##16)(ld<d4>(x), ld<d4>(x + 4), ld<d4>(x + 8), ld<d4>(x + 12)), 16);                         \
   }}
#define F1(F)                                                                                              \
  {[](const float* x, float* r) { r[0] = P(F##1)(x[0]); },                                                 \
   [](const float* x, float* r) { st(r, P(F##2)(ld<f4>(x)), 2); },                                         \
   [](const float* x, float* r) { st(r, P(F##3)(ld<f4>(x)), 3); },                                         \
   [](const float* x, float* r) { st(r, P(F##4)(ld<f4>(x)), 4); },                                         \
   [](const float* x, float* r) { st(r, P(F##8)(ld<f8>(x)), 8); },                                         \
   [](const float* x, float* r) { st(r, P(F##16)(ld<f8>(x), ld<f8>(x + 8)), 16); }}
constexpr int kWidths[6] = {1, 2, 3, 4, 8, 16};

// A family: its six widths and its rounding (kMode: the MXCSR's direction).
enum class Dir { kCeil, kFloor, kTrunc, kRound, kMode };
template <class T> struct Family {
  const char* name;
  Fn<T> at[6];
  Dir dir;
  bool quiet;  // must not raise inexact
};
const Family<double> kDoubleFamilies[] = {
    {"ceil", D1(ceil), Dir::kCeil, false},     {"floor", D1(floor), Dir::kFloor, false},
    {"trunc", D1(trunc), Dir::kTrunc, false},  {"round", D1(round), Dir::kRound, false},
    {"rint", D1(rint), Dir::kMode, false},     {"nearbyint", D1(nearbyint), Dir::kMode, true},
};
const Family<float> kFloatFamilies[] = {
    {"ceilf", F1(ceilf), Dir::kCeil, false},    {"floorf", F1(floorf), Dir::kFloor, false},
    {"truncf", F1(truncf), Dir::kTrunc, false}, {"roundf", F1(roundf), Dir::kRound, false},
    {"rintf", F1(rintf), Dir::kMode, false},    {"nearbyintf", F1(nearbyintf), Dir::kMode, true},
};

template <class T> T reference(Dir d, T x, unsigned csr) {
  switch (d) {
    case Dir::kCeil: return ravl_ref::ref_ceil(x);
    case Dir::kFloor: return ravl_ref::ref_floor(x);
    case Dir::kTrunc: return ravl_ref::ref_trunc(x);
    case Dir::kRound: return ravl_ref::ref_round(x);
    default: return ravl_ref::ref_round_integral(x, ravl_ref::rounding_of_mxcsr(csr));
  }
}

constexpr unsigned kRcMask = 0x6000, kFlagMask = 0x3f, kInexact = 0x20;

// Runs the family at the widths named by `widths` (bit k: kWidths[k]) over xs
// with the MXCSR rounding field set to rc; returns the number of lanes that
// differ from the reference (printing the first few). With `quiet`, also
// fails when the inexact flag came up during the calls.
template <class T>
int run(const Family<T>& f, const std::vector<T>& xs, unsigned rc, unsigned widths = 0x3f) {
  const unsigned saved = _mm_getcsr();
  const unsigned csr = (saved & ~kRcMask & ~kFlagMask) | rc << 13;
  int bad = 0;
  std::vector<T> in(xs.size() + 16, T(0.75)), out(xs.size() + 16);
  std::memcpy(in.data(), xs.data(), xs.size() * sizeof(T));
  for (int k = 0; k < 6; ++k) {
    if (!(widths >> k & 1)) continue;
    const int w = kWidths[k];
    T buf[16];
    _mm_setcsr(csr);
    for (size_t i = 0; i < xs.size(); i += w) {
      f.at[k](&in[i], buf);
      std::memcpy(&out[i], buf, w * sizeof(T));
    }
    const unsigned after = _mm_getcsr();
    _mm_setcsr(saved);
    EXPECT_EQ(after & kRcMask, rc << 13) << f.name << " changed the rounding mode";
    if (f.quiet) EXPECT_EQ(after & kInexact, 0u) << f.name << w << " raised inexact (rounding field " << rc << ")";
    for (size_t i = 0; i < xs.size(); ++i) {
      const T want = reference(f.dir, xs[i], csr);
      if (bits(out[i]) == bits(want)) continue;
      if (bad++ < 8)
        ADD_FAILURE() << f.name << w << " rounding field " << rc << ": x = " << hex(xs[i]) << "\n  got  "
                      << hex(out[i]) << "\n  want " << hex(want);
    }
  }
  return bad;
}

// ---- inputs ---------------------------------------------------------------------------

template <class T> std::vector<T> special_values();
template <> std::vector<double> special_values() {
  std::vector<double> v;
  for (uint64_t b : kDoubleSpecials) v.push_back(from_bits<double>(b));
  for (double x : {0.5, 1.5, -0.5, 0.49999999999999994, -0.2, -0.4, -0.6, 0.3, -1.7, 1.7, 2.5, 3.5, -2.5, -3.5,
                   0x1.fffffffffffffp+51, 0x1.0000000000001p+52, 0x1p52 - 0.5, 0x1p52 - 1.5, 0x1p51 + 0.5,
                   0x1p53 - 1, 0x1p53, 0x1p53 + 2, 4503599627370495.5, -4503599627370495.5})
    v.push_back(x);
  return v;
}
template <> std::vector<float> special_values() {
  std::vector<float> v;
  for (uint64_t b : kFloatSpecials) v.push_back(from_bits<float>((uint32_t)b));
  for (float x : {0.5f, 1.5f, -0.5f, 0.49999997f, -0.2f, -0.4f, -0.6f, 0.3f, -1.7f, 1.7f, 2.5f, 3.5f, -2.5f, -3.5f,
                  0x1.fffffep+22f, 0x1.000002p+23f, 0x1p23f - 0.5f, 0x1p23f - 1.5f, 0x1p22f + 0.5f, 0x1p24f - 1,
                  0x1p24f, 8388607.5f, -8388607.5f, 0x1p-149f, 0x1p-126f})
    v.push_back(x);
  return v;
}

// Every power of two (denormals included), its two neighbours and their negatives; the values
// n + k/4 (k = 0..3, exact while n < 2^(p-2)) and n + 1/2 for n around every
// power of two up to 2^(p-1): halfway cases of both parities and their
// neighbours one ulp away.
template <class T> std::vector<T> structured_values() {
  using F = Fmt<T>;
  std::vector<T> v;
  auto both = [&](T x) {
    v.push_back(x);
    v.push_back(-x);
  };
  using U = typename F::U;
  for (U e = 1; e < (F::exp >> (F::prec - 1)); ++e) {  // normal powers of two
    const U b = e << (F::prec - 1);
    for (U d : {b - 1, b, b + 1}) both(from_bits<T>(d));
  }
  for (int k = 0; k < F::prec - 1; ++k) both(from_bits<T>((U)1 << k));  // denormal powers of two
  for (int e = 0; e < F::prec; ++e) {
    const T p = std::ldexp(T(1), e);
    for (T n : {p - 2, p - 1, p, p + 1, p + 2}) {
      if (n < 0) continue;
      for (T frac : {T(0), T(0.25), T(0.5), T(0.75)}) both(n + frac);
      const T h = n + T(0.5);
      both(std::nextafter(h, T(0)));
      both(std::nextafter(h, T(1e30)));
    }
  }
  return v;
}

// Half random bit patterns (all of the range: mostly huge integral or tiny
// values), half random significands with exponents from 2^-3 to 2^p, where the
// fraction decides.
template <class T> std::vector<T> random_values(int n, uint64_t seed) {
  using F = Fmt<T>;
  Rng r(seed);
  std::vector<T> v;
  for (int i = 0; i < n; ++i) {
    uint64_t u = r.next();
    if (i & 1) {
      v.push_back(from_bits<T>((typename F::U)u));
    } else {
      const int e = (int)r.below(F::prec + 4) - 3;  // 2^e <= |x| < 2^(e+1)
      const typename F::U b = ((typename F::U)(e + (F::prec == 53 ? 1023 : 127)) << (F::prec - 1)) |
                              ((typename F::U)u & F::mant) | ((u >> 63) ? F::sign : 0);
      v.push_back(from_bits<T>(b));
    }
  }
  return v;
}

// ---- tests ---------------------------------------------------------------------------

TEST(Rounding, EdgeCases) {
  d4 r = P(round4)(d4{0.5, 1.5, -0.5, 0.49999999999999994});
  EXPECT_EQ(r[0], 1.0);
  EXPECT_EQ(r[1], 2.0);
  EXPECT_EQ(r[2], -1.0);
  EXPECT_EQ(bits(r[3]), 0u);
  r = P(round4)(d4{-0.0, -0.2, __builtin_inf(), -__builtin_inf()});
  EXPECT_EQ(bits(r[0]), +Fmt<double>::sign);
  EXPECT_EQ(bits(r[1]), +Fmt<double>::sign);
  EXPECT_EQ(r[2], __builtin_inf());
  EXPECT_EQ(r[3], -__builtin_inf());
  EXPECT_EQ(bits(P(ceil4)(d4{-0.5, 0, 0, 0})[0]), +Fmt<double>::sign);
  EXPECT_EQ(bits(P(floor4)(d4{-0.0, 0, 0, 0})[0]), +Fmt<double>::sign);
  EXPECT_EQ(P(trunc4)(d4{-1.7, 0, 0, 0})[0], -1.0);
  EXPECT_EQ(P(nearbyint4)(d4{2.5, 0, 0, 0})[0], 2.0);
  EXPECT_EQ(P(rint4)(d4{2.5, 0, 0, 0})[0], 2.0);
  const unsigned saved = _mm_getcsr();
  _mm_setcsr((saved & ~kRcMask) | 2u << 13);  // toward +infinity
  f8 up = P(rintf8)(f8{2.1f, -2.1f, 2.0f, 0.1f, -0.9f, 0, 0, 0});
  _mm_setcsr(saved);
  EXPECT_EQ(up[0], 3.0f);
  EXPECT_EQ(up[1], -2.0f);
  EXPECT_EQ(up[2], 2.0f);
  EXPECT_EQ(up[3], 1.0f);
  EXPECT_EQ(bits(up[4]), +Fmt<float>::sign);  // -0.9 up: -0
}

template <class T, size_t N> void run_all(const Family<T> (&fams)[N], const std::vector<T>& xs, bool all_modes,
                                          unsigned widths = 0x3f) {
  for (const Family<T>& f : fams)
    for (unsigned rc = 0; rc < (all_modes ? 4u : 1u); ++rc) EXPECT_EQ(run(f, xs, rc, widths), 0) << f.name;
}

// Special and structured values in every rounding mode at every width.
TEST(Rounding, SpecialAndStructuredDouble) {
  std::vector<double> xs = special_values<double>(), s = structured_values<double>();
  xs.insert(xs.end(), s.begin(), s.end());
  run_all(kDoubleFamilies, xs, true);
}
TEST(Rounding, SpecialAndStructuredFloat) {
  std::vector<float> xs = special_values<float>(), s = structured_values<float>();
  xs.insert(xs.end(), s.begin(), s.end());
  run_all(kFloatFamilies, xs, true);
}

// Random values: 300000 per family at widths 1, 4 and 16 in the default mode,
// 50000 in each directed mode at width 8.
TEST(Rounding, RandomDouble) {
  run_all(kDoubleFamilies, random_values<double>(300000, 11), false, 0x29);
  run_all(kDoubleFamilies, random_values<double>(50000, 12), true, 0x10);
}
TEST(Rounding, RandomFloat) {
  run_all(kFloatFamilies, random_values<float>(300000, 13), false, 0x29);
  run_all(kFloatFamilies, random_values<float>(50000, 14), true, 0x10);
}

// The reference itself on values whose answers are known independently.
TEST(Rounding, ReferenceSelfCheck) {
  EXPECT_EQ(ravl_ref::ref_round(2.5), 3.0);
  EXPECT_EQ(ravl_ref::ref_round(-2.5), -3.0);
  EXPECT_EQ(ravl_ref::ref_round_integral(2.5, Rounding::kNearestEven), 2.0);
  EXPECT_EQ(ravl_ref::ref_round_integral(3.5, Rounding::kNearestEven), 4.0);
  EXPECT_EQ(ravl_ref::ref_floor(-0x1p-1074), -1.0);
  EXPECT_EQ(ravl_ref::ref_ceil(0x1p-1074), 1.0);
  EXPECT_EQ(bits(ravl_ref::ref_ceil(-0.5)), +Fmt<double>::sign);
  EXPECT_EQ(ravl_ref::ref_trunc(-1.7f), -1.0f);
  EXPECT_EQ(ravl_ref::ref_round(0x1p52 - 0.5), 0x1p52);
  EXPECT_EQ(ravl_ref::ref_round_integral(0x1p52 - 0.5, Rounding::kNearestEven), 0x1p52);
  EXPECT_EQ(ravl_ref::ref_round_integral(0x1p52 - 1.5, Rounding::kNearestEven), 0x1p52 - 2);
  EXPECT_EQ(ravl_ref::ref_round(8388607.5f), 8388608.0f);
}

}  // namespace
