// ln |Gamma(x)| on double lanes (family lgamma) and on single lanes (family
// lgammaf), plain class only.
//
// Every member computes all lanes on the branch-free vector path of
// gamma_erf/gamma_core.h (Stirling's series after a shift of x to [8, 9) by a
// double-word product, in double-word arithmetic with pow_core's accurate
// logarithm), which serves x in [2^-1000, 2^1000] away from the zeros at 1
// and 2; the other lanes (|x - 1| or |x - 2| below 1/16, negative x, zeros,
// infinities, NaN, tiny and huge x) go to the scalar routine of the same
// file: the Taylor series at 1 and 2, the reflection for negative x, and the
// C99 special values (+inf at the poles 0 and the negative integers and at
// +-inf, NaN -> NaN).
//
// lgammaf: the double path on the widened lanes, rounded once; its scalar
// routine is the double one, rounded once.
//
// Measured max errors (against MPFR; tests/accuracy_rows.cpp keeps the asserted bounds):
//   lgamma  0.87 ulp over the sampled ranges, 1.08 over the doubles nearest each
//           negative zero of ln |Gamma| (the polynomials about them); bound 4
//   lgammaf 0.5 ulp (the double path's error is far below a single ulp)
#include "gamma_erf/gamma_core.h"

namespace ravl {
namespace lgamma_detail {

using namespace gamma_core;

RAVL_INLINE int lgamma_scalar(const double* x, double* r) {
  int32_t sign;
  return lgamma_rules(*x, r, &sign);
}
RAVL_INLINE int lgammaf_scalar(const float* x, float* r) {
  int32_t sign;
  return lgammaf_rules(*x, r, &sign);
}

struct Lgamma : MarkedKernel1<double, lgamma_scalar> {
  template <int L> static RAVL_GAMMA_BODY Vec<double, L> vec(Vec<double, L> x) {
    return on_doubles([](F64x4 a) __attribute__((always_inline)) { return lgamma_vec4(a); }, x);
  }
};
struct Lgammaf : MarkedKernel1<float, lgammaf_scalar> {
  template <int L> static RAVL_GAMMA_BODY Vec<float, L> vec(Vec<float, L> x) {
    return via_double<L>(x, [](F64x4 a) __attribute__((always_inline)) { return lgammaf_vec4(a); });
  }
};

}  // namespace lgamma_detail

namespace lgamma_k { using full = lgamma_detail::Lgamma; }
namespace lgammaf_k { using full = lgamma_detail::Lgammaf; }

}  // namespace ravl

#include "entries/lgamma.inc"
#include "entries/lgammaf.inc"
