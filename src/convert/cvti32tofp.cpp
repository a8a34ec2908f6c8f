// Signed 32-bit integers to double and float lanes, rounded to nearest even
// (rte), toward negative infinity (rtn), toward positive infinity (rtp) or
// toward zero (rtz): OpenCL convert_double_<mode> and convert_float_<mode> of
// int.
// Correctly rounded (0 ULP) in every mode; rtn, rtp and rtz do not depend on
// the caller's MXCSR rounding mode; rte rounds in it (nearest even by default;
// a directed caller mode rounds the magnitude).
// To double every value is exact (vcvtdq2pd), so the four double families
// are one body (their width-3 members are separate copies of it). To float,
// magnitudes from 2^24 on round: rte converts |x| in hardware and puts the
// sign back; the directed members convert x, convert back (exact) and step
// the result one unit when it lies on the wrong side.
// The method and its proof are in convert/int_to_fp.h.
#include "convert/int_to_fp.h"

namespace ravl {

namespace cvti32tofprte_k { using full = cvt::IntToFp<int32_t, double, cvt::Rm::rte>; }
namespace cvti32tofprtef_k { using full = cvt::IntToFp<int32_t, float, cvt::Rm::rte>; }
namespace cvti32tofprtn_k { using full = cvt::IntToFp<int32_t, double, cvt::Rm::rtn>; }
namespace cvti32tofprtnf_k { using full = cvt::IntToFp<int32_t, float, cvt::Rm::rtn>; }
namespace cvti32tofprtp_k { using full = cvt::IntToFp<int32_t, double, cvt::Rm::rtp>; }
namespace cvti32tofprtpf_k { using full = cvt::IntToFp<int32_t, float, cvt::Rm::rtp>; }
namespace cvti32tofprtz_k { using full = cvt::IntToFp<int32_t, double, cvt::Rm::rtz>; }
namespace cvti32tofprtzf_k { using full = cvt::IntToFp<int32_t, float, cvt::Rm::rtz>; }

}  // namespace ravl

#include "entries/cvti32tofprte.inc"
#include "entries/cvti32tofprtef.inc"
#include "entries/cvti32tofprtn.inc"
#include "entries/cvti32tofprtnf.inc"
#include "entries/cvti32tofprtp.inc"
#include "entries/cvti32tofprtpf.inc"
#include "entries/cvti32tofprtz.inc"
#include "entries/cvti32tofprtzf.inc"
