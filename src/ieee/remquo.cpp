// remquo(x, y, *quo): the remainder of remainder(x, y), bit for bit, and
// through the pointer the low 7 bits of |n| (n = x/y rounded to nearest, ties
// to even) with the sign of x/y; 0 when the result is NaN or y is infinite.
// Method, special lanes and special values in ieee/remainder_core.h.
#include "ieee/remainder_core.h"

namespace ravl {

namespace remquo_k { using full = RemquoKernel<double>; }
namespace remquof_k { using full = RemquoKernel<float>; }

}  // namespace ravl

#include "entries/remquo.inc"
#include "entries/remquof.inc"
