// minmag(x, y): x when |x| < |y|; y when |x| > |y|; when |x| == |y|, the
// hardware minimum with y first (y when y < x, else x: minmag(-2, 2) = -2,
// minmag(-0, +0) = -0). Exact for every input.
// Special lanes: x or y infinite or NaN. Infinities are already right in the
// vector path; the callout settles NaN: y NaN gives x (quieted), then x NaN
// gives y (quieted).
#include "ieee/ieee_fields.h"

namespace ravl {

struct MinmagOp {
  template <class V> static RAVL_INLINE V apply(V x, V y) {
    V ax = abs(x), ay = abs(y);
    // A failed compare (NaN) falls to y; the callout fixes those lanes.
    return select(ax < ay, x, select(ax == ay, hw_min(y, x), y));
  }
};

namespace minmag_k { using full = NanRuleKernel<double, MinmagOp, NanFirst::y>; }
namespace minmagf_k { using full = NanRuleKernel<float, MinmagOp, NanFirst::y>; }

}  // namespace ravl

#include "entries/minmag.inc"
#include "entries/minmagf.inc"
