// Gamma(x) on double lanes (family tgamma) and on single lanes (family
// tgammaf), plain class only.
//
// Every member computes all lanes on the branch-free vector path of
// gamma_erf/gamma_core.h: e^(hi + lo) with hi + lo = ln Gamma(x) from the
// lgamma family's vector forms (absolute error near 2^-60) and pow_core's
// accurate power of two; it serves x in [2^-1000, 171.6]. The other lanes go
// to the scalar routine: the reflection for negative x (signs and denormal
// results rounded once), 1/x for |x| < 2^-60, the last stretch below the
// overflow threshold 171.62437695630271 (the next double up gives +inf), and
// the C99 special values (+-0 -> +-inf, negative integers and -inf -> NaN,
// +inf -> +inf, NaN -> NaN). Gamma(n) = (n - 1)! comes out exactly for every
// n whose factorial is a double (n <= 23).
//
// tgammaf: the single forms of lgammaf in double and e^t by a degree-7
// polynomial of 2^f (no table), rounded once (overflow from 35.0401 and the
// denormal results on the negative axis by that rounding); its scalar
// routine is the double one, rounded once.
//
// Measured max errors (against MPFR; tests/accuracy_rows.cpp keeps the asserted bounds):
//   tgamma  0.73 ulp (denormal results near -170.7, the scalar routine), 0.52 on
//           the vector path (ravl ulp, 2e5 inputs per range over (0, 171.7]); bound 2
//   tgammaf 0.501 ulp (x = 0x1.e4dc58p-4) over every positive single up to 36
//           (ravl sweep tgammaf8 --range 0x1p-149:36); 0.5 ulp over every
//           negative single (--range -8388608:-0x1p-149)
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
