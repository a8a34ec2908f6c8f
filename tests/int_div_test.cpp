// Integer division families: idiv, udiv, irem, urem, idivrem, udivrem at
// widths 1, 2, 3, 4, 8 and 16, bit for bit against C++ integer division, with
// the fixed results for y = 0 and INT_MIN / -1 taken from their table.
// idivrem and udivrem must return exactly the separate families' pair.
#include <gtest/gtest.h>

#include <climits>
#include <cstdint>
#include <cstring>
#include <random>
#include <vector>

#include "ocl_ravl_l9.h"

// tests/call_pair.S: calls a two-xmm-result entry point, stores xmm0 then xmm1.
extern "C" void ravl_test_call_xmm_pair(const void* fn, const void* x, const void* y, void* out);

namespace {

constexpr int kWidths[] = {1, 2, 3, 4, 8, 16};

template <class V> V load(const uint32_t* p) {
  V v;
  std::memcpy(&v, p, sizeof v);
  return v;
}
template <class V> void store(uint32_t* p, V v, int lanes) { std::memcpy(p, &v, 4 * lanes); }

// Lanes are passed as uint32_t bit patterns. Inputs are read up to 16 lanes
// past the start (the padding lanes of widths 2 and 3 take whatever is there);
// exactly w result lanes are written.
using OneFn = void (*)(int w, const uint32_t* x, const uint32_t* y, uint32_t* out);
using PairFn = void (*)(int w, const uint32_t* x, const uint32_t* y, uint32_t* q, uint32_t* r);

#define RAVL_ONE_CALLER(fam, T, S)                                                                      \
  void call_##fam(int w, const uint32_t* x, const uint32_t* y, uint32_t* out) {                        \
    using V4 = ocl_ravl_##S##4;                                                                         \
    using V8 = ocl_ravl_##S##8;                                                                         \
    switch (w) {                                                                                        \
      case 1: out[0] = (uint32_t)__ocl_ravl_l9_##fam##1((T)x[0], (T)y[0]); break;                       \
      case 2: store(out, __ocl_ravl_l9_##fam##2(load<V4>(x), load<V4>(y)), 2); break;                   \
      case 3: store(out, __ocl_ravl_l9_##fam##3(load<V4>(x), load<V4>(y)), 3); break;                   \
      case 4: store(out, __ocl_ravl_l9_##fam##4(load<V4>(x), load<V4>(y)), 4); break;                   \
      case 8: store(out, __ocl_ravl_l9_##fam##8(load<V8>(x), load<V8>(y)), 8); break;                   \
      case 16:                                                                                          \
        store(out, __ocl_ravl_l9_##fam##16(load<V8>(x), load<V8>(x + 8), load<V8>(y), load<V8>(y + 8)), \
              16);                                                                                      \
        break;                                                                                          \
    }                                                                                                   \
  }

// Width 1 packs the pair in rax (quotient low); widths 2-4 return xmm0, xmm1;
// width 8 returns the two 256-bit halves of a 16-lane value, width 16 four.
#define RAVL_PAIR_CALLER(fam, T, S)                                                                  \
  void call_##fam(int w, const uint32_t* x, const uint32_t* y, uint32_t* q, uint32_t* r) {          \
    using V4 = ocl_ravl_##S##4;                                                                      \
    using V8 = ocl_ravl_##S##8;                                                                      \
    uint32_t buf[32];                                                                                \
    int n = w == 3 ? 4 : w;                                                                          \
    switch (w) {                                                                                     \
      case 1: {                                                                                      \
        uint64_t v = __ocl_ravl_l9_##fam##1((T)x[0], (T)y[0]);                                      \
        buf[0] = (uint32_t)v;                                                                        \
        buf[1] = (uint32_t)(v >> 32);                                                                \
        break;                                                                                       \
      }                                                                                              \
      case 2: ravl_test_call_xmm_pair((const void*)&__ocl_ravl_l9_##fam##2, x, y, buf); n = 4; break; \
      case 3: ravl_test_call_xmm_pair((const void*)&__ocl_ravl_l9_##fam##3, x, y, buf); break;       \
      case 4: ravl_test_call_xmm_pair((const void*)&__ocl_ravl_l9_##fam##4, x, y, buf); break;       \
      case 8: store(buf, __ocl_ravl_l9_##fam##8(load<V8>(x), load<V8>(y)), 16); break;               \
      case 16:                                                                                       \
        store(buf, __ocl_ravl_l9_##fam##16(load<V8>(x), load<V8>(x + 8), load<V8>(y), load<V8>(y + 8)), \
              32);                                                                                   \
        break;                                                                                       \
    }                                                                                                \
    std::memcpy(q, buf, 4 * w);                                                                      \
    std::memcpy(r, buf + n, 4 * w);                                                                  \
  }

RAVL_ONE_CALLER(idiv, int32_t, int)
RAVL_ONE_CALLER(irem, int32_t, int)
RAVL_ONE_CALLER(udiv, uint32_t, uint)
RAVL_ONE_CALLER(urem, uint32_t, uint)
RAVL_PAIR_CALLER(idivrem, int32_t, int)
RAVL_PAIR_CALLER(udivrem, uint32_t, uint)

struct Ops {
  const char* name;
  bool is_signed;
  OneFn div, rem;
  PairFn divrem;
};
const Ops kSigned{"idiv/irem/idivrem", true, call_idiv, call_irem, call_idivrem};
const Ops kUnsigned{"udiv/urem/udivrem", false, call_udiv, call_urem, call_udivrem};

// C++ division, and the fixed results where it is undefined:
// signed y = 0 -> (INT_MIN, x), INT_MIN / -1 -> (INT_MIN, 0); unsigned y = 0 -> (0, x).
void reference(bool is_signed, uint32_t x, uint32_t y, uint32_t* q, uint32_t* r) {
  if (is_signed) {
    int32_t a = (int32_t)x, b = (int32_t)y;
    if (b == 0) {
      *q = 0x80000000u, *r = x;
    } else if (a == INT_MIN && b == -1) {
      *q = 0x80000000u, *r = 0;
    } else {
      *q = (uint32_t)(a / b), *r = (uint32_t)(a % b);
    }
  } else if (y == 0) {
    *q = 0, *r = x;
  } else {
    *q = x / y, *r = x % y;
  }
}

// Runs every pair through the three families at every width; returns a
// description of the first few faults (empty when all lanes match).
std::string check_pairs(const Ops& ops, std::vector<uint32_t> xs, std::vector<uint32_t> ys) {
  size_t n = xs.size();
  xs.resize(n + 16, 0x5a5a5a5a);  // input padding read by the last call
  ys.resize(n + 16, 0x00000007);
  std::string faults;
  int nfaults = 0;
  auto fault = [&](const char* what, int w, uint32_t x, uint32_t y, uint32_t got, uint32_t want) {
    if (nfaults++ < 8) {
      char line[160];
      std::snprintf(line, sizeof line, "%s width %d: x=0x%08x y=0x%08x got 0x%08x want 0x%08x\n", what, w, x, y,
                    got, want);
      faults += line;
    }
  };
  uint32_t q[16], r[16], pq[16], pr[16];
  for (int w : kWidths) {
    for (size_t i = 0; i < n; i += w) {
      const uint32_t* x = &xs[i];
      const uint32_t* y = &ys[i];
      ops.div(w, x, y, q);
      ops.rem(w, x, y, r);
      ops.divrem(w, x, y, pq, pr);
      for (int k = 0; k < w && i + k < n; ++k) {
        uint32_t wq, wr;
        reference(ops.is_signed, x[k], y[k], &wq, &wr);
        if (q[k] != wq) fault("quotient", w, x[k], y[k], q[k], wq);
        if (r[k] != wr) fault("remainder", w, x[k], y[k], r[k], wr);
        if (pq[k] != q[k]) fault("pair quotient", w, x[k], y[k], pq[k], q[k]);
        if (pr[k] != r[k]) fault("pair remainder", w, x[k], y[k], pr[k], r[k]);
      }
    }
  }
  if (nfaults) faults += std::to_string(nfaults) + " faults in total\n";
  return faults;
}

// ---- the fixed and edge results, every width ---------------------------------

struct Case {
  uint32_t x, y, q, r;
};
constexpr uint32_t kMin = 0x80000000u;  // INT_MIN
constexpr uint32_t kMax = 0x7fffffffu;  // INT_MAX
constexpr uint32_t neg(uint32_t v) { return 0u - v; }

// The first four rows, in lanes 0-3 of width 4, are idiv4(7, -7, 7, -7; 2, 2, -2, -2)
// = (3, -3, -3, 3) and irem4 = (1, -1, 1, -1).
const Case kSignedCases[] = {
    {7, 2, 3, 1}, {neg(7), 2, neg(3), neg(1)}, {7, neg(2), neg(3), 1}, {neg(7), neg(2), 3, neg(1)},
    // y = 0: INT_MIN and x, for every x.
    {0, 0, kMin, 0}, {5, 0, kMin, 5}, {neg(5), 0, kMin, neg(5)}, {kMin, 0, kMin, kMin}, {kMax, 0, kMin, kMax},
    // INT_MIN / -1 overflows: INT_MIN and 0.
    {kMin, neg(1), kMin, 0},
    {kMax, 1, kMax, 0}, {kMax, neg(1), neg(kMax), 0}, {kMin, 1, kMin, 0}, {kMin, 2, 0xc0000000u, 0},
    {kMin, kMin, 1, 0}, {kMax, kMin, 0, kMax}, {kMin, kMax, neg(1), neg(1)}, {kMax, kMax, 1, 0},
    {kMax - 1, kMax, 0, kMax - 1}, {kMin + 1, kMin, 0, kMin + 1}, {kMin, 3, neg(715827882), neg(2)},
};
const Case kUnsignedCases[] = {
    {0xffffffffu, 1, 0xffffffffu, 0}, {0xffffffffu, 0xffffffffu, 1, 0},
    // y = 0: 0 and x.
    {0, 0, 0, 0}, {1, 0, 0, 1}, {0xffffffffu, 0, 0, 0xffffffffu}, {kMin, 0, 0, kMin},
    {0xfffffffeu, 0xffffffffu, 0, 0xfffffffeu}, {kMin, kMin + 1, 0, kMin}, {0xffffffffu, 2, kMax, 1},
    {0xffffffffu, 0x10000u, 0xffffu, 0xffffu}, {0xffffffffu, kMin, 1, kMax}, {0xfffffffeu, kMax, 2, 0},
    {0xffffffffu, 3, 0x55555555u, 0}, {0xfffffffdu, 3, 0x55555554u, 1},
};

void check_cases(const Ops& ops, const Case* cases, int count) {
  for (int w : kWidths) {
    // Every case in every lane position of the width.
    for (int shift = 0; shift < w; ++shift) {
      for (int base = 0; base < count; base += w) {
        uint32_t x[32], y[32], q[16], r[16], pq[16], pr[16];
        int idx[16];
        for (int k = 0; k < 32; ++k) {
          int c = (base + (k + shift) % w) % count;
          if (k < 16) idx[k] = c;
          x[k] = cases[c].x;
          y[k] = cases[c].y;
        }
        ops.div(w, x, y, q);
        ops.rem(w, x, y, r);
        ops.divrem(w, x, y, pq, pr);
        for (int k = 0; k < w; ++k) {
          const Case& c = cases[idx[k]];
          SCOPED_TRACE(testing::Message() << ops.name << " width " << w << " lane " << k << " x=0x" << std::hex
                                          << c.x << " y=0x" << c.y);
          EXPECT_EQ(q[k], c.q);
          EXPECT_EQ(r[k], c.r);
          EXPECT_EQ(pq[k], c.q);
          EXPECT_EQ(pr[k], c.r);
        }
      }
    }
  }
}

TEST(IntDiv, SignedFixedResults) { check_cases(kSigned, kSignedCases, sizeof kSignedCases / sizeof(Case)); }
TEST(IntDiv, UnsignedFixedResults) { check_cases(kUnsigned, kUnsignedCases, sizeof kUnsignedCases / sizeof(Case)); }

// ---- random and adversarial pairs ------------------------------------------------

// 32-bit patterns whose magnitudes spread over every bit length.
uint32_t spread(std::mt19937_64& g, bool is_signed) {
  uint32_t v = (uint32_t)g() >> (g() % 32);
  if (is_signed && (g() & 1)) v = 0u - v;
  return v;
}

void random_pairs(bool is_signed, uint64_t seed, size_t n, std::vector<uint32_t>& xs, std::vector<uint32_t>& ys) {
  std::mt19937_64 g(seed);
  for (size_t i = 0; i < n; ++i) {
    switch (i % 4) {
      case 0: xs.push_back((uint32_t)g()); ys.push_back((uint32_t)g()); break;
      case 1: xs.push_back((uint32_t)g()); ys.push_back(spread(g, is_signed)); break;
      default: xs.push_back(spread(g, is_signed)); ys.push_back(spread(g, is_signed)); break;
    }
  }
}

// Divisors +-1, +-2, powers of two and their neighbours, the extremes, some
// random ones; dividends at the ends of the range and at k*y - 1, k*y, k*y + 1
// for random k and for the largest k that fits (the largest quotients, where
// the quotient's bias matters most).
void adversarial_pairs(bool is_signed, uint64_t seed, std::vector<uint32_t>& xs, std::vector<uint32_t>& ys) {
  std::mt19937_64 g(seed);
  std::vector<int64_t> divisors;
  for (int k = 0; k < 32; ++k) {
    int64_t p = int64_t(1) << k;
    for (int64_t d : {p - 1, p, p + 1}) {
      divisors.push_back(d);
      divisors.push_back(-d);
    }
  }
  for (int64_t d : {int64_t(INT32_MAX), int64_t(INT32_MIN), int64_t(UINT32_MAX), int64_t(UINT32_MAX) - 1, int64_t(3), int64_t(-3),
                    int64_t(7), int64_t(10), int64_t(-10), int64_t(46341), int64_t(65535), int64_t(65537)})
    divisors.push_back(d);
  for (int i = 0; i < 400; ++i) divisors.push_back(is_signed ? (int32_t)spread(g, true) : spread(g, false));
  const int64_t lo = is_signed ? INT32_MIN : 0, hi = is_signed ? INT32_MAX : UINT32_MAX;
  const int64_t ends[] = {lo, lo + 1, lo + 2, hi, hi - 1, hi - 2, 0, 1, -1, 2, -2};
  for (int64_t d : divisors) {
    if (d < lo || d > hi || d == 0) continue;  // out of the lane type (y = 0 has its own table)
    std::vector<int64_t> xv(std::begin(ends), std::end(ends));
    int64_t kmax = hi / (d < 0 ? -d : d);
    for (int i = 0; i < 64; ++i) {
      int64_t k = i < 4 ? kmax - i : (int64_t)(g() % (uint64_t)(kmax + 1));
      for (int64_t s : {1, -1}) {
        if (!is_signed && s < 0) continue;
        for (int64_t e : {-1, 0, 1}) xv.push_back(s * k * d + e);
      }
    }
    for (int64_t x : xv) {
      if (x < lo || x > hi) continue;
      xs.push_back((uint32_t)x);
      ys.push_back((uint32_t)d);
    }
  }
}

TEST(IntDiv, SignedRandom) {
  std::vector<uint32_t> xs, ys;
  random_pairs(true, 0x1d1f, 1u << 21, xs, ys);
  std::string f = check_pairs(kSigned, xs, ys);
  EXPECT_TRUE(f.empty()) << f;
}
TEST(IntDiv, UnsignedRandom) {
  std::vector<uint32_t> xs, ys;
  random_pairs(false, 0x0d1f, 1u << 21, xs, ys);
  std::string f = check_pairs(kUnsigned, xs, ys);
  EXPECT_TRUE(f.empty()) << f;
}
TEST(IntDiv, SignedAdversarial) {
  std::vector<uint32_t> xs, ys;
  adversarial_pairs(true, 0xad51, xs, ys);
  std::string f = check_pairs(kSigned, xs, ys);
  EXPECT_TRUE(f.empty()) << f;
}
TEST(IntDiv, UnsignedAdversarial) {
  std::vector<uint32_t> xs, ys;
  adversarial_pairs(false, 0xad50, xs, ys);
  std::string f = check_pairs(kUnsigned, xs, ys);
  EXPECT_TRUE(f.empty()) << f;
}

}  // namespace
