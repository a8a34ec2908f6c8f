// pown(x, n) = x^n for a 32-bit integer n, on double lanes (family pown) and
// single lanes (family pownf); negative x gives the signed power, computed in
// the vector path (|x|^n with the sign of x for odd n).
//
// Classes (pow_core.h):
//   pown   plain    the accurate routine's arithmetic in vector form (log2 |x|
//                   as a double-word value, exact product with n, 2^z in steps
//                   of 1/128); lanes with |z| >= 989.99951171875 (upper word
//                   0x408eefff) go to the scalar routine, which scales them
//   pown   _native  the fast natural-log path on |x| with y = n
//   pownf  plain    the fast natural-log path in double, rounded to single
//   pownf  _native  the reduced single path
// The marked lanes (|x| not a normal finite number, results near or beyond
// the edges of the range) go to the scalar routine of the precision, shared
// by every class: pow's rules with y = n (n = 0 gives 1 for every x), the
// rest from the accurate routine; the single routine runs the double one and
// rounds once.
#include "pow_root/pow_core.h"

namespace ravl {
namespace pown_detail {

using namespace pow_core;

RAVL_INLINE int pown_scalar(const double* x, const int32_t* n, double* r) { return pow_rules(*x, (double)*n, r); }
RAVL_INLINE int pownf_scalar(const float* x, const int32_t* n, float* r) {
  double d;
  const int s = pow_rules(*x, (double)*n, &d);
  return narrow(s, d, r);
}

// Upper word of |z| at or above 0x408eefff: |z| >= 989.99951171875.
constexpr uint64_t kPownBoundWord = 0x408eefffu;

struct PownFull : MarkedKernel<double, int32_t, pown_scalar> {
  template <int L> static RAVL_INLINE Vec<double, L> vec(Vec<double, L> x, Vec<int32_t, L> n) {
    return on_chunk([](F64x4 a, I32x4 b) __attribute__((always_inline)) { return pown_accurate<false, kPownBoundWord>(a, b); }, x, n);
  }
};
struct PownFast : MarkedKernel<double, int32_t, pown_scalar> {
  template <int L> static RAVL_INLINE Vec<double, L> vec(Vec<double, L> x, Vec<int32_t, L> n) {
    return on_chunk([](F64x4 a, I32x4 b) __attribute__((always_inline)) { return pown_fast<false, false>(a, b); }, x, n);
  }
};
struct PownfFull : MarkedKernel<float, int32_t, pownf_scalar> {
  template <int L> static RAVL_INLINE Vec<float, L> vec(Vec<float, L> x, Vec<int32_t, L> n) {
    return on_singles([](F64x4 a, I32x4 b) __attribute__((always_inline)) { return pown_fast<false, true>(a, b); }, x, n);
  }
};
struct PownfFast : MarkedKernel<float, int32_t, pownf_scalar> {
  template <int L> static RAVL_INLINE Vec<float, L> vec(Vec<float, L> x, Vec<int32_t, L> n) {
    return pown_reduced<false>(x, n);
  }
};

}  // namespace pown_detail

namespace pown_k {
using full = pown_detail::PownFull;
using fast = pown_detail::PownFast;
}  // namespace pown_k
namespace pownf_k {
using full = pown_detail::PownfFull;
using fast = pown_detail::PownfFast;
}  // namespace pownf_k

}  // namespace ravl

#include "entries/pown.inc"
#include "entries/pownf.inc"
