// ceil(x): x rounded to an integral value toward +infinity.
// Exact for every input (round_integral.h); no callout.
#include "ieee/round_integral.h"

namespace ravl {

namespace ceil_k { using full = round_integral::ByImmediate<double, round_integral::kUp>; }
namespace ceilf_k { using full = round_integral::ByImmediate<float, round_integral::kUp>; }

}  // namespace ravl

#include "entries/ceil.inc"
#include "entries/ceilf.inc"
