// The double kernels of the log1p family, shared with the families that need
// ln of a value carried as an unevaluated sum u + c (the inverse hyperbolic
// functions): the reduction of u + c, the full and fast ln(u + c) and the
// scalar special-lane routine of log1p.
#pragma once

#include "frame/entry.h"
#include "exp_log/logd_core.h"
#include "tables/log.h"

namespace ravl {
namespace log1p_detail {

// ---- reduction shared by the double classes ---------------------------------------
//
// u = RN(1 + x) and c = (1 + x) - u by Fast2Sum. The full class orders the
// operands by magnitude, so c is exact for every x. The fast class takes
// Fast2Sum(1, x): z = u - 1, c = x - z, exact for |x| <= 1 (the usual order)
// and for 1 <= x < 2^53 (u < 2^53 is then a multiple of its ulp <= 1, so z =
// u - 1 is exact, and c is the representable rounding error of the sum);
// above 2^53 c is off by at most ulp(u), so |c/u| < 2^-52, while ln(1 + x) > 36.7
// has an ulp of 2^-47 or more (the full class would lose 2^-6 ulp there).
// With E the biased exponent of u, m' = u 2^(1013 - E) in [2^-10, 2^-9) (u's
// fraction under the exponent of 2^-10), R = the nearest integer to the single
// reciprocal estimate of m' (512..1024) and r = R m' - 1, exact in one fms
// (|r| <= 0.5 m' + 1.5 * 2^-12 <= 1.35e-3, on the grid 2^-62): exp_log/logd_core.h.
// Then
//   1 + x = 2^(E - 1013) (1 + r + d) / R,   d = c R 2^(1013 - E),
//   ln(1 + x) = (E - 1013) ln 2 - ln R + ln(1 + r + d).
// R 2^(1013 - E) = (1 + r)/u, so |d| = |c| (1 + r)/u <= 2^-53 (1 + r) (|c| <= ulp(u)/2).

// x above 2^1000 (0x7e70000000000000) leaves the vector paths: below it 1 + x
// < 2^1013 and the scale 2^(1013 - E) is a normal double.
constexpr double kBig = f64_bits(0x7e70000000000000ull);

// The reduction's rows, 1 and the lane test's rows, then the class's own.
struct Log1pRows : logd::ReduceRows {
  // 1 for the sum 1 + x and for the Fast2Sum's other uses, one row per use,
  // each read as a memory operand (a 1 held in a register would cost a
  // saved register under the Windows convention); the lane test's rows.
  Row<double> one_add = row(1.0), one_max = row(1.0), one_min = row(1.0);
  Row<uint64_t> flag_add = row<uint64_t>(0x7fffffffffffffffull), flag_above = row<uint64_t>(0xfe6fffffffffffffull);
  // 2036 in the exponent field (0x7f40000000000000): less u's exponent field E
  // it is the pattern of 2^(1013 - E).
  Row<uint64_t> exp_mask = row<uint64_t>(0x7ff0000000000000ull), e2036 = row<uint64_t>(2036ull << 52);
};

template <int L> struct Log1pParts {
  logd::Parts<L> p;  // r, E - k, bits(R)
  Vec<double, L> d;  // c R 2^(1013 - E)
};

// The reduction of u + c (c = 0, or u's rounding error); k from c.bias, kSplit
// as in logd::reduce.
template <bool kSplit, int L, class C>
RAVL_INLINE Log1pParts<L> reduce1p(Vec<double, L> u, Vec<double, L> c, const C& k) {
  using V = Vec<double, L>;
  using U = Vec<uint64_t, L>;
  Log1pParts<L> q;
  V scale = as_float<V>(get<U>(k.e2036) - (as_uint(u) & get<U>(k.exp_mask)));  // 2^(1013 - E)
  // The reduction of u waits for c and the scale (an empty asm that reads
  // them and may change u as far as the compiler knows), so that what c is
  // made from is dead, and u too once the reduction has taken m' and E.
  __asm__("" : "+x"(u) : "x"(c), "x"(scale));
  q.p = logd::reduce<kSplit>(u, k, [&](logd::Parts<L>& p) {
    q.d = (c * as_float<V>(p.rbits)) * scale;
    // What reads bits(R) from here on (the choice of k, the table index)
    // waits for d in the same way: c and the scale are dead by then. With
    // these waits the fast class's common path fits in ymm0-5 (the
    // registers a call may clobber on Windows) and the full class saves
    // ymm6-7 instead of ymm6-8.
    __asm__("" : "+x"(p.rbits) : "x"(q.d));
  });
  return q;
}

// The result y for x, with the sign of x where y is zero: min(y, x), since
// ln(1 + x) <= x (equal only at 0) and x is a double, so min never moves y
// away from ln(1 + x); at x = -0 the sums give y = +0, and the hardware min
// of +0 and -0 is its second operand, -0.
template <int L> RAVL_INLINE Vec<double, L> signed1p(Vec<double, L> y, Vec<double, L> x) { return hw_min(y, x); }

// Not -1 < x <= 2^1000 (NaN included), read on u = RN(1 + x), which is in
// (0, 2^1000] exactly for those x (rounding is monotonic, u = 0 at x = -1, and
// u > 2^1000 for x > 2^1000): bits(u) + 0x7fffffffffffffff as a signed integer
// maps the patterns 1..bits(2^1000) onto INT64_MIN..0xfe6fffffffffffff and
// every other one (zeros, negative u, NaN, u above 2^1000) above it.
template <int L> RAVL_INLINE Mask<double, L> flag1p(Vec<double, L> x, const Log1pRows& k) {
  using V = Vec<double, L>;
  using I = Vec<int64_t, L>;
  return bitcast<I>(as_uint(get<V>(k.one_add) + x) + get<Vec<uint64_t, L>>(k.flag_add)) > get<I>(k.flag_above);
}

// ---- double, full class ---------------------------------------------------------
//
// ln(1 + x), plain log1p. Max error 0.5003 ulp (worst x = 0x1.dd61e7277d8dp-12).
// The log family's full table (tables/log.h, row R - 512 at bits(R) >> 39):
// a + b = -ln R - 1013 ln 2 (with ln 2 taken as kLn2Hi + kLn2Lo), a a
// multiple of 2^-40, so with E the raw biased exponent of u:
//   H = E ln2_hi + a     exact (a multiple of 2^-40 below 2^11; E ln2_hi exact,
//                        ln2_hi has 17 trailing zero bits)
//   S + err = H + r      exact (Fast2Sum: H = 0, or |H| > |r|: H is
//                        -ln(R/B) + (E - k) ln 2 with B = 512, k = 1022 up to
//                        R = 724 and B = 1024, k = 1023 above, at least
//                        ln(1 + 1/1023.5) in magnitude unless 0, and |r| <=
//                        (0.5 + 1.5 * 2^-12 R) / R is below it)
//   Y + err2 = S + d     exact (Fast2Sum: |d| <= 2^-53 is below |S| unless S = 0:
//                        S = r when H = 0, and then u = 1 + r or u = 1 - |r|
//                        with |r| >= 2^-52 or 2^-53 and |d| <= 2^-53 or 2^-54)
//   result = Y + ((((r + d)^2 P(r) + (E ln2_lo + b)) + err) + err2),
// ln(1 + v) - v = v^2 P(v), P the Taylor coefficients -1/2, 1/3, ..., 1/7
// (remainder v^8/8 < 2^-70 v on |v| <= 1.35e-3; stopping at -1/6 would leave
// 2^-60 v, 0.001 ulp more, measured), taken at v = r + d with
// P evaluated at r (the difference, below v^2 d/3, is far under the last
// place; the d^2/2 it keeps matters when r is as small as d). Near x = 0 (u in
// [1/2, 2)): R = 1024, E = 1023 or R = 512, E = 1022 make H = 0 and
// E ln2_lo + b = 0 exactly, so the result is r + d + (r + d)^2 P(r), rounded
// once after the exact sums.
// ln 2 = kLn2Hi + kLn2Lo + 3.1e-24 (0x3fe62e42fefa0000, 0x3d7cf79abc9e0000:
// 17 trailing zero bits each, so E kLn2Hi and E kLn2Lo are exact).
constexpr double kLn2Hi = f64_bits(0x3fe62e42fefa0000ull);
constexpr double kLn2Lo = f64_bits(0x3d7cf79abc9e0000ull);

struct Log1pFullRows : Log1pRows {
  // 2^52 (0x4330000000000000): E itself.
  Row<double> bias = row(f64_bits(0x4330000000000000ull)), ln2_hi = row(kLn2Hi), ln2_lo = row(kLn2Lo),
              p2 = row(-0.5), p3 = row(1.0 / 3), p4 = row(-0.25), p5 = row(0.2), p6 = row(-1.0 / 6), p7 = row(1.0 / 7);
};
inline constexpr Log1pFullRows kLog1pFullRows{};

struct Log1pFull : frame::Kernel {
  using sig = double(double);
  static constexpr bool has_callout = true;

