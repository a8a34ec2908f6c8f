// Unsigned 32-bit integers to double and float lanes, rounded to nearest even
// (rte), toward negative infinity (rtn), toward positive infinity (rtp) or
// toward zero (rtz): OpenCL convert_double_<mode> and convert_float_<mode> of
// uint.
// Correctly rounded (0 ULP) in every mode; rtn, rtp and rtz do not depend on
// the caller's MXCSR rounding mode; rte rounds in it (nearest even by default;
// a directed caller mode rounds the magnitude).
// To double every value is exact (zero-extended into the mantissa of 2^52,
// then 2^52 subtracted). To float, magnitudes from 2^24 on round: pieces of
// 23 and 9 bits, one rounding addition, then the directed step.
// The method and its proof are in convert/int_to_fp.h.
#include "convert/int_to_fp.h"

namespace ravl {

namespace cvtu32tofprte_k { using full = cvt::IntToFp<uint32_t, double, cvt::Rm::rte>; }
namespace cvtu32tofprtef_k { using full = cvt::IntToFp<uint32_t, float, cvt::Rm::rte>; }
namespace cvtu32tofprtn_k { using full = cvt::IntToFp<uint32_t, double, cvt::Rm::rtn>; }
namespace cvtu32tofprtnf_k { using full = cvt::IntToFp<uint32_t, float, cvt::Rm::rtn>; }
namespace cvtu32tofprtp_k { using full = cvt::IntToFp<uint32_t, double, cvt::Rm::rtp>; }
namespace cvtu32tofprtpf_k { using full = cvt::IntToFp<uint32_t, float, cvt::Rm::rtp>; }
namespace cvtu32tofprtz_k { using full = cvt::IntToFp<uint32_t, double, cvt::Rm::rtz>; }
namespace cvtu32tofprtzf_k { using full = cvt::IntToFp<uint32_t, float, cvt::Rm::rtz>; }

}  // namespace ravl

#include "entries/cvtu32tofprte.inc"
#include "entries/cvtu32tofprtef.inc"
#include "entries/cvtu32tofprtn.inc"
#include "entries/cvtu32tofprtnf.inc"
#include "entries/cvtu32tofprtp.inc"
#include "entries/cvtu32tofprtpf.inc"
#include "entries/cvtu32tofprtz.inc"
#include "entries/cvtu32tofprtzf.inc"
