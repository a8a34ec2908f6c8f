// What the pi-scaled sine, cosine and tangent (sinpi.cpp, cospi.cpp,
// tanpi.cpp; double and single lanes) share: the exact reduction by half
// turns and the kernels of sin(pi r) and cos(pi r) on |r| <= 1/4.
//
// Reduction, on a = |x| (every family is odd or even, so its sign is put
// back last). Every a >= 2^53 (2^24 for singles) is an even integer, taken
// as 2^53 (2^24): ac = min(a, that), NaN kept. Then n = round(2 ac) and
// r = ac - n/2, exact, |r| <= 1/4 (2 ac is exact; below 2^52 r is a multiple
// of ac's ulp, above it ac is an integer and r = 0): x = sign (n/2 + r) with
// no error at all, and no multiplication by pi before the reduction. The
// quadrant n mod 4 comes apart from r's path: k = round(ac/2), y = ac - 2k
// in [-1, 1] (exact), t = 2y + shifter (1.5 * 2^52, or 1.5 * 2^23) holds
// round(2y) = n - 4k in its low bits. Infinities and NaN: the result is
// OR-ed with the bits of a - a (+0 for finite a, NaN otherwise), so both come
// out of every family as NaN with no test.
//
// Kernels (coefficients fitted in tools/tablegen_sinpi.cpp, tables/sinpi.h):
//   full  sin(pi r) = sh + sl: sh = RN(r pi_hi), sl = (r pi_hi - sh) (exact, one
//         fms) + r (pi_lo + w P(w)), w = r^2; the terms after sh are below
//         0.11 sh, so their roundings cost 0.06 ulp at most.
//         cos(pi r) = ch + cl: 1 + c1 w with c1 w = a + ae exact (one fms) and
//         the exact Fast2Sum ch + (cl) of 1 + a, then w's rounding error
//         (r^2 - w, one fms) times c1, c1's low part times w and w^2 Q(w)
//         (below 0.016) in cl.
//   fast  sin(pi r) = r S(w), cos(pi r) = 1 + w C(w), one rounding each step.
// Fit errors (relative, exact arithmetic): double full 2^-57.5 (sin),
// 2^-58.5 (cos), fast 2^-45.6, 2^-51.8; single full 2^-29.0, 2^-30.5, fast
// 2^-24.3, 2^-26.2. tiny x: sh = RN(r pi_hi) is the product rounded once
// (normal or denormal), its error term exact or below the denormal grid's
// half step, so sinpi of a denormal keeps its accuracy.
#pragma once

#include "frame/entry.h"
#include "tables/sinpi.h"

