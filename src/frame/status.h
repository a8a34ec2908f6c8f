// Status codes returned by the scalar special-lane routines. The vector entry
// points ignore them; they name the condition of each result.
#pragma once

namespace ravl {
enum Status : int {
  kStatusOk = 0,         // ordinary result, also for NaN inputs and exact special values
  kStatusDomain = 1,     // NaN produced from a non-NaN argument
  kStatusPole = 2,       // infinite result from a finite argument
  kStatusOverflow = 3,   // finite argument, result too large
  kStatusUnderflow = 4,  // zero or denormal result
};
}  // namespace ravl
