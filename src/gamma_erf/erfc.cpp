// erfc x on double lanes (family erfc).
//
// Every lane, special ones included, is computed on the branch-free path of
// erf_core.h (no scalar routine): for x >= 0, e^(-x^2) (x^2 split exactly)
// times a polynomial of erfc(a) e^(a^2) per eighth of a binade, scaled in two
// steps so that the tail keeps its accuracy down to the denormal results
// (erfc(27) = 5.2370464393526e-319) and rounds to +0 from 27.226017111108366 on; for
// x < 0, 1 + erf|x| by its own rows. Special inputs give the same results in
// both classes: +-0 -> 1, +inf -> +0, -inf -> 2, NaN -> NaN.
//
// Classes and measured max errors against MPFR (2^17 random doubles a range
// over [-6, 28] and [26.4, 27.3], random bit patterns over the tail [0.5, 27.3],
// [27.2, DBL_MAX], [-7, -2^-1074] and [2^-1074, 0.5], plus 2^15 random bit
// patterns; tests/accuracy_rows.cpp, kBounds, keeps and asserts them):
//   erfc  plain     degree 11 (kErfc11), e^r to degree 6   0.7547 ulp (worst x =
//                   0x1.a8ca24cb6ce5ep+4, a denormal result; 0.7388 on normal ones)
//   erfc  _native   degree 7  (kErfc7), e^r to degree 4    9387 ulp (worst x =
//                   0x1.100dbc2aeaabfp+4)
#include "gamma_erf/erf_core.h"

namespace ravl {
namespace erfc_detail {

struct ErfcFull : frame::Kernel {
  using sig = double(double);
  template <int L> static RAVL_INLINE Vec<double, L> vec(Vec<double, L> x) {
    return erf_core::erfc_eval<11, 6, L>(x, erf_tables::kErfc11);
  }
};

struct ErfcFast : frame::Kernel {
  using sig = double(double);
  template <int L> static RAVL_INLINE Vec<double, L> vec(Vec<double, L> x) {
    return erf_core::erfc_eval<7, 4, L>(x, erf_tables::kErfc7);
  }
};

}  // namespace erfc_detail

namespace erfc_k {
using full = erfc_detail::ErfcFull;
using fast = erfc_detail::ErfcFast;
}  // namespace erfc_k

}  // namespace ravl

#include "entries/erfc.inc"
