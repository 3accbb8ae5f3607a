; The script of ZELT's setup program. scripts/package.sh compiles it with makensis, and defines:
;   VERSION      the product's version
;   SIZE         the size of the installed files, in KB
;   STAGE        the folder with the files as they will be installed
;   OUTPUT       the path of the setup program
;   ICON         the product's icon
;   LISTS        the folder of files.nsh and classes.nsh: the stage's files and folders, and the classes that ZELT registers
;   SIGN         if defined, the command that signs the uninstaller; the uninstaller's path is appended to it
;   ONLY_32_BIT  if defined, the stage has no 64-bit programs
; texts.nsh holds the messages, some texts of the pages, and the exit codes.

Unicode true
SetCompressor /SOLID lzma
ManifestDPIAware true
ManifestSupportedOS Win10
; At this level, Windows shows its elevation prompt only to administrators. For other users, setup restarts itself as
; administrator if it installs for all users (scope.nsh).
RequestExecutionLevel highest

!include LogicLib.nsh
!include FileFunc.nsh
!include x64.nsh
!include MUI2.nsh

!define UNINSTALL_KEY "Software\Microsoft\Windows\CurrentVersion\Uninstall\ZELT"

!ifdef SIGN
    !uninstfinalize '${SIGN} "%1"' = 0
!endif

Name "ZELT"
OutFile "${OUTPUT}"
InstallDir ""
ShowInstDetails nevershow
ShowUninstDetails nevershow
AllowSkipFiles off
SetOverwrite try

VIProductVersion "${VERSION}.0"
VIAddVersionKey ProductName "ZELT"
VIAddVersionKey ProductVersion "${VERSION}.0"
VIAddVersionKey FileVersion "${VERSION}.0"
VIAddVersionKey FileDescription "ZELT Setup"
VIAddVersionKey CompanyName "The ZELT developers"
VIAddVersionKey LegalCopyright "Copyright the ZELT developers"

; Both are "machine" (all users) or "user" (the current user). Scope says for whom the files, the shortcuts and the uninstall
; entry are installed; RegisteredFor says in which registry hive the server is registered. RegisteredFor may be "user" even if
; Scope is "machine" (registration.nsh).
Var Scope
Var RegisteredFor

; What the entry in the list of installed programs says.
Var EntryVersion
Var EntrySize

; Whether this installation includes the 64-bit programs.
!ifdef ONLY_32_BIT
    !define WithZelt64 `0 = 1`
!else
    ; Backquotes, because the define contains quotes.
    !define WithZelt64 `${IsNativeAMD64}`
!endif

!include texts.nsh
!include scope.nsh
!include running.nsh
!include registration.nsh
!include installed.nsh
!include older.nsh

!define MUI_ICON "${ICON}"
!define MUI_UNICON "${ICON}"
!define MUI_ABORTWARNING
!define MUI_COMPONENTSPAGE_NODESC
!insertmacro MUI_PAGE_COMPONENTS
!insertmacro MUI_PAGE_DIRECTORY
!insertmacro MUI_PAGE_INSTFILES
; The last page does not offer to start ZELT: ZELT would run with setup's rights, and would then ignore what is registered for the
; user.
!define MUI_FINISHPAGE_TEXT "${TEXT_FINISHED}"
!insertmacro MUI_PAGE_FINISH
!insertmacro MUI_UNPAGE_CONFIRM
!insertmacro MUI_UNPAGE_INSTFILES
!insertmacro MUI_LANGUAGE English

Section "ZELT"
    SectionIn RO
    StrCpy $EntryVersion "${VERSION}"
    StrCpy $EntrySize ${SIZE}
    ; Check again: since .onInit, the user may have chosen another folder, or started a simulator.
    StrCpy $R1 $INSTDIR
    Call RefuseUsedFiles
    Call FindOlderVersion
    ${If} $OlderFolder != ""
        Call SaveOlderVersion
        Call RemoveOlderVersion
    ${EndIf}
    Call InstallFiles
    Call RegisterServer
    Call WriteEntries
    SetErrorLevel ${DONE}
SectionEnd

; Included here so that its section comes after that of ZELT, which installs zeltctl.
!include path.nsh

Function .onInit
    Call ChooseScope
    Call ChoosePath
    StrCpy $R1 $INSTDIR
    Call RefuseUsedFiles
FunctionEnd

Function un.onInit
    Call un.FindScope
    StrCpy $R1 $INSTDIR
    Call un.RefuseUsedFiles
FunctionEnd

Section Uninstall
    Call un.UnregisterServer
    Call un.RemoveFromPath
    Call un.RemoveEntries
    Call un.RemoveFiles
    SetErrorLevel ${DONE}
SectionEnd
