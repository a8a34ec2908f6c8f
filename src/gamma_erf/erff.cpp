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
// Classes and measured max errors against MPFR (2^18 floats evenly spread
// over the positive bit patterns, the negative ones by oddness;
// tests/accuracy_rows.cpp, kBounds, keeps and asserts them):
//   erff  plain     degree 6 (kErf6)   0.5007 ulp (worst x = 0x1.c11efp-96)
//   erff  _native   degree 4 (kErf4)   3.661 ulp (worst x = 0x1.c547f8p-101)
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
