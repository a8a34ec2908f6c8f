// The double kernels of the log2 and log10 families: the argument reduction,
// the full and fast classes of both bases and their scalar special-lane routine.
//
// Reduction (any x; meaningful for positive normal x):
//   m' = the fraction of x under the exponent of 2^-10, so m' in [2^-10, 2^-9);
//   R  = the integer nearest to the single-precision reciprocal estimate of m'
//        (relative error at most 1.5 * 2^-12, so |R - 1/m'| <= 0.5 + 1.5 * 2^-12 / m'
//        and R is one of 512..1024);
//   r  = R m' - 1, one fused multiply-subtract, exact: R m' is a multiple of
//        ulp(m') = 2^-62 and |r| <= 0.5 m' + 1.5 * 2^-12 <= 1.35e-3 < 2^-9.5, so r
//        fits in 53 bits;
//   E' = E - 1022 with E the biased exponent field (an exact small integer).
// Then x = 2^(E - 1013) m' = 2^E' (R/512) (1 + r) and, for base b,
//   log_b(x) = E' log_b(2) - log_b(R/512) + log_b(1 + r),
// with -log_b(R/512) in [-log_b(2), 0] from a table row per R
// (src/tables/logd.h). Near x = 1 the table and E' cancel exactly: x just
// below 1 has E' = 0 and R = 512 (row 0 is 0), x from 1 up has E' = 1 and
// R = 1024 (row 1024 is exactly -log_b(2) as the kernels' E' log_b(2) takes
// it), so the result is log_b(1 + r) with r = x - 1 exact.
//
// The table rows are read at offsets taken straight from the bit pattern of
// R: for every integer R in 512..1024, bits(R) >> 39 = 0x810000 + 16 (R - 512),
// the byte offset of a 16-byte row, and bits(R) >> 43 = 0x81000 + (R - 512), the
// index of an 8-byte row, so each table is addressed from its start less
// 0x810000 or 0x408000 bytes.
#pragma once

#include "frame/entry.h"
#include "tables/logd.h"
#include "tables/logtab.h"

