// fmod(x, y): x - n*y with n = x/y truncated toward zero; exact for every
// finite pair, the result has the sign of x. Method, special lanes and
// special values in ieee/remainder_core.h.
#include "ieee/remainder_core.h"

namespace ravl {

namespace fmod_k { using full = RemKernel<double, RemMode::fmod>; }
namespace fmodf_k { using full = RemKernel<float, RemMode::fmod>; }

}  // namespace ravl

#include "entries/fmod.inc"
#include "entries/fmodf.inc"
