// tan on single lanes (family tanf).
//
// Every class computes all lanes on a branch-free vector path for
// |x| <= 8256: N = nearest integer to |x|/(pi/2), r = |x| - N pi/2 with pi/2
// in three singles (plain) or two (the reduced classes), tan r = n(r)/d(r)
// (two short polynomials), and for odd N the cotangent: tan x = sign(x) n/d
// (N even) or -sign(x) d/n (N odd). The plain class divides; the reduced
// classes multiply by the hardware reciprocal estimate refined by one Newton
// step. Lanes with |x| above 8256, infinities and NaN are flagged; the
// inline pass computes the full-range reduction for the chunk
// (trig/trigf_reduce.h) and the value at its node (below) and blends it into
// the finite ones; the infinities and NaN go to the scalar routine:
//   +-inf -> NaN (x * 0, status 1), NaN -> x * x, +-0 -> x, any other finite
//   x -> the double scalar routine, rounded once to single.
//
// Classes and measured max errors (against MPFR over every single):
//   tanf   plain                 full   fast path 3.651 ulp (x = 0x1.5149dp+0), full range 0.5011 ulp
//   tanf   _native _half _rm     fast   fast path 983.7 ulp (x = 0x1.f9cbe2p+7, next to an odd
//                                       multiple of pi/2), full range 0.5011 ulp
#include "trig/trigf_reduce.h"

