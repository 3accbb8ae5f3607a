// The vtable that all faces share (dual_face.h), and the call of a method that no C++ declaration describes, for i686. A slot
// loads its number and goes to the common entrance, which hands C++ the object, the number and the place of the arguments; C++
// returns the result and how many bytes of arguments to remove. Nothing here is generated at run time.

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

// On the stack here (stdcall): the caller's return address, the object, the arguments.
    .p2align 4
entrance:
    .cfi_startproc
    pushl   %ebp
    .cfi_def_cfa_offset 8
    .cfi_offset %ebp, -8
    movl    %esp, %ebp
    .cfi_def_cfa_register %ebp
    andl    $-16, %esp
    leal    12(%ebp), %edx
    pushl   $0
    pushl   %edx
    pushl   %eax
    pushl   8(%ebp)
    call    _ZeltEnterDual          // result in eax, bytes in edx
    movl    %ebp, %esp
    popl    %ebp
    .cfi_def_cfa %esp, 4
    .cfi_restore %ebp
    popl    %ecx
    .cfi_adjust_cfa_offset -4
    .cfi_register %eip, %ecx
    addl    %edx, %esp
    jmp     *%ecx
    .cfi_endproc

// HRESULT ZeltCallDual(method, object, words, count): calls a method with the object and `count` words of arguments.
    .p2align 4
    .globl  _ZeltCallDual
    .def    _ZeltCallDual; .scl 2; .type 32; .endef
_ZeltCallDual:
    .cfi_startproc
    pushl   %ebp
    .cfi_def_cfa_offset 8
    .cfi_offset %ebp, -8
    movl    %esp, %ebp
    .cfi_def_cfa_register %ebp
    pushl   %esi
    .cfi_offset %esi, -12
    pushl   %edi
    .cfi_offset %edi, -16
    movl    20(%ebp), %ecx
    leal    4(,%ecx,4), %eax
    subl    %eax, %esp
    andl    $-16, %esp
    movl    12(%ebp), %eax
    movl    %eax, (%esp)
    leal    4(%esp), %edi
    movl    16(%ebp), %esi
    cld
    rep movsl
    call    *8(%ebp)
    leal    -8(%ebp), %esp
    popl    %edi
    .cfi_restore %edi
    popl    %esi
    .cfi_restore %esi
    popl    %ebp
    .cfi_restore %ebp
    .cfi_def_cfa %esp, 4
    ret
    .cfi_endproc

    .section .rdata, "dr"
    .p2align 2
    .globl  _kZeltDualVtable
_kZeltDualVtable:
    .long   _ZeltDualQueryInterface@12
    .long   _ZeltDualAddRef@4
    .long   _ZeltDualRelease@4
    .long   _ZeltDualGetTypeInfoCount@8
    .long   _ZeltDualGetTypeInfo@16
    .long   _ZeltDualGetIDsOfNames@24
    .long   _ZeltDualInvoke@36
    .set    number, 0
    .rept   kSlots
    .long   slots + number * 16
    .set    number, number + 1
    .endr
