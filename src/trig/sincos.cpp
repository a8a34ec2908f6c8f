// Sine and cosine of double lanes at once: families sincos (the cosine stored
// through the pointer argument) and sincosreg (both results in registers).
// One kernel serves both families: they differ only in how the results leave
// the function, so sincosreg returns the bits of sincos for every input.
//
// Every member computes both results of all lanes on a branch-free fast path:
// a = |x| reduced by the nearest multiple N of pi (a rounding shifter) for
// the sine, and by N +- 1/2 (the half on the side of the sine's reduced
// argument) for the cosine, so that cos x = +-sin(rc) with |rc| <= pi/2; one
// odd polynomial for both. Lanes with |x| > 2^23, infinities and NaN (one
// unordered compare) are flagged:
// - plain class: the inline pass computes the flagged finite lanes by the
//   full-range reduction and the sine and cosine node tables
//   (trig/trigd_reduce.h, tables/trigd.h); infinities and NaN go on to the
//   scalar routine;
// - fast classes (_native, _rm): every flagged lane goes to the scalar
//   routine, which reduces any finite x exactly (trig/trigd_reduce.h).
// The scalar routine (one body, both families) stores the sine then the
// cosine: +-inf -> NaN and NaN (status 1); NaN -> quiet NaN and quiet NaN;
// +-0 -> +-0 and 1; 0 < |x| < 2^-252 -> x rounded toward 0 and 1 - |x|;
// other finite x -> the scalar reduction and double-double kernel.
//
// Classes and measured max errors against MPFR (sine / cosine, 10^6 inputs a
// range; tests/accuracy_test.cpp keeps and asserts the bounds):
//   plain            full   fast path 3.18 / 3.19 ulp (results near +-1 from
//                           |r| near pi/2, where the degree-15 sum of terms of
//                           size 1 carries its roundings; cos of a tiny x is
//                           1 - 2^-53), full-range path 0.502 / 0.502 ulp
//   _native, _rm     fast   fast path 6.14e7 ulp (relative 6.8e-9: the degree-9
//                           kernel at |r| near pi/2); the scalar routine's
//                           lanes 0.503 / 0.503 ulp
#include "frame/entry.h"
#include "trig/trigd_reduce.h"

