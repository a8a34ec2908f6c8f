// erf x on single lanes (family erff).
//
// Computed in double on the widened lanes (erf_core.h, lower-degree rows of
// tables/erf.h), each result rounded once to single: in double the tiny and
// denormal singles are normal numbers, and a degree-6 row leaves the single
// result within a thousandth of an ulp of its rounding, with fewer
// operations than a single-precision design that must split its products.
// No scalar routine: +-0 -> +-0, +-inf -> +-1, NaN -> NaN, |x| from 3.9192059
// -> +-1 (erf rounds to 1 in single).
//
// Classes and measured max errors over every single (`ravl sweep`, against
// the plain double member, itself within 0.7 double ulp of MPFR's value;
// tests/accuracy_rows.cpp, kBounds, keeps and asserts them on MPFR samples):
//   erff  plain     degree 6 (kErf6)   0.5007 ulp (worst x = 0x1.c4c7dcp-23)
//   erff  _native   degree 4 (kErf4)   3.805 ulp (worst x = 0x1.c79edp-4)
#include "gamma_erf/erf_core.h"

namespace ravl {
namespace erff_detail {

struct ErffFull : frame::Kernel {
  using sig = float(float);
  template <int L> static RAVL_INLINE Vec<float, L> vec(Vec<float, L> x) {
    return via_double<L>(x, [](F64x4 v) { return erf_core::erf_eval<6, 4, false>(v, erf_tables::kErf6); });
  }
};

struct ErffFast : frame::Kernel {
  using sig = float(float);
  template <int L> static RAVL_INLINE Vec<float, L> vec(Vec<float, L> x) {
    return via_double<L>(x, [](F64x4 v) { return erf_core::erf_eval<4, 4, false>(v, erf_tables::kErf4); });
  }
};

}  // namespace erff_detail

namespace erff_k {
using full = erff_detail::ErffFull;
using fast = erff_detail::ErffFast;
}  // namespace erff_k

}  // namespace ravl

#include "entries/erff.inc"
