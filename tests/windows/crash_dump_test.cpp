// The dump that ZELT leaves when it ends because of a fault, if the user wants one.
#include <gtest/gtest.h>
#include <windows.h>
#include <dbghelp.h>
#include <shlobj.h>
#include <tlhelp32.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <optional>
#include <regex>
#include <set>
#include <vector>

#include "log/log_options.h"
#include "program.h"
#include "registered_components.h"
#include "system/edition.h"
#include "system/known_folder.h"
#include "tests/system/harness/stored_options.h"

namespace zelt::test {
namespace {

namespace fs = std::filesystem;

std::wstring DumpsFolder()
{
    std::wstring folder;
    EXPECT_EQ(S_OK, KnownFolder(FOLDERID_LocalAppData, KF_FLAG_CREATE, folder));
    return folder + L"\\ZELT\\Dumps";
}

class CrashDump : public testing::Test {
protected:
    CrashDump()
    {
        const std::wstring event = L"ZELT dump " + std::to_wstring(GetCurrentProcessId());
        const UniqueHandle ready(CreateEventW(nullptr, TRUE, FALSE, event.c_str()));
        wchar_t own[MAX_PATH];
        GetModuleFileNameW(nullptr, own, MAX_PATH);
        program.emplace(L"--wait-for-fault \"" + event + L"\"", own);
        EXPECT_EQ(WAIT_OBJECT_0, WaitForSingleObject(ready.get(), 60'000));
    }
    // Starts a thread of the program at this address.
    void Run(const void* address) const
    {
        const auto start = reinterpret_cast<LPTHREAD_START_ROUTINE>(const_cast<void*>(address));
        const UniqueHandle thread(CreateRemoteThread(program->Process(), nullptr, 0, start, nullptr, 0, nullptr));
        ASSERT_TRUE(thread) << GetLastError();
    }
    // The contents of the dump that the box names. Deletes the dump.
    static std::vector<char> TakeDump(const std::wstring& text)
    {
        std::wsmatch match;
        if (!std::regex_search(text, match, std::wregex(L"in this file:\n(.*\\.dmp)\n"))) {
            ADD_FAILURE() << testing::PrintToString(text);
            return {};
        }
        const fs::path path = match[1].str();
        EXPECT_EQ(fs::path(DumpsFolder()), path.parent_path());
        std::ifstream file(path, std::ios::binary);
        std::vector<char> content{std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
        file.close();
        EXPECT_TRUE(fs::remove(path));
        return content;
    }
    static void ExpectFault(std::vector<char>&& dump, DWORD code)
    {
        MINIDUMP_DIRECTORY* directory = nullptr;
        void* stream = nullptr;
        ULONG size = 0;
        ASSERT_TRUE(MiniDumpReadDumpStream(dump.data(), ExceptionStream, &directory, &stream, &size));
        EXPECT_EQ(code, static_cast<const MINIDUMP_EXCEPTION_STREAM*>(stream)->ExceptionRecord.ExceptionCode);
        ASSERT_TRUE(MiniDumpReadDumpStream(dump.data(), ModuleListStream, &directory, &stream, &size));
        EXPECT_LT(10u, static_cast<const MINIDUMP_MODULE_LIST*>(stream)->NumberOfModules);
    }

    std::optional<Program> program;
};

// The names of the libraries of a process, in small letters.
std::set<std::wstring> LibrariesOf(DWORD process)
{
    std::set<std::wstring> names;
    const HANDLE list = CreateToolhelp32Snapshot(TH32CS_SNAPMODULE, process);
    MODULEENTRY32W entry = {};
    entry.dwSize = sizeof entry;
    for (BOOL more = Module32FirstW(list, &entry); more; more = Module32NextW(list, &entry)) {
        names.insert(_wcslwr(entry.szModule));
    }
    CloseHandle(list);
    return names;
}

TEST(CrashDumpOption, DecidesWhetherZeltIsPrepared)
{
    for (const bool wanted : {false, true}) {
        const CleanSettings settings;
        LogOptions options;
        options.writeDumps = wanted;
        Store(options);
        const Program program;
        ASSERT_NE(nullptr, program.WaitForWindow(kThisEdition.windowTitle));
        const std::set<std::wstring> libraries = LibrariesOf(program.Id());
        EXPECT_TRUE(libraries.contains(L"user32.dll"));
        EXPECT_EQ(wanted, libraries.contains(L"dbghelp.dll"));
    }
}

TEST_F(CrashDump, OfAFaultIsAnnounced)
{
    Run(reinterpret_cast<const void*>(0x10));
    const std::wstring text = program->AnswerBox(kThisEdition.name, IDOK);
    EXPECT_TRUE(text.starts_with(std::wstring(kThisEdition.name) +
                                 L" has to end because of a fault in no module, at offset 0x10.\n\n"
                                 L"EXCEPTION_ACCESS_VIOLATION: "))
        << testing::PrintToString(text);
    EXPECT_TRUE(program->EndsBy(20'000));
    EXPECT_EQ(EXCEPTION_ACCESS_VIOLATION, program->ExitCode());
    ExpectFault(TakeDump(text), EXCEPTION_ACCESS_VIOLATION);
}

TEST_F(CrashDump, OfAnAbortIsAnnounced)
{
    // System libraries have the same address in all processes of one width.
    Run(reinterpret_cast<const void*>(GetProcAddress(GetModuleHandleW(L"msvcrt.dll"), "abort")));
    const std::wstring text = program->AnswerBox(kThisEdition.name, IDOK);
    EXPECT_NE(std::wstring::npos, text.find(L"\n\nThe program gave up (abort). (0xE05A4142)\n\n"))
        << testing::PrintToString(text);
    EXPECT_TRUE(program->EndsBy(20'000));
    EXPECT_EQ(0xE05A4142, program->ExitCode());
    ExpectFault(TakeDump(text), 0xE05A4142);
}

TEST_F(CrashDump, ThatCannotBeWrittenIsAnnouncedToo)
{
    const std::wstring folder = DumpsFolder();
    fs::remove(folder);
    std::ofstream(fs::path(folder)) << "in the way";
    Run(reinterpret_cast<const void*>(0x10));
    const std::wstring text = program->AnswerBox(kThisEdition.name, IDOK);
    EXPECT_TRUE(program->EndsBy(20'000));
    EXPECT_TRUE(std::regex_search(text, std::wregex(L"The dump .*\\.dmp could not be written \\(system error 3\\)\\.")))
        << testing::PrintToString(text);
    EXPECT_EQ(EXCEPTION_ACCESS_VIOLATION, program->ExitCode());
    fs::remove(folder);
}

}  // namespace
}  // namespace zelt::test
