// bench_calls: measures what a call through a proxy costs. With "forwarding", "logging" or "packages" it measures only unlogged
// calls, logged and recorded calls, or the life of packages; with "growth <entries>" only the growth of a log.
#include <windows.h>
#include <objbase.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "bench/calls/parts.h"
#include "bench/rows.h"

int main(int argc, char** argv)
{
    constexpr long long kEntries = 1'000'000;
    struct Part {
        const char* name;
        void (*measure)();
    };
    constexpr Part kParts[] = {
        {"forwarding", zelt::bench::MeasureForwarding},
        {"logging", zelt::bench::MeasureLogging},
        {"packages", zelt::bench::MeasurePackages},
    };
    if (FAILED(CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED))) return 1;
    const char* const wanted = argc > 1 ? argv[1] : "";
    bool isKnown = !*wanted;
    for (const Part& part : kParts) {
        if (*wanted && std::strcmp(part.name, wanted) != 0) continue;
        isKnown = true;
        part.measure();
    }
    if (!*wanted || std::strcmp(wanted, "growth") == 0) {
        isKnown = true;
        zelt::bench::MeasureGrowth(argc > 2 ? std::atoll(argv[2]) : kEntries);
    }
    CoUninitialize();
    if (!isKnown) std::fprintf(stderr, "bench_calls has no part \"%s\".\n", wanted);
    return isKnown ? zelt::bench::ExitCode() : 2;
}
