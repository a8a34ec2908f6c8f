// Reciprocal cube root on double lanes (family rcbrt) and on single lanes
// (family rcbrtf).
//
// The vector path serves every normal finite x, negative ones included (the
// sign is carried into the scale S); the reduction is in cbrt_core.h. Zeros,
// subnormals, infinities and NaN go to the scalar routine of the precision,
// which every class shares:
//   +-inf -> +-0 (0/x); NaN -> x/x; +-0 -> +-inf (1/x, status pole);
//   subnormal x -> rcbrt(x 2^90) 2^30 (single: rcbrt(x 2^24) 2^8) through
//   the full class's arithmetic.
//
// Classes and measured max errors (against MPFR; tests/accuracy_test.cpp
// keeps and asserts the bounds):
//   rcbrt   plain     P of degree 7      0.5385 ulp
//   rcbrt   _native   P of degree 2      7.326e7 ulp (relative 8.1e-9)
//   rcbrtf  plain     P of degree 3      0.5129 ulp
//   rcbrtf  _native   P = -1/3           888.7 ulp
// (rcbrt: 5e6 doubles of both signs, denormals included; rcbrtf: every
// positive single, and f(-x) = -f(x) bit for bit.)
#include "pow_root/cbrt_core.h"

namespace ravl {
namespace rcbrt_detail {

using namespace cbrt_core;  // the reduction, the kernel and its polynomials

// P(u) ~ ((1 + u)^(-1/3) - 1)/u = -1/3 + 2/9 u - 14/81 u^2 + 35/243 u^3 - ...,
// the plain class's degree 7 tuned on |u| <= 1/65.
struct RcbrtFullRows : ReduceRows<cbrt_core::kRcbrtBase> {
  Row<double> p7 = row(f64_bits(0x3fb791d4f50a7b47ull)),  // 0.092068967651795494
      p6 = row(f64_bits(0xbfb9b33ca7a65562ull)),          // -0.10039118855487097
      p5 = row(f64_bits(0x3fbc67c9dd3d11bbull)),          // 0.11095868731815177
      p4 = row(f64_bits(0xbfbff4c33f90ef5full)),          // -0.12482853223712941
      p3 = row(f64_bits(0x3fc26fabb85d0196ull)),          // 0.14403292181124233 (35/243)
      p2 = row(f64_bits(0xbfc61f9add3c0ca3ull)),          // -0.17283950617283947 (-14/81)
      p1 = row(f64_bits(0x3fcc71c71c71c71cull)),          // 0.22222222222222221 (2/9)
      p0 = row(f64_bits(0xbfd5555555555555ull));          // -0.33333333333333331 (-1/3)
};
inline constexpr RcbrtFullRows kRcbrtFullRows{};
// _native: the series to degree 2.
struct RcbrtFastRows : ReduceRows<cbrt_core::kRcbrtBase> {
  Row<double> p2 = row(f64_bits(0xbfc61f9add3c0ca3ull)), p1 = row(f64_bits(0x3fcc71c71c71c71cull)),
              p0 = row(f64_bits(0xbfd5555555555555ull));
};
inline constexpr RcbrtFastRows kRcbrtFastRows{};

// Single: the series to degree 3 (plain), its constant term (_native).
struct RcbrtfFullRows : ReduceRowsf<cbrt_core::kRcbrtBasef> {
  Row<float> p3 = row(f32_bits(0x3e137d5eu)),  // 0.144032925 (35/243)
      p2 = row(f32_bits(0xbe30fcd7u)),         // -0.172839507 (-14/81)
      p1 = row(f32_bits(0x3e638e39u)),         // 0.222222224 (2/9)
      p0 = row(f32_bits(0xbeaaaaabu));         // -0.333333343 (-1/3)
};
inline constexpr RcbrtfFullRows kRcbrtfFullRows{};
struct RcbrtfFastRows : ReduceRowsf<cbrt_core::kRcbrtBasef> {
  Row<float> p0 = row(f32_bits(0xbeaaaaabu));
};
inline constexpr RcbrtfFastRows kRcbrtfFastRows{};

RAVL_INLINE int rcbrt_scalar(const double* x, double* r);
RAVL_INLINE int rcbrtf_scalar(const float* x, float* r);

using RcbrtFull = RootKernel<double, kRcbrtFullRows, true, Poly7, rcbrt_scalar>;
using RcbrtFast = RootKernel<double, kRcbrtFastRows, true, Poly2, rcbrt_scalar>;
using RcbrtfFull = RootKernel<float, kRcbrtfFullRows, true, Poly3, rcbrtf_scalar>;
using RcbrtfFast = RootKernel<float, kRcbrtfFastRows, true, Poly0, rcbrtf_scalar>;

// +-inf -> +-0, NaN -> NaN (0/x); +-0 -> +-inf (1/x).
template <class T> RAVL_INLINE T zero_over(T x) { return T(0) / x; }
template <class T> RAVL_INLINE T one_over(T x) { return T(1) / x; }

RAVL_INLINE int rcbrt_scalar(const double* x, double* r) {
  return cbrt_core::root_scalar<RcbrtFull, 90, 30>(x, r, zero_over<double>, one_over<double>, kStatusPole);
}
RAVL_INLINE int rcbrtf_scalar(const float* x, float* r) {
  return cbrt_core::root_scalar<RcbrtfFull, 24, 8>(x, r, zero_over<float>, one_over<float>, kStatusPole);
}

}  // namespace rcbrt_detail

namespace rcbrt_k {
using full = rcbrt_detail::RcbrtFull;
using fast = rcbrt_detail::RcbrtFast;
}  // namespace rcbrt_k
namespace rcbrtf_k {
using full = rcbrt_detail::RcbrtfFull;
using fast = rcbrt_detail::RcbrtfFast;
}  // namespace rcbrtf_k

}  // namespace ravl

#include "entries/rcbrt.inc"
#include "entries/rcbrtf.inc"
