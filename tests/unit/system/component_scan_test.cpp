#include <gtest/gtest.h>
#include <objbase.h>
#include <sddl.h>

#include "system/component_scan.h"
#include "tests/unit/support/recorded_messages.h"
#include "tests/system/harness/scratch_registry.h"

namespace {

constexpr wchar_t kCategory[] = L"{11111111-0000-0000-0000-00000000000a}";
constexpr wchar_t kOtherCategory[] = L"{22222222-0000-0000-0000-00000000000B}";
constexpr wchar_t kFirst[] = L"{0A000000-0000-0000-0000-000000000001}";
constexpr wchar_t kSecond[] = L"{0B000000-0000-0000-0000-000000000002}";
constexpr wchar_t kThird[] = L"{0C000000-0000-0000-0000-000000000003}";

CLSID ClassOf(const wchar_t* text)
{
    CLSID result = {};
    EXPECT_EQ(S_OK, CLSIDFromString(text, &result));
    return result;
}

class ComponentScan : public testing::Test {
protected:
    void SetUp() override { EXPECT_EQ(ERROR_SUCCESS, top.Create(scratch.Root(), L"Own\\CLSID")); }

    void Write(const std::wstring& path, const wchar_t* name, const wchar_t* text, const wchar_t* view = L"Own")
    {
        zelt::RegistryKey key;
        ASSERT_EQ(ERROR_SUCCESS, key.Create(scratch.Root(), std::wstring(view) + L"\\CLSID\\" + path));
        if (text) {
            ASSERT_EQ(ERROR_SUCCESS, key.WriteString(name, text));
        }
    }
    void Register(const std::wstring& identity, const wchar_t* category = kCategory, const wchar_t* view = L"Own")
    {
        Write(identity + L"\\Implemented Categories\\" + category, L"", nullptr, view);
    }
    std::vector<zelt::ComponentInfo> Find(const CLSID& leftOut = CLSID_NULL, bool bothViews = false)
    {
        zelt::RegistryKey own, other;
        EXPECT_EQ(ERROR_SUCCESS, own.Create(scratch.Root(), L"Own"));
        EXPECT_EQ(ERROR_SUCCESS, other.Create(scratch.Root(), L"Other"));
        const zelt::ComponentSearch searches[] = {{kCategory, leftOut}};
        auto found = zelt::FindComponents(searches, {{own.Get(), 0}, {bothViews ? other.Get() : nullptr, 0}});
        EXPECT_TRUE(found.outcome);
        return found.lists.front();
    }
    // Searches below the keys of these names: the process's own view, the other one, and the user's two, in this order.
    zelt::FoundComponents FindIn(const std::vector<const wchar_t*>& views)
    {
        zelt::RegistryKey keys[4];
        for (std::size_t view = 0; view < views.size(); ++view) {
            EXPECT_EQ(ERROR_SUCCESS, keys[view].Create(scratch.Root(), views[view]));
        }
        const zelt::ComponentSearch searches[] = {{kCategory, CLSID_NULL}};
        auto found = zelt::FindComponents(
            searches, {{keys[0].Get(), 0}, {keys[1].Get(), 0}, {keys[2].Get(), 0}, {keys[3].Get(), 0}});
        EXPECT_TRUE(found.outcome);
        return found;
    }
    std::wstring OnlyName()
    {
        const auto found = Find();
        EXPECT_EQ(1u, found.size());
        return found.empty() ? L"" : found.front().displayName;
    }

