#!/bin/bash
# run-under-wine.sh <Wine's loader> <program> [argument...]: runs a built program for ctest. Its output goes through a file:
# services that Wine starts on the way inherit the output and outlive the program; if the output were ctest's own pipe, ctest
# would wait for them.
root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
# ZELT_WINE_PREFIX names the prefix that ./dev has made. Any other prefix is the user's own, and is not used.
if [ -z "${WINEPREFIX:-}" ] || [ "$WINEPREFIX" != "${ZELT_WINE_PREFIX:-}" ]; then
    source "$root/scripts/wine-prefix.sh"
    UseLastingPrefix || { echo "run-under-wine.sh: a Wine prefix could not be made in $WINEPREFIX." >&2; exit 1; }
fi
output=$(mktemp) || exit 1
trap 'rm -f "$output"' EXIT
"$@" >"$output" 2>&1 </dev/null
status=$?
# Wine may end before the program begins: see FixAddresses in scripts/wine.sh, which prevents that where possible.
if [ $status -eq 1 ] && [ ! -s "$output" ]; then
    echo "run-under-wine.sh: the program ended with 1 and printed nothing; this is its second start." >&2
    "$@" >"$output" 2>&1 </dev/null
    status=$?
fi
# When a program has ended, Wine's server waits a second for its process to be gone, and then kills it. On a busy machine that
# second may be too short: the status is then that of the kill, and only the program's output says how it ended.
if [ $status -eq 137 ] && tail -n 3 "$output" | grep -q '^\[  PASSED  \]' && ! grep -q '^\[  FAILED  \]' "$output"; then
    echo "run-under-wine.sh: the program ended well, but its process took too long to be gone and was killed." >&2
    status=0
fi
cat "$output"
exit $status
