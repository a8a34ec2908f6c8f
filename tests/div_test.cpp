// div, divf, inv, invf in every class at every width.
// - Correctly rounded members (div and inv in all classes, divf and invf plain
//   and _rm): bit for bit the IEEE quotient x / y computed here, NaN payloads
//   included, over the cross product of special operands and random operands.
// - Approximate members (divf and invf _native and _half): within the rcp
//   bound of the exact quotient where the divisor is in the approximation's
//   range, the IEEE quotient bit for bit where it is not (zero, subnormal or
//   huge divisors, infinities, NaN).
// - Members of one algorithm return the same bits.
#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <vector>
#include <xmmintrin.h>

#include "ocl_ravl_l9.h"
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

// ---- callers: one per width, w lanes in and out ----------------------------------

using d2 = ocl_ravl_double2;
using d4 = ocl_ravl_double4;
using f4 = ocl_ravl_float4;
using f8 = ocl_ravl_float8;
template <class V, class T> V ld(const T* p) {
  V v;
  std::memcpy(&v, p, sizeof v);
  return v;
}
template <class V, class T> void st(T* p, const V& v, int w) { std::memcpy(p, &v, w * sizeof(T)); }

template <class T> using Fn = void (*)(const T* x, const T* y, T* r);
#define P(name) __ocl_ravl_l9_##name
#define DIV_D(F, S)                                                                                       \
  {[](const double* x, const double* y, double* r) { r[0] = P(F##1##S)(x[0], y[0]); },                    \
   [](const double* x, const double* y, double* r) { st(r, P(F##2##S)(ld<d2>(x), ld<d2>(y)), 2); },       \
   [](const double* x, const double* y, double* r) { st(r, P(F##3##S)(ld<d4>(x), ld<d4>(y)), 3); },       \
   [](const double* x, const double* y, double* r) { st(r, P(F##4##S)(ld<d4>(x), ld<d4>(y)), 4); },       \
   [](const double* x, const double* y, double* r) {                                                      \
     st(r, P(F##8##S)(ld<d4>(x), ld<d4>(x + 4), ld<d4>(y), ld<d4>(y + 4)), 8);                            \
   },                                                                                                     \
   [](const double* x, const double* y, double* r) { P(F##16##S)(r, x, y); }}
#define DIV_F(F, S)                                                                                       \
  {[](const float* x, const float* y, float* r) { r[0] = P(F##1##S)(x[0], y[0]); },                       \
   [](const float* x, const float* y, float* r) { st(r, P(F##2##S)(ld<f4>(x), ld<f4>(y)), 2); },          \
   [](const float* x, const float* y, float* r) { st(r, P(F##3##S)(ld<f4>(x), ld<f4>(y)), 3); },          \
   [](const float* x, const float* y, float* r) { st(r, P(F##4##S)(ld<f4>(x), ld<f4>(y)), 4); },          \
   [](const float* x, const float* y, float* r) { st(r, P(F##8##S)(ld<f8>(x), ld<f8>(y)), 8); },          \
   [](const float* x, const float* y, float* r) {                                                         \
     st(r, P(F##16##S)(ld<f8>(x), ld<f8>(x + 8), ld<f8>(y), ld<f8>(y + 8)), 16);                          \
   }}
// Reciprocals take the divisor as y (x is ignored).
#define INV_D(F, S)                                                                                       \
  {[](const double*, const double* y, double* r) { r[0] = P(F##1##S)(y[0]); },                            \
   [](const double*, const double* y, double* r) { st(r, P(F##2##S)(ld<d2>(y)), 2); },                    \
   [](const double*, const double* y, double* r) { st(r, P(F##3##S)(ld<d4>(y)), 3); },                    \
   [](const double*, const double* y, double* r) { st(r, P(F##4##S)(ld<d4>(y)), 4); },                    \
   [](const double*, const double* y, double* r) { st(r, P(F##8##S)(ld<d4>(y), ld<d4>(y + 4)), 8); },     \
   [](const double*, const double* y, double* r) {                                                        \
     st(r, P(F##16##S)(ld<d4>(y), ld<d4>(y + 4), ld<d4>(y + 8), ld<d4>(y + 12)), 16);                     \
   }}
#define INV_F(F, S)                                                                                       \
  {[](const float*, const float* y, float* r) { r[0] = P(F##1##S)(y[0]); },                               \
   [](const float*, const float* y, float* r) { st(r, P(F##2##S)(ld<f4>(y)), 2); },                       \
   [](const float*, const float* y, float* r) { st(r, P(F##3##S)(ld<f4>(y)), 3); },                       \
   [](const float*, const float* y, float* r) { st(r, P(F##4##S)(ld<f4>(y)), 4); },                       \
   [](const float*, const float* y, float* r) { st(r, P(F##8##S)(ld<f8>(y)), 8); },                       \
   [](const float*, const float* y, float* r) { st(r, P(F##16##S)(ld<f8>(y), ld<f8>(y + 8)), 16); }}
constexpr int kWidths[6] = {1, 2, 3, 4, 8, 16};

// A member: its six widths; `inv`: x is 1; `approx`: x * rcp(y) on the
// divisors the approximation serves; `same_as`: the index of the member
// whose bits it must equal (-1: none before it).
template <class T> struct Member {
  const char* name;
  Fn<T> at[6];
  bool inv, approx;
  int same_as;
};
const Member<double> kDouble[] = {
    {"div", DIV_D(div, ), false, false, -1},       {"div_native", DIV_D(div, _native), false, false, 0},
    {"div_half", DIV_D(div, _half), false, false, 0}, {"div_rm", DIV_D(div, _rm), false, false, 0},
    {"inv", INV_D(inv, ), true, false, -1},        {"inv_native", INV_D(inv, _native), true, false, 4},
    {"inv_half", INV_D(inv, _half), true, false, 4}, {"inv_rm", INV_D(inv, _rm), true, false, 4},
};
const Member<float> kFloat[] = {
    {"divf", DIV_F(divf, ), false, false, -1},      {"divf_rm", DIV_F(divf, _rm), false, false, 0},
    {"divf_native", DIV_F(divf, _native), false, true, -1}, {"divf_half", DIV_F(divf, _half), false, true, 2},
    {"invf", INV_F(invf, ), true, false, -1},       {"invf_rm", INV_F(invf, _rm), true, false, 4},
    {"invf_native", INV_F(invf, _native), true, true, -1}, {"invf_half", INV_F(invf, _half), true, true, 6},
};

// Does the approximate member compute this lane itself (else: IEEE quotient)?
template <class T> bool approx_lane(const Member<T>& m, float y) {
  const float a = std::fabs(y);
  return a >= 0x1p-126f && (m.inv ? a <= kInvfApproxMax : a < 0x1p126f);
}

// The processor's reciprocal approximation of y: on this machine the
// approximate members must return exactly x * rcp(y) where they compute the
// lane themselves (no refinement step), besides meeting the bound.
float rcp(float y) { return _mm_cvtss_f32(_mm_rcp_ss(_mm_set_ss(y))); }

// Checks one lane; returns the relative error of an approximate lane with a
// normal quotient (0 otherwise) and sets `ok`.
template <class T> double check_lane(const Member<T>& m, T x, T y, T got, bool& ok) {
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

struct Result {
  int bad = 0;
  double max_rel = 0;
  float worst_x = 0, worst_y = 0;
};

// Runs members of `set` at the widths in the bit set `widths` over the pairs
// (xs[i], ys[i]); checks each lane, and that every member equals its same_as
// partner bit for bit.
template <class T, size_t N>
void run(const Member<T> (&set)[N], const std::vector<T>& xs, const std::vector<T>& ys, unsigned widths,
         Result* res) {
  const size_t n = xs.size();
  std::vector<T> x(xs), y(ys);
  x.resize(n + 16, T(0.75));
  y.resize(n + 16, T(0.75));
  std::vector<std::vector<T>> first_width(N);  // each member's results at its first width
  for (size_t mi = 0; mi < N; ++mi) {
    const Member<T>& m = set[mi];
    Result& r = res[mi];
    for (int k = 0; k < 6; ++k) {
      if (!(widths >> k & 1)) continue;
      const int w = kWidths[k];
      std::vector<T> out(n + 16);
      T buf[16];
      for (size_t i = 0; i < n; i += w) {
        m.at[k](&x[i], &y[i], buf);
        std::memcpy(&out[i], buf, w * sizeof(T));
      }
      for (size_t i = 0; i < n; ++i) {
        const T xi = m.inv ? T(1) : x[i];
        bool ok;
        double rel = check_lane(m, xi, y[i], out[i], ok);
        if (rel > r.max_rel) r.max_rel = rel, r.worst_x = (float)xi, r.worst_y = (float)y[i];
        if (ok) continue;
        if (r.bad++ < 6)
          ADD_FAILURE() << m.name << w << ": x = " << hex(xi) << ", y = " << hex(y[i]) << "\n  got  " << hex(out[i])
                        << "\n  IEEE " << hex(xi / y[i]);
      }
      if (first_width[mi].empty()) first_width[mi] = out;
      if (m.same_as >= 0 && !first_width[m.same_as].empty()) {
        int diff = 0;
        for (size_t i = 0; i < n; ++i) diff += bits(out[i]) != bits(first_width[m.same_as][i]);
        EXPECT_EQ(diff, 0) << m.name << w << " differs from " << set[m.same_as].name;
      }
    }
  }
}

// ---- operands ----------------------------------------------------------------------

template <class T> std::vector<T> special_operands();
template <> std::vector<double> special_operands() {
  std::vector<double> v;
  for (uint64_t b : kDoubleSpecials) v.push_back(from_bits<double>(b));
  for (double d : {0.0078125, -0.0078125, 0x1p-1022, 0x1.0000000000001p-1022, 0x1p-1074, 0x1p1023, 3.0, -7.0,
                   0x1.fffffffffffffp-1, 1e-300, 1e300, 0x1p-537})
    v.push_back(d);
  return v;
}
template <> std::vector<float> special_operands() {
  std::vector<float> v;
  for (uint64_t b : kFloatSpecials) v.push_back(from_bits<float>((uint32_t)b));
  for (float f : {0x1p-126f, 0x1.fffffep-127f, 0x1p126f, 0x1.fffffep125f, kInvfApproxMax,
                  std::nextafter(kInvfApproxMax, 1e30f), 0x1p127f, 1e-40f, 1.7e38f, 3.0f, -7.0f, 6.0f, 1e-20f,
                  1e20f})
    v.push_back(f);
  return v;
}

template <class T> void cross(const std::vector<T>& s, std::vector<T>& xs, std::vector<T>& ys) {
  for (T a : s)
    for (T b : s) xs.push_back(a), ys.push_back(b);
}

// Pairs of three kinds: random bit patterns (every exponent: huge, tiny,
// overflowing and underflowing quotients, NaN, infinities); random
// significands with exponents in a moderate range; and divisors covering
// every significand of a binade in turn (with random dividends).
template <class T> void random_operands(int n, uint64_t seed, std::vector<T>& xs, std::vector<T>& ys) {
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

TEST(Division, EdgeCases) {
  for (auto f : {P(div4), P(div4_native), P(div4_half), P(div4_rm)}) {
    d4 r = f(d4{1.0, 0.0, 1.0, -1.0}, d4{0.0, 0.0, 0x1p-1074, 0.0});
    EXPECT_EQ(r[0], __builtin_inf());
    EXPECT_TRUE(std::isnan(r[1]));
    EXPECT_EQ(r[2], __builtin_inf());
    EXPECT_EQ(r[3], -__builtin_inf());
  }
  const f8 six(6.0f), three(3.0f);
  EXPECT_EQ(P(divf8)(six, three)[0], 2.0f);
  EXPECT_NEAR(P(divf8_native)(six, three)[0], 2.0f, 2.0 * kDivApproxBound);
  f8 r = P(divf8_native)(f8(1.0f), f8{0x1p126f, 1e-40f, -0x1p126f, 0.0f, -0.0f, 3.0f, 0x1p127f, 2.0f});
  EXPECT_EQ(r[0], 0x1p-126f);
  EXPECT_EQ(r[1], __builtin_inff());
  EXPECT_EQ(r[2], -0x1p-126f);
  EXPECT_EQ(r[3], __builtin_inff());
  EXPECT_EQ(r[4], -__builtin_inff());
  EXPECT_EQ(r[6], 0x1p-127f);  // a denormal quotient, not flushed
  EXPECT_NEAR(r[7], 0.5f, 0.5 * kDivApproxBound);  // approximate, even for a power of two
  volatile float big = 1.7e38f;
  r = P(invf8_half)(f8{0.0f, -0.0f, __builtin_nanf(""), big, -big, 0x1p-127f, 1.0f, 4.0f});
  EXPECT_EQ(bits(r[0]), bits(__builtin_inff()));
  EXPECT_EQ(bits(r[1]), bits(-__builtin_inff()));
  EXPECT_TRUE(std::isnan(r[2]));
  EXPECT_EQ(bits(r[3]), bits(1.0f / big));
  EXPECT_EQ(bits(r[4]), bits(-1.0f / big));
  EXPECT_EQ(r[5], 0x1p127f);  // a denormal divisor: the IEEE reciprocal
  EXPECT_NEAR(r[6], 1.0f, kRcpBound);
  EXPECT_NEAR(r[7], 0.25f, 0.25 * kRcpBound);
}

TEST(Division, SpecialOperandsEveryWidth) {
  Result rd[8], rf[8];
  std::vector<double> xd, yd;
  cross(special_operands<double>(), xd, yd);
  run(kDouble, xd, yd, 0x3f, rd);
  std::vector<float> xf, yf;
  cross(special_operands<float>(), xf, yf);
  run(kFloat, xf, yf, 0x3f, rf);
  for (int i = 0; i < 8; ++i) {
    EXPECT_EQ(rd[i].bad, 0) << kDouble[i].name;
    EXPECT_EQ(rf[i].bad, 0) << kFloat[i].name;
  }
}

TEST(Division, RandomDouble) {
  std::vector<double> x, y;
  random_operands(240000, 21, x, y);
  Result r[8];
  run(kDouble, x, y, 0x29, r);  // widths 1, 4, 16
  for (int i = 0; i < 8; ++i) EXPECT_EQ(r[i].bad, 0) << kDouble[i].name;
}

TEST(Division, RandomFloat) {
  std::vector<float> x, y;
  random_operands(240000, 22, x, y);
  Result r[8];
  run(kFloat, x, y, 0x31, r);  // widths 1, 8, 16
  for (int i = 0; i < 8; ++i) {
    EXPECT_EQ(r[i].bad, 0) << kFloat[i].name;
    if (kFloat[i].approx)
      std::printf("%-12s max relative error %.3g = 2^%.2f at x = %a, y = %a\n", kFloat[i].name, r[i].max_rel,
                  std::log2(r[i].max_rel), r[i].worst_x, r[i].worst_y);
  }
}

// The approximate reciprocal on every significand of [1, 2), and on every
// input from 2^125 up to the last one it serves and the first ones past it
// (whose reciprocal nears the smallest normal): never flushed, within bound.
TEST(Division, ApproximateReciprocalSweeps) {
  std::vector<float> x, y;
  for (uint32_t b = 0x3f800000u; b < 0x40000000u; ++b) y.push_back(from_bits<float>(b));
  for (uint32_t b = 0x7e000000u; b < 0x7e800010u; ++b) y.push_back(from_bits<float>(b | (b & 1) << 31));
  x.assign(y.size(), 1.0f);
  const Member<float> approx[] = {kFloat[6]};
  Result r[1];
  run(approx, x, y, 0x10, r);  // width 8
  EXPECT_EQ(r[0].bad, 0);
  std::printf("invf_native sweep: max relative error %.3g = 2^%.2f at x = %a\n", r[0].max_rel,
              std::log2(r[0].max_rel), r[0].worst_y);
}

}  // namespace
