# Wine for a run of ./dev, and a private display. Sourced by ./dev.

# FixAddresses <argument of ./dev...>: restarts ./dev with addresses that are not random, where the system allows it. With random
# ones, Linux may put the heap of Wine's 64-bit loader over a page that has a fixed address in Windows; about one start in several
# thousand then ends at once, without a message.
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
    # Making the template may have been started already.
    [ -n "${started[wine-template]:-}" ] || Beside wine-template NeedTemplatePrefix
    Await wine-template "Making a Wine prefix"
    export WINEPREFIX=$wineFolder/$1
    # cmake/run-under-wine.sh looks for this variable.
    export ZELT_WINE_PREFIX=$WINEPREFIX
    EndWine
    CopyTemplate
    AtExit EndWine
    Step wine-start "Starting Wine" StartWine
    # While one program runs, Wine's own services stay; otherwise each test would start them anew, which takes a second. The
    # program reads from a pipe of this script, so it ends even when the script is killed.
    # shellcheck disable=SC2034 # the name is for the shell's messages
    coproc resident { exec wine cmd /q >/dev/null 2>&1 8>&-; }
}

# InOwnPrefix <prefix> <command...>: runs a function of these scripts in the background, in a fresh prefix and on its own display.
# Returns as soon as the prefix is there, so that the first call can make the template for all.
InOwnPrefix()
{
    local ready=$wineFolder/$1.ready
    mkdir -p "$wineFolder"
    rm -f "$ready"
    UseOwnPrefix "$@" 8>&- &
    inOwnPrefix+=($!)
    AtExit "EndTree $!"
    while [ ! -e "$ready" ] && kill -0 "${inOwnPrefix[-1]}" 2>/dev/null; do sleep 0.2; done
}
inOwnPrefix=()

UseOwnPrefix()
{
    cleanUps=(EndSteps)
    started=()
    trap CleanUp EXIT
    UsePrefix "$1"
    touch "$wineFolder/$1.ready"
    shift
    "$@" || exit 1
}

# Waits for all that InOwnPrefix has started; false when one of them failed.
AllInOwnPrefix()
{
    local process failed=0
    for process in "${inOwnPrefix[@]}"; do
        wait "$process" || failed=1
    done
    inOwnPrefix=()
    return "$failed"
}

StartWine()
{
    # Starts a server that does not end by itself, because some tests end every program.
    wineserver -p
    timeout 120 wine cmd /c ver
}

# The processes of the prefix in WINEPREFIX, except this script and its ancestors.
PrefixProcesses()
{
    local folder ours=" " id=$BASHPID
    while [ "${id:-0}" -gt 1 ]; do
        ours+="$id "
        id=$(sed -n 's/^PPid:[[:space:]]*//p' "/proc/$id/status" 2>/dev/null)
    done
    for folder in /proc/[0-9]*; do
        id=${folder#/proc/}
        [[ $ours != *" $id "* ]] && grep -qzxF "WINEPREFIX=$WINEPREFIX" "$folder/environ" 2>/dev/null && echo "$id"
    done
    return 0
}

# The process number of the prefix's Wine server; nothing when there is none.
ServerProcess()
{
    local id
    for id in $(PrefixProcesses); do
        case $(cat "/proc/$id/comm" 2>/dev/null) in
            wineserver*) echo "$id" ;;
        esac
    done
}

# WatchServer notes which process is Wine's server. Later, ServerLives <what was done> is false, and prints a line that names the
# server, if it no longer runs. Programs whose server dies fail without giving a reason, and later programs start a new server.
WatchServer() { watchedServer=$(ServerProcess); }
ServerLives()
{
    local now
    now=$(ServerProcess)
    [ "$now" != "$watchedServer" ] || return 0
    printf '%s\n' "${red}Wine's server, process ${watchedServer:-unknown} of $WINEPREFIX, died during $1.$plain" >&2
    watchedServer=$now
    return 1
}

# Ends every process of the prefix in WINEPREFIX and of no other, even those whose server has died.
EndWine()
{
    [ -d "$WINEPREFIX" ] || return 0
    if wineserver -k 2>/dev/null; then timeout 30 wineserver -w || true; fi
    local left
    left=$(PrefixProcesses)
    # shellcheck disable=SC2086 # a list
    [ -z "$left" ] || kill -KILL $left 2>/dev/null || true
}

# A display of our own: the server chooses a free number and reports it when it is ready.
StartDisplay()
{
    local numberFile=$logFolder/display
    mkdir -p "$logFolder"
    : >"$numberFile"
    Xvfb -displayfd 3 -screen 0 1280x1024x24 -nolisten tcp 3>"$numberFile" >"$logFolder/xvfb.log" 2>&1 8>&- &
    displayProcess=$!
    disown "$displayProcess"
    # shellcheck disable=SC2016 # read at the end
    AtExit 'kill "$displayProcess" 2>/dev/null'
    local waited
    for ((waited = 0; waited < 200; ++waited)); do
        [ -s "$numberFile" ] && break
        kill -0 "$displayProcess" 2>/dev/null || break
        sleep 0.05
    done
    [ -s "$numberFile" ] || Fail "The display server Xvfb did not start; its log is $logFolder/xvfb.log."
    DISPLAY=:$(<"$numberFile")
    export DISPLAY
}

# A path as the programs under Wine see it.
WindowsPath() { printf 'Z:%s' "${1//\//\\}"; }
