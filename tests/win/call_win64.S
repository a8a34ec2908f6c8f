// int ravl_call_checked(void* fn, RegFile* rf)          (Win64)
//
// Calls an entry point with every argument register taken from rf (layout in
// tests/common/regfile.h) and checks that it kept the register convention:
// rbx, rbp, rdi, rsi, r12-r15 always; all 256 bits of ymm6-15 in the register
// form (intel_ocl_bicc), the low 128 bits of xmm6-15 in the by-address form
// (the plain Win64 convention); the MXCSR control bits; and the caller's stack
// above the 32-byte home area. Returns a bit per broken promise, 0 when all
// held. The trampoline itself keeps the Win64 convention for its caller.
//
// Frame, with A = rsp at the call (A = 16 mod 32: 16-byte aligned as the
// convention requires, never 32-byte aligned):
//   A+0   .. A+31   home area (the callee's to use)
//   A+32  .. A+95   guard bytes (the caller's frame; the callee must not write it)
//   A+96            rsp after the pushes
//   A+104           fn
//   A+112           rf
//   A+120, A+124    MXCSR before and after the call
//   A+128 .. A+287  the caller's xmm6-15
#define RF_V 0
#define RF_G 128
#define RF_RAX 160
#define RF_FORM 168
#define RF_JUNK 192
#define FRAME 304

        .text
        .globl  ravl_call_checked
ravl_call_checked:
        push    %rbx
        push    %rbp
        push    %rdi
        push    %rsi
        push    %r12
        push    %r13
        push    %r14
        push    %r15
        mov     %rsp, %rax
        and     $-32, %rsp
        sub     $FRAME, %rsp
        mov     %rax, 96(%rsp)
        mov     %rcx, 104(%rsp)
        mov     %rdx, 112(%rsp)
        stmxcsr 120(%rsp)
        vmovdqu %xmm6, 128(%rsp)
        vmovdqu %xmm7, 144(%rsp)
        vmovdqu %xmm8, 160(%rsp)
        vmovdqu %xmm9, 176(%rsp)
        vmovdqu %xmm10, 192(%rsp)
        vmovdqu %xmm11, 208(%rsp)
        vmovdqu %xmm12, 224(%rsp)
        vmovdqu %xmm13, 240(%rsp)
        vmovdqu %xmm14, 256(%rsp)
        vmovdqu %xmm15, 272(%rsp)
        vmovdqu ravl_guard(%rip), %ymm0
        vmovdqu %ymm0, 32(%rsp)
        vmovdqu ravl_guard+32(%rip), %ymm0
        vmovdqu %ymm0, 64(%rsp)

        // Canaries in the preserved registers.
        vmovdqu ravl_canary+0*32(%rip), %ymm6
        vmovdqu ravl_canary+1*32(%rip), %ymm7
        vmovdqu ravl_canary+2*32(%rip), %ymm8
        vmovdqu ravl_canary+3*32(%rip), %ymm9
        vmovdqu ravl_canary+4*32(%rip), %ymm10
        vmovdqu ravl_canary+5*32(%rip), %ymm11
        vmovdqu ravl_canary+6*32(%rip), %ymm12
        vmovdqu ravl_canary+7*32(%rip), %ymm13
        vmovdqu ravl_canary+8*32(%rip), %ymm14
        vmovdqu ravl_canary+9*32(%rip), %ymm15
        movabs  $0xb3fb95ee22432045, %rbx
        movabs  $0x98daa4bf75592f89, %rbp
        movabs  $0xda6400c790010259, %r12
        movabs  $0xb6d9f6f45cdc78b9, %r13
        movabs  $0xdbe7df00cba497dd, %r14
        movabs  $0x6a015b665e4a329c, %r15
        movabs  $0x04103017ead492d2, %rdi
        movabs  $0x365bf63a6659b554, %rsi

        // Junk in the volatile registers that carry nothing.
        mov     %rdx, %r10
        vmovdqu RF_JUNK(%r10), %ymm4
        vpshufd $0x1b, %ymm4, %ymm5
        mov     RF_JUNK(%r10), %rax
        mov     RF_JUNK+24(%r10), %r11

        // Arguments.
        vmovdqu RF_V+0(%r10), %ymm0
        vmovdqu RF_V+32(%r10), %ymm1
        vmovdqu RF_V+64(%r10), %ymm2
        vmovdqu RF_V+96(%r10), %ymm3
        mov     RF_G+0(%r10), %rcx
        mov     RF_G+8(%r10), %rdx
        mov     RF_G+16(%r10), %r8
        mov     RF_G+24(%r10), %r9
        mov     RF_JUNK+8(%r10), %r10
        call    *104(%rsp)

        // Results.
        mov     112(%rsp), %r11
        mov     %rax, RF_RAX(%r11)
        vmovdqu %ymm0, RF_V+0(%r11)
        vmovdqu %ymm1, RF_V+32(%r11)
        vmovdqu %ymm2, RF_V+64(%r11)
        vmovdqu %ymm3, RF_V+96(%r11)
        stmxcsr 124(%rsp)
        xor     %eax, %eax

.macro  CHECK_GPR reg, value, bit
        movabs  $\value, %rcx
        cmp     %rcx, \reg
        je      1f
        or      $\bit, %eax
