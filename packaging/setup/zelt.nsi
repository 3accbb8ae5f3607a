; The setup program of ZELT. scripts/package.sh runs makensis on it, with
;   VERSION, SIZE (KB)  of the product
;   STAGE               the folder with the files as they will be installed
;   OUTPUT              the program to make
;   ICON                the product's icon
;   LISTS               the folder of files.nsh and classes.nsh, which list the stage's files and the registered classes
;   SIGN                if defined, a command that signs the uninstaller, whose path is added
;   ONLY_32_BIT         if defined, the stage has no ZELT64
; texts.nsh holds the messages, some texts of the pages, and the exit codes.

Unicode true
SetCompressor /SOLID lzma
ManifestDPIAware true
ManifestSupportedOS Win10
; With this level, Windows itself asks only administrators to confirm; for other users, scope.nsh asks for an administrator.
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

; "machine" or "user": for whom files and entries are installed, and in whose classes the server is registered. The second
; may be "user" although the first is "machine" (registration.nsh).
Var Scope
Var RegisteredFor

; What the entry in the list of installed programs says.
Var EntryVersion
Var EntrySize

; Whether ZELT64 belongs to this installation.
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
    ; Checks again: the folder may have changed, and a simulator may have started since.
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
