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
#include <string>
#include <vector>

#include "tests/common/call_many.h"
#include "tests/common/fp_bits.h"
#include "tests/common/inputs.h"
#include "tests/common/ref_rounding.h"

namespace {

using namespace ravl_test;

// A family and its rounding (kMode: the MXCSR's direction).
enum class Dir { kCeil, kFloor, kTrunc, kRound, kMode };
struct Family {
  const char* name;
  Dir dir;
  bool quiet;  // must not raise inexact
};
const Family kDoubleFamilies[] = {{"ceil", Dir::kCeil, false},  {"floor", Dir::kFloor, false},
                                  {"trunc", Dir::kTrunc, false}, {"round", Dir::kRound, false},
                                  {"rint", Dir::kMode, false},   {"nearbyint", Dir::kMode, true}};
const Family kFloatFamilies[] = {{"ceilf", Dir::kCeil, false},  {"floorf", Dir::kFloor, false},
                                 {"truncf", Dir::kTrunc, false}, {"roundf", Dir::kRound, false},
                                 {"rintf", Dir::kMode, false},   {"nearbyintf", Dir::kMode, true}};

template <class T> T reference(Dir d, T x, unsigned csr) {
  switch (d) {
    case Dir::kCeil: return ref_ceil(x);
    case Dir::kFloor: return ref_floor(x);
    case Dir::kTrunc: return ref_trunc(x);
    case Dir::kRound: return ref_round(x);
    default: return ref_round_integral(x, rounding_of_mxcsr(csr));
  }
}

constexpr unsigned kRcMask = 0x6000, kFlagMask = 0x3f, kInexact = 0x20;

// Runs the family at each width over xs with the MXCSR rounding field set to
// rc; returns the number of lanes that differ from the reference (printing the
// first few). With `quiet`, also fails when the inexact flag came up during
// the calls.
template <class T>
int run(const Family& f, const std::vector<T>& xs, unsigned rc, std::initializer_list<int> widths) {
  const unsigned saved = _mm_getcsr();
  const unsigned csr = (saved & ~kRcMask & ~kFlagMask) | rc << 13;
  int bad = 0;
  for (int w : widths) {
    _mm_setcsr(csr);
    const std::vector<T> out = map<T>(f.name + std::to_string(w), xs);  // no floating-point arithmetic in here
    const unsigned after = _mm_getcsr();
    _mm_setcsr(saved);
    EXPECT_EQ(after & kRcMask, rc << 13) << f.name << " changed the rounding mode";
    if (f.quiet) EXPECT_EQ(after & kInexact, 0u) << f.name << w << " raised inexact (rounding field " << rc << ")";
    for (size_t i = 0; i < xs.size(); ++i) {
      const T want = reference(f.dir, xs[i], csr);
      if (bits(out[i]) != bits(want) && bad++ < 8)
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

// Written-out results (rintf under the upward rounding mode).
struct Edge {
  const char* name;
  double x, want;
};
const Edge kEdges[] = {
    {"round", 0.5, 1.0},   {"round", 1.5, 2.0},    {"round", -0.5, -1.0}, {"round", 0.49999999999999994, 0.0},
    {"round", -0.0, -0.0}, {"round", -0.2, -0.0},  {"round", INFINITY, INFINITY}, {"round", -INFINITY, -INFINITY},
    {"ceil", -0.5, -0.0},  {"floor", -0.0, -0.0},  {"trunc", -1.7, -1.0}, {"nearbyint", 2.5, 2.0}, {"rint", 2.5, 2.0},
    {"rintf", 2.1, 3.0},   {"rintf", -2.1, -2.0},  {"rintf", 2.0, 2.0},   {"rintf", 0.1, 1.0},   {"rintf", -0.9, -0.0},
};

TEST(Rounding, EdgeCases) {
  for (const Edge& e : kEdges) {
    const bool f = std::string(e.name) == "rintf";
    const unsigned saved = _mm_getcsr();
    if (f) _mm_setcsr((saved & ~kRcMask) | 2u << 13);  // toward +infinity
    const uint64_t got = f ? bits(map<float>("rintf8", std::vector<float>(8, (float)e.x))[5])
                           : bits(map<double>(std::string(e.name) + "4", std::vector<double>(4, e.x))[2]);
    _mm_setcsr(saved);
    EXPECT_EQ(got, f ? bits((float)e.want) : bits(e.want)) << e.name << "(" << e.x << ")";
  }
}

template <class T, size_t N> void run_all(const Family (&fams)[N], const std::vector<T>& xs, bool all_modes,
                                          std::initializer_list<int> widths = {1, 2, 3, 4, 8, 16}) {
  for (const Family& f : fams)
    for (unsigned rc = 0; rc < (all_modes ? 4u : 1u); ++rc) EXPECT_EQ(run(f, xs, rc, widths), 0) << f.name;
}

// In every rounding mode: special values at every width, structured values
// at widths 3 and 16; random values: 300000 per family at width 16 in the
// default mode, 50000 in each mode at width 8.
template <class T, size_t N> void run_tables(const Family (&fams)[N], uint64_t seed) {
  run_all(fams, special_values<T>(), true);
  run_all(fams, structured_values<T>(), true, {3, 16});
  run_all(fams, random_values<T>(300000, seed), false, {16});
  run_all(fams, random_values<T>(50000, seed + 1), true, {8});
}
TEST(Rounding, Double) { run_tables<double>(kDoubleFamilies, 11); }
TEST(Rounding, Float) { run_tables<float>(kFloatFamilies, 13); }

// The reference itself on values whose answers are known independently.
TEST(Rounding, ReferenceSelfCheck) {
  EXPECT_EQ(ref_round(2.5), 3.0);
  EXPECT_EQ(ref_round(-2.5), -3.0);
  EXPECT_EQ(ref_round_integral(2.5, Rounding::kNearestEven), 2.0);
  EXPECT_EQ(ref_round_integral(3.5, Rounding::kNearestEven), 4.0);
  EXPECT_EQ(ref_floor(-0x1p-1074), -1.0);
  EXPECT_EQ(ref_ceil(0x1p-1074), 1.0);
  EXPECT_EQ(bits(ref_ceil(-0.5)), +Fmt<double>::sign);
  EXPECT_EQ(ref_trunc(-1.7f), -1.0f);
  EXPECT_EQ(ref_round(0x1p52 - 0.5), 0x1p52);
  EXPECT_EQ(ref_round_integral(0x1p52 - 0.5, Rounding::kNearestEven), 0x1p52);
  EXPECT_EQ(ref_round_integral(0x1p52 - 1.5, Rounding::kNearestEven), 0x1p52 - 2);
  EXPECT_EQ(ref_round(8388607.5f), 8388608.0f);
}

}  // namespace
