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

# The number in attribute $1 of the test report $2's root element.
ReportedNumber() { sed -n "0,/<testsuite/s/.*\b$1=\"\([0-9]*\)\".*/\1/p" <(tr -d '\n' <"$2" | sed 's/>/>\n/g' | grep -m1 '<testsuite ') ; }

# The last line of ./dev test: both architectures together. Fails when a test failed or a report is missing.
Summarise()
{
    local total=0 failures=0 skipped=0 architecture report
    for architecture in "${architectures[@]}"; do
        report=$logFolder/tests-$architecture.xml
        [ -s "$report" ] || Fail "The tests for $architecture did not report; see $logFolder/tests-$architecture.log."
        total=$((total + $(ReportedNumber tests "$report")))
        failures=$((failures + $(ReportedNumber failures "$report")))
        skipped=$((skipped + $(ReportedNumber skipped "$report") + $(ReportedNumber disabled "$report")))
    done
    local line="$((total - failures - skipped)) passed, $failures failed"
    [ "$skipped" -eq 0 ] || line+=", $skipped skipped"
    if [ "$1" -ne 0 ] || [ "$failures" -ne 0 ]; then
        Fail "$line"
    fi
    printf '%s\n' "$green$line$plain"
}
