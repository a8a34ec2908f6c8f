// Accuracy of the single sine, cosine and tangent families and their
// pi-scaled forms (sinpif, cospif, tanpif) over every positive single (the parity tests show f(-x) = -f(x) or f(x) bit for bit):
// each result is screened against a double reference (an exact reduction of
// x by pi/2 with 128 bits of 2/pi below the units, then Taylor sums in double,
// about 2^-50 relative), and the inputs with the largest screened errors are
// measured again against MPFR, which gives the figures printed. Not part of
// the test suite: minutes of CPU per member.
//
//   build/tools/exhaustive/ravl_exhaustive_trigf [threads] [name-filter] [from-bits to-bits]
//
// RAVL_SO=path measures that copy of the library instead of the build's.
// Members are called at width 8 through their exported names (dlsym). Each
// line: the member and result, the region (up to the fast path's bound and
// above it), the max error in ulp (MPFR), the worst input, and the number of
// inputs above 0.5, 0.6 and 1 ulp.
#include <dlfcn.h>

#include <algorithm>
#include <atomic>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include "ocl_ravl_l9.h"
#include "tests/common/ref.h"

namespace {

using F8 = ocl_ravl_float8;

// ---- the double reference ---------------------------------------------------------

// Z(e) = floor(2^(e - 150 + 128) 2/pi) mod 2^130 in three 64-bit limbs, low
// first: for x = m 2^(e - 150), m Z(e) mod 2^130 is x 2/pi mod 4 scaled by
// 2^128, within m 2^-128.
uint64_t kZ[256][3];

void init_z() {
  mpfr_t v;
  mpz_t z, limb;
  mpfr_init2(v, 1024);
  mpz_inits(z, limb, nullptr);
  for (int e = 0; e < 256; ++e) {
    mpfr_const_pi(v, MPFR_RNDN);
    mpfr_ui_div(v, 2, v, MPFR_RNDN);
    mpfr_mul_2si(v, v, e - 150 + 128, MPFR_RNDN);
    mpfr_get_z(z, v, MPFR_RNDD);
    mpz_fdiv_r_2exp(z, z, 130);
    for (int k = 0; k < 3; ++k) {
      mpz_fdiv_r_2exp(limb, z, 64);
      kZ[e][k] = mpz_get_ui(limb);
      mpz_fdiv_q_2exp(z, z, 64);
    }
  }
  mpz_clears(z, limb, nullptr);
  mpfr_clear(v);
}

using u128 = unsigned __int128;

// x >= 0 finite: x = q pi/2 + (rh + rl), |rh| <= pi/4 (about).
void reduce(float x, int* q, double* rh, double* rl) {
  if (x < 0.78f) {
    *q = 0, *rh = x, *rl = 0;
    return;
  }
  uint32_t b;
  std::memcpy(&b, &x, 4);
  const int e = b >> 23;
  const uint64_t m = (b & 0x7fffff) | 0x800000;
  const u128 p0 = (u128)m * kZ[e][0], p1 = (u128)m * kZ[e][1];
  const uint64_t lo = (uint64_t)p0;
  const u128 mid = (p0 >> 64) + (uint64_t)p1;
  const uint64_t top = (uint64_t)((p1 >> 64) + (mid >> 64) + m * kZ[e][2]) & 3;
  u128 f = (u128)(uint64_t)mid << 64 | lo;  // fraction * 2^128
  int qq = (int)top;
  if (f >> 127) ++qq;  // f >= 1/2: round to the next quadrant, f - 1
  const __int128 fs = (__int128)f;  // two's complement: f - 1 when f >= 1/2
  const int64_t h = (int64_t)(fs >> 64);
  const uint64_t l = (uint64_t)fs;
  // f = h 2^-64 + l 2^-128 as fa + fb: fa exact (53 bits of h), fb the rest.
  const double fa = (double)(h >> 11) * 0x1p-53;
  const double fb = (double)(h & 2047) * 0x1p-64 + (double)l * 0x1p-128;
  const double p1h = 1.5707963267948966, p1l = 6.123233995736766e-17;
  const double a = fa * p1h, ae = std::fma(fa, p1h, -a);
  const double t = ae + (fa * p1l + fb * p1h);
  *rh = a + t;
  *rl = (a - *rh) + t;
  *q = qq & 3;
}

// sin and cos of rh + rl, |rh| <= 0.8: Taylor sums to degree 27 and 26.
void sincos_ref(double rh, double rl, double* s, double* c) {
  const double r2 = rh * rh;
  // sin r / r = 1 - r^2/(2*3) (1 - r^2/(4*5) (1 - ...)), cos r likewise.
  double sk = 1;
  for (int k = 13; k >= 1; --k) sk = 1 - r2 / ((2.0 * k) * (2.0 * k + 1)) * sk;
  double ck = 1;
  for (int k = 13; k >= 1; --k) ck = 1 - r2 / ((2.0 * k - 1) * (2.0 * k)) * ck;
  const double sh = rh * sk, ch = ck;
  *s = sh + rl * ch;
  *c = ch - rl * sh;
}

enum Kind { kSin, kCos, kTan, kSinPi, kCosPi, kTanPi };

double ref_value(Kind k, float x) {
  int q;
  double rh, rl, s, c;
  if (k >= kSinPi) {
    // The pi-scaled forms: x = 2j + q/2 + r exactly in double (|r| <= 1/4),
    // then pi r with pi's low part (r has at most 24 significant bits).
    const double y = x - 2 * std::nearbyint(x * 0.5), n = std::nearbyint(2 * y), r = y - n / 2;
    q = (int)n & 3;
    if (k == kTanPi && r == 0) return q == 0 ? 0.0 : q == 1 ? INFINITY : q == 2 ? -0.0 : -INFINITY;
    rh = r * 3.141592653589793;
    rl = std::fma(r, 3.141592653589793, -rh) + r * 1.2246467991473532e-16;
    k = Kind(k - kSinPi);
  } else {
    reduce(x, &q, &rh, &rl);
  }
  sincos_ref(rh, rl, &s, &c);
  switch (k) {
    case kSin: return q == 0 ? s : q == 1 ? c : q == 2 ? -s : -c;
    case kCos: return q == 0 ? c : q == 1 ? -s : q == 2 ? -c : s;
    default: return q % 2 == 0 ? s / c : -c / s;
  }
}

using ravl_test::screen_ulp;

// ---- the members --------------------------------------------------------------------

struct Member {
  std::string name;
  Kind kind[2];
  int results;
  float bound;  // the fast path's bound: the regions are [0, bound] and above
};

struct Region {
  double worst = 0;
  uint32_t at = 0;
  uint64_t n = 0, above[3] = {};
  std::vector<std::pair<double, uint32_t>> top;  // the largest screened errors
  void add(double e, uint32_t b) {
    ++n;
    above[0] += e > 0.5;
    above[1] += e > 0.6;
    above[2] += e > 1.0;
    if (top.size() < 64 || e > top.back().first) {
      top.emplace_back(e, b);
      std::sort(top.begin(), top.end(), [](auto& a, auto& c) { return a.first > c.first; });
      if (top.size() > 64) top.pop_back();
    }
  }
  void merge(const Region& o) {
    n += o.n;
    for (int k = 0; k < 3; ++k) above[k] += o.above[k];
    for (auto& t : o.top) top.push_back(t);
    std::sort(top.begin(), top.end(), [](auto& a, auto& c) { return a.first > c.first; });
    if (top.size() > 64) top.resize(64);
  }
};

void* g_lib;

void run(const Member& mb, int threads, uint32_t from, uint32_t to) {
  using One = F8(OCL_RAVL_CC*)(F8);
  using Two = F8(OCL_RAVL_CC*)(F8, float*);
  void* fn = dlsym(g_lib, ("__ocl_ravl_l9_" + mb.name).c_str());
  if (!fn) {
    std::printf("%s: not exported\n", mb.name.c_str());
    return;
  }
  std::vector<Region> all(4 * threads);
  std::vector<std::thread> pool;
  const uint64_t span = (uint64_t)to - from, chunk = (span / threads + 7) & ~7ull;
  for (int t = 0; t < threads; ++t)
    pool.emplace_back([&, t] {
      const uint64_t a = from + t * chunk, b = std::min<uint64_t>(to, a + chunk);
      for (uint64_t base = a; base < b; base += 8) {
        F8 x;
        for (int k = 0; k < 8; ++k) {
          uint32_t u = (uint32_t)std::min<uint64_t>(base + k, b - 1);
          float f;
          std::memcpy(&f, &u, 4);
          x[k] = f;
        }
        F8 r0, r1;
        if (mb.results == 1) {
          r0 = ((One)fn)(x);
        } else {
          float c[8];
          r0 = ((Two)fn)(x, c);
          for (int k = 0; k < 8; ++k) r1[k] = c[k];
        }
        for (int k = 0; k < 8 && base + k < b; ++k) {
          uint32_t u = (uint32_t)(base + k);
          const int region = x[k] > mb.bound;
          all[4 * t + region].add(screen_ulp(ref_value(mb.kind[0], x[k]), r0[k]), u);
          if (mb.results == 2) all[4 * t + 2 + region].add(screen_ulp(ref_value(mb.kind[1], x[k]), r1[k]), u);
        }
      }
    });
  for (auto& th : pool) th.join();
  const char* kn[] = {"sin", "cos", "tan", "sinpi", "cospi", "tanpi"};
  for (int res = 0; res < mb.results; ++res)
    for (int region = 0; region < 2; ++region) {
      Region g;
      for (int t = 0; t < threads; ++t) g.merge(all[4 * t + 2 * res + region]);
      if (!g.n) continue;
      const ravl_test::MpfrFn fns[] = {mpfr_sin, mpfr_cos, mpfr_tan, mpfr_sinpi, mpfr_cospi, mpfr_tanpi};
      ravl_test::UlpRef<float> ref(fns[mb.kind[res]]);
      double worst = 0;
      uint32_t at = 0;
      float got_at = 0;
      for (auto& [e, u] : g.top) {
        float x;
        std::memcpy(&x, &u, 4);
        F8 v(x), r;
        if (mb.results == 1) r = ((One)fn)(v);
        else {
          float c[8];
          r = ((Two)fn)(v, c);
          if (res == 1) r = F8(c[0]);
        }
        const double em = ref.ulp_error(x, r[0]);
        if (em > worst) worst = em, at = u, got_at = r[0];
      }
      float xa;
      std::memcpy(&xa, &at, 4);
      std::printf("%-18s %s %s %-9g: max %.4f ulp at x = %a (got %a, want %a); %llu inputs, >0.5: %llu, >0.6: %llu, "
                  ">1: %llu (screened max %.4f)\n",
                  mb.name.c_str(), kn[mb.kind[res]], region ? "above" : "up to", mb.bound, worst, xa, got_at,
                  ref.correct(xa), (unsigned long long)g.n, (unsigned long long)g.above[0],
                  (unsigned long long)g.above[1], (unsigned long long)g.above[2], g.top.empty() ? 0 : g.top[0].first);
      std::fflush(stdout);
    }
}

}  // namespace

