; Does not replace a running ZELT: a simulator would lose its packages. The system refuses to open a program for writing while
; it runs, no matter who runs it and in which session.

!define ERROR_SHARING_VIOLATION 32

!macro RefuseRunning program
    ; GENERIC_READ | GENERIC_WRITE, every kind of sharing, OPEN_EXISTING.
    System::Call 'kernel32::CreateFileW(w "$INSTDIR\${program}", i 0xC0000000, i 7, p 0, i 3, i 0, p 0) p .r0 ?e'
    Pop $1
    ${If} $0 P<> -1
        System::Call 'kernel32::CloseHandle(p r0)'
    ${ElseIf} $1 = ${ERROR_SHARING_VIOLATION}
        ${Leave} ${SERVER_RUNS} "${TEXT_SERVER_RUNS}"
    ${EndIf}
!macroend

!macro DefineRefuseRunningServer un
Function ${un}RefuseRunningServer
    !insertmacro RefuseRunning ZELT.EXE
    !insertmacro RefuseRunning ZELT64.EXE
    !insertmacro RefuseRunning zeltctl.exe
    !insertmacro RefuseRunning zeltctl64.exe
FunctionEnd
!macroend
!insertmacro DefineRefuseRunningServer ""
!insertmacro DefineRefuseRunningServer "un."
