// round(x): x rounded to the nearest integral value, halfway cases away from
// zero (C99 round). Exact for every input; no callout.
//
// On a = |x|: t = a rounded to nearest even; when a - t is exactly 0.5 the
// halfway case went down to an even t, so t + 1 is the answer. Then x's sign
// is put back by bit-or, which keeps -0.0 for -0.5 < x <= -0 (and -0.0 itself).
//   a - t is exact: t is an integer within 0.5 of a, so for a < 1 it is a or
//   a - 1 (Sterbenz), and for a >= 1 a and t lie within a factor of 2.
//   t + 1 is exact: a halfway case has a < 2^52, so t <= 2^52.
// Both hold in every rounding mode, and t uses the fixed nearest-even
// immediate, so the result does not depend on the caller's MXCSR mode.
// NaN and infinities: d is NaN, the test fails, t (= a, NaN quieted) keeps
// the sign by the bit-or.
#include "frame/entry.h"

namespace ravl {
namespace round_detail {

constexpr int kNearestEven = 0;  // round-to-integral immediate: nearest even

template <class T> struct RoundHalfAway : frame::Kernel {
  using sig = T(T);
  template <int L> static RAVL_INLINE Vec<T, L> vec(Vec<T, L> x) {
    using V = Vec<T, L>;
    using U = UIntOf<V>;
    U s = sign_bit(x);
    V a = abs(x);
    V t = round_imm<kNearestEven>(a);
    V d = a - t;
    // + 1.0 in the lanes where d == 0.5 (the compare mask ANDed with 1.0's bits).
    t = t + as_float<V>(as_uint(d == V(T(0.5))) & as_uint(V(T(1))));
    return as_float<V>(as_uint(t) | s);
  }
};

}  // namespace round_detail

namespace round_k { using full = round_detail::RoundHalfAway<double>; }
namespace roundf_k { using full = round_detail::RoundHalfAway<float>; }

}  // namespace ravl

#include "entries/round.inc"
#include "entries/roundf.inc"
