; For whom to install ZELT: for all users, or with /CurrentUser for the current user. Sets $Scope, $INSTDIR and the meaning
; of SHCTX and of the start menu's folder.

!macro UseScope
    ${If} $Scope == "user"
        SetShellVarContext current
    ${Else}
        SetShellVarContext all
    ${EndIf}
!macroend

; Starts the program again with the verb that asks any user for an administrator's name and password, and ends this process. Fails
; instead when silent, because nobody is there to ask, and in a program that was itself started this way.
!macro RestartAsAdministrator program
    ${GetParameters} $0
    ClearErrors
    ${GetOptions} $0 "/Restarted" $1
    ${IfNot} ${Errors}
    ${OrIf} ${Silent}
        ${Leave} ${NEEDS_ADMINISTRATOR} "${TEXT_NEEDS_ADMINISTRATOR}"
    ${EndIf}
    ClearErrors
    ; The user's switches come last, because /D must be the last one.
    ExecShell "runas" "${program}" "/Restarted $0"
    ${If} ${Errors}
        ${Leave} ${NEEDS_ADMINISTRATOR} "${TEXT_NEEDS_ADMINISTRATOR}"
    ${EndIf}
    Quit
!macroend

Function ChooseScope
    ${GetParameters} $0
    ClearErrors
    ${GetOptions} $0 "/CurrentUser" $1
    ${If} ${Errors}
        StrCpy $Scope "machine"
        UserInfo::GetAccountType
        Pop $1
        ${If} $1 != "Admin"
            !insertmacro RestartAsAdministrator "$EXEPATH"
        ${EndIf}
    ${Else}
        StrCpy $Scope "user"
        ${If} ${Cmd} `MessageBox MB_OKCANCEL|MB_ICONEXCLAMATION "${TEXT_CURRENT_USER}" /SD IDOK IDCANCEL`
            SetErrorLevel ${CANCELLED}
            Quit
        ${EndIf}
    ${EndIf}
    !insertmacro UseScope
    ; The folder: /D=, else that of the installed version, else the default.
    ${If} $INSTDIR == ""
        ReadRegStr $INSTDIR SHCTX "${UNINSTALL_KEY}" "InstallLocation"
    ${EndIf}
    ${If} $INSTDIR == ""
        ${If} $Scope == "user"
            StrCpy $INSTDIR "$LOCALAPPDATA\Programs\ZELT"
        ${Else}
            StrCpy $INSTDIR "$PROGRAMFILES32\ZELT"
        ${EndIf}
    ${EndIf}
FunctionEnd

; The uninstaller's scope is "user" if the user's entry names its folder, and "machine" otherwise.
Function un.FindScope
    StrCpy $Scope "machine"
    ReadRegStr $0 HKCU "${UNINSTALL_KEY}" "InstallLocation"
    ${If} $0 == $INSTDIR
        StrCpy $Scope "user"
    ${Else}
        UserInfo::GetAccountType
        Pop $1
        ${If} $1 != "Admin"
            ; Not the copy of the uninstaller that runs now: any user may have changed the copy.
            !insertmacro RestartAsAdministrator "$INSTDIR\Uninstall.exe"
        ${EndIf}
    ${EndIf}
    !insertmacro UseScope
    ReadRegStr $RegisteredFor SHCTX "${UNINSTALL_KEY}" "RegisteredFor"
FunctionEnd
