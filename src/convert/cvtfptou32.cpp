// Double and float lanes to 32-bit unsigned integer lanes, every rounding mode, saturating
// or not: the sixteen cvtfptou32 families (bodies in convert/fp_to_int.h).
#include "convert/fp_to_int.h"

RAVL_FP_TO_INT_FAMILIES(u32)

#include "entries/cvtfptou32rtesat.inc"
#include "entries/cvtfptou32rtesatf.inc"
#include "entries/cvtfptou32rtenosat.inc"
#include "entries/cvtfptou32rtenosatf.inc"
#include "entries/cvtfptou32rtnsat.inc"
#include "entries/cvtfptou32rtnsatf.inc"
#include "entries/cvtfptou32rtnnosat.inc"
#include "entries/cvtfptou32rtnnosatf.inc"
#include "entries/cvtfptou32rtpsat.inc"
#include "entries/cvtfptou32rtpsatf.inc"
#include "entries/cvtfptou32rtpnosat.inc"
#include "entries/cvtfptou32rtpnosatf.inc"
#include "entries/cvtfptou32rtzsat.inc"
#include "entries/cvtfptou32rtzsatf.inc"
#include "entries/cvtfptou32rtznosat.inc"
#include "entries/cvtfptou32rtznosatf.inc"
