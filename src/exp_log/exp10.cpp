// 10^x on double lanes (family exp10) and on single lanes (family exp10f).
//
// Every member computes all lanes on a branch-free vector path and flags the
// lanes that path cannot handle: |x| at or above about 307.652 (double) or
// above 37.9297791 (single), infinities and NaN, just inside log10 of the
// smallest normal. There is no inline pass: every flagged lane goes to the
// scalar routine of its precision, which every class shares, so special
// inputs give the same result in every class:
//   NaN -> quiet NaN, +inf -> +inf, -inf -> +0, 0 -> 1,
//   overflow -> +inf (status 3), underflow -> denormal or +0 (status 4).
//
// Classes and measured max errors (against MPFR: 2^21 random doubles over
// [-330, 315] or 2^22 singles over [-46, 39], random bit patterns and +-64
// ulps around every bound; tests/accuracy_test.cpp keeps and asserts the
// bounds):
//   exp10   plain                 full   0.508 ulp
//   exp10   _native _half _rm     fast   2.83e7 ulp (relative 4.4e-9 = 2^-27.7)
//   exp10f  plain                 full   0.525 ulp
//   exp10f  _native _half _rm     fast   2148 ulp (relative 1.8e-4 = 2^-12.4)
// The double routine shares the full class's arithmetic (within 0.508 ulp;
// denormal results are rounded once to the denormal grid). The single routine
// rounds a double value once and is correctly rounded on every flagged single
// (tests/accuracy_test.cpp checks every one of them).
#include "exp_log/exp_common.h"
#include "frame/entry.h"
#include "tables/exp2_exp10.h"

