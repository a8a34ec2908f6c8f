// atan(x) on double and single lanes (families atan, atanf). Plain class:
// one division on the pair (1, |x|) around a node near |x| (reciprocal node
// from 16, or from 2^2.5 for singles), the Taylor series of the reduced
// argument and the node's angle from a table. The double _native class is
// atan2's _native kernel on the pair (1, |x|): regions |x| <= tan(pi/8),
// below 1/tan(pi/8) and above, one division to |u| <= tan(pi/8) and an
// 8-term series, no table. No special lanes. Kernels and error analysis in
// trig/atan_core.h. Measured max errors (tests/accuracy_test.cpp against
// MPFR: 2^17 doubles or 2^18 singles per range, uniform on [-20, 20], bit
// patterns over every binade and over [2^-5, 32], the special-value points
// with 64 neighbours each; the double _native class also 2^24 inputs per
// range with `ravl ulp`):
//   atan    plain    full   0.5107 ulp (worst x = 0x1.fffffe000000ap-5)
//   atan    _native  fast   248.7 ulp (worst x = 0x1.00546ac0181c8p-4; relative 2^-45.0)
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
