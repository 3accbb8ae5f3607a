// path add and path remove: what they do to a search path of any form, and that they leave everything else alone.
#include <gtest/gtest.h>

#include <filesystem>

#include "ctl/command.h"
#include "ctl/path/search_path.h"
#include "system/narrow.h"
#include "tests/system/exports/windows_commands.h"
#include "tests/system/harness/scratch_registry.h"

namespace zelt::test {
namespace {

using namespace zelt::ctl;

TEST(ProgramPath, GetsAFolderAtItsEndAndGivesItBack)
{
    const std::wstring folder = L"C:\\Program Files (x86)\\ZELT";
    const struct {
        std::wstring before, after;
    } rows[] = {
        {L"", folder},
        {L"C:\\Windows", L"C:\\Windows;" + folder},
        {L"%SystemRoot%\\system32;C:\\a b\\", L"%SystemRoot%\\system32;C:\\a b\\;" + folder},
        {L"C:\\one;;C:\\two", L"C:\\one;;C:\\two;" + folder},
        {L"\"C:\\a;b\";C:\\ZELT", L"\"C:\\a;b\";C:\\ZELT;" + folder},
        {L"C:\\Program Files (x86)\\ZELT2;x" + folder, L"C:\\Program Files (x86)\\ZELT2;x" + folder + L';' + folder},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(row.after, WithFolder(row.before, folder));
        EXPECT_EQ(row.after, WithFolder(row.after, folder));
        EXPECT_EQ(row.before, WithoutFolder(row.after, folder));
        EXPECT_EQ(row.before, WithoutFolder(row.before, folder));
    }
    // A semicolon at the end is an empty entry, which the folder replaces.
    EXPECT_EQ(L"C:\\Windows;" + folder, WithFolder(L"C:\\Windows;", folder));
}

TEST(ProgramPath, KnowsAFolderHoweverItIsWritten)
{
    SetEnvironmentVariableW(L"ZELT_TEST_FOLDER", L"C:\\Tools");
    const std::wstring folder = L"C:\\Tools\\Zelt";
    for (const wchar_t* entry :
         {L"C:\\Tools\\Zelt", L"c:\\tools\\ZELT\\", L"\"C:\\Tools\\Zelt\"", L"%ZELT_TEST_FOLDER%\\zelt"}) {
        const std::wstring list = L"C:\\Windows;" + std::wstring(entry) + L";C:\\z";
        EXPECT_EQ(list, WithFolder(list, folder));
    }
    for (const wchar_t* entry : {L"C:\\Tools", L"C:\\Tools\\Zelt\\more", L"", L"C:\\Tools\\Zelt2"}) {
        EXPECT_FALSE(ContainsFolder(L"C:\\Windows;" + std::wstring(entry), folder)) << testing::PrintToString(entry);
    }
    // An entry in another spelling was written by somebody else, and stays.
    EXPECT_EQ(L"%ZELT_TEST_FOLDER%\\zelt;C:\\z", WithoutFolder(L"%ZELT_TEST_FOLDER%\\zelt;C:\\z", folder));
    SetEnvironmentVariableW(L"ZELT_TEST_FOLDER", nullptr);
}

TEST(ProgramPath, MayHoldAFolderWithASemicolon)
{
    const std::wstring folder = L"C:\\a;b", list = L"C:\\Windows;\"C:\\a;b\"";
    EXPECT_EQ(list, WithFolder(L"C:\\Windows", folder));
    EXPECT_EQ(list, WithFolder(list, folder));
    EXPECT_EQ(L"C:\\Windows", WithoutFolder(list, folder));
}

std::wstring Long()
{
    std::wstring list;
    for (int i = 0; i < 2000; ++i) list += L"C:\\Some folder\\" + std::to_wstring(i) + L"\\\u00E9;";
    return list + L"C:\\last";
}

TEST(ProgramPath, OfTheRegistryKeepsItsTypeAndItsLength)
{
    const ScratchKey scratch;
    const std::wstring folder = L"C:\\ZELT";
    for (const DWORD type : {REG_SZ, REG_EXPAND_SZ}) {
        for (const std::wstring& before : {std::wstring(L"%SystemRoot%;C:\\x"), Long()}) {
            RegistryKey key;
            ASSERT_EQ(ERROR_SUCCESS, key.Create(scratch.Root(), L"environment"));
            ASSERT_EQ(ERROR_SUCCESS,
                      key.WriteBytes(L"PATH", type, before.c_str(), (before.size() + 1) * sizeof(wchar_t)));
            const RegistryValue original = *key.ReadValue(L"Path");
            EXPECT_TRUE(ChangeSearchPath(scratch.Root(), L"environment", folder, PathChange::Add));
            EXPECT_FALSE(ChangeSearchPath(scratch.Root(), L"environment", folder, PathChange::Add));
            const RegistryValue added = *key.ReadValue(L"Path");
            EXPECT_EQ(type, added.type);
            const std::wstring after = before + L";" + folder;
            const auto* const bytes = reinterpret_cast<const BYTE*>(after.c_str());
            EXPECT_EQ(std::vector<BYTE>(bytes, bytes + (after.size() + 1) * sizeof(wchar_t)), added.data);
            EXPECT_TRUE(ChangeSearchPath(scratch.Root(), L"environment", folder, PathChange::Remove));
            EXPECT_FALSE(ChangeSearchPath(scratch.Root(), L"environment", folder, PathChange::Remove));
            EXPECT_EQ(original, *key.ReadValue(L"Path"));
        }
    }
}

TEST(ProgramPath, OfTheRegistryNeedNotBeThere)
{
    const ScratchKey scratch;
    RegistryKey key;
    ASSERT_EQ(ERROR_SUCCESS, key.Create(scratch.Root(), L"environment"));
    EXPECT_FALSE(ChangeSearchPath(scratch.Root(), L"environment", L"C:\\ZELT", PathChange::Remove));
    EXPECT_TRUE(ChangeSearchPath(scratch.Root(), L"environment", L"C:\\ZELT", PathChange::Add));
    EXPECT_EQ(static_cast<DWORD>(REG_EXPAND_SZ), key.ReadValue(L"Path")->type);
    EXPECT_TRUE(ChangeSearchPath(scratch.Root(), L"environment", L"C:\\ZELT", PathChange::Remove));
    EXPECT_TRUE(key.ValueNames().empty());
}

TEST(ProgramPath, OfTheRegistryIsLeftAloneWhenItIsNoText)
{
    const ScratchKey scratch;
    RegistryKey key;
    ASSERT_EQ(ERROR_SUCCESS, key.Create(scratch.Root(), L"environment"));
    ASSERT_EQ(ERROR_SUCCESS, key.WriteDword(L"Path", 7));
    EXPECT_THROW(ChangeSearchPath(scratch.Root(), L"environment", L"C:\\ZELT", PathChange::Add), InputError);
    EXPECT_EQ(7u, key.ReadDword(L"Path"));
    EXPECT_THROW(ChangeSearchPath(scratch.Root(), L"no such key", L"C:\\ZELT", PathChange::Add), InputError);
}

class PathCommand : public Zeltctl {
protected:
    ~PathCommand() override
    {
        for (const bool isMachine : {false, true}) {
            if (before[isMachine] == Value(isMachine)) continue;
            RegistryKey key = Environment(isMachine, KEY_SET_VALUE);
            const auto& value = before[isMachine];
            if (!value)
                RegDeleteValueW(key.Get(), L"Path");
            else
                EXPECT_EQ(ERROR_SUCCESS, key.WriteBytes(L"Path", value->type, value->data.data(), value->data.size()));
        }
    }

