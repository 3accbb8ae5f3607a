// The log viewer compared with floors: libxml2's bare reader, a bare tree view, a bare read of the file, a copy of all labels.
// Usage: bench_viewer [--large] [--quick] [--only <MB>]. --large adds a log of 1000 MB. --quick measures two pairs for each
// row. --only leaves out the search and all logs but the one of that size; 0 is for the log that the viewer keeps in memory.
#include <windows.h>
#include <commctrl.h>
#include <objbase.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <exception>

#include "bench/rows.h"
#include "bench/viewer/parts.h"
#include "bench/viewer/written_log.h"
#include "log_reader/log_reader.h"

int main(int argc, char** argv)
try {
    using namespace zelt::bench;
    bool large = false, quick = false;
    long long only = -1;
    for (int i = 1; i < argc; ++i) {
        large |= std::strcmp(argv[i], "--large") == 0;
        quick |= std::strcmp(argv[i], "--quick") == 0;
        if (std::strcmp(argv[i], "--only") == 0 && i + 1 < argc) only = std::atoll(argv[++i]);
    }
    const INITCOMMONCONTROLSEX controls = {sizeof controls,
                                           ICC_TREEVIEW_CLASSES | ICC_LISTVIEW_CLASSES | ICC_PROGRESS_CLASS};
    InitCommonControlsEx(&controls);
    zelt::PrepareLogReader();

    if (only < 0) {
        PrintTitle("Viewer: search");
        BenchSearch(quick ? 2 : 9);
    }
    PrintTitle("Viewer: loading");
    BenchWindows();
    const struct {
        long long megabytes;
        int pairs;
    } kSizes[] = {{0, 9}, {10, 9}, {200, 5}, {1000, 3}};
    for (const auto& size : kSizes) {
        if (only >= 0 ? size.megabytes != only : size.megabytes > 200 && !large) continue;
        // A log of up to a megabyte is kept in memory, a longer one is read in pages.
        const WrittenLog log(size.megabytes == 0 ? 900'000 : size.megabytes * 1'000'000);
        size.megabytes == 0 ? BenchLoading(log, quick ? 2 : size.pairs) : BenchPages(log, quick ? 2 : size.pairs);
        BenchProgram(log);
    }
    return ExitCode();
} catch (const std::exception& failure) {
    std::printf("bench_viewer: %s\n", failure.what());
    return 1;
}
