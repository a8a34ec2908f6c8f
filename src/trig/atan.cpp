// atan(x) on double and single lanes (families atan, atanf): one division
// on the pair (1, |x|) around a node near |x| (reciprocal node from 16, or
// from 2^2.5 for singles), the Taylor series of the reduced argument and the
// node's angle from a table; no special lanes. Kernel and error analysis in
// trig/atan_core.h. Measured max errors (tests/accuracy_test.cpp against
// MPFR: 2^17 doubles or 2^18 singles per range, uniform on [-20, 20], bit
// patterns over every binade and over [2^-5, 32], the special-value points
// with 64 neighbours each):
//   atan    plain    full   0.5107 ulp (worst x = 0x1.fffffe000000ap-5)
//   atan    _native  fast   742.7 ulp (Taylor to u^9; worst x = 0x1.fffffe000003fp-5)
//   atanf   plain    full   0.5066 ulp (worst x = 0x1.5c5d86p+0)
//   atanf   _native  fast   1.573 ulp (worst x = 0x1.73b6e4p+0)
#include "trig/atan_core.h"

namespace ravl {
namespace atan_k {
using full = atan_core::AtanD<false, true>;
using fast = atan_core::AtanD<false, false>;
}  // namespace atan_k
namespace atanf_k {
using full = atan_core::AtanF<false, true>;
using fast = atan_core::AtanF<false, false>;
}  // namespace atanf_k
}  // namespace ravl

#include "entries/atan.inc"
#include "entries/atanf.inc"
