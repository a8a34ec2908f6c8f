// The checker checked: hand-written callees that break one promise each must
// be caught by the trampoline (tests/call_sysv.S) or the harness
// (tests/common/harness.h), and well-behaved ones must pass, so that a clean
// run of the export-wide tests means something.
#include <gtest/gtest.h>
#include <immintrin.h>

#include "common/harness.h"

using namespace ravl_test;

// Callees in assembly: each keeps the convention except where its name says.
asm(R"(
        .text
        .globl ravl_selftest_ok, ravl_selftest_rbx, ravl_selftest_rbp_r15, ravl_selftest_vzeroupper
        .globl ravl_selftest_xmm12, ravl_selftest_mxcsr, ravl_selftest_status_flags, ravl_selftest_stack
        .globl ravl_selftest_rsp, ravl_selftest_copy32, ravl_selftest_copy33, ravl_selftest_copy_rax0
        .globl ravl_selftest_copy_writes_input, ravl_selftest_identity, ravl_selftest_upper_lanes
        .globl ravl_selftest_ptr_half, ravl_selftest_ptr_full, ravl_selftest_int_low, ravl_selftest_int_full
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
        vmovdqa %ymm0, %ymm1
        vmovdqa %ymm0, %ymm2
        vmovdqa %ymm0, %ymm3
        vmovdqa %ymm0, %ymm4
        vmovdqa %ymm0, %ymm5
        vmovdqa %ymm0, %ymm6
        vmovdqa %ymm0, %ymm7
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
ravl_selftest_copy32:                   // by-address form, 4 doubles
        vmovdqu (%rsi), %ymm0
        vmovdqu %ymm0, (%rdi)
        mov %rdi, %rax
        vzeroupper
        ret
ravl_selftest_copy33:
        vmovdqu (%rsi), %ymm0
        vmovdqu %ymm0, (%rdi)
        movb $0, 32(%rdi)
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
        vmovdqu (%rsi), %ymm0
        vmovdqu %ymm0, (%rdi)
        movb $0, 3(%rsi)
        mov %rdi, %rax
        vzeroupper
        ret
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

extern "C" {
void ravl_selftest_ok();
void ravl_selftest_rbx();
void ravl_selftest_rbp_r15();
void ravl_selftest_vzeroupper();
void ravl_selftest_xmm12();
void ravl_selftest_mxcsr();
void ravl_selftest_status_flags();
void ravl_selftest_stack();
void ravl_selftest_rsp();
void ravl_selftest_copy32();
void ravl_selftest_copy33();
void ravl_selftest_copy_rax0();
void ravl_selftest_copy_writes_input();
void ravl_selftest_identity();
void ravl_selftest_upper_lanes();
void ravl_selftest_ptr_half();
void ravl_selftest_ptr_full();
void ravl_selftest_int_low();
void ravl_selftest_int_full();
}

namespace {

uint32_t trampoline(void (*fn)(), uint32_t form) {
  RegFile rf;
  memset(&rf, 0, sizeof rf);
  rf.form = form;
  return (uint32_t)ravl_call_checked((void*)fn, &rf);
}

constexpr uint32_t kYmm8to15 = 0xffu << (kClobberYmmShift + 2);

struct TrampolineCase {
  const char* what;
  void (*fn)();
  uint32_t reg_form, by_address;  // expected bits in each form
};

const TrampolineCase kTrampolineCases[] = {
    {"volatile registers only", ravl_selftest_ok, 0, 0},
    {"rbx", ravl_selftest_rbx, kClobberRbx, kClobberRbx},
    {"rbp and r15", ravl_selftest_rbp_r15, kClobberRbp | kClobberR15, kClobberRbp | kClobberR15},
    {"vzeroupper", ravl_selftest_vzeroupper, kYmm8to15, 0},
    {"xmm12", ravl_selftest_xmm12, 1u << (kClobberYmmShift + 6), 0},
    {"MXCSR control", ravl_selftest_mxcsr, kClobberMxcsr, kClobberMxcsr},
    {"MXCSR status flags", ravl_selftest_status_flags, 0, 0},
    {"caller's stack", ravl_selftest_stack, kClobberCallerStack, kClobberCallerStack},
};

}  // namespace

TEST(CallChecked, TrampolineCatchesEachBrokenPromise) {
  for (const auto& c : kTrampolineCases) {
    unsigned before = _mm_getcsr();
    EXPECT_EQ(trampoline(c.fn, kFormRegister), c.reg_form) << c.what << ", register form";
    EXPECT_EQ(trampoline(c.fn, kFormByAddress), c.by_address) << c.what << ", by-address form";
    EXPECT_EQ(_mm_getcsr() & 0xffc0u, before & 0xffc0u) << c.what << ": MXCSR not given back";
  }
}

TEST(CallChecked, StackIs16ButNot32ByteAligned) {
  RegFile rf;
  memset(&rf, 0, sizeof rf);
  EXPECT_EQ(ravl_call_checked((void*)ravl_selftest_rsp, &rf), 0);
  EXPECT_EQ(rf.rax % 32, 16u);
}

namespace {

struct HarnessCase {
  const char* what;
  void (*fn)();
  ExportRow row;
  uint32_t faults;
};

const HarnessCase kHarnessCases[] = {
    {"by-address copy", ravl_selftest_copy32, {"t", "t", "t", "plain", "full", 4, "d(d)", "mem", "m1:32", "m0:32"}, 0},
    {"one byte past the buffer", ravl_selftest_copy33,
     {"t", "t", "t", "plain", "full", 4, "d(d)", "mem", "m1:32", "m0:32"}, kFaultGuard},
    {"rax not the buffer", ravl_selftest_copy_rax0,
     {"t", "t", "t", "plain", "full", 4, "d(d)", "mem", "m1:32", "m0:32"}, kFaultRax},
    {"writes its input", ravl_selftest_copy_writes_input,
     {"t", "t", "t", "plain", "full", 4, "d(d)", "mem", "m1:32", "m0:32"}, kFaultGuard},
    {"float2 identity", ravl_selftest_identity,
     {"t", "t", "t", "plain", "full", 2, "s(s)", "reg", "v0:16", "v0:16"}, 0},
    {"float2 from the undefined lanes", ravl_selftest_upper_lanes,
     {"t", "t", "t", "plain", "full", 2, "s(s)", "reg", "v0:16", "v0:16"}, kFaultUnstable},
    {"pointer result written", ravl_selftest_ptr_full,
     {"t", "t", "t", "plain", "full", 2, "d(d,*d)", "reg", "v0:16,p0:16", "v0:16"}, 0},
    {"pointer result half written", ravl_selftest_ptr_half,
     {"t", "t", "t", "plain", "full", 2, "d(d,*d)", "reg", "v0:16,p0:16", "v0:16"}, kFaultUnstable},
    {"32-bit integer argument", ravl_selftest_int_low,
     {"t", "t", "t", "plain", "full", 1, "d(i)", "reg", "g0:4", "v0:8"}, 0},
    {"reads the upper half of a 32-bit argument", ravl_selftest_int_full,
     {"t", "t", "t", "plain", "full", 1, "d(i)", "reg", "g0:4", "v0:8"}, kFaultUnstable},
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

// The harness reads results where the row says they are.
TEST(CallChecked, HarnessFindsTheResults) {
  const ExportRow copy = {"t", "t", "t", "plain", "full", 4, "d(d)", "mem", "m1:32", "m0:32"};
  const ExportRow cvt = {"t", "t", "t", "plain", "full", 1, "d(i)", "reg", "g0:4", "v0:8"};
  Shape sh = parse_shape(copy), sh1 = parse_shape(cvt);
  ASSERT_EQ(sh.out_bytes, 32);
  ASSERT_EQ(sh1.out_bytes, 8);
  for (int t = 0; t < 8; ++t) {
    CallIn in;
    CallOut o;
    make_inputs(sh, t, in);
    call_checked((void*)ravl_selftest_copy32, sh, in, t, o);
    EXPECT_EQ(memcmp(o.bytes, in.lane[0], 32), 0);
    make_inputs(sh1, t, in);
    call_checked((void*)ravl_selftest_int_low, sh1, in, t, o);
    double d;
    memcpy(&d, o.bytes, 8);
    EXPECT_EQ(d, (double)(int32_t)in.lane[0][0]);
  }
}
