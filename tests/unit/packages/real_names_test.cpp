// Names with characters that a code page lacks: they are stored next to the package's entry, and used only while that entry
// still belongs to the same package.
#include "packages/real_names.h"

#include <gtest/gtest.h>

#include <string_view>

#include "packages/exported_package_list.h"
#include "tests/system/harness/scratch_registry.h"

namespace zelt::test {
namespace {

using namespace std::string_view_literals;

constexpr CLSID kNamedClass = {0x6377AC63, 0x7A36, 0x46DC, {0x88, 0x97, 0xF2, 0x77, 0x01, 0x2C, 0xDA, 0x9D}};
constexpr wchar_t kPlocker[] =
    L"Lee-Kesler-Pl\xF6"
    L"cker";
constexpr wchar_t kMixed[] =
    L"\x3A9\x3BC\x3AD\x3B3\x3B1 \x41E\x43C\x435\x433\x430 \x6C34\xD83D\xDE00";  // no language's code page has all of them

// Sets the thread's locale, whose code page the entries in the registry use.
class ThreadLocale {
public:
    explicit ThreadLocale(LCID locale) : before(GetThreadLocale()) { SetThreadLocale(locale); }
    ~ThreadLocale() { SetThreadLocale(before); }

private:
    const LCID before;
};
constexpr LCID kRussian = 0x0419, kGerman = 0x0407, kGreek = 0x0408, kJapanese = 0x0411;

ExportedPackage NamedPackage(const std::wstring& source, const std::wstring& name)
{
    return {kNamedClass, PackageKind::PropertyPackage10FromThermoSystem, source, name, true};
}

class RealNames : public testing::Test {
protected:
    void Save(const std::vector<ExportedPackage>& packages)
    {
        ExportedPackageList list(scratch.Root());
        for (const ExportedPackage& package : packages) list.Append(std::make_unique<ExportedPackage>(package));
        EXPECT_TRUE(list.Save());
    }
    std::vector<ExportedPackage> Loaded()
    {
        ExportedPackageList list(scratch.Root());
        EXPECT_TRUE(list.Load());
        std::vector<ExportedPackage> packages;
        for (std::size_t index = 0; index < list.Count(); ++index) packages.push_back(list.At(index));
        return packages;
    }
    // The names of the first package in the list.
    std::pair<std::wstring, std::wstring> FirstNames()
    {
        const auto loaded = Loaded();
        if (loaded.empty()) return {L"<no package>", L""};
        return {loaded[0].sourceName, loaded[0].exportedName};
    }
    bool Has(const wchar_t* value) { return scratch.Packages().ReadValue(value).has_value(); }

