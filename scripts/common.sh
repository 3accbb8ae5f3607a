# Reporting, steps with one log each, and clean-up. Sourced by ./dev.

if [ -t 1 ]; then
    bold=$'\e[1m' red=$'\e[31m' green=$'\e[32m' plain=$'\e[0m'
else
    bold='' red='' green='' plain=''
fi

logFolder=$root/build/logs
cleanUps=()

Say() { printf '%s\n' "$bold$*$plain"; }

# Ends the script with one sentence.
Fail()
{
    printf '%s\n' "$red$*$plain" >&2
    exit 1
}

# Registers a command for the end of the script, however it ends; the latest runs first.
AtExit() { cleanUps=("$*" "${cleanUps[@]}"); }

CleanUp()
{
    local status=$?
    trap - EXIT
    trap '' INT TERM HUP
    local action
    for action in "${cleanUps[@]}"; do
        eval "$action" || true
    done
    exit "$status"
}
trap CleanUp EXIT
trap 'exit 130' INT
trap 'exit 143' TERM HUP
trap 'Fail "./dev stopped unexpectedly at ${BASH_SOURCE[0]#"$root"/}, line $LINENO: $BASH_COMMAND"' ERR
set -E

# Step <log name> <what is done> <command...>: runs the command with its output in a log; on failure says which step failed, where
# the log is, and how it ends. Programs under Wine leave processes behind that hold their output open, so the output goes to a
# file, never through a pipe.
Step()
{
    local log=$1 what=$2
    shift 2
    Beside "$log" "$@"
    Await "$log" "$what"
}

# Beside <log name> <command...>: starts the command of a step, for which Await then waits.
Beside()
{
    local name=$1
    shift
    mkdir -p "$logFolder"
    # The command runs in the background, so that a signal ends the wait at once. It is not part of a condition, because bash would
    # then let it continue after a failure.
    ( trap - EXIT ERR INT TERM HUP; set +E -e; "$@" ) >"$logFolder/$name.log" 2>&1 8>&- &
    started[$name]=$!
    startedAt[$name]=$SECONDS
}

# Await <log name> <what is done>: waits for the end of a step that Beside has started.
Await()
{
    local log=$logFolder/$1.log what=$2 process=${started[$1]} start=${startedAt[$1]} status=0 progress=
    printf '%s' "$what ... "
    if [ -t 1 ]; then
        ShowProgress "$log" "$what" "$start" 8>&- &
        progress=$!
    fi
    wait "$process" || status=$?
    unset "started[$1]"
    if [ -n "$progress" ]; then
        kill "$progress" 2>/dev/null
        wait "$progress" 2>/dev/null || true
        printf '\r\e[K%s' "$what ... "
    fi
    if [ "$status" -eq 0 ]; then
        echo "$((SECONDS - start)) s"
        return
    fi
    echo "failed"
    { echo "--- end of $log"; tail -n 25 "$log"; echo "---"; } >&2
    Fail "The step \"$what\" failed (exit code $status); its log is $log."
}
declare -A started startedAt

# ShowProgress <log> <what is done> <when it was started>: shows, on a terminal, the share that a build reports in its log as
# [done/all], and the time left if the rest goes at the same speed; without such a report, the time that has passed.
ShowProgress()
{
    trap - EXIT ERR
    local done all passed
    while sleep 1; do
        IFS=/ read -r done all < <(grep -o '^\[[0-9]*/[0-9]*\]' "$1" | tail -n 1 | tr -d '[]') || true
        passed=$((SECONDS - $3))
        if [ "${done:-0}" -gt 0 ]; then
            printf '\r\e[K%s' "$2 ... $((100 * done / all)) %, $((passed * (all - done) / done)) s left "
        else
            printf '\r\e[K%s' "$2 ... $passed s "
        fi
    done
}

# EndTree <process>: ends the process and everything that it has started; children first, because an ended process lists none.
EndTree()
{
    local child children=()
    read -r -a children 2>/dev/null <"/proc/$1/task/$1/children" || true
    for child in "${children[@]}"; do EndTree "$child"; done
    # It may have ended with its children.
    kill "$1" 2>/dev/null || true
}
EndSteps()
{
    local process
    for process in "${started[@]}"; do EndTree "$process"; done
}
AtExit EndSteps

NeedTool() { command -v "$1" >/dev/null || Fail "The program $1 is missing although its package is installed; try ./dev setup."; }

# Locks the tree until the script ends, and fails if another ./dev has locked it: they would share the build folder.
LockTree()
{
    mkdir -p build
    exec 8>build/.lock
    flock -n 8 || Fail "Another ./dev is at work in this folder."
}
