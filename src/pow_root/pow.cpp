// x^y on double lanes (family pow) and on single lanes (family powf), with
// the C99 and OpenCL special values: negative x with an integer y gives the
// signed power, with any other finite y a NaN.
//
// Every member computes all lanes on a branch-free vector path and sends the
// lanes that path cannot serve to the scalar routine of its precision (the
// same for every class): x that is not a positive, normal, finite number,
// NaN or infinite y, and results at or beyond the edges of the normal range.
// The routines give the special values of the callout table and compute the
// rest with the accurate routine of pow_core.h (log2 |x| to about 2^-70,
// exact products, a denormal result rounded once); the single routine runs
// the double one and rounds its result once to single.
//
// Classes and measured max errors (against MPFR; random bit patterns of x
// and y and the hard regions: x near 1 with large |y|, results near the
// overflow and underflow bounds, negative x with integer y):
//   pow   plain              accurate log2/exp2 path     see kBounds in tests (0.52 ulp)
//   pow   _native _rm        fast natural-log path       relative 1.4e-8 (the chord)
//   powf  plain              fast natural-log path in double, rounded to single
//   powf  _native _rm        reduced single path
#include "pow_root/pow_core.h"

namespace ravl {
namespace pow_detail {

using namespace pow_core;

RAVL_INLINE int pow_scalar(const double* x, const double* y, double* r) { return pow_rules(*x, *y, r); }
RAVL_INLINE int powf_scalar(const float* x, const float* y, float* r) {
  double d;
  const int s = pow_rules(*x, *y, &d);
  return narrow(s, d, r);
}

struct PowFull : MarkedKernel<double, double, pow_scalar> {
  template <int L> static RAVL_INLINE Vec<double, L> vec(Vec<double, L> x, Vec<double, L> y) {
    return on_chunk([](F64x4 a, F64x4 b) __attribute__((always_inline)) { return pow_accurate(a, b); }, x, y);
  }
};
struct PowFast : MarkedKernel<double, double, pow_scalar> {
  template <int L> static RAVL_INLINE Vec<double, L> vec(Vec<double, L> x, Vec<double, L> y) {
    return on_chunk([](F64x4 a, F64x4 b) __attribute__((always_inline)) { return pow_fast(a, b); }, x, y);
  }
};
struct PowfFull : MarkedKernel<float, float, powf_scalar> {
  template <int L> static RAVL_INLINE Vec<float, L> vec(Vec<float, L> x, Vec<float, L> y) {
    if constexpr (L == 8) return powf_in_double8(x, y);
    else return on_singles([](F64x4 a, Vec<float, 4> b) __attribute__((always_inline)) { return powf_in_double(a, convert<double>(b)); }, x, y);
  }
};
struct PowfFast : MarkedKernel<float, float, powf_scalar> {
  template <int L> static RAVL_INLINE Vec<float, L> vec(Vec<float, L> x, Vec<float, L> y) { return pow_reduced(x, y); }
};

}  // namespace pow_detail

namespace pow_k {
using full = pow_detail::PowFull;
using fast = pow_detail::PowFast;
}  // namespace pow_k
namespace powf_k {
using full = pow_detail::PowfFull;
using fast = pow_detail::PowfFast;
}  // namespace powf_k

}  // namespace ravl

#include "entries/pow.inc"
#include "entries/powf.inc"
