// bench_calls: measures what a call through a proxy costs. With "forwarding", "logging" or "packages" it measures only unlogged
// calls, logged and recorded calls, or the life of packages; with "growth <entries>" only the growth of a log.
#include <windows.h>
#include <objbase.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "bench/calls/parts.h"
#include "bench/rows.h"

namespace {

struct Part {
    const char* name;
    void (*measure)(long long entries);
};
constexpr Part kParts[] = {
    {"forwarding", [](long long) { zelt::bench::MeasureForwarding(); }},
    {"logging", [](long long) { zelt::bench::MeasureLogging(); }},
    {"packages", [](long long) { zelt::bench::MeasurePackages(); }},
    {"growth", zelt::bench::MeasureGrowth},
};

}  // namespace

int main(int argc, char** argv)
{
    if (FAILED(CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED))) return 1;
    const long long entries = argc > 2 ? std::atoll(argv[2]) : 1'000'000;
    int measured = 0;
    for (const Part& part : kParts) {
        if (argc > 1 && std::strcmp(part.name, argv[1]) != 0) continue;
        part.measure(entries);
        ++measured;
    }
    CoUninitialize();
    if (measured == 0) std::fprintf(stderr, "bench_calls has no part \"%s\".\n", argv[1]);
    return measured == 0 ? 2 : zelt::bench::ExitCode();
}
