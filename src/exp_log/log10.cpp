// log10(x) on double lanes (family log10) and on single lanes (family log10f).
//
// Same shape as log2 (exp_log/log2.cpp): branch-free vector path, lanes that
// are not positive normal numbers go to the scalar routine of the precision:
//   NaN -> NaN; +inf -> +inf; +-0 -> -inf (status 2); x < 0, -inf -> NaN
//   (status 1); denormals -> the full algorithm on x 2^64 with E' - 64.
// log10(10^k) is exactly k for the powers of ten that are doubles (k = 0..22)
// and singles (k = 0..10) in the plain classes.
//
// Classes and measured max errors (tests/accuracy_test.cpp against MPFR,
// the same sampling as log2):
//   log10   plain                 full   0.5 ulp (also the scalar routine)
//   log10   _native _half         fast   2.87e6 ulp, relative 3.3e-10 = 2^-31.5
//                                        (the r^4/4 truncation just below 1);
//                                        about 1.5x the throughput of plain
//   log10f  plain                 full   0.5022 ulp (every positive normal single
//                                        checked): in single, two-word table
//   log10f  _native _half         fast   6.46 ulp
#include "exp_log/log_core.h"

namespace ravl {
namespace log10_detail {

using namespace log_core;

// ---- double, full class ---------------------------------------------------------
//
// log10(x) = E' log10(2) + (a_R + b_R) + log10(e) ln(1 + r) with
// log10(2) = H + G (H with 42 significant bits, so E' H is exact for
// |E'| < 2^11 and A = E' H + a_R is exact: both on the grid 2^-43, |A| < 2^9)
// and log10(e) = h + l:
//   t + te = h r exactly;  S + err = A + t exactly (2Sum);
//   result = S + ((((b_R + te) + E' G) + l r + err) + h r^2 P(r)).
// E' = 0 near x = 1, so the tail there is free of E' G's rounding.
struct Log10Full : frame::Kernel {
  using sig = double(double);
  static constexpr bool has_callout = true;
  template <int L> static RAVL_INLINE VD<L> core(const Parts<L>& p) {
    using V = VD<L>;
    const V h(f64_bits(logtab::kLog10eHi)), l(f64_bits(logtab::kLog10eLo));
    V a, b;
    gather_pairs(reinterpret_cast<const double*>(logtab::kLog10Pairs), p.row << 1, a, b);
    V r = p.r, r2 = r * r;
    V A = fma(p.e, V(f64_bits(logtab::kLog10_2Hi)), a);
    V t = r * h;
    V te = fms(r, h, t);
    V P = fma(r, fma(r, fma(r, fma(r, fma(r, V(kC7), V(kC6)), V(kC5)), V(kC4)), V(kC3)), V(kC2));
    V S = A + t;
    V bb = S - A;
    V err = (A - (S - bb)) + (t - bb);
    V lo = fma(p.e, V(f64_bits(logtab::kLog10_2Lo)), b + te);
    lo = fma(r, l, lo) + err;
    lo = fma(r2 * P, h, lo);
    return S + lo;
  }
  template <int L> static RAVL_INLINE VD<L> vec(VD<L> x) { return core(reduce(x)); }
  template <int L> static RAVL_INLINE Mask<double, L> special(VD<L> x, VD<L>) { return special_full(x); }
  static RAVL_INLINE int scalar(const double* x, double* r) { return logd_scalar<Log10Full>(x, r); }
};

}  // namespace log10_detail

namespace log10_k {
using full = log10_detail::Log10Full;
// E' log10(2) + (T_R + r + r^2 (-1/2 + r/3)) log10(e): see log_core.h.
using fast = log_core::DoubleFast<log_core::Base10, log10_detail::Log10Full>;
}  // namespace log10_k
namespace log10f_k {
using full = log_core::SingleFull<log_core::Base10>;
using fast = log_core::SingleFast<log_core::Base10>;
}  // namespace log10f_k

}  // namespace ravl

#include "entries/log10.inc"
#include "entries/log10f.inc"
