// The parts the logarithm families logf, log2, log2f, log10 and log10f share:
// the argument reduction, the single-word table path, the base conversions,
// the special-lane tests and the scalar special-lane routines.
//
// Reduction (double lanes, any x; meaningful for positive normal x):
//   m' = the fraction of x under the exponent of 2^-10, so m' in [2^-10, 2^-9);
//   R  = the integer nearest to the single-precision reciprocal estimate of m'
//        (relative error at most 1.5 * 2^-12, so |R - 1/m'| <= 0.875 and R is
//        one of 512..1024);
//   r  = R m' - 1, one fused multiply-subtract, exact: R m' is a multiple of
//        ulp(m') = 2^-62 and |r| <= 0.875 m' < 2^-9, so r fits in 53 bits;
//   E' = E - d with E the biased exponent field, d = 1023 when R > 724, else 1022.
// Then x = 2^(E - 1013) m' and, for any base b,
//   log_b(x) = E' log_b(2) - log_b(R/B) + log_b(1 + r),   B = 2^(d - 1013) = 512 or 1024,
// where -log_b(R/B) comes from a table with one row per R (|-ln(R/B)| < 0.347).
// Near x = 1 (R = 512 with E = 1022, or R = 1024 with E = 1023) E' = 0 and the
// table row is exactly 0, so the result is log_b(1 + r) with r = x - 1 exact:
// no cancellation anywhere.
#pragma once

#include "frame/entry.h"
#include "tables/log.h"
#include "tables/logtab.h"

