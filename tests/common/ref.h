// The tests' floating references: the IEEE field layout, operations rounded
// once to double or float in a given rounding mode (MPFR in the format's
// exponent range, subnormals included), and the error of a result in ulp
// against MPFR for the one-argument functions.
//
// Rounding modes are numbered as in MXCSR: 0 to nearest even, 1 down, 2 up,
// 3 toward zero.
#pragma once

#include <mpfr.h>

#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <string>

namespace ravl_test {

template <class T> struct Fmt;
template <> struct Fmt<double> {
  using U = uint64_t;
  static constexpr U sign = 1ull << 63, exp = 0x7ffull << 52, quiet = 1ull << 51, mant = (1ull << 52) - 1;
  static constexpr int prec = 53, emin = -1073, emax = 1024;  // MPFR's exponents: 0.5 <= m < 1
};
template <> struct Fmt<float> {
  using U = uint32_t;
  static constexpr U sign = 1u << 31, exp = 0xffu << 23, quiet = 1u << 22, mant = (1u << 23) - 1;
  static constexpr int prec = 24, emin = -148, emax = 128;
};
template <class T> typename Fmt<T>::U bits(T x) {
  typename Fmt<T>::U u;
  std::memcpy(&u, &x, sizeof x);
  return u;
}
template <class T> T from_bits(uint64_t u) {
  const typename Fmt<T>::U v = (typename Fmt<T>::U)u;
  T x;
  std::memcpy(&x, &v, sizeof x);
  return x;
}
template <class T> std::string hex(T x) {
  char b[64];
  std::snprintf(b, sizeof b, "%a [0x%llx]", (double)x, (unsigned long long)bits(x));
  return b;
}
template <class T> bool is_nan(T x) { return (bits(x) & ~Fmt<T>::sign) > Fmt<T>::exp; }
template <class T> T quiet(T x) { return from_bits<T>(bits(x) | Fmt<T>::quiet); }
template <class T> T default_nan() { return from_bits<T>(Fmt<T>::sign | Fmt<T>::exp | Fmt<T>::quiet); }

inline mpfr_rnd_t mpfr_mode(int rm) {
  static const mpfr_rnd_t kRnd[4] = {MPFR_RNDN, MPFR_RNDD, MPFR_RNDU, MPFR_RNDZ};
  return kRnd[rm & 3];
}
inline void full_range() {
  mpfr_set_emin(mpfr_get_emin_min());
  mpfr_set_emax(mpfr_get_emax_max());
}

// An MPFR number (64 bits hold any double and any 64-bit integer exactly).
struct Mp {
  mpfr_t v;
  explicit Mp(double x = 0, int prec = 64) {
    mpfr_init2(v, prec);
    mpfr_set_d(v, x, MPFR_RNDN);
  }
  ~Mp() { mpfr_clear(v); }
  Mp(const Mp&) = delete;
  operator mpfr_ptr() { return v; }
};

// op(r, rnd) -> ternary, computed in MPFR's full range, then rounded once to T
// in mode rm: T's precision, overflow and subnormal grid.
template <class T, class Op> T mp_round(int rm, Op op) {
  const mpfr_rnd_t rnd = mpfr_mode(rm);
  Mp r(0, Fmt<T>::prec);
  full_range();
  int t = op(r.v, rnd);
  mpfr_set_emin(Fmt<T>::emin);
  mpfr_set_emax(Fmt<T>::emax);
  t = mpfr_check_range(r.v, t, rnd);
  mpfr_subnormalize(r.v, t, rnd);
  const T out = (T)mpfr_get_d(r.v, MPFR_RNDN);
  full_range();
  return out;
}

using MpfrFn = int (*)(mpfr_ptr, mpfr_srcptr, mpfr_rnd_t);
// Two arguments (pow, hypot; pown and rootn with the integer as the second).
using MpfrFn2 = int (*)(mpfr_ptr, mpfr_srcptr, mpfr_srcptr, mpfr_rnd_t);

// The error of got = f(x) in ulp: the ulp of the correctly rounded result's
// binade, the smaller one below a power of two reached from below, the
// smallest denormal for zero and denormal results. A NaN must be a NaN and
// an infinite correctly rounded result must be matched exactly.
template <class T> class UlpRef {
 public:
  explicit UlpRef(MpfrFn f, MpfrFn2 f2 = nullptr) : f_(f), f2_(f2) {
    mpfr_inits2(2 * Fmt<T>::prec + 24, x_, e_, d_, (mpfr_ptr)0);
    mpfr_init2(y_, 64);
  }
  ~UlpRef() { mpfr_clears(x_, y_, e_, d_, (mpfr_ptr)0); }
  UlpRef(const UlpRef&) = delete;

  // f(x), or f2(x, y) for a two-argument reference.
  T correct(T x, double y = 0) {
    eval(x, y);
    return round();
  }
  double ulp_error(T x, T got) { return ulp_error2(x, 0, got); }
  double ulp_error2(T x, double y, T got) {
    eval(x, y);
    if (mpfr_nan_p(e_)) return std::isnan(got) ? 0 : INFINITY;
    const T cr = round();
    if (std::isinf(cr)) return got == cr ? 0 : INFINITY;
    if (std::isnan(got) || std::isinf(got)) return INFINITY;
    int ex;
    const double m = std::frexp((double)cr, &ex);  // cr = m 2^ex, m in [0.5, 1)
    Mp c(cr);
    const bool from_below = std::fabs(m) == 0.5 && mpfr_cmpabs(e_, c) < 0;
    const double denorm = std::ldexp(1.0, Fmt<T>::emin - 1);
    const double ulp = cr == 0 ? denorm : std::fmax(std::ldexp(1.0, ex - Fmt<T>::prec - from_below), denorm);
    mpfr_set_d(d_, (double)got, MPFR_RNDN);
    mpfr_sub(d_, d_, e_, MPFR_RNDN);
    mpfr_abs(d_, d_, MPFR_RNDN);
    mpfr_div_d(d_, d_, ulp, MPFR_RNDN);
    return mpfr_get_d(d_, MPFR_RNDN);
  }

 private:
  void eval(T x, double y) {
    full_range();
    mpfr_set_d(x_, (double)x, MPFR_RNDN);
    mpfr_set_d(y_, y, MPFR_RNDN);
    if (f2_) f2_(e_, x_, y_, MPFR_RNDN);
    else f_(e_, x_, MPFR_RNDN);
  }
  T round() {
    if (mpfr_nan_p(e_)) return NAN;
    return mp_round<T>(0, [&](mpfr_ptr r, mpfr_rnd_t rnd) { return mpfr_set(r, e_, rnd); });
  }
  MpfrFn f_;
  MpfrFn2 f2_;
  mpfr_t x_, y_, e_, d_;
};

// The error of a single result against a double reference value v (a
// screening reference, within about 2^-50 relative), in ulp of the single
// binade of v rounded: the smaller ulp below a power of two reached from
// below, the smallest denormal at zero and below. A NaN must be a NaN and an
// infinite rounded v must be matched exactly.
inline double screen_ulp(double v, float got) {
  if (std::isnan(v)) return std::isnan(got) ? 0 : INFINITY;
  const float cr = (float)v;
  if (std::isinf(cr)) return got == cr ? 0 : INFINITY;
  if (std::isnan(got) || std::isinf(got)) return INFINITY;
  double ulp = 0x1p-149;
  if (cr != 0) {
    int ex;
    const double m = std::frexp((double)cr, &ex);
    const bool below = std::fabs(m) == 0.5 && std::fabs(v) < std::fabs((double)cr);
    ulp = std::fmax(std::ldexp(1.0, ex - 24 - below), 0x1p-149);
  }
  return std::fabs((double)got - v) / ulp;
}

}  // namespace ravl_test
