// Rounding conversions: int32, uint32, int64 and uint64 to double and float
// (cvt{i32,u32,i64,u64}tofp{rte,rtn,rtp,rtz}[f]) and double to float
// (cvtfp64tofp32{rte,rtn,rtp,rtz}), bit for bit against MPFR
// (tests/common/ref_int_to_fp.h) at widths 1, 2, 3, 4, 8 and 16:
// - every power of two and its neighbours, the ties and near-ties at 24, 25,
//   53 and 54 significant bits in every binade, the extreme integers, zero,
//   and random patterns (uniform and with a random leading bit);
// - narrowing: random doubles over the whole range and over the float range,
//   FLT_MAX and the overflow boundary, the float subnormal range and the
//   underflow to zero, +-0, +-inf and NaN payloads;
// - under each of the four MXCSR rounding modes of the caller, the directed
//   members give the same bits and rte gives the bits of the caller's mode
//   (on the magnitude, for signed sources).
#include <gtest/gtest.h>
#include <xmmintrin.h>

#include <cfloat>
#include <cstdint>
#include <cstring>
#include <random>
#include <string>
#include <vector>

#include "common/ref_int_to_fp.h"
#include "ocl_ravl_l9.h"

namespace {

using ravl_test::RefRm;

template <class V> V ld(const unsigned char* p) {
  V v;
  std::memcpy(&v, p, sizeof v);
  return v;
}
template <class V> void st(void* out, V v, size_t bytes) { std::memcpy(out, &v, bytes); }

// call_<family>(w, in, out): one call of width w on the lanes at `in` (read
// up to 16 lanes), exactly w result lanes written to `out`.
using Caller = void (*)(int w, const unsigned char* in, void* out);

// Sources of 32-bit lanes: width 8 in one 256-bit register, 16 in two.
#define CALLER32(fam, IT, IS, OT)                                                                      \
  void call_##fam(int w, const unsigned char* p, void* out) {                                          \
    using V4 = ocl_ravl_##IS##4;                                                                       \
    using V8 = ocl_ravl_##IS##8;                                                                       \
    switch (w) {                                                                                       \
      case 1: { OT r = __ocl_ravl_l9_##fam##1(ld<IT>(p)); st(out, r, sizeof r); break; }               \
      case 2: st(out, __ocl_ravl_l9_##fam##2(ld<V4>(p)), 2 * sizeof(OT)); break;                       \
      case 3: st(out, __ocl_ravl_l9_##fam##3(ld<V4>(p)), 3 * sizeof(OT)); break;                       \
      case 4: st(out, __ocl_ravl_l9_##fam##4(ld<V4>(p)), 4 * sizeof(OT)); break;                       \
      case 8: st(out, __ocl_ravl_l9_##fam##8(ld<V8>(p)), 8 * sizeof(OT)); break;                       \
      case 16: st(out, __ocl_ravl_l9_##fam##16(ld<V8>(p), ld<V8>(p + 32)), 16 * sizeof(OT)); break;    \
    }                                                                                                  \
  }
// Sources of 64-bit lanes: width 2 in a 128-bit register, 8 in two 256-bit
// registers, 16 in four.
#define CALLER64(fam, IT, IS, OT)                                                                          \
  void call_##fam(int w, const unsigned char* p, void* out) {                                              \
    using V2 = ocl_ravl_##IS##2;                                                                           \
    using V4 = ocl_ravl_##IS##4;                                                                           \
    switch (w) {                                                                                           \
      case 1: { OT r = __ocl_ravl_l9_##fam##1(ld<IT>(p)); st(out, r, sizeof r); break; }                   \
      case 2: st(out, __ocl_ravl_l9_##fam##2(ld<V2>(p)), 2 * sizeof(OT)); break;                           \
      case 3: st(out, __ocl_ravl_l9_##fam##3(ld<V4>(p)), 3 * sizeof(OT)); break;                           \
      case 4: st(out, __ocl_ravl_l9_##fam##4(ld<V4>(p)), 4 * sizeof(OT)); break;                           \
      case 8: st(out, __ocl_ravl_l9_##fam##8(ld<V4>(p), ld<V4>(p + 32)), 8 * sizeof(OT)); break;           \
      case 16:                                                                                             \
        st(out, __ocl_ravl_l9_##fam##16(ld<V4>(p), ld<V4>(p + 32), ld<V4>(p + 64), ld<V4>(p + 96)),        \
           16 * sizeof(OT));                                                                               \
        break;                                                                                             \
    }                                                                                                      \
  }

#define CALLERS_MODE(rm)                                   \
  CALLER32(cvti32tofp##rm, int32_t, int, double)           \
  CALLER32(cvti32tofp##rm##f, int32_t, int, float)         \
  CALLER32(cvtu32tofp##rm, uint32_t, uint, double)         \
  CALLER32(cvtu32tofp##rm##f, uint32_t, uint, float)       \
  CALLER64(cvti64tofp##rm, int64_t, long, double)          \
  CALLER64(cvti64tofp##rm##f, int64_t, long, float)        \
  CALLER64(cvtu64tofp##rm, uint64_t, ulong, double)        \
  CALLER64(cvtu64tofp##rm##f, uint64_t, ulong, float)      \
  CALLER64(cvtfp64tofp32##rm, double, double, float)
CALLERS_MODE(rte)
CALLERS_MODE(rtn)
CALLERS_MODE(rtp)
CALLERS_MODE(rtz)

enum Src { kI32, kU32, kI64, kU64, kF64 };

struct Family {
  const char* name;
  Caller call;
  Src src;
  bool to_float;
  RefRm rm;
};

#define FAMILIES_MODE(rm)                                                                    \
  {"cvti32tofp" #rm, call_cvti32tofp##rm, kI32, false, RefRm::rm},                           \
      {"cvti32tofp" #rm "f", call_cvti32tofp##rm##f, kI32, true, RefRm::rm},                 \
      {"cvtu32tofp" #rm, call_cvtu32tofp##rm, kU32, false, RefRm::rm},                       \
      {"cvtu32tofp" #rm "f", call_cvtu32tofp##rm##f, kU32, true, RefRm::rm},                 \
      {"cvti64tofp" #rm, call_cvti64tofp##rm, kI64, false, RefRm::rm},                       \
      {"cvti64tofp" #rm "f", call_cvti64tofp##rm##f, kI64, true, RefRm::rm},                 \
      {"cvtu64tofp" #rm, call_cvtu64tofp##rm, kU64, false, RefRm::rm},                       \
      {"cvtu64tofp" #rm "f", call_cvtu64tofp##rm##f, kU64, true, RefRm::rm},                 \
  {                                                                                          \
    "cvtfp64tofp32" #rm, call_cvtfp64tofp32##rm, kF64, true, RefRm::rm                       \
  }
const Family kFamilies[] = {FAMILIES_MODE(rte), FAMILIES_MODE(rtn), FAMILIES_MODE(rtp), FAMILIES_MODE(rtz)};

int src_bytes(Src s) { return s == kI32 || s == kU32 ? 4 : 8; }

// The expected bits (zero-extended) of one lane; x is the source's bits
// (a 32-bit source in the low half).
uint64_t expected(const Family& f, uint64_t x) {
  using namespace ravl_test;
  bool neg = false;
  uint64_t mag = x;
  switch (f.src) {
    case kI32: neg = (int32_t)x < 0, mag = neg ? 0 - (uint64_t)(int64_t)(int32_t)x : (uint32_t)x; break;
    case kU32: mag = (uint32_t)x; break;
    case kI64: neg = (int64_t)x < 0, mag = neg ? 0 - x : x; break;
    case kU64: break;
    case kF64: {
      double d;
      std::memcpy(&d, &x, 8);
      float r = ref_double_to_float(d, f.rm);
      uint32_t b;
      std::memcpy(&b, &r, 4);
      return b;
    }
  }
  if (f.to_float) {
    float r = ref_int_to_float(neg, mag, f.rm);
    uint32_t b;
    std::memcpy(&b, &r, 4);
    return b;
  }
  double r = ref_int_to_double(neg, mag, f.rm);
  uint64_t b;
  std::memcpy(&b, &r, 8);
  return b;
}

// The family's results on xs at width w (bits, zero-extended).
std::vector<uint64_t> run(const Family& f, int w, const std::vector<uint64_t>& xs) {
  size_t n = xs.size(), ib = src_bytes(f.src), ob = f.to_float ? 4 : 8;
  std::vector<unsigned char> in((n + 16) * ib, 0xA5), out((n + 16) * ob);
  for (size_t i = 0; i < n; ++i) std::memcpy(&in[i * ib], &xs[i], ib);  // little-endian: low bytes
  for (size_t i = 0; i < n; i += w) f.call(w, &in[i * ib], &out[i * ob]);
  std::vector<uint64_t> r(n, 0);
  for (size_t i = 0; i < n; ++i) std::memcpy(&r[i], &out[i * ob], ob);
  return r;
}

std::string hex(uint64_t v) {
  char b[24];
  std::snprintf(b, sizeof b, "0x%llx", (unsigned long long)v);
  return b;
}

// Compares f at every width with the reference; returns the first faults.
std::string check(const Family& f, const std::vector<uint64_t>& xs, std::initializer_list<int> widths) {
  std::vector<uint64_t> want(xs.size());
  for (size_t i = 0; i < xs.size(); ++i) want[i] = expected(f, xs[i]);
  std::string faults;
  int count = 0;
  for (int w : widths) {
    std::vector<uint64_t> got = run(f, w, xs);
    for (size_t i = 0; i < xs.size(); ++i)
      if (got[i] != want[i] && count++ < 6)
        faults += std::string(f.name) + " width " + std::to_string(w) + ": x=" + hex(xs[i]) + " got " +
                  hex(got[i]) + " want " + hex(want[i]) + "\n";
  }
  if (count) faults += std::to_string(count) + " faults\n";
  return faults;
}

// ---- inputs ----------------------------------------------------------------------

void add_pm(std::vector<uint64_t>& v, uint64_t x) {
  v.push_back(x);
  v.push_back(0 - x);
}

// Integers: powers of two and neighbours, ties and near-ties at 24 and 53
// bits in every binade (values with exactly 24/25/53/54 significant bits and
// more), the extremes; each also negated.
std::vector<uint64_t> integer_edges() {
  std::vector<uint64_t> v = {0, 1, 0x7FFFFFFFu, 0x80000000u, 0xFFFFFFFFu, 0x7FFFFFFFFFFFFFFFull,
                             0x8000000000000000ull, 0xFFFFFFFFFFFFFFFFull, 16777217, 0xFFFFFF80u, 0xFFFFFF7Fu};
  for (int k = 0; k < 64; ++k)
    for (int64_t d = -3; d <= 3; ++d) add_pm(v, (1ull << k) + (uint64_t)d);
  std::mt19937_64 rng(24);
  for (int p : {24, 53}) {
    for (int e = p; e < 64; ++e) {  // e: position of the leading bit
      int drop = e - p + 1;           // bits below the target precision
      for (int t = 0; t < 6; ++t) {
        uint64_t mant = (1ull << (p - 1)) | (rng() & ((1ull << (p - 1)) - 1));
        if (t == 0) mant = (1ull << p) - 1;  // all ones: rounding up carries into the next binade
        if (t == 1) mant &= ~1ull;           // even
        if (t == 2) mant |= 1;               // odd
        uint64_t base = mant << drop, half = 1ull << (drop - 1), low = rng() & (half - 1);
        for (uint64_t x : {base, base + half, base + half - 1, base + half + 1, base + 1, base + 2 * half - 1,
                           base + low, base + half + low, base + (half >> 1)})
          add_pm(v, x);
      }
    }
  }
  // The same for 32-bit sources: leading bit at 24..31, in the low half.
  for (int e = 24; e < 32; ++e)
    for (int t = 0; t < 8; ++t) {
      int drop = e - 23;
      uint32_t mant = (1u << 23) | (uint32_t)(rng() & 0x7FFFFF);
      if (t == 0) mant = 0xFFFFFF;
      uint32_t base = mant << drop, half = 1u << (drop - 1);
      for (uint32_t x : {base, base + half, base + half - 1, base + half + 1, base + 1})
        v.push_back(x), v.push_back(0u - x);
    }
  return v;
}

std::vector<uint64_t> integer_random(size_t n, uint64_t seed) {
  std::mt19937_64 rng(seed);
  std::vector<uint64_t> v(n);
  for (size_t i = 0; i < n; ++i) {
    uint64_t x = rng();
    // Half uniform, half with a random leading bit (every binade equally).
    if (i & 1) x >>= rng() % 64;
    // 32-bit sources read the low half: give it a random leading bit too.
    if (i & 2) x = (x & ~0xFFFFFFFFull) | ((x & 0xFFFFFFFFu) >> (rng() % 32));
    v[i] = x;
  }
  return v;
}

uint64_t dbits(double d) {
  uint64_t b;
  std::memcpy(&b, &d, 8);
  return b;
}
double dfrom(uint64_t b) {
  double d;
  std::memcpy(&d, &b, 8);
  return d;
}

std::vector<uint64_t> double_edges() {
  std::vector<uint64_t> v;
  auto both = [&](double d) {
    v.push_back(dbits(d));
    v.push_back(dbits(d) ^ 0x8000000000000000ull);
  };
  auto around = [&](double d) {  // d and its double neighbours, both signs
    for (int k = -2; k <= 2; ++k) both(dfrom(dbits(d) + (uint64_t)(int64_t)k));
  };
  const double kMax = FLT_MAX, kUlpMax = 0x1p104;
  for (double d : {0.0, 1.0, 0.1, 1e300, 1e-50, 1e-300, DBL_MAX, DBL_MIN, 0x1p-1074, kMax, kMax + kUlpMax / 2,
                   0x1p128, kMax + kUlpMax / 4, kMax + 3 * kUlpMax / 4, (double)FLT_MIN, 0x1p-149, 0x1p-150,
                   0x1.8p-149, 0x1.8p-150, 0x1p-151, 3 * 0x1p-150, 5 * 0x1p-150, 0x1.fffffcp-127,
                   0x1.fffffep-127, 0x1.fffffp-127, 0x1.000001p-126, 0x1.0000008p+0, 0x1.0000018p+0})
    around(d);
  both(INFINITY);
  // Subnormal range: k/2 * 2^-149 (exact, ties, between) for small k and near 2^-126.
  for (int k = 0; k < 64; ++k) {
    around(k * 0x1p-150);
    around(0x1p-126 - k * 0x1p-150);
  }
  // NaNs: quiet and signalling, payload in the kept upper bits and in the dropped low bits.
  for (uint64_t nan : {0x7FF8000000000000ull, 0x7FF0000000000001ull, 0x7FF4000000000000ull, 0x7FFFFFFFFFFFFFFFull,
                       0x7FF00000E0000000ull, 0x7FF800001FFFFFFFull, 0x7FF0000020000000ull}) {
    v.push_back(nan);
    v.push_back(nan | 0x8000000000000000ull);
  }
  return v;
}

std::vector<uint64_t> double_random(size_t n, uint64_t seed) {
  std::mt19937_64 rng(seed);
  std::vector<uint64_t> v(n);
  for (size_t i = 0; i < n; ++i) {
    uint64_t x = rng();
    switch (i % 4) {
      case 0: break;  // any pattern, NaN and infinities included
      case 1:         // exponent within the float range and its borders: 2^-160 .. 2^130
        x = (x & 0x800FFFFFFFFFFFFFull) | (uint64_t)(1023 - 160 + (int)(rng() % 291)) << 52;
        break;
      case 2:  // a float, widened: exact, must come back unchanged
        x = (x & 0x800FFFFFE0000000ull) | (uint64_t)(1023 - 126 + (int)(rng() % 254)) << 52;
        break;
      case 3: {  // a tie between two normal floats, or one double ulp or a random amount off it
        const uint64_t off[4] = {0, 1, (uint64_t)-1, (rng() & 0x1FFFFFFF) - 0x10000000};
        x = ((x & 0x800FFFFFE0000000ull) | 0x10000000ull) + off[rng() % 4];
        x = (x & 0x800FFFFFFFFFFFFFull) | (uint64_t)(1023 - 126 + (int)(rng() % 254)) << 52;
        break;
      }
    }
    v[i] = x;
  }
  return v;
}

std::vector<uint64_t> edges(Src s) { return s == kF64 ? double_edges() : integer_edges(); }
std::vector<uint64_t> randoms(Src s, size_t n) { return s == kF64 ? double_random(n, 7) : integer_random(n, 11); }

// ---- tests --------------------------------------------------------------------------

TEST(CvtIntToFp, ReferenceAgreesWithHardwareNearest) {
  // The reference's rte is the C++ conversion in the default environment.
  for (uint64_t x : integer_random(20000, 3)) {
    ASSERT_EQ(ravl_test::ref_int_to_float(false, x, RefRm::rte), (float)x) << hex(x);
    ASSERT_EQ(ravl_test::ref_int_to_double(false, x, RefRm::rte), (double)x) << hex(x);
    ASSERT_EQ(ravl_test::ref_i64_to_float((int64_t)x, RefRm::rte), (float)(int64_t)x) << hex(x);
  }
  for (uint64_t x : double_random(20000, 5)) {
    double d = dfrom(x);
    float r = ravl_test::ref_double_to_float(d, RefRm::rte), h = (float)d;
    ASSERT_EQ(std::memcmp(&r, &h, 4), 0) << hex(x);
  }
}

TEST(CvtIntToFp, KnownResults) {
  struct Case {
    const char* fam;
    uint64_t x;
    uint64_t want;  // bits
  };
  auto f32 = [](float f) { uint32_t b; std::memcpy(&b, &f, 4); return (uint64_t)b; };
  auto f64 = [](double d) { return dbits(d); };
  const Case cases[] = {
      {"cvti32tofprtef", 16777217, f32(16777216.0f)},
      {"cvti32tofprtpf", 16777217, f32(16777218.0f)},
      {"cvti32tofprtnf", (uint32_t)-16777217, f32(-16777218.0f)},
      {"cvti32tofprtzf", (uint32_t)-16777217, f32(-16777216.0f)},
      {"cvti32tofprtef", 0x80000000u, f32(-2147483648.0f)},
      {"cvtu64tofprte", ~0ull, f64(18446744073709551616.0)},
      {"cvtu64tofprtz", ~0ull, f64(18446744073709549568.0)},
      {"cvti64tofprte", 0x8000000000000000ull, f64(-9223372036854775808.0)},
      {"cvtfp64tofp32rtz", f64(1e300), f32(FLT_MAX)},
      {"cvtfp64tofp32rte", f64(1e300), f32(INFINITY)},
      {"cvtfp64tofp32rtn", f64(-1e-50), 0x80000001u},
      {"cvtfp64tofp32rtp", f64(1e-50), 0x00000001u},
      {"cvtfp64tofp32rtz", f64(1e-50), 0},
      {"cvtfp64tofp32rtn", f64(0.1), f32(0.099999994f)},
      {"cvtfp64tofp32rtp", f64(0.1), f32(0.1f)},
      {"cvtfp64tofp32rtn", f64(-INFINITY), f32(-INFINITY)},
  };
  for (const Case& c : cases) {
    const Family* f = nullptr;
    for (const Family& g : kFamilies)
      if (std::string(g.name) == c.fam) f = &g;
    ASSERT_NE(f, nullptr) << c.fam;
    for (int w : {1, 2, 3, 4, 8, 16}) {
      std::vector<uint64_t> got = run(*f, w, std::vector<uint64_t>(16, c.x));
      for (int k = 0; k < w; ++k) EXPECT_EQ(got[k], c.want) << c.fam << " width " << w << " x=" << hex(c.x);
    }
  }
}

TEST(CvtIntToFp, EdgesEveryWidth) {
  for (const Family& f : kFamilies) {
    std::vector<uint64_t> xs = edges(f.src);
    EXPECT_EQ(check(f, xs, {1, 2, 3, 4, 8, 16}), "");
  }
}

TEST(CvtIntToFp, RandomPatterns) {
  for (const Family& f : kFamilies) {
    std::vector<uint64_t> xs = randoms(f.src, 300000);
    EXPECT_EQ(check(f, xs, {1, 4, 16}), "");
  }
}

// Under each caller rounding mode (MXCSR): the directed members give the
// bits of their named mode, and rte, which rounds in the caller's mode, gives
// the bits of that mode (applied to the magnitude for signed sources): so the
// final sum is one correct rounding in every mode.
TEST(CvtIntToFp, CallerRoundingMode) {
  const unsigned kModes[] = {_MM_ROUND_NEAREST, _MM_ROUND_DOWN, _MM_ROUND_UP, _MM_ROUND_TOWARD_ZERO};
  const RefRm kRefModes[] = {RefRm::rte, RefRm::rtn, RefRm::rtp, RefRm::rtz};
  for (const Family& named : kFamilies) {
    std::vector<uint64_t> xs = edges(named.src), more = randoms(named.src, 20000);
    xs.insert(xs.end(), more.begin(), more.end());
    for (int mi = 0; mi < 4; ++mi) {
      Family f = named;
      if (f.rm == RefRm::rte) f.rm = kRefModes[mi];
      std::vector<uint64_t> want(xs.size());
      for (size_t i = 0; i < xs.size(); ++i) {
        // rte of a signed source rounds the magnitude in the caller's mode
        // and then puts the sign back: down and up swap for negative values.
        Family g = f;
        bool negative = (f.src == kI32 && (int32_t)xs[i] < 0) || (f.src == kI64 && (int64_t)xs[i] < 0);
        if (named.rm == RefRm::rte && negative && f.rm == RefRm::rtn) g.rm = RefRm::rtp;
        else if (named.rm == RefRm::rte && negative && f.rm == RefRm::rtp) g.rm = RefRm::rtn;
        want[i] = expected(g, xs[i]);
      }
      for (int w : {1, 8}) {
        unsigned saved = _mm_getcsr();
        _mm_setcsr((saved & ~_MM_ROUND_MASK) | kModes[mi]);
        std::vector<uint64_t> got = run(f, w, xs);  // no floating-point arithmetic in here
        _mm_setcsr(saved);
        int faults = 0;
        for (size_t i = 0; i < xs.size(); ++i)
          if (got[i] != want[i] && faults++ < 4)
            ADD_FAILURE() << named.name << " width " << w << " MXCSR mode " << hex(kModes[mi]) << ": x=" << hex(xs[i])
                          << " got " << hex(got[i]) << " want " << hex(want[i]);
      }
    }
  }
}

}  // namespace
