// Reference results of the rounding conversions, from MPFR: integers (given
// as sign and 64-bit magnitude) to double and float, and double to float, in
// the four OpenCL rounding modes. MPFR sets the integer exactly (64-bit
// precision) or the double exactly (53 bits), then rounds once to the target
// format in the named mode, subnormal results included. NaN inputs give the
// IEEE 754 quiet NaN of the narrowing: the sign and the upper 22 payload bits
// kept, the quiet bit set. Usable by any tool: C++ and MPFR only.
#pragma once

#include <mpfr.h>

#include <cstdint>
#include <cstring>

namespace ravl_test {

enum class RefRm { rte, rtn, rtp, rtz };

inline mpfr_rnd_t mpfr_mode(RefRm rm) {
  switch (rm) {
    case RefRm::rte: return MPFR_RNDN;
    case RefRm::rtn: return MPFR_RNDD;
    case RefRm::rtp: return MPFR_RNDU;
    default: return MPFR_RNDZ;
  }
}

// One MPFR variable per thread, 64 bits: every int64/uint64 value is exact.
inline mpfr_ptr ref_cvt_var() {
  struct Var {
    mpfr_t v;
    Var() { mpfr_init2(v, 64); }
    ~Var() { mpfr_clear(v); }
  };
  static thread_local Var var;
  return var.v;
}

// The integer -mag (neg) or +mag; 0 is +0 in both cases.
inline void ref_set_int(mpfr_ptr v, bool neg, uint64_t mag) {
  mpfr_set_uj(v, mag, MPFR_RNDN);  // exact at 64 bits
  if (neg) mpfr_neg(v, v, MPFR_RNDN);
  if (mag == 0) mpfr_set_zero(v, 1);
}

inline double ref_int_to_double(bool neg, uint64_t mag, RefRm rm) {
  mpfr_ptr v = ref_cvt_var();
  ref_set_int(v, neg, mag);
  return mpfr_get_d(v, mpfr_mode(rm));
}
inline float ref_int_to_float(bool neg, uint64_t mag, RefRm rm) {
  mpfr_ptr v = ref_cvt_var();
  ref_set_int(v, neg, mag);
  return mpfr_get_flt(v, mpfr_mode(rm));
}

// Signed source: sign and magnitude of x (INT64_MIN's magnitude is 2^63).
inline double ref_i64_to_double(int64_t x, RefRm rm) {
  return ref_int_to_double(x < 0, x < 0 ? 0 - (uint64_t)x : (uint64_t)x, rm);
}
inline float ref_i64_to_float(int64_t x, RefRm rm) {
  return ref_int_to_float(x < 0, x < 0 ? 0 - (uint64_t)x : (uint64_t)x, rm);
}

inline float ref_double_to_float(double x, RefRm rm) {
  uint64_t b;
  std::memcpy(&b, &x, 8);
  if ((b & 0x7FFFFFFFFFFFFFFFull) > 0x7FF0000000000000ull) {
    uint32_t f = (uint32_t)(b >> 32 & 0x80000000u) | 0x7FC00000u | (uint32_t)(b >> 29 & 0x003FFFFFu);
    float r;
    std::memcpy(&r, &f, 4);
    return r;
  }
  mpfr_ptr v = ref_cvt_var();
  mpfr_set_d(v, x, MPFR_RNDN);  // exact: 53 <= 64 bits; keeps infinities and the sign of zero
  // mpfr_get_flt rounds once to binary32 in the mode, subnormals included.
  return mpfr_get_flt(v, mpfr_mode(rm));
}

}  // namespace ravl_test
