#include "bench/ctl/memory.h"

#include <windows.h>
#include <psapi.h>

#include <algorithm>
#include <filesystem>
#include <stdexcept>

#include "system/owners.h"

namespace zelt::bench {
double PeakMemory(const std::wstring& commandLine)
{
    const std::wstring program = std::filesystem::absolute(ZELT_CONTROL).make_preferred().wstring();
    std::wstring line = L'"' + program + L"\" " + commandLine;
    SECURITY_ATTRIBUTES inherited = {sizeof inherited, nullptr, TRUE};
    const UniqueHandle nothing(
        CreateFileW(L"NUL", GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE, &inherited, OPEN_EXISTING, 0, nullptr));
    STARTUPINFOW startup = {};
    startup.cb = sizeof startup;
    startup.dwFlags = STARTF_USESTDHANDLES;
    startup.hStdOutput = startup.hStdError = nothing.get();
    PROCESS_INFORMATION started;
    if (!CreateProcessW(nullptr, line.data(), nullptr, nullptr, TRUE, 0, nullptr, nullptr, &startup, &started)) {
        throw std::runtime_error("zeltctl.exe cannot be started");
    }
    const UniqueHandle process(started.hProcess), thread(started.hThread);
    SIZE_T peak = 0;
    do {
        PROCESS_MEMORY_COUNTERS counters = {};
        counters.cb = sizeof counters;
        if (GetProcessMemoryInfo(process.get(), &counters, sizeof counters)) {
            peak = std::max(peak, counters.PagefileUsage);
        }
    } while (WaitForSingleObject(process.get(), 5) == WAIT_TIMEOUT);
    DWORD code = 0;
    GetExitCodeProcess(process.get(), &code);
    if (code > 1) throw std::runtime_error("zeltctl.exe failed");
    return static_cast<double>(peak);
}

}  // namespace zelt::bench
