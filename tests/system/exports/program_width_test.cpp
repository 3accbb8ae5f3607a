#include "system/program_width.h"

#include <gtest/gtest.h>
#include <windows.h>

#include <filesystem>
#include <fstream>

#include "system/narrow.h"
#include "tests/system/harness/text_file.h"
#include "tests/trees.h"

namespace zelt::test {
namespace {

// The beginning of a program for the processor `machine`, with its header at `offset`.
std::string Image(std::size_t offset, const std::string& machine)
{
    std::string bytes(offset, '\0');
    bytes.replace(0, 2, "MZ");
    bytes[0x3C] = static_cast<char>(offset & 0xFF);
    bytes[0x3D] = static_cast<char>(offset >> 8);
    return bytes + std::string("PE\0\0", 4) + machine;
}

TEST(ProgramWidth, IsReadFromTheHeader)
{
    EXPECT_EQ(32, WidthOfImage(Image(0x80, "\x4C\x01")));
    EXPECT_EQ(64, WidthOfImage(Image(0x80, "\x64\x86")));
    EXPECT_EQ(64, WidthOfImage(Image(0x1234, "\x64\xAA")));
    EXPECT_FALSE(WidthOfImage(Image(0x80, "\x99\x99"))) << "an unknown processor";
    EXPECT_FALSE(WidthOfImage(Image(0x80, "\x4C"))) << "cut off in the processor";
    EXPECT_FALSE(WidthOfImage(Image(0x80, "\x4C\x01").substr(0, 0x82))) << "cut off in the mark";
    EXPECT_FALSE(WidthOfImage(Image(0x80, "\x4C\x01").substr(0, 0x3E))) << "cut off in the offset";
    EXPECT_FALSE(WidthOfImage(""));
    EXPECT_FALSE(WidthOfImage("MZ"));
    std::string beyond = Image(0x80, "\x4C\x01");
    beyond.replace(0x3C, 4, "\xFF\xFF\xFF\xFF");
    EXPECT_FALSE(WidthOfImage(beyond)) << "an offset after the end of the file";
    std::string other = Image(0x80, "\x4C\x01");
    other[0] = 'N';
    EXPECT_FALSE(WidthOfImage(other));
}

TEST(ProgramWidth, TellsFilesApart)
{
    const ImageFile package = ReadImageFile(Widen(BuiltFile("samples/SamplePackage.dll")));
    EXPECT_EQ(ImageState::Sound, package.state);
    EXPECT_EQ(static_cast<int>(8 * sizeof(void*)), package.bits);
    EXPECT_EQ(ImageState::Missing, ReadImageFile(L"C:\\no such folder\\no.dll").state);
    EXPECT_EQ(ImageState::NoImage, ReadImageFile(Widen(SourceFile("README.md"))).state);
}

// Only the beginning of a file is read: a file that is not a program may be large.
TEST(ProgramWidth, IsLookedForInTheFirst64KilobytesOfAFile)
{
    const std::wstring path = Widen(BuiltFile("tests/system/program_width.dll"));
    const auto stateOf = [&](const std::string& bytes) {
        std::ofstream(std::filesystem::path(path), std::ios::binary) << bytes;
        const ImageState state = ReadImageFile(path).state;
        EXPECT_TRUE(DeleteFileW(path.c_str()));
        return state;
    };
    const std::size_t last = 64 * 1024 - 6;
    EXPECT_EQ(ImageState::Sound, stateOf(Image(last, "\x4C\x01") + "more"));
    EXPECT_EQ(ImageState::NoImage, stateOf(Image(last + 1, "\x4C\x01") + "more"));
}

}  // namespace
}  // namespace zelt::test
