#include "tests/system/registration/processes.h"

#include <tlhelp32.h>

namespace {

constexpr DWORD kNotStarted = 0xDEAD0001, kNotEnded = 0xDEAD0002;

bool RunsNow(const std::wstring& fileName)
{
    const zelt::UniqueHandle snapshot(CreateToolhelp32Snapshot(TH32CS_SNAPPROCESS, 0));
    PROCESSENTRY32W entry = {};
    entry.dwSize = sizeof entry;
    for (BOOL more = Process32FirstW(snapshot.get(), &entry); more; more = Process32NextW(snapshot.get(), &entry)) {
        if (_wcsicmp(entry.szExeFile, fileName.c_str()) == 0) return true;
    }
    return false;
}

}  // namespace

std::filesystem::path ServerPath() { return std::filesystem::absolute(ZELT_EXECUTABLE).make_preferred(); }
std::filesystem::path ClientPath() { return std::filesystem::absolute(ZELT_CLIENT).make_preferred(); }
std::filesystem::path OtherClientPath() { return std::filesystem::absolute(ZELT_OTHER_CLIENT).make_preferred(); }

Process::Process(const std::filesystem::path& program, const std::wstring& arguments)
{
    std::wstring commandLine = L'"' + program.wstring() + L"\" " + arguments;
    STARTUPINFOW startup = {};
    startup.cb = sizeof startup;
    PROCESS_INFORMATION process;
    if (!CreateProcessW(nullptr, commandLine.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr, &startup,
                        &process)) {
        return;
    }
    handle.reset(process.hProcess);
    CloseHandle(process.hThread);
}

Process::~Process()
{
    if (!handle || !Running()) return;
    TerminateProcess(handle.get(), 1);
    Wait(INFINITE);
}

DWORD Process::ExitCode() const
{
    DWORD code = kNotEnded;
    GetExitCodeProcess(handle.get(), &code);
    return code;
}

DWORD RunToEnd(const std::filesystem::path& program, const std::wstring& arguments)
{
    const Process process(program, arguments);
    if (!process.Started()) return kNotStarted;
    return process.Wait(60'000) ? process.ExitCode() : kNotEnded;
}

bool WaitUntilGone(const std::wstring& fileName)
{
    for (int attempt = 0; attempt < 100; ++attempt) {
        if (!RunsNow(fileName)) return true;
        Sleep(100);
    }
    return false;
}
