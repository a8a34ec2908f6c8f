// sinh x on double lanes (family sinh) and on single lanes (family sinhf).
//
// Every member computes all lanes on a branch-free vector path on a = |x| and
// ORs the sign of x back into the result (so sinh(-x) = -sinh(x) bit for bit
// and sinh(-0) = -0), flags the lanes that path cannot handle (|x| >=
// 707.7001953125, infinities and NaN for double; |x| > 89.0 for single) and
// hands them to the scalar routine of its precision (hyperbolic/sinh_cosh.h),
// which every class shares:
//   NaN -> quiet NaN, +-inf -> +-inf, |x| >= 710.475860073944 -> +-inf
//   (status 3), tiny x -> x (status 4 for a denormal x).
// Tiny and denormal x are not flagged: the vector path returns r = a there.
//
// Classes and measured max errors (tests/accuracy_test.cpp against MPFR; the
// test asserts the bounds kept in its table):
//   sinh   plain     full   see kBounds (the double algorithm as designed)
//   sinh   _native   fast   see kBounds
//   sinhf  plain     full   the double full algorithm on the widened lanes, rounded once
//   sinhf  _native   fast   the pair kernel on the float lanes (hyperbolic/sinh_cosh.h): 2.733 ulp
#include "hyperbolic/sinh_cosh.h"

namespace ravl {
namespace sinh_detail {

using namespace sinh_cosh;

// ---- double, full class ---------------------------------------------------------
//
// N = round(128 a/ln2) by the shifter 1.5 * 2^45 (its last place is 2^-7),
// n = N/128, j = N mod 128, k = N >> 7; r = a - n ln2 in two fused steps;
// from the pair (A_j, B_j) = (sinh(j ln2/128), 2^(-j/128)/2), each scaling by
// 2^+-k an integer addition or subtraction of k on the exponent field:
//   Cp = A_j 2^k + B_j 2^k + B_j 2^-k = cosh(n ln2),
//   Sp = A_j 2^k + (B_j 2^k - B_j 2^-k) = sinh(n ln2),
//   sinh a = Sp (1 + C1) + Cp S,
// S ~ sinh r = r + r^3 (c3 + c5 r^2), C1 ~ cosh r - 1 = r^2 (c2 + c4 r^2)
// (kInvLn2, kC2, kC4, kLn2: hyperbolic/sinh_cosh.h).
constexpr double kShift45 = f64_bits(0x42c8000000000000ull);  // 1.5 * 2^45 = 52776558133248
constexpr double kC3 = f64_bits(0x3fc55555555554adull);       // 0.16666666666666199
constexpr double kC5 = f64_bits(0x3f8111115712f425ull);       // 0.008333335370815995

struct SinhRows : BoundRows<double, kBoundBits> {
  Row<double> inv_ln2 = row(kInvLn2), shift = row(kShift45), ln2_hi = row(kLn2Hi), ln2_lo = row(kLn2Lo),
              ln2 = row(kLn2), c2 = row(kC2), c3 = row(kC3), c4 = row(kC4), c5 = row(kC5);
  Row<uint64_t> m127 = row<uint64_t>(127), sign = row<uint64_t>(0x8000000000000000ull);
};
inline constexpr SinhRows kSinhRows{};

// The path of both double classes; kFull selects the two-part reduction
// (else r = a - n ln2 in one step).
template <bool kFull, int L> RAVL_INLINE Vec<double, L> sinh_vec(Vec<double, L> x) {
  using V = Vec<double, L>;
  using U = Vec<uint64_t, L>;
  using I = Vec<int64_t, L>;
  const SinhRows& c = rows(kSinhRows);
  V a = as_float<V>(as_uint(x) & get<U>(c.abs));
  V v = fma(a, get<V>(c.inv_ln2), get<V>(c.shift));
  V n = v - get<V>(c.shift);
  U vb = as_uint(v);
  U j = vb & get<U>(c.m127);
  U e = (vb ^ j) << 45;  // k in the exponent field
  V r;
  if constexpr (kFull) {
    r = fnma(n, get<V>(c.ln2_hi), a);
    r = fnma(n, get<V>(c.ln2_lo), r);
  } else {
    r = fnma(n, get<V>(c.ln2), a);
  }
  V ta, tb;
  gather_pairs<16>(reinterpret_cast<const double*>(hyperbolic_tables::kSinh128), bitcast<I>(j), ta, tb);
  V ak = as_float<V>(as_uint(ta) + e);
  V bk = as_float<V>(as_uint(tb) + e);
  V bm = as_float<V>(as_uint(tb) - e);
  V cp = (ak + bk) + bm;
  V sp = ak + (bk - bm);
  V r2 = r * r;
  V s = fma(r, r2 * fma(get<V>(c.c5), r2, get<V>(c.c3)), r);
  V c1 = r2 * fma(get<V>(c.c4), r2, get<V>(c.c2));
  V y = fma(s, cp, c1 * sp) + sp;
  return as_float<V>(as_uint(y) | (as_uint(x) & get<U>(c.sign)));
}

struct SinhPath {
  template <bool kFull, int L> static RAVL_INLINE Vec<double, L> run(Vec<double, L> x) { return sinh_vec<kFull, L>(x); }
};
// Plain: as above. _native: the one-constant reduction (ln2's rounding,
// 2.3e-17, times n shifts r by up to a few 1e-12). The single classes: the
// same paths on the widened lanes, rounded once.
using K = Kernels<kSinhRows, true, SinhPath>;

}  // namespace sinh_detail

namespace sinh_k {
using full = sinh_detail::K::Double<true>;
using fast = sinh_detail::K::Double<false>;
}  // namespace sinh_k
namespace sinhf_k {
using full = sinh_detail::K::Single<true>;
using fast = sinh_detail::K::SingleFast;
}  // namespace sinhf_k

}  // namespace ravl

#include "entries/sinh.inc"
#include "entries/sinhf.inc"