namespace ravl {
namespace sincos_detail {

// ---- fast reduction ------------------------------------------------------------

// 1/pi = 0.31830988618379069 (0x3fd45f306dc9c883).
constexpr double kInvPi = f64_bits(0x3fd45f306dc9c883ull);
// 1.5 * 2^52 (0x4338000000000000): a/pi + kShift rounds to the integer N
// (a <= 2^23, N < 2^22), held in the low bits of the sum.
constexpr double kShift = trigd::kShift52;
// pi in three pieces: pi1 = RN(pi) = 3.1415926535897931 (0x400921fb54442d18),
// pi2 = 1.224646799147353e-16 (0x3ca1a62633145c06, the rest rounded down),
// pi3 = 2.1657133478438281e-32 (0x395c1cd129024e09, RN of what is left): the
// sum is pi to 1.3e-48.
constexpr double kPi1 = f64_bits(0x400921fb54442d18ull);
constexpr double kPi2 = f64_bits(0x3ca1a62633145c06ull);
constexpr double kPi3 = f64_bits(0x395c1cd129024e09ull);
// |x| above 2^23 = 8388608 (0x4160000000000000), infinities and NaN leave the fast path.
constexpr double kBound = f64_bits(0x4160000000000000ull);

// ---- full class: sin r ~ r + r^3 P(r^2), P of degree 6 (odd degree 15), on
// |r| <= pi/2, for both results.
constexpr double kC1 = f64_bits(0xbfc55555555554a7ull);  // -0.16666666666666183
constexpr double kC2 = f64_bits(0x3f8111111110a4a6ull);  // 0.008333333333285186
constexpr double kC3 = f64_bits(0xbf2a01a019a5b86dull);  // -0.00019841269824944237
constexpr double kC4 = f64_bits(0x3ec71de38030fea0ull);  // 2.755731658449074e-06
constexpr double kC5 = f64_bits(0xbe5ae63546002231ull);  // -2.5051879126742989e-08
constexpr double kC6 = f64_bits(0x3de60e6857a2f220ull);  // 1.6048055576979365e-10
constexpr double kC7 = f64_bits(0xbd69f0d60811aac8ull);  // -7.3728090972650701e-13

// ---- fast classes: P of degree 3 (odd degree 9).
constexpr double kD1 = f64_bits(0xbfc55554ad3eaf1full);  // -0.16666658839437162
constexpr double kD2 = f64_bits(0x3f8110ea968a0185ull);  // 0.0083330466452487071
constexpr double kD3 = f64_bits(0xbf29f67d9395d587ull);  // -0.00019808085361787081
constexpr double kD4 = f64_bits(0x3ec5d4567512bbd5ull);  // 2.6022725384193179e-06

// The fast path's constants, one 32-byte row each, read as memory operands.
struct SincosRows {
  Row<double> bound = row(kBound), inv_pi = row(kInvPi), shift = row(kShift), pi1 = row(kPi1), pi2 = row(kPi2),
              pi3 = row(kPi3), half = row(0.5), one = row(1.0);
  Row<uint64_t> abs = row<uint64_t>(0x7fffffffffffffffull), sign = row<uint64_t>(0x8000000000000000ull);
};
struct SincosFullRows : SincosRows {
  Row<double> c1 = row(kC1), c2 = row(kC2), c3 = row(kC3), c4 = row(kC4), c5 = row(kC5), c6 = row(kC6),
              c7 = row(kC7);
};
struct SincosFastRows : SincosRows {
  Row<double> d1 = row(kD1), d2 = row(kD2), d3 = row(kD3), d4 = row(kD4);
};
inline constexpr SincosFullRows kSincosFullRows{};
inline constexpr SincosFastRows kSincosFastRows{};

// Both reductions of a = |x| by multiples of pi, with the first kPieces
// pieces: rs = a - N pi, rc = a - (N +- 1/2) pi, the half taking the sign of
// a - N pi1 - N pi2 (+ for +0). The sine is (-1)^N sin(rs) with the sign of
// x; the cosine (-1)^N sin(rc), negated when the half was added (sin(rs -
// pi/2) = -cos rs). kernel(rs, rc) is sin of both on |r| <= pi/2, the two
// Horner chains interleaved (each coefficient read once for both); x = +-0
// gets the cosine 1 exactly.
template <int kPieces, class V, class R, class K> RAVL_INLINE Two<V, V> sincos_fast(V x, const R& rows0, K kernel) {
  using U = UIntOf<V>;
  const R& c = rows(rows0);
  const V a = as_float<V>(as_uint(x) & get<U>(c.abs));
  const V t = fma(a, get<V>(c.inv_pi), get<V>(c.shift));
  const V n = t - get<V>(c.shift);
  V rs = fnma(n, get<V>(c.pi1), a);
  rs = fnma(n, get<V>(c.pi2), rs);
  const U side = as_uint(rs) & get<U>(c.sign);
  const V nc = n + as_float<V>(as_uint(get<V>(c.half)) | side);
  if constexpr (kPieces == 3) rs = fnma(n, get<V>(c.pi3), rs);
  // The signs of the two results as words to exclusive-or in, formed here
  // (the empty asms keep the compiler from re-associating them with the
  // results, which would hold the parts in registers until the end).
  const U parity = as_uint(t) << 63;
  U sign_s = parity ^ (as_uint(x) & get<U>(c.sign));
  U sign_c = parity ^ side ^ get<U>(c.sign);
  __asm__("" : "+x"(sign_s), "+x"(sign_c));
  // The cosine's reduction reads the pieces again (each constant stays a
  // memory operand instead of a register held across both reductions).
  const R& c2 = rows(rows0);
  V rc = fnma(nc, get<V>(c2.pi1), a);
  rc = fnma(nc, get<V>(c2.pi2), rc);
  if constexpr (kPieces == 3) rc = fnma(nc, get<V>(c2.pi3), rc);
  Two<V, V> k = kernel(rs, rc);
  const V s = as_float<V>(as_uint(k.first) ^ sign_s);
  const V co = as_float<V>(as_uint(k.second) ^ sign_c);
  return {s, select(x == V(0.0), get<V>(c2.one), co)};
}

// sin r ~ fma(P(r^2) r^2, r, r) for r = rs and r = rc, P = c_0 + c_1 z + ...
// (coefficients from the highest) by Horner, the two chains interleaved.
template <class V, class R, int N>
RAVL_INLINE Two<V, V> odd_poly2(V rs, V rc, const R& c, const Row<double> R::*const (&coef)[N]) {
  const V zs = rs * rs, zc = rc * rc;
  V ps = get<V>(c.*coef[0]), pc = ps;
  for (int k = 1; k < N; ++k) {
    const V ck = get<V>(c.*coef[k]);
    ps = fma(ps, zs, ck);
    pc = fma(pc, zc, ck);
  }
  return {fma(ps * zs, rs, rs), fma(pc * zc, rc, rc)};
}

// The scalar routine of every member of both families: the sine to *sp, the
// cosine to *cp.
RAVL_INLINE int sincos_scalar(const double* xp, double* sp, double* cp) {
  const double x = *xp;
  int status;
  if (trigd::edge_row(x, trigd::Fn::kOdd, sp, &status)) {
    trigd::edge_row(x, trigd::Fn::kEven, cp, &status);
    return status;
  }
  trigd::sincos_finite(x, sp, cp);
  return kStatusOk;
}

// What every class of both families shares: the lane test (|x| > 2^23 or
// NaN, unordered) and the scalar routine.
template <const auto& kRows, class Sig> struct SincosBase : frame::Kernel {
  using sig = Sig;
  static constexpr bool has_callout = true;
  template <int L>
  static RAVL_INLINE Mask<double, L> special(Vec<double, L> x, Two<Vec<double, L>, Vec<double, L>>) {
    using V = Vec<double, L>;
    const auto& c = rows(kRows);
    return not_le(as_float<V>(as_uint(x) & get<UIntOf<V>>(c.abs)), get<V>(c.bound));
  }
  static RAVL_INLINE int scalar(const double* x, double* s, double* c) { return sincos_scalar(x, s, c); }
};

// ---- full class (plain) -----------------------------------------------------------
//
// |x| <= 2^23: three pieces of pi, degree 15. Larger finite lanes: the
// full-range reduction of |x| and both node tables (the sine given the sign
// of x).
template <class Sig> struct SincosFull : SincosBase<kSincosFullRows, Sig> {
  template <int L> static RAVL_INLINE Two<Vec<double, L>, Vec<double, L>> vec(Vec<double, L> x) {
    using V = Vec<double, L>;
    const SincosFullRows& c = rows(kSincosFullRows);
    static constexpr const Row<double> SincosFullRows::*kCoef[] = {
        &SincosFullRows::c7, &SincosFullRows::c6, &SincosFullRows::c5, &SincosFullRows::c4,
        &SincosFullRows::c3, &SincosFullRows::c2, &SincosFullRows::c1};
    return sincos_fast<3>(x, c, [&](V rs, V rc) { return odd_poly2(rs, rc, rows(c), kCoef); });
  }
  template <int L>
  static RAVL_INLINE Mask<double, L> settle(Mask<double, L> flagged, Vec<double, L> x,
                                            Two<Vec<double, L>, Vec<double, L>>& r) {
    using V = Vec<double, L>;
    using U = UIntOf<V>;
    const MaskOf<V> nonfinite = bitcast<MaskOf<V>>((as_uint(x) & U(0x7ff0000000000000ull)) == U(0x7ff0000000000000ull));
    const MaskOf<V> big = flagged & ~nonfinite;
    const trigd::FullArg<V> a = trigd::reduce_full<false>(x);
    const V s = trigd::eval_node(trigd_tables::kSinNodes, a);
    const V co = trigd::eval_node<trigd::kCosRow>(trigd_tables::kSinNodes, a);
    r.first = select(big, as_float<V>(as_uint(s) ^ (as_uint(x) & U(0x8000000000000000ull))), r.first);
    r.second = select(big, co, r.second);
    return flagged & nonfinite;
  }
};

// ---- fast classes (_native, _rm) ----------------------------------------------------
//
// |x| <= 2^23: two pieces of pi, degree 9. Every flagged lane goes to the
// scalar routine.
template <class Sig> struct SincosFast : SincosBase<kSincosFastRows, Sig> {
  template <int L> static RAVL_INLINE Two<Vec<double, L>, Vec<double, L>> vec(Vec<double, L> x) {
    using V = Vec<double, L>;
    const SincosFastRows& c = rows(kSincosFastRows);
    static constexpr const Row<double> SincosFastRows::*kCoef[] = {&SincosFastRows::d4, &SincosFastRows::d3,
                                                                   &SincosFastRows::d2, &SincosFastRows::d1};
    return sincos_fast<2>(x, c, [&](V rs, V rc) { return odd_poly2(rs, rc, rows(c), kCoef); });
  }
};

using SincosSig = double(double, double*);
using SincosregSig = Two<double, double>(double);

}  // namespace sincos_detail

namespace sincos_k {
using full = sincos_detail::SincosFull<sincos_detail::SincosSig>;
using fast = sincos_detail::SincosFast<sincos_detail::SincosSig>;
}  // namespace sincos_k
namespace sincosreg_k {
using full = sincos_detail::SincosFull<sincos_detail::SincosregSig>;
using fast = sincos_detail::SincosFast<sincos_detail::SincosregSig>;
}  // namespace sincosreg_k

}  // namespace ravl

#include "entries/sincos.inc"
#include "entries/sincosreg.inc"
