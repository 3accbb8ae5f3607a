; Puts zeltctl on the search path of Windows if the user asks for it, with the switch /Path or on the components page, or if the
; installed version is on the path. The uninstaller removes it from the path. zeltctl changes the path, because the path may be
; longer than any string in a setup program.

!include Sections.nsh

; $0 becomes the exit code, or "error".
!macro RunPathCommand action
    ${If} $Scope == "user"
        nsExec::Exec '"$INSTDIR\zeltctl.exe" path ${action}'
    ${Else}
        nsExec::Exec '"$INSTDIR\zeltctl.exe" path ${action} --machine'
    ${EndIf}
    Pop $0
!macroend

; Puts zeltctl on the path. $0 is not "0" if that fails.
Function PutOnPath
    !insertmacro RunPathCommand add
    ${If} $0 == "0"
        ; Tells the uninstaller and the next version that zeltctl is on the path.
        WriteRegDWORD SHCTX "${UNINSTALL_KEY}" "OnPath" 1
    ${EndIf}
FunctionEnd

Section /o "${TEXT_PATH_SECTION}" PathSection
    Call PutOnPath
    ${If} $0 != "0"
        MessageBox MB_OK|MB_ICONEXCLAMATION "${TEXT_NOT_ON_PATH}" /SD IDOK
    ${EndIf}
SectionEnd

; Call this when the scope is known, and before the older version is removed.
Function ChoosePath
    ${GetParameters} $0
    ClearErrors
    ${GetOptions} $0 "/Path" $1
    ${IfNot} ${Errors}
        !insertmacro SelectSection ${PathSection}
    ${EndIf}
    ReadRegDWORD $1 SHCTX "${UNINSTALL_KEY}" "OnPath"
    ${If} $1 = 1
        !insertmacro SelectSection ${PathSection}
    ${EndIf}
FunctionEnd

; Call this while zeltctl and the entry among the installed programs still exist.
Function un.RemoveFromPath
    ReadRegDWORD $1 SHCTX "${UNINSTALL_KEY}" "OnPath"
    ${If} $1 = 1
        !insertmacro RunPathCommand remove
    ${EndIf}
FunctionEnd
