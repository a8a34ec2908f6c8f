// log2(x) on double lanes (family log2) and on single lanes (family log2f).
//
// Every member computes all lanes on a branch-free vector path (the double
// kernels of exp_log/logd_core.h, the single ones of exp_log/log_core.h) and
// flags the lanes that path cannot
// handle: x not a positive normal number (negatives, zeros, denormals, +inf,
// NaN). Those lanes go to the scalar routine of the precision, which every
// class shares, so special inputs give the same result in every class:
//   NaN -> NaN; +inf -> +inf; +-0 -> -inf (status 2); x < 0, -inf -> NaN
//   (status 1); denormals -> the full algorithm on x 2^64, minus 64.
// log2(2^k) is exactly k in every class (r = 0, table row 0, E' = k).
//
// Classes and measured max errors (tests/accuracy_test.cpp against MPFR:
// log-uniform samples over the positive normals, uniform samples over
// [0.5, 2], random bit patterns, denormals, +-64 ulps around the edges; the
// double rows also over 1.6e8 random inputs: every binade, [0.5, 2], +-2^21
// ulps around 1, +-128 ulps around each power of two, the top and bottom
// twelve binades and the denormals):
//   log2   plain                  full   0.5004 ulp (worst x = 0x1.fe94d8f0e9a84p-1;
//                                        also the scalar routine)
//   log2   _native _half _rm      fast   1.782e6 ulp on Ice Lake (worst x =
//                                        0x1.fe9ffc534e359p-1), 2.426e6 on Zen 3,
//                                        whose reciprocal estimate differs:
//                                        relative 2^-32.2 to 2^-31.8 (the r^4/4
//                                        truncation just below 1)
//   log2f  plain _rm              full   0.6336 ulp (every positive normal single
//                                        checked): in single, eight-interval table
//   log2f  _native _half          fast   3.987 ulp
#include "exp_log/log_core.h"
#include "exp_log/logd_core.h"

namespace ravl {

namespace log2_k {
// E' + (a_R + b_R) + log2(e) ln(1 + r), and E' + T_R + log2(e) (r + r^2 (-1/2 + r/3)):
// see exp_log/logd_core.h.
using full = logd::Full<logd::Base2>;
using fast = logd::Fast<logd::Base2>;
}  // namespace log2_k
namespace log2f_k {
using full = log_core::SingleFull<log_core::Base2>;
using fast = log_core::SingleFast<log_core::Base2>;
}  // namespace log2f_k

}  // namespace ravl

#include "entries/log2.inc"
#include "entries/log2f.inc"