    // The stored path of the user or of all users, without an empty entry at its end: adding a folder removes such an entry for
    // good.
    static std::wstring Stored(bool isMachine)
    {
        const auto value = Value(isMachine);
        if (!value) return {};
        std::wstring text(reinterpret_cast<const wchar_t*>(value->data.data()), value->data.size() / sizeof(wchar_t));
        while (text.ends_with(L'\0') || text.ends_with(L';')) text.pop_back();
        return text;
    }

private:
    static RegistryKey Environment(bool isMachine, REGSAM access)
    {
        RegistryKey key;
        const wchar_t* const path =
            isMachine ? L"SYSTEM\\CurrentControlSet\\Control\\Session Manager\\Environment" : L"Environment";
        EXPECT_EQ(ERROR_SUCCESS, key.Open({isMachine ? HKEY_LOCAL_MACHINE : HKEY_CURRENT_USER, 0}, path, access));
        return key;
    }
    static std::optional<RegistryValue> Value(bool isMachine)
    {
        return Environment(isMachine, KEY_READ).ReadValue(L"Path");
    }

    const std::optional<RegistryValue> before[2] = {Value(false), Value(true)};
};

TEST_F(PathCommand, ChangesThePathOfTheUserOrOfEverybody)
{
    wchar_t program[MAX_PATH];
    GetModuleFileNameW(nullptr, program, MAX_PATH);
    const std::string folder = Narrow(std::filesystem::path(program).parent_path().wstring(), CP_UTF8);
    const std::wstring before[] = {Stored(false), Stored(true)};
    for (const bool isMachine : {false, true}) {
        const auto run = [&](const char* action) {
            std::vector<std::string> words = {"path", action};
            if (isMachine) words.push_back("--machine");
            const CommandOutcome outcome = RunZeltctl(words);
            EXPECT_EQ(0, outcome.code) << outcome.messages;
            return outcome.data;
        };
        EXPECT_EQ("added: " + folder + '\n', run("add"));
        EXPECT_NE(before[isMachine], Stored(isMachine));
        EXPECT_EQ(before[!isMachine], Stored(!isMachine));
        EXPECT_EQ("already there: " + folder + '\n', run("add"));
        EXPECT_EQ("removed: " + folder + '\n', run("remove"));
        EXPECT_EQ("not there: " + folder + '\n', run("remove"));
        EXPECT_EQ(before[isMachine], Stored(isMachine));
    }
}

}  // namespace
}  // namespace zelt::test
