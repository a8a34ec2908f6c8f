// tanh x on double lanes (family tanh) and on single lanes (family tanhf).
//
// The double plain path uses no exponential: a degree-10 polynomial per
// interval of |x| (tables/hyperbolic.h, kTanh60), chosen by the leading bits
// of |x|, with the sign of x ORed back (tanh(-x) = -tanh(x) bit for bit,
// tanh(-0) = -0). It flags infinities, NaN and |x| >= 1.125 * 2^1023 for its
// scalar routine: +-inf -> +-1, NaN -> quiet NaN, exponent field 2046 -> +-1.
// The other members settle every lane inline (no scalar routine):
//   tanh _native                  E/(E + 2), E = e^(2|x|) - 1 (expm1's fast
//                                 double kernel), |x| clamped to 20 first;
//   tanhf plain                   E/(E + 2), E = e^(2|x|) - 1 by a short
//                                 double kernel on the widened lanes,
//                                 |x| clamped to 10 first, rounded once;
//   tanhf _native                 E/(E + 2), E = e^(2|x|) - 1 by a short
//                                 single kernel, |x| clamped to 10 first.
// Special inputs give the same results in every class: +-inf -> +-1, NaN ->
// NaN, +-0 -> +-0, |x| >= 20 -> +-1.
//
// Classes and measured max errors: tests/accuracy_test.cpp (kBounds) asserts
// them against MPFR.
#include "exp_log/expm1_core.h"
#include "frame/entry.h"
#include "tables/hyperbolic.h"

