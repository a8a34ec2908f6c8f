// Pieces shared by the exponential families (exp.cpp, exp2.cpp, exp10.cpp,
// expm1.cpp): reduction constants with the same bits and meaning in several
// families, the steps their scalar routines have in common (infinity and NaN
// inputs, overflow and underflow results, scaling by 2^m) and the inline
// settle passes for lanes beyond the overflow or underflow bound. Each
// family's algorithm, lane test and scalar routine stay in its own file.
#pragma once

#include "frame/entry.h"
#include "tables/exp.h"

namespace ravl {
namespace exp_common {

// ---- double reduction constants ------------------------------------------------

// The shifter 1.5 * 2^52 (0x4338000000000000): for |t| < 2^51, t + kShift
// rounds t to an integer held in the low mantissa bits of the sum.
constexpr double kShift = f64_bits(0x4338000000000000ull);
// 1.5 * 2^48 (0x42f8000000000000): n + kShift48 holds 16 n in its low bits,
// the byte offset of the (hi, lo) pair in the 64-entry table.
constexpr double kShift48 = f64_bits(0x42f8000000000000ull);
// 64 / ln 2 = 92.332482616893657 (0x40571547652b82fe).
constexpr double kInvLn2x64 = f64_bits(0x40571547652b82feull);
// ln 2 / 64 as hi + lo: hi = 0.010830424696223417 (0x3f862e42fefa0000) has 17
// trailing zero bits, so n * hi is exact and x - n hi is exact for |n| < 2^17;
// lo = 2.5728046223276691e-14 (0x3d1cf79abc9e3b3a).
constexpr double kLn2o64Hi = f64_bits(0x3f862e42fefa0000ull);
constexpr double kLn2o64Lo = f64_bits(0x3d1cf79abc9e3b3aull);
// 128 / ln 2 = 184.66496523378731 and ln 2 / 128 = 0.0054152123481245725 (one
// constant: the reductions of the fast classes).
constexpr double kInvLn2x128 = f64_bits(0x40671547652b82feull);
constexpr double kLn2o128 = f64_bits(0x3f762e42fefa39efull);
// x above ln(DBL_MAX) (rounded down: 0x40862e42fefa39ef = 709.78271289338397)
// overflows e^x and e^x - 1 to +infinity.
constexpr double kOverflow = f64_bits(0x40862e42fefa39efull);

// ---- single reduction constants ------------------------------------------------

constexpr float kInvLn2f = f32_bits(0x3fb8aa3bu);  // 1/ln2 = 1.44269502
constexpr float kShiftf = f32_bits(0x4b400000u);   // 1.5 * 2^23: rounds |t| < 2^22 to an integer in the low bits
constexpr float kLn2f = f32_bits(0x3f317218u);     // ln2 = 0.693147182
// x above 88.7228317 (0x42b17217, the largest single below ln FLT_MAX =
// 88.7228391) overflows e^x and e^x - 1 to +infinity.
constexpr float kOverflowf = f32_bits(0x42b17217u);

// ---- scalar-routine steps ------------------------------------------------------

// DBL_MAX (0x7fefffffffffffff); its square is +infinity with overflow.
constexpr double kHuge = f64_bits(0x7fefffffffffffffull);
// DBL_MIN + 1 ulp (0x0010000000000001); its square is +0 with underflow.
constexpr double kTiny = f64_bits(0x0010000000000001ull);

// +infinity with the overflow flag raised, stored in *rp (double or single).
template <class T> RAVL_INLINE int overflow_result(T* rp) {
  *rp = (T)(opaque(kHuge) * kHuge);
  return kStatusOverflow;
}
// +0 with the underflow flag raised, stored in *rp (double or single).
template <class T> RAVL_INLINE int underflow_result(T* rp) {
  *rp = (T)(opaque(kTiny) * kTiny);
  return kStatusUnderflow;
}

// kStatusUnderflow for a nonzero denormal result y, else kStatusOk.
RAVL_INLINE int denormal_status(double y) {
  uint64_t ay = bits_of(y) & 0x7fffffffffffffffull;
  return ay != 0 && ay < 0x0010000000000000ull ? kStatusUnderflow : kStatusOk;
}
RAVL_INLINE int denormal_status(float y) {
  uint32_t ay = bits_of(y) & 0x7fffffffu;
  return ay != 0 && ay < 0x00800000u ? kStatusUnderflow : kStatusOk;
}

// x is an infinity or NaN (all-ones exponent field).
RAVL_INLINE bool inf_or_nan(double x) { return (bits_of(x) >> 52 & 2047) == 2047; }
RAVL_INLINE bool inf_or_nan(float x) { return (bits_of(x) >> 23 & 255) == 255; }
// e^x, 2^x or 10^x of an infinity or NaN x: -inf -> +0; +inf stays, NaN is
// quietened (x * x).
RAVL_INLINE double exp_inf_or_nan(double x) { return bits_of(x) == 0xfff0000000000000ull ? 0.0 : x * x; }
RAVL_INLINE float exp_inf_or_nan(float x) { return bits_of(x) == 0xff800000u ? 0.0f : x * x; }

// 2^(field - 1023) for a biased exponent field in [1, 2046].
RAVL_INLINE double pow2(int64_t field) { return f64_bits((uint64_t)field << 52); }

// y 2^m for -1022 <= m <= 1024 and y 2^m normal or overflowing: one rounding
// at most (none for a normal result). For m = 1024, 2^m is not a double: y is
// scaled by 2^1023, then by 2.
RAVL_INLINE double scale_pow2(double y, int64_t m) {
  int64_t field = m + 1023;
  if (field > 2046) return (y * pow2(field - 1)) * 2.0;
  return y * pow2(field);
}

// ---- the reduction of the scalar routines ---------------------------------------

// Polynomial of the scalar routines: e^r - 1 - r ~ r^2 (1/2 + s3 r + s4 r^2 +
// s5 r^3 + s6 r^4) on |r| <= ln2/128.
constexpr double kS3 = f64_bits(0x3fc55555555548f8ull);  // 0.16666666666657881
constexpr double kS4 = f64_bits(0x3fa5555555558fccull);  // 0.041666666666770519
constexpr double kS5 = f64_bits(0x3f8111123aaf20d3ull);  // 0.0083333419951404971
constexpr double kS6 = f64_bits(0x3f56c16a1c2a3ffdull);  // 0.0013888870459233254

// e^x = 2^m (hi + v) for |x| < 2^16 (exp's and the hyperbolic families'
// scalar routines): hi = hi_j = RN(2^(j/64)) exactly, v = hi_j q the small
// part (|v| < 0.0055 hi).
// x = (64 m + j) ln2/64 + r, |r| <= ln2/128 (plus the reduction error);
// e^x = 2^m * hi_j (1 + lo_j) e^r with lo_j relative to hi_j, so
// e^x ~ 2^m (hi_j + hi_j q), q = r + r^2 P(r) + lo_j.
struct ExpSplit {
  double hi, v;
  int64_t m;
};
RAVL_INLINE ExpSplit exp_split(double x) {
  double k = fma(x, kInvLn2x64, kShift);
  double n = k - kShift;
  int64_t ni = (int64_t)(bits_of(k) - bits_of(kShift));  // n as an integer
  int64_t j = ni & 63;
  int64_t m = ni >> 6;  // floor(n / 64)
  double r = fnma(n, kLn2o64Hi, x);
  r = fnma(n, kLn2o64Lo, r);
  double hi = f64_bits(exp_tables::kExpScalar64[2 * j]);
  double lo = f64_bits(exp_tables::kExpScalar64[2 * j + 1]);
  double r2 = r * r;
  double p = fma(r, fma(r, fma(r, fma(r, kS6, kS5), kS4), kS3), 0.5);
  double q = r + fma(r2, p, lo);
  return {hi, q * hi, m};
}

// ---- lane tests and kernel bases ---------------------------------------------------

// The rows of a lane test against |x|: the mask that clears the sign bit and
// the bound's bit pattern. A kernel's rows (rows(), frame/simd.h) derive from
// them, so that the lane test and the vector path read one block of
// constants through one address.
template <class T, typename Bits<T>::U kBoundBits> struct BoundRows {
  using U = typename Bits<T>::U;
  Row<U> abs = row((U)(~(U)0 >> 1));
  Row<U> bound = row(kBoundBits);
};

// Lanes whose |x| has a bit pattern, read as a signed integer, above that of
// the bound in c: |x| above the bound, infinities and NaN, in one integer
// compare.
template <class V, class R> RAVL_INLINE MaskOf<V> abs_bits_above(V x, const R& c) {
  using I = SIntOf<V>;
  return (as_int(x) & get<I>(c.abs)) > get<I>(c.bound);
}
// Lanes with |x| above the bound in c or NaN (an unordered compare).
template <class V, class R> RAVL_INLINE MaskOf<V> abs_above_or_nan(V x, const R& c) {
  return not_le(as_float<V>(as_uint(x) & get<UIntOf<V>>(c.abs)), get<V>(c.bound));
}

// Kernel base of the families with no inline pass: the lanes of
// abs_bits_above with the bound in kRows go to the scalar routine Scalar,
// which every class of the precision shares.
template <class T, const auto& kRows, int (*Scalar)(const T*, T*)>
struct AbsBoundKernel : frame::Kernel {
  using sig = T(T);
  static constexpr bool has_callout = true;
  template <int L> static RAVL_INLINE Mask<T, L> special(Vec<T, L> x, Vec<T, L>) {
    return abs_bits_above(x, rows(kRows));
  }
  static RAVL_INLINE int scalar(const T* x, T* r) { return Scalar(x, r); }
};

// ---- inline settle passes --------------------------------------------------------

// Lanes above the overflow bound become +infinity, lanes below the underflow
// bound +0 (ordered compares: NaN lanes stay flagged); returns the lanes still
// flagged.
template <class M, class V, class T>
RAVL_INLINE M settle_overflow(M flagged, V x, V& r, T bound) {
  M over = x > V(bound);
  r = select(over, V((T)__builtin_inf()), r);
  return flagged & ~over;
}
template <class M, class V, class T>
RAVL_INLINE M settle_underflow(M flagged, V x, V& r, T bound) {
  M under = x < V(bound);
  r = select(under, V((T)0), r);
  return flagged & ~under;
}

}  // namespace exp_common
}  // namespace ravl
