# The test of the setup program, in silent mode, and of the portable zip, in its own Wine prefix. Most steps compare the files and
# the registry before and after with what should change. Sourced by ./dev.

programsFolder='C:\Program Files (x86)\ZELT'
uninstallKey='Software\Microsoft\Windows\CurrentVersion\Uninstall\ZELT'

TestPackage()
{
    UsePrefix package
    testFolder=$root/build/package/test
    demoFolder=$testFolder
    rm -rf "$testFolder"
    mkdir -p "$testFolder"
    drive=$WINEPREFIX/drive_c
    installed="$drive/Program Files (x86)/ZELT"
    programs=build/i686

    Step package-older "Making the setup program of an older version" MakeOlderSetup
    Step package-samples "Registering the sample packages" RegisterSamples
    Step package-clean "Taking a snapshot of the machine" Snapshot clean
    Step package-install "Installing the older version" TestInstall
    Step package-run "Running the demonstration on the installed server" TestRun
    Step package-refuse "Refusing to replace or remove a running server" TestRefusal
    Step package-refuse-file "Refusing to replace or remove files in use" TestRefusalOfFile
    Step package-keep "Keeping the older version if the new one cannot be installed" TestFailedUpgrade
    Step package-upgrade "Upgrading" TestUpgrade
    Step package-refuse64 "Refusing to replace a running zeltctl64" TestRefusalOfTool
    Step package-run64 "Running a 64-bit package on the installed ZELT64" TestRun64
    Step package-uninstall "Uninstalling" TestUninstall
    Step package-user "Installing and removing for the current user" TestUserInstall
    Step package-path "Putting zeltctl on the search path" TestSearchPath
    Step package-product "Installing while the value CurrentUser is set" TestFamilyOfUser
    Step package-failure "Failing to install" TestFailures
    Step package-portable "Running a portable copy" TestPortable
    Step package-lines "Finding lines at addresses" TestSymbols
}

Complain()
{
    echo "$*"
    return 1
}

# Equal <what> <expected> <actual>
Equal() { [ "$2" = "$3" ] || Complain "$1: expected \"$2\", is \"$3\""; }

# Exits <code> <program and arguments...>: runs a Windows program, which must end with this code.
Exits()
{
    local expected=$1 status=0
    shift
    Wine "$@" || status=$?
    Equal "exit code of $*" "$expected" "$status"
}

# ExitsAs <code> <command line>: the same for a line whose switches must not be quoted, although they contain blanks.
ExitsAs()
{
    printf '%s\r\n' '@echo off' "$2" 'exit /b %errorlevel%' >"$testFolder/line.bat"
    Exits "$1" cmd /c "$(WindowsPath "$testFolder/line.bat")"
}

# Snapshot <name>: every file, with its checksum, and every folder, except in the Windows folder and in folders named Temp; and
# every key and value below Software.
Snapshot()
{
    (
        cd "$drive"
        find . -path ./windows -prune -o -path '*/Temp/*' -prune -o -type f -exec sha256sum {} + -o \
            -mindepth 1 -printf 'folder %p\n' | sort -k 2
    ) >"$testFolder/$1.files"
    local hive
    for hive in HKLM HKCU; do
        Wine reg export "$hive\\Software" "$(WindowsPath "$testFolder/$hive.reg")" /y >&2
        perl scripts/registry-lines.pl "$testFolder/$hive.reg"
    done | sort >"$testFolder/$1.registry"
    [ "$(wc -l <"$testFolder/$1.registry")" -gt 1000 ] || Complain "The registry was not read."
}

# Added <kind> <before> <after>, and Removed with the same arguments: the lines that differ between two snapshots.
Added() { LC_ALL=C comm -13 <(LC_ALL=C sort "$testFolder/$2.$1") <(LC_ALL=C sort "$testFolder/$3.$1"); }
Removed() { Added "$1" "$3" "$2"; }

