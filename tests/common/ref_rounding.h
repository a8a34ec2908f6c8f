// Reference rounding to integral values (ceil, floor, trunc, rint/nearbyint
// in each IEEE rounding direction, round with halfway cases away from zero)
// for double and float, by exact integer arithmetic on the bit pattern: the
// value is m * 2^(e - p + 1) with m the integer significand; the integral part
// is m shifted right, the discarded bits decide the increment, and the result
// is that integer (at most 2^(p-1), so exact in the format) with x's sign.
// No floating rounding operation is involved. Header-only, C++17, for the
// tests and the exhaustive tools.
#pragma once

#include <cstdint>
#include <cstring>

namespace ravl_test {

enum class Rounding { kNearestEven, kDown, kUp, kTowardZero, kHalfAway };

template <class T> struct RefFmt;
template <> struct RefFmt<double> {
  using U = uint64_t;
  static constexpr int prec = 53, bias = 1023, max_field = 0x7ff;
};
template <> struct RefFmt<float> {
  using U = uint32_t;
  static constexpr int prec = 24, bias = 127, max_field = 0xff;
};

// x rounded to an integral value in direction r, bit exact. NaN gives the
// NaN with its quiet bit set (what the hardware returns); infinities, zeros
// and integral values come back unchanged; a zero result keeps x's sign.
template <class T> T ref_round_integral(T x, Rounding r) {
  using F = RefFmt<T>;
  using U = typename F::U;
  constexpr int mbits = F::prec - 1;
  constexpr U sign_mask = (U)1 << (sizeof(T) * 8 - 1);
  U b;
  std::memcpy(&b, &x, sizeof b);
  const bool neg = (b & sign_mask) != 0;
  const int field = (int)((b >> mbits) & (U)F::max_field);
  const U frac = b & (((U)1 << mbits) - 1);
  if (field == F::max_field) {
    if (frac != 0) b |= (U)1 << (mbits - 1);  // NaN: quieted
    T out;
    std::memcpy(&out, &b, sizeof out);
    return out;
  }
  // |x| = m * 2^(field - bias - mbits) for normals, frac * 2^(1 - bias - mbits) for subnormals.
  const uint64_t m = field ? (uint64_t)frac | (uint64_t)1 << mbits : (uint64_t)frac;
  const int shift = mbits + F::bias - (field ? field : 1);  // fraction bits of m
  if (shift <= 0 || m == 0) return x;                       // integral already (zeros included)
  uint64_t q, rest;                                         // |x| = q + rest / 2^shift
  bool above_half, at_half;
  if (shift >= 63) {  // |x| = m / 2^shift < 2^-10: integral part 0, below one half
    q = 0;
    rest = m;
    above_half = at_half = false;
  } else {
    q = m >> shift;
    rest = m & (((uint64_t)1 << shift) - 1);
    const uint64_t half = (uint64_t)1 << (shift - 1);
    above_half = rest > half;
    at_half = rest == half;
  }
  bool up = false;  // add one to the magnitude
  switch (r) {
    case Rounding::kNearestEven: up = above_half || (at_half && (q & 1)); break;
    case Rounding::kHalfAway: up = above_half || at_half; break;
    case Rounding::kTowardZero: up = false; break;
    case Rounding::kDown: up = neg && rest != 0; break;
    case Rounding::kUp: up = !neg && rest != 0; break;
  }
  const uint64_t n = q + (up ? 1 : 0);  // n <= 2^mbits: exact in T
  T mag = (T)n;
  U mb;
  std::memcpy(&mb, &mag, sizeof mb);
  if (neg) mb |= sign_mask;
  T out;
  std::memcpy(&out, &mb, sizeof out);
  return out;
}

}  // namespace ravl_test
