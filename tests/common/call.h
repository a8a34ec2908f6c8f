// Calls an export of the .so by name on arrays of lanes, whatever its width,
// signature or register form, through the checked trampoline: a family test
// says `call("exp16", r, x)` instead of building each width's vectors.
//
//   ravl_test::call(name, r, args...)        one result (w lanes written to r)
//   ravl_test::call2(name, r0, r1, args...)  two results, or a result and the
//                                            one stored through the pointer
// name is the export without its prefix ("divf8_native"); args point to w
// lanes each. Lanes past the width get copies of lane 0. The call fails the
// current test when the convention check or a guard reports a fault.
#pragma once

#include <dlfcn.h>
#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <unordered_map>

#include "tests/common/harness.h"

namespace ravl_test {

struct Callee {
  void* fn;
  Shape shape;
};

inline const Callee& callee(const std::string& name) {
  static std::unordered_map<std::string, Callee> cache;
  static void* so = dlopen(RAVL_SO_PATH, RTLD_NOW | RTLD_LOCAL);
  auto it = cache.find(name);
  if (it != cache.end()) return it->second;
  std::string full = "__ocl_ravl_l9_" + name;
  for (int e = 0; e < kExportCount; ++e)
    if (full == kExports[e].name) {
      Callee c{so ? dlsym(so, full.c_str()) : nullptr, parse_shape(kExports[e])};
      if (!c.fn) break;
      return cache.emplace(name, c).first->second;
    }
  ADD_FAILURE() << "no export " << full;
  static Callee none{nullptr, {}};
  return none;
}

template <class... A> void call_lanes(const std::string& name, void* r0, void* r1, const A*... args) {
  const Callee& c = callee(name);
  if (!c.fn) return;
  const Shape& sh = c.shape;
  CallIn in;
  std::memset(&in, 0, sizeof in);
  const void* a[] = {args..., nullptr};
  for (int i = 0; i < sh.nin; ++i)
    for (int j = 0; j < sh.w; ++j) {
      int lb = lane_bytes(sh.in_t[i]);
      std::memcpy(&in.lane[i][j], (const char*)a[i] + j * lb, (size_t)lb);
    }
  static CallOut out;
  call_once(c.fn, sh, in, 0, 0, out);
  if (out.faults) ADD_FAILURE() << name << ": convention or guard fault 0x" << std::hex << out.faults;
  int n0 = sh.w * lane_bytes(sh.res_t[0]);
  std::memcpy(r0, out.bytes + sh.res_offset[0], (size_t)n0);
  if (r1) {
    Lane t1 = sh.nres == 2 ? sh.res_t[1] : sh.ptr_t;
    std::memcpy(r1, out.bytes + sh.res_offset[1], (size_t)(sh.w * lane_bytes(t1)));
  }
}

template <class R, class... A> void call(const std::string& name, R* r, const A*... args) {
  call_lanes(name, r, nullptr, args...);
}
template <class R0, class R1, class... A> void call2(const std::string& name, R0* r0, R1* r1, const A*... args) {
  call_lanes(name, r0, r1, args...);
}

// The width of an export (1, 2, 3, 4, 8 or 16).
inline int width_of(const std::string& name) { return callee(name).shape.w; }

}  // namespace ravl_test
