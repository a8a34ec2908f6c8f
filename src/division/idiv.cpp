// idiv(x, y): x / y truncated toward zero on signed 32-bit lanes, exact for
// every y != 0 (the derivation is in int_quotient.h). y = 0 gives INT_MIN
// (0x80000000), INT_MIN / -1 gives INT_MIN. No integer divide, no callout.
#include "division/int_quotient.h"
#include "frame/entry.h"

namespace ravl {
namespace idiv_k {

struct full : frame::Kernel {
  using sig = int32_t(int32_t, int32_t);
  template <int L>
  static RAVL_INLINE Vec<int32_t, L> vec(Vec<int32_t, L> x, Vec<int32_t, L> y) {
    return int_div::signed_quotient(x, y);
  }
};

}  // namespace idiv_k
}  // namespace ravl

#include "entries/idiv.inc"
