// rootn(x, n) = x^(1/n) for a 32-bit integer n, on double lanes (family rootn) and
// single lanes (family rootnf); negative x with odd n gives the signed root, computed in
// the vector path; negative x with even n and n = 0 give NaN (OpenCL).
//
// Classes (pow_core.h):
//   rootn   plain    the accurate routine's arithmetic in vector form (log2 |x|
//                    as a double-word value, times 1/n as a double-word value,
//                    2^z in steps of 1/128); lanes with |z| >= 1021.99951171875
//                    (upper word 0x408fefff) go to the scalar routine
//   rootn   _native  the fast natural-log path on |x| with y = 1/n (one
//                    rounded division)
//   rootnf  plain    the fast natural-log path in double, rounded to single
//   rootnf  _native  the reduced single path
// The marked lanes (|x| not a normal finite number, negative x with even n,
// n = 0, results near or beyond the edges of the range) go to the scalar
// routine of the precision, shared by every class: OpenCL's rules (rootn(x, 0)
// and rootn(x < 0, even n) are NaN; rootn(+-0, n < 0) is +-inf for odd n and
// +inf for even n; rootn(+-0, n > 0) is +-0 for odd n, +0 for even n), the
// rest from the accurate routine; the single routine runs the double one and
// rounds once.
#include "pow_root/pow_core.h"

namespace ravl {
namespace rootn_detail {

using namespace pow_core;

RAVL_INLINE int rootn_scalar(const double* x, const int32_t* n, double* r) { return rootn_rules(*x, *n, r); }
RAVL_INLINE int rootnf_scalar(const float* x, const int32_t* n, float* r) {
  double d;
  const int s = rootn_rules(*x, *n, &d);
  return narrow(s, d, r);
}

// Upper word of |z| at or above 0x408fefff: |z| >= 1021.99951171875.
constexpr uint64_t kRootnBoundWord = 0x408fefffu;

struct RootnFull : MarkedKernel<double, int32_t, rootn_scalar> {
  template <int L> static RAVL_INLINE Vec<double, L> vec(Vec<double, L> x, Vec<int32_t, L> n) {
    return on_chunk([](F64x4 a, I32x4 b) __attribute__((always_inline)) { return pown_accurate<true, kRootnBoundWord>(a, b); }, x, n);
  }
};
struct RootnFast : MarkedKernel<double, int32_t, rootn_scalar> {
  template <int L> static RAVL_INLINE Vec<double, L> vec(Vec<double, L> x, Vec<int32_t, L> n) {
    return on_chunk([](F64x4 a, I32x4 b) __attribute__((always_inline)) { return pown_fast<true, false>(a, b); }, x, n);
  }
};
struct RootnfFull : MarkedKernel<float, int32_t, rootnf_scalar> {
  template <int L> static RAVL_INLINE Vec<float, L> vec(Vec<float, L> x, Vec<int32_t, L> n) {
    return on_singles([](F64x4 a, I32x4 b) __attribute__((always_inline)) { return pown_fast<true, true>(a, b); }, x, n);
  }
};
struct RootnfFast : MarkedKernel<float, int32_t, rootnf_scalar> {
  template <int L> static RAVL_INLINE Vec<float, L> vec(Vec<float, L> x, Vec<int32_t, L> n) {
    return pown_reduced<true>(x, n);
  }
};

}  // namespace rootn_detail

namespace rootn_k {
using full = rootn_detail::RootnFull;
using fast = rootn_detail::RootnFast;
}  // namespace rootn_k
namespace rootnf_k {
using full = rootn_detail::RootnfFull;
using fast = rootn_detail::RootnfFast;
}  // namespace rootnf_k

}  // namespace ravl

#include "entries/rootn.inc"
#include "entries/rootnf.inc"
