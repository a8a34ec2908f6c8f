// Pieces shared by the root families (sqrt.cpp, rsqrt.cpp, cbrt.cpp,
// rcbrt.cpp): the single lane test "not a positive, normal, finite single",
// the scalar routines' NaN of a domain error, and exact scaling by powers of
// two. Each family's algorithm and scalar routine stay in its own file.
#pragma once

#include "frame/entry.h"

namespace ravl {
namespace roots {

// Lanes whose single x is not a positive, normal, finite number (zeros,
// subnormals, negative numbers, infinities, NaN), in one integer compare:
// bits(x) - bits(FLT_MIN) - 2^31 wraps the positive normals onto
// [INT_MIN, 0xfeffffff] (0x7f7fffff, FLT_MAX, lands on 0xfeffffff) and
// everything else above it; +inf lands on 0xff000000, just above.
// bits(x) - 0x80800000 is bits(x) + 0x7f800000 modulo 2^32.
constexpr int32_t kPosNormalOffsetf = 0x7f800000;
constexpr int32_t kPosNormalTopf = (int32_t)0xfeffffffu;

// A quiet NaN computed at run time (0/0: raises invalid), the result of a
// domain error.
template <class T> RAVL_INLINE T domain_nan() { return opaque(T(0)) / T(0); }

// 2^k as a double, -1022 <= k <= 1023.
constexpr double pow2d(int k) { return f64_bits((uint64_t)(k + 1023) << 52); }
// 2^k as a single, -126 <= k <= 127.
constexpr float pow2f(int k) { return f32_bits((uint32_t)(k + 127) << 23); }

// A kernel's vector path on one scalar (lane 0 of a broadcast pair): the
// scalar routines reuse the vector arithmetic on inputs they have scaled
// into its range.
template <class K, class T> RAVL_INLINE T one_lane(T x) {
  constexpr int L = 16 / (int)sizeof(T);
  return K::template vec<L>(Vec<T, L>(x))[0];
}

}  // namespace roots
}  // namespace ravl
