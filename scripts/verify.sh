# The zip that tests ZELT on a computer with Windows, and its run under Wine. Sourced by ./dev.

# StageVerification <folder> <setup program>: collects the test programs of both builds, with the shipped programs in the place of
# the built ones, and the files that the tests read. The tree has the layout of this one.
StageVerification()
{
    local tree=$1/tree build tools file
    mkdir -p "$tree/docs" "$tree/tests"
    for build in i686 x86_64; do
        tools=$build-w64-mingw32
        (cd "build/$build" && find samples tests \( -name CMakeFiles -o -name fuzz \) -prune \
            -o -type f \( -iname '*.exe' -o -iname '*.dll' \) -print) |
            while read -r file; do
                mkdir -p "$tree/build/$build/${file%/*}"
                "$tools-strip" -o "$tree/build/$build/$file" "build/$build/$file"
            done
        mkdir -p "$tree/build/$build/"{idl,shell,ctl,screenshots}
        cp "build/$build/idl/"*.tlb "$tree/build/$build/idl/"
    done
    cp build/release/shell/{ZELT.EXE,BRIX.chm} "$tree/build/i686/shell/"
    cp build/release/ctl/zeltctl.exe "$tree/build/i686/ctl/"
    cp build/release64/shell/ZELT64.EXE "$tree/build/x86_64/shell/"
    cp build/release64/ctl/zeltctl64.exe "$tree/build/x86_64/ctl/"
    cp README.md "$tree/"
    cp docs/log-format.md docs/unverified.md "$tree/docs/"
    (cd tests && find data golden fuzz/seeds log_commands/golden recordings/golden log_commands/conversation.zlg \
        system/served_packages/*.vbs system/served_packages/*.ps1 verification/plan.txt -type f -print0 |
        tar --null --files-from - -cf - | tar -xf - -C "$tree/tests")
    cp "$2" "$tree/zelt-setup.exe"
    StageText packaging/verify/verify.cmd "$1/verify.cmd"
    StageText packaging/verify/README.txt "$1/README.txt"
}

# Verify: ./dev verify runs the verification of the last ./dev package under Wine, and prints its page.
Verify()
{
    local zip=("$root"/build/package/zelt-*-verify.zip)
    [ -e "${zip[0]}" ] || Fail "There is no verification yet: ./dev package makes it."
    case "${1:-}" in
        '') ;;
        --on) OnSystem "${2:-}" verify; return ;;
        *) Fail "./dev verify does not know \"$1\"; ./dev help lists the options." ;;
    esac
    LockTree
    InstallPackages build ship
    UsePrefix verify
    TestVerification "${zip[0]}"
    cat "$root/build/verify/verify-result.txt"
}

# TestVerification <zip>: extracts the zip and runs it, as its user does.
TestVerification()
{
    verifyFolder=$root/build/verify
    rm -rf "$verifyFolder"
    mkdir -p "$verifyFolder"
    Step verify-extract "Extracting the verification" unzip -q "$1" -d "$verifyFolder"
    Step verify "Running the verification under Wine" RunVerification
}

# Fails when a test failed, or when the page lacks a program or a point. Under Wine, the page says of each point that it cannot be
# seen.
RunVerification()
{
    local status=0 result=$verifyFolder/verify-result.txt command
    command=$(echo "$verifyFolder"/zelt-*/verify.cmd)
    wine cmd /c "$(WindowsPath "$command")" /result "$(WindowsPath "$result")" || status=$?
    [ "$status" -eq 0 ] || { echo "verify.cmd ended with $status."; return 1; }
    # The heading, the system, each program, and each row of the page.
    grep -q '^  System     Wine ' "$result" || { echo "The page does not name the system."; return 1; }
    [ "$(grep -c '^  passed ' "$result")" -ge 12 ] || { echo "Fewer than twelve programs passed."; return 1; }
    local points
    points=$(grep -c '^row |.* windows' tests/verification/plan.txt)
    [ "$(grep -c '^               cannot be tested under Wine' "$result")" -eq "$points" ] || { echo "Not all $points points are there."; return 1; }
}
