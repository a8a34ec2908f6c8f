// ilogb, logb, modf, fract, nextafter, nan and their f forms, bit for bit:
// tables of special values with the expected results written out (each case
// in every lane position, widths 1, 3 and 16, in all four rounding modes), then
// random bit patterns at width 16 against independent references: exact
// integer arithmetic on the bits (ilogb, logb, modf's and fract's integral
// parts), MPFR (fract), glibc's nextafter. NaN results must be the NaN operand
// with its quiet bit set (nextafter: x's when x is NaN, else y's).
#include <gtest/gtest.h>
#include <mpfr.h>

#include <cfenv>
#include <climits>
#include <cmath>
#include <cstring>
#include <random>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include "tests/common/call_many.h"
#include "tests/common/fp_bits.h"
#include "tests/common/ref_rounding.h"

namespace {

using namespace ravl_test;

template <class T> bool nan_(T x) { return (bits(x) & ~Fmt<T>::sign) > Fmt<T>::exp; }
template <class T> T quiet(T x) { return from_bits<T>(bits(x) | Fmt<T>::quiet); }
template <class T> bool same(T a, T b) { return std::memcmp(&a, &b, sizeof a) == 0; }
template <class T> bool same(std::pair<T, T> a, std::pair<T, T> b) { return same(a.first, b.first) && same(a.second, b.second); }
template <class T> std::string show(T x) {
  if constexpr (std::is_floating_point_v<T>) return hex(x);
  else return std::to_string(x);
}
template <class T> std::string fam(const char* f) { return f + std::string(sizeof(T) == 4 ? "f" : ""); }
template <class T> constexpr T kBelowOne = sizeof(T) == 8 ? T(0x1.fffffffffffffp-1) : T(0x1.fffffep-1f);

// ---- references -------------------------------------------------------------------

template <class T> int32_t ref_ilogb(T x) {
  const auto b = bits(x) & ~Fmt<T>::sign;
  if (b == 0) return INT_MIN;
  if ((b & Fmt<T>::exp) == Fmt<T>::exp) return INT_MAX;
  const int field = (int)(b >> (Fmt<T>::prec - 1));
  if (field > 0) return field - (Fmt<T>::emax - 1);
  int top = 0;  // denormal b * 2^(emin - 1): floor(log2 b) + emin - 1
  while (b >> (top + 1)) ++top;
  return top + Fmt<T>::emin - 1;
}
template <class T> T ref_logb(T x) {
  if (nan_(x)) return quiet(x);
  const int32_t e = ref_ilogb(x);
  return e == INT_MIN ? -INFINITY : e == INT_MAX ? INFINITY : (T)e;
}
template <class T> std::pair<T, T> ref_modf(T x) {
  if (nan_(x)) return {quiet(x), quiet(x)};
  const T i = ref_trunc(x);
  return {std::isinf(x) ? std::copysign(T(0), x) : std::copysign(x - i, x), i};  // x - i is exact
}
template <class T> std::pair<T, T> ref_fract(T x) {
  if (nan_(x)) return {quiet(x), quiet(x)};
  const T fl = ref_floor(x);
  if (std::isinf(x)) return {T(0), fl};
  if (x == 0) return {x, x};
  mpfr_t a, b;
  mpfr_inits2(Fmt<T>::prec, a, b, (mpfr_ptr)0);
  mpfr_set_d(a, x, MPFR_RNDN);
  mpfr_set_d(b, fl, MPFR_RNDN);
  mpfr_sub(a, a, b, MPFR_RNDN);  // x - floor(x) in (0, 1): rounded once to the format
  const T d = (T)mpfr_get_d(a, MPFR_RNDN);
  mpfr_clears(a, b, (mpfr_ptr)0);
  return {std::fmin(d, kBelowOne<T>), fl};
}
template <class T> T ref_nextafter(T x, T y) {
  return nan_(x) ? quiet(x) : nan_(y) ? quiet(y) : std::nextafter(x, y);
}

// ---- runs: the export over inputs a..., every lane against ref(a[j]...) --------------

template <class T> T first_of(T x) { return x; }
template <class T> T second_of(T) { return T(); }
template <class A, class B> A first_of(std::pair<A, B> p) { return p.first; }
template <class A, class B> B second_of(std::pair<A, B> p) { return p.second; }

template <class R0, class R1, class F, class... A>
int run(const std::string& name, F ref, const std::vector<A>&... a) {
  std::vector<R0> r0;
  std::vector<R1> r1;
  if constexpr (std::is_same_v<R1, std::nullptr_t>) r0 = map<R0>(name, a...);
  else map2(name, r0, r1, a...);
  int bad = 0;
  for (size_t j = 0; j < r0.size(); ++j) {
    const auto want = ref(a[j]...);
    bool ok = same(r0[j], (R0)first_of(want));
    if constexpr (!std::is_same_v<R1, std::nullptr_t>) ok = ok && same(r1[j], (R1)second_of(want));
    if (!ok && ++bad <= 5) {
      std::ostringstream os;
      ((os << show(a[j]) << " "), ...);
      os << "got " << show(r0[j]);
      if constexpr (!std::is_same_v<R1, std::nullptr_t>) os << ", " << show(r1[j]);
      os << " want " << show((R0)first_of(want));
      if constexpr (!std::is_same_v<R1, std::nullptr_t>) os << ", " << show((R1)second_of(want));
      ADD_FAILURE() << name << ": " << os.str();
    }
  }
  return bad;
}

// Each family's run over x (and y for nextafter) at width w.
template <class T> int run_all(int w, const std::vector<T>& x, const std::vector<T>& y) {
  const std::string s = std::to_string(w);
  using N = std::nullptr_t;
  return run<int32_t, N>(fam<T>("ilogb") + s, ref_ilogb<T>, x) + run<T, N>(fam<T>("logb") + s, ref_logb<T>, x) +
         run<T, T>(fam<T>("modf") + s, ref_modf<T>, x) +
         run<T, T>(fam<T>("fract") + s, ref_fract<T>, x) +
         run<T, N>(fam<T>("nextafter") + s, ref_nextafter<T>, x, y);
}

// ---- tables ---------------------------------------------------------------------------

template <class T> struct Row {
  T x;
  int32_t ilogb;
  T logb, modf_frac, modf_int, fract, fract_floor;
};
constexpr double kDMax = 0x1.fffffffffffffp1023, kDTiny = 0x1p-1074, kD1m = 0x1.fffffffffffffp-1;
const Row<double> kRowsD[] = {
    {0.0, INT_MIN, -INFINITY, 0.0, 0.0, 0.0, 0.0},
    {-0.0, INT_MIN, -INFINITY, -0.0, -0.0, -0.0, -0.0},
    {INFINITY, INT_MAX, INFINITY, 0.0, INFINITY, 0.0, INFINITY},
    {-INFINITY, INT_MAX, INFINITY, -0.0, -INFINITY, 0.0, -INFINITY},
    {1.0, 0, 0.0, 0.0, 1.0, 0.0, 1.0},
    {-3.0, 1, 1.0, -0.0, -3.0, 0.0, -3.0},
    {2.5, 1, 1.0, 0.5, 2.0, 0.5, 2.0},
    {-2.5, 1, 1.0, -0.5, -2.0, 0.5, -3.0},
    {-0.75, -1, -1.0, -0.75, -0.0, 0.25, -1.0},
    {kD1m, -1, -1.0, kD1m, 0.0, kD1m, 0.0},
    {-kD1m, -1, -1.0, -kD1m, -0.0, 0x1p-53, -1.0},
    {-0x1p-53, -53, -53.0, -0x1p-53, -0.0, kD1m, -1.0},     // 1 - 2^-53 exactly
    {-0x1p-54, -54, -54.0, -0x1p-54, -0.0, kD1m, -1.0},     // 1 - 2^-54 ties to 1: clamped
    {-kDTiny, -1074, -1074.0, -kDTiny, -0.0, kD1m, -1.0},   // rounds to 1: clamped
    {kDTiny, -1074, -1074.0, kDTiny, 0.0, kDTiny, 0.0},
    {0x1.8p-1073, -1073, -1073.0, 0x1.8p-1073, 0.0, 0x1.8p-1073, 0.0},
    {0x1.ffffffffffffep-1023, -1023, -1023.0, 0x1.ffffffffffffep-1023, 0.0, 0x1.ffffffffffffep-1023, 0.0},
    {0x1p-1022, -1022, -1022.0, 0x1p-1022, 0.0, 0x1p-1022, 0.0},
    {0x1.fffffffffffffp51, 51, 51.0, 0.5, 0x1.ffffffffffffep51, 0.5, 0x1.ffffffffffffep51},
    {-0x1.fffffffffffffp51, 51, 51.0, -0.5, -0x1.ffffffffffffep51, 0.5, -0x1p52},
    {0x1p53 + 2, 53, 53.0, 0.0, 0x1p53 + 2, 0.0, 0x1p53 + 2},
    {-kDMax, 1023, 1023.0, -0.0, -kDMax, 0.0, -kDMax},
    {1e300, 996, 996.0, 0.0, 1e300, 0.0, 1e300},
};
constexpr float kFMax = 0x1.fffffep127f, kFTiny = 0x1p-149f, kF1m = 0x1.fffffep-1f;
const Row<float> kRowsF[] = {
    {0.0f, INT_MIN, -INFINITY, 0.0f, 0.0f, 0.0f, 0.0f},
    {-0.0f, INT_MIN, -INFINITY, -0.0f, -0.0f, -0.0f, -0.0f},
    {INFINITY, INT_MAX, INFINITY, 0.0f, INFINITY, 0.0f, INFINITY},
    {-INFINITY, INT_MAX, INFINITY, -0.0f, -INFINITY, 0.0f, -INFINITY},
    {-3.0f, 1, 1.0f, -0.0f, -3.0f, 0.0f, -3.0f},
    {-2.5f, 1, 1.0f, -0.5f, -2.0f, 0.5f, -3.0f},
    {kF1m, -1, -1.0f, kF1m, 0.0f, kF1m, 0.0f},
    {-0x1p-24f, -24, -24.0f, -0x1p-24f, -0.0f, kF1m, -1.0f},
    {-0x1p-25f, -25, -25.0f, -0x1p-25f, -0.0f, kF1m, -1.0f},
    {-kFTiny, -149, -149.0f, -kFTiny, -0.0f, kF1m, -1.0f},
    {0x1.fffffcp-127f, -127, -127.0f, 0x1.fffffcp-127f, 0.0f, 0x1.fffffcp-127f, 0.0f},
    {0x1p-126f, -126, -126.0f, 0x1p-126f, 0.0f, 0x1p-126f, 0.0f},
    {-0x1.fffffep22f, 22, 22.0f, -0.5f, -0x1.fffffcp22f, 0.5f, -0x1p23f},
    {kFMax, 127, 127.0f, 0.0f, kFMax, 0.0f, kFMax},
};

template <class T> struct NextRow { T x, y, want; };
const NextRow<double> kNextD[] = {
    {0.0, -1.0, -kDTiny},  {-0.0, 1.0, kDTiny},   {0.0, -0.0, -0.0},     {-0.0, 0.0, 0.0},
    {kDTiny, 0.0, 0.0},    {-kDTiny, 1.0, -0.0},  {1.0, 2.0, 0x1.0000000000001p0}, {1.0, 0.0, kD1m},
    {-1.0, -INFINITY, -0x1.0000000000001p0},      {-1.0, 5.0, -kD1m},   {kDMax, INFINITY, INFINITY},
    {INFINITY, 0.0, kDMax}, {-INFINITY, 0.0, -kDMax}, {INFINITY, INFINITY, INFINITY}, {-kDMax, -INFINITY, -INFINITY},
    {0x1p-1022, 0.0, 0x1.ffffffffffffep-1023},    {0x1.ffffffffffffep-1023, 1.0, 0x1p-1022}, {2.0, 2.0, 2.0},
};
const NextRow<float> kNextF[] = {
    {0.0f, -1.0f, -kFTiny}, {-0.0f, 1.0f, kFTiny}, {0.0f, -0.0f, -0.0f}, {-kFTiny, 1.0f, -0.0f},
    {1.0f, 0.0f, kF1m},     {-1.0f, -2.0f, -0x1.000002p0f}, {kFMax, INFINITY, INFINITY}, {-INFINITY, 0.0f, -kFMax},
    {0x1p-126f, 0.0f, 0x1.fffffcp-127f}, {0x1.fffffcp-127f, 1.0f, 0x1p-126f},
};

const int kModes[] = {FE_TONEAREST, FE_DOWNWARD, FE_UPWARD, FE_TOWARDZERO};

// Every table row in every lane position (others hold a filler), at widths 1, 3
// and 16, in each rounding mode: the expected values are written out in the
// table, and the reference must agree with them. NaN inputs of both signs,
// quiet and signalling, with payloads, are added to every table.
template <class T, size_t N, size_t M> void tables(const Row<T> (&rows)[N], const NextRow<T> (&next)[M]) {
  for (const Row<T>& r : rows) {
    EXPECT_EQ(ref_ilogb(r.x), r.ilogb) << hex(r.x);
    EXPECT_TRUE(same(ref_logb(r.x), r.logb)) << hex(r.x);
    EXPECT_TRUE(same(ref_modf(r.x), std::make_pair(r.modf_frac, r.modf_int))) << hex(r.x);
    EXPECT_TRUE(same(ref_fract(r.x), std::make_pair(r.fract, r.fract_floor))) << hex(r.x);
  }
  for (const NextRow<T>& r : next) EXPECT_TRUE(same(ref_nextafter(r.x, r.y), r.want)) << hex(r.x) << hex(r.y);
  const T nans[] = {from_bits<T>(Fmt<T>::exp | 1), from_bits<T>(Fmt<T>::sign | Fmt<T>::exp | Fmt<T>::quiet | 7),
                    T(NAN)};
  std::vector<T> x, y;
  for (int l : every_lane(N)) x.push_back(l < 0 ? T(-6.5) : rows[l].x), y.push_back(T(1));
  for (int l : every_lane(M)) x.push_back(l < 0 ? T(-6.5) : next[l].x), y.push_back(l < 0 ? T(1) : next[l].y);
  for (T a : nans) x.insert(x.end(), {a, T(1), a, nans[0]}), y.insert(y.end(), {T(1), a, nans[1], a});
  for (int mode : kModes)
    for (int w : {1, 3, 16}) {
      std::fesetround(mode);
      EXPECT_EQ(run_all(w, x, y), 0) << "width " << w << " rounding mode " << mode;
    }
  std::fesetround(FE_TONEAREST);
}
TEST(BitFn, TablesDouble) { tables(kRowsD, kNextD); }
TEST(BitFn, TablesFloat) { tables(kRowsF, kNextF); }

// ---- random inputs ----------------------------------------------------------------------

// Raw bit patterns (many tiny negatives: fract's clamp), denormals, specials,
// integers in the range where the fraction's bits run out and their neighbours,
// powers of two and their neighbours.
template <class T> T random_value(std::mt19937_64& g) {
  using U = typename Fmt<T>::U;
  const U s = (g() & 1) ? Fmt<T>::sign : 0;
  const int p = Fmt<T>::prec;
  switch (g() % 10) {
    case 0: return from_bits<T>(s | (g() % 3 == 0 ? 0 : Fmt<T>::exp | (g() % 2 ? 0 : (U)g() & Fmt<T>::mant) | 1));
    case 1: return from_bits<T>(s | ((U)g() & Fmt<T>::mant));
    case 2: return from_bits<T>(bits(std::copysign((T)(int64_t)(g() >> (64 - p - 2 + g() % p)), T(s ? -1 : 1))) +
                                (U)(g() % 5) - 2);
    case 3: return from_bits<T>(bits(std::ldexp(T(s ? -1 : 1), (int)(g() % (2 * Fmt<T>::emax)) - Fmt<T>::emax)) +
                                (U)(g() % 5) - 2);
    default: return from_bits<T>((U)g());
  }
}
// y for nextafter: independent, equal to x, zeros, infinities, NaN, or x's neighbours.
template <class T> T random_y(std::mt19937_64& g, T x) {
  switch (g() % 8) {
    case 0: return x;
    case 1: return g() % 2 ? T(0) : T(-0.0);
    case 2: return g() % 2 ? INFINITY : -INFINITY;
    case 3: return from_bits<T>(bits(x) + (typename Fmt<T>::U)(g() % 3) - 1);
    default: return random_value<T>(g);
  }
}

template <class T> void random_inputs(uint64_t seed) {
  std::mt19937_64 g(seed);
  std::vector<T> x(1 << 19), y(x.size());
  for (size_t j = 0; j < x.size(); ++j) x[j] = random_value<T>(g), y[j] = random_y(g, x[j]);
  EXPECT_EQ(run_all(16, x, y), 0);
}
TEST(BitFn, RandomDouble) { random_inputs<double>(61); }
TEST(BitFn, RandomFloat) { random_inputs<float>(62); }

// nan(code): the quiet NaN exponent all ones | quiet bit | (code & mantissa mask).
TEST(BitFn, Nan) {
  const std::vector<uint64_t> cd = {0, 1, 0x0008000000000000, 0x000fffffffffffff, ~0ull, 0xfff0000000000000,
                                    0x123456789abcdef0};
  const uint64_t wd[] = {0x7ff8000000000000, 0x7ff8000000000001, 0x7ff8000000000000, 0x7fffffffffffffff,
                         0x7fffffffffffffff, 0x7ff8000000000000, 0x7ffc56789abcdef0};
  const std::vector<uint32_t> cf = {0, 1, 0x400000, 0x7fffff, ~0u, 0xff800000, 0x12345678};
  const uint32_t wf[] = {0x7fc00000, 0x7fc00001, 0x7fc00000, 0x7fffffff, 0x7fffffff, 0x7fc00000, 0x7ff45678};
  for (int w : {1, 3, 4, 8, 16}) {
    const std::vector<double> rd = map<double>("nan" + std::to_string(w), cd);
    const std::vector<float> rf = map<float>("nanf" + std::to_string(w), cf);
    for (size_t j = 0; j < cd.size(); ++j) EXPECT_EQ(bits(rd[j]), wd[j]) << "nan" << w << " " << std::hex << cd[j];
    for (size_t j = 0; j < cf.size(); ++j) EXPECT_EQ(bits(rf[j]), wf[j]) << "nanf" << w << " " << std::hex << cf[j];
  }
}

}  // namespace
