# The demonstration: sample packages reach simulators through ZELT, and every call is in the log. Sourced by ./dev.

# What is exported and run, one per line: result name, kind in the list of exported packages, the sample's manager, ZELT's
# manager, package, what it is. One package of each kind that a manager provides.
demoRuns=(
    "property11|0|ZeltSample.PropertyPackageManager|ZELT.PropertyPackageManager|Aromatics|CAPE-OPEN 1.1 property package"
    "property10|2|ZeltSample.ThermoSystem|ZELT.ThermoSystem|Alcohols|CAPE-OPEN 1.0 property package"
    "reactions|4|ZeltSample.ReactionsPackageManager|ZELT.ReactionPackageManager|Hydrogen|CAPE-OPEN 1.0 reaction package"
)

# The same for ZELT64, which hosts 64-bit packages: one is enough for a demonstration.
demoRuns64=(
    "wide-property11|0|ZeltSample.PropertyPackageManager|ZELT64.PropertyPackageManager|Aromatics|64-bit CAPE-OPEN 1.1 property package"
)

# The flowsheet: PRAVIK around the sample mixer with heater, whose streams the first package calculates. These parameters differ
# from the defaults, so that a loaded flowsheet shows that it loaded them.
demoUnit=ZeltSample.MixerHeater
demoLoggedUnit=PRAVIK.UnitOperation
demoSettings=(--set "Heat duty=150000" --set "Pressure drop=20000" --set "Temperature limits=280;480"
              --set "Search temperature=true" --set "Maximum iterations=60")

Demo()
{
    LockTree
    SetUpBuild
    [ -d build/i686/shell ] || Say "The first demonstration builds ZELT, which takes some minutes; later ones start at once."
    # Making the prefix is mostly waiting, so the build runs at the same time.
    Beside wine-template NeedTemplatePrefix
    BuildPreset i686 zelt zeltctl SamplePackage SampleReactions SampleUnits SampleSimulator
    BuildPreset x86_64 SampleSimulator
    # What the 64-bit packages need is built during the earlier runs, which also wait more than they work.
    Beside demo-build-wide nice cmake --build build/x86_64 --target zelt SamplePackage
    demoFolder=$root/build/demo
    rm -rf "$demoFolder"
    mkdir -p "$demoFolder"
    UsePrefix demo

    RegisterAll
    RunPackages 32 "${demoRuns[@]}"
    RunFlowsheet
    UseRecording
    Await demo-build-wide "Building ZELT64 and its package"
    RegisterWide
    RunPackages 64 "${demoRuns64[@]}"

    ShowResults 64 32 "${demoRuns[@]}"
    ShowResults 32 64 "${demoRuns64[@]}"
    ShowFlowsheet
    ShowLogs
    ShowReplays
}

RegisterAll()
{
    Register zelt ZELT.EXE i686/shell/ZELT.EXE /RegServer
    # The packages are 32-bit libraries: the 32-bit regsvr32 is the one in syswow64.
    local library
    for library in SamplePackage SampleReactions SampleUnits; do
        Register "$library" "$library.dll" i686/samples/$library.dll 'C:\windows\syswow64\regsvr32.exe' /s
    done
    Step demo-export "Exporting ${#demoRuns[@]} packages with logging" ExportPackages 'HKCU\Software\ZELT' "${demoRuns[@]}"
    Step demo-unit "Choosing the unit operation that PRAVIK logs" ChooseUnit
}

RegisterWide()
{
    Register zelt64 ZELT64.EXE x86_64/shell/ZELT64.EXE /RegServer
    Register wide "the 64-bit SamplePackage.dll" x86_64/samples/SamplePackage.dll 'C:\windows\system32\regsvr32.exe' /s
    Step demo-export-wide "Exporting a 64-bit package with logging" ExportPackages 'HKCU\Software\ZELT\64-bit' "${demoRuns64[@]}"
}

# Register <step> <what> <file> /RegServer, or Register <step> <what> <file> <registrar> <option...>
Register()
{
    local step=demo-register-$1 what=$2 file=$root/build/$3
    shift 3
    [ -f "$file" ] || Fail "The build did not make $file."
    file=$(WindowsPath "$file")
    if [ "$1" = /RegServer ]; then
        Step "$step" "Registering $what" Wine "$file" /RegServer
    else
        Step "$step" "Registering $what" Wine "$@" "$file"
    fi
}

# RunPackages <width of the packages> <run...>: runs each with both simulators through ZELT, and in process. The results must be
# equal.
RunPackages()
{
    local width=$1 run name kind sample zelt package what architecture=i686
    shift
    [ "$width" = 32 ] || architecture=x86_64
    for run in "$@"; do
        IFS='|' read -r name kind sample zelt package what <<<"$run"
        Step "demo-$name-64" "64-bit simulator, $what through ${zelt%%.*}" Simulate x86_64 "$name-64" "$zelt" "$package"
        Step "demo-$name-32" "32-bit simulator, $what through ${zelt%%.*}" Simulate i686 "$name-32" "$zelt" "$package"
        Step "demo-$name-direct" "$width-bit simulator, $what in process" \
            Simulate "$architecture" "$name-direct" "$sample" "$package" --in-process
        Step "demo-$name-compare" "Comparing the results bit for bit" CompareResults "$name" 64 32
    done
}

