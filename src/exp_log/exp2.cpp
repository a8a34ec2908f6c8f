// 2^x on double lanes (family exp2) and on single lanes (family exp2f).
//
// Every member computes all lanes on a branch-free vector path and flags the
// lanes that path cannot handle: |x| at or above 1022 (double) or above 126
// (single), infinities and NaN. There is no inline pass: every flagged lane
// goes to the scalar routine of its precision, which every class shares, so
// special inputs give the same result in every class:
//   NaN -> quiet NaN, +inf -> +inf, -inf -> +0,
//   overflow -> +inf (status 3), underflow -> denormal or +0 (status 4).
// Integer x gives the exact power of two in the full classes (r = 0 makes the
// polynomial term vanish), not in the fast ones, whose polynomials do not pass
// through 1 at 0: exp2 fast returns 1.0000000005541665 at 0 and exp2f fast
// 0.999928057, their constant terms.
//
// Classes and measured max errors (against MPFR: 2^21 random doubles over
// [-1080, 1030] (and over [-1022, 1022] for the normal results) or 2^22
// singles over [-155, 130], random bit patterns and +-64 ulps around every
// bound; tests/accuracy_test.cpp keeps and asserts the bounds):
//   exp2   plain                 full   0.522 ulp (normal results); 0.750 ulp
//                                       on denormal results, from the routine
//   exp2   _native _half _rm     fast   1.53e7 ulp (relative 1.9e-9 = 2^-29.0)
//   exp2f  plain _rm             full   0.615 ulp
//   exp2f  _native _half         fast   1230 ulp (relative 7.5e-5 = 2^-13.7)
// The double routine is within 0.52 ulp on normal results; on denormal
// results it rounds twice (y to 53 bits, then the scaling to the denormal
// grid), within 0.5 + 0.25 ulp. The single routine rounds a double result
// once and is correctly rounded on every flagged single (tests/
// accuracy_test.cpp checks every one of them).
#include "exp_log/exp_common.h"
#include "frame/entry.h"
#include "tables/exp.h"
#include "tables/exp2_exp10.h"

