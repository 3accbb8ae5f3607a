# The setup program and the portable zip, from one folder that holds the files as they will be installed; and the zips of symbols
# and of the verification. Sourced by ./dev.

Package()
{
    LockTree
    # The test of the packages needs the samples.
    Build i686
    Build x86_64
    BuildRelease user_help
    BuildPreset release64 zelt zeltctl
    InstallPackages ship
    NeedTool makensis
    NeedTool zip
    local version
    version=$(ProductVersion)
    packageFolder=$root/build/package
    rm -rf "$packageFolder"
    mkdir -p "$packageFolder"
    setupProgram=$packageFolder/zelt-$version-setup.exe
    portableZip=$packageFolder/zelt-$version-portable.zip

    Step package-stage "Collecting the files" StageFiles "$packageFolder/zelt-$version"
    Step package-setup "Making the setup program" MakeSetup "$packageFolder/zelt-$version" "$version" "$setupProgram"
    Step package-zip "Making the portable zip" MakeZip "zelt-$version" "$portableZip"
    symbolsZip=$packageFolder/zelt-$version-symbols.zip
    Step package-symbols "Keeping the symbols" MakeSymbolsZip "$symbolsZip"
    [ -z "${ZELT_RELEASE_URL:-}" ] || Step package-manifests "Writing the manifests for winget and Scoop" \
        WriteManifests "$version" "$setupProgram" "$portableZip" "$packageFolder"
    verifyZip=$packageFolder/zelt-$version-verify.zip
    Step package-verify "Making the verification" MakeVerifyZip "zelt-$version-verify" "$setupProgram" "$verifyZip"
    # These two tests wait more than they work, so they run at the same time.
    InOwnPrefix verify TestVerification "$verifyZip"
    TestPackage
    AllInOwnPrefix || Fail "The verification failed."
    printf '%s\n' "$green$setupProgram" "$portableZip" "$symbolsZip" "$verifyZip$plain"
}

ProductVersion() { sed -n 's/^CMAKE_PROJECT_VERSION:STATIC=//p' build/release/CMakeCache.txt; }

