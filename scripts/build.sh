# Configuring and building through the CMake presets. Sourced by ./dev.

# The two builds of the product, and the native build of the programs that also run on this system. The tests also need the preset
# sanitized.
architectures=(i686 x86_64)
builds=("${architectures[@]}" native)

# Build [build]: makes one build, or all. What is up to date is not configured or compiled again.
Build()
{
    local wanted=("${builds[@]}") build
    if [ $# -gt 0 ]; then
        [[ " ${builds[*]} " == *" $1 "* ]] || Fail "There is no build \"$1\". The builds are: ${builds[*]}."
        wanted=("$1")
    fi
    SetUpBuild
    for build in "${wanted[@]}"; do
        BuildPreset "$build"
    done
}

# Installs and fetches what every build needs.
SetUpBuild()
{
    InstallPackages build
    FetchLibraries
    NeedTool cmake
}

# BuildPreset <preset> [target...]
BuildPreset()
{
    local preset=$1
    shift
    # An existing build must be configured again to get changed settings of its preset.
    if [ ! -f "build/$preset/build.ninja" ] || [ CMakePresets.json -nt "build/$preset/build.ninja" ]; then
        Step "configure-$preset" "Configuring for $preset" cmake --preset "$preset"
    fi
    Step "build-$preset" "Building for $preset" cmake --build "build/$preset" ${1:+--target "$@"}
}

# BuildRelease [target...]: builds the 32-bit ZELT and zeltctl as they are shipped, and the targets, in build/release: without the
# standard library's checks, which the tests' programs have.
BuildRelease() { BuildPreset release zelt zeltctl "$@"; }
