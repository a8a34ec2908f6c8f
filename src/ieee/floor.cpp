// floor(x): x rounded to an integral value toward -infinity.
// Exact for every input (round_integral.h); no callout.
#include "ieee/round_integral.h"

namespace ravl {

namespace floor_k { using full = round_integral::ByImmediate<double, round_integral::kDown>; }
namespace floorf_k { using full = round_integral::ByImmediate<float, round_integral::kDown>; }

}  // namespace ravl

#include "entries/floor.inc"
#include "entries/floorf.inc"
