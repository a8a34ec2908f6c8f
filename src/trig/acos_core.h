// The arc sine and arc cosine kernel shared by acos, asin, acospi, asinpi
// and their single forms (acos.cpp, asin.cpp, acospi.cpp, asinpi.cpp).
//
// Every member folds its argument the same way. With a = -|x|:
//   z = (1 - |x|)/2 = 0.5 + 0.5 a   (one fused multiply-add; exact for |x| >= 1/2)
//   y = min(x^2, z) <= 1/4
// The inner region is x^2 < z (|x| < 1/2): there asin(x) = x (1 + Q(x^2)).
// The outer region is z <= x^2 (|x| >= 1/2; an unordered compare, so NaN lanes
// are outer too): there asin(|x|) = pi/2 - 2 asin(sqrt z) and acos(|x|) =
// 2 asin(sqrt z), with 2 asin(sqrt z) = s (1 + Q(z)), s = 2 sqrt(z) =
// sqrt(2 (1 - |x|)). Q(y) = y P(y) is the arc sine series asin(v)/v - 1 at
// v^2 = y, so every result is B + sigma t K (1 + Q(y)) with t = |x| or s, a
// base B (0, 1/2, 1, pi/2 or pi), a sign sigma and a scale K (1, or 1/pi for
// the pi-scaled forms). The families differ only in B, sigma and K.
//
// In acos's own assembly s comes from the single-precision reciprocal
// square root estimate e of z (relative error at most 1.5 * 2^-12), set to 0
// when z is tiny (|x| = 1, so that s = 0 and not infinity times 0), then one
// Newton-like step of high order: s0 = e (2z), D = e s0 - 2 = 2 (z e^2 - 1),
// s = s0 - (s0 D) R(D) with R(D) ~ (1 - (1 + D/2)^(-1/2))/D = 1/4 - 3/32 D +
// 5/128 D^2 - ... (z e^2 = 1 + D/2, so 2 sqrt(z) = s0 (1 + D/2)^(-1/2)),
// truncated to the terms each class needs. The other assemblies take s =
// 2 sqrt(z) from the hardware square root (correctly rounded; one
// instruction in place of the estimate, its conversions and the refinement,
// and a shorter dependency chain).
//
// Three assemblies:
// - acos_designed: acos's own order of operations (both acos classes):
//   result = B + (t' + t' Q), t' = +-t.
// - arc_full: the plain class of the other families and every scalar
//   routine: B and K in two parts, s with its correction s_lo =
//   (z - (s/2)^2)/sqrt(z), and the last addition in two parts (Fast2Sum),
//   so that the only large rounding is the final one.
// - arc_fast: the _native class of the other families: result =
//   B + t' K (1 + Q) in one or two roundings.
// The odd families (asin, asinpi) work on |x| and give the result the sign
// of x at the end, so they are odd bit for bit and keep the sign of zero.
#pragma once

#include "frame/entry.h"
#include "tables/acos.h"

