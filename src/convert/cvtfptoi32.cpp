// Double and float lanes to 32-bit signed integer lanes, every rounding mode, saturating
// or not: the sixteen cvtfptoi32 families (bodies in convert/fp_to_int.h).
#include "convert/fp_to_int.h"

RAVL_FP_TO_INT_FAMILIES(i32)

#include "entries/cvtfptoi32rtesat.inc"
#include "entries/cvtfptoi32rtesatf.inc"
#include "entries/cvtfptoi32rtenosat.inc"
#include "entries/cvtfptoi32rtenosatf.inc"
#include "entries/cvtfptoi32rtnsat.inc"
#include "entries/cvtfptoi32rtnsatf.inc"
#include "entries/cvtfptoi32rtnnosat.inc"
#include "entries/cvtfptoi32rtnnosatf.inc"
#include "entries/cvtfptoi32rtpsat.inc"
#include "entries/cvtfptoi32rtpsatf.inc"
#include "entries/cvtfptoi32rtpnosat.inc"
#include "entries/cvtfptoi32rtpnosatf.inc"
#include "entries/cvtfptoi32rtzsat.inc"
#include "entries/cvtfptoi32rtzsatf.inc"
#include "entries/cvtfptoi32rtznosat.inc"
#include "entries/cvtfptoi32rtznosatf.inc"
