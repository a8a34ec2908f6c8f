// erf x on double lanes (family erf).
//
// Every lane, special ones included, is computed on the branch-free path of
// erf_core.h (no scalar routine): a polynomial per eighth of a binade of |x|
// from tables/erf.h, the sign of x ORed back. Special inputs give the same
// results in both classes: +-0 -> +-0, +-inf -> +-1, NaN -> NaN, |x| from
// 5.9215871957945074 -> +-1, tiny and denormal x -> x + x Q(x) with one rounding.
//
// Classes and measured max errors against MPFR (2^17 random doubles a range
// over [-6.5, 6.5], random bit patterns over [2^-1074, 0.25], [0.125, 6.5] and
// [5.5, DBL_MAX], plus 2^15 random bit patterns; tests/accuracy_rows.cpp,
// kBounds, keeps and asserts them):
//   erf  plain     degree 11 (kErf11)   0.692 ulp (worst x = -0x1.baeb8f8a26a8p-5)
//   erf  _native   degree 7  (kErf7)    5927 ulp (worst x = 2)
#include "gamma_erf/erf_core.h"

namespace ravl {
namespace erf_detail {

struct ErfFull : frame::Kernel {
  using sig = double(double);
  template <int L> static RAVL_INLINE Vec<double, L> vec(Vec<double, L> x) {
    return erf_core::erf_eval<11, L>(x, erf_tables::kErf11);
  }
};

struct ErfFast : frame::Kernel {
  using sig = double(double);
  template <int L> static RAVL_INLINE Vec<double, L> vec(Vec<double, L> x) {
    return erf_core::erf_eval<7, L>(x, erf_tables::kErf7);
  }
};

}  // namespace erf_detail

namespace erf_k {
using full = erf_detail::ErfFull;
using fast = erf_detail::ErfFast;
}  // namespace erf_k

}  // namespace ravl

#include "entries/erf.inc"
