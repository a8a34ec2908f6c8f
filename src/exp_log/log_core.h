// The parts the single logarithm families logf, log2f, log10f and log1pf
// share: the single kernels (reduction, eight-interval tables, full and fast
// paths and their lane test), the bases' constants and the scalar
// special-lane routines (exp_log/logd_core.h uses rcp_est and log_special
// too), with the double reduction those scalar routines use.
//
// Double reduction (double lanes, any x; meaningful for positive normal x):
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
#pragma once

#include "exp_log/logd_core.h"
#include "frame/entry.h"
#include "tables/log.h"
#include "tables/logtab.h"

namespace ravl {
namespace log_core {

template <int L> using VD = Vec<double, L>;
template <int L> using VF = Vec<float, L>;
using logd::log1p_special;
using logd::log_special;
using logd::rcp_est;

// ---- bases: log_b(x) from E' and tq = -ln(R/B) + ln(1 + r) ----------------

// Each base also carries the single classes' constants: the tables of
// -log_b(c_i) (pair_f: a_i then b_i), log_b(2) = c_hi +
// c_lo (c_hi = 0: the base is 2, E log_b(2) = E) and log_b(e) = h + l (h = 0:
// the base is e, h = 1, l = 0), and log_b(2), log_b(e) rounded to single
// (k2_f, ke_f) with the fast classes' combine taking them as vectors.

// Natural logarithm: E' ln2 + tq.
struct BaseE {
  static constexpr const uint32_t* pair_f = logtab::kLnCPairF;
  static constexpr uint32_t c_hi_f = logtab::kLn2HiF, c_lo_f = logtab::kLn2LoF, h_f = 0, l_f = 0;
  template <class V> static RAVL_INLINE V combine(V e, V tq) {
    if constexpr (sizeof(LaneOf<V>) == 8) return fma(e, V(f64_bits(logtab::kLn2)), tq);
    else return fma(e, V(f32_bits(logtab::kLn2f)), tq);
  }
  static constexpr uint32_t k2_f = logtab::kLn2f, ke_f = 0x3f800000u;
  template <class V> static RAVL_INLINE V combine(V e, V tq, V k2, V) { return fma(e, k2, tq); }
};
// Base 2: E' + tq log2(e); exact E' for powers of two (tq = 0).
struct Base2 {
  static constexpr const uint32_t* pair_f = logtab::kLog2CPairF;
  static constexpr uint32_t c_hi_f = 0, c_lo_f = 0, h_f = logtab::kLog2eHiF, l_f = logtab::kLog2eLoF;
  template <class V> static RAVL_INLINE V combine(V e, V tq) {
    if constexpr (sizeof(LaneOf<V>) == 8) return fma(tq, V(f64_bits(logtab::kLog2e)), e);
    else return fma(tq, V(f32_bits(logtab::kLog2ef)), e);
  }
  static constexpr uint32_t k2_f = 0x3f800000u, ke_f = logtab::kLog2ef;
  template <class V> static RAVL_INLINE V combine(V e, V tq, V, V ke) { return fma(tq, ke, e); }
};
// Base 10: E' log10(2) + tq log10(e).
struct Base10 {
  static constexpr const uint32_t* pair_f = logtab::kLog10CPairF;
  static constexpr uint32_t c_hi_f = logtab::kLog10_2HiF, c_lo_f = logtab::kLog10_2LoF, h_f = logtab::kLog10eHiF,
                            l_f = logtab::kLog10eLoF;
  template <class V> static RAVL_INLINE V combine(V e, V tq) {
    if constexpr (sizeof(LaneOf<V>) == 8)
      return fma(e, V(f64_bits(logtab::kLog10_2)), tq * V(f64_bits(logtab::kLog10e)));
    else return fma(e, V(f32_bits(logtab::kLog10_2f)), tq * V(f32_bits(logtab::kLog10ef)));
  }
  static constexpr uint32_t k2_f = logtab::kLog10_2f, ke_f = logtab::kLog10ef;
  template <class V> static RAVL_INLINE V combine(V e, V tq, V k2, V ke) { return fma(e, k2, tq * ke); }
};

// ---- the scalar routines -----------------------------------------------------

// The single routine of logf, log2f and log10f (every class): the double
// reduction and the degree-4 polynomial in double (relative error below 2^-40),
// rounded once to single; a single denormal is a normal double.
struct ScalarRows : logd::ReduceRows {
  Row<double> bias = row(logd::kBias1022);
  Row<uint64_t> r724 = row<uint64_t>(0x4086a00000000000ull);  // bits(724.0): above it the rows hold -ln(R/1024)
};
inline constexpr ScalarRows kScalarRows{};
// Taylor coefficients of ln(1 + r) = r + r^2 (c2 + c3 r + c4 r^2): truncation
// r^5/5 at |r| < 2^-9.2, relative 2^-41.
constexpr double kC2 = -0.5;
constexpr double kC3 = f64_bits(0x3fd5555555555555ull);  // 1/3
constexpr double kC4 = -0.25;

template <class Base> RAVL_INLINE int logf_scalar(const float* xp, float* rp) {
  float x = *xp;
  int status;
  if (log_special(x, rp, &status)) return status;
  using V = VD<2>;
  logd::Parts<2> p = logd::reduce<true>(V((double)x), kScalarRows);
  // tq = -ln(R/B) + ln(1 + r), B = 512 or 1024 as E' has it.
  V r = p.r, tq = logd::row8(log_tables::kLogFast, p) + fma(r * r, fma(r, fma(r, V(kC4), V(kC3)), V(kC2)), r);
  *rp = (float)Base::combine(p.e, tq)[0];
  return kStatusOk;
}

// ---- kernels shared by the single families ---------------------------------------
//
// Reduction of a positive normal single x, with Z0 = 0.70703125 (pattern
// logtab::kZ0F = 0x3f350000) and t = pattern(x) - pattern(Z0) as an integer:
//   E = t >> 23 (arithmetic), so that z = x 2^-E, the single with pattern
//     pattern(x) - (E << 23), lies in [Z0, 2 Z0);
//   i = bits 20..22 of t: the interval of z, one of eight, with its
//     reciprocal c_i (logtab::kLogInvCF; c_4 = 1 for the interval
//     [0.95703125, 1.0390625) that holds 1);
//   z c_i = P + Pl exactly (P rounded, Pl = fms(z, c_i, P)), r = P - 1 exact
//     (P in [0.94, 1.06]), |r| < 0.0567;
// and log_b(x) = E log_b(2) - log_b(c_i) + log_b(1 + r + Pl). The table is
// eight floats per word, read by one permute (lookup8) per word.
template <int L> struct SingleParts {
  VF<L> z, e, c;      // z, E, c_i
  Vec<int32_t, L> i;  // the interval in bits 0..2
};
template <int L> RAVL_INLINE VF<L> table8(const uint32_t* t, Vec<int32_t, L> i) {
  return lookup8(reinterpret_cast<const float*>(t), i);
}
template <int L, class C> RAVL_INLINE SingleParts<L> reduce_single(VF<L> x, const C& k) {
  using I = Vec<int32_t, L>;
  I t = as_int(x) - get<I>(k.z0);
  SingleParts<L> p;
  p.e = convert<float>(t >> 23);
  p.z = as_float<VF<L>>(as_int(x) - (t & get<I>(k.exp_field)));
  p.i = t >> 20;
  p.c = table8(logtab::kLogInvCF, p.i);
  return p;
}
// 2^-E: pattern 0x3f800000 - (E << 23) = pattern(1) + pattern(z) - pattern(x),
// a normal single or +0 for E <= 127 (callers keep E = 128, x >= 2^127, off
// the paths that use it).
template <int L, class C> RAVL_INLINE VF<L> two_to_minus_e(VF<L> x, const SingleParts<L>& p, const C& k) {
  return as_float<VF<L>>(as_int(get<VF<L>>(k.one)) + as_int(p.z) - as_int(x));
}

// Taylor coefficients of ln(1 + r) in single for the single classes: c2 = -1/2,
// c3 = RN(1/3) = 0x3eaaaaab, c4 = -1/4, c5 = RN(1/5) = 0x3e4ccccd, c6 = RN(-1/6) = 0xbe2aaaab,
// c7 = RN(1/7) = 0x3e124925.
constexpr float kC3f = f32_bits(0x3eaaaaabu), kC5f = f32_bits(0x3e4ccccdu), kC6f = f32_bits(0xbe2aaaabu),
                kC7f = f32_bits(0x3e124925u);

// The single classes' constants, one 32-byte row each, read as memory
// operands (see rows() in simd.h): the lane test's two rows first, then the
// reduction's, the polynomial's and the base's.
template <class Base> struct SingleRows {
  // Lane test: pattern(x) + 0x00800000 is below 0x01000000, as a signed
  // integer, exactly for the patterns that are not positive normal singles
  // (sign set, zero, denormal, +inf, NaN), in one add and one compare.
  Row<int32_t> nonnormal_add = row<int32_t>(0x00800000), nonnormal_bound = row<int32_t>(0x01000000);
  Row<int32_t> z0 = row<int32_t>((int32_t)logtab::kZ0F), exp_field = row<int32_t>((int32_t)0xff800000u);
  Row<float> one = row(1.0f), c2 = row(-0.5f), c3 = row(kC3f), c4 = row(-0.25f), c5 = row(kC5f), c6 = row(kC6f),
             c7 = row(kC7f);
  Row<float> c_hi = row(f32_bits(Base::c_hi_f)), c_lo = row(f32_bits(Base::c_lo_f)), h = row(f32_bits(Base::h_f)),
             l = row(f32_bits(Base::l_f));
  Row<float> k2 = row(f32_bits(Base::k2_f)), ke = row(f32_bits(Base::ke_f));  // the fast classes' combine
};
template <class Base> inline constexpr SingleRows<Base> kSingleRows{};

// Single lanes that are not positive normal numbers (every single class's lane test).
template <class Base, class V> RAVL_INLINE MaskOf<V> single_nonnormal(V x, const SingleRows<Base>& c) {
  using I = SIntOf<V>;
  return (as_int(x) + get<I>(c.nonnormal_add)) < get<I>(c.nonnormal_bound);
}

// Full single class of base Base, all in single:
//   A = E c_hi + a_i: exact (A on the grid 2^-17 with |A| < 2^7, or on 2^-18
//     with |A| < 2^6 for base 10: at most 24 significant bits);
//   t + te = h r exactly (t = r for base e);
//   S + err = A + t exactly (Fast2Sum: A = 0 only for E = 0, i = 4, and
//     otherwise |A| >= 0.068 > |t|);
//   result = S + (b_i + E c_lo + err + te + l r + h N), N = d + r^2 Q(r), with
//     d = Pl (1 - r) ~ ln(1 + r + Pl) - ln(1 + r) and
//     Q = c2 + c3 r + ... + c7 r^5 (truncation r^8/8 < 2^-36 |r|).
// The tail is below |S|/16 and its rounding errors are near 2^-24 of its
// largest term (r^2/2 < 2^-9.6); where S + tail falls a binade below S they
// weigh twice. Measured over every positive normal single (against the double
// logarithm): 0.5871 ulp (ln), 0.6336 (log2), 0.5777 (log10), all at x just
// above 1.0390625, the start of interval 5 (|r| near 0.057, result near 0.04).
// Carry: an error d0 of x itself (x + d0 is the argument; |d0| at most half
// an ulp of x, the rounding of 1 + x in log1pf), carried as d0 2^-E c_i into
// Pl (log1pf.cpp has its measured bound).
template <class Base, bool kCarry = false, int L>
RAVL_INLINE VF<L> ln_single(VF<L> x, VF<L> d0 = VF<L>(0.0f)) {
  using V = VF<L>;
  const SingleRows<Base>& k = rows(kSingleRows<Base>);
  SingleParts<L> p = reduce_single(x, k);
  V a = table8(Base::pair_f, p.i), b = table8(Base::pair_f + 8, p.i);
  V P = p.z * p.c;
  V Pl = fms(p.z, p.c, P);
  if constexpr (kCarry) Pl = fma(d0 * two_to_minus_e(x, p, k), p.c, Pl);
  V r = P - get<V>(k.one);
  V A;
  if constexpr (Base::c_hi_f != 0) A = fma(p.e, get<V>(k.c_hi), a);
  else A = p.e + a;
  V t = r, te(0.0f);
  if constexpr (Base::h_f != 0) {
    t = r * get<V>(k.h);
    te = fms(r, get<V>(k.h), t);
  }
  V S = A + t;
  V err = t - (S - A);
  V lo = b;
  if constexpr (Base::c_lo_f != 0) lo = fma(p.e, get<V>(k.c_lo), lo);
  lo = lo + err;
  // The natural-log tail N = d + r^2 Q, d = Pl (1 - r). Its constants are
  // read after a second barrier, so that the compiler does not load them all
  // at the start and hold them in registers (which the callee saves).
  const SingleRows<Base>& kq = rows(kSingleRows<Base>);
  V r2 = r * r;
  V Q = fma(r2, fma(r2, fma(r, get<V>(kq.c7), get<V>(kq.c6)), fma(r, get<V>(kq.c5), get<V>(kq.c4))),
            fma(r, get<V>(kq.c3), get<V>(kq.c2)));
  V N = fma(r2, Q, fnma(Pl, r, Pl));
  if constexpr (Base::h_f != 0) lo = fma(N, get<V>(kq.h), fma(r, get<V>(kq.l), lo + te));
  else lo = lo + N;
  return S + lo;
}

template <class Base> struct SingleFull : frame::Kernel {
  using sig = float(float);
  static constexpr bool has_callout = true;
  template <int L> static RAVL_INLINE VF<L> vec(VF<L> x) { return ln_single<Base>(x); }
  template <int L> static RAVL_INLINE Mask<float, L> special(VF<L> x, VF<L>) {
    return single_nonnormal(x, rows(kSingleRows<Base>));
  }
  static RAVL_INLINE int scalar(const float* x, float* r) { return logf_scalar<Base>(x, r); }
};

// Fast single class of base Base: the same reduction with r = RN(z c_i - 1)
// (one fused operation), tq = -ln(c_i) rounded once (kLnCF) plus
// ln(1 + r) ~ r + r^2 (c2 + c3 r + c4 r^2 + c5 r^3) (truncation r^6/6 < 2^-27.8 |r|),
// and the base's combine of E and tq. Measured over every positive normal
// single: 2.645 ulp (ln), 3.987 (log2), 2.918 (log10), near x = 1.04 (result
// near 0.04, absolute error below 2^-26).
// A carried error d0 of x (as in ln_single) enters as d0 2^-E c_i beside r.
template <class Base, bool kCarry = false, int L>
RAVL_INLINE VF<L> ln_single_fast(VF<L> x, VF<L> d0 = VF<L>(0.0f)) {
  using V = VF<L>;
  const SingleRows<Base>& k = rows(kSingleRows<Base>);
  SingleParts<L> p = reduce_single(x, k);
  V r = fms(p.z, p.c, get<V>(k.one));
  V rc = r;
  if constexpr (kCarry) rc = fma(d0 * two_to_minus_e(x, p, k), p.c, r);
  const SingleRows<Base>& kq = rows(kSingleRows<Base>);  // as in ln_single
  V r2 = r * r;
  V Q = fma(r2, fma(r, get<V>(kq.c5), get<V>(kq.c4)), fma(r, get<V>(kq.c3), get<V>(kq.c2)));
  V tq = table8(logtab::kLnCF, p.i) + fma(r2, Q, rc);
  return Base::combine(p.e, tq, get<V>(kq.k2), get<V>(kq.ke));
}

// The same lanes and scalar routine as the full class.
template <class Base> struct SingleFast : SingleFull<Base> {
  template <int L> static RAVL_INLINE VF<L> vec(VF<L> x) { return ln_single_fast<Base>(x); }
};

}  // namespace log_core
}  // namespace ravl
