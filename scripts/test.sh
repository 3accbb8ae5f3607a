# Every test: of both architectures under Wine, and of the commands for logs on this system, with sanitizers. Sourced by ./dev.

# build | which of its tests; those labelled "together" share nothing of the system and run two at a time.
testRuns=(
    'i686      | -L together --parallel 2'
    'i686      | -LE together'
    'x86_64    | -L together --parallel 2'
    'sanitized | --parallel 2'
)

Test()
{
    LockTree
    FastChecks
    local build choice row run failed=0 options
    for build in "${architectures[@]}"; do
        Build "$build"
    done
    UsePrefix test
    WatchServer
    # Tests under Wine wait more than they work, which leaves time for the last build.
    mkdir -p "$logFolder"
    ( renice -n 19 -p "$BASHPID" >/dev/null && BuildPreset sanitized ) >"$logFolder/last-build" 2>&1 8>&- &
    lastBuild=$!
    AtExit EndLastBuild
    testReports=()
    for row in "${testRuns[@]}"; do
        IFS='| ' read -r build choice <<<"$row"
        read -r -a options <<<"$choice"
        if [ "$build" = sanitized ]; then
            wait "$lastBuild" || { cat "$logFolder/last-build"; Fail "What is tested with sanitizers could not be built."; }
            lastBuild=
            cat "$logFolder/last-build"
        fi
        Say "Tests, $build ($choice)"
        run=$logFolder/tests-${#testReports[@]}-$build
        testReports+=("$run.xml")
        rm -f "$run.xml"
        ctest --test-dir "build/$build" "${options[@]}" --output-on-failure --no-tests=error --timeout 300 \
            --output-junit "$run.xml" --output-log "$run.log" 8>&- || failed=1
        ServerLives "the tests of $build ($choice)" || failed=1
    done
    Summarise "$failed"
}

lastBuild=
EndLastBuild() { [ -z "$lastBuild" ] || EndTree "$lastBuild"; }

# The number in attribute $1 of the root element of the test report $2.
ReportedNumber()
{
    [[ $(<"$2") =~ \<testsuite[^\>]*[[:space:]]"$1"=\"([0-9]+)\" ]] || Fail "The report $2 lacks the number of $1."
    echo "${BASH_REMATCH[1]}"
}

# The last line of ./dev test: the total of all runs. Fails when a test failed or a report is missing.
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
        # Repeated here: above, they stand among a thousand that passed.
        perl scripts/failed-tests.pl "${testReports[@]}"
        Fail "$line"
    fi
    printf '%s\n' "$green$line$plain"
}
