// The fixed, deterministic inputs of the export-wide tests, shared by the
// Linux tests and the Windows runner so that both binaries see the same bits.
//
// Every value is built from integer bit patterns and exact operations only,
// so the generator gives the same bits under any compiler and C runtime.
// Lane values are drawn from a seeded SplitMix64 stream: a mix of ordinary
// values over several ranges, the special values (NaN with and without
// payloads, signalling NaN, infinities, signed zeros, denormals, the extreme
// finite values, the overflow and underflow thresholds of exp, integers and
// half-integers at the rounding boundaries of the conversions) and random bit
// patterns; integer lanes mix small, medium and random values with the edges
// (0, +-1, INT_MIN, INT_MAX, UINT_MAX, 2^53 + 1, ...).
#pragma once

#include <stdint.h>
#include <string.h>

namespace ravl_test {

// Lane types of the family table's signatures.
enum Lane : uint8_t { kD, kS, kI, kU, kL, kUL };

inline int lane_bytes(Lane t) { return (t == kD || t == kL || t == kUL) ? 8 : 4; }

struct Rng {
  uint64_t s;
  explicit Rng(uint64_t seed) : s(seed) {}
  uint64_t next() {
    uint64_t z = (s += 0x9e3779b97f4a7c15ull);
    z = (z ^ (z >> 30)) * 0xbf58476d1ce4e5b9ull;
    z = (z ^ (z >> 27)) * 0x94d049bb133111ebull;
    return z ^ (z >> 31);
  }
  uint32_t below(uint32_t n) { return (uint32_t)(next() % n); }
};

inline uint64_t bits_of(double x) {
  uint64_t b;
  memcpy(&b, &x, 8);
  return b;
}
inline uint32_t bits_of(float x) {
  uint32_t b;
  memcpy(&b, &x, 4);
  return b;
}

// Double special values (bit patterns).
constexpr uint64_t kDoubleSpecials[] = {
    0x0000000000000000ull, 0x8000000000000000ull,  // +-0
    0x7ff0000000000000ull, 0xfff0000000000000ull,  // +-inf
    0x7ff8000000000000ull, 0xfff8000000000000ull,  // quiet NaN, the default NaN
    0x7ff8000000000123ull, 0xfffc00000000abcdull,  // NaN payloads
    0x7ff0000000000001ull, 0xfff4000000000000ull,  // signalling NaN
    0x0000000000000001ull, 0x800fffffffffffffull,  // smallest and largest denormals
    0x0000000123456789ull, 0x0010000000000000ull,  // a denormal, DBL_MIN
    0x8010000000000000ull, 0x7fefffffffffffffull,  // -DBL_MIN, DBL_MAX
    0xffefffffffffffffull, 0x3ff0000000000000ull,  // -DBL_MAX, 1
    0xbff0000000000000ull, 0x3fe0000000000000ull,  // -1, 0.5
    0x40862e42fefa39efull, 0x40862e42fefa39f0ull,  // ln(DBL_MAX) and above
    0xc0874910d52d3051ull, 0xc0874910d52d3052ull,  // exp's underflow threshold -745.13 and below
    0x408633ce8fb9f87eull, 0xc086232bdd7abcd2ull,  // 710.475860073944, ln(DBL_MIN)
    0x400921fb54442d18ull, 0x3ff921fb54442d18ull,  // pi, pi/2
    0x4330000000000000ull, 0x4330000000000001ull,  // 2^52, 2^52 + 1
    0x4340000000000001ull, 0xc340000000000001ull,  // +-(2^53 + 2)
    0x41dfffffffe00000ull, 0x41e0000000000000ull,  // 2^31 - 0.5, 2^31
    0xc1e0000000000000ull, 0xc1e0000000100000ull,  // -2^31, -2^31 - 0.5
    0x41efffffffe00000ull, 0x41f0000000000000ull,  // 2^32 - 1, 2^32
    0x43e0000000000000ull, 0xc3e0000000000000ull,  // +-2^63
    0x43f0000000000000ull, 0x43efffffffffffffull,  // 2^64, largest double below it
    0x4004000000000000ull, 0xc00c000000000000ull,  // 2.5, -3.5 (ties)
    0x3fdfffffffffffffull, 0x7fe0000000000000ull,  // largest double below 0.5, 2^1023
};

// Single special values (bit patterns).
constexpr uint32_t kFloatSpecials[] = {
    0x00000000u, 0x80000000u,  // +-0
    0x7f800000u, 0xff800000u,  // +-inf
    0x7fc00000u, 0xffc00000u,  // quiet NaN, the default NaN
    0x7fc00123u, 0xffe0abcdu,  // NaN payloads
    0x7f800001u, 0xffa00000u,  // signalling NaN
    0x00000001u, 0x807fffffu,  // smallest and largest denormals
    0x00012345u, 0x00800000u,  // a denormal, FLT_MIN
    0x80800000u, 0x7f7fffffu,  // -FLT_MIN, FLT_MAX
    0xff7fffffu, 0x3f800000u,  // -FLT_MAX, 1
    0xbf800000u, 0x3f000000u,  // -1, 0.5
    0x42b17218u, 0x42b17219u,  // ln(FLT_MAX) and above
    0xc2cff1b5u, 0xc2cff1b6u,  // expf's underflow threshold -103.97 and below
    0xc2aeac50u, 0x42b2d4fcu,  // ln(FLT_MIN), 89.41599
    0x40490fdbu, 0x3fc90fdbu,  // pi, pi/2
    0x4b000000u, 0x4b000001u,  // 2^23, 2^23 + 1
    0x4b800001u, 0xcb800001u,  // +-(2^24 + 2)
    0x4effffffu, 0x4f000000u,  // largest float below 2^31, 2^31
    0xcf000000u, 0xcf000001u,  // -2^31 and below
    0x4f7fffffu, 0x4f800000u,  // largest float below 2^32, 2^32
    0x5f000000u, 0xdf000000u,  // +-2^63
    0x5f800000u, 0x5f7fffffu,  // 2^64, largest float below it
    0x40200000u, 0xc0600000u,  // 2.5, -3.5 (ties)
    0x3effffffu, 0x7f000000u,  // largest float below 0.5, 2^127
};

constexpr uint32_t kInt32Edges[] = {
    0u, 1u, 0xffffffffu, 2u, 0xfffffffeu, 0x80000000u, 0x7fffffffu, 0x80000001u,
    0x7fffu, 0x8000u, 0xffff8000u, 0x00010000u, 3u, 7u, 0xfffffff9u, 1024u,
    0xfffffc00u, 1100u, 0xfffffbb4u, 149u, 0xffffff6bu, 0x00ffffffu, 0x01000001u, 0x55555555u,
};

constexpr uint64_t kInt64Edges[] = {
    0ull, 1ull, ~0ull, 2ull, 0x8000000000000000ull, 0x7fffffffffffffffull, 0x8000000000000001ull,
    0x0020000000000000ull, 0x0020000000000001ull, 0xffdfffffffffffffull,  // 2^53, 2^53 + 1, -(2^53 + 1)
    0x0000000100000000ull, 0x00000000ffffffffull, 0x0000000080000000ull, 0xffffffff80000000ull,
    0x0000000001000001ull, 0x7ffffffffffffc00ull, 0x7ffffffffffffdffull, 0xfffffffffffff800ull,
    0x8000000000000400ull, 0x00ffffffffffffffull, 0x0100000000000001ull, 0x5555555555555555ull,
};

template <class T, int N> constexpr int count_of(const T (&)[N]) { return N; }

// A double with the given sign, unbiased exponent and 52-bit fraction
// (exponent -1023 makes a denormal or zero).
inline uint64_t make_double(uint64_t sign, int e, uint64_t frac) {
  return sign << 63 | (uint64_t)(e + 1023) << 52 | (frac & 0xfffffffffffffull);
}
inline uint32_t make_float(uint32_t sign, int e, uint32_t frac) {
  return sign << 31 | (uint32_t)(e + 127) << 23 | (frac & 0x7fffffu);
}
// Uniform integer in [-n, n].
inline int64_t symmetric(Rng& r, int64_t n) { return (int64_t)(r.next() % (uint64_t)(2 * n + 1)) - n; }

inline uint64_t gen_double(Rng& r) {
  uint64_t u = r.next();
  switch (r.below(16)) {
    case 0:
    case 1: return kDoubleSpecials[u % count_of(kDoubleSpecials)];
    case 2: return u;                                               // any bit pattern
    case 3: return make_double(u >> 63, (int)(u % 2047) - 1023, r.next());  // any exponent
    case 4:
    case 5:
    case 6: return make_double(u >> 63, (int)(u % 41) - 20, r.next());     // moderate magnitudes
    case 7:
    case 8: return bits_of((double)symmetric(r, 128) * 0.5);               // integers, half-integers
    case 9:
    case 10: return bits_of((double)symmetric(r, 800LL << 32) / 4294967296.0);  // [-800, 800]
    case 11: return bits_of((double)symmetric(r, 4LL << 40) / 1099511627776.0);  // [-4, 4]
    case 12: {                                                      // integers of any size, +- 0.5
      int64_t k = (int64_t)(r.next() >> (u % 64));
      return bits_of((double)k + (double)(int)(u % 3) * 0.5 - 0.5);
    }
    case 13: return make_double(u >> 63, (int)(u % 3) - 1, r.next() >> (u % 50));  // near 1
    case 14: return make_double(u >> 63, -1023, r.next());                  // denormals
    default: return make_double(u >> 63, 1000 + (int)(u % 24), r.next());  // huge
  }
}

inline uint32_t gen_float(Rng& r) {
  uint64_t u = r.next();
  switch (r.below(16)) {
    case 0:
    case 1: return kFloatSpecials[u % count_of(kFloatSpecials)];
    case 2: return (uint32_t)u;
    case 3: return make_float((uint32_t)(u >> 63), (int)(u % 255) - 127, (uint32_t)r.next());
    case 4:
    case 5:
    case 6: return make_float((uint32_t)(u >> 63), (int)(u % 41) - 20, (uint32_t)r.next());
    case 7:
    case 8: return bits_of((float)symmetric(r, 128) * 0.5f);
    case 9:
    case 10: return bits_of((float)symmetric(r, 120 << 16) / 65536.0f);  // [-120, 120]
    case 11: return bits_of((float)symmetric(r, 4 << 20) / 1048576.0f);   // [-4, 4]
    case 12: {
      int32_t k = (int32_t)((uint32_t)r.next() >> (u % 32));
      return bits_of((float)k + (float)(int)(u % 3) * 0.5f - 0.5f);
    }
    case 13: return make_float((uint32_t)(u >> 63), (int)(u % 3) - 1, (uint32_t)(r.next() >> (u % 22)) >> 9);
    case 14: return make_float((uint32_t)(u >> 63), -127, (uint32_t)r.next());
    default: return make_float((uint32_t)(u >> 63), 110 + (int)(u % 18), (uint32_t)r.next());
  }
}

inline uint32_t gen_int32(Rng& r) {
  uint64_t u = r.next();
  switch (r.below(8)) {
    case 0:
    case 1: return kInt32Edges[u % count_of(kInt32Edges)];
    case 2: return (uint32_t)symmetric(r, 100);
    case 3: return (uint32_t)symmetric(r, 2200);
    case 4:
    case 5: return (uint32_t)(r.next() >> 32);
    default: {  // any bit length, either sign
      uint32_t m = (uint32_t)(r.next() >> 32) >> (u % 32);
      return (u >> 40 & 1) ? 0u - m : m;
    }
  }
}

inline uint64_t gen_int64(Rng& r) {
  uint64_t u = r.next();
  switch (r.below(8)) {
    case 0:
    case 1: return kInt64Edges[u % count_of(kInt64Edges)];
    case 2: return (uint64_t)symmetric(r, 100);
    case 3: return (uint64_t)symmetric(r, 1LL << 40);
    case 4: return r.next();
    default: {
      uint64_t m = r.next() >> (u % 64);
      return (u >> 40 & 1) ? 0ull - m : m;
    }
  }
}

// One lane value of type t (the bits, zero-extended to 64).
inline uint64_t gen_lane(Lane t, Rng& r) {
  switch (t) {
    case kD: return gen_double(r);
    case kS: return gen_float(r);
    case kI:
    case kU: return gen_int32(r);
    default: return gen_int64(r);
  }
}

// Values for lanes outside the width (the fourth lane of width 3, the lanes
// of a 128-bit register past a narrow vector): the hostile ones, cycling.
inline uint64_t gen_undefined_lane(Lane t, uint64_t k, Rng& r) {
  switch (t) {
    case kD: {
      const uint64_t v[] = {0x7ff8000000000000ull, 0xffefffffffffffffull, 0x7ff0000000000000ull,
                            0x7ff0000000000001ull, 0x0000000000000001ull, 0x0000000000000000ull, r.next()};
      return v[k % 7];
    }
    case kS: {
      const uint32_t v[] = {0x7fc00000u, 0xff7fffffu, 0x7f800000u, 0x7f800001u, 0x00000001u, 0x00000000u,
                            (uint32_t)r.next()};
      return v[k % 7];
    }
    case kI:
    case kU: {
      const uint32_t v[] = {0u, 0x80000000u, 0xffffffffu, (uint32_t)r.next()};
      return v[k % 4];
    }
    default: {
      const uint64_t v[] = {0ull, 0x8000000000000000ull, ~0ull, r.next()};
      return v[k % 4];
    }
  }
}

// The stream seed of one trial: the same for every export whose arguments
// have the same lane types at the same width, so that classes, aliases and
// families with equal signatures see equal inputs.
inline uint64_t trial_seed(const char* arg_types, int width, int trial) {
  uint64_t h = 0xcbf29ce484222325ull;
  for (const char* p = arg_types; *p; ++p) h = (h ^ (uint8_t)*p) * 0x100000001b3ull;
  return h ^ ((uint64_t)width << 48) ^ ((uint64_t)trial * 0x9e3779b97f4a7c15ull);
}

// Trials per export: about 256 lanes whatever the width.
inline int trials_for_width(int w) { return w == 1 ? 256 : w == 2 ? 128 : w <= 4 ? 64 : w == 8 ? 32 : 16; }

}  // namespace ravl_test
