# Configuring and building through the CMake presets. Sourced by ./dev.

architectures=(i686 x86_64)

# Build [architecture]: nothing is configured or compiled twice.
Build()
{
    local wanted=("${architectures[@]}") architecture
    if [ $# -gt 0 ]; then
        [[ " ${architectures[*]} " == *" $1 "* ]] || Fail "There is no architecture \"$1\": it is one of ${architectures[*]}."
        wanted=("$1")
    fi
    InstallPackages build
    FetchLibxml2
    NeedTool cmake
    for architecture in "${wanted[@]}"; do
        if [ ! -f "build/$architecture/build.ninja" ]; then
            Step "configure-$architecture" "Configuring for $architecture" cmake --preset "$architecture"
        fi
        Step "build-$architecture" "Building for $architecture" cmake --build "build/$architecture"
    done
}
