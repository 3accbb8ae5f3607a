// A function with its own frame handler around a fault, as a compiler with structured exception handling would make it:
// HRESULT FaultyHandledFault(), which returns kHandled.

    .text
#ifdef __x86_64__
    .globl  FaultyHandledFault
    .def    FaultyHandledFault; .scl 2; .type 32; .endef
    .seh_proc FaultyHandledFault
FaultyHandledFault:
    subq    $40, %rsp
    .seh_stackalloc 40
    .seh_endprologue
    .seh_handler OwnHandler, @except
    xorl    %eax, %eax
    movl    $1, (%rax)
    nop
.Lresume:
    movl    $0x00041235, %eax
    addq    $40, %rsp
    ret
    .seh_endproc

// Continues after the fault: sets Rip in the CONTEXT, unless unwinding.
OwnHandler:
    testl   $6, 4(%rcx)
    jnz     1f
    leaq    .Lresume(%rip), %rax
    movq    %rax, 0xF8(%r8)
    xorl    %eax, %eax
    ret
1:  movl    $1, %eax
    ret
#else
    .globl  _FaultyHandledFault
    .def    _FaultyHandledFault; .scl 2; .type 32; .endef
_FaultyHandledFault:
    pushl   $OwnHandler
    pushl   %fs:0
    movl    %esp, %fs:0
    xorl    %eax, %eax
    movl    $1, (%eax)
.Lresume:
    popl    %fs:0
    addl    $4, %esp
    movl    $0x00041235, %eax
    ret

// Continues after the fault: sets Eip in the CONTEXT, unless unwinding.
OwnHandler:
    movl    4(%esp), %eax
    testl   $6, 4(%eax)
    jnz     1f
    movl    12(%esp), %eax
    movl    $.Lresume, 0xB8(%eax)
    xorl    %eax, %eax
    ret
1:  movl    $1, %eax
    ret
#endif