namespace ravl {
namespace exp10_detail {

using exp_common::kShiftf;  // 1.5 * 2^23, the single classes' shifter

// ---- bounds ------------------------------------------------------------------

// The upper word of |x| above 0x40733a70 (|x| > 307.65258789062494, the
// largest unflagged value being 0x40733a70ffffffff), infinities and NaN leave
// the double vector paths: log10(2^-1022) = -307.65265556858878, so every kept
// lane has a normal result whose exponent the integer add can form.
constexpr uint64_t kFastBoundBits = 0x40733a70ffffffffull;
// x above 0x40734413509f79fe = 308.25471555991669, the largest double whose
// 10^x rounds to DBL_MAX, overflows to +infinity.
constexpr double kOverflow = f64_bits(0x40734413509f79feull);
// x below 0xc07439b746e36b52 = -323.60724533877976, the smallest double whose
// 10^x rounds to the smallest denormal, gives +0.
constexpr double kUnderflow = f64_bits(0xc07439b746e36b52ull);
// log10(2^-1022) = -307.652655568588781... lies between 0xc0733a7146f72a42 and
// 0xc0733a7146f72a41: x below the latter has a denormal exact result.
constexpr double kDenormal = f64_bits(0xc0733a7146f72a41ull);

// Bits of |x| above 0x4217b818 (37.9297791, the single just inside
// -log10(2^-126) = 37.92977945), infinities and NaN leave the single vector paths.
constexpr uint32_t kFastBoundfBits = 0x4217b818u;
// x above 0x421a209a = 38.5318375, the largest single whose 10^x rounds to
// FLT_MAX, overflows; x below 0xc2349e35 = -45.1544991, the smallest single
// whose 10^x rounds to the smallest single denormal, gives +0; x below
// -37.9297791 (0xc217b818) has a result below 2^-126.
constexpr float kOverflowf = f32_bits(0x421a209au);
constexpr float kUnderflowf = f32_bits(0xc2349e35u);
constexpr float kDenormalf = f32_bits(0xc217b818u);

// ---- reduction constants (double full class and both routines) ------------------

// 1.53125 * 2^52 (0x4338800000000000): for |t| < 2^50, t + kShift rounds t to
// an integer held in the low mantissa bits of the sum.
constexpr double kShift = f64_bits(0x4338800000000000ull);
// 128 log2(10) = 425.20679614558236 (0x407a934f0979a371).
constexpr double kLog2_10x128 = f64_bits(0x407a934f0979a371ull);
// log10(2)/128 as hi + lo: hi = 0.0023517968411397305 (0x3f63441350a00000) has
// 21 trailing zero bits, so n * hi is exact for |n| < 2^21 (here |n| < 2^17.1),
// and x - n hi is exact; lo = -1.4877444114972089e-14 (0xbd10c0219dc1da99).
constexpr double kLog10_2o128Hi = f64_bits(0x3f63441350a00000ull);
constexpr double kLog10_2o128Lo = f64_bits(0xbd10c0219dc1da99ull);

// 10^r - 1 ~ r (c1 + c2 r + c3 r^2 + c4 r^3 + c5 r^4) on |r| <= log10(2)/256
// (c1 = ln 10 rounded): relative error of 1 + r P(r) against 10^r at most
// 7.7e-20 = 2^-63.5 (MPFR, exact evaluation).
constexpr double kC1 = f64_bits(0x40026bb1bbb55516ull);  // 2.3025850929940459
constexpr double kC2 = f64_bits(0x40053524c73ce8e3ull);  // 2.650949055239026
constexpr double kC3 = f64_bits(0x4000470591ccea8bull);  // 2.0346785917911965
constexpr double kC4 = f64_bits(0x3ff2bd767584db59ull);  // 1.1712555494866221
constexpr double kC5 = f64_bits(0x3fe144c03efafb54ull);  // 0.53964245129450683

// ---- the scalar routines -----------------------------------------------------

using exp_common::exp_inf_or_nan;
using exp_common::inf_or_nan;
using exp_common::overflow_result;
using exp_common::pow2;
using exp_common::scale_pow2;
using exp_common::underflow_result;

// 2^-1022 (0x0010000000000000).
constexpr double kMinNormal = f64_bits(0x0010000000000000ull);

// 10^x = 2^m (hi + v) for |x| <= 330: n = round(128 x log2 10), m = floor(n/128),
// j = n mod 128, r = x - n log10(2)/128 in two steps, hi = hi_j and
// v = hi_j q + lo_j with q ~ 10^r - 1; hi + v is within about 2^-60
// (relative: the rounding of v and of r, the polynomial's 2^-63.5) of
// 10^(x - m log10 2), the same arithmetic as the vector full class.
RAVL_INLINE double exp10_reduce(double x, int64_t* m, double* v) {
  double k = fma(x, kLog2_10x128, kShift);
  double n = k - kShift;
  int64_t ni = (int64_t)(bits_of(k) - bits_of(kShift));
  int64_t j = ni & 127;
  *m = ni >> 7;
  double r = fnma(n, kLog10_2o128Hi, x);
  r = fnma(n, kLog10_2o128Lo, r);
  double q = r * fma(r, fma(r, fma(r, fma(r, kC5, kC4), kC3), kC2), kC1);
  double hi = f64_bits(exp2_exp10_tables::kExp10Pairs128[2 * j]);
  double lo = f64_bits(exp2_exp10_tables::kExp10Pairs128[2 * j + 1]);
  *v = fma(hi, q, lo);
  return hi;
}

// The double special-lane routine, shared by every double member.
RAVL_INLINE int exp10_scalar(const double* xp, double* rp) {
  double x = *xp;
  if (inf_or_nan(x)) {  // -inf -> +0; +inf stays, NaN is quietened
    *rp = exp_inf_or_nan(x);
    return kStatusOk;
  }
  if (x > kOverflow) return overflow_result(rp);
  if (x < kUnderflow) return underflow_result(rp);
  int64_t m;
  double v;
  double hi = exp10_reduce(x, &m, &v);
  if (x < kDenormal) {
    // Denormal result R = 2^-1022 Y with Y = (hi + v) 2^(m+1022) in (0, 1):
    // rounding R to the denormal grid 2^-1074 is rounding Y to multiples of
    // 2^-52, which is what adding 1 does. hi 2^(m+1022) and v 2^(m+1022) are
    // exact (m >= -1076); 1 + hs is split exactly (Fast2Sum, hs < 1), so the
    // one rounding is the final add; Z - 1 and the scaling are exact.
    double sc = pow2(m + 2045);  // 2^(m+1022)
    double hs = hi * sc, vs = v * sc;
    double s1 = 1.0 + hs;
    double e1 = (1.0 - s1) + hs;
    double z = s1 + (vs + e1);
    *rp = (z - 1.0) * kMinNormal;
    return kStatusUnderflow;
  }
  *rp = scale_pow2(hi + v, m);
  return kStatusOk;
}

// The single special-lane routine, shared by every single member: 10^x as
// 2^m (hi + v) in double (normal for every single x in [-45.2, 38.6]); the sum
// hi + v is rounded to odd, so that the one rounding to single (to the
// denormal grid included) is the correct rounding of hi + v.
RAVL_INLINE int exp10f_scalar(const float* xp, float* rp) {
  float x = *xp;
  if (inf_or_nan(x)) {
    *rp = exp_inf_or_nan(x);
    return kStatusOk;
  }
  if (x > kOverflowf) return overflow_result(rp);
  if (x < kUnderflowf) return underflow_result(rp);
  int64_t m;
  double v;
  double hi = exp10_reduce((double)x, &m, &v);
  // Round to odd: s = RN(hi + v) and its exact error e (Fast2Sum, |v| < hi);
  // when e != 0 and s is even, step s one ulp toward e.
  double s = hi + v;
  double e = (hi - s) + v;
  uint64_t sb = bits_of(s);
  if (e != 0.0 && (sb & 1) == 0) sb += (e > 0.0) ? 1 : (uint64_t)-1;
  *rp = (float)(f64_bits(sb) * pow2(m + 1023));
  return x < kDenormalf ? kStatusUnderflow : kStatusOk;
}

// What every member of a precision shares: the lane test (the upper word of
// |x| above 0x40733a70, as one signed 64-bit compare of the whole pattern:
// |x| > 307.65258789062494, infinities and NaN; for singles the bits of |x|
// above those of 37.9297791) and the scalar routine. The bound's rows
// (Exp10Bound, Exp10fBound) open each class's block of constant rows, kRows,
// which the lane test and the vector path read through one address.
template <const auto& kRows> using Exp10Base = exp_common::AbsBoundKernel<double, kRows, exp10_scalar>;
template <const auto& kRows> using Exp10fBase = exp_common::AbsBoundKernel<float, kRows, exp10f_scalar>;
using Exp10Bound = exp_common::BoundRows<double, kFastBoundBits>;
using Exp10fBound = exp_common::BoundRows<float, kFastBoundfBits>;

// ---- double, full class ---------------------------------------------------------
//
// 10^x, plain exp10. Max error 0.508 ulp (worst x = 0x1.0b00c52a6646p+5).
// n = round(128 x log2 10) by the shifter; r = x - n log10(2)/128 in two steps,
// |r| <= log10(2)/256; 10^x = 2^floor(n/128) 2^(j/128) 10^r with j = n mod 128
// and 2^(j/128) = hi_j + lo_j (absolute); y = hi_j + (hi_j q + lo_j).
// The vector path's constants, one 32-byte row each, read as memory operands.
struct Exp10FullRows : Exp10Bound {
  Row<double> log2_10x128 = row(kLog2_10x128), shift = row(kShift), log10_2o128_hi = row(kLog10_2o128Hi),
              log10_2o128_lo = row(kLog10_2o128Lo), c1 = row(kC1), c2 = row(kC2), c3 = row(kC3), c4 = row(kC4),
              c5 = row(kC5);
  Row<uint64_t> m127 = row<uint64_t>(127), exp_field = row<uint64_t>(0xfff0000000000000);
};
inline constexpr Exp10FullRows kExp10FullRows{};

struct Exp10Full : Exp10Base<kExp10FullRows> {
  template <int L> static RAVL_INLINE Vec<double, L> vec(Vec<double, L> x) {
    using V = Vec<double, L>;
    using U = Vec<uint64_t, L>;
    using I = Vec<int64_t, L>;
    const Exp10FullRows& c = rows(kExp10FullRows);
    V k = fma(x, get<V>(c.log2_10x128), get<V>(c.shift));
    V n = k - get<V>(c.shift);
    V r = fnma(n, get<V>(c.log10_2o128_hi), x);  // exact
    r = fnma(n, get<V>(c.log10_2o128_lo), r);
    V q = r * fma(r, fma(r, fma(r, fma(r, get<V>(c.c5), get<V>(c.c4)), get<V>(c.c3)), get<V>(c.c2)), get<V>(c.c1));
    U kb = as_uint(k);
    // The low seven bits of k are j; the bits above, shifted into the
    // exponent field, are floor(n/128) (the shifter's bits leave the register).
    I idx = bitcast<I>((kb & get<U>(c.m127)) << 1);  // element index of hi_j; lo_j follows it
    U e = (kb << 45) & get<U>(c.exp_field);
    V hi, lo;
    gather_pairs(reinterpret_cast<const double*>(exp2_exp10_tables::kExp10Pairs128), idx, hi, lo);
    V y = fma(hi, q, lo) + hi;
    return as_float<V>(as_uint(y) + e);
  }
};

// ---- double, fast classes (_native, _half, _rm) -----------------------------------
//
// 10^x with no table: n = round(x log2 10); t = x log2 10 - n in one fused
// multiply-subtract (base-2 units, |t| <= 1/2 plus rounding); 10^x = 2^n p(t)
// with p ~ 2^t of degree 6, p(0) = 1. Max error 2.83e7 ulp (worst x =
// -0x1.6686d7664b8f9p+7): the polynomial's relative error 4.4e-9 = 2^-27.7.
constexpr double kLog2_10 = f64_bits(0x400a934f0979a371ull);  // log2(10) = 3.3219280948873622
constexpr double kP1 = f64_bits(0x3fe62e4302eeb44dull);       // 0.69314718792669228
constexpr double kP2 = f64_bits(0x3fcebfbdec29c82aull);       // 0.24022649794966472
constexpr double kP3 = f64_bits(0x3fac6af6e92be375ull);       // 0.05550357433634804
constexpr double kP4 = f64_bits(0x3f83b2b9fbd8970full);       // 0.009618237493735941
constexpr double kP5 = f64_bits(0x3f55f07b4611e454ull);       // 0.0013390735478238285
constexpr double kP6 = f64_bits(0x3f24308fabc18decull);       // 0.00015403512759624928

// The vector path's constants, one 32-byte row each, read as memory operands.
struct Exp10FastRows : Exp10Bound {
  Row<double> log2_10 = row(kLog2_10), shift = row(kShift), p1 = row(kP1), p2 = row(kP2), p3 = row(kP3),
              p4 = row(kP4), p5 = row(kP5), p6 = row(kP6), one = row(1.0);
};
inline constexpr Exp10FastRows kExp10FastRows{};

struct Exp10Fast : Exp10Base<kExp10FastRows> {
  template <int L> static RAVL_INLINE Vec<double, L> vec(Vec<double, L> x) {
    using V = Vec<double, L>;
    const Exp10FastRows& c = rows(kExp10FastRows);
    V k = fma(x, get<V>(c.log2_10), get<V>(c.shift));
    V n = k - get<V>(c.shift);
    V t = fms(x, get<V>(c.log2_10), n);
    V p = fma(fma(fma(fma(fma(fma(get<V>(c.p6), t, get<V>(c.p5)), t, get<V>(c.p4)), t, get<V>(c.p3)), t,
                      get<V>(c.p2)), t, get<V>(c.p1)), t, get<V>(c.one));
    // k's low bits hold n; shifted by 52 they add n to p's exponent.
    return as_float<V>(as_uint(p) + (as_uint(k) << 52));
  }
};

// ---- single, full class (plain) ------------------------------------------------------
//
// 10^x, plain exp10f. Max error 0.525 ulp (worst x = -0x1.238acp+5).
// n = round(128 x log2 10); r = x - n log10(2)/128 in two steps (n * hi exact:
// hi has 10 significant bits and |n| < 2^14); 10^x = 2^floor(n/128)
// (hi_j + lo_j) 10^r with 2^(j/128) = hi_j + lo_j in two singles;
// y = hi_j + (hi_j q + lo_j), q = r (d1 + d2 r) ~ 10^r - 1.
constexpr float kLog2_10x128f = f32_bits(0x43d49a78u);    // 128 log2(10) = 425.206787
constexpr float kLog10_2o128Hif = f32_bits(0x3b1a4000u);  // log10(2)/128 high part 0.00235366821
constexpr float kLog10_2o128Lof = f32_bits(0xb5fb2bd8u);  // low part -1.87137175e-06
constexpr float kD1 = f32_bits(0x40135d97u);              // 2.30258727
constexpr float kD2 = f32_bits(0x4029a929u);              // 2.65094972

// The vector path's constants, one 32-byte row each, read as memory operands.
struct Exp10fFullRows : Exp10fBound {
  Row<float> log2_10x128 = row(kLog2_10x128f), shift = row(kShiftf), log10_2o128_hi = row(kLog10_2o128Hif),
             log10_2o128_lo = row(kLog10_2o128Lof), d1 = row(kD1), d2 = row(kD2);
  Row<uint32_t> m127 = row(127u), high = row(~127u);
};
inline constexpr Exp10fFullRows kExp10fFullRows{};

struct Exp10fFull : Exp10fBase<kExp10fFullRows> {
  template <int L> static RAVL_INLINE Vec<float, L> vec(Vec<float, L> x) {
    using V = Vec<float, L>;
    using U = Vec<uint32_t, L>;
    using I = Vec<int32_t, L>;
    const Exp10fFullRows& c = rows(kExp10fFullRows);
    V k = fma(x, get<V>(c.log2_10x128), get<V>(c.shift));
    V n = k - get<V>(c.shift);
    V r = fnma(n, get<V>(c.log10_2o128_hi), x);
    r = fnma(n, get<V>(c.log10_2o128_lo), r);
    V q = r * fma(r, get<V>(c.d2), get<V>(c.d1));
    U kb = as_uint(k);
    V hi, lo;
    // Row j of the 8-byte (hi, lo) pairs.
    gather_pairs<8>(reinterpret_cast<const float*>(exp2_exp10_tables::kExp10fPairs128),
                    bitcast<I>(kb & get<U>(c.m127)), hi, lo);
    V y = fma(hi, q, lo) + hi;
    // Bits 7 and up of k's mantissa are floor(n/128); shifted by 16 they land
    // in the exponent field (the shifter's bits leave the register).
    return as_float<V>(as_uint(y) + ((kb & get<U>(c.high)) << 16));
  }
};

// ---- single, fast classes (_native, _half, _rm) ------------------------------------
//
// 10^x with no table: n = round(x log2 10), t = x log2 10 - n (fused), 10^x =
// 2^n p(t) with a cubic, p(0) = 1. Max error 2148 ulp (worst x = 0x1.2bd36ep+5),
// relative 1.8e-4: within OpenCL's 8192 ulp for half_exp10.
constexpr float kLog2_10f = f32_bits(0x40549a78u);  // log2(10) = 3.32192802
constexpr float kE1 = f32_bits(0x3f317422u);        // 0.693178296
constexpr float kE2 = f32_bits(0x3e77d66au);        // 0.242028862
constexpr float kE3 = f32_bits(0x3d63582bu);        // 0.0555040054

// The vector path's constants, one 32-byte row each, read as memory operands.
struct Exp10fFastRows : Exp10fBound {
  Row<float> log2_10 = row(kLog2_10f), shift = row(kShiftf), e1 = row(kE1), e2 = row(kE2), e3 = row(kE3),
             one = row(1.0f);
};
inline constexpr Exp10fFastRows kExp10fFastRows{};

struct Exp10fFast : Exp10fBase<kExp10fFastRows> {
  template <int L> static RAVL_INLINE Vec<float, L> vec(Vec<float, L> x) {
    using V = Vec<float, L>;
    const Exp10fFastRows& c = rows(kExp10fFastRows);
    V k = fma(x, get<V>(c.log2_10), get<V>(c.shift));
    V n = k - get<V>(c.shift);
    V t = fms(x, get<V>(c.log2_10), n);
    V p = fma(fma(fma(get<V>(c.e3), t, get<V>(c.e2)), t, get<V>(c.e1)), t, get<V>(c.one));
    return as_float<V>(as_uint(p) + (as_uint(k) << 23));
  }
};

}  // namespace exp10_detail

namespace exp10_k {
using full = exp10_detail::Exp10Full;
using fast = exp10_detail::Exp10Fast;
}  // namespace exp10_k
namespace exp10f_k {
using full = exp10_detail::Exp10fFull;
using fast = exp10_detail::Exp10fFast;
}  // namespace exp10f_k

}  // namespace ravl

#include "entries/exp10.inc"
#include "entries/exp10f.inc"
