// fabs(x): x with its sign bit cleared. Exact for every input, NaN payloads
// included; no special lanes.
#include "frame/entry.h"

namespace ravl {

template <class T> struct FabsKernel : frame::Kernel {
  using sig = T(T);
  template <int L> static RAVL_INLINE Vec<T, L> vec(Vec<T, L> x) { return abs(x); }
};

namespace fabs_k { using full = FabsKernel<double>; }
namespace fabsf_k { using full = FabsKernel<float>; }

}  // namespace ravl

#include "entries/fabs.inc"
#include "entries/fabsf.inc"
