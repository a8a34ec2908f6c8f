/* A Windows program in the MSVC target's object format, linked by lld-link
   against the installed import library with no C runtime (as MSVC's link
   would link it): a register-form call and a two-result wrapper. Its exit
   code is 42 when both give the expected values. */
#include <ocl_ravl_l9.h>

int _fltused;

int ravl_consumer_entry(void) {
  ocl_ravl_double4 x = {0.0, 1.0, 2.0, 3.0};
  ocl_ravl_double4 e = __ocl_ravl_l9_exp4(x);
  ocl_ravl_int4 a = {7, -7, 7, -7}, b = {2, 2, -2, -2};
  ocl_ravl_int4_pair qr = ocl_ravl_l9_idivrem4(a, b);
  if (e[0] != 1.0 || !(e[1] > 2.718281828 && e[1] < 2.718281829)) return 1;
  if (qr.r0[1] != -3 || qr.r1[1] != -1 || qr.r0[2] != -3 || qr.r1[2] != 1) return 2;
  return 42;
}
