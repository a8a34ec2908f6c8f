// ln(x) on single lanes (family logf).
//
// Every member computes all lanes on a branch-free vector path and flags the
// lanes that are not positive normal numbers (negatives, zeros, denormals,
// +inf, NaN); those go to the one scalar routine every class shares (the full
// algorithm in double), so special inputs give the same result in every class:
//   NaN -> NaN; +inf -> +inf; +-0 -> -inf (status 2); x < 0, -inf -> NaN
//   (status 1); denormals -> correctly computed logarithm.
//
// Classes and measured max errors (tests/accuracy_test.cpp against MPFR):
//   logf  plain _rm   full   0.5871 ulp (x = 0x1.0a903cp+0; every positive
//                            normal single checked against the double
//                            logarithm): in single, an eight-interval table
//                            of two-word values and a Fast2Sum (log_core.h)
//   logf  _native     fast   2.645 ulp (x = 0x1.0a06eep+0): the same
//                            reduction, one-word table, degree-5 polynomial
//                            (log_core.h)
//   logf  _half       half   909.8 ulp (OpenCL's half_log allows 8192): no
//                            table, a degree-4 polynomial in single (below)
#include "exp_log/log_core.h"

namespace ravl {
namespace logf_detail {

using namespace log_core;

// ---- half class ------------------------------------------------------------------
//
// x = 2^E m with m in [sqrt(1/2), sqrt(2)): the bit pattern of x minus that of
// sqrt(1/2) (0x3f3504f3) has E in its upper bits, and its low 23 bits plus
// 0x3f3504f3 are the pattern of m. r = m - 1 is exact (Sterbenz) and
// ln(x) = E ln2 + r P(r), P (degree 4) a near-minimax fit of ln(1 + r)/r on
// [sqrt(1/2) - 1, sqrt(2) - 1] (relative error 5.6e-5 = 2^-14.1 with these
// single coefficients).
constexpr float kP0 = f32_bits(0x3f7ffd85u);  // 0.999962151
constexpr float kP1 = f32_bits(0xbeffbebeu);  // -0.499502122
constexpr float kP2 = f32_bits(0x3eac6258u);  // 0.336687803
constexpr float kP3 = f32_bits(0xbe8a4ad9u);  // -0.270102292
constexpr float kP4 = f32_bits(0x3e31a666u);  // 0.173486322

struct LogfHalf : frame::Kernel {
  using sig = float(float);
  static constexpr bool has_callout = true;
  template <int L> static RAVL_INLINE VF<L> vec(VF<L> x) {
    using V = VF<L>;
    using I = Vec<int32_t, L>;
    I ix = as_int(x) - I(0x3f3504f3);
    V e = convert<float>(ix >> 23);
    V m = as_float<V>((ix & I(0x007fffff)) + I(0x3f3504f3));
    V r = m - V(1.0f);
    V P = fma(fma(fma(fma(V(kP4), r, V(kP3)), r, V(kP2)), r, V(kP1)), r, V(kP0));
    return fma(e, V(f32_bits(logtab::kLn2f)), r * P);
  }
  template <int L> static RAVL_INLINE Mask<float, L> special(VF<L> x, VF<L>) {
    return single_nonnormal(x, rows(kSingleRows<BaseE>));
  }
  static RAVL_INLINE int scalar(const float* x, float* r) { return logf_scalar<BaseE>(x, r); }
};

}  // namespace logf_detail

namespace logf_k {
using full = log_core::SingleFull<log_core::BaseE>;
using fast = log_core::SingleFast<log_core::BaseE>;
using half = logf_detail::LogfHalf;
}  // namespace logf_k

}  // namespace ravl

#include "entries/logf.inc"
