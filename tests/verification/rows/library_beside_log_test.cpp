// A log that is opened by a double click: the viewer's process starts in the log's folder, and takes no library from there.
#include <gtest/gtest.h>
#include <windows.h>

#include <filesystem>
#include <fstream>

#include "system/owners.h"
#include "tests/trees.h"
#include "tests/verification/rows/needs.h"

namespace zelt::test {
namespace {

namespace fs = std::filesystem;

// Libraries that programs load by their names, and that are no known libraries of the system.
constexpr const wchar_t* kNames[] = {L"version.dll", L"uxtheme.dll", L"dwmapi.dll", L"cryptbase.dll", L"msimg32.dll"};

TEST(LibraryBesideALog, IsNotLoaded)
{
    NEEDS_WINDOWS();
    const fs::path folder = fs::temp_directory_path() / L"library beside a log";
    fs::create_directories(folder);
    // A library that cannot be loaded: if it were taken, the program would not start.
    for (const wchar_t* name : kNames) std::ofstream(folder / name, std::ios::binary) << "MZ, and nothing else";
    std::ofstream(folder / "log.zlg") << "<zeltlogdocument></zeltlogdocument>";
    std::wstring line = L'"' + fs::absolute(BuiltServer()).make_preferred().wstring() + L"\" log.zlg";
    STARTUPINFOW startup = {};
    startup.cb = sizeof startup;
    PROCESS_INFORMATION started = {};
    ASSERT_TRUE(
        CreateProcessW(nullptr, line.data(), nullptr, nullptr, FALSE, 0, nullptr, folder.c_str(), &startup, &started));
    const UniqueHandle process(started.hProcess), thread(started.hThread);
    HWND window = nullptr;
    for (int waited = 0; !(window = FindWindowW(nullptr, L"Log file log.zlg:")) && waited < 60'000; waited += 50) {
        if (WaitForSingleObject(process.get(), 50) == WAIT_OBJECT_0) break;
    }
    EXPECT_TRUE(window) << "the viewer does not open";
    PostMessageW(window, WM_CLOSE, 0, 0);
    EXPECT_EQ(WAIT_OBJECT_0, WaitForSingleObject(process.get(), 60'000));
    TerminateProcess(process.get(), 1);
    fs::remove_all(folder);
}

}  // namespace
}  // namespace zelt::test
