// void ravl_test_call_xmm_pair(const void* fn, const void* x, const void* y, void* out)
//
// Calls an entry point that takes two 128-bit vectors (xmm0, xmm1) and returns
// two (xmm0, xmm1) under intel_ocl_bicc, and stores both results to out[0..31].
// C++ cannot express the two-register return, so the tests reach it here.
        .text
        .globl  ravl_test_call_xmm_pair
        .type   ravl_test_call_xmm_pair, @function
ravl_test_call_xmm_pair:
        push    %rbx                    // keeps the stack 16-byte aligned at the call
        mov     %rcx, %rbx
        vmovdqu (%rsi), %xmm0
        vmovdqu (%rdx), %xmm1
        call    *%rdi
        vmovdqu %xmm0, (%rbx)
        vmovdqu %xmm1, 16(%rbx)
        vzeroupper
        pop     %rbx
        ret
        .size   ravl_test_call_xmm_pair, .-ravl_test_call_xmm_pair
        .section .note.GNU-stack, "", @progbits
