// Runs an export over arrays of any length with call(): result lane i is the
// export on lane i of every input, the calls going in groups of the export's
// width. Tests build their inputs as plain vectors and pick the width by name.
//
//   map<R>(name, xs, ys...)            results of a one-result export
//   map2(name, r0, r1, xs, ys...)      two results, or a result and the
//                                      one stored through the pointer
//   map_bits(name, xs)                 one input and one result, as lane bits
//                                      zero-extended to 64 (any lane types)
//   every_lane(n)                      a lane layout with each of n table rows
//                                      in every lane position of a group of 16
#pragma once

#include <cstdint>
#include <cstring>
#include <string>
#include <vector>

#include "tests/common/call.h"

namespace ravl_test {

template <class A> std::vector<A> padded(const std::vector<A>& v) {
  std::vector<A> p(v);
  p.resize(v.size() + 16, v.empty() ? A() : v[0]);  // the last call reads up to 16 lanes
  return p;
}
template <class A, class... B> size_t first_size(const std::vector<A>& a, const B&...) { return a.size(); }

template <class R0, class R1, class... A>
void map_into(const std::string& name, std::vector<R0>& r0, std::vector<R1>* r1, const std::vector<A>&... a) {
  const size_t n = first_size(a...), w = (size_t)width_of(name);
  r0.assign(n + 16, R0());
  if (r1) r1->assign(n + 16, R1());
  auto run = [&](const std::vector<A>&... p) {
    for (size_t i = 0; w && i < n; i += w) call_lanes(name, &r0[i], r1 ? &(*r1)[i] : nullptr, (p.data() + i)...);
  };
  run(padded(a)...);
  r0.resize(n);
  if (r1) r1->resize(n);
}
template <class R, class... A> std::vector<R> map(const std::string& name, const std::vector<A>&... a) {
  std::vector<R> r;
  map_into(name, r, (std::vector<R>*)nullptr, a...);
  return r;
}
template <class R0, class R1, class... A>
void map2(const std::string& name, std::vector<R0>& r0, std::vector<R1>& r1, const std::vector<A>&... a) {
  map_into(name, r0, &r1, a...);
}

inline std::vector<uint64_t> map_bits(const std::string& name, const std::vector<uint64_t>& x) {
  const Shape& sh = callee(name).shape;
  const size_t n = x.size(), w = (size_t)sh.w, ib = (size_t)lane_bytes(sh.in_t[0]),
               ob = (size_t)lane_bytes(sh.res_t[0]);
  std::vector<uint8_t> in((n + 16) * ib), out((n + 16) * ob);
  for (size_t i = 0; i < n; ++i) std::memcpy(&in[i * ib], &x[i], ib);  // little-endian: the low bytes
  for (size_t i = 0; w && i < n; i += w) call(name, &out[i * ob], &in[i * ib]);
  std::vector<uint64_t> r(n, 0);
  for (size_t i = 0; i < n; ++i) std::memcpy(&r[i], &out[i * ob], ob);
  return r;
}

inline std::vector<int> every_lane(int rows) {
  std::vector<int> v;
  for (int c = 0; c < rows; ++c)
    for (int p = 0; p < 16; ++p)
      for (int j = 0; j < 16; ++j) v.push_back(j == p ? c : -1);
  return v;
}

}  // namespace ravl_test
