# Every test: of both architectures under Wine, and of the commands for logs and recordings on this system, with sanitizers.
# Sourced by ./dev.

# step | Wine prefix | build | which of its tests. All runs of the step "alone" take place at the same time. Tests labelled
# "together" share nothing of the system and run two at a time. The others need the registry, the server and the windows of a
# prefix for themselves, so each of their runs has its own prefix. "rest" and "wide" run the tests that no other run has, so that
# no test is left out.
testRuns=(
    'together | test     | i686      | -L together --parallel 2'
    'alone    | windows  | i686      | -L windows'
    'alone    | served   | i686      | -L served'
    'alone    | rest     | i686      | -LE together|windows|served'
    'alone    | wide     | x86_64    | -LE together'
    'last     | test     | x86_64    | -L together --parallel 2'
    'native   | none     | sanitized | --parallel 2'
)

Test()
{
    local checks=1
    case "${1:-}" in
        '') ;;
        --on) OnSystem "${2:-}" test --without-checks; return ;;
        --without-checks) checks= ;;
        *) Fail "./dev test does not know \"$1\"; ./dev help lists the options." ;;
    esac
    LockTree
    [ -z "$checks" ] || FastChecks
    local build step prefix choice row failed=0
    for build in "${architectures[@]}"; do
        Build "$build"
    done
    rm -f "$logFolder"/tests-*
    UsePrefix test
    # Tests under Wine wait more than they work, which leaves time for the last build.
    mkdir -p "$logFolder"
    ( renice -n 19 -p "$BASHPID" >/dev/null && BuildPreset sanitized ) >"$logFolder/last-build" 2>&1 8>&- &
    lastBuild=$!
    AtExit EndLastBuild
    testReports=()
    for row in "${testRuns[@]}"; do
        IFS='| ' read -r step prefix build choice <<<"$row"
        testReports+=("$logFolder/tests-$step-$prefix-$build.xml")
        [ "$step" = alone ] || AllInOwnPrefix || failed=1
        case "$step" in
            alone) InOwnPrefix "$prefix" Tests "$step" "$prefix" "$build" "$choice" ;;
            native)
                wait "$lastBuild" || { cat "$logFolder/last-build"; Fail "What is tested with sanitizers could not be built."; }
                lastBuild=
                cat "$logFolder/last-build"
                RunTests "$step" "$prefix" "$build" "$choice" || failed=1
                ;;
            *) Tests "$step" "$prefix" "$build" "$choice" || failed=1 ;;
        esac
    done
    AllInOwnPrefix || failed=1
    Summarise "$failed"
}

# Tests <step> <prefix> <build> <choice>: the tests of a row under Wine; Wine's server must survive them.
Tests()
{
    local failed=0
    WatchServer
    RunTests "$@" || failed=1
    ServerLives "the tests of $3 ($4)" || failed=1
    return "$failed"
}

RunTests()
{
    local step=$1 prefix=$2 build=$3 choice=$4 log=$logFolder/tests-$1-$2-$3 options
    read -r -a options <<<"$choice"
    Say "Tests, $build ($choice)"
    # Simultaneous runs mix their lines, so each line begins with the name of its run's prefix. The pipe is ctest's own: no test
    # inherits it.
    ctest --test-dir "build/$build" "${options[@]}" --output-on-failure --no-tests=error --timeout 300 \
        --output-junit "$log.xml" --output-log "$log.log" 8>&- | sed -u "s/^/$prefix: /"
}

lastBuild=
EndLastBuild() { [ -z "$lastBuild" ] || EndTree "$lastBuild"; }

# The number in attribute $1 of the root element of the test report $2.
ReportedNumber()
{
    [[ $(<"$2") =~ \<testsuite[^\>]*[[:space:]]"$1"=\"([0-9]+)\" ]] || Fail "The report $2 lacks the number of $1."
    echo "${BASH_REMATCH[1]}"
}

# Summarise <whether a run failed>: the last line of ./dev test, the total of all runs. Fails when a run or a test failed or a
# report is missing.
Summarise()
{
    local total=0 failures=0 skipped=0 report number
    for report in "${testReports[@]}"; do
        [ -s "$report" ] || Fail "A run of tests did not report; see ${report%.xml}.log."
        number=$(ReportedNumber tests "$report")
        total=$((total + number))
        number=$(ReportedNumber failures "$report")
        failures=$((failures + number))
        number=$(ReportedNumber skipped "$report")
        skipped=$((skipped + number))
        number=$(ReportedNumber disabled "$report")
        skipped=$((skipped + number))
    done
    local line="$((total - failures - skipped)) passed, $failures failed"
    [ "$skipped" -eq 0 ] || line+=", $skipped skipped"
    if [ "$1" -ne 0 ] || [ "$failures" -ne 0 ]; then
        # Repeats the failed tests, which are printed above among a thousand that passed.
        perl scripts/failed-tests.pl "${testReports[@]}"
        Fail "$line"
    fi
    printf '%s\n' "$green$line$plain"
}