namespace ravl {
namespace sinpi_core {

// The lane type's constants and coefficients as values.
template <class T> struct Coefs;
template <> struct Coefs<double> {
  static constexpr int kP = 7, kQ = 6, kS = 6, kC = 6;
  static constexpr double shift = f64_bits(0x4338000000000000ull);  // 1.5 * 2^52
  static constexpr double big = f64_bits(0x4340000000000000ull);    // 2^53
  static constexpr double inf = f64_bits(0x7ff0000000000000ull);
  // 2^128 and 2^-128: the sine's pair is formed on r 2^128, so that its low
  // part stays exact (r pi_hi's rounding error is above 2^-1074) for every r.
  static constexpr double up = f64_bits(0x47f0000000000000ull), down = f64_bits(0x37f0000000000000ull);
  static constexpr double at(const uint64_t* t, int i) { return f64_bits(t[i]); }
  static constexpr const uint64_t *pi = sinpi_tables::kPiD, *c1 = sinpi_tables::kC1D, *p = sinpi_tables::kSinPD,
                                  *q = sinpi_tables::kCosQD, *s = sinpi_tables::kSinSD, *c = sinpi_tables::kCosCD;
};
template <> struct Coefs<float> {
  static constexpr int kP = 4, kQ = 4, kS = 4, kC = 4;
  static constexpr float shift = f32_bits(0x4b400000u);  // 1.5 * 2^23
  static constexpr float big = f32_bits(0x4b800000u);    // 2^24
  static constexpr float inf = f32_bits(0x7f800000u);
  // 2^100 and 2^-100 (the same for singles: r pi_hi's error above 2^-149).
  static constexpr float up = f32_bits(0x71800000u), down = f32_bits(0x0d800000u);
  static constexpr float at(const uint32_t* t, int i) { return f32_bits(t[i]); }
  static constexpr const uint32_t *pi = sinpi_tables::kPiF, *c1 = sinpi_tables::kC1F, *p = sinpi_tables::kSinPF,
                                  *q = sinpi_tables::kCosQF, *s = sinpi_tables::kSinSF, *c = sinpi_tables::kCosCF;
};

// The rows the vector paths read (one 32-byte row each, as memory operands).
template <class T> struct Rows {
  using C = Coefs<T>;
  Row<T> half = row(T(0.5)), two = row(T(2)), one = row(T(1)), shift = row(C::shift), big = row(C::big), inf = row(C::inf),
         up = row(C::up), down = row(C::down);
  Row<T> pi_hi = row(C::at(C::pi, 0)), pi_lo = row(C::at(C::pi, 1)), c1_hi = row(C::at(C::c1, 0)),
         c1_lo = row(C::at(C::c1, 1));
  Row<T> p[C::kP], q[C::kQ], s[C::kS], c[C::kC];
  constexpr Rows() : p{}, q{}, s{}, c{} {
    for (int i = 0; i < C::kP; ++i) p[i] = row(C::at(C::p, i));
    for (int i = 0; i < C::kQ; ++i) q[i] = row(C::at(C::q, i));
    for (int i = 0; i < C::kS; ++i) s[i] = row(C::at(C::s, i));
    for (int i = 0; i < C::kC; ++i) c[i] = row(C::at(C::c, i));
  }
};
template <class T> inline constexpr Rows<T> kRows{};

// c[0] + c[1] w + ... + c[n - 1] w^(n-1) in pairs: e_i = c[2i] + c[2i+1] w,
// then Horner's scheme in w2 = w^2 over the pairs (half the latency of
// Horner's scheme in w, the same number of fma).
template <int n, class V, class T> RAVL_INLINE V poly(V w, V w2, const Row<T>* c) {
  V p = n % 2 ? get<V>(c[n - 1]) : fma(get<V>(c[n - 1]), w, get<V>(c[n - 2]));
  for (int i = (n + 1) / 2 - 2; i >= 0; --i) p = fma(p, w2, fma(get<V>(c[2 * i + 1]), w, get<V>(c[2 * i])));
  return p;
}

// |x| = n/2 + r exactly (beyond an even integer); q's low two bits are n
// mod 4; nan the bits of |x| - |x|.
template <class V> struct Reduced {
  V r;
  UIntOf<V> q, nan;
};
template <class V> RAVL_INLINE Reduced<V> reduce(V a, const Rows<LaneOf<V>>& k) {
  constexpr int kNearest = 0x8;  // round to nearest even, no exception
  const V ac = hw_min(get<V>(k.big), a);
  const V n = round_imm<kNearest>(ac * get<V>(k.two));
  const V kk = round_imm<kNearest>(ac * get<V>(k.half));
  const V t = fma(fnma(kk, get<V>(k.two), ac), get<V>(k.two), get<V>(k.shift));
  return {fnma(n, get<V>(k.half), ac), as_uint(t), as_uint(a - a)};
}

// sin(pi r) = sh + sl and cos(pi r) = ch + cl (sl = cl = 0 in the fast
// class). The full class's sine pair is that of 2^K sin(pi r) (K = 128 for
// doubles, 100 for singles: the scale rows up and down), so that sl keeps
// every bit where sin(pi r) is near or below the normal range: sinpi of a
// denormal x rounds once to 53 (24) bits and once more only where the result
// itself is denormal (the exact scaling back by 2^-K).
template <class V> struct SinCos {
  V sh, sl, ch, cl;
};
template <bool kFull, class V> RAVL_INLINE SinCos<V> sincos(V r, const Rows<LaneOf<V>>& k) {
  using C = Coefs<LaneOf<V>>;
  const V w = r * r, w2 = w * w;
  SinCos<V> o;
  if constexpr (kFull) {
    const V pih = get<V>(k.pi_hi), c1 = get<V>(k.c1_hi);
    const V rs = r * get<V>(k.up);
    o.sh = rs * pih;
    o.sl = fma(rs, fma(w, poly<C::kP>(w, w2, k.p), get<V>(k.pi_lo)), fms(rs, pih, o.sh));
    const V a = c1 * w;
    const V rest = fma(w2, poly<C::kQ>(w, w2, k.q),
                       fma(get<V>(k.c1_lo), w, fma(c1, fms(r, r, w), fms(c1, w, a))));
    o.ch = get<V>(k.one) + a;
    o.cl = ((get<V>(k.one) - o.ch) + a) + rest;
  } else {
    o.sh = r * poly<C::kS>(w, w2, k.s);
    o.ch = fma(w, poly<C::kC>(w, w2, k.c), get<V>(k.one));
  }
  return o;
}

// sin(pi (q/2 + r)) for the quadrant q (low two bits), then the sign bit
// `sign` and NaN for infinite and NaN |x|: q odd takes the cosine, q = 2, 3
// the negated value, except for an exact zero (r = 0 with the sine: the sine
// of +0 is +0), whose sign is `sign` alone.
template <bool kFull, class V>
RAVL_INLINE V quadrant_sin(Reduced<V> red, UIntOf<V> sign, const Rows<LaneOf<V>>& k) {
  using U = UIntOf<V>;
  constexpr int kTop = sizeof(LaneOf<V>) * 8 - 1;
  const SinCos<V> sc = sincos<kFull>(red.r, k);
  const V s = kFull ? (sc.sh + sc.sl) * get<V>(k.down) : sc.sh, c = kFull ? sc.ch + sc.cl : sc.ch;
  const U odd = red.q << kTop;
  const V m = select_sign(odd, s, c);
  const U zero = bitcast<U>(red.r == V(0)) & ~odd;
  const U flip = (((red.q >> 1) << kTop) & ~zero) ^ sign;
  return as_float<V>((as_uint(m) ^ flip) | red.nan);
}

}  // namespace sinpi_core
}  // namespace ravl
