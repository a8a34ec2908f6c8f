// erfc x on single lanes (family erfcf).
//
// Computed in double on the widened lanes (erf_core.h, lower-degree rows of
// tables/erf.h, e^r to degree 3 or 4), each result rounded once to single: in
// double nothing underflows before the last rounding, so the denormal single
// results (erfcf(10) = 2.08849656e-45) are right, and +0 comes from 10.0542
// on. No scalar routine: +-0 -> 1, +inf -> +0, -inf -> 2, NaN -> NaN.
//
// Classes and measured max errors over every single (`ravl sweep`, against
// the plain double member, itself within 0.76 double ulp of MPFR's value;
// tests/accuracy_rows.cpp, kBounds, keeps and asserts them on MPFR samples):
//   erfcf  plain     degree 6 (kErfc6), e^r to degree 4   0.5005 ulp (worst x = 0x1.06a856p+3)
//   erfcf  _native   degree 4 (kErfc4), e^r to degree 3   1.464 ulp (worst x = 0x1.fffa0cp-4)
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
