// erfc x on single lanes (family erfcf).
//
// Computed in double on the widened lanes (erf_core.h, lower-degree rows of
// tables/erf.h, e^r to degree 3 or 4), each result rounded once to single: in
// double nothing underflows before the last rounding, so the denormal single
// results (erfcf(10) = 2.08849656e-45) are right, and +0 comes from 10.0542
// on. No scalar routine: +-0 -> 1, +inf -> +0, -inf -> 2, NaN -> NaN.
//
// Classes and measured max errors against MPFR (2^18 floats evenly spread
// over the positive bit patterns and 2^18 over the negative ones;
// tests/accuracy_rows.cpp, kBounds, keeps and asserts them):
//   erfcf  plain     degree 6 (kErfc6), e^r to degree 4   0.500 ulp
//   erfcf  _native   degree 4 (kErfc4), e^r to degree 3   1.327 ulp (worst x = 0x1.b52916p-4)
#include "gamma_erf/erf_core.h"

namespace ravl {
namespace erfcf_detail {

struct ErfcfFull : frame::Kernel {
  using sig = float(float);
  template <int L> static RAVL_INLINE Vec<float, L> vec(Vec<float, L> x) {
    return via_double<L>(x, [](F64x4 v) { return erf_core::erfc_eval<6, 4, 4>(v, erf_tables::kErfc6); });
  }
};

struct ErfcfFast : frame::Kernel {
  using sig = float(float);
  template <int L> static RAVL_INLINE Vec<float, L> vec(Vec<float, L> x) {
    return via_double<L>(x, [](F64x4 v) { return erf_core::erfc_eval<4, 3, 4>(v, erf_tables::kErfc4); });
  }
};

}  // namespace erfcf_detail

namespace erfcf_k {
using full = erfcf_detail::ErfcfFull;
using fast = erfcf_detail::ErfcfFast;
}  // namespace erfcf_k

}  // namespace ravl

#include "entries/erfcf.inc"
