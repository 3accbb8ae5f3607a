#include "bench/remote/lives.h"

#include <comutil.h>
#include <psapi.h>
#include <tlhelp32.h>

#include <cape-open.h>

#include <algorithm>
#include <cstdio>
#include <cwchar>

#include "system/edition.h"
#include "system/owners.h"

namespace zelt::bench {
namespace {

using Microsoft::WRL::ComPtr;

// The total private memory of all processes that run `program`, in bytes. For the surrogate's program, these may include
// unrelated processes, so only the growth counts.
double MemoryOf(const wchar_t* program)
{
    double bytes = 0;
    const HANDLE snapshot = CreateToolhelp32Snapshot(TH32CS_SNAPPROCESS, 0);
    if (snapshot == INVALID_HANDLE_VALUE) return 0;
    const UniqueHandle all(snapshot);
    PROCESSENTRY32W entry = {};
    entry.dwSize = sizeof entry;
    for (BOOL more = Process32FirstW(all.get(), &entry); more; more = Process32NextW(all.get(), &entry)) {
        if (_wcsicmp(entry.szExeFile, program) != 0) continue;
        const UniqueHandle process(
            OpenProcess(PROCESS_QUERY_INFORMATION | PROCESS_VM_READ, FALSE, entry.th32ProcessID));
        PROCESS_MEMORY_COUNTERS memory = {};
        if (GetProcessMemoryInfo(process.get(), &memory, sizeof memory))
            bytes += static_cast<double>(memory.PagefileUsage);
    }
    return bytes;
}

bool LiveOnce(const MakePackage& make)
{
    const ComPtr<IDispatch> package = make();
    ComPtr<ICapeThermoCompounds> compounds;
    ComPtr<ICapeUtilities> utilities;
    ComPtr<IDispatch> parameters;
    long number = 0;
    return package && SUCCEEDED(package.As(&compounds)) && SUCCEEDED(package.As(&utilities)) &&
           SUCCEEDED(compounds->GetNumCompounds(&number)) && SUCCEEDED(utilities->get_parameters(&parameters));
}

}  // namespace

void CompareMemoryOfLives(int lives, const MakePackage& inSurrogate, const MakePackage& inZelt)
{
    std::printf("\nMemory of the server, as packages live and die in it\n%-16s %16s %16s\n", "lives", "surrogate KB",
                "ZELT KB");
    constexpr int kRows = 5;
    const int step = std::max(1, lives / kRows);
    for (int done = 0; done <= lives;) {
        std::printf("%-16d %16.0f %16.0f\n", done, MemoryOf(L"dllhost.exe") / 1024,
                    MemoryOf(kThisEdition.program) / 1024);
        std::fflush(stdout);
        for (int i = 0; i < step; ++i, ++done) {
            if (!LiveOnce(inSurrogate) || !LiveOnce(inZelt)) {
                std::printf("A package failed after %d lives.\n", done);
                return;
            }
        }
    }
}

}  // namespace zelt::bench
