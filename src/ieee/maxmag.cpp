// maxmag(x, y): x when |x| > |y|; y when |x| < |y|; when |x| == |y|, the
// hardware maximum with y first (y when y > x, else x: maxmag(-2, 2) = 2,
// maxmag(+0, -0) = +0). Exact for every input.
// Special lanes: x or y infinite or NaN. Infinities are already right in the
// vector path (the ordered compares on |x|, |y| hold for them); the callout
// settles NaN: y NaN gives x (quieted), then x NaN gives y (quieted).
#include "ieee/ieee_fields.h"

namespace ravl {

struct MaxmagOp {
  template <class V> static RAVL_INLINE V apply(V x, V y) {
    V ax = abs(x), ay = abs(y);
    // A failed compare (NaN) falls to y; the callout fixes those lanes.
    return select(ax > ay, x, select(ax == ay, hw_max(y, x), y));
  }
};

namespace maxmag_k { using full = NanRuleKernel<double, MaxmagOp, NanFirst::y>; }
namespace maxmagf_k { using full = NanRuleKernel<float, MaxmagOp, NanFirst::y>; }

}  // namespace ravl

#include "entries/maxmag.inc"
#include "entries/maxmagf.inc"