    ScratchKey scratch;
};

TEST_F(RealNames, SurviveTheStoreOnEverySystem)
{
    const std::vector<ExportedPackage> packages = {NamedPackage(L"", kPlocker), NamedPackage(kPlocker, L"plain"),
                                                   NamedPackage(kMixed, kMixed), NamedPackage(L"a", L"b")};
    for (const LCID saving : {kRussian, kGerman, kGreek, kJapanese}) {
        for (const LCID loading : {kRussian, kGerman, kGreek, kJapanese}) {
            SCOPED_TRACE(saving * 0x10000 + loading);
            {
                const ThreadLocale locale(saving);
                Save(packages);
            }
            const ThreadLocale locale(loading);
            EXPECT_TRUE(packages == Loaded());
        }
    }
}

TEST_F(RealNames, AreNotInTheEntry)
{
    const ExportedPackage package = NamedPackage(L"source", kMixed);
    Save({package});
    EXPECT_EQ(package.Format(), scratch.Packages().ReadNarrow("Package1", REG_MULTI_SZ));
    ExportedPackage known;  // what a program that reads only the entries sees
    ASSERT_TRUE(known.Parse(package.Format()));
    EXPECT_EQ(std::wstring::npos, known.exportedName.find(L'\x6C34'));
    EXPECT_NE(kMixed, known.exportedName);
}

TEST_F(RealNames, HaveAValueOnlyWhereACodePageMayLackThem)
{
    Save({NamedPackage(L"a", L"b"), NamedPackage(kMixed, L"c")});
    EXPECT_FALSE(Has(L"PackageNames1"));
    EXPECT_TRUE(Has(L"PackageNames2"));
    // A plain name that looks like one that has lost characters in a code page.
    ExportedPackage left;
    ASSERT_TRUE(left.Parse(NamedPackage(kMixed, L"c").Format()));
    left.sourceName = L"????? ????? ?";
    Save({NamedPackage(L"a", L"b"), left});
    EXPECT_FALSE(Has(L"PackageNames2"));
    EXPECT_EQ(left.sourceName, Loaded().at(1).sourceName);
}

TEST_F(RealNames, StayWithThePackageWhoseLogOthersSwitch)
{
    Save({NamedPackage(kMixed, kPlocker)});
    ExportedPackage entry = NamedPackage(kMixed, kPlocker);
    entry.loggingEnabled = false;
    ASSERT_EQ(ERROR_SUCCESS, scratch.Packages().WriteNarrow("Package1", REG_MULTI_SZ, entry.Format()));
    EXPECT_TRUE(Loaded() == std::vector{entry});
}

TEST_F(RealNames, AreNotGivenToAnotherEntry)
{
    const std::string others[] = {
        NamedPackage(L"source", L"other").Format(),
        NamedPackage(kMixed, L"other").Format(),
        NamedPackage(L"other", kMixed).Format(),
        ExportedPackage{kNamedClass, PackageKind::PropertyPackage11FromManager, kMixed, kMixed, true}.Format(),
        ExportedPackage{CLSID{}, PackageKind::PropertyPackage10FromThermoSystem, kMixed, kMixed, true}.Format(),
    };
    for (const std::string& other : others) {
        Save({NamedPackage(kMixed, kMixed)});
        ASSERT_EQ(ERROR_SUCCESS, scratch.Packages().WriteNarrow("Package1", REG_MULTI_SZ, other));
        ExportedPackage expected;
        ASSERT_TRUE(expected.Parse(other));
        EXPECT_TRUE(Loaded() == std::vector{expected}) << other;
    }
}

TEST_F(RealNames, FromAValueThatIsDamagedAreNotTaken)
{
    Save({NamedPackage(kMixed, kMixed)});
    const RegistryValue whole = *scratch.Packages().ReadValue(L"PackageNames1");
    ExportedPackage narrowed;
    ASSERT_TRUE(narrowed.Parse(NamedPackage(kMixed, kMixed).Format()));
    // The system may add terminators that the value lacks.
    const std::size_t allButTerminators = whole.data.size() - 2 * sizeof(wchar_t);
    const std::size_t withOneTerminator = whole.data.size() - sizeof(wchar_t);
    for (std::size_t size = 0; size <= whole.data.size(); ++size) {
        RegistryKey key = scratch.Packages();
        ASSERT_EQ(ERROR_SUCCESS, key.WriteBytes(L"PackageNames1", REG_MULTI_SZ, whole.data.data(), size));
        const std::wstring name = FirstNames().second;
        const bool mayBeReal = size >= allButTerminators, mustBeReal = size >= withOneTerminator;
        EXPECT_TRUE((mayBeReal && name == kMixed) || (!mustBeReal && name == narrowed.exportedName)) << size;
    }
    RegistryKey key = scratch.Packages();
    ASSERT_EQ(ERROR_SUCCESS, key.WriteBytes(L"PackageNames1", REG_BINARY, whole.data.data(), whole.data.size()));
    EXPECT_EQ(narrowed.exportedName, FirstNames().second);
}

TEST_F(RealNames, EndAtTheirFirstNulLikeThoseOfTheEntry)
{
    Save({NamedPackage(std::wstring(L"\x6C34\0x", 3), std::wstring(L"\x41E\0y", 3))});
    EXPECT_EQ((std::pair<std::wstring, std::wstring>(L"\x6C34", L"\x41E")), FirstNames());
}

TEST_F(RealNames, FromAStoreWithoutThemAreThoseOfTheEntry)
{
    RegistryKey key = scratch.Packages();
    ASSERT_EQ(ERROR_SUCCESS, key.WriteDword(L"NumPackages", 1));
    ASSERT_EQ(ERROR_SUCCESS, key.WriteNarrow("Package1", REG_MULTI_SZ, NamedPackage(L"s", L"e").Format()));
    EXPECT_EQ((std::pair<std::wstring, std::wstring>(L"s", L"e")), FirstNames());
}

}  // namespace
}  // namespace zelt::test
