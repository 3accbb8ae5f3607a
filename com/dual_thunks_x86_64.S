// The vtable that all faces share (dual_face.h), and the call of a method that no C++ declaration describes, for x86_64. A slot
// loads its number and goes to the common entrance, which stores the arguments of the first four registers in front of those that
// the caller put on the stack, and hands C++ the object, the number, the words and the floating-point registers. Nothing here is
// generated at run time.

    .set    kSlots, 1024

    .text
    .p2align 4
slots:
    .set    number, 0
    .rept   kSlots
    movl    $number, %eax
    jmp     entrance
    .p2align 4
    .set    number, number + 1
    .endr

// The home space of the registers lies before the other arguments. Frame, from rsp after the prologue:
//     0  home space of the callee     32  xmm1     40  xmm2     48  xmm3     72  return address     80  home space
    .p2align 4
    .seh_proc entrance
entrance:
    subq    $72, %rsp
    .seh_stackalloc 72
    .seh_endprologue
    movq    %rcx, 80(%rsp)
    movq    %rdx, 88(%rsp)
    movq    %r8, 96(%rsp)
    movq    %r9, 104(%rsp)
    movsd   %xmm1, 32(%rsp)
    movsd   %xmm2, 40(%rsp)
    movsd   %xmm3, 48(%rsp)
    movl    %eax, %edx
    leaq    88(%rsp), %r8
    leaq    32(%rsp), %r9
    call    ZeltEnterDual
    addq    $72, %rsp
    ret
    .seh_endproc

// HRESULT ZeltCallDual(method, object, words, count): calls a method with the object and `count` words of arguments. The first
// three words go into registers of both kinds, because only the callee knows which kind it reads.
    .p2align 4
    .globl  ZeltCallDual
    .def    ZeltCallDual; .scl 2; .type 32; .endef
    .seh_proc ZeltCallDual
ZeltCallDual:
    pushq   %rbp
    .seh_pushreg %rbp
    pushq   %rsi
    .seh_pushreg %rsi
    pushq   %rdi
    .seh_pushreg %rdi
    movq    %rsp, %rbp
    .seh_setframe %rbp, 0
    .seh_endprologue
    movq    %rcx, %rax
    movq    %rdx, %r10
    movq    %r8, %rsi
    movq    %r9, %rcx
    // Room for the object and the words, and never less than the home space of four registers.
    leaq    1(%rcx), %rdx
    cmpq    $4, %rdx
    jae     1f
    movl    $4, %edx
1:  leaq    15(,%rdx,8), %rdx
    andq    $-16, %rdx
    subq    %rdx, %rsp
    leaq    8(%rsp), %rdi
    cld
    rep movsq
    movq    %r10, %rcx
    movq    8(%rsp), %rdx
    movq    16(%rsp), %r8
    movq    24(%rsp), %r9
    movsd   8(%rsp), %xmm1
    movsd   16(%rsp), %xmm2
    movsd   24(%rsp), %xmm3
    call    *%rax
    movq    %rbp, %rsp
    popq    %rdi
    popq    %rsi
    popq    %rbp
    ret
    .seh_endproc

    .section .rdata, "dr"
    .p2align 3
    .globl  kZeltDualVtable
kZeltDualVtable:
    .quad   ZeltDualQueryInterface
    .quad   ZeltDualAddRef
    .quad   ZeltDualRelease
    .quad   ZeltDualGetTypeInfoCount
    .quad   ZeltDualGetTypeInfo
    .quad   ZeltDualGetIDsOfNames
    .quad   ZeltDualInvoke
    .set    number, 0
    .rept   kSlots
    .quad   slots + number * 16
    .set    number, number + 1
    .endr
