/* A C client of libocl_ravl_l9: calls a few entry points through the public
   header, in the register form and the by-address form. */
#include <stdio.h>

#include "ocl_ravl_l9.h"

int main(void) {
  ocl_ravl_double4 x = {0.0, 1.0, -720.0, 710.0};
  ocl_ravl_double4 e = __ocl_ravl_l9_exp4(x);
  printf("exp4(0, 1, -720, 710)       = %a %a %a %a\n", e[0], e[1], e[2], e[3]);

  ocl_ravl_float8 xf = {0.0f, 1.0f, -1.0f, 10.0f, -100.0f, 88.5f, 0.5f, 2.0f};
  ocl_ravl_float8 ef = __ocl_ravl_l9_expf8_native(xf);
  printf("expf8_native(0, 1, ..)      = %g %g %g %g ...\n", ef[0], ef[1], ef[2], ef[3]);

  ocl_ravl_double4 a = {1.0, -0.0, 2.0, 3.0}, b = {2.0, 0.0, __builtin_nan(""), -4.0};
  ocl_ravl_double4 m = __ocl_ravl_l9_fmax4(a, b);
  printf("fmax4((1,-0,2,3),(2,0,NaN,-4)) = %g %g %g %g\n", m[0], m[1], m[2], m[3]);

  ocl_ravl_int4 n = {7, -7, 7, -2147483647 - 1}, d = {2, 2, 0, -1};
  ocl_ravl_int4 q = __ocl_ravl_l9_idiv4(n, d);
  printf("idiv4((7,-7,7,INT_MIN),(2,2,0,-1)) = %d %d %d %d\n", q[0], q[1], q[2], q[3]);

  int ex[4];
  ocl_ravl_double4 mant = __ocl_ravl_l9_frexp4(x, ex);
  printf("frexp4(0, 1, -720, 710)     = %g*2^%d %g*2^%d %g*2^%d %g*2^%d\n", mant[0], ex[0], mant[1], ex[1],
         mant[2], ex[2], mant[3], ex[3]);

  double in[3][8], out[8];
  for (int i = 0; i < 8; ++i) { in[0][i] = i; in[1][i] = 0.5; in[2][i] = -1.0; }
  __ocl_ravl_l9_fma8(out, in[0], in[1], in[2]); /* by-address: 3 x 2 registers */
  printf("fma8(i, 0.5, -1)            = %g %g %g ... %g\n", out[0], out[1], out[2], out[7]);
  return 0;
}
