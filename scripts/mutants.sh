# Small changes to the product, each of which a test has to catch. The work is done in scripts/mutants. Sourced by ./dev.

# Mutants [--number N] [--seed N] [--continue] [id...]
Mutants()
{
    LockTree
    InstallPackages build
    FetchLibxml2
    mkdir -p build/mutants
    Step mutants-build "Building a copy with the changes in it" perl scripts/mutants/run.pl prepare "$@"
    grep '^Round' "$logFolder/mutants-build.log" | tail -n 1
    local name workers=() failed=0 number
    for ((number = 1; number <= $(nproc); ++number)); do
        name=mutants-$number
        rm -f "build/mutants/$name.ready"
        MutantWorker "$name" 8>&- &
        workers+=($!)
        AtExit "EndTree $!"
        # One worker at a time makes its prefix: the first may have to make the template.
        while [ ! -e "build/mutants/$name.ready" ] && kill -0 "${workers[-1]}" 2>/dev/null; do sleep 0.2; done
    done
    for number in "${workers[@]}"; do
        wait "$number" || failed=1
    done
    [ "$failed" -eq 0 ] || Fail "A worker ended early; ./dev mutants --continue takes up where it stopped."
    perl scripts/mutants/run.pl report || Fail "More than 5 % of the changes survived."
}

# MutantWorker <prefix>: takes changes from the list until none is left, in its own Wine prefix and on its own display.
MutantWorker()
{
    cleanUps=(EndStep)
    trap CleanUp EXIT
    UsePrefix "$1"
    touch "build/mutants/$1.ready"
    perl scripts/mutants/run.pl worker "$1" &
    stepProcess=$!
    wait "$stepProcess"
    stepProcess=
}
