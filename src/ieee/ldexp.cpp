// ldexp(x, n): x * 2^n with n a 32-bit integer lane, exact for every input:
// the result of one multiplication rounding (round to nearest even in the
// default mode), so denormal results are correctly rounded, results beyond
// the largest finite value overflow to +-infinity, and tiny ones underflow
// to +-0 with x's sign. +-0, +-infinity and NaN come back unchanged (bit for
// bit). Any n, INT_MIN and INT_MAX included.
//
// Common path: when x is normal and so is the result (biased exponents
// b0 = field(x) and b = b0 + n both in [1, max_field - 1]), x * 2^n is exact
// and is x with n added to its exponent field: one integer add on the bit
// pattern. The lane test flags every other lane (zeros, denormals,
// infinities, NaN, results that overflow or leave the normal range); the
// inline pass settles all of them at once with the exact method below, for
// the whole chunk, so no lane ever reaches a scalar call.
//
// Exact method, per lane:
// 1. A denormal x is lifted to a normal by an exact power-of-two multiply;
//    its field b0 is then the biased exponent that x would have.
// 2. n is clamped to +-4096, so that b = b0 + n fits easily in 32 bits. The
//    results do not change: n >= 2098 already overflows every non-zero finite
//    double (2^-1074 * 2^2098 = 2^1024) and n <= -2099 takes every one below
//    half the smallest denormal (float: 277 and -278), and a clamped n stays
//    in those same regimes of step 3, which round alike in every mode.
// 3. b is the result's biased exponent if it were normal. Three regimes:
//    - 1 <= b <= max_field - 1: the result is normal and exact; write b into
//      the exponent field and multiply by 1.
//    - b < 1 (denormal or zero result): write b + 64 (at least 1) into the
//      field and multiply by 2^-64. That product is the exact x * 2^n rounded
//      once. When b + 64 < 1 the true result is below 2^(1 - bias - 63),
//      far under half the smallest denormal, so writing 1 instead and
//      multiplying (a value just as far under it, same sign) rounds alike in
//      every rounding mode.
//    - b > max_field - 1 (overflow): write max_field - 1 and multiply by
//      2^bias: the product is beyond the largest finite value, as the true
//      result is, and rounds alike (infinity in round to nearest).
// 4. Zero, infinity and NaN lanes take x.
#include "ieee/ieee_fields.h"

namespace ravl {

template <class T> struct LdexpKernel : frame::Kernel {
  using sig = T(T, int32_t);
  using I = Ieee<T>;
  static constexpr bool has_callout = true;
  static constexpr int kNLimit = 4096;   // |n| clamp, see step 2
  static constexpr int kLowShift = 64;   // exponent lift of denormal results, see step 3
  static constexpr T kLowScale = (T)0x1p-64;  // 2^-kLowShift
  static constexpr T kHighScale = sizeof(T) == 8 ? (T)0x1p1023 : (T)0x1p127;  // 2^bias

  template <int L> using S = SIntOf<Vec<T, L>>;
  // n in lanes as wide as T's.
  template <int L> static RAVL_INLINE S<L> widen(Vec<int32_t, L> n) { return convert<typename Bits<T>::S>(n); }

  // The common path: n added to the exponent field (right when the lane test
  // below holds; other lanes are replaced by the inline pass).
  template <int L> static RAVL_INLINE Vec<T, L> vec(Vec<T, L> x, Vec<int32_t, L> n) {
    return as_float<Vec<T, L>>(as_int(x) + (widen(n) << I::mant_bits));
  }
  // Every lane but a normal x with a normal result. For single lanes n is
  // clamped first so that b0 + n cannot wrap around in 32 bits.
  template <int L> static RAVL_INLINE Mask<T, L> special(Vec<T, L> x, Vec<int32_t, L> n, const Vec<T, L>&) {
    using N = Vec<int32_t, L>;
    S<L> b0 = exponent_field(x);
    S<L> nn = sizeof(T) == 8 ? widen(n) : widen(select(n > N(kNLimit), N(kNLimit), select(n < N(-kNLimit),
                                                                                              N(-kNLimit), n)));
    S<L> b = b0 + nn;
    return (b0 < S<L>(1)) | (b0 > S<L>(I::max_field - 1)) | (b < S<L>(1)) | (b > S<L>(I::max_field - 1));
  }
  template <int L, class M>
  static RAVL_INLINE M settle(M flagged, Vec<T, L> x, Vec<int32_t, L> n, Vec<T, L>& r) {
    r = select(flagged, exact(x, n), r);
    return M(0);
  }
  // The exact method for every lane (steps 1-4).
  template <int L> static RAVL_INLINE Vec<T, L> exact(Vec<T, L> x, Vec<int32_t, L> n) {
    using V = Vec<T, L>;
    using N = Vec<int32_t, L>;
    N nc = select(n > N(kNLimit), N(kNLimit), select(n < N(-kNLimit), N(-kNLimit), n));
    Lifted<V> lx = lift_denormals(x);
    S<L> b = lx.field + widen(nc);
    S<L> over = b > S<L>(I::max_field - 1);
    S<L> under = b < S<L>(1);
    S<L> low = select(b + S<L>(kLowShift) > S<L>(1), b + S<L>(kLowShift), S<L>(1));
    S<L> bc = select(over, S<L>(I::max_field - 1), select(under, low, b));
    V scale = select(over, V(kHighScale), select(under, V(kLowScale), V(1)));
    V m = as_float<V>((as_uint(lx.x) & ~UIntOf<V>(I::exp_mask)) | as_uint(bc << I::mant_bits));
    V r = m * scale;
    return select((x == V(0)) | inf_or_nan(x), x, r);
  }
  // Never reached (the inline pass settles every flagged lane); the lane
  // routine the frame requires, by the same exact method.
  static int scalar(const T* x, const int32_t* n, T* r) {
    constexpr int L = 16 / sizeof(T);
    *r = exact(Vec<T, L>(*x), Vec<int32_t, L>(*n))[0];
    return kStatusOk;
  }
};

namespace ldexp_k { using full = LdexpKernel<double>; }
namespace ldexpf_k { using full = LdexpKernel<float>; }

}  // namespace ravl

#include "entries/ldexp.inc"
#include "entries/ldexpf.inc"
