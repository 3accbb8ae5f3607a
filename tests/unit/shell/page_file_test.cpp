// Reading pieces of a file that lie after its first 4 GB.
#include "shell/log_viewer/pages/page_file.h"

#include <gtest/gtest.h>
#include <winioctl.h>

#include "log_fixture.h"
#include "system/owners.h"

namespace zelt::test {
namespace {

TEST(PageFile, ReadsFarBehindTheBeginning)
{
    constexpr std::int64_t kFar = 20'000'000'000;
    const std::wstring path = TemporaryPath();
    {
        // A file with a hole: it takes no room on the disk.
        const UniqueHandle file(CreateFileW(path.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, 0, nullptr));
        ASSERT_NE(INVALID_HANDLE_VALUE, file.get());
        DWORD ignored = 0;
        DeviceIoControl(file.get(), FSCTL_SET_SPARSE, nullptr, 0, nullptr, 0, &ignored, nullptr);
        LARGE_INTEGER place;
        place.QuadPart = kFar;
        ASSERT_TRUE(SetFilePointerEx(file.get(), place, nullptr, FILE_BEGIN));
        ASSERT_TRUE(WriteFile(file.get(), "a page", 6, &ignored, nullptr)) << GetLastError();
    }
    {
        PageFile file;
        ASSERT_EQ(0u, file.Open(path));
        EXPECT_EQ("a page", file.Read(kFar, kFar + 6));
        EXPECT_EQ("page", file.Read(kFar + 2, kFar + 6));
        EXPECT_EQ(std::string(3, '\0') + "a", file.Read(kFar - 3, kFar + 1));
        // Reading stops at the end of the file.
        EXPECT_EQ("page", file.Read(kFar + 2, kFar + 100));
        EXPECT_EQ("", file.Read(kFar + 6, kFar + 100));
    }
    EXPECT_TRUE(DeleteFileW(path.c_str()));
}

}  // namespace
}  // namespace zelt::test
