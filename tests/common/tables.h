// What the data-driven suites tell each other about a family: its MPFR
// function and asserted bounds (accuracy_test.cpp), the points of its special
// value table (edge_values_test.cpp) and its exact reference (exact_test.cpp).
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "tests/common/ref.h"

namespace ravl_test {

// The MPFR function of result `result` of a one-argument floating family
// ("expm1f": mpfr_expm1; "sincos" result 1: mpfr_cos), or null.
MpfrFn mpfr_of(const std::string& family, int result = 0);
// The exact integer second result of a family at x (lgammar: the sign of
// Gamma(x) as int32 lanes), or null.
using IntSecond = int (*)(double x);
IntSecond int_second_of(const std::string& family);
// The MPFR function of a two-argument family ("powf": mpfr_pow), or null.
MpfrFn2 mpfr2_of(const std::string& family);
inline bool has_reference(const std::string& family) { return mpfr_of(family) || mpfr2_of(family); }
// The max error asserted for the family's algorithm, in ulp (0 when it has none).
double class_bound(const std::string& family, const std::string& algorithm);
// The finite first arguments of the family's special-value rows (the accuracy
// suite tests their neighbourhoods).
std::vector<double> table_points(const std::string& family);
// The exact reference of the family's algorithm on the lane bits of one call
// in rounding mode rm (0-3, MXCSR's order): false when the family has none.
bool reference(const std::string& family, const std::string& algorithm, const uint64_t* in, uint64_t* out, int rm);

// An input range of a family for the accuracy suite: samples of x (and of y
// for two-argument families) over [lo, hi].
enum Sampling { kUniform, kBitPatterns, kEvery, kIntegers };  // kIntegers: a floating y that is an integer
struct Range {
  const char *family, *name;
  double lo, hi;  // for kBitPatterns and kEvery: of one sign
  Sampling how = kUniform;
  double ulp = 0;  // a tighter bound than the algorithm's, for the full algorithm only
  // Two-argument families: the second argument's range and sampling (an
  // integer argument: uniform integers; kIntegers: a floating argument
  // rounded to an integer). One input in eight pairs x with a random bit
  // pattern instead.
  double ylo = 0, yhi = 0;
  Sampling yhow = kUniform;
};
// Every family's input ranges (accuracy_rows.cpp).
std::vector<Range> ranges();
// True when the algorithm's bound holds on normal finite inputs only.
bool normal_only_bound(const std::string& family, const std::string& algorithm);
// Families whose results are odd (o) or even (e) in x, one letter per result.
struct Parity {
  const char *family, *parity;
};
std::vector<Parity> parity_rows();

}  // namespace ravl_test
