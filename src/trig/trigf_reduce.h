// What the single sine, cosine and tangent families (sinf.cpp, cosf.cpp,
// tanf.cpp) share: the full-range argument reduction of the vector path, the
// evaluation of sine and cosine at its node grid, the kernel base that runs
// the reduction in the inline pass, and the special-lane routine (on the
// double scalar routines of trig/trigd_reduce.h).
//
// Full-range reduction. For x = m 2^(e - 150) (m the 24-bit integer
// significand, e the biased exponent), m W(e) mod 2^96 is the fraction of
// x/(2 pi) scaled by 2^96 (tables/trigf.h, kReduceBits). Its upper 64 bits
// are formed exactly from the 16-bit halves of m = mh 2^16 + ml and of the
// three words of W(e): of the twelve 16x16 products, mh w0h lies wholly in
// the integer part (whole periods) and ml w2l wholly below the 64 bits kept,
// so neither is formed; the other ten are summed with their carries into F1
// (fraction bits 1..32) and F2 (bits 33..64). The fraction is then three
// singles, hi = 1 + F1[31:9] 2^-23 (the 1 a marker), mid = 23 bits of weight
// 2^-46, lo = 18 bits of weight 2^-64, each made by inserting bits into a
// significand and subtracting the bare power of two (exact). hi is snapped to
// the grid of 1/256 (u = hi + 1.5 2^15); its low eight bits name the node
// j = 0..255 (the marker's 256 drops out), and s + t = (hi - n) + mid + lo,
// the fraction less j/256 (|s| <= 1/512), times 2 pi split in two singles
// gives the reduced argument r + rlo, |r| <= pi/256 (about 0.0123), with an
// absolute error near 2^-62 whatever the size of x. Where the sign of x
// matters (cosf, tanf) it is put into hi, mid and lo; sinf reduces |x|.
#pragma once

#include "frame/entry.h"
#include "tables/trigf.h"
#include "trig/trigd_reduce.h"

