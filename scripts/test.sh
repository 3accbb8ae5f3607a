# Every test of both architectures. Sourced by ./dev.

Test()
{
    LockTree
    Build
    UsePrefix test
    local architecture failed=0
    for architecture in "${architectures[@]}"; do
        Say "Tests, $architecture"
        rm -f "$logFolder/tests-$architecture.xml"
        ctest --test-dir "build/$architecture" --output-on-failure --no-tests=error --timeout 300 \
            --output-junit "$logFolder/tests-$architecture.xml" --output-log "$logFolder/tests-$architecture.log" 8>&- || failed=1
    done
    Summarise "$failed"
}

# The number in attribute $1 of the root element of the test report $2.
ReportedNumber()
{
    [[ $(<"$2") =~ \<testsuite[^\>]*[[:space:]]"$1"=\"([0-9]+)\" ]] || Fail "The report $2 lacks the number of $1."
    echo "${BASH_REMATCH[1]}"
}

# The last line of ./dev test: both architectures together. Fails when a test failed or a report is missing.
Summarise()
{
    local total=0 failures=0 skipped=0 architecture report number
    for architecture in "${architectures[@]}"; do
        report=$logFolder/tests-$architecture.xml
        [ -s "$report" ] || Fail "The tests for $architecture did not report; see $logFolder/tests-$architecture.log."
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
