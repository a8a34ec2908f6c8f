// The reduction shared by the cube root (cbrt.cpp) and its reciprocal
// (rcbrt.cpp), double and single, and their scalar routines' scaling.
//
// A normal x (either sign) is s 2^(e - bias) m with m in [1, 2). With
// q = e div 3 and rm = e - 3q (for singles, of e + 2: 127 = 3 * 43 - 2),
//   cbrt(x)  = S * cbrt(2^rm m),     S = s 2^(q - 341)  (single: 2^(q - 43)),
//   rcbrt(x) = S * cbrt(2^rm m)^-1,  S = s 2^(341 - q)  (single: 2^(43 - q)).
// q is (e * 0x1556) >> 14, which is e div 3 for every e below 2048
// (0x1556 / 2^14 exceeds 1/3 by 4.1e-5, so the error stays below 1/3 of a
// unit up to e = 2047). S is built in the sign-and-exponent field: its sign
// bit plus 0x2aa + q (0x2aa = 1023 - 341), or 0x554 - q (1023 + 341); for
// singles 0x54 + q (127 - 43) or 0xaa - q (127 + 43).
// With c_j = 1 + j/32 + 1/64 for the top five fraction bits j of m,
// u = (m - c_j)/c_j = (c_j - m) * (-1/c_j) and |u| <= 1/65; m = c_j (1 + u),
// so the root is T (1 + u)^(+-1/3) with T = (2^rm c_j)^(+-1/3) = hi + lo
// from the table, and with A = hi S, B = lo S and P(u) ~ ((1 + u)^(+-1/3) - 1)/u
// the result is (P (A u) + B) + A.
//
// -m and -c_j are formed by bit operations: m's fraction (or its top six
// bits, whose sixth is c_j's 1/64 already) under the sign and exponent of
// -1 (0xbff0000000000000) or of -1.015625 (0xbff0400000000000); c_j - m is
// then exact (Sterbenz).
//
// The lane test flags x that is not a normal finite number (zeros,
// subnormals, infinities, NaN; negative normal numbers stay on the vector
// path): the upper word of |x| minus 0x80100000 above 0xffdfffff as signed
// 32-bit integers, here on the whole 64-bit pattern.
#pragma once

#include "pow_root/roots.h"
#include "tables/cbrt.h"

