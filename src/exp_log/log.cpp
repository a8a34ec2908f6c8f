// Natural logarithm on double lanes (family log).
//
// Every member computes all lanes on a branch-free vector path that is valid
// for positive normal finite x, flags the other lanes (x below the smallest
// normal, negative numbers and zeros included, +infinity and NaN) and hands
// them to one scalar routine that every class shares. Special inputs therefore
// give the same result in every class:
//   NaN -> quiet NaN, +inf -> +inf, -inf and x < 0 -> NaN, +-0 -> -inf,
//   positive denormals -> ln x within 1 ulp.
//
// Classes and measured max errors (tests/accuracy_test.cpp against MPFR, 2^21
// inputs per row: log-uniform over [DBL_MIN, DBL_MAX], uniform over [0.5, 2],
// log-uniform over the denormals, random bit patterns and +-64 ulps around 1,
// 2, sqrt2, the smallest normal and DBL_MAX; the test asserts the bounds kept
// in its table):
//   log   plain                 full   0.732 ulp (worst x = 0x1.ff8237e8dedb4p-1)
//   log   _native _half _rm     fast   2.09e6 ulp (worst x = 0x1.ff802454b64d5p-1,
//                                      relative 2.3e-10 = 2^-32.0)
// The lanes computed by the scalar routine (denormal x): 0.9999 ulp (worst
// x = 0x0.385a3d67e182ap-1022; two roundings, see log_scalar).
#include "exp_log/logd_core.h"
#include "frame/entry.h"
#include "tables/log.h"

