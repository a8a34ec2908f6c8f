// The arc tangent kernels shared by atan, atan2, atanpi and atan2pi (double
// lanes) and by atanf, atan2f, atanpif and atan2pif (single lanes).
//
// The angle of a pair (X, Y) >= 0 (atan: (1, |x|); atan2: (|x|, |y|)) with
// ratio q = Y/X is taken around a node c near q:
//   atan(q) = atan(c) + atan(u),  u = (Y - c X) / (X + c Y)   (finite c),
//   atan(q) = pi/2 + atan(u),     u = -X / Y                   (c = infinity),
// both as u = (a Y - b X) / (b Y + a X) with (a, b) = (1, c) or (0, 1): one
// division, on the pair itself, so a ratio that would overflow, underflow or
// be denormal never enters the arithmetic (atan2 takes q only to choose the
// node). atan(c) comes from a table as hi + lo; a negative first coordinate
// (atan2 with x < 0) takes the row of pi - atan(c) and -u. The pi forms hold
// the angles divided by pi and scale u by 1/pi.
//
// Double nodes (tables/atan.h): c = 0 for q < 2^-4, infinity for q >= 16, and
// between them one node per quarter binade, c = 2^e (1 + m/4 + 1/8) for q in
// 2^e [1 + m/4, 1 + (m + 1)/4): |u| <= 0.0589 there (at q = 2^e with e = 0,
// u = -(1/8)/(1 + 1.125)), |u| < 1/16 at the ends. The node's row and c come
// from the bits of t = min(max(q, 2^-5), 16). Single nodes: powers of two
// (below, "single lanes"). The _native classes of the pairs take no table:
// three fixed nodes 0, 1 and infinity and a longer series (doubles, below,
// "double lanes, _native class of the pairs"), or none (singles).
#pragma once

#include "frame/entry.h"
#include "tables/atan.h"

