#include "packages/exported_package_list.h"

#include <gtest/gtest.h>

#include <set>
#include <string_view>

#include "tests/system/harness/scratch_registry.h"
#include "tests/unit/support/recorded_messages.h"
#include "tests/system/harness/refused_writes.h"

namespace {

using zelt::ExportedPackage;
using zelt::ExportedPackageList;
using zelt::PackageIdentity;
using zelt::PackageKind;
using zelt::RegistryKey;
using namespace std::string_view_literals;

constexpr CLSID kClass = {0x6377AC63, 0x7A36, 0x46DC, {0x88, 0x97, 0xF2, 0x77, 0x01, 0x2C, 0xDA, 0x9D}};

std::unique_ptr<ExportedPackage> Package(const std::wstring& name)
{
    return std::make_unique<ExportedPackage>(
        ExportedPackage{kClass, PackageKind::PropertyPackage11FromManager, L"source of " + name, name, true});
}

void Store(const zelt::test::ScratchKey& scratch, const char* value, const std::wstring& name)
{
    scratch.Packages().WriteNarrow(value, REG_MULTI_SZ, Package(name)->Format());
}

std::vector<std::wstring> Names(const ExportedPackageList& list)
{
    std::vector<std::wstring> names;
    for (std::size_t index = 0; index < list.Count(); ++index) names.push_back(list.At(index).exportedName);
    return names;
}

using NameList = std::vector<std::wstring>;

TEST(ExportedPackageList, IsReadBackAsSaved)
{
    const zelt::test::ScratchKey scratch;
    ExportedPackageList saved(scratch.Root()), loaded(scratch.Root());
    saved.Append(Package(L"a"));
    saved.Append(Package(L"b"));
    saved.At(1).loggingEnabled = false;
    EXPECT_TRUE(saved.Save());
    loaded.Append(Package(L"replaced"));
    EXPECT_TRUE(loaded.Load());
    EXPECT_EQ((NameList{L"a", L"b"}), Names(loaded));
    EXPECT_EQ(L"source of b", loaded.At(1).sourceName);
    EXPECT_TRUE(loaded.At(0).loggingEnabled);
    EXPECT_FALSE(loaded.At(1).loggingEnabled);
}

TEST(ExportedPackageList, SkipsAMissingEntryAndRenumbersOnSaving)
{
    const zelt::test::ScratchKey scratch;
    scratch.Packages().WriteDword(L"NumPackages", 3);
    Store(scratch, "Package1", L"first");
    Store(scratch, "Package3", L"third");
    ExportedPackageList list(scratch.Root());
    EXPECT_TRUE(list.Load());
    EXPECT_EQ((NameList{L"first", L"third"}), Names(list));
    EXPECT_EQ((std::vector<int>{2}), list.LeftOut());

    EXPECT_TRUE(list.Save());
    const RegistryKey key = scratch.Packages();
    EXPECT_EQ(2u, key.ReadDword(L"NumPackages"));
    EXPECT_EQ(Package(L"first")->Format(), key.ReadNarrow("Package1", REG_MULTI_SZ));
    EXPECT_EQ(Package(L"third")->Format(), key.ReadNarrow("Package2", REG_MULTI_SZ));
    EXPECT_EQ(Package(L"third")->Format(), key.ReadNarrow("Package3", REG_MULTI_SZ));
    EXPECT_TRUE(list.Load());
    EXPECT_EQ((NameList{L"first", L"third"}), Names(list));
}

TEST(ExportedPackageList, SkipsBadEntries)
{
    const zelt::test::ScratchKey scratch;
    RegistryKey key = scratch.Packages();
    key.WriteDword(L"NumPackages", 5);
    Store(scratch, "Package1", L"good");
    key.WriteString(L"Package2", L"a plain string");
    key.WriteDword(L"Package3", 3);
    key.WriteNarrow("Package4", REG_MULTI_SZ,
                    "no class\0"
                    "0\0s\0e\0true\0\0"sv);
    Store(scratch, "Package5", L"also good");
    const zelt::test::RecordedMessages messages;
    ExportedPackageList list(scratch.Root());
    EXPECT_TRUE(list.Load());
    EXPECT_EQ((NameList{L"good", L"also good"}), Names(list));
    EXPECT_TRUE(messages.All().empty());
}

TEST(ExportedPackageList, ReadsNamesInLettersOfAnyCase)
{
    const zelt::test::ScratchKey scratch;
    scratch.Packages().WriteDword(L"NumPackages", 2);
    Store(scratch, "package1", L"one");
    Store(scratch, "PACKAGE2", L"two");
    ExportedPackageList list(scratch.Root());
    EXPECT_TRUE(list.Load());
    EXPECT_EQ((NameList{L"one", L"two"}), Names(list));
}

TEST(ExportedPackageList, ReadsNoFurtherThanItsCount)
{
    const zelt::test::ScratchKey scratch;
    scratch.Packages().WriteDword(L"NumPackages", 1);
    Store(scratch, "Package0", L"not numbered from 1");
    Store(scratch, "Package1", L"one");
    Store(scratch, "Package2", L"stale");
    ExportedPackageList list(scratch.Root());
    EXPECT_TRUE(list.Load());
    EXPECT_EQ((NameList{L"one"}), Names(list));
}

TEST(ExportedPackageList, IsEmptyWithoutAGoodCount)
{
    const auto loadedCount = [](auto&& storeCount) {
        const zelt::test::ScratchKey scratch;
        Store(scratch, "Package1", L"one");
        RegistryKey key = scratch.Packages();
        storeCount(key);
        ExportedPackageList list(scratch.Root());
        list.Append(Package(L"old"));
        EXPECT_TRUE(list.Load());
        return list.Count();
    };
    EXPECT_EQ(1u, loadedCount([](RegistryKey& key) { key.WriteDword(L"NumPackages", 1); }));
    EXPECT_EQ(0u, loadedCount([](RegistryKey&) {}));
    EXPECT_EQ(0u, loadedCount([](RegistryKey& key) { key.WriteDword(L"NumPackages", 0); }));
    EXPECT_EQ(0u, loadedCount([](RegistryKey& key) { key.WriteDword(L"NumPackages", 0xFFFFFFFF); }));
    EXPECT_EQ(0u, loadedCount([](RegistryKey& key) { key.WriteString(L"NumPackages", L"1"); }));
    EXPECT_EQ(0u, loadedCount([](RegistryKey& key) { key.WriteBytes(L"NumPackages", REG_BINARY, "\1\0\0\0", 4); }));
    EXPECT_EQ(0u,
              loadedCount([](RegistryKey& key) { key.WriteBytes(L"NumPackages", REG_QWORD, "\1\0\0\0\0\0\0\0", 8); }));
}

TEST(ExportedPackageList, ReadsLongEntries)
{
    for (const std::size_t length : {100u, 140u, 150u, 199u, 200u, 5000u}) {
        const zelt::test::ScratchKey scratch;
        const std::wstring name(length, L'n');
        scratch.Packages().WriteDword(L"NumPackages", 3);
        Store(scratch, "Package1", L"short");
        Store(scratch, "Package2", name);
        Store(scratch, "Package3", L"short again");
        ExportedPackageList list(scratch.Root());
        EXPECT_TRUE(list.Load());
        EXPECT_EQ((NameList{L"short", name, L"short again"}), Names(list)) << length;
    }
}

TEST(ExportedPackageList, TakesNothingFromTheEntryBefore)
{
    const zelt::test::ScratchKey scratch;
    RegistryKey key = scratch.Packages();
    key.WriteDword(L"NumPackages", 2);
    Store(scratch, "Package1", std::wstring(300, L'x'));
    // A value without its terminators: the missing strings are empty, not those of the longer value before it.
    const wchar_t text[] =
        L"{6377AC63-7A36-46DC-8897-F277012CDA9D}\0"
        L"0\0s\0bare";
    key.WriteBytes(L"Package2", REG_MULTI_SZ, text, sizeof text - sizeof(wchar_t));
    ExportedPackageList list(scratch.Root());
    EXPECT_TRUE(list.Load());
    ASSERT_EQ(2u, list.Count());
    EXPECT_EQ(L"bare", list.At(1).exportedName);
    EXPECT_FALSE(list.At(1).loggingEnabled);
}

TEST(ExportedPackageList, SavesAnEmptyListAsZero)
{
    const zelt::test::ScratchKey scratch;
    EXPECT_TRUE(ExportedPackageList(scratch.Root()).Save());
    const RegistryKey key = scratch.Packages();
    EXPECT_EQ(0u, key.ReadDword(L"NumPackages"));
    EXPECT_EQ(std::vector<std::wstring>{L"NumPackages"}, key.ValueNames());
}

TEST(ExportedPackageList, SaysThatTheRegistryCannotBeReached)
{
    zelt::test::ScratchKey scratch;
    scratch.MakeInaccessible();
    ExportedPackageList list(scratch.Root());
    list.Append(Package(L"old"));
    const zelt::test::RecordedMessages messages;
    const zelt::Outcome saved = list.Save();
    EXPECT_EQ(1u, list.Count());
    const zelt::Outcome loaded = list.Load();
    EXPECT_EQ(0u, list.Count());
    for (const zelt::Outcome* outcome : {&saved, &loaded}) {
        ASSERT_FALSE(*outcome);
        EXPECT_EQ(L"Unable to access the registry; unable to store or load packages", outcome->Failure().text);
    }
    EXPECT_TRUE(messages.All().empty());
}

TEST(ExportedPackageList, SaysWhatCannotBeStored)
{
    const struct {
        std::set<std::wstring> refused;
        const wchar_t* lost;
    } rows[] = {
        {{L"Package2"}, L"the package \"b\""},
        {{L"Package3"}, L"the package \"c\""},
        {{L"Package1", L"Package3"}, L"the list of packages"},
        {{L"NumPackages"}, L"the list of packages"},
        {{L"NumPackages", L"Package1"}, L"the list of packages"},
        {{}, L"the list of packages"},
    };
    for (const auto& row : rows) {
        const zelt::test::ScratchKey scratch;
        ExportedPackageList list(scratch.Root());
        for (const wchar_t* name : {L"a", L"b", L"c"}) list.Append(Package(name));
        const zelt::test::RefusedWrites refused(row.refused);
        const zelt::Outcome saved = list.Save();
        ASSERT_FALSE(saved);
        EXPECT_EQ(
            std::wstring(L"Failed to store ") + row.lost + L" in the registry: " + zelt::test::RefusedWrites::Reason(),
            saved.Failure().text);
        EXPECT_STREQ(L"ZELT", saved.Failure().caption);
        EXPECT_EQ(static_cast<UINT>(MB_OK | MB_ICONERROR | MB_TOPMOST), saved.Failure().flags);
        // The values that the registry accepts are stored.
        const RegistryKey key = scratch.Packages();
        for (const wchar_t* value : {L"NumPackages", L"Package1", L"Package2", L"Package3"}) {
            EXPECT_EQ(!row.refused.empty() && !row.refused.contains(value), key.ReadValue(value).has_value());
        }
    }
}

TEST(ExportedPackageList, IsLoadedOnceWhenThatWasPutOff)
{
    const zelt::test::ScratchKey scratch;
    ExportedPackageList list(scratch.Root());
    list.Append(Package(L"a"));
    EXPECT_TRUE(list.Save());
    list.Remove(0);
    int loaded = 0;
    list.RequireLoaded();
    EXPECT_EQ(0u, list.Count());
    list.LoadLater([&] {
        ++loaded;
        // While a message box is open, calls from clients may request the list again.
        list.RequireLoaded();
        EXPECT_TRUE(list.Load());
    });
    EXPECT_EQ(0, loaded);
    EXPECT_EQ(0u, list.Count());
    for (int i = 0; i < 2; ++i) {
        list.RequireLoaded();
        EXPECT_EQ(1, loaded);
        EXPECT_EQ((NameList{L"a"}), Names(list));
    }
    list.LoadLater([&] { ++loaded; });
    list.LoadLater(nullptr);
    list.RequireLoaded();
    EXPECT_EQ(1, loaded);
}

TEST(ExportedPackageList, RefreshesTheViewAfterEveryLoad)
{
    static int refreshed;
    refreshed = 0;
    zelt::test::ScratchKey scratch;
    ExportedPackageList list(scratch.Root());
    EXPECT_TRUE(list.Load());
    list.SetRefresh([] { ++refreshed; });
    EXPECT_TRUE(list.Load());
    EXPECT_EQ(1, refreshed);
    list.Append(Package(L"a"));
    EXPECT_TRUE(list.Save());
    EXPECT_EQ(1, refreshed);
    scratch.MakeInaccessible();
    EXPECT_FALSE(list.Load());
    EXPECT_EQ(2, refreshed);
}

TEST(ExportedPackageList, FindsARecordByItsIdentityWhereverItStands)
{
    const zelt::test::ScratchKey scratch;
    ExportedPackageList list(scratch.Root());
    const PackageIdentity a = list.Append(Package(L"a"));
    const PackageIdentity b = list.Append(Package(L"b"));
    EXPECT_NE(a, b);
    EXPECT_EQ(b, list.IdentityAt(1));
    EXPECT_EQ(1u, list.Find(b));
    list.Remove(0);
    EXPECT_EQ(0u, list.Find(b));
    EXPECT_FALSE(list.Find(a));

    // A reload makes new records, even with the same contents.
    EXPECT_TRUE(list.Save());
    EXPECT_TRUE(list.Load());
    EXPECT_EQ((NameList{L"b"}), Names(list));
    EXPECT_FALSE(list.Find(b));
}

TEST(ExportedPackageList, KeepsARecordInPlaceWhileOthersComeAndGo)
{
    ExportedPackageList list;
    list.Append(Package(L"a"));
    list.Append(Package(L"b"));
    const ExportedPackage* b = &list.At(1);
    for (int more = 0; more < 100; ++more) list.Append(Package(L"more"));
    list.Remove(0);
    EXPECT_EQ(b, &list.At(0));
    EXPECT_THROW(list.At(list.Count()), std::out_of_range);
}

}  // namespace
