// The arithmetic shared by the power families (pow, powr, pown, rootn and
// their single forms, in pow.cpp, powr.cpp, pown.cpp and rootn.cpp): the
// vector paths, written once for 4-lane double or 4- and 8-lane single
// chunks, and the accurate routine that every family's scalar routine
// finishes with. Each family file binds these to its classes and keeps its
// own lane tests and special-value rules.
//
// Lane tests. A vector path computes every lane and marks in its result the
// lanes it cannot serve: their result is made a NaN (all bits set), and the
// kernels' test is one unordered compare of the result with itself. Every
// lane that could give a NaN on its own (a NaN input, 0 * inf) is one of the
// marked lanes, so the scalar routine sees exactly the marked lanes.
#pragma once

#include "frame/entry.h"
#include "frame/status.h"
#include "tables/exp2_exp10.h"
#include "tables/log.h"
#include "tables/pow.h"

namespace ravl {
namespace pow_core {

using F64x4 = Vec<double, 4>;

// ---- shared bit patterns -----------------------------------------------------

constexpr uint64_t kMantBits = 0x000fffffffffffffull;  // mantissa field of a double
constexpr uint64_t kOneBits = 0x3ff0000000000000ull;   // 1.0
// The shifter 1.5 * 2^52 (0x4338000000000000): t + kShift rounds |t| < 2^51
// to an integer held in the low mantissa bits of the sum.
constexpr double kShift = f64_bits(0x4338000000000000ull);
constexpr double kDblMin = f64_bits(0x0010000000000000ull);  // 2.2250738585072014e-308
constexpr double kDblMax = f64_bits(0x7fefffffffffffffull);  // 1.7976931348623157e+308

// A lane mask (all ones where set) made a NaN in r: the lane test of every
// power kernel is then r != r.
template <class V, class M> RAVL_INLINE V mark(V r, M flagged) { return as_float<V>(as_uint(r) | bitcast<UIntOf<V>>(flagged)); }

// The hardware single reciprocal estimate of 4 doubles (converted to single
// and back; relative error at most 1.5 * 2^-12).
RAVL_INLINE F64x4 rcp_estimate(F64x4 m) { return convert<double>(rcp_approx(convert<float>(m))); }

// ---- the accurate double path: pow and powr plain ---------------------------------
//
// log2 x = e_b - 1023 + log2 m with m in [1, 2): r = (512 + i)/1024, the
// single reciprocal estimate of m rounded to 9 fraction bits, makes
// u = m r - 1 exact with |u| < 2^-9, and log2 x = (e_b + hi_i + lo_i) + log2(1 + u)
// (hi_i + lo_i = -1023 - log2 r). The sum S + lo carries log2 x to about
// 2^-68 relative; z = y log2 x is kept as z + (e_p + cr), the product's
// rounding errors; 2^z = 2^k 2^(j/256) 2^R with N = k + j/256 the multiple of
// 1/256 nearest z and R = z - N plus the corrections.
// Measured max error: see pow.cpp.
constexpr double kLog2e = f64_bits(0x3ff71547652b82feull);     // L = 1.4426950408889634, 1/ln2 rounded
constexpr double kLog2eLo = f64_bits(0x3c777a3a2c24613dull);   // L_lo = 2.0363441957695363e-17
// log2(1 + u) = L u + C2 u^2 + ... + C6 u^6 (the higher coefficients fitted).
constexpr double kC2 = f64_bits(0xbfe71547652b82feull);  // -0.72134752044448169
constexpr double kC3 = f64_bits(0x3fdec709dc39fb02ull);  // 0.48089834696286016
constexpr double kC4 = f64_bits(0xbfd71547655d37e0ull);  // -0.36067376040307231
constexpr double kC5 = f64_bits(0x3fd2776da3d26e6aull);  // 0.28853932378999636
constexpr double kC6 = f64_bits(0xbfcec1cfbbc5c90cull);  // -0.24028965633949217
// 2^R - 1 = R (E1 + E2 R + E3 R^2 + E4 R^3) on |R| <= 1/512.
constexpr double kE1 = f64_bits(0x3fe62e42fefa39b9ull);  // 0.69314718055993929
constexpr double kE2 = f64_bits(0x3fcebfbdff82c54dull);  // 0.24022650695909889
constexpr double kE3 = f64_bits(0x3fac6b090da1e0a9ull);  // 0.055504115022757823
constexpr double kE4 = f64_bits(0x3f83b2ab930f15f9ull);  // 0.0096181301359008365
// 1.5 * 2^44 + 1023 (0x42b800000003ff00): z + kShift44 rounds z to a multiple
// of 1/256; the sum's low 8 bits are j, the 11 above them 1023 + k.
constexpr double kShift44 = f64_bits(0x42b800000003ff00ull);  // 26388279067647.0
// |z| <= 1021.5 keeps 2^k normal (0x408fec0000000000).
constexpr double kAccBound = f64_bits(0x408fec0000000000ull);

struct AccRows {
  Row<uint64_t> mant = row(kMantBits), one = row(kOneBits), rcp_round = row<uint64_t>(0x0000040000000000ull),
                rcp_keep = row<uint64_t>(0xfffff80000000000ull), m255 = row<uint64_t>(255);
  Row<int64_t> index_base = row<int64_t>(1022 << 9);  // r = 0.5 + i/1024 has pattern >> 43 = (1022 << 9) + i
  Row<double> shift = row(kShift), minus1 = row(-1.0), l = row(kLog2e), l_lo = row(kLog2eLo), c2 = row(kC2),
              c3 = row(kC3), c4 = row(kC4), c5 = row(kC5), c6 = row(kC6), bound = row(kAccBound),
              shift44 = row(kShift44), e1 = row(kE1), e2 = row(kE2), e3 = row(kE3), e4 = row(kE4),
              dbl_min = row(kDblMin), dbl_max = row(kDblMax);
};
inline constexpr AccRows kAccRows{};

// x^y on 4 lanes; marked: x < DBL_MIN (negative x, zeros, denormals, -inf),
// x not <= DBL_MAX (+inf, NaN), |y log2 x| > 1021.5 or NaN.
RAVL_INLINE F64x4 pow_accurate(F64x4 x, F64x4 y) {
  using V = F64x4;
  using U = U64x4;
  using I = I64x4;
  const AccRows& c = rows(kAccRows);
  const U xb = as_uint(x);
  const V m = as_float<V>((xb & get<U>(c.mant)) | get<U>(c.one));
  const V eb = as_float<V>((xb >> 52) | as_uint(get<V>(c.shift))) - get<V>(c.shift);
  // r = (512 + i)/1024: the estimate rounded to 9 fraction bits.
  const U rb = (as_uint(rcp_estimate(m)) + get<U>(c.rcp_round)) & get<U>(c.rcp_keep);
  const V r = as_float<V>(rb);
  const I i = bitcast<I>(rb >> 43) - get<I>(c.index_base);
  const V u = fma(m, r, get<V>(c.minus1));  // exact
  V thi, tlo;
  gather_pairs<16>(reinterpret_cast<const double*>(pow_tables::kLog2Acc), i, thi, tlo);
  const V t = eb + thi;  // exact: both on the grid 2^-42, |t| <= 1024
  const V s = fma(get<V>(c.l), u, t);
  const V err = fma(get<V>(c.l), u, t - s);
  const V u2 = u * u;
  const V p = fma(fma(get<V>(c.c6), u, get<V>(c.c5)), u2, fma(get<V>(c.c4), u, get<V>(c.c3)));
  const V q = fma(p, u, get<V>(c.c2));
  const V lo = fma(u2, q, fma(get<V>(c.l_lo), u, tlo) + err);
  const V zhi = s * y;
  const auto flagged = not_le(abs(zhi), get<V>(c.bound)) | (x < get<V>(c.dbl_min)) | not_le(x, get<V>(c.dbl_max));
  const V z = fma(lo, y, zhi);
  const V ep = fma(s, y, -zhi);
  const V b = z + get<V>(c.shift44);
  const V n = b - get<V>(c.shift44);
  const V rr = z - n;
  const V cr = fma(lo, y, zhi - z);
  const V R = (cr + ep) + rr;
  // The innermost step takes the uncorrected rr, the later ones R.
  const V e = fma(fma(fma(get<V>(c.e4), rr, get<V>(c.e3)), R, get<V>(c.e2)), R, get<V>(c.e1));
  const U bb = as_uint(b);
  const V tj = gather(reinterpret_cast<const double*>(pow_tables::kExp2Acc), bitcast<I>(bb & get<U>(c.m255)));
  const V scale = as_float<V>((bb >> 8) << 52);  // 2^k: the field 1023 + k moved to the exponent
  return mark(fma(e, tj * R, tj) * scale, flagged);
}

// ---- the fast double path: pow and powr _native (and _rm, _half), powf plain, pown
// and rootn _native --------------------------------------------------------------------
//
// ln x = k ln2 + T_i + ln(1 + u): m' = m 2^-10, r' = the estimate of 1/m'
// rounded to an integer in [512, 1024], u = m' r' - 1 (|u| < 1.8e-3),
// T_i = -ln(r'/512) (r' <= 724) or -ln(r'/1024), the exponent's bias chosen
// with it so that |T_i| <= 0.347. e^t = 2^(n/2048) 2^(f/2048) with n =
// floor(t 2048/ln2), f in [0, 1), and 2^(f/2048) replaced by its chord
// 1 + f (2^(1/2048) - 1): relative error at most 1.4e-8 (the chord), about
// 2^-26.
constexpr double kLn2 = f64_bits(0x3fe62e42fefa39efull);       // 0.69314718055994529
constexpr double kLnQ4 = f64_bits(0xbfd0000148058ee1ull);      // -0.2500003054940248
constexpr double kLnQ3 = f64_bits(0x3fd55555555543c5ull);      // 0.33333333333308374
constexpr double kLnQ2 = f64_bits(0xbfdffffffffff81full);      // -0.49999999999988803
constexpr double kInvLn2x2048 = f64_bits(0x40a71547652b82feull);  // 2954.639443740597, 2048/ln2
constexpr double kChord = f64_bits(0x3f362f3904051fa1ull);     // 0.00033850805268231294, 2^(1/2048) - 1
// The bounds on t = y ln x: the upper word of |t| at or above 0x40862e42
// (|t| >= 709.7822265625) overflows or nears it; t below ln DBL_MIN
// (-708.39641853226408, 0xc086232bdd7abcd2) gives a denormal result, whose
// exponent the integer add cannot form.
constexpr int64_t kFastBoundBits = 0x40862e4200000000ll;
constexpr double kLnDblMin = f64_bits(0xc086232bdd7abcd2ull);

struct FastRows {
  Row<uint64_t> mant = row(kMantBits), m_scaled = row<uint64_t>(0x3f50000000000000ull), m2047 = row<uint64_t>(2047);
  Row<int64_t> word_bias = row<int64_t>(0x0010000000000000ll), word_low = row<int64_t>(0x0020000000000000ll),
               abs = row<int64_t>(0x7fffffffffffffffll), bound = row(kFastBoundBits),
               y_big = row<int64_t>(0x7f80000000000000ll), single_bound = row<int64_t>(0x4059fe36ffffffffll);
  Row<int32_t> r0 = row<int32_t>(512);
  Row<double> shift = row(kShift), minus1 = row(-1.0), split = row(724.0), bias_lo = row(kShift + 1022),
              bias_hi = row(kShift + 1023), ln2 = row(kLn2), q4 = row(kLnQ4), q3 = row(kLnQ3), q2 = row(kLnQ2),
              inv = row(kInvLn2x2048), half = row(0.5), chord = row(kChord), ln_min = row(kLnDblMin);
};
inline constexpr FastRows kFastRows{};

// Lanes whose x is not a positive, normal, finite number: the upper word plus
// 0x00100000 below 0x00200000 as a signed compare (done on the whole pattern).
template <class R> RAVL_INLINE Mask<double, 4> not_positive_normal(F64x4 x, const R& c) {
  return as_int(x) + get<I64x4>(c.word_bias) < get<I64x4>(c.word_low);
}

// ln x for positive, normal, finite x.
RAVL_INLINE F64x4 ln_fast(F64x4 x, const FastRows& c) {
  using V = F64x4;
  using U = U64x4;
  const U xb = as_uint(x);
  const V mp = as_float<V>((xb & get<U>(c.mant)) | get<U>(c.m_scaled));
  const V rr = round_imm<8>(rcp_estimate(mp));  // r', nearest integer
  const V u = fma(mp, rr, get<V>(c.minus1));
  // k = e_b - 1022 or e_b - 1023, as a double through the shifter.
  const V eb = as_float<V>((xb >> 52) | as_uint(get<V>(c.shift)));
  const V k = eb - select(rr > get<V>(c.split), get<V>(c.bias_hi), get<V>(c.bias_lo));
  const V t = gather(reinterpret_cast<const double*>(log_tables::kLogFast), cvtt_i32(rr) - get<I32x4>(c.r0));
  const V poly = fma(fma(get<V>(c.q4), u, get<V>(c.q3)), u, get<V>(c.q2));
  return fma(k, get<V>(c.ln2), t + fma(u * u, poly, u));
}

// e^t for ln DBL_MIN <= t < 709.7822265625.
RAVL_INLINE F64x4 exp_fast(F64x4 t, const FastRows& c) {
  using V = F64x4;
  using U = U64x4;
  using I = I64x4;
  const V v = t * get<V>(c.inv);
  const V b = (v - get<V>(c.half)) + get<V>(c.shift);  // n = floor(v) (to nearest of v - 1/2)
  const U bb = as_uint(b);
  const V f = v - (b - get<V>(c.shift));
  const V tj = gather(reinterpret_cast<const double*>(pow_tables::kExpFast), bitcast<I>(bb & get<U>(c.m2047)));
  const V r = fma(tj, f * get<V>(c.chord), tj);
  return as_float<V>(as_uint(r) + ((bb >> 11) << 52));  // exponent raised by n >> 11
}

// Lanes of t = y ln x beyond the fast path's bounds, NaN included.
RAVL_INLINE Mask<double, 4> fast_t_out(F64x4 t, const FastRows& c) {
  return ((as_int(t) & get<I64x4>(c.abs)) >= get<I64x4>(c.bound)) | (t < get<F64x4>(c.ln_min));
}

// x^y on 4 lanes (pow and powr _native, _rm, _half). Marked: x not a
// positive, normal, finite number; the upper word of |y| at or above
// 0x7f800000 (|y| >= 2^1017, infinities and NaN); t = y ln x beyond the bounds.
RAVL_INLINE F64x4 pow_fast(F64x4 x, F64x4 y) {
  const FastRows& c = rows(kFastRows);
  const F64x4 t = y * ln_fast(x, c);
  const auto flagged = not_positive_normal(x, c) | ((as_int(y) & get<I64x4>(c.abs)) >= get<I64x4>(c.y_big)) |
                       fast_t_out(t, c);
  return mark(exp_fast(t, c), flagged);
}

// |t| above 103.972 (upper word above 0x4059fe36) or NaN: the single
// results beyond the reach of the narrowing (above 2^150, below 2^-150).
RAVL_INLINE Mask<double, 4> single_t_out(F64x4 t, const FastRows& c) {
  return (as_int(t) & get<I64x4>(c.abs)) > get<I64x4>(c.single_bound);
}

// ---- the fast double path on 8 single lanes -------------------------------------
//
// ln_fast on the 8 singles of x at once, in two 4-lane double halves: the
// same values bit for bit, with the reciprocal estimate and the table index
// taken on the singles. m' converted to single is exact (a single's
// mantissa has 23 bits), so the estimate's argument is formed from the
// single's own mantissa field with the exponent of 2^-10 (0x3a800000); a
// single denormal, which the double holds normalized, is first scaled by
// 2^32 (exact), which normalizes it with the same mantissa bits. r' (an
// integer in [512, 1024], widened exactly) is rounded on the singles, and
// its index r' - 512 read from its pattern: (bits >> 14) - 0x11000, which
// runs 0..512 over [512, 1024] (0x44000000 is 512.0, 2^14 the pattern's
// step between integers in [512, 1024)).
struct SinglesRows {
  Row<int32_t> flt_min = row<int32_t>(0x00800000), mant = row<int32_t>(0x007fffff),
               m_scaled = row<int32_t>(0x3a800000), index_base = row<int32_t>(0x11000),
               flt_min_next = row<int32_t>(0x00800001);
  Row<float> scale32 = row(f32_bits(0x4f800000u));  // 2^32 = 4294967296
};
inline constexpr SinglesRows kSinglesRows{};

// Lanes whose single x is not positive and finite (denormals pass): the
// pattern plus 0x00800000 below 0x00800001 as a signed compare, which
// leaves 1..0x7f7fffff at or above it.
RAVL_INLINE Mask<float, 8> not_positive_single(Vec<float, 8> x, const SinglesRows& s) {
  using I8 = Vec<int32_t, 8>;
  return as_int(x) + get<I8>(s.flt_min) < get<I8>(s.flt_min_next);
}

// ln x on both halves of x (lanes 0-3 in lo, 4-7 in hi); positive, normal or
// denormal, finite singles give ln_fast's value of the widened single.
RAVL_INLINE void ln_fast_singles(Vec<float, 8> x, F64x4 xd0, F64x4 xd1, F64x4& ln0, F64x4& ln1, const FastRows& c0,
                                 const FastRows& c1, const SinglesRows& s) {
  using V = F64x4;
  using U = U64x4;
  using F8 = Vec<float, 8>;
  using I8 = Vec<int32_t, 8>;
  const F8 xn = select(as_int(x) < get<I8>(s.flt_min), x * get<F8>(s.scale32), x);
  const F8 mpf = as_float<F8>((as_int(xn) & get<I8>(s.mant)) | get<I8>(s.m_scaled));
  const F8 rrf = round_imm<8>(rcp_approx(mpf));  // r', nearest integer
  const LaneWords<8> idx((as_int(rrf) >> 14) - get<I8>(s.index_base));
  const double* tab = reinterpret_cast<const double*>(log_tables::kLogFast);
  const V rr0 = convert<double>(slice<0, 4>(rrf)), rr1 = convert<double>(slice<4, 4>(rrf));
  const U xb0 = as_uint(xd0), xb1 = as_uint(xd1);
  const V mp0 = as_float<V>((xb0 & get<U>(c0.mant)) | get<U>(c0.m_scaled));
  const V mp1 = as_float<V>((xb1 & get<U>(c1.mant)) | get<U>(c1.m_scaled));
  const V u0 = fma(mp0, rr0, get<V>(c0.minus1)), u1 = fma(mp1, rr1, get<V>(c1.minus1));
  const V t0 = (V)_mm256_set_m128d(load_hi64(load_lo64(tab, idx[2]), tab, idx[3]), load_hi64(load_lo64(tab, idx[0]), tab, idx[1]));
  const V t1 = (V)_mm256_set_m128d(load_hi64(load_lo64(tab, idx[6]), tab, idx[7]), load_hi64(load_lo64(tab, idx[4]), tab, idx[5]));
  const V eb0 = as_float<V>((xb0 >> 52) | as_uint(get<V>(c0.shift)));
  const V eb1 = as_float<V>((xb1 >> 52) | as_uint(get<V>(c1.shift)));
  const V k0 = eb0 - select(rr0 > get<V>(c0.split), get<V>(c0.bias_hi), get<V>(c0.bias_lo));
  const V k1 = eb1 - select(rr1 > get<V>(c1.split), get<V>(c1.bias_hi), get<V>(c1.bias_lo));
  const V p0 = fma(fma(get<V>(c0.q4), u0, get<V>(c0.q3)), u0, get<V>(c0.q2));
  const V p1 = fma(fma(get<V>(c1.q4), u1, get<V>(c1.q3)), u1, get<V>(c1.q2));
  ln0 = fma(k0, get<V>(c0.ln2), t0 + fma(u0 * u0, p0, u0));
  ln1 = fma(k1, get<V>(c1.ln2), t1 + fma(u1 * u1, p1, u1));
}

// powf_in_double on the 8 single lanes of x and y at once, the two halves
// computed side by side (one read of the constants, so that the second
// half's work is available to the processor from the start): the same
// results and marks, bit for bit.
RAVL_INLINE Vec<float, 8> powf_in_double8(Vec<float, 8> x, Vec<float, 8> y) {
  // The rows read through two opaque pointers: each half reads its
  // constants as operands (no register holds one for both halves).
  const FastRows& c0 = rows(kFastRows);
  const FastRows& c1 = rows_apart(kFastRows);
  const SinglesRows& s = rows(kSinglesRows);
  const F64x4 xd0 = convert<double>(slice<0, 4>(x)), xd1 = convert<double>(slice<4, 4>(x));
  F64x4 ln0, ln1;
  ln_fast_singles(x, xd0, xd1, ln0, ln1, c0, c1, s);
  const F64x4 t0 = convert<double>(slice<0, 4>(y)) * ln0;
  const F64x4 t1 = convert<double>(slice<4, 4>(y)) * ln1;
  const F64x4 a = mark(exp_fast(t0, c0), single_t_out(t0, c0));
  const F64x4 b = mark(exp_fast(t1, c1), single_t_out(t1, c1));
  return mark(join(convert<float>(a), convert<float>(b)), not_positive_single(x, s));
}

// x^y for single x and y given as doubles (exact): the single families'
// plain classes (powf). Marked: x not a positive, normal, finite number (a
// single denormal is a normal double and stays), t beyond 103.972 or NaN
// (infinite or NaN y among them).
RAVL_INLINE F64x4 powf_in_double(F64x4 x, F64x4 y) {
  const FastRows& c = rows(kFastRows);
  const F64x4 t = y * ln_fast(x, c);
  return mark(exp_fast(t, c), not_positive_normal(x, c) | single_t_out(t, c));
}

// |x|^y with y = n (pown) or 1/n (rootn, one rounded division), the sign of
// x kept for odd n: pown and rootn _native (kSingle false), pownf and
// rootnf plain (kSingle true: single x given as a double, the single
// bound on t). Marked: |x| not a normal finite number, t beyond the
// bounds, and for rootn negative x with even n.
template <bool kRoot, bool kSingle> RAVL_INLINE F64x4 pown_fast(F64x4 x, I32x4 n) {
  using V = F64x4;
  using U = U64x4;
  const FastRows& c = rows(kFastRows);
  const V ax = abs(x);
  const V nd = convert<double>(n);
  const V t = (kRoot ? V(1.0) / nd : nd) * ln_fast(ax, c);
  const U odd = (U)convert<int64_t>(n) << 63;
  auto flagged = not_positive_normal(ax, c) | (kSingle ? single_t_out(t, c) : fast_t_out(t, c));
  if constexpr (kRoot) flagged |= (as_int(x) & ~(I64x4)odd) < 0;
  return mark(as_float<V>(as_uint(exp_fast(t, c)) | (as_uint(x) & odd)), flagged);
}

// ---- the reduced single path: powf and powrf _native (and _rm, _half), pownf and rootnf
// _native -----------------------------------------------------------------------------
//
// log2 x = k + log2(1 + f) with x = 2^k (1 + f), 1 + f in [sqrt(1/2), sqrt(2)):
// log2(1 + f) = f P(f), P of degree 8 (a Chebyshev fit, relative error
// 3.4e-8); z = y log2 x; 2^z = 2^n 2^r with n = round(z) and 2^r of degree 5
// on |r| <= 1/2 (error 1.6e-7), exactly 1 at r = 0 (so x^0 = 1 and integer z
// give powers of two). z is one single: its rounding, up to |z| 2^-24,
// is the main error for large |z|.
constexpr float kRedP8 = f32_bits(0x3dfc20eeu);  // 0.123109683
constexpr float kRedP7 = f32_bits(0xbe52cd75u);  // -0.205861881
constexpr float kRedP6 = f32_bits(0x3e5d439cu);  // 0.216078222
constexpr float kRedP5 = f32_bits(0xbe74e8f3u);  // -0.239169881
constexpr float kRedP4 = f32_bits(0x3e93680eu);  // 0.287903249
constexpr float kRedP3 = f32_bits(0xbeb8accau);  // -0.360693276
constexpr float kRedP2 = f32_bits(0x3ef639efu);  // 0.480910748
constexpr float kRedP1 = f32_bits(0xbf38aa3au);  // -0.721347451
constexpr float kRedP0 = f32_bits(0x3fb8aa3bu);  // 1.44269502
// 2^r = 1 + r (E1 + E2 r + E3 r^2 + E4 r^3 + E5 r^4) (exactly 1 at r = 0).
constexpr float kRedE5 = f32_bits(0x3aaf6433u);  // 0.00133813021
constexpr float kRedE4 = f32_bits(0x3c1e5fb0u);  // 0.00966636837
constexpr float kRedE3 = f32_bits(0x3d6357f7u);  // 0.0555038117
constexpr float kRedE2 = f32_bits(0x3e75fd26u);  // 0.240223497
constexpr float kRedE1 = f32_bits(0x3f317218u);  // 0.693147182
// |z| <= 125.5 (0x42fb0000) keeps 2^n r normal: n in [-125, 126], 2^r in [0.707, 1.415).
constexpr float kRedBound = f32_bits(0x42fb0000u);
constexpr float kShiftf = f32_bits(0x4b400000u);  // 1.5 * 2^23 = 12582912: rounds |z| < 2^22 to an integer

struct RedRows {
  Row<int32_t> sqrt_half = row<int32_t>(0x3f3504f3), word_bias = row<int32_t>(0x00800000),
               word_low = row<int32_t>(0x01000000);
  Row<float> one = row(1.0f), p8 = row(kRedP8), p7 = row(kRedP7), p6 = row(kRedP6), p5 = row(kRedP5),
             p4 = row(kRedP4), p3 = row(kRedP3), p2 = row(kRedP2), p1 = row(kRedP1), p0 = row(kRedP0),
             e5 = row(kRedE5), e4 = row(kRedE4), e3 = row(kRedE3), e2 = row(kRedE2), e1 = row(kRedE1),
             bound = row(kRedBound), shift = row(kShiftf);
};
inline constexpr RedRows kRedRows{};

// Lanes whose x is not a positive, normal, finite single.
template <class V> RAVL_INLINE MaskOf<V> not_positive_normal_f(V x, const RedRows& c) {
  using I = SIntOf<V>;
  return as_int(x) + get<I>(c.word_bias) < get<I>(c.word_low);
}

// log2 x for positive, normal, finite x.
template <class V> RAVL_INLINE V log2_reduced(V x, const RedRows& c) {
  using I = SIntOf<V>;
  const I xb = as_int(x);
  const I k = (xb - get<I>(c.sqrt_half)) >> 23;
  const V f = as_float<V>(xb - (k << 23)) - get<V>(c.one);
  V p = fma(get<V>(c.p8), f, get<V>(c.p7));
  p = fma(p, f, get<V>(c.p6));
  p = fma(p, f, get<V>(c.p5));
  p = fma(p, f, get<V>(c.p4));
  p = fma(p, f, get<V>(c.p3));
  p = fma(p, f, get<V>(c.p2));
  p = fma(p, f, get<V>(c.p1));
  p = fma(p, f, get<V>(c.p0));
  return fma(f, p, convert<float>(k));
}

// 2^z for |z| <= 125.5; marks |z| beyond that and NaN.
template <class V, class M> RAVL_INLINE V exp2_reduced(V z, M flagged, const RedRows& c) {
  const V s = z + get<V>(c.shift);
  const V r = z - (s - get<V>(c.shift));
  V p = fma(get<V>(c.e5), r, get<V>(c.e4));
  p = fma(p, r, get<V>(c.e3));
  p = fma(p, r, get<V>(c.e2));
  p = fma(p, r, get<V>(c.e1));
  p = fma(p, r, get<V>(c.one));
  const V res = as_float<V>(as_uint(p) + (as_uint(s) << 23));
  return mark(res, flagged | not_le(abs(z), get<V>(c.bound)));
}

// x^y on single lanes by the reduced path (powf and powrf _native, _rm, _half).
template <class V> RAVL_INLINE V pow_reduced(V x, V y) {
  const RedRows& c = rows(kRedRows);
  return exp2_reduced(y * log2_reduced(x, c), not_positive_normal_f(x, c), c);
}
// |x|^y with y = n (pownf) or 1/n (rootnf), the sign of x kept for odd n;
// rootnf marks negative x with even n.
template <bool kRoot, class V, class I> RAVL_INLINE V pown_reduced(V x, I n) {
  const RedRows& c = rows(kRedRows);
  const V ax = abs(x);
  const V nf = convert<float>(n);
  const I odd = n << 31;
  auto flagged = not_positive_normal_f(ax, c);
  if constexpr (kRoot) flagged |= (as_int(x) & ~odd) < 0;
  const V r = exp2_reduced((kRoot ? V(1.0f) / nf : nf) * log2_reduced(ax, c), flagged, c);
  return as_float<V>(as_uint(r) | (as_uint(x) & (UIntOf<V>)odd));
}

// ---- the accurate routine -------------------------------------------------------
//
// |x|^y to within about 0.502 ulp, written once for one double (the scalar
// routines) and for 4-lane chunks (pown and rootn plain):
// - log2 x = e + sum_k -log2 r_k + log2(1 + u) as a double-word value: three
//   reciprocals r_1, r_2, r_3 taken from tables by 5, 5 and 7 successive
//   leading bits of the reduced mantissa (each rounded at the next bit; 33, 33
//   and 131 rows) make
//   D = m r_1 r_2 r_3 = 1 + u with |u| < 2^-17.9, D carried as an exact
//   double-word product; log2(1 + u) = u/ln2 (double-word) + u^2 (...) to
//   degree 5. Relative error below 2^-70 (the tables' lows are within 2^-106,
//   the products exact, the polynomial's rounding u^2 2^-53).
// - z = y log2 x with the exact product error (fused multiply-add).
// - 2^z = 2^(n/128) 2^s, n = round(128 z) through the shifter 1.5 * 2^45,
//   s = z - n/128 (|s| <= 1/256 + the low part), 2^s - 1 of degree 5
//   (relative error about 2^-60), 2^(j/128) as a (hi, lo) pair: the value
//   hi + (hi p + lo) with one final rounding.

template <class V> struct Dd {
  V hi, lo;
};
template <class V> RAVL_INLINE Dd<V> two_sum(V a, V b) {
  const V s = a + b;
  const V bb = s - a;
  return {s, (a - (s - bb)) + (b - bb)};
}

// Lane access for one double and for 4-lane chunks.
template <class V> struct Lanes;
template <> struct Lanes<double> {
  using U = uint64_t;
  using I = int64_t;
  static RAVL_INLINE U bits(double x) { return bits_of(x); }
  static RAVL_INLINE double num(U u) { return f64_bits(u); }
  // Row i of a table of 32-byte rows (r, hi, lo, 0).
  static RAVL_INLINE void row3(const uint64_t* t, I i, double& r, double& hi, double& lo) {
    r = f64_bits(t[4 * i]), hi = f64_bits(t[4 * i + 1]), lo = f64_bits(t[4 * i + 2]);
  }
  static RAVL_INLINE void pair(const uint64_t* t, I i, double& hi, double& lo) {
    hi = f64_bits(t[2 * i]), lo = f64_bits(t[2 * i + 1]);
  }
};
template <> struct Lanes<F64x4> {
  using U = U64x4;
  using I = I64x4;
  static RAVL_INLINE U bits(F64x4 x) { return as_uint(x); }
  static RAVL_INLINE F64x4 num(U u) { return as_float<F64x4>(u); }
  // Rows i of a table of 32-byte rows (r, hi, lo, 0): one 256-bit load per
  // lane and a 4x4 transpose (intrinsics: simd.h has no row transpose).
  static RAVL_INLINE void row3(const uint64_t* t, I i, F64x4& r, F64x4& hi, F64x4& lo) {
    const double* b = reinterpret_cast<const double*>(t);
    const __m256d a0 = _mm256_load_pd(b + 4 * i[0]), a1 = _mm256_load_pd(b + 4 * i[1]);
    const __m256d a2 = _mm256_load_pd(b + 4 * i[2]), a3 = _mm256_load_pd(b + 4 * i[3]);
    const __m256d l01 = _mm256_unpacklo_pd(a0, a1), h01 = _mm256_unpackhi_pd(a0, a1);  // r0 r1 lo0 lo1 | hi0 hi1 0 0
    const __m256d l23 = _mm256_unpacklo_pd(a2, a3), h23 = _mm256_unpackhi_pd(a2, a3);
    r = (F64x4)_mm256_permute2f128_pd(l01, l23, 0x20);
    lo = (F64x4)_mm256_permute2f128_pd(l01, l23, 0x31);
    hi = (F64x4)_mm256_permute2f128_pd(h01, h23, 0x20);
  }
  static RAVL_INLINE void pair(const uint64_t* t, I i, F64x4& hi, F64x4& lo) {
    gather_pairs<16>(reinterpret_cast<const double*>(t), i, hi, lo);
  }
};

constexpr double kInvLn2Hi = f64_bits(0x3ff71547652b82feull);  // 1/ln2 = hi + lo, 1.4426950408889634
constexpr double kInvLn2Lo = f64_bits(0x3c7777d0ffda0d24ull);  // 2.0355273740931033e-17
constexpr double kLogA2 = f64_bits(0xbfe71547652b82feull);     // -1/(2 ln2)
constexpr double kLogA3 = f64_bits(0x3fdec709dc3a03fdull);     // 1/(3 ln2)
constexpr double kLogA4 = f64_bits(0xbfd71547652b82feull);     // -1/(4 ln2)
constexpr double kLogA5 = f64_bits(0x3fd2776c50ef9bfeull);     // 1/(5 ln2)
// 1.5 * 2^45 (0x42c8000000000000): z + kShift45 rounds z to a multiple of 1/128.
constexpr double kShift45 = f64_bits(0x42c8000000000000ull);  // 52776558133248.0
// 2^s - 1 = s (X1 + X2 s + ... + X5 s^4) on |s| <= 1/256.
constexpr double kX1 = f64_bits(0x3fe62e42fefa39efull);  // 0.6931471805599453
constexpr double kX2 = f64_bits(0x3fcebfbdff82c58full);  // 0.24022650695910072
constexpr double kX3 = f64_bits(0x3fac6b08d704a0c0ull);  // 0.05550410866482158
constexpr double kX4 = f64_bits(0x3f83b2ab6fba4e77ull);  // 0.009618129107628477
constexpr double kX5 = f64_bits(0x3f55d87fe78a6731ull);  // 0.0013333558146428443

// Index round(d * 2^s) + off for |d| 2^s < 2^50 (d * 2^s exact).
template <class V> RAVL_INLINE typename Lanes<V>::I near_index(V d, double scale, int64_t off) {
  using T = Lanes<V>;
  const V s = d * scale + kShift;
  return (typename T::I)(T::bits(s) - T::bits(V(kShift))) + off;
}

// log2 x as a double-word value, for positive, normal, finite x, plus the
// integer eoff (an exponent offset: -200 for a scaled denormal).
template <class V> RAVL_INLINE Dd<V> log2_accurate(V x, V eoff) {
  using T = Lanes<V>;
  using U = typename T::U;
  using I = typename T::I;
  const U xb = T::bits(x);
  const U mb = xb & U(kMantBits);
  const V m = T::num(mb | U(kOneBits));
  // e = e_b - 1023 + eoff, exact.
  const V e = (T::num((xb >> 52) | T::bits(V(kShift))) - V(kShift + 1023)) + eoff;
  V r, h, l;
  // Stage 1: 5 leading mantissa bits rounded, i = 0..32 (row 32: r = 1/2).
  T::row3(pow_tables::kLog2Red1, (I)((mb + U(1ull << 46)) >> 47), r, h, l);
  V p = m * r;
  V pe = fma(m, r, -p);
  Dd<V> acc = two_sum(e, h);
  V low = acc.lo + l;
  // Stage 2: D = p + pe in 1 +- 2^-6; i = round((p - 1) 2^10) in -16..16.
  T::row3(pow_tables::kLog2Red2, near_index(p - V(1.0), 0x1p10, 16), r, h, l);
  V p2 = p * r;
  pe = fma(p, r, -p2) + pe * r;
  p = p2;
  acc = two_sum(acc.hi, h);
  low = low + (acc.lo + l);
  // Stage 3: D in 1 +- 1.016 2^-11; i = round((p - 1) 2^17) in -65..65.
  T::row3(pow_tables::kLog2Red3, near_index(p - V(1.0), 0x1p17, 65), r, h, l);
  p2 = p * r;
  pe = fma(p, r, -p2) + pe * r;
  p = p2;
  acc = two_sum(acc.hi, h);
  low = low + (acc.lo + l);
  // u = (p - 1) + pe, p - 1 exact; log2(1 + u).
  const V uh = p - V(1.0);
  const V ua = uh + pe;
  const V th = uh * V(kInvLn2Hi);
  const V tl = fma(uh, V(kInvLn2Hi), -th) + fma(uh, V(kInvLn2Lo), pe * V(kInvLn2Hi));
  const V poly = fma(fma(fma(V(kLogA5), ua, V(kLogA4)), ua, V(kLogA3)), ua, V(kLogA2));
  acc = two_sum(acc.hi, th);
  low = low + (acc.lo + fma(ua * ua, poly, tl));
  return two_sum(acc.hi, low);
}

// 1/n as a double-word value yh + yl (to about 2^-106).
template <class V> RAVL_INLINE V recip_lo(V nd, V yh) { return fma(-yh, nd, V(1.0)) * yh; }

// z = y log2 x, y = yh + yl (yl = 0 when kYLo is false).
template <bool kYLo, class V> RAVL_INLINE Dd<V> times_y(Dd<V> lg, V yh, V yl) {
  const V zh = yh * lg.hi;
  V zl = fma(yh, lg.hi, -zh);
  if constexpr (kYLo) zl = zl + fma(yh, lg.lo, yl * lg.hi);
  else zl = fma(yh, lg.lo, zl);
  return {zh, zl};
}

// 2^z = 2^(n >> 7) (hi + q), for |z.hi| < 2^44; returns n (q = hi p + lo).
template <class V> RAVL_INLINE typename Lanes<V>::I exp2_accurate(Dd<V> z, V& hi, V& q) {
  using T = Lanes<V>;
  using I = typename T::I;
  const V s = z.hi + V(kShift45);
  const V rest = (z.hi - (s - V(kShift45))) + z.lo;
  const I n = (I)(T::bits(s) - T::bits(V(kShift45)));
  const V p = rest * fma(fma(fma(fma(V(kX5), rest, V(kX4)), rest, V(kX3)), rest, V(kX2)), rest, V(kX1));
  V lo;
  T::pair(exp2_exp10_tables::kExp10Pairs128, n & 127, hi, lo);  // 2^(j/128) as (hi, lo) pairs
  q = fma(hi, p, lo);
  return n;
}

// x^y on 4 lanes for pown (y = n) and rootn (y = 1/n as a double-word value)
// plain: the accurate routine's arithmetic, |x| for x and the sign of x kept
// for odd n. Marked: |x| not a normal finite number, the upper word of
// |z| at or above kBoundWord (a result near the edges of the normal range,
// which the scalar routine scales; NaN z from n = 0 in rootn), and for rootn
// negative x with even n.
template <bool kRoot, uint64_t kBoundWord> RAVL_INLINE F64x4 pown_accurate(F64x4 x, I32x4 n) {
  using V = F64x4;
  using U = U64x4;
  using I = I64x4;
  const V ax = abs(x);
  const V nd = convert<double>(n);
  const V yh = kRoot ? V(1.0) / nd : nd;
  const Dd<V> z = times_y<kRoot>(log2_accurate(ax, V(0.0)), yh, kRoot ? recip_lo(nd, yh) : V(0.0));
  V hi, q;
  const I k = exp2_accurate(z, hi, q);
  const V scale = as_float<V>(((U)(k + 1023 * 128) >> 7) << 52);
  const U odd = (U)convert<int64_t>(n) << 63;
  auto flagged = (as_int(abs(z.hi)) >= (int64_t)(kBoundWord << 32)) | (ax < V(kDblMin)) | not_le(ax, V(kDblMax));
  if constexpr (kRoot) flagged |= (as_int(x) & ~(I)odd) < 0;
  return mark(as_float<V>(as_uint((hi + q) * scale) | (as_uint(x) & odd)), flagged);
}

// ---- the scalar routines ---------------------------------------------------------

// DBL_MAX (0x7fefffffffffffff) squared overflows, DBL_MIN squared underflows.
constexpr double kHuge = kDblMax;
constexpr double kTiny = kDblMin;
constexpr double kInf = __builtin_inf();

// sign * |x|^y for positive finite x, y = yh + yl, |y log2 x| below 2^44 or
// beyond the overflow and underflow bounds. Status 3 on overflow, 4 on a
// denormal or zero result.
inline int pow_finite(double ax, double yh, double yl, bool neg, double* rp) {
  double eoff = 0;
  if (ax < kDblMin) {
    ax *= 0x1p200;  // 1.6069380442589903e60, exact for a denormal
    eoff = -200;
  }
  const Dd<double> z = times_y<true>(log2_accurate(ax, eoff), yh, yl);
  const double sign = neg ? -1.0 : 1.0;
  if (z.hi > 1100) {
    *rp = sign * (opaque(kHuge) * kHuge);
    return kStatusOverflow;
  }
  if (!(z.hi >= -1100)) {
    *rp = sign * (opaque(kTiny) * kTiny);
    return kStatusUnderflow;
  }
  double hi, q;
  const int64_t k = exp2_accurate(z, hi, q) >> 7;
  if (k >= -1022) {
    // A normal result (hi + q >= 2^-1/256 keeps it at or above 2^-1022 for
    // k > -1022; at k = -1022 a result just below 2^-1022 is rounded twice),
    // or an overflow: scaled by 2^k in two steps so that k = 1024 is covered.
    const int64_t k1 = k > 1023 ? 1023 : k;
    *rp = sign * (((hi + q) * f64_bits((uint64_t)(k1 + 1023) << 52)) * f64_bits((uint64_t)(k - k1 + 1023) << 52));
    return __builtin_isinf(*rp) ? kStatusOverflow : kStatusOk;
  }
  if (k < -1076) {  // below 2^-1075 whatever hi + q: rounds to zero
    *rp = sign * (opaque(kTiny) * kTiny);
    return kStatusUnderflow;
  }
  // A denormal result rounded once: t = 2^(k + 1022) (hi + q) < 1 and
  // RN(1 + t) - 1 is t on the grid 2^-52, the result's grid scaled by 2^1022.
  const double sc = f64_bits((uint64_t)(k + 2045) << 52);  // 2^(k + 1022), k + 1022 in [-54, -1]
  const Dd<double> s = two_sum(1.0, hi * sc);
  const double w = s.hi + (s.lo + q * sc);
  *rp = sign * ((w - 1.0) * 0x1p-1022);
  return kStatusUnderflow;
}

// Parity of a finite or infinite y: 0 not an integer, 1 odd, 2 even (zero and
// the infinities count as even).
inline int parity(double y) {
  const uint64_t b = bits_of(y) & ~(1ull << 63);
  const int e = (int)(b >> 52);
  if (e < 1023) return b == 0 ? 2 : 0;
  if (e > 1075) return 2;  // |y| >= 2^53: even (in [2^52, 2^53) the last bit is the units bit)
  const uint64_t m = (b & kMantBits) | (1ull << 52);
  const int below = 1075 - e;  // bits below the binary point, 0 to 52
  if (m & ((1ull << below) - 1)) return 0;
  return (m >> below) & 1 ? 1 : 2;
}

// A NaN from non-NaN inputs (invalid raised at run time).
inline int domain_error(double* rp) {
  *rp = opaque(0.0) / 0.0;
  return kStatusDomain;
}

// The NaN of a NaN input quieted, x's when both are NaN (one operand per
// addition, so that no compiler's operand order changes the payload).
inline double quiet_nan(double x, double y) { return x != x ? x + x : y + y; }

// pow(x, y) with the C99 and OpenCL special values.
inline int pow_rules(double x, double y, double* rp) {
  if (y == 0 || x == 1) {
    *rp = 1.0;
    return kStatusOk;
  }
  if (x != x || y != y) {
    *rp = quiet_nan(x, y);
    return kStatusOk;
  }
  const bool odd = parity(y) == 1;
  const double ax = __builtin_fabs(x);
  if (x == 0) {
    if (y > 0) {
      *rp = odd ? x : 0.0;
      return kStatusOk;
    }
    *rp = opaque(1.0) / (odd ? x : 0.0);  // +-inf, division by zero
    return kStatusPole;
  }
  if (__builtin_isinf(y)) {
    *rp = ax == 1 ? 1.0 : (ax < 1) == (y > 0) ? 0.0 : kInf;
    return kStatusOk;
  }
  if (__builtin_isinf(x)) {
    const double v = y > 0 ? kInf : 0.0;
    *rp = x < 0 && odd ? -v : v;
    return kStatusOk;
  }
  if (x < 0 && parity(y) == 0) return domain_error(rp);
  return pow_finite(ax, y, 0, x < 0 && odd, rp);
}

// powr(x, y) = e^(y ln x), defined for x >= 0 only.
inline int powr_rules(double x, double y, double* rp) {
  if (x != x || y != y) {
    *rp = quiet_nan(x, y);
    return kStatusOk;
  }
  if (x < 0) return domain_error(rp);
  if (x == 0) {
    if (y == 0) return domain_error(rp);
    if (y > 0) {
      *rp = 0.0;
      return kStatusOk;
    }
    *rp = opaque(1.0) / 0.0;
    return kStatusPole;
  }
  if (__builtin_isinf(x)) {
    if (y == 0) return domain_error(rp);
    *rp = y > 0 ? kInf : 0.0;
    return kStatusOk;
  }
  if (x == 1) {
    if (__builtin_isinf(y)) return domain_error(rp);
    *rp = 1.0;
    return kStatusOk;
  }
  if (y == 0) {
    *rp = 1.0;
    return kStatusOk;
  }
  if (__builtin_isinf(y)) {
    *rp = (x < 1) == (y > 0) ? 0.0 : kInf;
    return kStatusOk;
  }
  return pow_finite(x, y, 0, false, rp);
}


// rootn(x, n) = x^(1/n) with the OpenCL special values.
inline int rootn_rules(double x, int32_t n, double* rp) {
  if (n == 0) return domain_error(rp);
  if (x != x) {
    *rp = x + x;
    return kStatusOk;
  }
  const bool odd = n & 1;
  if (x < 0 && !odd) return domain_error(rp);
  if (x == 0) {
    if (n > 0) {
      *rp = odd ? x : 0.0;
      return kStatusOk;
    }
    *rp = opaque(1.0) / (odd ? x : 0.0);
    return kStatusPole;
  }
  if (__builtin_isinf(x)) {
    *rp = n > 0 ? x : 1.0 / x;  // odd n keeps the sign; even n has x = +inf here
    return kStatusOk;
  }
  const double nd = n, yh = 1.0 / nd;
  return pow_finite(__builtin_fabs(x), yh, recip_lo(nd, yh), x < 0, rp);
}

// A single routine from the double one: x and y are exact in double, the
// double result is rounded once to single (overflow to infinity and denormal
// results from that rounding).
inline int narrow(int status, double r, float* rp) {
  const float f = (float)r;
  *rp = f;
  if (status != kStatusOk) return status;
  const uint32_t a = bits_of(f) & 0x7fffffffu;
  if (a == 0x7f800000u && !__builtin_isinf(r)) return kStatusOverflow;
  if (r != 0 && a < 0x00800000u) return kStatusUnderflow;
  return kStatusOk;
}

// ---- kernel bases -------------------------------------------------------------------

// The marked lanes (NaN results, see mark()) go to the scalar routine Scalar,
// which every class of the family shares. The test reads the result (tied):
// the entry computes log2 x, y log2 x and the exponential once, for the test
// and for the result it returns.
template <class T, class A, int (*Scalar)(const T*, const A*, T*)> struct MarkedKernel : frame::Kernel {
  using sig = T(T, A);
  static constexpr bool has_callout = true;
  static constexpr bool tied = true;
  template <int L> static RAVL_INLINE Mask<T, L> special(Vec<T, L>, Vec<A, L>, Vec<T, L> r) { return is_nan(r); }
  static RAVL_INLINE int scalar(const T* x, const A* y, T* r) { return Scalar(x, y, r); }
};

// A 4-lane double body f(x, y) as a kernel's vec: 2-lane chunks (widths 1
// and 2) run doubled.
template <class F, class A, int L> RAVL_INLINE Vec<double, L> on_chunk(F f, Vec<double, L> x, Vec<A, L> y) {
  if constexpr (L == 2) return slice<0, 2>(f(join(x, x), join(y, y)));
  else return f(x, y);
}
// A 4-lane double body run on single lanes: 4 lanes converted, 8 as two halves.
template <class F, class A, int L> RAVL_INLINE Vec<float, L> on_singles(F f, Vec<float, L> x, Vec<A, L> y) {
  if constexpr (L == 4) {
    return convert<float>(f(convert<double>(x), y));
  } else {
    const F64x4 a = f(convert<double>(slice<0, 4>(x)), slice<0, 4>(y));
    const F64x4 b = f(convert<double>(slice<4, 4>(x)), slice<4, 4>(y));
    return join(convert<float>(a), convert<float>(b));
  }
}

}  // namespace pow_core
}  // namespace ravl
