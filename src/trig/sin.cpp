// Sine on double lanes (family sin), every finite argument.
//
// The vector path removes N pi (N = round(|x|/pi)) from |x| and evaluates an
// odd polynomial on the reduced argument, with the sign of x and the parity
// of N restored by exclusive-or. Lanes with |x| > 2^24 (unordered compare:
// NaN too) are flagged:
// - plain class: the inline pass computes the full-range reduction (the bits
//   of 1/(2 pi) chosen by the exponent, trig/trigd_reduce.h) for the chunk
//   and blends it into the finite flagged lanes; infinities and NaN go to
//   the scalar routine;
// - reduced classes (_native, _half, _rm): every flagged lane goes to the
//   scalar routine, which reduces by pieces of pi/4 or by the chunks of 4/pi.
// The scalar routine, shared by every class:
//   +-inf -> NaN (x * 0, status 1), NaN -> x * x, +-0 -> x (sign kept),
//   0 < |x| < 2^-252 -> (2^55 x - x) 2^-55, any other x -> sin x within 0.51 ulp.
//
// Classes and measured max errors (tests/accuracy_test.cpp against MPFR; the
// test asserts the bounds kept in its table):
//   sin   plain                 full   see SinFull
//   sin   _native _half _rm     fast   see SinFast
#include "frame/entry.h"
#include "trig/sin_cos_common.h"

namespace ravl {
namespace sin_detail {

using sin_cos::horner;
using sin_cos::reduce_by_pi;
using trigd::Fn;

// |x| above 2^24 = 16777216 (0x4170000000000000), or NaN, leaves the fast reduction.
constexpr double kBound = f64_bits(0x4170000000000000ull);

// Degree-15 kernel of the plain class: sin(r) ~ r + r^3 P(r^2) on |r| <= pi/2,
// P of degree 6 (c1..c7 of r^3..r^15).
constexpr double kC[7] = {
    f64_bits(0xbfc55555555554a8ull),  // c1 = -0.16666666666666186
    f64_bits(0x3f8111111110a573ull),  // c2 = 0.0083333333332855416
    f64_bits(0xbf2a01a019a659ddull),  // c3 = -0.00019841269825056256
    f64_bits(0x3ec71de3806add1aull),  // c4 = 2.7557316600552628e-06
    f64_bits(0xbe5ae6355aaa4a53ull),  // c5 = -2.5051880273862881e-08
    f64_bits(0x3de60e6bee01d83eull),  // c6 = 1.6048095404959637e-10
    f64_bits(0xbd69f1517e9f65f0ull),  // c7 = -7.3733445331106646e-13
};
inline constexpr sin_cos::FullRows kFullRows{kBound, kC};
inline constexpr sin_cos::FastRows kFastRows{kBound, sin_cos::kD};

// Every class: the lane test |x| > 2^24 or NaN, the scalar routine, and the
// vector path with pi in kPieces pieces and the kernel of kRows.
template <const auto& kRows, int kPieces> struct SinKernel : sin_cos::KernelBase<Fn::kOdd> {
  template <int L> static RAVL_INLINE Mask<double, L> special(Vec<double, L> x, Vec<double, L>) {
    using V = Vec<double, L>;
    const auto& c = rows(kRows);
    return not_le(as_float<V>(as_uint(x) & get<UIntOf<V>>(c.abs)), get<V>(c.bound));
  }
  // rs = +-(|x| - N pi) (sign flipped for odd N), sin(x) = sign(x) (rs + rs^3 P(rs^2)).
  template <int L> static RAVL_INLINE Vec<double, L> vec(Vec<double, L> x) {
    using V = Vec<double, L>;
    using U = UIntOf<V>;
    const auto& c = rows(kRows);
    const V a = as_float<V>(as_uint(x) & get<U>(c.abs));
    U odd;
    const V rs = as_float<V>(as_uint(reduce_by_pi<kPieces>(a, c, odd)) ^ odd);
    const V r2 = rs * rs;
    const V y = fma(horner(r2, c) * r2, rs, rs);
    return as_float<V>(as_uint(y) ^ (as_uint(x) ^ as_uint(a)));
  }
};

// Plain class: pi in three pieces, the degree-15 kernel, the full-range pass.
// Max error: tests/accuracy_test.cpp (kBounds, "sin" "full").
using SinFull = sin_cos::WithFullRange<SinKernel<kFullRows, 3>, Fn::kOdd>;

// Reduced classes (_native, _half, _rm): pi in two pieces and the degree-9
// kernel; no inline pass, flagged lanes go to the scalar routine.
// Max error: tests/accuracy_test.cpp (kBounds, "sin" "fast").
using SinFast = SinKernel<kFastRows, 2>;

}  // namespace sin_detail

namespace sin_k {
using full = sin_detail::SinFull;
using fast = sin_detail::SinFast;
}  // namespace sin_k

}  // namespace ravl

#include "entries/sin.inc"
