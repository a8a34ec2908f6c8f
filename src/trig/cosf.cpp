// cos on single lanes (family cosf).
//
// Every class computes all lanes on a branch-free vector path for
// |x| <= 10000: cos x = sin(|x| + pi/2); N = nearest integer to
// (|x| + pi/2)/pi, r = |x| - (N - 1/2) pi with pi in three singles (plain) or
// two (the reduced classes), cos x = (-1)^N sin r, a polynomial in r; where
// |x| + pi/2 rounds to pi/2 the result is 1. Lanes with |x| above 10000,
// infinities and NaN are flagged; the inline pass computes the full-range
// reduction for the chunk (trig/trigf_reduce.h) and blends its value into
// the finite ones; the infinities and NaN go to the scalar routine:
//   +-inf -> NaN (x * 0, status 1), NaN -> x * x, +-0 -> 1, any other finite
//   x -> the double scalar routine, rounded once to single.
//
// Classes and measured max errors (against MPFR over every single):
//   cosf   plain                 full   fast path 2.356 ulp (x = 0x1.db8f0cp+12), full range 0.5005 ulp
//   cosf   _native _half _rm     fast   fast path 2536.0 ulp (the degree-5 kernel), full range 0.5005 ulp
#include "trig/trigf_reduce.h"

namespace ravl {
namespace cosf_detail {

// |x| above 10000 (0x461c4000), infinities and NaN leave the fast path.
constexpr uint32_t kBoundBits = 0x461c4000u;
constexpr float kInvPi = f32_bits(0x3ea2f983u);  // 1/pi = 0.318309873
constexpr float kShift = f32_bits(0x4b400000u);  // 1.5 2^23: rounds |t| < 2^22 to an integer in the low bits
constexpr float kHalfPi = f32_bits(0x3fc90fdbu);  // pi/2 = 1.57079637
// pi = kPi1 + kPi2 + kPi3: 3.14159274 (0x40490fdb), -8.74227766e-08
// (0xb3bbbd2e), -3.43024902e-15 (0xa7772ced).
constexpr float kPi1 = f32_bits(0x40490fdbu);
constexpr float kPi2 = f32_bits(0xb3bbbd2eu);
constexpr float kPi3 = f32_bits(0xa7772cedu);

// The full-range value and the scalar routine, shared by every class.
struct Cosf {
  template <int L> static RAVL_INLINE Vec<float, L> full(Vec<float, L> x) {
    return trigf::eval_node<trigf::kCosRow>(trigf_tables::kSinfNodes, trigf::reduce<true>(x));
  }
  static int scalar(const float* x, float* r) { return trigf::scalar_lane<trigd::cos_finite>(x, r, trigd::Fn::kEven); }
};

// The reduced argument of the cosine form: y = |x| + pi/2, N = round(y/pi)
// by the shifter, r = |x| - (N - 1/2) pi with the first two or all three
// pieces of pi (fused steps; pieces two and three are negative), the sign of
// r flipped for odd N. `one` is set where y == pi/2 (the result is 1 there).
template <bool kThree, class V, class C> RAVL_INLINE V reduce_fast(V x, const C& c, MaskOf<V>& one) {
  using U = UIntOf<V>;
  const V a = as_float<V>(as_uint(x) & get<U>(c.abs));
  const V y = a + get<V>(c.half_pi);
  one = y == get<V>(c.half_pi);
  const V t = fma(y, get<V>(c.inv_pi), get<V>(c.shift));
  const V nh = (t - get<V>(c.shift)) - get<V>(c.half);
  V r = fnma(nh, get<V>(c.pi1), a);
  r = fnma(nh, get<V>(c.pi2), r);
  if constexpr (kThree) r = fnma(nh, get<V>(c.pi3), r);
  return as_float<V>(as_uint(r) ^ (as_uint(t) << 31));
}

// ---- plain class ------------------------------------------------------------------
//
// sin r ~ r + r^3 (e1 + e2 r^2 + e3 r^4 + e4 r^6) on |r| <= pi/2, result
// fma(P, r^2 r, r).
struct FullRows : trigf::BoundRows<kBoundBits> {
  Row<float> inv_pi = row(kInvPi), shift = row(kShift), half_pi = row(kHalfPi), half = row(0.5f), pi1 = row(kPi1),
             pi2 = row(kPi2), pi3 = row(kPi3), one = row(1.0f),
             e1 = row(f32_bits(0xbe2aaaa6u)),  // -0.166666597
      e2 = row(f32_bits(0x3c088764u)),         // 0.00833306089
      e3 = row(f32_bits(0xb94fb6cfu)),         // -0.000198091599
      e4 = row(f32_bits(0x362ec335u));         // 2.60416459e-06
};
inline constexpr FullRows kFullRows{};

struct CosfFull : trigf::FullRangeKernel<Cosf, kFullRows> {
  template <int L> static RAVL_INLINE Vec<float, L> vec(Vec<float, L> x) {
    using V = Vec<float, L>;
    const FullRows& c = rows(kFullRows);
    MaskOf<V> one;
    const V r = reduce_fast<true>(x, c, one);
    const V r2 = r * r;
    const V p = fma(fma(fma(get<V>(c.e4), r2, get<V>(c.e3)), r2, get<V>(c.e2)), r2, get<V>(c.e1));
    return select(one, get<V>(c.one), fma(p, r2 * r, r));
  }
};

// ---- reduced classes (_native, _half, _rm) ----------------------------------------------
//
// pi in two pieces; sin r ~ a1 r + a3 r^3 + a5 r^5 (a1 = 0.999885321, not 1:
// the error is spread over the interval), result fma(P r^2, r, a1 r).
struct FastRows : trigf::BoundRows<kBoundBits> {
  Row<float> inv_pi = row(kInvPi), shift = row(kShift), half_pi = row(kHalfPi), half = row(0.5f), pi1 = row(kPi1),
             pi2 = row(kPi2), one = row(1.0f),
             a1 = row(f32_bits(0x3f7ff87cu)),  // 0.999885321
      a3 = row(f32_bits(0xbe29e73fu)),         // -0.165921196
      a5 = row(f32_bits(0x3bf84524u));         // 0.00757660158
};
inline constexpr FastRows kFastRows{};

struct CosfFast : trigf::FullRangeKernel<Cosf, kFastRows> {
  template <int L> static RAVL_INLINE Vec<float, L> vec(Vec<float, L> x) {
    using V = Vec<float, L>;
    const FastRows& c = rows(kFastRows);
    MaskOf<V> one;
    const V r = reduce_fast<false>(x, c, one);
    const V r2 = r * r;
    const V p = fma(get<V>(c.a5), r2, get<V>(c.a3));
    return select(one, get<V>(c.one), fma(p * r2, r, r * get<V>(c.a1)));
  }
};

}  // namespace cosf_detail

namespace cosf_k {
using full = cosf_detail::CosfFull;
using fast = cosf_detail::CosfFast;
}  // namespace cosf_k

}  // namespace ravl

#include "entries/cosf.inc"
