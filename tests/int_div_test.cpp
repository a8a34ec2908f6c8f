// Integer division families: idiv, udiv, irem, urem, idivrem, udivrem, bit
// for bit against C++ integer division, with the fixed results for y = 0 and
// INT_MIN / -1 taken from their table. idivrem and udivrem must return
// exactly the separate families' pair.
#include <gtest/gtest.h>

#include <climits>
#include <cstdint>
#include <cstdio>
#include <random>
#include <string>
#include <vector>

#include "tests/common/call_many.h"

namespace {

using namespace ravl_test;

struct Ops {
  const char* name;
  bool is_signed;
  const char *div, *rem, *divrem;
};
const Ops kSigned{"idiv/irem/idivrem", true, "idiv", "irem", "idivrem"};
const Ops kUnsigned{"udiv/urem/udivrem", false, "udiv", "urem", "udivrem"};

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

// Runs every pair through the three families at each width; returns a
// description of the first few faults (empty when all lanes match).
std::string check_pairs(const Ops& ops, const std::vector<uint32_t>& xs, const std::vector<uint32_t>& ys,
                        std::initializer_list<int> widths = {1, 2, 3, 4, 8, 16}) {
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
  for (int w : widths) {
    const std::string ws = std::to_string(w);
    const std::vector<uint32_t> q = map<uint32_t>(ops.div + ws, xs, ys), r = map<uint32_t>(ops.rem + ws, xs, ys);
    std::vector<uint32_t> pq, pr;
    map2(ops.divrem + ws, pq, pr, xs, ys);
    for (size_t k = 0; k < xs.size(); ++k) {
      uint32_t wq, wr;
      reference(ops.is_signed, xs[k], ys[k], &wq, &wr);
      if (q[k] != wq) fault("quotient", w, xs[k], ys[k], q[k], wq);
      if (r[k] != wr) fault("remainder", w, xs[k], ys[k], r[k], wr);
      if (pq[k] != q[k]) fault("pair quotient", w, xs[k], ys[k], pq[k], q[k]);
      if (pr[k] != r[k]) fault("pair remainder", w, xs[k], ys[k], pr[k], r[k]);
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

// The table's results are the reference's, and the families give them with
// every case in every lane position of every width.
template <size_t N> void check_cases(const Ops& ops, const Case (&cases)[N]) {
  std::vector<uint32_t> xs, ys;
  for (const Case& c : cases) {
    uint32_t q, r;
    reference(ops.is_signed, c.x, c.y, &q, &r);
    EXPECT_EQ(q, c.q) << "reference, x=" << c.x << " y=" << c.y;
    EXPECT_EQ(r, c.r) << "reference, x=" << c.x << " y=" << c.y;
  }
  for (int l : every_lane((int)N)) {
    xs.push_back(l < 0 ? 1000u : cases[l].x);
    ys.push_back(l < 0 ? 7u : cases[l].y);
  }
  const std::string f = check_pairs(ops, xs, ys);
  EXPECT_TRUE(f.empty()) << f;
}

TEST(IntDiv, SignedFixedResults) { check_cases(kSigned, kSignedCases); }
TEST(IntDiv, UnsignedFixedResults) { check_cases(kUnsigned, kUnsignedCases); }

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

// 2^21 random pairs at width 16, 2^14 of them at widths 1 and 3; the
// adversarial pairs at widths 3 and 16.
void random_and_adversarial(const Ops& ops, uint64_t seed) {
  std::vector<uint32_t> xs, ys, ax, ay;
  random_pairs(ops.is_signed, seed, 1u << 21, xs, ys);
  std::string f = check_pairs(ops, xs, ys, {16});
  xs.resize(1u << 14), ys.resize(1u << 14);
  f += check_pairs(ops, xs, ys, {1, 3});
  adversarial_pairs(ops.is_signed, seed ^ 0xa000, ax, ay);
  f += check_pairs(ops, ax, ay, {3, 16});
  EXPECT_TRUE(f.empty()) << f;
}
TEST(IntDiv, SignedRandomAndAdversarial) { random_and_adversarial(kSigned, 0x1d1f); }
TEST(IntDiv, UnsignedRandomAndAdversarial) { random_and_adversarial(kUnsigned, 0x0d1f); }

}  // namespace
