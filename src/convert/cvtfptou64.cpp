// Double and float lanes to 64-bit unsigned integer lanes, every rounding mode, saturating
// or not: the sixteen cvtfptou64 families (bodies in convert/fp_to_int.h).
#include "convert/fp_to_int.h"

RAVL_FP_TO_INT_FAMILIES(u64)

#include "entries/cvtfptou64rtesat.inc"
#include "entries/cvtfptou64rtesatf.inc"
#include "entries/cvtfptou64rtenosat.inc"
#include "entries/cvtfptou64rtenosatf.inc"
#include "entries/cvtfptou64rtnsat.inc"
#include "entries/cvtfptou64rtnsatf.inc"
#include "entries/cvtfptou64rtnnosat.inc"
#include "entries/cvtfptou64rtnnosatf.inc"
#include "entries/cvtfptou64rtpsat.inc"
#include "entries/cvtfptou64rtpsatf.inc"
#include "entries/cvtfptou64rtpnosat.inc"
#include "entries/cvtfptou64rtpnosatf.inc"
#include "entries/cvtfptou64rtzsat.inc"
#include "entries/cvtfptou64rtzsatf.inc"
#include "entries/cvtfptou64rtznosat.inc"
#include "entries/cvtfptou64rtznosatf.inc"
