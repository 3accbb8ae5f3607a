# A private Wine prefix and a private display. Sourced by ./dev.
# Making a prefix takes half a minute, so one is made as a template and copied for each run. The copy shares the system's
# own files with the template by hard links; nothing here writes to those.

wineFolder=$root/build/wine
templatePrefix=$wineFolder/template

# No debugger that waits for somebody, no offers to download components, no entries in the user's own menus.
export WINEDEBUG=-all
export WINEDLLOVERRIDES='winedbg.exe=d;mscoree=;mshtml=;winemenubuilder.exe=d'
export WINEARCH=win64

# FixAddresses <argument of ./dev...>: starts ./dev anew with addresses that are not random, where the system allows it. Wine's
# 64-bit loader lies where Linux may put the heap over a page that has a fixed place in Windows; one start in some thousands then
# ends at once, without a word.
FixAddresses()
{
    if [ "${ZELT_ADDRESSES:-}" != fixed ] && setarch --addr-no-randomize true 2>/dev/null; then
        ZELT_ADDRESSES=fixed exec setarch --addr-no-randomize bash "$root/dev" "$@"
    fi
}

# UsePrefix <name>: a fresh prefix build/wine/<name> with a running server and a display, all ended with the script.
UsePrefix()
{
    NeedTool wine
    NeedTool Xvfb
    StartDisplay
    local version
    version=$(wine --version)
    if [ "$(cat "$templatePrefix/complete" 2>/dev/null)" != "$version" ]; then
        Step wine-template "Making a Wine prefix" MakeTemplatePrefix "$version"
    fi
    export WINEPREFIX=$wineFolder/$1
    EndWine
    rm -rf "$WINEPREFIX"
    mkdir -p "$WINEPREFIX/drive_c"
    cp -al "$templatePrefix/drive_c/windows" "$WINEPREFIX/drive_c/"
    # What the hard links already made stays: only the rest is copied.
    tar -C "$templatePrefix" --exclude=./drive_c/windows --exclude=./complete -cf - . | tar -C "$WINEPREFIX" -xf -
    AtExit EndWine
    Step wine-start "Starting Wine" StartWine
    # While one program runs, Wine's own services stay; otherwise each test would start them anew, for a second each. It
    # reads from a pipe of this script, so it ends even when the script is killed.
    coproc resident { exec wine cmd /q >/dev/null 2>&1 8>&-; }
}

MakeTemplatePrefix()
{
    rm -rf "$templatePrefix"
    mkdir -p "$templatePrefix"
    export WINEPREFIX=$templatePrefix
    timeout 300 wineboot -i
    # The first activation of a class hangs while the prefix is still being filled.
    timeout 300 wineserver -w
    # The user's folders are links into the home directory of whoever runs this: make them the prefix's own.
    local link
    for link in "$templatePrefix"/drive_c/users/*/*; do
        [ -L "$link" ] || continue
        rm "$link"
        mkdir "$link"
    done
    echo "$1" >"$templatePrefix/complete"
}

StartWine()
{
    # Without an end of its own, so that tests that end every program do not end it too.
    wineserver -p
    timeout 120 wine cmd /c ver
}

# Ends every process of the prefix in WINEPREFIX, and of no other.
EndWine()
{
    [ -d "$WINEPREFIX" ] || return 0
    wineserver -k 2>/dev/null || return 0
    timeout 30 wineserver -w || true
}

# A display of our own: the server chooses a free number and tells it when it is ready.
StartDisplay()
{
    local numberFile=$logFolder/display
    mkdir -p "$logFolder"
    : >"$numberFile"
    Xvfb -displayfd 3 -screen 0 1280x1024x24 -nolisten tcp 3>"$numberFile" >"$logFolder/xvfb.log" 2>&1 8>&- &
    displayProcess=$!
    disown "$displayProcess"
    AtExit 'kill "$displayProcess" 2>/dev/null'
    local waited
    for ((waited = 0; waited < 200; ++waited)); do
        [ -s "$numberFile" ] && break
        kill -0 "$displayProcess" 2>/dev/null || break
        sleep 0.05
    done
    [ -s "$numberFile" ] || Fail "The display server Xvfb did not start; its log is $logFolder/xvfb.log."
    export DISPLAY=:$(cat "$numberFile")
}

# A path as the programs under Wine see it.
WindowsPath() { printf 'Z:%s' "${1//\//\\}"; }
