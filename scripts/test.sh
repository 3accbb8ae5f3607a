# Every test: of both architectures under Wine, and of the commands for logs on this system, with sanitizers. Sourced by ./dev.

tested=("${architectures[@]}" sanitized)

Test()
{
    LockTree
    Build
    BuildPreset sanitized
    UsePrefix test
    local build failed=0
    for build in "${tested[@]}"; do
        Say "Tests, $build"
        rm -f "$logFolder/tests-$build.xml"
        ctest --test-dir "build/$build" --output-on-failure --no-tests=error --timeout 300 \
            --output-junit "$logFolder/tests-$build.xml" --output-log "$logFolder/tests-$build.log" 8>&- || failed=1
    done
    Summarise "$failed"
}

# The number in attribute $1 of the root element of the test report $2.
ReportedNumber()
{
    [[ $(<"$2") =~ \<testsuite[^\>]*[[:space:]]"$1"=\"([0-9]+)\" ]] || Fail "The report $2 lacks the number of $1."
    echo "${BASH_REMATCH[1]}"
}

# The last line of ./dev test: all builds together. Fails when a test failed or a report is missing.
Summarise()
{
    local total=0 failures=0 skipped=0 build report number
    for build in "${tested[@]}"; do
        report=$logFolder/tests-$build.xml
        [ -s "$report" ] || Fail "The tests for $build did not report; see $logFolder/tests-$build.log."
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
        Fail "$line"
    fi
    printf '%s\n' "$green$line$plain"
}
