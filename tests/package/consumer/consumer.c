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

static void check_integer_pairs(void) {
  ocl_ravl_int16 x = {7, -7, 7, -7, 100, -100, 2147483647, (int32_t)0x80000000,
                      5, 6, 7, 8, 9, 10, 11, 12};
  ocl_ravl_int16 y = {2, 2, -2, -2, 7, 7, 3, -1, 1, 2, 3, 4, 5, 6, 7, 8};
  ocl_ravl_uint16 ux = {7, 4000000000u, 9, 10, 11, 12, 13, 14, 15, 16, 17, 18, 19, 20, 21, 22};
  ocl_ravl_uint16 uy = {2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16, 3};
  ocl_ravl_int4 x4 = x.lo.lo, y4 = y.lo.lo;
  ocl_ravl_int4 q4 = __ocl_ravl_l9_idiv4(x4, y4), r4 = __ocl_ravl_l9_irem4(x4, y4);
  ocl_ravl_int4_pair p2 = ocl_ravl_l9_idivrem2(x4, y4);
  ocl_ravl_int4_pair p3 = ocl_ravl_l9_idivrem3(x4, y4);
  ocl_ravl_int4_pair p4 = ocl_ravl_l9_idivrem4(x4, y4);
  SAME(p2.r0, q4, 8, "idivrem2 quotient");
  SAME(p2.r1, r4, 8, "idivrem2 remainder");
  SAME(p3.r0, q4, 12, "idivrem3 quotient");
  SAME(p3.r1, r4, 12, "idivrem3 remainder");
  SAME(p4.r0, q4, 16, "idivrem4 quotient");
  SAME(p4.r1, r4, 16, "idivrem4 remainder");
  CHECK(p4.r0[0] == 3 && p4.r0[1] == -3 && p4.r0[2] == -3 && p4.r0[3] == 3, "idivrem4 values");
  CHECK(p4.r1[0] == 1 && p4.r1[1] == -1 && p4.r1[2] == 1 && p4.r1[3] == -1, "idivrem4 values");
  ocl_ravl_int_pair p1 = ocl_ravl_l9_idivrem1(-7, 2);
  CHECK(p1.r0 == -3 && p1.r1 == -1, "idivrem1");
  ocl_ravl_int8_pair p8 = ocl_ravl_l9_idivrem8(x.lo, y.lo);
  ocl_ravl_int8 q8 = __ocl_ravl_l9_idiv8(x.lo, y.lo), r8 = __ocl_ravl_l9_irem8(x.lo, y.lo);
  SAME(p8.r0, q8, 32, "idivrem8 quotient");
  SAME(p8.r1, r8, 32, "idivrem8 remainder");
  ocl_ravl_int16_pair p16 = ocl_ravl_l9_idivrem16(x.lo, x.hi, y.lo, y.hi);
  ocl_ravl_int16 q16 = __ocl_ravl_l9_idiv16(x.lo, x.hi, y.lo, y.hi);
  ocl_ravl_int16 r16 = __ocl_ravl_l9_irem16(x.lo, x.hi, y.lo, y.hi);
  SAME(p16.r0, q16, 64, "idivrem16 quotient");
  SAME(p16.r1, r16, 64, "idivrem16 remainder");
  ocl_ravl_uint4 uq = __ocl_ravl_l9_udiv4(ux.lo.lo, uy.lo.lo), ur = __ocl_ravl_l9_urem4(ux.lo.lo, uy.lo.lo);
  ocl_ravl_uint4_pair up = ocl_ravl_l9_udivrem4(ux.lo.lo, uy.lo.lo);
  SAME(up.r0, uq, 16, "udivrem4 quotient");
  SAME(up.r1, ur, 16, "udivrem4 remainder");
  ocl_ravl_uint4_pair up2 = ocl_ravl_l9_udivrem2(ux.lo.lo, uy.lo.lo);
  SAME(up2.r0, uq, 8, "udivrem2 quotient");
  SAME(up2.r1, ur, 8, "udivrem2 remainder");
  ocl_ravl_uint_pair up1 = ocl_ravl_l9_udivrem1(4000000000u, 3u);
  CHECK(up1.r0 == 1333333333u && up1.r1 == 1u, "udivrem1");
}