1:
.endm
        CHECK_GPR %rbx, 0xb3fb95ee22432045, 0x01
        CHECK_GPR %rbp, 0x98daa4bf75592f89, 0x02
        CHECK_GPR %r12, 0xda6400c790010259, 0x04
        CHECK_GPR %r13, 0xb6d9f6f45cdc78b9, 0x08
        CHECK_GPR %r14, 0xdbe7df00cba497dd, 0x10
        CHECK_GPR %r15, 0x6a015b665e4a329c, 0x20
        CHECK_GPR %rdi, 0x04103017ead492d2, 0x40
        CHECK_GPR %rsi, 0x365bf63a6659b554, 0x80

        // The by-address form keeps only the low 128 bits: ignore the upper
        // 16 byte compares there.
        xor     %edx, %edx
        cmpl    $0, RF_FORM(%r11)
        je      2f
        mov     $0xffff0000, %edx
2:
.macro  CHECK_YMM k
        vpcmpeqb ravl_canary+(\k-6)*32(%rip), %ymm\k, %ymm\k
        vpmovmskb %ymm\k, %ecx
        or      %edx, %ecx
        cmp     $-1, %ecx
        je      1f
        or      $(1 << (8 + \k - 6)), %eax
1:
.endm
        CHECK_YMM 6
        CHECK_YMM 7
        CHECK_YMM 8
        CHECK_YMM 9
        CHECK_YMM 10
        CHECK_YMM 11
        CHECK_YMM 12
        CHECK_YMM 13
        CHECK_YMM 14
        CHECK_YMM 15

        mov     120(%rsp), %ecx
        xor     124(%rsp), %ecx
        and     $0xffc0, %ecx           // control bits only; the status flags may change
        jz      1f
        or      $(1 << 20), %eax
        ldmxcsr 120(%rsp)            // the caller gets its own MXCSR back
1:
        vmovdqu 32(%rsp), %ymm0
        vpcmpeqb ravl_guard(%rip), %ymm0, %ymm0
        vmovdqu 64(%rsp), %ymm1
        vpcmpeqb ravl_guard+32(%rip), %ymm1, %ymm1
        vpand   %ymm1, %ymm0, %ymm0
        vpmovmskb %ymm0, %ecx
        cmp     $-1, %ecx
        je      1f
        or      $(1 << 21), %eax
1:
        vzeroupper
        vmovdqu 128(%rsp), %xmm6
        vmovdqu 144(%rsp), %xmm7
        vmovdqu 160(%rsp), %xmm8
        vmovdqu 176(%rsp), %xmm9
        vmovdqu 192(%rsp), %xmm10
        vmovdqu 208(%rsp), %xmm11
        vmovdqu 224(%rsp), %xmm12
        vmovdqu 240(%rsp), %xmm13
        vmovdqu 256(%rsp), %xmm14
        vmovdqu 272(%rsp), %xmm15
        mov     96(%rsp), %rsp
        pop     %r15
        pop     %r14
        pop     %r13
        pop     %r12
        pop     %rsi
        pop     %rdi
        pop     %rbp
        pop     %rbx
        ret

        .section .rdata, "dr"
        .balign 32
ravl_canary:                            // for ymm6 .. ymm15
        .quad 0x91d93080f9b439fc, 0x3ceaaf308142c8ea, 0x627655daa05f1119, 0x9dfb369bab13dfae
        .quad 0x0ff9bb510944fe0c, 0x6301bbfca0c5154e, 0x047a8387cdde8d51, 0x6fced11d2bd8a1e6
        .quad 0xb7c1dce27f7695f5, 0x3a124c647e02ff05, 0x5cbd0ba3a1a6bcde, 0x66080f174c96d8e2
        .quad 0x42f2dc05873f9bd0, 0xb120a366f0bbe9cf, 0xce4cda11b43c589b, 0x78b7d0ac84773ce0
        .quad 0x48668d77e827062c, 0x2330fcf1562ae4b8, 0xe36bf9b3ddcb369d, 0xc1acc9906424550a
        .quad 0xf065a1c284cc4549, 0x9ad9b9a25e78454d, 0xf6a730b7b12e9eed, 0x993565976fbaf662
        .quad 0xc5c2c2af3977a654, 0x8df08078a22ea180, 0x952c466e473a1797, 0xf3194a3b381e53e7
        .quad 0xdafa3a387f006745, 0xc498b6e73648245e, 0x675a2e199b58ba8d, 0xab57f9854332c3da
        .quad 0x19f9cbef0f69a4d0, 0xc1b87f1a7323691b, 0x75365e1458294a90, 0x2eb737282fea875e
        .quad 0x4c1e26038dabf68e, 0xac3e0b5bc2917709, 0x64ccdcf9ea5ee53c, 0x2f314fdb43c48bc7
ravl_guard:
        .quad 0x9127c47089bf36a2, 0xbafe9bd120c5d152, 0xfba3fec76ca387b5, 0xfe0143729313badf
        .quad 0x735771b237d047c9, 0x9280ba2e153453fd, 0x56ec4c60da8f3fe2, 0x6800e67e527f5da6
