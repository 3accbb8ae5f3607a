; An installed version, here called older: it is removed before the new one is installed, and put back if that fails.

; OlderFolder is empty if there is no older version.
Var OlderFolder
Var OlderVersion
Var OlderSize
Var OlderRegisteredFor
Var OlderOnPath

Function FindOlderVersion
    ReadRegStr $OlderFolder SHCTX "${UNINSTALL_KEY}" "InstallLocation"
    ${IfNot} ${FileExists} "$OlderFolder\Uninstall.exe"
        StrCpy $OlderFolder ""
    ${EndIf}
    ReadRegStr $OlderVersion SHCTX "${UNINSTALL_KEY}" "DisplayVersion"
    ReadRegDWORD $OlderSize SHCTX "${UNINSTALL_KEY}" "EstimatedSize"
    ReadRegStr $OlderRegisteredFor SHCTX "${UNINSTALL_KEY}" "RegisteredFor"
    ReadRegDWORD $OlderOnPath SHCTX "${UNINSTALL_KEY}" "OnPath"
FunctionEnd

; Copies the older version to setup's temporary folder, which is deleted when setup ends.
Function SaveOlderVersion
    ; Check the files here, too: the older version's uninstaller may check fewer of them.
    StrCpy $R1 $OlderFolder
    Call RefuseUsedFiles
    InitPluginsDir
    CreateDirectory "$PLUGINSDIR\older"
    ClearErrors
    CopyFiles /SILENT "$OlderFolder\*.*" "$PLUGINSDIR\older"
    ${If} ${Errors}
    ${OrIfNot} ${FileExists} "$PLUGINSDIR\older\Uninstall.exe"
        ${Leave} ${FILE_NOT_WRITTEN} "${TEXT_FILE_NOT_WRITTEN}$\r$\n$PLUGINSDIR\older"
    ${EndIf}
FunctionEnd

; The older version's own uninstaller knows best what was installed. It leaves settings and logs alone.
Function RemoveOlderVersion
    ; With its folder as an argument, the uninstaller runs in place instead of as a copy, so setup can wait for it.
    ClearErrors
    ExecWait '"$OlderFolder\Uninstall.exe" /S _?=$OlderFolder' $0
    ${If} ${Errors}
        StrCpy $0 -1
    ${EndIf}
    ${If} $0 = ${SERVER_RUNS}
        ${Leave} ${SERVER_RUNS} "${TEXT_SERVER_RUNS}"
    ${ElseIf} $0 <> 0
        Push $0
        Call RestoreOlderVersion
        Pop $0
        ${Leave} ${OLDER_VERSION_STAYS} "${TEXT_OLDER_VERSION_STAYS}"
    ${EndIf}
    Delete "$OlderFolder\Uninstall.exe"
    RMDir "$OlderFolder"
FunctionEnd

Function RestoreOlderVersion
    ${If} $OlderFolder == ""
        Return
    ${EndIf}
    CreateDirectory "$OlderFolder"
    CopyFiles /SILENT "$PLUGINSDIR\older\*.*" "$OlderFolder"
    Push $INSTDIR
    StrCpy $INSTDIR $OlderFolder
    StrCpy $RegisteredFor $OlderRegisteredFor
    !insertmacro RunRegistration ZELT RegServer
    ${If} ${FileExists} "$INSTDIR\ZELT64.EXE"
        !insertmacro RunRegistration ZELT64 RegServer
    ${EndIf}
    StrCpy $EntryVersion $OlderVersion
    StrCpy $EntrySize $OlderSize
    Call WriteEntries
    ${If} $OlderOnPath = 1
        Call PutOnPath
    ${EndIf}
    Pop $INSTDIR
FunctionEnd
