// 1 / x on double lanes (family inv) and on single lanes (family invf).
//
// inv: the same code in all four classes, the correctly rounded IEEE division
// 1.0 / x (0 ulp for every input; +-0 gives +-infinity, +-infinity gives +-0,
// NaN stays NaN). No lane test, no callout.
//
// invf plain and _rm: the correctly rounded division 1.0f / x, no callout.
// invf _native and _half: the hardware reciprocal approximation of x with no
// refinement step, relative error at most 1.5 * 2^-12 (the instruction's
// bound; it is the whole error, the result is not rounded again; measured
// 3.15e-4 = 2^-11.63 over every significand of [1, 2) in tests/exact_test.cpp,
// and rcp depends on the significand only). Lanes where that approximation is
// not usable go to the scalar routine, which returns the IEEE reciprocal:
//   |x| < 2^-126 (zeros, subnormals: rcp treats them as zero), and
//   |x| > 0x1.ffd000p+125 (bits above 0x7E7FE800: 1/x is within 1.5 * 2^-12
//   of 2^-126, where rcp could return a subnormal and flush it to zero),
//   infinities and NaN included.
//
// Width 3: the ignored fourth lane is set to 0.75 and never flagged.
#include "frame/entry.h"

namespace ravl {
namespace inv_detail {

// The single lane test of the approximate classes: (bits(x) - 0x00800000)
// with the sign cleared, as a signed integer, above 0x7DFFE800. Subtracting
// the smallest normal's pattern wraps zeros and subnormals to the top of the
// range; what stays below the bound is 2^-126 <= |x| <= bits 0x7E7FE800,
// 2^126 (1 - 1.5 * 2^-12): 0x1800 units in the last place below 2^126, the
// rcp error bound.
constexpr int32_t kMinNormalBitsf = 0x00800000;
constexpr int32_t kInvfBound = 0x7dffe800;

// The single reciprocal callout: the correctly rounded 1 / x; status pole
// when x is zero, else ok.
RAVL_INLINE int invf_scalar(const float* x, float* r) {
  *r = 1.0f / *x;
  return *x == 0.0f ? kStatusPole : kStatusOk;
}

template <class T> struct InvBase : frame::Kernel {
  using sig = T(T);
  static constexpr bool has_width3_fill = true;
  static constexpr double width3_fill = 0.75;
};

// Division 1 / x, correctly rounded: inv in every class, invf plain and _rm.
template <class T> struct InvDivide : InvBase<T> {
  template <int L> static RAVL_INLINE Vec<T, L> vec(Vec<T, L> x) { return Vec<T, L>(T(1)) / x; }
};

// invf _native and _half: rcp(x) alone.
struct InvfFast : InvBase<float> {
  static constexpr bool has_callout = true;
  template <int L> static RAVL_INLINE Vec<float, L> vec(Vec<float, L> x) { return rcp_approx(x); }
  template <int L> static RAVL_INLINE Mask<float, L> special(Vec<float, L> x, Vec<float, L>) {
    using I = Vec<int32_t, L>;
    return ((as_int(x) - I(kMinNormalBitsf)) & I(0x7fffffff)) > I(kInvfBound);
  }
  static RAVL_INLINE int scalar(const float* x, float* r) { return invf_scalar(x, r); }
};

}  // namespace inv_detail

namespace inv_k {
using full = inv_detail::InvDivide<double>;
}  // namespace inv_k
namespace invf_k {
using full = inv_detail::InvDivide<float>;
using fast = inv_detail::InvfFast;
}  // namespace invf_k

}  // namespace ravl

#include "entries/inv.inc"
#include "entries/invf.inc"