# OnlyStandardLibraryStays <before> <after>: after an installation was added and removed, only the libraries of the standard and
# what belongs to the user are left, and nothing was lost. Interfaces of the standard are those whose key names one of its
# libraries.
OnlyStandardLibraryStays()
{
    local libraries='\{4A5E2E81-C093-11D4-9F1B-0010A4D198C2\}|\{2420CB0D-25D7-4862-9042-7D4924695D68\}' rest interfaces
    rest=$(Removed files "$1" "$2"; Removed registry "$1" "$2")
    [ -z "$rest" ] || Complain "This is gone: $rest"
    rest=$(Added files "$1" "$2" | grep -v -E "$libraryFolder|$keptFiles" || true)
    [ -z "$rest" ] || Complain "These files stay: $rest"
    interfaces=$(Added registry "$1" "$2" | grep -i -E "$libraries" | grep -o -i -E 'Interface\\\{[0-9A-F-]+' | sort -u || true)
    rest=$(Added registry "$1" "$2" | grep -v -i -E "TypeLib\\\\($libraries)" | grep -v -F -f <(echo "${interfaces:-none}") |
        grep -v -E "$keptKeys" || true)
    [ -z "$rest" ] || Complain "These keys and values stay: $rest"
}
# The libraries' own folder, and the files and settings that belong to the user.
libraryFolder='Common Files/CAPE-OPEN(/cape-open(-thermo-context)?-1\.[01]\.tlb)?$|AppData/Local/CAPE-OPEN(/cape-open(-thermo-context)?-1\.[01]\.tlb)?$'
keptFiles='Desktop/ZELT logs'
keptKeys='^HKEY_CURRENT_USER\\Software\\(ZELT(\\64-bit)?|BRIX)( \||$)'

# An older version, without the 64-bit programs and with a file that the current one no longer has.
MakeOlderSetup()
{
    local stage=$testFolder/older
    cp -r "$packageFolder/zelt-$(ProductVersion)" "$stage"
    rm "$stage"/{ZELT64.EXE,zeltctl64.exe}
    echo 'An old page.' >"$stage/docs/old page.htm"
    MakeSetup "$stage" 0.9.0 "$testFolder/older-setup.exe" -DONLY_32_BIT
}

RegisterSamples()
{
    local library
    for library in SamplePackage SampleReactions; do
        Wine 'C:\windows\syswow64\regsvr32.exe' /s "$(WindowsPath "$root/$programs/samples/$library.dll")"
        Wine 'C:\windows\system32\regsvr32.exe' /s "$(WindowsPath "$root/build/x86_64/samples/$library.dll")"
    done
    # A fresh prefix lacks the user's classes, which every Windows has.
    Wine reg add 'HKCU\Software\Classes\CLSID' /f
    Wine reg add 'HKCU\Software\Classes\Interface' /f
    Wine reg add 'HKCU\Software\Classes\TypeLib' /f
    Wine reg add 'HKCU\Software\Classes\AppID' /f
    # It also lacks the folder of the programs that users install for themselves.
    mkdir -p "$drive/users/$(Wine cmd /c 'echo %USERNAME%' | tr -d '\r')/AppData/Local/Programs"
}

# Value <key> <name>: as the 32-bit view shows it.
Value()
{
    Wine reg query "$1" /v "$2" /reg:32 >"$testFolder/value.txt" || Complain "$1 has no value $2"
    tr -d '\r' <"$testFolder/value.txt" | sed -n "s/^ *$2 *REG_[A-Z]* *//p"
}

# InstalledFilesEqual <stage> <folder>
InstalledFilesEqual() { diff -r --exclude=Uninstall.exe "$1" "$2" || Complain "The installed files differ from the shipped ones."; }

# ServerOf <hive> <view> [class]: what activation would start; without a class, for a class of ZELT.
zelt64Class='{25D8600D-CBE0-4748-BBDD-14A8F74A9EA1}'
ServerOf()
{
    local class=${3:-'{6377AC63-7A36-46DC-8897-F277012CDA9D}'}
    Wine reg query "$1\\Software\\Classes\\CLSID\\$class\\LocalServer32" /ve "/reg:$2" 2>/dev/null |
        tr -d '\r' | sed -n 's/.*REG_SZ *//p'
}

