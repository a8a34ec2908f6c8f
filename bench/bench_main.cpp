// Throughput benchmark: nanoseconds per element of library entry points, and
// on Linux of SLEEF's AVX2 functions beside them, measured in the same run
// over L1-resident arrays.
//
//   build/bench/ravl_bench [--tsv] [filter]                     the .so
//   wine build/bench/ravl_bench_win.exe [--tsv] DLL [filter]        the DLL
//
// Each row: the best of several timed passes of a loop that calls the entry
// point on consecutive vectors of preset inputs and stores the results. Our
// entries are called through the address the loader resolved, as a runtime
// calls them; SLEEF's through the PLT. The ratio is the peer's ns/element
// divided by ours (above 1: faster). The "call floor" rows time the same loop
// around an entry that does one AND: that floor is part of every row, ours
// and the peer's alike. Cycles per call are reckoned from a calibrated chain
// of dependent adds (one cycle each), so they hold whatever the clock.
//
// C library only, so that the same file builds for Windows (MinGW) without a
// C++ library; bench/report.py joins the .so run, the DLL run under Wine and
// llvm-mca's bound of each entry's common path into one table.
#include <stdint.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

#ifdef _WIN32
#include <windows.h>
#else
#include <dlfcn.h>
#include <sleef.h>
#include <time.h>
#endif

#include "ocl_ravl_l9.h"

