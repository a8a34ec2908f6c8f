// Reference results of the floating to integer conversions (the cvtfpto*
// families), for the tests and the exhaustive tool: the exact integer value
// of the source rounded in the chosen mode, then the library's results for
// NaN and out-of-range values, as result bits (32-bit targets zero-extended).
//
// Independent of the library's method: the source is decoded into sign,
// integer significand M and exponent E (value M * 2^E) and rounded with
// integer arithmetic on the quotient and remainder of M / 2^-E; the range
// checks compare that integer with the bounds. No floating operation is used,
// so the result does not depend on the caller's rounding mode either.
#pragma once

#include <cstdint>
#include <cstring>

namespace ravl_test {

enum class CvtTarget { i32, u32, i64, u64 };
// In the order of the round-to-integral immediates: to nearest even, down, up, toward zero.
enum class CvtRound { rte = 0, rtn = 1, rtp = 2, rtz = 3 };

struct CvtDecoded {
  bool nan, inf, neg;  // neg: the sign bit
  uint64_t m;          // value = m * 2^e for finite sources
  int e;
};

inline CvtDecoded cvt_decode(uint64_t bits, int mant_bits, int exp_bits) {
  CvtDecoded d{};
  int bias = (1 << (exp_bits - 1)) - 1;
  uint64_t mant = bits & ((1ull << mant_bits) - 1);
  int be = (int)(bits >> mant_bits & ((1u << exp_bits) - 1));
  d.neg = bits >> (mant_bits + exp_bits) & 1;
  if (be == (1 << exp_bits) - 1) {
    d.nan = mant != 0;
    d.inf = mant == 0;
    return d;
  }
  d.m = be == 0 ? mant : mant | 1ull << mant_bits;
  d.e = (be == 0 ? 1 : be) - bias - mant_bits;
  return d;
}

// |rounded value| as a 128-bit integer (2^64 stands for anything >= 2^64).
inline unsigned __int128 cvt_round_magnitude(const CvtDecoded& d, CvtRound rm) {
  using U128 = unsigned __int128;
  const U128 kHuge = (U128)1 << 64;
  if (d.m == 0) return 0;
  if (d.e >= 0) {
    if (d.e >= 64) return kHuge;
    U128 v = (U128)d.m << d.e;
    return v > kHuge ? kHuge : v;
  }
  int sh = -d.e;
  uint64_t q;
  int rem_vs_half;  // -1 below half (nonzero), 0 exactly half, 1 above half, -2 no remainder
  if (sh >= 64) {
    q = 0;
    rem_vs_half = -1;  // m < 2^53 <= 2^(sh-1): a nonzero value below one half
  } else {
    q = d.m >> sh;
    uint64_t rem = d.m - (q << sh), half = 1ull << (sh - 1);
    rem_vs_half = rem == 0 ? -2 : rem < half ? -1 : rem == half ? 0 : 1;
  }
  bool inexact = rem_vs_half != -2;
  switch (rm) {
    case CvtRound::rte:
      if (rem_vs_half == 1 || (rem_vs_half == 0 && (q & 1))) ++q;
      break;
    case CvtRound::rtn:
      if (d.neg && inexact) ++q;
      break;
    case CvtRound::rtp:
      if (!d.neg && inexact) ++q;
      break;
    case CvtRound::rtz:
      break;
  }
  return q;
}

// The expected result bits for source bits `bits` of a binary64 (is_float
// false) or binary32 source.
inline uint64_t ref_fp_to_int_bits(CvtTarget t, CvtRound rm, bool sat, uint64_t bits, bool is_float) {
  using U128 = unsigned __int128;
  CvtDecoded d = is_float ? cvt_decode(bits, 23, 8) : cvt_decode(bits, 52, 11);
  const uint64_t kMin64 = 1ull << 63;
  if (d.nan) {
    switch (t) {
      case CvtTarget::i32: return sat ? 0 : 0x80000000u;
      case CvtTarget::u32: return sat ? (d.neg ? 0 : 0xFFFFFFFFu) : 0x80000000u;
      case CvtTarget::i64: return sat ? 0 : kMin64;
      case CvtTarget::u64: return sat ? 0 : kMin64;
    }
  }
  U128 mag = d.inf ? (U128)1 << 64 : cvt_round_magnitude(d, rm);
  switch (t) {
    case CvtTarget::i32:
      if (!d.neg) return mag <= 0x7FFFFFFF ? (uint64_t)mag : sat ? 0x7FFFFFFFu : 0x80000000u;
      return mag <= 0x80000000u ? (uint32_t)(0u - (uint32_t)mag) : 0x80000000u;
    case CvtTarget::u32:
      if (sat) return d.neg ? 0 : mag <= 0xFFFFFFFFu ? (uint64_t)mag : 0xFFFFFFFFu;
      return mag <= 0xFFFFFFFFu ? (uint64_t)mag : 0x80000000u;
    case CvtTarget::i64:
      if (!d.neg) return mag < ((U128)1 << 63) ? (uint64_t)mag : sat ? kMin64 - 1 : kMin64;
      return mag <= ((U128)1 << 63) ? 0 - (uint64_t)mag : kMin64;
    case CvtTarget::u64:
      if (sat) return d.neg ? 0 : mag < ((U128)1 << 64) ? (uint64_t)mag : ~0ull;
      return mag < ((U128)1 << 64) ? (uint64_t)mag : kMin64;
  }
  return 0;
}

}  // namespace ravl_test