namespace ravl {
namespace tanh_detail {

// ---- double, full class ---------------------------------------------------------
//
// h = upper word of |x| AND 0x7ffe0000 (exponent and three leading fraction
// bits); entry i = clamp(h - 0x3fbe0000, 0, 0x760000) >> 17: entry 0 for |x| <
// 0.125, one entry per eighth of a binade up to [18, 20), entry 59 (the
// constant 1) from 20 up. The entry's row is 128 bytes: (c0..c10, shift).
// t = |x| + shift; tanh|x| ~ c0 + t (c1 + t (c2 + ... + t c10)) by Horner's
// rule in fused multiply-adds.
//
// The clamp is taken on |x| before the bits are read: max(|x|, 0.1171875)
// (0x3fbe000000000000, the smallest value whose word gives entry 0's offset)
// and min(., 20.0) (0x4034000000000000, entry 59), which gives the same entry
// for every |x| (a NaN |x| reads entry 0); the byte offset is then
// ((bits >> 42) AND 0x1fff80) - 0xfef80, the masked word less 0x3fbe0000
// shifted right by 10.
constexpr double kFirst = f64_bits(0x3fbe000000000000ull);  // 0.1171875
constexpr double kLast = f64_bits(0x4034000000000000ull);   // 20.0
// |x| >= 1.125 * 2^1023 (pattern 0x7fe2000000000000 and above), infinities and
// NaN: the masked word above 0x7fe00000.
constexpr uint64_t kFlagBits = 0x7fe1ffffffffffffull;

struct TanhRows : exp_common::BoundRows<double, kFlagBits> {
  Row<double> first = row(kFirst), last = row(kLast);
  Row<uint64_t> word = row<uint64_t>(0x1fff80), base = row<uint64_t>(0xfef80),
                sign = row<uint64_t>(0x8000000000000000ull);
};
inline constexpr TanhRows kTanhRows{};

// tanh a for a = |x| (any a below the flag bound; NaN gives NaN).
template <int L> RAVL_INLINE Vec<double, L> tanh_abs(Vec<double, L> a, const TanhRows& c) {
  using V = Vec<double, L>;
  using U = Vec<uint64_t, L>;
  V ac = hw_min(hw_max(a, get<V>(c.first)), get<V>(c.last));
  U off = ((as_uint(ac) >> 42) & get<U>(c.word)) - get<U>(c.base);
  V col[12];
  gather_cols<12>(reinterpret_cast<const double*>(hyperbolic_tables::kTanh60), bitcast<Vec<int64_t, L>>(off), col);
  V t = a + col[11];
  V p = col[10];
  for (int q = 9; q >= 0; --q) p = fma(p, t, col[q]);
  return p;
}

template <int L> RAVL_INLINE Vec<double, L> tanh_full(Vec<double, L> x) {
  using V = Vec<double, L>;
  using U = Vec<uint64_t, L>;
  const TanhRows& c = rows(kTanhRows);
  V y = tanh_abs<L>(as_float<V>(as_uint(x) & get<U>(c.abs)), c);
  return as_float<V>(as_uint(y) | (as_uint(x) & get<U>(c.sign)));
}

struct TanhFull : frame::Kernel {
  using sig = double(double);
  static constexpr bool has_callout = true;
  template <int L> static RAVL_INLINE Vec<double, L> vec(Vec<double, L> x) { return tanh_full<L>(x); }
  template <int L> static RAVL_INLINE Mask<double, L> special(Vec<double, L> x, Vec<double, L>) {
    return exp_common::abs_bits_above(x, rows(kTanhRows));
  }
  // +-inf and finite x with exponent field 2046 -> +-1 (tanh rounds to 1 from
  // 19.06 up); NaN -> quiet NaN. Any other x (not sent by the vector path)
  // gets the vector path's value.
  static RAVL_INLINE int scalar(const double* xp, double* rp) {
    const double x = *xp;
    const uint64_t e = bits_of(x) >> 52 & 2047;
    if (x != x) *rp = x + x;
    else if (e >= 2046) *rp = x < 0 ? -1.0 : 1.0;
    else *rp = tanh_full<2>(F64x2(x))[0];
    return kStatusOk;
  }
};

// ---- the fast classes: E/(E + 2) ---------------------------------------------------
//
// tanh a = (e^(2a) - 1)/(e^(2a) + 1) = E/(E + 2), E = expm1_fast(2 min(a, 20))
// (exp_log/expm1_core.h, relative error 2.5e-14, exact near 0 to its own
// polynomial: tiny a gives 2a/2 = a). From a = 20 up the result is 1 (E = e^40
// - 1: E/(E + 2) rounds to 1). min(20, a) keeps a NaN a, but expm1_fast
// clamps below at -40 (a NaN becomes -40 there), so NaN lanes take x back by a
// blend.
struct FastRows {
  Row<uint64_t> abs = row<uint64_t>(0x7fffffffffffffffull), sign = row<uint64_t>(0x8000000000000000ull);
  Row<double> last = row(20.0), two = row(2.0);
};
inline constexpr FastRows kFastRows{};

template <int L> RAVL_INLINE Vec<double, L> tanh_fast(Vec<double, L> x) {
  using V = Vec<double, L>;
  using U = Vec<uint64_t, L>;
  const FastRows& c = rows(kFastRows);
  V a = as_float<V>(as_uint(x) & get<U>(c.abs));
  V a2 = hw_min(get<V>(c.last), a);
  V e = expm1_detail::expm1_fast<L>(a2 + a2);
  V y = e / (e + get<V>(c.two));
  y = as_float<V>(as_uint(y) | (as_uint(x) & get<U>(c.sign)));
  return select(is_nan(x), x, y);
}

struct TanhFast : frame::Kernel {
  using sig = double(double);
  template <int L> static RAVL_INLINE Vec<double, L> vec(Vec<double, L> x) { return tanh_fast<L>(x); }
};

// ---- single, full class: E/(E + 2) in double --------------------------------------
//
// tanh a = E/(E + 2), E = e^(2a) - 1, on the widened lanes a = min(10, |x|)
// (tanh rounds to 1 in single from 9.01 up; at a = 10 the quotient is 1 -
// 2^-27.9, which rounds to 1; an infinite x gives 10 and +-1, a NaN |x| stays
// NaN through min(10, |x|) and every step after it). With n = round(a 2/ln2)
// (the shifter's low bits) and r = a - n ln2/2 in one fused step, |r| <=
// ln2/4, t = 2^n:
//   E = t e^(2r) - 1 = t r P(r) + (t - 1)
// (tables/hyperbolic.h kTanhfExp2: e^(2r) - 1 = r P(r), relative fit error
// 2^-37.7; P as its even and odd parts in w = r^2, two chains of three fused
// steps side by side, three steps shorter than Horner's rule in r), one fused
// step on t r (exact) and t - 1 (exact for n <= 29, from a = 10). ln2/2 as
// one double is 1.2e-17 below ln2/2: r is off by at most 29 times that,
// 2^-50.4 relative in e^(2a). For n >= 1, E >= e^(ln2/2) - 1 = 0.414 and the
// sum cancels by at most a factor sqrt 2 (n = 1, r = -ln2/4); at n = 0, t = 1
// and E is r P(r) rounded once, so small a keeps its relative accuracy (a
// single denormal a gives 2a/(2a + 2), which rounds to a). E's relative
// error, about 2^-37, reaches the quotient times 2/(E + 2) <= 1; the division
// and the one rounding to single add the rest. The sign of x is ORed back on
// the single lanes: tanh(-x) = -tanh(x) bit for bit, tanh(-0) = -0.
// Max error 0.5001 ulp (every single; x = 0x1.f93e88p-10, where tanh lies
// within 2^-13 ulp of a halfway point between two singles).
//
// Width 8 computes its two 4-lane halves side by side (via_double with the
// rows: each half reads its constants as operands through its own pointer),
// so that the halves overlap without holding constants in registers for both.
struct TanhfRows {
  // 2/ln2 = 2.8853900817779268 (0x40071547652b82fe); ln2/2 =
  // 0.34657359027997264 (0x3fd62e42fefa39ef), both double roundings (twice
  // 1/ln2 and half ln2 rounded).
  Row<double> inv_ln2x2 = row(f64_bits(0x40071547652b82feull)), ln2o2 = row(f64_bits(0x3fd62e42fefa39efull));
  // 1.5 * 2^52 + 1023 (0x43380000000003ff): a 2/ln2 + shift rounds to an
  // integer n whose pattern's low bits hold n + 1023, the biased exponent of
  // 2^n (moved up by 52 bits the pattern is t). The same value twice: n = v -
  // shift reads its own row as the subtraction's memory operand, where one
  // row would have the compiler hold the shifter in a register between its
  // two uses (a register fewer; about a cycle a call less, .so and DLL).
  Row<double> shift = row(f64_bits(0x43380000000003ffull)), shift_again = row(f64_bits(0x43380000000003ffull));
  Row<double> p[8] = {row(f64_bits(hyperbolic_tables::kTanhfExp2[0])), row(f64_bits(hyperbolic_tables::kTanhfExp2[1])),
                      row(f64_bits(hyperbolic_tables::kTanhfExp2[2])), row(f64_bits(hyperbolic_tables::kTanhfExp2[3])),
                      row(f64_bits(hyperbolic_tables::kTanhfExp2[4])), row(f64_bits(hyperbolic_tables::kTanhfExp2[5])),
                      row(f64_bits(hyperbolic_tables::kTanhfExp2[6])), row(f64_bits(hyperbolic_tables::kTanhfExp2[7]))};
  Row<double> one = row(1.0), two = row(2.0);
  // On the single lanes: the clamp 10, |x| and the sign bit.
  Row<float> last = row(10.0f);
  Row<uint32_t> abs = row(0x7fffffffu), sign = row(0x80000000u);
};
inline constexpr TanhfRows kTanhfRows{};

// tanh a on four widened lanes, 0 <= a <= 10 or NaN.
RAVL_INLINE F64x4 tanhf_half(F64x4 a, const TanhfRows& c) {
  using V = F64x4;
  V v = fma(a, get<V>(c.inv_ln2x2), get<V>(c.shift));
  V n = v - get<V>(c.shift_again);
  V r = fnma(n, get<V>(c.ln2o2), a);
  V w = r * r;
  V pe = fma(fma(fma(get<V>(c.p[6]), w, get<V>(c.p[4])), w, get<V>(c.p[2])), w, get<V>(c.p[0]));
  V po = fma(fma(fma(get<V>(c.p[7]), w, get<V>(c.p[5])), w, get<V>(c.p[3])), w, get<V>(c.p[1]));
  V p = fma(po, r, pe);
  V t = as_float<V>(as_uint(v) << 52);
  V e = fma(t * r, p, t - get<V>(c.one));
  return e / (e + get<V>(c.two));
}

struct TanhfFull : frame::Kernel {
  using sig = float(float);
  template <int L> static RAVL_INLINE Vec<float, L> vec(Vec<float, L> x) {
    using V = Vec<float, L>;
    using U = Vec<uint32_t, L>;
    const TanhfRows& c = rows(kTanhfRows);
    V a = hw_min(get<V>(c.last), as_float<V>(as_uint(x) & get<U>(c.abs)));
    V y = via_double<L>(a, c, tanhf_half);
    return as_float<V>(as_uint(y) | (as_uint(x) & get<U>(c.sign)));
  }
};

// ---- single, fast class: E/(E + 2) with a single e^(2a) - 1 ------------------------
//
// tanh a = E/(E + 2), E = e^(2a) - 1, on a = min(|x|, 10) (tanh rounds to 1
// from 9.01 up; an infinite x becomes 10 and gives +-1; a NaN lane takes x + x
// back by a blend). With b = 2a (exact), n = round(b/ln2) (the shifter's low
// bits), r = b - n ln2 in one fused step with ln2 as one single (0x3f317218,
// 1.9e-9 above ln2: r is off by n 1.9e-9, which moves tanh by at most 2^-27.4
// relative, at n = 1 and a near 0.17), |r| <= ln2/2 (with the reduction's
// rounding), t = 2^n (n moved into the exponent field of 1.0):
//   E = t (e^r - 1) + (t - 1),  e^r - 1 ~ p = r + r^2 Q(r)
// (tables/hyperbolic.h kExpm1F, relative fit error 2^-25.3), one fused step
// on t - 1, which is exact for n <= 24 (n is at most 29, from a = 10, where
// E/(E + 2) rounds to 1 whatever the last bits of E). At n = 0 (a < 0.1733) E
// is p: small a keeps its relative accuracy, and a denormal a gives r = 2a,
// p = r (r^2 underflows to 0) and 2a/(2a + 2) = a exactly. Then one single
// division; the sign of x is ORed back (tanh(-x) = -tanh(x) bit for bit).
// Max error 2.456 ulp (every single; x = 0x1.fe087cp-6): the fit, the rounding
// of p and of E, of E + 2 and of the quotient.
struct Expm1FRows {
  // 1/ln2, the shifter 1.5 * 2^23, ln2 (exp_common.h), 1, 2 and the clamp 10.
  Row<float> inv_ln2 = row(exp_common::kInvLn2f), shift = row(exp_common::kShiftf), ln2 = row(exp_common::kLn2f),
             one = row(1.0f), two = row(2.0f), last = row(10.0f);
  Row<float> q[5] = {row(f32_bits(hyperbolic_tables::kExpm1F[0])), row(f32_bits(hyperbolic_tables::kExpm1F[1])),
                     row(f32_bits(hyperbolic_tables::kExpm1F[2])), row(f32_bits(hyperbolic_tables::kExpm1F[3])),
                     row(f32_bits(hyperbolic_tables::kExpm1F[4]))};
  // The bits of 1.0 (0x3f800000), |x| and the sign bit.
  Row<uint32_t> one_bits = row(0x3f800000u), abs = row(0x7fffffffu), sign = row(0x80000000u);
};
inline constexpr Expm1FRows kExpm1FRows{};

struct TanhfFast : frame::Kernel {
  using sig = float(float);
  template <int L> static RAVL_INLINE Vec<float, L> vec(Vec<float, L> x) {
    using V = Vec<float, L>;
    using U = Vec<uint32_t, L>;
    const Expm1FRows& k = rows(kExpm1FRows);
    V a = hw_min(as_float<V>(as_uint(x) & get<U>(k.abs)), get<V>(k.last));
    V b = a + a;
    V v = fma(b, get<V>(k.inv_ln2), get<V>(k.shift));
    V n = v - get<V>(k.shift);
    V r = fnma(n, get<V>(k.ln2), b);
    V q = fma(fma(fma(fma(get<V>(k.q[4]), r, get<V>(k.q[3])), r, get<V>(k.q[2])), r, get<V>(k.q[1])), r,
              get<V>(k.q[0]));
    V p = fma(r * r, q, r);
    // v's low bits hold n: shifted by 23 and added to the bits of 1.0 they
    // make 2^n (the shifter's own bits leave the register).
    V t = as_float<V>((as_uint(v) << 23) + get<U>(k.one_bits));
    V e = fma(t, p, t - get<V>(k.one));
    V y = e / (e + get<V>(k.two));
    y = as_float<V>(as_uint(y) | (as_uint(x) & get<U>(k.sign)));
    return select(is_nan(x), x + x, y);
  }
};

}  // namespace tanh_detail

namespace tanh_k {
using full = tanh_detail::TanhFull;
using fast = tanh_detail::TanhFast;
}  // namespace tanh_k
namespace tanhf_k {
using full = tanh_detail::TanhfFull;
using fast = tanh_detail::TanhfFast;
}  // namespace tanhf_k

}  // namespace ravl

#include "entries/tanh.inc"
#include "entries/tanhf.inc"
