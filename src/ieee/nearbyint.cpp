// nearbyint(x): x rounded to an integral value in the caller's current
// rounding mode (MXCSR), never raising the inexact exception.
// Exact for every input (round_integral.h); no callout.
#include "ieee/round_integral.h"

namespace ravl {

namespace nearbyint_k { using full = round_integral::ByImmediate<double, round_integral::kCurrentQuiet>; }
namespace nearbyintf_k { using full = round_integral::ByImmediate<float, round_integral::kCurrentQuiet>; }

}  // namespace ravl

#include "entries/nearbyint.inc"
#include "entries/nearbyintf.inc"
