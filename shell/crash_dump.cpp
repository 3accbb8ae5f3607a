#include "shell/crash_dump.h"

#include <windows.h>
#include <dbghelp.h>
#include <shlobj.h>
#include <stdio.h>

#include <atomic>
#include <cstdint>
#include <cwchar>
#include <iterator>
#include <string>

#include "guard/abort_trap.h"
#include "guard/se_exception.h"
#include "system/edition.h"
#include "system/known_folder.h"
#include "system/narrow.h"
#include "system/owners.h"
#include "system/system_text.h"

namespace zelt {
namespace {

constexpr DWORD kAborted = 0xE05A4142;
// Milliseconds. A dump takes less than a second. If it needs a lock that the fault left taken, the process ends without a dump.
constexpr DWORD kLongestWait = 60'000;

// The faulting thread may have no stack left, and other threads may hold any lock. So a thread that is started in advance
// writes the dump, with memory that is reserved in advance.
struct Writer {
    HMODULE library;
    decltype(&MiniDumpWriteDump) writeDump;
    HANDLE faulted, written, answered;
    DWORD id;  // of the thread that writes
    wchar_t folder[MAX_PATH];

    std::atomic<bool> busy;
    EXCEPTION_POINTERS* pointers;
    DWORD thread;

    wchar_t path[MAX_PATH + 80];
    wchar_t text[2048];
} writer;  // all zero at first, and kept until the process ends

void ComposePath()
{
    SYSTEMTIME now;
    GetLocalTime(&now);
    _snwprintf(writer.path, std::size(writer.path) - 1, L"%ls\\%ls %04u-%02u-%02u %02u.%02u.%02u (%lu).dmp",
               writer.folder, kThisEdition.name, now.wYear, now.wMonth, now.wDay, now.wHour, now.wMinute, now.wSecond,
               GetCurrentProcessId());
}

// Returns 0, or the system's error code.
DWORD Write()
{
    ComposePath();
    const UniqueHandle file(
        CreateFileW(writer.path, GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr));
    if (file.get() == INVALID_HANDLE_VALUE) return GetLastError();
    MINIDUMP_EXCEPTION_INFORMATION information = {writer.thread, writer.pointers, FALSE};
    constexpr auto kContents =
        static_cast<MINIDUMP_TYPE>(MiniDumpWithIndirectlyReferencedMemory | MiniDumpWithUnloadedModules);
    if (writer.writeDump(GetCurrentProcess(), GetCurrentProcessId(), file.get(), kContents, &information, nullptr,
                         nullptr)) {
        return 0;
    }
    const DWORD error = GetLastError();
    return error ? error : ERROR_GEN_FAILURE;
}

// The name of the program or library that contains the address, and the address's offset in it.
const wchar_t* ModuleOf(const void* address, std::size_t& offset)
{
    static wchar_t path[MAX_PATH];
    MEMORY_BASIC_INFORMATION memory = {};
    VirtualQuery(address, &memory, sizeof memory);
    offset = reinterpret_cast<std::uintptr_t>(address);
    const auto module = static_cast<HMODULE>(memory.AllocationBase);
    if (memory.Type != MEM_IMAGE || !GetModuleFileNameW(module, path, MAX_PATH)) return L"no module";
    offset -= reinterpret_cast<std::uintptr_t>(module);
    const wchar_t* const slash = std::wcsrchr(path, L'\\');
    return slash ? slash + 1 : path;
}

void Announce(DWORD error)
{
    const EXCEPTION_RECORD& record = *writer.pointers->ExceptionRecord;
    const char* const fault =
        record.ExceptionCode == kAborted ? "The program gave up (abort)." : SE_Exception(record.ExceptionCode).Text();
    std::size_t offset = 0;
    const wchar_t* const module = ModuleOf(record.ExceptionAddress, offset);
    wchar_t result[MAX_PATH + 300] = {};
    if (error == 0) {
        _snwprintf(result, std::size(result) - 1,
                   L"What the program was doing is in this file:\n%ls\n\nThe file has parts of the program's memory, "
                   L"so it can contain names and numbers of your model.",
                   writer.path);
    } else {
        _snwprintf(result, std::size(result) - 1, L"The dump %ls could not be written (system error %lu).", writer.path,
                   error);
    }
    _snwprintf(
        writer.text, std::size(writer.text) - 1,
        L"%ls has to end because of a fault in %ls, at offset 0x%Ix.\n\n%hs (0x%08lX)\n\nLogs are complete up to the "
        L"fault. %ls",
        kThisEdition.name, module, offset, fault, record.ExceptionCode, result);
    MessageBoxW(nullptr, writer.text, kThisEdition.name, MB_OK | MB_ICONERROR | MB_TOPMOST | MB_SETFOREGROUND);
}

DWORD WINAPI WaitForFault(void*)
{
    WaitForSingleObject(writer.faulted, INFINITE);
    const DWORD error = Write();
    SetEvent(writer.written);
    Announce(error);
    SetEvent(writer.answered);
    return 0;
}

LONG WINAPI OnFault(EXCEPTION_POINTERS* pointers)
{
    // Nobody is left to report a fault of the writer. Another thread with a fault waits for the end of the process.
    if (GetCurrentThreadId() == writer.id)
        TerminateProcess(GetCurrentProcess(), pointers->ExceptionRecord->ExceptionCode);
    if (writer.busy.exchange(true)) Sleep(INFINITE);
    writer.pointers = pointers;
    writer.thread = GetCurrentThreadId();
    SetEvent(writer.faulted);
    if (WaitForSingleObject(writer.written, kLongestWait) == WAIT_OBJECT_0)
        WaitForSingleObject(writer.answered, INFINITE);
    TerminateProcess(GetCurrentProcess(), pointers->ExceptionRecord->ExceptionCode);
    return EXCEPTION_EXECUTE_HANDLER;
}

void OnProcessAborts() { RaiseException(kAborted, EXCEPTION_NONCONTINUABLE, 0, nullptr); }

Outcome NoDumps(const wchar_t* what, DWORD error)
{
    return Outcome::Failed(std::wstring(L"No dump of a fault will be written, because ") + what + L": " +
                               Widen(SystemText(static_cast<HRESULT>(error))),
                           kThisEdition.name, MB_OK | MB_ICONWARNING | MB_TOPMOST);
}

}  // namespace

Outcome WriteDumpsOfFaults()
{
    std::wstring folder;
    const HRESULT found = KnownFolder(FOLDERID_LocalAppData, KF_FLAG_CREATE, folder);
    if (FAILED(found)) return NoDumps(L"the folder for local data cannot be found", static_cast<DWORD>(found));
    folder += L"\\ZELT\\Dumps";
    if (folder.size() >= std::size(writer.folder)) {
        return NoDumps(L"the path of the folder is too long", ERROR_FILENAME_EXCED_RANGE);
    }
    const int made = SHCreateDirectoryExW(nullptr, folder.c_str(), nullptr);
    if (made != ERROR_SUCCESS && made != ERROR_ALREADY_EXISTS && made != ERROR_FILE_EXISTS) {
        return NoDumps(L"the folder cannot be made", static_cast<DWORD>(made));
    }
    folder.copy(writer.folder, folder.size());
    writer.library = LoadLibraryExW(L"dbghelp.dll", nullptr, LOAD_LIBRARY_SEARCH_SYSTEM32);
    const FARPROC function = writer.library ? GetProcAddress(writer.library, "MiniDumpWriteDump") : nullptr;
    if (!function) return NoDumps(L"dbghelp.dll cannot be loaded", GetLastError());
    writer.writeDump = reinterpret_cast<decltype(&MiniDumpWriteDump)>(reinterpret_cast<void*>(function));
    writer.faulted = CreateEventW(nullptr, TRUE, FALSE, nullptr);
    writer.written = CreateEventW(nullptr, TRUE, FALSE, nullptr);
    writer.answered = CreateEventW(nullptr, TRUE, FALSE, nullptr);
    const UniqueHandle thread(writer.faulted && writer.written && writer.answered
                                  ? CreateThread(nullptr, 0, WaitForFault, nullptr, 0, &writer.id)
                                  : nullptr);
    if (!thread) return NoDumps(L"its thread cannot be started", GetLastError());
    SetUnhandledExceptionFilter(OnFault);
    SetUnguardedAbort(OnProcessAborts);
    return {};
}

}  // namespace zelt
