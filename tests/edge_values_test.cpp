// The special-value table: per family (and, after a colon, per algorithm), the
// values of each case in a row, the inputs then the expected outputs (the
// results, then the one stored through the pointer). An expected value is a
// number (converted to the lane type: exact bits), raw bits B(...), NAN (any
// NaN), CR (MPFR's correctly rounded value), U(u) (within u ulp of MPFR) or ACC
// (within the algorithm's asserted bound). A double NaN pattern given to a
// float lane keeps its sign, quiet bit and low payload bits.
//
// Every case runs in every class of its family at every width, in each lane
// position of an otherwise ordinary vector: that lane must give the expected
// value and the other lanes their bits in the all-ordinary vector (lanes the
// scalar routines or the inline pass compute never disturb the others). Where
// the family has an exact reference, the reference must give the table's
// values too. The accuracy suite also tests the neighbourhood of every case.
#include <cfloat>
#include <climits>

#include "common/call.h"
#include "common/tables.h"

namespace ravl_test {
namespace {

struct V {
  enum Kind : uint8_t { kNum, kBits, kAnyNan, kCorrect, kUlp } kind;
  double d;
  uint64_t b;
  V(double x) : kind(std::isnan(x) ? kAnyNan : kNum), d(x), b(0) {}
  V(Kind k, double x, uint64_t u) : kind(k), d(x), b(u) {}
};
V B(uint64_t u) { return V(V::kBits, 0, u); }
V U(double ulp) { return V(V::kUlp, ulp, 0); }
const V CR(V::kCorrect, 0, 0), ACC = U(0);
const double INF = INFINITY, kD1m = 0x1.fffffffffffffp-1, kF1m = 0x1.fffffep-1;
const V SN1 = B(0x7ff0000000000001), QN1 = B(0x7ff8000000000001), QN2 = B(0xfff8000000000002),
        DN = B(0xfff8000000000000);  // signalling, quiet payload 1, quiet negative payload 2, the default NaN

struct Row {
  const char* families;  // "family" or "family:algorithm", comma separated, all of one signature
  std::vector<V> v;
};
const Row kRows[] = {
    // exp: overflow and underflow inline, the scalar routine's lanes (near the
    // bounds, denormal results) correctly rounded; the fast-path bound and
    // ln DBL_MIN within the class bound.
    {"exp", {NAN, NAN, INF, INF, -INF, 0, 0, 1, -0.0, 1, 0x1p-60, 1, -0x1p-60, 1, 0x1p-1074, 1, 710, INF,
             709.78271289338403, INF, 1e308, INF, -746, 0, -1e308, 0, 709.78, CR, 709.78271289338397, CR, 709, CR,
             -720, CR, -745, CR, -745.13321910194111, CR, -708.39641853226408, CR, -708.4, CR, 708.39599609374989, ACC,
             -708.39599609374989, ACC, 0x1p-52, ACC, -0x1p-52, ACC}},
    {"expf", {NAN, NAN, INF, INF, -INF, 0, 0, 1, -0.0, 1, 0x1p-60, 1, -0x1p-60, 1, 0x1p-149, 1, 89, INF,
              88.7228394, INF, -104, 0, -1e30, 0, 88.7228317, CR, 88, CR, -100, CR, -103.972076, CR, -87.5, CR,
              87.3365402, ACC, -87.3365402, ACC, -87.33654022216797, ACC}},
    {"exp2", {NAN, NAN, INF, INF, -INF, 0, 1024, INF, 1e300, INF, -1075, 0, -1e300, 0, -1074, 0x1p-1074,
              -1022.5, CR, -1074.5, CR, -1022, 0x1p-1022, 1023, 0x1p1023, 1023.5, CR, 1023.9999999999999, CR,
              1022, ACC, 0x1p-60, ACC}},
    {"exp2:full", {1021.9999999999999, CR, 0, 1, -0.0, 1, 10, 1024, -1021, 0x1p-1021}},
    {"exp2:fast", {0, 1.0000000005541665, -0.0, 1.0000000005541665}},  // the polynomial's constant term
    {"exp2f", {NAN, NAN, INF, INF, -INF, 0, 128, INF, -150, 0, -149, 0x1p-149, -149.5, 0x1p-149, -130.3, CR,
               127, 0x1p127, 127.99999, CR, 126, ACC, 0x1p-30, ACC}},
    {"exp2f:full", {-126, 0x1p-126, 0, 1, -0.0, 1, -7, 0x1p-7}},
    {"exp2f:fast", {0, 0.999928057, -0.0, 0.999928057}},
    {"exp10", {NAN, NAN, INF, INF, -INF, 0, 0, 1, -0.0, 1, 0x1.34413509f79ffp+8, INF, 400, INF,
               -0x1.439b746e36b53p+8, 0, -400, 0, 0x1.34413509f79fep+8, CR, 308, CR, -0x1.439b746e36b52p+8, CR,
               -310, CR, -0x1.33a7146f72a42p+8, CR, -0x1.33a7146f72a41p+8, CR, 307.7, CR, 307.65258789062494, ACC,
               -307.65258789062494, ACC, 308.25471555991669, ACC, -323.60724533877976, ACC, 0x1p-60, ACC}},
    {"exp10:full", {1, 10, 22, 1e22}},
    {"exp10f", {NAN, NAN, INF, INF, -INF, 0, 0, 1, -0.0, 1, 0x1.344136p+5, INF, -0x1.693c6cp+5, 0,
                0x1.344134p+5, CR, -0x1.693c6ap+5, 0x1p-149, 0x1.2f7032p+5, CR, -0x1.2f7032p+5, CR, -40, CR,
                37.9297791, ACC, -37.9297791, ACC, 38.5318375, ACC, -45.1544991, ACC, 0x1p-30, ACC}},
    {"exp10f:full", {1, 10}},
    // expm1: the -1 clamp; the table steps, t = 1/2 and 1/4, and 2^53 within bound.
    {"expm1", {NAN, NAN, INF, INF, -INF, -1, 0, 0, -0.0, -0.0, 0x1p-1074, 0x1p-1074, -0x1p-1074, -0x1p-1074,
               0x1p-1022, 0x1p-1022, -1e-300, -1e-300, 0x1p-60, 0x1p-60, -41, -1, -1e308, -1, 710, INF,
               709.78271289338403, INF, 1e308, INF, 709.78271289338397, CR, 709.76, CR, 709.7773, CR, 709.75, ACC,
               -40, ACC, 0.0054152123481245725, ACC, 0.0108304246962, ACC, 0.6931471805599453, ACC,
               1.3862943611198906, ACC, 36.7368005696771, ACC, 1e-5, ACC, 0x1p-20, ACC, 0x1p-40, ACC, 0x1p-54, ACC}},
    {"expm1f", {NAN, NAN, INF, INF, -INF, -1, 0, 0, -0.0, -0.0, 0x1p-149, 0x1p-149, -0x1p-149, -0x1p-149, 0x1p-30,
                0x1p-30, -21, -1, -1e30, -1, 89, INF, 88.7228394, INF, 88.7228317, CR, 88.5, CR, 88, ACC, -20, ACC,
                0.3465736, ACC, 0.6931472, ACC, 1.3862944, ACC, 16.6355, ACC, 1e-5, ACC, 0x1p-20, ACC}},
    // tan: the scalar routine's rows (infinities, NaN); zeros and tiny x keep
    // their bits on the fast path; the threshold 128000 and the next double
    // (the full-range path); the doubles nearest odd multiples of pi/2, on both
    // sides of the threshold (the accuracy suite adds 64 neighbours each side).
    // The single trigonometric families: the scalar routines' rows, the
    // thresholds and the next float above, the largest float.
    {"sinf,tanf", {NAN, NAN, INF, NAN, -INF, NAN, 0, 0, -0.0, -0.0, 0x1p-149, 0x1p-149, -0x1p-149, -0x1p-149}},
    {"sinf,cosf", {10000, ACC, 10000.001, ACC, -10000.001, ACC, 3.4028235e38, ACC, -3.4028235e38, ACC}},
    {"cosf", {NAN, NAN, INF, NAN, -INF, NAN, 0, 1, -0.0, 1, 0x1p-149, 1}},
    {"tanf", {8256, ACC, 8256.001, ACC, -8256.001, ACC, 3.4028235e38, ACC, 1.57079637, ACC}},
    {"sincosf,sincosregf", {NAN, NAN, NAN, INF, NAN, NAN, 0, 0, 1, -0.0, -0.0, 1, 524288, ACC, ACC, 524287.97, ACC,
                            ACC, 3.4028235e38, ACC, ACC, 1.57079637, ACC, ACC}},
    {"tan", {NAN, NAN, INF, NAN, -INF, NAN, 0, 0, -0.0, -0.0, 0x1p-1074, 0x1p-1074, -0x1p-1074, -0x1p-1074, 1e-300,
             ACC, 0x1p-60, ACC, 128000, ACC, 128000.00000000001, ACC, -128000.00000000001, ACC,
             1.5707963267948966, ACC, -1.5707963267948966, ACC, 4.71238898038469, ACC, 158.65042900628455, ACC,
             127996.33868888216, ACC, 127999.48028153574, ACC, 1647100.8999616124, ACC, 1727108826180.3892, ACC,
             1.8110048645192806e+18, ACC, 1e22, ACC, DBL_MAX, ACC, -DBL_MAX, ACC}},
    {"tan:full", {1e-300, 1e-300, -0x1p-60, -0x1p-60}},  // n/d = r exactly (the fast classes scale by u0/k0)
    // sincos, sincosreg: x, the sine, the cosine. The scalar routine's rows;
    // cos(+-0) = 1 exactly (a tiny x takes the kernel's sin(x - pi/2), one
    // ulp below 1 in the plain class); 2^23 and the next double (the full-range path,
    // or the scalar routine in the fast classes); doubles nearest multiples
    // of pi on both sides of it.
    {"sincos,sincosreg", {NAN, NAN, NAN, INF, NAN, NAN, -INF, NAN, NAN, 0, 0, 1, -0.0, -0.0, 1, 0x1p-1074, 0x1p-1074, ACC,
                          -0x1p-1074, -0x1p-1074, ACC, 0x1p-60, 0x1p-60, ACC, 8388608, ACC, ACC, 8388608.000000002, ACC,
                          ACC, -8388608.000000002, ACC, ACC, 3.141592653589793, ACC, ACC, 1.5707963267948966, ACC, ACC,
                          8388039.818714133, ACC, ACC, 8388608.446984433, ACC, ACC, 1e22, ACC, ACC, DBL_MAX, ACC, ACC}},
    // log: the denormals (the scalar routine) within two roundings in every class.
    {"log", {NAN, NAN, -NAN, NAN, INF, INF, -INF, NAN, 0, -INF, -0.0, -INF, -1, NAN, -DBL_MAX, NAN, -0x1p-1074, NAN,
             1, 0, 0x1p-1074, U(1.001), 0x1.ffffffffffffep-1023, U(1.001), 0x1.0000000000001p-1030, U(1.001),
             0x1.fffffffffffffp-1031, U(1.001), 0x1.8p-1050, U(1.001), DBL_MIN, ACC, DBL_MAX, ACC, kD1m, ACC,
             0x1.0000000000001p+0, ACC, 2, ACC, 0.5, ACC, 1.4142135623730951, ACC, 0x1p-1000, ACC, 0x1p1000, ACC}},
    {"log2,log10", {NAN, NAN, INF, INF, -INF, NAN, 0, -INF, -0.0, -INF, -1, NAN, -0x1p-1074, NAN, 1, 0, 0x1p-1074,
                    U(0.52), 0x1.ffffffffffffep-1023, U(0.52), 0x1.0000000000001p-1030, U(0.52), 2, ACC, 0.5, ACC,
                    10, ACC, DBL_MIN, ACC, DBL_MAX, ACC, 1.4142135623730951, ACC, 0x1p-1000, ACC, 0x1p1000, ACC}},
    {"logf,log2f,log10f", {NAN, NAN, INF, INF, -INF, NAN, 0, -INF, -0.0, -INF, -1, NAN, -0x1p-149, NAN, 1, 0,
                           0x1p-149, U(0.52), 0x1.fffffcp-127, U(0.52), 0x1.000002p-130, U(0.52), 2, ACC, 0.5, ACC,
                           10, ACC, FLT_MIN, ACC, FLT_MAX, ACC, 1.41421354, ACC, 0x1p-100, ACC, 0x1p100, ACC}},
    {"log1p", {NAN, NAN, INF, INF, -INF, NAN, -1, -INF, -1.0000000000000002, NAN, -2, NAN, -DBL_MAX, NAN, 0, 0,
               -0.0, -0.0, 0x1p-1074, 0x1p-1074, -0x1p-1074, -0x1p-1074, 1e-300, 1e-300, -0x1p-60, -0x1p-60,
               0x1.8p1000, CR, DBL_MAX, CR, -0.5, ACC, -0.2928932188134524, ACC, 0.41421356237309503, ACC, 1, ACC,
               0x1p53, ACC, 0x1p1000, ACC, 1e-5, ACC, 0x1p-20, ACC, 0x1p-40, ACC, 0x1p-54, ACC}},
    {"log1pf", {NAN, NAN, INF, INF, -INF, NAN, -1, -INF, -1.00000012, NAN, -3, NAN, 0, 0, -0.0, -0.0, 0x1p-149,
                0x1p-149, -0x1p-149, -0x1p-149, 0x1p-30, 0x1p-30, -0x1p-30, -0x1p-30, -0.5, ACC, -0.29289322, ACC,
                0.41421357, ACC, 1, ACC, 0x1p24, ACC, FLT_MAX, ACC, 1e-5, ACC, 0x1p-20, ACC}},
    // Roots. sqrt: the instruction's IEEE values; sqrtf _native is x times
    // the estimate even at 0 (0 * inf) and +inf (inf * 0); the other single
    // classes send zeros, denormals, negative and infinite x to the routine.
    {"sqrt", {NAN, NAN, INF, INF, -INF, NAN, 0, 0, -0.0, -0.0, -1, NAN, -0x1p-1074, NAN, 4, 2, 0x1p-1074, 0x1p-537,
              DBL_MIN, 0x1p-511, DBL_MAX, CR, 2, CR}},
    {"sqrtf:full,sqrtf:half", {NAN, NAN, INF, INF, -INF, NAN, 0, 0, -0.0, -0.0, -1, NAN, -0x1p-149, NAN, 4, ACC,
                                0x1p-148, 0x1p-74, 0x1.fffffcp-127, CR, 0x1p-149, CR, FLT_MAX, ACC, FLT_MIN, ACC}},
    {"sqrtf:full", {FLT_MAX, CR, 2, CR, 4, 2}},
    {"sqrtf:fast", {0, NAN, INF, NAN, -1, NAN, 4, ACC, FLT_MIN, ACC, FLT_MAX, ACC}},
    // rsqrt: the vector path's range ends (2^-970 and 2^1022 plain, 2^-1020
    // fast) within the class bound on both sides.
    {"rsqrt", {NAN, NAN, INF, 0, -INF, NAN, 0, INF, -0.0, -INF, -1, NAN, -0x1p-1074, NAN, -DBL_MAX, NAN, 0x1p-1074, ACC,
               0x1.fffffffffffffp-1023, ACC, DBL_MIN, ACC, 0x1p-970, ACC, 0x1.fffffffffffffp-971, ACC, 0x1p-1020, ACC,
               0x1.fffffffffffffp-1021, ACC, 0x1p1022, ACC, 0x1.fffffffffffffp1021, ACC, DBL_MAX, ACC, 4, ACC, 2, ACC}},
    {"rsqrtf", {NAN, NAN, INF, 0, -INF, NAN, 0, INF, -0.0, -INF, -1, NAN, -0x1p-149, NAN, 0x1p-149, ACC,
                0x1.fffffcp-127, ACC, FLT_MIN, ACC, FLT_MAX, ACC, 4, ACC, 2, ACC}},
    // cbrt, rcbrt: negative x on the vector path; the least normal is not
    // flagged, the largest denormal is (the routine).
    {"cbrt", {NAN, NAN, INF, INF, -INF, -INF, 0, 0, -0.0, -0.0, 0x1p-1074, ACC, -0x1p-1074, ACC,
              0x1.fffffffffffffp-1023, ACC, -0x1.fffffffffffffp-1023, ACC, DBL_MIN, ACC, -DBL_MIN, ACC, DBL_MAX, ACC,
              -DBL_MAX, ACC, -8, ACC, 3, ACC}},
    {"cbrt:full", {-8, -2, 8, 2, 27, 3, -0.125, -0.5, 0x1p-1074, 0x1p-358, -0x1p-1071, -0x1p-357}},
    {"cbrtf", {NAN, NAN, INF, INF, -INF, -INF, 0, 0, -0.0, -0.0, 0x1p-149, ACC, -0x1p-149, ACC, 0x1.fffffcp-127, ACC,
               -0x1.fffffcp-127, ACC, FLT_MIN, ACC, -FLT_MIN, ACC, FLT_MAX, ACC, -FLT_MAX, ACC, -8, ACC, 3, ACC}},
    {"cbrtf:full", {-8, -2, 8, 2, 27, 3, -0.125, -0.5, 0x1p-147, 0x1p-49}},
    {"rcbrt", {NAN, NAN, INF, 0, -INF, -0.0, 0, INF, -0.0, -INF, 0x1p-1074, ACC, -0x1p-1074, ACC,
               0x1.fffffffffffffp-1023, ACC, DBL_MIN, ACC, -DBL_MIN, ACC, DBL_MAX, ACC, -DBL_MAX, ACC, -8, ACC, 3, ACC}},
    {"rcbrt:full", {-8, -0.5, 8, 0.5, -0.125, -2, 0x1p-1074, 0x1p358}},
    {"rcbrtf", {NAN, NAN, INF, 0, -INF, -0.0, 0, INF, -0.0, -INF, 0x1p-149, ACC, -0x1p-149, ACC, 0x1.fffffcp-127, ACC,
                FLT_MIN, ACC, -FLT_MIN, ACC, FLT_MAX, ACC, -FLT_MAX, ACC, -8, ACC, 3, ACC}},
    {"rcbrtf:full", {-8, -0.5, 8, 0.5, 0x1p-147, 0x1p49}},
    // hypot: an infinity wins over NaN; |x| exactly when y is zero; no
    // overflow or underflow before the result.
    {"hypot,hypotf", {INF, NAN, INF, NAN, -INF, INF, -INF, 1, INF, 1, INF, INF, NAN, 1, NAN, 1, NAN, NAN, 3, 4, 5, -3, 4,
                      5, 0, 0, 0, -0.0, -0.0, 0, -5, 0, 5, 0, -5, 5, -0.0, 5, 5, 1e-300, 0, ACC, -1e30, -0.0, ACC, 1e30,
                      1e30, ACC, 1e-30, 1e-30, ACC, 3e-39, 4e-39, ACC}},
    {"hypot", {DBL_MAX, DBL_MAX, INF, DBL_MAX, 0, DBL_MAX, 0x1p1023, 0x1p1023, ACC, -0x1.8p1023, 0x1p1022, ACC, 0x1p-1074,
               0x1p-1074, 0x1p-1074, 0x1p-1074, 0, 0x1p-1074, 0x1.8p-1073, 0x1p-1072, ACC, 3e-308, 4e-308, ACC, 1e300,
               1e-300, 1e300, 0x1p-500, 0x1p-500, ACC, 0x1p500, 0x1p500, ACC, 0x1.0000000000001p-500, 0, ACC,
               0x1.fffffffffffffp499, 0, ACC}},
    {"hypotf", {FLT_MAX, FLT_MAX, INF, FLT_MAX, 0, FLT_MAX, 0x1p127, 0x1p127, ACC, 0x1p-149, 0x1p-149, 0x1p-149,
                0x1p-149, 0, 0x1p-149, 1e30, 1e-30, 1e30, 0x1p-60, 0x1p-60, ACC, 0x1p60, 0x1p60, ACC}},
    // sin, cos: the scalar routine's rows (inf -> NaN, NaN, zeros, |x| < 2^-252),
    // the bounds of the fast reduction (sin: |x| = 2^24 and the next double;
    // cos: |pi/2 - |x|| = 2^23 at x = 0x1.000000c90fdaap+23, and its
    // neighbours), the largest double, 1e22, the doubles nearest to multiples
    // of pi/2 and the hardest case of the reduction (x = 0x1.6ac5b262ca1ffp+849).
    {"sin", {NAN, NAN, INF, NAN, -INF, NAN, 0, 0, -0.0, -0.0, 0x1p-1074, 0x1p-1074, -0x1p-1074, -0x1p-1074,
             0x1.8p-300, 0x1.8p-300, 0x1p-253, 0x1p-253, 0x1p-252, 0x1p-252, 1e22, CR, DBL_MAX, ACC, -DBL_MAX, ACC,
             0x1p24, ACC, 0x1.0000000000001p24, ACC, -0x1.0000000000001p24, ACC, 0x1.fffffffffffffp23, ACC,
             0x1.6ac5b262ca1ffp+849, ACC, 3.141592653589793, ACC, 1.5707963267948966, ACC, 6.283185307179586, ACC,
             314.1592653589793, ACC, 103993 * 3.141592653589793, ACC, 0x1.921fb54442d18p+23, ACC,
             0x1.921fb54442d18p+40, ACC, 0x1.921fb54442d18p+100, ACC, 0x1p-20, ACC, 1e-5, ACC}},
    {"cos", {NAN, NAN, INF, NAN, -INF, NAN, 0, 1, -0.0, 1, 0x1p-1074, 1, -0x1p-1074, 1, 1e-300, 1, 0x1p-54, 1,
             -0x1p-54, 1, 1e22, CR, DBL_MAX, ACC, -DBL_MAX, ACC, 0x1.000003243f6a9p+23, ACC,
             0x1.000003243f6aap+23, ACC, 0x1.000003243f6a8p+23, ACC, -0x1.000003243f6aap+23, ACC, 0x1p23, ACC,
             0x1.6ac5b262ca1ffp+849, ACC, 1.5707963267948966, ACC, 4.71238898038469, ACC, 3.141592653589793, ACC,
             0x1.921fb54442d18p+22, ACC, 0x1.921fb54442d18p+41, ACC, 0x1.921fb54442d18p+200, ACC, 1e-8, ACC,
             0x1p-26, ACC}},
    // The powers: every row of the scalar routines' tables (x, y, result).
    {"pow,powf", {NAN, 0, 1, NAN, -0.0, 1, INF, 0, 1, -INF, -0.0, 1, 1, NAN, 1, 1, INF, 1, 1, -INF, 1, 1, 0x1p60, 1,
                  NAN, 2, NAN, 2, NAN, NAN, 0, 3, 0, -0.0, 3, -0.0, -0.0, 2, 0, -0.0, 0.5, 0, 0, INF, 0, 0, -3, INF,
                  -0.0, -3, -INF, -0.0, -2, INF, -0.0, -0.5, INF, -0.0, -INF, INF, -1, INF, 1, -1, -INF, 1, -1, 3, -1,
                  -1, 4, 1, -8, 1.0 / 3, NAN, -2, 0.5, NAN, -INF, 0.5, INF, 2, INF, INF, 0.5, INF, 0, 2, -INF, 0,
                  0.5, -INF, INF, INF, 2, INF, INF, -2, 0, -INF, 3, -INF, -INF, 2, INF, -INF, -3, -0.0, -INF, -2, 0,
                  -2, 3, ACC, -2, -3, ACC, -0.5, 7, ACC, 4, 0.5, ACC, 2, 10, ACC, 0x1p-1074, 0.5, ACC}},
    // pow: a lane just above |y log2 x| = 1021.5 is the routine's and still
    // finite; denormal and overflowing results.
    {"pow", {-2, 0x1p52 + 1, -INF, -2, -0x1p52 - 1, -0.0, -2, 0x1p53, INF, -1, 0x1p52 + 1, -1, 2, 1024, INF, 2, -1075, 0, 2, -1074, 0x1p-1074, 2, -1074.5, 0x1p-1074, 2, -1050.3, CR, 2, 1023.99, ACC,
             0x1p-1074, 1, 0x1p-1074, 0x1p-1074, -1, INF, -3, -677, CR, 2, 1021.5000000000002, ACC,
             2, -1021.5000000000002, ACC, 0x1.0000000000001p0, 0x1p62, CR, 2, 1021.5, ACC}},
    {"pow:full", {2, 1023.99, CR, 2, 10, 1024, 2, -1022, 0x1p-1022, 0.25, 0.5, 0.5, 2, 1021.5000000000002, U(0.51), 2,
                  -1021.5000000000002, U(0.51), 2, 1023.5, U(0.51), 2, -1023.5, U(0.51)}},
    // powf: results in (FLT_MAX, 2^150) overflow and tiny ones become denormal
    // in the narrowing of the plain class.
    {"powf", {-2, 0x1p23 + 1, -INF, -2, -0x1p23 - 1, -0.0, -2, 0x1p24, INF, -1, 0x1p23 + 1, -1, 2, 128, INF, 2, 128.5, INF, 2, 149.9, INF, 2, -149, 0x1p-149, 2, -149.5, 0x1p-149, 2, -140.3,
              CR, 10, 38.5, CR, 2, 150, INF, 2, -151, 0, 2, 127.99, ACC}},
    {"powf:full", {2, 10, 1024, 2, -126, 0x1p-126, 0.25, 0.5, 0.5}},
    {"powr,powrf", {NAN, 1, NAN, 1, NAN, NAN, NAN, 0, NAN, -1, 2, NAN, -INF, 2, NAN, -0.5, 0, NAN,
                    0, 0, NAN, -0.0, 0, NAN, 0, -0.0, NAN, 0, 2, 0, -0.0, 2, 0, 0, INF, 0, 0, -2, INF, -0.0, -2, INF,
                    0, -INF, INF, INF, 0, NAN, INF, -0.0, NAN, INF, 2, INF, INF, -2, 0, INF, INF, INF, INF, -INF, 0,
                    1, 5, 1, 1, -5, 1, 1, INF, NAN, 1, -INF, NAN, 2, 0, 1, 2, -0.0, 1, 0.5, 0, 1, 2, INF, INF, 2, -INF,
                    0, 0.5, INF, 0, 0.5, -INF, INF, 4, 0.5, ACC, 2, 10, ACC, 0.1, -3.5, ACC}},
    {"powr", {-0x1p-1074, 1, NAN, 2, 1024, INF, 2, -1075, 0, 2, -1074, 0x1p-1074, 2, -1050.3, CR, 2, 1023.99, ACC, 0x1p-1074, 0.5, CR}},
    {"powrf", {-0x1p-149, 1, NAN, 2, 128, INF, 2, -150, 0, 2, -149, 0x1p-149, 2, -140.3, CR, 2, 127.99, ACC, 0x1p-149, 0.5, CR}},
    // pown: n = 0 gives 1 for every x; negative x in the vector path.
    {"pown,pownf", {NAN, 0, 1, INF, 0, 1, -INF, 0, 1, 0, 0, 1, -0.0, 0, 1, NAN, 3, NAN, 0, 3, 0, -0.0, 3, -0.0, -0.0,
                    2, 0, 0, -3, INF, -0.0, -3, -INF, -0.0, -1, -INF, -0.0, -2, INF, -1, 3, -1, -1, 4, 1, -1, INT_MIN,
                    1, -1, INT_MAX, -1, 1, INT_MAX, 1, INF, 3, INF, -INF, 3, -INF, -INF, 2, INF, INF, -3, 0, -INF, -3,
                    -0.0, -INF, -2, 0, -2, 3, ACC, -2, -3, ACC, -0.5, 7, ACC, 3, 5, ACC}},
    {"pown", {2, 1024, INF, -2, 1025, -INF, 2, -1075, 0, -2, -1075, -0.0, 2, -1074, 0x1p-1074, -2, -1073, -0x1p-1073,
              3, -677, CR, 3, 646, ACC, 3, 647, INF, 0x1p-1074, 1, 0x1p-1074, 0x1p-1074, -1, INF}},
    {"pown:full", {-2, 3, -8, 2, 10, 1024, 3, 5, 243, 2, -1022, 0x1p-1022, 2, 1023, 0x1p1023}},
    {"pownf", {2, 128, INF, -2, 129, -INF, 2, -149, 0x1p-149, -2, -149, -0x1p-149, 3, -94, CR, 3, 80, ACC}},
    {"rootn,rootnf", {2, 0, NAN, NAN, 0, NAN, 0, 0, NAN, INF, 0, NAN, -8, 2, NAN, -INF, 2, NAN, -1, 4, NAN, -0x1p-20,
                      -2, NAN, 0, 3, 0, -0.0, 3, -0.0, -0.0, 2, 0, 0, -3, INF, -0.0, -3, -INF, -0.0, -2, INF, INF, 3,
                      INF, -INF, 3, -INF, INF, -3, 0, -INF, -3, -0.0, INF, 2, INF, INF, -2, 0, NAN, 3, NAN, 1, 5, 1,
                      -1, 3, -1, 1, -4, 1, -8, 3, ACC, 8, -3, ACC, 2, 2, ACC, 1e-30, 7, ACC}},
    {"rootn", {0x1p-1074, -1, INF, 0x1p-1073, -1, CR, -0x1p-1074, 1, -0x1p-1074, 0x1p-1074, 2, CR, DBL_MAX, 1, DBL_MAX,
               DBL_MAX, -1, CR, 0x1p-1022, -1, ACC}},
    {"rootn:full", {0x1p-1022, -1, 0x1p1022, -8, 3, -2, 8, -3, 0.5, 1024, 10, 2, 0x1p-1000, -1000, 2}},
    {"rootnf", {0x1p-149, -1, INF, 0x1p-127, -1, 0x1p127, -0x1p-149, 1, -0x1p-149, FLT_MAX, 1, FLT_MAX}},
    // Arc sine and cosine: NaN for |x| > 1, +-1 and +-0 exact on the vector
    // path; both sides of the fold at |x| = 1/2, near +-1, small and denormal.
    {"acos", {NAN, NAN, INF, NAN, -INF, NAN, 1.0000000000000002, NAN, -1.0000000000000002, NAN, 2, NAN, -DBL_MAX, NAN,
              1, 0, -1, 3.1415926535897931, 0, 1.5707963267948966, -0.0, 1.5707963267948966, 0x1p-1074,
              1.5707963267948966, 0.5, ACC, 0.49999999999999994, ACC, -0.5, ACC, -0.49999999999999994, ACC,
              0.50000000000000011, ACC, kD1m, ACC, -kD1m, ACC, 0x1p-30, ACC, -0x1p-30, ACC, 0.7071067811865476, ACC}},
    {"asin", {NAN, NAN, INF, NAN, -INF, NAN, 1.0000000000000002, NAN, -1.0000000000000002, NAN, -DBL_MAX, NAN, 1,
              1.5707963267948966, -1, -1.5707963267948966, 0, 0, -0.0, -0.0, 0x1p-1074, 0x1p-1074, -0x1p-1074,
              -0x1p-1074, 1e-300, 1e-300, -0x1p-1022, -0x1p-1022, 0.5, ACC, 0.49999999999999994, ACC, -0.5, ACC,
              -0.49999999999999994, ACC, 0.50000000000000011, ACC, kD1m, ACC, -kD1m, ACC, 0x1p-30, ACC}},
    {"acospi", {NAN, NAN, INF, NAN, -INF, NAN, 1.0000000000000002, NAN, -1.0000000000000002, NAN, -DBL_MAX, NAN, 1,
                0, -1, 1, 0, 0.5, -0.0, 0.5, 0x1p-1074, 0.5, 0.5, ACC, 0.49999999999999994, ACC, -0.5, ACC,
                -0.49999999999999994, ACC, 0.50000000000000011, ACC, kD1m, ACC, -kD1m, ACC, 0x1p-30, ACC}},
    {"asinpi", {NAN, NAN, INF, NAN, -INF, NAN, 1.0000000000000002, NAN, -1.0000000000000002, NAN, -DBL_MAX, NAN, 1,
                0.5, -1, -0.5, 0, 0, -0.0, -0.0, 0x1p-1074, ACC, -0x1p-1074, ACC, 0x1p-1020, ACC, 1e-300, ACC, 0.5,
                ACC, 0.49999999999999994, ACC, -0.5, ACC, -0.49999999999999994, ACC, 0.50000000000000011, ACC,
                kD1m, ACC, -kD1m, ACC, 0x1p-30, ACC}},
    {"acosf", {NAN, NAN, INF, NAN, -INF, NAN, 1.00000012, NAN, -1.00000012, NAN, -FLT_MAX, NAN, 1, 0, -1,
               3.1415926535897931, 0, 1.5707963267948966, -0.0, 1.5707963267948966, 0x1p-149, 1.5707963267948966,
               0.5, ACC, 0.49999997, ACC, -0.5, ACC, -0.49999997, ACC, 0.50000006, ACC, kF1m, ACC, -kF1m, ACC,
               0x1p-20, ACC}},
    {"asinf", {NAN, NAN, INF, NAN, -INF, NAN, 1.00000012, NAN, -1.00000012, NAN, -FLT_MAX, NAN, 1,
               1.5707963267948966, -1, -1.5707963267948966, 0, 0, -0.0, -0.0, 0x1p-149, 0x1p-149, -0x1p-149,
               -0x1p-149, 0x1p-126, 0x1p-126, 0.5, ACC, 0.49999997, ACC, -0.5, ACC, -0.49999997, ACC, 0.50000006, ACC,
               kF1m, ACC, -kF1m, ACC, 0x1p-20, ACC}},
    {"acospif", {NAN, NAN, INF, NAN, -INF, NAN, 1.00000012, NAN, -1.00000012, NAN, -FLT_MAX, NAN, 1, 0, -1, 1, 0,
                 0.5, -0.0, 0.5, 0x1p-149, 0.5, 0.5, ACC, 0.49999997, ACC, -0.5, ACC, -0.49999997, ACC, 0.50000006,
                 ACC, kF1m, ACC, -kF1m, ACC, 0x1p-20, ACC}},
    {"asinpif", {NAN, NAN, INF, NAN, -INF, NAN, 1.00000012, NAN, -1.00000012, NAN, -FLT_MAX, NAN, 1, 0.5, -1, -0.5, 0,
                 0, -0.0, -0.0, 0x1p-149, ACC, -0x1p-149, ACC, 0x1p-120, ACC, 0.5, ACC, 0.49999997, ACC, -0.5, ACC,
                 -0.49999997, ACC, 0.50000006, ACC, kF1m, ACC, -kF1m, ACC, 0x1p-20, ACC}},
    // Arc tangents: infinities give the quarter turn, zeros and tiny x keep
    // x, NaN stays NaN (no special lanes); the node boundaries within bound.
    {"atan,atanf", {NAN, NAN, INF, CR, -INF, CR, 0, 0, -0.0, -0.0, 0x1p-149, 0x1p-149, -0x1p-149, -0x1p-149, 1, ACC,
                    -1, ACC, 0x1p-4, ACC, 0.0625 * kF1m, ACC, 8, ACC, 8 * kF1m, ACC, 16, ACC, 16 * kF1m, ACC, 1.25,
                    ACC, 1.5, ACC, 1.75, ACC, 1e30, ACC, 3e38, CR}},
    {"atan", {0x1p-1074, 0x1p-1074, 0x1p-1022, 0x1p-1022, 1e300, CR, DBL_MAX, CR, 0x1p-5, ACC, 16 * kD1m, ACC}},
    {"atanpi,atanpif", {NAN, NAN, INF, 0.5, -INF, -0.5, 0, 0, -0.0, -0.0, 1, ACC, -1, ACC, 0x1p-4, ACC, 8, ACC,
                        16, ACC, 1e30, ACC, 3e38, ACC, 0x1p-100, ACC}},
    {"atanpi", {DBL_MAX, CR, 1e300, CR, 0x1p-1000, ACC}},
    // atan2(y, x), C99's special cases, then pairs whose quotient overflows,
    // underflows or is denormal, and huge and tiny pairs.
    {"atan2,atan2f", {0, 0, 0, -0.0, 0, -0.0, 0, -0.0, CR, -0.0, -0.0, CR, 0, -1, CR, -0.0, -1, CR, 0, 1, 0, -0.0, 1,
                      -0.0, 1, 0, CR, 1, -0.0, CR, -1, 0, CR, -1, -0.0, CR, 1, -INF, CR, -1, -INF, CR, 1, INF, 0, -1,
                      INF, -0.0, INF, 1, CR, -INF, 1, CR, INF, -1, CR, -INF, -1, CR, INF, -INF, CR, -INF, -INF, CR,
                      INF, INF, CR, -INF, INF, CR, 0, INF, 0, -0.0, INF, -0.0, 0, -INF, CR, -0.0, -INF, CR, INF, 0, CR,
                      INF, -0.0, CR, NAN, 1, NAN, 1, NAN, NAN, NAN, NAN, NAN, 0, NAN, NAN, INF, NAN, NAN, NAN, INF,
                      NAN, 1, 1, ACC, -1, -1, ACC, 3, -3, ACC, 1e-30, 1e30, CR, 1e30, -1e-30, CR, 0x1p-149, 1, CR,
                      1, 0x1p-149, CR, 0x1p-149, 0x1p-149, ACC, -0x1p-149, -0x1p-149, ACC, 3e38, 3e38, ACC, 3e38,
                      -3e38, ACC, 3e38, 1, CR, 1e-38, 3e-38, ACC, 0x1p-130, 0x1p-131, ACC}},
    {"atan2", {1e-300, 1e300, CR, -1e-300, -1e300, CR, 0x1p-1074, 1, CR, 0x1p-1074, 0x1p50, CR, 1e300, 1e-300, CR,
               DBL_MAX, DBL_MAX, ACC, DBL_MAX, -DBL_MAX, ACC, 0x1p-1074, 0x1p-1074, ACC, 0x1p-1074, -0x1p-1070,
               ACC, 0x1p-1022, 0x1.8p-1022, ACC, 0x1p1000, 0x1p999, ACC, 0x1p-900, 0x1p-901, ACC}},
    {"atan2pi,atan2pif", {0, 0, 0, -0.0, 0, -0.0, 0, -0.0, 1, -0.0, -0.0, -1, 0, -1, 1, -0.0, -1, -1, 0, 1, 0, -0.0,
                          1, -0.0, 1, 0, 0.5, 1, -0.0, 0.5, -1, 0, -0.5, -1, -0.0, -0.5, 1, -INF, 1, -1, -INF, -1, 1,
                          INF, 0, -1, INF, -0.0, INF, 1, 0.5, -INF, 1, -0.5, INF, -1, 0.5, -INF, -1, -0.5, INF, -INF,
                          0.75, -INF, -INF, -0.75, INF, INF, 0.25, -INF, INF, -0.25, 0, -INF, 1, -0.0, -INF, -1, NAN,
                          1, NAN, 1, NAN, NAN, 1, 1, ACC, -1, -1, ACC, 1e-30, 1e30, CR, 0x1p-149, 1, CR, 3e38, 3e38,
                          ACC, 3e38, -3e38, ACC}},
    {"atan2pi", {1e-300, 1e300, CR, 0x1p-1074, 0x1p-4, CR, DBL_MAX, -DBL_MAX, ACC, 0x1p-1074, -0x1p-1074, ACC}},
    // sinh, cosh: the vector bound (707.7001953125 flagged, 707.69970703125
    // not), the scalar routine's overflow bound 710.475860073944 and its
    // e^|x|/2 and series bounds.
    // The pi-scaled forms: every lane inline. Zeros of sinpi with the sign of x,
    // cospi(n + 1/2) = +0, tanpi(n) a zero with the sign of x for even n and the
    // other sign for odd n, tanpi(n + 1/2) = +inf for even n and -inf for odd n;
    // every single from 2^23 (double from 2^52) an integer; 8388607.5 the
    // largest non-integer single, 2^52 - 1/2 the largest non-integer double.
    {"sinpi,sinpif", {NAN, NAN, INF, NAN, -INF, NAN, 0, 0, -0.0, -0.0, 0.5, 1, -0.5, -1, 1, 0, -1, -0.0, 1.5, -1,
                      -1.5, 1, 2, 0, -2, -0.0, 3, 0, -3, -0.0, 2.5, 1, 0.25, ACC, -0.75, ACC, 0x1p-30, ACC,
                      8388607.5, -1, -8388607.5, 1, 8388608, 0, -8388608, -0.0, 8388609, 0, 0x1p24, 0, 1e30, 0,
                      -1e30, -0.0}},
    {"sinpi", {0x1p-1074, CR, -0x1p-1074, CR, 0x1p-1030, CR, 0x1.ffffffffffffp-1023, ACC, 0x1p52, 0, 0x1p52 + 1, 0,
               -0x1p52 - 1, -0.0, 0x1p53, 0, 0x1p52 - 0.5, -1, 0x1p51 + 0.5, 1, DBL_MAX, 0, -DBL_MAX, -0.0,
               1 - 0x1p-53, ACC, 0.5 - 0x1p-54, ACC, 0.5 + 0x1p-53, ACC}},
    {"sinpif", {0x1p-149, CR, -0x1p-149, CR, 0x1p-140, ACC, 0x1p-127, ACC, 3.4028235e38, 0, -3.4028235e38, -0.0}},
    {"cospi,cospif", {NAN, NAN, INF, NAN, -INF, NAN, 0, 1, -0.0, 1, 0.5, 0, -0.5, 0, 1, -1, -1, -1, 1.5, 0, -1.5, 0,
                      2, 1, -2, 1, 3, -1, 2.5, 0, 0.25, ACC, 0x1p-30, 1, 8388607.5, 0, -8388607.5, 0, 8388608, 1,
                      8388609, -1, -8388609, -1, 0x1p24, 1, 1e30, 1}},
    {"cospi", {0x1p-1074, 1, 0x1p52, 1, 0x1p52 + 1, -1, 0x1p53, 1, 0x1p52 - 0.5, 0, 0x1p51 + 0.5, 0, DBL_MAX, 1,
               -DBL_MAX, 1, 0.5 - 0x1p-54, ACC, 0.5 + 0x1p-53, ACC, 1 - 0x1p-53, ACC}},
    {"cospif", {0x1p-149, 1, 3.4028235e38, 1}},
    {"tanpi,tanpif", {NAN, NAN, INF, NAN, -INF, NAN, 0, 0, -0.0, -0.0, 0.5, INF, -0.5, -INF, 1.5, -INF, -1.5, INF,
                      2.5, INF, -2.5, -INF, 1, -0.0, -1, 0, 2, 0, -2, -0.0, 3, -0.0, -3, 0, 0.25, ACC, -0.75, ACC,
                      0x1p-30, ACC, 8388607.5, -INF, -8388607.5, INF, 8388606.5, INF, 8388608, 0, 8388609, -0.0,
                      -8388609, 0, 0x1p24, 0, 1e30, 0, -1e30, -0.0}},
    {"tanpi", {0x1p-1074, CR, -0x1p-1074, CR, 0x1p-1030, CR, 0x1p52, 0, 0x1p52 + 1, -0.0, -0x1p52 - 1, 0, 0x1p53, 0,
               0x1p52 - 0.5, -INF, 0x1p51 + 0.5, INF, DBL_MAX, 0, -DBL_MAX, -0.0, 0.5 - 0x1p-54, ACC,
               0.5 + 0x1p-53, ACC, 1 - 0x1p-53, ACC}},
    {"tanpif", {0x1p-149, CR, -0x1p-149, CR, 0x1p-140, ACC, 3.4028235e38, 0, -3.4028235e38, -0.0}},
    {"sinh", {NAN, NAN, INF, INF, -INF, -INF, 0, 0, -0.0, -0.0, 0x1p-1074, 0x1p-1074, -0x1p-1074, -0x1p-1074,
              1e-300, 1e-300, 710.4759, INF, -710.4759, -INF, 1e308, INF, 710.4758, ACC, -710.4758, ACC,
              710.475860073944, INF, 710.47586007394383, ACC, 707.7001953125, ACC, 707.69970703125, ACC,
              21.487562597358306, ACC, 0.02720470510300388, ACC, 0x1p-52, ACC, 0x1p-53, ACC, 1, ACC}},
    {"cosh", {NAN, NAN, INF, INF, -INF, INF, 0, 1, -0.0, 1, 0x1p-1074, 1, 1e-300, 1, 710.4759, INF, -710.4759, INF,
              1e308, INF, 710.4758, ACC, -710.4758, ACC, 710.475860073944, INF, 710.47586007394383, ACC,
              707.7001953125, ACC, -707.7001953125, ACC, 707.69970703125, ACC, 21.487562597358306, ACC, 0x1p-54, 1,
              1, ACC}},
    {"sinhf", {NAN, NAN, INF, INF, -INF, -INF, 0, 0, -0.0, -0.0, 0x1p-149, 0x1p-149, -0x1p-149, -0x1p-149, 90, INF,
               -90, -INF, FLT_MAX, INF, 89.4159851, ACC, 89.4159927, INF, 89, ACC, 89.0000076, ACC, 1, ACC,
               0.346573591, ACC, 0.346573621, ACC, 88.7228394, ACC}},
    {"coshf", {NAN, NAN, INF, INF, -INF, INF, 0, 1, -0.0, 1, 0x1p-149, 1, 90, INF, -90, INF, FLT_MAX, INF,
               89.4159851, ACC, 89.4159927, INF, 89, ACC, 89.0000076, ACC, 1, ACC}},
    // tanh: +-1 from 20 up and for exponent field 2046 (the scalar routine from
    // 1.125 * 2^1023); both sides of 0.125; single: both sides of the clamp at
    // 10, of ln2/4, where n (of 2|x|, both classes) leaves 0, of ln2/2, and of
    // 3 ln2/4, where n goes from 1 to 2.
    {"tanh", {NAN, NAN, INF, 1, -INF, -1, 0, 0, -0.0, -0.0, 0x1p-1074, 0x1p-1074, -0x1p-1074, -0x1p-1074, 20, 1,
              -20, -1, 1e300, 1, DBL_MAX, 1, -DBL_MAX, -1, 0x1.2p1023, 1, 0x1.1ffffffffffffp1023, 1, 0x1p1023, 1,
              0.125, ACC, 0.12499999999999999, ACC, -0.125, ACC, 19.999999999999996, ACC, 1, ACC}},
    {"tanhf", {NAN, NAN, INF, 1, -INF, -1, 0, 0, -0.0, -0.0, 0x1p-149, 0x1p-149, 20, 1, -20, -1, FLT_MAX, 1,
               -FLT_MAX, -1, 0.125, ACC, 0.124999993, ACC, 9.01, ACC, 1, ACC, 10, ACC, 9.99999905, ACC,
               0.346573591, ACC, 0.346573621, ACC, 0x1.62e42ep-3, ACC, 0x1.62e43p-3, ACC, 0x1.0a2b22p-1, ACC,
               0x1.0a2b24p-1, ACC}},
    // asinh, acosh, atanh: x itself below the tiny bound (2^-27; singles: the
    // series below 2^-5), the switch to w = 2|x| at 2^28 (single 2^12), the
    // scalar routine above 2^1000 (single from 2^126), the domain ends
    // (acosh(1) = +0, atanh(+-1) = +-inf) and the values past them.
    {"asinh", {NAN, NAN, INF, INF, -INF, -INF, 0, 0, -0.0, -0.0, 0x1p-1074, 0x1p-1074, -0x1p-1074, -0x1p-1074,
               0x1p-1022, 0x1p-1022, 0x1.fffffffffffffp-28, 0x1.fffffffffffffp-28, -0x1.fffffffffffffp-28,
               -0x1.fffffffffffffp-28, 0x1p-27, ACC, 1, ACC, 0x1p28, ACC, 0x1.0000000000001p28, ACC,
               0x1.fffffffffffffp27, ACC, 0x1p1000, ACC, 0x1.0000000000001p1000, ACC, 1e308, ACC, DBL_MAX, ACC,
               -DBL_MAX, ACC}},
    {"acosh", {NAN, NAN, INF, INF, -INF, NAN, 1, 0, 0x1.0000000000001p0, ACC, 0x1.fffffffffffffp-1, NAN, 0, NAN,
               -0.0, NAN, -1, NAN, 2, ACC, 0x1p28, ACC, 0x1.0000000000001p28, ACC, 0x1p1000, ACC,
               0x1.0000000000001p1000, ACC, 1e308, ACC, DBL_MAX, ACC}},
    {"atanh", {NAN, NAN, 1, INF, -1, -INF, 0, 0, -0.0, -0.0, 0x1p-1074, 0x1p-1074, -0x1p-1074, -0x1p-1074,
               0x1.fffffffffffffp-28, 0x1.fffffffffffffp-28, 0x1p-27, ACC, 0.5, ACC, 0x1.fffffffffffffp-1, ACC,
               -0x1.fffffffffffffp-1, ACC, 0x1.0000000000001p0, NAN, 2, NAN, INF, NAN, -INF, NAN}},
    {"asinhf", {NAN, NAN, INF, INF, -INF, -INF, 0, 0, -0.0, -0.0, 0x1p-149, 0x1p-149, -0x1p-149, -0x1p-149,
                0x1.fffffep-13, 0x1.fffffep-13, 0x1p-12, ACC, 1, ACC, FLT_MAX, ACC, -FLT_MAX, ACC, 0x1p-5, ACC,
                0x1.fffffep-6, ACC, 0x1p12, ACC, 0x1.000002p12, ACC, 0x1p126, ACC, 0x1.fffffep125, ACC,
                -0x1p126, ACC}},
    {"acoshf", {NAN, NAN, INF, INF, -INF, NAN, 1, 0, 0x1.000002p0, ACC, 0x1.fffffep-1, NAN, 0, NAN, -1, NAN, 2, ACC,
                FLT_MAX, ACC, 0x1p12, ACC, 0x1.000002p12, ACC, 0x1p126, ACC, 0x1.fffffep125, ACC}},
    {"atanhf", {NAN, NAN, 1, INF, -1, -INF, 0, 0, -0.0, -0.0, 0x1p-149, 0x1p-149, 0x1.fffffep-13, 0x1.fffffep-13,
                0x1p-12, ACC, 0x1.fffffep-1, ACC, -0x1.fffffep-1, ACC, 0x1.000002p0, NAN, INF, NAN, 0x1p-5, ACC,
                0x1.fffffep-6, ACC}},
    // erf: the roundings to +-1 at 5.9215871957945074 (3.9192059 in single) and
    // the last value below, within the bound (the polynomial reaches 1 within an
    // ulp of them), the constant row from 6 on; x + x Q(x) with one rounding on
    // tiny and denormal x. erfc: the rounding to +0 at 27.226017111108366
    // (10.0541954 in single), denormal results below it, +0 from 28; the rounding
    // to 2 at -5.8635847487551684 (-3.8325069 in single), 2 from -6 on.
    {"erf", {NAN, NAN, INF, 1, -INF, -1, 0, 0, -0.0, -0.0, 0x1p-1074, ACC, -0x1p-1074, ACC, 0x1p-1022, ACC,
             0x0.fffffffffffffp-1022, ACC, 1e-300, ACC, 0x1.7afb48dc96627p+2, ACC, 0x1.7afb48dc96626p+2, ACC,
             -0x1.7afb48dc96627p+2, ACC, 6, 1, 0.125, ACC, 0x1.fffffffffffffp-4, ACC, DBL_MAX, 1, 1, ACC}},
    {"erff", {NAN, NAN, INF, 1, -INF, -1, 0, 0, -0.0, -0.0, 0x1p-149, ACC, -0x1p-149, ACC, 0x1p-126, ACC,
              0x1.f5a88ap+1, ACC, 0x1.f5a888p+1, ACC, -0x1.f5a88ap+1, ACC, 6, 1, FLT_MAX, 1, 1, ACC}},
    {"erfc", {NAN, NAN, INF, 0, -INF, 2, 0, 1, -0.0, 1, 0x1p-1074, 1, 27, ACC, 0x1.b39dc41e48bfdp+4, ACC,
              0x1.b39dc41e48bfcp+4, ACC, 28, 0, 1e300, 0, -0x1.7744f8f74e94bp+2, ACC, -0x1.7744f8f74e94ap+2, ACC,
              -6, 2, -DBL_MAX, 2, 0.5, ACC, 10, ACC, 26.5, ACC}},
    {"erfcf", {NAN, NAN, INF, 0, -INF, 2, 0, 1, -0.0, 1, 0x1p-149, 1, 10, ACC, 0x1.41bbf8p+3, ACC, 0x1.41bbf6p+3, ACC,
               11, 0, FLT_MAX, 0, -0x1.ea8f96p+1, ACC, -0x1.ea8f94p+1, ACC, -6, 2, 28, 0, -FLT_MAX, 2, 1, ACC}},
    // The gamma functions. ln |Gamma|: +inf at the poles (zeros, negative
    // integers, every double from 2^52 down), at +-inf and past 2.55e305;
    // exact zeros at 1 and 2; the sign of Gamma through lgammar's pointer
    // (+-1 at +-0, +1 at the poles and NaN, (-1)^floor(x) on the negative axis).
    {"lgamma,lgammaf", {NAN, NAN, INF, INF, -INF, INF, 0, INF, -0.0, INF, 1, 0, 2, 0, -1, INF, -2, INF, -3, INF,
                        -1e30, INF, 0.5, U(2), 0x1p-149, U(2), 3, U(2), 0.9375, U(2), 0.9375000000000001, U(2),
                        -0.5, U(4), -1.5, U(4), -2.4570247382208006, U(2), -2.7476826467274122, U(2),
                        -3.1435808883499798, U(2), -6.0013852944531552, U(2)}},
    {"lgamma", {-0x1p52, INF, -0x1.fffffffffffffp51, U(4), -1e300, INF, DBL_MAX, INF, 0x1p-1074, U(2), 1e-300, U(2),
                0x1p1000, U(2), 2.5e305, U(2), 2.6e305, INF, 0x1.0000000000001p1000, U(2),
                -10.000000275573013, U(2), -15.999999999999952, U(2), -17.000000000000004, U(2)}},
    {"lgammar,lgammarf", {NAN, NAN, 1, INF, INF, 1, -INF, INF, 1, 0, INF, 1, -0.0, INF, -1, -1, INF, 1, -2, INF, 1,
                          1, 0, 1, 2, 0, 1, 3, U(2), 1, -0.5, U(4), -1, -1.5, U(4), 1, -2.5, U(4), -1,
                          -3.5, U(4), 1, 0x1p-149, U(2), 1, -0x1p-149, U(2), -1}},
    {"lgammar", {-0x1p-1074, U(2), -1, -0x1.fffffffffffffp51, U(4), 1, -2251799813685246.5, U(4), -1,
                 -0x1p52, INF, 1}},
    // Gamma: (n - 1)! exactly while it is a double; +inf from the first double
    // past 171.62437695630271 and from 1/x for x below 2^-1024; NaN at the
    // negative integers and -inf; +-inf at +-0; denormal results on the
    // negative axis.
    {"tgamma,tgammaf", {NAN, NAN, INF, INF, -INF, NAN, 0, INF, -0.0, -INF, -1, NAN, -2, NAN, -1e30, NAN, 1, 1, 2, 1,
                        3, 2, 4, 6, 5, 24, 8, 5040, 11, 3628800, 14, 6227020800.0, 0.5, U(2), -0.5, U(2), -1.5, U(2),
                        -2.5, U(2), 1e-30, U(2), -1e-30, U(2)}},
    {"tgamma", {16, 1307674368000.0, 20, 121645100408832000.0, 23, 1124000727777607680000.0, 171.62437695630271,
                U(2), 0x1.6573fae561f648p+7, INF, 172, INF, DBL_MAX, INF, 0x1p-1074, INF, -0x1p-1074, -INF,
                0x1p-1024, INF, 0x1.0000000000001p-1024, U(2), 171.6, U(2), 171.60000000000002, U(2),
                -0x1p52, NAN, -0x1.fffffffffffffp51, U(2), -170.5, U(2), -171.5, U(2), -180.5, U(2),
                -184.5, U(2), -190.5, -0.0, -191.5, 0}},
    {"tgammaf", {35.0401001, U(2), 35.0401039, INF, 36, INF, -40.5, U(2), -41.5, U(2), -43.5, U(2), -46.5, -0.0,
                 0x1p-128, U(2), 0x1p-149, INF, FLT_MAX, INF, -FLT_MAX, NAN}},
    // Division: IEEE in every class but the single approximate ones, which
    // give the IEEE quotient where the divisor is zero, denormal or huge.
    {"div", {1, 0, INF, 0, 0, NAN, 1, 0x1p-1074, INF, -1, 0, -INF, 1, -0.0, -INF, 6, 3, 2, 1, 0.0078125, 128}},
    {"divf:full", {6, 3, 2}},
    {"divf:fast", {1, 0x1p126, 0x1p-126, 1, 1e-40, INF, 1, -0x1p126, -0x1p-126, 1, 0, INF, 1, -0.0, -INF, 1,
                   0x1p127, 0x1p-127, NAN, 2, NAN}},
    {"invf:fast", {0, INF, -0.0, -INF, NAN, NAN, 1.7e38, 1.0f / 1.7e38f, -1.7e38, -1.0f / 1.7e38f, 0x1p-127, 0x1p127}},
    // Integer division: y = 0 gives (INT_MIN, x) signed and (0, x) unsigned,
    // INT_MIN / -1 gives (INT_MIN, 0).
    {"idivrem", {7, 2, 3, 1, -7, 2, -3, -1, 7, -2, -3, 1, -7, -2, 3, -1, 0, 0, INT_MIN, 0, 5, 0, INT_MIN, 5, -5, 0,
                 INT_MIN, -5, INT_MIN, 0, INT_MIN, INT_MIN, INT_MAX, 0, INT_MIN, INT_MAX, INT_MIN, -1, INT_MIN, 0,
                 INT_MAX, 1, INT_MAX, 0, INT_MAX, -1, -INT_MAX, 0, INT_MIN, 1, INT_MIN, 0, INT_MIN, 2, -0x40000000, 0,
                 INT_MIN, INT_MIN, 1, 0, INT_MAX, INT_MIN, 0, INT_MAX, INT_MIN, INT_MAX, -1, -1, INT_MAX, INT_MAX, 1, 0,
                 INT_MAX - 1, INT_MAX, 0, INT_MAX - 1, INT_MIN + 1, INT_MIN, 0, INT_MIN + 1, INT_MIN, 3, -715827882, -2}},
    {"udivrem", {0xffffffffu, 1, 0xffffffffu, 0, 0xffffffffu, 0xffffffffu, 1, 0, 0, 0, 0, 0, 1, 0, 0, 1, 0xffffffffu,
                 0, 0, 0xffffffffu, 0x80000000u, 0, 0, 0x80000000u, 0xfffffffeu, 0xffffffffu, 0, 0xfffffffeu,
                 0x80000000u, 0x80000001u, 0, 0x80000000u, 0xffffffffu, 2, INT_MAX, 1, 0xffffffffu, 0x10000, 0xffff,
                 0xffff, 0xffffffffu, 0x80000000u, 1, INT_MAX, 0xfffffffeu, INT_MAX, 2, 0, 0xffffffffu, 3, 0x55555555,
                 0, 0xfffffffdu, 3, 0x55555554, 1}},
    // Conversions: ties, saturation, NaN (0 with sat, the integer indefinite
    // without; a positive NaN saturates an unsigned 32-bit lane to its maximum).
    {"cvtfptoi64rtesat", {2.5, 2, -2.5, -2, 3.5, 4, NAN, 0, 4503599627370497.0, 4503599627370497.0}},
    {"cvtfptoi64rtnsat", {-0.5, -1}},
    {"cvtfptoi64rtpsat", {-0.5, 0}},
    {"cvtfptoi64rtzsat", {9.3e18, B(0x7fffffffffffffff), -0x1p63, B(0x8000000000000000)}},
    {"cvtfptoi64rtznosat", {9.3e18, B(0x8000000000000000), -0x1p63, B(0x8000000000000000)}},
    {"cvtfptoi64rtpsatf", {-0x1p63, B(0x8000000000000000), 0x1.fffffep62, B(0x7fffff8000000000)}},
    {"cvtfptoi32rtesat", {-2147483648.4, INT_MIN, 2147483647.4, INT_MAX, 2147483647.5, INT_MAX}},
    {"cvtfptoi32rtenosat", {2147483647.5, INT_MIN, NAN, INT_MIN}},
    {"cvtfptou32rtesat", {B(0x7ff8000000000000), 0xffffffffu, B(0xfff8000000000000), 0, 4294967295.5, 0xffffffffu}},
    {"cvtfptou32rtzsat", {-5, 0, 4294967295.5, 0xffffffffu}},
    {"cvtfptou32rtznosat", {-5, 5, 4294967296.0, 0x80000000u}},
    {"cvtfptou32rtenosat", {-3.7, 4}},
    {"cvtfptou32rtesatf", {3000000000.0, 3000000000u}},
    {"cvtfptou32rtznosatf", {-3000000000.0, 3000000000u}},
    {"cvtfptou64rtesat", {B(0x7ff8000000000000), 0, B(0xfff8000000000000), 0}},
    {"cvtfptou64rtnsatf", {0x1p64, B(~0ull), -0.0, 0}},
    {"cvtfptou64rtpnosat", {-0x1.fffffffffffffp63, B(0xfffffffffffff800)}},
    {"cvtfptou64rtpsat", {0x1.fffffffffffffp63, B(0xfffffffffffff800)}},
    {"cvti32tofprtef", {16777217, 16777216, INT_MIN, -0x1p31}},
    {"cvti32tofprtpf", {16777217, 16777218}},
    {"cvti32tofprtnf", {-16777217, -16777218}},
    {"cvti32tofprtzf", {-16777217, -16777216}},
    {"cvtu64tofprte", {B(~0ull), 0x1p64}},
    {"cvtu64tofprtz", {B(~0ull), 18446744073709549568.0}},
    {"cvti64tofprte", {B(0x8000000000000000), -0x1p63}},
    {"cvtfp64tofp32rte", {1e300, INF, B(0xfff800001fffffff), B(0xffc00000)}},
    {"cvtfp64tofp32rtz", {1e300, FLT_MAX, 1e-50, 0}},
    {"cvtfp64tofp32rtn", {-1e-50, B(0x80000001), 0.1, 0.099999994, -INF, -INF}},
    {"cvtfp64tofp32rtp", {1e-50, 0x1p-149, 0.1, 0.1}},
    // Rounding to integral values (in the default rounding mode).
    {"round", {0.5, 1, 1.5, 2, -0.5, -1, 0.49999999999999994, 0, -0.0, -0.0, -0.2, -0.0, INF, INF, -INF, -INF}},
    {"ceil", {-0.5, -0.0, SN1, QN1}},
    {"floor", {-0.0, -0.0, -0x1p-1074, -1}},
    {"trunc", {-1.7, -1}},
    {"rint,nearbyint", {2.5, 2, 3.5, 4, -0.5, -0.0, 0x1p52 - 0.5, 0x1p52}},
    // Bit-level functions.
    {"ilogb", {0, INT_MIN, -0.0, INT_MIN, INF, INT_MAX, -INF, INT_MAX, 1, 0, -3, 1, -0.75, -1, 0x1p-1074, -1074,
               0x1.8p-1073, -1073, 0x1.ffffffffffffep-1023, -1023, 0x1p-1022, -1022, -DBL_MAX, 1023, 1e300, 996}},
    {"ilogbf", {0, INT_MIN, INF, INT_MAX, 0x1p-149, -149, 0x1.fffffcp-127, -127, FLT_MAX, 127}},
    {"logb,logbf", {0, -INF, -0.0, -INF, INF, INF, -INF, INF, -3, 1, -0.75, -1, 0x1p-149, -149, SN1, QN1}},
    {"modf,modff", {INF, 0, INF, -INF, -0.0, -INF, -2.5, -0.5, -2, -0.75, -0.75, -0.0, -0.0, -0.0, -0.0, SN1, QN1, QN1}},
    {"modf", {0x1.fffffffffffffp51, 0.5, 0x1.ffffffffffffep51, 0x1p53 + 2, 0, 0x1p53 + 2}},
    {"fract,fractf", {-INF, 0, -INF, INF, 0, INF, -0.0, -0.0, -0.0, -2.5, 0.5, -3, -0.75, 0.25, -1, SN1, QN1, QN1}},
    {"fract", {-0x1p-53, kD1m, -1, -0x1p-54, kD1m, -1, -0x1p-1074, kD1m, -1, -0x1.fffffffffffffp51, 0.5, -0x1p52}},
    {"fractf", {-0x1p-24, kF1m, -1, -0x1p-25, kF1m, -1, -0x1.fffffep22, 0.5, -0x1p23}},
    {"nextafter", {0, -1, -0x1p-1074, -0.0, 1, 0x1p-1074, 0, -0.0, -0.0, -0.0, 0, 0, 0x1p-1074, 0, 0, -0x1p-1074, 1,
                   -0.0, 1, 2, 0x1.0000000000001p0, 1, 0, kD1m, -1, 5, -kD1m, DBL_MAX, INF, INF, INF, 0, DBL_MAX,
                   -INF, 0, -DBL_MAX, 0x1p-1022, 0, 0x1.ffffffffffffep-1023, 2, 2, 2, SN1, 1, QN1, 1, QN2, QN2}},
    {"nextafterf", {0, -1, -0x1p-149, 1, 0, kF1m, -1, -2, -0x1.000002p0, FLT_MAX, INF, INF, 0x1p-126, 0,
                    0x1.fffffcp-127}},
    {"nan", {0, B(0x7ff8000000000000), 1, B(0x7ff8000000000001), B(0x000fffffffffffff), B(0x7fffffffffffffff),
             B(~0ull), B(0x7fffffffffffffff), B(0x123456789abcdef0), B(0x7ffc56789abcdef0)}},
    {"nanf", {0, B(0x7fc00000), 1, B(0x7fc00001), B(0xffffffff), B(0x7fffffff), B(0x12345678), B(0x7ff45678)}},
    // Selection: one NaN operand gives the other one, two give y's quieted;
    // equal magnitudes: maxmag the larger, minmag the smaller.
    {"fmax,fmaxf", {SN1, 2, 2, 2, SN1, 2, SN1, QN2, QN2, QN2, SN1, QN1, 0, -0.0, -0.0, -0.0, 0, 0, -INF, 3, 3, INF,
                    SN1, INF}},
    {"fmin,fminf", {0, -0.0, -0.0, -0.0, 0, 0, SN1, -2, -2, INF, -INF, -INF}},
    {"maxmag,maxmagf", {-3, 2, -3, -2, 2, 2, 2, -2, 2, 0, -0.0, 0, -INF, INF, INF, SN1, -5, -5}},
    {"minmag,minmagf", {-2, 2, -2, 2, -2, -2, -0.0, 0, -0.0, 1, -INF, 1, QN2, SN1, QN1}},
    {"fdim,fdimf", {5, 3, 2, 3, 5, 0, INF, INF, 0, -INF, -INF, 0, INF, 1, INF, 1, INF, 0, SN1, 1, QN1, 1, SN1, QN1,
                    SN1, QN2, QN2, QN2, SN1, QN1, -0.0, -0.0, 0}},
    {"copysign,copysignf", {SN1, -1, B(0xfff0000000000001), 3, -0.0, -3, -INF, QN1, INF, -0.0, 1, 0}},
    {"fabs,fabsf", {-0.0, 0, -INF, INF, QN2, B(0x7ff8000000000002), B(0xfff0000000000001), SN1}},
    {"fma,fmaf", {2, 3, -6, 0, -2, 3, 6, 0, -0.0, 1, -0.0, -0.0, 0x1p100, 0x1p10, -INF, -INF, QN2, SN1, 1, QN2,
                  1, SN1, QN2, QN1, INF, 0, 1, DN, INF, 0, SN1, QN1, INF, 1, -INF, DN}},
    {"fma", {1 + 0x1p-52, 1 - 0x1p-52, -1, -0x1p-104, 0x1p-537, 0x1p-537, 0, 0x1p-1074}},
    // Remainders: exact; x infinite or y zero give the default NaN, a NaN
    // operand itself quieted; remquo's 7 low quotient bits with the sign of x/y.
    {"remquo", {5, 2, 1, 2, 7, 2, -1, 4, -7, 2, 1, -4, 7, -2, -1, -4, -0.0, 1, -0.0, 0, -4, 2, -0.0, -2, 1, -INF, 1, 0,
                0x1p1023, 0x1p-1074, 0, 0, 0x1.8p-1073, 0x1p-1074, 0, 3, 0x1.8p-1073, 0x1p-1073, -0x1p-1074, 2, 259,
                2, -1, 2, 0x1p60 + 0x1p8, 3, -1, 43, INF, 1, NAN, 0, 1, 0, NAN, 0, SN1, 1, QN1, 0}},
    {"fmod", {5, 2, 1, 7, 2, 1, -7, 2, -1, -4, 2, -0.0, 1, -INF, 1, 0x1.8p-1073, 0x1p-1073, 0x1p-1074, 259, 2, 1,
              0x1p60 + 0x1p8, 3, 2, INF, 1, NAN, 0, 0, NAN}},
    {"remainder,remainderf", {5, 3, -1, 7, 2, -1, 1, 0, NAN}},
    // ldexp: one rounding (ties to even), overflow, underflow, any n;
    // zeros, infinities and NaN unchanged bit for bit.
    {"ldexp", {1, -1074, 0x1p-1074, 1, -1075, 0, -1, -1075, -0.0, 1.5, -1075, 0x1p-1074, 0x1.8p-1073, -1, 0x1p-1073,
               0x1.4p-1071, -3, 0x1p-1074, 3, -1076, 0x1p-1074, 0x1.8p-1070, -3, 0x1.8p-1073, DBL_MAX, -2098,
               0x1p-1074, DBL_MAX, -2099, 0, 0x1p-1074, 2097, 0x1p1023, 0x1p-1074, 2098, INF, -0x1p-1074, INT_MAX, -INF,
               0x1p-1074, 1074, 1, DBL_MAX, 1, INF, -DBL_MAX, INT_MIN, -0.0, 0x1p-1022, -1, 0x1p-1023, kD1m, -1022,
               0x1p-1022, -0.0, 100, -0.0, 0, INT_MIN, 0, -INF, -100000, -INF, 3, 0, 3, 1, 1023, 0x1p1023, 1, 1024,
               INF, 1, 4097, INF, 1, -4097, 0, SN1, 5, SN1, DN, INT_MIN, DN}},
    {"ldexpf", {1, -149, 0x1p-149, 1, -150, 0, -1, -150, -0.0, 1.5, -150, 0x1p-149, 0x1.8p-148, -1, 0x1p-148,
                0x1.4p-146, -3, 0x1p-149, FLT_MAX, -277, 0x1p-149, FLT_MAX, -278, 0, 0x1p-149, 276, 0x1p127, 0x1p-149,
                277, INF, -0x1p-149, INT_MAX, -INF, -FLT_MAX, INT_MIN, -0.0, kF1m, -126, 0x1p-126, 1, 128, INF, SN1,
                -7, SN1}},
    {"frexp", {1, 0.5, 1, -0x1p-1074, -0.5, -1073, 0, 0, 0, -0.0, -0.0, 0, INF, INF, 0, -INF, -INF, 0, DBL_MAX, kD1m,
               1024, 0x1.ffffffffffffep-1023, 0x1.ffffffffffffep-1, -1022, 0x1p-1022, 0.5, -1021, -3, -0.75, 2,
               0x1.8p-1060, 0.75, -1059, SN1, SN1, 0}},
    // Single sine, cosine and tangent: the scalar routine's rows (infinities
    // give x * 0, the default NaN; NaN quieted; zeros); the fast paths'
    // bounds and the next single above (the full-range path), FLT_MAX,
    // multiples of pi/2 and their neighbours within the class bound.
    {"sinf,tanf", {INF, DN, -INF, DN, SN1, QN1, QN2, QN2, 0, 0, -0.0, -0.0, 0x1p-149, ACC, -0x1p-126, ACC, 1e-30, ACC,
                   FLT_MAX, ACC, -FLT_MAX, ACC, 0x1p127, ACC, 1.57079637, ACC, 3.14159274, ACC, -4.71238899, ACC,
                   6.28318548, ACC, 0x1.921fb6p+24, ACC, 1e22, ACC}},
    {"sinf:full", {0x1p-149, 0x1p-149, -0x1p-126, -0x1p-126, 1e-30, 1e-30}},
    {"sinf", {10000, ACC, 10000.0009765625, ACC, -10000.0009765625, ACC, 0x1.fffffep-1, ACC}},
    {"cosf", {INF, DN, -INF, DN, SN1, QN1, QN2, QN2, 0, 1, -0.0, 1, 0x1p-149, 1, 1e-30, 1, -0x1p-13, ACC, 10000, ACC,
              10000.0009765625, ACC, -10000.0009765625, ACC, FLT_MAX, ACC, -FLT_MAX, ACC, 1.57079637, ACC,
              3.14159274, ACC, -4.71238899, ACC, 0x1.921fb6p+24, ACC, 1e22, ACC}},
    {"tanf", {8256, ACC, 8256.0009765625, ACC, -8256.0009765625, ACC, 0x1.921fb4p+0, ACC, 0x1.921fb8p+0, ACC,
              -0x1.2d97c8p+3, ACC}},
    // sincosf, sincosregf: (x, sine, cosine); infinities and NaN give NaN
    // inline; 2^19 takes the large-argument path, the single below it not.
    {"sincosf,sincosregf", {0, 0, 1, -0.0, -0.0, 1, 0x1p-149, 0x1p-149, 1, INF, NAN, NAN, -INF, NAN, NAN, NAN, NAN,
                            NAN, 1.57079637, 1, -4.37113883e-08, 0x1p19, ACC, ACC, 0x1.fffffep18, ACC, ACC,
                            -0x1p19, ACC, ACC, FLT_MAX, ACC, ACC, -FLT_MAX, ACC, ACC, 3.14159274, ACC, ACC,
                            0x1.921fb6p+24, ACC, ACC, 1e22, ACC, ACC}},
    {"frexpf", {1, 0.5, 1, -0x1p-149, -0.5, -148, INF, INF, 0, FLT_MAX, kF1m, 128, 0x1.fffffcp-127, 0x1.fffffcp-1,
                -126, 0x1p-126, 0.5, -125, -3, -0.75, 2}},
};

// The lane bits of a table value.
uint64_t lane_of(const V& v, Lane t) {
  if (v.kind == V::kBits)
    return t != kS || v.b >> 32 == 0 ? (lane_bytes(t) == 4 ? (uint32_t)v.b : v.b)
                                     : (v.b >> 32 & 0x80000000) | 0x7f800000 | (v.b >> 29 & 0x400000) | (v.b & 0x3fffff);
  if (t == kD) return bits(v.d);
  if (t == kS) return bits((float)v.d);
  const uint64_t u = (uint64_t)(int64_t)v.d;
  return lane_bytes(t) == 4 ? (uint32_t)u : u;
}

template <class T> bool near_mpfr(const V& want, const std::string& family, const std::string& algorithm, uint64_t x,
                                  double y, uint64_t got, int result) {
  UlpRef<T> ref(mpfr_of(family, result), mpfr2_of(family));
  if (want.kind == V::kUlp)
    return ref.ulp_error2(from_bits<T>(x), y, from_bits<T>(got)) <= (want.d ? want.d : class_bound(family, algorithm));
  const T cr = ref.correct(from_bits<T>(x), y);
  return std::isnan(cr) ? is_nan(from_bits<T>(got)) : bits(cr) == got;
}

// x: the first argument's lane bits; y: the second argument's value (0 for
// one-argument families).
bool matches(const V& want, Lane t, uint64_t got, const std::string& family, const std::string& algorithm,
             uint64_t x, double y, int result) {
  switch (want.kind) {
    case V::kAnyNan: return t == kD ? is_nan(from_bits<double>(got)) : t == kS && is_nan(from_bits<float>(got));
    case V::kCorrect:
    case V::kUlp:
      return t == kD ? near_mpfr<double>(want, family, algorithm, x, y, got, result)
                     : near_mpfr<float>(want, family, algorithm, x, y, got, result);
    default: return got == lane_of(want, t);
  }
}

struct Case {
  std::string algorithm;  // empty: every algorithm
  std::vector<V> in, out;
};
// The cases of one family, split by the family's signature.
std::vector<Case> cases(const std::string& family) {
  std::vector<Case> v;
  const ExportRow* e = nullptr;
  for (const ExportRow& r : kExports)
    if (r.family == family && !e) e = &r;
  if (!e) return v;
  const Shape sh = parse_shape(*e);
  for (const Row& row : kRows) {
    std::string list = std::string(row.families) + ",";
    for (size_t at = 0, comma; (comma = list.find(',', at)) != std::string::npos; at = comma + 1) {
      const std::string item = list.substr(at, comma - at), name = item.substr(0, item.find(':'));
      if (name != family) continue;
      const size_t n = (size_t)(sh.nin + sh.nout);
      for (size_t k = 0; k + n <= row.v.size(); k += n)
        v.push_back({item.size() > name.size() ? item.substr(name.size() + 1) : "",
                     {row.v.begin() + k, row.v.begin() + k + sh.nin}, {row.v.begin() + k + sh.nin, row.v.begin() + k + n}});
    }
  }
  return v;
}

std::vector<std::string> families() {
  std::vector<std::string> v;
  for (const ExportRow& e : kExports)
    if (e.width == 1 && !strcmp(e.cls, "plain") && !cases(e.family).empty()) v.push_back(e.family);
  return v;
}

std::string lane_text(uint64_t v) {
  char b[24];
  snprintf(b, sizeof b, "0x%llx", (unsigned long long)v);
  return b;
}

class Special : public ::testing::TestWithParam<std::string> {};

TEST_P(Special, Table) {
  const std::string family = GetParam();
  const std::vector<Case> all = cases(family);
  int bad = 0;
  for (const ExportRow& e : kExports) {
    if (e.family != family || e.width != 1) continue;
    std::vector<Case> mine;
    for (const Case& c : all)
      if (c.algorithm.empty() || c.algorithm == e.algorithm) mine.push_back(c);
    for (int w : {1, 2, 3, 4, 8, 16}) {
      const std::string name = member(family, e.cls, w);
      if (!callee(name)) continue;
      const Shape& sh = callee(name)->shape;
      // Block 0: ordinary lanes; block 1 + c * w + p: case c in lane p.
      Lanes args(sh.nin);
      for (size_t blk = 0; blk < 1 + mine.size() * w; ++blk)
        for (int j = 0; j < w; ++j)
          for (int i = 0; i < sh.nin; ++i) {
            const bool hit = blk > 0 && j == (int)(blk - 1) % w;
            const double ordinary = is_fp(sh.in_t[i]) ? 0.3 + 0.171875 * j + 0.25 * i : 7 + 3 * j + i;
            args[i].push_back(lane_of(hit ? mine[(blk - 1) / w].in[i] : V(ordinary), sh.in_t[i]));
          }
      const Lanes out = run_lanes(name, args);
      for (size_t blk = 1; blk < 1 + mine.size() * w; ++blk) {
        const Case& c = mine[(blk - 1) / w];
        const size_t p = (blk - 1) % w, at = blk * w;
        for (int k = 0; k < sh.nout; ++k)
          for (int j = 0; j < w; ++j) {
            const uint64_t got = out[k][at + j];
            const bool ok = j == (int)p ? k >= (int)c.out.size() ||
                                              matches(c.out[k], sh.out_t[k], got, family, e.algorithm, args[0][at + p],
                                                      sh.nin > 1 ? lane_value(args[1][at + p], sh.in_t[1]) : 0, k)
                                        : got == out[k][j];
            if (!ok && bad++ < 10)
              ADD_FAILURE() << family << " " << e.cls << " width " << w << " with x = " << lane_text(args[0][at + p]) << " in lane " << p << ": output " << k
                            << " lane " << j << " is " << lane_text(got) << ", want "
                            << (j == (int)p ? lane_text(lane_of(c.out[k], sh.out_t[k])) : lane_text(out[k][j]) + " (its ordinary bits)");
          }
      }
    }
    // The exact reference, where the family has one, agrees with the table.
    for (const Case& c : mine) {
      const Shape sh = parse_shape(e);
      uint64_t in[3] = {}, want[3] = {};
      for (int i = 0; i < sh.nin; ++i) in[i] = lane_of(c.in[i], sh.in_t[i]);
      if (!reference(family, e.algorithm, in, want, 0)) break;
      for (size_t k = 0; k < c.out.size(); ++k)
        EXPECT_TRUE(matches(c.out[k], sh.out_t[k], want[k], family, e.algorithm, in[0],
                            sh.nin > 1 ? lane_value(in[1], sh.in_t[1]) : 0, (int)k))
            << "the reference of " << family << " on " << lane_text(in[0]) << " gives " << lane_text(want[k]);
    }
  }
  EXPECT_EQ(bad, 0);
}

INSTANTIATE_TEST_SUITE_P(, Special, ::testing::ValuesIn(families()),
                         [](const ::testing::TestParamInfo<std::string>& i) { return i.param; });

// log2(2^k) = k for every power of two, denormal ones too, in every class;
// log10(10^k) = k for every power of ten exact in the format (plain class).
TEST(SpecialPowers, ExactAtPowersOfTheBase) {
  const struct {
    const char* family;
    bool every_class;
    int base, kmin, kmax;
  } kPowers[] = {{"log2", true, 2, -1074, 1023}, {"log2f", true, 2, -149, 127}, {"log10", false, 10, 0, 22},
                 {"log10f", false, 10, 0, 10}};
  for (const auto& p : kPowers)
    for (const ExportRow& e : kExports) {
      if (e.family != std::string(p.family) || e.width != 16 || (!p.every_class && strcmp(e.cls, "plain"))) continue;
      const Lane t = parse_shape(e).in_t[0];
      std::vector<uint64_t> x;
      for (int k = p.kmin; k <= p.kmax; ++k) x.push_back(lane_of(std::pow((double)p.base, k), t));
      const std::vector<uint64_t> got = run_lanes(e.name + kPrefix, {x})[0];
      for (int k = p.kmin; k <= p.kmax; ++k)
        EXPECT_EQ(got[k - p.kmin], lane_of(k, t)) << e.name << " at " << p.base << "^" << k;
    }
}

// Every row names exported families and algorithms and holds whole cases;
// every family with an MPFR reference has rows.
TEST(SpecialTable, RowsAreWellFormed) {
  for (const Row& row : kRows) {
    std::string list = std::string(row.families) + ",";
    for (size_t at = 0, comma; (comma = list.find(',', at)) != std::string::npos; at = comma + 1) {
      const std::string item = list.substr(at, comma - at), name = item.substr(0, item.find(':'));
      const ExportRow* e = nullptr;
      for (const ExportRow& r : kExports)
        if (r.family == name && (name == item || item.substr(name.size() + 1) == r.algorithm)) e = &r;
      ASSERT_TRUE(e) << item << " is not an exported family and algorithm";
      const Shape sh = parse_shape(*e);
      EXPECT_EQ(row.v.size() % (sh.nin + sh.nout), 0u) << row.families << ": not a whole number of cases";
    }
  }
  for (const ExportRow& e : kExports)
    if (has_reference(e.family)) EXPECT_FALSE(cases(e.family).empty()) << e.family;
}

}  // namespace

std::vector<double> table_points(const std::string& family) {
  std::vector<double> v;
  for (const Case& c : cases(family))
    if (c.in[0].kind == V::kNum && std::isfinite(c.in[0].d)) v.push_back(c.in[0].d);
  return v;
}

}  // namespace ravl_test
