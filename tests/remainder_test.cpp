// fmod, remainder and remquo, double and float: every result bit for bit
// against MPFR (mpfr_fmod, mpfr_remainder, mpfr_remquo; remquo's quotient as
// its low 7 bits with the sign of x/y), over a cross table of special and
// boundary values, exact-half quotients of both parities, and random pairs:
// raw bit patterns (mostly large exponent differences, the scalar routine),
// pairs of close exponents (the vector path and its 2^p bound), and the close
// pairs again in the three directed rounding modes.
#include <gtest/gtest.h>
#include <mpfr.h>

#include <cfenv>
#include <cmath>
#include <cstdint>
#include <limits>
#include <random>
#include <string>
#include <vector>

#include "tests/common/call_many.h"
#include "tests/common/fp_bits.h"

namespace {

using namespace ravl_test;

enum Op { kFmod, kRemainder, kRemquo };
const char* const kOpName[] = {"fmod", "remainder", "remquo"};

template <class T> std::string fam(Op op, int w) {
  return kOpName[op] + std::string(sizeof(T) == 4 ? "f" : "") + std::to_string(w);
}

// The exact result (every result is representable, so precision p suffices)
// and remquo's quotient bits.
template <class T> T ref(Op op, T x, T y, int32_t* q7) {
  mpfr_t a, b, r;
  mpfr_inits2(Fmt<T>::prec, a, b, r, (mpfr_ptr)0);
  mpfr_set_d(a, x, MPFR_RNDN);
  mpfr_set_d(b, y, MPFR_RNDN);
  long q = 0;
  if (op == kFmod) mpfr_fmod(r, a, b, MPFR_RNDN);
  else if (op == kRemainder) mpfr_remainder(r, a, b, MPFR_RNDN);
  else mpfr_remquo(r, &q, a, b, MPFR_RNDN);
  *q7 = q < 0 ? -(int32_t)(-q & 127) : (int32_t)(q & 127);
  T out = (T)mpfr_get_d(r, MPFR_RNDN);
  mpfr_clears(a, b, r, (mpfr_ptr)0);
  return out;
}

// Runs the width-w export over the pairs in rounding mode fe; counts wrong
// lanes (first few reported).
template <class T>
int run(Op op, int w, const std::vector<T>& x, const std::vector<T>& y, const char* what, int fe = FE_TONEAREST) {
  std::vector<T> r;
  std::vector<int32_t> q;
  std::fesetround(fe);
  if (op == kRemquo) map2(fam<T>(op, w), r, q, x, y);
  else r = map<T>(fam<T>(op, w), x, y);
  std::fesetround(FE_TONEAREST);
  int bad = 0;
  for (size_t j = 0; j < x.size(); ++j) {
    int32_t wq;
    const T want = ref(op, x[j], y[j], &wq);
    const bool nan = std::isnan(want);
    const bool ok = nan ? std::isnan(r[j]) : bits(r[j]) == bits(want) && (op != kRemquo || q[j] == wq);
    if (!ok && ++bad <= 5)
      ADD_FAILURE() << fam<T>(op, w) << " " << what << " mode " << fe << ": x=" << hex(x[j]) << " y=" << hex(y[j]) << " got "
                    << hex(r[j]) << (op == kRemquo ? " q=" + std::to_string(q[j]) : "")
                    << " want " << hex(want) << (op == kRemquo ? " q=" + std::to_string(wq) : "");
  }
  return bad;
}

// ---- inputs -------------------------------------------------------------------------

template <class T> std::vector<T> specials() {
  using L = std::numeric_limits<T>;
  const T base[] = {T(0),          T(1),           T(2),          T(3),       T(0.5),         T(1.5),
                    T(7),          T(10),          T(0.1),        L::min(),   L::denorm_min(), T(3) * L::denorm_min(),
                    L::min() - L::denorm_min(),    L::max(),      L::max() / 3, L::epsilon(), T(1) - L::epsilon() / 2,
                    T(1) + L::epsilon(),           std::ldexp(T(1), L::digits - 1),   std::ldexp(T(1), L::digits),
                    std::ldexp(T(1.5), L::digits - 2), L::infinity(), L::quiet_NaN()};
  std::vector<T> v;
  for (T b : base) v.push_back(b), v.push_back(-b);
  v.push_back(from_bits<T>(Fmt<T>::exp | 1));  // a signaling NaN
  return v;
}

// x, y pairs: every special against every special.
template <class T> void cross(std::vector<T>& x, std::vector<T>& y) {
  for (T a : specials<T>())
    for (T b : specials<T>()) x.push_back(a), y.push_back(b);
}

template <class T> T rand_bits(std::mt19937_64& g) { return from_bits<T>((typename Fmt<T>::U)g()); }

// Finite x of random bits, y with a random significand and sign and an exponent
// within [-6, p + 6] below x's: quotients up to about 2^(p+6), straddling the
// vector path's bound 2^p, and many y below x.
template <class T> void close_pairs(std::mt19937_64& g, size_t n, std::vector<T>& x, std::vector<T>& y) {
  while (n) {
    const T a = rand_bits<T>(g), b = rand_bits<T>(g);
    if (!std::isfinite(a) || !std::isfinite(b) || b == 0) continue;
    int ea;
    std::frexp(a, &ea);
    const int d = (int)(g() % (Fmt<T>::prec + 13)) - 6;
    int eb;
    const T mb = std::frexp(b, &eb);
    const T yb = std::ldexp(mb, ea - d);
    if (yb == 0 || !std::isfinite(yb)) continue;
    x.push_back(a), y.push_back(yb), --n;
  }
}

// x = (2j + 1) * y / 2 exactly: quotients j + 1/2, ties of both parities.
template <class T> void ties(std::mt19937_64& g, size_t n, std::vector<T>& x, std::vector<T>& y) {
  const int free_bits = Fmt<T>::prec - 12;
  for (size_t i = 0; i < n; ++i) {
    const T m = T((g() >> (64 - free_bits)) | 1);            // odd significand, free_bits wide
    const T yy = std::ldexp(m, (int)(g() % 200) - 100 - free_bits) * (g() & 1 ? -1 : 1);
    const T k = T(2 * (g() % 1024) + 1);
    x.push_back(std::ldexp(k * yy, -1) * (g() & 2 ? -1 : 1)), y.push_back(yy);
  }
}

const Op kOps[] = {kFmod, kRemainder, kRemquo};

template <class T> void special_rows() {
  std::vector<T> x, y;
  cross(x, y);
  for (Op op : kOps)
    for (int w : {1, 3, 16}) EXPECT_EQ(run(op, w, x, y, "special"), 0);
}

TEST(Remainder, SpecialCrossDouble) { special_rows<double>(); }
TEST(Remainder, SpecialCrossFloat) { special_rows<float>(); }

// A few results written out: the tie rule, signs and quotient bits.
TEST(Remainder, WrittenOut) {
  struct Row { double x, y, fmod, rem; int32_t q; };
  const Row rows[] = {
      {5, 2, 1, 1, 2},        {7, 2, 1, -1, 4},        {-7, 2, -1, 1, -4},       {7, -2, 1, -1, -4},
      {-0.0, 1, -0.0, -0.0, 0}, {-4, 2, -0.0, -0.0, -2}, {1, -INFINITY, 1, 1, 0},   {0x1p1023, 0x1p-1074, 0, 0, 0},
      {0x1.8p-1073, 0x1p-1074, 0, 0, 3},   {0x1.8p-1073, 0x1p-1073, 0x1p-1074, -0x1p-1074, 2},
      {259, 2, 1, -1, 2},     {0x1p60 + 0x1p8, 3, 2, -1, 43},
  };
  for (const Row& r : rows) {
    double f, m, qr;
    int32_t q;
    call("fmod1", &f, &r.x, &r.y);
    call("remainder1", &m, &r.x, &r.y);
    call2("remquo1", &qr, &q, &r.x, &r.y);
    EXPECT_EQ(bits(f), bits(r.fmod)) << r.x << " fmod " << r.y;
    EXPECT_EQ(bits(m), bits(r.rem)) << r.x << " remainder " << r.y;
    EXPECT_EQ(bits(qr), bits(r.rem)) << r.x << " remquo " << r.y;
    EXPECT_EQ(q, r.q) << r.x << " remquo " << r.y;
  }
  // Domain errors give NaN in their lane only.
  const double x[4] = {INFINITY, 1, 0, 5}, y[4] = {1, 0, 0, 3};
  double r[4];
  call("remainder4", r, x, y);
  EXPECT_TRUE(std::isnan(r[0]) && std::isnan(r[1]) && std::isnan(r[2]));
  EXPECT_EQ(r[3], -1.0);
}

template <class T> void random_rows(size_t n_bits, size_t n_close, size_t n_ties) {
  std::mt19937_64 g(sizeof(T) * 7919);
  std::vector<T> bx, by, cx, cy, tx, ty;
  for (size_t i = 0; i < n_bits; ++i) bx.push_back(rand_bits<T>(g)), by.push_back(rand_bits<T>(g));
  close_pairs(g, n_close, cx, cy);
  ties(g, n_ties, tx, ty);
  for (Op op : kOps) {
    EXPECT_EQ(run(op, 16, bx, by, "random bits"), 0);
    EXPECT_EQ(run(op, 16, cx, cy, "close exponents"), 0);
    EXPECT_EQ(run(op, 16, tx, ty, "ties"), 0);
  }
  // The vector path is exact in every rounding mode.
  const std::vector<T> dx(cx.begin(), cx.begin() + n_close / 8), dy(cy.begin(), cy.begin() + n_close / 8);
  for (int fe : {FE_DOWNWARD, FE_UPWARD, FE_TOWARDZERO})
    for (Op op : kOps) EXPECT_EQ(run(op, 16, dx, dy, "close exponents", fe), 0);
}

TEST(Remainder, RandomDouble) { random_rows<double>(400000, 250000, 40000); }
TEST(Remainder, RandomFloat) { random_rows<float>(400000, 250000, 40000); }

}  // namespace
