// exp and expf accuracy (the Accuracy suite is defined in tests/common/accuracy.h).
#include "tests/common/accuracy.h"

namespace ravl_test {

TEST_P(Accuracy, WithinBound) {
  const Row& row = GetParam();
  const ExportRow* e = export_for(row.family, row.algorithm);
  ASSERT_TRUE(e) << row.family << " " << row.algorithm << " is not exported";
  if (e->sig[0] == 's') check<float>(row);
  else check<double>(row);
}

namespace {

// exp: fast-path bound, overflow and underflow bounds, ln of the smallest normal.
const std::vector<double> kExpEdges = {708.39599609374989, -708.39599609374989, 709.78271289338397,
                                       -745.13321910194111, -708.39641853226408, 0x1p-52, -0x1p-52, 0};
const std::vector<double> kExpfEdges = {87.3365402, -87.3365402, 88.7228317, -103.972076, -87.33654022216797, 0};

const Row kRows[] = {
    // exp, plain: measured 0.519 ulp.
    {"exp", "full", mpfr_exp, 1.0, -750, 720, kExpEdges},
    // exp, _native _half _rm: measured 2.972e7 ulp (relative 3.3e-9): the
    // degree-2 polynomial's r^3/6 at |r| = ln2/256 allows 2.98e7.
    {"exp", "fast", mpfr_exp, 2.98e7, -750, 720, kExpEdges},
    // expf, plain _rm: measured 0.748 ulp.
    {"expf", "full", mpfr_exp, 1.0, -105, 90, kExpfEdges},
    // expf, _native _half: measured 1775.5 ulp (OpenCL's half_exp allows 8192).
    {"expf", "fast", mpfr_exp, 1780, -105, 90, kExpfEdges},
};

}  // namespace

INSTANTIATE_TEST_SUITE_P(Exp, Accuracy, ::testing::ValuesIn(kRows), row_name);

}  // namespace ravl_test
