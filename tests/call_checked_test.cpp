// The checker checked: hand-written callees that break one promise each must
// be caught by the trampoline (tests/call_checked.S) or the harness
// (tests/common/harness.h), and well-behaved ones must pass, so that a clean
// run of the export-wide tests means something. (The Windows runner checks
// its own trampoline the same way before it runs the DLL.)
#include <gtest/gtest.h>
#include <immintrin.h>

#include "common/harness.h"

using namespace ravl_test;

#define CALLEES(X)                                                                                               \
  X(ok) X(rbx) X(rbp_r15) X(vzeroupper) X(xmm12) X(mxcsr) X(status_flags) X(stack) X(rsp) X(copy32) X(copy33) \
  X(copy_rax0) X(copy_writes_input) X(identity) X(upper_lanes) X(ptr_half) X(ptr_full) X(int_low) X(int_full)
#define DECLARE(n) void ravl_selftest_##n();
extern "C" {
CALLEES(DECLARE)
}

asm(R"(
        .text
ravl_selftest_ok:                       // clobbers every volatile register
        mov $1, %rax
        mov $2, %rcx
        mov $3, %rdx
        mov $4, %rsi
        mov $5, %rdi
        mov $6, %r8
        mov $7, %r9
        mov $8, %r10
        mov $9, %r11
        vpcmpeqb %ymm0, %ymm0, %ymm0
        .irp k, 1, 2, 3, 4, 5, 6, 7
        vmovdqa %ymm0, %ymm\k
        .endr
        ret
ravl_selftest_rbx:
        mov $1, %rbx
        ret
ravl_selftest_rbp_r15:
        xor %ebp, %ebp
        xor %r15d, %r15d
        ret
ravl_selftest_vzeroupper:
        vzeroupper
        ret
ravl_selftest_xmm12:
        vpxor %xmm12, %xmm12, %xmm12
        ret
ravl_selftest_mxcsr:                    // flush-to-zero and round toward zero
        sub $8, %rsp
        stmxcsr (%rsp)
        xorl $0xe000, (%rsp)
        ldmxcsr (%rsp)
        add $8, %rsp
        ret
ravl_selftest_status_flags:             // 0/0 raises the invalid flag only
        vxorps %xmm0, %xmm0, %xmm0
        vdivss %xmm0, %xmm0, %xmm0
        ret
ravl_selftest_stack:                    // writes the caller's frame
        movq $0, 48(%rsp)
        ret
ravl_selftest_rsp:                      // rax = rsp before the call
        lea 8(%rsp), %rax
        ret
ravl_selftest_copy33:                   // by-address form, 4 doubles, and one byte more
        movb $0, 32(%rdi)
ravl_selftest_copy32:
        vmovdqu (%rsi), %ymm0
        vmovdqu %ymm0, (%rdi)
        mov %rdi, %rax
        vzeroupper
        ret
ravl_selftest_copy_rax0:
        vmovdqu (%rsi), %ymm0
        vmovdqu %ymm0, (%rdi)
        xor %eax, %eax
        vzeroupper
        ret
ravl_selftest_copy_writes_input:
        movb $0, 3(%rsi)
        jmp ravl_selftest_copy32
ravl_selftest_identity:
        ret
ravl_selftest_upper_lanes:              // float2 result from lanes 2-3 of the input
        vpshufd $0xee, %xmm0, %xmm0
        ret
ravl_selftest_ptr_half:                 // writes 8 of the 16 bytes behind the pointer
        vmovsd %xmm0, (%rdi)
        ret
ravl_selftest_ptr_full:
        vmovupd %xmm0, (%rdi)
        ret
ravl_selftest_int_low:                  // (double)n from the 32-bit n
        vcvtsi2sd %edi, %xmm0, %xmm0
        ret
ravl_selftest_int_full:                 // reads the undefined upper half of n
        vcvtsi2sd %rdi, %xmm0, %xmm0
        ret
)");