namespace ravl {
namespace atan_core {

// ---- double lanes -----------------------------------------------------------

// Taylor coefficients of (atan(u) - u)/u^3 = -1/3 + u^2/5 - ...: with |u| <
// 1/16 the remainder after u^13/13 is below u^15/15, 2^-59.9 |u|. In half
// turns the same divided by pi.
constexpr double kInvPi = f64_bits(0x3fd45f306dc9c883ull);    // 1/pi rounded, 0x3fd45f306dc9c883
constexpr double kInvPiLo = f64_bits(0xbc76b01ec5417056ull);  // 1/pi - kInvPi, 0xbc76b01ec5417056

template <bool kPi> constexpr double coef(int k) {  // (-1)^k / (2k + 1), k >= 1
  return (k % 2 ? -1.0 : 1.0) / (2 * k + 1) * (kPi ? kInvPi : 1.0);
}

struct NodeRows {
  // t's clamp, node 0 below 2^-4, node infinity at 16.
  Row<double> qmin = row(0x1p-5), qmax = row(16.0), q0 = row(0x1p-4), one = row(1.0);
  // c = (bits(t) & 0xfffc000000000000) | 0x0002000000000000; the row's byte
  // offset (bits(t) >> 46) - 4072 * 16 with its low four bits cleared.
  Row<uint64_t> cmask = row<uint64_t>(0xfffc000000000000ull), chalf = row<uint64_t>(0x0002000000000000ull),
                base = row<uint64_t>(4072 * 16), rowmask = row<uint64_t>(~15ull), negrows = row<uint64_t>(1024);
};

template <bool kPi> struct DRows : NodeRows {
  Row<double> c[6] = {row(coef<kPi>(1)), row(coef<kPi>(2)), row(coef<kPi>(3)),
                      row(coef<kPi>(4)), row(coef<kPi>(5)), row(coef<kPi>(6))};
  Row<double> ipi = row(kInvPi), ipi_lo = row(kInvPiLo);
};

// c[0] + s (c[1] + s (... c[n - 1])), Horner's scheme on the rows c.
template <int n, class V, class T> RAVL_INLINE V horner(V s, const Row<T>* c) {
  V p = get<V>(c[n - 1]);
  for (int i = n - 2; i >= 0; --i) p = fma(s, p, get<V>(c[i]));
  return p;
}
template <bool kPi> inline constexpr DRows<kPi> kDRows{};

template <int L> struct Node {
  Vec<double, L> a, b;
  Vec<uint64_t, L> off;  // byte offset of the node's (hi, lo) row
};

// The node of q >= 0 (NaN takes node 0). hw_max(q, qmin) gives qmin for NaN.
template <int L> RAVL_INLINE Node<L> node(Vec<double, L> q, const NodeRows& k) {
  using V = Vec<double, L>;
  using U = Vec<uint64_t, L>;
  V t = hw_min(hw_max(q, get<V>(k.qmin)), get<V>(k.qmax));
  U tb = as_uint(t);
  V c = as_float<V>((tb & get<U>(k.cmask)) | get<U>(k.chalf));
  auto inf = t == get<V>(k.qmax);
  Node<L> n;
  n.b = select(inf, get<V>(k.one), select(t < get<V>(k.q0), V(0), c));
  n.a = select(inf, V(0), get<V>(k.one));
  n.off = ((tb >> 46) - get<U>(k.base)) & get<U>(k.rowmask);
  return n;
}

// A reciprocal estimate of d > 0 (relative error 2^-11.4; 0 above the single
// range): the single estimate of d rounded to single.
template <int L> RAVL_INLINE Vec<double, L> rcp_est(Vec<double, L> d) {
  if constexpr (L == 4) {
    return convert<double>(rcp_approx(convert<float>(d)));
  } else {
    Vec<float, 2> f = convert<float>(d);
    return convert<double>(slice<0, 2>(rcp_approx(join(f, f))));
  }
}

// The angle from u + ul and the node's row (x < 0 rows included), rounded
// once at the end: six Taylor terms after u; S + e = hi + v exactly
// (Fast2Sum: hi = 0, or |hi| > |v|), v = u (radians) or u/pi as v + vl,
// then the small terms and lo.
template <bool kPi, int L>
RAVL_INLINE Vec<double, L> angle(Vec<double, L> u, Vec<double, L> ul, Vec<uint64_t, L> off, const DRows<kPi>& k) {
  using V = Vec<double, L>;
  const double* tab = reinterpret_cast<const double*>(kPi ? atan_tables::kAtanPiD : atan_tables::kAtanD);
  V hi, lo;
  gather_pairs<1>(tab, bitcast<Vec<int64_t, L>>(off), hi, lo);
  V s = u * u;
  V p = horner<6>(s, k.c);
  if constexpr (!kPi) {
    V S = hi + u;
    V e = (hi - S) + u;
    return S + fma(u * s, p, (lo + ul) + e);
  } else {
    // u/pi = v + vl + u ipi_lo; where hi = 0 (node 0, x >= 0) the angle is
    // fma(u, 1/pi, the rest) in one rounding instead, since vl need not be
    // representable when u/pi is near the underflow threshold.
    V rest = fma(u * s, p, fma(ul, get<V>(k.ipi), u * get<V>(k.ipi_lo)));
    V v = u * get<V>(k.ipi);
    V vl = fms(u, get<V>(k.ipi), v);
    V S = hi + v;
    V e = (hi - S) + v;
    return select(hi == V(0), fma(u, get<V>(k.ipi), rest), S + ((lo + e) + (vl + rest)));
  }
}

// atan(x) or atanpi(x): the pair (1, |x|); n = |x| - c exactly (c within a
// factor 1.25 of |x|), n = -1 at node infinity, |x| = inf taken as DBL_MAX
// there (so that 0 |x| = 0; hw_min keeps a NaN). It adds the division's
// residual and d's rounding error: n/(d + dl) = u + (r - u dl)/d
// with r = n - u d and dl = b|x| + a - d, both exact in one fma (a - d is
// exact: d >= 1, or a = 0), divided by d through the reciprocal estimate
// (12 bits of a term below 2^-52 u suffice).
struct AtanRows {
  Row<double> max = row(f64_bits(0x7fefffffffffffffull));  // DBL_MAX
};
inline constexpr AtanRows kAtanRows{};
template <bool kPi, int L> RAVL_INLINE Vec<double, L> atan1(Vec<double, L> x) {
  using V = Vec<double, L>;
  const DRows<kPi>& k = rows(kDRows<kPi>);
  V ax = hw_min(get<V>(rows(kAtanRows).max), abs(x));
  Node<L> nd = node(ax, k);
  V n = fms(nd.a, ax, nd.b), d = fma(nd.b, ax, nd.a);
  V u = n / d;
  V ul = fnma(u, fma(nd.b, ax, nd.a - d), fnma(u, d, n)) * rcp_est(d);
  return as_float<V>(as_uint(angle<kPi>(u, ul, nd.off, k)) ^ sign_bit(x));
}

// atan2(y, x) or atan2pi(y, x) on lanes where max(|x|, |y|) is in [2^-900,
// 2^1000] and y/x is not NaN: c X and c Y (c < 14) stay finite, and a middle
// node's numerator |y| - c |x| is exact in one rounding (its operands are
// normal). x < 0 (-0 included): the pi - angle rows and -u; the sign of y last.
template <bool kPi, int L>
RAVL_INLINE Vec<double, L> atan2_pair(Vec<double, L> y, Vec<double, L> x, Vec<double, L> q) {
  using V = Vec<double, L>;
  using U = Vec<uint64_t, L>;
  const DRows<kPi>& k = rows(kDRows<kPi>);
  V ax = abs(x), ay = abs(y);
  Node<L> nd = node(q, k);
  V n = fnma(nd.b, ax, nd.a * ay), d = fma(nd.b, ay, nd.a * ax);
  V u = n / d;
  // The division's residual r/d (r = n - u d exact) is added: at
  // node 0 (n = |y|, d = |x|) and node infinity (n = -|x|, d = |y|) u + r/d
  // is the pair's ratio to 2^-100; at the middle nodes n and d keep their
  // own roundings (2^-53 each, on a term below |angle|/8).
  V ul = fnma(u, d, n) / d;
  U sx = sign_bit(x);
  u = as_float<V>(as_uint(u) ^ sx);
  ul = as_float<V>(as_uint(ul) ^ sx);
  U off = nd.off + ((sx >> 53) & get<U>(k.negrows));
  return as_float<V>(as_uint(angle<kPi>(u, ul, off, k)) ^ sign_bit(y));
}

// The lanes atan2_pair cannot take (the plain class's test; the _native
// class has its own kernel and test, atan_fast and atan2_fast_flag below):
// max(|x|, |y|) outside [2^-900, 2^1000], a nonzero ratio q below 2^-60
// (there |y| may be too small for the division's residual, and u/pi's low
// parts, to be normal), infinities, zero pairs and NaN (q = |y|/|x| NaN).
struct FlagRows {
  Row<double> lo = row(0x1p-900), hi = row(0x1p1000), qlo = row(0x1p-60);
};
inline constexpr FlagRows kFlagRows{};
template <int L> RAVL_INLINE Mask<double, L> atan2_flag(Vec<double, L> y, Vec<double, L> x, Vec<double, L> q) {
  using V = Vec<double, L>;
  const FlagRows& k = rows(kFlagRows);
  V m = hw_max(abs(y), abs(x));
  return not_le(m, get<V>(k.hi)) | (m < get<V>(k.lo)) | is_nan(q) | ((q < get<V>(k.qlo)) & (q > V(0)));
}

// The special-lane routine of atan2 and atan2pi (half = pi or 1, the angle
// of the negative axis; quarter = its half; eighth and three_eighths the
// angles of the infinite pairs): NaN -> NaN (y's when y is NaN, else x's); zero pairs and infinities from
// their angles; a ratio |y|/|x| below 2^-60 as unit |y|/|x| (unit = 1 or
// 1/pi; atan(q) = q to 2^-120 relative), after scaling |y| into the normal
// range: q + ql = |y|/|x| to 2^-106, times
// unit in one rounding); other pairs scaled by 2^-600 or 2^600
// (the angle does not change) into [2^-900, 2^1000] and computed by `vec`.
struct Angles {
  double half, quarter, eighth, three_eighths, unit, unit_lo;
};
template <class F> RAVL_INLINE int atan2_scalar(double y, double x, double* r, const Angles& A, F vec) {
  if (y != y || x != x) {
    *r = y != y ? y + y : x + x;  // y's NaN first, quieted (one operand: no order to choose)
    return kStatusOk;
  }
  const double ax = __builtin_fabs(x), ay = __builtin_fabs(y), inf = __builtin_inf();
  const bool xneg = __builtin_signbit(x), yneg = __builtin_signbit(y);
  double v;
  if (ax == inf || ay == inf || (ax == 0 && ay == 0)) {
    // The angle in the first quadrant, then the quadrant of (x, y).
    if (ay == inf) v = ax == inf ? (xneg ? A.three_eighths : A.eighth) : A.quarter;
    else v = xneg ? A.half : 0;
  } else if (ay < ax * 0x1p-60) {
    // The pair scaled up where |y| is tiny and that keeps |x| finite (else
    // |y|/|x| < 2^-1300 underflows to 0); a ratio below 2^-900 taken times
    // 2^200 and the result scaled back (one more rounding only where the
    // result is denormal, after one at 53 bits), so that q, ql and the
    // products stay normal.
    double ys = ay, xs = ax, f = 1;
    if (ay < 0x1p-900 && ax < 0x1p400) ys *= 0x1p600, xs *= 0x1p600;
    if (ys < xs * 0x1p-900) ys *= 0x1p200, f = 0x1p-200;
    const double q = ys / xs, ql = __builtin_fma(-q, xs, ys) / xs;
    const double t = __builtin_fma(q, A.unit, __builtin_fma(q, A.unit_lo, ql * A.unit)) * f;
    v = xneg ? A.half - t : t;
  } else {
    const double m = ax > ay ? ax : ay, s = m > 0x1p1000 ? 0x1p-600 : m < 0x1p-300 ? 0x1p600 : 1;
    v = vec(ay * s, x * s);
  }
  *r = yneg ? -v : v;
  return kStatusOk;
}

// ---- single lanes ---------------------------------------------------------------
//
// Nodes c = 2^k (k = -3..2) for q in [c/sqrt2, c sqrt2), node 0 below
// 2^-3.5 and infinity from 2^2.5: |u| <= 0.1768 (1/2^2.5 at node infinity;
// 0.1716 at q = sqrt2, c = 1), eight nodes in register-wide tables (position
// E & 7 of the exponent E of q sqrt2). A power-of-two node keeps the pair
// arithmetic exact: b Y and b X are exact, n = a Y - b X is exact (Sterbenz:
// a Y and b X within a factor sqrt2, or one of them 0), and d = b Y + a X
// rounds once with its error dl exact by Fast2Sum on the ordered terms; so
// the full class's u + (r - u dl)/d is n/D to 2^-40 (r = n - u d exact, the
// quotient taken with the reciprocal estimate). Taylor terms to u^9/9 (full;
// remainder below 2^-28.5 |u|) or u^7/7 (atanf's fast class, 2^-23.2 |u|, on
// a term below 0.3 of the angle where |u| is largest). atan2f's fast class
// has no nodes (atan2f_fast below).
constexpr float kInvPiF = (float)kInvPi;                        // 1/pi rounded, 0x3ea2f983
constexpr float kInvPiLoF = (float)(kInvPi - (double)kInvPiF);  // the next 24 bits of 1/pi

struct FRowsBase {
  Row<float> tmin = row(0x1p-4f), tmax = row(8.0f), max = row(f32_bits(0x7f7fffffu)),  // FLT_MAX
      sqrt2 = row(f32_bits(0x3fb504f3u));                                                // sqrt(2) rounded
};
template <bool kPi> struct FRows : FRowsBase {
  Row<float> c[4] = {row((float)coef<kPi>(1)), row((float)coef<kPi>(2)), row((float)coef<kPi>(3)),
                     row((float)coef<kPi>(4))};
  Row<float> ipi = row(kInvPiF), ipi_lo = row(kInvPiLoF);
};
template <bool kPi> inline constexpr FRows<kPi> kFRows{};

RAVL_INLINE const float* ftab(const uint32_t* t) { return reinterpret_cast<const float*>(t); }

// The angle of the pair (X, Y) >= 0 (ts = q sqrt2 for the node, NaN taking
// node 0), with the x < 0 rows and -u where neg has its sign bit set
// (kSigned), in radians or half turns; then the sign of sy.
template <bool kPi, bool kFull, bool kSigned, int L>
RAVL_INLINE Vec<float, L> anglef(Vec<float, L> Y, Vec<float, L> X, Vec<float, L> ts, Vec<float, L> neg,
                                 Vec<float, L> sy, const FRows<kPi>& k) {
  using V = Vec<float, L>;
  using I = Vec<int32_t, L>;
  using namespace atan_tables;
  I idx = as_int(hw_min(hw_max(ts, get<V>(k.tmin)), get<V>(k.tmax))) >> 23;  // lookup8 reads E & 7
  V a = lookup8(ftab(kNodeA), idx), b = lookup8(ftab(kNodeB), idx);
  V by = b * Y, ax = a * X;  // exact
  V n = fms(a, Y, b * X), d = by + ax;
  V u = n / d;
  V hi = lookup8(ftab(kPi ? kAtanPiFHi : kAtanFHi), idx);
  auto sx = as_int(neg) < I(0);
  if constexpr (kSigned) hi = select(sx, lookup8(ftab(kPi ? kAtanPiFNegHi : kAtanFNegHi), idx), hi);
  V s = u * u, r;
  if constexpr (kFull) {
    V big = hw_max(by, ax), small = hw_min(by, ax);
    V ul = fnma(u, small - (d - big), fnma(u, d, n)) * rcp_approx(d);
    V lo = lookup8(ftab(kPi ? kAtanPiFLo : kAtanFLo), idx);
    if constexpr (kSigned) {
      lo = select(sx, lookup8(ftab(kPi ? kAtanPiFNegLo : kAtanFNegLo), idx), lo);
      u = as_float<V>(as_uint(u) ^ sign_bit(neg));
      ul = as_float<V>(as_uint(ul) ^ sign_bit(neg));
    }
    V p = horner<4>(s, k.c);
    V v = u, low = lo + ul;
    if constexpr (kPi) {
      v = u * get<V>(k.ipi);
      low = fma(ul, get<V>(k.ipi), lo) + fma(u, get<V>(k.ipi_lo), fms(u, get<V>(k.ipi), v));
    }
    V S = hi + v;
    V e = (hi - S) + v;
    r = S + fma(u * s, p, low + e);
  } else {
    static_assert(!kSigned, "the fast class of the pairs is atan2f_fast");
    V p = horner<3>(s, k.c);
    V v = kPi ? u * get<V>(k.ipi) : u;
    r = hi + fma(u * s, p, v);
  }
  return as_float<V>(as_uint(r) ^ sign_bit(sy));
}

// atanf(x) or atanpif(x): the pair (1, |x|), |x| = inf as FLT_MAX (so that
// 0 |x| = 0 at node infinity; hw_min keeps a NaN).
template <bool kPi, bool kFull, int L> RAVL_INLINE Vec<float, L> atanf1(Vec<float, L> x) {
  using V = Vec<float, L>;
  const FRows<kPi>& k = rows(kFRows<kPi>);
  V ay = hw_min(get<V>(k.max), abs(x));
  return anglef<kPi, kFull, false>(ay, V(1), ay * get<V>(k.sqrt2), V(0), x, k);
}

// ---- single lanes, _native class ----------------------------------------------
//
// No nodes and no table: the pair is ordered, r = min(X, Y) / max(X, Y) in
// [0, 1] by one division, and atan(r) = r + r s P(s), s = r^2, with the
// 8-term minimax series of tables/atan.h (relative error below 2^-25 with
// its single coefficients; P/pi in half turns). The first-quadrant
// angle is then r's angle, or the quarter turn minus it where Y > X (the
// pair swapped), and for a negative first coordinate the half turn minus
// that: B + sigma t with B = quarter (swapped), half (x < 0) or 0, and sigma
// = -1 where exactly one of the two holds. Near r = 1 in the swapped case
// (angle pi/4) the roundings of r, of t and of pi/2 (0.73 ulp of pi/4) add
// up to 2 ulp; measured bounds in atan2.cpp and atan2pi.cpp.
template <bool kPi> struct FastRowsF {
  static constexpr const uint32_t* kP = kPi ? atan_tables::kAtanPiFastF : atan_tables::kAtanFastF;
  static constexpr int kTerms = sizeof atan_tables::kAtanFastF / sizeof(uint32_t);
  Row<float> p[kTerms] = {row(f32_bits(kP[0])), row(f32_bits(kP[1])), row(f32_bits(kP[2])),
                          row(f32_bits(kP[3])), row(f32_bits(kP[4])), row(f32_bits(kP[5])),
                          row(f32_bits(kP[6])), row(f32_bits(kP[7]))};
  Row<float> ipi = row(kInvPiF), ipi_lo = row(kInvPiLoF);
  // The quarter and half turns: pi/2 and pi rounded (0x3fc90fdb, 0x40490fdb),
  // or 1/2 and 1.
  Row<float> quarter = row(kPi ? 0.5f : f32_bits(0x3fc90fdbu)), half = row(kPi ? 1.0f : f32_bits(0x40490fdbu));
  Row<uint32_t> sign = row(0x80000000u);
};
template <bool kPi> inline constexpr FastRowsF<kPi> kFastRowsF{};

// B + sigma atan(n/d) (or /pi), sigma's sign bit in flip.
template <bool kPi, int L>
RAVL_INLINE Vec<float, L> fast_anglef(Vec<float, L> n, Vec<float, L> d, Vec<uint32_t, L> flip, Vec<float, L> b,
                                      const FastRowsF<kPi>& k) {
  using V = Vec<float, L>;
  V r = n / d;
  V s = r * r;
  V p = horner<FastRowsF<kPi>::kTerms>(s, k.p);
  // Half turns: r/pi rounded once with the series added, 1/pi in two parts
  // (the rounding of r/pi and of 1/pi would cost an ulp each where the
  // angle is near 1/4 and the result one binade below r/pi).
  V t;
  if constexpr (kPi) t = fma(r, get<V>(k.ipi), fma(r * s, p, r * get<V>(k.ipi_lo)));
  else t = fma(r * s, p, r);
  return b + as_float<V>(as_uint(t) ^ flip);
}

// atan2f(y, x), atan2pif(y, x): (n, d) = (min(|x|, |y|), max(|y|, |x|)),
// operands in that order so that a NaN in either coordinate reaches the
// quotient (min's NaN from |y|, max's from |x|). The quotient is NaN exactly
// for NaN coordinates, zero pairs and infinite pairs: the lanes of the scalar
// routine. Every other pair, denormal and infinite coordinates included, is
// ordinary here: r = 0 on an axis gives the axis's angle (B, with the sign
// of y: +-0, +-pi/2, +-pi).
template <int L> RAVL_INLINE Vec<float, L> fast_quotient(Vec<float, L> y, Vec<float, L> x) {
  return hw_min(abs(x), abs(y)) / hw_max(abs(y), abs(x));
}
template <bool kPi, int L> RAVL_INLINE Vec<float, L> atan2f_fast(Vec<float, L> y, Vec<float, L> x) {
  using V = Vec<float, L>;
  using U = Vec<uint32_t, L>;
  const FastRowsF<kPi>& k = rows(kFastRowsF<kPi>);
  V ay = abs(y), ax = abs(x);
  U swap = as_uint(as_float<V>(ay > ax));
  U flip = (swap ^ as_uint(x)) & get<U>(k.sign);
  V b = select_sign(swap, select_sign(as_uint(x), V(0), get<V>(k.half)), get<V>(k.quarter));
  V r = fast_anglef(hw_min(ax, ay), hw_max(ay, ax), flip, b, k);
  return as_float<V>(as_uint(r) ^ sign_bit(y));
}

// The angles of the scalar routine and the _native kernel: pi, pi/2, pi/4, 3pi/4 rounded, or 1, 1/2,
// 1/4, 3/4 in half turns.
template <bool kPi> constexpr Angles kAngles =
    kPi ? Angles{1.0, 0.5, 0.25, 0.75, kInvPi, kInvPiLo}
        : Angles{f64_bits(0x400921fb54442d18ull), f64_bits(0x3ff921fb54442d18ull), f64_bits(0x3fe921fb54442d18ull),
                 f64_bits(0x4002d97c7f3321d2ull), 1.0, 0.0};

// ---- double lanes, _native class of the pairs ------------------------------------
//
// No nodes and no table. Two compares of q = |y|/|x| against t = tan(pi/8)
// (rounded; on the products t|x| and t|y|, no quotient) choose one of three
// regions, and with it the numerator and denominator of one division:
//   q <= t:           u = |y| / |x|,                angle atan(u),
//   t < q < 1/t:      u = (|y| - |x|) / (|y| + |x|), angle pi/4 + atan(u),
//   q >= 1/t:         u = -|x| / |y|,               angle pi/2 + atan(u),
// (the middle one is tan(atan(q) - pi/4)), so that |u| <= tan(pi/8) in each
// to a few ulp, and atan(u) = u + u s P(s), s = u^2, with the 8-term minimax
// series of tables/atan.h (relative error 2^-45.0 there), evaluated by
// Estrin's scheme. For x < 0 (-0 included) the angle is pi minus that: the
// base B = 0, pi/4, pi/2 becomes pi - B and u changes sign; then the sign of
// y. The result is (B + u) + u s P in one fma; it never cancels (|atan(u)| <=
// pi/8 <= B/2 where B != 0), so the roundings of u (one, or two in the middle
// region, whose numerator rounds where |x| and |y| are more than a factor 2
// apart), of B, of B + u and of the series' terms add a few 2^-53 to the
// series' 2^-45.0. In half turns B is 0, 1/4, 1/2, 3/4 or 1 (exact), u is
// taken times 1/pi rounded and P holds P/pi.
template <bool kPi> struct FastRowsD {
  static constexpr const uint64_t* kP = kPi ? atan_tables::kAtanPiFastD : atan_tables::kAtanFastD;
  static constexpr int kTerms = sizeof atan_tables::kAtanFastD / sizeof(uint64_t);
  Row<double> p[kTerms] = {row(f64_bits(kP[0])), row(f64_bits(kP[1])), row(f64_bits(kP[2])),
                           row(f64_bits(kP[3])), row(f64_bits(kP[4])), row(f64_bits(kP[5])),
                           row(f64_bits(kP[6])), row(f64_bits(kP[7]))};
  // t twice, so that each product reads it as its memory operand (one
  // register fewer than a t held for both).
  Row<double> t8 = row(f64_bits(atan_tables::kTanPi8D)), t8_again = t8;
  // pi/4, pi/2 and pi rounded, or 1/4, 1/2 and 1 (the scalar routine's).
  Row<double> eighth = row(kAngles<kPi>.eighth), quarter = row(kAngles<kPi>.quarter), half = row(kAngles<kPi>.half);
  Row<double> ipi = row(kInvPi);
  Row<uint64_t> sign = row<uint64_t>(0x8000000000000000ull);
  static_assert(kTerms == 8, "the kernel's Estrin scheme takes eight coefficients");
};
template <bool kPi> inline constexpr FastRowsD<kPi> kFastRowsD{};

// The lanes the series leaves to the scalar routine: NaN in either
// coordinate, infinities, zero pairs, pairs whose sum |x| + |y| overflows,
// and pairs with |x| + |y| < 2^-1000 (where t max(|x|, |y|) could be
// denormal and a region test inexact), the sums outside [2^-1000, DBL_MAX];
// the rest (denormal coordinates included: a tiny or denormal u is correctly
// rounded, and the angle is u, pi - u or pi/2 -+ u) is ordinary. The scalar
// routine scales a pair's coordinates into range. One integer add and one
// signed compare: bits(m) + 2^63 - bits(2^-1000) puts [2^-1000, DBL_MAX]
// (read as a signed integer) at or below bits(DBL_MAX) - bits(2^-1000) -
// 2^63, and every other m >= 0 or NaN above it.
struct FastFlagRowsD {
  Row<uint64_t> bias = row<uint64_t>(0x7e90000000000000ull);  // 2^63 - 0x0170000000000000 (2^-1000)
  Row<int64_t> top = row<int64_t>((int64_t)0xfe7fffffffffffffull);  // 0x7fefffffffffffff (DBL_MAX) + that
};
inline constexpr FastFlagRowsD kFastFlagRowsD{};
template <int L> RAVL_INLINE Mask<double, L> atan2_fast_flag(Vec<double, L> y, Vec<double, L> x) {
  using V = Vec<double, L>;
  const FastFlagRowsD& k = rows(kFastFlagRowsD);
  V m = abs(x) + abs(y);
  return as_int(as_uint(m) + get<Vec<uint64_t, L>>(k.bias)) > get<Vec<int64_t, L>>(k.top);
}

// atan_fast<kPi, true>(y, x) is the pair's angle (atan2, atan2pi);
// atan_fast<kPi, false>(x, 1) is atan(x) or atanpi(x), the pair (1, |x|)
// with the constant first coordinate folded in (regions |x| <= t, t < |x| <
// 1/t, |x| >= 1/t; u = |x|, (|x| - 1)/(|x| + 1) or -1/|x|). That one needs
// no scalar lanes: an infinite |x| gives u = -0 (the quarter turn), NaN
// stays NaN (in the first region's numerator), zeros and tiny |x| give u =
// |x| exactly (the sign of x last).
// Code shape only (the same operations on the same values): empty asms keep
// at most eight values live, so that the common path keeps to ymm0-7, the
// registers a call may clobber on Linux (widths 1 to 4, and 16 for the
// pairs; width 8 computes its two halves side by side): for the pairs x is
// taken as changed once the region tests are made (what is made from x
// waits for them); the series' second half reads its rows through a pointer
// taken as computed from the first half's sum q0, and (atan) its first half
// through one taken as computed from v. The sign row serves -x and the sign
// of y as memory operands, not a held register.
template <bool kPi, bool kPair, int L> RAVL_INLINE Vec<double, L> atan_fast(Vec<double, L> y, Vec<double, L> x) {
  using V = Vec<double, L>;
  using U = Vec<uint64_t, L>;
  const FastRowsD<kPi>& k = rows(kFastRowsD<kPi>);
  V ax = abs(x), ay = abs(y);
  auto above = ay > ax * get<V>(k.t8);       // q > t: the middle or the top region
  auto top = ax < ay * get<V>(k.t8_again);  // q > 1/t
  if constexpr (kPair) __asm__("" : "+x"(x) : "x"(above), "x"(top));
  // v = u with the sign of x, applied through the division's operands (|x|
  // with the sign of x is x): (|y|, x), (+-(|y| - |x|), |y| + |x|), (-x, |y|).
  U sx = as_uint(x) ^ as_uint(ax);
  V negx = kPair ? as_float<V>(as_uint(x) ^ get<U>(k.sign)) : -x;  // -1 folded for atan
  V n = select(above, select(top, negx, as_float<V>(as_uint(ay - ax) ^ sx)), ay);
  V d = select(above, select(top, ay, ay + ax), x);
  V v = n / d;
  // B, and pi - B for x < 0 (the sign bit of x selects); c = B + v.
  V b = select(above, select(top, get<V>(k.quarter), get<V>(k.eighth)), V(0));
  b = select_sign(as_uint(x), b, get<V>(k.half) - b);
  V c = kPi ? fma(v, get<V>(k.ipi), b) : b + v;
  // P(s) = q0 + s^4 q1, q0 and q1 of four coefficients each in pairs
  // (Estrin's scheme: depth three fmas after s).
  V s = v * v, s2 = s * s;
  V vs = v * s;
  const FastRowsD<kPi>* kp = &k;
  if constexpr (!kPair) __asm__("" : "+r"(kp) : "x"(v));
  V q0 = fma(s2, fma(s, get<V>(kp->p[3]), get<V>(kp->p[2])), fma(s, get<V>(kp->p[1]), get<V>(kp->p[0])));
  const FastRowsD<kPi>* kq = &k;
  __asm__("" : "+r"(kq) : "x"(q0));
  V q1 = fma(s2, fma(s, get<V>(kq->p[7]), get<V>(kq->p[6])), fma(s, get<V>(kq->p[5]), get<V>(kq->p[4])));
  V r = fma(vs, fma(s2 * s2, q1, q0), c);
  return as_float<V>(as_uint(r) ^ (as_uint(y) & get<U>(kq->sign)));
}

// ---- the kernels ------------------------------------------------------------
//
// kPi: half turns (atanpi, atan2pi) instead of radians. Classes: full (plain)
// and fast (_native).

// atan, atanpi: no special lanes (infinities take node infinity, or give u
// = -0 in the _native class; NaN propagates through the division; zeros and
// tiny x give x). The _native class is the pairs' kernel on (1, |x|).
template <bool kPi, bool kFull> struct AtanD : frame::Kernel {
  using sig = double(double);
  template <int L> static RAVL_INLINE Vec<double, L> vec(Vec<double, L> x) {
    if constexpr (kFull) return atan1<kPi>(x);
    else return atan_fast<kPi, false>(x, Vec<double, L>(1.0));
  }
};
template <bool kPi, bool kFull> struct AtanF : frame::Kernel {
  using sig = float(float);
  template <int L> static RAVL_INLINE Vec<float, L> vec(Vec<float, L> x) { return atanf1<kPi, kFull>(x); }
};

template <bool kPi, bool kFull> struct Atan2D : frame::Kernel {
  using sig = double(double, double);
  static constexpr bool has_callout = true;
  template <int L> static RAVL_INLINE Vec<double, L> vec(Vec<double, L> y, Vec<double, L> x) {
    if constexpr (kFull) return atan2_pair<kPi>(y, x, abs(y) / abs(x));
    else return atan_fast<kPi, true>(y, x);
  }
  template <int L> static RAVL_INLINE Mask<double, L> special(Vec<double, L> y, Vec<double, L> x, Vec<double, L>) {
    if constexpr (kFull) return atan2_flag(y, x, abs(y) / abs(x));
    else return atan2_fast_flag(y, x);
  }
  // The double routine, shared by both classes (and the single families).
  static RAVL_INLINE int scalar(const double* yp, const double* xp, double* rp) {
    return atan2_scalar(*yp, *xp, rp, kAngles<kPi>, [](double y, double x) {
      return atan2_pair<kPi>(F64x2(y), F64x2(x), F64x2(__builtin_fabs(y) / __builtin_fabs(x)))[0];
    });
  }
};

// Single pairs: the node from q sqrt2 with q = |y| times the reciprocal
// estimate of |x| (its 12 bits choose the node as well as the quotient);
// lanes with max(|x|, |y|) outside [2^-40, 2^100] or a nonzero q below
// 2^-60 (so that a nonzero min(|x|, |y|) is above 2^-100: b Y, b X, the
// residual and u/pi's low parts stay normal),
// infinities, zero pairs and NaN go to the scalar
// routine, which runs the double one and rounds once. Inside that range the
// estimate is finite and normal, or infinite for a denormal |x| (whose q >=
// 2^26 takes node infinity either way).
struct FlagRowsF {
  Row<float> lo = row(0x1p-40f), hi = row(0x1p100f), qlo = row(0x1p-60f);
};
inline constexpr FlagRowsF kFlagRowsF{};
template <bool kPi, bool kFull> struct Atan2F : frame::Kernel {
  using sig = float(float, float);
  static constexpr bool has_callout = true;
  template <int L> static RAVL_INLINE Vec<float, L> vec(Vec<float, L> y, Vec<float, L> x) {
    using V = Vec<float, L>;
    if constexpr (!kFull) {
      return atan2f_fast<kPi>(y, x);
    } else {
      const FRows<kPi>& k = rows(kFRows<kPi>);
      V ay = abs(y), ax = abs(x);
      return anglef<kPi, true, true>(ay, ax, (ay * get<V>(k.sqrt2)) * rcp_approx(ax), x, y, k);
    }
  }
  template <int L> static RAVL_INLINE Mask<float, L> special(Vec<float, L> y, Vec<float, L> x, Vec<float, L>) {
    using V = Vec<float, L>;
    if constexpr (!kFull) return is_nan(fast_quotient(y, x));
    const FlagRowsF& k = rows(kFlagRowsF);
    V m = hw_max(abs(y), abs(x)), q = abs(y) * rcp_approx(abs(x));
    return not_le(m, get<V>(k.hi)) | (m < get<V>(k.lo)) | ((q < get<V>(k.qlo)) & (q > V(0))) | is_nan(q);
  }
  static RAVL_INLINE int scalar(const float* yp, const float* xp, float* rp) {
    double y = *yp, x = *xp, r;
    Atan2D<kPi, true>::scalar(&y, &x, &r);
    *rp = (float)r;
    return kStatusOk;
  }
};

}  // namespace atan_core
}  // namespace ravl
