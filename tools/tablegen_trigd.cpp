// Prints src/tables/trigd.h: the tables of the double sine and cosine (and of
// every double trigonometric family that shares their reductions), computed
// with MPFR and checked against known entries (the program fails on a
// mismatch).
//
//   ninja -C build tablegen_trigd && build/tools/tablegen_trigd > src/tables/trigd.h
#include <gmp.h>

#include <cmath>
#include <cstdlib>

#include "tablegen_common.h"

namespace {

using namespace tablegen;


// W(e) = floor(2^(e - 883) / (2 pi)) mod 2^192 as three 64-bit words, most
// significant first. 2^1164 / (2 pi) has 1162 integer bits; 1600 bits of
// precision leave more than 400 fraction bits, so the floor is exact.
void reduction_bits(int e, uint64_t* w) {
  mpfr_t v;
  mpfr_init2(v, 1600);
  mpfr_const_pi(v, MPFR_RNDN);
  mpfr_ui_div(v, 1, v, MPFR_RNDN);
  mpfr_mul_2si(v, v, e - 883 - 1, MPFR_RNDN);  // 2^(e-883) / (2 pi)
  mpz_t z, m;
  mpz_inits(z, m, (mpz_ptr)0);
  mpfr_get_z(z, v, MPFR_RNDD);
  mpz_fdiv_r_2exp(z, z, 192);
  for (int k = 2; k >= 0; --k) {
    mpz_fdiv_r_2exp(m, z, 64);
    w[k] = (uint64_t)mpz_get_ui(m);  // unsigned long is 64 bits here
    mpz_fdiv_q_2exp(z, z, 64);
  }
  mpz_clears(z, m, (mpz_ptr)0);
  mpfr_clear(v);
}

// x rounded toward zero to 24 significant bits.
double trunc24(mpfr_t x) {
  mpfr_t t;
  mpfr_init2(t, 24);
  mpfr_set(t, x, MPFR_RNDZ);
  double d = mpfr_get_d(t, MPFR_RNDN);  // exact
  mpfr_clear(t);
  return d;
}

// Node j of the 512-point grid, a_j = 2 pi j / 512, of the function whose
// value is sin (cosine = false) or cos: (D1, D0, V_hi, V_lo) with the
// derivative D = D0 + D1, D0 = D rounded to a multiple of 1/64 (at most 7
// significant bits), D1 = RN(D - D0); V_hi = RN(value), V_lo = value - V_hi
// truncated to 24 significant bits.
void node512(int j, bool cosine, uint64_t* row) {
  mpfr_t s, c, val, der, t;
  mpfr_inits2(kPrec, s, c, val, der, t, (mpfr_ptr)0);
  mpfr_set_si(t, j, MPFR_RNDN);
  mpfr_sinu(s, t, 512, MPFR_RNDN);
  mpfr_cosu(c, t, 512, MPFR_RNDN);
  if (cosine) {
    mpfr_set(val, c, MPFR_RNDN);
    mpfr_neg(der, s, MPFR_RNDN);
  } else {
    mpfr_set(val, s, MPFR_RNDN);
    mpfr_set(der, c, MPFR_RNDN);
  }
  mpfr_mul_2si(t, der, 6, MPFR_RNDN);
  mpfr_rint(t, t, MPFR_RNDN);
  mpfr_mul_2si(t, t, -6, MPFR_RNDN);
  double d0 = mpfr_get_d(t, MPFR_RNDN);  // exact
  mpfr_sub(t, der, t, MPFR_RNDN);
  double d1 = mpfr_get_d(t, MPFR_RNDN);
  double vhi = mpfr_get_d(val, MPFR_RNDN);
  mpfr_sub_d(t, val, vhi, MPFR_RNDN);
  double vlo = trunc24(t);
  // Zeros are +0.
  row[0] = bits64(d1 + 0.0);
  row[1] = bits64(d0 + 0.0);
  row[2] = bits64(vhi + 0.0);
  row[3] = bits64(vlo + 0.0);
  mpfr_clears(s, c, val, der, t, (mpfr_ptr)0);
}

// The 4/pi chunk table of the scalar reduction: entry 0 is 0, entry i >= 1
// is T_(i-1) * 2^200 with T_k = (floor(4/pi * 2^(24+25k)) mod 2^25) *
// 2^-(24+25k), the k-th 25-bit chunk of 4/pi (T_0 holds the bits of weight
// 2^0 down to 2^-24). Sum over k of T_k = 4/pi.
constexpr int kChunks = 48;
void chunks(uint64_t* out) {
  mpfr_t v, t;
  mpfr_inits2(1600, v, t, (mpfr_ptr)0);
  mpfr_const_pi(v, MPFR_RNDN);
  mpfr_ui_div(v, 4, v, MPFR_RNDN);
  out[0] = bits64(0.0);
  for (int i = 1; i < kChunks; ++i) {
    const int k = i - 1;
    mpfr_mul_2si(t, v, 24 + 25 * k, MPFR_RNDN);
    mpfr_floor(t, t);
    mpfr_div_2si(t, t, 25, MPFR_RNDN);
    mpfr_frac(t, t, MPFR_RNDN);
    mpfr_mul_2si(t, t, 25 + 200 - (24 + 25 * k), MPFR_RNDN);  // exact: 25 bits
    out[i] = bits64(mpfr_get_d(t, MPFR_RNDN));
  }
  mpfr_clears(v, t, (mpfr_ptr)0);
}

// sin(i pi/32), i = 0..63, as (hi, lo): hi = RN, lo = RN(sin - hi).
void callout_nodes(uint64_t* out) {
  mpfr_t s, t;
  mpfr_inits2(kPrec, s, t, (mpfr_ptr)0);
  for (int i = 0; i < 64; ++i) {
    mpfr_set_si(t, i, MPFR_RNDN);
    mpfr_sinu(s, t, 64, MPFR_RNDN);
    double hi = mpfr_get_d(s, MPFR_RNDN);
    mpfr_sub_d(t, s, hi, MPFR_RNDN);
    out[2 * i] = bits64(hi + 0.0);  // zeros are +0
    out[2 * i + 1] = bits64(mpfr_get_d(t, MPFR_RNDN) + 0.0);
  }
  mpfr_clears(s, t, (mpfr_ptr)0);
}

}  // namespace

