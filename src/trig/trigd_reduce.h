// Argument reduction of the double trigonometric families, shared by sin, cos,
// tan, sincos and sincosreg, and the scalar sine, cosine and tangent that
// their special-lane routines (and those of the single families, which widen
// to double) are built on.
//
// Three reductions:
// - the vector full-range reduction (reduce_full, eval_node): the fraction of
//   x / (2 pi) to about 128 bits from the 192-bit slice W(e) of 1/(2 pi)
//   chosen by the exponent, snapped to a grid of 512 nodes per period; every
//   finite x, the largest included;
// - the scalar reduction of the special-lane routines (reduce_scalar): none
//   below 2^17, four or five pieces of pi/4 below 2^30, the 25-bit chunks of
//   4/pi above;
// - the scalar kernel (sin_dd, cos_dd, ...): a second reduction by pi/32 onto
//   a table of 64 nodes and two short polynomials, in double-double.
// The fast reductions of the vector paths (a rounded multiple of pi or pi/2
// removed in three pieces) are each family's own.
#pragma once

#include "frame/entry.h"
#include "tables/trigd.h"

namespace ravl {
namespace trigd {

// ---- vector full-range reduction ------------------------------------------------

// 1.5 * 2^43 (0x42a8000000000000): hi + kNodeShift rounds hi in [1, 2) (or
// (-2, -1]) to a multiple of 1/512, whose numerator sits in the low bits.
constexpr double kNodeShift = f64_bits(0x42a8000000000000ull);
// 2 pi = 6.2831853071795862 (0x401921fb54442d18) + 2.4492935982947064e-16
// (0x3cb1a62633145c07).
constexpr double kTwoPiHi = f64_bits(0x401921fb54442d18ull);
constexpr double kTwoPiLo = f64_bits(0x3cb1a62633145c07ull);
// 2^-20 (0x3eb0000000000000): at or below it x is its own reduced argument.
constexpr double kTinyGuard = f64_bits(0x3eb0000000000000ull);

// x = 2 pi (k + j / 512) + r + rlo with k an integer, j the node index in
// [0, 512) and |r| <= pi/512 (about 0.00614): r + rlo carries x mod 2 pi
// to about 2^-120 absolute.
template <class V> struct FullArg {
  V r, rlo;
  UIntOf<V> j;
};

// Full-range reduction of every lane of x (any finite x, nothing refused).
// kSigned: reduce x itself (cos, tan, sincos); else |x| (sin, whose sign the
// caller restores).
//
// m = the 53-bit integer significand of x, W = W(e) = w0:w1:w2 (192 bits);
// m W mod 2^192 is the fraction of x / (2 pi) times 2^192. With m = mh 2^32 +
// ml (mh 21 bits) and each word split into 32-bit halves, ten 32x32-bit
// products are summed in 32-bit columns: mh w0h (bit 192 and up: whole
// periods) and ml w2l (below bit 64: at most a carry into bit 64, an error
// of 2^-128) are left out. F1 and F2 are the fraction's bits 1-64 and 65-128.
template <bool kSigned, class V> RAVL_INLINE FullArg<V> reduce_full(V x) {
  using U = UIntOf<V>;
  using I = SIntOf<V>;
  const U xb = as_uint(x);
  const U m = (xb & 0x000fffffffffffffull) | 0x0010000000000000ull;
  const I row = bitcast<I>(((xb >> 52) & 0x7ff) * 3);
  const double* w = reinterpret_cast<const double*>(trigd_tables::kReduceBits);
  const U w0 = as_uint(gather(w, row)), w1 = as_uint(gather(w + 1, row)), w2 = as_uint(gather(w + 2, row));
  const U lo32 = U(0xffffffffull);
  const U mh = m >> 32, ml = m & lo32;
  const U w0h = w0 >> 32, w0l = w0 & lo32, w1h = w1 >> 32, w1l = w1 & lo32, w2h = w2 >> 32;
  // Products by the bit position of their lowest bit in m W.
  const U p160a = mh * w0l, p160b = ml * w0h;
  const U p128a = mh * w1h, p128b = ml * w0l;
  const U p96a = mh * w1l, p96b = ml * w1h;
  const U p64a = mh * w2h, p64b = ml * w1l;
  const U p32a = mh * (w2 & lo32), p32b = ml * w2h;
  // Column k holds bits 32k..32k+31 plus the carries into it (each column
  // sum stays below 2^35).
  const U c1 = (p32a & lo32) + (p32b & lo32);
  const U c2 = (p32a >> 32) + (p32b >> 32) + (p64a & lo32) + (p64b & lo32) + (c1 >> 32);
  const U c3 = (p64a >> 32) + (p64b >> 32) + (p96a & lo32) + (p96b & lo32) + (c2 >> 32);
  const U c4 = (p96a >> 32) + (p96b >> 32) + (p128a & lo32) + (p128b & lo32) + (c3 >> 32);
  const U c5 = (p128a >> 32) + (p128b >> 32) + (p160a & lo32) + (p160b & lo32) + (c4 >> 32);
  const U f1 = (c5 << 32) | (c4 & lo32);
  const U f2 = (c3 << 32) | (c2 & lo32);
  // The fraction as hi + mid + lo, each from bits put into a significand:
  // hi = +-(1 + (F1 >> 12) 2^-52) (the 1 a marker), mid = +-((F1 & 0xfff) << 40
  // | F2 >> 24) 2^-104 on the pattern of 2^-52 (0x3cb0000000000000), lo =
  // +-(F2 & 0xffffff) 2^-128 on the pattern of 2^-104 (0x3970000000000000).
  const U sgn = kSigned ? (xb & 0x8000000000000000ull) : U(0);
  const U p52 = U(0x3cb0000000000000ull) | sgn, p104 = U(0x3970000000000000ull) | sgn;
  const V hi = as_float<V>((f1 >> 12) | 0x3ff0000000000000ull | sgn);
  const V mid = as_float<V>((((f1 & 0xfff) << 40) | (f2 >> 24)) | p52) - as_float<V>(p52);
  const V lo = as_float<V>(((f2 & 0xffffff) << 28) | p104) - as_float<V>(p104);
  // Snap hi to the 512-point grid: n = hi rounded to a multiple of 1/512,
  // j its numerator mod 512 (the marker's 512 vanishes in the mask).
  const V u = hi + V(kNodeShift);
  const V n = u - V(kNodeShift);
  FullArg<V> a;
  a.j = as_uint(u) & 0x1ff;
  // s + t = fraction - j/512, |s| <= 1/1024: hi - n is exact, s = RN(hi - n
  // + mid) with its error recovered.
  const V d = hi - n;
  const V s = d + mid;
  const V err = mid + (d - s);
  const V t = err + lo;
  // Times 2 pi in two parts: r = RN(2 pi s), rlo the rest to first order.
  a.r = s * V(kTwoPiHi);
  a.rlo = fma(t, V(kTwoPiHi), fma(s, V(kTwoPiLo), fma(s, V(kTwoPiHi), -a.r)));
  // The guard: a tiny x is its own reduced argument.
  const V ax = abs(x);
  const MaskOf<V> tiny = ax <= V(kTinyGuard);
  a.r = select(tiny, kSigned ? x : ax, a.r);
  a.rlo = select(tiny, V(0.0), a.rlo);
  return a;
}

// f(a_j + r + rlo) at node j of a node table of rows (D1, D0, V_hi, V_lo)
// (tables/trigd.h: f = sin with derivative cos, or, read from row kCosRow on,
// cos with derivative -sin):
// the leading sum V_hi + r (D0 + D1) with its rounding errors, the curvature
// of sin and cos to r^5 and r^6, and rlo times the derivative at a_j + r.
// Error of the whole full-range sine and cosine: tests/accuracy_test.cpp.
constexpr double kPs1 = f64_bits(0xbfc5555555554448ull);  // -0.1666666666665455
constexpr double kPs2 = f64_bits(0x3f81110fabb3551cull);  // 0.0083333229326095146
constexpr double kPc1 = -0.5;
constexpr double kPc2 = f64_bits(0x3fa5555555554ccfull);  // 0.041666666666651524
constexpr double kPc3 = f64_bits(0xbf56c16ab163b2d7ull);  // -0.0013888875887985619

// The cosine reads the sine's table (kSinNodes) a quarter period on:
// cos a_j = sin a_(j+128) and -sin a_j = cos a_(j+128), kFirstRow = kCosRow.
constexpr unsigned kCosRow = 128;
template <unsigned kFirstRow = 0, class V> RAVL_INLINE V eval_node(const uint64_t* table, const FullArg<V>& a) {
  using I = SIntOf<V>;
  const double* t = reinterpret_cast<const double*>(table);
  const UIntOf<V> j = kFirstRow ? (a.j + kFirstRow) & 0x1ff : a.j;
  const I row = bitcast<I>(j << 2);
  const V d1 = gather(t, row), d0 = gather(t + 1, row), vhi = gather(t + 2, row), vlo = gather(t + 3, row);
  const V r = a.r, r2 = r * r;
  const V u = fma(r, d0, vhi);
  const V y = fma(d1, r, u);
  const V e1 = fma(r, d0, vhi - u);
  const V e2 = fma(d1, r, u - y);
  const V ps = r2 * (V(kPs1) + r2 * V(kPs2));
  const V pc = r2 * (V(kPc1) + r2 * (V(kPc2) + r2 * V(kPc3)));
  const V dsum = d0 + d1;
  const V q = fnma(r, vhi, dsum);
  const V z = fma(pc, vhi, fma(ps * r, dsum, e1 + e2));
  const V w = fma(a.rlo, q, vlo);
  return y + (z + w);
}

// ---- scalar double-word steps -------------------------------------------------------

struct DD {
  double hi, lo;
};
// a + b = s + e exactly (any magnitudes).
RAVL_INLINE DD two_sum(double a, double b) {
  double s = a + b;
  double bb = s - a;
  return {s, (a - (s - bb)) + (b - bb)};
}
// a b = p + e exactly (no underflow).
RAVL_INLINE DD two_prod(double a, double b) {
  double p = a * b;
  return {p, fma(a, b, -p)};
}
// x rounded to an integral value, to nearest even or down, in any rounding mode.
RAVL_INLINE double round_nearest(double x) {
  return _mm_cvtsd_f64(_mm_round_sd(_mm_setzero_pd(), _mm_set_sd(x), _MM_FROUND_TO_NEAREST_INT | _MM_FROUND_NO_EXC));
}
RAVL_INLINE double round_down(double x) {
  return _mm_cvtsd_f64(_mm_round_sd(_mm_setzero_pd(), _mm_set_sd(x), _MM_FROUND_TO_NEG_INF | _MM_FROUND_NO_EXC));
}

// ---- scalar reduction ------------------------------------------------------------------

// x = q pi/2 + hi + lo (mod 2 pi), hi + lo to about 2^-100 relative (see
// reduce_scalar for the ranges of hi).
struct Reduced {
  double hi, lo;
  int64_t q;
};

// 4/pi = 1.2732395447351628 (0x3ff45f306dc9c883).
constexpr double kFourOverPi = f64_bits(0x3ff45f306dc9c883ull);
// pi/4 in five pieces for 2^23 <= |x| < 2^30 (N < 2^31): the first four have
// at most 21 significant bits, so N times each is exact; their sum is pi/4 to
// 2^-142 relative.
constexpr double kPio4Wide[5] = {
    f64_bits(0x3fe921fa00000000ull),  // 0.7853975296020508
    f64_bits(0x3ea5444300000000ull),  // 6.337954800983425e-7
    f64_bits(0xbd373dca00000000ull),  // -8.256991011063031e-14
    f64_bits(0xbbf3b39a00000000ull),  // -6.675151087907452e-20
    f64_bits(0x3a845c06e0e68948ull),  // 8.223128468162129e-27
};
// pi/4 in four pieces for 2^17 <= |x| < 2^23 (N < 2^24): the first three have
// at most 28 significant bits; their sum is pi/4 to 2^-142 relative.
constexpr double kPio4Narrow[4] = {
    f64_bits(0x3fe921fb54000000ull),  // 0.7853981629014015
    f64_bits(0x3e010b4612000000ull),  // 4.960467904491228e-10
    f64_bits(0xbc2676733c000000ull),  // -6.088525906594782e-19
    f64_bits(0x3a61701b839a2520ull),  // 1.7607799325916e-27
};
// pi/4 as 0.7853981256484985 (0x3fe921fb40000000, 23 bits) + 3.774894977445941e-8
// (0x3e64442d18469899): pi/4 to 2^-78 relative.
constexpr double kPio4Hi = f64_bits(0x3fe921fb40000000ull);
constexpr double kPio4Lo = f64_bits(0x3e64442d18469899ull);
// 2^-200 (0x3370000000000000): huge arguments are scaled by it so that their
// products with the 4/pi chunks (stored times 2^200) stay normal.
constexpr double kTwoM200 = f64_bits(0x3370000000000000ull);

// |x| - N pi/4 for 2^17 <= |x| < 2^30 (biased exponent 1040..1052), N the
// even integer next to floor(|x| 4/pi): each piece's product with N is
// subtracted in double-double (exact while the pieces are short), so the
// result keeps about 100 bits beyond the cancellation. |hi| < pi/4 + 2^-20.
template <int kPieces>
RAVL_INLINE Reduced reduce_pieces(double a, const double (&pio4)[kPieces]) {
  const int64_t k = (int64_t)(a * kFourOverPi);
  const int64_t n = k + (k & 1);
  const double nd = (double)n;
  double hi = a, lo = 0.0;
  for (int i = 0; i < kPieces; ++i) {
    const DD p = two_prod(nd, pio4[i]);
    const DD s = two_sum(hi, -p.hi);
    hi = s.hi;
    lo += s.lo - p.lo;
  }
  const DD r = two_sum(hi, lo);
  return {r.hi, r.lo, n >> 1};
}

// p mod 8 in [0, 8), exact for p >= 0.
RAVL_INLINE double mod8(double p) { return p - 8.0 * round_down(p * 0.125); }

// |x| 4/pi mod 8 for |x| >= 2^30 (biased exponent 1053..2046), from nine
// consecutive 25-bit chunks of 4/pi (tables/trigd.h, entry i = chunk i - 1
// times 2^200), returned as |x| - N pi/4 with N even.
//
// x' = |x| 2^-200 = xh + xt (xh its 26 leading bits, xt < 2^(E-225) the rest,
// E = e - 1023); every product of xh or xt with a chunk is exact. Chunk
// index ci = floor((e - 1052)/25) (83886/2^21 just below 1/25) and D = E -
// 25 ci in [29, 54]; entries ci .. ci+8 hold T_(ci-1) .. T_(ci+7): the
// chunks before T_(ci-1) give multiples of 8 (of weight 2^(D-26) and up),
// those after T_(ci+7) less than 2^(D-198) <= 2^-144.
// With P_j = x' entry(ci+j), head and tail: A = the sum of P_0t, P_1h, P_1t,
// P_2h mod 8 (each a multiple of 2^-47 below 8: exact); P_2t and P_3h (below
// 2^6, multiples of 2^-72) mod 8; the rest below 2^-19. n = the even integer
// nearest their sum; A - n is exact, the two next terms are added by exact
// two-sums (their errors, multiples of 2^-72 below 2^-48, sum exactly), and
// the small terms by two-sums into a low word whose rounding errors stay
// below 2^-106 max(|f|, 2^-19): f = sum - n in [-1 - 2^-18, 1 + 2^-18] to
// about 2^-120 absolute. Then hi + lo = f pi/4.
RAVL_INLINE Reduced reduce_chunks(double a, int64_t e) {
  const double xs = a * kTwoM200;
  const double xh = f64_bits(bits_of(xs) & 0xfffffffff8000000ull);
  const double xt = xs - xh;
  const int64_t ci = ((e - 1052) * 83886) >> 21;
  const double* c = reinterpret_cast<const double*>(trigd_tables::kFourOverPiChunks) + ci;
  const double big = mod8(mod8(xt * c[0]) + mod8(xh * c[1]) + mod8(xt * c[1]) + mod8(xh * c[2]));
  const double b1 = mod8(xt * c[2]), b2 = mod8(xh * c[3]);
  const double n = 2.0 * round_nearest(0.5 * (big + b1 + b2));
  const DD s1 = two_sum(big - n, b1);
  const DD s2 = two_sum(s1.hi, b2);
  double hi = s2.hi, lo = 0.0;
  const double small[] = {xh * c[4], xt * c[3], s1.lo + s2.lo, xh * c[5], xt * c[4], xh * c[6],
                          xt * c[5], xh * c[7], xt * c[6],     xh * c[8], xt * c[7], xt * c[8]};
  for (double t : small) {
    const DD s = two_sum(hi, t);
    hi = s.hi;
    lo += s.lo;
  }
  const DD f = two_sum(hi, lo);
  // f pi/4 in double-double.
  const DD p = two_prod(f.hi, kPio4Hi);
  const double plo = p.lo + fma(f.hi, kPio4Lo, f.lo * (kPio4Hi + kPio4Lo));
  const DD r = two_sum(p.hi, plo);
  return {r.hi, r.lo, ((int64_t)n >> 1) & 3};
}

// The scalar reduction of a finite x with biased exponent e >= 771
// (|x| >= 2^-252): x = q pi/2 + hi + lo (mod 2 pi).
// - e < 1040 (|x| < 2^17): no reduction (hi = x, q = 0); the kernel reduces
//   by pi/32 itself;
// - 1040 <= e <= 1052 (|x| < 2^30): N pi/4 removed in pieces (N even);
// - e > 1052: the chunks of 4/pi.
// From 2^17 up, |hi| <= pi/4 + 2^-18. Negative x: the reduction of |x|, negated.
RAVL_INLINE Reduced reduce_scalar(double x) {
  const int64_t e = (int64_t)(bits_of(x) >> 52 & 0x7ff);
  if (e < 1040) return {x, 0.0, 0};
  const double a = __builtin_fabs(x);
  Reduced r = e > 1052 ? reduce_chunks(a, e) : e > 1045 ? reduce_pieces(a, kPio4Wide) : reduce_pieces(a, kPio4Narrow);
  if (x < 0) r = {-r.hi, -r.lo, -r.q};
  return r;
}

// ---- scalar kernel ----------------------------------------------------------------------

// 32/pi = 10.185916357881302 (0x40245f306dc9c883) and the shifter 1.5 * 2^52.
constexpr double kThirtyTwoOverPi = f64_bits(0x40245f306dc9c883ull);
constexpr double kShift52 = f64_bits(0x4338000000000000ull);
// pi/32 in three pieces: 0.09817477042088285 (pi/32 rounded to 32 bits,
// 0x3fb921fb54400000; k times it is exact for |k| < 2^21), 3.79818781656637e-12
// (0x3d90b4611a626331) and 2.2009749157395e-28 (0x3a31701b839a2520), each
// the rest rounded to nearest: pi/32 to 2^-142 relative.
constexpr double kPio32[3] = {f64_bits(0x3fb921fb54400000ull), f64_bits(0x3d90b4611a626331ull),
                              f64_bits(0x3a31701b839a2520ull)};

// sin(d) - d = d^3 (s1 + d^2 (s2 + ...)) and cos(d) - 1 = d^2 (k1 + d^2 (k2 +
// ...)), the Taylor coefficients rounded to double: on |d| <= pi/64 + 2^-18
// the truncations are below 2^-84 relative.
constexpr double kSinT[5] = {-1.0 / 6, 1.0 / 120, -1.0 / 5040, 1.0 / 362880, -1.0 / 39916800};
constexpr double kCosT[6] = {-0.5, 1.0 / 24, -1.0 / 720, 1.0 / 40320, -1.0 / 3628800, 1.0 / 479001600};

// A reduced argument on the pi/32 grid: x = idx pi/32 + dh + dl (mod 2 pi),
// |dh| <= pi/64 + 2^-18.
struct Node {
  int64_t idx;
  double dh, dl;
};
// k2 = nearest integer to hi 32/pi, |k2| < 2^21; d = hi + lo - k2 pi/32 with
// the first piece exact and the others in double-double; idx = (k2 + 16 q) mod 64.
RAVL_INLINE Node locate(const Reduced& a) {
  const double t = fma(a.hi, kThirtyTwoOverPi, kShift52);
  const double k = t - kShift52;
  const int64_t k2 = (int64_t)(bits_of(t) - bits_of(kShift52));
  double hi = fnma(k, kPio32[0], a.hi);  // exact
  double lo = a.lo;
  for (int i = 1; i < 3; ++i) {
    const DD p = two_prod(k, kPio32[i]);
    const DD s = two_sum(hi, -p.hi);
    hi = s.hi;
    lo += s.lo - p.lo;
  }
  const DD d = two_sum(hi, lo);
  return {(k2 + 16 * a.q) & 63, d.hi, d.lo};
}

// sin(i pi/32 + dh + dl) in double-double, |dh| <= pi/64 + 2^-18: with S + C
// the node's sine and cosine (hi + lo each), S cos d + C sin d = (S + C dh)
// + S (cos d - 1 - dh dl) + C (dl + sin d - d) + the low words; S + C dh is
// formed exactly (two-product, two-sum), the rest is below 2^-9 |result| and
// rounded once more, so the final two-sum's high word is within about 0.502 ulp.
RAVL_INLINE DD sin_node(int64_t i, double dh, double dl) {
  const double* t = reinterpret_cast<const double*>(trigd_tables::kSinPiOver32);
  const double sh = t[2 * i], sl = t[2 * i + 1];
  const int64_t ic = (i + 16) & 63;
  const double ch = t[2 * ic], cl = t[2 * ic + 1];
  const double d2 = dh * dh;
  const double sm =
      dh * d2 * fma(fma(fma(fma(kSinT[4], d2, kSinT[3]), d2, kSinT[2]), d2, kSinT[1]), d2, kSinT[0]);
  const double cm =
      d2 * fma(fma(fma(fma(fma(kCosT[5], d2, kCosT[4]), d2, kCosT[3]), d2, kCosT[2]), d2, kCosT[1]), d2, kCosT[0]);
  const DD p = two_prod(ch, dh);
  const DD s = two_sum(sh, p.hi);
  const double lo = (s.lo + p.lo + sl + cl * dh) + ch * (dl + sm) + sh * (cm - dh * dl);
  return two_sum(s.hi, lo);
}

// sin, cos and tan of a reduced argument, in double-double.
RAVL_INLINE DD sin_dd(const Reduced& a) {
  const Node n = locate(a);
  return sin_node(n.idx, n.dh, n.dl);
}
RAVL_INLINE DD cos_dd(const Reduced& a) {
  const Node n = locate(a);
  return sin_node((n.idx + 16) & 63, n.dh, n.dl);
}

// ---- scalar sine, cosine and tangent of any finite double ----------------------------
//
// x finite with |x| >= 2^-252 (the rows of edge_row come first). Max error
// against MPFR: sin 0.504, cos 0.504, tan 0.503 ulp (5e6 random inputs from
// 2^-252 to DBL_MAX, 1.5e6 doubles within 2 ulps of multiples of pi/2, the
// hardest case of the reduction); the vector full-range path (reduce_full and
// eval_node) 0.503 ulp on the same inputs. tests/accuracy_test.cpp runs them
// through the special lanes of the sin and cos reduced classes.

RAVL_INLINE double sin_finite(double x) {
  const DD s = sin_dd(reduce_scalar(x));
  return s.hi + s.lo;
}
RAVL_INLINE double cos_finite(double x) {
  const DD c = cos_dd(reduce_scalar(x));
  return c.hi + c.lo;
}
// sin / cos with one double-double correction of the quotient.
RAVL_INLINE double tan_finite(double x) {
  const Node n = locate(reduce_scalar(x));
  const DD s = sin_node(n.idx, n.dh, n.dl);
  const DD c = sin_node((n.idx + 16) & 63, n.dh, n.dl);
  const double q = s.hi / c.hi;
  const double rem = fnma(q, c.hi, s.hi) + s.lo - q * c.lo;
  return q + rem / c.hi;
}
// Both at once (one reduction).
RAVL_INLINE void sincos_finite(double x, double* sp, double* cp) {
  const Node n = locate(reduce_scalar(x));
  const DD s = sin_node(n.idx, n.dh, n.dl);
  const DD c = sin_node((n.idx + 16) & 63, n.dh, n.dl);
  *sp = s.hi + s.lo;
  *cp = c.hi + c.lo;
}

// ---- the rows every trigonometric special-lane routine shares ---------------------------

// 2^55 (0x4360000000000000) and 2^-55 (0x3c80000000000000).
constexpr double kTwo55 = f64_bits(0x4360000000000000ull);
constexpr double kTwoM55 = f64_bits(0x3c80000000000000ull);
// Biased exponent of 2^-252: below it sin and tan are x (inexact) and cos is 1 - |x|.
constexpr int64_t kTinyExponent = 771;

enum class Fn { kOdd, kEven };  // sin, tan (odd) or cos (even)

// The rows of x that need no reduction: +-inf -> NaN (x * 0, status 1), NaN ->
// x * x (quiet, status 0), 0 -> x (odd) or 1 (even), 0 < |x| < 2^-252 ->
// (2^55 x - x) 2^-55 (odd: just below |x| in magnitude, raising inexact) or
// 1 - |x| (even). Returns false for every other x.
RAVL_INLINE bool edge_row(double x, Fn fn, double* r, int* status) {
  const int64_t e = (int64_t)(bits_of(x) >> 52 & 0x7ff);
  *status = kStatusOk;
  if (e == 2047) {
    const bool inf = (bits_of(x) & 0x000fffffffffffffull) == 0;
    *r = inf ? x * 0.0 : x * x;
    if (inf) *status = kStatusDomain;
    return true;
  }
  if (e >= kTinyExponent) return false;
  if (fn == Fn::kEven) *r = x == 0 ? 1.0 : 1.0 - __builtin_fabs(x);
  else *r = x == 0 ? x : (kTwo55 * x - x) * kTwoM55;
  return true;
}

}  // namespace trigd
}  // namespace ravl
