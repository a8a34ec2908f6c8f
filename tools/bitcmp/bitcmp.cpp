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
// double4 or long4 argument) is compared in those bytes only.
//
// Members of other signatures, one register per argument (widths 2 to 8):
// integer pairs (idiv, udiv, irem, urem, idivrem, udivrem), floating pairs
// (fmod, remainder, remquo), triples (fma), a floating and an integer
// argument (ldexp), and results through a pointer (frexp, modf, fract, remquo)
// or as two registers; the register result and the pointed-to block are both
// compared. Single unary members again take every float; the others 2^26
// lane inputs: integers of every bit length, multiples of the divisor and
// their neighbours, 0, 1, -1, INT_MIN and UINT_MAX; floating values as above
// and zeros, infinities, NaN and denormals, pairs whose quotient is near an
// integer or a half, and fma triples whose product nearly cancels the addend.
// Prints one line per name: inputs compared, mismatches, the first mismatch;
// exits 1 on any mismatch.
#include <dlfcn.h>

#include <algorithm>
#include <atomic>
#include <functional>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <random>
#include <string>
#include <type_traits>
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


// ---- other signatures ----------------------------------------------------------

// A 32-bit integer: any bits, a magnitude of random bit length, a special
// value, or a power of two's neighbour.
uint32_t int32_input(std::mt19937_64& g) {
  uint64_t u = g(), v = g();
  int len = (int)(v % 33);
  uint32_t m = len == 0 ? 0 : len == 32 ? (uint32_t)u : (uint32_t)((u & ((1ull << len) - 1)) | (1ull << (len - 1)));
  static const uint32_t special[] = {0, 1, 2, 3, 0xffffffffu, 0xfffffffeu, 0x80000000u, 0x7fffffffu, 0x80000001u};
  switch (v >> 8 & 3) {
    case 0: return (uint32_t)u;
    case 1: return v >> 12 & 1 ? 0u - m : m;
    case 2: return special[(v >> 16) % 9];
    default: return m + (uint32_t)((int)(v >> 58) - 32);
  }
}
// A dividend for the divisor y: any, or a multiple of y (of any size, or
// small and of either sign) within two.
uint32_t dividend_input(uint32_t y, std::mt19937_64& g) {
  switch (g() % 3) {
    case 0: return int32_input(g);
    case 1: return int32_input(g) * y + (uint32_t)((int)(g() % 5) - 2);
    default: {
      uint32_t x = (uint32_t)(g() % 70000) * y + (uint32_t)((int)(g() % 5) - 2);
      return g() & 1 ? 0u - x : x;
    }
  }
}
template <class T> using Bits_t = typename std::conditional<sizeof(T) == 8, uint64_t, uint32_t>::type;
template <class T> T nudged(T x, int ulps) {
  Bits_t<T> b;
  std::memcpy(&b, &x, sizeof b);
  b += ulps;
  std::memcpy(&x, &b, sizeof b);
  return x;
}
// A floating input: the unary set above (for a float, any bit pattern or an
// exponent-spread value), or a special value.
template <class T> T fp_input(uint64_t i, std::mt19937_64& g) {
  static const double special[] = {0.0, -0.0, __builtin_inf(), -__builtin_inf(), __builtin_nan(""), 1.0, -1.0, 0.5};
  if (g() % 8 == 0) {
    uint64_t k = g() % 10;
    if (k < 8) return (T)special[k];
    return nudged((T)0, k == 8 ? 1 : 3);  // the least denormals
  }
  if constexpr (sizeof(T) == 8) {
    return double_input(i, g);
  } else {
    uint64_t u = g();
    if (u & 1) return __builtin_bit_cast(float, (uint32_t)(u >> 32));
    float x = __builtin_ldexpf(1.0f + (float)(u >> 41) * 0x1p-23f, (int)(g() % 300) - 152);
    return u & 2 ? -x : x;
  }
}
// y, and x: any, a near-integer multiple of y (a few ulps off), a half-integer
// multiple (ties of the nearest quotient), or y times a random factor.
template <class T> void fp_pair(uint64_t i, std::mt19937_64& g, T& x, T& y) {
  y = fp_input<T>(i, g);
  switch (g() % 4) {
    case 0: x = fp_input<T>(i + 1, g); break;
    case 1: x = nudged(y * (T)(int64_t)(g() % 4096), (int)(g() % 9) - 4); break;
    case 2: x = y * ((T)(int64_t)(g() % 256) + (T)0.5); break;
    default: x = y * (T)__builtin_ldexp(1.0 + (double)(g() >> 11) * 0x1p-53, (int)(g() % 90) - 5); break;
  }
}

// The arguments of one call (lane k of each) for the signature's argument
// list, e.g. "i,i", "d,d,*i", "s,i".
template <class T> void fill_lane(const std::string& args, uint64_t i, int k, std::mt19937_64& g,
                                  unsigned char (*in)[32]) {
  auto put = [&](int a, auto v) { std::memcpy(in[a] + k * sizeof v, &v, sizeof v); };
  if (args == "i,i" || args == "u,u") {
    uint32_t y = int32_input(g);
    put(0, dividend_input(y, g));
    put(1, y);
  } else if (args.rfind("d,d", 0) == 0 || args.rfind("s,s", 0) == 0) {
    T x, y;
    fp_pair(i, g, x, y);
    put(0, x);
    put(1, y);
    if (args == "d,d,d" || args == "s,s,s") {  // z near -x*y: the product nearly cancels
      T z = g() % 3 ? nudged(-(x * y), (int)(g() % 9) - 4) : fp_input<T>(i + 2, g);
      put(2, z);
    }
  } else if (args == "d,i" || args == "s,i") {
    put(0, fp_input<T>(i, g));
    put(1, (int32_t)(g() % 16 ? (int64_t)(g() % 2601) - 1300 : (int32_t)g()));
  } else {  // one floating argument
    put(0, fp_input<T>(i, g));
  }
}