# Sign <program...>: signs each with the command in ZELT_SIGN, which gets the path of the program as its last argument. Does
# nothing if the variable is empty or not set.
Sign()
{
    local file tool
    read -r -a tool <<<"${ZELT_SIGN:-}"
    [ ${#tool[@]} -gt 0 ] || return 0
    for file; do "${tool[@]}" "$file"; done
}

# StageText <source> <target>: copies a text file, with Windows line ends.
StageText()
{
    mkdir -p "$(dirname "$2")"
    sed 's/\r*$/\r/' "$1" >"$2"
}

# StageFiles <folder>: collects in the folder everything that is shipped.
StageFiles()
{
    local build=$root/build/release file
    mkdir -p "$1/docs"
    cp "$build/shell/ZELT.EXE" "$build/ctl/zeltctl.exe" "$build/shell/BRIX.chm" "$1/"
    cp "${build}64/shell/ZELT64.EXE" "${build}64/ctl/zeltctl64.exe" "$1/"
    cp -r "$build/help/utils/." "$1/docs/"
    # The guide explains these logs command by command.
    cp -r docs/user-guide/examples "$1/docs/"
    StageText LICENSE "$1/LICENSE.txt"
    StageText THIRD-PARTY.md "$1/THIRD-PARTY.txt"
    StageText CHANGELOG.md "$1/CHANGELOG.txt"
    StageText "$libxml2Folder/Copyright" "$1/licences/libxml2.txt"
    StageText "$sqliteFolder/LICENSE.md" "$1/licences/sqlite.txt"
    StageText /usr/share/doc/libprotozero-dev/copyright "$1/licences/protozero.txt"
    StageText /usr/share/doc/libz-mingw-w64-dev/copyright "$1/licences/zlib.txt"
    StageText /usr/share/doc/mingw-w64-i686-dev/copyright "$1/licences/mingw-w64.txt"
    StageText /usr/share/doc/g++-mingw-w64-i686-posix/copyright "$1/licences/gcc.txt"
    # Sign before the bill of materials is made: its checksums are those of the signed files.
    Sign "$1"/{ZELT,ZELT64}.EXE "$1"/zeltctl{,64}.exe
    # If the guide has no pictures yet, their folder would be empty.
    find "$1" -type d -empty -delete
    perl scripts/bill-of-materials.pl "$(ProductVersion)" "$(SourceDate)" "$1" THIRD-PARTY.md >"$1/licences/zelt.spdx.json"
    chmod -R u=rwX,go=rX "$1"
    for file in ZELT.EXE ZELT64.EXE zeltctl.exe zeltctl64.exe BRIX.chm docs/zelt.htm docs/style.css \
        docs/examples/heater-{package,unit}.zlg licences/{libxml2,sqlite,zlib}.txt licences/zelt.spdx.json; do
        [ -s "$1/$file" ] || { echo "$file is missing."; return 1; }
    done
}

# WriteLists <stage> <folder>: writes the files and folders of the stage, and the classes that the build registers, as macros that
# the setup program inserts. So the uninstaller removes exactly what setup has installed.
WriteLists()
{
    mkdir -p "$2"
    (
        cd "$1"
        echo '!macro InstallAll'
        find . -mindepth 1 -type d -printf '%P\n' | sort | sed 's|/|\\|g; s|.*|    !insertmacro InstallFolder "&"|'
        # 32-bit Windows gets no 64-bit programs.
        find . -type f -printf '%P\n' | sort | sed 's|/|\\|g; s|.*|    !insertmacro InstallFile "&"|; /64\.exe"$/I s|InstallFile|InstallFile64|'
        echo '!macroend'
        echo '!macro CheckAll'
        find . -type f -printf '%P\n' | sort | sed 's|/|\\|g; s|.*|    !insertmacro CheckFile "&"|'
        echo '!macroend'
        echo '!macro RemoveAll'
        find . -type f -printf '%P\n' | sort | sed 's|/|\\|g; s|.*|    !insertmacro RemoveFile "&"|'
        find . -mindepth 1 -type d -printf '%P\n' | sort -r | sed 's|/|\\|g; s|.*|    !insertmacro RemoveFolder "&"|'
        echo '!macroend'
    ) >"$2/files.nsh"
    local edition classes
    for edition in ZELT ZELT64; do
        classes=$(RegisteredClasses "$edition")
        [ "$(wc -l <<<"$classes")" -eq 4 ] || { echo "$edition should register four classes: $classes"; return 1; }
        echo "!define FIRST_CLASS_$edition \"$(head -n 1 <<<"$classes")\""
        echo "!macro VerifyClassesOf$edition hive"
        # shellcheck disable=SC2016,SC2001 # ${hive} is for the setup program's compiler; and sed changes each line
        sed 's|.*|    !insertmacro VerifyClassInView ${hive} '"$edition"' "&"|' <<<"$classes"
        echo '!macroend'
    done >"$2/classes.nsh"
}

# The identifiers of the classes that the registry scripts of an edition register.
RegisteredClasses()
{
    sed -n "s/^ *ForceRemove '\({[0-9A-F-]*}\)'.*/\1/p" "build/release/editions/$1".*.rgs | sort -u
}

# MakeSetup <stage> <version> <program> [option of makensis...]
MakeSetup()
{
    local lists=$packageFolder/lists
    rm -rf "$lists"
    WriteLists "$1" "$lists"
    local signing=()
    # The uninstaller is signed while it is made: setup contains it.
    [ -z "${ZELT_SIGN:-}" ] || signing=("-DSIGN=$ZELT_SIGN")
    makensis -V2 -WX "${signing[@]}" -DVERSION="$2" -DSIZE="$(du -sk --apparent-size "$1" | cut -f 1)" -DSTAGE="$1" -DOUTPUT="$3" \
        -DICON="$root/build/release/shell/zelt.ico" -DLISTS="$lists" "${@:4}" packaging/setup/zelt.nsi
    Sign "$3"
}

# MakeZip <folder below build/package> <zip>: file times are those of the commit, so that equal files give an equal zip.
MakeZip()
{
    cd "$packageFolder"
    find "$1" -exec touch -d "@$(SourceDate)" {} +
    find "$1" -print | sort | TZ=UTC zip -q -X -@ "$2"
}

# MakeVerifyZip <folder below build/package> <setup program> <zip>
MakeVerifyZip()
{
    StageVerification "$packageFolder/$1" "$2"
    MakeZip "$1" "$3"
    rm -r "${packageFolder:?}/$1"
}

# MakeSymbolsZip <zip>: the symbols of the shipped programs, for ./dev symbols --zip.
MakeSymbolsZip() { (cd build && zip -q -X -j "$1" "${shippedPrograms[@]/%/.symbols}"); }

# The time of the commit in seconds; outside a checkout a fixed time.
SourceDate() { git log -1 --format=%ct 2>/dev/null || echo 1767225600; }
