# Benchmarks, each next to its floor. Sourced by ./dev.

# The programs that measure the native build; the others measure the product, under Wine.
nativeBenches=(logs)

# Bench [name...] [-- options]: runs the programs bench_<name> of the folder bench, all unless some are named; each gets the
# options. "remote64" is bench_remote for ZELT64. A program also fails when it misses a goal. If one has failed, this function
# fails, but only after all have run.
Bench()
{
    local wanted=() options=() name program underWine=() missed=()
    while [ $# -gt 0 ] && [ "$1" != -- ]; do
        wanted+=("$1")
        shift
    done
    [ $# -eq 0 ] || options=("${@:2}")
    LockTree
    InstallPackages build
    FetchLibraries
    local all=0
    [ ${#wanted[@]} -gt 0 ] || { all=1 && wanted=("${nativeBenches[@]}"); }
    for name in "${wanted[@]}"; do
        case " ${nativeBenches[*]} " in
            *" $name "*) BenchNatively "$name" "${options[@]}" || missed+=("$name") ;;
            *) underWine+=("$name") ;;
        esac
    done
    [ "$all" -eq 1 ] || [ ${#underWine[@]} -gt 0 ] || {
        FailWhenMissed "${missed[@]}"
        return 0
    }
    wanted=("${underWine[@]}")
    BuildRelease SamplePackage benches
    BuildPreset release64 zelt SamplePackage bench_remote
    local folder=build/release/bench
    if [ "$all" -eq 1 ]; then
        for program in "$folder"/bench_*.exe; do
            name=${program##*/bench_}
            wanted+=("${name%.exe}")
        done
        wanted+=(remote64)
    fi
    UsePrefix bench
    # A bare display has no window manager, and Wine waits for one when a window closes.
    Step bench-windows "Letting Wine draw window frames" \
        wine reg add 'HKCU\Software\Wine\X11 Driver' /v Managed /d N /f
    Step bench-register "Registering ZELT and a package for clients in other processes" OfferBenchmarkPackage
    for name in "${wanted[@]}"; do
        program=$folder/bench_$name.exe
        [ "$name" != remote64 ] || program=build/release64/bench/bench_remote.exe
        [ -f "$program" ] || Fail "There is no benchmark \"$name\"; the benchmarks are in the folder bench."
        # The output is shown as it comes, and kept: in a file, because processes that Wine leaves behind keep a pipe open.
        : >"$logFolder/bench-$name.log"
        tail -f "$logFolder/bench-$name.log" 8>&- &
        local shown=$! status=0
        timeout 1800 wine "$program" "${options[@]}" >>"$logFolder/bench-$name.log" 2>&1 8>&- || status=$?
        sleep 1
        kill "$shown"
        wait "$shown" 2>/dev/null || true
        [ "$status" -eq 0 ] || missed+=("$name")
    done
    FailWhenMissed "${missed[@]}"
}

# FailWhenMissed [name...]: fails if any benchmark is named, and names them.
FailWhenMissed()
{
    [ $# -eq 0 ] || Fail "These benchmarks failed or missed a goal: $*."
}

# BenchNatively <name> [option...]
BenchNatively()
{
    local name=$1
    shift
    BuildPreset native zeltctl "bench_$name"
    timeout 1800 "build/native/bench/bench_$name" "$@" | tee "$logFolder/bench-$name.log"
}

# Registers both editions and the sample package, and exports a package of the sample manager from each, without logging.
OfferBenchmarkPackage()
{
    local key
    wine "$(WindowsPath "$root/build/release/shell/ZELT.EXE")" /RegServer
    wine "$(WindowsPath "$root/build/release64/shell/ZELT64.EXE")" /RegServer
    wine 'C:\windows\syswow64\regsvr32.exe' /s "$(WindowsPath "$root/build/release/samples/SamplePackage.dll")"
    wine 'C:\windows\system32\regsvr32.exe' /s "$(WindowsPath "$root/build/release64/samples/SamplePackage.dll")"
    for key in 'HKCU\Software\ZELT' 'HKCU\Software\ZELT\64-bit'; do
        wine reg add "$key" /f /v Package1 /t REG_MULTI_SZ /s '|' \
            /d '{B55C9180-454E-4B78-A109-B9536A903BF9}|0|Aromatics|Benchmark|false'
        wine reg add "$key" /f /v NumPackages /t REG_DWORD /d 1
    done
}