  // ln(u + c) from the reduction q of u + c, whose E the scalar routine may have moved.
  template <int L> static RAVL_INLINE Vec<double, L> core(const Log1pParts<L>& q, const Log1pFullRows& k) {
    Vec<double, L> lo;
    const Vec<double, L> hi = core_dd(q, k, lo);
    return hi + lo;
  }
  // The same ln(u + c) unrounded, as hi + lo (returns hi = Y; lo = the tail
  // with the sums' errors, |lo| below about 2^-8 |hi|): the gamma families
  // take it as a double-word value: absolute error below about 1e-20 (the
  // table's 3.2e-21 and E times ln 2's remainder 3.1e-24), and near u + c = 1,
  // where the table row and E cancel, the series' 2^-70 relative.
  template <int L>
  static RAVL_INLINE Vec<double, L> core_dd(const Log1pParts<L>& q, const Log1pFullRows& k, Vec<double, L>& lo_out) {
    using V = Vec<double, L>;
    V a, b;
    logd::row16(log_tables::kLogFull, q.p, a, b);
    V e = q.p.e, r = q.p.r, d = q.d;
    V H = fma(e, get<V>(k.ln2_hi), a);  // exact
    V lo = fma(e, get<V>(k.ln2_lo), b);
    V S = H + r;
    V err = r - (S - H);
    V Y = S + d;
    V err2 = d - (Y - S);
    V P = fma(r, fma(r, fma(r, fma(r, fma(r, get<V>(k.p7), get<V>(k.p6)), get<V>(k.p5)), get<V>(k.p4)), get<V>(k.p3)),
              get<V>(k.p2));
    V rho = r + d;
    V tail = fma(rho * rho, P, lo);  // needs no S: off the sums' chain
    lo_out = (tail + err) + err2;
    return Y;
  }
  template <int L> static RAVL_INLINE Vec<double, L> vec(Vec<double, L> x) {
    using V = Vec<double, L>;
    const Log1pFullRows& k = rows(kLog1pFullRows);
    // Fast2Sum with the operands ordered by magnitude: c is exact for every x
    // (u = RN(1 + x) = RN(big + small) is taken as 1 + x, which does not wait
    // for the max).
    V big = hw_max(x, get<V>(k.one_max)), small = hw_min(x, get<V>(k.one_min));
    V u = get<V>(k.one_add) + x;
    V c = small - (u - big);
    return signed1p(core(reduce1p<false>(u, c, k), k), x);
  }
  template <int L> static RAVL_INLINE Mask<double, L> special(Vec<double, L> x, Vec<double, L>) {
    return flag1p(x, rows(kLog1pFullRows));
  }
  // The double special-lane routine, shared by both double classes.
  static RAVL_INLINE int scalar(const double* xp, double* rp) {
    double x = *xp;
    int status;
    if (logd::log1p_special(x, rp, &status)) return status;
    if (x > kBig) {
      // ln(1 + x) = ln x + 1/x with 1/x < 2^-1000: ln(x 2^-512) + 512 ln 2.
      const Log1pFullRows& k = rows(kLog1pFullRows);
      Log1pParts<2> q = reduce1p<false>(F64x2(x * 0x1p-512), F64x2(0.0), k);
      q.p.e += F64x2(512.0);
      *rp = core(q, k)[0];
      return kStatusOk;
    }
    double y = vec<2>(F64x2(x))[0];
    *rp = y;
    uint64_t ay = bits_of(y) & 0x7fffffffffffffffull;
    return ay != 0 && ay < 0x0010000000000000ull ? kStatusUnderflow : kStatusOk;
  }
};

// ---- double, fast class (_native) -------------------------------------------------
//
// ln(1 + x) with one double per table row and a degree-5 polynomial. Max
// error 2.645 ulp (worst x = 0x1.0001c614543ap-11). Same reduction (Fast2Sum(1, x)
// for u and c); the log family's fast table (tables/log.h) holds T(R) =
// -ln(R/512) for R <= 724 and -ln(R/1024) above, with e' = E - 1022 or E - 1023
// to match, so u just below 1 (R = 512, E = 1022) and just above (R = 1024,
// E = 1023) both have e' = 0 and T = 0:
//   result = fma(e', ln2, T) + (r + (d + r^2 (-1/2 + r/3 - r^2/4 + r^3/5))).
// The rounding of T and of the first sum, and the remainder r^6/6, make the error;
// the worst is near x = 2^-11 (R = 1023), where T and r cancel to half of T.
// ln 2 rounded to nearest (0x3fe62e42fefa39ef).
constexpr double kLn2 = f64_bits(0x3fe62e42fefa39efull);

struct Log1pFastRows : Log1pRows {
  // 2^52 + 1022 and bits(724.0) for e' (logd::reduce<true>).
  Row<double> bias = row(logd::kBias1022);
  Row<uint64_t> r724 = row(bits_of(724.0));
  Row<double> ln2 = row(kLn2), p2 = row(-0.5), p3 = row(1.0 / 3), p4 = row(-0.25), p5 = row(0.2);
};
inline constexpr Log1pFastRows kLog1pFastRows{};

// ln(u + c) by the fast class: u + c as for reduce1p (u a positive normal
// below 2^1013, c = 0 or |c| <= ulp(u)/2).
template <int L> RAVL_INLINE Vec<double, L> ln_sum_fast(Vec<double, L> u, Vec<double, L> c) {
  using V = Vec<double, L>;
  const Log1pFastRows& k = rows(kLog1pFastRows);
  Log1pParts<L> q = reduce1p<true>(u, c, k);
  V r = q.p.r;
  // d + r^2 P(r) as fma(r, r P(r), d): no register for r^2.
  V p = fma(r, r * fma(r, fma(r, fma(r, get<V>(k.p5), get<V>(k.p4)), get<V>(k.p3)), get<V>(k.p2)), q.d);
  V rp = r + p;
  // The table fetch waits for r + p (as in reduce1p): only x, E - k and
  // r + p stay live across it.
  __asm__("" : "+x"(q.p.rbits) : "x"(rp));
  V t = logd::row8(log_tables::kLogFast, q.p);
  return fma(q.p.e, get<V>(k.ln2), t) + rp;
}

struct Log1pFast : Log1pFull {
  template <int L> static RAVL_INLINE Vec<double, L> vec(Vec<double, L> x) {
    using V = Vec<double, L>;
    const Log1pFastRows& k = rows(kLog1pFastRows);
    V u = get<V>(k.one_add) + x;
    V c = x - (u - get<V>(k.one_max));
    return signed1p(ln_sum_fast(u, c), x);
  }
  template <int L> static RAVL_INLINE Mask<double, L> special(Vec<double, L> x, Vec<double, L>) {
    return flag1p(x, rows(kLog1pFastRows));
  }
};

// ln(u + c) by the full class (within 0.5003 ulp plus what u + c carries):
// u a positive normal below 2^1013 and c = 0 or |c| <= ulp(u)/2 (u = RN(u + c)).
template <int L> RAVL_INLINE Vec<double, L> ln_sum(Vec<double, L> u, Vec<double, L> c) {
  const Log1pFullRows& k = rows(kLog1pFullRows);
  return Log1pFull::core(reduce1p<false>(u, c, k), k);
}

}  // namespace log1p_detail
}  // namespace ravl
