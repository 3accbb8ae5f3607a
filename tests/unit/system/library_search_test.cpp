// Which libraries the process loads: none from the current folder, and all that a package brings along.
#include "system/library_search.h"

#include <gtest/gtest.h>
#include <windows.h>

#include <filesystem>

#include "tests/system/harness/under_wine.h"
#include "tests/trees.h"

namespace zelt::test {
namespace {

namespace fs = std::filesystem;

constexpr wchar_t kNeeded[] = L"library_needed.dll", kNeeding[] = L"library_needing.dll";

class LibrarySearch : public testing::Test {
protected:
    LibrarySearch() : folder(fs::path(BuiltFile("tests/unit/library_search")).make_preferred())
    {
        wchar_t value[32'767] = L"";
        GetEnvironmentVariableW(L"PATH", value, static_cast<DWORD>(std::size(value)));
        path = value;
        start = fs::current_path();
        fs::current_path(folder);
    }
    ~LibrarySearch() override
    {
        fs::current_path(start);
        SetEnvironmentVariableW(L"PATH", path.c_str());
        SetDllDirectoryW(nullptr);
    }

    // Whether the library is found, and where.
    static std::wstring Find(const std::wstring& name, DWORD flags = 0)
    {
        const HMODULE library = LoadLibraryExW(name.c_str(), nullptr, flags);
        if (!library) return L"";
        wchar_t found[1024] = L"";
        GetModuleFileNameW(library, found, static_cast<DWORD>(std::size(found)));
        const auto function = reinterpret_cast<int (*)()>(reinterpret_cast<void*>(
            GetProcAddress(library, name.find(kNeeding) == std::wstring::npos ? "Needed" : "Needing")));
        EXPECT_EQ(42, function ? function() : 0);
        FreeLibrary(library);
        return found;
    }

    fs::path folder, start;
    std::wstring path;
};

TEST_F(LibrarySearch, LeavesTheCurrentFolderOut)
{
    EXPECT_NE(L"", Find(kNeeded)) << "the test proves nothing if it is not found before";
    KeepCurrentFolderOutOfSearch();
    // Wine ignores the call above.
    if (UnderWine()) LeaveCurrentFolder();
    EXPECT_EQ(L"", Find(kNeeded));
    EXPECT_EQ(L"", Find(kNeeding));
    wchar_t found[1024] = L"";
    EXPECT_EQ(0u, SearchPathW(nullptr, kNeeded, nullptr, static_cast<DWORD>(std::size(found)), found, nullptr));
}

TEST_F(LibrarySearch, AnotherFolderIsTheCurrentOne)
{
    EXPECT_EQ((folder / kNeeded).wstring(), AbsolutePath(kNeeded));
    EXPECT_EQ((folder / kNeeded).wstring(), AbsolutePath((folder / kNeeded).wstring()));
    EXPECT_EQ(L"", AbsolutePath(L""));
    LeaveCurrentFolder();
    wchar_t system[MAX_PATH];
    GetSystemDirectoryW(system, MAX_PATH);
    EXPECT_EQ(fs::path(system), fs::current_path());
    EXPECT_EQ(L"", Find(kNeeded));
}

TEST_F(LibrarySearch, FindsWhatAPackageBringsAlong)
{
    KeepCurrentFolderOutOfSearch();
    LeaveCurrentFolder();
    // COM loads a server by its path, with its dependencies from the same folder.
    EXPECT_NE(L"", Find((folder / kNeeding).wstring(), LOAD_WITH_ALTERED_SEARCH_PATH));
    EXPECT_EQ(L"", Find(kNeeded));
    // Some packages rely on PATH.
    SetEnvironmentVariableW(L"PATH", (path + L';' + folder.wstring()).c_str());
    EXPECT_NE(L"", Find(kNeeded));
    EXPECT_NE(L"", Find(kNeeding));
}

}  // namespace
}  // namespace zelt::test