namespace ravl {
namespace exp2_detail {

// ---- bounds ------------------------------------------------------------------

// The upper word of |x| above 0x408fefff (|x| >= 1022), infinities and NaN
// leave the double vector paths: below that every result is a normal double
// whose exponent the integer add can form (x > -1022 keeps floor(n/64) >=
// -1022 with a table factor >= 1, x < 1022 keeps the result below 2^1022).
constexpr uint64_t kFastBoundBits = 0x408fefffffffffffull;
// Bits of |x| above 0x42fc0000 (|x| > 126), infinities and NaN leave the
// single vector paths: 2^-126 <= 2^x <= 2^126 on the rest.
constexpr uint32_t kFastBoundfBits = 0x42fc0000u;

// ---- reduction constants -----------------------------------------------------

// 1.5 * 2^46 (0x42d8000000000000): for |x| < 2^45, x + kShift46 rounds x to a
// multiple of 1/64, and the low mantissa bits of the sum hold n = round(64 x).
constexpr double kShift46 = f64_bits(0x42d8000000000000ull);
// The shifter 1.5 * 2^52, kShift, and 1.5 * 2^23, kShiftf (both rounding to
// an integer held in the low bits), come from exp_common.h.
using exp_common::kShift;
using exp_common::kShiftf;

// 2^r - 1 ~ r (c1 + c2 r + c3 r^2 + c4 r^3 + c5 r^4) on |r| <= 1/128 (c1 = ln 2
// rounded): relative error of 1 + r P(r) against 2^r at most 1.4e-18 = 2^-59.3
// (MPFR, exact evaluation); shared by the double vector path and the double
// routine.
constexpr double kC1 = f64_bits(0x3fe62e42fefa39efull);  // 0.69314718055994529
constexpr double kC2 = f64_bits(0x3fcebfbdff82a23aull);  // 0.24022650695884967
constexpr double kC3 = f64_bits(0x3fac6b08d7076268ull);  // 0.05550410866607508
constexpr double kC4 = f64_bits(0x3f83b2ad33f8b48bull);  // 0.0096181422696537591
constexpr double kC5 = f64_bits(0x3f55d870c4d8440aull);  // 0.0013333417185814622

// ---- the scalar routines -----------------------------------------------------

using exp_common::exp_inf_or_nan;
using exp_common::inf_or_nan;
using exp_common::overflow_result;
using exp_common::pow2;
using exp_common::scale_pow2;
using exp_common::underflow_result;

// 2^-100 (0x39b0000000000000), the scale back from the denormal range.
constexpr double kTwoM100 = f64_bits(0x39b0000000000000ull);

// 2^x = 2^m * y for |x| < 2^45: n = round(64 x), m = floor(n/64), j = n mod 64,
// r = x - n/64 (exact), y = 2^(j/64) 2^r = hi_j (1 + lo_j) (1 + q) with lo_j
// relative to hi_j, evaluated as hi_j + hi_j (q + lo_j) with one final
// rounding; y is within about 0.52 ulp of 2^(x - m), in [2^(-1/128), 2).
RAVL_INLINE double exp2_reduce(double x, int64_t* m) {
  double s = x + kShift46;
  double r = x - (s - kShift46);
  int64_t n = (int64_t)(bits_of(s) - bits_of(kShift46));
  int64_t j = n & 63;
  *m = n >> 6;
  double hi = f64_bits(exp_tables::kExpScalar64[2 * j]);
  double lo = f64_bits(exp_tables::kExpScalar64[2 * j + 1]);
  double p = fma(r, fma(r, fma(r, fma(r, kC5, kC4), kC3), kC2), kC1);
  return fma(fma(r, p, lo), hi, hi);
}

// The double special-lane routine, shared by every double member.
RAVL_INLINE int exp2_scalar(const double* xp, double* rp) {
  double x = *xp;
  if (inf_or_nan(x)) {  // -inf -> +0; +inf stays, NaN is quietened
    *rp = exp_inf_or_nan(x);
    return kStatusOk;
  }
  if (x >= 1024.0) return overflow_result(rp);    // 2^x >= 2^1024
  if (x <= -1075.0) return underflow_result(rp);  // 2^x <= 2^-1075, half the smallest denormal: +0
  int64_t m;
  double y = exp2_reduce(x, &m);
  if (x < -1022.0) {
    // Denormal result: y 2^(m+100) is exact (a normal double, m >= -1076),
    // and the multiply by 2^-100 is the one rounding to the denormal grid.
    *rp = (y * pow2((m + 1123) & 2047)) * kTwoM100;
    return kStatusUnderflow;
  }
  *rp = scale_pow2(y, m);  // m = 1024 for x just below 1024
  return kStatusOk;
}

// The single special-lane routine, shared by every single member: 2^x in
// double precision (a normal double for every single x in (-150, 128), within
// about 0.52 double ulp), rounded once to single when stored.
RAVL_INLINE int exp2f_scalar(const float* xp, float* rp) {
  float x = *xp;
  if (inf_or_nan(x)) {
    *rp = exp_inf_or_nan(x);
    return kStatusOk;
  }
  if (x >= 128.0f) return overflow_result(rp);    // 2^x >= 2^128: +infinity
  if (x <= -150.0f) return underflow_result(rp);  // 2^x <= 2^-150, half the smallest single denormal: +0
  int64_t m;
  double y = exp2_reduce((double)x, &m);
  *rp = (float)(y * pow2(m + 1023));
  return x < -126.0f ? kStatusUnderflow : kStatusOk;
}

// What every member of a precision shares: the lane test (the upper word of
// |x| above 0x408fefff, as one signed 64-bit compare of the whole pattern:
// |x| >= 1022, infinities and NaN; for singles the bits of |x| above those of
// 126) and the scalar routine. The bound's rows (Exp2Bound, Exp2fBound) open
// each class's block of constant rows, kRows, which the lane test and the
// vector path read through one address.
template <const auto& kRows> using Exp2Base = exp_common::AbsBoundKernel<double, kRows, exp2_scalar>;
template <const auto& kRows> using Exp2fBase = exp_common::AbsBoundKernel<float, kRows, exp2f_scalar>;
using Exp2Bound = exp_common::BoundRows<double, kFastBoundBits>;
using Exp2fBound = exp_common::BoundRows<float, kFastBoundfBits>;

// ---- double, full class ---------------------------------------------------------
//
// 2^x, plain exp2. Max error 0.522 ulp (worst x = 0x1.f5c47fa5a1ac8p+7).
// n = round(64 x) by the 1.5 * 2^46 shifter; r = x - n/64 is exact, |r| <= 1/128;
// 2^x = 2^floor(n/64) 2^(j/64) 2^r with j = n mod 64 and 2^(j/64) = hi_j + lo_j
// (absolute correction); y = hi_j + (hi_j q + lo_j), q = 2^r - 1.
// The vector path's constants, one 32-byte row each, read as memory operands.
struct Exp2FullRows : Exp2Bound {
  Row<double> shift46 = row(kShift46), c1 = row(kC1), c2 = row(kC2), c3 = row(kC3), c4 = row(kC4), c5 = row(kC5);
  Row<uint64_t> m63 = row<uint64_t>(63), exp_field = row<uint64_t>(0xfff0000000000000);
};
inline constexpr Exp2FullRows kExp2FullRows{};

struct Exp2Full : Exp2Base<kExp2FullRows> {
  template <int L> static RAVL_INLINE Vec<double, L> vec(Vec<double, L> x) {
    using V = Vec<double, L>;
    using U = Vec<uint64_t, L>;
    using I = Vec<int64_t, L>;
    const Exp2FullRows& c = rows(kExp2FullRows);
    V s = x + get<V>(c.shift46);
    V r = x - (s - get<V>(c.shift46));  // exact: k = s - kShift46 is 0 or within a factor 2 of x (Sterbenz)
    V q = r * fma(r, fma(r, fma(r, fma(r, get<V>(c.c5), get<V>(c.c4)), get<V>(c.c3)), get<V>(c.c2)), get<V>(c.c1));
    U sb = as_uint(s);
    // The low six bits of s's mantissa are j; the bits above, shifted into
    // the exponent field, are floor(n/64) (the shifter's bits leave the register).
    I idx = bitcast<I>((sb & get<U>(c.m63)) << 1);  // element index of hi_j; lo_j follows it
    U e = (sb << 46) & get<U>(c.exp_field);
    V hi, lo;
    gather_pairs(reinterpret_cast<const double*>(exp_tables::kExp64), idx, hi, lo);
    V y = fma(hi, q, lo) + hi;
    return as_float<V>(as_uint(y) + e);
  }
};

// ---- double, fast classes (_native, _half, _rm) -----------------------------------
//
// 2^x with no table: n = round(x), r = x - n exact, |r| <= 1/2;
// 2^x = 2^n p(r), p of degree 6 with constant term 1.0000000005541665 (so
// 2^0 gives that value). Max error 1.53e7 ulp (worst x = -0x1.c8906c853e804p+9):
// the polynomial's relative error 1.9e-9 = 2^-29.0, up to twice that many ulp
// for a result whose mantissa is near 2.
constexpr double kP0 = f64_bits(0x3ff0000000261500ull);  // 1.0000000005541665
constexpr double kP1 = f64_bits(0x3fe62e430c7e923cull);  // 0.69314720573726829
constexpr double kP2 = f64_bits(0x3fcebfbdadcb0ba8ull);  // 0.24022646890634047
constexpr double kP3 = f64_bits(0x3fac6aed4b950ae1ull);  // 0.055503287769644201
constexpr double kP4 = f64_bits(0x3f83b2dbbc0fe08eull);  // 0.0096184889571165021
constexpr double kP5 = f64_bits(0x3f55f456a8adf058ull);  // 0.0013399931219444574
constexpr double kP6 = f64_bits(0x3f241d3336b2ae61ull);  // 0.0001534581200294148

// The vector path's constants, one 32-byte row each, read as memory operands.
struct Exp2FastRows : Exp2Bound {
  Row<double> shift = row(kShift), p0 = row(kP0), p1 = row(kP1), p2 = row(kP2), p3 = row(kP3), p4 = row(kP4),
              p5 = row(kP5), p6 = row(kP6);
};
inline constexpr Exp2FastRows kExp2FastRows{};

struct Exp2Fast : Exp2Base<kExp2FastRows> {
  template <int L> static RAVL_INLINE Vec<double, L> vec(Vec<double, L> x) {
    using V = Vec<double, L>;
    const Exp2FastRows& c = rows(kExp2FastRows);
    V s = x + get<V>(c.shift);
    V r = x - (s - get<V>(c.shift));
    V p = fma(fma(fma(fma(fma(fma(get<V>(c.p6), r, get<V>(c.p5)), r, get<V>(c.p4)), r, get<V>(c.p3)), r,
                      get<V>(c.p2)), r, get<V>(c.p1)), r, get<V>(c.p0));
    // s's low bits hold n; shifted by 52 they add n to p's exponent.
    return as_float<V>(as_uint(p) + (as_uint(s) << 52));
  }
};

// ---- single, full class (plain, _rm) ------------------------------------------------
//
// 2^x, plain exp2f. Max error 0.615 ulp (worst x = 0x1.3fb9b4p+2).
// n = round(64 x) by the 1.5 * 2^17 shifter; r = x - n/64 exact, |r| <= 1/128;
// 2^x = 2^floor(n/64) (hi_j + lo_j) 2^r, j = n mod 64, hi_j + lo_j = 2^(j/64)
// in two singles; y = hi_j + (hi_j q + lo_j) with q = r (d1 + d2 r) ~ 2^r - 1.
constexpr float kShift17 = f32_bits(0x48400000u);  // 1.5 * 2^17 = 196608
constexpr float kD1 = f32_bits(0x3f317243u);       // 0.693149745
constexpr float kD2 = f32_bits(0x3e75fdfcu);       // 0.240226686

// The vector path's constants, one 32-byte row each, read as memory operands.
struct Exp2fFullRows : Exp2fBound {
  Row<float> shift17 = row(kShift17), d1 = row(kD1), d2 = row(kD2);
  Row<uint32_t> m63 = row(63u), exp_field = row(0xff800000u);
};
inline constexpr Exp2fFullRows kExp2fFullRows{};

struct Exp2fFull : Exp2fBase<kExp2fFullRows> {
  template <int L> static RAVL_INLINE Vec<float, L> vec(Vec<float, L> x) {
    using V = Vec<float, L>;
    using U = Vec<uint32_t, L>;
    using I = Vec<int32_t, L>;
    const Exp2fFullRows& c = rows(kExp2fFullRows);
    V s = x + get<V>(c.shift17);
    V r = x - (s - get<V>(c.shift17));
    V q = r * fma(r, get<V>(c.d2), get<V>(c.d1));
    U sb = as_uint(s);
    V hi, lo;
    // Row j of the 8-byte (hi, lo) pairs.
    gather_pairs<8>(reinterpret_cast<const float*>(exp2_exp10_tables::kExp2fPairs64), bitcast<I>(sb & get<U>(c.m63)),
                    hi, lo);
    V y = fma(hi, q, lo) + hi;
    return as_float<V>(as_uint(y) + ((sb << 17) & get<U>(c.exp_field)));
  }
};

// ---- single, fast classes (_native, _half) ------------------------------------------
//
// 2^x with no table: n = round(x), r = x - n, 2^x = 2^n p(r) with a cubic whose
// constant term is 0.999928057 (the value at 0). Max error 1230 ulp (worst
// x = 0x1.f9df7ap+0), relative 7.5e-5: within OpenCL's 8192 ulp for half_exp2.
constexpr float kE0 = f32_bits(0x3f7ffb49u);       // 0.999928057
constexpr float kE1 = f32_bits(0x3f31798du);       // 0.693260968
constexpr float kE2 = f32_bits(0x3e786f13u);       // 0.242611215
constexpr float kE3 = f32_bits(0x3d61fbccu);       // 0.0551717728

// The vector path's constants, one 32-byte row each, read as memory operands.
struct Exp2fFastRows : Exp2fBound {
  Row<float> shift = row(kShiftf), e0 = row(kE0), e1 = row(kE1), e2 = row(kE2), e3 = row(kE3);
};
inline constexpr Exp2fFastRows kExp2fFastRows{};

struct Exp2fFast : Exp2fBase<kExp2fFastRows> {
  template <int L> static RAVL_INLINE Vec<float, L> vec(Vec<float, L> x) {
    using V = Vec<float, L>;
    const Exp2fFastRows& c = rows(kExp2fFastRows);
    V s = x + get<V>(c.shift);
    V r = x - (s - get<V>(c.shift));
    V p = fma(fma(fma(get<V>(c.e3), r, get<V>(c.e2)), r, get<V>(c.e1)), r, get<V>(c.e0));
    return as_float<V>(as_uint(p) + (as_uint(s) << 23));
  }
};

}  // namespace exp2_detail

namespace exp2_k {
using full = exp2_detail::Exp2Full;
using fast = exp2_detail::Exp2Fast;
}  // namespace exp2_k
namespace exp2f_k {
using full = exp2_detail::Exp2fFull;
using fast = exp2_detail::Exp2fFast;
}  // namespace exp2f_k

}  // namespace ravl

#include "entries/exp2.inc"
#include "entries/exp2f.inc"
