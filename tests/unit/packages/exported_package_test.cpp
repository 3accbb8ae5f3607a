#include "packages/exported_package.h"

#include <gtest/gtest.h>

#include <vector>

namespace {

using namespace std::string_view_literals;
using zelt::ExportedPackage;
using zelt::PackageKind;

constexpr CLSID kSampleClass = {0x4CCF55DB, 0xE332, 0x42F8, {0xB6, 0x85, 0x18, 0x89, 0x89, 0xF8, 0xE1, 0xEC}};
const std::string kClassText = "{4CCF55DB-E332-42F8-B685-188989F8E1EC}";

std::string MultiString(const std::vector<std::string>& strings)
{
    std::string text;
    for (const std::string& string : strings) text += string + '\0';
    return text + '\0';
}

std::string ClassAnd(std::string_view rest)
{
    std::string text = kClassText;
    text += rest;
    return text;
}

TEST(ExportedPackage, IsFiveStringsAndAFinalTerminator)
{
    const ExportedPackage package = {kSampleClass, PackageKind::ReactionPackage10FromManager, L"inner", L"outer", true};
    EXPECT_EQ(MultiString({kClassText, "4", "inner", "outer", "true"}), package.Format());
    EXPECT_EQ(kClassText.size() + 1 + 5 + 5 + 4 + 5 + 1, package.Format().size());

    const ExportedPackage bare = {kSampleClass, PackageKind::PropertyPackage11StandAlone, L"", L"", false};
    EXPECT_EQ(MultiString({kClassText, "1", "", "", "false"}), bare.Format());
}

TEST(ExportedPackage, IsParsedAsFormatted)
{
    for (unsigned kind = 0; kind < zelt::kPackageKinds; ++kind) {
        const ExportedPackage package = {kSampleClass, static_cast<PackageKind>(kind), L"", L"an outer name",
                                         kind % 2 == 0};
        ExportedPackage parsed;
        parsed.sourceName = L"replaced";
        ASSERT_TRUE(parsed.Parse(package.Format())) << kind;
        EXPECT_TRUE(IsEqualCLSID(kSampleClass, parsed.classId));
        EXPECT_EQ(package.kind, parsed.kind);
        EXPECT_EQ(package.sourceName, parsed.sourceName);
        EXPECT_EQ(package.exportedName, parsed.exportedName);
        EXPECT_EQ(package.loggingEnabled, parsed.loggingEnabled);
    }
}

TEST(ExportedPackage, KeepsTheCharactersOfTheThreadsCodePage)
{
    // A Western letter: a code page that lacks it loses the letter, but not the rest of the name.
    ExportedPackage package = {kSampleClass, PackageKind::PropertyPackage11StandAlone, L"", L"a\xE9z", false}, parsed;
    wchar_t expected[4] = L"a?z";
    char narrow[8] = "";
    WideCharToMultiByte(CP_THREAD_ACP, 0, L"a\xE9z", -1, narrow, sizeof narrow, nullptr, nullptr);
    MultiByteToWideChar(CP_THREAD_ACP, 0, narrow, -1, expected, 4);
    ASSERT_TRUE(parsed.Parse(package.Format()));
    EXPECT_EQ(std::wstring(expected), parsed.exportedName);
}

TEST(ExportedPackage, AcceptsKindsAsTheyAreRead)
{
    struct Case {
        const char* text;
        unsigned kind;
    };
    const Case cases[] = {{"0", 0}, {"5", 5}, {"   2", 2}, {"\t2", 2}, {"+3", 3}, {"04", 4}, {"2x", 2}, {"1 9", 1}};
    for (const Case& c : cases) {
        ExportedPackage package;
        ASSERT_TRUE(package.Parse(MultiString({kClassText, c.text, "s", "e", "true"}))) << c.text;
        EXPECT_EQ(c.kind, static_cast<unsigned>(package.kind)) << c.text;
        EXPECT_EQ(L"e", package.exportedName) << c.text;
    }
}

TEST(ExportedPackage, RejectsBadKinds)
{
    const char* cases[] = {"6", "-1", "abc", "", " ", "-2147483648", "4294967296", "99999999999999999999", "x2"};
    for (const char* text : cases) {
        ExportedPackage package;
        EXPECT_FALSE(package.Parse(MultiString({kClassText, text, "s", "e", "true"}))) << text;
    }
}

TEST(ExportedPackage, RejectsBadClassIdentifiers)
{
    const char* cases[] = {"",
                           "4CCF55DB-E332-42F8-B685-188989F8E1EC",
                           "{4CCF55DB-E332-42F8-B685-188989F8E1E}",
                           "{4CCF55DB-E332-42F8-B685-188989F8E1EC",
                           "{4CCF55DBxE332-42F8-B685-188989F8E1EC}",
                           "No.SuchProgram.Identifier"};
    for (const char* text : cases) {
        ExportedPackage package;
        EXPECT_FALSE(package.Parse(MultiString({text, "0", "s", "e", "true"}))) << text;
    }
    ExportedPackage lower;
    EXPECT_TRUE(lower.Parse(MultiString({"{4ccf55db-e332-42f8-b685-188989f8e1ec}", "0", "s", "e", "true"})));
    EXPECT_TRUE(IsEqualCLSID(kSampleClass, lower.classId));
}

TEST(ExportedPackage, LogsOnlyWhenTheTextIsTrue)
{
    struct Case {
        const char* text;
        bool enabled;
    };
    const Case cases[] = {{"true", true}, {"TRUE", true}, {"True", true},   {"false", false}, {"yes", false},
                          {"1", false},   {"", false},    {"true ", false}, {" true", false}, {"tru", false}};
    for (const Case& c : cases) {
        ExportedPackage package;
        package.loggingEnabled = !c.enabled;
        ASSERT_TRUE(package.Parse(MultiString({kClassText, "0", "s", "e", c.text})));
        EXPECT_EQ(c.enabled, package.loggingEnabled) << c.text;
    }
}

// Each text lies at the end of readable memory, so that reading past the text always faults.
TEST(ExportedPackage, IsNeverReadPastItsEnd)
{
    struct Case {
        const char* reason;
        std::string data;
        bool accepted;
        const wchar_t* exportedName;
        bool enabled;
    };
    const Case cases[] = {
        {"nothing at all", "", false, L"", false},
        {"class only, not terminated", kClassText, false, L"", false},
        {"kind not terminated", ClassAnd("\0003"sv), true, L"", false},
        {"source not terminated", ClassAnd("\0003\0source"sv), true, L"", false},
        {"name not terminated", ClassAnd("\0003\0s\0name"sv), true, L"name", false},
        {"logging missing", ClassAnd("\0003\0s\0name\0"sv), true, L"name", false},
        {"logging not terminated", ClassAnd("\0003\0s\0name\0true"sv), true, L"name", true},
        {"final terminator missing", ClassAnd("\0003\0s\0name\0true\0"sv), true, L"name", true},
    };
    SYSTEM_INFO system;
    GetSystemInfo(&system);
    const std::size_t page = system.dwPageSize;
    auto* pages = static_cast<char*>(VirtualAlloc(nullptr, 2 * page, MEM_RESERVE, PAGE_NOACCESS));
    ASSERT_TRUE(pages && VirtualAlloc(pages, page, MEM_COMMIT, PAGE_READWRITE));
    for (const Case& c : cases) {
        char* start = pages + page - c.data.size();  // The byte after the text is not readable.
        std::copy(c.data.begin(), c.data.end(), start);
        ExportedPackage package;
        ASSERT_EQ(c.accepted, package.Parse({start, c.data.size()})) << c.reason;
        if (!c.accepted) continue;
        EXPECT_EQ(c.exportedName, package.exportedName) << c.reason;
        EXPECT_EQ(c.enabled, package.loggingEnabled) << c.reason;
    }
    VirtualFree(pages, 0, MEM_RELEASE);
}

TEST(ExportedPackage, NamesAreComparedWithoutCase)
{
    EXPECT_TRUE(zelt::SameName(L"Name", L"nAME"));
    EXPECT_TRUE(zelt::SameName(L"", L""));
    EXPECT_TRUE(zelt::SameName(L"\xC4", L"\xE4"));
    EXPECT_FALSE(zelt::SameName(L"Name", L"Name "));
    EXPECT_FALSE(zelt::SameName(L"", L"x"));
}

}  // namespace