static void check_sincos_pairs(void) {
  ocl_ravl_double16 x = {0.5, -1.25, 3.0, 1e6, 2.0, -0.75, 10.0, 100.0,
                         0.1, 0.2, 0.3, 0.4, 0.6, 0.7, 0.8, 0.9};
  double c16[16];
  ocl_ravl_double4 s4 = __ocl_ravl_l9_sincos4(x.lo.lo, c16);
  ocl_ravl_double4_pair p4 = ocl_ravl_l9_sincosreg4(x.lo.lo);
  SAME(p4.r0, s4, 32, "sincosreg4 sine");
  SAME(p4.r1, c16, 32, "sincosreg4 cosine");
  ocl_ravl_double2 s2 = __ocl_ravl_l9_sincos2(x.lo.lo.lo, c16);
  ocl_ravl_double2_pair p2 = ocl_ravl_l9_sincosreg2(x.lo.lo.lo);
  SAME(p2.r0, s2, 16, "sincosreg2 sine");
  SAME(p2.r1, c16, 16, "sincosreg2 cosine");
  ocl_ravl_double2_pair p2n = ocl_ravl_l9_sincosreg2_native(x.lo.lo.lo);
  ocl_ravl_double2 s2n = __ocl_ravl_l9_sincos2_native(x.lo.lo.lo, c16);
  SAME(p2n.r0, s2n, 16, "sincosreg2_native sine");
  SAME(p2n.r1, c16, 16, "sincosreg2_native cosine");
  double c1;
  double s1 = __ocl_ravl_l9_sincos1(0.5, &c1);
  ocl_ravl_double_pair p1 = ocl_ravl_l9_sincosreg1(0.5);
  CHECK(p1.r0 == s1 && p1.r1 == c1, "sincosreg1");
  double c16b[16];
  ocl_ravl_double16_pair p16 = ocl_ravl_l9_sincosreg16(&x);
  ocl_ravl_double16 s16 = __ocl_ravl_l9_sincos16(x.lo.lo, x.lo.hi, x.hi.lo, x.hi.hi, c16b);
  SAME(p16.r0, s16, 128, "sincosreg16 sine");
  SAME(p16.r1, c16b, 128, "sincosreg16 cosine");

  ocl_ravl_float16 xf = {0.5f, -1.25f, 3.0f, 1e6f, 2.0f, -0.75f, 10.0f, 100.0f,
                         0.1f, 0.2f, 0.3f, 0.4f, 0.6f, 0.7f, 0.8f, 0.9f};
  float cf[16];
  for (int w = 2; w <= 4; w++) {
    ocl_ravl_float4 sf = __ocl_ravl_l9_sincosf4(xf.lo.lo, cf);
    ocl_ravl_float4_pair pf = w == 2 ? ocl_ravl_l9_sincosregf2(xf.lo.lo)
                            : w == 3 ? ocl_ravl_l9_sincosregf3(xf.lo.lo)
                                     : ocl_ravl_l9_sincosregf4(xf.lo.lo);
    SAME(pf.r0, sf, 4 * w, "sincosregf2-4 sine");
    SAME(pf.r1, cf, 4 * w, "sincosregf2-4 cosine");
  }
  ocl_ravl_float8 sf8 = __ocl_ravl_l9_sincosf8(xf.lo, cf);
  ocl_ravl_float8_pair pf8 = ocl_ravl_l9_sincosregf8(xf.lo);
  SAME(pf8.r0, sf8, 32, "sincosregf8 sine");
  SAME(pf8.r1, cf, 32, "sincosregf8 cosine");
  float cf1;
  float sf1 = __ocl_ravl_l9_sincosf1(0.5f, &cf1);
  ocl_ravl_float_pair pf1 = ocl_ravl_l9_sincosregf1(0.5f);
  CHECK(pf1.r0 == sf1 && pf1.r1 == cf1, "sincosregf1");
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