int main(int argc, char** argv) {
  const int threads = argc > 1 ? std::atoi(argv[1]) : 2;
  const std::string filter = argc > 2 ? argv[2] : "";
  const uint32_t from = argc > 4 ? (uint32_t)std::strtoul(argv[3], nullptr, 0) : 0;
  const uint32_t to = argc > 4 ? (uint32_t)std::strtoul(argv[4], nullptr, 0) : 0x7f800000u;
  const char* so = std::getenv("RAVL_SO");  // another build of the library, e.g. a copy
  g_lib = dlopen(so ? so : RAVL_SO_PATH, RTLD_NOW);
  if (!g_lib) {
    std::fprintf(stderr, "%s\n", dlerror());
    return 1;
  }
  init_z();
  const std::vector<Member> members = {
      {"sinf8", {kSin}, 1, 10000},        {"sinf8_native", {kSin}, 1, 10000}, {"cosf8", {kCos}, 1, 10000},
      {"cosf8_native", {kCos}, 1, 10000}, {"tanf8", {kTan}, 1, 8256},         {"tanf8_native", {kTan}, 1, 8256},
      {"sincosf8", {kSin, kCos}, 2, 0x1.fffffep18f},
      // The pi-scaled forms: every single below 2^23 (non-integers) and above.
      {"sinpif8", {kSinPi}, 1, 0x1p23f}, {"sinpif8_native", {kSinPi}, 1, 0x1p23f},
      {"cospif8", {kCosPi}, 1, 0x1p23f}, {"cospif8_native", {kCosPi}, 1, 0x1p23f},
      {"tanpif8", {kTanPi}, 1, 0x1p23f}, {"tanpif8_native", {kTanPi}, 1, 0x1p23f}};
  // A filter that names a member exactly runs that member alone.
  const bool exact = std::any_of(members.begin(), members.end(), [&](const Member& m) { return m.name == filter; });
  for (const Member& m : members)
    if (exact ? m.name == filter : m.name.find(filter) != std::string::npos) run(m, threads, from, to);
  return 0;
}