# EntryIsComplete <hive> <folder> <version> <scope>
EntryIsComplete()
{
    local key=$1\\$uninstallKey size
    Equal DisplayName ZELT "$(Value "$key" DisplayName)"
    Equal DisplayVersion "$3" "$(Value "$key" DisplayVersion)"
    Equal Publisher 'The ZELT developers' "$(Value "$key" Publisher)"
    Equal DisplayIcon "$2\\ZELT.EXE,0" "$(Value "$key" DisplayIcon)"
    Equal InstallLocation "$2" "$(Value "$key" InstallLocation)"
    Equal UninstallString "\"$2\\Uninstall.exe\"" "$(Value "$key" UninstallString)"
    Equal QuietUninstallString "\"$2\\Uninstall.exe\" /S" "$(Value "$key" QuietUninstallString)"
    Equal NoModify 0x1 "$(Value "$key" NoModify)"
    Equal NoRepair 0x1 "$(Value "$key" NoRepair)"
    Equal RegisteredFor "$4" "$(Value "$key" RegisteredFor)"
    size=$(Value "$key" EstimatedSize)
    [ $((size)) -gt 500 ] || Complain "EstimatedSize is $size KB."
}

# StartMenu <folder of users> <entry...>: checks that the entries are there.
StartMenu()
{
    local folder=$1 entry
    shift
    for entry in "$@"; do
        [ -s "$drive/$folder/Microsoft/Windows/Start Menu/Programs/ZELT/$entry.lnk" ] || Complain "The start menu lacks $entry."
    done
}

TestInstall()
{
    Exits 0 "$(WindowsPath "$testFolder/older-setup.exe")" /S
    InstalledFilesEqual "$testFolder/older" "$installed"
    EntryIsComplete HKLM "$programsFolder" 0.9.0 machine
    StartMenu ProgramData ZELT 'ZELT Help'
    Equal '32-bit view' "\"$programsFolder\\ZELT.EXE\"" "$(ServerOf HKLM 32)"
    Equal '64-bit view' "\"$programsFolder\\ZELT.EXE\"" "$(ServerOf HKLM 64)"
    Equal "user's classes" '' "$(ServerOf HKCU 32)"
    Equal 'ZELT64 of an older version' '' "$(ServerOf HKLM 64 "$zelt64Class")"
    [ -s "$drive/Program Files (x86)/Common Files/CAPE-OPEN/cape-open-1.1.tlb" ] || Complain "The standard's library is missing."
}

# Runs the demonstration's 32-bit simulator with a package of each kind, against the same packages in process.
TestRun()
{
    ExportPackages 'HKCU\Software\ZELT' "${demoRuns[@]}"
    local run name kind sample zelt package what
    for run in "${demoRuns[@]}"; do
        IFS='|' read -r name kind sample zelt package what <<<"$run"
        Simulate i686 "$name-32" "$zelt" "$package"
        Simulate i686 "$name-direct" "$sample" "$package" --in-process
        grep -q '[0-9A-Fa-f]\{16\}' "$testFolder/$name-direct.bits" || Complain "The simulator printed no bit patterns."
        diff "$testFolder/$name-direct.bits" "$testFolder/$name-32.bits" || Complain "The results differ."
    done
    Equal 'number of logs' "${#demoRuns[@]}" "$(find "$drive"/users/*/Desktop/'ZELT logs' -name '*.zlg' | wc -l)"
    WaitForEnd
}

# Whether ZELT is running in this prefix. Asks Linux, because Wine's tasklist shows nothing.
ZeltRuns()
{
    local process
    for process in $(pgrep -f 'ZELT(64)?\.EXE'); do
        tr '\0' '\n' <"/proc/$process/environ" 2>/dev/null | grep -qxF "WINEPREFIX=$WINEPREFIX" && return
    done
    return 1
}