int main() {
  static uint64_t w[2048 * 3], sinn[512 * 4], cosn[512 * 4], ch[kChunks], cn[128];
  for (int e = 0; e < 2048; ++e) reduction_bits(e, w + 3 * e);
  for (int j = 0; j < 512; ++j) {
    node512(j, false, sinn + 4 * j);
    node512(j, true, cosn + 4 * j);
  }
  chunks(ch);
  callout_nodes(cn);

  // Known entries.
  const struct {
    int e;
    uint64_t w[3];
  } kW[] = {{0, {0, 0, 0}},
            {1023, {0x000000000000028bull, 0xe60db9391054a7f0ull, 0x9d5f47d4d377036dull}},
            {1047, {0x000000028be60db9ull, 0x391054a7f09d5f47ull, 0xd4d377036d8a5664ull}},
            {2047, {0x9eeb1faf97c5ecf4ull, 0x1ce7de294a4ba9afull, 0xed7ec47e35742158ull}}};
  for (const auto& k : kW)
    for (int i = 0; i < 3; ++i) expect_row_bits("reduction bits", k.e, w[3 * k.e + i], k.w[i]);
  const struct {
    bool cosine;
    int j;
    double v[4];
  } kNodes[] = {{false, 1, {-7.5298160855459076e-05, 1, 0.012271538285719925, 6.9197902710578928e-19}},
                {false, 0, {0, 1, 0, 0}},
                {false, 128, {0, 0, 1, 0}},
                {true, 1, {0.0033534617142800737, -0.015625, 0.9999247018391445, 3.793108167266833e-17}},
                {true, 0, {0, 0, 1, 0}},
                {true, 128, {0, -1, 0, 0}},
                {true, 256, {0, 0, -1, 0}},
                {true, 384, {0, 1, 0, 0}}};
  for (const auto& k : kNodes)
    for (int i = 0; i < 4; ++i)
      expect_row_bits(k.cosine ? "cos nodes" : "sin nodes", k.j, (k.cosine ? cosn : sinn)[4 * k.j + i], bits64(k.v[i]));
  // The cosine's rows are the sine's a quarter period on (cos a_j = sin a_(j+128),
  // -sin a_j = cos a_(j+128)), so only the sine table is printed.
  for (int j = 0; j < 512 * 4; ++j) expect_row_bits("cos nodes = sin nodes + 128", j / 4, cosn[j], sinn[(j + 4 * 128) % (512 * 4)]);
  const struct {
    int i;
    double v;
  } kCh[] = {{1, 2.0460169813493856e+60}, {2, 8.2540542892644905e+52}, {9, 0.63585418462753296},
             {10, 4.4113713570936852e-08}, {11, 9.3579030048396706e-16}};
  for (const auto& k : kCh) expect_row_bits("4/pi chunks", k.i, ch[k.i], bits64(k.v));
  expect_row_bits("callout nodes", 16, cn[32], bits64(1.0));
  expect_row_bits("callout nodes", 32, cn[64] | cn[65], 0);
  if (row_failures) return 1;

  open_file(
      "// Tables of the double trigonometric families (sin, cos, tan, sincos, sincosreg and the\n"
      "// single families' scalar routines). Generated by tools/tablegen_trigd.cpp (MPFR); do not\n"
      "// edit. Regenerate with\n"
      "//   ninja -C build tablegen_trigd && build/tools/tablegen_trigd > src/tables/trigd.h\n"
      "// Entries are IEEE bit patterns or integers.\n",
      "trigd_tables");
  std::printf(
      "// Reduction bits of 1/(2 pi), one row of three words (most significant first) per biased\n"
      "// exponent e = 0..2047 of a double x = m 2^(e-1075) (m its 53-bit integer significand):\n"
      "//   W(e) = floor(2^(e - 1075 + 192) / (2 pi)) mod 2^192,\n"
      "// so that m W(e) mod 2^192 is the fraction of x / (2 pi) scaled by 2^192 (the bits of W\n"
      "// dropped above 2^192 only add whole periods). 1/(2 pi) = 0x0.28be60db9391054a7f09d5f47d4d377...\n");
  print_table64("alignas(64) inline constexpr uint64_t kReduceBits[2048 * 3]", w, 2048 * 3);
  std::printf(
      "// Node tables of the full-range sine and cosine, node j at a_j = 2 pi j / 512, rows of four\n"
      "// doubles (D1, D0, V_hi, V_lo): the value at a_j is V_hi + V_lo (V_hi = RN(value), V_lo the\n"
      "// rest truncated to 24 significant bits), its derivative D0 + D1 with D0 the derivative\n"
      "// rounded to a multiple of 1/64 (at most 7 significant bits) and D1 = RN(derivative - D0).\n"
      "// sin: value sin(a_j), derivative cos(a_j). Row j + 128 (mod 512) is the cosine's row j:\n"
      "// value cos(a_j), derivative -sin(a_j).\n");
  print_table64("alignas(64) inline constexpr uint64_t kSinNodes[512 * 4]", sinn, 512 * 4);
  std::printf(
      "// 4/pi in 25-bit chunks for the scalar reduction of huge arguments: entry 0 is 0 (the bits\n"
      "// above 2^0, none), entry i >= 1 is T_(i-1) 2^200 with\n"
      "//   T_k = (floor(4/pi 2^(24+25k)) mod 2^25) 2^-(24+25k),\n"
      "// the 25 bits of 4/pi of weights 2^-25k down to 2^-(24+25k); the sum of the T_k is 4/pi.\n"
      "// The factor 2^200 keeps every entry a normal double (the reduction scales x by 2^-200).\n");
  print_table64("alignas(64) inline constexpr uint64_t kFourOverPiChunks[48]", ch, kChunks);
  std::printf(
      "// sin(i pi/32), i = 0..63, as pairs (hi, lo): hi = RN(sin(i pi/32)), lo = RN(sin(i pi/32) - hi)\n"
      "// (exact 0 and +-1 at the multiples of pi/2). cos(i pi/32) is row (i + 16) mod 64.\n");
  print_table64("alignas(64) inline constexpr uint64_t kSinPiOver32[128]", cn, 128);
  close_file("trigd_tables");
  return 0;
}