namespace ravl {
namespace arc {

using frame::CondT;

// What distinguishes the families: K = 1 (radians) or 1/pi (pi-scaled), and
// whether the family is odd (asin, asinpi) or has acos's bases (acos, acospi).
enum Kind { kAcos, kAsin, kAcospi, kAsinpi };
constexpr bool odd(Kind k) { return k == kAsin || k == kAsinpi; }
constexpr bool scaled(Kind k) { return k == kAcospi || k == kAsinpi; }

// The constant rows of one member: the fold, NR refinement terms (acos's
// double classes; 0 for the members on the hardware square root), NP series
// coefficients and the family's K and bases (each as high and low part):
// b_in in the inner region, b_pos and b_neg in the outer region for x > 0
// and x < 0.
template <class T, int NR, int NP> struct Rows {
  using U = typename Bits<T>::U;
  static constexpr int nr = NR, np = NP;
  Row<U> sign;
  Row<T> half, neg_one, two, tiny;
  Row<T> r[NR > 0 ? NR : 1];
  Row<T> p[NP];
  Row<T> k_hi, k_lo, b_in_hi, b_in_lo, b_pos_hi, b_pos_lo, b_neg_hi, b_neg_lo;
  Row<T> post;  // 1/pre: the scale of the result (arc_full of asinpi)
};

// A family's K and bases, (hi, lo) pairs.
template <class T> struct Shape {
  T k_hi, k_lo, b_in_hi, b_in_lo, b_pos_hi, b_pos_lo, b_neg_hi, b_neg_lo;
};

// tiny: below it z is taken as 0 (only |x| = 1 has such a z). pre, a power
// of two, scales K and the bases (exactly), post = 1/pre the result.
template <class T, int NR, int NP>
constexpr Rows<T, NR, NP> make_rows(T tiny, const T* r, const T (&p)[NP], Shape<T> sh, T pre = 1) {
  using U = typename Bits<T>::U;
  Rows<T, NR, NP> c{};
  c.sign = row((U)((U)1 << (8 * sizeof(T) - 1)));
  c.half = row((T)0.5);
  c.neg_one = row((T)-1);
  c.two = row((T)2);
  c.tiny = row(tiny);
  for (int i = 0; i < NR; ++i) c.r[i] = row(r[i]);
  for (int i = 0; i < NP; ++i) c.p[i] = row(p[i]);
  c.k_hi = row(sh.k_hi * pre), c.k_lo = row(sh.k_lo * pre);
  c.b_in_hi = row(sh.b_in_hi * pre), c.b_in_lo = row(sh.b_in_lo * pre);
  c.b_pos_hi = row(sh.b_pos_hi * pre), c.b_pos_lo = row(sh.b_pos_lo * pre);
  c.b_neg_hi = row(sh.b_neg_hi * pre), c.b_neg_lo = row(sh.b_neg_lo * pre);
  c.post = row(1 / pre);
  return c;
}

// ---- constants ----------------------------------------------------------------

constexpr double kPio2Hi = f64_bits(0x3ff921fb54442d18ull);  // pi/2 = 1.5707963267948966
constexpr double kPio2Lo = f64_bits(0x3c91a62633145c07ull);  // pi/2 - kPio2Hi = 6.123233995736766e-17
constexpr double kPiHi = f64_bits(0x400921fb54442d18ull);    // pi = 3.1415926535897931
constexpr double kPiLo = f64_bits(0x3ca1a62633145c07ull);    // pi - kPiHi = 1.2246467991473532e-16
constexpr double kInvPiHi = f64_bits(0x3fd45f306dc9c883ull);  // 1/pi = 0.31830988618379069
constexpr double kInvPiLo = f64_bits(0xbc76b01ec5417056ull);  // 1/pi - kInvPiHi = -1.9678676675182486e-17
constexpr float kPio2Hif = f32_bits(0x3fc90fdbu);   // pi/2 = 1.57079637
constexpr float kPio2Lof = f32_bits(0xb33bbd2eu);   // pi/2 - kPio2Hif = -4.37113883e-08
constexpr float kPiHif = f32_bits(0x40490fdbu);     // pi = 3.14159274
constexpr float kPiLof = f32_bits(0xb3bbbd2eu);     // pi - kPiHif = -8.74227766e-08
constexpr float kInvPiHif = f32_bits(0x3ea2f983u);  // 1/pi = 0.318309873
constexpr float kInvPiLof = f32_bits(0x325c9c88u);  // 1/pi - kInvPiHif = 1.28412765e-08

// z below 2^-255 (0x3000000000000000) is 0: the estimate is replaced by 0.
// For singles the smallest nonzero z is 2^-25; 2^-100 (0x0d800000) separates.
constexpr double kTiny = f64_bits(0x3000000000000000ull);
constexpr float kTinyf = f32_bits(0x0d800000u);

// The refinement R(D) of acos's double classes, four terms (plain) and two
// (_native).
constexpr double kR4[] = {
    0.24999999999999725,       // r0, 0x3fcfffffffffff9d
    -0.09374999999999499,      // r1, 0xbfb7fffffffffe97
    0.039062512973409326,      // r2, 0x3fa400006f70d42d
    -0.017089852669219818};    // r3, 0xbf918000993b24c3
constexpr double kR2[] = {kR4[0], kR4[1]};

// The arc sine series P(y), y <= 1/4, double plain (degree 11) and
// _native (degree 5).
constexpr double kP12[] = {
    0.16666666666664731,       // p0, 0x3fc555555555529c
    0.075000000004254969,      // p1, 0x3fb333333337e0de
    0.044642856775805428,      // p2, 0x3fa6db6db3b445f8
    0.030381960865917483,      // p3, 0x3f9f1c72e13ad8be
    0.022371723076271322,      // p4, 0x3f96e89cebdefadd
    0.017360165087820061,      // p5, 0x3f91c6dcf538ad2e
    0.013881175183171264,      // p6, 0x3f8c6dbbcb88bd57
    0.012193412839768863,      // p7, 0x3f88f8dc2afccad6
    0.0064317717599562023,     // p8, 0x3f7a583395d45ed5
    0.019772600367158048,      // p9, 0x3f943f44bfbc3bae
    -0.016582846167623556,     // p10, 0xbf90fb17f7dbb0ed
    0.032143616007816851};     // p11, 0x3fa07520c70eb909
constexpr double kP6[] = {
    0.16666656768980395,       // p0, 0x3fc5555480c83a45
    0.075006122693918847,      // p1, 0x3fb33399ebf85b6a
    0.044501696981026712,      // p2, 0x3fa6c8ed2a4cce54
    0.031911494806822795,      // p3, 0x3fa056b4151fa155
    0.014101564261929104,      // p4, 0x3f8ce147ea9e9282
    0.037936060488222831};     // p5, 0x3fa36c5af645a11e
// Single plain: the degree-5 coefficients above rounded to single (the
// series' error y |P - P6f| at most 8.0e-10 = 2^-30.2 on [0, 1/4]).
constexpr float kP6f[] = {f32_bits(0x3e2aaaa4u), f32_bits(0x3d999ccfu), f32_bits(0x3d364769u),
                          f32_bits(0x3d02b5a1u), f32_bits(0x3c670a3fu), f32_bits(0x3d1b62d8u)};
// Single _native: degree 3, the minimax fit of tables/acos.h in the
// relative error of asin, weighted by the amplification of asin's outer
// region (pi/2 - w is half of w at |x| = 1/2): the weighted error below
// 2^-23 (the interpolant at the Chebyshev nodes this replaces left 2^-21).
constexpr float kP4f[] = {f32_bits(acos_tables::kAsinFastF[0]), f32_bits(acos_tables::kAsinFastF[1]),
                          f32_bits(acos_tables::kAsinFastF[2]), f32_bits(acos_tables::kAsinFastF[3])};

// The bases of each family.
constexpr Shape<double> kAcosShape{1, 0, kPio2Hi, kPio2Lo, 0, 0, kPiHi, kPiLo};
constexpr Shape<double> kAsinShape{1, 0, 0, 0, kPio2Hi, kPio2Lo, kPio2Hi, kPio2Lo};
constexpr Shape<double> kAcospiShape{kInvPiHi, kInvPiLo, 0.5, 0, 0, 0, 1, 0};
constexpr Shape<double> kAsinpiShape{kInvPiHi, kInvPiLo, 0, 0, 0.5, 0, 0.5, 0};
constexpr Shape<float> kAcosShapef{1, 0, kPio2Hif, kPio2Lof, 0, 0, kPiHif, kPiLof};
constexpr Shape<float> kAsinShapef{1, 0, 0, 0, kPio2Hif, kPio2Lof, kPio2Hif, kPio2Lof};
constexpr Shape<float> kAcospiShapef{kInvPiHif, kInvPiLof, 0.5f, 0, 0, 0, 1, 0};
constexpr Shape<float> kAsinpiShapef{kInvPiHif, kInvPiLof, 0, 0, 0.5f, 0, 0.5f, 0};

// ---- the fold, the square root and the series ---------------------------------------

template <class V> struct Fold {
  V a;            // -|x|
  V z;            // (1 - |x|)/2
  V y;            // min(x^2, z)
  MaskOf<V> outer;  // z <= x^2 or NaN
};

template <class V, class C> RAVL_INLINE Fold<V> fold(V x, const C& c) {
  using U = UIntOf<V>;
  Fold<V> f;
  f.a = as_float<V>(as_uint(x) | get<U>(c.sign));
  f.z = fma(get<V>(c.half), f.a, get<V>(c.half));
  V w = f.a * f.a;
  f.y = hw_min(w, f.z);
  f.outer = ~(f.y < f.z);
  return f;
}

// The reciprocal square root estimate of z, 0 where z is tiny.
template <class V, class C> RAVL_INLINE V rsqrt_estimate(V z, const C& c) {
  V e;
  if constexpr (__is_same(LaneOf<V>, double)) e = convert<double>(rsqrt_approx(convert<float>(z)));
  else e = rsqrt_approx(z);
  return as_float<V>(as_uint(e) & ~as_uint(as_float<V>(z < get<V>(c.tiny))));
}

// s = 2 sqrt(z) from the estimate e (acos's double classes).
template <class V, class C> RAVL_INLINE V two_sqrt(V z, V e, const C& c) {
  static_assert(C::nr == 4 || C::nr == 2, "acos's refinement has four or two terms");
  V s0 = e * (z + z);
  V d = fms(e, s0, get<V>(c.two));
  V r;
  if constexpr (C::nr == 4)
    r = fma(d, fma(d, fma(d, get<V>(c.r[3]), get<V>(c.r[2])), get<V>(c.r[1])), get<V>(c.r[0]));
  else r = fma(d, get<V>(c.r[1]), get<V>(c.r[0]));
  return fnma(s0 * d, r, s0);
}

// Q = y P(y): pairs p_2k + p_2k+1 y, combined by powers of y^2 and y^4.
template <class V, class C> RAVL_INLINE V series(V y, const C& c) {
  auto q = [&](int k) { return fma(get<V>(c.p[2 * k + 1]), y, get<V>(c.p[2 * k])); };
  V y2 = y * y;
  V p;
  if constexpr (C::np == 12) {
    V y4 = y2 * y2;
    V r0 = fma(q(1), y2, q(0)), r1 = fma(q(3), y2, q(2)), r2 = fma(q(5), y2, q(4));
    p = fma(fma(r2, y4, r1), y4, r0);
  } else if constexpr (C::np == 6) {
    p = fma(fma(q(2), y2, q(1)), y2, q(0));
  } else {
    p = fma(q(1), y2, q(0));
  }
  return y * p;
}

// ---- the three assemblies ------------------------------------------------------------

// acos, both classes: t = s (outer) or -|x| (inner), t' = t with the sign
// flipped for negative x; base pi/2 (inner), pi (outer, x < y, that is x
// negative) or 0; result = base + (t' + t' Q).
template <class V, class C> RAVL_INLINE V acos_designed(V x, const C& c) {
  using U = UIntOf<V>;
  Fold<V> f = fold(x, c);
  V s = two_sqrt(f.z, rsqrt_estimate(f.z, c), c);
  V t = select(f.outer, s, f.a);
  // The series waits for t (an empty asm that may change t as far as the
  // compiler knows), so that the square root's temporaries are dead before
  // the series' pairs are live: one saved register fewer in each class on
  // either ABI (none left in the _native class on Linux), two fewer in the
  // plain class on Linux. Code shape only: the same operations on the same
  // values.
  __asm__("" : "+x"(t));
  V q = series(f.y, c);
  V tt = as_float<V>(as_uint(t) ^ (as_uint(x) & get<U>(c.sign)));
  V base = select(f.outer, select(x < f.y, get<V>(c.b_neg_hi), get<V>(c.b_pos_hi)), get<V>(c.b_in_hi));
  return base + fma(tt, q, tt);
}

// |x| through the sign row (one and-not with a memory operand).
template <class V, class C> RAVL_INLINE V abs_of(V x, const C& c) {
  return as_float<V>(as_uint(x) & ~get<UIntOf<V>>(c.sign));
}

// The sign flip of the term and the bases of a lane (hi, lo).
template <Kind kK, class V, class C>
RAVL_INLINE UIntOf<V> flip_of(V x, const Fold<V>& f, const C& c) {
  using U = UIntOf<V>;
  // Odd families: -t in the outer region (pi/2 - ..., 1/2 - ...); the sign
  // of x comes at the end. acos and acospi: -x in the inner region
  // (B - x ...), s with the sign of x in the outer one.
  if constexpr (odd(kK)) return as_uint(as_float<V>(f.outer)) & get<U>(c.sign);
  else return (as_uint(x) ^ ~as_uint(as_float<V>(f.outer))) & get<U>(c.sign);
}
template <Kind kK, class V, class C>
RAVL_INLINE void bases(V x, const Fold<V>& f, const C& c, V& hi, V& lo) {
  if constexpr (odd(kK)) {
    hi = select(f.outer, get<V>(c.b_pos_hi), get<V>(c.b_in_hi));
    lo = select(f.outer, get<V>(c.b_pos_lo), get<V>(c.b_in_lo));
  } else {
    MaskOf<V> neg = x < f.y;  // in the outer region: x negative
    hi = select(f.outer, select(neg, get<V>(c.b_neg_hi), get<V>(c.b_pos_hi)), get<V>(c.b_in_hi));
    lo = select(f.outer, select(neg, get<V>(c.b_neg_lo), get<V>(c.b_pos_lo)), get<V>(c.b_in_lo));
  }
}
template <Kind kK, class V, class C> RAVL_INLINE V odd_sign(V r, V x, const C& c) {
  if constexpr (odd(kK)) return as_float<V>(as_uint(r) ^ (as_uint(x) & get<UIntOf<V>>(c.sign)));
  else return r;
}

// Plain class. With t = |x| (inner) or s (outer) and t_lo = 0 or s_lo:
//   p + m = t K (1 + Q) + t_lo K, p = RN(t K_hi), m small (|m| <= 0.06 |p|);
//   h + e = B_hi + sigma p exactly (Fast2Sum: |B_hi| >= |p| wherever B_hi != 0);
//   result = h + (e + (sigma m + B_lo)).
template <Kind kK, class V, class C> RAVL_INLINE V arc_full(V x, const C& c) {
  Fold<V> f = fold(x, c);
  // s = 2 hs, hs = sqrt(z) correctly rounded (the hardware square root);
  // s_lo = 2 (sqrt(z) - hs) = (z - hs^2) / sqrt(z) to first order: the
  // residual is exact in one fused multiply-add, 1/sqrt(z) the estimate
  // (2^-11 relative error on a term 2^-52 below s), computed beside the
  // square root rather than after it.
  V hs = sqrt_hw(f.z);
  V s = hs + hs;
  V q = series(f.y, c);
  if constexpr (kK == kAsin) {
    // asin: B = 0 (inner) or pi/2 (outer) as and-masks of the rows, the
    // term taken negative in the outer region from the start (-s, and -s_lo
    // from the negated residual, exact): the bits of the general assembly
    // below with no sign flips of the products.
    using U = UIntOf<V>;
    U om = as_uint(as_float<V>(f.outer));
    V tp = select(f.outer, as_float<V>(as_uint(s) ^ get<U>(c.sign)), abs_of(x, c));
    V tlp = as_float<V>(as_uint(fms(hs, hs, f.z) * rsqrt_estimate(f.z, c)) & om);
    V mp = fma(tp, q, tlp);
    V b_hi = as_float<V>(as_uint(get<V>(c.b_pos_hi)) & om), b_lo = as_float<V>(as_uint(get<V>(c.b_pos_lo)) & om);
    V h = b_hi + tp;
    V err = (b_hi - h) + tp;
    return odd_sign<kK>(h + (err + (mp + b_lo)), x, c);
  }
  V s_lo = fnma(hs, hs, f.z) * rsqrt_estimate(f.z, c);
  V t = select(f.outer, s, abs_of(x, c));
  V t_lo = as_float<V>(as_uint(s_lo) & as_uint(as_float<V>(f.outer)));
  V p, m;
  if constexpr (scaled(kK)) {
    p = t * get<V>(c.k_hi);
    V p_lo = fms(t, get<V>(c.k_hi), p);
    V g = fma(get<V>(c.k_hi), q, get<V>(c.k_lo));
    m = fma(t, g, fma(t_lo, get<V>(c.k_hi), p_lo));
  } else {
    p = t;
    m = fma(t, q, t_lo);
  }
  UIntOf<V> flip = flip_of<kK>(x, f, c);
  V ps = as_float<V>(as_uint(p) ^ flip), ms = as_float<V>(as_uint(m) ^ flip);
  V b_hi, b_lo;
  bases<kK>(x, f, c, b_hi, b_lo);
  V h = b_hi + ps;
  V err = (b_hi - h) + ps;
  V r = h + (err + (ms + b_lo));
  // asinpi(x) ~ x/pi is denormal for |x| below about 2^-1020: its rows
  // carry K and B times 2^64 (2^32 for singles), so that p_lo and m keep
  // their bits, and the one multiplication by 2^-64 here rounds to the
  // denormal grid (within 0.5 ulp plus 2^-50 of an ulp).
  if constexpr (kK == kAsinpi) r = r * get<V>(c.post);
  return odd_sign<kK>(r, x, c);
}

// _native class: result = B_hi + t' K (1 + Q), t' = sigma t.
template <Kind kK, class V, class C> RAVL_INLINE V arc_fast(V x, const C& c) {
  Fold<V> f = fold(x, c);
  V hs = sqrt_hw(f.z);
  V s = hs + hs;  // 2 sqrt(z), correctly rounded
  V q = series(f.y, c);
  V t = select(f.outer, s, abs_of(x, c));
  if constexpr (kK == kAsin) {
    // |asin x| = w = t (1 + Q) inner, pi/2 - w outer: the bits of B + (-w)
    // with one subtraction in place of the sign flip and the base select.
    V w = fma(t, q, t);
    return odd_sign<kK>(select(f.outer, get<V>(c.b_pos_hi) - w, w), x, c);
  }
  V tt = as_float<V>(as_uint(t) ^ flip_of<kK>(x, f, c));
  V b_hi, b_lo;
  bases<kK>(x, f, c, b_hi, b_lo);
  V r;
  if constexpr (scaled(kK)) r = fma(tt, fma(get<V>(c.k_hi), q, get<V>(c.k_hi)), b_hi);
  else r = b_hi + fma(tt, q, tt);
  return odd_sign<kK>(r, x, c);
}

// ---- lane test and scalar routine ----------------------------------------------------

// Lanes with -|x| not >= -1 (unordered): |x| > 1 and NaN. +-1 stay.
template <class V, class C> RAVL_INLINE MaskOf<V> outside(V x, const C& c) {
  V a = as_float<V>(as_uint(x) | get<UIntOf<V>>(c.sign));
  return ~(a >= get<V>(c.neg_one));
}

// The scalar routine of a family: NaN -> NaN (status 0), +-infinity and
// |x| > 1 -> NaN with the invalid flag (status 1); acos(1) = +0, acos(-1) =
// pi rounded; every other |x| <= 1 through the plain assembly with the
// family's bases, on the argument broadcast to a 128-bit register (B + t K
// (1 + Q) with B, K in two parts and the sum kept in two parts until the
// final rounding).
template <Kind kK, class T, const auto& kRows> RAVL_INLINE int arc_scalar(const T* xp, T* rp) {
  const T x = *xp;
  if (x != x) {
    *rp = x / x;
    return kStatusOk;
  }
  if (x == (T)__builtin_inf() || x == -(T)__builtin_inf()) {
    *rp = opaque(x) / x;
    return kStatusDomain;
  }
  if (x > (T)1 || x < (T)-1) {
    T d = opaque(x) - x;
    d = d / d;
    // The odd families' NaN takes the sign of x, so that f(-x) = -f(x) bit
    // for bit at every x.
    if constexpr (odd(kK)) d = __builtin_copysign(d, x);
    *rp = d;
    return kStatusDomain;
  }
  if constexpr (kK == kAcos) {
    if (x == (T)1) {
      *rp = 0;
      return kStatusOk;
    }
    if (x == (T)-1) {
      *rp = opaque(kRows.b_neg_hi.v[0]) + kRows.b_neg_lo.v[0];
      return kStatusOk;
    }
  }
  using V = Vec<T, 16 / sizeof(T)>;
  *rp = arc_full<kK>(V(x), kRows)[0];
  return kStatusOk;
}

// A member: the lane test above, the scalar routine Scalar and the vector
// path Eval::run on the rows kRows.
template <class T, const auto& kRows, class Eval, int (*Scalar)(const T*, T*)> struct Kernel : frame::Kernel {
  using sig = T(T);
  static constexpr bool has_callout = true;
  template <int L> static RAVL_INLINE Vec<T, L> vec(Vec<T, L> x) { return Eval::run(x, rows(kRows)); }
  template <int L> static RAVL_INLINE Mask<T, L> special(Vec<T, L> x, Vec<T, L>) { return outside(x, rows(kRows)); }
  static RAVL_INLINE int scalar(const T* x, T* r) { return Scalar(x, r); }
};
struct Designed {
  template <class V, class C> static RAVL_INLINE V run(V x, const C& c) { return acos_designed(x, c); }
};
template <Kind kK> struct Full {
  template <class V, class C> static RAVL_INLINE V run(V x, const C& c) { return arc_full<kK>(x, c); }
};
template <Kind kK> struct Fast {
  template <class V, class C> static RAVL_INLINE V run(V x, const C& c) { return arc_fast<kK>(x, c); }
};

// ---- the members of a family ---------------------------------------------------------

template <Kind kK> constexpr Shape<double> kShape =
    kK == kAcos ? kAcosShape : kK == kAsin ? kAsinShape : kK == kAcospi ? kAcospiShape : kAsinpiShape;
template <Kind kK> constexpr Shape<float> kShapef =
    kK == kAcos ? kAcosShapef : kK == kAsin ? kAsinShapef : kK == kAcospi ? kAcospiShapef : kAsinpiShapef;

// Every class of a family and its single form: double plain (degree-11
// series), double _native (degree 5), single plain (degree 5), single
// _native (degree 3). acos's double classes use acos_designed (its square
// root refined with four and two terms); the other members arc_full (plain)
// and arc_fast (_native) on the hardware square root. One scalar routine per
// precision, on the plain rows.
template <Kind kK> struct Family {
  static constexpr int kNr = kK == kAcos ? 4 : 0, kNrFast = kK == kAcos ? 2 : 0;
  static constexpr Rows<double, kNr, 12> kFull =
      make_rows<double, kNr>(kTiny, kR4, kP12, kShape<kK>, kK == kAsinpi ? 0x1p64 : 1.0);
  static constexpr Rows<double, kNrFast, 6> kFast = make_rows<double, kNrFast>(kTiny, kR2, kP6, kShape<kK>);
  static constexpr Rows<float, 0, 6> kFullf =
      make_rows<float, 0>(kTinyf, nullptr, kP6f, kShapef<kK>, kK == kAsinpi ? 0x1p32f : 1.0f);
  static constexpr Rows<float, 0, 4> kFastf = make_rows<float, 0>(kTinyf, nullptr, kP4f, kShapef<kK>);
  static int scalar(const double* x, double* r) { return arc_scalar<kK, double, kFull>(x, r); }
  static int scalarf(const float* x, float* r) { return arc_scalar<kK, float, kFullf>(x, r); }
  using DFull = typename CondT<kK == kAcos, Designed, Full<kK>>::type;
  using DFast = typename CondT<kK == kAcos, Designed, Fast<kK>>::type;
  using full = Kernel<double, kFull, DFull, scalar>;
  using fast = Kernel<double, kFast, DFast, scalar>;
  using fullf = Kernel<float, kFullf, Full<kK>, scalarf>;
  using fastf = Kernel<float, kFastf, Fast<kK>, scalarf>;
};

}  // namespace arc
}  // namespace ravl
