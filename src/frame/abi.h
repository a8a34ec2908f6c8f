// The register convention of the exported entry points.
//
// Every register-form entry point uses clang's register convention (RAVL_CC):
// vector arguments in ymm0-3 (xmm0-3 for 128-bit values), results in ymm0-3,
// wider values split over consecutive registers, integer scalars in their own
// sequence of general registers (ecx, edx, r8d, r9d on Windows; edi, esi, edx,
// ecx on Linux), and all 256 bits of ymm6-15 (Windows; ymm8-15 on Linux)
// preserved together with the platform's callee-saved general registers.
// The by-address form and the scalar callouts use the platform's standard
// convention.
//
// clang 14 cannot mangle this convention for the Windows target, so every
// function that carries it has C linkage; C++ kernels keep the default
// convention and are inlined into those functions.
#pragma once

#define RAVL_CC __attribute__((intel_ocl_bicc))
#define RAVL_NOINLINE __attribute__((noinline))

#if defined(_WIN32)
#define RAVL_EXPORT
#else
#define RAVL_EXPORT __attribute__((visibility("default")))
#endif

// A thunk for the entry points that return two 128-bit vectors, the first in
// xmm0 and the second in xmm1 (C++ cannot return that): it calls `body`,
// which returns both as one 256-bit value in ymm0, and moves the upper half
// to xmm1. The stack is kept 16-byte aligned across the call, and on Windows
// the body gets its 32-byte home area.
#if defined(_WIN32)
#define RAVL_SPLIT_THUNK_FRAME "40"
#else
#define RAVL_SPLIT_THUNK_FRAME "8"
#endif
#define RAVL_SPLIT_THUNK(name, body)                                      \
  extern "C" RAVL_EXPORT __attribute__((naked)) void name() {             \
    __asm__("sub $" RAVL_SPLIT_THUNK_FRAME ", %rsp\n\t"                   \
            "call " #body "\n\t"                                          \
            "add $" RAVL_SPLIT_THUNK_FRAME ", %rsp\n\t"                   \
            "vextractf128 $1, %ymm0, %xmm1\n\t"                           \
            "ret");                                                       \
  }

// One body under a second name (ELF; the DLL binds such names in its .def).
#if defined(_WIN32)
#define RAVL_ALIAS(name, body)
#else
#define RAVL_ALIAS(name, body) extern "C" RAVL_EXPORT void name() __attribute__((alias(#body)));
#endif
