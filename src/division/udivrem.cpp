// udivrem(x, y): the pair (udiv(x, y), urem(x, y)) on unsigned 32-bit lanes
// from one quotient computation, bit for bit the separate families' results
// (y = 0 gives (0, x)).
#include "division/int_quotient.h"
#include "frame/entry.h"

namespace ravl {
namespace udivrem_k {

struct full : frame::Kernel {
  using sig = Two<uint32_t, uint32_t>(uint32_t, uint32_t);
  template <int L>
  static RAVL_INLINE Two<Vec<uint32_t, L>, Vec<uint32_t, L>> vec(Vec<uint32_t, L> x, Vec<uint32_t, L> y) {
    Vec<uint32_t, L> q = int_div::unsigned_quotient(x, y);
    return {q, int_div::wrapping_remainder(x, y, q)};
  }
};

}  // namespace udivrem_k
}  // namespace ravl

#include "entries/udivrem.inc"