# WaitUntil <command...>: waits until the command succeeds, at most about ten seconds.
WaitUntil()
{
    local waited
    for ((waited = 0; waited < 100; ++waited)); do
        ! "$@" || return 0
        sleep 0.1
    done
    Complain "Timed out waiting for: $*"
}

# The server ends a second after its last object: its program cannot be replaced earlier.
WaitForEnd() { WaitUntil ZeltEnded; }
ZeltEnded() { ! ZeltRuns; }

TestRefusal()
{
    Snapshot running
    Wine "$programsFolder\\ZELT.EXE" >"$testFolder/window.txt" 2>&1 &
    # Its file is in use from the start; the window appears a moment later.
    WaitUntil ZeltRuns
    sleep 2
    Exits 4 "$(WindowsPath "$setupProgram")" /S
    cp "$installed/Uninstall.exe" "$testFolder/uninstall.exe"
    ExitsAs 4 "\"$(WindowsPath "$testFolder/uninstall.exe")\" /S _?=$programsFolder"
    # Asks the window to close.
    Wine taskkill /im ZELT.EXE
    WaitForEnd
    Snapshot refused
    Equal 'changes of a refused setup' '' "$(Added files running refused; Removed files running refused
        Added registry running refused; Removed registry running refused)"
}

# ChangesNothing <code> <command line>: must end with this code, and leave everything as it was. Shortcuts are not compared: a new
# one has other times.
ChangesNothing()
{
    Snapshot unchanged
    ExitsAs "$1" "$2"
    Snapshot refused
    Equal "changes by $2" '' "$( (Added files unchanged refused; Removed files unchanged refused
        Added registry unchanged refused; Removed registry unchanged refused) | grep -v '\.lnk$')"
}

# As when the system's viewer shows the help: another program has the file open, and does not share it for writing.
TestRefusalOfFile()
{
    printf '%s\r\n' '@echo off' "C:\\windows\\syswow64\\notepad.exe <\"$programsFolder\\BRIX.chm\"" >"$testFolder/hold.bat"
    # Notepad inherits the open file. (The 32-bit one, because Wine's taskkill does not find 64-bit programs.)
    Wine cmd /c "$(WindowsPath "$testFolder/hold.bat")" >"$testFolder/hold.txt" 2>&1 &
    sleep 5
    ChangesNothing 8 "\"$(WindowsPath "$setupProgram")\" /S"
    ChangesNothing 8 "\"$(WindowsPath "$testFolder/uninstall.exe")\" /S _?=$programsFolder"
    Wine taskkill /f /im notepad.exe
    wait $! || true
}

# The older version has no zeltctl64.exe. A folder with that name keeps setup from writing the file.
TestFailedUpgrade()
{
    mkdir "$installed/zeltctl64.exe"
    ChangesNothing 5 "\"$(WindowsPath "$setupProgram")\" /S"
    rmdir "$installed/zeltctl64.exe"
    Simulate i686 kept-32 ZELT.PropertyPackageManager Aromatics
    diff "$testFolder/property11-direct.bits" "$testFolder/kept-32.bits" || Complain "The results differ."
    WaitForEnd
}

