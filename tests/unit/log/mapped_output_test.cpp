// The file of a recording: what is appended is in the file at once and whole, and the file ends with it.
#include <gtest/gtest.h>

#include <random>
#include <string>

#include "log_fixture.h"
#include "log/recording/mapped_output.h"
#include "tests/system/harness/under_wine.h"

namespace zelt::test {
namespace {

class MappedOutputTest : public testing::Test {
protected:
    ~MappedOutputTest() override { DeleteFileW(path.c_str()); }

    LogFile Open(int (LogFile::*open)(const std::wstring&) = &LogFile::OpenForMapping) const
    {
        LogFile file;
        EXPECT_EQ(0, (file.*open)(path));
        return file;
    }
    // Checks that the file has these bytes, and then nothing but zeros.
    void ExpectStored(const std::string& bytes) const
    {
        const std::string stored = ReadWhole(path);
        EXPECT_TRUE(stored.starts_with(bytes));
        EXPECT_EQ(std::string::npos, stored.find_first_not_of('\0', bytes.size()));
    }

    const std::wstring path = TemporaryPath();
};

// The place in memory of the window that begins with `text`.
void* FindWindowWith(const std::string& text)
{
    MEMORY_BASIC_INFORMATION region = {};
    char* at = nullptr;
    while (VirtualQuery(at, &region, sizeof region) != 0) {
        at = static_cast<char*>(region.BaseAddress);
        const bool isWindow =
            region.State == MEM_COMMIT && region.Type == MEM_MAPPED && region.Protect == PAGE_READWRITE;
        if (isWindow && region.RegionSize >= text.size() && text.compare(0, text.size(), at, text.size()) == 0)
            return at;
        at += region.RegionSize;
    }
    return nullptr;
}

TEST_F(MappedOutputTest, StoresAtOnce)
{
    MappedOutput output(Open());
    EXPECT_TRUE(output.Append(""));
    EXPECT_TRUE(output.Append("a"));
    ExpectStored("a");
    EXPECT_TRUE(output.Append("bc"));
    ExpectStored("abc");
    if (!FindWindowWith("abc") && !UnderWine()) GTEST_SKIP() << "the temporary files are on a drive that is not mapped";
    EXPECT_NE(nullptr, FindWindowWith("abc")) << "the file was not mapped";
}

TEST_F(MappedOutputTest, EndsTheFileWithTheLastByte)
{
    for (const std::string bytes : {"", "abc"}) {
        MappedOutput output(Open());
        EXPECT_TRUE(output.Append(bytes));
        output.Close();
        EXPECT_EQ(bytes, ReadWhole(path));
        output.Close();
    }
    // The destructor closes it, too.
    EXPECT_TRUE(MappedOutput(Open()).Append("de"));
    EXPECT_EQ("de", ReadWhole(path));
}

TEST_F(MappedOutputTest, TakesMoreThanAWindow)
{
    std::mt19937 random(20);
    MappedOutput output(Open());
    std::string all;
    while (all.size() < 5'000'000) {
        // Now and then more than a window has room for.
        const std::size_t size = random() % 16 == 0 ? random() % 1'000'000 : random() % 50'000;
        std::string bytes(1 + size, '\0');
        for (char& byte : bytes) byte = static_cast<char>(random());
        if (bytes[0] == '\0') bytes[0] = 'r';
        ASSERT_TRUE(output.Append(bytes));
        all += bytes;
        if (random() % 16 == 0) ExpectStored(all);
    }
    output.Close();
    EXPECT_TRUE(ReadWhole(path) == all);
}

TEST_F(MappedOutputTest, WritesWhereTheFileCannotBeMapped)
{
    MappedOutput output(Open(&LogFile::Open));
    EXPECT_TRUE(output.Append("ab"));
    EXPECT_EQ("ab", ReadWhole(path));
    EXPECT_TRUE(output.Append("c"));
    output.Close();
    EXPECT_EQ("abc", ReadWhole(path));
}

// A drive that does not take what was written to the window shows in a fault.
TEST_F(MappedOutputTest, EndsBeforeBytesThatCannotAllBeStored)
{
    constexpr std::size_t kPage = 4096;
    const std::string before = "before the fault";
    MappedOutput output(Open());
    EXPECT_TRUE(output.Append(before));
    auto* const window = static_cast<char*>(FindWindowWith(before));
    if (!window && !UnderWine()) GTEST_SKIP() << "the temporary files are on a drive that is not mapped";
    ASSERT_NE(nullptr, window);
    DWORD protection = 0;
    ASSERT_TRUE(VirtualProtect(window + kPage, 1, PAGE_READONLY, &protection));
    EXPECT_FALSE(output.Append(std::string(2 * kPage, 'x')));
    ASSERT_TRUE(VirtualProtect(window + kPage, 1, protection, &protection));
    const std::string stored = ReadWhole(path);
    EXPECT_TRUE(stored.starts_with(before + '\0'));
    output.Close();
    EXPECT_EQ(before, ReadWhole(path));
}

// A full disk: the file cannot grow. What comes after is written, as far as there is room.
TEST_F(MappedOutputTest, WritesOnceTheFileCannotGrow)
{
    MappedOutput output(Open());
    std::string all(200'000, 'a');
    EXPECT_TRUE(output.Append(all));
    const FileMapper mapper = SetFileMapper([](HANDLE, LONGLONG) -> HANDLE { return nullptr; });
    for (const char c : {'b', 'c'}) {
        const std::string more(100'000, c);
        EXPECT_TRUE(output.Append(more));
        all += more;
        EXPECT_TRUE(ReadWhole(path) == all);
    }
    const FileWriter writer = SetFileWriter([](HANDLE, const void*, DWORD, DWORD* written) -> BOOL {
        *written = 0;
        return FALSE;
    });
    EXPECT_FALSE(output.Append("d"));
    SetFileWriter(writer);
    SetFileMapper(mapper);
    output.Close();
    EXPECT_TRUE(ReadWhole(path) == all);
}

// A file that another program has mapped cannot be made shorter. What follows the last byte is 0, so readers find the end.
TEST_F(MappedOutputTest, LeavesZerosWhereAnotherProgramHasMappedTheFile)
{
    MappedOutput output(Open());
    EXPECT_TRUE(output.Append("abc"));
    const HANDLE reader =
        CreateFileW(path.c_str(), GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr, OPEN_EXISTING, 0, nullptr);
    ASSERT_NE(INVALID_HANDLE_VALUE, reader);
    const HANDLE mapping = CreateFileMappingW(reader, nullptr, PAGE_READONLY, 0, 0, nullptr);
    const void* const view = MapViewOfFile(mapping, FILE_MAP_READ, 0, 0, 0);
    EXPECT_NE(nullptr, view);
    output.Close();
    ExpectStored("abc");
    // Under Wine the file is made shorter all the same.
    EXPECT_TRUE(UnderWine() || ReadWhole(path).size() > 3);
    UnmapViewOfFile(view);
    CloseHandle(mapping);
    CloseHandle(reader);
}

}  // namespace
}  // namespace zelt::test
