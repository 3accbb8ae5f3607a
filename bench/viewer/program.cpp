#include <windows.h>
#include <psapi.h>

#include <cstdio>
#include <filesystem>
#include <stdexcept>

#include "bench/rows.h"
#include "bench/viewer/parts.h"
#include "bench/viewer/written_log.h"

namespace zelt::bench {
namespace {

struct Search {
    DWORD process;
    bool found = false;
};

BOOL CALLBACK Look(HWND window, LPARAM parameter)
{
    auto& search = *reinterpret_cast<Search*>(parameter);
    DWORD process = 0;
    GetWindowThreadProcessId(window, &process);
    wchar_t title[20] = L"";
    if (process != search.process || !IsWindowVisible(window)) return TRUE;
    SendMessageTimeoutW(window, WM_GETTEXT, 20, reinterpret_cast<LPARAM>(title), SMTO_ABORTIFHUNG, 1000, nullptr);
    search.found |= std::wstring_view(title).substr(0, 9) == L"Log file ";
    return TRUE;
}

}  // namespace

void BenchProgram(const WrittenLog& log)
{
    const std::wstring program = std::filesystem::absolute(ZELT_EXECUTABLE).make_preferred().wstring();
    std::wstring commandLine = L'"' + program + L"\" \"" + log.Path() + L'"';
    STARTUPINFOW startup = {};
    startup.cb = sizeof startup;
    PROCESS_INFORMATION started;
    const Stopwatch watch;
    if (!CreateProcessW(nullptr, commandLine.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr, &startup,
                        &started)) {
        throw std::runtime_error("ZELT.EXE cannot be started");
    }
    Search search = {started.dwProcessId};
    while (!search.found && watch.Seconds() < 300 && WaitForSingleObject(started.hProcess, 10) == WAIT_TIMEOUT) {
        EnumWindows(Look, reinterpret_cast<LPARAM>(&search));
    }
    const double seconds = watch.Seconds();
    // While the progress window exists, the log is being read.
    while (FindWindowW(nullptr, L"Parsing log file:") && watch.Seconds() < 300) Sleep(10);
    const double read = watch.Seconds();
    PROCESS_MEMORY_COUNTERS counters = {};
    counters.cb = sizeof counters;
    GetProcessMemoryInfo(started.hProcess, &counters, sizeof counters);
    // Ends the process, because closing the window would first empty its tree.
    TerminateProcess(started.hProcess, 0);
    WaitForSingleObject(started.hProcess, INFINITE);
    CloseHandle(started.hThread);
    CloseHandle(started.hProcess);
    if (!search.found) throw std::runtime_error("ZELT.EXE showed no window");
    char size[40];
    std::snprintf(size, sizeof size, "%.0f MB: ", log.Megabytes());
    PrintFigure(size + std::string("ZELT.EXE, from its start until its window shows"), seconds, "s");
    PrintFigure(size + std::string("ZELT.EXE, until the log is read"), read, "s");
    PrintFigure(size + std::string("ZELT.EXE, private memory at that point"),
                static_cast<double>(counters.PagefileUsage) / 1e6, "MB");
}

}  // namespace zelt::bench