# Wine's taskkill does not find 64-bit programs, so this test uses a program that may simply be killed.
TestRefusalOfTool()
{
    # A command that does not end by itself.
    local log=$testFolder/followed.zlg
    find "$drive"/users/*/Desktop/'ZELT logs' -name '*.zlg' -exec head -n 40 {} \; -quit >"$log"
    Wine "$programsFolder\\zeltctl64.exe" log follow "$(WindowsPath "$log")" >"$testFolder/followed.txt" 2>&1 &
    local follower=$!
    WaitUntil test -s "$testFolder/followed.txt"
    Exits 4 "$(WindowsPath "$setupProgram")" /S
    EndTree "$follower"
    WaitUntil ToolEnded
}
# Ends the programs of this Wine prefix; other runs on the machine may have their own.
ToolEnded()
{
    local process ended=0
    for process in $(pgrep -f 'zeltctl64\.exe'); do
        tr '\0' '\n' <"/proc/$process/environ" 2>/dev/null | grep -qxF "WINEPREFIX=$WINEPREFIX" || continue
        kill "$process" 2>/dev/null || true
        ended=1
    done
    return "$ended"
}

TestUpgrade()
{
    Snapshot older
    Exits 0 "$(WindowsPath "$setupProgram")" /S
    InstalledFilesEqual "$packageFolder/zelt-$(ProductVersion)" "$installed"
    EntryIsComplete HKLM "$programsFolder" "$(ProductVersion)" machine
    Snapshot newer
    # Exports, options and logs are as they were.
    diff <(grep -E "$keptKeys" "$testFolder/older.registry") <(grep -E "$keptKeys" "$testFolder/newer.registry") ||
        Complain "Settings changed."
    Equal 'number of settings' 8 "$(grep -c -E "$keptKeys" "$testFolder/newer.registry")"
    diff <(grep "$keptFiles" "$testFolder/older.files") <(grep "$keptFiles" "$testFolder/newer.files") || Complain "Logs changed."
    Simulate i686 upgraded-32 ZELT.PropertyPackageManager Aromatics
    diff "$testFolder/property11-direct.bits" "$testFolder/upgraded-32.bits" || Complain "The results differ."
    local view
    for view in 32 64; do
        Equal "ZELT64 in the $view-bit view" "\"$programsFolder\\ZELT64.EXE\"" "$(ServerOf HKLM "$view" "$zelt64Class")"
    done
    WaitForEnd
}

# A 64-bit package in simulators of both widths, and what zeltctl reports about both editions.
TestRun64()
{
    Wine "$programsFolder\\zeltctl.exe" add ZeltSample.PropertyPackageManager Aromatics --log --width 64
    Simulate x86_64 wide-direct ZeltSample.PropertyPackageManager Aromatics --in-process
    local width
    for width in x86_64 i686; do
        Simulate "$width" "wide-$width" ZELT64.PropertyPackageManager Aromatics
        diff "$testFolder/wide-direct.bits" "$testFolder/wide-$width.bits" || Complain "The results differ."
    done
    WaitForEnd
    Wine "$programsFolder\\zeltctl.exe" doctor >"$testFolder/doctor.txt" || Complain "$(<"$testFolder/doctor.txt")"
    Equal 'healthy editions' 2 "$(grep -c '^healthy: ' "$testFolder/doctor.txt")"
    Wine "$programsFolder\\zeltctl.exe" remove Aromatics --width 64
    Wine reg delete 'HKCU\Software\ZELT\64-bit' /f
}

# Uninstall <folder>: as the system does it. The program returns at once and continues as a copy of itself.
Uninstall()
{
    Exits 0 "$1\\Uninstall.exe" /S
    local path
    path=$(Wine winepath -u "$1" | tr -d '\r')
    WaitUntil Gone "$path" || Complain "This is still there: $(find "$path")"
    # The copy needs a moment more to end.
    sleep 0.5
}

Gone() { [ ! -e "$1" ]; }

TestUninstall()
{
    Uninstall "$programsFolder"
    Snapshot uninstalled
    OnlyStandardLibraryStays clean uninstalled
    # The standard's libraries do stay.
    [ -s "$drive/Program Files (x86)/Common Files/CAPE-OPEN/cape-open-1.1.tlb" ] || Complain "The standard's library is gone."
    Equal 'number of settings' 8 "$(grep -c -E "$keptKeys" "$testFolder/uninstalled.registry")"
    Equal 'number of logs' 7 "$(find "$drive"/users/*/Desktop/'ZELT logs' -name '*.zlg' | wc -l)"
}

