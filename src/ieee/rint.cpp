// rint(x): x rounded to an integral value in the caller's current rounding
// mode (MXCSR); the inexact exception may be raised.
// Exact for every input (round_integral.h); no callout.
#include "ieee/round_integral.h"

namespace ravl {

namespace rint_k { using full = round_integral::ByImmediate<double, round_integral::kCurrent>; }
namespace rintf_k { using full = round_integral::ByImmediate<float, round_integral::kCurrent>; }

}  // namespace ravl

#include "entries/rint.inc"
#include "entries/rintf.inc"
