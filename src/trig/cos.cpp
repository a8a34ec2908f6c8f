// Cosine on double lanes (family cos), every finite argument.
//
// The vector path computes the cosine as a sine: y = pi/2 - |x|, N =
// round(y/pi), r = (1/2 - N) pi - |x| = y - N pi (the pieces of pi scaled by
// 1/2 - N, so that pi/2 is never rounded on its own), the sign of r flipped
// for odd N, and cos(x) = sin(r) by an odd polynomial. A lane whose y is pi/2
// itself (|x| below half an ulp of pi/2) takes exactly 1. Lanes with
// |pi/2 - |x|| > 2^23 (unordered compare: NaN and infinities too) are flagged:
// - plain class: the inline pass computes the full-range reduction of x (the
//   bits of 1/(2 pi) chosen by the exponent, trig/trigd_reduce.h) for the
//   chunk and blends it into the finite flagged lanes; infinities and NaN go
//   to the scalar routine;
// - reduced classes (_native, _half, _rm): every flagged lane goes to the
//   scalar routine, which reduces by pieces of pi/4 or by the chunks of 4/pi.
// The scalar routine, shared by every class:
//   +-inf -> NaN (x * 0, status 1), NaN -> x * x, +-0 -> 1,
//   0 < |x| < 2^-252 -> 1 - |x|, any other x -> cos x within 0.51 ulp.
//
// Classes and measured max errors (tests/accuracy_test.cpp against MPFR; the
// test asserts the bounds kept in its table):
//   cos   plain                 full   see CosFull
//   cos   _native _half _rm     fast   see CosFast
#include "frame/entry.h"
#include "trig/sin_cos_common.h"

namespace ravl {
namespace cos_detail {

using sin_cos::horner;
using trigd::Fn;

// |pi/2 - |x|| above 2^23 = 8388608 (0x4160000000000000), or NaN, leaves the
// fast reduction.
constexpr double kBound = f64_bits(0x4160000000000000ull);

// Degree-15 kernel of the plain class: sin(r) ~ r + r^3 P(r^2), P of degree 6
// (c1..c7 of r^3..r^15), a coefficient set of its own (not sin's).
constexpr double kC[7] = {
    f64_bits(0xbfc55555555554a7ull),  // c1 = -0.16666666666666183
    f64_bits(0x3f8111111110a4a8ull),  // c2 = 0.0083333333332851894
    f64_bits(0xbf2a01a019a5b87bull),  // c3 = -0.00019841269824944275
    f64_bits(0x3ec71de38030fea0ull),  // c4 = 2.755731658449074e-06
    f64_bits(0xbe5ae63546002231ull),  // c5 = -2.5051879126742989e-08
    f64_bits(0x3de60e6857a2f220ull),  // c6 = 1.6048055576979365e-10
    f64_bits(0xbd69f0d60811aac8ull),  // c7 = -7.3728090972650701e-13
};
inline constexpr sin_cos::FullRows kFullRows{kBound, kC};
inline constexpr sin_cos::FastRows kFastRows{kBound, sin_cos::kD};

// Every class: the lane test |pi/2 - |x|| > 2^23 or NaN, the scalar routine,
// and the vector path with pi in kPieces pieces and the kernel of kRows.
template <const auto& kRows, int kPieces> struct CosKernel : sin_cos::KernelBase<Fn::kEven> {
  template <int L> static RAVL_INLINE Mask<double, L> special(Vec<double, L> x, Vec<double, L>) {
    using V = Vec<double, L>;
    using U = UIntOf<V>;
    const auto& c = rows(kRows);
    const V y = get<V>(c.pio2) - as_float<V>(as_uint(x) & get<U>(c.abs));
    return not_le(as_float<V>(as_uint(y) & get<U>(c.abs)), get<V>(c.bound));
  }
  // rs = +-(pi/2 - |x| - N pi) (sign flipped for odd N), cos(x) = rs + P(rs^2) rs^2 rs.
  template <int L> static RAVL_INLINE Vec<double, L> vec(Vec<double, L> x) {
    using V = Vec<double, L>;
    using U = UIntOf<V>;
    const auto& c = rows(kRows);
    const V a = as_float<V>(as_uint(x) & get<U>(c.abs));
    const V y = get<V>(c.pio2) - a;
    const V t = fma(y, get<V>(c.inv_pi), get<V>(c.shift));
    const V n = t - get<V>(c.shift);
    const V nh = get<V>(c.half) - n;
    V r = fma(nh, get<V>(c.pi1), -a);
    r = fma(nh, get<V>(c.pi2), r);
    if constexpr (kPieces == 3) r = fma(nh, get<V>(c.pi3), r);
    const V rs = as_float<V>(as_uint(r) ^ (as_uint(t) << 63));
    const V r2 = rs * rs;
    const V res = fma(horner(r2, c), r2 * rs, rs);
    return select(y == get<V>(c.pio2), get<V>(c.one), res);
  }
};

// Plain class: pi in three pieces, the degree-15 kernel, the full-range pass.
// Max error: tests/accuracy_test.cpp (kBounds, "cos" "full").
using CosFull = sin_cos::WithFullRange<CosKernel<kFullRows, 3>, Fn::kEven>;

// Reduced classes (_native, _half, _rm): pi in two pieces and the degree-9
// kernel; no inline pass, flagged lanes go to the scalar routine.
// Max error: tests/accuracy_test.cpp (kBounds, "cos" "fast").
using CosFast = CosKernel<kFastRows, 2>;

}  // namespace cos_detail

namespace cos_k {
using full = cos_detail::CosFull;
using fast = cos_detail::CosFast;
}  // namespace cos_k

}  // namespace ravl

#include "entries/cos.inc"
