// Accuracy of one-argument transcendental algorithms against MPFR: a family
// test lists one Row per (family, algorithm) with the domain, the points
// around its bounds, and the asserted max error in ulp (the one place those
// bounds are kept; the kernels' comments quote the measured figures), and
// instantiates the Accuracy suite on them:
//
//   INSTANTIATE_TEST_SUITE_P(Log, Accuracy, ::testing::ValuesIn(kLogRows), row_name);
//
// Inputs per row: uniform random values over the row's interval, random bit
// patterns over the whole format, the row's edge points with +-kEdgeUlps
// neighbours, and the special values. Each algorithm is called through the
// width-16 export of the first class that selects it; the export tests show
// that every width and every class of the same algorithm gives the same bits.
// RAVL_ACCURACY_SCALE=k multiplies the random counts (deep runs).
#pragma once

#include <gtest/gtest.h>

#include <cfloat>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <random>
#include <string>
#include <vector>

#include "tests/common/call.h"
#include "tests/common/fp_bits.h"
#include "tests/common/ulp.h"

namespace ravl_test {

struct Row {
  const char* family;
  const char* algorithm;
  MpfrFn fn;
  double bound;  // max error asserted, ulp
  double lo, hi;
  std::vector<double> edges;
  // Sample uniformly over the bit patterns between lo and hi (both positive):
  // uniform in exponent and mantissa, for domains spanning many binades.
  bool log_uniform = false;
};

constexpr int kEdgeUlps = 64;

inline int scale() {
  const char* s = std::getenv("RAVL_ACCURACY_SCALE");
  return s ? std::max(1, std::atoi(s)) : 1;
}

// The width-16 export of the first class of `family` whose algorithm is `algo`.
inline const ExportRow* export_for(const char* family, const char* algo) {
  for (int e = 0; e < kExportCount; ++e) {
    const ExportRow& r = kExports[e];
    if (r.width == 16 && !std::strcmp(r.family, family) && !std::strcmp(r.algorithm, algo)) return &r;
  }
  return nullptr;
}

template <class T> std::vector<T> inputs(const Row& row) {
  using U = typename Fmt<T>::U;
  std::mt19937_64 g(0x5eed ^ std::hash<std::string>()(row.family));
  std::uniform_real_distribution<double> u(row.lo, row.hi);
  std::vector<T> in;
  int n = (sizeof(T) == 8 ? 1 << 17 : 1 << 18) * scale();
  std::uniform_int_distribution<U> ub(row.log_uniform ? bits((T)row.lo) : 0, row.log_uniform ? bits((T)row.hi) : 0);
  for (int i = 0; i < n; ++i) in.push_back(row.log_uniform ? from_bits<T>(ub(g)) : (T)u(g));
  for (int i = 0; i < n / 4; ++i) in.push_back(from_bits<T>((U)g()));
  for (double e : row.edges) {
    T x = (T)e;
    for (int k = 0; k < kEdgeUlps; ++k) {
      in.push_back(x);
      in.push_back(-x);
      x = std::nextafter(x, (T)INFINITY);
    }
    x = (T)e;
    for (int k = 0; k < kEdgeUlps; ++k) in.push_back(x = std::nextafter(x, -(T)INFINITY));
  }
  const T specials[] = {0, -(T)0, (T)INFINITY, -(T)INFINITY, std::numeric_limits<T>::quiet_NaN(),
                        std::numeric_limits<T>::denorm_min(), -std::numeric_limits<T>::denorm_min(),
                        std::numeric_limits<T>::min(), std::numeric_limits<T>::max(),
                        -std::numeric_limits<T>::max(), 1, -1, (T)0.5, 2};
  for (T s : specials) in.push_back(s);
  while (in.size() % 16) in.push_back(0);
  return in;
}

template <class T> void check(const Row& row) {
  std::string name = std::string(export_for(row.family, row.algorithm)->name).substr(std::strlen("__ocl_ravl_l9_"));
  std::vector<T> in = inputs<T>(row), out(in.size());
  for (size_t i = 0; i < in.size(); i += 16) call(name, &out[i], &in[i]);
  UlpRef<T> ref(row.fn);
  double worst = 0;
  size_t at = 0;
  for (size_t i = 0; i < in.size(); ++i) {
    double e = ref.ulp_error(in[i], out[i]);
    if (!(e <= worst)) {
      worst = e;
      at = i;
    }
  }
  std::printf("%-8s %-5s max %.4g ulp over %zu inputs, worst x = %a (got %a, want %a)\n", row.family, row.algorithm,
              worst, in.size(), (double)in[at], (double)out[at], (double)ref.correct(in[at]));
  EXPECT_LE(worst, row.bound) << name << " at x = " << hex(in[at]) << ": got " << hex(out[at]);
}

class Accuracy : public ::testing::TestWithParam<Row> {};

inline std::string row_name(const ::testing::TestParamInfo<Row>& info) {
  return std::string(info.param.family) + "_" + info.param.algorithm;
}

}  // namespace ravl_test
