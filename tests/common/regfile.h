// The register file of one checked call through the convention trampolines
// (tests/call_sysv.S on Linux, tests/win/call_win64.S on Windows):
//
//   int ravl_call_checked(void* fn, RegFile* rf);
//
// loads ymm0-3 and the first four integer argument registers from rf, fills
// every register the callee must preserve with a canary and the volatile
// ones with junk, calls fn with the stack 16-byte but not 32-byte aligned,
// stores ymm0-3 and rax back into rf and returns the set of broken promises
// (kClobber* bits; 0 when the callee kept the convention).
//
// Register form (intel_ocl_bicc): Linux keeps rbx, rbp, r12-r15 and all 256
// bits of ymm8-15; Windows keeps rbx, rbp, rdi, rsi, r12-r15 and all 256 bits
// of ymm6-15. By-address form (the platform's C convention): Linux keeps the
// general registers only; Windows the general registers and the low 128 bits
// of xmm6-15.
#pragma once

#include <stddef.h>
#include <stdint.h>

namespace ravl_test {

struct alignas(32) RegFile {
  uint8_t v[4][32];  // ymm0-3: arguments in, results out
  uint64_t g[4];     // integer argument registers in order (Linux rdi rsi rdx rcx, Windows rcx rdx r8 r9)
  uint64_t rax;      // out
  uint32_t form;     // kFormRegister or kFormByAddress
  uint32_t pad0;
  uint64_t pad1[2];
  uint8_t junk[32];  // loaded into the volatile registers that carry no argument
};
static_assert(offsetof(RegFile, g) == 128 && offsetof(RegFile, rax) == 160 && offsetof(RegFile, form) == 168 &&
                  offsetof(RegFile, junk) == 192 && sizeof(RegFile) == 224,
              "the trampolines hard-code this layout");

enum : uint32_t { kFormRegister = 0, kFormByAddress = 1 };

enum : uint32_t {
  kClobberRbx = 1u << 0,
  kClobberRbp = 1u << 1,
  kClobberR12 = 1u << 2,
  kClobberR13 = 1u << 3,
  kClobberR14 = 1u << 4,
  kClobberR15 = 1u << 5,
  kClobberRdi = 1u << 6,      // Windows only
  kClobberRsi = 1u << 7,      // Windows only
  kClobberYmmShift = 8,       // bit 8 + (k - 6) for ymm k, k = 6..15
  kClobberMxcsr = 1u << 20,   // a control bit of MXCSR changed (status flags are not checked)
  kClobberCallerStack = 1u << 21,  // the caller's frame above the return address was written
};

}  // namespace ravl_test

extern "C" int ravl_call_checked(void* fn, ravl_test::RegFile* rf);
