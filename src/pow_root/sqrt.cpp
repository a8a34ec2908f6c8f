// sqrt(x) on double lanes (family sqrt) and on single lanes (family sqrtf).
//
// Classes and measured max errors (every positive single; the double and
// the correctly rounded singles bit for bit in tests/exact_test.cpp):
//   sqrt    plain _native _half   one body: the hardware square root,
//                                 correctly rounded
//   sqrtf   plain                 the hardware square root, correctly rounded
//   sqrtf   _native               x * rsqrt_estimate(x), no lane test:
//                                 on normal x within 6144.5 ulp (the
//                                 estimate's relative error, at most
//                                 1.5 * 2^-12 on any processor; measured
//                                 over every normal single 4095 ulp on
//                                 Ice Lake, 4156 on Zen 3);
//                                 denormal x give +inf (the estimate of a
//                                 denormal is that of 0)
//   sqrtf   _half                 the same product, the same bound; zeros,
//                                 denormals, negative numbers, infinities
//                                 and NaN go to the scalar routine
//
// The correctly rounded classes take every IEEE special value from the
// instruction: sqrt(-0) = -0, sqrt(x < 0) = NaN, sqrt(+inf) = +inf. Width 3
// computes four lanes; its ignored fourth lane is set to 0.75 first, so it
// never raises the invalid-operation flag.
//
// sqrtf _native keeps the bare product even where it is wrong: sqrt(+-0) is
// 0 * inf = NaN and sqrt(+inf) is inf * 0 = NaN (the native class's trade).
#include "pow_root/roots.h"

namespace ravl {
namespace sqrt_detail {

// The correctly rounded square root: the instruction, no lane test.
template <class T> struct SqrtFull : frame::Kernel {
  using sig = T(T);
  static constexpr bool has_width3_fill = true;
  static constexpr double width3_fill = 0.75;
  template <int L> static RAVL_INLINE Vec<T, L> vec(Vec<T, L> x) { return sqrt_hw(x); }
};

// x * e with e the hardware reciprocal-square-root estimate of x.
struct SqrtfFast : frame::Kernel {
  using sig = float(float);
  template <int L> static RAVL_INLINE Vec<float, L> vec(Vec<float, L> x) { return x * rsqrt_approx(x); }
};

// The sqrtf half routine: the IEEE square root of every single it gets
// (-inf and negative numbers NaN with status domain; +inf and NaN x + x;
// +-0 itself; a positive subnormal through the double square root, which is
// exact on the square of a 24-bit number and rounds to single correctly:
// 53 >= 2 * 24 + 2).
RAVL_INLINE int sqrtf_half_scalar(const float* xp, float* rp) {
  const float x = *xp;
  if (x < 0.0f) {
    *rp = roots::domain_nan<float>();
    return kStatusDomain;
  }
  if (!(x > 0.0f) || x == f32_bits(0x7f800000u)) {
    *rp = x == 0.0f ? x : x + x;
    return kStatusOk;
  }
  *rp = (float)sqrt_hw(F64x2((double)x))[0];
  return kStatusOk;
}

// sqrtf _half: the fast product on positive normal singles; the rest through
// the scalar routine.
struct SqrtfHalf : SqrtfFast {
  static constexpr bool has_callout = true;
  template <int L> static RAVL_INLINE Mask<float, L> special(Vec<float, L> x, Vec<float, L>) {
    using I = Vec<int32_t, L>;
    return as_int(x) + I(roots::kPosNormalOffsetf) > I(roots::kPosNormalTopf);
  }
  static RAVL_INLINE int scalar(const float* x, float* r) { return sqrtf_half_scalar(x, r); }
};

}  // namespace sqrt_detail

namespace sqrt_k {
using full = sqrt_detail::SqrtFull<double>;
}  // namespace sqrt_k
namespace sqrtf_k {
using full = sqrt_detail::SqrtFull<float>;
using fast = sqrt_detail::SqrtfFast;
using half = sqrt_detail::SqrtfHalf;
}  // namespace sqrtf_k

}  // namespace ravl

#include "entries/sqrt.inc"
#include "entries/sqrtf.inc"
