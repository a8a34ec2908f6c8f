// tanpi(x) = tan(pi x) on double lanes (family tanpi) and single lanes
// (family tanpif): the exact half-turn reduction |x| = n/2 + r and the
// sine and cosine kernels of trig/sinpi_core.h, then tan(pi r) = s/c for
// even n and -cot(pi r) = -c/s for odd n, and the sign of x.
//
// Full class: s and c as unevaluated sums hi + lo, renormalized to N + nl
// and D + dl, the quotient t0 = N (1/D) corrected by its residual (N - t0 D
// exact in one fma, plus nl - t0 dl) times 1/D: the quotient of the sums to
// about 2^-60 before the last rounding. Fast class: one division of the one-word kernels.
//
// No special lanes: every lane is computed by the vector path. r = 0 gives
// the exact values by the quadrant n mod 4 on |x|: +0 (0), +inf (1), -0
// (2), -inf (3), then the sign of x: tanpi(n) is a zero with the sign of x
// for even n and the opposite sign for odd n, tanpi(n + 1/2) = +inf for even
// n and -inf for odd n; every |x| >= 2^53 (2^24 for singles) is even: a zero
// with the sign of x. Infinities and NaN give NaN.
//
// Classes and measured max errors (against MPFR's tanpi; tests/accuracy_test.cpp
// keeps and asserts the bounds in tests/accuracy_rows.cpp; doubles: the
// ranges of sinpi, about 1.7e5 inputs a row; singles: every positive float
// below 2^23, tools/exhaustive/exhaustive_trigf.cpp, the fast class from
// 2^-30; above 2^23 every single is an integer and the result exact):
//   tanpi    plain    full   0.7956 ulp (worst x = -0x1.3ffa856edfe68p+0)
//   tanpi    _native  fast   175.4 ulp (x = -0x1.8000000000029p-1)
//   tanpif   plain    full   0.8792 ulp (every float; worst x = 0x1.fee482p-3)
//   tanpif   _native  fast   4.4253 ulp (x = 0x1.fe939cp-3)
#include "trig/sinpi_core.h"

namespace ravl {
namespace sinpi_core {

template <class T, bool kFull> struct TanPi : frame::Kernel {
  using sig = T(T);
  template <int L> static RAVL_INLINE Vec<T, L> vec(Vec<T, L> x) {
    using V = Vec<T, L>;
    constexpr int kTop = sizeof(T) * 8 - 1;
    const Rows<T>& k = rows(kRows<T>);
    const Reduced<V> red = reduce(abs(x), k);
    const SinCos<V> sc = sincos<kFull>(red.r, k);
    const UIntOf<V> odd = red.q << kTop;  // n odd: -c/s
    const V nh = select_sign(odd, sc.sh, sc.ch), dh = select_sign(odd, sc.ch, sc.sh);
    V t;
    if constexpr (kFull) {
      // N = RN(nh + nl), D = RN(dh + dl) and their exact errors (Fast2Sum:
      // |lo| < |hi|); t0 = N (1/D), then its residual N - t0 D (exact, one
      // fnma), the errors of N and D, times 1/D.
      const V nl0 = select_sign(odd, sc.sl, sc.cl), dl0 = select_sign(odd, sc.cl, sc.sl);
      const V n = nh + nl0, d = dh + dl0;
      const V nl = (nh - n) + nl0, dl = (dh - d) + dl0;
      const V y = get<V>(k.one) / d;
      const V t0 = n * y;
      // The sine pair is scaled by 2^K: the quotient by 2^-K (n even) or 2^K.
      t = fma(fnma(t0, dl, fnma(t0, d, n) + nl), y, t0) * select_sign(odd, get<V>(k.down), get<V>(k.up));
    } else {
      t = nh / dh;
    }
    t = as_float<V>(as_uint(t) ^ odd);
    // r = 0: +0, +inf, -0, -inf by the quadrant.
    const V exact = as_float<V>(as_uint(select_sign(odd, V(0), get<V>(k.inf))) | ((red.q >> 1) << kTop));
    t = select(red.r == V(0), exact, t);
    return as_float<V>((as_uint(t) ^ sign_bit(x)) | red.nan);
  }
};

}  // namespace sinpi_core

namespace tanpi_k {
using full = sinpi_core::TanPi<double, true>;
using fast = sinpi_core::TanPi<double, false>;
}  // namespace tanpi_k
namespace tanpif_k {
using full = sinpi_core::TanPi<float, true>;
using fast = sinpi_core::TanPi<float, false>;
}  // namespace tanpif_k
}  // namespace ravl

#include "entries/tanpi.inc"
#include "entries/tanpif.inc"