namespace ravl {
namespace logd {

template <int L> using VD = Vec<double, L>;
template <int L> using UD = Vec<uint64_t, L>;
template <int L> using ID = Vec<int64_t, L>;

// The hardware reciprocal estimate on 2, 4 or 8 single lanes.
template <int L> RAVL_INLINE Vec<float, L> rcp_est(Vec<float, L> x) {
  if constexpr (L == 2) return slice<0, 2>(rcp_approx(join(x, x)));
  else return rcp_approx(x);
}

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

// Special inputs of ln(1 + x) (C99 F.9.3.9, OpenCL): NaN -> quiet NaN; +inf ->
// +inf; -1 -> -inf (pole); x < -1 or -inf -> NaN (domain). Returns true when
// *rp and *status are set.
template <class T> RAVL_INLINE bool log1p_special(T x, T* rp, int* status) {
  if (x != x || x == (T)__builtin_inf()) {
    *rp = x + x;
    *status = kStatusOk;
    return true;
  }
  if (x <= (T)-1) return log_special(x + 1, rp, status);  // -1 -> +-0 (pole), below -> domain
  return false;
}


// Row R - 512 of a table of one double per R (row8), or of a pair (a, b) per
// R (row16), for the R of p.rbits: the offset of R = 512 (bits
// 0x4080000000000000 >> 43 rows, >> 39 bytes) is taken off the table's start.
template <int L> struct Parts;
template <int L> RAVL_INLINE VD<L> row8(const uint64_t* t, const Parts<L>& p) {
  const double* base = reinterpret_cast<const double*>(reinterpret_cast<uintptr_t>(t) - (0x4080000000000000ull >> 40));
  return gather(base, bitcast<ID<L>>(p.rbits >> 43));
}
template <int L> RAVL_INLINE void row16(const uint64_t* t, const Parts<L>& p, VD<L>& a, VD<L>& b) {
  const double* base = reinterpret_cast<const double*>(reinterpret_cast<uintptr_t>(t) - (0x4080000000000000ull >> 39));
  gather_pairs<1>(base, bitcast<ID<L>>(p.rbits >> 39), a, b);
}

// The lane test of every class: bits(x) + 0x7ff0000000000000 as a signed
// integer is at most 0xffdfffffffffffff (-2^53 - 1) exactly for the positive
// normal x: it maps 0x0010000000000000..0x7fefffffffffffff onto
// INT64_MIN..0xffdfffffffffffff, and every other pattern (zeros, denormals,
// +inf, NaN, sign set) above it (the unsigned compare bits(x) - bits(2^-1022)
// > 0x7fdfffffffffffff with the sign bit flipped). Its two rows open each
// kernel's block of constant rows (32 bytes each, read as memory operands
// through rows() in frame/simd.h).
struct FlagRows {
  Row<uint64_t> flag_add = row<uint64_t>(0x7ff0000000000000ull), flag_above = row<uint64_t>(0xffdfffffffffffffull);
};
// The reduction's rows: the fraction mask, the exponent field of 2^-10
// (0x3f50000000000000), 2^52's pattern (0x4330000000000000: OR-ed under the
// biased exponent E it makes the double 2^52 + E) and 1. The kernel's block
// adds `bias`, the double 2^52 + k, so that E - k comes out.
struct ReduceRows {
  Row<uint64_t> frac = row<uint64_t>(0x000fffffffffffffull), exp_m10 = row<uint64_t>(0x3f50000000000000ull),
                two52 = row<uint64_t>(0x4330000000000000ull);
  Row<double> one = row(1.0);
};
// 2^52 + 1022 (0x43300000000003fe): E' = E - 1022.
constexpr double kBias1022 = f64_bits(0x43300000000003feull);

template <int L> struct Parts {
  VD<L> r, e;   // r = R m' - 1 (exact), E' (an integer)
  UD<L> rbits;  // bits(R): the table offsets are its top bits
};

template <int L> RAVL_INLINE MaskOf<VD<L>> flag(VD<L> x, const FlagRows& c) {
  return bitcast<ID<L>>(as_uint(x) + get<UD<L>>(c.flag_add)) > get<ID<L>>(c.flag_above);
}

// r, bits(R) and E - k, k given by c.bias. With kSplit (tables that switch to
// -ln(R/1024) above R = 724), E - k - 1 where R > 724: the compare's all-ones
// lanes (-1) are added to the exponent field; c then has the row r724.
// then(p) runs once r and bits(R) are known, before E - k is made (log1p
// forms its correction term there).
struct NoStep {
  template <class P> RAVL_INLINE void operator()(P&) const {}
};
template <bool kSplit = false, int L, class C, class Then = NoStep>
RAVL_INLINE Parts<L> reduce(VD<L> x, const C& c, Then then = {}) {
  using V = VD<L>;
  using U = UD<L>;
  U ux = as_uint(x);
  U E = ux >> 52;
  // m waits for E (an empty asm that reads E and may change x's bits as far
  // as the compiler knows), so x is dead once m is formed.
  __asm__("" : "+x"(ux) : "x"(E));
  V m = as_float<V>((ux & get<U>(c.frac)) | get<U>(c.exp_m10));
  V R = round_imm<8>(convert<double>(rcp_est(convert<float>(m))));  // nearest integer
  Parts<L> p;
  p.r = fms(R, m, get<V>(c.one));
  p.rbits = as_uint(R);
  then(p);
  if constexpr (kSplit) E += bitcast<U>(bitcast<ID<L>>(p.rbits) > get<ID<L>>(c.r724));
  p.e = as_float<V>(E | get<U>(c.two52)) - get<V>(c.bias);
  return p;
}

// ---- full classes ------------------------------------------------------------------
//
// log_b(x) = E' (H + G) + (a_R + b_R) + (h + l) ln(1 + r), with a_R + b_R =
// -log_b(R/512) from the pair table (a_R on the grid of H), log_b(2) = H + G
// (H = 1, G = 0 for base 2; H with 42 significant bits for base 10, so E' H
// is exact for |E'| < 2^11) and log_b(e) = h + l:
//   A = E' H + a_R            exact (a multiple of 2^-42 or 2^-43 below 2^11 or 2^9);
//   t + te = h r              exactly (product and its fused error);
//   S + err = A + t           exactly (Fast2Sum: A = 0, or |A| > |t|, since
//                             |-log_b(R/512) + E' log_b(2)| >= log_b(1 + 1/1023.5)
//                             when R is not 512 or 1024 or E' is not 0 or 1, and
//                             |t| <= h |r| <= h (0.5 + 1.5 * 2^-12 R) / R is below it;
//                             A = 0 for R = 512, E' = 0 and R = 1024, E' = 1);
//   result = S + ((((b_R + E' G) + te) + r (l + r Q(r))) + err),
// Q(r) = h (c2 + c3 r + c4 r^2 + c5 r^3 + c6 r^4), ln(1 + r) = r + r^2 (c2 + ...):
// the Taylor coefficients -1/2, 1/3, -1/4, 1/5, -1/6 times h, each rounded
// to double (relative 2^-53 of a term below 2^-10 |t|), truncation r^7/7
// (2^-69.5 relative to r at |r| = 1.35e-3).
// The tail is below 2^-8 |S| and carries a relative error near 2^-52, so
// the result is within 0.5 ulp plus about 2^-8 ulp; near x = 1 it is
// RN(t + (te + r (l + r Q))), the same.
//
// Base: H (a row, or none for base 2), G, h, l, the pair table and the fast
// table with its single log_b(e) and log_b(2) (none for base 2).
template <class Base> struct FullRows : FlagRows, ReduceRows {
  Row<double> bias = row(kBias1022), h = row(f64_bits(Base::kH)), l = row(f64_bits(Base::kL)), q2 = row(f64_bits(Base::kH) * -0.5),
              q3 = row(f64_bits(Base::kH) / 3), q4 = row(f64_bits(Base::kH) * -0.25),
              q5 = row(f64_bits(Base::kH) / 5), q6 = row(f64_bits(Base::kH) / -6), c_hi = row(f64_bits(Base::kCHi)),
              c_lo = row(f64_bits(Base::kCLo));
};

template <class Base> struct Full : frame::Kernel {
  using sig = double(double);
  static constexpr bool has_callout = true;
  static constexpr FullRows<Base> kRows{};

  // log_b(x) from the reduction p, whose E' the scalar routine may have moved.
  template <int L> static RAVL_INLINE VD<L> core(const Parts<L>& p, const FullRows<Base>& c) {
    using V = VD<L>;
    V a, b;
    row16(Base::kFull, p, a, b);
    V r = p.r, e = p.e;
    V A, lo = b;
    if constexpr (Base::kCHi != 0) {
      A = fma(e, get<V>(c.c_hi), a);
      lo = fma(e, get<V>(c.c_lo), b);
    } else {
      A = e + a;
    }
    V t = r * get<V>(c.h);
    lo += fms(r, get<V>(c.h), t);
    V Q = fma(r, fma(r, fma(r, fma(r, get<V>(c.q6), get<V>(c.q5)), get<V>(c.q4)), get<V>(c.q3)), get<V>(c.q2));
    lo = fma(r, fma(r, Q, get<V>(c.l)), lo);
    V S = A + t;
    V err = t - (S - A);
    return S + (lo + err);
  }
  template <int L> static RAVL_INLINE VD<L> vec(VD<L> x) {
    const FullRows<Base>& c = rows(kRows);
    return core(reduce(x, c), c);
  }
  template <int L> static RAVL_INLINE Mask<double, L> special(VD<L> x, VD<L>) { return flag(x, rows(kRows)); }
  // Every class's special lanes: NaN, infinities, zeros, negative numbers as
  // log_special says; a denormal is scaled by 2^64 first and its E'
  // reduced by 64.
  static RAVL_INLINE int scalar(const double* xp, double* rp) {
    double x = *xp;
    int status;
    if (log_special(x, rp, &status)) return status;
    double adj = 0;
    if (x < f64_bits(0x0010000000000000ull)) {
      x *= 0x1p64;
      adj = -64;
    }
    const FullRows<Base>& c = rows(kRows);
    Parts<2> p = reduce(VD<2>(x), c);
    p.e += VD<2>(adj);
    *rp = core(p, c)[0];
    return kStatusOk;
  }
};

// ---- fast classes ------------------------------------------------------------------
//
// log_b(x) = (E' log_b(2) + T_R) + log_b(e) (r + r^2 (c2 + c3 r)), T_R =
// RN(-log_b(R/512)), c2 = -1/2, c3 = RN(1/3), log_b(2) and log_b(e) rounded
// to double. The truncation r^4/4 (relative r^3/4 <= 6.2e-10 at |r| = 1.35e-3)
// dominates; E' log_b(2) + T_R is 0 exactly near x = 1 (R = 512, E' = 0 and
// R = 1024, E' = 1: T_1024 = -log_b(2) rounded as the kernel's log_b(2)), and
// elsewhere at least log_b(1 + 1/1024) in magnitude, so its rounding (2^-53
// of |E' log_b(2)| <= 2^11) stays below 2^-42 relative.
template <class Base> struct FastRows : FlagRows, ReduceRows {
  Row<double> bias = row(kBias1022), le = row(f64_bits(Base::kE)), l2 = row(f64_bits(Base::k2)), c2 = row(-0.5),
              c3 = row(f64_bits(0x3fd5555555555555ull));
};

template <class Base> struct Fast : frame::Kernel {
  using sig = double(double);
  static constexpr bool has_callout = true;
  static constexpr FastRows<Base> kRows{};
  template <int L> static RAVL_INLINE VD<L> vec(VD<L> x) {
    using V = VD<L>;
    const FastRows<Base>& c = rows(kRows);
    Parts<L> p = reduce(x, c);
    V T = row8(Base::kFast, p);
    V r = p.r;
    V q = fma(r * r, fma(r, get<V>(c.c3), get<V>(c.c2)), r);
    V k;
    if constexpr (Base::k2 != 0) k = fma(p.e, get<V>(c.l2), T);
    else k = p.e + T;
    return fma(q, get<V>(c.le), k);
  }
  template <int L> static RAVL_INLINE Mask<double, L> special(VD<L> x, VD<L>) { return flag(x, rows(kRows)); }
  static RAVL_INLINE int scalar(const double* x, double* r) { return Full<Base>::scalar(x, r); }
};

// ---- the bases ---------------------------------------------------------------------

// log2: H = 1 (E' + a_R), G = 0; log2(e) = kLog2eHi + kLog2eLo.
struct Base2 {
  static constexpr const uint64_t *kFull = logd_tables::kLog2Full, *kFast = logd_tables::kLog2Fast;
  static constexpr uint64_t kCHi = 0, kCLo = 0, k2 = 0;
  static constexpr uint64_t kH = logtab::kLog2eHi, kL = logtab::kLog2eLo, kE = logtab::kLog2e;
};
// log10: log10(2) = kLog10_2Hi (42 significant bits) + kLog10_2Lo; log10(e) =
// kLog10eHi + kLog10eLo.
struct Base10 {
  static constexpr const uint64_t *kFull = logd_tables::kLog10Full, *kFast = logd_tables::kLog10Fast;
  static constexpr uint64_t kCHi = logtab::kLog10_2Hi, kCLo = logtab::kLog10_2Lo, k2 = logtab::kLog10_2;
  static constexpr uint64_t kH = logtab::kLog10eHi, kL = logtab::kLog10eLo, kE = logtab::kLog10e;
};

}  // namespace logd
}  // namespace ravl
