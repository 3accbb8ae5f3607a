; The texts and exit codes of setup and uninstaller. In docs/user-guide, messages-setup.md explains the messages, and installing.md
; the codes.

!define DONE 0
!define CANCELLED 1
!define NEEDS_ADMINISTRATOR 3
!define SERVER_RUNS 4
!define FILE_NOT_WRITTEN 5
!define NOT_REGISTERED 6
!define OLDER_VERSION_STAYS 7
!define FILE_IN_USE 8

!define TEXT_NEEDS_ADMINISTRATOR "Installing ZELT for all users needs an administrator."
!define TEXT_CURRENT_USER "ZELT will be installed for the current user alone. Simulators that run as administrator or under another account will not see it."
!define TEXT_SERVER_RUNS "ZELT is running. Close its windows and the simulators that use it, then try again."
!define TEXT_FILE_IN_USE "A file of ZELT is in use. Close the help and other programs that use it, then try again:"
!define TEXT_REGISTERED_FOR_USER "ZELT was registered for the current user alone, because the value CurrentUser of HKEY_CURRENT_USER\Software\BRIX is 1. Other users will not see it."
!define TEXT_NOT_REGISTERED "ZELT could not be registered (code $0)."
!define TEXT_OLDER_VERSION_STAYS "The older version could not be removed (code $0)."
!define TEXT_FILE_NOT_WRITTEN "A file could not be written:"
!define TEXT_PATH_SECTION "zeltctl on the search path"
!define TEXT_NOT_ON_PATH "zeltctl could not be put on the search path (code $0). ZELT is installed."
!define TEXT_FINISHED "ZELT has been installed. Start it from the start menu."

; Ends with an exit code, and says why unless silent.
!macro Leave code text
    MessageBox MB_OK|MB_ICONSTOP "${text}" /SD IDOK
    SetErrorLevel ${code}
    Quit
!macroend
!define Leave "!insertmacro Leave"
