// The rounding-to-integral families (ceil, floor, trunc, rint, nearbyint and
// their f forms): one hardware round-to-integral instruction per register,
// differing only in its immediate. Exact for every input: the result is the
// integral value the immediate's rounding selects, in the input's format
// (never rounded again); NaN stays NaN (quieted), infinities, zeros (sign
// kept) and values already integral come through unchanged. No callout.
//
// Immediate: bits 0-1 the rounding (0 nearest even, 1 down, 2 up, 3 toward
// zero), bit 2 the control register's current mode instead, bit 3 suppresses
// the inexact exception. The library never writes the control register, so
// rint and nearbyint follow whatever mode the caller has set.
#pragma once

#include "frame/entry.h"

namespace ravl {
namespace round_integral {

constexpr int kUp = 2;          // ceil: toward +infinity, inexact may be raised
constexpr int kDown = 1;        // floor: toward -infinity
constexpr int kTowardZero = 3;  // trunc
constexpr int kCurrent = 4;     // rint: the control register's mode
constexpr int kCurrentQuiet = 0xc;  // nearbyint: the control register's mode, no inexact

template <class T, int kImm> struct ByImmediate : frame::Kernel {
  using sig = T(T);
  template <int L> static RAVL_INLINE Vec<T, L> vec(Vec<T, L> x) { return round_imm<kImm>(x); }
};

}  // namespace round_integral
}  // namespace ravl
