// Exhaustive check of every float-source conversion and every float rounding
// function over all 2^32 inputs against the independent references of the
// tests (exact integer arithmetic, no floating rounding). Not part of the
// test suite: it takes a long while.
//
//   build/tools/exhaustive/ravl_exhaustive_float [threads] [name-filter]
//
// The library is called at width 8 through its exported names (dlsym), so the
// exported members themselves are checked; the generic export tests show that
// every other width gives the same bits lane for lane. Prints one line per
// function: inputs checked, mismatches, the first mismatch, and seconds.
#include <dlfcn.h>

#include <atomic>
#include <chrono>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <string>
#include <thread>
#include <vector>

#include "ocl_ravl_l9.h"
#include "tests/common/ref_fp_to_int.h"
#include "tests/common/ref_rounding.h"

namespace {

using F8 = ocl_ravl_float8;
using I8 = ocl_ravl_int8;
using L8 = ocl_ravl_long8;

struct Job {
  std::string name;
  // Library result bits of lane k for the 8 inputs starting at bits `base`.
  void (*lib)(void* fn, uint32_t base, uint64_t out[8]);
  uint64_t (*ref)(const Job&, uint32_t bits);
  ravl_test::CvtTarget target;
  ravl_test::CvtRound rm;
  bool sat;
  ravl_test::Rounding rounding;
  void* fn;
};

F8 lanes(uint32_t base) {
  F8 x;
  for (int k = 0; k < 8; ++k) {
    uint32_t b = base + k;
    float f;
    std::memcpy(&f, &b, 4);
    x[k] = f;
  }
  return x;
}

void call_i32(void* fn, uint32_t base, uint64_t out[8]) {
  I8 r = ((I8(OCL_RAVL_CC*)(F8))fn)(lanes(base));
  for (int k = 0; k < 8; ++k) out[k] = (uint32_t)r[k];
}
void call_i64(void* fn, uint32_t base, uint64_t out[8]) {
  L8 r = ((L8(OCL_RAVL_CC*)(F8))fn)(lanes(base));
  for (int k = 0; k < 8; ++k) out[k] = (uint64_t)r[k];
}
void call_f32(void* fn, uint32_t base, uint64_t out[8]) {
  F8 r = ((F8(OCL_RAVL_CC*)(F8))fn)(lanes(base));
  for (int k = 0; k < 8; ++k) {
    uint32_t b;
    float f = r[k];
    std::memcpy(&b, &f, 4);
    out[k] = b;
  }
}

uint64_t ref_cvt(const Job& j, uint32_t bits) { return ravl_test::ref_fp_to_int_bits(j.target, j.rm, j.sat, bits, true); }
uint64_t ref_round(const Job& j, uint32_t bits) {
  float x;
  std::memcpy(&x, &bits, 4);
  float r = ravl_test::ref_round_integral(x, j.rounding);
  uint32_t b;
  std::memcpy(&b, &r, 4);
  return b;
}

std::vector<Job> jobs() {
  std::vector<Job> v;
  const char* tn[] = {"i32", "u32", "i64", "u64"};
  const char* rn[] = {"rte", "rtn", "rtp", "rtz"};
  for (int t = 0; t < 4; ++t)
    for (int r = 0; r < 4; ++r)
      for (int s = 0; s < 2; ++s) {
        Job j{};
        j.name = std::string("cvtfpto") + tn[t] + rn[r] + (s ? "sat" : "nosat") + "f";
        j.lib = t < 2 ? call_i32 : call_i64;
        j.ref = ref_cvt;
        j.target = (ravl_test::CvtTarget)t;
        j.rm = (ravl_test::CvtRound)r;
        j.sat = s;
        v.push_back(j);
      }
  // rint and nearbyint follow the caller's mode: checked here in the default
  // (nearest even) mode; the tests cover the other modes.
  struct { const char* name; ravl_test::Rounding r; } rf[] = {
      {"ceilf", ravl_test::Rounding::kUp},          {"floorf", ravl_test::Rounding::kDown},
      {"truncf", ravl_test::Rounding::kTowardZero}, {"roundf", ravl_test::Rounding::kHalfAway},
      {"rintf", ravl_test::Rounding::kNearestEven}, {"nearbyintf", ravl_test::Rounding::kNearestEven}};
  for (auto& f : rf) {
    Job j{};
    j.name = f.name;
    j.lib = call_f32;
    j.ref = ref_round;
    j.rounding = f.r;
    v.push_back(j);
  }
  return v;
}

}  // namespace

int main(int argc, char** argv) {
  int threads = argc > 1 ? std::atoi(argv[1]) : (int)std::thread::hardware_concurrency();
  const char* filter = argc > 2 ? argv[2] : "";
  void* so = dlopen(RAVL_SO_PATH, RTLD_NOW);
  if (!so) { std::fprintf(stderr, "%s\n", dlerror()); return 2; }
  int failed = 0;
  auto t_all = std::chrono::steady_clock::now();
  for (Job& j : jobs()) {
    if (!strstr(j.name.c_str(), filter)) continue;
    std::string sym = "__ocl_ravl_l9_" + j.name + "8";
    j.fn = dlsym(so, sym.c_str());
    if (!j.fn) { std::printf("%-24s not exported\n", j.name.c_str()); ++failed; continue; }
    auto t0 = std::chrono::steady_clock::now();
    std::atomic<uint64_t> bad{0};
    std::atomic<uint64_t> first{~0ull};
    std::vector<std::thread> pool;
    for (int t = 0; t < threads; ++t)
      pool.emplace_back([&, t] {
        uint64_t out[8];
        // Blocks of 8 consecutive bit patterns, interleaved between threads.
        for (uint64_t base = (uint64_t)t * 8; base < (1ull << 32); base += (uint64_t)threads * 8) {
          j.lib(j.fn, (uint32_t)base, out);
          for (int k = 0; k < 8; ++k) {
            uint32_t b = (uint32_t)base + k;
            if (out[k] != j.ref(j, b)) {
              if (bad++ == 0) first = b;
            }
          }
        }
      });
    for (auto& th : pool) th.join();
    double s = std::chrono::duration<double>(std::chrono::steady_clock::now() - t0).count();
    std::printf("%-24s 4294967296 inputs  %llu mismatches", j.name.c_str(), (unsigned long long)bad.load());
    if (bad) std::printf(" (first input 0x%08llx)", (unsigned long long)first.load());
    std::printf("  %.1f s\n", s);
    std::fflush(stdout);
    failed += bad != 0;
  }
  double total = std::chrono::duration<double>(std::chrono::steady_clock::now() - t_all).count();
  std::printf("total %.1f s, %d function(s) with mismatches\n", total, failed);
  return failed ? 1 : 0;
}
