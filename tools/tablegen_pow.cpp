// Prints src/tables/pow.h: the tables of the power families (pow, powr,
// pown, rootn and their single forms), computed with MPFR at 256 bits, and
// checks the rows that the algorithms' derivations quote (exit status 1 on
// a mismatch).
//
//   ninja -C build tablegen_pow && build/tools/tablegen_pow > src/tables/pow.h
#include <cmath>

#include "tablegen_common.h"

namespace {

using namespace tablegen;


// v = log2(a / b) for integers a, b.
void log2_ratio(mpfr_t v, long a, long b) {
  mpfr_set_si(v, a, MPFR_RNDN);
  mpfr_div_si(v, v, b, MPFR_RNDN);
  mpfr_log2(v, v, MPFR_RNDN);
}

// (hi, lo) of v: hi = RN(v), lo = RN(v - hi).
void split_rn(mpfr_t v, double* hi, double* lo) {
  mpfr_t t;
  mpfr_init2(t, kPrec);
  *hi = mpfr_get_d(v, MPFR_RNDN);
  mpfr_sub_d(t, v, *hi, MPFR_RNDN);
  *lo = mpfr_get_d(t, MPFR_RNDN);
  mpfr_clear(t);
}

}  // namespace

int main() {
  static uint64_t log2acc[2 * 513], exp2acc[256], expfast[2048];
  static uint64_t red1[4 * 33], red2[4 * 33], red3[4 * 131];
  static uint32_t f_hi[8], f_lo[8], f_exp[8];
  mpfr_t v, t;
  mpfr_inits2(kPrec, v, t, (mpfr_ptr)0);

  // Accurate path, log2: -1023 - log2((512 + i)/1024) as (hi, lo), hi the
  // value truncated toward zero on the grid 2^-42 (so that e_b + hi is exact
  // for every biased exponent e_b), lo = RN(value - hi).
  for (int i = 0; i <= 512; ++i) {
    log2_ratio(v, 512 + i, 1024);
    mpfr_neg(v, v, MPFR_RNDN);
    mpfr_sub_si(v, v, 1023, MPFR_RNDN);
    mpfr_mul_2si(t, v, 42, MPFR_RNDN);
    mpfr_trunc(t, t);
    mpfr_mul_2si(t, t, -42, MPFR_RNDN);
    const double hi = mpfr_get_d(t, MPFR_RNDN);
    mpfr_sub(t, v, t, MPFR_RNDN);
    log2acc[2 * i] = bits64(hi);
    log2acc[2 * i + 1] = bits64(mpfr_get_d(t, MPFR_RNDN));
  }
  const double (*la)[2] = reinterpret_cast<const double(*)[2]>(log2acc);
  expect_row_bits("log2 accurate hi", 0, la[0][0], -1022), expect_row_bits("log2 accurate lo", 0, la[0][1], 0);
  expect_row_bits("log2 accurate hi", 1, la[1][0], -1022.002815015607);
  expect_row_bits("log2 accurate lo", 1, la[1][1], -6.987673214832359e-14);
  expect_row_bits("log2 accurate hi", 2, la[2][0], -1022.0056245491937);
  expect_row_bits("log2 accurate lo", 2, la[2][1], -1.5198197941904398e-13);
  expect_row_bits("log2 accurate hi", 512, la[512][0], -1023), expect_row_bits("log2 accurate lo", 512, la[512][1], 0);

  // Accurate path, exp2: RN(2^(j/256)).
  for (int j = 0; j < 256; ++j) {
    pow2_frac(v, j, 256);
    exp2acc[j] = bits64(mpfr_get_d(v, MPFR_RNDN));
  }
  expect_row_bits("exp2 accurate", 1, from_bits(exp2acc[1]), 1.0027112750502025);

  // Fast path, ln: the fast logarithm's table (tables/log.h, kLogFast), the same rule.

  // Fast path, exp: RN(2^(j/2048)).
  for (int j = 0; j < 2048; ++j) {
    pow2_frac(v, j, 2048);
    expfast[j] = bits64(mpfr_get_d(v, MPFR_RNDN));
  }
  // Row 1 is 1 + the chord slope 2^(1/2048) - 1 = 0.00033850805268231294 of the fast path
  // (1.0003385080526823; a printed 1.000338500889739 transposes two digits).
  expect_row_bits("exp fast", 1, from_bits(expfast[1]), 1 + 0.00033850805268231294);

  // Single accurate path: 127 - log2(1 + j/8) as hi, rounded to single with its last
  // mantissa bit then cleared (22 fraction bits), and lo = RN_single(RN_double(value) - hi);
  // 2^(j/8) rounded to single.
  for (int j = 0; j < 8; ++j) {
    log2_ratio(v, 8 + j, 8);
    mpfr_si_sub(v, 127, v, MPFR_RNDN);
    f_hi[j] = bits32(mpfr_get_flt(v, MPFR_RNDN)) & ~1u;
    float hf;
    std::memcpy(&hf, &f_hi[j], 4);
    const double hi = hf;
    f_lo[j] = bits32((float)(mpfr_get_d(v, MPFR_RNDN) - hi));
    pow2_frac(v, j, 8);
    f_exp[j] = bits32(mpfr_get_flt(v, MPFR_RNDN));
  }
  {
    const double hi[8] = {127, 126.830078125, 126.67807006835938, 126.54055786132812,
                          126.4150390625, 126.299560546875, 126.19264221191406, 126.09310913085938};
    const double lo[8] = {0, -3.1264423796528718e-06, 1.8367531993135344e-06, 1.0520034265937284e-05,
                          -1.5632211898264359e-06, -2.6501609795559489e-07, 2.8660283533099573e-06,
                          2.7353212317393627e-07};
    const double ex[8] = {1, 1.0905077457427979, 1.1892070770263672, 1.2968395948410034,
                          1.4142135381698608, 1.5422108173370361, 1.6817928552627563, 1.8340080976486206};
    for (int j = 0; j < 8; ++j) {
      float f;
      std::memcpy(&f, &f_hi[j], 4), expect_row_bits("single log2 hi", j, f, hi[j]);
      std::memcpy(&f, &f_lo[j], 4), expect_row_bits("single log2 lo", j, f, lo[j]);
      std::memcpy(&f, &f_exp[j], 4), expect_row_bits("single exp2", j, f, ex[j]);
    }
  }

  // The accurate routines' 2^(j/128) pairs are exp10's (src/tables/exp2_exp10.h, the same rule).
  // The three log2 reductions of the accurate power routines: rows
  // (r, hi, lo, 0) with r = RN(1/c), c = 1 + i 2^-s, and hi + lo = -log2(r)
  // (of the double r) to about 2^-106. Stage 1: c = 1 + i/32, i = 0..32 (row
  // 32: r = 1/2 exactly, -log2 r = 1); stage 2: c = 1 + i/2^10, i = -16..16;
  // stage 3: c = 1 + i/2^17, i = -65..65 (the residue of stage 2 reaches 65 2^-17). Rows are stored from the lowest i.
  struct Stage {
    uint64_t* rows;
    int lo, hi, shift;
  } stages[3] = {{red1, 0, 32, 5}, {red2, -16, 16, 10}, {red3, -65, 65, 17}};
  for (const Stage& s : stages)
    for (int i = s.lo; i <= s.hi; ++i) {
      mpfr_set_si(v, i, MPFR_RNDN);
      mpfr_mul_2si(v, v, -s.shift, MPFR_RNDN);
      mpfr_add_si(v, v, 1, MPFR_RNDN);
      mpfr_si_div(v, 1, v, MPFR_RNDN);
      const double r = mpfr_get_d(v, MPFR_RNDN);
      mpfr_set_d(v, r, MPFR_RNDN);
      mpfr_log2(v, v, MPFR_RNDN);
      mpfr_neg(v, v, MPFR_RNDN);
      double hi, lo;
      split_rn(v, &hi, &lo);
      uint64_t* row = s.rows + 4 * (i - s.lo);
      row[0] = bits64(r), row[1] = bits64(hi), row[2] = bits64(lo), row[3] = 0;
    }
  expect_row_bits("reduction 1 r", 32, from_bits(red1[4 * 32]), 0.5);
  expect_row_bits("reduction 1 hi", 32, from_bits(red1[4 * 32 + 1]), 1.0);
  expect_row_bits("reduction 1 r", 0, from_bits(red1[0]), 1.0);
  expect_row_bits("reduction 2 r", 16, from_bits(red2[4 * 16]), 1.0);
  expect_row_bits("reduction 3 r", 65, from_bits(red3[4 * 65]), 1.0);
  mpfr_clears(v, t, (mpfr_ptr)0);
  if (row_failures) return 1;

  open_file(
      "// Tables of the power families (pow, powr, pown, rootn and their single forms). Generated\n"
      "// by tools/tablegen_pow.cpp (MPFR, 256 bits); do not edit. Regenerate with\n"
      "//   ninja -C build tablegen_pow && build/tools/tablegen_pow > src/tables/pow.h\n"
      "// Entries are IEEE bit patterns.\n",
      "pow_tables");
  std::printf(
      "// Accurate double path, log2: row i = 0..512 (reciprocal r = (512 + i)/1024) holds (hi, lo),\n"
      "// hi + lo = -1023 - log2(r) to about 2^-96; hi is the value truncated toward zero on the\n"
      "// grid 2^-42, lo = RN(value - hi). Row 0: (-1022, 0); row 512: (-1023, 0).\n");
  print_table64("alignas(64) inline constexpr uint64_t kLog2Acc[1026]", log2acc, 2 * 513);
  std::printf("// Accurate double path, exp2: RN(2^(j/256)), j = 0..255.\n");
  print_table64("alignas(64) inline constexpr uint64_t kExp2Acc[256]", exp2acc, 256);
  std::printf("// Fast double path, exp: RN(2^(j/2048)), j = 0..2047.\n");
  print_table64("alignas(64) inline constexpr uint64_t kExpFast[2048]", expfast, 2048);
  std::printf(
      "// Single accurate path, eight entries each (held in a register, selected by a lane\n"
      "// permute): hi = 127 - log2(1 + j/8) rounded to single, last mantissa bit cleared, lo = RN_single(RN(127 -\n"
      "// log2(1 + j/8)) - hi), and RN_single(2^(j/8)).\n");
  print_table32("alignas(32) inline constexpr uint32_t kLog2fHi[8]", f_hi, 8, 8);
  print_table32("alignas(32) inline constexpr uint32_t kLog2fLo[8]", f_lo, 8, 8);
  print_table32("alignas(32) inline constexpr uint32_t kExp2f8[8]", f_exp, 8, 8);
  std::printf(
      "// Accurate routines, the three log2 reductions: 32-byte rows (r, hi, lo, 0), r = RN(1/c) for\n"
      "// c = 1 + i 2^-s, hi + lo = -log2(r) to about 2^-106 (hi = RN). Stage 1: s = 5, i = 0..32\n"
      "// (row 32: r = 1/2, hi = 1); stage 2: s = 10, i = -16..16; stage 3: s = 17, i = -65..65;\n"
      "// rows from the lowest i.\n");
  print_table64("alignas(64) inline constexpr uint64_t kLog2Red1[132]", red1, 4 * 33);
  print_table64("alignas(64) inline constexpr uint64_t kLog2Red2[132]", red2, 4 * 33);
  print_table64("alignas(64) inline constexpr uint64_t kLog2Red3[524]", red3, 4 * 131);
  close_file("pow_tables");
  return 0;
}
