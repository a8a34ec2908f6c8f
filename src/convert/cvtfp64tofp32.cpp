// Double to float lanes, rounded to nearest even (rte), toward negative
// infinity (rtn), toward positive infinity (rtp) or toward zero (rtz): OpenCL
// convert_float_<mode> of double. Correctly rounded (0 ULP) in every mode,
// subnormal results included; rtn, rtp and rtz do not depend on the caller's
// MXCSR rounding mode, rte rounds in it (nearest even by default).
//
// f = the hardware narrowing of x (one rounding in the MXCSR mode, so f is one
// of the two floats around x) and b = f widened back (exact). When f lies on
// the wrong side of x for the named mode it is stepped one unit in the last
// place on its bit pattern; the step crosses binades, zero and infinity
// correctly:
// - rtz: |x| < |b| means f was rounded up in magnitude: bits(f) - 1 (f is not
//   zero then, so the sign bit stays); an overflow to infinity becomes
//   FLT_MAX.
// - rtn: x < b: minus one on the bits of a positive f, plus one on a negative
//   one (-0 from a tiny negative x becomes -2^-149).
// - rtp: b < x: plus one on a positive f (+0 from a tiny positive x becomes
//   2^-149), minus one on a negative one.
// NaN compares false (and an infinity equal), so NaN and infinities keep the
// hardware result: a quiet NaN with the sign and the upper payload bits of x.
#include "convert/int_to_fp.h"

namespace ravl {
namespace cvt {

template <Rm rm> struct Narrow : frame::Kernel {
  using sig = float(double);
  template <int L> static RAVL_INLINE Vec<float, L> vec(Vec<double, L> x) {
    Vec<float, L> f = convert<float>(x);  // vcvtpd2ps
    if constexpr (rm == Rm::rte) {
      return f;
    } else {
      Vec<double, L> b = convert<double>(f);
      Mask<double, L> wrong;
      if constexpr (rm == Rm::rtz) wrong = abs(x) < abs(b);
      else if constexpr (rm == Rm::rtn) wrong = x < b;
      else wrong = b < x;
      Vec<int32_t, L> m = convert<int32_t>(wrong);  // -1 or 0 per lane
      Vec<int32_t, L> fb = as_int(f);
      if constexpr (rm == Rm::rtz) return as_float<Vec<float, L>>(fb + m);
      // Sign-dependent unit: (m ^ s) - s is m (-1) for a positive f and -m (+1)
      // for a negative one (s = -1).
      Vec<int32_t, L> s = fb >> 31;
      Vec<int32_t, L> unit = (m ^ s) - s;
      return as_float<Vec<float, L>>(rm == Rm::rtn ? fb + unit : fb - unit);
    }
  }
};

}  // namespace cvt

namespace cvtfp64tofp32rte_k { using full = cvt::Narrow<cvt::Rm::rte>; }
namespace cvtfp64tofp32rtn_k { using full = cvt::Narrow<cvt::Rm::rtn>; }
namespace cvtfp64tofp32rtp_k { using full = cvt::Narrow<cvt::Rm::rtp>; }
namespace cvtfp64tofp32rtz_k { using full = cvt::Narrow<cvt::Rm::rtz>; }

}  // namespace ravl

#include "entries/cvtfp64tofp32rte.inc"
#include "entries/cvtfp64tofp32rtn.inc"
#include "entries/cvtfp64tofp32rtp.inc"
#include "entries/cvtfp64tofp32rtz.inc"
