; Refuses to replace or remove files that are in use, and checks all files before any is changed. Otherwise, a simulator could
; lose its packages, or a half-finished installation could be left behind. Windows refuses to open a program for writing while it
; runs, no matter who runs it or in which session. It also refuses to open any other file for writing while a program has that file
; open without sharing it.

!define ERROR_SHARING_VIOLATION 32

; Tries to open $R1\path for writing and deletion. Sets $1 to the error, or to 0.
!macro TryToOpen path
    ; GENERIC_READ | GENERIC_WRITE | DELETE, every kind of sharing, OPEN_EXISTING.
    System::Call 'kernel32::CreateFileW(w "$R1\${path}", i 0xC0010000, i 7, p 0, i 3, i 0, p 0) p .r0 ?e'
    Pop $1
    ${If} $0 P<> -1
        System::Call 'kernel32::CloseHandle(p r0)'
        StrCpy $1 0
    ${EndIf}
!macroend

!macro RefuseRunning program
    !insertmacro TryToOpen "${program}"
    ${If} $1 = ${ERROR_SHARING_VIOLATION}
        ${Leave} ${SERVER_RUNS} "${TEXT_SERVER_RUNS}"
    ${EndIf}
!macroend

!macro CheckFile path
    !insertmacro TryToOpen "${path}"
    ${If} $1 = ${ERROR_SHARING_VIOLATION}
        ${Leave} ${FILE_IN_USE} "${TEXT_FILE_IN_USE}$\r$\n$R1\${path}"
    ${EndIf}
!macroend

; files.nsh also defines the macro CheckAll, which inserts CheckFile for each file of the stage.
!include "${LISTS}\files.nsh"

; Checks the files below $R1.
!macro DefineRefuseUsedFiles un
Function ${un}RefuseUsedFiles
    !insertmacro RefuseRunning ZELT.EXE
    !insertmacro RefuseRunning ZELT64.EXE
    !insertmacro RefuseRunning zeltctl.exe
    !insertmacro RefuseRunning zeltctl64.exe
    !insertmacro CheckAll
FunctionEnd
!macroend
!insertmacro DefineRefuseUsedFiles ""
!insertmacro DefineRefuseUsedFiles "un."
