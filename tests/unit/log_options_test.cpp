#include "core/log_options.h"

#include <gtest/gtest.h>

#include <cstring>

#include "tests/unit/recorded_messages.h"
#include "tests/system/harness/scratch_registry.h"

namespace {

using zelt::LogOptions;
using zelt::RegistryKey;

constexpr CLSID kUnit = {0x2FD53BB5, 0x1013, 0x418D, {0xBA, 0xB6, 0x15, 0xDF, 0x8A, 0xD6, 0x06, 0xA6}};

LogOptions OptionsIn(const zelt::test::ScratchKey& scratch)
{
    LogOptions options;
    options.root = scratch.Root();
    return options;
}

TEST(LogOptions, HaveDefaultsWithoutAnyKey)
{
    const zelt::test::ScratchKey scratch;
    LogOptions options = OptionsIn(scratch);
    options.Load();
    EXPECT_FALSE(options.autoLogLocation);
    EXPECT_TRUE(options.promptOpenLog);
    EXPECT_TRUE(IsEqualCLSID(CLSID{}, options.pravikUnit));
}

TEST(LogOptions, AreReadBackAsSaved)
{
    const zelt::test::ScratchKey scratch;
    LogOptions saved = OptionsIn(scratch), loaded = OptionsIn(scratch);
    saved.autoLogLocation = true;
    saved.promptOpenLog = false;
    saved.pravikUnit = kUnit;
    saved.Save();
    loaded.Load();
    EXPECT_TRUE(loaded.autoLogLocation);
    EXPECT_FALSE(loaded.promptOpenLog);
    EXPECT_TRUE(IsEqualCLSID(kUnit, loaded.pravikUnit));
}

TEST(LogOptions, AreStoredAsNumbersAndSixteenBytes)
{
    const zelt::test::ScratchKey scratch;
    LogOptions options = OptionsIn(scratch);
    options.autoLogLocation = true;
    options.pravikUnit = kUnit;
    options.Save();
    const RegistryKey key = scratch.Settings();
    EXPECT_EQ(1u, key.ReadDword(L"AutoLogLocation"));
    EXPECT_EQ(1u, key.ReadDword(L"PromptOpenLog"));
    const auto unit = key.ReadBytes(L"PRAVIKUnit", REG_BINARY);
    ASSERT_TRUE(unit);
    ASSERT_EQ(16u, unit->size());
    EXPECT_EQ(0, std::memcmp(&kUnit, unit->data(), 16));
}

TEST(LogOptions, TakeAnyNumberButZeroForOn)
{
    const zelt::test::ScratchKey scratch;
    RegistryKey key = scratch.Settings();
    key.WriteDword(L"AutoLogLocation", 0x80000000);
    key.WriteDword(L"PromptOpenLog", 0);
    LogOptions options = OptionsIn(scratch);
    options.Load();
    EXPECT_TRUE(options.autoLogLocation);
    EXPECT_FALSE(options.promptOpenLog);
}

TEST(LogOptions, KeepTheirValueWhenTheStoredOneIsMalformed)
{
    struct Case {
        const char* reason;
        DWORD type;
        std::string data;
    };
    const Case cases[] = {
        {"fifteen bytes", REG_BINARY, std::string(15, 'x')},
        {"seventeen bytes", REG_BINARY, std::string(17, 'x')},
        {"no bytes", REG_BINARY, ""},
        {"not binary", REG_SZ, std::string(16, 'x')},
    };
    for (const Case& c : cases) {
        const zelt::test::ScratchKey scratch;
        RegistryKey key = scratch.Settings();
        key.WriteBytes(L"PRAVIKUnit", c.type, c.data.data(), c.data.size());
        key.WriteBytes(L"AutoLogLocation", c.type, c.data.data(), c.data.size());
        key.WriteString(L"PromptOpenLog", L"0");
        LogOptions options = OptionsIn(scratch);
        options.autoLogLocation = true;
        options.pravikUnit = kUnit;
        options.Load();
        EXPECT_TRUE(IsEqualCLSID(kUnit, options.pravikUnit)) << c.reason;
        EXPECT_TRUE(options.autoLogLocation) << c.reason;
        EXPECT_TRUE(options.promptOpenLog) << c.reason;
    }
}

TEST(LogOptions, SurviveARegistryThatCannotBeReached)
{
    zelt::test::ScratchKey scratch;
    LogOptions options = OptionsIn(scratch);
    options.autoLogLocation = true;
    scratch.MakeInaccessible();
    const zelt::test::RecordedMessages messages;
    options.Load();
    options.Save();
    EXPECT_TRUE(options.autoLogLocation);
    EXPECT_EQ(2u, messages.All().size());
}

}  // namespace
