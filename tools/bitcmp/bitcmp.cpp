// Bit-for-bit comparison of two builds of the library, for speed changes that
// must not change a single output bit (fetching, scheduling, register use).
//
//   ravl_bitcmp OLD.so NEW.so [threads] name...
//
// name is an export without its prefix, unary, at width 8 single
// ("exp2f8_native") or width 4 double ("log4"). Single members are compared
// on all 2^32 inputs; double members on 2^26 inputs: random bit patterns,
// random signs and mantissas with exponents spread over [2^-1080, 2^1030]
// (every binade an exponential or logarithm treats differently), and the
// neighbours of 1 and of the integers up to 1100. Members whose argument is
// four 64-bit integers (the cvti64tofp and cvtu64tofp families) get 2^26
// integers instead: random bit patterns, random magnitudes of every bit
// length, values whose bits below a float or double rounding position are a
// tie, its neighbours, zero or all ones, and the neighbours of powers of two.
// A result of fewer than 32 bytes (four floats or 32-bit integers from a
// double4 or long4 argument) is compared in those bytes only. Prints one line
// per name: inputs compared, mismatches, the first mismatch; exits 1 on any
// mismatch.
#include <dlfcn.h>

#include <atomic>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <random>
#include <string>
#include <thread>
#include <vector>

#include "ocl_ravl_l9.h"

namespace {

// The family table's rows (name, body, family, class, algorithm; width;
// signature, form, argument places, result place).
struct ExportRow {
  const char* names[5];
  int width;
  const char* places[4];
  const char* name() const { return names[0]; }
  const char* sig() const { return places[0]; }
  const char* ret() const { return places[3]; }
};
const ExportRow kExports[] = {
#include "exports_list.inc"
};
const ExportRow* find_export(const std::string& full) {
  for (const ExportRow& e : kExports)
    if (full == e.name()) return &e;
  return nullptr;
}

using F8 = ocl_ravl_float8;
using D4 = ocl_ravl_double4;
using F8Fn = F8 (OCL_RAVL_CC*)(F8);
using D4Fn = D4 (OCL_RAVL_CC*)(D4);

struct Result {
  std::atomic<uint64_t> bad{0};
  std::atomic<uint64_t> first{~0ull};
};

void note(Result& r, uint64_t in) {
  if (r.bad++ == 0) r.first = in;
}

void floats(F8Fn a, F8Fn b, uint64_t lo, uint64_t hi, Result& r) {
  for (uint64_t base = lo; base < hi; base += 8) {
    uint32_t in[8], oa[8], ob[8];
    for (int k = 0; k < 8; ++k) in[k] = (uint32_t)(base + k);
    F8 x, ya, yb;
    std::memcpy(&x, in, sizeof x);
    ya = a(x);
    yb = b(x);
    std::memcpy(oa, &ya, sizeof oa);
    std::memcpy(ob, &yb, sizeof ob);
    for (int k = 0; k < 8; ++k)
      if (oa[k] != ob[k]) note(r, base + k);
  }
}

// The i-th double input of the set described above.
double double_input(uint64_t i, std::mt19937_64& g) {
  uint64_t u = g();
  switch (i % 4) {
    case 0: break;  // any bit pattern
    case 1:
    case 2: {
      int64_t e = (int64_t)(g() % 2111) - 1080;  // 2^-1080 .. 2^1030
      double m = 1.0 + (double)(u >> 12) * 0x1p-52;
      double x = e < -1022 ? m * 0x1p-1022 * __builtin_ldexp(1.0, (int)e + 1022) : __builtin_ldexp(m, (int)e);
      return (u & 1) ? -x : x;
    }
    case 3: {
      double c = (double)(int64_t)(g() % 2201) - 1100;  // an integer in [-1100, 1100], or 1
      if (u & 2) c = 1.0;
      uint64_t b;
      std::memcpy(&b, &c, 8);
      b += (int64_t)(u >> 56) - 128;  // within 128 ulps
      std::memcpy(&c, &b, 8);
      return c;
    }
  }
  double x;
  std::memcpy(&x, &u, 8);
  return x;
}

// The i-th 64-bit integer input (as bits) of the set described above.
uint64_t integer_input(uint64_t i, std::mt19937_64& g) {
  uint64_t u = g(), v = g();
  int len = (int)(v % 65);  // bit length of the magnitude
  uint64_t m = len == 0 ? 0 : len == 64 ? u : (u & ((1ull << len) - 1)) | (1ull << (len - 1));
  switch (i % 4) {
    case 0: return u;
    case 1: break;
    case 2: {
      int pos = len - (v >> 8 & 1 ? 24 : 53);  // the float or double rounding position
      if (pos >= 1) {
        uint64_t half = 1ull << (pos - 1), low = (1ull << pos) - 1;
        const uint64_t tails[6] = {0, half, half - 1, half + 1, 1, low};
        m = (m & ~low) | (tails[(v >> 9) % 6] & low);
      }
      break;
    }
    case 3:
      m = (len == 0 ? 0 : 1ull << (len - 1)) + (int64_t)(v >> 56) - 128;
      break;
  }
  return v >> 7 & 1 ? 0 - m : m;
}

void doubles(D4Fn a, D4Fn b, uint64_t lo, uint64_t hi, bool ints, int out_bytes, Result& r) {
  std::mt19937_64 g(lo * 0x9e3779b97f4a7c15ull + 1);
  for (uint64_t i = lo; i < hi; i += 4) {
    uint64_t ib[4], oa[4] = {}, ob[4] = {};
    for (int k = 0; k < 4; ++k) {
      if (ints) {
        ib[k] = integer_input(i + k, g);
      } else {
        double d = double_input(i + k, g);
        std::memcpy(&ib[k], &d, 8);
      }
    }
    D4 x, ya, yb;
    std::memcpy(&x, ib, sizeof x);
    ya = a(x);
    yb = b(x);
    std::memcpy(oa, &ya, out_bytes);
    std::memcpy(ob, &yb, out_bytes);
    for (int k = 0; k < 4; ++k)
      if (oa[k] != ob[k]) note(r, ib[k]);
  }
}

}  // namespace