namespace ravl {
namespace cbrt_core {

// The sign-and-exponent field's bases of the scale.
constexpr uint64_t kCbrtBase = 0x2aa, kRcbrtBase = 0x554;
constexpr uint32_t kCbrtBasef = 0x54, kRcbrtBasef = 0xaa;

// ---- double ---------------------------------------------------------------------

template <uint64_t kBase> struct ReduceRows {
  Row<uint64_t> abs = row<uint64_t>(0x7fffffffffffffffull);
  // |x| bits + 0x7ff0000000000000 (- 0x8010000000000000 modulo 2^64) above
  // 0xffdfffffffffffff: not normal and finite.
  Row<uint64_t> test_offset = row<uint64_t>(0x7ff0000000000000ull), test_top = row<uint64_t>(0xffdfffffffffffffull);
  Row<uint64_t> exp11 = row<uint64_t>(0x7ff), div3 = row<uint64_t>(0x1556), j31 = row<uint64_t>(31),
                base = row<uint64_t>(kBase);
  Row<uint64_t> frac = row<uint64_t>(0x000fffffffffffffull), frac6 = row<uint64_t>(0x000fc00000000000ull);
  Row<uint64_t> neg_one = row<uint64_t>(0xbff0000000000000ull), neg_c0 = row<uint64_t>(0xbff0400000000000ull);
};

// u, A = hi S and B = lo S of a normal x (either sign); kRecip selects the
// reciprocal's scale and table.
template <bool kRecip, int L, class R>
RAVL_INLINE void reduce(Vec<double, L> x, const R& c, Vec<double, L>& u, Vec<double, L>& a, Vec<double, L>& b) {
  using V = Vec<double, L>;
  using U = Vec<uint64_t, L>;
  using I = Vec<int64_t, L>;
  const U xb = as_uint(x);
  const U top = xb >> 52;  // sign and exponent
  const U e = top & get<U>(c.exp11);
  const U q = mul_u32(e, get<U>(c.div3)) >> 14;  // e div 3
  const U rm = e - (q + q + q);
  const U j = (xb >> 47) & get<U>(c.j31);
  const U field = (top - e) + get<U>(c.base);  // sign bit (0x800) plus the base
  const V s = as_float<V>((kRecip ? field - q : field + q) << 52);
  const V neg_m = as_float<V>((xb & get<U>(c.frac)) | get<U>(c.neg_one));
  const V neg_c = as_float<V>((xb & get<U>(c.frac6)) | get<U>(c.neg_c0));
  const V r = gather(reinterpret_cast<const double*>(cbrt_tables::kNegRecip), bitcast<I>(j));
  u = (neg_m - neg_c) * r;
  V hi, lo;
  const uint64_t* pairs = kRecip ? cbrt_tables::kRcbrtPairs : cbrt_tables::kCbrtPairs;
  gather_pairs<16>(reinterpret_cast<const double*>(pairs), bitcast<I>((rm << 5) | j), hi, lo);
  a = hi * s;
  b = lo * s;
}

template <int L, class R> RAVL_INLINE Mask<double, L> not_normal(Vec<double, L> x, const R& c) {
  using I = Vec<int64_t, L>;
  return (as_int(x) & get<I>(c.abs)) + get<I>(c.test_offset) > get<I>(c.test_top);
}

// ---- single ---------------------------------------------------------------------

template <uint32_t kBase> struct ReduceRowsf {
  Row<uint32_t> abs = row<uint32_t>(0x7fffffffu);
  // |x| bits + 0x7f800000 above 0xfeffffff: not normal and finite.
  Row<uint32_t> test_offset = row<uint32_t>(0x7f800000u), test_top = row<uint32_t>(0xfeffffffu);
  Row<uint32_t> exp8 = row<uint32_t>(0xff), two = row<uint32_t>(2), three = row<uint32_t>(3), div3 = row<uint32_t>(0x1556),
                j31 = row<uint32_t>(31), base = row<uint32_t>(kBase);
  Row<uint32_t> frac = row<uint32_t>(0x007fffffu), frac6 = row<uint32_t>(0x007e0000u);
  Row<uint32_t> neg_one = row<uint32_t>(0xbf800000u), neg_c0 = row<uint32_t>(0xbf820000u);
  Row<float> one = row(1.0f);
};

template <bool kRecip, int L, class R>
RAVL_INLINE void reduce(Vec<float, L> x, const R& c, Vec<float, L>& u, Vec<float, L>& a, Vec<float, L>& b) {
  using V = Vec<float, L>;
  using U = Vec<uint32_t, L>;
  using I = Vec<int32_t, L>;
  const U xb = as_uint(x);
  const U top = xb >> 23;  // sign and exponent
  const U e = top & get<U>(c.exp8);
  const U t = e + get<U>(c.two);
  const U q = mul_u15(t, get<U>(c.div3)) >> 14;  // (e + 2) div 3
  const U rm = t - mul_u15(q, get<U>(c.three));  // (q + q + q would become a two-instruction vpmulld)
  const U j = (xb >> 18) & get<U>(c.j31);
  const U field = (top - e) + get<U>(c.base);  // sign bit (0x100) plus the base
  const V s = as_float<V>((kRecip ? field - q : field + q) << 23);
  const V neg_m = as_float<V>((xb & get<U>(c.frac)) | get<U>(c.neg_one));
  const V neg_c = as_float<V>((xb & get<U>(c.frac6)) | get<U>(c.neg_c0));
  // -1/c_j rounded once: the division gives the bits a table of RN(-1/c_j)
  // would hold, without eight loads and their inserts.
  const V r = get<V>(c.one) / neg_c;
  u = (neg_m - neg_c) * r;
  V hi, lo;
  const uint32_t* pairs = kRecip ? cbrt_tables::kRcbrtPairsf : cbrt_tables::kCbrtPairsf;
  gather_pairs<8>(reinterpret_cast<const float*>(pairs), bitcast<I>((rm << 5) | j), hi, lo);
  a = hi * s;
  b = lo * s;
}

template <int L, class R> RAVL_INLINE Mask<float, L> not_normal(Vec<float, L> x, const R& c) {
  using I = Vec<int32_t, L>;
  return (as_int(x) & get<I>(c.abs)) + get<I>(c.test_offset) > get<I>(c.test_top);
}

// ---- kernels ----------------------------------------------------------------------
//
// Rows: a ReduceRows with the polynomial's coefficients p0 (constant term)
// up to pN, read by Poly::eval. The lane test and the scalar routine are
// shared by the classes of one family.
template <class T, const auto& kRows, bool kRecip, class Poly, auto Scalar> struct RootKernel : frame::Kernel {
  using sig = T(T);
  static constexpr bool has_callout = true;
  template <int L> static RAVL_INLINE Vec<T, L> vec(Vec<T, L> x) {
    using V = Vec<T, L>;
    const auto& c = rows(kRows);
    V u, a, b;
    reduce<kRecip>(x, c, u, a, b);
    return fma(Poly::template eval<V>(u, c), a * u, b) + a;
  }
  template <int L> static RAVL_INLINE Mask<T, L> special(Vec<T, L> x, Vec<T, L>) { return not_normal(x, kRows); }
  static RAVL_INLINE int scalar(const T* x, T* r) { return Scalar(x, r); }
};

// Horner's rule with fused multiply-adds over the rows' p<N>...p0.
struct Poly7 {
  template <class V, class R> static RAVL_INLINE V eval(V u, const R& c) {
    V p = fma(get<V>(c.p7), u, get<V>(c.p6));
    p = fma(p, u, get<V>(c.p5));
    p = fma(p, u, get<V>(c.p4));
    p = fma(p, u, get<V>(c.p3));
    p = fma(p, u, get<V>(c.p2));
    p = fma(p, u, get<V>(c.p1));
    return fma(p, u, get<V>(c.p0));
  }
};
struct Poly3 {
  template <class V, class R> static RAVL_INLINE V eval(V u, const R& c) {
    return fma(fma(fma(get<V>(c.p3), u, get<V>(c.p2)), u, get<V>(c.p1)), u, get<V>(c.p0));
  }
};
struct Poly2 {
  template <class V, class R> static RAVL_INLINE V eval(V u, const R& c) {
    return fma(fma(get<V>(c.p2), u, get<V>(c.p1)), u, get<V>(c.p0));
  }
};
struct Poly0 {
  template <class V, class R> static RAVL_INLINE V eval(V, const R& c) { return get<V>(c.p0); }
};

// The scalar routines' common part: +-inf and NaN give inf_nan(x), +-0 give
// zero(x) with zero_status; a subnormal x is scaled by 2^kScaleUp into the
// normal range (exactly), the full class's arithmetic applied and its
// result scaled by 2^kScaleBack (exactly: the result is normal).
template <class Full, int kScaleUp, int kScaleBack, class T, class InfNan, class Zero>
RAVL_INLINE int root_scalar(const T* xp, T* rp, InfNan inf_nan, Zero zero, int zero_status) {
  const T x = *xp;
  const T inf = f64_bits(0x7ff0000000000000ull);
  if (!(x == x) || x == inf || x == -inf) {
    *rp = inf_nan(x);
    return kStatusOk;
  }
  if (x == T(0)) {
    *rp = zero(x);
    return zero_status;
  }
  if constexpr (sizeof(T) == 8)
    *rp = roots::one_lane<Full>(x * roots::pow2d(kScaleUp)) * roots::pow2d(kScaleBack);
  else
    *rp = roots::one_lane<Full>(x * roots::pow2f(kScaleUp)) * roots::pow2f(kScaleBack);
  return kStatusOk;
}

}  // namespace cbrt_core
}  // namespace ravl
