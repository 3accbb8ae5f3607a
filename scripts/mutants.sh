# Small changes to the product, each of which a test has to catch. The work is done in scripts/mutants. Sourced by ./dev.

# Mutants [--number N] [--seed N] [--continue] [id...]
Mutants()
{
    LockTree
    InstallPackages build
    FetchLibraries
    # Some tests start programs of the other width.
    BuildPreset x86_64 zelt zeltctl
    mkdir -p build/mutants
    Step mutants-build "Building a copy with the changes in it" perl scripts/mutants/run.pl prepare "$@"
    grep '^Round' "$logFolder/mutants-build.log" | tail -n 1
    local number
    for ((number = 1; number <= $(nproc); ++number)); do
        InOwnPrefix "mutants-$number" MutantWorker "mutants-$number"
    done
    AllInOwnPrefix || Fail "A worker ended early; ./dev mutants --continue continues where it stopped."
    perl scripts/mutants/run.pl report || Fail "More than 5 % of the changes survived."
}

# MutantWorker <name>: takes changes from the list until none is left.
MutantWorker()
{
    perl scripts/mutants/run.pl worker "$1" &
    started[$1]=$!
    wait "${started[$1]}"
    unset "started[$1]"
}
