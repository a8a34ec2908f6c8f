// powr(x, y) = e^(y ln x) on double lanes (family powr) and on single lanes
// (family powrf): defined for x >= 0 only (negative x, 0^0, inf^0 and
// 1^inf give NaN).
//
// powr shares pow's vector paths lane for lane (pow_core.h): plain runs the
// accurate log2/exp2 path, _native and _half the fast natural-log path.
// powrf plain runs the single accurate path below, _native and _half the
// reduced single path. The marked lanes (x not a positive, normal, finite
// number, results near or beyond the edges of the range, NaN) go to the
// scalar routine of the precision, shared by every class: the callout
// table's special values, the rest from the accurate routine (the single
// routine runs the double one and rounds once).
//
// Measured max errors (against MPFR): see the accuracy rows of the tests.
#include "pow_root/pow_core.h"

namespace ravl {
namespace powr_detail {

using namespace pow_core;

RAVL_INLINE int powr_scalar(const double* x, const double* y, double* r) { return powr_rules(*x, *y, r); }
RAVL_INLINE int powrf_scalar(const float* x, const float* y, float* r) {
  double d;
  const int s = powr_rules(*x, *y, &d);
  return narrow(s, d, r);
}

// ---- single accurate path (powrf plain) -------------------------------------------
//
// log2 x = K + log2(1 + u): r = the single reciprocal estimate of x rounded
// to 3 fraction bits, 2^(E_r - 127) (1 + j/8); u = x r - 1 (|u| < 0.07);
// K = hi_j - E_r with hi_j + lo_j = 127 - log2(1 + j/8). log2 x is carried
// as S2 + low: S2 = K + C1 u + C2 u^2 (two fused steps), low = lo_j, the two
// steps' rounding errors, the low parts of C1 and C2 and u^3 (...) to
// degree 7. z = y log2 x with the product's error; 2^z = 2^k 2^(j2/8) 2^R,
// N = k + j2/8 the multiple of 1/8 nearest z, 2^R - 1 = R (Q1 + Q2 R + Q3 R^2).
constexpr float kF1 = f32_bits(0x3fb8aa3bu);    // 1.44269502, 1/ln2 rounded
constexpr float kF2 = f32_bits(0xbf38aa3bu);    // -0.721347511, -1/(2 ln2) rounded
constexpr float kF1lo = f32_bits(0x32a56f15u);  // 1.9259042e-08, the low part of 1/ln2
constexpr float kF2lo = f32_bits(0xb239c255u);  // -1.08126033e-08, the low part of -1/(2 ln2)
constexpr float kF3 = f32_bits(0x3ef6384fu);    // 0.48089835
constexpr float kF4 = f32_bits(0xbeb8a9eau);    // -0.360671341
constexpr float kF5 = f32_bits(0x3e93badcu);    // 0.288534999
constexpr float kF6 = f32_bits(0xbe777cc7u);    // -0.241686925
constexpr float kF7 = f32_bits(0x3e547edeu);    // 0.20751521
constexpr float kQ1 = f32_bits(0x3f317218u);    // 0.693147182
constexpr float kQ2 = f32_bits(0x3e7607c9u);    // 0.24026407
constexpr float kQ3 = f32_bits(0x3d636078u);    // 0.0555119216
// 1.5 * 2^20 + 127 (0x49c003f8): z + kShift20 rounds z to a multiple of 1/8;
// the sum's low 3 bits are j2, the 8 above them 127 + k.
constexpr float kShift20 = f32_bits(0x49c003f8u);  // 1572991.0
// |z| <= 125.5 (0x42fb0000) keeps 2^k normal.
constexpr float kSingleBound = f32_bits(0x42fb0000u);
constexpr float kFltMin = f32_bits(0x00800000u);     // 1.17549435e-38
constexpr float kRcpLimit = f32_bits(0x7e400000u);   // 6.38029438e+37: above it the estimate of 1/x is flushed

struct SingleRows {
  Row<uint32_t> rcp_round = row(0x00080000u), rcp_keep = row(0xfff00000u), exp_field = row(0x7f800000u);
  Row<float> minus1 = row(-1.0f), f1 = row(kF1), f2 = row(kF2), f1lo = row(kF1lo), f2lo = row(kF2lo), f3 = row(kF3),
             f4 = row(kF4), f5 = row(kF5), f6 = row(kF6), f7 = row(kF7), q1 = row(kQ1), q2 = row(kQ2), q3 = row(kQ3),
             shift = row(kShift20), bound = row(kSingleBound), flt_min = row(kFltMin), rcp_limit = row(kRcpLimit);
};
inline constexpr SingleRows kSingleRows{};

template <class V> RAVL_INLINE V powr_single(V x, V y) {
  using U = UIntOf<V>;
  using I = SIntOf<V>;
  const SingleRows& c = rows(kSingleRows);
  const U rb = (as_uint(rcp_approx(x)) + get<U>(c.rcp_round)) & get<U>(c.rcp_keep);
  const V r = as_float<V>(rb);
  const I j = bitcast<I>(rb >> 20);  // the permutes read its low 3 bits
  const V er = convert<float>(bitcast<I>(rb >> 23));
  const V u = fma(x, r, get<V>(c.minus1));
  const V hi = lookup8(reinterpret_cast<const float*>(pow_tables::kLog2fHi), j);
  const V lo = lookup8(reinterpret_cast<const float*>(pow_tables::kLog2fLo), j);
  const V k = hi - er;
  const V s = fma(get<V>(c.f1), u, k);
  const V es = fma(get<V>(c.f1), u, k - s);
  const V u2 = u * u;
  const V s2 = fma(get<V>(c.f2), u2, s);
  const V es2 = fma(get<V>(c.f2), u2, s - s2) + get<V>(c.f2) * fma(u, u, -u2);
  const V inner = fma(u2, fma(get<V>(c.f7), u, get<V>(c.f6)), fma(get<V>(c.f5), u, get<V>(c.f4)));
  const V poly = fma(u, inner, get<V>(c.f3));
  const V low = fma(u2 * u, poly, fma(u, fma(get<V>(c.f2lo), u, get<V>(c.f1lo)), (lo + es) + es2));
  const V zhi = s2 * y;
  const auto flagged = not_le(abs(zhi), get<V>(c.bound)) | (x < get<V>(c.flt_min)) | not_le(x, get<V>(c.rcp_limit));
  const V z = fma(low, y, zhi);
  const V ep = fma(s2, y, -zhi);
  const V b = z + get<V>(c.shift);
  const V rr = z - (b - get<V>(c.shift));
  const V R = (fma(low, y, zhi - z) + ep) + rr;
  const V q = fma(fma(get<V>(c.q3), rr, get<V>(c.q2)), R, get<V>(c.q1));
  const U bb = as_uint(b);
  const V t = lookup8(reinterpret_cast<const float*>(pow_tables::kExp2f8), bitcast<I>(bb));
  const V scale = as_float<V>((bb << 20) & get<U>(c.exp_field));
  return mark(fma(t * R, q, t) * scale, flagged);
}

struct PowrFull : MarkedKernel<double, double, powr_scalar> {
  template <int L> static RAVL_INLINE Vec<double, L> vec(Vec<double, L> x, Vec<double, L> y) {
    return on_chunk([](F64x4 a, F64x4 b) __attribute__((always_inline)) { return pow_accurate(a, b); }, x, y);
  }
};
struct PowrFast : MarkedKernel<double, double, powr_scalar> {
  template <int L> static RAVL_INLINE Vec<double, L> vec(Vec<double, L> x, Vec<double, L> y) {
    return on_chunk([](F64x4 a, F64x4 b) __attribute__((always_inline)) { return pow_fast(a, b); }, x, y);
  }
};
struct PowrfFull : MarkedKernel<float, float, powrf_scalar> {
  template <int L> static RAVL_INLINE Vec<float, L> vec(Vec<float, L> x, Vec<float, L> y) { return powr_single(x, y); }
};
struct PowrfFast : MarkedKernel<float, float, powrf_scalar> {
  template <int L> static RAVL_INLINE Vec<float, L> vec(Vec<float, L> x, Vec<float, L> y) { return pow_reduced(x, y); }
};

}  // namespace powr_detail

namespace powr_k {
using full = powr_detail::PowrFull;
using fast = powr_detail::PowrFast;
}  // namespace powr_k
namespace powrf_k {
using full = powr_detail::PowrfFull;
using fast = powr_detail::PowrfFast;
}  // namespace powrf_k

}  // namespace ravl

#include "entries/powr.inc"
#include "entries/powrf.inc"