namespace {

uint32_t trampoline(void (*fn)(), uint32_t form, RegFile& rf) {
  memset(&rf, 0, sizeof rf);
  rf.form = form;
  return (uint32_t)ravl_call_checked((void*)fn, &rf);
}

const uint32_t kYmm8to15 = 0xffu << (kClobberYmmShift + 2), kYmm12 = 1u << (kClobberYmmShift + 6);
const struct {
  const char* what;
  void (*fn)();
  uint32_t reg_form, by_address;  // expected bits in each form
} kTrampolineCases[] = {
    {"volatile registers only", ravl_selftest_ok, 0, 0},
    {"rbx", ravl_selftest_rbx, kClobberRbx, kClobberRbx},
    {"rbp and r15", ravl_selftest_rbp_r15, kClobberRbp | kClobberR15, kClobberRbp | kClobberR15},
    {"vzeroupper", ravl_selftest_vzeroupper, kYmm8to15, 0},
    {"xmm12", ravl_selftest_xmm12, kYmm12, 0},
    {"MXCSR control", ravl_selftest_mxcsr, kClobberMxcsr, kClobberMxcsr},
    {"MXCSR status flags", ravl_selftest_status_flags, 0, 0},
    {"caller's stack", ravl_selftest_stack, kClobberCallerStack, kClobberCallerStack},
};

}  // namespace

TEST(CallChecked, TrampolineCatchesEachBrokenPromise) {
  RegFile rf;
  for (const auto& c : kTrampolineCases) {
    const unsigned before = _mm_getcsr();
    EXPECT_EQ(trampoline(c.fn, kFormRegister, rf), c.reg_form) << c.what << ", register form";
    EXPECT_EQ(trampoline(c.fn, kFormByAddress, rf), c.by_address) << c.what << ", by-address form";
    EXPECT_EQ(_mm_getcsr() & 0xffc0u, before & 0xffc0u) << c.what << ": MXCSR not given back";
  }
  EXPECT_EQ(trampoline(ravl_selftest_rsp, kFormRegister, rf), 0u);
  EXPECT_EQ(rf.rax % 32, 16u) << "the stack at the call must be 16-byte but not 32-byte aligned";
}

namespace {

const ExportRow kCopy = {"t", "t", "t", "plain", "full", 4, "d(d)", "mem", "m1:32", "m0:32"};
const ExportRow kFloat2 = {"t", "t", "t", "plain", "full", 2, "s(s)", "reg", "v0:16", "v0:16"};
const ExportRow kPtr = {"t", "t", "t", "plain", "full", 2, "d(d,*d)", "reg", "v0:16,p0:16", "v0:16"};
const ExportRow kCvt = {"t", "t", "t", "plain", "full", 1, "d(i)", "reg", "g0:4", "v0:8"};
const struct {
  const char* what;
  void (*fn)();
  const ExportRow& row;
  uint32_t faults;
} kHarnessCases[] = {
    {"by-address copy", ravl_selftest_copy32, kCopy, 0},
    {"one byte past the buffer", ravl_selftest_copy33, kCopy, kFaultGuard},
    {"rax not the buffer", ravl_selftest_copy_rax0, kCopy, kFaultRax},
    {"writes its input", ravl_selftest_copy_writes_input, kCopy, kFaultGuard},
    {"float2 identity", ravl_selftest_identity, kFloat2, 0},
    {"float2 from the undefined lanes", ravl_selftest_upper_lanes, kFloat2, kFaultUnstable},
    {"pointer result written", ravl_selftest_ptr_full, kPtr, 0},
    {"pointer result half written", ravl_selftest_ptr_half, kPtr, kFaultUnstable},
    {"32-bit integer argument", ravl_selftest_int_low, kCvt, 0},
    {"reads the upper half of a 32-bit argument", ravl_selftest_int_full, kCvt, kFaultUnstable},
};

}  // namespace

TEST(CallChecked, HarnessCatchesEachBrokenPromise) {
  for (const auto& c : kHarnessCases) {
    ExportResult r;
    run_export((void*)c.fn, c.row, r);
    EXPECT_EQ(r.faults, c.faults) << c.what;
    free(r.out);
  }
}

// The harness reads the results where the row says they are.
TEST(CallChecked, HarnessFindsTheResults) {
  const Shape copy = parse_shape(kCopy), cvt = parse_shape(kCvt);
  ASSERT_EQ(out_bytes(copy), 32);
  ASSERT_EQ(out_bytes(cvt), 8);
  for (int t = 0; t < 8; ++t) {
    CallIn in;
    CallOut o;
    make_inputs(copy, t, in);
    call_checked((void*)ravl_selftest_copy32, copy, in, t, o);
    EXPECT_EQ(memcmp(o.bytes, in.lane[0], 32), 0);
    make_inputs(cvt, t, in);
    call_checked((void*)ravl_selftest_int_low, cvt, in, t, o);
    double d;
    memcpy(&d, o.bytes, 8);
    EXPECT_EQ(d, (double)(int32_t)in.lane[0][0]);
  }
}
