// urem(x, y): x - (x / y) * y on unsigned 32-bit lanes; exact for every
// y != 0, and x for y = 0. No integer divide, no callout.
#include "division/int_quotient.h"
#include "frame/entry.h"

namespace ravl {
namespace urem_k {

struct full : frame::Kernel {
  using sig = uint32_t(uint32_t, uint32_t);
  template <int L>
  static RAVL_INLINE Vec<uint32_t, L> vec(Vec<uint32_t, L> x, Vec<uint32_t, L> y) {
    return int_div::wrapping_remainder(x, y, int_div::unsigned_quotient(x, y));
  }
};

}  // namespace urem_k
}  // namespace ravl

#include "entries/urem.inc"
