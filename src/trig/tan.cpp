// Tangent of double lanes (family tan), every class, over the whole finite
// range.
//
// Every member computes all lanes on a branch-free fast path: x reduced by
// the nearest multiple N of pi/2 (a rounding shifter), a rational n/d ~ tan r
// on |r| <= pi/4, and -d/n (the cotangent, negated) for odd N. Lanes with
// |x| > 128000, infinities and NaN (one unordered compare) are flagged; the
// inline pass computes the flagged finite lanes by the full-range reduction
// (tables/trigd.h: the fraction of x/(2 pi) to about 128 bits, a node a_j on
// the 512-point grid, tan having period pi so only j mod 256 is kept) and the
// node table of tables/tan.h, in every class alike. Only infinities and NaN
// reach the scalar routine:
//   +-inf -> NaN (status 1), NaN -> quiet NaN, +-0 -> +-0, 0 < |x| < 2^-252 ->
//   x rounded toward 0 (inexact), other finite x (not reached from the vector
//   path) -> the scalar reduction and kernel of trig/trigd_reduce.h.
//
// Classes and measured max errors (against MPFR, 10^6 inputs a range: the
// fast path, the doubles next to odd multiples of pi/2, huge x, random bit
// patterns; tests/accuracy_test.cpp keeps and asserts the bounds):
//   plain                 full   fast path 3.04 ulp (worst x = -0x1.9ff9cb4b57599p+16:
//                                the three roundings of r near |r| = pi/4), 1.9 ulp
//                                next to the poles
//   _native _half _rm     fast   fast path 1.99e5 ulp (relative 2.2e-11, the
//                                scaled rational; tiny x gives x (1 + 2.2e-11))
//   every class, |x| > 128000    2.94 ulp (worst x = -0x1.0e668ead9669cp+852, node 64)
#include "frame/entry.h"
#include "tables/tan.h"
#include "trig/trigd_reduce.h"

