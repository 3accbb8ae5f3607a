# The checks that need no build and take a minute: formatting, settings, scripts, sources. Any finding is a failure. Sourced by
# ./dev.

# The project's files with these names, including new ones; outside a checkout, all such files outside ./build.
Files()
{
    local file
    if command -v git >/dev/null && git rev-parse --is-inside-work-tree >/dev/null 2>&1; then
        git ls-files --cached --others --exclude-standard -- "$@"
    else
        local names=()
        for file in "$@"; do names+=(-o -name "$file"); done
        find . -path ./build -prune -o -type f \( "${names[@]:1}" \) -printf '%P\n'
    fi | while IFS= read -r file; do
        # Git also lists files that were deleted.
        [ ! -f "$file" ] || printf '%s\n' "$file"
    done | sort
}

Sources() { Files '*.cpp' '*.h'; }

# Scripts <ending> <interpreter>: the scripts whose names have the ending, or whose first lines name the interpreter.
Scripts()
{
    local file first
    Files '*' | while IFS= read -r file; do
        first=
        IFS= read -r first <"$file" || true
        [[ $file != *."$1" && ! $first =~ ^\#!.*/$2($|\ ) ]] || printf '%s\n' "$file"
    done
}

Check()
{
    LockTree
    FastChecks
    printf '%s\n' "${green}No findings.$plain"
}

FastChecks()
{
    InstallPackages check
    mapfile -t sources < <(Sources)
    [ ${#sources[@]} -gt 0 ] || Fail "There is no source to check."
    Step check-format "Checking the formatting of ${#sources[@]} files" clang-format --dry-run --Werror "${sources[@]}"
    Step check-settings "Checking the settings of the checkers" CheckSettings
    Step check-shell "Checking the shell scripts" CheckShellScripts
    Step check-perl "Checking the Perl scripts" CheckPerlScripts
    Step check-sources "Checking the sources" CheckSources
}

# clang-format and clang-tidy accept a key that is given twice, and use the last one.
CheckSettings()
{
    perl scripts/duplicate-keys.pl .clang-format .clang-tidy
}

CheckShellScripts()
{
    # Leave out the scripts that ./dev sources: shellcheck follows them from there, because one sets variables that another uses.
    local scripts
    mapfile -t scripts < <(Scripts sh '(ba)?sh' | grep -vxFf <(sed -n 's/^source //p' dev))
    printf '%s\n' "${scripts[@]}"
    shellcheck --external-sources --check-sourced "${scripts[@]}"
}

CheckPerlScripts()
{
    local script failed=0
    while IFS= read -r script; do
        perl -wc "$script" || failed=1
    done < <(Scripts pl perl)
    return $failed
}

# Checks the sources as the 32-bit build reads them, as far as that is possible without the system's headers.
# cppcheck-suppressions.txt says which checks are off, and why.
CheckSources()
{
    # shellcheck disable=SC2054 # the commas are cppcheck's
    local options=(--enable=warning,performance,portability --std=c++20 --language=c++ --platform=win32W -D_WIN32
                   --library=googletest --library=windows -I.
                   '-DSTDMETHOD(name)=virtual HRESULT name' '-DSTDMETHOD_(type, name)=virtual type name'
                   -DSTDMETHODIMP=HRESULT '-DSTDMETHODIMP_(type)=type' '-D__uuidof(name)=IID_OF_NAME'
                   # cppcheck cannot expand this macro, but it can read it as a function call.
                   -ULOGGED)
    mkdir -p build/cppcheck
    printf '%s\n' "${sources[@]}" | grep '\.cpp$' >build/cppcheck-sources
    cppcheck "${options[@]}" --inline-suppr --suppressions-list=scripts/cppcheck-suppressions.txt --error-exitcode=1 \
        --cppcheck-build-dir=build/cppcheck -j "$(nproc)" --quiet --file-list=build/cppcheck-sources
}
