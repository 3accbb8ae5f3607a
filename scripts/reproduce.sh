# Two builds of the current commit, in folders with different names, must give the same programs. Sourced by ./dev.

Reproduce()
{
    LockTree
    InstallPackages build
    FetchLibraries
    git rev-parse HEAD >/dev/null 2>&1 || Fail "./dev reproduce needs a checkout: it builds the current commit."
    local folder=$root/build/reproduce copy
    local copies=("$folder/one" "$folder/below/another-one")
    rm -rf "$folder"
    for copy in "${copies[@]}"; do
        mkdir -p "$copy/build/sources"
        Step "reproduce-sources-${copy##*/}" "Copying the commit to ${copy#"$root"/}" CopyCommit "$copy"
        Step "reproduce-build-${copy##*/}" "Building ZELT.EXE and ZELT64.EXE there" BuildCopy "$copy"
    done
    local program
    for program in release/shell/ZELT.EXE release64/shell/ZELT64.EXE; do
        cmp "${copies[0]}/build/$program" "${copies[1]}/build/$program" || Fail "The two builds differ."
        sha256sum "${copies[@]/%//build/$program}"
    done
    printf '%s\n' "${green}Both builds gave the same programs.$plain"
}

CopyCommit()
{
    git archive HEAD | tar -x -C "$1"
    cp -r "$libxml2Folder" "$sqliteFolder" "$1/build/sources/"
}

# Without a cache of compiled files, so that both builds really compile.
BuildCopy()
{
    cd "$1"
    unset CMAKE_C_COMPILER_LAUNCHER CMAKE_CXX_COMPILER_LAUNCHER
    export CCACHE_DISABLE=1
    local preset
    for preset in release release64; do
        cmake --preset "$preset"
        cmake --build "build/$preset" --target zelt
    done
}
