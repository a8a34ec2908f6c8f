// udiv(x, y): x / y truncated toward zero on unsigned 32-bit lanes, exact
// for every y != 0 (the derivation is in int_quotient.h); y = 0 gives 0.
// No integer divide, no callout.
#include "division/int_quotient.h"
#include "frame/entry.h"

namespace ravl {
namespace udiv_k {

struct full : frame::Kernel {
  using sig = uint32_t(uint32_t, uint32_t);
  template <int L>
  static RAVL_INLINE Vec<uint32_t, L> vec(Vec<uint32_t, L> x, Vec<uint32_t, L> y) {
    return int_div::unsigned_quotient(x, y);
  }
};

}  // namespace udiv_k
}  // namespace ravl

#include "entries/udiv.inc"