RunFlowsheet()
{
    local name kind sample zelt package what file=$demoFolder/flowsheet.zfs
    IFS='|' read -r name kind sample zelt package what <<<"${demoRuns[0]}"
    Step demo-flowsheet-64 "64-bit simulator, flowsheet with the unit through PRAVIK and the package through ZELT" \
        Simulate x86_64 flowsheet-64 "$zelt" "$package" --flowsheet "$demoLoggedUnit" "${demoSettings[@]}" \
        --save "$(WindowsPath "$file")"
    Step demo-flowsheet-loaded "64-bit simulator, the saved flowsheet in a second process" \
        Simulate x86_64 flowsheet-loaded --load "$(WindowsPath "$file")"
    Step demo-flowsheet-direct "32-bit simulator, the same flowsheet in process" \
        Simulate i686 flowsheet-direct "$sample" "$package" --flowsheet "$demoUnit" "${demoSettings[@]}" --in-process
    Step demo-flowsheet-compare "Comparing the results bit for bit" CompareResults flowsheet 64 loaded
}

# Uses the recording of the first run: renders its log, repeats its calls against the package, and exports it in the package's
# place.
UseRecording()
{
    local recording name kind sample zelt package what
    IFS='|' read -r name kind sample zelt package what <<<"${demoRuns[0]}"
    recording=$(find "$WINEPREFIX"/drive_c/users/*/Desktop/"ZELT logs" -name '*.zlr' -printf '%T@ %p\n' | sort -n | head -1 | cut -d ' ' -f 2-)
    Step demo-render "Rendering the log from the first run's recording" RenderRecording "$recording"
    Step demo-replay "Replaying the recording against the package" Zeltctl recording replay "$(WindowsPath "$recording")"
    Step demo-replay-revised "Replaying it against a revision whose results differ" ReplayAgainstRevision "$recording"
    Step demo-serve "Exporting the recording itself" ServeRecording "$recording"
    Step demo-unregister "Unregistering SamplePackage.dll" \
        Wine 'C:\windows\syswow64\regsvr32.exe' /s /u "$(WindowsPath "$root/build/i686/samples/SamplePackage.dll")"
    Step demo-recorded-64 "64-bit simulator, the recording through ZELT" Simulate x86_64 "$name-recorded-64" "$zelt" Recorded
    Step demo-recorded-32 "32-bit simulator, the recording through ZELT" Simulate i686 "$name-recorded-32" "$zelt" Recorded
    Step demo-recorded-compare "Comparing the results bit for bit" CompareResults "$name" recorded-64 recorded-32
}

# ShowResults <width of the simulator that could not use the packages without ZELT> <width of the packages> <run...>
ShowResults()
{
    local simulator=$1 width=$2 run name kind sample zelt package what
    shift 2
    for run in "$@"; do
        IFS='|' read -r name kind sample zelt package what <<<"$run"
        echo
        Say "Results of the $what, calculated by the $width-bit package for the $simulator-bit simulator"
        cat "$demoFolder/$name-$simulator.txt"
        echo
        Say "All $(wc -l <"$demoFolder/$name-direct.bits") rows of results through ZELT equal the in-process ones, bit for bit (64 and 32 bit)."
    done
}

ShowFlowsheet()
{
    echo
    Say "The flowsheet, calculated by the 32-bit unit operation and package for the 64-bit simulator"
    cat "$demoFolder/flowsheet-64.txt"
    echo
    Say "The flowsheet as a second process loaded and calculated it"
    cat "$demoFolder/flowsheet-loaded.txt"
    echo
    Say "All $(wc -l <"$demoFolder/flowsheet-direct.bits") rows of results of both equal the in-process ones, bit for bit."
}

ShowReplays()
{
    echo
    Say "The recording of the first run, replayed against the package, and against a revision of it"
    cat "$logFolder/demo-replay.log" "$logFolder/demo-replay-revised.log"
    echo
    Say "The recording alone, without the package, gave both simulators the same results, bit for bit."
}

Zeltctl() { Wine "$root/build/i686/ctl/zeltctl.exe" "$@"; }

# RenderRecording <recording>: renders its log, which must equal the one that was written.
RenderRecording()
{
    local rendered=$demoFolder/rendered.zlg
    Zeltctl recording render "$(WindowsPath "$1")" "$(WindowsPath "$rendered")"
    cmp "$rendered" "${1%.zlr}.zlg" && echo "The rendered log is equal."
}

# ReplayAgainstRevision <recording>: the replay must find the difference.
ReplayAgainstRevision()
{
    local status=0
    Zeltctl recording replay --limit 3 --package "Aromatics, revised" "$(WindowsPath "$1")" || status=$?
    [ "$status" -eq 1 ] || { echo "The replay ended with $status, not with a finding."; return 1; }
}

# ServeRecording <recording>: exports it, as soon as ZELT, which holds the list, has ended.
ServeRecording()
{
    local attempt
    for attempt in $(seq 30); do
        Zeltctl add --width 32 --name Recorded --recording "$(WindowsPath "$1")" && return
        echo "Attempt $attempt."
        sleep 1
    done
    return 1
}

Wine() { timeout 120 wine "$@"; }

# ExportPackages <key of the list> <run...>: writes the packages of the runs to the list in the registry, and the options: logs go
# to the desktop, no dialog asks about them, and calls are recorded.
ExportPackages()
{
    local class key=$1 settings='HKCU\Software\ZELT' number=0 run name kind sample zelt package what
    shift
    for run in "$@"; do
        IFS='|' read -r name kind sample zelt package what <<<"$run"
        Wine reg query "HKCR\\$sample\\CLSID" /ve >"$demoFolder/class.txt"
        class=$(grep -o '{[0-9A-Fa-f-]*}' "$demoFolder/class.txt") || { echo "$sample is not registered."; return 1; }
        number=$((number + 1))
        # The class, the kind, the package's name in its manager, its exported name, logging.
        Wine reg add "$key" /f /v "Package$number" /t REG_MULTI_SZ /s '|' /d "$class|$kind|$package|$package|true"
    done
    Wine reg add "$key" /f /v NumPackages /t REG_DWORD /d "$number"
    Wine reg add "$settings" /f /v AutoLogLocation /t REG_DWORD /d 1
    Wine reg add "$settings" /f /v PromptOpenLog /t REG_DWORD /d 0
    Wine reg add "$settings" /f /v RecordCalls /t REG_DWORD /d 1
}

# Stores the unit operation's class as the main window's menu does: 16 bytes, the first three numbers of the identifier in
# little-endian order.
ChooseUnit()
{
    local class bytes
    Wine reg query "HKCR\\$demoUnit\\CLSID" /ve >"$demoFolder/class.txt"
    class=$(grep -o '{[0-9A-Fa-f-]*}' "$demoFolder/class.txt" | tr -d '{}-') || { echo "$demoUnit is not registered."; return 1; }
    bytes=${class:6:2}${class:4:2}${class:2:2}${class:0:2}${class:10:2}${class:8:2}${class:14:2}${class:12:2}${class:16:16}
    Wine reg add 'HKCU\Software\ZELT' /f /v PRAVIKUnit /t REG_BINARY /d "$bytes"
}

# Simulate <architecture> <result name> <arguments...>: runs the simulator, and keeps its tables and, separately, the lines with
# each number's bits.
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

# CompareResults <result name> <run>...: every number that the simulators got through ZELT must equal the one that the components
# calculate in process.
CompareResults()
{
    local direct=$demoFolder/$1-direct.bits name=$1 run
    shift
    grep -q '[0-9A-Fa-f]\{16\}' "$direct" || { echo "The simulator printed no bit patterns."; return 1; }
    for run in "$@"; do
        diff "$direct" "$demoFolder/$name-$run.bits" || { echo "The results of the run $name-$run differ."; return 1; }
    done
}

# Shows the logs in the order of the runs, each 64-bit simulator's before the 32-bit one's: the first in full, then only the
# beginnings of the others. Each of the flowsheet's two runs has two logs, the package's and the unit operation's.
ShowLogs()
{
    local logs log lines top=40 expected=$((2 * (${#demoRuns[@]} + ${#demoRuns64[@]}) + 4))
    mapfile -t logs < <(find "$WINEPREFIX"/drive_c/users/*/Desktop/"ZELT logs" -name '*.zlg' -printf '%T@ %p\n' | sort -n | cut -d ' ' -f 2-)
    [ ${#logs[@]} -eq "$expected" ] || Fail "ZELT wrote ${#logs[@]} logs, not $expected."
    local units=0
    for log in "${logs[@]}"; do
        ! grep -q 'ICapeUnit::Calculate' "$log" || units=$((units + 1))
    done
    [ "$units" -eq 2 ] || Fail "$units logs contain a calculation of a unit operation, not 2, one for each run of the flowsheet."
    echo
    Say "All ${#logs[@]} logs"
    printf '%s\n' "${logs[@]}"
    echo
    Say "Log of the first run: ${logs[0]}"
    tr -d '\r' <"${logs[0]}"
    for log in "${logs[@]:1}"; do
        lines=$(wc -l <"$log")
        echo
        Say "$log ($lines lines)"
        tr -d '\r' <"$log" | sed -n "1,${top}p"
        [ "$lines" -le "$top" ] || echo "... and $((lines - top)) more lines"
    done
}
