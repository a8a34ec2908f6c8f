// fmax(x, y): the hardware maximum with x first, x when x > y, else y (so
// equal values, +0 against -0 included, give y). Exact for every input.
// Special lanes: x or y infinite or NaN. Infinities are already right in the
// vector path; the callout settles NaN: y NaN gives x (quieted), then x NaN
// gives y (quieted), so a single NaN loses and two NaN give y's.
#include "ieee/ieee_fields.h"

namespace ravl {

struct FmaxOp {
  template <class V> static RAVL_INLINE V apply(V x, V y) { return hw_max(x, y); }
};

namespace fmax_k { using full = NanRuleKernel<double, FmaxOp, NanFirst::y>; }
namespace fmaxf_k { using full = NanRuleKernel<float, FmaxOp, NanFirst::y>; }

}  // namespace ravl

#include "entries/fmax.inc"
#include "entries/fmaxf.inc"
