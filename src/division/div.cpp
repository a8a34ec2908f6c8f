// x / y on double lanes (family div) and on single lanes (family divf).
//
// Every member except the single-precision _native and _half ones computes
// the processor's correctly rounded IEEE division, so its result is the IEEE
// quotient bit for bit for every input, zeros, infinities and NaN included.
// The single-precision _native and _half members return x times the hardware
// reciprocal approximation of y, with no refinement step: rcp has relative
// error at most 1.5 * 2^-12 and the product adds one rounding, so they are
// within 1.5 * 2^-12 + 2^-24 (about 2^-11.4) relative of x / y on the lanes
// they compute themselves (measured 3.14e-4 = 2^-11.64 on 240000 random
// operand pairs, tests/exact_test.cpp). The lanes whose divisor is zero,
// subnormal or at least 2^126 in magnitude (where rcp flushes, or its result
// would be subnormal and flushed) go to the scalar routine and get the IEEE
// quotient.
//
// Classes:
//   div   plain                   division; y zero or subnormal to the callout
//   div   _native _half _rm       division; a cheaper lane test (below)
//   divf  plain _rm (one body)    division; no lane test
//   divf  _native _half           x * rcp(y); |y| < 2^-126 or >= 2^126 to the callout
// The double callout recomputes the same quotient as the vector path, so its
// lane test only decides which lanes take the slow path, never a result.
//
// Width 3: the ignored fourth lane of both operands is set to 0.75, so that
// lane computes 1 and is never flagged.
#include "frame/entry.h"

namespace ravl {
namespace div_detail {

// The double lane test of the plain class: the exponent field of y, kept as a
// double, equals 0.0 exactly when the field is zero (y is +-0 or subnormal).
// The masked pattern is never a NaN, so the ordered compare is safe.
constexpr uint64_t kExpField = 0x7ff0000000000000ull;
// The double lane test of the fast classes: y with the bits of the 32-bit
// pattern 0x3F800000 (1.0f) cleared in both halves, compared as a double with
// 0.0. It flags +-0 and a few normal patterns (for instance +-0.0078125, whose
// exponent field has only those bits set). The quotient of a flagged lane is
// recomputed by the same division, so only the path taken differs.
constexpr uint64_t kFastClear = 0x3f8000003f800000ull;

// The single lane test of the approximate classes: (bits(y) - 0x00800000)
// with the sign cleared, as a signed integer, above 0x7DFFFFFF. Subtracting
// the smallest normal's pattern wraps zeros and subnormals to the top of the
// range; what stays below the bound is 2^-126 <= |y| < 2^126. Infinities and
// NaN are above it.
constexpr int32_t kMinNormalBitsf = 0x00800000;
constexpr int32_t kDivfBound = 0x7dffffff;

// The division callouts: the correctly rounded scalar quotient; status pole
// when the divisor is zero (x / 0 is infinite, or NaN for 0 / 0), else ok.
RAVL_INLINE int div_scalar(const double* x, const double* y, double* r) {
  *r = *x / *y;
  return *y == 0.0 ? kStatusPole : kStatusOk;
}
RAVL_INLINE int divf_scalar(const float* x, const float* y, float* r) {
  *r = *x / *y;
  return *y == 0.0f ? kStatusPole : kStatusOk;
}

template <class T> struct DivBase : frame::Kernel {
  using sig = T(T, T);
  static constexpr bool has_width3_fill = true;
  static constexpr double width3_fill = 0.75;
};

// ---- double: division in every class, two lane tests --------------------------

template <uint64_t kClear> struct DivDouble : DivBase<double> {
  static constexpr bool has_callout = true;
  template <int L> static RAVL_INLINE Vec<double, L> vec(Vec<double, L> x, Vec<double, L> y) { return x / y; }
  template <int L>
  static RAVL_INLINE Mask<double, L> special(Vec<double, L>, Vec<double, L> y, Vec<double, L>) {
    using V = Vec<double, L>;
    using U = Vec<uint64_t, L>;
    return as_float<V>(as_uint(y) & U(kClear)) == V(0.0);
  }
  static RAVL_INLINE int scalar(const double* x, const double* y, double* r) { return div_scalar(x, y, r); }
};
// The plain test keeps the exponent field only; the fast test clears 1.0f's bits.
using DivFull = DivDouble<kExpField>;
using DivFast = DivDouble<~kFastClear>;

// ---- single, plain and _rm: division, nothing flagged ---------------------------

struct DivfFull : DivBase<float> {
  template <int L> static RAVL_INLINE Vec<float, L> vec(Vec<float, L> x, Vec<float, L> y) { return x / y; }
};

// ---- single, _native and _half: x * rcp(y) --------------------------------------
//
// Relative error of the product: (1 + e_rcp)(1 + e_mul) - 1 with
// |e_rcp| <= 1.5 * 2^-12 and |e_mul| <= 2^-24 when x / y is normal. For
// 2^-126 <= |y| < 2^126 the reciprocal lies in (2^-126, 2^126], a normal
// number that rcp does not flush.
struct DivfFast : DivBase<float> {
  static constexpr bool has_callout = true;
  template <int L> static RAVL_INLINE Vec<float, L> vec(Vec<float, L> x, Vec<float, L> y) {
    return x * rcp_approx(y);
  }
  template <int L>
  static RAVL_INLINE Mask<float, L> special(Vec<float, L>, Vec<float, L> y, Vec<float, L>) {
    using I = Vec<int32_t, L>;
    return ((as_int(y) - I(kMinNormalBitsf)) & I(0x7fffffff)) > I(kDivfBound);
  }
  static RAVL_INLINE int scalar(const float* x, const float* y, float* r) { return divf_scalar(x, y, r); }
};

}  // namespace div_detail

namespace div_k {
using full = div_detail::DivFull;
using fast = div_detail::DivFast;
}  // namespace div_k
namespace divf_k {
using full = div_detail::DivfFull;
using fast = div_detail::DivfFast;
}  // namespace divf_k

}  // namespace ravl

#include "entries/div.inc"
#include "entries/divf.inc"
