# The sources of the libraries that the build compiles itself, with the project's own compilers, from Debian's source packages with
# Debian's patches. Sourced by ./dev.
# apt uses a separate cache and lists below build/, so that the machine's configuration does not change and no root rights are
# needed. Once the sources are there, no network is needed either.

libxml2Version=2.9.14
libxml2Folder=$root/build/sources/libxml2
sqliteVersion=3.40.1
sqliteFolder=$root/build/sources/sqlite3

FetchLibraries()
{
    FetchLibrary libxml2 "$libxml2Version" CMakeLists.txt
    FetchLibrary sqlite3 "$sqliteVersion" sqlite3.c
}

# FetchLibrary <source package> <version> <file that the build needs>
FetchLibrary()
{
    [ ! -f "$root/build/sources/$1/$3" ] || return 0
    NeedTool apt-get
    NeedTool dpkg-source
    Step "$1" "Fetching the sources of $1 $2 from Debian" UnpackLibrary "$1" "$2"
}

# UnpackLibrary <source package> <version>
UnpackLibrary()
{
    local work=$root/build/sources/work target=$root/build/sources/$1
    rm -rf "$work" "$target"
    mkdir -p "$work/lists/partial" "$work/cache/archives/partial"
    # The machine's own package archives, asked for source packages instead of binary ones.
    local file
    mkdir -p "$work/sources.list.d"
    for file in /etc/apt/sources.list /etc/apt/sources.list.d/*.list; do
        [ ! -f "$file" ] || sed -n 's/^deb /deb-src /p' "$file" >>"$work/sources.list"
    done
    touch "$work/sources.list"
    for file in /etc/apt/sources.list.d/*.sources; do
        [ ! -f "$file" ] || sed 's/^Types:.*/Types: deb-src/' "$file" >"$work/sources.list.d/${file##*/}"
    done
    local apt=(apt-get -o "Dir::Etc::SourceList=$work/sources.list" -o "Dir::Etc::SourceParts=$work/sources.list.d"
               -o "Dir::State::Lists=$work/lists" -o "Dir::Cache=$work/cache" -o APT::Sandbox::User=)
    cd "$work"
    # A list that cannot be fetched does not matter if another contains the package.
    "${apt[@]}" update || true
    "${apt[@]}" source --download-only "$1" ||
        { echo "The source package $1 could not be fetched: are the machine's package sources reachable?"; return 1; }
    local description=("$work/$1_$2"*.dsc)
    [ -f "${description[0]}" ] || { echo "The source package $1 does not have version $2."; return 1; }
    # apt has verified the package by the archive's signature.
    dpkg-source --no-check -x "${description[0]}" "$work/$1"
    if [ "$1" = sqlite3 ]; then
        JoinSqlite "$work/$1" "$work/joined"
        rm -rf "${work:?}/$1"
        mv "$work/joined" "$work/$1"
    fi
    # Only complete sources get the name that the build looks for.
    mv "$work/$1" "$target"
    rm -rf "$work"
}

# JoinSqlite <sources> <folder>: SQLite is made to be compiled as one file, which its own tools put together.
JoinSqlite()
{
    mkdir -p "$2/making"
    (
        cd "$2/making"
        "$1/configure" --disable-tcl --disable-readline
        make sqlite3.c
    )
    cp "$2/making/sqlite3.c" "$2/making/sqlite3.h" "$1/LICENSE.md" "$2/"
    rm -rf "$2/making"
}