struct Call {
  std::string args;  // the argument list
  int nin;           // register arguments
  bool ptr;          // a result through a pointer
  int out_bytes;     // of the register result(s)
};
// One call in the register convention: every argument one register.
void call(void* f, const Call& c, unsigned char (*in)[32], unsigned char* out, unsigned char* pout) {
  using R = ocl_ravl_int8;
  R a0, a1, a2;
  std::memcpy(&a0, in[0], 32);
  std::memcpy(&a1, in[1], 32);
  std::memcpy(&a2, in[2], 32);
  if (c.out_bytes == 64) {
    ocl_ravl_int16 r = ((ocl_ravl_int16(OCL_RAVL_CC*)(R, R))f)(a0, a1);
    std::memcpy(out, &r, 64);
    return;
  }
  R r;
  if (c.nin == 1) r = c.ptr ? ((R(OCL_RAVL_CC*)(R, void*))f)(a0, pout) : ((R(OCL_RAVL_CC*)(R))f)(a0);
  else if (c.nin == 2) r = c.ptr ? ((R(OCL_RAVL_CC*)(R, R, void*))f)(a0, a1, pout) : ((R(OCL_RAVL_CC*)(R, R))f)(a0, a1);
  else r = ((R(OCL_RAVL_CC*)(R, R, R))f)(a0, a1, a2);
  std::memcpy(out, &r, c.out_bytes);
}

void others(void* fa, void* fb, const Call& c, int width, bool single, bool all_floats, uint64_t lo, uint64_t hi,
            Result& r) {
  std::mt19937_64 g(lo * 0x9e3779b97f4a7c15ull + 1);
  for (uint64_t i = lo; i < hi; i += width) {
    unsigned char in[3][32] = {}, oa[64] = {}, ob[64] = {}, pa[32] = {}, pb[32] = {};
    for (int k = 0; k < width; ++k) {
      uint32_t bits = (uint32_t)(i + k);
      if (all_floats) std::memcpy(in[0] + 4 * k, &bits, 4);
      else if (single) fill_lane<float>(c.args, i + k, k, g, in);
      else fill_lane<double>(c.args, i + k, k, g, in);
    }
    call(fa, c, in, oa, pa);
    call(fb, c, in, ob, pb);
    if (std::memcmp(oa, ob, sizeof oa) != 0 || std::memcmp(pa, pb, sizeof pa) != 0) note(r, i);
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
    std::string args = sig.substr(sig.find('(') + 1, sig.size() - sig.find('(') - 2);
    Result r;
    uint64_t total;
    std::function<void(uint64_t, uint64_t)> part;
    bool by_call = row && args != "d" && args != "s" && args != "l" && args != "ul";
    if (by_call) {
      // Other signatures, one register per argument (see above).
      std::string places = row->places[2];
      if (places.find(":64") != std::string::npos || places.find('g') != std::string::npos ||
          places.find('m') != std::string::npos) {
        std::printf("%-20s not compared: an argument in two registers, in memory or in an integer register\n",
                    name.c_str());
        failed = 1;
        continue;
      }
      Call c{args, (int)std::count(args.begin(), args.end(), ',') + 1, args.find('*') != std::string::npos,
             std::atoi(std::strchr(row->ret(), ':') + 1)};
      c.nin -= c.ptr;
      bool all_floats = args == "s,*i" || args == "s,*s";
      total = all_floats ? (1ull << 32) : (1ull << 26);
      int width = row->width == 3 ? 4 : row->width;
      part = [&, c, all_floats, width](uint64_t lo, uint64_t hi) {
        others(fa, fb, c, width, args[0] == 's', all_floats, lo, hi, r);
      };
    } else {
      bool ints = sig.find("(l)") != std::string::npos || sig.find("(ul)") != std::string::npos;
      int out_bytes = row && std::string(row->ret()) == "v0:16" ? 16 : 32;
      total = single ? (1ull << 32) : (1ull << 26);
      part = [&, ints, out_bytes](uint64_t lo, uint64_t hi) {
        if (single) floats((F8Fn)fa, (F8Fn)fb, lo, hi, r);
        else doubles((D4Fn)fa, (D4Fn)fb, lo, hi, ints, out_bytes, r);
      };
    }
    std::vector<std::thread> pool;
    for (int t = 0; t < threads; ++t) {
      uint64_t lo = total / threads * t, hi = t + 1 == threads ? total : total / threads * (t + 1);
      pool.emplace_back(part, lo, hi);
    }
    for (auto& t : pool) t.join();
    std::printf("%-20s %12llu inputs  %llu %s", name.c_str(), (unsigned long long)total,
                (unsigned long long)r.bad.load(), by_call ? "mismatching calls" : "mismatches");
    if (r.bad)
      std::printf(by_call ? "  first at input %llu" : "  first at input bits 0x%llx", (unsigned long long)r.first.load());
    std::printf("\n");
    if (r.bad) failed = 1;
  }
  return failed;
}
