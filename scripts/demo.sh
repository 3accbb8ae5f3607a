# The demonstration: sample packages reach simulators through ZELT, and every call is in the log. Sourced by ./dev.

# What is exported and run, one a line: result name, kind in the list of exported packages, the sample's manager, ZELT's
# manager, package, what it is. A package of each kind that a manager gives.
demoRuns=(
    "property11|0|ZeltSample.PropertyPackageManager|ZELT.PropertyPackageManager|Aromatics|CAPE-OPEN 1.1 property package"
    "property10|2|ZeltSample.ThermoSystem|ZELT.ThermoSystem|Alcohols|CAPE-OPEN 1.0 property package"
    "reactions|4|ZeltSample.ReactionsPackageManager|ZELT.ReactionPackageManager|Hydrogen|CAPE-OPEN 1.0 reaction package"
)

Demo()
{
    LockTree
    Build
    local programs=build/i686 file
    for file in "$programs"/shell/ZELT.EXE "$programs"/samples/Sample{Package,Reactions}.dll \
        build/{i686,x86_64}/samples/SampleSimulator.exe; do
        [ -f "$file" ] || Fail "The build did not make $file."
    done
    demoFolder=$root/build/demo
    rm -rf "$demoFolder"
    mkdir -p "$demoFolder"
    UsePrefix demo

    Step demo-register-zelt "Registering ZELT" Wine "$(WindowsPath "$root/$programs/shell/ZELT.EXE")" /RegServer
    # The packages are 32-bit libraries: the 32-bit regsvr32 is the one in syswow64.
    local library
    for library in SamplePackage SampleReactions; do
        Step "demo-register-$library" "Registering $library.dll" \
            Wine 'C:\windows\syswow64\regsvr32.exe' /s "$(WindowsPath "$root/$programs/samples/$library.dll")"
    done
    Step demo-export "Exporting ${#demoRuns[@]} packages with logging" ExportPackages

    local run name kind sample zelt package what
    for run in "${demoRuns[@]}"; do
        IFS='|' read -r name kind sample zelt package what <<<"$run"
        Step "demo-$name-64" "64-bit simulator, $what through ZELT" Simulate x86_64 "$name-64" "$zelt" "$package"
        Step "demo-$name-32" "32-bit simulator, $what through ZELT" Simulate i686 "$name-32" "$zelt" "$package"
        Step "demo-$name-direct" "32-bit simulator, $what in process" \
            Simulate i686 "$name-direct" "$sample" "$package" --in-process
        Step "demo-$name-compare" "Comparing the results bit for bit" CompareResults "$name"
    done

    for run in "${demoRuns[@]}"; do
        IFS='|' read -r name kind sample zelt package what <<<"$run"
        echo
        Say "Results of the $what, calculated by the 32-bit package for the 64-bit simulator"
        cat "$demoFolder/$name-64.txt"
        echo
        Say "All $(wc -l <"$demoFolder/$name-direct.bits") rows of results through ZELT equal the in-process ones, bit for bit (64 and 32 bit)."
    done
    ShowLogs
}

Wine() { timeout 120 wine "$@"; }

# The exported packages are a list in the registry; a log goes to the desktop, and nobody is asked about it.
ExportPackages()
{
    local class key='HKCU\Software\ZELT' number=0 run name kind sample zelt package what
    for run in "${demoRuns[@]}"; do
        IFS='|' read -r name kind sample zelt package what <<<"$run"
        Wine reg query "HKCR\\$sample\\CLSID" /ve >"$demoFolder/class.txt"
        class=$(grep -o '{[0-9A-Fa-f-]*}' "$demoFolder/class.txt") || { echo "$sample is not registered."; return 1; }
        number=$((number + 1))
        # The class, its kind, the package's name there, exported name, logging.
        Wine reg add "$key" /f /v "Package$number" /t REG_MULTI_SZ /s '|' /d "$class|$kind|$package|$package|true"
    done
    Wine reg add "$key" /f /v NumPackages /t REG_DWORD /d "$number"
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

# CompareResults <result name>: every number that the simulators got through ZELT must be the one that the package
# calculates in process.
CompareResults()
{
    local direct=$demoFolder/$1-direct.bits width
    grep -q '[0-9A-Fa-f]\{16\}' "$direct" || { echo "The simulator showed no bits."; return 1; }
    for width in 64 32; do
        diff "$direct" "$demoFolder/$1-$width.bits" || { echo "The $width-bit results differ."; return 1; }
    done
}

# The logs in the order of the runs, each run's 64-bit one before the 32-bit one: the first whole, of the others the top.
ShowLogs()
{
    local logs log lines top=40
    mapfile -t logs < <(find "$WINEPREFIX"/drive_c/users/*/Desktop/"ZELT logs" -name '*.zlg' -printf '%T@ %p\n' | sort -n | cut -d ' ' -f 2-)
    [ ${#logs[@]} -eq $((2 * ${#demoRuns[@]})) ] || Fail "ZELT wrote ${#logs[@]} logs, not one for each run through it."
    echo
    Say "Log of the first run (${#logs[@]} in all): ${logs[0]}"
    tr -d '\r' <"${logs[0]}"
    for log in "${logs[@]:1}"; do
        lines=$(wc -l <"$log")
        echo
        Say "$log ($lines lines)"
        tr -d '\r' <"$log" | sed -n "1,${top}p"
        [ "$lines" -le "$top" ] || echo "... and $((lines - top)) lines more"
    done
}
