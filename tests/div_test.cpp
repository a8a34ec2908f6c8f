// div, divf, inv, invf in every class.
// - Correctly rounded members (div and inv in all classes, divf and invf plain
//   and _rm): bit for bit the IEEE quotient x / y computed here, NaN payloads
//   included, over the cross product of special operands and random operands.
// - Approximate members (divf and invf _native and _half): exactly x * rcp(y)
//   and within the rcp bound of the exact quotient where the divisor is in the
//   approximation's range, the IEEE quotient bit for bit where it is not
//   (zero, subnormal or huge divisors, infinities, NaN).
#include <gtest/gtest.h>
#include <xmmintrin.h>

#include <cmath>
#include <cstdio>
#include <string>
#include <vector>

#include "tests/common/call_many.h"
#include "tests/common/fp_bits.h"
#include "tests/common/inputs.h"

namespace {

using namespace ravl_test;

// Relative error bound of the hardware reciprocal approximation.
constexpr double kRcpBound = 1.5 * 0x1p-12;
// x * rcp(y): the product's rounding adds 2^-24 (relative, for normal results).
constexpr double kDivApproxBound = kRcpBound + 0x1p-24 + kRcpBound * 0x1p-24;
// The largest |x| whose reciprocal the approximate invf members compute
// themselves (bits 0x7E7FE800 = 2^126 (1 - 1.5 * 2^-12)).
constexpr float kInvfApproxMax = 0x1.ffd0p+125f;

// A member; `inv`: one argument, the divisor (x is 1); `approx`: x * rcp(y) on
// the divisors the approximation serves.
struct Member {
  const char* name;
  bool inv, approx;
};
const Member kDouble[] = {{"div", 0, 0}, {"div_native", 0, 0}, {"div_half", 0, 0}, {"div_rm", 0, 0},
                          {"inv", 1, 0}, {"inv_native", 1, 0}, {"inv_half", 1, 0}, {"inv_rm", 1, 0}};
const Member kFloat[] = {{"divf", 0, 0}, {"divf_rm", 0, 0}, {"divf_native", 0, 1}, {"divf_half", 0, 1},
                         {"invf", 1, 0}, {"invf_rm", 1, 0}, {"invf_native", 1, 1}, {"invf_half", 1, 1}};

// "divf_native", 8 -> "divf8_native".
std::string at_width(const std::string& m, int w) {
  const size_t u = m.find('_');
  return u == std::string::npos ? m + std::to_string(w) : m.substr(0, u) + std::to_string(w) + m.substr(u);
}

// Does the approximate member compute this lane itself (else: IEEE quotient)?
bool approx_lane(const Member& m, float y) {
  const float a = std::fabs(y);
  return a >= 0x1p-126f && (m.inv ? a <= kInvfApproxMax : a < 0x1p126f);
}
// The processor's reciprocal approximation: the approximate members must
// return exactly x * rcp(y) where they compute the lane (no refinement step).
float rcp(float y) { return _mm_cvtss_f32(_mm_rcp_ss(_mm_set_ss(y))); }

// Checks one lane; returns the relative error of an approximate lane with a
// normal quotient (0 otherwise) and sets `ok`.
template <class T> double check_lane(const Member& m, T x, T y, T got, bool& ok) {
  const T ieee = x / y;  // the test's own correctly rounded division
  if (!m.approx || !approx_lane(m, (float)y)) {
    ok = bits(got) == bits(ieee);
    return 0;
  }
  if (bits(got) != bits((T)(m.inv ? rcp((float)y) : (float)x * rcp((float)y)))) return ok = false, 0;
  const double q = (double)x / (double)y;  // within 2^-53 of the exact quotient
  if (std::isnan(q) || std::isinf(q) || q == 0) {
    ok = std::isnan(q) ? std::isnan(got) : bits(got) == bits((T)q);
    return 0;
  }
  if (std::signbit(got) != std::signbit(q)) return ok = false, 0;
  const double aq = std::fabs(q), tol = m.inv ? kRcpBound : kDivApproxBound;
  if (std::isinf(got)) {  // x * rcp(y) overflowed: only possible near the top
    ok = aq * (1 + tol) >= 0x1.ffffffp127;
    return 0;
  }
  const double err = std::fabs((double)got - q);
  ok = err <= tol * aq + 0x1p-150 + aq * 0x1p-50;  // 2^-150: rounding to a denormal
  return aq >= 0x1p-126 ? err / aq : 0;
}

// Runs every member of `set` at each width over the pairs (x[i], y[i]);
// returns the wrong lanes (printing the first few) and the largest relative
// error of an approximate lane.
template <class T, size_t N>
int run(const Member (&set)[N], const std::vector<T>& x, const std::vector<T>& y, std::initializer_list<int> widths,
        double* max_rel = nullptr) {
  int bad = 0;
  for (const Member& m : set)
    for (int w : widths) {
      const std::string name = at_width(m.name, w);
      const std::vector<T> got = m.inv ? map<T>(name, y) : map<T>(name, x, y);
      for (size_t i = 0; i < x.size(); ++i) {
        const T xi = m.inv ? T(1) : x[i];
        bool ok;
        const double rel = check_lane(m, xi, y[i], got[i], ok);
        if (max_rel && rel > *max_rel) *max_rel = rel;
        if (!ok && bad++ < 6)
          ADD_FAILURE() << name << ": x = " << hex(xi) << ", y = " << hex(y[i]) << "\n  got  " << hex(got[i])
                        << "\n  IEEE " << hex(xi / y[i]);
      }
    }
  return bad;
}

// ---- operands ----------------------------------------------------------------------

template <class T> void special_pairs(std::vector<T>& xs, std::vector<T>& ys) {
  std::vector<T> s;
  if constexpr (sizeof(T) == 8) {
    for (uint64_t b : kDoubleSpecials) s.push_back(from_bits<double>(b));
    for (double d : {0.0078125, -0.0078125, 0x1p-1022, 0x1.0000000000001p-1022, 0x1p-1074, 0x1p1023, 3.0, -7.0,
                     0x1.fffffffffffffp-1, 1e-300, 1e300, 0x1p-537})
      s.push_back(d);
  } else {
    for (uint32_t b : kFloatSpecials) s.push_back(from_bits<float>(b));
    for (float f : {0x1p-126f, 0x1.fffffep-127f, 0x1p126f, 0x1.fffffep125f, kInvfApproxMax,
                    std::nextafter(kInvfApproxMax, 1e30f), 0x1p127f, 1e-40f, 1.7e38f, 3.0f, -7.0f, 6.0f, 1e-20f,
                    1e20f})
      s.push_back(f);
  }
  for (T a : s)
    for (T b : s) xs.push_back(a), ys.push_back(b);
}

// Pairs of three kinds: random bit patterns (every exponent: huge, tiny,
// overflowing and underflowing quotients, NaN, infinities); random
// significands with exponents in a moderate range; and divisors covering
// every significand of a binade in turn (with random dividends).
template <class T> void random_pairs(int n, uint64_t seed, std::vector<T>& xs, std::vector<T>& ys) {
  using F = Fmt<T>;
  using U = typename F::U;
  constexpr int bias = F::prec == 53 ? 1023 : 127;
  Rng r(seed);
  auto moderate = [&](int span) {
    const uint64_t u = r.next();
    const int e = (int)r.below(2 * span + 1) - span;
    return from_bits<T>(((U)(e + bias) << (F::prec - 1)) | ((U)u & F::mant) | ((u >> 63) ? F::sign : 0));
  };
  for (int i = 0; i < n; ++i) {
    switch (i % 3) {
      case 0: xs.push_back(from_bits<T>((U)r.next())), ys.push_back(from_bits<T>((U)r.next())); break;
      case 1: xs.push_back(moderate(40)), ys.push_back(moderate(40)); break;
      default:
        xs.push_back(moderate(20));
        ys.push_back(from_bits<T>((U)(bias + (int)r.below(9) - 4) << (F::prec - 1) | ((U)(i * 0x9e3779b1u) & F::mant)));
    }
  }
}

// ---- tests ---------------------------------------------------------------------------

// Written-out results; rel: the allowed relative error (0: these exact bits).
struct Edge {
  const char* name;
  double x, y, want, rel;
};
const double kInf = INFINITY, kBig = 1.7e38f;
const Edge kEdges[] = {
    {"div", 1, 0, kInf, 0}, {"div", 0, 0, NAN, 0}, {"div", 1, 0x1p-1074, kInf, 0}, {"div", -1, 0, -kInf, 0},
    {"divf", 6, 3, 2, 0}, {"divf_native", 6, 3, 2, kDivApproxBound},
    {"divf_native", 1, 0x1p126, 0x1p-126, 0}, {"divf_native", 1, 1e-40f, kInf, 0},
    {"divf_native", 1, -0x1p126, -0x1p-126, 0}, {"divf_native", 1, 0, kInf, 0}, {"divf_native", 1, -0.0, -kInf, 0},
    {"divf_native", 1, 0x1p127, 0x1p-127, 0},  // a denormal quotient, not flushed
    {"divf_native", 1, 2, 0.5, kDivApproxBound},  // approximate, even for a power of two
    {"invf_half", 0, 0, kInf, 0}, {"invf_half", 0, -0.0, -kInf, 0}, {"invf_half", 0, NAN, NAN, 0},
    {"invf_half", 0, kBig, (double)(1.0f / (float)kBig), 0}, {"invf_half", 0, -kBig, (double)(-1.0f / (float)kBig), 0},
    {"invf_half", 0, 0x1p-127, 0x1p127, 0},  // a denormal divisor: the IEEE reciprocal
    {"invf_half", 0, 1, 1, kRcpBound}, {"invf_half", 0, 4, 0.25, kRcpBound},
};

template <class T> void check_edge(const Edge& e, const std::string& member) {
  for (int w : {1, 16}) {
    const std::string name = at_width(member, w);
    const std::vector<T> x(w, (T)e.x), y(w, (T)e.y);
    const T got = (member[0] == 'i' ? map<T>(name, y) : map<T>(name, x, y))[w - 1];
    if (std::isnan(e.want)) EXPECT_TRUE(std::isnan(got)) << name;
    else if (e.rel == 0) EXPECT_EQ(bits(got), bits((T)e.want)) << name << "(" << e.x << ", " << e.y << ")";
    else EXPECT_NEAR(got, e.want, e.rel * std::fabs(e.want)) << name << "(" << e.x << ", " << e.y << ")";
  }
}

TEST(Division, EdgeCases) {
  for (const Edge& e : kEdges) {
    if (std::string(e.name) != "div") check_edge<float>(e, e.name);
    else
      for (const char* c : {"", "_native", "_half", "_rm"}) check_edge<double>(e, std::string("div") + c);
  }
}

TEST(Division, SpecialOperands) {
  std::vector<double> xd, yd;
  special_pairs(xd, yd);
  EXPECT_EQ(run(kDouble, xd, yd, {1, 2, 3, 4, 8, 16}), 0);
  std::vector<float> xf, yf;
  special_pairs(xf, yf);
  EXPECT_EQ(run(kFloat, xf, yf, {1, 2, 3, 4, 8, 16}), 0);
}

TEST(Division, RandomDouble) {
  std::vector<double> x, y;
  random_pairs(240000, 21, x, y);
  EXPECT_EQ(run(kDouble, x, y, {16}), 0);
}

TEST(Division, RandomFloat) {
  std::vector<float> x, y;
  random_pairs(240000, 22, x, y);
  double max_rel = 0;
  EXPECT_EQ(run(kFloat, x, y, {16}, &max_rel), 0);
  std::printf("divf/invf _native, _half: max relative error %.3g = 2^%.2f\n", max_rel, std::log2(max_rel));
}

// The approximate reciprocal on every significand of [1, 2), and on every
// input from 2^125 up to the last one it serves and the first ones past it
// (whose reciprocal nears the smallest normal): never flushed, within bound.
TEST(Division, ApproximateReciprocalSweeps) {
  std::vector<float> y;
  for (uint32_t b = 0x3f800000u; b < 0x40000000u; ++b) y.push_back(from_bits<float>(b));
  for (uint32_t b = 0x7e000000u; b < 0x7e800010u; ++b) y.push_back(from_bits<float>(b | (b & 1) << 31));
  const Member approx[] = {kFloat[6]};
  double max_rel = 0;
  EXPECT_EQ(run(approx, y, y, {16}, &max_rel), 0);
  std::printf("invf_native sweep: max relative error %.3g = 2^%.2f\n", max_rel, std::log2(max_rel));
}

}  // namespace
