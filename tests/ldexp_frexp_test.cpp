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
#include <random>
#include <string>
#include <vector>

#include "tests/common/call_many.h"
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

// ---- runs: every width over the inputs; counts wrong lanes ----------------------

constexpr std::initializer_list<int> kAllWidths = {1, 2, 3, 4, 8, 16};
template <class T> std::string fam(const char* f, int w) {
  return f + std::string(sizeof(T) == 4 ? "f" : "") + std::to_string(w);
}

// fe: the rounding mode the calls run in (the reference rounds in rnd).
template <class T>
int run_ldexp(const std::vector<T>& x, const std::vector<int32_t>& n, mpfr_rnd_t rnd, int fe = FE_TONEAREST,
              std::initializer_list<int> widths = kAllWidths) {
  int bad = 0;
  for (int w : widths) {
    std::fesetround(fe);
    const std::vector<T> r = map<T>(fam<T>("ldexp", w), x, n);
    std::fesetround(FE_TONEAREST);
    for (size_t j = 0; j < x.size(); ++j) {
      const T want = ref_ldexp(x[j], n[j], rnd);
      if (bits(r[j]) != bits(want) && ++bad <= 5)
        ADD_FAILURE() << fam<T>("ldexp", w) << " rnd " << rnd << ": x=" << hex(x[j]) << " n=" << n[j] << " got "
                      << hex(r[j]) << " want " << hex(want);
    }
  }
  return bad;
}

template <class T> int run_frexp(const std::vector<T>& x) {
  int bad = 0;
  for (int w : kAllWidths) {
    std::vector<T> r;
    std::vector<int32_t> e;
    map2(fam<T>("frexp", w), r, e, x);
    for (size_t j = 0; j < x.size(); ++j) {
      int32_t we;
      const T want = ref_frexp(x[j], &we);
      if ((bits(r[j]) != bits(want) || e[j] != we) && ++bad <= 5)
        ADD_FAILURE() << fam<T>("frexp", w) << ": x=" << hex(x[j]) << " got " << hex(r[j]) << ", " << e[j]
                      << " want " << hex(want) << ", " << we;
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
  for (const LdexpEdge<T>& e : tab)
    EXPECT_EQ(bits(ref_ldexp(e.x, e.n, MPFR_RNDN)), bits(e.want)) << "reference: " << hex(e.x) << " " << e.n;
  for (int l : every_lane(N)) {  // each case in every lane position of a group of 16
    x.push_back(l < 0 ? T(1.25) : tab[l].x);
    n.push_back(l < 0 ? 3 : tab[l].n);
  }
  // NaN payloads come back bit for bit.
  for (typename Fmt<T>::U b : {Fmt<T>::exp | 1, Fmt<T>::sign | Fmt<T>::exp | Fmt<T>::quiet | 7})
    for (int32_t k : {0, 5, -5, INT_MIN, INT_MAX}) x.push_back(from_bits<T>(b)), n.push_back(k);
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
    EXPECT_EQ(bits(ref_frexp(e.x, &we)), bits(e.m)) << hex(e.x);
    EXPECT_EQ(we, e.e) << hex(e.x);
  }
  for (int l : every_lane(N)) x.push_back(l < 0 ? T(-6.5) : tab[l].x);
  for (typename Fmt<T>::U b : {Fmt<T>::exp | 1, Fmt<T>::sign | Fmt<T>::exp | Fmt<T>::quiet | 7})
    x.push_back(from_bits<T>(b));
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
  for (auto m : modes) EXPECT_EQ(run_ldexp(xs, ks, m.rnd, m.fe), 0) << "rounding mode " << m.rnd;
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

// ldexp(frexp(x)) gives x back, for every finite x.
TEST(LdexpFrexp, RoundTrip) {
  std::mt19937_64 g(51);
  std::vector<double> x(16384), m;
  std::vector<int32_t> e;
  for (double& v : x) v = random_value<double>(g);
  map2("frexp4", m, e, x);
  const std::vector<double> y = map<double>("ldexp4", m, e);
  for (size_t j = 0; j < x.size(); ++j) EXPECT_EQ(bits(y[j]), bits(x[j])) << hex(x[j]);
}

}  // namespace
