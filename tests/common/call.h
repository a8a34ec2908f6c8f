// Runs exports of the .so by name ("divf8_native": the export without its
// prefix) on arrays of lanes of any length, through the checked trampoline
// and the harness (tests/common/harness.h), whatever the width, signature or
// register form:
//
//   Lanes out = run_lanes(name, {xs, ys});
//
// args[i][j] is lane j of argument i and out[k][j] lane j of output k (the
// results, then the one stored through the pointer), all as bits zero-extended
// to 64; the calls go in groups of the export's width. A convention or guard
// fault fails the current test. Lookups may run in several threads at once.
#pragma once

#include <dlfcn.h>
#include <gtest/gtest.h>

#include <map>
#include <string>
#include <vector>

#include "tests/common/harness.h"

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
// Every export, resolved once.
inline const Callee* callee(const std::string& name) {
  static const std::map<std::string, Callee> all = [] {
    std::map<std::string, Callee> m;
    for (const ExportRow& r : kExports)
      m[r.name + kPrefix] = {so_handle() ? dlsym(so_handle(), r.name) : nullptr, parse_shape(r), &r};
    return m;
  }();
  const auto it = all.find(name);
  if (it != all.end() && it->second.fn) return &it->second;
  ADD_FAILURE() << "no export " << name;
  return nullptr;
}
// The short name of a family's member ("plain", "native", ... classes).
inline std::string member(const std::string& family, const std::string& cls, int w) {
  return family + std::to_string(w) + (cls == "plain" ? "" : "_" + cls);
}

using Lanes = std::vector<std::vector<uint64_t>>;

inline Lanes run_lanes(const std::string& name, const Lanes& args) {
  const Callee* c = callee(name);
  const size_t n = args.empty() ? 0 : args[0].size();
  Lanes out(c ? c->shape.nout : 0, std::vector<uint64_t>(n, 0));
  if (!c) return out;
  const Shape& sh = c->shape;
  CallIn in;
  CallOut o;
  uint32_t faults = 0;
  for (size_t at = 0; at < n; at += sh.w) {
    for (int i = 0; i < sh.nin; ++i)
      for (int j = 0; j < sh.w; ++j) in.lane[i][j] = args[i][at + j < n ? at + j : at];
    call_once(c->fn, sh, in, (int)(at / sh.w), 0, o);
    faults |= o.faults;
    for (int k = 0; k < sh.nout; ++k)
      for (int j = 0, lb = lane_bytes(sh.out_t[k]); j < sh.w && at + j < n; ++j)
        memcpy(&out[k][at + j], o.bytes + sh.out_off[k] + j * lb, (size_t)lb);
  }
  if (faults) ADD_FAILURE() << name << ": " << faults_text(faults);
  return out;
}

}  // namespace ravl_test
