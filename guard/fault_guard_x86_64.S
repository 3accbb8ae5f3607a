// The guarded call on x86_64. On a fault, the system finds the handler through the unwind tables; C++ exceptions pass through by
// the same tables.
// Frame, from rsp after the prologue (the establisher frame that the handler is given):
//     0  home space of the callee     32  Escape*     40  mxcsr     44  x87 control word

    .text
    .p2align 4
    .globl  ZeltGuardedCall
    .def    ZeltGuardedCall; .scl 2; .type 32; .endef
    .seh_proc ZeltGuardedCall
ZeltGuardedCall:
    subq    $56, %rsp
    .seh_stackalloc 56
    .seh_endprologue
    .seh_handler ZeltGuardHandler, @except
    movq    %r8, 32(%rsp)
    stmxcsr 40(%rsp)
    fnstcw  44(%rsp)
    movq    %rcx, %rax
    movq    %rdx, %rcx
    call    *%rax
    fwait                           // An x87 fault that is still pending belongs to the callee.
    xorl    %eax, %eax
    addq    $56, %rsp
    ret

// The handler resumes here, with rsp and the preserved registers as they were at the call.
    .globl  ZeltGuardLanding
ZeltGuardLanding:
    pushq   $2                      // Clears the direction, trap and alignment-check flags.
    popfq
    fninit
    fldcw   44(%rsp)
    ldmxcsr 40(%rsp)
    movl    $1, %eax
    addq    $56, %rsp
    ret
    .seh_endproc