namespace ravl {
namespace tanf_detail {

// |x| above 8256 (0x46010000), infinities and NaN leave the fast path.
constexpr uint32_t kBoundBits = 0x46010000u;
constexpr float kTwoOverPi = f32_bits(0x3f22f983u);  // 2/pi = 0.636619747
constexpr float kShift = f32_bits(0x4b400000u);      // 1.5 2^23: rounds |t| < 2^22 to an integer in the low bits
// pi/2 = kH1 + kH2 + kH3: 1.57079637 (0x3fc90fdb), -4.37113883e-08
// (0xb33bbd2e), -1.71512451e-15 (0xa6f72ced).
constexpr float kH1 = f32_bits(0x3fc90fdbu);
constexpr float kH2 = f32_bits(0xb33bbd2eu);
constexpr float kH3 = f32_bits(0xa6f72cedu);
// tan r ~ n/d on |r| <= pi/4: n = r (n0 + n1 r^2), d = n0 + d1 r^2 + d2 r^4
// (the leading value in a row of each: each is then read as an operand).
constexpr float kN0 = f32_bits(0x3f7ffffcu);  // 0.999999762
constexpr float kN1 = f32_bits(0xbdc433b4u);  // -0.0958017409
constexpr float kD1 = f32_bits(0xbedbb7abu);  // -0.42913565
constexpr float kD2 = f32_bits(0x3c1f336bu);  // 0.00971684884

// ---- the full-range value ----------------------------------------------------------------
//
// At node j of the reduction (a_j = 2 pi j / 256), tan has period pi, so the
// row is j mod 128 of kTanfNodes (a_j in [0, pi)):
//   tan(a_j + r) = w / (g - r) + F(a_j + r),  g = pi/2 - a_j = T0 + T1,
// w = T2 = 1 on the rows within pi/4 of the pole, 0 elsewhere, and
// F(a_j + r) = T3 + T4 + (T5 + T6) r + T7 r^2 + ... + T10 r^5 the Taylor sum of
// the rest (of tan itself where w = 0). With the reduced argument r + rlo:
// - the pole term: G = g - r - rlo as gs + gl (gs = T0 - r rounded, gl its
//   error plus T1 - rlo); y0 = w * rcp(gs) (12 bits); e = 1 - G y0 (two
//   fused steps); 1/G = y0 (1 + e + e^2 + ...) ~ y0 + y0 (e + e^2) = yh + yl,
//   relative error about 2^-33;
// - b = T3 + T5 r (one rounding) with its error eb;
// - head = yh + b with its error (|yh| >= 1.24 > |b| on the pole rows, yh = 0
//   elsewhere), and the rest summed apart: yl, eb, T4 + T5 rlo, T6 r and
//   r^2 (T7 + T8 r + T9 r^2 + T10 r^3).
// The sign of x is carried by the reduction: no sign step. The rows are
// symmetric (row 128 - j holds the negated odd entries of row j), so
// tan(-x) = -tan(x) bit for bit.
template <int L> RAVL_INLINE Vec<float, L> tan_full(Vec<float, L> x) {
  using V = Vec<float, L>;
  using I = Vec<int32_t, L>;
  const trigf::Reduced<L> q = trigf::reduce<true>(x);
  const I off = (q.j & I(127)) * I(48);
  V a[4], b[4], c[4];
  trigf::rows4(trigf_tables::kTanfNodes, off, a);
  trigf::rows4(trigf_tables::kTanfNodes + 4, off, b);
  trigf::rows4(trigf_tables::kTanfNodes + 8, off, c);
  const V t0 = a[0], t1 = a[1], w = a[2], t3 = a[3], t4 = b[0], t5 = b[1], t6 = b[2], t7 = b[3];
  const V t8 = c[0], t9 = c[1], t10 = c[2];
  const V r = q.r;
  // The pole term.
  const V gs = t0 - r;
  const V gl = ((t0 - gs) - r) + (t1 - q.rlo);
  const V y0 = rcp_approx(gs) * w;
  V e = fnma(gs, y0, V(1));
  e = fnma(gl, y0, e);
  const V ee = fma(e, e, e);
  const V yh = fma(y0, ee, y0);
  const V yl = fma(y0, ee, y0 - yh);
  // The regular part and the sum.
  const V bs = fma(t5, r, t3);
  const V eb = fma(t5, r, t3 - bs);
  const V head = yh + bs;
  const V tail = (yh - head) + bs;
  const V p = fma(fma(fma(t10, r, t9), r, t8), r, t7);
  const V low = fma(fma(p, r, t6), r, fma(t5, q.rlo, t4));
  return head + ((low + eb) + (tail + yl));
}

// The full-range value and the scalar routine, shared by every class.
struct Tanf {
  template <int L> static RAVL_INLINE Vec<float, L> full(Vec<float, L> x) { return tan_full(x); }
  static int scalar(const float* x, float* r) { return trigf::scalar_lane<trigd::tan_finite>(x, r, trigd::Fn::kOdd); }
};

// The fast reduction and the two polynomials: r = |x| - N pi/2 with the
// first two or all three pieces of pi/2 (fused steps; pieces two and three
// are negative), then n(r) and d(r); the numerator and denominator of the
// quotient (swapped for odd N) and its sign bits (odd N, the sign of x).
template <bool kThree, class V, class C> RAVL_INLINE void reduce_fast(V x, const C& c, V& num, V& den, UIntOf<V>& sign) {
  using U = UIntOf<V>;
  const V a = as_float<V>(as_uint(x) & get<U>(c.abs));
  const U sx = as_uint(x) ^ as_uint(a);
  const V t = fma(a, get<V>(c.two_over_pi), get<V>(c.shift));
  const V n = t - get<V>(c.shift);
  V r = fnma(n, get<V>(c.h1), a);
  r = fnma(n, get<V>(c.h2), r);
  if constexpr (kThree) r = fnma(n, get<V>(c.h3), r);
  const V r2 = r * r;
  const V nr = r * fma(r2, get<V>(c.n1), get<V>(c.n0));
  const V dr = fma(fma(r2, get<V>(c.d2), get<V>(c.d1)), r2, get<V>(c.d0));
  const U odd = as_uint(t) << 31;
  num = select_sign(odd, nr, dr);
  den = select_sign(odd, dr, nr);
  sign = odd ^ sx;
}

// ---- plain class ------------------------------------------------------------------
struct FullRows : trigf::BoundRows<kBoundBits> {
  Row<float> two_over_pi = row(kTwoOverPi), shift = row(kShift), h1 = row(kH1), h2 = row(kH2), h3 = row(kH3),
             n0 = row(kN0), n1 = row(kN1), d0 = row(kN0), d1 = row(kD1), d2 = row(kD2);
};
inline constexpr FullRows kFullRows{};

struct TanfFull : trigf::FullRangeKernel<Tanf, kFullRows> {
  template <int L> static RAVL_INLINE Vec<float, L> vec(Vec<float, L> x) {
    using V = Vec<float, L>;
    const FullRows& c = rows(kFullRows);
    V num, den;
    UIntOf<V> sign;
    reduce_fast<true>(x, c, num, den, sign);
    return as_float<V>(as_uint(num / den) ^ sign);
  }
};

// ---- reduced classes (_native, _half, _rm) ----------------------------------------------
//
// pi/2 in two pieces; the quotient num * y with y = y0 (2 - den y0), y0 the
// hardware reciprocal estimate of den.
struct FastRows : trigf::BoundRows<kBoundBits> {
  Row<float> two_over_pi = row(kTwoOverPi), shift = row(kShift), h1 = row(kH1), h2 = row(kH2), n0 = row(kN0),
             n1 = row(kN1), d0 = row(kN0), d1 = row(kD1), d2 = row(kD2), two = row(2.0f);
};
inline constexpr FastRows kFastRows{};

struct TanfFast : trigf::FullRangeKernel<Tanf, kFastRows> {
  template <int L> static RAVL_INLINE Vec<float, L> vec(Vec<float, L> x) {
    using V = Vec<float, L>;
    const FastRows& c = rows(kFastRows);
    V num, den;
    UIntOf<V> sign;
    reduce_fast<false>(x, c, num, den, sign);
    const V y0 = rcp_approx(den);
    const V y = y0 * fnma(den, y0, get<V>(c.two));
    return as_float<V>(as_uint(num * y) ^ sign);
  }
};

}  // namespace tanf_detail

namespace tanf_k {
using full = tanf_detail::TanfFull;
using fast = tanf_detail::TanfFast;
}  // namespace tanf_k

}  // namespace ravl

#include "entries/tanf.inc"
