#!/bin/bash
# run-under-wine.sh <Wine's loader> <program> [argument...]: runs a built program for ctest. Its output goes through a file:
# services that Wine starts on the way inherit the output and outlive the program, and ctest would wait for them at its own
# pipe.
output=$(mktemp) || exit 1
trap 'rm -f "$output"' EXIT
"$@" >"$output" 2>&1 </dev/null
status=$?
cat "$output"
exit $status