namespace {

constexpr int kElems = 4096;  // 32 KiB of doubles: stays in L1/L2
constexpr int kPasses = 40;
constexpr int kReps = 16;

double now_ns() {
#ifdef _WIN32
  LARGE_INTEGER f, c;
  QueryPerformanceFrequency(&f);
  QueryPerformanceCounter(&c);
  return (double)c.QuadPart * 1e9 / (double)f.QuadPart;
#else
  timespec t;
  clock_gettime(CLOCK_MONOTONIC, &t);
  return (double)t.tv_sec * 1e9 + (double)t.tv_nsec;
#endif
}

// Nanoseconds per core cycle: the best of several timings of a chain of
// dependent integer adds, one cycle each on every x86-64 core.
double cycle_ns() {
  double best = 1e30;
  for (int p = 0; p < 20; ++p) {
    uint64_t x = 0;
    double t0 = now_ns();
    for (int i = 0; i < 100000; ++i)
      __asm__ volatile(
          "add $1, %0\n\tadd $1, %0\n\tadd $1, %0\n\tadd $1, %0\n\tadd $1, %0\n\t"
          "add $1, %0\n\tadd $1, %0\n\tadd $1, %0\n\tadd $1, %0\n\tadd $1, %0"
          : "+r"(x));
    double ns = (now_ns() - t0) / 1e6;
    if (ns < best) best = ns;
  }
  return best;
}

// Argument and result kinds of the benchmarked entries.
enum Kind { kF8, kF16, kD4, kD8, kF8F8, kD4toL4 };

using D4 = ocl_ravl_double4;
using F8 = ocl_ravl_float8;
using L4 = ocl_ravl_long4;
typedef F8(OCL_RAVL_CC* F8Fn)(F8);
typedef D4(OCL_RAVL_CC* D4Fn)(D4);
typedef F8(OCL_RAVL_CC* F8F8Fn)(F8, F8);
typedef L4(OCL_RAVL_CC* D4L4Fn)(D4);
typedef ocl_ravl_float16(OCL_RAVL_CC* F16Fn)(F8, F8);
typedef ocl_ravl_double8(OCL_RAVL_CC* D8Fn)(D4, D4);
// The peer: SLEEF's functions in the platform's C convention.
typedef F8 (*PeerF8)(F8);
typedef D4 (*PeerD4)(D4);

alignas(64) static double in_d[kElems], out_d[kElems];
alignas(64) static float in_f[kElems], out_f[kElems], in_f2[kElems];

uint64_t rng = 0x9e3779b97f4a7c15ull;
double uniform(double lo, double hi) {
  rng = rng * 6364136223846793005ull + 1442695040888963407ull;
  return lo + (hi - lo) * (double)(rng >> 11) * 0x1p-53;
}

// Best ns per element of `kind` function fn over inputs uniform in [lo, hi].
double time_fn(Kind kind, bool peer, void* fn, double lo, double hi) {
  for (int i = 0; i < kElems; ++i) {
    in_d[i] = uniform(lo, hi);
    in_f[i] = (float)in_d[i];
    in_f2[i] = (float)uniform(0.5, 2);
  }
  double best = 1e30;
  for (int p = 0; p < kPasses; ++p) {
    double t0 = now_ns();
    for (int rep = 0; rep < kReps; ++rep) {
      switch (kind) {
        case kF8:
          for (int i = 0; i < kElems; i += 8) {
            F8 x, y;
            memcpy(&x, in_f + i, 32);
            y = peer ? ((PeerF8)fn)(x) : ((F8Fn)fn)(x);
            memcpy(out_f + i, &y, 32);
          }
          break;
        case kF16:
          for (int i = 0; i < kElems; i += 16) {
            F8 a, b;
            memcpy(&a, in_f + i, 32);
            memcpy(&b, in_f + i + 8, 32);
            ocl_ravl_float16 y = ((F16Fn)fn)(a, b);
            memcpy(out_f + i, &y, 64);
          }
          break;
        case kD4:
          for (int i = 0; i < kElems; i += 4) {
            D4 x, y;
            memcpy(&x, in_d + i, 32);
            y = peer ? ((PeerD4)fn)(x) : ((D4Fn)fn)(x);
            memcpy(out_d + i, &y, 32);
          }
          break;
        case kD8:
          for (int i = 0; i < kElems; i += 8) {
            D4 a, b;
            memcpy(&a, in_d + i, 32);
            memcpy(&b, in_d + i + 4, 32);
            ocl_ravl_double8 y = ((D8Fn)fn)(a, b);
            memcpy(out_d + i, &y, 64);
          }
          break;
        case kF8F8:
          for (int i = 0; i < kElems; i += 8) {
            F8 a, b, y;
            memcpy(&a, in_f2 + i, 32);
            memcpy(&b, in_f + i, 32);
            y = ((F8F8Fn)fn)(a, b);
            memcpy(out_f + i, &y, 32);
          }
          break;
        case kD4toL4:
          for (int i = 0; i < kElems; i += 4) {
            D4 x;
            memcpy(&x, in_d + i, 32);
            L4 y = ((D4L4Fn)fn)(x);
            memcpy(out_d + i, &y, 32);
          }
          break;
      }
    }
    double ns = (now_ns() - t0) / ((double)kReps * kElems);
    if (ns < best) best = ns;
  }
  return best;
}

int lanes(Kind k) { return k == kF16 ? 16 : k == kD4 || k == kD4toL4 ? 4 : 8; }

// One benchmarked entry and its peer (a row name, or none).
struct Bench {
  const char* name;
  Kind kind;
  double lo, hi;
  const char* peer;
};

// Exponentials and logarithms at width 4 double and 8 single, plain beside
// SLEEF's 1-ulp function and _native beside its 3.5-ulp one (its 1-ulp one
// where SLEEF has none: log10, expm1, log1p).
#define EXPLOG(fn, fnf, lo, hi, flo, fhi, d35, f35)                                           \
  {#fn "4", kD4, lo, hi, "sleef " #fn "d4_u10"}, {#fn "4_native", kD4, lo, hi, "sleef " #fn d35}, \
      {#fnf "8", kF8, flo, fhi, "sleef " #fnf "8_u10"}, {#fnf "8_native", kF8, flo, fhi, "sleef " #fnf f35},
const Bench kBenches[] = {
    EXPLOG(exp, expf, -700, 700, -87, 88, "d4_u10", "8_u10")  // SLEEF has no 3.5-ulp exp
    EXPLOG(exp2, exp2f, -1000, 1000, -120, 120, "d4_u35", "8_u35")
    EXPLOG(exp10, exp10f, -300, 300, -37, 37, "d4_u35", "8_u35")
    EXPLOG(log, logf, 1e-300, 1e300, 1e-30, 1e30, "d4_u35", "8_u35")
    EXPLOG(log2, log2f, 1e-300, 1e300, 1e-30, 1e30, "d4_u35", "8_u35")
    EXPLOG(log10, log10f, 1e-300, 1e300, 1e-30, 1e30, "d4_u10", "8_u10")
    EXPLOG(expm1, expm1f, -30, 700, -20, 80, "d4_u10", "8_u10")
    EXPLOG(log1p, log1pf, -0.9, 1e300, -0.9, 1e30, "d4_u10", "8_u10")
    {"exp8", kD8, -700, 700, "sleef expd4_u10"},
    {"exp8_native", kD8, -700, 700, "sleef expd4_u10"},
    {"expf16", kF16, -87, 88, "sleef expf8_u10"},
    {"expf16_native", kF16, -87, 88, "sleef expf8_u10"},
    {"cvtfptoi64rtesat4", kD4toL4, -1e12, 1e12, nullptr},
    {"divf8", kF8F8, -1e6, 1e6, nullptr},
    {"divf8_native", kF8F8, -1e6, 1e6, nullptr},
    {"round4", kD4, -1e6, 1e6, nullptr},
    {"fabsf8", kF8, -87, 88, nullptr},  // the call floor
    {"fabs4", kD4, -87, 88, nullptr},
};

#ifndef _WIN32
// SLEEF's AVX2 functions by row name.
struct Peer {
  const char* name;
  Kind kind;
  void* fn;
};
#define PEER(fn, prec) {"sleef " #fn "d4_" #prec, kD4, (void*)Sleef_##fn##d4_##prec##avx2}, \
                       {"sleef " #fn "f8_" #prec, kF8, (void*)Sleef_##fn##f8_##prec##avx2}
const Peer kPeers[] = {
    PEER(exp, u10),   PEER(exp2, u10),  PEER(exp2, u35),   PEER(exp10, u10), PEER(exp10, u35),
    PEER(log, u10),   PEER(log, u35),   PEER(log2, u10),   PEER(log2, u35),  PEER(log10, u10),
    PEER(expm1, u10), PEER(log1p, u10),
};
#endif

bool wanted(const char* filter, const char* name, const char* peer) {
  return !filter || strstr(name, filter) || (peer && strstr(peer, filter));
}

}  // namespace

int main(int argc, char** argv) {
  int a = 1;
  bool tsv = a < argc && strcmp(argv[a], "--tsv") == 0;
  if (tsv) ++a;
#ifdef _WIN32
  if (a >= argc) {
    fprintf(stderr, "usage: %s [--tsv] DLL [filter]\n", argv[0]);
    return 2;
  }
  HMODULE lib = LoadLibraryA(argv[a++]);
  if (!lib) {
    fprintf(stderr, "cannot load the DLL\n");
    return 2;
  }
  auto resolve = [&](const char* n) { return (void*)GetProcAddress(lib, n); };
#else
  void* lib = dlopen(RAVL_SO_PATH, RTLD_NOW | RTLD_LOCAL);
  if (!lib) {
    fprintf(stderr, "cannot load %s\n", RAVL_SO_PATH);
    return 2;
  }
  auto resolve = [&](const char* n) { return dlsym(lib, n); };
#endif
  const char* filter = a < argc ? argv[a] : nullptr;

  double cyc = cycle_ns();
  struct Out {
    char name[48];
    const char* peer;
    double ns;
    int lanes;
  };
  static Out rows[128];
  int nrows = 0;
#ifndef _WIN32
  for (const Peer& p : kPeers) {
    bool used = false;
    for (const Bench& b : kBenches)
      if (b.peer && strcmp(b.peer, p.name) == 0 && wanted(filter, b.name, b.peer)) used = true;
    if (!used) continue;
    const Bench* b0 = nullptr;
    for (const Bench& b : kBenches)
      if (b.peer && strcmp(b.peer, p.name) == 0) { b0 = &b; break; }
    Out& o = rows[nrows++];
    snprintf(o.name, sizeof o.name, "%s", p.name);
    o.peer = nullptr;
    o.ns = time_fn(p.kind, true, p.fn, b0->lo, b0->hi);
    o.lanes = lanes(p.kind);
  }
#endif
  for (const Bench& b : kBenches) {
    if (!wanted(filter, b.name, b.peer) && strcmp(b.name, "fabsf8") != 0) continue;
    char full[64];
    snprintf(full, sizeof full, "__ocl_ravl_l9_%s", b.name);
    void* fn = resolve(full);
    if (!fn) {
      fprintf(stderr, "missing export %s\n", full);
      return 1;
    }
    Out& o = rows[nrows++];
    snprintf(o.name, sizeof o.name, "%s", b.name);
    o.peer = b.peer;
    o.ns = time_fn(b.kind, false, fn, b.lo, b.hi);
    o.lanes = lanes(b.kind);
  }

  if (tsv) {
    printf("#cycle_ns\t%.5f\n", cyc);
    for (int i = 0; i < nrows; ++i)
      printf("%s\t%.4f\t%d\t%s\n", rows[i].name, rows[i].ns, rows[i].lanes, rows[i].peer ? rows[i].peer : "-");
    return 0;
  }
  printf("one cycle = %.3f ns\n%-22s %9s %11s %9s  %s\n", cyc, "function", "ns/elem", "cycles/call", "vs peer",
         "peer");
  for (int i = 0; i < nrows; ++i) {
    const Out& r = rows[i];
    double peer = 0;
    for (int j = 0; j < nrows; ++j)
      if (r.peer && strcmp(rows[j].name, r.peer) == 0) peer = rows[j].ns;
    printf("%-22s %9.3f %11.1f", r.name, r.ns, r.ns * r.lanes / cyc);
    if (peer > 0) printf(" %8.2fx  %s", peer / r.ns, r.peer);
    printf("\n");
  }
  return 0;
}
