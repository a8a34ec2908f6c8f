// remainder(x, y): x - n*y with n = x/y rounded to the nearest integer, ties
// to even (IEEE 754 remainder); exact for every finite pair, |r| <= |y|/2, a
// zero result has the sign of x. Method, special lanes and special values in
// ieee/remainder_core.h (shared with remquo).
#include "ieee/remainder_core.h"

namespace ravl {

namespace remainder_k { using full = RemKernel<double, RemMode::nearest>; }
namespace remainderf_k { using full = RemKernel<float, RemMode::nearest>; }

}  // namespace ravl

#include "entries/remainder.inc"
#include "entries/remainderf.inc"
