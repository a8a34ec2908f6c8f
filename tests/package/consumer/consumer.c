/* A program built against an installed libocl_ravl_l9 only (its header and
   library), as C and as C++: a register-form call, a wide call, a by-address
   call, and every two-result wrapper compared with the one-result members
   (idiv/irem, udiv/urem) or the by-pointer sincos. Prints "consumer: ok". */
#include <ocl_ravl_l9.h>
#include <stdio.h>
#include <string.h>

static int failures;
#define CHECK(cond, what)                         \
  do {                                            \
    if (!(cond)) {                                \
      printf("consumer: FAILED %s\n", what);      \
      failures++;                                 \
    }                                             \
  } while (0)
#define SAME(a, b, n, what) CHECK(memcmp(&(a), &(b), n) == 0, what)

/* The wrapper's struct against the one-result members' results, bit for bit. */
#define PAIR_IS(PT, call, first, second, n, what) \
  do {                                            \
    PT p_ = call;                                 \
    SAME(p_.r0, first, n, what);                  \
    SAME(p_.r1, second, n, what);                 \
  } while (0)

static void check_integer_pairs(void) {
  ocl_ravl_int16 x = {7, -7, 7, -7, 100, -100, 2147483647, (int32_t)0x80000000,
                      5, 6, 7, 8, 9, 10, 11, 12};
  ocl_ravl_int16 y = {2, 2, -2, -2, 7, 7, 3, -1, 1, 2, 3, 4, 5, 6, 7, 8};
  ocl_ravl_uint4 ux = {7, 4000000000u, 9, 10}, uy = {2, 3, 4, 0};
  ocl_ravl_int4 x4 = x.lo.lo, y4 = y.lo.lo;
  ocl_ravl_int4 q4 = __ocl_ravl_l9_idiv4(x4, y4), r4 = __ocl_ravl_l9_irem4(x4, y4);
  ocl_ravl_int4 want_q = {3, -3, -3, 3}, want_r = {1, -1, 1, -1};
  PAIR_IS(ocl_ravl_int4_pair, ocl_ravl_l9_idivrem2(x4, y4), q4, r4, 8, "idivrem2");
  PAIR_IS(ocl_ravl_int4_pair, ocl_ravl_l9_idivrem3(x4, y4), q4, r4, 12, "idivrem3");
  PAIR_IS(ocl_ravl_int4_pair, ocl_ravl_l9_idivrem4(x4, y4), q4, r4, 16, "idivrem4");
  PAIR_IS(ocl_ravl_int4_pair, ocl_ravl_l9_idivrem4(x4, y4), want_q, want_r, 16, "idivrem4 values");
  int32_t q1 = -3, r1 = -1;
  PAIR_IS(ocl_ravl_int_pair, ocl_ravl_l9_idivrem1(-7, 2), q1, r1, 4, "idivrem1");
  ocl_ravl_int8 q8 = __ocl_ravl_l9_idiv8(x.lo, y.lo), r8 = __ocl_ravl_l9_irem8(x.lo, y.lo);
  PAIR_IS(ocl_ravl_int8_pair, ocl_ravl_l9_idivrem8(x.lo, y.lo), q8, r8, 32, "idivrem8");
  ocl_ravl_int16 q16 = __ocl_ravl_l9_idiv16(x.lo, x.hi, y.lo, y.hi);
  ocl_ravl_int16 r16 = __ocl_ravl_l9_irem16(x.lo, x.hi, y.lo, y.hi);
  PAIR_IS(ocl_ravl_int16_pair, ocl_ravl_l9_idivrem16(x.lo, x.hi, y.lo, y.hi), q16, r16, 64, "idivrem16");
  ocl_ravl_uint4 uq = __ocl_ravl_l9_udiv4(ux, uy), ur = __ocl_ravl_l9_urem4(ux, uy);
  PAIR_IS(ocl_ravl_uint4_pair, ocl_ravl_l9_udivrem2(ux, uy), uq, ur, 8, "udivrem2");
  PAIR_IS(ocl_ravl_uint4_pair, ocl_ravl_l9_udivrem4(ux, uy), uq, ur, 16, "udivrem4");
  uint32_t uq1 = 1333333333u, ur1 = 1u;
  PAIR_IS(ocl_ravl_uint_pair, ocl_ravl_l9_udivrem1(4000000000u, 3u), uq1, ur1, 4, "udivrem1");
}

