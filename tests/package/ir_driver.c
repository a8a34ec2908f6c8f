/* Calls the IR callers of ir_caller.ll and compares every result, bit for bit,
   with the same exports called from C through the header. Prints "ir: ok". */
#include <ocl_ravl_l9.h>
#include <math.h>
#include <stdio.h>
#include <string.h>

void t_exp4(const double*, double*);
void t_exp3(const double*, double*);
void t_expf16(const float*, float*);
void t_exp16(const double*, double*);
void t_idivrem4(const int32_t*, const int32_t*, int32_t*, int32_t*);
void t_idivrem3(const int32_t*, const int32_t*, int32_t*, int32_t*);
void t_sincos4(const double*, double*, double*);
void t_sincosreg4(const double*, double*, double*);
void t_sincosregf2(const float*, float*, float*);
void t_fma16(double*, const double*, const double*, const double*);
double t_ldexp1(double, int32_t);
void t_ldexp3(const double*, const int32_t*, double*);
typedef float float2_ __attribute__((ext_vector_type(2)));
float2_ t_sincosregf1(float);
int64_t t_idivrem1(int32_t, int32_t);

static int failures;
#define SAME(a, b, n, what)                                      \
  do {                                                           \
    if (memcmp(a, b, n)) {                                       \
      printf("ir: FAILED %s\n", what);                           \
      failures++;                                                \
    }                                                            \
  } while (0)

int main(void) {
  double xd[16], rd[16], sd[16], cd[16];
  float xf[16], rf[16], sf[4], cf[4];
  int32_t xi[4] = {7, -7, 2147483647, (int32_t)0x80000000}, yi[4] = {2, -2, 3, -1}, q[4], r[4];
  for (int i = 0; i < 16; i++) {
    xd[i] = i * 0.75 - 5.0;
    xf[i] = i * 0.75f - 5.0f;
  }
  ocl_ravl_double4 x4;
  memcpy(&x4, xd, 32);

  t_exp4(xd, rd);
  ocl_ravl_double4 e4 = __ocl_ravl_l9_exp4(x4);
  SAME(rd, &e4, 32, "exp4");

  memset(rd, 0, sizeof rd);
  t_exp3(xd, rd);
  ocl_ravl_double4 e3 = __ocl_ravl_l9_exp3(x4);
  SAME(rd, &e3, 24, "exp3");
  if (rd[3] != 0) { printf("ir: FAILED exp3 wrote a fourth lane\n"); failures++; }

  t_expf16(xf, rf);
  ocl_ravl_float8 f0, f1;
  memcpy(&f0, xf, 32);
  memcpy(&f1, xf + 8, 32);
  ocl_ravl_float16 ef = __ocl_ravl_l9_expf16(f0, f1);
  SAME(rf, &ef, 64, "expf16");

  t_exp16(xd, rd);
  ocl_ravl_double4 d[4];
  memcpy(d, xd, 128);
  ocl_ravl_double16 ed = __ocl_ravl_l9_exp16(d[0], d[1], d[2], d[3]);
  SAME(rd, &ed, 128, "exp16");

  ocl_ravl_int4 a, b;
  memcpy(&a, xi, 16);
  memcpy(&b, yi, 16);
  ocl_ravl_int4 qc = __ocl_ravl_l9_idiv4(a, b), rc = __ocl_ravl_l9_irem4(a, b);
  t_idivrem4(xi, yi, q, r);
  SAME(q, &qc, 16, "idivrem4 quotient");
  SAME(r, &rc, 16, "idivrem4 remainder");
  memset(q, 0, sizeof q);
  memset(r, 0, sizeof r);
  t_idivrem3(xi, yi, q, r);
  SAME(q, &qc, 12, "idivrem3 quotient");
  SAME(r, &rc, 12, "idivrem3 remainder");

  double cc[4];
  ocl_ravl_double4 sc = __ocl_ravl_l9_sincos4(x4, cc);
  t_sincos4(xd, sd, cd);
  SAME(sd, &sc, 32, "sincos4 sine");
  SAME(cd, cc, 32, "sincos4 cosine");
  t_sincosreg4(xd, sd, cd);
  SAME(sd, &sc, 32, "sincosreg4 sine");
  SAME(cd, cc, 32, "sincosreg4 cosine");

  float ccf[4];
  ocl_ravl_float4 xf4;
  memcpy(&xf4, xf, 16);
  ocl_ravl_float4 scf = __ocl_ravl_l9_sincosf4(xf4, ccf);
  t_sincosregf2(xf, sf, cf);
  SAME(sf, &scf, 8, "sincosregf2 sine");
  SAME(cf, ccf, 8, "sincosregf2 cosine");

  double fa[16], fb[16], fc[16], fr[16], want[16];
  for (int i = 0; i < 16; i++) {
    fa[i] = 1.0 + i * 0x1p-30;
    fb[i] = 1.0 - i * 0x1p-30;
    fc[i] = -1.0;
    want[i] = fma(fa[i], fb[i], fc[i]);
  }
  t_fma16(fr, fa, fb, fc);
  SAME(fr, want, 128, "fma16 by address");

  double l = t_ldexp1(0.75, 10);
  if (l != 768.0) { printf("ir: FAILED ldexp1\n"); failures++; }

  int32_t n3[4] = {3, -2, 1000, 0};
  double l3[4] = {0, 0, 0, 0};
  ocl_ravl_int4 n4;
  memcpy(&n4, n3, 16);
  ocl_ravl_double4 lc = __ocl_ravl_l9_ldexp4(x4, n4);
  t_ldexp3(xd, n3, l3);
  SAME(l3, &lc, 24, "ldexp3");

  float c1;
  float s1 = __ocl_ravl_l9_sincosf1(0.5f, &c1);
  float2_ sc1 = t_sincosregf1(0.5f);
  if (sc1.x != s1 || sc1.y != c1) { printf("ir: FAILED sincosregf1\n"); failures++; }
  int64_t qr = t_idivrem1(-7, 2);
  if ((int32_t)qr != -3 || (int32_t)(qr >> 32) != -1) { printf("ir: FAILED idivrem1\n"); failures++; }

  if (failures) return 1;
  printf("ir: ok\n");
  return 0;
}
