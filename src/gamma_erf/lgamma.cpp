// ln |Gamma(x)| on double lanes (family lgamma) and on single lanes (family
// lgammaf), plain class only.
//
// Every member computes all lanes on the branch-free vector path of
// gamma_erf/gamma_core.h, which serves x in [2^-1000, 2^1000]: rows of width
// 1/8 on [1, 8) (c0 + u P(u), u = x - c exact, expanded about the zeros 1 and
// 2 so that the result keeps its relative accuracy there), ln Gamma(1 + x) -
// ln x below 1 (the log1p family's double-word ln), Stirling in ln from 8.
// The other lanes (negative x, zeros, infinities, NaN, tiny and huge x) go
// to the scalar routine of the same file: the reflection for negative x
// (with polynomials about the negative zeros of ln |Gamma|), -ln x below
// 2^-1000, x (ln x - 1) above 2^1000, and the C99 special values (+inf at
// the poles 0 and the negative integers and at +-inf, NaN -> NaN).
//
// lgammaf: the same forms in plain double on the widened lanes (shorter
// rows, pow_core's ln_fast), rounded once; its scalar routine is the double
// one, rounded once.
//
// Measured max errors (against MPFR; tests/accuracy_rows.cpp keeps the asserted bounds):
//   lgamma  positive x: 0.76 ulp (x = 1.1212857406640862, the row about the
//           zero 1), 0.51 elsewhere (ravl ulp, 2e5 inputs per range from 2^-1000
//           to 2^1000); negative x (the scalar routine): 0.87 over
//           the sampled ranges, 1.08 over the doubles nearest each negative
//           zero of ln |Gamma| (the polynomials about them); bound 4
//   lgammaf 0.5055 ulp (x = 0x1.1ff968p+0, the row about the zero 1) over every
//           positive single (ravl sweep lgammaf8 --range 0x1p-149:FLT_MAX); the
//           negative axis through the double scalar routine, rounded once: 0.5
//           ulp over every negative single (--range -8388608:-0x1p-149)
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