static void check_sincos_pairs(void) {
  ocl_ravl_double16 x = {0.5, -1.25, 3.0, 1e6, 2.0, -0.75, 10.0, 100.0,
                         0.1, 0.2, 0.3, 0.4, 0.6, 0.7, 0.8, 0.9};
  double c[16], c1;
  ocl_ravl_double2 s2 = __ocl_ravl_l9_sincos2(x.lo.lo.lo, c);
  PAIR_IS(ocl_ravl_double2_pair, ocl_ravl_l9_sincosreg2(x.lo.lo.lo), s2, c, 16, "sincosreg2");
  s2 = __ocl_ravl_l9_sincos2_native(x.lo.lo.lo, c);
  PAIR_IS(ocl_ravl_double2_pair, ocl_ravl_l9_sincosreg2_native(x.lo.lo.lo), s2, c, 16, "sincosreg2_native");
  ocl_ravl_double4 s4 = __ocl_ravl_l9_sincos4(x.lo.lo, c);
  PAIR_IS(ocl_ravl_double4_pair, ocl_ravl_l9_sincosreg4(x.lo.lo), s4, c, 32, "sincosreg4");
  ocl_ravl_double16 s16 = __ocl_ravl_l9_sincos16(x.lo.lo, x.lo.hi, x.hi.lo, x.hi.hi, c);
  PAIR_IS(ocl_ravl_double16_pair, ocl_ravl_l9_sincosreg16(&x), s16, c, 128, "sincosreg16");
  double s1 = __ocl_ravl_l9_sincos1(0.5, &c1);
  PAIR_IS(ocl_ravl_double_pair, ocl_ravl_l9_sincosreg1(0.5), s1, c1, 8, "sincosreg1");

  ocl_ravl_float8 xf = {0.5f, -1.25f, 3.0f, 1e6f, 2.0f, -0.75f, 10.0f, 100.0f};
  float cf[8], cf1;
  ocl_ravl_float4 sf = __ocl_ravl_l9_sincosf4(xf.lo, cf);
  PAIR_IS(ocl_ravl_float4_pair, ocl_ravl_l9_sincosregf2(xf.lo), sf, cf, 8, "sincosregf2");
  PAIR_IS(ocl_ravl_float4_pair, ocl_ravl_l9_sincosregf3(xf.lo), sf, cf, 12, "sincosregf3");
  PAIR_IS(ocl_ravl_float4_pair, ocl_ravl_l9_sincosregf4(xf.lo), sf, cf, 16, "sincosregf4");
  ocl_ravl_float8 sf8 = __ocl_ravl_l9_sincosf8(xf, cf);
  PAIR_IS(ocl_ravl_float8_pair, ocl_ravl_l9_sincosregf8(xf), sf8, cf, 32, "sincosregf8");
  float sf1 = __ocl_ravl_l9_sincosf1(0.5f, &cf1);
  PAIR_IS(ocl_ravl_float_pair, ocl_ravl_l9_sincosregf1(0.5f), sf1, cf1, 4, "sincosregf1");
}

int main(void) {
  ocl_ravl_double4 x = {0.0, 1.0, -1.0, 0.5};
  ocl_ravl_double4 e = __ocl_ravl_l9_exp4(x);
  CHECK(e[0] == 1.0 && e[1] > 2.718281828459045 * (1 - 1e-15) && e[1] < 2.718281828459045 * (1 + 1e-15),
        "exp4");
  ocl_ravl_double16 w = {0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15};
  ocl_ravl_double16 ew = __ocl_ravl_l9_exp16(w.lo.lo, w.lo.hi, w.hi.lo, w.hi.hi);
  ocl_ravl_double4 e4 = __ocl_ravl_l9_exp4(w.hi.hi);
  ocl_ravl_double4 ew3 = ew.hi.hi;
  SAME(ew3, e4, 32, "exp16 = exp4 on its last quarter");
  ocl_ravl_double8 a = {1, 2, 3, 4, 5, 6, 7, 8}, r;
  __ocl_ravl_l9_fma8(&r, &a, &a, &a);
  CHECK(r[7] == 72.0, "fma8 by address");
  check_integer_pairs();
  check_sincos_pairs();
  if (failures) return 1;
  printf("consumer: ok (%d exports in the header)\n", OCL_RAVL_EXPORT_COUNT);
  return 0;
}