namespace ravl {
namespace log_core {

template <int L> using VD = Vec<double, L>;
template <int L> using VF = Vec<float, L>;

// A value the compiler may not fold, so that the pole and domain results
// below are computed at run time and raise their flags.
template <class T> RAVL_INLINE T opaque(T v) {
  __asm__("" : "+x"(v));
  return v;
}

// The hardware reciprocal estimate on 2, 4 or 8 single lanes.
template <int L> RAVL_INLINE VF<L> rcp_est(VF<L> x) {
  if constexpr (L == 2) return slice<0, 2>(rcp_approx(join(x, x)));
  else return rcp_approx(x);
}

template <int L> struct Parts {
  VD<L> r, e;                  // r = R m' - 1 (exact) and E' (an integer)
  Vec<int64_t, L> row;         // R - 512, the table row
};

template <int L> RAVL_INLINE Parts<L> reduce(VD<L> x) {
  using V = VD<L>;
  using U = Vec<uint64_t, L>;
  using I = Vec<int64_t, L>;
  V m = as_float<V>((as_uint(x) & U(0x000fffffffffffffull)) | U(0x3f50000000000000ull));
  V R = round_imm<8>(convert<double>(rcp_est(convert<float>(m))));  // nearest integer
  Parts<L> p;
  p.r = fms(R, m, V(1.0));
  // The exponent field as a double: placed under 2^52, minus 2^52.
  V e = as_float<V>((as_uint(x) >> 52) | U(0x4330000000000000ull)) - V(0x1p52);
  p.e = e - select(R > V(724.0), V(1023.0), V(1022.0));
  // R = 512 (1 + k/512) has k in mantissa bits 43..51.
  p.row = (as_int(R) - I(0x4080000000000000ll)) >> 43;
  return p;
}

// Taylor coefficients of ln(1 + r) = r + r^2 (c2 + c3 r + c4 r^2 + ...).
constexpr double kC2 = -0.5;
constexpr double kC3 = f64_bits(0x3fd5555555555555ull);   // 1/3
constexpr double kC4 = -0.25;
// The higher terms of the full double classes (log2, log10): truncation
// r^8/8 at |r| < 2^-9.2, relative 2^-67.
constexpr double kC5 = f64_bits(0x3fc999999999999aull);  // 1/5
constexpr double kC6 = f64_bits(0xbfc5555555555555ull);  // -1/6
constexpr double kC7 = f64_bits(0x3fc2492492492492ull);  // 1/7

// -ln(R/B) + ln(1 + r), with the single-word table kLogFast (src/tables/log.h) and the Taylor
// polynomial of degree Deg (3 or 4). Truncation at |r| < 2^-9.2 (the
// reachable range): r^4/4, relative 2^-31.6 (Deg 3); r^5/5, relative 2^-41 (Deg 4).
template <int Deg, int L> RAVL_INLINE VD<L> ln_tq(const Parts<L>& p) {
  using V = VD<L>;
  V t = gather(reinterpret_cast<const double*>(log_tables::kLogFast), p.row);
  V r = p.r, r2 = r * r;
  V c;
  if constexpr (Deg == 3) c = fma(r, V(kC3), V(kC2));
  else c = fma(r, fma(r, V(kC4), V(kC3)), V(kC2));
  return t + fma(r2, c, r);
}

// ---- bases: log_b(x) from E' and tq = -ln(R/B) + ln(1 + r) ----------------

// Each base also carries the single constants of SingleFull: the pair table
// of -log_b(R/1024), log_b(2) = c_hi + c_lo (c_hi = 0: the base is 2, E' log_b(2)
// = E') and log_b(e) = h + l (h = 0: the base is e, h = 1, l = 0).

// Natural logarithm: E' ln2 + tq.
struct BaseE {
  static constexpr const uint32_t* pairs_f = logtab::kLnPairsF;
  static constexpr uint32_t c_hi_f = logtab::kLn2HiF, c_lo_f = logtab::kLn2LoF, h_f = 0, l_f = 0;
  template <class V> static RAVL_INLINE V combine(V e, V tq) {
    if constexpr (sizeof(LaneOf<V>) == 8) return fma(e, V(f64_bits(logtab::kLn2)), tq);
    else return fma(e, V(f32_bits(logtab::kLn2f)), tq);
  }
};
// Base 2: E' + tq log2(e); exact E' for powers of two (tq = 0).
struct Base2 {
  static constexpr const uint32_t* pairs_f = logtab::kLog2PairsF;
  static constexpr uint32_t c_hi_f = 0, c_lo_f = 0, h_f = logtab::kLog2eHiF, l_f = logtab::kLog2eLoF;
  template <class V> static RAVL_INLINE V combine(V e, V tq) {
    if constexpr (sizeof(LaneOf<V>) == 8) return fma(tq, V(f64_bits(logtab::kLog2e)), e);
    else return fma(tq, V(f32_bits(logtab::kLog2ef)), e);
  }
};
// Base 10: E' log10(2) + tq log10(e).
struct Base10 {
  static constexpr const uint32_t* pairs_f = logtab::kLog10PairsF;
  static constexpr uint32_t c_hi_f = logtab::kLog10_2HiF, c_lo_f = logtab::kLog10_2LoF, h_f = logtab::kLog10eHiF,
                            l_f = logtab::kLog10eLoF;
  template <class V> static RAVL_INLINE V combine(V e, V tq) {
    if constexpr (sizeof(LaneOf<V>) == 8)
      return fma(e, V(f64_bits(logtab::kLog10_2)), tq * V(f64_bits(logtab::kLog10e)));
    else return fma(e, V(f32_bits(logtab::kLog10_2f)), tq * V(f32_bits(logtab::kLog10ef)));
  }
};

// ---- the scalar routines -----------------------------------------------------

// Special inputs shared by every logarithm (C99 F.9.3.7, OpenCL): NaN ->
// quiet NaN; +inf -> +inf; +-0 -> -inf (pole); x < 0 or -inf -> NaN (domain).
// Returns true when *rp and *status are set.
template <class T> RAVL_INLINE bool log_special(T x, T* rp, int* status) {
  if (x != x) {
    *rp = x + x;
    *status = kStatusOk;
    return true;
  }
  if (x == (T)__builtin_inf()) {
    *rp = x;
    *status = kStatusOk;
    return true;
  }
  if (x == 0) {
    *rp = (T)-1 / opaque((T)0);
    *status = kStatusPole;
    return true;
  }
  if (x < 0) {
    T z = opaque(x) - x;  // 0 for finite x, NaN for -inf
    *rp = z / z;          // invalid: NaN
    *status = kStatusDomain;
    return true;
  }
  return false;
}

// The double routine of log2 and log10: the full algorithm `Full::core` on
// the lane broadcast; a denormal is scaled by 2^64 first and its E' reduced by 64.
template <class Full> RAVL_INLINE int logd_scalar(const double* xp, double* rp) {
  double x = *xp;
  int status;
  if (log_special(x, rp, &status)) return status;
  double adj = 0;
  if (x < f64_bits(0x0010000000000000ull)) {
    x *= 0x1p64;
    adj = -64;
  }
  Parts<2> p = reduce(VD<2>(x));
  p.e += VD<2>(adj);
  *rp = Full::core(p)[0];
  return kStatusOk;
}

// The single routine of logf, log2f and log10f (every class): the double
// reduction and the degree-4 polynomial in double (relative error below 2^-40),
// rounded once to single; a single denormal is a normal double.
template <class Base> RAVL_INLINE int logf_scalar(const float* xp, float* rp) {
  float x = *xp;
  int status;
  if (log_special(x, rp, &status)) return status;
  Parts<2> p = reduce(VD<2>((double)x));
  *rp = (float)Base::combine(p.e, ln_tq<4>(p))[0];
  return kStatusOk;
}

// ---- special-lane tests --------------------------------------------------------

// Full classes: x below the smallest normal (ordered: negatives, zeros,
// denormals) or x not <= the largest finite value (unordered: +inf, NaN).
template <class V> RAVL_INLINE MaskOf<V> special_full(V x) {
  using T = LaneOf<V>;
  constexpr T lo = sizeof(T) == 8 ? (T)f64_bits(0x0010000000000000ull) : (T)f32_bits(0x00800000u);
  constexpr T hi = sizeof(T) == 8 ? (T)f64_bits(0x7fefffffffffffffull) : (T)f32_bits(0x7f7fffffu);
  return (x < V(lo)) | not_le(x, V(hi));
}
// Fast classes: one unsigned integer compare of the bit pattern minus that
// of the smallest normal: positive normals give 0 .. (largest finite -
// smallest normal), every other pattern (sign set, zero, denormal, inf, NaN)
// more.
template <class V> RAVL_INLINE MaskOf<V> special_bits(V x) {
  using U = UIntOf<V>;
  if constexpr (sizeof(LaneOf<V>) == 8)
    return as_uint(x) - U(0x0010000000000000ull) > U(0x7fdfffffffffffffull);
  else
    return as_uint(x) - U(0x00800000u) > U(0x7effffffu);
}

// ---- kernels shared by the single families ---------------------------------------

// Full single class of base Base, all in single with a two-word table.
// Reduction as in SingleFast below (m' in [2^-10, 2^-9), R = nearest integer
// to the reciprocal estimate, r = R m' - 1 exact, |r| < 2^-9.2), but with
// E' = E - 127 for every R, so x = 2^E' (R/1024)(1 + r) and
//   log_b(x) = E' (c_hi + c_lo) + (a_R + b_R) + (h + l) ln(1 + r),
// a_R + b_R = -log_b(R/1024) in [0, log_b 2] (a_R and c_hi on the grid
// 2^-17, 2^-18 for base 10, so a_512 = c_hi; |E'| <= 127).
//   A = E' c_hi + a_R: exact (A on the grid 2^-17 with |A| <= 2^7, or on
//     2^-18 with |A| < 2^6 for base 10: at most 24 significant bits);
//   t + te = h r exactly (t = r for base e);
//   S + err = A + t exactly (Fast2Sum: A = 0, or |A| > |t|, since |r| <= 0.875 m'
//     while |-ln(R/1024) - E' ln 2| >= ln(1 + 1/1023) when R != 1024 or E' != 0;
//     the cancellation of E' = -1 against a_R near ln 2 is exact in A);
//   result = S + (((b_R + E' c_lo) + err) + te + r (l + r h (c2 + c3 r + c4 r^2))).
// The tail is below 2^-8 |S| and its terms carry absolute errors near 2^-41
// (b_R, c_lo, the Taylor truncation r^5/5), at least 2^-13 below |S| (|S| >
// 1.1e-4 whenever a_R or E' is nonzero): the result is within 0.5 ulp plus
// about 2^-4 ulp in the worst case.
template <class Base, int L> RAVL_INLINE VF<L> ln_single(VF<L> x) {
  static_assert(Base::c_hi_f == 0 || (Base::pairs_f[0] == Base::c_hi_f && Base::pairs_f[1] == Base::c_lo_f),
                "row R = 512 must repeat the split of log_b(2)");
  using V = VF<L>;
  using U = Vec<uint32_t, L>;
  using I = Vec<int32_t, L>;
  V m = as_float<V>((as_uint(x) & U(0x007fffffu)) | U(0x3a800000u));
  V R = round_imm<8>(rcp_approx(m));
  V r = fms(R, m, V(1.0f));
  V e = convert<float>((as_int(x) >> 23) - I(127));
  V a, b;
  // Pair index 2 (R - 512): R's unit is bit 14 of its pattern (512.0f = 0x44000000).
  gather_pairs(reinterpret_cast<const float*>(Base::pairs_f), (as_int(R) - I(0x44000000)) >> 13, a, b);
  V A;
  if constexpr (Base::c_hi_f != 0) A = fma(e, V(f32_bits(Base::c_hi_f)), a);
  else A = e + a;
  V t = r, te(0.0f);
  if constexpr (Base::h_f != 0) {
    t = r * V(f32_bits(Base::h_f));
    te = fms(r, V(f32_bits(Base::h_f)), t);
  }
  V S = A + t;
  V err = t - (S - A);
  // b_R + E' c_lo first: 0 exactly for E' = -1, R = 512 (b_512 = c_lo, the
  // same rounding of the same value).
  V lo = b;
  if constexpr (Base::c_lo_f != 0) lo = fma(e, V(f32_bits(Base::c_lo_f)), lo);
  lo = lo + err;
  if constexpr (Base::h_f != 0) {
    // l r + h r^2 P(r) = r (l + r Q(r)), Q = h P with the coefficients h c_i
    // rounded to single (relative 2^-24 of a term below 2^-8 |S|).
    constexpr float h = f32_bits(Base::h_f);
    V Q = fma(r, fma(r, V(h * -0.25f), V(h / 3.0f)), V(h * -0.5f));
    lo = fma(r, fma(r, Q, V(f32_bits(Base::l_f))), lo + te);
  } else {
    V P = fma(r, fma(r, V(-0.25f), V(f32_bits(0x3eaaaaabu))), V(-0.5f));  // c4, RN(1/3), c2
    lo = fma(r * r, P, lo);
  }
  return S + lo;
}

template <class Base> struct SingleFull : frame::Kernel {
  using sig = float(float);
  static constexpr bool has_callout = true;
  template <int L> static RAVL_INLINE VF<L> vec(VF<L> x) { return ln_single<Base>(x); }
  template <int L> static RAVL_INLINE Mask<float, L> special(VF<L> x, VF<L>) { return special_full(x); }
  static RAVL_INLINE int scalar(const float* x, float* r) { return logf_scalar<Base>(x, r); }
};

// Fast single class of base Base, all in single: the same reduction with
// m' = fraction under 2^-10 in single (r = R m' - 1 is exact: a multiple of
// 2^-33 below 2^-9), the single table kLnTf and ln(1 + r) ~ r - r^2/2
// (truncation r^3/3, relative 2^-19.8).
template <class Base> struct SingleFast : frame::Kernel {
  using sig = float(float);
  static constexpr bool has_callout = true;
  template <int L> static RAVL_INLINE VF<L> vec(VF<L> x) {
    using V = VF<L>;
    using U = Vec<uint32_t, L>;
    using I = Vec<int32_t, L>;
    V m = as_float<V>((as_uint(x) & U(0x007fffffu)) | U(0x3a800000u));
    V R = round_imm<8>(rcp_approx(m));
    V r = fms(R, m, V(1.0f));
    V e = convert<float>(as_int(x) >> 23) - select(R > V(724.0f), V(127.0f), V(126.0f));
    I row = (as_int(R) - I(0x44000000)) >> 14;  // 512.0f = 0x44000000; R's unit is bit 14
    V t = gather(reinterpret_cast<const float*>(logtab::kLnTf), row);
    V tq = t + fma(r * r, V(-0.5f), r);
    return Base::combine(e, tq);
  }
  template <int L> static RAVL_INLINE Mask<float, L> special(VF<L> x, VF<L>) { return special_bits(x); }
  static RAVL_INLINE int scalar(const float* x, float* r) { return logf_scalar<Base>(x, r); }
};

// Fast double class of base Base: the single-word table kLogFast (src/tables/log.h) and the
// degree-3 polynomial; one gather, no double-double arithmetic. Special
// lanes go to the routine of the family's full class Full.
template <class Base, class Full> struct DoubleFast : frame::Kernel {
  using sig = double(double);
  static constexpr bool has_callout = true;
  template <int L> static RAVL_INLINE VD<L> vec(VD<L> x) {
    Parts<L> p = reduce(x);
    return Base::combine(p.e, ln_tq<3>(p));
  }
  template <int L> static RAVL_INLINE Mask<double, L> special(VD<L> x, VD<L>) { return special_bits(x); }
  static RAVL_INLINE int scalar(const double* x, double* r) { return logd_scalar<Full>(x, r); }
};

}  // namespace log_core
}  // namespace ravl
