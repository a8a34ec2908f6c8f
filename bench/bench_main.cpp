// Throughput benchmark: nanoseconds per element of every built family, and on
// Linux of SLEEF's AVX2 function beside it, measured in the same run over
// L1-resident arrays.
//
//   build/bench/ravl_bench [--tsv] [filter]                          the .so
//   RAVL_SO=other/libocl_ravl_l9.so build/bench/ravl_bench ...       another build of it
//   wine build/bench/ravl_bench_win.exe [--tsv] DLL [filter]         the DLL
//   RAVL_BENCH_HUGE=one|all build/bench/ravl_bench [filter]          one lane of each vector, or
//                                                                    every lane, huge (full-range reductions)
//
// The rows come from the generated export list: for each family its plain
// and `_native` members at width 8 (families with 32-bit lanes only) or 4
// (any 64-bit lane), register form, plus the two-register widths of exp and
// expf. Each row is the best of several timed passes, in three rounds over the
// list, of a loop that calls
// the entry on consecutive vectors of preset inputs and stores the results.
// Our entries are called through the address the loader resolved, as a
// runtime calls them; SLEEF's likewise. The peer of a plain member is SLEEF's
// 1-ulp (or exact) function, of a `_native` member its 3.5-ulp one where it
// has one. `fabsf8` (one AND) is the call floor, part of every row, ours and
// the peer's alike. Cycles per call are reckoned from a calibrated chain of
// dependent adds (one cycle each), whatever the clock.
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
#include <time.h>
#include <unistd.h>
#endif

#include "ocl_ravl_l9.h"

