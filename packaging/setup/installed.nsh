; Installs and removes files, the start menu's entries and the entry among the installed programs.

!macro InstallFile path
    ClearErrors
    File "/oname=${path}" "${STAGE}\${path}"
    ${If} ${Errors}
        Call TakeBack
        ${Leave} ${FILE_NOT_WRITTEN} "${TEXT_FILE_NOT_WRITTEN}$\r$\n$INSTDIR\${path}"
    ${EndIf}
!macroend

!macro InstallFile64 path
    ${If} ${WithZelt64}
        !insertmacro InstallFile "${path}"
    ${EndIf}
!macroend

!macro InstallFolder path
    CreateDirectory "$INSTDIR\${path}"
!macroend

!macro RemoveFile path
    Delete "$INSTDIR\${path}"
!macroend

; Removes only an empty folder: files that the user put there stay.
!macro RemoveFolder path
    RMDir "$INSTDIR\${path}"
!macroend

; files.nsh, which running.nsh includes, defines the macros InstallAll and RemoveAll. They insert the macros above for each file
; and folder of the stage.

Function InstallFiles
    SetOutPath "$INSTDIR"
    !insertmacro InstallAll
    ClearErrors
    WriteUninstaller "$INSTDIR\Uninstall.exe"
    ${If} ${Errors}
        Call TakeBack
        ${Leave} ${FILE_NOT_WRITTEN} "${TEXT_FILE_NOT_WRITTEN}$\r$\n$INSTDIR\Uninstall.exe"
    ${EndIf}
FunctionEnd

!macro DefineRemoveFiles un
Function ${un}RemoveFiles
    ; The current folder cannot be removed, so change to another.
    SetOutPath "$TEMP"
    !insertmacro RemoveAll
    Delete "$INSTDIR\Uninstall.exe"
    RMDir "$INSTDIR"
FunctionEnd
!macroend
!insertmacro DefineRemoveFiles ""
!insertmacro DefineRemoveFiles "un."

; After a failure, removes what has been installed, and puts the older version back if there was one.
Function TakeBack
    ${If} $RegisteredFor != ""
        Call UnregisterServer
    ${EndIf}
    Call RemoveFiles
    Call RestoreOlderVersion
FunctionEnd

Function WriteEntries
    CreateDirectory "$SMPROGRAMS\ZELT"
    CreateShortcut "$SMPROGRAMS\ZELT\ZELT.lnk" "$INSTDIR\ZELT.EXE"
    ${If} ${FileExists} "$INSTDIR\ZELT64.EXE"
        CreateShortcut "$SMPROGRAMS\ZELT\ZELT64.lnk" "$INSTDIR\ZELT64.EXE"
    ${EndIf}
    CreateShortcut "$SMPROGRAMS\ZELT\ZELT Help.lnk" "$INSTDIR\BRIX.chm"

    WriteRegStr SHCTX "${UNINSTALL_KEY}" "DisplayName" "ZELT"
    WriteRegStr SHCTX "${UNINSTALL_KEY}" "DisplayVersion" "$EntryVersion"
    WriteRegStr SHCTX "${UNINSTALL_KEY}" "Publisher" "The ZELT developers"
    WriteRegStr SHCTX "${UNINSTALL_KEY}" "DisplayIcon" "$INSTDIR\ZELT.EXE,0"
    WriteRegStr SHCTX "${UNINSTALL_KEY}" "InstallLocation" "$INSTDIR"
    WriteRegDWORD SHCTX "${UNINSTALL_KEY}" "EstimatedSize" $EntrySize
    WriteRegStr SHCTX "${UNINSTALL_KEY}" "UninstallString" '"$INSTDIR\Uninstall.exe"'
    WriteRegStr SHCTX "${UNINSTALL_KEY}" "QuietUninstallString" '"$INSTDIR\Uninstall.exe" /S'
    WriteRegDWORD SHCTX "${UNINSTALL_KEY}" "NoModify" 1
    WriteRegDWORD SHCTX "${UNINSTALL_KEY}" "NoRepair" 1
    ; Tells the uninstaller in whose classes the server is registered.
    WriteRegStr SHCTX "${UNINSTALL_KEY}" "RegisteredFor" "$RegisteredFor"
FunctionEnd

Function un.RemoveEntries
    Delete "$SMPROGRAMS\ZELT\ZELT.lnk"
    Delete "$SMPROGRAMS\ZELT\ZELT64.lnk"
    Delete "$SMPROGRAMS\ZELT\ZELT Help.lnk"
    RMDir "$SMPROGRAMS\ZELT"
    DeleteRegKey SHCTX "${UNINSTALL_KEY}"
    ; A user who never installed anything else had no list of installed programs, so an empty list is removed.
    ${If} $Scope == "user"
        DeleteRegKey /ifempty HKCU "Software\Microsoft\Windows\CurrentVersion\Uninstall"
    ${EndIf}
FunctionEnd
