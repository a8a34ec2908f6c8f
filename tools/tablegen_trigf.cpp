// Prints src/tables/trigf.h: the tables of the single sine, cosine and tangent
// families (sinf, cosf, tanf, sincosf, sincosregf), computed with MPFR and
// rounded once to nearest. Checks the rows the families' documentation quotes
// and exits non-zero on a mismatch.
//
//   ninja -C build tablegen_trigf && build/tools/tablegen_trigf > src/tables/trigf.h
#include <gmp.h>

#include <cmath>
#include <cstdlib>
#include <initializer_list>

#include "tablegen_common.h"

namespace {

using namespace tablegen;

// Enough bits for 1/(2 pi) scaled by 2^201 with 96 bits below the point and
// every tangent coefficient of the pole rows after its cancellation.
constexpr mpfr_prec_t kWide = 640;


// RN to single; values below the single denormal range (the exact zeros of
// the functions at multiples of pi/2, which MPFR sees as tiny) give +0.
float to_f(const mpfr_t v) {
  if (mpfr_zero_p(v) || mpfr_get_exp(v) < -160) return 0.0f;
  return mpfr_get_flt(v, MPFR_RNDN);
}

// ---- reduction bits: W(e) = floor(2^(e - 150 + 96) / (2 pi)) mod 2^96 ---------

void reduce_bits(int e, uint32_t w[3]) {
  mpfr_t v;
  mpz_t z, word;
  mpfr_init2(v, kWide);
  mpz_inits(z, word, nullptr);
  mpfr_const_pi(v, MPFR_RNDN);
  mpfr_ui_div(v, 1, v, MPFR_RNDN);
  mpfr_mul_2si(v, v, e - 150 + 96 - 1, MPFR_RNDN);  // 2^(e - 54) / (2 pi)
  mpfr_get_z(z, v, MPFR_RNDD);
  for (int k = 2; k >= 0; --k) {
    mpz_fdiv_r_2exp(word, z, 32);
    w[k] = (uint32_t)mpz_get_ui(word);
    mpz_fdiv_q_2exp(z, z, 32);
  }
  mpz_clears(z, word, nullptr);
  mpfr_clear(v);
}

// ---- sine and cosine nodes: row j at a_j = 2 pi j / 256 ------------------------
//
// (D1, V_hi, V_lo, D0): V_hi + V_lo the function's value, D0 + D1 its
// derivative, D0 on the grid 1/64 (at most 7 significant bits).
void node_row(int j, bool cosine, uint32_t out[4]) {
  mpfr_t a, s, c, v, d, t;
  mpfr_inits2(kPrec, a, s, c, v, d, t, (mpfr_ptr)0);
  mpfr_const_pi(a, MPFR_RNDN);
  mpfr_mul_si(a, a, 2 * j, MPFR_RNDN);
  mpfr_div_si(a, a, 256, MPFR_RNDN);
  mpfr_sin_cos(s, c, a, MPFR_RNDN);
  if (cosine) {
    mpfr_set(v, c, MPFR_RNDN);
    mpfr_neg(d, s, MPFR_RNDN);
  } else {
    mpfr_set(v, s, MPFR_RNDN);
    mpfr_set(d, c, MPFR_RNDN);
  }
  float vhi = to_f(v);
  mpfr_sub_d(t, v, vhi, MPFR_RNDN);
  float vlo = to_f(t);
  mpfr_mul_2si(t, d, 6, MPFR_RNDN);
  mpfr_rint(t, t, MPFR_RNDN);
  mpfr_mul_2si(t, t, -6, MPFR_RNDN);
  float d0 = to_f(t);
  mpfr_sub(t, d, t, MPFR_RNDN);
  float d1 = to_f(t);
  out[0] = bits32(d1);
  out[1] = bits32(vhi);
  out[2] = bits32(vlo);
  out[3] = bits32(d0 + 0.0f);  // +0, not -0, where the derivative is 0
  mpfr_clears(a, s, c, v, d, t, (mpfr_ptr)0);
}

// ---- tangent nodes: row j at a_j = pi j / 128, j = 0..127 ----------------------
//
// tan(a_j + r) = w / (pi/2 - a_j - r) + F(a_j + r) with the pole weight w = 1
// on the rows within pi/4 of the pole (j = 32..96, symmetric about it, so
// that tan(-x) = -tan(x) bit for bit) and 0 elsewhere; F is expanded to
// degree 5 in r.
constexpr int kTanCols = 12;
constexpr int kTanDeg = 5;

// Taylor coefficients c[0..kTanDeg] of F(a_j + r) in r.
void tan_series(int j, bool pole, mpfr_t* c) {
  if (j == 64) {
    // tan(pi/2 + r) + 1/r = r/3 + r^3/45 + 2 r^5/945 + ...
    for (int k = 0; k <= kTanDeg; ++k) mpfr_set_ui(c[k], 0, MPFR_RNDN);
    mpfr_set_ui(c[1], 1, MPFR_RNDN);
    mpfr_div_ui(c[1], c[1], 3, MPFR_RNDN);
    mpfr_set_ui(c[3], 1, MPFR_RNDN);
    mpfr_div_ui(c[3], c[3], 45, MPFR_RNDN);
    mpfr_set_ui(c[5], 2, MPFR_RNDN);
    mpfr_div_ui(c[5], c[5], 945, MPFR_RNDN);
    return;
  }
  // sin(a + r) and cos(a + r) as series, then their quotient.
  mpfr_t a, s, co, g, t, sn[kTanDeg + 1], cs[kTanDeg + 1];
  mpfr_inits2(kWide, a, s, co, g, t, (mpfr_ptr)0);
  for (int k = 0; k <= kTanDeg; ++k) mpfr_inits2(kWide, sn[k], cs[k], (mpfr_ptr)0);
  mpfr_const_pi(a, MPFR_RNDN);
  mpfr_mul_si(a, a, j, MPFR_RNDN);
  mpfr_div_si(a, a, 128, MPFR_RNDN);
  mpfr_sin_cos(s, co, a, MPFR_RNDN);
  mpfr_set_ui(t, 1, MPFR_RNDN);  // 1/k!
  for (int k = 0; k <= kTanDeg; ++k) {
    if (k > 0) mpfr_div_ui(t, t, k, MPFR_RNDN);
    // d^k/dr^k sin(a + r) at 0: sin, cos, -sin, -cos, ...
    mpfr_srcptr fs = k % 2 == 0 ? s : co;
    mpfr_srcptr fc = k % 2 == 0 ? co : s;
    const int ss = (k % 4 < 2) ? 1 : -1, sc = (k % 4 == 0 || k % 4 == 3) ? 1 : -1;
    mpfr_mul(sn[k], fs, t, MPFR_RNDN);
    mpfr_mul_si(sn[k], sn[k], ss, MPFR_RNDN);
    mpfr_mul(cs[k], fc, t, MPFR_RNDN);
    mpfr_mul_si(cs[k], cs[k], sc, MPFR_RNDN);
  }
  // c = sn / cs: c[k] = (sn[k] - sum_{i<k} c[i] cs[k-i]) / cs[0].
  for (int k = 0; k <= kTanDeg; ++k) {
    mpfr_set(c[k], sn[k], MPFR_RNDN);
    for (int i = 0; i < k; ++i) {
      mpfr_mul(t, c[i], cs[k - i], MPFR_RNDN);
      mpfr_sub(c[k], c[k], t, MPFR_RNDN);
    }
    mpfr_div(c[k], c[k], cs[0], MPFR_RNDN);
  }
  if (pole) {
    // 1/(g - r) = sum r^k / g^(k+1), g = pi/2 - a.
    mpfr_const_pi(g, MPFR_RNDN);
    mpfr_div_2ui(g, g, 1, MPFR_RNDN);
    mpfr_sub(g, g, a, MPFR_RNDN);
    mpfr_ui_div(t, 1, g, MPFR_RNDN);
    for (int k = 0; k <= kTanDeg; ++k) {
      mpfr_sub(c[k], c[k], t, MPFR_RNDN);
      mpfr_div(t, t, g, MPFR_RNDN);
    }
  }
  mpfr_clears(a, s, co, g, t, (mpfr_ptr)0);
  for (int k = 0; k <= kTanDeg; ++k) mpfr_clears(sn[k], cs[k], (mpfr_ptr)0);
}

// Row j: T0 + T1 = pi/2 - a_j, T2 = w, T3 + T4 = F(a_j), T5 + T6 = F'(a_j),
// T7..T10 the coefficients of r^2..r^5, T11 = 0 (the row is 48 bytes).
void tan_row(int j, uint32_t out[kTanCols]) {
  const bool pole = j >= 32 && j <= 96;
  mpfr_t c[kTanDeg + 1], g, t;
  for (int k = 0; k <= kTanDeg; ++k) mpfr_init2(c[k], kWide);
  mpfr_inits2(kWide, g, t, (mpfr_ptr)0);
  tan_series(j, pole, c);
  mpfr_const_pi(g, MPFR_RNDN);
  mpfr_mul_si(g, g, 64 - j, MPFR_RNDN);
  mpfr_div_si(g, g, 128, MPFR_RNDN);
  float v[kTanCols] = {};
  v[0] = to_f(g);
  mpfr_sub_d(t, g, v[0], MPFR_RNDN);
  v[1] = to_f(t);
  v[2] = pole ? 1.0f : 0.0f;
  for (int k = 0; k < 2; ++k) {
    v[3 + 2 * k] = to_f(c[k]);
    mpfr_sub_d(t, c[k], v[3 + 2 * k], MPFR_RNDN);
    v[4 + 2 * k] = to_f(t);
  }
  for (int k = 2; k <= kTanDeg; ++k) v[5 + k] = to_f(c[k]);
  for (int k = 0; k < kTanCols; ++k) out[k] = bits32(v[k] + 0.0f);
  for (int k = 0; k <= kTanDeg; ++k) mpfr_clear(c[k]);
  mpfr_clears(g, t, (mpfr_ptr)0);
}

// ---- sincosf large arguments: 2/pi in two doubles per block of 8 exponents ------
//
// Block i = (E - 1046) >> 3 (E the biased double exponent of |x|), stored at
// row i + 1, i = -1..13: for |x| = m 2^s (m < 2^24 an integer, s = E - 1046,
// 8i <= s < 8i + 8), C0 holds the 53 bits of 2/pi of weights 2^(1-8i) down
// to 2^(-51-8i) (the bits above make x C0 a multiple of 4 and are left out)
// and C1 = RN(the bits of 2/pi below those).
void large_block(int i, uint64_t out[2]) {
  mpfr_t v, t;
  mpz_t z;
  mpfr_inits2(kWide, v, t, (mpfr_ptr)0);
  mpz_init(z);
  const int K = 51 + 8 * i;
  mpfr_const_pi(v, MPFR_RNDN);
  mpfr_ui_div(v, 2, v, MPFR_RNDN);
  mpfr_mul_2si(v, v, K, MPFR_RNDN);
  mpfr_get_z(z, v, MPFR_RNDD);
  mpfr_sub_z(t, v, z, MPFR_RNDN);  // the bits below 2^-K, scaled by 2^K
  mpz_fdiv_r_2exp(z, z, 53);
  mpfr_set_z(v, z, MPFR_RNDN);  // exact: 53 bits
  mpfr_mul_2si(v, v, -K, MPFR_RNDN);
  mpfr_mul_2si(t, t, -K, MPFR_RNDN);
  out[0] = bits64(mpfr_get_d(v, MPFR_RNDN));
  out[1] = bits64(mpfr_get_d(t, MPFR_RNDN));
  mpz_clear(z);
  mpfr_clears(v, t, (mpfr_ptr)0);
}

bool row_is(const uint32_t* row, std::initializer_list<double> want) {
  int k = 0;
  for (double w : want)
    if (row[k++] != bits32((float)w)) return false;
  return true;
}

}  // namespace