namespace {

struct ExportRow {
  const char* name;
  const char* body;
  const char* family;
  const char* cls;
  const char* algorithm;
  int width;
  const char* sig;
  const char* form;
  const char* args;
  const char* ret;
};
const ExportRow kExports[] = {
#include "exports_list.inc"
};

constexpr int kElems = 4096;  // 32 KiB of doubles: stays in L1/L2
constexpr int kPasses = 60;
constexpr int kReps = 12;
constexpr int kRounds = 3;

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

uint64_t rng = 0x9e3779b97f4a7c15ull;
uint64_t next() { return rng = rng * 6364136223846793005ull + 1442695040888963407ull; }
double uniform(double lo, double hi) { return lo + (hi - lo) * (double)(next() >> 11) * 0x1p-53; }

// Inputs of a family: floating arguments uniform in [lo, hi], or with
// exponents uniform in [log2 lo, log2 hi] (`geometric`, for the logarithms,
// whose inputs span every binade); integer ones random in [ilo, ihi], or any
// value when ilo == ihi (never 0 for a divisor).
struct Range {
  const char* family;  // without the trailing f of single families
  double lo, hi;
  int64_t ilo, ihi;
  bool geometric;
  double ylo = 0, yhi = 0;  // a second floating argument's range, when ylo < yhi
};
const Range kRanges[] = {
    {"exp", -700, 700, 0, 0, false},        {"exp2", -1000, 1000, 0, 0, false},
    {"exp10", -300, 300, 0, 0, false},      {"expm1", -30, 700, 0, 0, false},
    {"log", 1e-300, 1e300, 0, 0, true},     {"log2", 1e-300, 1e300, 0, 0, true},
    {"log10", 1e-300, 1e300, 0, 0, true},   {"log1p", 1e-10, 1e10, 0, 0, true},
    // The hyperbolic functions: sinh and cosh within the single range (the
    // single members share the row), tanh over its polynomial intervals.
    {"sinh", -88, 88, 0, 0, false},         {"cosh", -88, 88, 0, 0, false},
    {"tanh", -20, 20, 0, 0, false},         {"asinh", -1e3, 1e3, 0, 0, false},
    {"acosh", 1, 1e3, 0, 0, false},          {"atanh", -1, 1, 0, 0, false},
    // erf over [-6, 6] (every row up to the rounding to +-1), erfc over [-2, 27]
    // (the negative rows near 0 and the whole positive tail to the underflow).
    {"erf", -6, 6, 0, 0, false},            {"erfc", -2, 27, 0, 0, false},
    {"ldexp", -1e6, 1e6, -60, 60, false},   {"div", 0.5, 2, 0, 0, false},
    {"inv", 0.5, 2, 0, 0, false},           {"nan", 0, 0, 0, 1 << 20, false},
    // The trigonometric functions on moderate arguments (a few hundred
    // periods): every lane on the fast reduction of every family.
    {"sin", -1000, 1000, 0, 0, false},      {"cos", -1000, 1000, 0, 0, false},
    // The gamma functions on positive arguments, where the single results are
    // finite too: the shifted range (x < 8) and Stirling's.
    {"lgamma", 0, 100, 0, 0, false},        {"lgammar", 0, 100, 0, 0, false},
    {"tgamma", 0.5, 34, 0, 0, false},
    {"tan", -1000, 1000, 0, 0, false},      {"sincos", -1000, 1000, 0, 0, false},
    {"sincosreg", -1000, 1000, 0, 0, false},
    // The pi-scaled forms on the same range (five hundred periods).
    {"sinpi", -1000, 1000, 0, 0, false},    {"cospi", -1000, 1000, 0, 0, false},
    {"tanpi", -1000, 1000, 0, 0, false},
    // Arc sines and cosines over their whole domain [-1, 1] (both regions
    // of the fold, no special lane).
    {"acos", -1, 1, 0, 0, false},           {"asin", -1, 1, 0, 0, false},
    {"acospi", -1, 1, 0, 0, false},         {"asinpi", -1, 1, 0, 0, false},
    // Powers: x^y with results well inside the single range; pown's and
    // rootn's integer second argument.
    {"pow", 0.01, 100, 0, 0, false, -20, 20},  {"powr", 0.01, 100, 0, 0, false, -20, 20},
    {"pown", -10, 10, -20, 20, false},         {"rootn", 0.01, 1e6, 2, 16, false},
    // Roots: positive x for the square roots (no lane on the routine), either
    // sign for the cube roots and hypot.
    {"sqrt", 0.001, 1e6, 0, 0, false},         {"rsqrt", 0.001, 1e6, 0, 0, false},
    {"cbrt", -1e6, 1e6, 0, 0, false},          {"rcbrt", -1e6, 1e6, 0, 0, false},
    {"hypot", -1e6, 1e6, 0, 0, false},
    // Arc tangents over their nodes and beyond (|x| > 16 takes the
    // reciprocal node); atan2 with both coordinates in [-10, 10], every
    // quadrant and ratio.
    {"atan", -20, 20, 0, 0, false},            {"atanpi", -20, 20, 0, 0, false},
    {"atan2", -10, 10, 0, 0, false, -10, 10},  {"atan2pi", -10, 10, 0, 0, false, -10, 10},
};
const double kDefaultLo = -1e6, kDefaultHi = 1e6;
// Single families' exp/log ranges are clipped to what a float holds.
const double kFloatMax = 1e30;

alignas(64) unsigned char in_buf[3][kElems * 8];
alignas(64) unsigned char out_buf[2][kElems * 8];

// RAVL_BENCH_HUGE=one or =all: see fill.
int huge_lanes = 0;

template <class T> void fill(unsigned char* buf, const Range& r, bool divisor, bool second) {
  T* p = (T*)buf;
  for (int i = 0; i < kElems; ++i) {
    if constexpr ((T)0.5 != 0) {
      double lo = r.lo, hi = r.hi;
      if (second && r.ylo < r.yhi) lo = r.ylo, hi = r.yhi;
      if (sizeof(T) == 4) {
        lo = lo < -kFloatMax ? -kFloatMax : lo > kFloatMax ? kFloatMax : lo;
        hi = hi > kFloatMax ? kFloatMax : hi < -kFloatMax ? -kFloatMax : hi;
        if (lo == 1e-300) lo = 1e-30;
        if (r.lo == -700) lo = -87, hi = 88;
        if (r.lo == -1000) lo = -120, hi = 120;
        if (r.lo == -300) lo = -37, hi = 37;
        if (r.lo == -30) lo = -20, hi = 80;
      }
      p[i] = r.geometric ? (T)__builtin_exp2(uniform(__builtin_log2(lo), __builtin_log2(hi))) : (T)uniform(lo, hi);
      // The cost of a reduction's full-range path: huge magnitudes, either
      // sign, exponents uniform over [2^30, 2^1000] (single: [2^20, 2^126]),
      // in the first lane of every vector or in every lane.
      if (huge_lanes && !second && (huge_lanes == 2 || i % (32 / sizeof(T)) == 0)) {
        double e = sizeof(T) == 4 ? uniform(20, 126) : uniform(30, 1000);
        p[i] = (T)((next() >> 63 ? -1 : 1) * __builtin_exp2(e));
      }
    } else {
      T v;
      do {
        v = r.ilo == r.ihi ? (T)next() : (T)(r.ilo + (int64_t)(next() % (uint64_t)(r.ihi - r.ilo + 1)));
      } while (divisor && v == 0);
      p[i] = v;
    }
  }
}

template <class T, int W> using V = T __attribute__((ext_vector_type(W)));
template <class... T> constexpr int width_for() { return ((sizeof(T) == 8) || ...) ? 4 : 8; }

#ifdef _WIN32
// Under Wine every timed call goes to one fixed address: a direct jump (E9
// rel32) placed within 2 GiB of the DLL and pointed at the row's entry before
// the row is timed. A runtime calls each entry from a call site of its own;
// this file's loop is one call site per signature, and an indirect call that
// has seen many targets is predicted through the core's indirect-target
// tables. On this Zen 3 the one-AND entry, called directly, took 5.3 or 8.2
// cycles per call from one round to the next within one process (5.2 in every
// round when it was the only target); through the stub, 6.6 in every round.
// On Linux the loop and the .so lie terabytes apart, and every call takes the
// far-target cost (8.3 cycles for one AND, in every round) with or without a
// stub, so the .so's calls go direct.
struct Stub {
  unsigned char* code = nullptr;
  // A page within 2 GiB of `lib`, or none.
  explicit Stub(const void* lib) {
    uintptr_t at = (uintptr_t)lib & ~(uintptr_t)0xFFFF;
    for (uintptr_t off = (uintptr_t)1 << 26; off < ((uintptr_t)1 << 31) && !code; off += (uintptr_t)1 << 26)
      for (int side = 0; side < 2 && !code; ++side)
        code = (unsigned char*)VirtualAlloc((void*)(side ? at + off : at - off), 4096, MEM_RESERVE | MEM_COMMIT,
                                            PAGE_EXECUTE_READWRITE);
  }
  // The stub, now jumping to `target`; the target itself if out of reach.
  void* to(void* target) {
    int64_t rel = (int64_t)((uintptr_t)target - ((uintptr_t)code + 5));
    if (!code || rel != (int32_t)rel) return target;
    int32_t r = (int32_t)rel;
    code[0] = 0xE9;
    memcpy(code + 1, &r, 4);
    return code;
  }
};
#endif

// One timed loop; Call(fn, i) makes the call on the vector at lane i.
template <class Call> double time_loop(int w, Call call) {
  double best = 1e30;
  for (int p = 0; p < kPasses; ++p) {
    double t0 = now_ns();
    for (int rep = 0; rep < kReps; ++rep)
      for (int i = 0; i < kElems; i += w) call(i);
    double ns = (now_ns() - t0) / ((double)kReps * kElems);
    if (ns < best) best = ns;
  }
  return best;
}

template <class T, int W> V<T, W> load(int k, int i) {
  V<T, W> v;
  memcpy(&v, in_buf[k] + i * sizeof(T), sizeof v);
  return v;
}
template <class T, int W> void store(int k, int i, V<T, W> v) { memcpy(out_buf[k] + i * sizeof(T), &v, sizeof v); }

// Register form R(A...) with optional second result through a pointer P
// (void: none). Ours in the library's register convention, the peer (SLEEF,
// pointers never) in the platform's C convention.
// P = Regs<T>: the second result comes back in registers after the first.
template <class T> struct Regs {};
template <class P> struct SecondT { using type = P; static constexpr bool regs = false; };
template <class T> struct SecondT<Regs<T>> { using type = T; static constexpr bool regs = true; };

template <class R, class P0, class... A> struct Caller {
  using P = typename SecondT<P0>::type;
  static constexpr int W = width_for<R, A...>();
  template <int... I> struct Seq {};
  static double run(void* fn, bool peer) {
    return run_idx(fn, peer, typename Make<sizeof...(A)>::type{});
  }
  template <int N, int... I> struct Make : Make<N - 1, N - 1, I...> {};
  template <int... I> struct Make<0, I...> { using type = Seq<I...>; };
  template <int... I> static double run_idx(void* fn, bool peer, Seq<I...>) {
    if constexpr (__is_same(P, void)) {
      typedef V<R, W>(OCL_RAVL_CC * Ours)(V<A, W>...);
      typedef V<R, W> (*Peer)(V<A, W>...);
      if (peer)
        return time_loop(W, [&](int i) { store<R, W>(0, i, ((Peer)fn)(load<A, W>(I, i)...)); });
      return time_loop(W, [&](int i) { store<R, W>(0, i, ((Ours)fn)(load<A, W>(I, i)...)); });
    } else if constexpr (SecondT<P0>::regs) {
      typedef V<R, 2 * W>(OCL_RAVL_CC * Ours)(V<A, W>...);
      if (!peer)
        return time_loop(W, [&](int i) {
          V<R, 2 * W> y = ((Ours)fn)(load<A, W>(I, i)...);
          memcpy(out_buf[0] + i * sizeof(R), &y, W * sizeof(R));
          memcpy(out_buf[1] + i * sizeof(R), (char*)&y + W * sizeof(R), W * sizeof(R));
        });
      return Caller<R, P, A...>::run(fn, true);
    } else {
      typedef V<R, W>(OCL_RAVL_CC * Ours)(V<A, W>..., P*);
      // A peer with two results (sincos) returns them as a pair.
      struct Pair {
        V<R, W> a;
        V<P, W> b;
      };
      typedef Pair (*Peer)(V<A, W>...);
      if (peer)
        return time_loop(W, [&](int i) {
          Pair y = ((Peer)fn)(load<A, W>(I, i)...);
          store<R, W>(0, i, y.a);
          store<P, W>(1, i, y.b);
        });
      return time_loop(W, [&](int i) {
        store<R, W>(0, i, ((Ours)fn)(load<A, W>(I, i)..., (P*)(out_buf[1] + i * sizeof(P))));
      });
    }
  }
  static void fill_inputs(const Range& r, bool int_divisor) {
    int k = 0;
    ((fill<A>(in_buf[k], r, int_divisor && k == 1, k == 1), ++k), ...);
  }
};

// The signatures of the family table that the benchmark calls.
struct SigRow {
  const char* sig;
  double (*run)(void*, bool);
  void (*fill)(const Range&, bool);
  int width;
};
#define SIG(s, R, P, ...) \
  {s, Caller<R, P, __VA_ARGS__>::run, Caller<R, P, __VA_ARGS__>::fill_inputs, Caller<R, P, __VA_ARGS__>::W}
const SigRow kSigs[] = {
    SIG("d(d)", double, void, double),
    SIG("s(s)", float, void, float),
    SIG("d(d,d)", double, void, double, double),
    SIG("s(s,s)", float, void, float, float),
    SIG("d(d,d,d)", double, void, double, double, double),
    SIG("s(s,s,s)", float, void, float, float, float),
    SIG("d(d,i)", double, void, double, int32_t),
    SIG("s(s,i)", float, void, float, int32_t),
    SIG("d,d(d)", double, Regs<double>, double),
    SIG("s,s(s)", float, Regs<float>, float),
    SIG("d(d,*d)", double, double, double),
    SIG("s(s,*s)", float, float, float),
    SIG("d(d,*i)", double, int32_t, double),
    SIG("s(s,*i)", float, int32_t, float),
    SIG("d(d,d,*i)", double, int32_t, double, double),
    SIG("s(s,s,*i)", float, int32_t, float, float),
    SIG("i(d)", int32_t, void, double),
    SIG("i(s)", int32_t, void, float),
    SIG("u(d)", uint32_t, void, double),
    SIG("u(s)", uint32_t, void, float),
    SIG("l(d)", int64_t, void, double),
    SIG("l(s)", int64_t, void, float),
    SIG("ul(d)", uint64_t, void, double),
    SIG("ul(s)", uint64_t, void, float),
    SIG("d(i)", double, void, int32_t),
    SIG("s(i)", float, void, int32_t),
    SIG("d(u)", double, void, uint32_t),
    SIG("s(u)", float, void, uint32_t),
    SIG("d(l)", double, void, int64_t),
    SIG("s(l)", float, void, int64_t),
    SIG("d(ul)", double, void, uint64_t),
    SIG("s(ul)", float, void, uint64_t),
    SIG("s(d)", float, void, double),
    SIG("i(i,i)", int32_t, void, int32_t, int32_t),
    SIG("u(u,u)", uint32_t, void, uint32_t, uint32_t),
};

const SigRow* sig_row(const char* sig) {
  for (const SigRow& s : kSigs)
    if (strcmp(s.sig, sig) == 0) return &s;
  return nullptr;
}

Range default_range;  // constant-initialized: no guard
const Range& range_of(const char* family, const char* sig) {
  Range& def = default_range;
  char base[48];
  snprintf(base, sizeof base, "%s", family);
  size_t n = strlen(base);
  if (sig[0] == 's' && n > 1 && base[n - 1] == 'f') base[n - 1] = 0;
  for (const Range& r : kRanges)
    if (strcmp(r.family, base) == 0) return r;
  def = {family, kDefaultLo, kDefaultHi, 0, 0, false};
  return def;
}

struct Out {
  char name[64];
  char peer[64];
  double ns;
  int lanes;
};
Out rows[1024];
int nrows = 0;

#ifndef _WIN32
void* sleef = nullptr;
// SLEEF's function for a family and class: plain -> 1-ulp or exact (or
// 0.5-ulp), _native -> 3.5-ulp if there is one, else as plain.
void* peer_of(const char* family, const char* cls, const char* sig, char* name, size_t n) {
  if (!sleef) return nullptr;
  char base[48];
  snprintf(base, sizeof base, "%s", family);
  size_t len = strlen(base);
  bool single = sig[0] == 's';
  if (single && len > 1 && base[len - 1] == 'f') base[len - 1] = 0;
  if (strcmp(base, "sincosreg") == 0) base[6] = 0;  // SLEEF has one sincos
  static const char* const plain[] = {"_u10", "", "_u05", "_u15"};
  static const char* const fast[] = {"_u35", "_u10", "", "_u05", "_u15"};
  bool native = strcmp(cls, "native") == 0;
  const char* const* order = native ? fast : plain;
  int count = native ? 5 : 4;
  for (int k = 0; k < count; ++k) {
    char sym[96];
    snprintf(sym, sizeof sym, "Sleef_%s%s%s%savx2", base, single ? "f8" : "d4", order[k], order[k][0] ? "" : "_");
    void* f = dlsym(sleef, sym);
    if (f) {
      snprintf(name, n, "sleef %s%s%s", base, single ? "f8" : "d4", order[k]);
      return f;
    }
  }
  return nullptr;
}
#endif

// The filter: substrings of the member names, separated by '|'.
bool wanted(const char* filter, const char* name) {
  if (!filter) return true;
  for (const char* p = filter;; ++p) {
    const char* end = strchr(p, '|');
    size_t n = end ? (size_t)(end - p) : strlen(p);
    for (const char* q = name; n && *q; ++q)
      if (strncmp(q, p, n) == 0) return true;
    if (!end) return false;
    p = end;
  }
}

// A row timed again in a later round keeps its best time.
void add(const char* name, const char* peer, double ns, int lanes) {
  for (int i = 0; i < nrows; ++i)
    if (strcmp(rows[i].name, name) == 0) {
      if (ns < rows[i].ns) rows[i].ns = ns;
      return;
    }
  if (nrows == (int)(sizeof rows / sizeof rows[0])) return;
  Out& o = rows[nrows++];
  snprintf(o.name, sizeof o.name, "%s", name);
  snprintf(o.peer, sizeof o.peer, "%s", peer);
  o.ns = ns;
  o.lanes = lanes;
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
  const char* so = getenv("RAVL_SO");  // another build of the library, for A/B runs
  if (!so) so = RAVL_SO_PATH;
  void* lib = dlopen(so, RTLD_NOW | RTLD_LOCAL);
  // Installed (bin/ravl_bench): the library of the same prefix, ../lib.
  char installed[4096];
  ssize_t n = readlink("/proc/self/exe", installed, sizeof installed - 32);
  if (!lib && !getenv("RAVL_SO") && n > 0) {
    installed[n] = 0;
    char* slash = strrchr(installed, '/');
    if (slash) {
      strcpy(slash, "/../lib/libocl_ravl_l9.so");
      so = installed;
      lib = dlopen(so, RTLD_NOW | RTLD_LOCAL);
    }
  }
  sleef = dlopen("libsleef.so.3", RTLD_NOW | RTLD_LOCAL);
  if (!lib || !sleef) {
    fprintf(stderr, "cannot load %s or SLEEF\n", so);
    return 2;
  }
  auto resolve = [&](const char* n) { return dlsym(lib, n); };
#endif
  const char* filter = a < argc ? argv[a] : nullptr;
  if (const char* h = getenv("RAVL_BENCH_HUGE")) huge_lanes = strcmp(h, "all") == 0 ? 2 : strcmp(h, "one") == 0 ? 1 : 0;
  double cyc = cycle_ns();
#ifdef _WIN32
  Stub stub((const void*)resolve("__ocl_ravl_l9_fabsf8"));
#endif

  // Every row is timed in each of kRounds rounds over the whole list and
  // keeps its best: the machine's speed drifts over seconds, and rounds
  // seconds apart give each row, ours and the peer's alike, the same chances.
  for (int round = 0; round < kRounds; ++round)
  for (const ExportRow& e : kExports) {
    const char* member = e.name + strlen("__ocl_ravl_l9_");
    bool plain = strcmp(e.cls, "plain") == 0, native = strcmp(e.cls, "native") == 0;
    const SigRow* s = sig_row(e.sig);
    if (!s || strcmp(e.form, "reg") != 0 || !(plain || native)) continue;
    // The comparison width of the family, and the two-register widths of exp.
    bool extra = (strcmp(e.family, "exp") == 0 && e.width == 8) || (strcmp(e.family, "expf") == 0 && e.width == 16);
    if (e.width != s->width && !extra) continue;
    if (!wanted(filter, member) && strcmp(member, "fabsf8") != 0) continue;
    void* fn = resolve(e.name);
    if (!fn) {
      fprintf(stderr, "missing export %s\n", e.name);
      return 1;
    }
#ifdef _WIN32
    fn = stub.to(fn);
#endif
    const Range& r = range_of(e.family, e.sig);
    bool divisor = strchr(e.sig, 'i') == e.sig || strchr(e.sig, 'u') == e.sig;  // i(i,i), u(u,u)
    s->fill(r, divisor);
    char peer[64] = "";
#ifndef _WIN32
    // Peers take no pointer; sincos's returns its pair.
    bool pair = strncmp(e.family, "sincos", 6) == 0;
    void* pf = (e.width == s->width && (strchr(e.sig, '*') == nullptr || pair))
                   ? peer_of(e.family, e.cls, e.sig, peer, sizeof peer) : nullptr;
    if (extra) peer_of(e.family, e.cls, e.sig, peer, sizeof peer);
    if (pf) add(peer, "", s->run(pf, true), s->width);
#endif
    if (extra) {
      // exp8 (two ymm in and out) and expf16: timed through the header's types.
      double ns;
      if (e.width == 8)
        ns = time_loop(8, [&](int i) {
          ocl_ravl_double8 y = ((ocl_ravl_double8(OCL_RAVL_CC*)(ocl_ravl_double4, ocl_ravl_double4))fn)(
              load<double, 4>(0, i), load<double, 4>(0, i + 4));
          memcpy(out_buf[0] + i * 8, &y, 64);
        });
      else
        ns = time_loop(16, [&](int i) {
          ocl_ravl_float16 y = ((ocl_ravl_float16(OCL_RAVL_CC*)(ocl_ravl_float8, ocl_ravl_float8))fn)(
              load<float, 8>(0, i), load<float, 8>(0, i + 8));
          memcpy(out_buf[0] + i * 4, &y, 64);
        });
      add(member, peer, ns, e.width);
      continue;
    }
    add(member, peer, s->run(fn, false), s->width);
  }

  if (tsv) {
    printf("#cycle_ns\t%.5f\n", cyc);
    for (int i = 0; i < nrows; ++i)
      printf("%s\t%.4f\t%d\t%s\n", rows[i].name, rows[i].ns, rows[i].lanes, rows[i].peer[0] ? rows[i].peer : "-");
    return 0;
  }
  printf("one cycle = %.3f ns\n%-26s %9s %11s %9s  %s\n", cyc, "function", "ns/elem", "cycles/call", "vs peer",
         "peer");
  for (int i = 0; i < nrows; ++i) {
    const Out& r = rows[i];
    double peer = 0;
    for (int j = 0; j < nrows; ++j)
      if (r.peer[0] && strcmp(rows[j].name, r.peer) == 0) peer = rows[j].ns;
    printf("%-26s %9.3f %11.1f", r.name, r.ns, r.ns * r.lanes / cyc);
    if (peer > 0) printf(" %8.2fx  %s", peer / r.ns, r.peer);
    printf("\n");
  }
  return 0;
}
