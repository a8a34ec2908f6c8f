// Runs exports of the .so by name ("divf8_native": the export without its
// prefix) on arrays of lanes of any length, through the checked trampoline
// and the harness (tests/common/harness.h), whatever the width, signature or
// register form. No test framework: the tests (tests/common/call.h) and the
// ravl tool report the faults their own way.
//
//   uint32_t faults;
//   Lanes out = run_lanes_raw(find_callee(name), {xs, ys}, &faults);
//
// args[i][j] is lane j of argument i and out[k][j] lane j of output k (the
// results, then the one stored through the pointer), all as bits zero-extended
// to 64; the calls go in groups of the export's width, the last group filled
// with its first lane. Lookups may run in several threads at once.
#pragma once

#include <dlfcn.h>

#include <map>
#include <string>
#include <vector>

#include "tests/common/harness.h"
#include "tests/common/ref.h"

namespace ravl_test {

constexpr size_t kPrefix = sizeof "__ocl_ravl_l9_" - 1;

inline void* so_handle() {
  static void* h = dlopen(RAVL_SO_PATH, RTLD_NOW | RTLD_LOCAL);
  return h;
}
inline std::string faults_text(uint32_t f) {
  char buf[512];
  describe_faults(f, buf, sizeof buf);
  return buf;
}

struct Callee {
  void* fn;
  Shape shape;
  const ExportRow* row;
};
// Every export by its short name, resolved once.
inline const std::map<std::string, Callee>& callees() {
  static const std::map<std::string, Callee> all = [] {
    std::map<std::string, Callee> m;
    for (const ExportRow& r : kExports)
      m[r.name + kPrefix] = {so_handle() ? dlsym(so_handle(), r.name) : nullptr, parse_shape(r), &r};
    return m;
  }();
  return all;
}
// The export of that short name, or null when it is not in the list or does not resolve.
inline const Callee* find_callee(const std::string& name) {
  const auto it = callees().find(name);
  return it != callees().end() && it->second.fn ? &it->second : nullptr;
}
// The short name of a family's member ("plain", "native", ... classes).
inline std::string member(const std::string& family, const std::string& cls, int w) {
  return family + std::to_string(w) + (cls == "plain" ? "" : "_" + cls);
}

using Lanes = std::vector<std::vector<uint64_t>>;

// The value of lane bits of type t.
inline double lane_value(uint64_t v, Lane t) {
  switch (t) {
    case kD: return from_bits<double>(v);
    case kS: return from_bits<float>(v);
    case kI: return (int32_t)v;
    case kU: return (uint32_t)v;
    case kL: return (double)(int64_t)v;
    default: return (double)v;
  }
}

// c may be null: the outputs are then empty. *faults: the convention and guard faults of all calls.
inline Lanes run_lanes_raw(const Callee* c, const Lanes& args, uint32_t* faults) {
  const size_t n = args.empty() ? 0 : args[0].size();
  Lanes out(c ? c->shape.nout : 0, std::vector<uint64_t>(n, 0));
  *faults = 0;
  if (!c) return out;
  const Shape& sh = c->shape;
  CallIn in;
  CallOut o;
  for (size_t at = 0; at < n; at += sh.w) {
    for (int i = 0; i < sh.nin; ++i)
      for (int j = 0; j < sh.w; ++j) in.lane[i][j] = args[i][at + j < n ? at + j : at];
    call_once(c->fn, sh, in, (int)(at / sh.w), 0, o);
    *faults |= o.faults;
    for (int k = 0; k < sh.nout; ++k)
      for (int j = 0, lb = lane_bytes(sh.out_t[k]); j < sh.w && at + j < n; ++j)
        memcpy(&out[k][at + j], o.bytes + sh.out_off[k] + j * lb, (size_t)lb);
  }
  return out;
}

}  // namespace ravl_test
