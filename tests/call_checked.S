// int ravl_call_checked(void* fn, RegFile* rf)      (System V on Linux, Win64 on Windows)
//
// Calls an entry point with every argument register taken from rf (layout in
// tests/common/harness.h) and checks that it kept the register convention:
// rbx, rbp, r12-r15 (and rdi, rsi on Windows) always; in the register form
// (RAVL_CC) all 256 bits of ymm8-15 on Linux, of ymm6-15 on Windows; in
// the by-address form (the platform's C convention) the low 128 bits of
// xmm6-15 on Windows; the MXCSR control bits; and the caller's stack above the
// return address (above the 32-byte home area on Windows). Returns a bit per
// broken promise, 0 when all held. The trampoline keeps its own platform's
// convention for its caller.
//
// Frame, with A = rsp at the call (A = 16 mod 32: 16-byte aligned as the
// convention requires, never 32-byte aligned, so that an entry point that
// assumes more alignment faults or corrupts), H = the home area's size:
//   A+H    .. A+H+63   guard bytes (the caller's frame)
//   A+H+64 .. A+H+95   rsp after the pushes, fn, rf, MXCSR before and after
//   A+H+96 .. A+H+255  the caller's xmm6-15 (Windows)
#define RF_V 0
#define RF_G 128
#define RF_RAX 160
#define RF_FORM 168
#define RF_JUNK 192
#ifdef _WIN32
#define H 32
#define FRAME 304
#define SAVED_YMM 6, 7, 8, 9, 10, 11, 12, 13, 14, 15
#define ARGS rcx, rdx, r8, r9
#else
#define H 0
#define FRAME 112
#define SAVED_YMM 8, 9, 10, 11, 12, 13, 14, 15
#define ARGS rdi, rsi, rdx, rcx
#endif

.macro  EACH_GPR op                     // the preserved general registers and their fault bits
        \op rbx, 0
        \op rbp, 1
        \op r12, 2
        \op r13, 3
        \op r14, 4
        \op r15, 5
#ifdef _WIN32
        \op rdi, 6
        \op rsi, 7
#endif
.endm
.macro  PUSH reg, bit
        push    %\reg
.endm
.macro  CANARY reg, bit
        mov     ravl_gpr_canary+8*\bit(%rip), %\reg
.endm
.macro  CHECK reg, bit
        cmp     ravl_gpr_canary+8*\bit(%rip), %\reg
        je      1f
        or      $(1 << \bit), %eax
1:
.endm
.macro  LOAD_ARGS a0, a1, a2, a3
        mov     RF_G+0(%r10), %\a0
        mov     RF_G+8(%r10), %\a1
        mov     RF_G+16(%r10), %\a2
        mov     RF_G+24(%r10), %\a3
.endm

        .text
        .globl  ravl_call_checked
ravl_call_checked:
        EACH_GPR PUSH
        mov     %rsp, %rax
        and     $-32, %rsp
        sub     $FRAME, %rsp
        mov     %rax, H+64(%rsp)
#ifdef _WIN32
        mov     %rcx, H+72(%rsp)
        mov     %rdx, H+80(%rsp)
        mov     %rdx, %r10
        .irp k, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15
        vmovdqu %xmm\k, H+96+(\k-6)*16(%rsp)
        .endr
#else
        mov     %rdi, H+72(%rsp)
        mov     %rsi, H+80(%rsp)
        mov     %rsi, %r10
#endif
        stmxcsr H+88(%rsp)
        vmovdqu ravl_guard(%rip), %ymm0
        vmovdqu %ymm0, H(%rsp)
        vmovdqu ravl_guard+32(%rip), %ymm0
        vmovdqu %ymm0, H+32(%rsp)

        // Canaries in the preserved registers, junk in the volatile ones that
        // carry nothing, then the arguments.
        .irp k, SAVED_YMM
        vmovdqu ravl_canary+(\k-6)*32(%rip), %ymm\k
        .endr
        EACH_GPR CANARY
        vmovdqu RF_JUNK(%r10), %ymm4
        vpshufd $0x1b, %ymm4, %ymm5
#ifndef _WIN32
        vpermq  $0x4e, %ymm4, %ymm6
        vpxor   %ymm5, %ymm6, %ymm7
        mov     RF_JUNK+8(%r10), %r8
        mov     RF_JUNK+16(%r10), %r9
#endif
        mov     RF_JUNK(%r10), %rax
        mov     RF_JUNK+24(%r10), %r11
        .irp k, 0, 1, 2, 3
        vmovdqu RF_V+32*\k(%r10), %ymm\k
        .endr
        LOAD_ARGS ARGS
        mov     RF_JUNK+8(%r10), %r10
        call    *H+72(%rsp)

        mov     H+80(%rsp), %r11
        mov     %rax, RF_RAX(%r11)
        .irp k, 0, 1, 2, 3
        vmovdqu %ymm\k, RF_V+32*\k(%r11)
        .endr
        stmxcsr H+92(%rsp)
        xor     %eax, %eax
        EACH_GPR CHECK

        // Vector registers: all 256 bits in the register form; in the
        // by-address form the low 128 on Windows, none on Linux.
        xor     %edx, %edx
        cmpl    $0, RF_FORM(%r11)
        je      2f
#ifdef _WIN32
        mov     $0xffff0000, %edx
#else
        jmp     3f
#endif
2:
        .irp k, SAVED_YMM
        vpcmpeqb ravl_canary+(\k-6)*32(%rip), %ymm\k, %ymm\k
        vpmovmskb %ymm\k, %ecx
        or      %edx, %ecx
        cmp     $-1, %ecx
        je      1f
        or      $(1 << (8 + \k - 6)), %eax
1:
        .endr
3:
        mov     H+88(%rsp), %ecx
        xor     H+92(%rsp), %ecx
        and     $0xffc0, %ecx           // control bits only; the status flags may change
        jz      1f
        or      $(1 << 20), %eax
        ldmxcsr H+88(%rsp)              // the caller gets its own MXCSR back
1:
        vmovdqu H(%rsp), %ymm0
        vpcmpeqb ravl_guard(%rip), %ymm0, %ymm0
        vmovdqu H+32(%rsp), %ymm1
        vpcmpeqb ravl_guard+32(%rip), %ymm1, %ymm1
        vpand   %ymm1, %ymm0, %ymm0
        vpmovmskb %ymm0, %ecx
        cmp     $-1, %ecx
        je      1f
        or      $(1 << 21), %eax
1:
        vzeroupper
#ifdef _WIN32
        .irp k, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15
        vmovdqu H+96+(\k-6)*16(%rsp), %xmm\k
        .endr
#endif
        mov     H+64(%rsp), %rsp
#ifdef _WIN32
        pop     %rsi
        pop     %rdi
#endif
        pop     %r15
        pop     %r14
        pop     %r13
        pop     %r12
        pop     %rbp
        pop     %rbx
        ret

#ifdef _WIN32
        .section .rdata, "dr"
#else
        .section .rodata
#endif
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
ravl_gpr_canary:                        // rbx, rbp, r12, r13, r14, r15, rdi, rsi
        .quad 0xb3fb95ee22432045, 0x98daa4bf75592f89, 0xda6400c790010259, 0xb6d9f6f45cdc78b9
        .quad 0xdbe7df00cba497dd, 0x6a015b665e4a329c, 0x04103017ead492d2, 0x365bf63a6659b554
#ifndef _WIN32
        .section .note.GNU-stack, "", @progbits
#endif
