; ZELT.EXE and, on 64-bit Windows, ZELT64.EXE register themselves; this file checks that the expected hive then holds the
; registration, in the views of 32-bit and 64-bit programs. A machine-wide registration goes to the user's hive when the value
; CurrentUser says that the product family is installed for the user: setup reports this and notes the hive in $RegisteredFor, so
; that the uninstaller unregisters there.

; $R0 becomes "no" if the current view of the hive does not register this installation's program for the class.
!macro VerifyClassInView hive edition class
    ReadRegStr $1 ${hive} "Software\Classes\CLSID\${class}\LocalServer32" ""
    ${If} $1 != '"$INSTDIR\${edition}.EXE"'
        StrCpy $R0 "no"
    ${EndIf}
!macroend
; classes.nsh defines the macros VerifyClassesOfZELT and VerifyClassesOfZELT64, which insert the macro above for each class.
!include "${LISTS}\classes.nsh"

!macro VerifyHive hive
    StrCpy $R0 "yes"
    SetRegView 32
    !insertmacro VerifyClassesOfZELT ${hive}
    ${If} ${RunningX64}
        SetRegView 64
        !insertmacro VerifyClassesOfZELT ${hive}
        SetRegView 32
    ${EndIf}
    ${If} ${WithZelt64}
        !insertmacro VerifyClassesOfZELT64 ${hive}
        SetRegView 64
        !insertmacro VerifyClassesOfZELT64 ${hive}
        SetRegView 32
    ${EndIf}
!macroend

; Runs the program of an edition with the action, for all users or with PerUser for the user; $0 becomes its exit code.
!macro RunRegistration edition action
    ${If} $RegisteredFor == "user"
        ExecWait '"$INSTDIR\${edition}.EXE" /${action}PerUser' $0
    ${Else}
        ExecWait '"$INSTDIR\${edition}.EXE" /${action}' $0
    ${EndIf}
!macroend

Function RegisterServer
    StrCpy $RegisteredFor $Scope
    ReadRegStr $1 HKCU "Software\BRIX" "CurrentUser"
    ${If} $1 == "1"
        StrCpy $RegisteredFor "user"
    ${EndIf}
    !insertmacro RunRegistration ZELT RegServer
    ${If} $0 = 0
    ${AndIf} ${WithZelt64}
        !insertmacro RunRegistration ZELT64 RegServer
    ${EndIf}
    ${If} $RegisteredFor == "user"
        !insertmacro VerifyHive HKCU
    ${Else}
        !insertmacro VerifyHive HKLM
    ${EndIf}
    ${If} $0 <> 0
    ${OrIf} $R0 == "no"
        Push $0
        Call TakeBack
        Pop $0
        ${Leave} ${NOT_REGISTERED} "${TEXT_NOT_REGISTERED}"
    ${EndIf}
    ${If} $RegisteredFor != $Scope
        MessageBox MB_OK|MB_ICONEXCLAMATION "${TEXT_REGISTERED_FOR_USER}" /SD IDOK
    ${EndIf}
    ; Makes Explorer show the new icon of logs.
    System::Call 'shell32::SHChangeNotify(i 0x08000000, i 0, p 0, p 0)'
FunctionEnd

; Does not remove the registration of another copy, for example a portable one.
!macro UnregisterEdition edition
    ${If} $RegisteredFor == "user"
        ReadRegStr $1 HKCU "Software\Classes\CLSID\${FIRST_CLASS_${edition}}\LocalServer32" ""
    ${Else}
        ReadRegStr $1 HKLM "Software\Classes\CLSID\${FIRST_CLASS_${edition}}\LocalServer32" ""
    ${EndIf}
    ${If} $1 == ""
    ${OrIf} $1 == '"$INSTDIR\${edition}.EXE"'
        !insertmacro RunRegistration ${edition} UnregServer
    ${EndIf}
!macroend

!macro DefineUnregisterServer un
Function ${un}UnregisterServer
    !insertmacro UnregisterEdition ZELT
    ${If} ${WithZelt64}
        !insertmacro UnregisterEdition ZELT64
    ${EndIf}
    System::Call 'shell32::SHChangeNotify(i 0x08000000, i 0, p 0, p 0)'
FunctionEnd
!macroend
!insertmacro DefineUnregisterServer ""
!insertmacro DefineUnregisterServer "un."
