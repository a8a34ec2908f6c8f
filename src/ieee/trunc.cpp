// trunc(x): x rounded to an integral value toward zero.
// Exact for every input (round_integral.h); no callout.
#include "ieee/round_integral.h"

namespace ravl {

namespace trunc_k { using full = round_integral::ByImmediate<double, round_integral::kTowardZero>; }
namespace truncf_k { using full = round_integral::ByImmediate<float, round_integral::kTowardZero>; }

}  // namespace ravl

#include "entries/trunc.inc"
#include "entries/truncf.inc"
