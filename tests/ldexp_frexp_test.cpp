// ldexp and frexp, double and float, at every width: edge tables with the
// expected bits written out, then random inputs compared bit for bit with
// scalar references written here (ldexp: MPFR in the format's exponent range
// with subnormal rounding, in all four rounding modes; frexp: exact halving
// and doubling).
#include <gtest/gtest.h>
#include <mpfr.h>

#include <cfenv>
#include <climits>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <random>
#include <string>
#include <vector>

#include "ocl_ravl_l9.h"
#include "tests/common/fp_bits.h"

namespace {

using namespace ravl_test;

template <class T> bool finite_nonzero(T x) {
  return (bits(x) & Fmt<T>::exp) != Fmt<T>::exp && (bits(x) & ~Fmt<T>::sign) != 0;
}

// ---- references ---------------------------------------------------------------

// x * 2^n rounded once in mode rnd, with the format's overflow and subnormal
// rounding; zero, infinity and NaN come back as they are.
template <class T> T ref_ldexp(T x, int32_t n, mpfr_rnd_t rnd) {
  if (!finite_nonzero(x)) return x;
  mpfr_exp_t emin = mpfr_get_emin(), emax = mpfr_get_emax();
  mpfr_set_emin(Fmt<T>::emin);
  mpfr_set_emax(Fmt<T>::emax);
  mpfr_t a, r;
  mpfr_inits2(Fmt<T>::prec, a, r, (mpfr_ptr)0);
  mpfr_set_d(a, x, MPFR_RNDN);
  int t = mpfr_mul_2si(r, a, n, rnd);
  mpfr_subnormalize(r, t, rnd);
  T out = (T)mpfr_get_d(r, MPFR_RNDN);
  mpfr_clears(a, r, (mpfr_ptr)0);
  mpfr_set_emin(emin);
  mpfr_set_emax(emax);
  return out;
}

// frexp by exact halving and doubling (every step is a power-of-two scaling
// of a value that stays representable).
template <class T> T ref_frexp(T x, int32_t* e) {
  *e = 0;
  if (!finite_nonzero(x)) return x;
  T m = x;
  while (std::fabs(m) >= T(1)) m /= 2, ++*e;
  while (std::fabs(m) < T(0.5)) m *= 2, --*e;
  return m;
}

// ---- callers --------------------------------------------------------------------

using d2 = ocl_ravl_double2;
using d4 = ocl_ravl_double4;
using f4 = ocl_ravl_float4;
using f8 = ocl_ravl_float8;
using i4 = ocl_ravl_int4;
using i8 = ocl_ravl_int8;
template <class V, class T> V ld(const T* p) {
  V v;
  std::memcpy(&v, p, sizeof v);
  return v;
}
template <class V, class T> void st(T* p, const V& v, int w) { std::memcpy(p, &v, w * sizeof(T)); }

#define P(name) __ocl_ravl_l9_##name
template <class T> struct LdexpCall {
  int w;
  void (*f)(const T* x, const int32_t* n, T* r);
};
template <class T> struct FrexpCall {
  int w;
  void (*f)(const T* x, T* r, int32_t* e);
};

const std::vector<LdexpCall<double>> kLdexpD = {
    {1, [](const double* x, const int32_t* n, double* r) { r[0] = P(ldexp1)(x[0], n[0]); }},
    {2, [](const double* x, const int32_t* n, double* r) { st(r, P(ldexp2)(ld<d2>(x), ld<i4>(n)), 2); }},
    {3, [](const double* x, const int32_t* n, double* r) { st(r, P(ldexp3)(ld<d4>(x), ld<i4>(n)), 3); }},
    {4, [](const double* x, const int32_t* n, double* r) { st(r, P(ldexp4)(ld<d4>(x), ld<i4>(n)), 4); }},
    {8, [](const double* x, const int32_t* n, double* r) {
       st(r, P(ldexp8)(ld<d4>(x), ld<d4>(x + 4), ld<i8>(n)), 8); }},
    {16, [](const double* x, const int32_t* n, double* r) { P(ldexp16)(r, x, n); }},
};
const std::vector<LdexpCall<float>> kLdexpF = {
    {1, [](const float* x, const int32_t* n, float* r) { r[0] = P(ldexpf1)(x[0], n[0]); }},
    {2, [](const float* x, const int32_t* n, float* r) { st(r, P(ldexpf2)(ld<f4>(x), ld<i4>(n)), 2); }},
    {3, [](const float* x, const int32_t* n, float* r) { st(r, P(ldexpf3)(ld<f4>(x), ld<i4>(n)), 3); }},
    {4, [](const float* x, const int32_t* n, float* r) { st(r, P(ldexpf4)(ld<f4>(x), ld<i4>(n)), 4); }},
    {8, [](const float* x, const int32_t* n, float* r) { st(r, P(ldexpf8)(ld<f8>(x), ld<i8>(n)), 8); }},
    {16, [](const float* x, const int32_t* n, float* r) {
       st(r, P(ldexpf16)(ld<f8>(x), ld<f8>(x + 8), ld<i8>(n), ld<i8>(n + 8)), 16); }},
};
const std::vector<FrexpCall<double>> kFrexpD = {
    {1, [](const double* x, double* r, int32_t* e) { r[0] = P(frexp1)(x[0], e); }},
    {2, [](const double* x, double* r, int32_t* e) { st(r, P(frexp2)(ld<d2>(x), e), 2); }},
    {3, [](const double* x, double* r, int32_t* e) { st(r, P(frexp3)(ld<d4>(x), e), 3); }},
    {4, [](const double* x, double* r, int32_t* e) { st(r, P(frexp4)(ld<d4>(x), e), 4); }},
    {8, [](const double* x, double* r, int32_t* e) { st(r, P(frexp8)(ld<d4>(x), ld<d4>(x + 4), e), 8); }},
    {16, [](const double* x, double* r, int32_t* e) {
       st(r, P(frexp16)(ld<d4>(x), ld<d4>(x + 4), ld<d4>(x + 8), ld<d4>(x + 12), e), 16); }},
};
const std::vector<FrexpCall<float>> kFrexpF = {
    {1, [](const float* x, float* r, int32_t* e) { r[0] = P(frexpf1)(x[0], e); }},
    {2, [](const float* x, float* r, int32_t* e) { st(r, P(frexpf2)(ld<f4>(x), e), 2); }},
    {3, [](const float* x, float* r, int32_t* e) { st(r, P(frexpf3)(ld<f4>(x), e), 3); }},
    {4, [](const float* x, float* r, int32_t* e) { st(r, P(frexpf4)(ld<f4>(x), e), 4); }},
    {8, [](const float* x, float* r, int32_t* e) { st(r, P(frexpf8)(ld<f8>(x), e), 8); }},
    {16, [](const float* x, float* r, int32_t* e) { st(r, P(frexpf16)(ld<f8>(x), ld<f8>(x + 8), e), 16); }},
};
template <class T> const std::vector<LdexpCall<T>>& ldexp_calls();
template <> const std::vector<LdexpCall<double>>& ldexp_calls() { return kLdexpD; }
template <> const std::vector<LdexpCall<float>>& ldexp_calls() { return kLdexpF; }
template <class T> const std::vector<FrexpCall<T>>& frexp_calls();
template <> const std::vector<FrexpCall<double>>& frexp_calls() { return kFrexpD; }
template <> const std::vector<FrexpCall<float>>& frexp_calls() { return kFrexpF; }

// Every width over the inputs in consecutive groups of w lanes; counts wrong
// lanes. Width 3's undefined fourth lane holds a NaN and an extreme n; nothing
// may be written past w lanes.
template <class T> int run_ldexp(const std::vector<T>& x, const std::vector<int32_t>& n, mpfr_rnd_t rnd) {
  const typename Fmt<T>::U sentinel = Fmt<T>::exp | 0x5a5a;
  int bad = 0;
  for (const LdexpCall<T>& c : ldexp_calls<T>()) {
    for (size_t i = 0; i + c.w <= x.size(); i += c.w) {
      T a[16], r[32];
      int32_t k[16];
      for (int j = 0; j < 16; ++j) a[j] = from_bits<T>(Fmt<T>::exp | 1), k[j] = INT_MIN;
      for (int j = 0; j < 32; ++j) r[j] = from_bits<T>(sentinel);
      std::memcpy(a, &x[i], c.w * sizeof(T));
      std::memcpy(k, &n[i], c.w * sizeof(int32_t));
      c.f(a, k, r);
      for (int j = 0; j < 32; ++j) {
        T want = j < c.w ? ref_ldexp(a[j], k[j], rnd) : from_bits<T>(sentinel);
        if (bits(r[j]) != bits(want) && ++bad <= 5)
          ADD_FAILURE() << "ldexp" << (sizeof(T) == 4 ? "f" : "") << c.w << " lane " << j << " rnd " << rnd
                        << ": x=" << hex(a[j & 15]) << " n=" << k[j & 15] << " got " << hex(r[j]) << " want "
                        << hex(want);
      }
    }
  }
  return bad;
}

template <class T> int run_frexp(const std::vector<T>& x) {
  const typename Fmt<T>::U sentinel = Fmt<T>::exp | 0x5a5a;
  int bad = 0;
  for (const FrexpCall<T>& c : frexp_calls<T>()) {
    for (size_t i = 0; i + c.w <= x.size(); i += c.w) {
      T a[16], r[32];
      int32_t e[32];
      for (int j = 0; j < 16; ++j) a[j] = from_bits<T>(Fmt<T>::exp | 1);
      for (int j = 0; j < 32; ++j) r[j] = from_bits<T>(sentinel), e[j] = 0x5a5a5a5a;
      std::memcpy(a, &x[i], c.w * sizeof(T));
      c.f(a, r, e);
      for (int j = 0; j < 32; ++j) {
        int32_t we = 0x5a5a5a5a;
        T want = j < c.w ? ref_frexp(a[j], &we) : from_bits<T>(sentinel);
        if ((bits(r[j]) != bits(want) || e[j] != we) && ++bad <= 5)
          ADD_FAILURE() << "frexp" << (sizeof(T) == 4 ? "f" : "") << c.w << " lane " << j << ": x="
                        << hex(a[j & 15]) << " got " << hex(r[j]) << ", " << e[j] << " want " << hex(want) << ", "
                        << we;
      }
    }
  }
  return bad;
}

// ---- edge tables ------------------------------------------------------------------

template <class T> struct LdexpEdge {
  T x;
  int32_t n;
  T want;
};
const double kDMax = 0x1.fffffffffffffp1023, kDTiny = 0x1p-1074;
const LdexpEdge<double> kLdexpEdgesD[] = {
    {1.0, -1074, 0x1p-1074},  {1.0, -1075, 0.0},          {-1.0, -1075, -0.0},   // a tie goes to even (zero)
    {1.5, -1075, 0x1p-1074},  {0x1.8p-1073, -1, 0x1p-1073},  {0x1.4p-1071, -3, 0x1p-1074},
    {3.0, -1076, 0x1p-1074},  {0x1.8p-1070, -3, 0x1.8p-1073}, {kDMax, -2098, 0x1p-1074},
    {kDMax, -2099, 0.0},      {kDTiny, 2097, 0x1p1023},   {kDTiny, 2098, INFINITY}, {-kDTiny, INT_MAX, -INFINITY},
    {kDTiny, 1074, 1.0},      {kDMax, 1, INFINITY},       {-kDMax, INT_MIN, -0.0}, {0x1p-1022, -1, 0x1p-1023},
    {0x1.fffffffffffffp-1, -1022, 0x1p-1022},  // rounds up into the normal range
    {-0.0, 100, -0.0},        {0.0, INT_MIN, 0.0},        {-INFINITY, -100000, -INFINITY},
    {3.0, 0, 3.0},            {1.0, 1023, 0x1p1023},      {1.0, 1024, INFINITY}, {1.0, 4097, INFINITY},
    {1.0, -4097, 0.0},
};
const float kFMax = 0x1.fffffep127f, kFTiny = 0x1p-149f;
const LdexpEdge<float> kLdexpEdgesF[] = {
    {1.0f, -149, 0x1p-149f},  {1.0f, -150, 0.0f},         {-1.0f, -150, -0.0f},
    {1.5f, -150, 0x1p-149f},  {0x1.8p-148f, -1, 0x1p-148f}, {0x1.4p-146f, -3, 0x1p-149f},
    {kFMax, -277, 0x1p-149f}, {kFMax, -278, 0.0f},        {kFTiny, 276, 0x1p127f}, {kFTiny, 277, INFINITY},
    {-kFTiny, INT_MAX, -INFINITY}, {-kFMax, INT_MIN, -0.0f}, {0x1.fffffep-1f, -126, 0x1p-126f},
    {-0.0f, 100, -0.0f},      {-INFINITY, -100000, -INFINITY}, {1.0f, 128, INFINITY}, {1.0f, 127, 0x1p127f},
};

template <class T, size_t N> void ldexp_edges(const LdexpEdge<T> (&tab)[N]) {
  std::vector<T> x;
  std::vector<int32_t> n;
  for (const LdexpEdge<T>& e : tab) {
    EXPECT_EQ(bits(ref_ldexp(e.x, e.n, MPFR_RNDN)), bits(e.want)) << "reference: " << hex(e.x) << " " << e.n;
    // Each case in every lane position of a group of 16.
    for (int p = 0; p < 16; ++p)
      for (int j = 0; j < 16; ++j) {
        x.push_back(j == p ? e.x : T(1.25));
        n.push_back(j == p ? e.n : 3);
      }
  }
  // NaN payloads come back bit for bit.
  for (typename Fmt<T>::U b : {Fmt<T>::exp | 1, Fmt<T>::sign | Fmt<T>::exp | Fmt<T>::quiet | 7})
    for (int32_t k : {0, 5, -5, INT_MIN, INT_MAX}) x.push_back(from_bits<T>(b)), n.push_back(k);
  while (x.size() % 16) x.push_back(T(0)), n.push_back(0);
  EXPECT_EQ(run_ldexp(x, n, MPFR_RNDN), 0);
}
TEST(LdexpFrexp, LdexpEdgesDouble) { ldexp_edges(kLdexpEdgesD); }
TEST(LdexpFrexp, LdexpEdgesFloat) { ldexp_edges(kLdexpEdgesF); }

template <class T> struct FrexpEdge {
  T x, m;
  int32_t e;
};
const FrexpEdge<double> kFrexpEdgesD[] = {
    {1.0, 0.5, 1},          {-0x1p-1074, -0.5, -1073}, {0.0, 0.0, 0},         {-0.0, -0.0, 0},
    {INFINITY, INFINITY, 0}, {-INFINITY, -INFINITY, 0}, {kDMax, 0x1.fffffffffffffp-1, 1024},
    {0x1.ffffffffffffep-1023, 0x1.ffffffffffffep-1, -1022}, {0x1p-1022, 0.5, -1021}, {-3.0, -0.75, 2},
    {0x1.8p-1060, 0.75, -1059},
};
const FrexpEdge<float> kFrexpEdgesF[] = {
    {1.0f, 0.5f, 1},        {-0x1p-149f, -0.5f, -148}, {0.0f, 0.0f, 0},       {-0.0f, -0.0f, 0},
    {INFINITY, INFINITY, 0}, {kFMax, 0x1.fffffep-1f, 128}, {0x1.fffffcp-127f, 0x1.fffffcp-1f, -126},
    {0x1p-126f, 0.5f, -125}, {-3.0f, -0.75f, 2},
};

template <class T, size_t N> void frexp_edges(const FrexpEdge<T> (&tab)[N]) {
  std::vector<T> x;
  for (const FrexpEdge<T>& e : tab) {
    int32_t we;
    T wm = ref_frexp(e.x, &we);
    EXPECT_EQ(bits(wm), bits(e.m)) << hex(e.x);
    EXPECT_EQ(we, e.e) << hex(e.x);
    for (int p = 0; p < 16; ++p)
      for (int j = 0; j < 16; ++j) x.push_back(j == p ? e.x : T(-6.5));
  }
  for (typename Fmt<T>::U b : {Fmt<T>::exp | 1, Fmt<T>::sign | Fmt<T>::exp | Fmt<T>::quiet | 7})
    x.push_back(from_bits<T>(b));
  while (x.size() % 16) x.push_back(T(0));
  EXPECT_EQ(run_frexp(x), 0);
}
TEST(LdexpFrexp, FrexpEdgesDouble) { frexp_edges(kFrexpEdgesD); }
TEST(LdexpFrexp, FrexpEdgesFloat) { frexp_edges(kFrexpEdgesF); }

// ---- random inputs ------------------------------------------------------------------

template <class T> T random_value(std::mt19937_64& g) {
  using U = typename Fmt<T>::U;
  U s = (g() & 1) ? Fmt<T>::sign : 0;
  switch (g() % 10) {
    case 0: return from_bits<T>(s);
    case 1: return from_bits<T>(s | Fmt<T>::exp);
    case 2: return from_bits<T>(s | Fmt<T>::exp | ((U)g() & Fmt<T>::mant) | 1);  // NaN, quiet or signalling
    case 3:
    case 4: return from_bits<T>(s | ((U)g() & Fmt<T>::mant));  // denormal
    default: return from_bits<T>((U)g());
  }
}

// n: wide random, around the denormal and overflow thresholds of x, and the extremes.
template <class T> int32_t random_n(std::mt19937_64& g, T x) {
  const int bias = Fmt<T>::emax - 1;
  int ex = finite_nonzero(x) ? std::ilogb(x) : 0;
  switch (g() % 8) {
    case 0: return (int32_t)g();
    case 1: {
      static const int32_t extremes[] = {INT_MIN, INT_MAX, INT_MIN + 1, INT_MAX - 1, 4095, 4096, 4097,
                                         -4095, -4096, -4097, 0, 2098, -2098, 2152, -2152, 277, -277};
      return extremes[g() % (sizeof extremes / sizeof extremes[0])];
    }
    case 2:
    case 3:
    case 4: return Fmt<T>::min_normal_exp - ex - (int)(g() % (Fmt<T>::prec + 4)) + 2;  // denormal results
    case 5: return bias - ex + (int)(g() % 3) - 1;                                     // overflow edge
    default: return (int)(g() % (4 * bias + 400)) - (2 * bias + 200);
  }
}

template <class T> void random_ldexp(uint64_t seed) {
  std::mt19937_64 g(seed);
  const int n = 8 * 1024;
  std::vector<T> x(n);
  std::vector<int32_t> k(n);
  for (int i = 0; i < n; ++i) x[i] = random_value<T>(g), k[i] = random_n(g, x[i]);
  EXPECT_EQ(run_ldexp(x, k, MPFR_RNDN), 0);
  // The same single rounding in the directed modes (ties and overflow differ there).
  const struct { int fe; mpfr_rnd_t rnd; } modes[] = {
      {FE_UPWARD, MPFR_RNDU}, {FE_DOWNWARD, MPFR_RNDD}, {FE_TOWARDZERO, MPFR_RNDZ}};
  std::vector<T> xs(x.begin(), x.begin() + n / 4);
  std::vector<int32_t> ks(k.begin(), k.begin() + n / 4);
  for (auto m : modes) {
    std::fesetround(m.fe);
    int bad = run_ldexp(xs, ks, m.rnd);
    std::fesetround(FE_TONEAREST);
    EXPECT_EQ(bad, 0) << "rounding mode " << m.rnd;
  }
}
TEST(LdexpFrexp, LdexpRandomDouble) { random_ldexp<double>(31); }
TEST(LdexpFrexp, LdexpRandomFloat) { random_ldexp<float>(32); }

template <class T> void random_frexp(uint64_t seed) {
  std::mt19937_64 g(seed);
  std::vector<T> x(16 * 1024);
  for (T& v : x) v = random_value<T>(g);
  EXPECT_EQ(run_frexp(x), 0);
}
TEST(LdexpFrexp, FrexpRandomDouble) { random_frexp<double>(41); }
TEST(LdexpFrexp, FrexpRandomFloat) { random_frexp<float>(42); }

// ldexp(frexp(x)) gives x back at every width, for every finite x.
TEST(LdexpFrexp, RoundTrip) {
  std::mt19937_64 g(51);
  for (int i = 0; i < 4096; ++i) {
    double x[4] = {random_value<double>(g), random_value<double>(g), random_value<double>(g),
                   random_value<double>(g)};
    int32_t e[4];
    d4 m = P(frexp4)(ld<d4>(x), e);
    d4 y = P(ldexp4)(m, ld<i4>(e));
    for (int j = 0; j < 4; ++j) EXPECT_EQ(bits(y[j]), bits(x[j])) << hex(x[j]);
  }
}

}  // namespace