namespace ravl {
namespace log_detail {

// ---- reduction shared by both vector algorithms ----------------------------------
//
// x = 2^(E-1023) m with E the biased exponent and m in [1, 2). m' = m 2^-10
// (the fraction of x under the exponent of 2^-10) lies in [2^-10, 2^-9); R is
// the nearest integer to a reciprocal estimate of m', so R is in 512..1024 and
// r = R m' - 1 is small:
//   |r| <= 1.5 2^-12 (the estimate, widened by the single rounding of m')
//        + 0.5 m' (rounding R)  <= 1.35e-3.
// R m' has at most 11 + 53 bits with its lowest at 2^-62 and |r| < 2^-9, so
// r = fms(R, m', 1) is exact. Then, with B = 512 for R <= 724 and 1024 above,
//   ln x = (E - 1023) ln2 + ln(1024 m') = (E - k) ln2 - ln(R/B) + ln(1 + r),
// k = 1022 or 1023 respectively.

constexpr uint64_t kFracMask = 0x000fffffffffffffull;
// Exponent field of 2^-10 (0x3f50000000000000).
constexpr uint64_t kExpM10 = 0x3f50000000000000ull;
// 2^52 (0x4330000000000000): OR-ed under the biased exponent E (< 2^12) it
// makes the double 2^52 + E.
constexpr uint64_t kTwo52Bits = 0x4330000000000000ull;
constexpr double kTwo52 = f64_bits(kTwo52Bits);
// Bits of 512.0 (0x4080000000000000): bits(R) - bits(512) = (R - 512) 2^43 for
// every integer R in 512..1024 (1024 continues the line into the next binade).
constexpr uint64_t kBits512 = 0x4080000000000000ull;
// R above 724 (~512 sqrt2) uses B = 1024, so that |ln(R/B)| < 0.347.
constexpr double kRSplit = 724.0;
// Smallest normal (0x0010000000000000) and largest finite (0x7fefffffffffffff).
constexpr double kMinNormal = f64_bits(0x0010000000000000ull);
constexpr double kMaxFinite = f64_bits(0x7fefffffffffffffull);

template <int L> struct Reduced {
  Vec<double, L> R, E, r;
  Vec<uint64_t, L> off;  // (R - 512) 2^43
};

// Hardware single reciprocal estimate of m' (relative error at most 1.5 2^-12).
template <int L> RAVL_INLINE Vec<double, L> recip_estimate(Vec<double, L> m) {
  if constexpr (L == 4) {
    return convert<double>(rcp_approx(convert<float>(m)));
  } else {
    Vec<float, 2> f = convert<float>(m);
    return convert<double>(slice<0, 2>(rcp_approx(join(f, f))));
  }
}

template <int L> RAVL_INLINE Reduced<L> reduce(Vec<double, L> x) {
  using V = Vec<double, L>;
  using U = Vec<uint64_t, L>;
  U ux = as_uint(x);
  V m = as_float<V>((ux & U(kFracMask)) | U(kExpM10));
  Reduced<L> d;
  d.R = round_imm<8>(recip_estimate(m));  // nearest, no inexact flag
  d.E = as_float<V>((ux >> 52) | U(kTwo52Bits)) - V(kTwo52);
  d.r = fms(d.R, m, V(1.0));  // exact
  d.off = as_uint(d.R) - U(kBits512);
  return d;
}

// ---- the scalar routine ------------------------------------------------------------


// ln2 = kSLn2Hi + kSLn2Lo: kSLn2Hi = 0.6931471805598903 (0x3fe62e42fefa3800)
// has 42 significant bits, so e kSLn2Hi is exact for |e| < 2^11;
// kSLn2Lo = 5.497923018708371e-14 (0x3d2ef35793c76730).
constexpr double kSLn2Hi = f64_bits(0x3fe62e42fefa3800ull);
constexpr double kSLn2Lo = f64_bits(0x3d2ef35793c76730ull);
// ln(1 + t) - t ~ t^2 Q(t), Q(t) = -1/2 + q3 t + ... + q8 t^6 on |t| <= 0.009765625
// (error below 2^-60 relative to t).
constexpr double kQ3 = f64_bits(0x3fd5555555555613ull);  // 0.33333333333334386
constexpr double kQ4 = f64_bits(0xbfd0000000000262ull);  // -0.25000000000003386
constexpr double kQ5 = f64_bits(0x3fc9999997b36c81ull);  // 0.19999999911565072
constexpr double kQ6 = f64_bits(0xbfc555555228b38full);  // -0.1666666651884978
constexpr double kQ7 = f64_bits(0x3fc249c02481059dull);  // 0.1428756883852146
constexpr double kQ8 = f64_bits(0xbfc000b405a2836dull);  // -0.1250214602960357
// Mantissas within this of 1 (0.009765625, 0x3f84000000000000) take the
// polynomial alone.
constexpr double kNear = f64_bits(0x3f84000000000000ull);
// 2^46 + 1 (0x42d0000000000040): m + kIdxShift rounds m to a multiple of 2^-6,
// and the low 7 bits of the sum are round(64 (m - 1)), 0..64 for m in [1, 2).
constexpr double kIdxShift = f64_bits(0x42d0000000000040ull);
// 2^21 (0x4140000000000000): (m + kSplit21) - kSplit21 keeps m to 2^-31 (32 bits).
constexpr double kSplit21 = f64_bits(0x4140000000000000ull);
// 2^60 (0x43b0000000000000), the scale that makes a denormal normal.
constexpr double kTwo60 = f64_bits(0x43b0000000000000ull);

RAVL_INLINE double q_poly(double t) {
  double p = fma(t, kQ8, kQ7);
  p = fma(t, p, kQ6);
  p = fma(t, p, kQ5);
  p = fma(t, p, kQ4);
  p = fma(t, p, kQ3);
  return fma(t, p, -0.5);
}

// ln x for every double x, with the status of the result.
//
// x = 2^e m, m in [1, 2). Mantissas within 0.009765625 of 1 or of 2 (the
// latter read as m/2 and e + 1) give ln x = e ln2 + t + t^2 Q(t), t = m - 1
// exact. Otherwise, with j = round(64 (m - 1)) and c_j ~ 1/(1 + j/64) to 21
// bits: u = c_j m_hi - 1 is exact (21 + 32 bits, then Sterbenz), v = c_j (m -
// m_hi) carries the rest, w = u + v = c_j m - 1 (|w| < 2^-7 + 2^-20), and
//   ln x = e ln2 - ln c_j + ln(1 + w)
//        = u + (e ln2hi + hi_j) + (v + (e ln2lo + lo_j) + w^2 Q(w)),
// where e ln2hi + hi_j is exact (both multiples of 2^-42, sum below 2^10).
// Error: u + (e ln2hi + hi_j) is rounded once and the sum with the small
// terms once more, both in the result's binade: at most 1 ulp plus 2^-20 ulp
// for the small terms (measured 0.9999 ulp on denormal x), 0.5 ulp plus as
// much on the near-1 row.
// At j = 64 (m near 2) c_j = 1/2 and hi_j, lo_j are kSLn2Hi, kSLn2Lo, so
// that for e = -1 the constant part is exactly zero.
RAVL_INLINE int log_scalar(const double* xp, double* rp) {
  double x = *xp;
  int status;
  if (logd::log_special(x, rp, &status)) return status;
  uint64_t ix = bits_of(x);
  int64_t e = (int64_t)(ix >> 52);
  if (e == 0) {  // denormal: x 2^60 is normal and exact
    ix = bits_of(x * kTwo60);
    e = (int64_t)(ix >> 52) - 60;
  }
  e -= 1023;
  double m = f64_bits((ix & kFracMask) | 0x3ff0000000000000ull);
  double t = m - 1.0;
  double et = (double)e;
  if (m >= 2.0 - 2.0 * kNear) t = 0.5 * m - 1.0, et += 1.0;  // exact
  if (t <= kNear) {
    double tail = fma(t * t, q_poly(t), et * kSLn2Lo);
    *rp = et * kSLn2Hi + (t + tail);
    return kStatusOk;
  }
  double ed = (double)e;
  uint64_t j = bits_of(m + kIdxShift) & 127;
  double mh = (m + kSplit21) - kSplit21;
  const double* row = reinterpret_cast<const double*>(log_tables::kLogScalar) + 3 * j;
  double u = fma(row[0], mh, -1.0);
  double v = row[0] * (m - mh);
  double w = u + v;
  double high = u + fma(ed, kSLn2Hi, row[1]);
  double low = fma(w * w, q_poly(w), v + fma(ed, kSLn2Lo, row[2]));
  *rp = high + low;
  return kStatusOk;
}

// ---- what every member shares: the lane test and the scalar routine ----------------

struct LogBase : frame::Kernel {
  using sig = double(double);
  static constexpr bool has_callout = true;
  // x below the smallest normal (ordered: negatives, zeros, denormals) or not
  // at most DBL_MAX (unordered: +infinity and NaN).
  template <int L> static RAVL_INLINE Mask<double, L> special(Vec<double, L> x, Vec<double, L>) {
    using V = Vec<double, L>;
    return (x < V(kMinNormal)) | not_le(x, V(kMaxFinite));
  }
  static RAVL_INLINE int scalar(const double* x, double* r) { return log_scalar(x, r); }
};

// ---- full class (plain) ----------------------------------------------------------------
//
// ln x = A + B + ln(1 + r), A = a(R) + E ln2hi, B = b(R) + E ln2lo, where
// a(R) + b(R) = -ln(R/B) - k (ln2hi + ln2lo) from the table. a(R) and E ln2hi
// are multiples of 2^-40 below 2^11 in magnitude, so A is exact; at x = 1
// (R = 1024, E = 1023) and for x just below 1 (R = 512, E = 1022) A and B are
// exactly zero, and near 1 they cancel exactly whatever R is.
// ln(1 + r) ~ r + r^2 P(r), P = (c2 + c3 r) + r^2 (c4 + c5 r) on |r| <= 1.35e-3;
// S = r + A is split exactly (Fast2Sum: A is zero or |A| > |r|) and the
// small terms are added to its error before S.
// ln2 = kLn2Hi + kLn2Lo + 3.1e-24: kLn2Hi = 0.69314718055829871
// (0x3fe62e42fefa0000, 17 trailing zero bits), kLn2Lo = 1.6465949582866463e-12
// (0x3d7cf79abc9e0000, also 17), so E kLn2Hi and E kLn2Lo are exact.
constexpr double kLn2Hi = f64_bits(0x3fe62e42fefa0000ull);
constexpr double kLn2Lo = f64_bits(0x3d7cf79abc9e0000ull);
constexpr double kC2 = f64_bits(0xbfdffffffffff81full);  // -0.49999999999988803
constexpr double kC3 = f64_bits(0x3fd55555555543c5ull);  // 0.33333333333308374
constexpr double kC4 = f64_bits(0xbfd0000148058ee1ull);  // -0.2500003054940248
constexpr double kC5 = f64_bits(0x3fc9999cacdb4d0aull);  // 0.20000036659494241

struct LogFull : LogBase {
  template <int L> static RAVL_INLINE Vec<double, L> vec(Vec<double, L> x) {
    using V = Vec<double, L>;
    using I = Vec<int64_t, L>;
    Reduced<L> d = reduce(x);
    V a, b;
    // Pair index 2 (R - 512): the element offset of a(R); b(R) follows it.
    gather_pairs(reinterpret_cast<const double*>(log_tables::kLogFull), bitcast<I>(d.off >> 42), a, b);
    V A = fma(d.E, V(kLn2Hi), a);  // exact
    V B = fma(d.E, V(kLn2Lo), b);
    V r = d.r;
    V r2 = r * r;
    V P = fma(r2, fma(r, V(kC5), V(kC4)), fma(r, V(kC3), V(kC2)));
    V S = r + A;
    V err = r - (S - A);
    return fma(r2, P, B + err) + S;
  }
};

// ---- fast classes (_native, _half, _rm) -------------------------------------------------
//
// ln x = (E - k) ln2 + T(R) + r + r^2 (c2 + c3 r): one table value, ln2 as
// one double, the full class's first two coefficients. The truncation r^4/4
// (8.3e-13 at |r| = 1.35e-3) dominates where the result is small: near x = 1
// (T(R) = 0, E = k), relative r^3/4 <= 6.2e-10; where T(R) is not zero the
// result is at least 6e-4 in magnitude, so the relative error stays below
// 1.4e-9 for any reciprocal estimate within 1.5 2^-12 (the estimate, and with
// it R and the last bits of both classes' results, may differ between
// processors).
constexpr double kLn2 = f64_bits(0x3fe62e42fefa39efull);  // 0.69314718055994529

// The vector path's constants, one 32-byte row each, read as memory operands:
// the lane test's and the reduction's (exp_log/logd_core.h: the same m', R, r
// and E as reduce() above), bits(724.0) for the choice of k, and the
// polynomial's.
struct LogFastRows : logd::FlagRows, logd::ReduceRows {
  Row<double> bias = row(logd::kBias1022);
  Row<uint64_t> r724 = row(bits_of(kRSplit));
  Row<double> ln2 = row(kLn2), c2 = row(kC2), c3 = row(kC3);
};
inline constexpr LogFastRows kLogFastRows{};

struct LogFast : LogBase {
  template <int L> static RAVL_INLINE Vec<double, L> vec(Vec<double, L> x) {
    using V = Vec<double, L>;
    const LogFastRows& c = rows(kLogFastRows);
    // d.e = E - k: E - 1022, less one more where R > 724 (bits(R) > bits(724)).
    logd::Parts<L> d = logd::reduce<true>(x, c);
    // T(R), row R - 512, read at bits(R) >> 43 from the table's start less 0x81000 rows.
    V T = logd::row8(log_tables::kLogFast, d);
    V r = d.r;
    V p = fma(r * r, fma(r, get<V>(c.c3), get<V>(c.c2)), r);
    return fma(d.e, get<V>(c.ln2), T + p);
  }
  // The same lanes as LogBase's test (every x that is not a positive normal
  // number), by one integer add and compare (logd::flag).
  template <int L> static RAVL_INLINE Mask<double, L> special(Vec<double, L> x, Vec<double, L>) {
    return logd::flag(x, rows(kLogFastRows));
  }
};

}  // namespace log_detail

namespace log_k {
using full = log_detail::LogFull;
using fast = log_detail::LogFast;
}  // namespace log_k

}  // namespace ravl

#include "entries/log.inc"