TestUserInstall()
{
    local folder
    folder=$(Wine cmd /c 'echo %LOCALAPPDATA%' | tr -d '\r')\\Programs\\ZELT
    Snapshot before
    Exits 0 "$(WindowsPath "$setupProgram")" /S /CurrentUser
    EntryIsComplete HKCU "$folder" "$(ProductVersion)" user
    StartMenu "users/$(Wine cmd /c 'echo %USERNAME%' | tr -d '\r')/AppData/Roaming" ZELT ZELT64 'ZELT Help'
    Equal '32-bit view' "\"$folder\\ZELT.EXE\"" "$(ServerOf HKCU 32)"
    Equal '64-bit view' "\"$folder\\ZELT.EXE\"" "$(ServerOf HKCU 64)"
    Equal 'ZELT64' "\"$folder\\ZELT64.EXE\"" "$(ServerOf HKCU 64 "$zelt64Class")"
    Snapshot user
    Equal "changes of the machine's entries" '' "$(Added registry before user | grep '^HKEY_LOCAL_MACHINE' | grep -v -i '\\Interface\\')"
    Uninstall "$folder"
    Snapshot after
    OnlyStandardLibraryStays before after
}

# SearchPath <key>: the line with the path, of any length, from registry-lines.pl; nothing if there is none.
SearchPath()
{
    Wine reg export "$1" "$(WindowsPath "$testFolder/path.reg")" /y >&2
    perl scripts/registry-lines.pl "$testFolder/path.reg" | grep -i ' | "Path"=' || true
}

# Tests a path that is longer than the texts of a setup program can be, and setup without the switch over an installation that is
# on the path.
TestSearchPath()
{
    local folder key='HKCU\Environment' long before added
    folder=$(Wine cmd /c 'echo %LOCALAPPDATA%' | tr -d '\r')\\Programs\\ZELT
    # Imported from a file, because a command line is limited too.
    long=$(printf 'C:\\A folder of somebody\\%d;' {1..400})
    printf 'Windows Registry Editor Version 5.00\r\n\r\n[HKEY_CURRENT_USER\\Environment]\r\n"Path"="%s"\r\n' \
        "${long//\\/\\\\}C:\\\\Last" >"$testFolder/long.reg"
    Wine reg import "$(WindowsPath "$testFolder/long.reg")"
    before=$(SearchPath "$key")
    [ "${#before}" -gt 10000 ] || Complain "The path was not written."
    Exits 0 "$(WindowsPath "$setupProgram")" /S /CurrentUser
    Equal 'path without the switch' "$before" "$(SearchPath "$key")"
    Exits 0 "$(WindowsPath "$setupProgram")" /S /CurrentUser /Path
    added=$(SearchPath "$key")
    Equal 'path with the switch' "${before%\"};${folder//\\/\\\\}\"" "$added"
    # Setup without the switch keeps it.
    Exits 0 "$(WindowsPath "$setupProgram")" /S /CurrentUser
    Equal 'path of the next version' "$added" "$(SearchPath "$key")"
    Equal OnPath 0x1 "$(Value "HKCU\\$uninstallKey" OnPath)"
    Uninstall "$folder"
    Equal 'path after uninstalling' "$before" "$(SearchPath "$key")"
    Wine reg delete "$key" /v Path /f
}

# A setup for all users that registers for the user, because the product family's value says so.
TestFamilyOfUser()
{
    Wine reg add 'HKCU\Software\BRIX' /v CurrentUser /t REG_SZ /d 1 /f
    Snapshot before
    ExitsAs 0 "\"$(WindowsPath "$setupProgram")\" /S /D=C:\\Tools\\ZELT for us"
    EntryIsComplete HKLM 'C:\Tools\ZELT for us' "$(ProductVersion)" user
    Equal "machine's classes" '' "$(ServerOf HKLM 32)"
    Equal "user's classes" '"C:\Tools\ZELT for us\ZELT.EXE"' "$(ServerOf HKCU 32)"
    Uninstall 'C:\Tools\ZELT for us'
    Equal "user's classes" '' "$(ServerOf HKCU 32)"
    rmdir "$drive/Tools"
    Snapshot after
    OnlyStandardLibraryStays before after
    Wine reg delete 'HKCU\Software\BRIX' /v CurrentUser /f
}

