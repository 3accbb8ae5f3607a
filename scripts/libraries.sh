# The sources of libxml2, from Debian's source package, with Debian's patches: the log viewer's XML reader is built from
# them with the project's own compilers. Sourced by ./dev.
# apt works on its own lists and cache below build/, so that the machine's configuration stays as it is and no root rights are
# needed. Once the sources are there, no network is needed either.

libxml2Version=2.9.14
libxml2Folder=$root/build/sources/libxml2

FetchLibxml2()
{
    [ ! -f "$libxml2Folder/CMakeLists.txt" ] || return 0
    NeedTool apt-get
    NeedTool dpkg-source
    Step libxml2 "Fetching the sources of libxml2 $libxml2Version from Debian" UnpackLibxml2
}

UnpackLibxml2()
{
    local work=$root/build/sources/work
    rm -rf "$work" "$libxml2Folder"
    mkdir -p "$work/lists/partial" "$work/cache/archives/partial"
    # The machine's own package sources, with sources requested instead of programs.
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
    # A list that does not arrive does not matter as long as another contains the package.
    "${apt[@]}" update || true
    "${apt[@]}" source --download-only libxml2 ||
        { echo "Debian's archive does not give the source package libxml2: are its package sources reachable?"; return 1; }
    local description=("$work"/libxml2_"$libxml2Version"*.dsc)
    [ -f "${description[0]}" ] || { echo "The source package libxml2 is not of version $libxml2Version."; return 1; }
    # apt has verified the package by the archive's signature.
    dpkg-source --no-check -x "${description[0]}" "$work/libxml2"
    # Only complete sources get the name that the build looks for.
    mv "$work/libxml2" "$libxml2Folder"
    rm -rf "$work"
}
