# The Debian packages that the project needs, and their installation. Sourced by ./dev.

# group | package | reason
packageTable='
build | g++-mingw-w64-i686-posix    | compiler, 32 bit: ZELT.EXE and the packages that it hosts
build | g++-mingw-w64-x86-64-posix  | compiler, 64 bit: ZELT64.EXE and the packages that it hosts
build | g++                         | compiler of this system: zeltctl for logs, and its tests with sanitizers
build | mingw-w64-tools             | IDL compiler
build | binutils-mingw-w64          | linker and resource compiler
build | cmake                       | build and test driver
build | ninja-build                 | build driver
build | libprotozero-dev            | encoder and decoder of recordings
build | libz-mingw-w64-dev          | compression of reports, for Windows
build | zlib1g-dev                  | the same for this system
build | googletest                  | sources of the test framework
build | dpkg-dev                    | unpacks the source packages of libraries
build | tcl                         | puts the sources of SQLite together
build | cmark-gfm                   | turns the user guide into the pages of the help
build | fp-utils                    | compiler and lister of help files
build | wine                        | runs programs and tests
build | wine32:i386                 | the 32-bit half of Wine, and the base type library that ours refer to
build | wine64                      | the 64-bit half of Wine
build | xvfb                        | a display for windows and message boxes
ship  | nsis                        | makes the setup program
ship  | zip                         | makes the portable zip
ship  | unzip                       | unpacks it in its test
check | clang-format                | formatting
check | shellcheck                  | checks of the shell scripts
check | cppcheck                    | static checks that need no build
lint  | clang-tidy                  | static checks that read the sources as the compiler does
system | debootstrap                | makes the folder of another Debian
fuzz  | clang                       | compiler with a guided fuzzer
fuzz  | libclang-rt-dev             | the fuzzer, and the sanitizers that clang links
pictures | imagemagick              | converts screenshots to the pictures of the user guide
pictures | fonts-wine               | the usual symbols and letters of windows
page  | chromium                    | shows the page of log export --html, and trace events in their viewer
page  | fonts-dejavu-core           | the fonts of that page
npm   | npm                         | fetches the viewer of trace events and the checker of workflows; not needed if npm is installed in another way
'

# Prints the packages of the groups in $@ that are not installed.
MissingPackages()
{
    local installed group package
    installed=$(dpkg-query -W -f '${Package} ${db:Status-Status}\n${Package}:${Architecture} ${db:Status-Status}\n')
    while IFS='| ' read -r group package _; do
        [[ -n $group && " $* " == *" $group "* ]] || continue
        grep -qxF "$package installed" <<<"$installed" || echo "$package"
    done <<<"$packageTable"
}

# InstallPackages <group...>: installs the packages of these groups that are missing.
InstallPackages()
{
    command -v dpkg-query >/dev/null || Fail "./dev installs Debian packages, and this is not a Debian system."
    local list missing
    list=$(MissingPackages "$@")
    [ -n "$list" ] || return 0
    mapfile -t missing <<<"$list"
    Say "Installing: ${missing[*]}"

    asRoot=()
    if [ "$EUID" -ne 0 ]; then
        command -v sudo >/dev/null || Fail "Packages are missing: run ./dev setup as root."
        asRoot=(sudo -n)
    fi
    export DEBIAN_FRONTEND=noninteractive
    Step apt-update "Refreshing the package lists" RefreshPackageLists
    Step apt-install "Installing the packages" AptInstall "${missing[@]}"
    list=$(MissingPackages "$@")
    [ -z "$list" ] || Fail "These packages are still missing after the installation: ${list//$'\n'/ }"
}

RefreshPackageLists()
{
    "${asRoot[@]}" dpkg --add-architecture i386
    # One of several indexes may be unreachable for a while; the installation shows whether the rest is enough.
    "${asRoot[@]}" apt-get update || echo "Some package lists could not be refreshed."
}

AptInstall()
{
    local install=("${asRoot[@]}" env DEBIAN_FRONTEND=noninteractive apt-get install -y --no-install-recommends
                   -o Dpkg::Options::=--force-confold)
    "${install[@]}" "$@" && return
    # While the indexes of two architectures are out of step, the latest versions of some libraries exist for only one of them:
    # the release's own versions exist for both.
    echo "Trying again with the versions of the release."
    "${install[@]}" --allow-downgrades -t "$(sed -n 's/^VERSION_CODENAME=//p' /etc/os-release)" "$@"
}
