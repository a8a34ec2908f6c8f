// Unsigned 64-bit integers to double and float lanes, rounded to nearest even
// (rte), toward negative infinity (rtn), toward positive infinity (rtp) or
// toward zero (rtz): OpenCL convert_double_<mode> and convert_float_<mode> of
// ulong.
// Correctly rounded (0 ULP) in every mode; rtn, rtp and rtz do not depend on
// the caller's MXCSR rounding mode; rte rounds in it (nearest even by default;
// a directed caller mode rounds the magnitude).
// Two exact double pieces (the upper word times 2^32 less 2^52, and 2^52
// plus the lower word) added once, faithfully; to double the sum is the
// result, to float it is narrowed (rte: the sum rounded to odd first, so
// there is no double rounding); the directed members then step the result
// one unit when it lies on the wrong side of the exact value.
// The method and its proof are in convert/int_to_fp.h.
#include "convert/int_to_fp.h"

namespace ravl {

namespace cvtu64tofprte_k { using full = cvt::IntToFp<uint64_t, double, cvt::Rm::rte>; }
namespace cvtu64tofprtef_k { using full = cvt::IntToFp<uint64_t, float, cvt::Rm::rte>; }
namespace cvtu64tofprtn_k { using full = cvt::IntToFp<uint64_t, double, cvt::Rm::rtn>; }
namespace cvtu64tofprtnf_k { using full = cvt::IntToFp<uint64_t, float, cvt::Rm::rtn>; }
namespace cvtu64tofprtp_k { using full = cvt::IntToFp<uint64_t, double, cvt::Rm::rtp>; }
namespace cvtu64tofprtpf_k { using full = cvt::IntToFp<uint64_t, float, cvt::Rm::rtp>; }
namespace cvtu64tofprtz_k { using full = cvt::IntToFp<uint64_t, double, cvt::Rm::rtz>; }
namespace cvtu64tofprtzf_k { using full = cvt::IntToFp<uint64_t, float, cvt::Rm::rtz>; }

}  // namespace ravl

#include "entries/cvtu64tofprte.inc"
#include "entries/cvtu64tofprtef.inc"
#include "entries/cvtu64tofprtn.inc"
#include "entries/cvtu64tofprtnf.inc"
#include "entries/cvtu64tofprtp.inc"
#include "entries/cvtu64tofprtpf.inc"
#include "entries/cvtu64tofprtz.inc"
#include "entries/cvtu64tofprtzf.inc"
