// IEEE field layout of double and float for the tests: bit patterns, field
// masks and a printable form.
#pragma once

#include <cstdint>
#include <cstdio>
#include <cstring>
#include <string>

namespace ravl_test {

template <class T> struct Fmt;
template <> struct Fmt<double> {
  using U = uint64_t;
  static constexpr U sign = 1ull << 63, exp = 0x7ffull << 52, quiet = 1ull << 51, mant = (1ull << 52) - 1;
  static constexpr int prec = 53, emin = -1073, emax = 1024, min_normal_exp = -1022;
};
template <> struct Fmt<float> {
  using U = uint32_t;
  static constexpr U sign = 1u << 31, exp = 0xffu << 23, quiet = 1u << 22, mant = (1u << 23) - 1;
  static constexpr int prec = 24, emin = -148, emax = 128, min_normal_exp = -126;
};
template <class T> typename Fmt<T>::U bits(T x) {
  typename Fmt<T>::U u;
  std::memcpy(&u, &x, sizeof x);
  return u;
}
template <class T> T from_bits(typename Fmt<T>::U u) {
  T x;
  std::memcpy(&x, &u, sizeof x);
  return x;
}
template <class T> std::string hex(T x) {
  char b[64];
  std::snprintf(b, sizeof b, "%a [0x%llx]", (double)x, (unsigned long long)bits(x));
  return b;
}

}  // namespace ravl_test
