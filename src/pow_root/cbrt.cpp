// Cube root on double lanes (family cbrt) and on single lanes (family cbrtf).
//
// The vector path serves every normal finite x, negative ones included (the
// sign is carried into the scale S); the reduction is in cbrt_core.h. Zeros,
// subnormals, infinities and NaN go to the scalar routine of the precision,
// which every class shares:
//   +-inf, NaN -> x + x; +-0 -> x; subnormal x -> cbrt(x 2^300) 2^-100
//   (single: cbrt(x 2^24) 2^-8) through the full class's arithmetic.
//
// Classes and measured max errors (against MPFR; tests/accuracy_test.cpp
// keeps and asserts the bounds):
//   cbrt    plain     P of degree 7      0.5112 ulp
//   cbrt    _native   P of degree 2      1.675e7 ulp (relative 1.9e-9)
//   cbrtf   plain     P of degree 3      0.5106 ulp
//   cbrtf   _native   P = 1/3            355.4 ulp
// (cbrt: 5e6 doubles of both signs, denormals included; cbrtf: every
// positive single, and f(-x) = -f(x) bit for bit.)
#include "pow_root/cbrt_core.h"

namespace ravl {
namespace cbrt_detail {

using namespace cbrt_core;  // the reduction, the kernel and its polynomials

// P(u) ~ ((1 + u)^(1/3) - 1)/u = 1/3 - u/9 + 5/81 u^2 - 10/243 u^3 + ...,
// the plain class's degree 7 tuned on |u| <= 1/65.
struct CbrtFullRows : ReduceRows<cbrt_core::kCbrtBase> {
  Row<double> p7 = row(f64_bits(0xbf9036de5c9cc8e7ull)),  // -0.015834307100882319
      p6 = row(f64_bits(0x3f93750ad588f115ull)),          // 0.019001168521058782
      p5 = row(f64_bits(0xbf98090d6221a247ull)),          // -0.023472031702484377
      p4 = row(f64_bits(0x3f9ee7113506ac12ull)),          // 0.03017832647462277
      p3 = row(f64_bits(0xbfa511e8d2b3183bull)),          // -0.041152263374485597 (-10/243)
      p2 = row(f64_bits(0x3faf9add3c0ca458ull)),          // 0.061728395061728392 (5/81)
      p1 = row(f64_bits(0xbfbc71c71c71c71cull)),          // -0.1111111111111111 (-1/9)
      p0 = row(f64_bits(0x3fd5555555555555ull));          // 0.33333333333333331 (1/3)
};
inline constexpr CbrtFullRows kCbrtFullRows{};
// _native: the series to degree 2.
struct CbrtFastRows : ReduceRows<cbrt_core::kCbrtBase> {
  Row<double> p2 = row(f64_bits(0x3faf9add3c0ca458ull)), p1 = row(f64_bits(0xbfbc71c71c71c71cull)),
              p0 = row(f64_bits(0x3fd5555555555555ull));
};
inline constexpr CbrtFastRows kCbrtFastRows{};

// Single: the series to degree 3 (plain), its constant term (_native).
struct CbrtfFullRows : ReduceRowsf<cbrt_core::kCbrtBasef> {
  Row<float> p3 = row(f32_bits(0xbd288f47u)),  // -0.0411522649
      p2 = row(f32_bits(0x3d7cd6eau)),         // 0.0617283955
      p1 = row(f32_bits(0xbde38e39u)),         // -0.111111112
      p0 = row(f32_bits(0x3eaaaaabu));         // 0.333333343
};
inline constexpr CbrtfFullRows kCbrtfFullRows{};
struct CbrtfFastRows : ReduceRowsf<cbrt_core::kCbrtBasef> {
  Row<float> p0 = row(f32_bits(0x3eaaaaabu));
};
inline constexpr CbrtfFastRows kCbrtfFastRows{};

RAVL_INLINE int cbrt_scalar(const double* x, double* r);
RAVL_INLINE int cbrtf_scalar(const float* x, float* r);

using CbrtFull = RootKernel<double, kCbrtFullRows, false, Poly7, cbrt_scalar>;
using CbrtFast = RootKernel<double, kCbrtFastRows, false, Poly2, cbrt_scalar>;
using CbrtfFull = RootKernel<float, kCbrtfFullRows, false, Poly3, cbrtf_scalar>;
using CbrtfFast = RootKernel<float, kCbrtfFastRows, false, Poly0, cbrtf_scalar>;

template <class T> RAVL_INLINE T twice(T x) { return x + x; }
template <class T> RAVL_INLINE T itself(T x) { return x; }

RAVL_INLINE int cbrt_scalar(const double* x, double* r) {
  return cbrt_core::root_scalar<CbrtFull, 300, -100>(x, r, twice<double>, itself<double>, kStatusOk);
}
RAVL_INLINE int cbrtf_scalar(const float* x, float* r) {
  return cbrt_core::root_scalar<CbrtfFull, 24, -8>(x, r, twice<float>, itself<float>, kStatusOk);
}

}  // namespace cbrt_detail

namespace cbrt_k {
using full = cbrt_detail::CbrtFull;
using fast = cbrt_detail::CbrtFast;
}  // namespace cbrt_k
namespace cbrtf_k {
using full = cbrt_detail::CbrtfFull;
using fast = cbrt_detail::CbrtfFast;
}  // namespace cbrtf_k

}  // namespace ravl

#include "entries/cbrt.inc"
#include "entries/cbrtf.inc"
