// irem(x, y): x - (x / y) * y on signed 32-bit lanes, the quotient truncated
// toward zero, so the remainder has the sign of x; exact for every y != 0.
// y = 0 gives x, INT_MIN rem -1 gives 0. No integer divide, no callout.
#include "division/int_quotient.h"
#include "frame/entry.h"

namespace ravl {
namespace irem_k {

struct full : frame::Kernel {
  using sig = int32_t(int32_t, int32_t);
  template <int L>
  static RAVL_INLINE Vec<int32_t, L> vec(Vec<int32_t, L> x, Vec<int32_t, L> y) {
    return int_div::wrapping_remainder(x, y, int_div::signed_quotient(x, y));
  }
};

}  // namespace irem_k
}  // namespace ravl

#include "entries/irem.inc"
