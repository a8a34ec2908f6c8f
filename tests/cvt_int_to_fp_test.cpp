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
#include <cstdio>
#include <cstdint>
#include <random>
#include <string>
#include <vector>

#include "tests/common/call_many.h"
#include "tests/common/fp_bits.h"
#include "tests/common/ref_int_to_fp.h"

namespace {

using ravl_test::RefRm;

enum Src { kI32, kU32, kI64, kU64, kF64 };

struct Family {
  std::string name;
  Src src;
  bool to_float;
  RefRm rm;
};

// cvt{i32,u32,i64,u64}tofp{rte,rtn,rtp,rtz}[f] and cvtfp64tofp32{rte,rtn,rtp,rtz}.
std::vector<Family> families() {
  std::vector<Family> v;
  const char* rn[] = {"rte", "rtn", "rtp", "rtz"};
  const RefRm rv[] = {RefRm::rte, RefRm::rtn, RefRm::rtp, RefRm::rtz};
  const char* sn[] = {"i32", "u32", "i64", "u64"};
  for (int r = 0; r < 4; ++r) {
    for (int s = 0; s < 4; ++s)
      for (int f = 0; f < 2; ++f)
        v.push_back({std::string("cvt") + sn[s] + "tofp" + rn[r] + (f ? "f" : ""), (Src)s, f == 1, rv[r]});
    v.push_back({std::string("cvtfp64tofp32") + rn[r], kF64, true, rv[r]});
  }
  return v;
}
const std::vector<Family> kFamilies = families();

// The expected bits (zero-extended) of one lane; x is the source's bits (a
// 32-bit source in the low half); `caller`: the MXCSR rounding mode, in which
// the rte members round, on the magnitude for signed sources (so down and up
// swap for negative values).
uint64_t expected(const Family& f, uint64_t x, RefRm caller = RefRm::rte) {
  using namespace ravl_test;
  bool neg = false;
  uint64_t mag = x;
  switch (f.src) {
    case kI32: neg = (int32_t)x < 0, mag = neg ? 0 - (uint64_t)(int64_t)(int32_t)x : (uint32_t)x; break;
    case kU32: mag = (uint32_t)x; break;
    case kI64: neg = (int64_t)x < 0, mag = neg ? 0 - x : x; break;
    default: break;
  }
  RefRm rm = f.rm == RefRm::rte ? caller : f.rm;
  if (f.rm == RefRm::rte && neg && (rm == RefRm::rtn || rm == RefRm::rtp)) rm = rm == RefRm::rtn ? RefRm::rtp : RefRm::rtn;
  if (f.src == kF64) return bits(ref_double_to_float(from_bits<double>(x), rm));
  return f.to_float ? bits(ref_int_to_float(neg, mag, rm)) : bits(ref_int_to_double(neg, mag, rm));
}

std::string hex(uint64_t v) {
  char b[24];
  std::snprintf(b, sizeof b, "0x%llx", (unsigned long long)v);
  return b;
}

// Compares f at each width with the reference, the calls made under MXCSR
// rounding mode `mode` (0-3: nearest, down, up, toward zero); returns the
// first faults.
std::string check(const Family& f, const std::vector<uint64_t>& xs, std::initializer_list<int> widths, int mode = 0) {
  const unsigned kModes[] = {_MM_ROUND_NEAREST, _MM_ROUND_DOWN, _MM_ROUND_UP, _MM_ROUND_TOWARD_ZERO};
  const RefRm kRefModes[] = {RefRm::rte, RefRm::rtn, RefRm::rtp, RefRm::rtz};
  std::vector<uint64_t> want(xs.size());
  for (size_t i = 0; i < xs.size(); ++i) want[i] = expected(f, xs[i], kRefModes[mode]);
  std::string faults;
  int count = 0;
  for (int w : widths) {
    const unsigned saved = _mm_getcsr();
    _mm_setcsr((saved & ~_MM_ROUND_MASK) | kModes[mode]);
    const std::vector<uint64_t> got = ravl_test::map_bits(f.name + std::to_string(w), xs);  // no floating point here
    _mm_setcsr(saved);
    for (size_t i = 0; i < xs.size(); ++i)
      if (got[i] != want[i] && count++ < 6)
        faults += f.name + " width " + std::to_string(w) + " MXCSR mode " + std::to_string(mode) + ": x=" +
                  hex(xs[i]) + " got " + hex(got[i]) + " want " + hex(want[i]) + "\n";
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

using ravl_test::bits;
uint64_t dbits(double d) { return bits(d); }
double dfrom(uint64_t b) { return ravl_test::from_bits<double>(b); }

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
    ASSERT_EQ(bits(ravl_test::ref_double_to_float(dfrom(x), RefRm::rte)), bits((float)dfrom(x))) << hex(x);
  }
}

TEST(CvtIntToFp, KnownResults) {
  struct Case {
    const char* fam;
    uint64_t x;
    uint64_t want;  // bits
  };
  auto f32 = [](float f) { return (uint64_t)bits(f); };
  auto f64 = [](double d) { return bits(d); };
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
      if (g.name == c.fam) f = &g;
    ASSERT_NE(f, nullptr) << c.fam;
    EXPECT_EQ(expected(*f, c.x), c.want) << "reference " << c.fam << " x=" << hex(c.x);
    EXPECT_EQ(check(*f, std::vector<uint64_t>(16, c.x), {1, 2, 3, 4, 8, 16}), "");
  }
}

TEST(CvtIntToFp, EdgesEveryWidth) {
  for (const Family& f : kFamilies) {
    std::vector<uint64_t> xs = edges(f.src);
    EXPECT_EQ(check(f, xs, {1, 2, 3, 4, 8, 16}), "");
  }
}

// 300000 random sources per family at width 16, 5000 at widths 1 and 4.
TEST(CvtIntToFp, RandomPatterns) {
  for (const Family& f : kFamilies) {
    EXPECT_EQ(check(f, randoms(f.src, 300000), {16}), "");
    EXPECT_EQ(check(f, randoms(f.src, 5000), {1, 4}), "");
  }
}

// Under each caller rounding mode (MXCSR): the directed members give the
// bits of their named mode, and rte, which rounds in the caller's mode, gives
// the bits of that mode (applied to the magnitude for signed sources): so the
// final sum is one correct rounding in every mode. Edges and 20000 random
// sources at width 8.
TEST(CvtIntToFp, CallerRoundingMode) {
  for (const Family& f : kFamilies) {
    std::vector<uint64_t> xs = edges(f.src), more = randoms(f.src, 20000);
    xs.insert(xs.end(), more.begin(), more.end());
    for (int mode = 0; mode < 4; ++mode) EXPECT_EQ(check(f, xs, {8}, mode), "");
  }
}

}  // namespace