namespace ravl {
namespace tan_detail {

// ---- fast reduction ------------------------------------------------------------

// 2/pi = 0.63661977236758138 (0x3fe45f306dc9c883).
constexpr double kTwoOverPi = f64_bits(0x3fe45f306dc9c883ull);
// 1.5 * 2^52 (0x4338000000000000): a 2/pi + kShift rounds a 2/pi (< 2^17) to
// the integer N, held in the low bits of the sum.
constexpr double kShift = trigd::kShift52;
// pi/2 in three pieces: h1 = RN(pi/2) = 1.5707963267948966 (0x3ff921fb54442d18),
// h2 = 6.1232339957367648e-17 (0x3c91a62633145c06, the rest rounded down),
// h3 = 1.082856673921914e-32 (0x394c1cd129024e09, RN of what is left): the sum
// is pi/2 to 6.3e-49. N h1 and N h2 lose nothing that matters for N < 2^17
// (the fused steps round each partial difference once).
constexpr double kPio2_1 = f64_bits(0x3ff921fb54442d18ull);
constexpr double kPio2_2 = f64_bits(0x3c91a62633145c06ull);
constexpr double kPio2_3 = f64_bits(0x394c1cd129024e09ull);
// |x| above 128000 (0x40ff400000000000), infinities and NaN leave the fast path.
constexpr double kBound = f64_bits(0x40ff400000000000ull);

// ---- full class: tan r ~ n/d, n = r + r^3 (p1 + p2 r^2 + p3 r^4),
// d = 1 + r^2 (q1 + q2 r^2 + q3 r^4) on |r| <= pi/4.
constexpr double kP1 = f64_bits(0xbfc06b97be36d389ull);  // -0.12828347003747023
constexpr double kP2 = f64_bits(0x3f66fc6fdce5d301ull);  // 0.0028059181997214249
constexpr double kP3 = f64_bits(0xbedf637dce2a3800ull);  // -7.4836345641659391e-06
constexpr double kQ1 = f64_bits(0xbfdd8b213470beeeull);  // -0.46161680337080113
constexpr double kQ2 = f64_bits(0x3f97e7b68ac28a56ull);  // 0.023344852656587221
constexpr double kQ3 = f64_bits(0xbf2b525b03bc92a6ull);  // -0.00020844803827304198

// ---- fast classes: n = r (u0 + u1 r^2 + u2 r^4), d = k0 + k1 r^2 + k2 r^4,
// both scaled by about 1.156 (so that the quotient is still tan r); the two
// leading values u0 and k0 differ in their last digits by construction.
constexpr double kU0 = f64_bits(0x3ff27e949512aa02ull);  // 1.1559034178886809
constexpr double kU1 = f64_bits(0xbfc079ff5bf6a4dfull);  // -0.12872306814578047
constexpr double kU2 = f64_bits(0x3f545c936ed9193aull);  // 0.0012427749419586368
constexpr double kK0 = f64_bits(0x3ff27e949510e8deull);  // 1.1559034178631502
constexpr double kK1 = f64_bits(0xbfe072e2e400ec37ull);  // -0.51402420551256156
constexpr double kK2 = f64_bits(0x3f92e825cc67d220ull);  // 0.018463698006558116

// The fast path's constants, one 32-byte row each, read as memory operands.
struct TanRows {
  Row<double> bound = row(kBound), two_over_pi = row(kTwoOverPi), shift = row(kShift), h1 = row(kPio2_1),
              h2 = row(kPio2_2), h3 = row(kPio2_3), one = row(1.0);
  Row<uint64_t> abs = row<uint64_t>(0x7fffffffffffffffull), sign = row<uint64_t>(0x8000000000000000ull);
};
struct TanFullRows : TanRows {
  Row<double> p1 = row(kP1), p2 = row(kP2), p3 = row(kP3), q1 = row(kQ1), q2 = row(kQ2), q3 = row(kQ3);
};
struct TanFastRows : TanRows {
  Row<double> u0 = row(kU0), u1 = row(kU1), u2 = row(kU2), k0 = row(kK0), k1 = row(kK1), k2 = row(kK2);
};
inline constexpr TanFullRows kTanFullRows{};
inline constexpr TanFastRows kTanFastRows{};

// a = |x| reduced: N = round(a 2/pi) (t holds it in its low bits) and r = a -
// N pi/2 with the first kPieces pieces of pi/2.
template <int kPieces, class V, class R> RAVL_INLINE V reduce(V x, const R& c, V& t) {
  V a = as_float<V>(as_uint(x) & get<UIntOf<V>>(c.abs));
  t = fma(a, get<V>(c.two_over_pi), get<V>(c.shift));
  V n = t - get<V>(c.shift);
  V r = fnma(n, get<V>(c.h1), a);
  r = fnma(n, get<V>(c.h2), r);
  if constexpr (kPieces == 3) r = fnma(n, get<V>(c.h3), r);
  return r;
}

// tan x from n/d ~ tan r: n/d for even N, d/n for odd N, each by a true
// division; the sign then flipped for odd N (tan(r + pi/2) = -1/tan r) and
// given the sign of x. t << 62 puts bit 1 of N in the sign and bit 0 in the
// top of the exponent: it compares unequal to 0 exactly when N is odd.
template <class V, class R> RAVL_INLINE V finish(V x, V t, V n, V d, const R& c) {
  using U = UIntOf<V>;
  const U tb = as_uint(t);
  const MaskOf<V> odd = as_float<V>(tb << 62) != V(0.0);
  const V q = select(odd, d, n) / select(odd, n, d);
  const U sign = (tb << 63) ^ (as_uint(x) & get<U>(c.sign));
  return as_float<V>(as_uint(q) ^ sign);
}

// ---- full-range path ---------------------------------------------------------------
//
// x = a_j + r (mod pi) with a_j = 2 pi j / 512, j in [0, 256) and |r| <=
// pi/512 plus rounding (trigd::reduce_full on the signed x, r + rlo rounded
// to one double). tan(a_j + r) = T2 / (T0 - r) + F_j(r) (tables/tan.h): the
// pole term, for the 128 nodes within pi/4 of the pole at pi/2, and the
// regular part F_j(r) = T3 + (T5 + T6) r + T7 r^2 + ... + T12 r^7.
// 1/(T0 - r): y0 the single-precision reciprocal estimate (relative error
// e = 1 - g y0 below 1.5 2^-12), y = y0 (1 + e + e^2 + e^3 + e^4), within
// 2^-57 relative before its last rounding. result = Pc r + (y T2 + (T5 r +
// T3)), Pc = T6 + T7 r + ... + T12 r^6. Measured over every row's interval
// (tools/tablegen_tan.cpp, r exact): 1.0-1.7 ulp on the rows without the
// pole term, up to 3.0 ulp with it (row 64: y ~ 1.27 against a result below 1).

// The single-precision reciprocal estimate of g, widened back.
RAVL_INLINE F64x4 rcp_estimate(F64x4 g) { return convert<double>(rcp_approx(convert<float>(g))); }
RAVL_INLINE F64x2 rcp_estimate(F64x2 g) {
  return convert<double>(slice<0, 2>(rcp_approx(convert<float>(join(g, g)))));
}

template <class V> RAVL_INLINE V tan_full_range(V x) {
  using I = SIntOf<V>;
  const trigd::FullArg<V> a = trigd::reduce_full<true>(x);
  const V r = a.r + a.rlo;
  const double* tab = reinterpret_cast<const double*>(tan_tables::kTanNodes);
  const I row = bitcast<I>((a.j & 0xff) * 13);
  auto col = [&](int k) { return gather(tab + k, row); };
  const V g = col(0) - r;
  const V y0 = rcp_estimate(g);
  const V e = fnma(g, y0, V(1.0));
  const V y = fma(fma(y0, e * e, y0), e + e * e, y0);
  const V base = fma(y, col(2), fma(col(5), r, col(3)));
  const V r2 = r * r, r4 = r2 * r2;
  const V pa = fma(col(7), r, col(6));
  V pb = fma(col(9), r, col(8));
  V pc = fma(col(11), r, col(10));
  pc = fma(col(12), r2, pc);
  pb = fma(pb, r2, pa);
  pc = fma(pc, r4, pb);
  return fma(pc, r, base);
}

// The scalar routine of every member: the rows that need no reduction, else
// the scalar reduction and the double-double tangent.
RAVL_INLINE int tan_scalar(const double* xp, double* rp) {
  const double x = *xp;
  int status;
  if (trigd::edge_row(x, trigd::Fn::kOdd, rp, &status)) return status;
  *rp = trigd::tan_finite(x);
  return kStatusOk;
}

// What every class shares: the lane test (|x| > 128000 or NaN, unordered),
// the inline full-range pass and the scalar routine.
template <const auto& kRows> struct TanBase : frame::Kernel {
  using sig = double(double);
  static constexpr bool has_callout = true;
  template <int L> static RAVL_INLINE Mask<double, L> special(Vec<double, L> x, Vec<double, L>) {
    using V = Vec<double, L>;
    const auto& c = rows(kRows);
    return not_le(as_float<V>(as_uint(x) & get<UIntOf<V>>(c.abs)), get<V>(c.bound));
  }
  // The flagged finite lanes take the full-range result; infinities and NaN
  // (all-ones exponent) go on to the scalar routine.
  template <int L>
  static RAVL_INLINE Mask<double, L> settle(Mask<double, L> flagged, Vec<double, L> x, Vec<double, L>& r) {
    using V = Vec<double, L>;
    using U = UIntOf<V>;
    const MaskOf<V> nonfinite = bitcast<MaskOf<V>>((as_uint(x) & U(0x7ff0000000000000ull)) == U(0x7ff0000000000000ull));
    r = select(flagged & ~nonfinite, tan_full_range(x), r);
    return flagged & nonfinite;
  }
  static RAVL_INLINE int scalar(const double* x, double* r) { return tan_scalar(x, r); }
};

// ---- full class (plain) -----------------------------------------------------------
//
// tan x, |x| <= 128000: three pieces of pi/2; n = r + r^3 P(r^2), d = 1 +
// r^2 Q(r^2) (rational fit on |r| <= pi/4).
struct TanFull : TanBase<kTanFullRows> {
  template <int L> static RAVL_INLINE Vec<double, L> vec(Vec<double, L> x) {
    using V = Vec<double, L>;
    const TanFullRows& c = rows(kTanFullRows);
    V t;
    const V r = reduce<3>(x, c, t);
    const V r2 = r * r;
    V q = fma(get<V>(c.p3), r2, get<V>(c.p2));
    q = fma(q, r2, get<V>(c.p1));
    const V n = fma(q * r2, r, r);
    V d = fma(get<V>(c.q3), r2, get<V>(c.q2));
    d = fma(d, r2, get<V>(c.q1));
    d = fma(d, r2, get<V>(c.one));
    return finish(x, t, n, d, c);
  }
};

// ---- fast classes (_native, _half, _rm) ---------------------------------------------
//
// tan x, |x| <= 128000: two pieces of pi/2; n = r U(r^2), d = K(r^2), both
// scaled by about 1.156.
struct TanFast : TanBase<kTanFastRows> {
  template <int L> static RAVL_INLINE Vec<double, L> vec(Vec<double, L> x) {
    using V = Vec<double, L>;
    const TanFastRows& c = rows(kTanFastRows);
    V t;
    const V r = reduce<2>(x, c, t);
    const V r2 = r * r;
    V u = fma(get<V>(c.u2), r2, get<V>(c.u1));
    u = fma(u, r2, get<V>(c.u0));
    const V n = r * u;
    V d = fma(get<V>(c.k2), r2, get<V>(c.k1));
    d = fma(d, r2, get<V>(c.k0));
    return finish(x, t, n, d, c);
  }
};

}  // namespace tan_detail

namespace tan_k {
using full = tan_detail::TanFull;
using fast = tan_detail::TanFast;
}  // namespace tan_k

}  // namespace ravl

#include "entries/tan.inc"
