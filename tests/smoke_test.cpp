#include <gtest/gtest.h>
#include "ocl_ravl_l9.h"
TEST(Smoke, Fabs4) {
  ocl_ravl_double4 x = {-1.0, 2.0, -0.0, -3.5};
  ocl_ravl_double4 r = __ocl_ravl_l9_fabs4(x);
  EXPECT_EQ(r[0], 1.0); EXPECT_EQ(r[3], 3.5);
}
