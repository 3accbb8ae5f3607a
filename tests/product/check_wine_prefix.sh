#!/bin/bash
# check_wine_prefix.sh <run-under-wine.sh> <source folder>: checks that a program that ctest starts never gets the user's own
# Wine prefix, and keeps the prefix that ./dev has made for it.
runner=$1
build=$2/build
home=$(mktemp -d) || exit 1
trap 'rm -rf "$home"' EXIT
failed=0

# Prefix <expected> <arguments of env...>
Prefix()
{
    local expected=$1 given
    shift
    # shellcheck disable=SC2016 # expanded by the inner shell
    given=$(env "$@" HOME="$home" "$runner" /bin/sh -c 'printf %s "$WINEPREFIX"')
    [ "$given" = "$expected" ] && return
    echo "With $*: the prefix is \"$given\", not \"$expected\"."
    failed=1
}

Prefix "$build/wine/ctest" -u WINEPREFIX
Prefix "$build/wine/ctest" WINEPREFIX=
Prefix "$build/wine/ctest" WINEPREFIX="$home/.wine"
Prefix "$build/wine/ctest" WINEPREFIX="$build/../elsewhere"
Prefix "$build/wine/ctest" WINEPREFIX="$build/wine/other"
Prefix "$build/wine/ctest" WINEPREFIX="$build/wine/other" ZELT_WINE_PREFIX="$build/wine/another"
Prefix "$build/wine/other" WINEPREFIX="$build/wine/other" ZELT_WINE_PREFIX="$build/wine/other"
Prefix "$home/elsewhere" WINEPREFIX="$home/elsewhere" ZELT_WINE_PREFIX="$home/elsewhere"

[ -f "$build/wine/ctest/system.reg" ] || { echo "There is no prefix in $build/wine/ctest."; failed=1; }
[ ! -e "$home/.wine" ] || { echo "The user's own prefix was made."; failed=1; }
# In the prefix, the user's folders are real folders, not links to those outside.
links=$(find "$build/wine/ctest/drive_c/users" -type l)
[ -z "$links" ] || { printf 'Links lead out of the prefix:\n%s\n' "$links"; failed=1; }
exit $failed
