# The demonstration: sample packages reach simulators through ZELT, and every call is in the log. Sourced by ./dev.

sampleManager=ZeltSample.PropertyPackageManager
zeltManager=ZELT.PropertyPackageManager
samplePackage=Aromatics

Demo()
{
    LockTree
    Build
    local programs=build/i686 file
    for file in "$programs"/shell/ZELT.EXE "$programs"/samples/SamplePackage.dll build/{i686,x86_64}/samples/SampleSimulator.exe; do
        [ -f "$file" ] || Fail "The build did not make $file."
    done
    demoFolder=$root/build/demo
    rm -rf "$demoFolder"
    mkdir -p "$demoFolder"
    UsePrefix demo

    Step demo-register-zelt "Registering ZELT" Wine "$(WindowsPath "$root/$programs/shell/ZELT.EXE")" /RegServer
    # The package is a 32-bit library: the 32-bit regsvr32 is the one in syswow64.
    Step demo-register-package "Registering the sample package" \
        Wine 'C:\windows\syswow64\regsvr32.exe' /s "$(WindowsPath "$root/$programs/samples/SamplePackage.dll")"
    Step demo-export "Exporting the package \"$samplePackage\" with logging" ExportPackage

    Step demo-64 "64-bit simulator, through ZELT" Simulate x86_64 through-zelt-64 "$zeltManager" "$samplePackage"
    Step demo-32 "32-bit simulator, through ZELT" Simulate i686 through-zelt-32 "$zeltManager" "$samplePackage"
    Step demo-direct "32-bit simulator, package in process" \
        Simulate i686 in-process "$sampleManager" "$samplePackage" --in-process
    Step demo-compare "Comparing the results bit for bit" CompareResults

    echo
    Say "Results, calculated by the 32-bit package for the 64-bit simulator"
    cat "$demoFolder/through-zelt-64.txt"
    echo
    Say "All $(wc -l <"$demoFolder/in-process.bits") rows of results through ZELT equal the in-process ones, bit for bit (64 and 32 bit)."
    ShowLog
}

Wine() { timeout 120 wine "$@"; }

# The exported packages are a list in the registry; a log goes to the desktop, and nobody is asked about it.
ExportPackage()
{
    local class key='HKCU\Software\ZELT'
    Wine reg query "HKCR\\$sampleManager\\CLSID" /ve >"$demoFolder/class.txt"
    class=$(grep -o '{[0-9A-Fa-f-]*}' "$demoFolder/class.txt") || { echo "$sampleManager is not registered."; return 1; }
    # The class, kind 0 (a package that a 1.1 manager gives), name there, exported name, logging.
    Wine reg add "$key" /f /v Package1 /t REG_MULTI_SZ /s '|' /d "$class|0|$samplePackage|$samplePackage|true"
    Wine reg add "$key" /f /v NumPackages /t REG_DWORD /d 1
    Wine reg add "$key" /f /v AutoLogLocation /t REG_DWORD /d 1
    Wine reg add "$key" /f /v PromptOpenLog /t REG_DWORD /d 0
}

# Simulate <architecture> <result name> <arguments...>: the table and, apart, the lines that show each number's bits.
Simulate()
{
    local program=build/$1/samples/SampleSimulator.exe result=$demoFolder/$2 status=0
    shift 2
    Wine "$program" "$@" --bits >"$result.out" 2>&1 || status=$?
    tr -d '\r' <"$result.out" >"$result.all"
    grep -v '^bits ' "$result.all" >"$result.txt" || true
    grep '^bits ' "$result.all" >"$result.bits" || true
    cat "$result.txt"
    return "$status"
}

# Every number that the simulators got through ZELT must be the one that the package calculates in process.
CompareResults()
{
    grep -q '[0-9A-Fa-f]\{16\}' "$demoFolder/in-process.bits" || { echo "The simulator showed no bits."; return 1; }
    local run
    for run in through-zelt-64 through-zelt-32; do
        diff "$demoFolder/in-process.bits" "$demoFolder/$run.bits" || { echo "The results $run differ."; return 1; }
    done
}

ShowLog()
{
    local logs
    mapfile -t logs < <(find "$WINEPREFIX"/drive_c/users/*/Desktop/"ZELT logs" -name '*.zlg' -printf '%T@ %p\n' | sort -n | cut -d ' ' -f 2-)
    [ ${#logs[@]} -gt 0 ] || Fail "ZELT wrote no log."
    echo
    Say "Log of the first run (${#logs[@]} in all): ${logs[0]}"
    tr -d '\r' <"${logs[0]}"
}
