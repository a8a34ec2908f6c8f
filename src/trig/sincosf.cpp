// sin and cos of single lanes in one call: families sincosf (the cosine
// stored through the pointer argument) and sincosregf (both results in
// registers). Every class of both families is this one computation, so
// sincosregf gives the bits of sincosf.
//
// N = nearest integer to |x|/(pi/2), r = |x| - N pi/2 with pi/2 in three
// singles, |r| <= pi/4; S(r) ~ sin r and K(r) ~ cos r; bit 0 of N swaps the
// two (odd N: the sine is K, the cosine S), bit 1 of N xor the sign of x is
// the sine's sign and bit 0 xor bit 1 the cosine's. Lanes with |x| >= 2^19
// (and NaN) are flagged; the inline pass reduces them in double (below) and
// applies the same kernels. No lane goes to a scalar routine: infinities
// and NaN give NaN in both results.
//
// Measured max errors (against MPFR over every single): sine 2.148 ulp,
// cosine 2.152 ulp (|x| < 2^19); 2.182 and 2.176 ulp above.
#include "frame/entry.h"
#include "tables/trigf.h"

namespace ravl {
namespace sincosf_detail {

// |x| >= 2^19 (bits above those of 0x1.fffffep18 = 0x48ffffff), infinities
// and NaN take the large-argument path.
constexpr uint32_t kLargeBits = 0x48ffffffu;

struct Rows {
  Row<uint32_t> abs = row(0x7fffffffu), large = row(kLargeBits);
  Row<float> two_over_pi = row(f32_bits(0x3f22f983u)),  // 2/pi = 0.636619747
      shift = row(f32_bits(0x4b400000u)),               // 1.5 2^23: rounds |t| < 2^22 to an integer in the low bits
      // -pi/2 = -1.57079637 (0xbfc90fdb) - 4.37113883e-08 (0x333bbd2e)
      // - 1.71512451e-15 (0x26f72ced).
      mh1 = row(f32_bits(0xbfc90fdbu)), h2 = row(f32_bits(0x333bbd2eu)), h3 = row(f32_bits(0x26f72cedu)),
      // sin r ~ r + r (s0 + s1 r^2 + s2 r^4 + s3 r^6) on |r| <= pi/4; the
      // constant term s0 = -3.23820193e-09 makes the leading coefficient
      // 1 - 3.2e-9 (the error spread over the interval).
      s0 = row(f32_bits(0xb15e870du)),  // -3.23820193e-09
      s1 = row(f32_bits(0xbe2aaaa0u)),  // -0.166666508
      s2 = row(f32_bits(0x3c088303u)),  // 0.00833201688
      s3 = row(f32_bits(0xb94c7dceu)),  // -0.00019501822
      // cos r ~ 1 + k1 r^2 + k2 r^4 + k3 r^6 on |r| <= pi/4.
      k1 = row(f32_bits(0xbeffffcbu)),  // -0.49999842
      k2 = row(f32_bits(0x3d2a9dd3u)),  // 0.0416544192
      k3 = row(f32_bits(0xbab1fcebu)),  // -0.00135794037
      one = row(1.0f);
};
inline constexpr Rows kRows{};

// The kernels at r, swapped and signed by the quadrant q (the low bits of N)
// and the sign bit sx of x.
template <class V> RAVL_INLINE Two<V, V> kernels(V r, UIntOf<V> q, UIntOf<V> sx, const Rows& c) {
  using U = UIntOf<V>;
  const V r2 = r * r;
  V s = fma(r2, get<V>(c.s3), get<V>(c.s2));
  s = fma(s, r2, get<V>(c.s1));
  s = fma(s, r2, get<V>(c.s0));
  s = fma(s, r, r);
  V k = fma(r2, get<V>(c.k3), get<V>(c.k2));
  k = fma(k, r2, get<V>(c.k1));
  k = fma(k, r2, get<V>(c.one));
  // Bits 0 and 1 of q, and their exclusive or, moved to the sign position.
  const U q1 = q >> 1;
  const U b0 = q << 31, b1 = q1 << 31, b01 = (q ^ q1) << 31;
  return {as_float<V>(as_uint(select_sign(b0, s, k)) ^ b1 ^ sx), as_float<V>(as_uint(select_sign(b0, k, s)) ^ b01)};
}

// ---- large arguments ---------------------------------------------------------------
//
// |x| widened to double: with (C0, C1) the row of kSincosfLarge for the
// block (E - 1046) >> 3 of its biased double exponent E (the single's
// biased exponent less 150; clamped to the first row for |x| < 2^19, where
// nothing is kept, and the last for infinities and NaN), |x| 2/pi = p + pe +
// |x| C1 modulo 4 with p + pe = |x| C0 exactly (a product and its fused
// error term; |p| < 2^33). N = p rounded to an integer, f = ((p - N) + pe) +
// |x| C1 (p - N exact), about 2^-70 from |x| 2/pi - N, and r = f pi/2 rounded
// once to double and once to single. Infinities and NaN give NaN in f.
constexpr double kShiftD = f64_bits(0x4338000000000000ull);  // 1.5 2^52
constexpr double kHalfPiD = f64_bits(0x3ff921fb54442d18ull);  // pi/2 = 1.5707963267948966

RAVL_INLINE void large_quarter(F32x4 a, I32x4 row, F32x4& r, U32x4& q) {
  F64x4 c0, c1;
  gather_pairs<16>(reinterpret_cast<const double*>(trigf_tables::kSincosfLarge), convert<int64_t>(row), c0, c1);
  const F64x4 xd = convert<double>(a);
  const F64x4 p = xd * c0;
  const F64x4 pe = fms(xd, c0, p);
  const F64x4 t = p + F64x4(kShiftD);
  const F64x4 n = t - F64x4(kShiftD);
  const F64x4 f = ((p - n) + pe) + xd * c1;
  r = convert<float>(f * F64x4(kHalfPiD));
  const U32x8 tw = bitcast<U32x8>(t);
  q = __builtin_shufflevector(tw, tw, 0, 2, 4, 6);
}

template <int L> RAVL_INLINE void large(Vec<float, L> a, Vec<float, L>& r, Vec<uint32_t, L>& q) {
  using I = Vec<int32_t, L>;
  const I block = ((as_int(a) >> 23) - I(150)) >> 3;
  const I row = select(block < I(0), I(0), block + I(1));
  if constexpr (L == 4) {
    large_quarter(a, row, r, q);
  } else {
    F32x4 r0, r1;
    U32x4 q0, q1;
    large_quarter(slice<0, 4>(a), slice<0, 4>(row), r0, q0);
    large_quarter(slice<4, 4>(a), slice<4, 4>(row), r1, q1);
    r = join(r0, r1);
    q = join(q0, q1);
  }
}

// ---- the kernel --------------------------------------------------------------------

template <class Sig> struct SincosfKernel : frame::Kernel {
  using sig = Sig;
  // The flagged lanes are finished by the inline pass, which leaves none to
  // a scalar routine.
  static constexpr bool has_callout = true;

  template <int L> static RAVL_INLINE Two<Vec<float, L>, Vec<float, L>> vec(Vec<float, L> x) {
    using V = Vec<float, L>;
    using U = Vec<uint32_t, L>;
    const Rows& c = rows(kRows);
    const V a = as_float<V>(as_uint(x) & get<U>(c.abs));
    const V t = fma(a, get<V>(c.two_over_pi), get<V>(c.shift));
    const V n = t - get<V>(c.shift);
    V r = fma(n, get<V>(c.mh1), a);
    r = fma(n, get<V>(c.h2), r);
    r = fma(n, get<V>(c.h3), r);
    return kernels(r, as_uint(t), as_uint(x) ^ as_uint(a), c);
  }
  // |x| >= 2^19, infinities and NaN (one integer compare of the bits of |x|).
  template <int L> static RAVL_INLINE Mask<float, L> special(Vec<float, L> x, Two<Vec<float, L>, Vec<float, L>>) {
    using I = Vec<int32_t, L>;
    const Rows& c = rows(kRows);
    return (as_int(x) & get<I>(c.abs)) > get<I>(c.large);
  }
  template <int L>
  static RAVL_INLINE Mask<float, L> settle(Mask<float, L> flagged, Vec<float, L> x,
                                           Two<Vec<float, L>, Vec<float, L>>& out) {
    using V = Vec<float, L>;
    using U = Vec<uint32_t, L>;
    const Rows& c = rows(kRows);
    const V a = as_float<V>(as_uint(x) & get<U>(c.abs));
    V r;
    U q;
    large(a, r, q);
    const Two<V, V> big = kernels(r, q, as_uint(x) ^ as_uint(a), c);
    out.first = select(flagged, big.first, out.first);
    out.second = select(flagged, big.second, out.second);
    return Mask<float, L>(0);
  }
  // The lane loop's routine, which no lane reaches (the inline pass leaves
  // none): the same computation on one lane.
  static int scalar(const float* x, float* s, float* c) {
    const F32x4 v(*x);
    Two<F32x4, F32x4> o = vec<4>(v);
    settle<4>(special<4>(v, o), v, o);
    *s = o.first[0];
    *c = o.second[0];
    return kStatusOk;
  }
};

}  // namespace sincosf_detail

namespace sincosf_k {
using full = sincosf_detail::SincosfKernel<float(float, float*)>;
}  // namespace sincosf_k
namespace sincosregf_k {
using full = sincosf_detail::SincosfKernel<Two<float, float>(float)>;
using fast = full;
}  // namespace sincosregf_k

}  // namespace ravl

#include "entries/sincosf.inc"
#include "entries/sincosregf.inc"
