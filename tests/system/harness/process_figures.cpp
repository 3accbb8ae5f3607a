#include "tests/system/harness/process_figures.h"

#include <psapi.h>
#include <winternl.h>

#include <vector>

namespace zelt::test {
namespace {

// The system's table of all handles.
struct HandleEntry {
    void* object;
    ULONG_PTR processId, handle;
    ULONG access;
    USHORT creator, type;
    ULONG attributes, reserved;
};
struct HandleTable {
    ULONG_PTR count, reserved;
    HandleEntry entries[1];
};
constexpr auto kExtendedHandles = static_cast<SYSTEM_INFORMATION_CLASS>(64);

using QueryFunction = NTSTATUS(NTAPI*)(SYSTEM_INFORMATION_CLASS, void*, ULONG, ULONG*);

DWORD CountInTheTable(DWORD processId)
{
    const auto query = reinterpret_cast<QueryFunction>(
        reinterpret_cast<void*>(GetProcAddress(GetModuleHandleW(L"ntdll.dll"), "NtQuerySystemInformation")));
    if (!query) return 0;
    constexpr auto kTooSmall = static_cast<NTSTATUS>(0xC0000004);  // STATUS_INFO_LENGTH_MISMATCH
    constexpr std::size_t kLargest = 1 << 24;
    std::vector<ULONG_PTR> buffer(1 << 18);
    NTSTATUS status;
    ULONG size = 0;
    const auto ask = [&] {
        const std::size_t bytes = buffer.size() * sizeof(ULONG_PTR);
        return query(kExtendedHandles, buffer.data(), static_cast<ULONG>(bytes), &size);
    };
    while ((status = ask()) == kTooSmall && buffer.size() < kLargest) buffer.resize(buffer.size() * 2);
    if (status < 0) return 0;
    const auto& table = *reinterpret_cast<const HandleTable*>(buffer.data());
    DWORD count = 0;
    for (ULONG_PTR i = 0; i < table.count; ++i) count += table.entries[i].processId == processId;
    return count;
}

}  // namespace

ProcessFigures FiguresOf(DWORD processId)
{
    ProcessFigures figures;
    const HANDLE process = OpenProcess(PROCESS_QUERY_INFORMATION | PROCESS_VM_READ, FALSE, processId);
    if (!process) return figures;
    figures.gdiObjects = GetGuiResources(process, GR_GDIOBJECTS);
    figures.userObjects = GetGuiResources(process, GR_USEROBJECTS);
    PROCESS_MEMORY_COUNTERS memory = {};
    if (GetProcessMemoryInfo(process, &memory, sizeof memory)) figures.privateBytes = memory.PagefileUsage;
    GetProcessHandleCount(process, &figures.handles);
    CloseHandle(process);
    // Wine answers with success and 0.
    if (figures.handles == 0) figures.handles = CountInTheTable(processId);
    return figures;
}

std::ostream& operator<<(std::ostream& stream, const ProcessFigures& figures)
{
    return stream << figures.handles << " handles, " << figures.gdiObjects << " GDI and " << figures.userObjects
                  << " user objects, " << figures.privateBytes / 1024 << " KB";
}

}  // namespace zelt::test
