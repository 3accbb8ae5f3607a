# Private Wine prefixes. Sourced by ./dev and by cmake/run-under-wine.sh, which set `root` to the source folder. Making a prefix
# takes half a minute, so one is made as a template and copied. The copy shares the system's own files with the template by hard
# links; nothing here writes to those.

wineFolder=$root/build/wine
templatePrefix=$wineFolder/template

# No debugger that waits for a user, no offers to download components, no entries in the user's own menus.
export WINEDEBUG=-all
export WINEDLLOVERRIDES='winedbg.exe=d;mscoree=;mshtml=;winemenubuilder.exe=d'
export WINEARCH=win64

# UseLastingPrefix: uses the prefix build/wine/ctest, and makes it first unless this version of Wine has already made it. For
# programs that ctest starts without ./dev.
UseLastingPrefix()
{
    local version
    version=$(env -u WINEPREFIX wine --version) || return
    export WINEPREFIX=$wineFolder/ctest
    mkdir -p "$wineFolder"
    {
        # Tests that run in parallel take turns here. The processes that Wine leaves behind must not inherit the lock.
        flock 9
        [ "$(cat "$WINEPREFIX/complete" 2>/dev/null)" = "$version" ] && return
        ( NeedTemplatePrefix ) >/dev/null 2>&1 9>&- || return
        CopyTemplate && echo "$version" >"$WINEPREFIX/complete"
    } 9>"$wineFolder/ctest.lock"
}

# Makes the prefix in WINEPREFIX a copy of the template.
CopyTemplate()
{
    rm -rf "$WINEPREFIX"
    mkdir -p "$WINEPREFIX/drive_c"
    cp -al "$templatePrefix/drive_c/windows" "$WINEPREFIX/drive_c/"
    # The folder windows is there already, so copy only the rest.
    tar -C "$templatePrefix" --exclude=./drive_c/windows --exclude=./complete -cf - . | tar -C "$WINEPREFIX" -xf -
    # The user's folders are links into the home directory of whoever runs this: replace them with folders in the prefix.
    local link
    find "$WINEPREFIX/drive_c/users" -type l | while IFS= read -r link; do
        rm "$link"
        mkdir "$link"
    done
}

# NeedTemplatePrefix: makes the template unless this version of Wine has already made it. Changes WINEPREFIX when it does.
NeedTemplatePrefix()
{
    local version
    version=$(env -u WINEPREFIX wine --version) || return
    [ "$(cat "$templatePrefix/complete" 2>/dev/null)" = "$version" ] || MakeTemplatePrefix "$version"
}

MakeTemplatePrefix()
{
    rm -rf "$templatePrefix"
    mkdir -p "$templatePrefix"
    export WINEPREFIX=$templatePrefix
    timeout 300 wineboot -i || return
    # The first activation of a class hangs while the prefix is still being filled.
    timeout 300 wineserver -w || return
    echo "$1" >"$templatePrefix/complete"
}
