// sin on single lanes (family sinf).
//
// Every class computes all lanes on a branch-free vector path for
// |x| <= 10000: N = nearest integer to |x|/pi, r = |x| - N pi with pi in
// three singles (plain) or two (the reduced classes), sin x = sign(x)
// (-1)^N sin r, a polynomial in r. Lanes with |x| above 10000, infinities and
// NaN are flagged; the inline pass computes the full-range reduction for the
// chunk (trig/trigf_reduce.h) and blends its value into the finite ones; the
// infinities and NaN go to the scalar routine:
//   +-inf -> NaN (x * 0, status 1), NaN -> x * x, +-0 -> x, any other finite
//   x -> the double scalar routine, rounded once to single.
//
// Classes and measured max errors (against MPFR over every single):
//   sinf   plain                 full   fast path 2.370 ulp (x = 0x1.30a25ep+12), full range 0.5005 ulp
//   sinf   _native _half _rm     fast   fast path 2524.5 ulp (the degree-5 kernel), full range 0.5005 ulp
#include "trig/trigf_reduce.h"

namespace ravl {
namespace sinf_detail {

// |x| above 10000 (0x461c4000), infinities and NaN leave the fast path.
constexpr uint32_t kBoundBits = 0x461c4000u;
constexpr float kInvPi = f32_bits(0x3ea2f983u);  // 1/pi = 0.318309873
constexpr float kShift = f32_bits(0x4b400000u);  // 1.5 2^23: rounds |t| < 2^22 to an integer in the low bits
// pi = kPi1 + kPi2 + kPi3: 3.14159274 (0x40490fdb), -8.74227766e-08
// (0xb3bbbd2e), -3.43024902e-15 (0xa7772ced).
constexpr float kPi1 = f32_bits(0x40490fdbu);
constexpr float kPi2 = f32_bits(0xb3bbbd2eu);
constexpr float kPi3 = f32_bits(0xa7772cedu);

// The full-range value and the scalar routine, shared by every class.
struct Sinf {
  template <int L> static RAVL_INLINE Vec<float, L> full(Vec<float, L> x) {
    using V = Vec<float, L>;
    const V y = trigf::eval_node(trigf_tables::kSinfNodes, trigf::reduce<false>(x));
    return as_float<V>(as_uint(y) ^ sign_bit(x));
  }
  static int scalar(const float* x, float* r) { return trigf::scalar_lane<trigd::sin_finite>(x, r, trigd::Fn::kOdd); }
};

// r = |x| - N pi with N = round(|x|/pi) by the shifter, the first two or all
// three pieces of pi subtracted by fused steps (the stored pieces two and
// three are negative, so the steps add their magnitudes); the sign of r is
// flipped for odd N (the lowest bit of t moved to the sign position); sx is
// the sign bit of x.
template <bool kThree, class V, class C> RAVL_INLINE V reduce_fast(V x, const C& c, UIntOf<V>& sx) {
  using U = UIntOf<V>;
  const V a = as_float<V>(as_uint(x) & get<U>(c.abs));
  sx = as_uint(x) ^ as_uint(a);
  const V t = fma(a, get<V>(c.inv_pi), get<V>(c.shift));
  const V n = t - get<V>(c.shift);
  V r = fnma(n, get<V>(c.pi1), a);
  r = fnma(n, get<V>(c.pi2), r);
  if constexpr (kThree) r = fnma(n, get<V>(c.pi3), r);
  return as_float<V>(as_uint(r) ^ (as_uint(t) << 31));
}

// ---- plain class ------------------------------------------------------------------
//
// sin r ~ r + r^3 (e1 + e2 r^2 + e3 r^4 + e4 r^6) on |r| <= pi/2, result
// fma(P r^2, r, r) with the sign of x.
struct FullRows : trigf::BoundRows<kBoundBits> {
  Row<float> inv_pi = row(kInvPi), shift = row(kShift), pi1 = row(kPi1), pi2 = row(kPi2), pi3 = row(kPi3),
             e1 = row(f32_bits(0xbe2aaaa6u)),   // -0.166666597
      e2 = row(f32_bits(0x3c088766u)),          // 0.00833306275
      e3 = row(f32_bits(0xb94fb7ffu)),          // -0.000198096022
      e4 = row(f32_bits(0x362edef8u));          // 2.60578054e-06
};
inline constexpr FullRows kFullRows{};

struct SinfFull : trigf::FullRangeKernel<Sinf, kFullRows> {
  template <int L> static RAVL_INLINE Vec<float, L> vec(Vec<float, L> x) {
    using V = Vec<float, L>;
    const FullRows& c = rows(kFullRows);
    UIntOf<V> sx;
    const V r = reduce_fast<true>(x, c, sx);
    const V r2 = r * r;
    const V p = fma(fma(fma(get<V>(c.e4), r2, get<V>(c.e3)), r2, get<V>(c.e2)), r2, get<V>(c.e1));
    const V y = fma(p * r2, r, r);
    return as_float<V>(as_uint(y) ^ sx);
  }
};

// ---- reduced classes (_native, _half, _rm) ----------------------------------------------
//
// pi in two pieces; sin r ~ a1 r + a3 r^3 + a5 r^5 (a1 = 0.999885321, not 1:
// the error is spread over the interval), result fma(P r^2, r, a1 r).
struct FastRows : trigf::BoundRows<kBoundBits> {
  Row<float> inv_pi = row(kInvPi), shift = row(kShift), pi1 = row(kPi1), pi2 = row(kPi2),
             a1 = row(f32_bits(0x3f7ff87cu)),  // 0.999885321
      a3 = row(f32_bits(0xbe29e72fu)),         // -0.165920958
      a5 = row(f32_bits(0x3bf84524u));         // 0.00757660158
};
inline constexpr FastRows kFastRows{};

struct SinfFast : trigf::FullRangeKernel<Sinf, kFastRows> {
  template <int L> static RAVL_INLINE Vec<float, L> vec(Vec<float, L> x) {
    using V = Vec<float, L>;
    const FastRows& c = rows(kFastRows);
    UIntOf<V> sx;
    const V r = reduce_fast<false>(x, c, sx);
    const V r2 = r * r;
    const V p = fma(get<V>(c.a5), r2, get<V>(c.a3));
    const V y = fma(p * r2, r, r * get<V>(c.a1));
    return as_float<V>(as_uint(y) ^ sx);
  }
};

}  // namespace sinf_detail

namespace sinf_k {
using full = sinf_detail::SinfFull;
using fast = sinf_detail::SinfFast;
}  // namespace sinf_k

}  // namespace ravl

#include "entries/sinf.inc"