    zelt::test::ScratchKey scratch;
    zelt::RegistryKey top;
    const zelt::test::RecordedMessages messages;
};

TEST_F(ComponentScan, DisplayNameComesFromTheFirstPlaceThatHasOne)
{
    Register(kFirst);
    EXPECT_EQ(kFirst, OnlyName());
    Write(std::wstring(kFirst) + L"\\VersionIndependentProgID", L"", L"Maker.Package");
    EXPECT_EQ(L"Maker.Package", OnlyName());
    Write(std::wstring(kFirst) + L"\\ProgID", L"", L"Maker.Package.1");
    EXPECT_EQ(L"Maker.Package.1", OnlyName());
    Write(std::wstring(kFirst) + L"\\CapeDescription", L"Description", L"all about it");
    EXPECT_EQ(L"all about it", OnlyName());
    Write(std::wstring(kFirst) + L"\\CapeDescription", L"Name", L"");
    EXPECT_EQ(L"all about it", OnlyName());
    Write(std::wstring(kFirst) + L"\\CapeDescription", L"Name", L"Package");
    EXPECT_EQ(L"Package (all about it)", OnlyName());
    EXPECT_EQ(L"Package", Find().front().name);
    EXPECT_TRUE(messages.All().empty());
}

TEST_F(ComponentScan, NameWithoutDescriptionStandsAlone)
{
    Register(kFirst);
    Write(std::wstring(kFirst) + L"\\CapeDescription", L"Name", L"Package");
    EXPECT_EQ(L"Package", OnlyName());
}

TEST_F(ComponentScan, CategoriesAreComparedWithoutRegardToCase)
{
    Register(kFirst, L"{11111111-0000-0000-0000-00000000000A}");
    Register(kSecond, kOtherCategory);
    const auto found = Find();
    ASSERT_EQ(1u, found.size());
    EXPECT_EQ(ClassOf(kFirst), found[0].classId);
}

TEST_F(ComponentScan, LeavesOutTheGivenClassAndWhatIsNoClass)
{
    Register(kFirst);
    Register(kSecond);
    Register(L"no class identifier");
    Register(L"{0D000000-0000-0000-0000}");
    const auto found = Find(ClassOf(kFirst));
    ASSERT_EQ(1u, found.size());
    EXPECT_EQ(ClassOf(kSecond), found[0].classId);
}

TEST_F(ComponentScan, OnePassServesSeveralCategories)
{
    Register(kFirst);
    Register(kFirst, kOtherCategory);
    Register(kSecond, kOtherCategory);
    zelt::RegistryKey own;
    ASSERT_EQ(ERROR_SUCCESS, own.Open(scratch.Root(), L"Own"));
    const zelt::ComponentSearch searches[] = {{kCategory, CLSID_NULL}, {kOtherCategory, ClassOf(kFirst)}};
    const auto found = zelt::FindComponents(searches, {{own.Get(), 0}, {nullptr, 0}}).lists;
    ASSERT_EQ(2u, found.size());
    ASSERT_EQ(1u, found[0].size());
    EXPECT_EQ(ClassOf(kFirst), found[0][0].classId);
    ASSERT_EQ(1u, found[1].size());
    EXPECT_EQ(ClassOf(kSecond), found[1][0].classId);
}

TEST_F(ComponentScan, TheOtherViewAddsOnlyServersThatRunByThemselves)
{
    Register(kFirst);
    // A class in both views is listed once, with the name from the process's own view.
    Register(kFirst, kCategory, L"Other");
    Write(std::wstring(kFirst) + L"\\LocalServer32", L"", L"server.exe", L"Other");
    Write(std::wstring(kFirst) + L"\\ProgID", L"", L"wrong view", L"Other");
    // A DLL of the other width cannot be loaded.
    Register(kSecond, kCategory, L"Other");
    Write(std::wstring(kSecond) + L"\\InprocServer32", L"", L"package.dll", L"Other");
    Register(kThird, kCategory, L"Other");
    Write(std::wstring(kThird) + L"\\LocalServer32", L"", L"server.exe", L"Other");
    const auto found = Find(CLSID_NULL, true);
    ASSERT_EQ(2u, found.size());
    EXPECT_EQ(kFirst, found[0].displayName);
    EXPECT_EQ(ClassOf(kThird), found[1].classId);
    EXPECT_EQ(1u, Find().size());
}

TEST_F(ComponentScan, WhatTheOtherWidthAloneCanUseIsApartWithTheReason)
{
    Register(kFirst, kCategory, L"Other");
    Write(std::wstring(kFirst) + L"\\InprocServer32", L"", L"package.dll", L"Other");
    Register(kSecond, kCategory, L"Other");
    Write(std::wstring(kSecond) + L"\\LocalServer32", L"", L"server.exe", L"Other");
    const zelt::FoundComponents found = FindIn({L"Own", L"Other"});
    ASSERT_EQ(1u, found.lists.front().size());
    EXPECT_EQ(ClassOf(kSecond), found.lists.front()[0].classId);
    EXPECT_EQ(L"", found.lists.front()[0].obstacle);
    ASSERT_EQ(1u, found.ofOtherWidth.front().size());
    EXPECT_EQ(ClassOf(kFirst), found.ofOtherWidth.front()[0].classId);
    EXPECT_EQ(sizeof(void*) == 4 ? L"registered for 64-bit programs only" : L"registered for 32-bit programs only",
              found.ofOtherWidth.front()[0].obstacle);
}

TEST_F(ComponentScan, TheUsersOwnClassesAreFoundInBothViewsAndListedOnce)
{
    Register(kFirst);
    for (const wchar_t* view : {L"OwnOfUser", L"OtherOfUser"}) {
        Register(kFirst, kCategory, view);
        Write(std::wstring(kFirst) + L"\\ProgID", L"", L"wrong place", view);
    }
    Register(kSecond, kCategory, L"OwnOfUser");
    Write(std::wstring(kSecond) + L"\\ProgID", L"", L"User.Package", L"OwnOfUser");
    Register(kThird, kCategory, L"OtherOfUser");
    Write(std::wstring(kThird) + L"\\InprocServer32", L"", L"package.dll", L"OtherOfUser");
    const zelt::FoundComponents found = FindIn({L"Own", L"Other", L"OwnOfUser", L"OtherOfUser"});
    ASSERT_EQ(2u, found.lists.front().size());
    EXPECT_EQ(kFirst, found.lists.front()[0].displayName);
    EXPECT_EQ(L"User.Package", found.lists.front()[1].displayName);
    ASSERT_EQ(1u, found.ofOtherWidth.front().size());
    EXPECT_EQ(ClassOf(kThird), found.ofOtherWidth.front()[0].classId);
}

TEST_F(ComponentScan, AnEmptyDescriptionStillCountsAsAValue)
{
    Register(kFirst);
    const std::wstring description = std::wstring(kFirst) + L"\\CapeDescription";
    Write(std::wstring(kFirst) + L"\\ProgID", L"", L"Maker.Package.1");
    Write(description, L"Description", L"");
    EXPECT_EQ(L"Maker.Package.1", OnlyName());
    Write(description, L"Name", L"Package");
    EXPECT_EQ(L"Package ()", OnlyName());
}

TEST_F(ComponentScan, EmptyNamesFallThrough)
{
    Register(kFirst);
    Write(std::wstring(kFirst) + L"\\CapeDescription", L"Name", L"");
    Write(std::wstring(kFirst) + L"\\ProgID", L"", L"");
    Write(std::wstring(kFirst) + L"\\VersionIndependentProgID", L"", L"");
    EXPECT_EQ(kFirst, OnlyName());
    EXPECT_EQ(kFirst, Find().front().name);
}

TEST_F(ComponentScan, LongTextsAreShownWhole)
{
    Register(kFirst);
    const std::wstring name(300, L'n'), text(5000, L'd');
    Write(std::wstring(kFirst) + L"\\CapeDescription", L"Name", name.c_str());
    Write(std::wstring(kFirst) + L"\\CapeDescription", L"Description", text.c_str());
    EXPECT_EQ(name + L" (" + text + L")", OnlyName());
}

// Names of registry keys can have up to 255 characters. A long one does not hide the keys after it.
TEST_F(ComponentScan, KeysWithLongNamesAreSkipped)
{
    Register(kFirst);
    Register(std::wstring(127, L'{'));
    Register(std::wstring(128, L'{'));
    Register(std::wstring(255, L'{'));
    Register(std::wstring(255, L'0'));
    Register(kThird);
    const auto found = Find();
    ASSERT_EQ(2u, found.size());
    EXPECT_EQ(ClassOf(kFirst), found[0].classId);
    EXPECT_EQ(ClassOf(kThird), found[1].classId);
}

TEST_F(ComponentScan, LongNamesOfCategoriesDoNotMatter)
{
    Register(kFirst, (std::wstring(255, L'0')).c_str());
    Register(kFirst);
    EXPECT_EQ(kFirst, OnlyName());
}

// A key that nobody may open; its subkeys keep their own protection.
class Locked {
public:
    Locked(HKEY root, const std::wstring& path)
    {
        EXPECT_EQ(ERROR_SUCCESS, RegOpenKeyExW(root, path.c_str(), 0, READ_CONTROL | WRITE_DAC, &key));
        Protect(L"D:P");
    }
    ~Locked()
    {
        Protect(L"D:P(A;;KA;;;WD)");
        RegCloseKey(key);
    }
    Locked(const Locked&) = delete;
    Locked& operator=(const Locked&) = delete;

private:
    void Protect(const wchar_t* text)
    {
        PSECURITY_DESCRIPTOR descriptor = nullptr;
        ASSERT_TRUE(ConvertStringSecurityDescriptorToSecurityDescriptorW(text, SDDL_REVISION_1, &descriptor, nullptr));
        EXPECT_EQ(ERROR_SUCCESS, RegSetKeySecurity(key, DACL_SECURITY_INFORMATION, descriptor));
        LocalFree(descriptor);
    }
    HKEY key = nullptr;
};

TEST_F(ComponentScan, KeysThatCannotBeReadAreSkipped)
{
    Register(kFirst);
    Register(kSecond);
    Register(kThird);
    const Locked locked(scratch.Root().key, std::wstring(L"Own\\CLSID\\") + kSecond);
    zelt::RegistryKey probe;
    if (probe.Open(scratch.Root(), std::wstring(L"Own\\CLSID\\") + kSecond) == ERROR_SUCCESS) {
        GTEST_SKIP() << "this system opens a key whatever its protection";
    }
    const auto found = Find();
    ASSERT_EQ(2u, found.size());
    EXPECT_EQ(ClassOf(kFirst), found[0].classId);
    EXPECT_EQ(ClassOf(kThird), found[1].classId);
    EXPECT_TRUE(messages.All().empty());
}

// A class whose name is not a text is listed under the next text that it has.
TEST_F(ComponentScan, WhatCannotBeReadOfAClassIsLeftOut)
{
    Register(kFirst);
    const std::wstring description = std::wstring(kFirst) + L"\\CapeDescription";
    Write(description, L"Name", L"Package");
    Write(std::wstring(kFirst) + L"\\ProgID", L"", L"Maker.Package.1");
    zelt::RegistryKey key;
    ASSERT_EQ(ERROR_SUCCESS, key.Open(scratch.Root(), L"Own\\CLSID\\" + description, KEY_ALL_ACCESS));
    const DWORD number = 7;
    ASSERT_EQ(ERROR_SUCCESS, key.WriteBytes(L"Name", REG_DWORD, &number, sizeof number));
    EXPECT_EQ(L"Maker.Package.1", OnlyName());
}

TEST_F(ComponentScan, SaysThatTheClassesCannotBeRead)
{
    const zelt::ComponentSearch searches[] = {{kCategory, CLSID_NULL}};
    const auto found = zelt::FindComponents(searches, {scratch.Root(), {nullptr, 0}});
    ASSERT_EQ(1u, found.lists.size());
    EXPECT_TRUE(found.lists.front().empty());
    ASSERT_FALSE(found.outcome);
    EXPECT_EQ(L"Failed to open HKEY_CLASSES_ROOT\\CLSID", found.outcome.Failure().text);
    EXPECT_STREQ(L"Error:", found.outcome.Failure().caption);
    EXPECT_EQ(static_cast<UINT>(MB_OK | MB_ICONERROR | MB_TOPMOST), found.outcome.Failure().flags);
    EXPECT_TRUE(messages.All().empty());
}

}  // namespace
