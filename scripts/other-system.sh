# ./dev test --on SYSTEM and ./dev verify --on SYSTEM: the same with another Debian, its compilers and its Wine, in a folder below
# build/. Sourced by ./dev. The run's processes and mounts are in namespaces that end with it.

# name | suite
otherSystems='
debian13 | trixie
'

# OnSystem <name> <arguments of ./dev...>
OnSystem()
{
    local system=$1 name suite known=
    shift
    while IFS='| ' read -r name suite; do
        [ -n "$name" ] || continue
        [ "$name" = "$system" ] && break
        known+=" $name"
        suite=
    done <<<"$otherSystems"
    [ -n "$suite" ] || Fail "There is no system \"$system\" to test on; these are:$known."
    [ "$EUID" -eq 0 ] || Fail "Only root can make the folder of another system: run ./dev $1 --on $name as root."
    LockTree
    InstallPackages system
    NeedTool debootstrap
    # The library versions are those of this system.
    FetchLibraries
    local folder=$root/build/$name
    if [ ! -e "$folder/made" ]; then
        Step "$name" "Making a folder with Debian's $suite" MakeSystem "$folder" "$suite"
    fi
    # The ./dev in the other system locks its own build folder.
    exec 8>&-
    unshare --mount --pid --fork --kill-child -- "$BASH" -c "$(declare -f InSystem); InSystem \"\$@\"" InSystem \
        "$root" "$folder" "$@" || exit
}

# MakeSystem <folder> <suite>
MakeSystem()
{
    rm -rf "$1"
    mkdir -p "$1"
    debootstrap --variant=minbase "$2" "$1/root" http://deb.debian.org/debian
    mkdir -p "$1/build"
    touch "$1/made"
}

# InSystem <tree> <folder> <arguments of ./dev...>: runs ./dev in the other system, as the first process of its namespaces.
InSystem()
{
    set -e
    # A test looks for this name in the programs, so it must occur nowhere else.
    local system=$2/root tree=/srv/zelt-tree item
    mount --make-rprivate /
    mkdir -p "$system$tree"
    mount --bind "$1" "$system$tree"
    mount --bind "$2/build" "$system$tree/build"
    for item in sources package; do
        [ -d "$1/build/$item" ] || continue
        mkdir -p "$2/build/$item"
        mount --bind "$1/build/$item" "$system$tree/build/$item"
    done
    mount -t proc proc "$system/proc"
    mount --rbind /dev "$system/dev"
    mount -t tmpfs tmpfs "$system/tmp"
    for item in /etc/resolv.conf /etc/hosts; do
        [ ! -e "$item" ] || cp -L "$item" "$system$item"
    done
    exec env -i PATH=/usr/sbin:/usr/bin:/sbin:/bin HOME=/root TERM="${TERM:-dumb}" chroot "$system" "$tree/dev" "${@:3}"
}
