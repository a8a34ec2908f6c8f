// Runs exports of the .so by name in the tests (the core without a test
// framework is tests/common/lanes.h): a missing name or a convention or
// guard fault fails the current test.
//
//   Lanes out = run_lanes(name, {xs, ys});
//
// args[i][j] is lane j of argument i and out[k][j] lane j of output k (the
// results, then the one stored through the pointer), all as bits zero-extended
// to 64. Lookups may run in several threads at once.
#pragma once

#include <gtest/gtest.h>

#include "tests/common/lanes.h"

namespace ravl_test {

// Every export, resolved once.
inline const Callee* callee(const std::string& name) {
  const Callee* c = find_callee(name);
  if (!c) ADD_FAILURE() << "no export " << name;
  return c;
}

inline Lanes run_lanes(const std::string& name, const Lanes& args) {
  uint32_t faults;
  const Lanes out = run_lanes_raw(callee(name), args, &faults);
  if (faults) ADD_FAILURE() << name << ": " << faults_text(faults);
  return out;
}

}  // namespace ravl_test
