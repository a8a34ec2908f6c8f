// ln(1 + x) on single lanes (family log1pf).
//
// Every member computes all lanes on a branch-free vector path, all in
// single: u = RN(1 + x) and its rounding error d0 (Fast2Sum of the larger and
// the smaller of 1 and x, so u + d0 = 1 + x exactly), then the single
// logarithm kernels of log_core.h on u with d0 carried into the reduced
// argument. Tiny x gives u = 1, r = 0 and the result d0 = x exactly, denormal
// x included; the result takes the sign bit of x (ln(1 + x) has the sign of
// x), so -0 stays -0.
//
// Lanes the vector path does not take, x not in (-1, 2^127) (NaN included),
// go to the scalar routine both classes share (above 2^127 the reduction's
// E = 128 and its 2^-E is not a normal single):
//   NaN -> quiet NaN, +inf -> +inf, -1 -> -inf (status 2),
//   x < -1 and -inf -> NaN (status 1), x >= 2^127 -> ln(x) (1/x < 2^-127 is
//   far below half an ulp of ln(x) > 88).
//
// Classes and measured max errors (every single in (-1, 2^127) against the
// double logarithm; tests/accuracy_test.cpp keeps the bounds against MPFR):
//   log1pf  plain     full (ln_single)       0.6602 ulp (x = +-0x1.ap-24: u = 1 + 2^-23
//                                            and d0 nearly cancel S = 2^-23)
//   log1pf  _native   fast (ln_single_fast)  3.419 ulp (x = 0x1.40ddb4p-5)
#include "exp_log/log_core.h"

namespace ravl {
namespace log1pf_detail {

using namespace log_core;

template <int L, class Ln> RAVL_INLINE VF<L> log1pf_vec(VF<L> x, Ln ln) {
  using V = VF<L>;
  V u = V(1.0f) + x;
  V big = hw_max(x, V(1.0f)), small = hw_min(x, V(1.0f));
  V d0 = small - (u - big);
  V y = ln(u, d0);
  return as_float<V>(as_uint(y) | sign_bit(x));
}

struct Log1pfFull : frame::Kernel {
  using sig = float(float);
  static constexpr bool has_callout = true;
  template <int L> static RAVL_INLINE VF<L> vec(VF<L> x) {
    return log1pf_vec(x, [](auto u, auto d0) { return ln_single<BaseE, true>(u, d0); });
  }
  // Not -1 < x < 2^127 (NaN included).
  template <int L> static RAVL_INLINE Mask<float, L> special(VF<L> x, VF<L>) {
    using V = VF<L>;
    return ~((x > V(-1.0f)) & (x < V(0x1p127f)));
  }
  static RAVL_INLINE int scalar(const float* xp, float* rp) {
    float x = *xp;
    int status;
    if (log1p_special(x, rp, &status)) return status;
    *rp = ln_single<BaseE>(F32x4(x))[0];  // x >= 2^127: ln(x), E = 128 needs no carry
    return kStatusOk;
  }
};

struct Log1pfFast : Log1pfFull {
  template <int L> static RAVL_INLINE VF<L> vec(VF<L> x) {
    return log1pf_vec(x, [](auto u, auto d0) { return ln_single_fast<BaseE, true>(u, d0); });
  }
};

}  // namespace log1pf_detail

namespace log1pf_k {
using full = log1pf_detail::Log1pfFull;
using fast = log1pf_detail::Log1pfFast;
}  // namespace log1pf_k

}  // namespace ravl

#include "entries/log1pf.inc"
