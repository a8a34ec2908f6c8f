// The inputs of every test that runs exports on generated values, shared by
// the Linux tests and the Windows runner so that both see the same bits: C
// library only, and built from integer bit patterns and exact operations, so
// the same under any compiler and C runtime (generate in the default rounding
// mode; a few cases use one correctly rounded multiply or conversion).
//
// gen_call() draws one lane of every argument of a signature: floating lanes
// mix the special values, powers of two and their neighbours, the rounding
// boundaries of the conversions and of rounding to integers, denormals, huge
// and tiny values and random bits; a second floating argument is often tied
// to the first (equal magnitude, a few ulps away, a close exponent, x a
// multiple or a half-odd multiple of y), a third is often minus the product
// of the first two (fma's cancellation); ldexp's n lands near x's underflow and
// overflow thresholds; integer pairs put x at k*y - 1, k*y, k*y + 1; integer
// lanes have their ties at 24 and 53 significant bits.
#pragma once

#include <stdint.h>
#include <string.h>

namespace ravl_test {

// Lane types of the family table's signatures.
enum Lane : uint8_t { kD, kS, kI, kU, kL, kUL };
inline int lane_bytes(Lane t) { return (t == kD || t == kL || t == kUL) ? 8 : 4; }
inline bool is_fp(Lane t) { return t == kD || t == kS; }

struct Rng {
  uint64_t s;
  explicit Rng(uint64_t seed) : s(seed) {}
  uint64_t next() {  // SplitMix64
    uint64_t z = (s += 0x9e3779b97f4a7c15ull);
    z = (z ^ (z >> 30)) * 0xbf58476d1ce4e5b9ull;
    z = (z ^ (z >> 27)) * 0x94d049bb133111ebull;
    return z ^ (z >> 31);
  }
  uint32_t below(uint32_t n) { return (uint32_t)(next() % n); }
  int64_t symmetric(int64_t n) { return (int64_t)(next() % (uint64_t)(2 * n + 1)) - n; }  // in [-n, n]
};

constexpr uint64_t kDoubleSpecials[] = {
    0x0000000000000000, 0x8000000000000000, 0x7ff0000000000000, 0xfff0000000000000,  // +-0, +-inf
    0x7ff8000000000000, 0xfff8000000000000, 0x7ff8000000000123, 0xfffc00000000abcd,  // quiet NaN, payloads
    0x7ff0000000000001, 0xfff4000000000000,                                          // signalling NaN
    0x0000000000000001, 0x800fffffffffffff, 0x0000000123456789, 0x8000000000000003,  // denormals
    0x0010000000000000, 0x8010000000000000, 0x7fefffffffffffff, 0xffefffffffffffff,  // +-DBL_MIN, +-DBL_MAX
    0x3ff0000000000000, 0xbff0000000000000, 0x3fe0000000000000, 0x4000000000000000,  // 1, -1, 0.5, 2
    0x3fefffffffffffff, 0x3ff0000000000001, 0x4008000000000000, 0xc01c000000000000,  // 1 -+ ulp, 3, -7
    0x3fb999999999999a, 0x4024000000000000, 0x3cb0000000000000, 0x1de0000000000000,  // 0.1, 10, eps, 2^-537
    0x40862e42fefa39ef, 0x40862e42fefa39f0, 0xc0874910d52d3051, 0xc0874910d52d3052,  // exp's overflow, underflow
    0x408633ce8fb9f87e, 0xc086232bdd7abcd2, 0x400921fb54442d18, 0x3ff921fb54442d18,  // 710.48, ln DBL_MIN, pi, pi/2
    0x4330000000000000, 0x4330000000000001, 0x4340000000000001, 0xc340000000000001,  // 2^52, 2^52+1, +-(2^53+2)
    0x433fffffffffffff, 0x41dfffffffe00000, 0x41e0000000000000, 0xc1e0000000000000,  // 2^53-1, 2^31-.5, +-2^31
    0xc1e0000000100000, 0x41efffffffe00000, 0x41f0000000000000, 0x43e0000000000000,  // -2^31-.5, 2^32-1, 2^32, 2^63
    0xc3e0000000000000, 0x43f0000000000000, 0x43efffffffffffff, 0x4004000000000000,  // -2^63, 2^64 and below, 2.5
    0xc00c000000000000, 0x3fdfffffffffffff, 0x7fe0000000000000, 0x7fd5555555555555,  // -3.5, below .5, 2^1023, max/3
};
constexpr uint32_t kFloatSpecials[] = {
    0x00000000, 0x80000000, 0x7f800000, 0xff800000, 0x7fc00000, 0xffc00000, 0x7fc00123, 0xffe0abcd,
    0x7f800001, 0xffa00000, 0x00000001, 0x807fffff, 0x00012345, 0x80000003, 0x00800000, 0x80800000,
    0x7f7fffff, 0xff7fffff, 0x3f800000, 0xbf800000, 0x3f000000, 0x40000000, 0x3f7fffff, 0x3f800001,
    0x40400000, 0xc0e00000, 0x3dcccccd, 0x41200000, 0x34000000, 0x1e800000, 0x42b17218, 0x42b17219,
    0xc2cff1b5, 0xc2cff1b6, 0xc2aeac50, 0x42b2d4fc, 0x40490fdb, 0x3fc90fdb, 0x4b000000, 0x4b000001,
    0x4b800001, 0xcb800001, 0x4b7fffff, 0x4effffff, 0x4f000000, 0xcf000000, 0xcf000001, 0x4f7fffff,
    0x4f800000, 0x5f000000, 0xdf000000, 0x5f800000, 0x5f7fffff, 0x40200000, 0xc0600000, 0x3effffff,
    0x7f000000, 0x7eaaaaaa, 0x7e800000, 0x7e7fe800, 0x7e7fe801,  // the same kinds as the double table;
};                                                                 // 2^126, invf's last approximated value
constexpr uint32_t kInt32Edges[] = {
    0, 1, 0xffffffff, 2, 0xfffffffe, 0x80000000, 0x7fffffff, 0x80000001, 0x7fff, 0x8000, 0xffff8000, 0x10000,
    3, 7, 0xfffffff9, 1024, 0xfffffc00, 1100, 0xfffffbb4, 149, 0xffffff6b, 0x00ffffff, 0x01000001, 0x55555555,
};
constexpr uint64_t kInt64Edges[] = {
    0, 1, ~0ull, 2, 0x8000000000000000, 0x7fffffffffffffff, 0x8000000000000001, 0x0020000000000000,
    0x0020000000000001, 0xffdfffffffffffff, 0x0000000100000000, 0x00000000ffffffff, 0x0000000080000000,
    0xffffffff80000000, 0x0000000001000001, 0x7ffffffffffffc00, 0x7ffffffffffffdff, 0xfffffffffffff800,
    0x8000000000000400, 0x00ffffffffffffff, 0x0100000000000001, 0x5555555555555555,
};
template <class T, int N> constexpr int count_of(const T (&)[N]) { return N; }

// ---- floating lanes as bit patterns -------------------------------------------

inline int mant_bits(Lane t) { return t == kD ? 52 : 23; }
inline int bias_of(Lane t) { return t == kD ? 1023 : 127; }
inline uint64_t sign_bit(Lane t) { return 1ull << (t == kD ? 63 : 31); }
// Sign, unbiased exponent (-bias: denormal or zero) and fraction.
inline uint64_t make_fp(Lane t, uint64_t s, int e, uint64_t frac) {
  const int m = mant_bits(t), b = bias_of(t);
  e = e < -b ? -b : e > b ? b : e;
  return (s & 1 ? sign_bit(t) : 0) | (uint64_t)(e + b) << m | (frac & ((1ull << m) - 1));
}
inline int exponent_of(Lane t, uint64_t x) { return (int)(x >> mant_bits(t) & (2 * bias_of(t) + 1)) - bias_of(t); }
// M * 2^e exactly, for 0 < M < 2^(mant + 1), with the sign s (a normal result, clamped in range).
inline uint64_t scaled(Lane t, uint64_t s, uint64_t M, int e) {
  int top = 63;
  while (!(M >> top)) --top;
  const int m = mant_bits(t);
  return make_fp(t, s, e + top, top >= m ? M >> (top - m) : M << (m - top));
}
inline uint64_t d_bits(double x) { uint64_t b; memcpy(&b, &x, 8); return b; }
inline uint64_t f_bits(float x) { uint32_t b; memcpy(&b, &x, 4); return b; }
inline double d_of(uint64_t b) { double x; memcpy(&x, &b, 8); return x; }
inline float f_of(uint64_t b) { float x; uint32_t u = (uint32_t)b; memcpy(&x, &u, 4); return x; }
inline uint64_t fp_of_int(Lane t, int64_t k) { return t == kD ? d_bits((double)k) : f_bits((float)k); }

inline uint64_t gen_fp_any(Lane t, Rng& r) {
  const uint64_t u = r.next(), s = u >> 63;
  const int m = mant_bits(t), b = bias_of(t);
  switch (r.below(16)) {
    case 0:
    case 1: return t == kD ? kDoubleSpecials[u % count_of(kDoubleSpecials)] : kFloatSpecials[u % count_of(kFloatSpecials)];
    case 2: return t == kD ? u : (uint32_t)u;                                       // any bit pattern
    case 3: return make_fp(t, s, (int)(u % (2 * b + 1)) - b, r.next());            // any exponent
    case 4: {  // a power of two (denormal ones too) and its neighbours
      const int e = (int)(u % (2 * b + m)) - b - m + 1;
      const uint64_t p = e > -b ? make_fp(t, s, e, 0) : make_fp(t, s, -b, 1ull << (e + b + m - 1));
      return p + r.below(5) - 2;
    }
    case 5:
    case 6: return make_fp(t, s, (int)(u % 41) - 20, r.next());                    // moderate
    case 7: return make_fp(t, s, (int)(u % 70) - 3, r.next());                     // 2^-3 .. 2^66: conversion bounds
    case 8: return scaled(t, s, 2 * (r.next() >> (64 - m + (u % m))) + 1, -1) + r.below(3) - 1;  // k + 1/2 and neighbours
    case 9: return fp_of_int(t, r.symmetric(256)) - (u & 1 ? 1ull << m : 0);       // integers, halves
    case 10: return t == kD ? d_bits((double)r.symmetric(800ll << 32) / 4294967296.0)  // exp's range
                            : f_bits((float)r.symmetric(120 << 16) / 65536.0f);
    case 11: return make_fp(t, s, (int)(u % 3) - 1, r.next() >> (u % 50));         // near 1
    case 12: return make_fp(t, s, -b, r.next());                                   // denormal
    case 13: return make_fp(t, s, b - 1 - (int)(u % 24), r.next());                // huge
    case 14: return t == kD ? make_fp(t, s, (int)(u % 300) - 150, (r.next() & ~0x1fffffffull) | 0x10000000) + r.below(3) - 1
                            : make_fp(t, s, -(int)(u % 60) - 1, r.next());         // a float tie as a double; tiny
    default: return fp_of_int(t, (int64_t)(r.next() >> (u % 64))) + r.below(3) - 1;  // integers of any size
  }
}
inline uint64_t gen_fp(Lane t, Rng& r) { return t == kD ? gen_fp_any(t, r) : (uint32_t)gen_fp_any(t, r); }

// ---- integer lanes ----------------------------------------------------------------

// A positive integer of n bits (n >= p) whose bits below the p leading ones are
// a tie, a tie -+1 or random.
inline uint64_t near_tie(Rng& r, int n, int p) {
  const uint64_t lead = (r.next() | 1ull << 63) >> (64 - p), half = 1ull << (n - p - 1);
  const uint64_t low = r.below(4) == 0 ? r.next() & (2 * half - 1) : half + r.below(3) - 1;
  return lead << (n - p) | low;
}
inline uint64_t gen_int(Lane t, Rng& r) {
  const uint64_t u = r.next(), neg = u >> 40 & 1;
  const bool wide = lane_bytes(t) == 8;
  uint64_t v;
  switch (r.below(8)) {
    case 0: v = wide ? kInt64Edges[u % count_of(kInt64Edges)] : kInt32Edges[u % count_of(kInt32Edges)]; break;
    case 1: v = (uint64_t)r.symmetric(u & 1 ? 100 : 2200); break;
    case 2: v = r.next(); break;
    case 3: {  // ties of a rounding to 24 or 53 bits
      const int p = wide && (u & 1) ? 53 : 24, n = p + 1 + (int)(u % ((wide ? 64 : 32) - p - 1));
      v = neg ? 0 - near_tie(r, n, p) : near_tie(r, n, p);
      break;
    }
    default: v = neg ? 0 - (r.next() >> (u % 64)) : r.next() >> (u % 64);  // any bit length
  }
  return wide ? v : (uint32_t)v;
}
inline uint64_t gen_lane(Lane t, Rng& r) { return is_fp(t) ? gen_fp(t, r) : gen_int(t, r); }

// One lane of every argument (types t[0..n-1]) into v[0..n-1], with the
// relations between arguments described at the top.
inline void gen_call(const Lane* t, int n, Rng& r, uint64_t* v) {
  for (int i = 0; i < n; ++i) v[i] = gen_lane(t[i], r);
  const uint64_t u = r.next();
  if (n >= 2 && is_fp(t[0]) && t[1] == t[0]) {
    const int m = mant_bits(t[0]), ex = exponent_of(t[0], v[0]);
    switch (u % 10) {
      case 0: v[1] = v[0] ^ (u >> 8 & 1 ? sign_bit(t[0]) : 0); break;   // equal magnitudes
      case 1: v[1] = v[0] + (u >> 8) % 5 - 2; break;                      // a few ulps apart
      case 2: v[1] = make_fp(t[0], u >> 9, ex - (int)((u >> 10) % (m + 14)) + 6, r.next()); break;  // close exponent
      case 3: {  // x = q * y / 2: multiples (q even) and ties (q odd) of y
        const uint64_t my = (r.next() >> (75 - m)) | 1, q = (u >> 8) % 2048 + 1;
        const int ey = (int)((u >> 20) % 200) - 100;
        v[1] = scaled(t[0], u >> 40, my, ey);
        v[0] = scaled(t[0], u >> 41, my * q, ey - 1) + (u >> 42) % 3 - 1;
        break;
      }
      default: break;
    }
    if (n == 3 && u % 3 == 0) {  // z = -(x * y) and neighbours: fma's cancellation
      const uint64_t p = t[0] == kD ? d_bits(d_of(v[0]) * d_of(v[1])) : f_bits(f_of(v[0]) * f_of(v[1]));
      v[2] = (p ^ sign_bit(t[0])) + (u >> 50) % 5 - 2;
    } else if (n == 3 && u % 3 == 1) {  // x * y near the smallest normal, or near overflow
      const int b = bias_of(t[0]), e = u >> 50 & 1 ? 8 - b / 2 - (int)(u >> 52) % 14 : b / 2 - 1;
      v[0] = make_fp(t[0], u >> 30, e, v[0]);
      v[1] = make_fp(t[0], u >> 31, e - (u >> 50 & 1 ? (int)(u >> 56) % 30 : -(int)(u >> 56) % 3), v[1]);
    }
  } else if (n == 2 && is_fp(t[0]) && t[1] == kI) {  // ldexp's n
    const int b = bias_of(t[0]), m = mant_bits(t[0]), ex = exponent_of(t[0], v[0]);
    const int32_t extremes[] = {INT32_MIN, INT32_MAX, INT32_MIN + 1, INT32_MAX - 1, 4095, 4096, 4097, -4097, 2098, -2152, 0};
    switch (u % 6) {
      case 0: v[1] = (uint32_t)extremes[(u >> 8) % count_of(extremes)]; break;
      case 1:
      case 2: v[1] = (uint32_t)(1 - b - ex - (int)((u >> 8) % (m + 4)) + 2); break;  // denormal results
      case 3: v[1] = (uint32_t)(b - ex + (int)((u >> 8) % 3) - 1); break;           // the overflow edge
      case 4: v[1] = (uint32_t)((int)((u >> 8) % (8 * b + 400)) - 4 * b - 200); break;
      default: break;
    }
  } else if (n == 2 && (t[0] == kI || t[0] == kU) && t[1] == t[0] && u % 2) {  // x near a multiple of y
    const uint64_t lim = t[0] == kI ? 0x7fffffffu : 0xffffffffu;
    const uint64_t y = (uint32_t)v[1];
    uint64_t ay = t[0] == kI && (int32_t)y < 0 ? 0 - (uint64_t)(int32_t)y : y;
    if (ay == 0) ay = 1;
    const uint64_t kmax = lim / ay, k = (u >> 8) % 4 ? (r.next() % (kmax + 1)) : kmax - (u >> 10) % 2;
    const int64_t x = (int64_t)(k * ay) + (int)((u >> 12) % 3) - 1;
    v[0] = (uint32_t)(t[0] == kI && (u >> 14 & 1) ? -x : x);
  }
  for (int i = 0; i < n; ++i)
    if (lane_bytes(t[i]) == 4) v[i] = (uint32_t)v[i];
}

// Values for lanes outside the width (the fourth lane of width 3, the lanes
// of a 128-bit register past a narrow vector): hostile ones, cycling with k.
inline uint64_t gen_undefined_lane(Lane t, uint64_t k, Rng& r) {
  const uint64_t d[] = {0x7ff8000000000000, 0xffefffffffffffff, 0x7ff0000000000000, 0x7ff0000000000001, 1, 0, r.next()};
  const uint64_t s[] = {0x7fc00000, 0xff7fffff, 0x7f800000, 0x7f800001, 1, 0, (uint32_t)r.next()};
  const uint64_t i4[] = {0, 0x80000000, 0xffffffff, 0x7fffffff, 1, 0xfffffffe, (uint32_t)r.next()};
  const uint64_t i8[] = {0, 0x8000000000000000, ~0ull, 0x7fffffffffffffff, 1, 0xfffffffffffffffe, r.next()};
  return (t == kD ? d : t == kS ? s : lane_bytes(t) == 4 ? i4 : i8)[k % 7];
}

// The stream seed of one trial: the same for every export whose arguments
// have the same lane types at the same width, so that classes, aliases and
// families with equal signatures see equal inputs.
inline uint64_t trial_seed(const char* arg_types, int width, int trial) {
  uint64_t h = 0xcbf29ce484222325ull;
  // The arguments only: a result through a pointer (",*d" and the like) and
  // the closing parenthesis are left out, so that sincos and sincosreg (and
  // their single twins) see the same inputs.
  for (const char* p = arg_types; *p && *p != ')' && !(p[0] == ',' && p[1] == '*'); ++p)
    h = (h ^ (uint8_t)*p) * 0x100000001b3ull;
  return h ^ ((uint64_t)width << 48) ^ ((uint64_t)trial * 0x9e3779b97f4a7c15ull);
}

// Trials per export: 256 lanes whatever the width.
inline int trials_for_width(int w) { return w == 1 ? 256 : w == 2 ? 128 : w <= 4 ? 64 : w == 8 ? 32 : 16; }

}  // namespace ravl_test
