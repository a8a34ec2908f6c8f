// The families whose every result bit is defined: conversions, rounding to
// integers, integer division, the bit-level, selection and remainder
// functions, ldexp and frexp, fma, division. Each (family, algorithm) is
// checked bit for bit against a reference written here, independent of the
// library's method (integer arithmetic on the bit patterns, or MPFR rounding
// once in the format's range), on directed inputs chosen by signature (the
// special values and their crosses, every power of two with its neighbours,
// the integers and quarters around every conversion bound, integer ties at 24
// and 53 bits) at every width, and on the random inputs of
// tests/common/inputs.h at width 16; all of it under each of the four
// rounding modes of the caller (MXCSR): a reference takes the mode, so it says
// which results follow it and which must not.
#include <xmmintrin.h>

#include <climits>
#include <functional>

#include "common/call.h"
#include "common/ref_fp_to_int.h"
#include "common/ref_rounding.h"
#include "common/tables.h"

namespace ravl_test {
namespace {

using U64 = uint64_t;
using Ref = std::function<void(const U64* a, U64* r, int rm)>;  // lane bits in and out, rounding mode
#define ARGS const U64 *a, U64 *r, int rm

struct Reference {
  std::string family, algorithm, cls;  // cls: the first class of the algorithm
  Ref ref;
  bool quiet = false;    // must not raise the inexact flag
  int random_log2 = 19;  // random inputs: 2^random_log2
};
void PrintTo(const Reference& e, std::ostream* os) { *os << e.family << " " << e.cls << " (algorithm " << e.algorithm << ")"; }

// ---- floating references -------------------------------------------------------------

template <class T> T arg(const U64* a, int i) { return from_bits<T>(a[i]); }
// A NaN operand as x86 arithmetic passes it on: the first one, quieted.
template <class T> bool nan_in(std::initializer_list<T> ops, T& r) {
  for (T v : ops)
    if (is_nan(v)) return r = quiet(v), true;
  return false;
}
using Mpfr2 = int (*)(mpfr_ptr, mpfr_srcptr, mpfr_srcptr, mpfr_rnd_t);
// x op y rounded once in mode rm; an invalid operation gives the default NaN.
template <class T> T ieee(int rm, Mpfr2 op, T x, T y) {
  T n;
  if (nan_in({x, y}, n)) return n;
  Mp a(x), b(y);
  const T q = mp_round<T>(rm, [&](mpfr_ptr res, mpfr_rnd_t m) { return op(res, a, b, m); });
  return is_nan(q) ? default_nan<T>() : q;
}
template <class T> T ref_fma(int rm, T x, T y, T z) {
  T n;
  if (nan_in({x, y, z}, n)) return n;
  Mp a(x), b(y), c(z);
  const T q = mp_round<T>(rm, [&](mpfr_ptr res, mpfr_rnd_t m) { return mpfr_fma(res, a, b, c, m); });
  return is_nan(q) ? default_nan<T>() : q;
}
// fmax, fmin, maxmag, minmag: one NaN operand gives the other, two give y quieted.
template <class T> T ref_select(int kind, T x, T y) {
  if (is_nan(x) || is_nan(y)) return is_nan(x) && is_nan(y) ? quiet(y) : is_nan(y) ? x : y;
  const T ax = std::fabs(x), ay = std::fabs(y);
  switch (kind) {
    case 0: return x > y ? x : y;
    case 1: return x < y ? x : y;
    case 2: return ax != ay ? (ax > ay ? x : y) : (y > x ? y : x);
    default: return ax != ay ? (ax < ay ? x : y) : (y < x ? y : x);
  }
}
// fmod (0), remainder (1), remquo (2): exact; x infinite or y zero: the default
// NaN; remquo's low 7 bits of the quotient with the sign of x/y (0 for NaN and
// for infinite y).
template <class T> T ref_rem(int op, T x, T y, U64* q) {
  *q = 0;
  T n;
  if (nan_in({x, y}, n)) return n;
  if (std::isinf(x) || y == 0) return from_bits<T>(Fmt<T>::exp | Fmt<T>::quiet);
  Mp a(x), b(y), res(0, Fmt<T>::prec);
  long quo = 0;
  full_range();
  if (op == 0) mpfr_fmod(res, a, b, MPFR_RNDN);
  else if (op == 1) mpfr_remainder(res, a, b, MPFR_RNDN);
  else mpfr_remquo(res, &quo, a, b, MPFR_RNDN);
  *q = (uint32_t)(quo < 0 ? -(int32_t)(-quo & 127) : (int32_t)(quo & 127));
  return (T)mpfr_get_d(res, MPFR_RNDN);
}
template <class T> int32_t ref_ilogb(T x) {
  const U64 b = bits(x) & ~Fmt<T>::sign;
  if (b == 0) return INT_MIN;
  if (b >= Fmt<T>::exp) return INT_MAX;
  int top = Fmt<T>::prec - 2;
  while (!(b >> top)) --top;  // denormals: the leading bit's position
  return b >= (U64)1 << (Fmt<T>::prec - 1) ? (int)(b >> (Fmt<T>::prec - 1)) - Fmt<T>::emax + 1
                                            : top + Fmt<T>::emin - 1;
}
template <class T> T below_one() { return from_bits<T>(bits(T(1)) - 1); }

const Rounding kByMode[4] = {Rounding::kNearestEven, Rounding::kDown, Rounding::kUp, Rounding::kTowardZero};

template <class T> void add_floating(std::vector<Reference>& v) {
  const std::string f = sizeof(T) == 4 ? "f" : "";
  auto add = [&](const std::string& name, Ref ref, const char* algorithm = "full", bool quiet = false) {
    v.push_back({name + f, algorithm, "", ref, quiet});
  };
  const std::pair<const char*, Rounding> kDirections[] = {
      {"ceil", Rounding::kUp}, {"floor", Rounding::kDown}, {"trunc", Rounding::kTowardZero}, {"round", Rounding::kHalfAway}};
  for (auto [name, d] : kDirections)
    add(name, [d = d](ARGS) { r[0] = bits(ref_round_integral(arg<T>(a, 0), d)); });
  add("rint", [](ARGS) { r[0] = bits(ref_round_integral(arg<T>(a, 0), kByMode[rm])); });
  add("nearbyint", [](ARGS) { r[0] = bits(ref_round_integral(arg<T>(a, 0), kByMode[rm])); }, "full", true);
  add("fabs", [](ARGS) { r[0] = a[0] & ~(U64)Fmt<T>::sign; });
  add("copysign", [](ARGS) { r[0] = (a[0] & ~(U64)Fmt<T>::sign) | (a[1] & Fmt<T>::sign); });
  add("fdim", [](ARGS) {
    const T x = arg<T>(a, 0), y = arg<T>(a, 1);
    r[0] = bits(is_nan(y) ? quiet(y) : is_nan(x) ? quiet(x) : x > y ? ieee(rm, mpfr_sub, x, y) : T(0));
  });
  const char* kSelect[] = {"fmax", "fmin", "maxmag", "minmag"};
  for (int k = 0; k < 4; ++k) add(kSelect[k], [k](ARGS) { r[0] = bits(ref_select(k, arg<T>(a, 0), arg<T>(a, 1))); });
  add("fma", [](ARGS) { r[0] = bits(ref_fma(rm, arg<T>(a, 0), arg<T>(a, 1), arg<T>(a, 2))); });
  const char* kRem[] = {"fmod", "remainder", "remquo"};
  for (int k = 0; k < 3; ++k)
    add(kRem[k], [k](ARGS) { r[0] = bits(ref_rem(k, arg<T>(a, 0), arg<T>(a, 1), &r[1])); });
  add("ldexp", [](ARGS) {  // zeros, infinities and NaN unchanged bit for bit
    const T x = arg<T>(a, 0);
    Mp m(x);
    r[0] = x == 0 || !std::isfinite(x) ? a[0] : bits(mp_round<T>(rm, [&](mpfr_ptr res, mpfr_rnd_t md) {
      return mpfr_mul_2si(res, m, (int32_t)a[1], md);
    }));
  });
  add("frexp", [](ARGS) {
    const T x = arg<T>(a, 0);
    const bool special = x == 0 || !std::isfinite(x);
    const int e = special ? 0 : ref_ilogb(x) + 1;
    r[0] = special ? a[0] : bits(std::ldexp(x, -e));  // exact
    r[1] = (uint32_t)e;
  });
  add("ilogb", [](ARGS) { r[0] = (uint32_t)ref_ilogb(arg<T>(a, 0)); });
  add("logb", [](ARGS) {
    const T x = arg<T>(a, 0);
    const int32_t e = ref_ilogb(x);
    r[0] = bits(is_nan(x) ? quiet(x) : e == INT_MIN ? -T(INFINITY) : e == INT_MAX ? T(INFINITY) : T(e));
  });
  add("modf", [](ARGS) {  // the fraction has x's sign; x - trunc(x) is exact
    const T x = arg<T>(a, 0), i = ref_round_integral(x, Rounding::kTowardZero);
    r[0] = bits(is_nan(x) ? quiet(x) : std::copysign(std::isinf(x) ? T(0) : x - i, x));
    r[1] = bits(i);
  });
  add("fract", [](ARGS) {  // min(x - floor(x) rounded in the mode, the largest value below 1), +0 when exact 0
    const T x = arg<T>(a, 0), fl = ref_round_integral(x, Rounding::kDown);
    const T d = std::fabs(ieee(rm, mpfr_sub, x, fl));
    r[0] = bits(is_nan(x) ? quiet(x) : x == 0 ? x : std::isinf(x) ? T(0) : std::fmin(d, below_one<T>()));
    r[1] = bits(fl);
  });
  add("nextafter", [](ARGS) {
    const T x = arg<T>(a, 0), y = arg<T>(a, 1);
    r[0] = bits(is_nan(x) ? quiet(x) : is_nan(y) ? quiet(y) : std::nextafter(x, y));
  });
  add("nan", [](ARGS) { r[0] = Fmt<T>::exp | Fmt<T>::quiet | (a[0] & Fmt<T>::mant); });
  // The square root rounded once in mode rm (the instruction); x < 0 gives
  // the default NaN, -0 itself.
  add("sqrt", [](ARGS) {
    const T x = arg<T>(a, 0);
    Mp m(x);
    r[0] = bits(is_nan(x) ? quiet(x) : x < 0 ? default_nan<T>() : mp_round<T>(rm, [&](mpfr_ptr res, mpfr_rnd_t d) {
      return mpfr_sqrt(res, m, d);
    }));
  });
  // Division: IEEE, but for the single approximate algorithms x * rcp(y) (the
  // hardware estimate, no refinement) where y is normal and below 2^126 (inv:
  // at most 0x1.ffdp+125, so that the estimate never falls below the normal range).
  for (const char* algorithm : {"full", "fast"}) {
    const bool approx = f == "f" && algorithm == std::string("fast");
    add("div", [approx](ARGS) {
      const T x = arg<T>(a, 0), y = arg<T>(a, 1), ay = std::fabs(y);
      const float e = _mm_cvtss_f32(_mm_rcp_ss(_mm_set_ss((float)y)));
      r[0] = bits(approx && ay >= 0x1p-126f && ay < 0x1p126f ? ieee(rm, mpfr_mul, x, (T)e) : ieee(rm, mpfr_div, x, y));
    }, algorithm);
    add("inv", [approx](ARGS) {
      const T y = arg<T>(a, 0), ay = std::fabs(y);
      const float e = _mm_cvtss_f32(_mm_rcp_ss(_mm_set_ss((float)y)));
      r[0] = bits(approx && ay >= 0x1p-126f && ay <= 0x1.ffdp+125f ? (T)e : ieee(rm, mpfr_div, T(1), y));
    }, algorithm);
  }
}

// ---- conversions -----------------------------------------------------------------------

// sign and magnitude rounded once to T in mode rm.
template <class T> T int_to_fp(bool neg, U64 mag, int rm) {
  Mp v;
  mpfr_set_uj(v, mag, MPFR_RNDN);
  if (neg) mpfr_neg(v, v, MPFR_RNDN);
  return mp_round<T>(rm, [&](mpfr_ptr res, mpfr_rnd_t m) { return mpfr_set(res, v, m); });
}

void add_conversions(std::vector<Reference>& v) {
  const char* kModes[] = {"rte", "rtn", "rtp", "rtz"};  // MXCSR's and CvtRound's order
  const char* kInts[] = {"i32", "u32", "i64", "u64"};
  for (int t = 0; t < 4; ++t)
    for (int m = 0; m < 4; ++m) {
      for (int s = 0; s < 4; ++s)  // to integer: sat or not, from double or float
        v.push_back({std::string("cvtfpto") + kInts[t] + kModes[m] + (s & 2 ? "nosat" : "sat") + (s & 1 ? "f" : ""),
                     "full", "", [t, m, s](ARGS) {
                       r[0] = ref_fp_to_int_bits((CvtTarget)t, (CvtRound)m, !(s & 2), a[0], s & 1);
                     }});
      // To floating: the rte members round in the caller's mode, applied to the
      // magnitude of a signed source (down and up swap for negative values).
      for (int to_float = 0; to_float < 2; ++to_float)
        v.push_back({std::string("cvt") + kInts[t] + "tofp" + kModes[m] + (to_float ? "f" : ""), "full", "",
                     [t, m, to_float](ARGS) {
                       const int64_t x = t == 0 ? (int32_t)a[0] : (int64_t)a[0];
                       const bool neg = (t == 0 || t == 2) && x < 0;
                       const U64 mag = neg ? 0 - (U64)x : t == 1 ? (uint32_t)a[0] : a[0];
                       const int mode = m ? m : neg && (rm == 1 || rm == 2) ? 3 - rm : rm;
                       r[0] = to_float ? bits(int_to_fp<float>(neg, mag, mode)) : bits(int_to_fp<double>(neg, mag, mode));
                     }});
    }
  for (int m = 0; m < 4; ++m)  // double to float; a NaN keeps its sign and upper payload bits, quieted
    v.push_back({std::string("cvtfp64tofp32") + kModes[m], "full", "", [m](ARGS) {
                   Mp x(from_bits<double>(a[0]));
                   r[0] = is_nan(from_bits<double>(a[0]))
                              ? (a[0] >> 32 & 0x80000000u) | 0x7fc00000u | (a[0] >> 29 & 0x3fffffu)
                              : bits(mp_round<float>(m ? m : rm, [&](mpfr_ptr res, mpfr_rnd_t md) { return mpfr_set(res, x, md); }));
                 }});
}

// ---- integer division --------------------------------------------------------------------

// C++ division, and where it is undefined: signed y = 0 gives (INT_MIN, x), INT_MIN / -1
// gives (INT_MIN, 0); unsigned y = 0 gives (0, x).
void divide(bool is_signed, uint32_t x, uint32_t y, U64* q, U64* rem) {
  const int32_t a = (int32_t)x, b = (int32_t)y;
  if (y == 0) *q = is_signed ? 0x80000000u : 0, *rem = x;
  else if (is_signed && a == INT_MIN && b == -1) *q = 0x80000000u, *rem = 0;
  else if (is_signed) *q = (uint32_t)(a / b), *rem = (uint32_t)(a % b);
  else *q = x / y, *rem = x % y;
}
void add_integer_division(std::vector<Reference>& v) {
  for (bool s : {true, false}) {
    const std::string p = s ? "i" : "u";
    v.push_back({p + "div", "full", "", [s](ARGS) { U64 t; divide(s, (uint32_t)a[0], (uint32_t)a[1], &r[0], &t); }});
    v.push_back({p + "rem", "full", "", [s](ARGS) { U64 t; divide(s, (uint32_t)a[0], (uint32_t)a[1], &t, &r[0]); }});
    v.push_back({p + "divrem", "full", "", [s](ARGS) { divide(s, (uint32_t)a[0], (uint32_t)a[1], &r[0], &r[1]); }});
    for (int k = 1; k <= 3; ++k) v[v.size() - k].random_log2 = 21;  // a quotient estimate: many pairs
  }
}

// Every exact (family, algorithm) that is built, named by its first class.
const std::vector<Reference>& references() {
  static const std::vector<Reference> all = [] {
    std::vector<Reference> v, built;
    add_floating<double>(v);
    add_floating<float>(v);
    add_conversions(v);
    add_integer_division(v);
    for (Reference& e : v)
      for (const ExportRow& r : kExports)
        if (e.family == r.family && e.algorithm == r.algorithm && r.width == 1) {
          e.cls = r.cls;
          built.push_back(e);
          break;
        }
    return built;
  }();
  return all;
}
std::string reference_name(const ::testing::TestParamInfo<Reference>& i) {
  return i.param.family + (i.param.cls == "plain" ? "" : "_" + i.param.cls);
}

// ---- directed inputs -------------------------------------------------------------------

std::vector<U64> directed(Lane t) {
  std::vector<U64> v;
  if (t == kD) v.assign(std::begin(kDoubleSpecials), std::end(kDoubleSpecials));
  if (t == kS) v.assign(std::begin(kFloatSpecials), std::end(kFloatSpecials));
  if (is_fp(t)) {
    const int m = mant_bits(t), b = bias_of(t);
    for (U64 s : {(U64)0, sign_bit(t)}) {
      for (int e = 1 - b; e <= b; ++e)  // every normal power of two and two neighbours each side
        for (int d = -2; d <= 2; ++d) v.push_back(make_fp(t, 0, e, 0) + d | s);
      for (int k = 0; k < m; ++k) v.push_back(s | 1ull << k);  // the denormal powers of two
      for (int p = 0; p <= 64; ++p)  // integers and quarters around every power of two
        for (int n = -3; n <= 3; ++n)
          for (double q : {0.0, 0.25, 0.5, 0.75}) {
            const double x = std::ldexp(1.0, p) + n + q;
            if (x >= 0 && x - std::ldexp(1.0, p) == n + q && (t == kD || (double)(float)x == x))
              v.push_back((t == kD ? d_bits(x) : f_bits((float)x)) | s);
          }
      for (int k = 0; t == kD && k < 16; ++k)  // narrowing: float denormal ties, the float overflow edge
        for (double x : {(2 * k + 1) * 0x1p-150, 0x1p-126 - (2 * k + 1) * 0x1p-150, 0x1.ffffffp127 + (k - 8) * 0x1p100})
          for (int d = -1; d <= 1; ++d) v.push_back((d_bits(x) + d) | s);
    }
    return v;
  }
  const bool wide = lane_bytes(t) == 8;
  for (U64 x : kInt64Edges) v.push_back(wide ? x : (uint32_t)x);
  for (uint32_t x : kInt32Edges) v.push_back(x);
  Rng g(7);
  for (int k = 0; k < (wide ? 64 : 32); ++k)
    for (int d = -3; d <= 3; ++d) {
      const U64 x = (1ull << k) + d;
      v.push_back(wide ? x : (uint32_t)x), v.push_back(wide ? 0 - x : (uint32_t)(0 - x));
    }
  for (int p : {24, 53})  // ties of a rounding to p bits, every leading bit position
    for (int n = p + 1; n <= (wide ? 64 : 32); ++n)
      for (int k = 0; k < 8; ++k) {
        const U64 x = near_tie(g, n, p);
        v.push_back(wide ? x : (uint32_t)x), v.push_back(wide ? 0 - x : (uint32_t)(0 - x));
      }
  return v;
}

// The directed calls of a signature: one argument's directed values; the
// special values crossed for two or three (a sixteen-value subset) floating
// arguments, or against the directed integers (ldexp); the integer edges
// crossed, and x at the largest multiples of y and one off (division).
Lanes directed(const Shape& sh) {
  Lanes v(sh.nin);
  const Lane t = sh.in_t[0];
  const std::vector<U64> all = directed(t);
  if (sh.nin == 1) return v[0] = all, v;
  const size_t head = t == kD ? count_of(kDoubleSpecials) : t == kS ? count_of(kFloatSpecials)
                                                          : count_of(kInt64Edges) + count_of(kInt32Edges);
  const std::vector<U64> x(all.begin(), all.begin() + head), y = sh.in_t[1] == t ? x : directed(sh.in_t[1]);
  const int pick[] = {0, 1, 2, 3, 4, 8, 10, 11, 14, 16, 17, 18, 19, 20, 24, 25};
  for (size_t i = 0; i < (sh.nin == 3 ? 16 : x.size()); ++i)
    for (size_t j = 0; j < (sh.nin == 3 ? 16 : y.size()); ++j)
      for (int k = 0; k < (sh.nin == 3 ? 16 : 1); ++k) {
        v[0].push_back(sh.nin == 3 ? x[pick[i]] : x[i]), v[1].push_back(sh.nin == 3 ? x[pick[j]] : y[j]);
        if (sh.nin == 3) v[2].push_back(x[pick[k]]);
      }
  if (is_fp(t)) return v;
  const bool s = t == kI;
  const int64_t lim = s ? INT_MAX : UINT32_MAX;
  for (int k = 0; k < 32; ++k)
    for (int64_t d : {(1ll << k) - 1, 1ll << k, (1ll << k) + 1}) {
      const int64_t top = d ? lim / d * d : 0;
      for (int64_t sign : {1, -1})
        for (int64_t x0 : {top, top - 1, top + 1, -top, -top - 1, lim, s ? (int64_t)INT_MIN : 0})
          if (d && d <= lim && (s || sign > 0)) v[0].push_back((uint32_t)x0), v[1].push_back((uint32_t)(sign * d));
    }
  return v;
}

int scale() {
  const char* s = std::getenv("RAVL_TEST_SCALE");
  return s ? std::max(1, std::atoi(s)) : 1;
}

std::vector<U64> in_of(const Lanes& args, size_t j) {
  std::vector<U64> v(3, 0);
  for (size_t i = 0; i < args.size(); ++i) v[i] = args[i][j];
  return v;
}
std::string text(const Lanes& args, size_t j) {
  std::string s;
  for (size_t i = 0; i < args.size(); ++i) {
    char b[24];
    snprintf(b, sizeof b, "%s0x%llx", i ? ", " : "", (unsigned long long)args[i][j]);
    s += b;
  }
  return s;
}

class Exact : public ::testing::TestWithParam<Reference> {};

TEST_P(Exact, MatchesReference) {
  const Reference& ref = GetParam();
  const Callee* one = callee(member(ref.family, ref.cls, 1));
  ASSERT_TRUE(one);
  const Shape& sh = one->shape;
  Lanes sets[2] = {directed(sh), Lanes(sh.nin)};
  Rng g(std::hash<std::string>()(ref.family));
  for (int k = 0; k < (1 << ref.random_log2) * scale(); ++k) {
    U64 v[3];
    gen_call(sh.in_t, sh.nin, g, v);
    for (int i = 0; i < sh.nin; ++i) sets[1][i].push_back(v[i]);
  }
  int bad = 0;
  // Directed inputs at every width in the default rounding mode and at width 8
  // in the others; random ones at width 16 (a quarter of them in the directed modes).
  for (int rm = 0; rm < 4; ++rm)
    for (int set = 0; set < 2; ++set) {
      Lanes args = sets[set];
      for (auto& a : args) a.resize(set && rm ? a.size() / 4 : a.size());
      const size_t n = args[0].size();
      Lanes want(sh.nout, std::vector<U64>(n));
      for (size_t j = 0; j < n; ++j) {
        U64 out[3] = {};
        ref.ref(in_of(args, j).data(), out, rm);
        for (int k = 0; k < sh.nout; ++k) want[k][j] = lane_bytes(sh.out_t[k]) == 4 ? (uint32_t)out[k] : out[k];
      }
      for (int w : set ? std::vector<int>{16} : rm ? std::vector<int>{8} : std::vector<int>{1, 2, 3, 4, 8, 16}) {
        const std::string name = member(ref.family, ref.cls, w);
        const unsigned saved = _mm_getcsr();
        _mm_setcsr((saved & ~0x603fu) | (unsigned)rm << 13);  // the rounding field, flags cleared
        const Lanes got = run_lanes(name, args);
        const unsigned flags = _mm_getcsr();
        _mm_setcsr(saved);
        if (ref.quiet) EXPECT_EQ(flags & 0x20, 0u) << name << " raised inexact";
        for (size_t j = 0; j < n; ++j)
          for (int k = 0; k < sh.nout; ++k)
            if (got[k][j] != want[k][j] && bad++ < 8)
              ADD_FAILURE() << name << " in rounding mode " << rm << " on " << text(args, j) << ": output " << k
                            << " is 0x" << std::hex << got[k][j] << ", want 0x" << want[k][j];
      }
    }
  EXPECT_EQ(bad, 0) << "wrong lanes";
}

INSTANTIATE_TEST_SUITE_P(, Exact, ::testing::ValuesIn(references()), reference_name);

}  // namespace

bool reference(const std::string& family, const std::string& algorithm, const uint64_t* in, uint64_t* out, int rm) {
  for (const Reference& e : references())
    if (e.family == family && e.algorithm == algorithm) {
      e.ref(in, out, rm);
      return true;
    }
  return false;
}

// Every built family and algorithm has an exact reference or an accuracy bound.
TEST(Coverage, EveryAlgorithmHasAReferenceOrABound) {
  for (const ExportRow& e : kExports) {
    uint64_t in[3] = {}, out[3];
    EXPECT_TRUE(reference(e.family, e.algorithm, in, out, 0) || class_bound(e.family, e.algorithm) > 0)
        << e.family << " " << e.algorithm << " is not tested";
  }
}

}  // namespace ravl_test
