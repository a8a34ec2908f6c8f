// fmin(x, y): the hardware minimum with x first, x when x < y, else y (so
// equal values, +0 against -0 included, give y). Exact for every input.
// Special lanes: x or y infinite or NaN. Infinities are already right in the
// vector path; the callout settles NaN: y NaN gives x (quieted), then x NaN
// gives y (quieted), so a single NaN loses and two NaN give y's.
#include "ieee/ieee_fields.h"

namespace ravl {

struct FminOp {
  template <class V> static RAVL_INLINE V apply(V x, V y) { return hw_min(x, y); }
};

namespace fmin_k { using full = NanRuleKernel<double, FminOp, NanFirst::y>; }
namespace fminf_k { using full = NanRuleKernel<float, FminOp, NanFirst::y>; }

}  // namespace ravl

#include "entries/fmin.inc"
#include "entries/fminf.inc"
