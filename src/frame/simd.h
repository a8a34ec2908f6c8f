// Lane value types and the one-instruction operations on them.
//
// Every kernel in the library is written once against `Vec<T, L>`: L lanes of
// T in one 128-bit or 256-bit register (clang's extended vector types, so the
// ordinary operators act lane by lane and compile to one instruction each).
// The names below that style uses (F64x4, F32x8, I32x8, ...) are those types.
// Intrinsics live in this file; a kernel that needs one directly says why.
//
// The library is freestanding: no C or C++ runtime headers, only the
// compiler's own <stdint.h> and <immintrin.h>.
#pragma once

#define __MM_MALLOC_H  // immintrin.h would pull in the C runtime's stdlib.h
#include <immintrin.h>
#include <stdint.h>

#define RAVL_INLINE inline __attribute__((always_inline))

namespace ravl {

template <class T, int L>
using Vec = T __attribute__((ext_vector_type(L)));

using F64x2 = Vec<double, 2>;
using F64x4 = Vec<double, 4>;
using F32x4 = Vec<float, 4>;
using F32x8 = Vec<float, 8>;
using I32x4 = Vec<int32_t, 4>;
using I32x8 = Vec<int32_t, 8>;
using I64x2 = Vec<int64_t, 2>;
using I64x4 = Vec<int64_t, 4>;
using U32x4 = Vec<uint32_t, 4>;
using U32x8 = Vec<uint32_t, 8>;
using U64x4 = Vec<uint64_t, 4>;

// ---- type relations -----------------------------------------------------

template <class T> struct Bits;  // the same-sized integer of a lane type
template <> struct Bits<double> { using S = int64_t; using U = uint64_t; };
template <> struct Bits<float> { using S = int32_t; using U = uint32_t; };
template <> struct Bits<int32_t> { using S = int32_t; using U = uint32_t; };
template <> struct Bits<uint32_t> { using S = int32_t; using U = uint32_t; };
template <> struct Bits<int64_t> { using S = int64_t; using U = uint64_t; };
template <> struct Bits<uint64_t> { using S = int64_t; using U = uint64_t; };

template <class V> struct VecInfo;
template <class T, int L> struct VecInfo<Vec<T, L>> {
  using Lane = T;
  static constexpr int lanes = L;
};
template <class V> using LaneOf = typename VecInfo<V>::Lane;
template <class V> constexpr int lanes_of = VecInfo<V>::lanes;

// Lane mask of a compare: all ones in a true lane, zero elsewhere, lanes as
// wide as the compared values (what the ext-vector compare operators return).
template <class T, int L> using Mask = Vec<typename Bits<T>::S, L>;
template <class V> using MaskOf = Mask<LaneOf<V>, lanes_of<V>>;
template <class V> using SIntOf = Vec<typename Bits<LaneOf<V>>::S, lanes_of<V>>;
template <class V> using UIntOf = Vec<typename Bits<LaneOf<V>>::U, lanes_of<V>>;

// ---- reinterpretation and broadcast --------------------------------------

template <class To, class From>
RAVL_INLINE To bitcast(From v) {
  static_assert(sizeof(To) == sizeof(From), "bitcast between sizes");
  if constexpr (__is_scalar(To) || __is_scalar(From) || __is_class(To) || __is_class(From))
    return __builtin_bit_cast(To, v);
  else
    return (To)v;  // vector to vector of the same size: reinterprets the bits
}
// A value the compiler may not fold, so that the scalar routines' special
// results (a pole's 1/0, a domain error's 0/0, an overflow's huge * huge) are
// computed at run time and raise their flags.
template <class T> RAVL_INLINE T opaque(T v) {
  __asm__("" : "+x"(v));
  return v;
}

template <class V> RAVL_INLINE SIntOf<V> as_int(V v) { return bitcast<SIntOf<V>>(v); }
template <class V> RAVL_INLINE UIntOf<V> as_uint(V v) { return bitcast<UIntOf<V>>(v); }
template <class V, class I> RAVL_INLINE V as_float(I bits) { return bitcast<V>(bits); }

// A scalar double or float from its IEEE bit pattern, for constants that are
// given by their bits.
RAVL_INLINE constexpr double f64_bits(uint64_t b) { return __builtin_bit_cast(double, b); }
RAVL_INLINE constexpr float f32_bits(uint32_t b) { return __builtin_bit_cast(float, b); }
RAVL_INLINE constexpr uint64_t bits_of(double x) { return __builtin_bit_cast(uint64_t, x); }
RAVL_INLINE constexpr uint32_t bits_of(float x) { return __builtin_bit_cast(uint32_t, x); }

template <class V> RAVL_INLINE V splat(LaneOf<V> x) { return V(x); }

// ---- fused multiply-add (the only place contraction happens) ------------

RAVL_INLINE F64x2 fma(F64x2 a, F64x2 b, F64x2 c) { return (F64x2)_mm_fmadd_pd((__m128d)a, (__m128d)b, (__m128d)c); }
RAVL_INLINE F64x4 fma(F64x4 a, F64x4 b, F64x4 c) { return (F64x4)_mm256_fmadd_pd((__m256d)a, (__m256d)b, (__m256d)c); }
RAVL_INLINE F32x4 fma(F32x4 a, F32x4 b, F32x4 c) { return (F32x4)_mm_fmadd_ps((__m128)a, (__m128)b, (__m128)c); }
RAVL_INLINE F32x8 fma(F32x8 a, F32x8 b, F32x8 c) { return (F32x8)_mm256_fmadd_ps((__m256)a, (__m256)b, (__m256)c); }
RAVL_INLINE double fma(double a, double b, double c) { return __builtin_fma(a, b, c); }
RAVL_INLINE float fma(float a, float b, float c) { return __builtin_fmaf(a, b, c); }
// c - a * b with one rounding.
RAVL_INLINE F64x2 fnma(F64x2 a, F64x2 b, F64x2 c) { return (F64x2)_mm_fnmadd_pd((__m128d)a, (__m128d)b, (__m128d)c); }
RAVL_INLINE F64x4 fnma(F64x4 a, F64x4 b, F64x4 c) { return (F64x4)_mm256_fnmadd_pd((__m256d)a, (__m256d)b, (__m256d)c); }
RAVL_INLINE F32x4 fnma(F32x4 a, F32x4 b, F32x4 c) { return (F32x4)_mm_fnmadd_ps((__m128)a, (__m128)b, (__m128)c); }
RAVL_INLINE F32x8 fnma(F32x8 a, F32x8 b, F32x8 c) { return (F32x8)_mm256_fnmadd_ps((__m256)a, (__m256)b, (__m256)c); }
RAVL_INLINE double fnma(double a, double b, double c) { return __builtin_fma(-a, b, c); }
// a * b - c with one rounding.
RAVL_INLINE F64x2 fms(F64x2 a, F64x2 b, F64x2 c) { return (F64x2)_mm_fmsub_pd((__m128d)a, (__m128d)b, (__m128d)c); }
RAVL_INLINE F64x4 fms(F64x4 a, F64x4 b, F64x4 c) { return (F64x4)_mm256_fmsub_pd((__m256d)a, (__m256d)b, (__m256d)c); }
RAVL_INLINE F32x4 fms(F32x4 a, F32x4 b, F32x4 c) { return (F32x4)_mm_fmsub_ps((__m128)a, (__m128)b, (__m128)c); }
RAVL_INLINE F32x8 fms(F32x8 a, F32x8 b, F32x8 c) { return (F32x8)_mm256_fmsub_ps((__m256)a, (__m256)b, (__m256)c); }

// ---- hardware max/min: the first operand when the compare holds, else the
// second (so a NaN in either, or equal values, give the second operand) ----

RAVL_INLINE F64x2 hw_max(F64x2 a, F64x2 b) { return (F64x2)_mm_max_pd((__m128d)a, (__m128d)b); }
RAVL_INLINE F64x4 hw_max(F64x4 a, F64x4 b) { return (F64x4)_mm256_max_pd((__m256d)a, (__m256d)b); }
RAVL_INLINE F32x4 hw_max(F32x4 a, F32x4 b) { return (F32x4)_mm_max_ps((__m128)a, (__m128)b); }
RAVL_INLINE F32x8 hw_max(F32x8 a, F32x8 b) { return (F32x8)_mm256_max_ps((__m256)a, (__m256)b); }
RAVL_INLINE F64x2 hw_min(F64x2 a, F64x2 b) { return (F64x2)_mm_min_pd((__m128d)a, (__m128d)b); }
RAVL_INLINE F64x4 hw_min(F64x4 a, F64x4 b) { return (F64x4)_mm256_min_pd((__m256d)a, (__m256d)b); }
RAVL_INLINE F32x4 hw_min(F32x4 a, F32x4 b) { return (F32x4)_mm_min_ps((__m128)a, (__m128)b); }
RAVL_INLINE F32x8 hw_min(F32x8 a, F32x8 b) { return (F32x8)_mm256_min_ps((__m256)a, (__m256)b); }

// ---- compares ------------------------------------------------------------
// The ext-vector operators <, <=, ==, ... are ordered (false with a NaN).
// not_le(a, b) is the unordered "not less-or-equal": true for a > b and for
// any NaN, the compare every special-lane test uses to catch NaN lanes.
template <class V> RAVL_INLINE MaskOf<V> not_le(V a, V b) { return ~(a <= b); }
template <class V> RAVL_INLINE MaskOf<V> is_nan(V a) { return a != a; }

// ---- select and bit operations -------------------------------------------

// m ? a : b lane by lane (m from a compare: all ones or zero per lane).
template <class V, class M>
RAVL_INLINE V select(M m, V a, V b) {
  using U = UIntOf<V>;
  U mm = bitcast<U>(m);
  return bitcast<V>((as_uint(a) & mm) | (as_uint(b) & ~mm));
}
// b in the lanes where the sign bit of m is set, a elsewhere (vblendvps,
// vblendvpd: one instruction that reads only the sign bits, so m may be any
// value whose sign bit is the condition, such as a bit shifted to the top).
RAVL_INLINE F32x4 select_sign(U32x4 m, F32x4 a, F32x4 b) {
  return (F32x4)_mm_blendv_ps((__m128)a, (__m128)b, (__m128)m);
}
RAVL_INLINE F32x8 select_sign(U32x8 m, F32x8 a, F32x8 b) {
  return (F32x8)_mm256_blendv_ps((__m256)a, (__m256)b, (__m256)m);
}
RAVL_INLINE F64x2 select_sign(Vec<uint64_t, 2> m, F64x2 a, F64x2 b) {
  return (F64x2)_mm_blendv_pd((__m128d)a, (__m128d)b, (__m128d)m);
}
RAVL_INLINE F64x4 select_sign(U64x4 m, F64x4 a, F64x4 b) {
  return (F64x4)_mm256_blendv_pd((__m256d)a, (__m256d)b, (__m256d)m);
}
template <class V> RAVL_INLINE V abs(V x) {
  return as_float<V>(as_uint(x) & ~(UIntOf<V>(1) << (sizeof(LaneOf<V>) * 8 - 1)));
}
template <class V> RAVL_INLINE UIntOf<V> sign_bit(V x) {
  return as_uint(x) & (UIntOf<V>(1) << (sizeof(LaneOf<V>) * 8 - 1));
}

// ---- whole-register tests --------------------------------------------------

// Lane mask as bits: bit i set when lane i of m has its top bit set.
RAVL_INLINE uint32_t bits(Vec<int64_t, 2> m) { return (uint32_t)_mm_movemask_pd((__m128d)m); }
RAVL_INLINE uint32_t bits(Vec<int64_t, 4> m) { return (uint32_t)_mm256_movemask_pd((__m256d)m); }
RAVL_INLINE uint32_t bits(Vec<int32_t, 4> m) { return (uint32_t)_mm_movemask_ps((__m128)m); }
RAVL_INLINE uint32_t bits(Vec<int32_t, 8> m) { return (uint32_t)_mm256_movemask_ps((__m256)m); }
RAVL_INLINE uint32_t bits(Vec<int32_t, 2> m) { return bits(Vec<int32_t, 4>{m.x, m.y, 0, 0}); }
template <class M> RAVL_INLINE bool any(M m) { return bits(m) != 0; }

// ---- lane conversions ------------------------------------------------------

// Narrow or widen the lane type, keeping the lane count.
template <class T, class V> RAVL_INLINE Vec<T, lanes_of<V>> convert(V v) {
  return __builtin_convertvector(v, Vec<T, lanes_of<V>>);
}

// ---- table fetch -----------------------------------------------------------
//
// Table entries are fetched by one scalar load per lane at an index taken out
// of the vector, and the lanes are put together with inserts and shuffles.
// On the machines this library targets that is faster and steadier than the
// hardware gathers (an 8-lane float gather costs more than eight loads and
// the inserts, and its latency varies by half from call to call); a fetch is
// exact either way, so no output bit depends on the choice.

// 8 bytes at t + i (i in elements of T) in the low half of a register.
template <class T> RAVL_INLINE __m128d load_lo64(const T* t, int64_t i) { return _mm_load_sd((const double*)(t + i)); }
// The same 8 bytes loaded into the high half of v.
template <class T> RAVL_INLINE __m128d load_hi64(__m128d v, const T* t, int64_t i) {
  return _mm_loadh_pd(v, (const double*)(t + i));
}

// Lanes t[idx[i]] of a double table (idx in 32-bit lanes).
RAVL_INLINE F64x2 gather(const double* t, Vec<int32_t, 2> idx) {
  return (F64x2)load_hi64(load_lo64(t, idx[0]), t, idx[1]);
}
RAVL_INLINE F64x4 gather(const double* t, Vec<int32_t, 4> idx) {
  __m128d a = load_hi64(load_lo64(t, idx[0]), t, idx[1]);
  __m128d b = load_hi64(load_lo64(t, idx[2]), t, idx[3]);
  return (F64x4)_mm256_set_m128d(b, a);
}
RAVL_INLINE F32x4 gather(const float* t, Vec<int32_t, 4> idx) {
  __m128 v = _mm_load_ss(t + idx[0]);
  v = _mm_insert_ps(v, _mm_load_ss(t + idx[1]), 0x10);
  v = _mm_insert_ps(v, _mm_load_ss(t + idx[2]), 0x20);
  return (F32x4)_mm_insert_ps(v, _mm_load_ss(t + idx[3]), 0x30);
}
RAVL_INLINE F32x8 gather(const float* t, Vec<int32_t, 8> idx) {
  F32x4 a = gather(t, Vec<int32_t, 4>{idx[0], idx[1], idx[2], idx[3]});
  F32x4 b = gather(t, Vec<int32_t, 4>{idx[4], idx[5], idx[6], idx[7]});
  return (F32x8)_mm256_set_m128((__m128)b, (__m128)a);
}

// In-register table of four floats selected per lane by idx & 3 (no memory access).
RAVL_INLINE F32x4 permute4(F32x4 table, Vec<int32_t, 4> idx) {
  return (F32x4)_mm_permutevar_ps((__m128)table, (__m128i)idx);
}
RAVL_INLINE F32x8 permute4(F32x4 table, Vec<int32_t, 8> idx) {
  __m256 t = _mm256_set_m128((__m128)table, (__m128)table);
  return (F32x8)_mm256_permutevar_ps(t, (__m256i)idx);
}
// Eight-float table t (32-byte aligned) selected per lane by idx & 7: one
// vpermps with the table as its memory operand (no gather, no register held).
RAVL_INLINE F32x8 lookup8(const float* t, Vec<int32_t, 8> idx) {
  return (F32x8)_mm256_permutevar8x32_ps(_mm256_load_ps(t), (__m256i)idx);
}
RAVL_INLINE F32x4 lookup8(const float* t, Vec<int32_t, 4> idx) {
  __m256i i8 = _mm256_castsi128_si256((__m128i)idx);  // upper lanes unused
  return (F32x4)_mm256_castps256_ps128(_mm256_permutevar8x32_ps(_mm256_load_ps(t), i8));
}

// ---- lane index packs for slices and joins (no <utility> here) -------------

template <int... I> struct Ints {};
template <int N, int... I> struct MakeInts : MakeInts<N - 1, N - 1, I...> {};
template <int... I> struct MakeInts<0, I...> { using type = Ints<I...>; };

template <int Off, int L, class T, int N, int... I>
RAVL_INLINE Vec<T, L> slice_impl(Vec<T, N> v, Ints<I...>) {
  // Index -1 leaves a lane undefined: lanes past the end of v.
  return __builtin_shufflevector(v, v, (Off + I < N ? Off + I : -1)...);
}
// Lanes [Off, Off + L) of v; lanes past the end of v are undefined.
template <int Off, int L, class T, int N>
RAVL_INLINE Vec<T, L> slice(Vec<T, N> v) {
  if constexpr (L == N && Off == 0) {
    return v;
  } else {
    static_assert(Off < N, "slice starts past the vector");
    return slice_impl<Off, L>(v, typename MakeInts<L>::type{});
  }
}

template <class T, int N, int... I>
RAVL_INLINE Vec<T, 2 * N> join_impl(Vec<T, N> a, Vec<T, N> b, Ints<I...>) {
  return __builtin_shufflevector(a, b, I...);
}
// a's lanes then b's.
template <class T, int N>
RAVL_INLINE Vec<T, 2 * N> join(Vec<T, N> a, Vec<T, N> b) {
  return join_impl(a, b, typename MakeInts<2 * N>::type{});
}
template <class T, int N>
RAVL_INLINE Vec<T, 4 * N> join(Vec<T, N> a, Vec<T, N> b, Vec<T, N> c, Vec<T, N> d) {
  return join(join(a, b), join(c, d));
}

// Single lanes through a double computation f on four lanes (F64x4 to
// F64x4), four lanes at a time, each result rounded once to single.
template <int L, class F> RAVL_INLINE Vec<float, L> via_double(Vec<float, L> x, F f) {
  if constexpr (L == 4) {
    return convert<float>(f(convert<double>(x)));
  } else {
    return join(via_double<4>(slice<0, 4>(x), f), via_double<4>(slice<4, 4>(x), f));
  }
}

// ---- reciprocal approximation, truncating conversion, round by immediate ----

// The hardware reciprocal approximation (relative error at most 1.5 * 2^-12).
RAVL_INLINE F32x4 rcp_approx(F32x4 x) { return (F32x4)_mm_rcp_ps((__m128)x); }
RAVL_INLINE F32x8 rcp_approx(F32x8 x) { return (F32x8)_mm256_rcp_ps((__m256)x); }
// The hardware reciprocal-square-root approximation (relative error at most
// 1.5 * 2^-12; +0 gives +inf, +inf gives +0, negative inputs NaN).
RAVL_INLINE F32x4 rsqrt_approx(F32x4 x) { return (F32x4)_mm_rsqrt_ps((__m128)x); }
RAVL_INLINE F32x8 rsqrt_approx(F32x8 x) { return (F32x8)_mm256_rsqrt_ps((__m256)x); }
// The same estimate of doubles: each lane narrowed to single (within the
// single range), its estimate widened back (exact).
RAVL_INLINE F64x2 rsqrt_approx(F64x2 x) { return (F64x2)_mm_cvtps_pd(_mm_rsqrt_ps(_mm_cvtpd_ps((__m128d)x))); }
RAVL_INLINE F64x4 rsqrt_approx(F64x4 x) { return (F64x4)_mm256_cvtps_pd(_mm_rsqrt_ps(_mm256_cvtpd_ps((__m256d)x))); }
// The hardware square root, correctly rounded (IEEE special values).
RAVL_INLINE F64x2 sqrt_hw(F64x2 x) { return (F64x2)_mm_sqrt_pd((__m128d)x); }
RAVL_INLINE F64x4 sqrt_hw(F64x4 x) { return (F64x4)_mm256_sqrt_pd((__m256d)x); }
RAVL_INLINE F32x4 sqrt_hw(F32x4 x) { return (F32x4)_mm_sqrt_ps((__m128)x); }
RAVL_INLINE F32x8 sqrt_hw(F32x8 x) { return (F32x8)_mm256_sqrt_ps((__m256)x); }
RAVL_INLINE Vec<float, 2> rsqrt_approx(Vec<float, 2> x) { return slice<0, 2>(rsqrt_approx(join(x, x))); }
// Conversion to 32-bit integers truncating toward zero; NaN and values out of
// the int32 range give 0x80000000 (the integer indefinite value).
RAVL_INLINE I32x4 cvtt_i32(F64x4 x) { return (I32x4)_mm256_cvttpd_epi32((__m256d)x); }
RAVL_INLINE I32x4 cvtt_i32(F32x4 x) { return (I32x4)_mm_cvttps_epi32((__m128)x); }
RAVL_INLINE I32x8 cvtt_i32(F32x8 x) { return (I32x8)_mm256_cvttps_epi32((__m256)x); }
// Round to integral with the rounding fixed by the immediate (0 nearest even,
// 1 down, 2 up, 3 toward zero; add 8 to suppress the inexact exception).
template <int imm> RAVL_INLINE F64x2 round_imm(F64x2 x) { return (F64x2)_mm_round_pd((__m128d)x, imm); }
template <int imm> RAVL_INLINE F64x4 round_imm(F64x4 x) { return (F64x4)_mm256_round_pd((__m256d)x, imm); }
template <int imm> RAVL_INLINE F32x4 round_imm(F32x4 x) { return (F32x4)_mm_round_ps((__m128)x, imm); }
template <int imm> RAVL_INLINE F32x8 round_imm(F32x8 x) { return (F32x8)_mm256_round_ps((__m256)x, imm); }

// ---- table fetch with 64-bit indices ----------------------------------------

// Lanes t[idx[i]] of a double table, idx in 64-bit lanes (an index taken from
// a double's bit pattern needs no narrowing to 32 bits).
RAVL_INLINE F64x2 gather(const double* t, Vec<int64_t, 2> idx) {
  return (F64x2)load_hi64(load_lo64(t, idx[0]), t, idx[1]);
}
RAVL_INLINE F64x4 gather(const double* t, Vec<int64_t, 4> idx) {
  __m128d a = load_hi64(load_lo64(t, idx[0]), t, idx[1]);
  __m128d b = load_hi64(load_lo64(t, idx[2]), t, idx[3]);
  return (F64x4)_mm256_set_m128d(b, a);
}

// Pairs (t[idx[i]], t[idx[i] + 1]) of a table of 16-byte (hi, lo) rows: one
// 128-bit load per lane and a transpose. With kStride = 1, idx holds byte
// offsets instead of element indices (an offset taken from a bit pattern
// then needs no shift).
template <int kStride = 8> RAVL_INLINE void gather_pairs(const double* t, Vec<int64_t, 2> idx, F64x2& hi, F64x2& lo) {
  const char* b = reinterpret_cast<const char*>(t);
  __m128d p0 = _mm_loadu_pd((const double*)(b + kStride * idx[0]));
  __m128d p1 = _mm_loadu_pd((const double*)(b + kStride * idx[1]));
  hi = (F64x2)_mm_unpacklo_pd(p0, p1);
  lo = (F64x2)_mm_unpackhi_pd(p0, p1);
}
template <int kStride = 8> RAVL_INLINE void gather_pairs(const double* t, Vec<int64_t, 4> idx, F64x4& hi, F64x4& lo) {
  const char* b = reinterpret_cast<const char*>(t);
  auto pair = [&](int i) { return _mm_loadu_pd((const double*)(b + kStride * idx[i])); };
  __m256d a0 = _mm256_set_m128d(pair(2), pair(0));  // h0 l0 h2 l2
  __m256d a1 = _mm256_set_m128d(pair(3), pair(1));  // h1 l1 h3 l3
  hi = (F64x4)_mm256_unpacklo_pd(a0, a1);
  lo = (F64x4)_mm256_unpackhi_pd(a0, a1);
}

// Columns 0..N-1 (N even) of a table of rows of doubles, for rows at the byte
// offsets off (from t): col[q] lane i = the q-th double of lane i's row. Two
// columns at a time: one 128-bit load per lane and two unpacks, where N
// separate gathers would take N loads and inserts per lane.
template <int N> RAVL_INLINE void gather_cols(const double* t, Vec<int64_t, 2> off, F64x2 (&col)[N]) {
  const char* b = reinterpret_cast<const char*>(t);
  for (int q = 0; q < N; q += 2) {
    __m128d p0 = _mm_loadu_pd((const double*)(b + off[0]) + q);
    __m128d p1 = _mm_loadu_pd((const double*)(b + off[1]) + q);
    col[q] = (F64x2)_mm_unpacklo_pd(p0, p1);
    col[q + 1] = (F64x2)_mm_unpackhi_pd(p0, p1);
  }
}
template <int N> RAVL_INLINE void gather_cols(const double* t, Vec<int64_t, 4> off, F64x4 (&col)[N]) {
  const char* b = reinterpret_cast<const char*>(t);
  const double* r[4] = {(const double*)(b + off[0]), (const double*)(b + off[1]), (const double*)(b + off[2]),
                        (const double*)(b + off[3])};
  for (int q = 0; q < N; q += 2) {
    __m256d a0 = _mm256_insertf128_pd(_mm256_castpd128_pd256(_mm_loadu_pd(r[0] + q)), _mm_loadu_pd(r[2] + q), 1);
    __m256d a1 = _mm256_insertf128_pd(_mm256_castpd128_pd256(_mm_loadu_pd(r[1] + q)), _mm_loadu_pd(r[3] + q), 1);
    col[q] = (F64x4)_mm256_unpacklo_pd(a0, a1);
    col[q + 1] = (F64x4)_mm256_unpackhi_pd(a0, a1);
  }
}

// ---- packed integer conversion and per-lane 64-bit shifts -------------------

// Two doubles to 32-bit integers truncating toward zero (the 128-bit form of
// cvtt_i32; NaN and values out of the int32 range give 0x80000000).
RAVL_INLINE Vec<int32_t, 2> cvtt_i32(F64x2 x) {
  return slice<0, 2>((I32x4)_mm_cvttpd_epi32((__m128d)x));
}
// Round to integral by immediate on two floats (the low half of one register).
template <int imm> RAVL_INLINE Vec<float, 2> round_imm(Vec<float, 2> x) {
  return slice<0, 2>((F32x4)_mm_round_ps((__m128)join(x, x), imm));
}
// Each lane of v shifted left by its own count; a count of 64 or more (a
// negative count read as unsigned included) gives 0.
RAVL_INLINE Vec<uint64_t, 2> shl_var(Vec<uint64_t, 2> v, Vec<uint64_t, 2> n) {
  return (Vec<uint64_t, 2>)_mm_sllv_epi64((__m128i)v, (__m128i)n);
}
RAVL_INLINE U64x4 shl_var(U64x4 v, U64x4 n) { return (U64x4)_mm256_sllv_epi64((__m256i)v, (__m256i)n); }
// The product of the low 32-bit halves of each 64-bit lane (vpmuludq: one
// instruction where a 64-bit product takes three).
RAVL_INLINE Vec<uint64_t, 2> mul_u32(Vec<uint64_t, 2> a, Vec<uint64_t, 2> b) {
  return (Vec<uint64_t, 2>)_mm_mul_epu32((__m128i)a, (__m128i)b);
}
RAVL_INLINE U64x4 mul_u32(U64x4 a, U64x4 b) { return (U64x4)_mm256_mul_epu32((__m256i)a, (__m256i)b); }
// The product of 32-bit lanes a and b both below 2^15 (vpmaddwd: one
// instruction where vpmulld takes two).
RAVL_INLINE Vec<uint32_t, 4> mul_u15(Vec<uint32_t, 4> a, Vec<uint32_t, 4> b) {
  return (Vec<uint32_t, 4>)_mm_madd_epi16((__m128i)a, (__m128i)b);
}
RAVL_INLINE Vec<uint32_t, 8> mul_u15(Vec<uint32_t, 8> a, Vec<uint32_t, 8> b) {
  return (Vec<uint32_t, 8>)_mm256_madd_epi16((__m256i)a, (__m256i)b);
}

// The 32-bit lanes of idx (nonnegative table indices) in general registers:
// two lanes per 64-bit move (vmovq or vpextrq), the even lane zero-extended
// by a 32-bit move and the odd one shifted down, where vpextrd would take a
// two-uop instruction per lane. The empty asm keeps the compiler from turning
// the split back into vpextrd.
template <int N> struct LaneWords {
  uint64_t w[N / 2];
  RAVL_INLINE explicit LaneWords(Vec<int32_t, N> idx) {
    Vec<uint64_t, N / 2> q = (Vec<uint64_t, N / 2>)idx;
    for (int i = 0; i < N / 2; ++i) {
      w[i] = q[i];
      __asm__("" : "+r"(w[i]));
    }
  }
  RAVL_INLINE uint64_t operator[](int i) const { return i & 1 ? w[i / 2] >> 32 : (uint32_t)w[i / 2]; }
};

// Pairs (t[idx[i]], t[idx[i] + 1]) of a table of 8-byte (hi, lo) float rows,
// idx nonnegative: one 64-bit load per lane, two rows to a 128-bit register,
// then the halves are separated by shuffles. With kStride = 8, idx holds row
// numbers instead of element indices (no doubling of a row taken from a bit
// pattern).
template <int kStride = 4> RAVL_INLINE void gather_pairs(const float* t, Vec<int32_t, 4> idx, F32x4& hi, F32x4& lo) {
  const char* b = reinterpret_cast<const char*>(t);
  LaneWords<4> i(idx);
  __m128 a0 = (__m128)load_hi64(load_lo64(b, kStride * i[0]), b, kStride * i[1]);  // h0 l0 h1 l1
  __m128 a1 = (__m128)load_hi64(load_lo64(b, kStride * i[2]), b, kStride * i[3]);  // h2 l2 h3 l3
  hi = (F32x4)_mm_shuffle_ps(a0, a1, 0x88);
  lo = (F32x4)_mm_shuffle_ps(a0, a1, 0xdd);
}
template <int kStride = 4> RAVL_INLINE void gather_pairs(const float* t, Vec<int32_t, 8> idx, F32x8& hi, F32x8& lo) {
  const char* b = reinterpret_cast<const char*>(t);
  LaneWords<8> i(idx);
  auto two = [&](int k) { return (__m128)load_hi64(load_lo64(b, kStride * i[k]), b, kStride * i[k + 1]); };
  // a0 = h0 l0 h1 l1 | h4 l4 h5 l5, a1 = h2 l2 h3 l3 | h6 l6 h7 l7: the
  // shuffles give the lanes in order.
  __m256 a0 = _mm256_set_m128(two(4), two(0));
  __m256 a1 = _mm256_set_m128(two(6), two(2));
  hi = (F32x8)_mm256_shuffle_ps(a0, a1, 0x88);
  lo = (F32x8)_mm256_shuffle_ps(a0, a1, 0xdd);
}

// ---- constants read from memory ---------------------------------------------
//
// A kernel may keep its constants in a struct of rows, each a 32-byte row of
// one value in every lane, and read them through rows(): each use then reads
// its constant from memory as an instruction's operand, instead of the
// compiler broadcasting it into a register that it holds across the
// computation (and shares between the chunks of a wide call). That saves the
// broadcasts, and it keeps a call of two chunks within the registers a call
// may clobber (ymm0-7 on Linux) instead of saving and restoring ymm8-15 on
// every call.

template <class T> struct alignas(32) Row {
  T v[32 / sizeof(T)];
};
// A row of the value c in every lane.
template <class T> constexpr Row<T> row(T c) {
  Row<T> r{};
  for (T& e : r.v) e = c;
  return r;
}
// The first lanes of a row as a vector V with lanes of the row's width.
template <class V, class T> RAVL_INLINE V get(const Row<T>& r) {
  static_assert(sizeof(LaneOf<V>) == sizeof(T) && sizeof(V) <= sizeof(Row<T>), "row lanes");
  V v;
  __builtin_memcpy(&v, r.v, sizeof v);
  return v;
}
// The rows c, for one chunk's computation. The first empty asm hides where
// the rows are, so that the compiler reads them instead of folding their
// values into broadcasts. The second may write memory as far as the compiler
// knows: this chunk's reads of its rows stay after it and those of the chunk
// before stay before it (reads of tables the compiler knows to be constant
// are not held), so each chunk reads its own constants (no register holds
// one for the next chunk) and a chunk's computation, which starts from its
// constants, does not start before the chunk before has read its own. It
// also keeps the computation that follows the lane test from being merged
// into the one before it (whose result only the lane mask uses), so the
// arithmetic stays after the branch.
template <class C> RAVL_INLINE const C& rows(const C& c) {
  const C* p = &c;
  __asm__("" : "+r"(p));
  __asm__("" ::: "memory");
  return *p;
}
// The rows c again, through a pointer of its own (a volatile asm, which the
// compiler does not merge with another): for a computation of two halves
// side by side, each half reads its constants as operands instead of the
// compiler holding them in registers for both.
template <class C> RAVL_INLINE const C& rows_apart(const C& c) {
  const C* p = &c;
  __asm__ volatile("" : "+r"(p));
  return *p;
}
// via_double with the rows c that f reads its constants from, f(F64x4, c):
// width 8 computes its two halves side by side, the second through
// rows_apart(c), so that each half reads its constants as operands.
template <int L, class C, class F> RAVL_INLINE Vec<float, L> via_double(Vec<float, L> x, const C& c, F f) {
  if constexpr (L == 4) {
    return convert<float>(f(convert<double>(x), c));
  } else {
    static_assert(L == 8, "four or eight lanes");
    const C& c1 = rows_apart(c);
    const F64x4 y0 = f(convert<double>(slice<0, 4>(x)), c);
    const F64x4 y1 = f(convert<double>(slice<4, 4>(x)), c1);
    return join(convert<float>(y0), convert<float>(y1));
  }
}

}  // namespace ravl
