// Floating to integer conversions: the 64 cvtfpto families (i32, u32, i64,
// u64; rte, rtn, rtp, rtz; sat, nosat; double and float sources) bit for bit
// against the exact integer reference of tests/common/ref_fp_to_int.h (the
// export-wide tests hold every width to width 1).
// Inputs: the special values, every power of two of both precisions with its
// neighbours at +-1 and +-2 ulps, integers plus quarters and halves around 0
// and around the saturation bounds, and random bit patterns; the directed set
// again under each of the four MXCSR rounding modes, with MXCSR's control bits
// checked to come back unchanged.
#include <gtest/gtest.h>
#include <immintrin.h>

#include <cstdint>
#include <string>
#include <vector>

#include "tests/common/call_many.h"
#include "tests/common/fp_bits.h"
#include "tests/common/ref_fp_to_int.h"

namespace {

using ravl_test::CvtRound;
using ravl_test::CvtTarget;

struct Family {
  std::string name;
  CvtTarget target;
  CvtRound rm;
  bool sat, is_float;
};

// The 64 families: cvtfpto{i32,u32,i64,u64}{rte,rtn,rtp,rtz}{sat,nosat}[f].
std::vector<Family> families() {
  std::vector<Family> v;
  const char* tn[] = {"i32", "u32", "i64", "u64"};
  const char* rn[] = {"rte", "rtn", "rtp", "rtz"};
  const CvtTarget tv[] = {CvtTarget::i32, CvtTarget::u32, CvtTarget::i64, CvtTarget::u64};
  const CvtRound rv[] = {CvtRound::rte, CvtRound::rtn, CvtRound::rtp, CvtRound::rtz};
  for (int t = 0; t < 4; ++t)
    for (int r = 0; r < 4; ++r)
      for (int s = 0; s < 4; ++s)
        v.push_back({std::string("cvtfpto") + tn[t] + rn[r] + (s & 2 ? "nosat" : "sat") + (s & 1 ? "f" : ""), tv[t],
                     rv[r], !(s & 2), (s & 1) != 0});
  return v;
}
const std::vector<Family> kFamilies = families();

const Family& family(const char* name) {
  for (const Family& f : kFamilies)
    if (f.name == name) return f;
  ADD_FAILURE() << "no family " << name;
  return kFamilies[0];
}

uint64_t expected(const Family& f, uint64_t x) {
  return ravl_test::ref_fp_to_int_bits(f.target, f.rm, f.sat, x, f.is_float);
}

// Checks every family at the widths given on the source bit patterns (dbl for
// the double families, flt for the float ones); returns the number of wrong
// lanes and reports the first few.
int check(const std::vector<uint64_t>& dbl, const std::vector<uint64_t>& flt, std::initializer_list<int> widths,
          const char* what) {
  int bad = 0;
  for (const Family& f : kFamilies) {
    const std::vector<uint64_t>& xs = f.is_float ? flt : dbl;
    for (int w : widths) {
      const std::vector<uint64_t> got = ravl_test::map_bits(f.name + std::to_string(w), xs);
      for (size_t i = 0; i < xs.size(); ++i) {
        const uint64_t want = expected(f, xs[i]);
        if (got[i] != want && ++bad <= 8)
          ADD_FAILURE() << what << ": " << f.name << w << "(" << (f.is_float ? "float" : "double") << " bits 0x"
                        << std::hex << xs[i] << ") = 0x" << got[i] << ", expected 0x" << want;
      }
    }
  }
  return bad;
}

// ---- inputs -------------------------------------------------------------------

uint64_t dbits(double x) { return ravl_test::bits(x); }
uint32_t fbits(float x) { return ravl_test::bits(x); }

// Special values, each power of two (denormal ones included) with its
// neighbours at +-1 and +-2 ulps, and integers around zero and around each
// saturation bound plus 0.25, 0.5 and 0.75 where the format holds them; all
// with both signs.
template <class T> std::vector<uint64_t> directed() {
  constexpr bool is_f = sizeof(T) == 4;
  constexpr int mant = is_f ? 23 : 52, expmax = is_f ? 0xFE : 0x7FE;
  const uint64_t sign = 1ull << (is_f ? 31 : 63), inf = (uint64_t)(expmax + 1) << mant;
  std::vector<uint64_t> v;
  auto both = [&](uint64_t b) {
    v.push_back(b);
    v.push_back(b | sign);
  };
  // Zero, infinity, quiet and signalling NaNs with payloads, extreme finite values.
  const uint64_t one = 1, q = one << (mant - 1), top = (one << mant) - 1;
  const uint64_t specials[] = {0, inf, inf | q, inf | q | 0x123, inf | 1, inf | one << (mant - 2), top,
                               ((uint64_t)expmax << mant) | top};
  for (uint64_t b : specials)
    both(b);
  for (int e = 1; e <= expmax; ++e)
    for (int d = -2; d <= 2; ++d) both(((uint64_t)e << mant) + (uint64_t)(int64_t)d);
  for (int k = 0; k < mant; ++k) both(1ull << k);  // denormal powers of two
  const double bounds[] = {0, 0x1p23, 0x1p24, 0x1p31, 0x1p32, 0x1p52, 0x1p53, 0x1p63, 0x1p64};
  for (double b : bounds)
    for (int n = -3; n <= 3; ++n)
      for (double frac : {0.0, 0.25, 0.5, 0.75}) {
        double x = b + n + frac;  // exact: every part is far below 2^53 apart from b
        if (x < 0 || x - b != n + frac) continue;
        T t = (T)x;
        if ((double)t != x) continue;  // not representable in T
        both(is_f ? fbits((float)t) : dbits((double)t));
      }
  return v;
}

// Random sources: half uniformly random bits, half of random sign and
// significand with an exponent from 2^-3 to 2^66 (the region where results are
// in range, half-integers exist and the bounds lie).
template <class T> std::vector<uint64_t> random_bits(size_t n, uint64_t seed) {
  constexpr bool is_f = sizeof(T) == 4;
  constexpr int mant = is_f ? 23 : 52, bias = is_f ? 127 : 1023;
  std::vector<uint64_t> v(n);
  uint64_t s = seed;
  auto next = [&] {
    uint64_t z = (s += 0x9e3779b97f4a7c15ull);
    z = (z ^ (z >> 30)) * 0xbf58476d1ce4e5b9ull;
    z = (z ^ (z >> 27)) * 0x94d049bb133111ebull;
    return z ^ (z >> 31);
  };
  for (size_t i = 0; i < n; ++i) {
    uint64_t r = next();
    if (i & 1) {
      uint64_t e = (uint64_t)(bias - 3 + (int)(r % 70));
      uint64_t b = (e << mant) | (next() & ((1ull << mant) - 1));
      if (r >> 63) b |= 1ull << (is_f ? 31 : 63);
      v[i] = b;
    } else {
      v[i] = is_f ? (r & 0xFFFFFFFFu) : r;
    }
  }
  return v;
}

// ---- tests ------------------------------------------------------------------------

// The reference itself on hand-worked values, before it judges the library.
TEST(CvtFpToInt, ReferenceHandValues) {
  using ravl_test::ref_fp_to_int;
  EXPECT_EQ(ref_fp_to_int(CvtTarget::i32, CvtRound::rte, false, 2.5), 2u);
  EXPECT_EQ(ref_fp_to_int(CvtTarget::i32, CvtRound::rte, false, 3.5), 4u);
  EXPECT_EQ(ref_fp_to_int(CvtTarget::i32, CvtRound::rtn, false, -0.5), 0xFFFFFFFFu);
  EXPECT_EQ(ref_fp_to_int(CvtTarget::i32, CvtRound::rtp, false, 0x1p-1074), 1u);
  EXPECT_EQ(ref_fp_to_int(CvtTarget::i32, CvtRound::rtz, false, -7.9f), (uint32_t)-7);
  EXPECT_EQ(ref_fp_to_int(CvtTarget::i64, CvtRound::rte, true, 0x1p63), 0x7FFFFFFFFFFFFFFFu);
  EXPECT_EQ(ref_fp_to_int(CvtTarget::u64, CvtRound::rtz, false, -0x1.8p63), 0xC000000000000000u);
  EXPECT_EQ(ref_fp_to_int(CvtTarget::u32, CvtRound::rte, false, -3.7), 4u);
}

// Named cases with their results written out.
struct EdgeCase {
  const char* family;
  double x;  // converted to float for the f families (exactly, for the values below)
  uint64_t nan_bits;  // when nonzero: the source is this bit pattern instead
  uint64_t want;
};
const EdgeCase kEdgeCases[] = {
    {"cvtfptoi64rtesat", 2.5, 0, 2},
    {"cvtfptoi64rtesat", -2.5, 0, (uint64_t)-2},
    {"cvtfptoi64rtesat", 3.5, 0, 4},
    {"cvtfptoi64rtesat", 0, 0x7FF8000000000000, 0},
    {"cvtfptoi64rtnsat", -0.5, 0, (uint64_t)-1},
    {"cvtfptoi64rtpsat", -0.5, 0, 0},
    {"cvtfptoi64rtzsat", 9.3e18, 0, 0x7FFFFFFFFFFFFFFF},
    {"cvtfptoi64rtznosat", 9.3e18, 0, 0x8000000000000000},
    {"cvtfptoi64rtzsat", -0x1p63, 0, 0x8000000000000000},
    {"cvtfptoi64rtznosat", -0x1p63, 0, 0x8000000000000000},
    {"cvtfptoi64rtesat", 4503599627370497.0, 0, 4503599627370497},
    {"cvtfptou32rtznosat", -5.0, 0, 5},
    {"cvtfptou32rtzsat", -5.0, 0, 0},
    {"cvtfptou32rtenosat", -3.7, 0, 4},
    {"cvtfptou32rtesat", 0, 0x7FF8000000000000, 0xFFFFFFFF},
    {"cvtfptou32rtesat", 0, 0xFFF8000000000000, 0},
    {"cvtfptou64rtesat", 0, 0x7FF8000000000000, 0},
    {"cvtfptou64rtesat", 0, 0xFFF8000000000000, 0},
    {"cvtfptou32rtesatf", 3000000000.0, 0, 3000000000},
    {"cvtfptou64rtnsatf", 0x1p64, 0, 0xFFFFFFFFFFFFFFFF},
    {"cvtfptou64rtnsatf", -0.0, 0, 0},
    {"cvtfptoi32rtesat", -2147483648.4, 0, 0x80000000},
    {"cvtfptoi32rtesat", 2147483647.4, 0, 0x7FFFFFFF},
    {"cvtfptoi32rtesat", 2147483647.5, 0, 0x7FFFFFFF},
    {"cvtfptoi32rtenosat", 2147483647.5, 0, 0x80000000},
    {"cvtfptou32rtesat", 4294967295.5, 0, 0xFFFFFFFF},
    {"cvtfptou32rtzsat", 4294967295.5, 0, 0xFFFFFFFF},
    {"cvtfptou32rtznosat", 4294967296.0, 0, 0x80000000},
    {"cvtfptou32rtznosatf", -3000000000.0, 0, 3000000000},
    {"cvtfptou64rtpnosat", -0x1.fffffffffffffp63, 0, 0xFFFFFFFFFFFFF800},
    {"cvtfptou64rtpsat", 0x1.fffffffffffffp63, 0, 0xFFFFFFFFFFFFF800},
    {"cvtfptoi64rtpsatf", -0x1p63, 0, 0x8000000000000000},
    {"cvtfptoi64rtpsatf", 0x1.fffffep62, 0, 0x7FFFFF8000000000},
};

TEST(CvtFpToInt, EdgeCases) {
  for (const EdgeCase& c : kEdgeCases) {
    const Family& f = family(c.family);
    uint64_t x;
    if (c.nan_bits) x = f.is_float ? ((c.nan_bits >> 63) ? 0xFFC00000u : 0x7FC00000u) : c.nan_bits;
    else x = f.is_float ? fbits((float)c.x) : dbits(c.x);
    EXPECT_EQ(expected(f, x), c.want) << "reference, " << c.family << "(" << c.x << ")";
    for (int w : {1, 4, 16})
      EXPECT_EQ(ravl_test::map_bits(f.name + std::to_string(w), {x})[0], c.want) << c.family << w << "(" << c.x << ")";
  }
}

// The directed set at widths 3 and 16.
TEST(CvtFpToInt, DirectedInputsEveryFamily) {
  std::vector<uint64_t> d = directed<double>(), f = directed<float>();
  EXPECT_EQ(check(d, f, {3, 16}, "directed"), 0);
}

// 150000 random sources per family at width 16 (600000 per body), 5000 at
// widths 1 and 4.
TEST(CvtFpToInt, RandomBits) {
  EXPECT_EQ(check(random_bits<double>(150000, 1), random_bits<float>(150000, 2), {16}, "random"), 0);
  EXPECT_EQ(check(random_bits<double>(5000, 3), random_bits<float>(5000, 4), {1, 4}, "random"), 0);
}

// The caller's MXCSR rounding mode changes nothing (the directed set at width
// 16), and the library hands MXCSR's control bits back as it found them.
TEST(CvtFpToInt, CallerRoundingModeIgnored) {
  std::vector<uint64_t> d = directed<double>(), f = directed<float>();
  const unsigned saved = _mm_getcsr();
  for (unsigned rc = 0; rc < 4; ++rc) {
    const unsigned csr = (saved & ~0x6000u) | rc << 13;
    _mm_setcsr(csr);
    int bad = check(d, f, {16}, "under MXCSR rounding");
    unsigned after = _mm_getcsr();
    _mm_setcsr(saved);
    EXPECT_EQ(bad, 0) << "MXCSR rounding control " << rc;
    EXPECT_EQ(after & 0xFFC0u, csr & 0xFFC0u) << "MXCSR control bits changed";
  }
}

}  // namespace
