// Every register-form export called twice with the same inputs: through its
// LLVM IR declaration (the probes of ir_probes.py, compiled by llc) and
// through the tests' register-image harness (tests/common/harness.h), which
// places arguments and results as the export list says. The defined result
// bytes must agree bit for bit. Prints "ir probes: N exports, M calls, K differ".
//   ir_probe_driver LIBRARY
#include "common/harness.h"
#if defined(_WIN32)
#include <windows.h>
static void* open_library(const char* path) { return (void*)LoadLibraryA(path); }
static void* symbol(void* lib, const char* name) { return (void*)GetProcAddress((HMODULE)lib, name); }
#else
#include <dlfcn.h>
static void* open_library(const char* path) { return dlopen(path, RTLD_NOW); }
static void* symbol(void* lib, const char* name) { return dlsym(lib, name); }
#endif

using namespace ravl_test;
typedef void (*Probe)(const void*, const void*, const void*, void*);
struct ProbeEntry {
  const char* name;
  Probe fn;
};
extern "C" const ProbeEntry probe_table[];
extern "C" const int probe_count;

int main(int argc, char** argv) {
  void* lib = argc == 2 ? open_library(argv[1]) : nullptr;
  if (!lib) {
    fprintf(stderr, "usage: %s LIBRARY (which must load)\n", argv[0]);
    return 2;
  }
  int exports = 0, calls = 0, differ = 0, missing = 0, at = 0;
  for (const ExportRow& row : kExports) {
    if (row.form[0] != 'r') continue;
    // the probes come in the order of the export list
    Probe probe = nullptr;
    for (int k = 0; k < probe_count && !probe; ++k, at = (at + 1) % probe_count)
      if (strcmp(probe_table[at].name, row.name) == 0) probe = probe_table[at].fn;
    void* fn = symbol(lib, row.name);
    if (!probe || !fn) {
      fprintf(stderr, "%s: no %s\n", row.name, fn ? "declaration" : "export");
      ++missing;
      continue;
    }
    ++exports;
    const Shape sh = parse_shape(row);
    bool bad = false;
    for (int t = 0; t < trials_for_width(sh.w); ++t, ++calls) {
      CallIn in;
      CallOut want;
      make_inputs(sh, t, in);
      call_checked(fn, sh, in, t, want);
      alignas(64) uint8_t packed[3][128] = {}, got[512] = {};
      for (int i = 0; i < sh.nin; ++i)
        for (int j = 0; j < sh.w; ++j)
          memcpy(packed[i] + j * lane_bytes(sh.in_t[i]), &in.lane[i][j], (size_t)lane_bytes(sh.in_t[i]));
      probe(packed[0], packed[1], packed[2], got);
      if (memcmp(got, want.bytes, (size_t)out_bytes(sh)) != 0 && !bad) {
        fprintf(stderr, "%s: the IR call differs at trial %d\n", row.name, t);
        bad = true;
      }
    }
    differ += bad;
  }
  printf("ir probes: %d exports, %d calls, %d differ, %d missing\n", exports, calls, differ, missing);
  return differ || missing ? 1 : 0;
}
