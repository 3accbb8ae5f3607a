// A module's path is returned whole, however long it is.
#include <gtest/gtest.h>
#include <windows.h>

#include <filesystem>
#include <string>

#include "com/failure.h"
#include "com/type_info.h"
#include "tests/trees.h"

namespace zelt::test {
namespace {

namespace fs = std::filesystem;

// A copy of a library at a path of `length` characters, not counting the prefix of long paths. The destructor deletes the
// folders, too.
class FarLibrary {
public:
    explicit FarLibrary(std::size_t length)
    {
        const fs::path start = fs::path(BuiltFile("tests/unit")).make_preferred();
        folder = start / (L"far" + std::to_wstring(length));
        std::wstring place = LR"(\\?\)" + folder.wstring();
        const std::wstring name = L"\\needed.dll";
        CreateDirectoryW(place.c_str(), nullptr);
        while (place.size() + name.size() < length + 4) {
            const std::size_t missing = length + 4 - place.size() - name.size();
            // Each part takes at least two characters with its backslash, so never leave exactly one character to fill.
            const std::size_t part = missing <= 100 ? missing : missing == 101 ? 50 : 100;
            place += L'\\' + std::wstring(part - 1, L'f');
            CreateDirectoryW(place.c_str(), nullptr);
        }
        path = place + name;
        const fs::path library = start / L"library_search" / L"library_needed.dll";
        EXPECT_TRUE(CopyFileW(library.c_str(), path.c_str(), FALSE)) << GetLastError();
        module = LoadLibraryExW(path.c_str(), nullptr, 0);
    }
    ~FarLibrary()
    {
        if (module) FreeLibrary(module);
        DeleteFileW(path.c_str());
        std::wstring place = path;
        do {
            place.resize(place.rfind(L'\\'));
            RemoveDirectoryW(place.c_str());
        } while (place.size() > folder.wstring().size() + 4);
    }
    FarLibrary(const FarLibrary&) = delete;
    FarLibrary& operator=(const FarLibrary&) = delete;

    HMODULE Module() const { return module; }
    const std::wstring& Path() const { return path; }

private:
    fs::path folder;
    std::wstring path;
    HMODULE module = nullptr;
};

TEST(ModulePath, IsWholeWhateverItsLength)
{
    for (const std::size_t length : {200u, 257u, 258u, 259u, 260u, 261u, 300u, 515u, 516u, 517u, 520u, 521u, 600u}) {
        SCOPED_TRACE(length);
        const FarLibrary library(length);
        ASSERT_TRUE(library.Module()) << GetLastError();
        const std::wstring found = com::ModulePath(library.Module());
        EXPECT_TRUE(found.ends_with(L"\\needed.dll"));
        // The system may return the path with or without the prefix of long paths.
        EXPECT_TRUE(found == library.Path() || found == library.Path().substr(4)) << found.size();
    }
}

TEST(ModulePath, OfWhatIsNoModuleIsAFailure)
{
    EXPECT_THROW(com::ModulePath(reinterpret_cast<HMODULE>(static_cast<INT_PTR>(8))), com::Failure);
}

}  // namespace
}  // namespace zelt::test
