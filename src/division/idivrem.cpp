// idivrem(x, y): the pair (idiv(x, y), irem(x, y)) on signed 32-bit lanes from
// one quotient computation, bit for bit the separate families' results (y = 0
// gives (INT_MIN, x), INT_MIN / -1 gives (INT_MIN, 0)).
#include "division/int_quotient.h"
#include "frame/entry.h"

namespace ravl {
namespace idivrem_k {

struct full : frame::Kernel {
  using sig = Two<int32_t, int32_t>(int32_t, int32_t);
  template <int L>
  static RAVL_INLINE Two<Vec<int32_t, L>, Vec<int32_t, L>> vec(Vec<int32_t, L> x, Vec<int32_t, L> y) {
    Vec<int32_t, L> q = int_div::signed_quotient(x, y);
    return {q, int_div::wrapping_remainder(x, y, q)};
  }
};

}  // namespace idivrem_k
}  // namespace ravl

#include "entries/idivrem.inc"
