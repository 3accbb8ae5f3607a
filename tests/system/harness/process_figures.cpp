#include "tests/system/harness/process_figures.h"

#include <psapi.h>

#include <cstdint>

namespace zelt::test {
namespace {

// How many handles the process has, found by trying their values, which are multiples of 4. Reading the system's table
// of all handles would be shorter, but it makes Wine's server crash if a process without handles is just starting or
// ending.
DWORD CountByTrying(HANDLE process)
{
    constexpr std::uintptr_t kStep = 4, kMostMissing = 1024;
    DWORD count = 0;
    for (std::uintptr_t value = kStep, missing = 0; missing < kMostMissing; value += kStep, ++missing) {
        HANDLE copy = nullptr;
        if (!DuplicateHandle(process, reinterpret_cast<HANDLE>(value), GetCurrentProcess(), &copy, 0, FALSE,
                             DUPLICATE_SAME_ACCESS)) {
            continue;
        }
        CloseHandle(copy);
        ++count;
        missing = 0;
    }
    return count;
}

}  // namespace

ProcessFigures FiguresOf(DWORD processId)
{
    ProcessFigures figures;
    const HANDLE process =
        OpenProcess(PROCESS_QUERY_INFORMATION | PROCESS_VM_READ | PROCESS_DUP_HANDLE, FALSE, processId);
    if (!process) return figures;
    figures.gdiObjects = GetGuiResources(process, GR_GDIOBJECTS);
    figures.userObjects = GetGuiResources(process, GR_USEROBJECTS);
    PROCESS_MEMORY_COUNTERS memory = {};
    if (GetProcessMemoryInfo(process, &memory, sizeof memory)) figures.privateBytes = memory.PagefileUsage;
    GetProcessHandleCount(process, &figures.handles);
    // Wine always gives 0 handles.
    if (figures.handles == 0) figures.handles = CountByTrying(process);
    CloseHandle(process);
    return figures;
}

std::ostream& operator<<(std::ostream& stream, const ProcessFigures& figures)
{
    return stream << figures.handles << " handles, " << figures.gdiObjects << " GDI and " << figures.userObjects
                  << " user objects, " << figures.privateBytes / 1024 << " KB";
}

}  // namespace zelt::test
