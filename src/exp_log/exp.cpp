// e^x on double lanes (family exp) and on single lanes (family expf).
//
// Every member computes all lanes on a branch-free vector path, flags the
// lanes that path cannot handle, settles overflow and underflow lanes inline
// (+infinity above the overflow bound, +0 below the underflow bound) and hands
// what remains (NaN, the lanes just inside those bounds, denormal results) to
// the scalar routine of its precision, which every class shares. Special
// inputs therefore give the same result in every class:
//   NaN -> quiet NaN, +inf -> +inf, -inf -> +0, tiny |x| -> 1 + x.
//
// Classes and measured max errors (against MPFR: 2^20 random doubles over
// [-750, 720] or 2^21 singles over [-105, 90], random bit patterns, the
// denormal-result range and +-64 ulps around every bound; tests/
// accuracy_test.cpp keeps and asserts the bounds):
//   exp   plain                 full   0.519 ulp
//   exp   _native _half _rm     fast   2.97e7 ulp (relative 3.3e-9 = 2^-28.2)
//   expf  plain _rm             full   0.748 ulp
//   expf  _native _half         fast   1776 ulp (relative 1.5e-4 = 2^-12.7)
// The lanes computed by the scalar routines are within the full bounds.
#include "exp_log/exp_common.h"
#include "frame/entry.h"
#include "tables/exp.h"

