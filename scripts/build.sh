# Configuring and building through the CMake presets. Sourced by ./dev.

# The product, and the programs that are also wanted on this system; the tests need `sanitized` too.
architectures=(i686 x86_64)
builds=("${architectures[@]}" native)

# Build [build]: nothing is configured or compiled twice.
Build()
{
    local wanted=("${builds[@]}") build
    if [ $# -gt 0 ]; then
        [[ " ${builds[*]} " == *" $1 "* ]] || Fail "There is no build \"$1\": it is one of ${builds[*]}."
        wanted=("$1")
    fi
    InstallPackages build
    FetchLibxml2
    NeedTool cmake
    for build in "${wanted[@]}"; do
        BuildPreset "$build"
    done
}

# BuildPreset <preset>
BuildPreset()
{
    if [ ! -f "build/$1/build.ninja" ]; then
        Step "configure-$1" "Configuring for $1" cmake --preset "$1"
    fi
    Step "build-$1" "Building for $1" cmake --build "build/$1"
}
