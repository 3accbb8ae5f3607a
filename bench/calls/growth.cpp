#include <windows.h>
#include <psapi.h>

#include <cstdio>

#include "bench/calls/logged_package.h"
#include "bench/calls/parts.h"
#include "bench/rows.h"

namespace zelt::bench {
namespace {

constexpr long long kEntriesOfACall = 3;
constexpr int kSteps = 10;

double Megabytes()
{
    PROCESS_MEMORY_COUNTERS memory = {};
    GetProcessMemoryInfo(GetCurrentProcess(), &memory, sizeof memory);
    return static_cast<double>(memory.PagefileUsage) / (1 << 20);
}

}  // namespace

void MeasureGrowth(long long entries)
{
    LoggedPackage logged;
    std::printf("\nGrowth of a log to %lld entries\n%-24s %14s %12s\n", entries, "entries", "ns per entry",
                "memory MB");
    long number = 0;
    for (int step = 0; step < kSteps; ++step) {
        const long long calls = entries / kSteps / kEntriesOfACall;
        const Stopwatch watch;
        for (long long i = 0; i < calls; ++i) logged.compounds->GetNumCompounds(&number);
        std::printf("%-24lld %14.1f %12.2f\n", (step + 1) * calls * kEntriesOfACall,
                    watch.Seconds() * 1e9 / static_cast<double>(calls * kEntriesOfACall), Megabytes());
        std::fflush(stdout);
    }
}

}  // namespace zelt::bench