namespace ravl {
namespace trigf {

// ---- table rows ------------------------------------------------------------------

// The 16-byte rows at byte offsets off[i] of t as four column vectors: one
// 16-byte load per lane and a 4x4 transpose (in each 128-bit half).
RAVL_INLINE void rows4(const void* t, Vec<int32_t, 4> off, F32x4 col[4]) {
  const char* b = static_cast<const char*>(t);
  LaneWords<4> i(off);
  auto row = [&](int k) { return _mm_loadu_ps(reinterpret_cast<const float*>(b + i[k])); };
  __m128 r0 = row(0), r1 = row(1), r2 = row(2), r3 = row(3);
  __m128 t0 = _mm_unpacklo_ps(r0, r1), t1 = _mm_unpacklo_ps(r2, r3);
  __m128 t2 = _mm_unpackhi_ps(r0, r1), t3 = _mm_unpackhi_ps(r2, r3);
  col[0] = (F32x4)_mm_shuffle_ps(t0, t1, 0x44);
  col[1] = (F32x4)_mm_shuffle_ps(t0, t1, 0xee);
  col[2] = (F32x4)_mm_shuffle_ps(t2, t3, 0x44);
  col[3] = (F32x4)_mm_shuffle_ps(t2, t3, 0xee);
}
RAVL_INLINE void rows4(const void* t, Vec<int32_t, 8> off, F32x8 col[4]) {
  const char* b = static_cast<const char*>(t);
  LaneWords<8> i(off);
  // Rows k and k + 4 in one register, so that one transpose in each half
  // gives the columns in lane order.
  auto two = [&](int k) {
    __m128 lo = _mm_loadu_ps(reinterpret_cast<const float*>(b + i[k]));
    return _mm256_insertf128_ps(_mm256_castps128_ps256(lo), _mm_loadu_ps(reinterpret_cast<const float*>(b + i[k + 4])), 1);
  };
  __m256 r0 = two(0), r1 = two(1), r2 = two(2), r3 = two(3);
  __m256 t0 = _mm256_unpacklo_ps(r0, r1), t1 = _mm256_unpacklo_ps(r2, r3);
  __m256 t2 = _mm256_unpackhi_ps(r0, r1), t3 = _mm256_unpackhi_ps(r2, r3);
  col[0] = (F32x8)_mm256_shuffle_ps(t0, t1, 0x44);
  col[1] = (F32x8)_mm256_shuffle_ps(t0, t1, 0xee);
  col[2] = (F32x8)_mm256_shuffle_ps(t2, t3, 0x44);
  col[3] = (F32x8)_mm256_shuffle_ps(t2, t3, 0xee);
}

// ---- the full-range reduction ------------------------------------------------------

// Exact products of the low 32-bit halves of each 64-bit lane (vpmuludq: the
// 32x32-to-64-bit product has no operator form).
RAVL_INLINE Vec<uint64_t, 2> mul_lo32(Vec<uint64_t, 2> a, Vec<uint64_t, 2> b) {
  return (Vec<uint64_t, 2>)_mm_mul_epu32((__m128i)a, (__m128i)b);
}
RAVL_INLINE U64x4 mul_lo32(U64x4 a, U64x4 b) { return (U64x4)_mm256_mul_epu32((__m256i)a, (__m256i)b); }

// F1:F2 for the lanes held in the low halves of the 64-bit lanes of m and
// the words w0, w1, w2: the ten products summed and cut to bits 32..95,
// (m w0 2^64 + m w1 2^32 + (m w2 - ml w2l)) / 2^32 mod 2^64, where m w0 2^64
// carries mh w0l and ml w0h (mh w0h drops out of the 64 bits), m w1 the four
// products of the middle word and m w2 - ml w2l the other two.
template <class Q> RAVL_INLINE Q fraction_bits(Q m, Q w0, Q w1, Q w2) {
  const Q low16 = Q(0xffff);
  Q p2 = mul_lo32(m, w2) - mul_lo32(m & low16, w2 & low16);
  return (mul_lo32(m, w0) << 32) + mul_lo32(m, w1) + (p2 >> 32);
}

// 2 pi as 6.28318548 (0x40c90fdb) + -1.74845553e-07 (0xb43bbd2e).
constexpr float kTwoPi1 = f32_bits(0x40c90fdbu);
constexpr float kTwoPi2 = f32_bits(0xb43bbd2eu);
// 1.5 2^15 (0x47400000): hi + it rounds hi to a multiple of 1/256.
constexpr float kGridShift = f32_bits(0x47400000u);
// |x| <= 2^-20 (0x35800000) keeps x itself as the reduced argument.
constexpr float kGuard = f32_bits(0x35800000u);
// The bit patterns of 1, 2^-23 and 2^-46 that hi, mid and lo are built on.
constexpr uint32_t kOneBits = 0x3f800000u, kMidBits = 0x34000000u, kLoBits = 0x28800000u;

template <int L> struct Reduced {
  Vec<float, L> r, rlo;  // the reduced argument r + rlo, |r| <= pi/256
  Vec<int32_t, L> j;     // the node, at 2 pi j / 256
};

// x (kSigned) or |x| reduced by multiples of 2 pi / 256. Infinities, NaN and
// |x| < 2^-126 give values that no caller keeps.
template <bool kSigned, int L> RAVL_INLINE Reduced<L> reduce(Vec<float, L> x) {
  using V = Vec<float, L>;
  using U = Vec<uint32_t, L>;
  using I = Vec<int32_t, L>;
  using Q = Vec<uint64_t, L / 2>;
  const U xb = as_uint(x);
  const U sign = kSigned ? xb & U(0x80000000u) : U(0);
  const U e = xb >> 23 & U(0xff);
  const U m = (xb & U(0x7fffff)) | U(0x800000);
  // W(e): 12-byte entries, read 16 bytes at a time (the table ends in a pad word).
  V w[4];
  rows4(trigf_tables::kReduceBits, bitcast<I>(e * U(12)), w);
  // Even lanes in the low halves of the 64-bit lanes as they are, odd lanes
  // shifted down.
  const Q me = bitcast<Q>(m), w0 = bitcast<Q>(w[0]), w1 = bitcast<Q>(w[1]), w2 = bitcast<Q>(w[2]);
  const Q fe = fraction_bits(me, w0, w1, w2);
  const Q fo = fraction_bits(me >> 32, w0 >> 32, w1 >> 32, w2 >> 32);
  const Q high = Q(0xffffffff00000000ull);
  const U f1 = bitcast<U>((fe >> 32) | (fo & high));
  const U f2 = bitcast<U>((fe & ~high) | (fo << 32));
  const V hi = as_float<V>(U(kOneBits) | f1 >> 9 | sign);
  const V mid = as_float<V>(U(kMidBits) | (f1 & U(0x1ff)) << 14 | f2 >> 18 | sign) - as_float<V>(U(kMidBits) | sign);
  const V lo = as_float<V>(U(kLoBits) | (f2 & U(0x3ffff)) << 5 | sign) - as_float<V>(U(kLoBits) | sign);
  const V u = hi + V(kGridShift);
  const V n = u - V(kGridShift);
  const V d = hi - n;  // exact
  const V s = d + mid;
  const V err = mid + (d - s);
  const V t = err + lo;
  Reduced<L> q;
  q.j = as_int(u) & I(0xff);
  q.r = s * V(kTwoPi1);
  q.rlo = fma(t, V(kTwoPi1), fma(s, V(kTwoPi2), fms(s, V(kTwoPi1), q.r)));
  const auto tiny = abs(x) <= V(kGuard);
  q.r = select(tiny, kSigned ? x : abs(x), q.r);
  q.rlo = select(tiny, V(0), q.rlo);
  return q;
}

// ---- sine and cosine at the node grid ---------------------------------------------

// sin r ~ r + r Ps, Ps = r^2 (-0.166666672 + r^2 0.00833329186), and
// cos r ~ 1 + Pc, Pc = r^2 (-0.5 + r^2 0.0416664928), on |r| <= pi/256.
constexpr float kS3 = f32_bits(0xbe2aaaabu);  // -0.166666672
constexpr float kS5 = f32_bits(0x3c08885cu);  // 0.00833329186
constexpr float kC2 = -0.5f;
constexpr float kC4 = f32_bits(0x3d2aaa7cu);  // 0.0416664928

// f(a_j + r + rlo) for the node table of f = sin (kSinfNodes) or cos (the
// same table read from row kCosRow on: cos a_j = sin a_(j+64), -sin a_j =
// cos a_(j+64)), rows (D1, V_hi, V_lo, D0): V = V_hi + V_lo = f(a_j) and
// D = D0 + D1 = f'(a_j), so f(a_j + r) = V cos r + D sin r. The leading sum
// V_hi + r D is y with its two rounding errors e1, e2; then V Pc + D r Ps,
// and rlo times the derivative at a_j + r, D - r V_hi.
constexpr int kCosRow = 64;
template <int kFirstRow = 0, int L> RAVL_INLINE Vec<float, L> eval_node(const uint32_t* nodes, const Reduced<L>& q) {
  using V = Vec<float, L>;
  using I = Vec<int32_t, L>;
  V c[4];
  const I j = kFirstRow ? (q.j + kFirstRow) & I(0xff) : q.j;
  rows4(nodes, j << 4, c);
  const V d1 = c[0], vhi = c[1], vlo = c[2], d0 = c[3];
  const V r = q.r, r2 = r * r;
  const V u = fma(r, d0, vhi);
  const V y = fma(d1, r, u);
  const V e1 = fma(r, d0, vhi - u);
  const V e2 = fma(d1, r, u - y);
  const V ps = r2 * (V(kS3) + r2 * V(kS5));
  const V pc = r2 * (V(kC2) + r2 * V(kC4));
  const V dsum = d0 + d1;
  const V qd = fnma(r, vhi, dsum);
  const V z = fma(pc, vhi, fma(ps * r, dsum, e1 + e2));
  const V w = fma(q.rlo, qd, vlo);
  return y + (z + w);
}

// ---- the kernel base ---------------------------------------------------------------

// The lane test's rows: the mask that clears the sign bit and the bit
// pattern of the bound. A family's rows derive from them, so that the lane
// test and the vector path read one block of constants.
template <uint32_t kBoundBits> struct BoundRows {
  Row<uint32_t> abs = row(0x7fffffffu);
  Row<uint32_t> bound = row(kBoundBits);
};

// Kernel base of sinf, cosf and tanf. kRows are the class's rows (from
// BoundRows); F supplies full<L>(x), the full-range value of every lane, and
// scalar, the special-lane routine. Lanes whose |x| has a bit pattern
// above the bound's (|x| above the bound, infinities and NaN: one integer
// compare) are flagged; the inline pass blends the full-range value into the
// finite ones and leaves the infinities and NaN to the scalar routine.
template <class F, const auto& kRows> struct FullRangeKernel : frame::Kernel {
  using sig = float(float);
  static constexpr bool has_callout = true;
  template <int L> static RAVL_INLINE Mask<float, L> special(Vec<float, L> x, Vec<float, L>) {
    using I = Vec<int32_t, L>;
    const auto& c = rows(kRows);
    return (as_int(x) & get<I>(c.abs)) > get<I>(c.bound);
  }
  template <int L>
  static RAVL_INLINE Mask<float, L> settle(Mask<float, L> flagged, Vec<float, L> x, Vec<float, L>& r) {
    using I = Vec<int32_t, L>;
    const Mask<float, L> finite = (as_int(x) & I(0x7fffffff)) < I(0x7f800000);
    r = select(flagged & finite, F::template full<L>(x), r);
    return flagged & ~finite;
  }
  static RAVL_INLINE int scalar(const float* x, float* r) { return F::scalar(x, r); }
};

// ---- the special-lane routines -------------------------------------------------------

// The special-lane routine of sinf, cosf or tanf: x widened to double, the
// rows of the double routines that need no reduction (infinities -> NaN as
// x * 0 with status 1, NaN -> x * x, zeros -> x, or 1 for the even cosine),
// else the double scalar sine, cosine or tangent (Finite), rounded once to
// single.
template <double (*Finite)(double)> RAVL_INLINE int scalar_lane(const float* xp, float* rp, trigd::Fn fn) {
  const double x = *xp;
  double r;
  int status;
  if (!trigd::edge_row(x, fn, &r, &status)) r = Finite(x);
  *rp = (float)r;
  return status;
}

}  // namespace trigf
}  // namespace ravl
