#include "tests/system/harness/process.h"

#include <tlhelp32.h>

#include <stdexcept>
#include <utility>

namespace zelt::test {
namespace {

[[noreturn]] void ThrowLastError(const char* what)
{
    throw std::runtime_error(std::string(what) + " failed with system error " + std::to_string(GetLastError()));
}

class File {
public:
    File(const std::string& path, DWORD access, DWORD disposition)
    {
        SECURITY_ATTRIBUTES inheritable = {sizeof inheritable, nullptr, TRUE};
        handle = CreateFileA(path.c_str(), access, FILE_SHARE_READ | FILE_SHARE_WRITE, &inheritable, disposition,
                             FILE_ATTRIBUTE_NORMAL, nullptr);
        if (handle == INVALID_HANDLE_VALUE) ThrowLastError(path.c_str());
    }
    ~File() { CloseHandle(handle); }
    File(const File&) = delete;
    File& operator=(const File&) = delete;
    HANDLE Handle() const { return handle; }

private:
    HANDLE handle;
};

}  // namespace

Process Process::Start(const std::wstring& commandLine, const std::string& outputPath)
{
    const File input("NUL", GENERIC_READ, OPEN_EXISTING);
    const File output(outputPath.empty() ? "NUL" : outputPath, GENERIC_WRITE, CREATE_ALWAYS);
    STARTUPINFOW startup = {};
    startup.cb = sizeof startup;
    startup.dwFlags = STARTF_USESTDHANDLES;
    startup.hStdInput = input.Handle();
    startup.hStdOutput = output.Handle();
    startup.hStdError = output.Handle();
    PROCESS_INFORMATION process = {};
    // The system may modify the command line.
    std::vector<wchar_t> text(commandLine.begin(), commandLine.end());
    text.push_back(L'\0');
    if (!CreateProcessW(nullptr, text.data(), nullptr, nullptr, TRUE, CREATE_NO_WINDOW, nullptr, nullptr, &startup,
                        &process)) {
        ThrowLastError("CreateProcess");
    }
    CloseHandle(process.hThread);
    return Process(process.hProcess, process.dwProcessId);
}

std::optional<Process> Process::Open(DWORD id)
{
    const HANDLE handle = OpenProcess(SYNCHRONIZE | PROCESS_TERMINATE | PROCESS_QUERY_LIMITED_INFORMATION, FALSE, id);
    if (!handle) return std::nullopt;
    return Process(handle, id);
}

Process::Process(Process&& other) noexcept : handle(std::exchange(other.handle, nullptr)), id(other.id) {}

Process& Process::operator=(Process&& other) noexcept
{
    std::swap(handle, other.handle);
    std::swap(id, other.id);
    return *this;
}

Process::~Process()
{
    if (!handle) return;
    Kill();
    CloseHandle(handle);
}

bool Process::Running() const { return WaitForSingleObject(handle, 0) == WAIT_TIMEOUT; }

std::optional<DWORD> Process::Wait(DWORD milliseconds) const
{
    if (WaitForSingleObject(handle, milliseconds) != WAIT_OBJECT_0) return std::nullopt;
    DWORD code = 0;
    if (!GetExitCodeProcess(handle, &code)) ThrowLastError("GetExitCodeProcess");
    return code;
}

void Process::Kill()
{
    constexpr DWORD kTimeToGo = 10000;
    if (!Running()) return;
    TerminateProcess(handle, static_cast<UINT>(-1));
    WaitForSingleObject(handle, kTimeToGo);
}

std::optional<DWORD> RunProcess(const std::wstring& commandLine, const std::string& outputPath, DWORD milliseconds)
{
    return Process::Start(commandLine, outputPath).Wait(milliseconds);
}

std::vector<DWORD> ProcessIds(const std::wstring& fileName)
{
    const HANDLE snapshot = CreateToolhelp32Snapshot(TH32CS_SNAPPROCESS, 0);
    if (snapshot == INVALID_HANDLE_VALUE) ThrowLastError("CreateToolhelp32Snapshot");
    std::vector<DWORD> ids;
    PROCESSENTRY32W entry = {};
    entry.dwSize = sizeof entry;
    for (BOOL more = Process32FirstW(snapshot, &entry); more; more = Process32NextW(snapshot, &entry)) {
        if (_wcsicmp(entry.szExeFile, fileName.c_str()) == 0) ids.push_back(entry.th32ProcessID);
    }
    CloseHandle(snapshot);
    return ids;
}

bool WaitUntilGone(const std::wstring& fileName, DWORD milliseconds)
{
    const ULONGLONG end = GetTickCount64() + milliseconds;
    while (!ProcessIds(fileName).empty()) {
        if (GetTickCount64() >= end) return false;
        Sleep(50);
    }
    return true;
}

}  // namespace zelt::test
