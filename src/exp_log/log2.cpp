// log2(x) on double lanes (family log2) and on single lanes (family log2f).
//
// Every member computes all lanes on a branch-free vector path (the reduction
// and tables of exp_log/log_core.h) and flags the lanes that path cannot
// handle: x not a positive normal number (negatives, zeros, denormals, +inf,
// NaN). Those lanes go to the scalar routine of the precision, which every
// class shares, so special inputs give the same result in every class:
//   NaN -> NaN; +inf -> +inf; +-0 -> -inf (status 2); x < 0, -inf -> NaN
//   (status 1); denormals -> the full algorithm on x 2^64, minus 64.
// log2(2^k) is exactly k in every class (r = 0, table row 0, E' = k).
//
// Classes and measured max errors (tests/accuracy_test.cpp against MPFR:
// log-uniform samples over the positive normals, uniform samples over
// [0.5, 2], random bit patterns, denormals, +-64 ulps around the edges):
//   log2   plain                  full   0.5 ulp (also the scalar routine)
//   log2   _native _half _rm      fast   2.39e6 ulp, relative 3.3e-10 = 2^-31.5
//                                        (the r^4/4 truncation just below 1);
//                                        about 1.45x the throughput of plain
//   log2f  plain _rm              full   0.5014 ulp (every positive normal single
//                                        checked): in single, two-word table
//   log2f  _native _half          fast   6.12 ulp
#include "exp_log/log_core.h"

namespace ravl {
namespace log2_detail {

using namespace log_core;

// ---- double, full class ---------------------------------------------------------
//
// log2(x) = E' + (a_R + b_R) + log2(e) ln(1 + r), with a_R + b_R = -log2(R/B)
// from kLog2Pairs (a_R on the grid 2^-42, so A = E' + a_R is exact) and
// log2(e) = h + l:
//   t + te = h r exactly (product and its fused error);
//   S + err = A + t exactly (2Sum: no assumption on which is larger);
//   result = S + (((b_R + te) + l r + err) + h r^2 P(r)).
// The tail is below 2^-8 |S| and computed with relative error about 2^-50,
// so the result is within 0.5 ulp plus about 2^-8 ulp.
struct Log2Full : frame::Kernel {
  using sig = double(double);
  static constexpr bool has_callout = true;
  template <int L> static RAVL_INLINE VD<L> core(const Parts<L>& p) {
    using V = VD<L>;
    const V h(f64_bits(logtab::kLog2eHi)), l(f64_bits(logtab::kLog2eLo));
    V a, b;
    gather_pairs(reinterpret_cast<const double*>(logtab::kLog2Pairs), p.row << 1, a, b);
    V r = p.r, r2 = r * r;
    V A = p.e + a;
    V t = r * h;
    V te = fms(r, h, t);
    V P = fma(r, fma(r, fma(r, fma(r, fma(r, V(kC7), V(kC6)), V(kC5)), V(kC4)), V(kC3)), V(kC2));
    V S = A + t;
    V bb = S - A;
    V err = (A - (S - bb)) + (t - bb);
    V lo = fma(r, l, b + te) + err;
    lo = fma(r2 * P, h, lo);
    return S + lo;
  }
  template <int L> static RAVL_INLINE VD<L> vec(VD<L> x) { return core(reduce(x)); }
  template <int L> static RAVL_INLINE Mask<double, L> special(VD<L> x, VD<L>) { return special_full(x); }
  static RAVL_INLINE int scalar(const double* x, double* r) { return logd_scalar<Log2Full>(x, r); }
};

}  // namespace log2_detail

namespace log2_k {
using full = log2_detail::Log2Full;
// E' + (T_R + r + r^2 (-1/2 + r/3)) log2(e): see log_core.h.
using fast = log_core::DoubleFast<log_core::Base2, log2_detail::Log2Full>;
}  // namespace log2_k
namespace log2f_k {
using full = log_core::SingleFull<log_core::Base2>;
using fast = log_core::SingleFast<log_core::Base2>;
}  // namespace log2f_k

}  // namespace ravl

#include "entries/log2.inc"
#include "entries/log2f.inc"
