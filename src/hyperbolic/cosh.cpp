// cosh x on double lanes (family cosh) and on single lanes (family coshf).
//
// Every member computes all lanes on a branch-free vector path on a = |x| (the
// sign is cleared, so cosh(-x) = cosh(x) bit for bit), flags the lanes that
// path cannot handle (|x| >= 707.7001953125, infinities and NaN for double;
// |x| > 89.0 for single) and hands them to the scalar routine of its
// precision (hyperbolic/sinh_cosh.h), which every class shares:
//   NaN -> quiet NaN, +-inf -> +inf, |x| >= 710.475860073944 -> +inf
//   (status 3), tiny x -> 1.
//
// Classes and measured max errors (tests/accuracy_test.cpp against MPFR; the
// test asserts the bounds kept in its table):
//   cosh   plain     full   see kBounds (the double algorithm as designed)
//   cosh   _native   fast   see kBounds
//   coshf  plain     full   the double full algorithm on the widened lanes, rounded once
//   coshf  _native   fast   the pair kernel on the float lanes (hyperbolic/sinh_cosh.h): 2.554 ulp
#include "hyperbolic/sinh_cosh.h"

namespace ravl {
namespace cosh_detail {

using namespace sinh_cosh;

// ---- double, full class ---------------------------------------------------------
//
// N = round(256 a/ln2) by the shifter 1.5 * 2^44 (its last place is 2^-8),
// n = N/256, j = N mod 256, k = N >> 8; r = a - n ln2 in two fused steps
// (ln2 high part with trailing zeros, so n hi is exact);
//   P = 2^(j/256 + k)/2 = T[j] with k added to its exponent field,
//   M = 2^(-j/256 - k)/2 = T[256 - j] with k + 1 taken from its exponent field,
// so P + M = cosh(n ln2) and P - M = sinh(n ln2), and
//   cosh a = cosh(n ln2)(1 + C1) + sinh(n ln2) S,
// S ~ sinh r = r + c3 r^3, C1 ~ cosh r - 1 = r^2 (c2 + c4 r^2), |r| <= ln2/512
// (kInvLn2, kC2, kC4, kLn2: hyperbolic/sinh_cosh.h).
constexpr double kShift44 = f64_bits(0x42b8000000000000ull);   // 1.5 * 2^44 = 26388279066624
constexpr double kLn2Hi = f64_bits(0x3fe62e42fefc0000ull);     // ln2 high part 0.69314718057285063
constexpr double kLn2Lo = f64_bits(0xbdac610ca86c3899ull);     // ln2 low part -1.2905320270077144e-11
constexpr double kC3 = f64_bits(0x3fc5555570813e14ull);        // 0.16666667931939172

struct CoshRows : BoundRows<double, kBoundBits> {
  Row<double> inv_ln2 = row(kInvLn2), shift = row(kShift44), ln2_hi = row(kLn2Hi), ln2_lo = row(kLn2Lo),
              ln2 = row(kLn2), c2 = row(kC2), c3 = row(kC3), c4 = row(kC4);
  Row<uint64_t> m255 = row<uint64_t>(255), exp_field = row<uint64_t>(0x7ff0000000000000ull),
                one_exp = row<uint64_t>(0x0010000000000000ull), n256 = row<uint64_t>(256);
};
inline constexpr CoshRows kCoshRows{};

// The path of both double classes; kFull selects the two-part reduction
// (else r = a - n ln2 in one step).
template <bool kFull, int L> RAVL_INLINE Vec<double, L> cosh_vec(Vec<double, L> x) {
  using V = Vec<double, L>;
  using U = Vec<uint64_t, L>;
  using I = Vec<int64_t, L>;
  const CoshRows& c = rows(kCoshRows);
  V a = as_float<V>(as_uint(x) & get<U>(c.abs));
  V v = fma(a, get<V>(c.inv_ln2), get<V>(c.shift));
  V n = v - get<V>(c.shift);
  U vb = as_uint(v);
  U j = vb & get<U>(c.m255);
  U e = (vb << 44) & get<U>(c.exp_field);  // k in the exponent field
  V r;
  if constexpr (kFull) {
    r = fnma(n, get<V>(c.ln2_hi), a);
    r = fnma(n, get<V>(c.ln2_lo), r);
  } else {
    r = fnma(n, get<V>(c.ln2), a);
  }
  const double* t = reinterpret_cast<const double*>(hyperbolic_tables::kCosh257);
  V tp = gather(t, bitcast<I>(j));
  V tm = gather(t, bitcast<I>(get<U>(c.n256) - j));
  V p = as_float<V>(as_uint(tp) + e);
  V m = as_float<V>(as_uint(tm) - e - get<U>(c.one_exp));
  V r2 = r * r;
  V s = fma(r, get<V>(c.c3) * r2, r);
  V c1 = r2 * fma(get<V>(c.c4), r2, get<V>(c.c2));
  V pm = p + m;
  return fma(c1, pm, s * (p - m)) + pm;
}

struct CoshPath {
  template <bool kFull, int L> static RAVL_INLINE Vec<double, L> run(Vec<double, L> x) { return cosh_vec<kFull, L>(x); }
};
// Plain: as above. _native: the one-constant reduction (ln2's rounding,
// 2.3e-17, times n shifts r by up to a few 1e-12). The single classes: the
// same paths on the widened lanes, rounded once.
using K = Kernels<kCoshRows, false, CoshPath>;

}  // namespace cosh_detail

namespace cosh_k {
using full = cosh_detail::K::Double<true>;
using fast = cosh_detail::K::Double<false>;
}  // namespace cosh_k
namespace coshf_k {
using full = cosh_detail::K::Single<true>;
using fast = cosh_detail::K::SingleFast;
}  // namespace coshf_k

}  // namespace ravl

#include "entries/cosh.inc"
#include "entries/coshf.inc"
