#include "system/registry.h"

#include <gtest/gtest.h>

#include "system/configuration_key.h"
#include "tests/unit/support/recorded_messages.h"
#include "tests/system/harness/scratch_registry.h"

namespace {

using zelt::RegistryKey;

TEST(Registry, ReadsAValueOnlyWithItsTypeAndSize)
{
    const zelt::test::ScratchKey scratch;
    RegistryKey key = scratch.Settings();
    key.WriteDword(L"number", 7);
    key.WriteBytes(L"short", REG_DWORD, "ab", 2);
    key.WriteBytes(L"long", REG_DWORD, "abcdefgh", 8);
    key.WriteString(L"text", L"7");

    EXPECT_EQ(7u, key.ReadDword(L"number"));
    EXPECT_FALSE(key.ReadDword(L"short"));
    EXPECT_FALSE(key.ReadDword(L"long"));
    EXPECT_FALSE(key.ReadDword(L"text"));
    EXPECT_FALSE(key.ReadDword(L"missing"));
    EXPECT_EQ(L"7", key.ReadString(L"text"));
    EXPECT_FALSE(key.ReadString(L"number"));
    EXPECT_FALSE(key.ReadBytes(L"number", REG_BINARY));
    EXPECT_FALSE(key.ReadNarrow("missing", REG_MULTI_SZ));
    EXPECT_FALSE(key.ReadNarrow("text", REG_MULTI_SZ));
}

TEST(Registry, DoesNotTrustAStringToBeTerminated)
{
    const zelt::test::ScratchKey scratch;
    RegistryKey key = scratch.Settings();
    key.WriteBytes(L"bare", REG_SZ, L"abc", 3 * sizeof(wchar_t));
    key.WriteBytes(L"odd", REG_SZ, L"abc", 5);
    key.WriteBytes(L"empty", REG_SZ, nullptr, 0);
    key.WriteBytes(L"inner", REG_SZ, L"ab\0cd", 6 * sizeof(wchar_t));
    EXPECT_EQ(L"abc", key.ReadString(L"bare"));
    EXPECT_EQ(L"ab", key.ReadString(L"odd"));
    EXPECT_EQ(L"", key.ReadString(L"empty"));
    EXPECT_EQ(L"ab", key.ReadString(L"inner"));
}

TEST(Registry, ReadsAMultiStringAsTheBytesThatAreThere)
{
    const zelt::test::ScratchKey scratch;
    RegistryKey key = scratch.Settings();
    key.WriteBytes(L"bare", REG_MULTI_SZ, L"one\0two", 7 * sizeof(wchar_t));
    key.WriteNarrow("full", REG_MULTI_SZ, std::string_view("one\0\0two\0\0", 10));
    EXPECT_EQ(std::string("one\0two", 7), key.ReadNarrow("bare", REG_MULTI_SZ)->substr(0, 7));
    EXPECT_EQ(std::string("one\0\0two\0\0", 10), key.ReadNarrow("full", REG_MULTI_SZ));
}

TEST(Registry, AnswersWithTheErrorAndHoldsNoKeyAfterAFailure)
{
    const zelt::test::ScratchKey scratch;
    RegistryKey key = scratch.Settings();
    ASSERT_TRUE(key);
    EXPECT_EQ(ERROR_FILE_NOT_FOUND, key.Open(scratch.Root(), L"no such key"));
    EXPECT_FALSE(key);
}

TEST(Registry, DeletesAKeyWithEverythingBelow)
{
    const zelt::test::ScratchKey scratch;
    RegistryKey key;
    ASSERT_EQ(ERROR_SUCCESS, key.Create(scratch.Root(), L"a\\b\\c"));
    key.Close();
    EXPECT_EQ(ERROR_SUCCESS, zelt::DeleteKeyTree(scratch.Root(), L"a"));
    EXPECT_EQ(ERROR_FILE_NOT_FOUND, key.Open(scratch.Root(), L"a"));
    EXPECT_EQ(ERROR_SUCCESS, zelt::DeleteKeyTree(scratch.Root(), L"a"));
}

TEST(Registry, NamesAreListedWhole)
{
    const zelt::test::ScratchKey scratch;
    RegistryKey key = scratch.Settings(), child;
    const std::wstring longest(255, L'k');
    ASSERT_EQ(ERROR_SUCCESS, child.Create({key.Get(), 0}, longest));
    key.WriteDword(L"value", 1);
    EXPECT_EQ(std::vector<std::wstring>{longest}, key.SubkeyNames());
    EXPECT_EQ(std::vector<std::wstring>{L"value"}, key.ValueNames());
}

TEST(Registry, ValuesAreReadWhole)
{
    const zelt::test::ScratchKey scratch;
    RegistryKey key = scratch.Settings();
    EXPECT_TRUE(key.Values().empty());
    const std::wstring longest(16'383, L'v');
    const std::map<std::wstring, zelt::RegistryValue> values = {
        {L"", {REG_SZ, {'a', 0, 0, 0}}},      {L"long", {REG_BINARY, std::vector<BYTE>(100'000, 7)}},
        {L"none", {REG_BINARY, {}}},          {L"odd", {REG_MULTI_SZ, {1, 2, 3}}},
        {longest, {REG_DWORD, {4, 3, 2, 1}}},
    };
    for (const auto& [name, value] : values) {
        ASSERT_EQ(ERROR_SUCCESS, key.WriteBytes(name.c_str(), value.type, value.data.data(), value.data.size()));
    }
    EXPECT_TRUE(values == key.Values());
}

// The system's registry, except that it refuses to enumerate some items.
class UnreadableItems {
public:
    explicit UnreadableItems(LSTATUS refusal, DWORD first = 1, DWORD last = 1)
    {
        error = refusal;
        firstRefused = first;
        lastRefused = last;
        calls = 0;
        zelt::SetRegistryFunctions(&kFunctions);
    }
    ~UnreadableItems() { zelt::SetRegistryFunctions(nullptr); }
    UnreadableItems(const UnreadableItems&) = delete;
    UnreadableItems& operator=(const UnreadableItems&) = delete;

    static int Calls() { return calls; }

private:
    static bool Refuses(DWORD index)
    {
        ++calls;
        return index >= firstRefused && index <= lastRefused;
    }
    static LSTATUS WINAPI Keys(HKEY key, DWORD index, wchar_t* name, DWORD* length, DWORD* reserved, wchar_t* className,
                               DWORD* classLength, FILETIME* written)
    {
        if (Refuses(index)) return error;
        return RegEnumKeyExW(key, index, name, length, reserved, className, classLength, written);
    }
    static LSTATUS WINAPI Values(HKEY key, DWORD index, wchar_t* name, DWORD* length, DWORD* reserved, DWORD* type,
                                 BYTE* data, DWORD* size)
    {
        if (Refuses(index)) return error;
        return RegEnumValueW(key, index, name, length, reserved, type, data, size);
    }
    static inline const zelt::RegistryFunctions kFunctions = {Keys, Values, RegSetValueExW, RegSetValueExA};
    static inline LSTATUS error;
    static inline DWORD firstRefused, lastRefused;
    static inline int calls;
};

// The system's registry, with a record of the reserved arguments.
class ReservedParameters {
public:
    ReservedParameters()
    {
        seen.clear();
        zelt::SetRegistryFunctions(&kFunctions);
    }
    ~ReservedParameters() { zelt::SetRegistryFunctions(nullptr); }
    ReservedParameters(const ReservedParameters&) = delete;
    ReservedParameters& operator=(const ReservedParameters&) = delete;

    static const std::vector<DWORD>& Seen() { return seen; }

private:
    static LSTATUS WINAPI Set(HKEY key, const wchar_t* name, DWORD reserved, DWORD type, const BYTE* data, DWORD size)
    {
        seen.push_back(reserved);
        return RegSetValueExW(key, name, reserved, type, data, size);
    }
    static LSTATUS WINAPI SetNarrow(HKEY key, const char* name, DWORD reserved, DWORD type, const BYTE* data,
                                    DWORD size)
    {
        seen.push_back(reserved);
        return RegSetValueExA(key, name, reserved, type, data, size);
    }
    static inline const zelt::RegistryFunctions kFunctions = {RegEnumKeyExW, RegEnumValueW, Set, SetNarrow};
    static inline std::vector<DWORD> seen;
};

TEST(Registry, WritesWithReservedParametersAtZero)
{
    const zelt::test::ScratchKey scratch;
    RegistryKey key = scratch.Settings();
    const ReservedParameters parameters;
    EXPECT_EQ(ERROR_SUCCESS, key.WriteDword(L"number", 7));
    EXPECT_EQ(ERROR_SUCCESS, key.WriteString(L"text", L"7"));
    EXPECT_EQ(ERROR_SUCCESS, key.WriteNarrow("narrow", REG_MULTI_SZ, std::string_view("7\0\0", 3)));
    EXPECT_EQ((std::vector<DWORD>{0, 0, 0}), ReservedParameters::Seen());
}

class RegistryEnumeration : public testing::Test {
protected:
    RegistryEnumeration() : key(scratch.Settings())
    {
        for (const wchar_t* name : {L"a", L"b", L"c"}) {
            RegistryKey child;
            EXPECT_EQ(ERROR_SUCCESS, child.Create({key.Get(), 0}, name));
            EXPECT_EQ(ERROR_SUCCESS, key.WriteDword(name, 1));
        }
    }

    const zelt::test::ScratchKey scratch;
    RegistryKey key;
};

TEST_F(RegistryEnumeration, SkipsItemsThatCannotBeRead)
{
    for (const LSTATUS error : {ERROR_MORE_DATA, ERROR_ACCESS_DENIED, ERROR_KEY_DELETED, ERROR_OUTOFMEMORY}) {
        SCOPED_TRACE(error);
        const UnreadableItems items(error);
        EXPECT_EQ((std::vector<std::wstring>{L"a", L"c"}), key.SubkeyNames());
        EXPECT_EQ((std::vector<std::wstring>{L"a", L"c"}), key.ValueNames());
        const auto values = key.Values();
        EXPECT_EQ(2u, values.size());
        EXPECT_TRUE(values.contains(L"a"));
        EXPECT_TRUE(values.contains(L"c"));
    }
}

TEST_F(RegistryEnumeration, SkipsTheFirstAndTheLast)
{
    {
        const UnreadableItems items(ERROR_ACCESS_DENIED, 0, 1);
        EXPECT_EQ((std::vector<std::wstring>{L"c"}), key.SubkeyNames());
        EXPECT_EQ((std::vector<std::wstring>{L"c"}), key.ValueNames());
    }
    const UnreadableItems items(ERROR_ACCESS_DENIED, 2, 2);
    EXPECT_EQ((std::vector<std::wstring>{L"a", L"b"}), key.SubkeyNames());
    EXPECT_EQ((std::vector<std::wstring>{L"a", L"b"}), key.ValueNames());
}

TEST_F(RegistryEnumeration, EndsWhereNothingCanBeRead)
{
    const UnreadableItems items(ERROR_ACCESS_DENIED, 0, MAXDWORD);
    EXPECT_TRUE(key.SubkeyNames().empty());
    EXPECT_TRUE(key.ValueNames().empty());
    EXPECT_TRUE(key.Values().empty());
    EXPECT_LE(UnreadableItems::Calls(), 30);
    EXPECT_TRUE(RegistryKey().SubkeyNames().empty());
}

HKEY growing;

LSTATUS WINAPI AddAtTheEnd(HKEY key, DWORD index, wchar_t* name, DWORD* length, DWORD* reserved, wchar_t* className,
                           DWORD* classLength, FILETIME* written)
{
    if (index == 3) {
        EXPECT_EQ(ERROR_SUCCESS, RegistryKey().Create({growing, 0}, L"d"));
    }
    return RegEnumKeyExW(key, index, name, length, reserved, className, classLength, written);
}

TEST_F(RegistryEnumeration, TakesWhatIsAddedMeanwhile)
{
    growing = key.Get();
    const zelt::RegistryFunctions kAdding = {AddAtTheEnd, RegEnumValueW, RegSetValueExW, RegSetValueExA};
    zelt::SetRegistryFunctions(&kAdding);
    const auto names = key.SubkeyNames();
    zelt::SetRegistryFunctions(nullptr);
    EXPECT_EQ((std::vector<std::wstring>{L"a", L"b", L"c", L"d"}), names);
}

TEST(ConfigurationKey, IsCreatedWhenMissing)
{
    const zelt::test::ScratchKey scratch;
    RegistryKey key, again;
    EXPECT_TRUE(zelt::OpenConfigurationKey(scratch.Root(), key));
    EXPECT_EQ(ERROR_SUCCESS, again.Open(scratch.Root(), L"Software\\ZELT"));
}

TEST(ConfigurationKey, SaysThatItCannotBeOpened)
{
    zelt::test::ScratchKey scratch;
    scratch.MakeInaccessible();
    const zelt::test::RecordedMessages messages;
    RegistryKey key;
    const zelt::Outcome opened = zelt::OpenConfigurationKey(scratch.Root(), key);
    EXPECT_FALSE(opened);
    EXPECT_FALSE(key);
    EXPECT_TRUE(messages.All().empty()) << "the caller shows the failure";
    zelt::ShowFailure(opened);
    ASSERT_EQ(1u, messages.All().size());
    EXPECT_EQ(L"Unable to access the registry; unable to store or load packages", messages.All()[0].text);
    EXPECT_EQ(L"ZELT", messages.All()[0].caption);
    EXPECT_EQ(static_cast<UINT>(MB_OK | MB_ICONERROR | MB_TOPMOST), messages.All()[0].flags);
}

TEST(Outcome, OfSuccessShowsNothing)
{
    const zelt::test::RecordedMessages messages;
    zelt::ShowFailure({});
    EXPECT_TRUE(messages.All().empty());
}

}  // namespace
