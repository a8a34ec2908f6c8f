// Error of a result in ulp against MPFR, for one-argument functions given as
// an MPFR function (mpfr_exp, mpfr_log2, mpfr_log1p, ...).
//
// The ulp is that of the correctly rounded result's binade; when the
// correctly rounded result is a power of two reached from below (the exact
// value lies in the binade under it), the smaller ulp of that binade; zero
// and denormal results use the smallest denormal. A NaN result must be a
// NaN, an infinite or zero correctly rounded result must be matched exactly
// (sign included); a mismatch there counts as an infinite error.
#pragma once

#include <mpfr.h>

#include <cmath>
#include <limits>

namespace ravl_test {

using MpfrFn = int (*)(mpfr_ptr, mpfr_srcptr, mpfr_rnd_t);

template <class T> class UlpRef {
 public:
  explicit UlpRef(MpfrFn f) : f_(f) {
    mpfr_set_emin(mpfr_get_emin_min());
    mpfr_set_emax(mpfr_get_emax_max());
    mpfr_inits2(kPrec, x_, e_, d_, t_, (mpfr_ptr)0);
  }
  ~UlpRef() { mpfr_clears(x_, e_, d_, t_, (mpfr_ptr)0); }
  UlpRef(const UlpRef&) = delete;
  UlpRef& operator=(const UlpRef&) = delete;

  // The correctly rounded (to nearest) result.
  T correct(T x) {
    eval(x);
    return round();
  }
  double ulp_error(T x, T got) {
    eval(x);
    if (mpfr_nan_p(e_)) return std::isnan(got) ? 0 : INFINITY;
    T cr = round();
    if (std::isinf(cr)) return got == cr ? 0 : INFINITY;
    if (std::isnan(got) || std::isinf(got)) return INFINITY;
    mpfr_set_d(d_, (double)got, MPFR_RNDN);  // exact
    mpfr_sub(d_, d_, e_, MPFR_RNDN);
    mpfr_abs(d_, d_, MPFR_RNDN);
    mpfr_div_d(d_, d_, ulp(cr), MPFR_RNDN);  // in MPFR: the difference may be below DBL_MIN
    return mpfr_get_d(d_, MPFR_RNDN);
  }

 private:
  static constexpr int kMant = std::numeric_limits<T>::digits - 1;                  // 52 or 23
  static constexpr int kPrec = 2 * (kMant + 1) + 24;                                // 130 or 72 bits
  static constexpr int kMinExp = std::numeric_limits<T>::min_exponent - 1 - kMant;  // -1074 or -149
  void eval(T x) {
    mpfr_set_d(x_, (double)x, MPFR_RNDN);
    f_(e_, x_, MPFR_RNDN);
  }
  T round() { return round_to(T()); }
  double round_to(double) {
    // Round once to double, denormals included: to the grid of e's binade or
    // the denormal grid 2^-1074 when that is coarser.
    return round_grid<double>();
  }
  float round_to(float) { return round_grid<float>(); }
  template <class U> U round_grid() {
    if (mpfr_nan_p(e_)) return std::numeric_limits<U>::quiet_NaN();
    if (mpfr_inf_p(e_) || mpfr_zero_p(e_)) return (U)mpfr_get_d(e_, MPFR_RNDN);
    long ex = mpfr_get_exp(e_);  // |e| in [2^(ex-1), 2^ex)
    if (ex < kMinExp) return mpfr_sgn(e_) < 0 ? -(U)0 : (U)0;
    long lsb = ex - 1 - kMant > kMinExp ? ex - 1 - kMant : kMinExp;
    mpfr_set_prec(t_, kPrec);
    mpfr_set(t_, e_, MPFR_RNDN);
    if (ex - lsb < 1) {
      // |e| < 2^kMinExp: rounds to 0 or to the smallest denormal.
      bool up = mpfr_cmpabs_ui_2exp(t_, 1, kMinExp - 1) > 0;
      U v = up ? std::ldexp((U)1, kMinExp) : (U)0;
      return mpfr_sgn(e_) < 0 ? -v : v;
    }
    mpfr_prec_round(t_, ex - lsb, MPFR_RNDN);
    return (U)mpfr_get_d(t_, MPFR_RNDN);  // exact, or past the largest finite value: infinity
  }
  static int mpfr_cmpabs_ui_2exp(mpfr_srcptr v, unsigned long u, long e) {
    mpfr_t a;
    mpfr_init2(a, 8);
    mpfr_set_ui_2exp(a, u, e, MPFR_RNDN);
    int c = mpfr_cmpabs(v, a);
    mpfr_clear(a);
    return c;
  }
  double ulp(T cr) {
    int ex;
    double m = std::frexp((double)cr, &ex);  // cr = m 2^ex, m in [0.5, 1)
    bool from_below = std::fabs(m) == 0.5 && mpfr_cmpabs(e_, t_cr(cr)) < 0;
    double u = std::ldexp(1.0, ex - 1 - kMant - (from_below ? 1 : 0));
    double denorm = std::ldexp(1.0, kMinExp);
    return cr == 0 || u < denorm ? denorm : u;
  }
  mpfr_srcptr t_cr(T cr) {
    mpfr_set_prec(t_, kPrec);
    mpfr_set_d(t_, (double)cr, MPFR_RNDN);
    return t_;
  }
  MpfrFn f_;
  mpfr_t x_, e_, d_, t_;
};

}  // namespace ravl_test
