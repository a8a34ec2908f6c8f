// Throughput benchmark: nanoseconds per element of library entry points beside
// SLEEF's AVX2 functions, measured in the same run, over L1-resident arrays.
//
//   build/bench/ravl_bench [filter]
//
// Each row: the best of several timed passes of a loop that calls the entry
// point on consecutive vectors of preset inputs and stores the results.
// The ratio column is the peer's ns/element divided by ours (above 1: faster).
// The "call floor" rows time the same loop around an entry point that does one
// AND: on a machine where a call costs several nanoseconds, that floor is part
// of every row, ours and the peer's alike.
#include <sleef.h>

#include <chrono>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <random>
#include <string>
#include <vector>

#include "ocl_ravl_l9.h"

namespace {

constexpr int kElems = 4096;  // 32 KiB of doubles: stays in L1/L2
constexpr int kPasses = 30;

struct Row {
  std::string name;
  std::string peer;  // the row (by name) this one is compared against, or empty
  double ns;
};

// Best of kPasses timed passes; f maps one vector of In to one of Out. The
// loop calls the entry point directly (through the PLT, as for the peer).
template <class In, class Out, class F> double time_fn(double lo, double hi, F f) {
  using Lane = decltype(In{}[0]);
  constexpr int lanes = sizeof(In) / sizeof(Lane);
  static In in[kElems / lanes];
  static Out out[kElems / lanes];
  std::mt19937_64 g(42);
  std::uniform_real_distribution<double> u(lo, hi);
  for (auto& v : in)
    for (int k = 0; k < lanes; ++k) v[k] = (Lane)u(g);
  double best = 1e30;
  for (int p = 0; p < kPasses; ++p) {
    auto t0 = std::chrono::steady_clock::now();
    for (int rep = 0; rep < 20; ++rep)
      for (int i = 0; i < kElems / lanes; ++i) out[i] = f(in[i]);
    auto t1 = std::chrono::steady_clock::now();
    double ns = std::chrono::duration<double, std::nano>(t1 - t0).count() / (20.0 * kElems);
    if (ns < best) best = ns;
  }
  return best;
}

// The same loop over scalars: f maps one In to one Out, compiled at -O2
// -mavx2 like any client loop (the compiler may vectorize it).
template <class In, class Out, class F> double time_scalar(double lo, double hi, F f) {
  static In in[kElems];
  static volatile Out sink;
  static Out out[kElems];
  std::mt19937_64 g(42);
  std::uniform_real_distribution<double> u(lo, hi);
  for (auto& v : in) v = (In)u(g);
  double best = 1e30;
  for (int p = 0; p < kPasses; ++p) {
    auto t0 = std::chrono::steady_clock::now();
    for (int rep = 0; rep < 20; ++rep) {
      for (int i = 0; i < kElems; ++i) out[i] = f(in[i]);
      sink = out[rep];
    }
    auto t1 = std::chrono::steady_clock::now();
    double ns = std::chrono::duration<double, std::nano>(t1 - t0).count() / (20.0 * kElems);
    if (ns < best) best = ns;
  }
  return best;
}

using D4 = ocl_ravl_double4;
using D8 = ocl_ravl_double8;
using F8 = ocl_ravl_float8;
using F16 = ocl_ravl_float16;

#define UNARY(T, f) [](T x) { return f(x); }
#define D8CALL(f) [](D8 x) { return f(x.lo, x.hi); }
#define F16CALL(f) [](F16 x) { return f(x.lo, x.hi); }

void run(std::vector<Row>& v, const char* filter, const char* name, const char* peer, double ns_fn()) {
  if (!strstr(name, filter) && !strstr(peer, filter)) return;
  for (const Row& r : v)
    if (r.name == name) return;  // a peer listed twice
  v.push_back({name, peer, ns_fn()});
}

}  // namespace