int main() {
  static uint32_t bits[256 * 3 + 1], sinf_nodes[256 * 4], cosf_nodes[256 * 4], tanf_nodes[128 * kTanCols];
  static uint64_t large[15 * 2];
  for (int e = 0; e < 256; ++e) reduce_bits(e, bits + 3 * e);
  for (int j = 0; j < 256; ++j) {
    node_row(j, false, sinf_nodes + 4 * j);
    node_row(j, true, cosf_nodes + 4 * j);
  }
  for (int j = 0; j < 128; ++j) tan_row(j, tanf_nodes + kTanCols * j);
  for (int i = -1; i <= 13; ++i) large_block(i, large + 2 * (i + 1));

  const uint32_t w127[3] = {0x00000051, 0x7cc1b727, 0x220a94fe}, w150[3] = {0x28be60db, 0x9391054a, 0x7f09d5f4},
                 w255[3] = {0x9a6ee06d, 0xb14acc9e, 0x21c820ff};
  expect_row(!std::memcmp(bits + 3 * 127, w127, 12), "reduction bits e = 127");
  expect_row(!std::memcmp(bits + 3 * 150, w150, 12), "reduction bits e = 150");
  expect_row(!std::memcmp(bits + 3 * 255, w255, 12), "reduction bits e = 255");
  expect_row(bits[0] == 0 && bits[1] == 0 && bits[2] == 0, "reduction bits e = 0");
  expect_row(row_is(sinf_nodes + 4, {-0.00030118130962364376, 0.024541229009628296, -4.867160008359406e-10, 1}),
         "sinf node row 1");
  expect_row(row_is(sinf_nodes + 4 * 64, {0, 1, 0, 0}), "sinf node row 64");
  expect_row(row_is(sinf_nodes + 4 * 128, {0, 0, 0, -1}), "sinf node row 128");
  expect_row(row_is(cosf_nodes, {0, 1, 0, 0}) && row_is(cosf_nodes + 4 * 64, {0, 0, 0, -1}),
         "cosf node rows 0 and 64");
  // The cosine's rows are the sine's a quarter period on; only the sine table is printed.
  for (int j = 0; j < 256; ++j)
    expect_row(!std::memcmp(cosf_nodes + 4 * j, sinf_nodes + 4 * ((j + 64) % 256), 16), "cosf node = sinf node + 64");
  // tan rows: r + r^3/3 + 2r^5/15 at 0; the pole row r/3 + r^3/45 + 2r^5/945.
  expect_row(row_is(tanf_nodes, {1.5707963267948966, -4.3711388286737929e-08, 0, 0, 0, 1, 0, 0, 1.0 / 3, 0, 2.0 / 15, 0}),
         "tanf node row 0");
  expect_row(row_is(tanf_nodes + kTanCols * 64, {0, 0, 1, 0, 0, 1.0 / 3, (float)(1.0 / 3 - (float)(1.0 / 3)), 0,
                                             1.0 / 45, 0, 2.0 / 945, 0}),
         "tanf node row 64");
  // Block -1 holds 2/pi itself, rounded down to a multiple of 2^-43.
  expect_row(from_bits(large[0]) == std::floor(0.63661977236758138 * 0x1p43) * 0x1p-43, "sincosf block -1");
  if (row_failures) return 1;

  open_file(
      "// Tables of the single sine, cosine and tangent families (sinf, cosf, tanf,\n"
      "// sincosf, sincosregf). Generated by tools/tablegen_trigf.cpp (MPFR, each entry\n"
      "// rounded once to nearest); do not edit. Regenerate with\n"
      "//   ninja -C build tablegen_trigf && build/tools/tablegen_trigf > src/tables/trigf.h\n"
      "// Entries are IEEE bit patterns (uint32_t: singles, uint64_t: doubles).\n",
      "trigf_tables");
  std::printf(
      "// Reduction bits of 1/(2 pi): entry e = 0..255 (a single's biased exponent) is\n"
      "// W(e) = floor(2^(e - 150 + 96) / (2 pi)) mod 2^96 as three words, most significant\n"
      "// first: for x = m 2^(e - 150), m W(e) mod 2^96 is the fraction of x / (2 pi)\n"
      "// scaled by 2^96. One zero word follows entry 255, so that a 16-byte load of any\n"
      "// entry stays in the table.\n");
  print_table32("alignas(64) inline constexpr uint32_t kReduceBits[256 * 3 + 1]", bits, 256 * 3 + 1, 6);
  std::printf(
      "// sinf nodes: row j = 0..255 at a_j = 2 pi j / 256 is (D1, V_hi, V_lo, D0), 16 bytes:\n"
      "// V_hi = RN(sin a_j), V_lo = RN(sin a_j - V_hi), D0 = cos a_j rounded to a multiple\n"
      "// of 1/64, D1 = RN(cos a_j - D0). Row j + 64 (mod 256) is cosf's row j: value cos a_j,\n"
      "// derivative -sin a_j.\n");
  print_table32("alignas(64) inline constexpr uint32_t kSinfNodes[256 * 4]", sinf_nodes, 256 * 4, 4);
  std::printf(
      "// tanf nodes: row j = 0..127 at a_j = pi j / 128, 12 singles (48 bytes):\n"
      "// T0 + T1 = pi/2 - a_j (high, low); T2 = w, the weight of the pole term 1/(pi/2 - a_j - r):\n"
      "// 1 on the rows j = 32..96 (within pi/4 of the pole), else 0; F(x) = tan x - w/(pi/2 - x)\n"
      "// expanded at a_j: T3 + T4 = F(a_j), T5 + T6 = F'(a_j) (high, low), T7..T10 the\n"
      "// coefficients of r^2..r^5; T11 = 0. Row 64 (the pole) has F = r/3 + r^3/45 + 2 r^5/945.\n");
  print_table32("alignas(64) inline constexpr uint32_t kTanfNodes[128 * 12]", tanf_nodes, 128 * kTanCols, 6);
  std::printf(
      "// sincosf large arguments: row i + 1 for the block i = (E - 1046) >> 3 = -1..13 of the\n"
      "// biased double exponent E of |x| (|x| = m 2^s, m a 24-bit integer, s = E - 1046), two\n"
      "// doubles (C0, C1): C0 = the 53 bits of 2/pi of weights 2^(1 - 8i) to 2^(-51 - 8i) (the\n"
      "// bits above only add multiples of 4 to |x| 2/pi), C1 = RN(the bits of 2/pi below them).\n");
  print_table64("alignas(64) inline constexpr uint64_t kSincosfLarge[15 * 2]", large, 15 * 2);
  close_file("trigf_tables");
  return 0;
}
