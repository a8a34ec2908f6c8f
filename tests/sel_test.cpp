// copysign, fdim, fmax, fmin, maxmag, minmag and fma, double and float, at
// every width: table-driven edge cases, then random bit patterns (NaN payloads,
// signalling NaN, denormals, infinities, equal magnitudes) compared bit for bit
// with scalar references written here. fma (and fma_rm, the same body) is
// checked against MPFR.
#include <gtest/gtest.h>
#include <mpfr.h>

#include <cmath>
#include <cstdint>
#include <random>
#include <string>
#include <vector>

#include "tests/common/call_many.h"
#include "tests/common/fp_bits.h"

namespace {

// ---- bits ---------------------------------------------------------------------

using namespace ravl_test;

template <class T> bool nan_bits(T x) { return (bits(x) & ~Fmt<T>::sign) > Fmt<T>::exp; }
// x * 1.0 on the hardware (through a volatile, so it is not folded away):
// quiets a signalling NaN.
template <class T> T times_one(T x) {
  volatile T one = 1;
  return x * one;
}

// ---- independent scalar references ------------------------------------------------

template <class T> T ref_copysign(T x, T y) {
  return from_bits<T>((bits(x) & ~Fmt<T>::sign) | (bits(y) & Fmt<T>::sign));
}
template <class T> T ref_fdim(T x, T y) {
  if (nan_bits(y)) return times_one(y);
  if (nan_bits(x)) return times_one(x);
  return x > y ? x - y : T(0);
}
// The selection rule with a NaN: two NaN give y's (quieted), one NaN the other operand.
template <class T> bool nan_pick(T x, T y, T& r) {
  if (nan_bits(x) && nan_bits(y)) return r = times_one(y), true;
  if (nan_bits(y)) return r = x, true;
  if (nan_bits(x)) return r = y, true;
  return false;
}
template <class T> T ref_fmax(T x, T y) {
  T r;
  if (nan_pick(x, y, r)) return r;
  return x > y ? x : y;  // equal (+0, -0 included): y
}
template <class T> T ref_fmin(T x, T y) {
  T r;
  if (nan_pick(x, y, r)) return r;
  return x < y ? x : y;
}
template <class T> T ref_maxmag(T x, T y) {
  T r;
  if (nan_pick(x, y, r)) return r;
  if (std::fabs(x) != std::fabs(y)) return std::fabs(x) > std::fabs(y) ? x : y;
  return y > x ? y : x;
}
template <class T> T ref_minmag(T x, T y) {
  T r;
  if (nan_pick(x, y, r)) return r;
  if (std::fabs(x) != std::fabs(y)) return std::fabs(x) < std::fabs(y) ? x : y;
  return y < x ? y : x;
}
// fma correctly rounded by MPFR in the format's exponent range (denormals
// included). NaN operands: the first NaN of x, y, z, quieted; an invalid
// operation (inf * 0, inf - inf) gives the hardware's default NaN (sign set).
template <class T> T ref_fma(T x, T y, T z) {
  for (T v : {x, y, z})
    if (nan_bits(v)) return times_one(v);
  if ((std::isinf(x) && y == 0) || (x == 0 && std::isinf(y)) ||
      (std::isinf(z) && (std::isinf(x) || std::isinf(y)) && std::signbit(z) != (std::signbit(x) != std::signbit(y))))
    return from_bits<T>(Fmt<T>::sign | Fmt<T>::exp | Fmt<T>::quiet);
  mpfr_exp_t emin = mpfr_get_emin(), emax = mpfr_get_emax();
  mpfr_set_emin(Fmt<T>::emin);
  mpfr_set_emax(Fmt<T>::emax);
  mpfr_t a, b, c, r;
  mpfr_inits2(Fmt<T>::prec, a, b, c, r, (mpfr_ptr)0);
  mpfr_set_d(a, x, MPFR_RNDN);
  mpfr_set_d(b, y, MPFR_RNDN);
  mpfr_set_d(c, z, MPFR_RNDN);
  int t = mpfr_fma(r, a, b, c, MPFR_RNDN);
  mpfr_subnormalize(r, t, MPFR_RNDN);
  T out = (T)mpfr_get_d(r, MPFR_RNDN);
  mpfr_clears(a, b, c, r, (mpfr_ptr)0);
  mpfr_set_emin(emin);
  mpfr_set_emax(emax);
  return out;
}

// ---- families ------------------------------------------------------------------

template <class T> struct Family {
  std::string name;
  T (*ref)(T, T, T);
  bool three;  // fma: three arguments
};
#define REF2(f) [](T x, T y, T) { return f<T>(x, y); }
template <class T> const Family<T>& family(const std::string& name) {
  const std::string f = sizeof(T) == 4 ? "f" : "";
  static const std::vector<Family<T>> all = {
      {"copysign" + f, REF2(ref_copysign), false}, {"fdim" + f, REF2(ref_fdim), false},
      {"fmax" + f, REF2(ref_fmax), false},         {"fmin" + f, REF2(ref_fmin), false},
      {"maxmag" + f, REF2(ref_maxmag), false},     {"minmag" + f, REF2(ref_minmag), false},
      {"fma" + f, ref_fma<T>, true}};
  for (const Family<T>& fam : all)
    if (fam.name == name) return fam;
  ADD_FAILURE() << "no family " << name;
  return all[0];
}

// Runs the family (its class suffix: "" or "_rm") at each width over the
// inputs and counts lanes that differ from the reference, printing the first
// few.
template <class T>
int run(const Family<T>& f, const char* cls, const std::vector<T>& x, const std::vector<T>& y,
        const std::vector<T>& z, std::initializer_list<int> widths = {1, 2, 3, 4, 8, 16}) {
  int bad = 0;
  for (int w : widths) {
    const std::string name = f.name + std::to_string(w) + cls;
    const std::vector<T> r = f.three ? map<T>(name, x, y, z) : map<T>(name, x, y);
    for (size_t k = 0; k < x.size(); ++k) {
      const T want = f.ref(x[k], y[k], z[k]);
      if (bits(r[k]) != bits(want) && ++bad <= 5)
        ADD_FAILURE() << name << ": x=" << hex(x[k]) << " y=" << hex(y[k]) << " z=" << hex(z[k]) << " got "
                      << hex(r[k]) << " want " << hex(want);
    }
  }
  return bad;
}

// ---- edge cases: the expected bits are written out ------------------------------

struct Edge {
  const char* fam;
  double x, y, z, want;  // double form; the float form uses the same values converted
};
const double kInf = INFINITY;
const double kSNan1 = from_bits<double>(0x7ff0000000000001ull);  // signalling, payload 1
const double kQNan2 = from_bits<double>(0xfff8000000000002ull);  // quiet, payload 2, sign set
const double kQNan1 = from_bits<double>(0x7ff8000000000001ull);  // kSNan1 quieted
const double kDefaultNan = from_bits<double>(0xfff8000000000000ull);  // what an invalid operation gives

const Edge kEdges[] = {
    {"fmax", kSNan1, 2.0, 0, 2.0},   {"fmax", 2.0, kSNan1, 0, 2.0},   {"fmax", kSNan1, kQNan2, 0, kQNan2},
    {"fmax", kQNan2, kSNan1, 0, kQNan1}, {"fmax", 0.0, -0.0, 0, -0.0}, {"fmax", -0.0, 0.0, 0, 0.0},
    {"fmax", -kInf, 3.0, 0, 3.0},    {"fmax", kInf, kSNan1, 0, kInf}, {"fmin", 0.0, -0.0, 0, -0.0},
    {"fmin", -0.0, 0.0, 0, 0.0},     {"fmin", kSNan1, -2.0, 0, -2.0}, {"fmin", kInf, -kInf, 0, -kInf},
    {"maxmag", -3.0, 2.0, 0, -3.0},  {"maxmag", -2.0, 2.0, 0, 2.0},   {"maxmag", 2.0, -2.0, 0, 2.0},
    {"maxmag", 0.0, -0.0, 0, 0.0},   {"maxmag", -kInf, kInf, 0, kInf}, {"maxmag", kSNan1, -5.0, 0, -5.0},
    {"minmag", -2.0, 2.0, 0, -2.0},  {"minmag", 2.0, -2.0, 0, -2.0},  {"minmag", -0.0, 0.0, 0, -0.0},
    {"minmag", 1.0, -kInf, 0, 1.0},  {"minmag", kQNan2, kSNan1, 0, kQNan1},
    {"fdim", 5.0, 3.0, 0, 2.0},      {"fdim", 3.0, 5.0, 0, 0.0},      {"fdim", kInf, kInf, 0, 0.0},
    {"fdim", -kInf, -kInf, 0, 0.0},  {"fdim", kInf, 1.0, 0, kInf},    {"fdim", 1.0, kInf, 0, 0.0},
    {"fdim", kSNan1, 1.0, 0, kQNan1}, {"fdim", 1.0, kSNan1, 0, kQNan1}, {"fdim", kSNan1, kQNan2, 0, kQNan2},
    {"fdim", kQNan2, kSNan1, 0, kQNan1}, {"fdim", -0.0, -0.0, 0, 0.0},
    {"copysign", kSNan1, -1.0, 0, from_bits<double>(0xfff0000000000001ull)}, {"copysign", 3.0, -0.0, 0, -3.0},
    {"copysign", -kInf, kQNan1, 0, kInf}, {"copysign", -0.0, 1.0, 0, 0.0},
    {"fma", 1 + 0x1p-52, 1 - 0x1p-52, -1.0, -0x1p-104}, {"fma", 0x1p-537, 0x1p-537, 0.0, 0x1p-1074},
    {"fma", 2.0, 3.0, -6.0, 0.0},    {"fma", -2.0, 3.0, 6.0, 0.0},    {"fma", -0.0, 1.0, -0.0, -0.0},
    {"fma", 0x1p100, 0x1p10, -kInf, -kInf}, {"fma", kQNan2, kSNan1, 1.0, kQNan2}, {"fma", 1.0, kSNan1, kQNan2, kQNan1},
    {"fma", kInf, 0.0, 1.0, kDefaultNan},  {"fma", kInf, 0.0, kSNan1, kQNan1}, {"fma", kInf, 1.0, -kInf, kDefaultNan},
};

template <class T> void check_edges() {
  const bool f32 = sizeof(T) == 4;
  for (const Edge& e : kEdges) {
    std::string name = std::string(e.fam) + (f32 ? "f" : "");
    const Family<T>& f = family<T>(name);
    // The float form of a NaN constant keeps its sign, quiet bit and low payload bits.
    auto conv = [&](double v) -> T {
      if (!f32 || !nan_bits(v)) return (T)v;
      uint64_t b = bits(v);
      return from_bits<T>((uint32_t)((b >> 32) & 0x80000000u) | 0x7f800000u | (uint32_t)((b >> 29) & 0x400000u) |
                          (uint32_t)(b & 0x3fffffu));
    };
    T x = conv(e.x), y = conv(e.y), z = conv(e.z), want = conv(e.want);
    if (f32 && std::string(e.fam) == "fma" && e.want != 0 && std::fabs(e.want) < 0x1p-60) continue;  // double-only
    EXPECT_EQ(bits(f.ref(x, y, z)), bits(want)) << "reference " << name << "(" << hex(x) << ", " << hex(y) << ")";
    // The case in every lane position of a group of 16 (so in every lane of
    // every width), ordinary values elsewhere.
    std::vector<T> xs, ys, zs;
    for (int l : every_lane(1)) {
      xs.push_back(l < 0 ? T(1.5) : x);
      ys.push_back(l < 0 ? T(-0.75) : y);
      zs.push_back(l < 0 ? T(0.25) : z);
    }
    for (const char* cls : {"", "_rm"})
      if (f.three || !*cls) EXPECT_EQ(run(f, cls, xs, ys, zs), 0);
  }
}

TEST(Selection, EdgeCasesDouble) { check_edges<double>(); }
TEST(Selection, EdgeCasesFloat) { check_edges<float>(); }

// ---- random bit patterns ---------------------------------------------------------

template <class T> T random_value(std::mt19937_64& g) {
  using U = typename Fmt<T>::U;
  U s = (g() & 1) ? Fmt<T>::sign : 0;
  switch (g() % 12) {
    case 0: return from_bits<T>(s);                                           // +-0
    case 1: return from_bits<T>(s | Fmt<T>::exp);                             // +-inf
    case 2: return from_bits<T>(s | Fmt<T>::exp | Fmt<T>::quiet | (g() & Fmt<T>::mant));  // quiet NaN
    case 3: return from_bits<T>(s | Fmt<T>::exp | ((g() & (Fmt<T>::quiet - 1)) | 1));     // signalling NaN
    case 4: return from_bits<T>(s | (g() & Fmt<T>::mant));                  // denormal
    case 5: return from_bits<T>(s | bits(T(1 + g() % 4)));                   // small integers
    default: return from_bits<T>((U)g());                                    // any pattern
  }
}

template <class T> void random_two(const char* name, uint64_t seed) {
  std::mt19937_64 g(seed);
  const int n = 16 * 1024;
  std::vector<T> x(n), y(n), z(n, T(0));
  for (int i = 0; i < n; ++i) {
    x[i] = random_value<T>(g);
    switch (g() % 4) {  // ties in magnitude are where maxmag/minmag have their own rule
      case 0: y[i] = (g() & 1) ? x[i] : -x[i]; break;
      default: y[i] = random_value<T>(g);
    }
  }
  EXPECT_EQ(run(family<T>(name), "", x, y, z), 0) << name;
}

TEST(Selection, RandomBitsDouble) {
  for (const char* f : {"copysign", "fdim", "fmax", "fmin", "maxmag", "minmag"}) random_two<double>(f, 11);
}
TEST(Selection, RandomBitsFloat) {
  for (const char* f : {"copysignf", "fdimf", "fmaxf", "fminf", "maxmagf", "minmagf"}) random_two<float>(f, 12);
}

// fma inputs: random patterns, products cancelling against z (z near -x*y),
// and products in the denormal range.
template <class T> void random_fma(const char* name, uint64_t seed) {
  using U = typename Fmt<T>::U;
  const int p = Fmt<T>::prec;
  std::mt19937_64 g(seed);
  const int n = 8 * 1024;
  std::vector<T> x(n), y(n), z(n);
  auto in_binade = [&](int e) {  // random significand, exponent e (normal)
    T m = from_bits<T>(bits(T(1)) | ((U)g() & Fmt<T>::mant));
    return std::ldexp((g() & 1) ? -m : m, e);
  };
  for (int i = 0; i < n; ++i) {
    switch (g() % 4) {
      case 0:
        x[i] = random_value<T>(g), y[i] = random_value<T>(g), z[i] = random_value<T>(g);
        break;
      case 1: {  // cancellation: z = -(x*y) rounded, nudged by a few ulps
        x[i] = in_binade((int)(g() % 40) - 20), y[i] = in_binade((int)(g() % 40) - 20);
        T pr = x[i] * y[i];
        z[i] = -from_bits<T>(bits(pr) + (U)(g() % 5) - 2);
        break;
      }
      case 2: {  // product and sum around the smallest normal
        int e = Fmt<T>::emin - 2 + p;  // exponent of the smallest normal
        x[i] = in_binade(e / 2 - (int)(g() % 30)), y[i] = in_binade(e / 2 + 1 - (int)(g() % 8));
        z[i] = (g() & 1) ? random_value<T>(g) : in_binade(e - 2 - (int)(g() % 30));
        break;
      }
      default:  // near overflow
        x[i] = in_binade(Fmt<T>::emax / 2 + (int)(g() % 4)), y[i] = in_binade(Fmt<T>::emax / 2 - 1);
        z[i] = in_binade(Fmt<T>::emax - 1 - (int)(g() % 3));
    }
  }
  EXPECT_EQ(run(family<T>(name), "", x, y, z), 0) << name;
  EXPECT_EQ(run(family<T>(name), "_rm", x, y, z, {16}), 0) << name << "_rm";
}

TEST(Selection, FmaRandomDouble) { random_fma<double>("fma", 21); }
TEST(Selection, FmaRandomFloat) { random_fma<float>("fmaf", 23); }

}  // namespace