# When a file cannot be written, nothing is left behind.
TestFailures()
{
    mkdir -p "$drive/Taken/ZELT/BRIX.chm"
    Snapshot before
    Exits 5 "$(WindowsPath "$setupProgram")" /S '/D=C:\Taken\ZELT'
    Snapshot after
    Equal 'what a failed setup leaves' '' "$(Added files before after; Removed files before after; Added registry before after
        Removed registry before after)"
    rm -r "$drive/Taken"
}

# What activation would start. The path comes from an export, because a query prints only the letters of the code page.
ExportedServer()
{
    Wine reg export 'HKLM\Software\Classes\CLSID\{6377AC63-7A36-46DC-8897-F277012CDA9D}\LocalServer32' \
        "$(WindowsPath "$testFolder/server.reg")" /y >&2
    perl scripts/registry-lines.pl "$testFolder/server.reg" | sed -n 's/.* | @="\(.*\)"$/\1/p' | sed 's/\\\(.\)/\1/g'
}

# The path has blanks, letters of the code page, and letters that are not in it.
TestPortable()
{
    local folder="$testFolder/Tragbare Größe ŁΩ/ZELT's copy"
    mkdir -p "$folder"
    (cd "$folder" && unzip -q "$portableZip")
    local version program
    version=$(ProductVersion)
    program="$folder/zelt-$version/ZELT.EXE"
    Snapshot before
    Exits 0 "$(WindowsPath "$program")" /RegServer
    Equal 'registered server' "\"$(WindowsPath "$program")\"" "$(ExportedServer)"
    Simulate i686 portable-32 ZELT.PropertyPackageManager Aromatics
    diff "$testFolder/property11-direct.bits" "$testFolder/portable-32.bits" || Complain "The results differ."
    WaitForEnd
    Wine "$(WindowsPath "${program%/*}/zeltctl.exe")" --version >"$testFolder/zeltctl.txt"
    Equal 'version of zeltctl' "zeltctl $(ProductVersion)" "$(<"$testFolder/zeltctl.txt")"
    Exits 0 "$(WindowsPath "${program%/*}/ZELT64.EXE")" /RegServer
    Simulate x86_64 portable-64 ZELT64.PropertyPackageManager Nothing && Complain "A package that is not exported was found."
    WaitForEnd
    Exits 0 "$(WindowsPath "$program")" /UnregServer
    Exits 0 "$(WindowsPath "${program%/*}/ZELT64.EXE")" /UnregServer
    Snapshot after
    OnlyStandardLibraryStays before after
}

# In each program, the address of a function must lead to the file of its source.
TestSymbols()
{
    local known program tools address base answer
    for known in "${shippedPrograms[@]}"; do
        program=${known##*/} tools=i686-w64-mingw32
        [[ $program != *64.* ]] || tools=x86_64-w64-mingw32
        address=$("$tools-nm" -C "$root/build/$known.symbols" | sed -n 's/ T zelt::RegistryKey::Close()$//p')
        base=$("$tools-objdump" -p "$root/build/$known.symbols" | sed -n 's/^ImageBase[[:space:]]*//p')
        answer=$(Symbols --zip "$symbolsZip" "$program" "$(printf '%x' $((16#$address - 16#$base)))")
        [[ $answer == *"zelt::RegistryKey::Close() at system/registry.cpp:"* ]] ||
            Complain "$program: expected the line of RegistryKey::Close, is \"$answer\""
        [ "$("$tools-nm" "$root/build/$known" 2>/dev/null | wc -l)" -eq 0 ] || Complain "$program has symbols."
    done
    if (Symbols ZELT.EXE) || (Symbols other.exe 10) || (Symbols ZELT.EXE ten); then Complain "A wrong command was accepted."; fi
}
