// fdim(x, y): x - y when x > y, else +0. Exact (one correctly rounded
// subtraction, overflowing to infinity as C99 asks) for every input.
// Special lanes: x or y infinite or NaN. Infinities are already right in the
// vector path (fdim(inf, inf) = +0, fdim(inf, y) = inf, fdim(x, inf) = +0);
// the callout settles NaN: x NaN gives x quieted, then y NaN gives y quieted.
#include "ieee/ieee_fields.h"

namespace ravl {

struct FdimOp {
  template <class V> static RAVL_INLINE V apply(V x, V y) { return select(x > y, x - y, V(0)); }
};

namespace fdim_k { using full = NanRuleKernel<double, FdimOp, NanFirst::x>; }
namespace fdimf_k { using full = NanRuleKernel<float, FdimOp, NanFirst::x>; }

}  // namespace ravl

#include "entries/fdim.inc"
#include "entries/fdimf.inc"