int main(int argc, char** argv) {
  const char* f = argc > 1 ? argv[1] : "";
  std::vector<Row> v;
  const char* sd = "sleef expd4_u10";
  const char* sf = "sleef expf8_u10";
  run(v, f, sd, "", [] { return time_fn<__m256d, __m256d>(-700, 700, UNARY(__m256d, Sleef_expd4_u10avx2)); });
  run(v, f, "exp4", sd, [] { return time_fn<D4, D4>(-700, 700, UNARY(D4, __ocl_ravl_l9_exp4)); });
  run(v, f, "exp4_native", sd, [] { return time_fn<D4, D4>(-700, 700, UNARY(D4, __ocl_ravl_l9_exp4_native)); });
  run(v, f, "exp8", sd, [] { return time_fn<D8, D8>(-700, 700, D8CALL(__ocl_ravl_l9_exp8)); });
  run(v, f, "exp8_native", sd, [] { return time_fn<D8, D8>(-700, 700, D8CALL(__ocl_ravl_l9_exp8_native)); });
  run(v, f, sf, "", [] { return time_fn<__m256, __m256>(-87, 88, UNARY(__m256, Sleef_expf8_u10avx2)); });
  run(v, f, "expf8", sf, [] { return time_fn<F8, F8>(-87, 88, UNARY(F8, __ocl_ravl_l9_expf8)); });
  run(v, f, "expf8_native", sf, [] { return time_fn<F8, F8>(-87, 88, UNARY(F8, __ocl_ravl_l9_expf8_native)); });
  run(v, f, "expf16", sf, [] { return time_fn<F16, F16>(-87, 88, F16CALL(__ocl_ravl_l9_expf16)); });
  run(v, f, "expf16_native", sf, [] { return time_fn<F16, F16>(-87, 88, F16CALL(__ocl_ravl_l9_expf16_native)); });

  // Exponentials and logarithms at width 4 double and 8 float: plain beside
  // SLEEF's 1-ulp function, _native beside its 3.5-ulp one (its 1-ulp one
  // where SLEEF has no 3.5-ulp variant).
#define VS_SLEEF(fn, fnf, d10, d35, f10, f35, lo, hi, flo, fhi)                                               \
  run(v, f, "sleef " #d10, "", [] { return time_fn<__m256d, __m256d>(lo, hi, UNARY(__m256d, Sleef_##d10)); });  \
  run(v, f, "sleef " #d35, "", [] { return time_fn<__m256d, __m256d>(lo, hi, UNARY(__m256d, Sleef_##d35)); });  \
  run(v, f, #fn "4", "sleef " #d10, [] { return time_fn<D4, D4>(lo, hi, UNARY(D4, __ocl_ravl_l9_##fn##4)); });  \
  run(v, f, #fn "4_native", "sleef " #d35,                                                                    \
      [] { return time_fn<D4, D4>(lo, hi, UNARY(D4, __ocl_ravl_l9_##fn##4_native)); });                       \
  run(v, f, "sleef " #f10, "", [] { return time_fn<__m256, __m256>(flo, fhi, UNARY(__m256, Sleef_##f10)); });    \
  run(v, f, "sleef " #f35, "", [] { return time_fn<__m256, __m256>(flo, fhi, UNARY(__m256, Sleef_##f35)); });    \
  run(v, f, #fnf "8", "sleef " #f10, [] { return time_fn<F8, F8>(flo, fhi, UNARY(F8, __ocl_ravl_l9_##fnf##8)); }); \
  run(v, f, #fnf "8_native", "sleef " #f35,                                                                   \
      [] { return time_fn<F8, F8>(flo, fhi, UNARY(F8, __ocl_ravl_l9_##fnf##8_native)); });
  VS_SLEEF(exp2, exp2f, exp2d4_u10avx2, exp2d4_u35avx2, exp2f8_u10avx2, exp2f8_u35avx2, -1000, 1000, -120, 120)
  VS_SLEEF(exp10, exp10f, exp10d4_u10avx2, exp10d4_u35avx2, exp10f8_u10avx2, exp10f8_u35avx2, -300, 300, -37, 37)
  VS_SLEEF(log, logf, logd4_u10avx2, logd4_u35avx2, logf8_u10avx2, logf8_u35avx2, 1e-300, 1e300, 1e-30, 1e30)
  VS_SLEEF(log2, log2f, log2d4_u10avx2, log2d4_u35avx2, log2f8_u10avx2, log2f8_u35avx2, 1e-300, 1e300, 1e-30, 1e30)
  VS_SLEEF(log10, log10f, log10d4_u10avx2, log10d4_u10avx2, log10f8_u10avx2, log10f8_u10avx2, 1e-300, 1e300, 1e-30,
           1e30)
  VS_SLEEF(expm1, expm1f, expm1d4_u10avx2, expm1d4_u10avx2, expm1f8_u10avx2, expm1f8_u10avx2, -30, 700, -20, 80)
  VS_SLEEF(log1p, log1pf, log1pd4_u10avx2, log1pd4_u10avx2, log1pf8_u10avx2, log1pf8_u10avx2, -0.9, 1e300, -0.9, 1e30)

  // Conversions, division and rounding beside plain C++ loops.
  const char* ll = "C++ llrint+clamp";
  run(v, f, ll, "", [] {
    return time_scalar<double, int64_t>(-1e12, 1e12, [](double x) -> int64_t {
      return x != x ? 0 : x >= 0x1p63 ? INT64_MAX : x < -0x1p63 ? INT64_MIN : std::llrint(x);
    });
  });
  run(v, f, "cvtfptoi64rtesat4", ll, [] {
    return time_fn<D4, ocl_ravl_long4>(-1e12, 1e12, UNARY(D4, __ocl_ravl_l9_cvtfptoi64rtesat4));
  });
  const char* sc = "C++ (float)uint64";
  run(v, f, sc, "", [] { return time_scalar<uint64_t, float>(0, 1.8e19, [](uint64_t x) { return (float)x; }); });
  run(v, f, "cvtu64tofprtef8", sc, [] {
    return time_fn<ocl_ravl_ulong8, F8>(0, 1.8e19, [](ocl_ravl_ulong8 x) {
      return __ocl_ravl_l9_cvtu64tofprtef8(x.lo, x.hi);
    });
  });
  const char* dv = "C++ float x/y";
  run(v, f, dv, "", [] { return time_scalar<float, float>(0.5, 2, [](float x) { return 1.5f / x; }); });
  run(v, f, "divf8_native", dv, [] {
    return time_fn<F8, F8>(0.5, 2, [](F8 x) { return __ocl_ravl_l9_divf8_native(F8(1.5f), x); });
  });
  run(v, f, "divf8", dv, [] { return time_fn<F8, F8>(0.5, 2, [](F8 x) { return __ocl_ravl_l9_divf8(F8(1.5f), x); }); });
  const char* rd = "C++ std::round";
  run(v, f, rd, "", [] { return time_scalar<double, double>(-1e6, 1e6, [](double x) { return std::round(x); }); });
  run(v, f, "round4", rd, [] { return time_fn<D4, D4>(-1e6, 1e6, UNARY(D4, __ocl_ravl_l9_round4)); });

  // The floor: a call that does almost nothing (one AND), same loop.
  run(v, f, "fabsf8 (call floor)", "", [] { return time_fn<F8, F8>(-87, 88, UNARY(F8, __ocl_ravl_l9_fabsf8)); });
  run(v, f, "fabs4 (call floor)", "", [] { return time_fn<D4, D4>(-87, 88, UNARY(D4, __ocl_ravl_l9_fabs4)); });

  std::printf("%-22s %10s %10s  %s\n", "function", "ns/elem", "vs peer", "peer");
  for (const Row& r : v) {
    double peer = 0;
    for (const Row& p : v)
      if (p.name == r.peer) peer = p.ns;
    if (peer > 0)
      std::printf("%-22s %10.3f %9.2fx  %s\n", r.name.c_str(), r.ns, peer / r.ns, r.peer.c_str());
    else
      std::printf("%-22s %10.3f\n", r.name.c_str(), r.ns);
  }
  return 0;
}
