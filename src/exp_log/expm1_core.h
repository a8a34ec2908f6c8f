// The vector kernel of expm1's fast double class, shared with the families
// that build on e^x - 1 (the hyperbolic tangent's fast class), and the
// constants the expm1 kernels share.
#pragma once

#include "exp_log/exp_common.h"
#include "tables/exp.h"

namespace ravl {
namespace expm1_detail {

using namespace exp_common;

// x below -40: e^-40 = 4.2e-18 < 2^-54, so e^x - 1 rounds to -1. The vector
// paths compute max(x, -40) instead of x.
constexpr double kLow = -40.0;

// P: Taylor coefficients 1/k!, k = 2..7 (on |r| <= ln2/128 the remainder
// r^8/8! is below 2^-68 relative to r).
constexpr double kE2 = 0.5;
constexpr double kE3 = 1.0 / 6;
constexpr double kE4 = 1.0 / 24;
constexpr double kE5 = 1.0 / 120;
constexpr double kE6 = 1.0 / 720;
constexpr double kE7 = 1.0 / 5040;

// ---- double, fast class (_native) -------------------------------------------------
//
// e^x - 1 with the 128-entry table 2^(j/128), one reduction constant and a
// degree-5 polynomial. Max error 221 ulp (worst x = 0x1.65543f84eff46p-9),
// relative 2.5e-14: T_j carries its rounding, up to 2^-53 absolute, into
// results as small as e^(ln2/256) - 1 = 0.0027 (n = +-1); elsewhere the
// single-constant reduction and the rounding of t - 1 for t < 1/2 add a few ulp.
// n = round(x 128/ln2); r = x - n ln2/128; t = 2^floor(n/128) T_j;
// e^x - 1 = t (1 + p) - 1 = fma(t, p, t - 1), p = r + r^2 (1/2 + r/6 + r^2/24 + r^3/120)
// (remainder r^6/720 < 2^-54 r on |r| <= ln2/256). t - 1 is exact for
// 1/2 <= t <= 2^53, so near zero the result rounds once: for n = 0, p itself.

template <int L> RAVL_INLINE Vec<double, L> expm1_fast(Vec<double, L> x0) {
  using V = Vec<double, L>;
  using U = Vec<uint64_t, L>;
  using I = Vec<int64_t, L>;
  V x = hw_max(x0, V(kLow));
  V k = fma(x, V(kInvLn2x128), V(kShift));
  V n = k - V(kShift);
  V r = fnma(n, V(kLn2o128), x);
  V p = fma(r * r, fma(r, fma(r, fma(r, V(kE5), V(kE4)), V(kE3)), V(kE2)), r);
  U kb = as_uint(k);
  I j = bitcast<I>(kb & U(127));
  U e = (kb & ~U(127)) << 45;  // floor(n/128) in the exponent field
  V t = as_float<V>(as_uint(gather(reinterpret_cast<const double*>(exp_tables::kExp128), j)) + e);
  V y = fma(t, p, t - V(1.0));
  return as_float<V>(as_uint(y) | sign_bit(x0));
}

}  // namespace expm1_detail
}  // namespace ravl
