// Double and float lanes to 64-bit signed integer lanes, every rounding mode, saturating
// or not: the sixteen cvtfptoi64 families (bodies in convert/fp_to_int.h).
#include "convert/fp_to_int.h"

RAVL_FP_TO_INT_FAMILIES(i64)

#include "entries/cvtfptoi64rtesat.inc"
#include "entries/cvtfptoi64rtesatf.inc"
#include "entries/cvtfptoi64rtenosat.inc"
#include "entries/cvtfptoi64rtenosatf.inc"
#include "entries/cvtfptoi64rtnsat.inc"
#include "entries/cvtfptoi64rtnsatf.inc"
#include "entries/cvtfptoi64rtnnosat.inc"
#include "entries/cvtfptoi64rtnnosatf.inc"
#include "entries/cvtfptoi64rtpsat.inc"
#include "entries/cvtfptoi64rtpsatf.inc"
#include "entries/cvtfptoi64rtpnosat.inc"
#include "entries/cvtfptoi64rtpnosatf.inc"
#include "entries/cvtfptoi64rtzsat.inc"
#include "entries/cvtfptoi64rtzsatf.inc"
#include "entries/cvtfptoi64rtznosat.inc"
#include "entries/cvtfptoi64rtznosatf.inc"
