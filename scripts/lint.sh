# Formatting and all static checks. Sourced by ./dev.

# Lint [--fix]: --fix formats the files instead of complaining.
Lint()
{
    [ $# -eq 0 ] || [ "$*" = --fix ] || Fail "./dev lint has no option \"$*\"; its only option is --fix."
    LockTree
    InstallPackages build check lint
    FetchLibraries
    if [ "${1:-}" = --fix ]; then
        mapfile -t sources < <(Sources)
        Step format "Formatting ${#sources[@]} files" clang-format -i "${sources[@]}"
    fi
    FastChecks
    LintWorkflows
    # clang-tidy needs the compile commands, and the headers generated from the IDL files, but no objects.
    Step configure-lint "Configuring for the checks" cmake --preset lint
    Step lint-headers "Compiling the IDL files" cmake --build build/lint --target \
        idl_zelt_files idl_cape-open_files idl_cape-open-thermo-context_files idl_vendor_files
    Step tidy "Static checks" Tidy
    printf '%s\n' "${green}No findings.$plain"
}

# clang reads the sources as the 32-bit cross compiler does, with that compiler's headers.
Tidy()
{
    local compiler=i686-w64-mingw32-g++-posix folder
    # Warnings are left to g++: the build has them on, as errors.
    local arguments=(--extra-arg=--target=i686-w64-windows-gnu --extra-arg=-w)
    for folder in $("$compiler" -E -x c++ -v /dev/null 2>&1 | sed -n '/^#include </,/^End/s/^ //p'); do
        # These folders hold g++'s own intrinsics; clang has its own.
        case "$folder" in
            */lib/gcc/*/include | */lib/gcc/*/include-fixed) ;;
            *) arguments+=("--extra-arg=-isystem$folder") ;;
        esac
    done
    local database=build/lint/compile_commands.json
    # Only the sources that the 32-bit build compiles: the database has no commands for others.
    printf '%s\n' "${sources[@]}" | grep '\.cpp$' | while read -r file; do
        ! grep -qF "\"$root/$file\"" "$database" || echo "$file"
    done >build/lint-sources
    [ -s build/lint-sources ] || { echo "No source is in $database."; return 1; }
    echo "$(wc -l <build/lint-sources) sources"
    xargs -a build/lint-sources -P "$(nproc)" -n 1 clang-tidy --quiet -p build/lint "${arguments[@]}"
}
