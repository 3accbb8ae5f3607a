// The guarded call on i686. Its frame is a record of the thread's exception chain (fs:0) followed by what a fault must
// not lose. Offsets from ebp, and from the record (which is where the handler finds them):
//     -32  0   previous record        -20  12  mxcsr              -8   24  esi
//     -28  4   handler                -16  16  x87 control word   -4   28  ebx
//     -24  8   Escape*                -12  20  edi                 0   32  ebp
// The unwind tables serve C++ exceptions: our own pass through, and the personality unlinks the record on the way.

    .text
    .p2align 4
    .globl  _ZeltGuardedCall
    .def    _ZeltGuardedCall; .scl 2; .type 32; .endef
_ZeltGuardedCall:
    .cfi_startproc
    .cfi_personality 0, _ZeltGuardPersonality
    pushl   %ebp
    .cfi_def_cfa_offset 8
    .cfi_offset %ebp, -8
    movl    %esp, %ebp
    .cfi_def_cfa_register %ebp
    pushl   %ebx
    .cfi_offset %ebx, -12
    pushl   %esi
    .cfi_offset %esi, -16
    pushl   %edi
    .cfi_offset %edi, -20
    subl    $12, %esp
    movl    16(%ebp), %eax
    movl    %eax, -24(%ebp)
    stmxcsr -20(%ebp)
    fnstcw  -16(%ebp)
    pushl   $_ZeltGuardHandler
    pushl   %fs:0
    movl    %esp, %fs:0
    subl    $16, %esp
    andl    $-16, %esp
    movl    12(%ebp), %eax
    movl    %eax, (%esp)
    call    *8(%ebp)
    fwait                           // An x87 fault that is still pending belongs to the callee.
    xorl    %eax, %eax
.Lleave:
    movl    -32(%ebp), %edx
    movl    %edx, %fs:0
    leal    -12(%ebp), %esp
    popl    %edi
    popl    %esi
    popl    %ebx
    popl    %ebp
    .cfi_remember_state
    .cfi_def_cfa %esp, 4
    .cfi_restore %ebp
    .cfi_restore %ebx
    .cfi_restore %esi
    .cfi_restore %edi
    ret
    .cfi_restore_state

// The handler resumes here, with ebp as it was at the call above, and esp at the record.
.Lresume:
    pushl   $2                      // Clears the direction, trap and alignment-check flags.
    popfl
    fninit
    fldcw   -16(%ebp)
    ldmxcsr -20(%ebp)
    movl    $1, %eax
    jmp     .Lleave
    .cfi_endproc

// void ZeltGuardUnwind(GuardFrame*, EXCEPTION_RECORD*): unwinds to the frame and returns 1 from its guarded call. RtlUnwind
// preserves no register but esp.
    .p2align 4
    .globl  _ZeltGuardUnwind
    .def    _ZeltGuardUnwind; .scl 2; .type 32; .endef
_ZeltGuardUnwind:
    .cfi_startproc
    movl    4(%esp), %eax
    movl    8(%esp), %edx
    pushl   $0
    .cfi_adjust_cfa_offset 4
    pushl   %edx
    .cfi_adjust_cfa_offset 4
    pushl   $.Lunwound
    .cfi_adjust_cfa_offset 4
    pushl   %eax
    .cfi_adjust_cfa_offset 4
    call    _RtlUnwind@16
    .cfi_adjust_cfa_offset -16
.Lunwound:
    movl    4(%esp), %eax
    leal    32(%eax), %ebp
    movl    %eax, %esp
    jmp     .Lresume
    .cfi_endproc
