// log10(x) on double lanes (family log10) and on single lanes (family log10f).
//
// Same shape as log2 (exp_log/log2.cpp): branch-free vector path, lanes that
// are not positive normal numbers go to the scalar routine of the precision:
//   NaN -> NaN; +inf -> +inf; +-0 -> -inf (status 2); x < 0, -inf -> NaN
//   (status 1); denormals -> the full algorithm on x 2^64 with E' - 64.
// log10(10^k) is exactly k for the powers of ten that are doubles (k = 0..22)
// and singles (k = 0..10) in the plain classes.
//
// Classes and measured max errors (tests/accuracy_test.cpp against MPFR,
// the same sampling as log2):
//   log10   plain                 full   0.5007 ulp (worst x = 0x1.ff853a9423619p-1;
//                                        also the scalar routine)
//   log10   _native _half         fast   1.823e6 ulp on Ice Lake (worst x =
//                                        0x1.ff8000ed67ed2p-1), 2.921e6 on Zen 3,
//                                        whose reciprocal estimate differs:
//                                        relative 2^-32.2 to 2^-31.5 (the r^4/4
//                                        truncation just below 1)
//   log10f  plain                 full   0.5777 ulp (every positive normal single
//                                        checked): in single, eight-interval table
//   log10f  _native _half         fast   2.918 ulp
#include "exp_log/log_core.h"
#include "exp_log/logd_core.h"

namespace ravl {

namespace log10_k {
// E' log10(2) + (a_R + b_R) + log10(e) ln(1 + r), and E' log10(2) + T_R +
// log10(e) (r + r^2 (-1/2 + r/3)): see exp_log/logd_core.h.
using full = logd::Full<logd::Base10>;
using fast = logd::Fast<logd::Base10>;
}  // namespace log10_k
namespace log10f_k {
using full = log_core::SingleFull<log_core::Base10>;
using fast = log_core::SingleFast<log_core::Base10>;
}  // namespace log10f_k

}  // namespace ravl

#include "entries/log10.inc"
#include "entries/log10f.inc"