int main(int argc, char** argv) {
  if (argc < 4) {
    std::fprintf(stderr, "usage: %s OLD.so NEW.so [threads] name...\n", argv[0]);
    return 2;
  }
  void* so[2] = {dlopen(argv[1], RTLD_NOW | RTLD_LOCAL), dlopen(argv[2], RTLD_NOW | RTLD_LOCAL)};
  if (!so[0] || !so[1] || so[0] == so[1]) {
    std::fprintf(stderr, "cannot load two distinct libraries: %s\n", dlerror());
    return 2;
  }
  int arg = 3, threads = 2;
  if (argv[arg][0] >= '0' && argv[arg][0] <= '9') threads = std::atoi(argv[arg++]);
  int failed = 0;
  for (; arg < argc; ++arg) {
    std::string name = argv[arg], full = "__ocl_ravl_l9_" + name;
    void* fa = dlsym(so[0], full.c_str());
    void* fb = dlsym(so[1], full.c_str());
    if (!fa || !fb) {
      std::printf("%-20s missing\n", name.c_str());
      failed = 1;
      continue;
    }
    bool single = name.find("f8") != std::string::npos;
    const ExportRow* row = find_export(full);
    std::string sig = row ? row->sig() : "";
    bool ints = sig.find("(l)") != std::string::npos || sig.find("(ul)") != std::string::npos;
    int out_bytes = row && std::string(row->ret()) == "v0:16" ? 16 : 32;
    uint64_t total = single ? (1ull << 32) : (1ull << 26);
    Result r;
    std::vector<std::thread> pool;
    for (int t = 0; t < threads; ++t) {
      uint64_t lo = total / threads * t, hi = t + 1 == threads ? total : total / threads * (t + 1);
      if (single) pool.emplace_back(floats, (F8Fn)fa, (F8Fn)fb, lo, hi, std::ref(r));
      else pool.emplace_back(doubles, (D4Fn)fa, (D4Fn)fb, lo, hi, ints, out_bytes, std::ref(r));
    }
    for (auto& t : pool) t.join();
    std::printf("%-20s %12llu inputs  %llu mismatches", name.c_str(), (unsigned long long)total,
                (unsigned long long)r.bad.load());
    if (r.bad) std::printf("  first at input bits 0x%llx", (unsigned long long)r.first.load());
    std::printf("\n");
    if (r.bad) failed = 1;
  }
  return failed;
}
