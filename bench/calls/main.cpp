// bench_calls: measures what a call through a proxy costs. With "growth <entries>" it measures only the growth of a log,
// with "packages" only the life of packages.
#include <windows.h>
#include <objbase.h>

#include <cstdlib>
#include <cstring>

#include "bench/calls/parts.h"
#include "bench/rows.h"

int main(int argc, char** argv)
{
    constexpr long long kEntries = 1'000'000;
    if (FAILED(CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED))) return 1;
    if (argc > 2 && std::strcmp(argv[1], "growth") == 0) {
        zelt::bench::MeasureGrowth(std::atoll(argv[2]));
    } else if (argc > 1 && std::strcmp(argv[1], "packages") == 0) {
        zelt::bench::MeasurePackages();
    } else {
        zelt::bench::MeasureForwarding();
        zelt::bench::MeasureLogging();
        zelt::bench::MeasurePackages();
        zelt::bench::MeasureGrowth(kEntries);
    }
    CoUninitialize();
    return zelt::bench::ExitCode();
}
