// Gamma(x) on double lanes (family tgamma) and on single lanes (family
// tgammaf), plain class only.
//
// Every member computes all lanes on the branch-free vector path of
// gamma_erf/gamma_core.h: 2^(log2 Gamma(z)) / P with z = x + n >= 8, the
// exponent a double-word Stirling sum (pow_core's accurate logarithm and
// power of two), P the double-word product x (x + 1) ... (x + n - 1); it
// serves x in [2^-1000, 171.6]. The other lanes go to the scalar routine:
// the reflection for negative x (signs and denormal results rounded once),
// 1/x for |x| < 2^-60, the last stretch below the overflow threshold
// 171.62437695630271 (the next double up gives +inf), and the C99 special
// values (+-0 -> +-inf, negative integers and -inf -> NaN, +inf -> +inf, NaN
// -> NaN). Gamma(n) = (n - 1)! comes out exactly for every n whose
// factorial is a double (n <= 23).
//
// tgammaf: the double path on the widened lanes, rounded once (overflow from
// 35.0401 and the denormal results on the negative axis by that rounding);
// its scalar routine is the double one, rounded once.
//
// Measured max errors (against MPFR; tests/accuracy_rows.cpp keeps the asserted bounds):
//   tgamma  0.73 ulp (denormal results near -170.7), 0.51 elsewhere; bound 2
//   tgammaf 0.74 ulp (exp_fast's chord, 1.4e-8 relative, before the rounding)
#include "gamma_erf/gamma_core.h"

namespace ravl {
namespace tgamma_detail {

using namespace gamma_core;

RAVL_INLINE int tgamma_scalar(const double* x, double* r) { return tgamma_rules(*x, r); }
RAVL_INLINE int tgammaf_scalar(const float* x, float* r) { return tgammaf_rules(*x, r); }

struct Tgamma : MarkedKernel1<double, tgamma_scalar> {
  template <int L> static RAVL_GAMMA_BODY Vec<double, L> vec(Vec<double, L> x) {
    return on_doubles([](F64x4 a) __attribute__((always_inline)) { return tgamma_vec4(a); }, x);
  }
};
struct Tgammaf : MarkedKernel1<float, tgammaf_scalar> {
  template <int L> static RAVL_GAMMA_BODY Vec<float, L> vec(Vec<float, L> x) {
    return via_double<L>(x, [](F64x4 a) __attribute__((always_inline)) { return tgammaf_vec4(a); });
  }
};

}  // namespace tgamma_detail

namespace tgamma_k { using full = tgamma_detail::Tgamma; }
namespace tgammaf_k { using full = tgamma_detail::Tgammaf; }

}  // namespace ravl

#include "entries/tgamma.inc"
#include "entries/tgammaf.inc"