namespace ravl {
namespace exp_detail {

// The reduction constants (kShift, kShift48, kInvLn2x64, kLn2o64Hi/Lo with n *
// hi exact: here |n| < 2^16.1; kInvLn2x128, kLn2o128; the single kInvLn2f,
// kShiftf, kLn2f), the overflow bounds kOverflow and kOverflowf, and the
// scalar-routine steps come from exp_common.h.
using namespace exp_common;

// ---- bounds (shared by both double algorithms and the double routine) --------

// |x| above this, or NaN, leaves the double vector paths: 0x4086232affffffff =
// 708.39599609374989, just below -ln(2^-1022) = 708.396418532264, so that every
// lane the vector path keeps has a normal result whose exponent the integer
// add can form.
constexpr uint64_t kFastBoundBits = 0x4086232affffffffull;
// x above kOverflow = ln(DBL_MAX) rounded down overflows to +infinity.
// x below 0xc0874910d52d3051 = -745.13321910194111 (ln 2^-1075 rounded) gives
// e^x < 2^-1075, which rounds to +0.
constexpr double kUnderflow = f64_bits(0xc0874910d52d3051ull);
// x below ln(2^-1022) = -708.39641853226408 (0xc086232bdd7abcd2) has a
// denormal result.
constexpr double kDenormal = f64_bits(0xc086232bdd7abcd2ull);

// ---- the scalar routines -----------------------------------------------------

// 1.5 * 2^32 (0x41f8000000000000): (w + w c) - w c keeps the upper ~20 bits of w.
constexpr double kSplit32 = f64_bits(0x41f8000000000000ull);
// 2^-60 (0x3c30000000000000), the scale back from the denormal range.
constexpr double kTwoM60 = f64_bits(0x3c30000000000000ull);

// e^x for x within the caller's overflow and underflow bounds; x below
// denormal_below takes the denormal-result path (status 4), the rest the
// normal one (status 0). e^x ~ 2^m (hi + v) by exp_split (exp_common.h).
RAVL_INLINE int exp_core(double x, double denormal_below, double* out) {
  const ExpSplit e = exp_split(x);
  const double hi = e.hi, v = e.v;
  const int64_t m = e.m;
  if (x < denormal_below) {
    // Result below 2^-1022: compute w = (hi + v) 2^(m+60) in the normal
    // range, then scale by 2^-60 so that the one rounding to the denormal
    // grid happens in the last multiply.
    int64_t field = (m + 1083) & 2047;
    double s = pow2(field);
    double hs = hi * s, vs = v * s;
    double w = hs + vs;
    if (field > 50) {
      // w_h (about 20 bits) times 2^-60 is exact; the tail (the rounding
      // error of w, exact by Fast2Sum, plus w - w_h) is rounded once when
      // scaled, and adding the on-grid w_h 2^-60 rounds no further.
      double wc = w * kSplit32;
      double wh = (w + wc) - wc;
      *out = wh * kTwoM60 + (((hs - w) + vs) + (w - wh)) * kTwoM60;
    } else {
      *out = w * kTwoM60;
    }
    return kStatusUnderflow;
  }
  *out = scale_pow2(v + hi, m);
  return kStatusOk;
}

// The double special-lane routine, shared by every double member (the frame
// makes one out-of-line copy of it).
RAVL_INLINE int exp_scalar(const double* xp, double* rp) {
  double x = *xp;
  uint64_t ix = bits_of(x);
  uint64_t e = ix >> 52 & 2047;
  if (e == 2047) {  // infinity or NaN: -inf -> +0; +inf stays, NaN is quietened
    *rp = exp_inf_or_nan(x);
    return kStatusOk;
  }
  if (e <= 970) {  // |x| < 2^-52: e^x rounds to 1 + x
    *rp = 1.0 + x;
    return kStatusOk;
  }
  if (x > kOverflow) return overflow_result(rp);
  if (x < kUnderflow) return underflow_result(rp);
  return exp_core(x, kDenormal, rp);
}

// Single bounds, as doubles for the scalar routine.
// |x| above 87.3365402 (0x42aeac4f), or NaN, leaves the single vector paths
// (just above ln(2^-126) = -87.3365448: every kept lane has a normal result).
constexpr uint32_t kFastBoundfBits = 0x42aeac4fu;
constexpr float kFastBoundf = f32_bits(kFastBoundfBits);
// x above kOverflowf = 88.7228317 (exp_common.h) overflows; x below
// -103.972076 (0xc2cff1b4, the smallest single above ln 2^-150 =
// -103.9720771) rounds to +0.
constexpr float kUnderflowf = f32_bits(0xc2cff1b4u);

// The single special-lane routine, shared by every single member: e^x in
// double precision, rounded once to single when stored.
RAVL_INLINE int expf_scalar(const float* xp, float* rp) {
  float x = *xp;
  uint32_t ix = bits_of(x);
  uint32_t e = ix >> 23 & 255;
  if (e == 255) {  // infinity or NaN
    *rp = exp_inf_or_nan(x);
    return kStatusOk;
  }
  if (e < 75) {  // |x| < 2^-52
    *rp = (float)(1.0 + (double)x);
    return kStatusOk;
  }
  double xd = x;
  if (xd > (double)kOverflowf) return overflow_result(rp);
  if (xd < (double)kUnderflowf) return underflow_result(rp);
  double r;
  // Below -87.33654022216797 (-0x42aeac4f) the single result is denormal.
  int status = exp_core(xd, -(double)kFastBoundf, &r);
  *rp = (float)r;
  return status;
}

// ---- what every member of a precision shares: the lane test's inline pass and
// the scalar routine -------------------------------------------------------------

struct ExpDoubleBase : frame::Kernel {
  using sig = double(double);
  static constexpr bool has_callout = true;
  // Lanes above the overflow bound become +infinity, lanes below the
  // underflow bound +0 (ordered compares: NaN lanes stay flagged).
  template <int L, class M>
  static RAVL_INLINE M settle(M flagged, Vec<double, L> x, Vec<double, L>& r) {
    return settle_underflow(settle_overflow(flagged, x, r, kOverflow), x, r, kUnderflow);
  }
  static RAVL_INLINE int scalar(const double* x, double* r) { return exp_scalar(x, r); }
};

struct ExpfBase : frame::Kernel {
  using sig = float(float);
  static constexpr bool has_callout = true;
  template <int L, class M>
  static RAVL_INLINE M settle(M flagged, Vec<float, L> x, Vec<float, L>& r) {
    return settle_underflow(settle_overflow(flagged, x, r, kOverflowf), x, r, kUnderflowf);
  }
  static RAVL_INLINE int scalar(const float* x, float* r) { return expf_scalar(x, r); }
};

// ---- double, full class ---------------------------------------------------------
//
// e^x, plain exp. Max error 0.519 ulp (worst x = 0x1.3bfc73cd20d32p+9).
// n = round(x 64/ln2) by the shifter; r = x - n ln2/64 in two steps;
// e^x = 2^floor(n/64) 2^(j/64) e^r with j = n mod 64 and 2^(j/64) = hi_j + lo_j;
// e^r - 1 ~ r + r^2 (c2 + c3 r + c4 r^2 + c5 r^3) on |r| <= ln2/128.
constexpr double kC2 = f64_bits(0x3fdfffffffffdb3bull);  // 0.49999999999947747
constexpr double kC3 = f64_bits(0x3fc555555555653eull);  // 0.16666666666677971
constexpr double kC4 = f64_bits(0x3fa555573f218b93ull);  // 0.041666723686623851
constexpr double kC5 = f64_bits(0x3f8111112d9f549bull);  // 0.0083333341644141103

// The vector path's constants, one 32-byte row each, read as memory operands.
struct ExpFullRows : BoundRows<double, kFastBoundBits> {
  Row<double> inv_ln2x64 = row(kInvLn2x64), shift = row(kShift), shift48 = row(kShift48), ln2o64_hi = row(kLn2o64Hi),
              ln2o64_lo = row(kLn2o64Lo), c2 = row(kC2), c3 = row(kC3), c4 = row(kC4), c5 = row(kC5);
  Row<uint64_t> m3ff = row<uint64_t>(0x3ff), exp_field = row<uint64_t>(0xfff0000000000000);
};
inline constexpr ExpFullRows kExpFullRows{};

struct ExpFull : ExpDoubleBase {
  template <int L> static RAVL_INLINE Vec<double, L> vec(Vec<double, L> x) {
    using V = Vec<double, L>;
    using U = Vec<uint64_t, L>;
    using I = Vec<int64_t, L>;
    const ExpFullRows& c = rows(kExpFullRows);
    V k = fma(x, get<V>(c.inv_ln2x64), get<V>(c.shift));
    V n = k - get<V>(c.shift);
    // s holds 16 n in its low bits: j16 = 16 (n mod 64) is the pair's byte
    // offset, and the bits above it, shifted by 42, are floor(n/64) in the
    // exponent field (the shifter's own bits leave the register).
    U s = as_uint(n + get<V>(c.shift48));
    U j16 = s & get<U>(c.m3ff);
    U e = (s << 42) & get<U>(c.exp_field);
    V r = fnma(n, get<V>(c.ln2o64_hi), x);  // exact
    r = fnma(n, get<V>(c.ln2o64_lo), r);
    V r2 = r * r;
    V poly = fma(r, fma(r, fma(r, get<V>(c.c5), get<V>(c.c4)), get<V>(c.c3)), get<V>(c.c2));
    V q = fma(r2, poly, r);
    V hi, lo;
    gather_pairs<1>(reinterpret_cast<const double*>(exp_tables::kExp64), bitcast<I>(j16), hi, lo);
    V y = hi + fma(hi, q, lo);
    return as_float<V>(as_uint(y) + e);
  }
  // |x| > 708.39599609374989 or NaN (unordered).
  template <int L> static RAVL_INLINE Mask<double, L> special(Vec<double, L> x, Vec<double, L>) {
    return abs_above_or_nan(x, rows(kExpFullRows));
  }
};

// ---- double, fast classes (_native, _half, _rm) -----------------------------------
//
// e^x with a 128-entry table and a degree-2 polynomial. Max error
// 2.97e7 ulp (worst x = 0x1.4cb327242b3cp+6), relative 3.3e-9 = 2^-28.2: the
// truncation r^3/6 at |r| = ln2/256, up to 2.98e7 ulp for a result whose
// mantissa is near 2.
// n = round(x 128/ln2) (kInvLn2x128); r = x - n ln2/128 (one constant,
// kLn2o128); e^x = 2^floor(n/128) T_j (1 + r + c r^2), j = n mod 128.
constexpr double kF2 = f64_bits(0x3fdffffc2808f7e8ull);          // 0.49999908361121337

// The vector path's constants, one 32-byte row each, read as memory operands.
struct ExpFastRows : BoundRows<double, kFastBoundBits> {
  Row<double> inv_ln2x128 = row(kInvLn2x128), shift = row(kShift), ln2o128 = row(kLn2o128), f2 = row(kF2),
              one = row(1.0);
  Row<uint64_t> m127 = row<uint64_t>(127), exp_field = row<uint64_t>(0xfff0000000000000);
};
inline constexpr ExpFastRows kExpFastRows{};

struct ExpFast : ExpDoubleBase {
  template <int L> static RAVL_INLINE Vec<double, L> vec(Vec<double, L> x) {
    using V = Vec<double, L>;
    using U = Vec<uint64_t, L>;
    using I = Vec<int64_t, L>;
    const ExpFastRows& c = rows(kExpFastRows);
    V k = fma(x, get<V>(c.inv_ln2x128), get<V>(c.shift));
    V n = k - get<V>(c.shift);
    V r = fnma(n, get<V>(c.ln2o128), x);
    V q = fma(fma(get<V>(c.f2), r, get<V>(c.one)), r, get<V>(c.one));
    U kb = as_uint(k);
    I j = bitcast<I>(kb & get<U>(c.m127));
    U e = (kb << 45) & get<U>(c.exp_field);  // floor(n/128) in the exponent field
    V t = gather(reinterpret_cast<const double*>(exp_tables::kExp128), j);
    return as_float<V>(as_uint(t * q) + e);
  }
  // The upper word of |x| above 0x4086232a, as one signed 64-bit compare of
  // the whole pattern with 0x4086232affffffff: the same lanes as the full
  // class's test (|x| > 708.39599609374989), NaN and infinities included.
  template <int L> static RAVL_INLINE Mask<double, L> special(Vec<double, L> x, Vec<double, L>) {
    return abs_bits_above(x, rows(kExpFastRows));
  }
};

// ---- single, full class (plain, _rm) ------------------------------------------------
//
// e^x, plain expf. Max error 0.748 ulp (worst x = -0x1.73ae8p+0).
// n = round(x 4/ln2) by a shifter that also carries 4 * 127, the exponent
// bias in quarters; r = x - n ln2/4 in two steps; j = n mod 4 selects
// T_j = RN(2^(j/4)) and its relative correction L_j by an in-register permute;
// e^x = 2^floor(n/4) T_j (1 + L_j) e^r ~ R + R p with R = 2^floor(n/4) T_j and
// p = r + r^2 (c2 + c3 r + c4 r^2) + L_j, |r| <= ln2/8.
constexpr float kInvLn2x4 = f32_bits(0x40b8aa3bu);    // 4/ln2 = 5.77078009
constexpr float kShiftBias = f32_bits(0x4b4001fcu);   // 1.5 * 2^23 + 4 * 127 = 12583420
constexpr float kLn2o4Hi = f32_bits(0x3e317000u);     // ln2/4 high part 0.173278809 (n * hi exact)
constexpr float kLn2o4Lo = f32_bits(0x3705fdf4u);     // ln2/4 low part 7.98654582e-06
constexpr float kFc2 = f32_bits(0x3effffffu);         // 0.49999997
constexpr float kFc3 = f32_bits(0x3e2abb12u);         // 0.166729242
constexpr float kFc4 = f32_bits(0x3d2abb12u);         // 0.0416823104

// The vector path's constants, one 32-byte row each, read as memory operands.
struct ExpfFullRows : BoundRows<float, kFastBoundfBits> {
  Row<float> inv_ln2x4 = row(kInvLn2x4), shift_bias = row(kShiftBias), ln2o4_hi = row(kLn2o4Hi),
             ln2o4_lo = row(kLn2o4Lo), c2 = row(kFc2), c3 = row(kFc3), c4 = row(kFc4);
  // T_j and L_j, j = 0..3, in both halves (the permute selects within a half).
  Row<uint32_t> t = {{exp_tables::kExpf4T[0], exp_tables::kExpf4T[1], exp_tables::kExpf4T[2], exp_tables::kExpf4T[3],
                      exp_tables::kExpf4T[0], exp_tables::kExpf4T[1], exp_tables::kExpf4T[2], exp_tables::kExpf4T[3]}};
  Row<uint32_t> l = {{exp_tables::kExpf4L[0], exp_tables::kExpf4L[1], exp_tables::kExpf4L[2], exp_tables::kExpf4L[3],
                      exp_tables::kExpf4L[0], exp_tables::kExpf4L[1], exp_tables::kExpf4L[2], exp_tables::kExpf4L[3]}};
  Row<uint32_t> exp_mask = row(0x7f800000u);
};
inline constexpr ExpfFullRows kExpfFullRows{};

struct ExpfFull : ExpfBase {
  template <int L> static RAVL_INLINE Vec<float, L> vec(Vec<float, L> x) {
    using V = Vec<float, L>;
    using U = Vec<uint32_t, L>;
    using I = Vec<int32_t, L>;
    const ExpfFullRows& c = rows(kExpfFullRows);
    V k = fma(x, get<V>(c.inv_ln2x4), get<V>(c.shift_bias));
    V n = k - get<V>(c.shift_bias);
    V r = fnma(n, get<V>(c.ln2o4_hi), x);
    r = fnma(n, get<V>(c.ln2o4_lo), r);
    // The low two bits of k's integer field are n mod 4 (4 * 127 adds a
    // multiple of 4); the bits above them are floor(n/4) + 127.
    I kb = as_int(k);
    V t = permute4(get<F32x4>(c.t), kb);
    V lj = permute4(get<F32x4>(c.l), kb);
    V s = as_float<V>((as_uint(k) << 21) & get<U>(c.exp_mask));  // 2^floor(n/4)
    V r2 = r * r;
    V p = r + fma(r2, fma(r, fma(r, get<V>(c.c4), get<V>(c.c3)), get<V>(c.c2)), lj);
    V big = s * t;
    return fma(p, big, big);
  }
  // |x| > 87.3365402 or NaN (unordered).
  template <int L> static RAVL_INLINE Mask<float, L> special(Vec<float, L> x, Vec<float, L>) {
    return abs_above_or_nan(x, rows(kExpfFullRows));
  }
};

// ---- single, fast classes (_native, _half) ------------------------------------------
//
// e^x with no table and a cubic. Max error 1776 ulp (worst x = 0x1.5bf5bcp+6),
// relative 1.5e-4: within OpenCL's 8192 ulp for half_exp.
// n = round(x/ln2); r = x - n ln2 (one constant), |r| <= ln2/2;
// e^x = 2^n (1 + d1 r + d2 r^2 + d3 r^3).
constexpr float kD1 = f32_bits(0x3f8003deu);       // 1.00011802
constexpr float kD2 = f32_bits(0x3f00f2d6u);       // 0.503705382
constexpr float kD3 = f32_bits(0x3e2963acu);       // 0.165419281

// The vector path's constants, one 32-byte row each, read as memory operands.
struct ExpfFastRows : BoundRows<float, kFastBoundfBits> {
  Row<float> inv_ln2 = row(kInvLn2f), shift = row(kShiftf), ln2 = row(kLn2f), d1 = row(kD1), d2 = row(kD2),
             d3 = row(kD3), one = row(1.0f);
};
inline constexpr ExpfFastRows kExpfFastRows{};

struct ExpfFast : ExpfBase {
  template <int L> static RAVL_INLINE Vec<float, L> vec(Vec<float, L> x) {
    using V = Vec<float, L>;
    const ExpfFastRows& c = rows(kExpfFastRows);
    V k = fma(x, get<V>(c.inv_ln2), get<V>(c.shift));
    V n = k - get<V>(c.shift);
    V r = fnma(n, get<V>(c.ln2), x);
    V p = fma(fma(fma(get<V>(c.d3), r, get<V>(c.d2)), r, get<V>(c.d1)), r, get<V>(c.one));
    // k's low bits hold n; shifted by 23 they add n to p's exponent (the
    // shifter's own bits leave the register).
    return as_float<V>(as_uint(p) + (as_uint(k) << 23));
  }
  // The bits of |x| as a signed integer above those of 87.3365402: NaN and
  // infinities included.
  template <int L> static RAVL_INLINE Mask<float, L> special(Vec<float, L> x, Vec<float, L>) {
    return abs_bits_above(x, rows(kExpfFastRows));
  }
};

}  // namespace exp_detail

namespace exp_k {
using full = exp_detail::ExpFull;
using fast = exp_detail::ExpFast;
}  // namespace exp_k
namespace expf_k {
using full = exp_detail::ExpfFull;
using fast = exp_detail::ExpfFast;
}  // namespace expf_k

}  // namespace ravl

#include "entries/exp.inc"
#include "entries/expf.inc"
