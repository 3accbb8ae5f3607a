# Guided fuzzing of the code that reads logs and recordings. Sourced by ./dev.

# How many inputs each program gets. log_commands gets fewer, because it needs ten times as long for each.
declare -A fuzzRuns=([log_reader]=1000000 [both_readers]=1000000 [log_commands]=100000 [recording_reader]=1000000)

# Fuzz [name...] [-- options]: runs the programs fuzz_<name> of tests/fuzz, all unless some are named; the options are
# libFuzzer's. Inputs that it considers worth keeping stay in build/fuzz/inputs; one that fails becomes build/fuzz/failed-*.
Fuzz()
{
    local wanted=() options=() name folder
    while [ $# -gt 0 ] && [ "$1" != -- ]; do
        wanted+=("$1")
        shift
    done
    [ $# -eq 0 ] || options+=("${@:2}")
    [ ${#wanted[@]} -gt 0 ] || wanted=("${!fuzzRuns[@]}")
    LockTree
    InstallPackages build fuzz
    FetchLibraries
    BuildPreset fuzz
    for name in "${wanted[@]}"; do
        [ -n "${fuzzRuns[$name]:-}" ] || Fail "There is no fuzzer \"$name\"; the fuzzers are in the folder tests/fuzz."
        folder=build/fuzz/inputs/$name
        mkdir -p "$folder"
        [ "$name" != recording_reader ] || cp tests/recordings/golden/sample_recording.zlr "$folder"
        Step "fuzz-$name" "Fuzzing $name (its progress is in $logFolder/fuzz-$name.log)" \
            "build/fuzz/tests/fuzz/fuzz_$name" -dict=tests/fuzz/log.dict -max_len=20000 -timeout=10 -print_final_stats=1 \
            -artifact_prefix="build/fuzz/failed-$name-" -runs="${fuzzRuns[$name]}" -seed=1 "${options[@]}" \
            "$folder" tests/fuzz/seeds
        # Some of libFuzzer's options only list something, and then there is no such line.
        grep -a '^stat::number_of_executed_units' "$logFolder/fuzz-$name.log" || true
    done
}
