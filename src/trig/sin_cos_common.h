// What the double sine and cosine families (sin.cpp, cos.cpp) have in
// common: the constants of the fast reduction by pi, the odd polynomial
// kernels, the full-range pass of the plain classes and the scalar routine.
// Each family's reduction form (sine form on |x|, cosine form on pi/2 - |x|)
// and coefficients stay in its own file.
#pragma once

#include "frame/entry.h"
#include "trig/trigd_reduce.h"

namespace ravl {
namespace sin_cos {

// ---- fast reduction constants ------------------------------------------------------

constexpr uint64_t kAbsMask = 0x7fffffffffffffffull;
// 1/pi = 0.31830988618379069 (0x3fd45f306dc9c883).
constexpr double kInvPi = f64_bits(0x3fd45f306dc9c883ull);
// 1.5 * 2^52 (0x4338000000000000): t = y/pi + shifter holds N = round(y/pi)
// in its low bits, bit 0 its parity.
constexpr double kShift = f64_bits(0x4338000000000000ull);
// pi = pi1 + pi2 + pi3: 3.1415926535897931 (0x400921fb54442d18),
// 1.224646799147353e-16 (0x3ca1a62633145c06), 2.1657133478438281e-32
// (0x395c1cd129024e09). The plain classes remove N pi with all three, the
// reduced classes with the first two.
constexpr double kPi1 = f64_bits(0x400921fb54442d18ull);
constexpr double kPi2 = f64_bits(0x3ca1a62633145c06ull);
constexpr double kPi3 = f64_bits(0x395c1cd129024e09ull);
// pi/2 = 1.5707963267948966 (0x3ff921fb54442d18), the shift of the cosine form.
constexpr double kPio2 = f64_bits(0x3ff921fb54442d18ull);

// Degree-9 odd kernel of the reduced classes, the same in sin and cos:
// sin(r) ~ r + r^3 (d1 + r^2 (d2 + r^2 (d3 + r^2 d4))) on |r| <= pi/2.
constexpr double kD[4] = {
    f64_bits(0xbfc55554ad3eaf1full),  // d1 = -0.16666658839437162
    f64_bits(0x3f8110ea968a0185ull),  // d2 = 0.0083330466452487071
    f64_bits(0xbf29f67d9395d587ull),  // d3 = -0.00019808085361787081
    f64_bits(0x3ec5d4567512bbd5ull),  // d4 = 2.6022725384193179e-06
};

// The rows every sine and cosine vector path reads (one 32-byte row each, as
// memory operands): the mask of |x|, the lane-test bound, the reduction
// constants (pi/2, 1 and 1/2 for the cosine form) and the kernel's coefficients
// c[0] = c1 .. c[K-1] (of r^3 .. r^(2K+1)).
template <int K> struct Rows {
  Row<uint64_t> abs = row(kAbsMask);
  Row<double> bound, inv_pi = row(kInvPi), shift = row(kShift), pi1 = row(kPi1), pi2 = row(kPi2), pi3 = row(kPi3),
              pio2 = row(kPio2), one = row(1.0), half = row(0.5);
  Row<double> c[K];
  constexpr Rows(double b, const double (&coef)[K]) : bound(row(b)), c{} {
    for (int k = 0; k < K; ++k) c[k] = row(coef[k]);
  }
};
using FullRows = Rows<7>;
using FastRows = Rows<4>;

// P = c_K; P = fma(P, r2, c_k) for k = K-1 down to 1 (Horner from the highest).
template <int K, class V> RAVL_INLINE V horner(V r2, const Rows<K>& c) {
  V p = get<V>(c.c[K - 1]);
  for (int k = K - 2; k >= 0; --k) p = fma(p, r2, get<V>(c.c[k]));
  return p;
}

// y - N pi with N = round(y/pi) (y >= 0 or y = pi/2 - |x|, N's parity in
// `odd` as the sign bit), the sine form of the reduction: kPieces = 3 or 2.
template <int kPieces, int K, class V> RAVL_INLINE V reduce_by_pi(V a, const Rows<K>& c, UIntOf<V>& odd) {
  const V t = fma(a, get<V>(c.inv_pi), get<V>(c.shift));
  const V n = t - get<V>(c.shift);
  odd = as_uint(t) << 63;
  V r = fnma(n, get<V>(c.pi1), a);
  r = fnma(n, get<V>(c.pi2), r);
  if constexpr (kPieces == 3) r = fnma(n, get<V>(c.pi3), r);
  return r;
}

// ---- the full-range pass and the scalar routine ----------------------------------------

// The scalar routine of sin (kOdd) or cos (kEven), shared by every class: the
// edge rows (inf -> NaN with status 1, NaN, zeros, |x| < 2^-252), else the
// scalar reduction and kernel (within 0.51 ulp).
template <trigd::Fn kFn> RAVL_INLINE int scalar(const double* xp, double* rp) {
  const double x = *xp;
  int status;
  if (trigd::edge_row(x, kFn, rp, &status)) return status;
  *rp = kFn == trigd::Fn::kOdd ? trigd::sin_finite(x) : trigd::cos_finite(x);
  return kStatusOk;
}

// The inline pass of the plain classes: every flagged finite lane (above the
// large-argument bound) takes the full-range result, computed for the whole
// chunk (sin on |x| with the sign of x restored, cos on x); the infinite and
// NaN lanes stay flagged for the scalar routine.
template <trigd::Fn kFn, class M, class V> RAVL_INLINE M settle_full_range(M flagged, V x, V& r) {
  const M big = flagged & (abs(x) < V(__builtin_inf()));
  V f;
  if constexpr (kFn == trigd::Fn::kOdd) {
    f = trigd::eval_node(trigd_tables::kSinNodes, trigd::reduce_full<false>(x));
    f = as_float<V>(as_uint(f) ^ sign_bit(x));
  } else {
    f = trigd::eval_node<trigd::kCosRow>(trigd_tables::kSinNodes, trigd::reduce_full<true>(x));
  }
  r = select(big, f, r);
  return flagged & ~big;
}

// What every class of sin (kOdd) or cos (kEven) shares: the signature and the
// scalar routine (a family's lane test and vector path are its own).
template <trigd::Fn kFn> struct KernelBase : frame::Kernel {
  using sig = double(double);
  static constexpr bool has_callout = true;
  static RAVL_INLINE int scalar(const double* x, double* r) { return sin_cos::scalar<kFn>(x, r); }
};

// A plain class: the kernel K with the full-range inline pass.
template <class K, trigd::Fn kFn> struct WithFullRange : K {
  template <int L, class M> static RAVL_INLINE M settle(M flagged, Vec<double, L> x, Vec<double, L>& r) {
    return settle_full_range<kFn>(flagged, x, r);
  }
};

}  // namespace sin_cos
}  // namespace ravl
