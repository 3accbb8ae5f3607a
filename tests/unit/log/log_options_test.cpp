#include "log/log_options.h"

#include <gtest/gtest.h>

#include <cstring>

#include "tests/system/harness/scratch_registry.h"
#include "tests/system/harness/stored_options.h"
#include "tests/unit/support/recorded_messages.h"
#include "tests/system/harness/refused_writes.h"

namespace {

using zelt::LogOption;
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
    EXPECT_TRUE(options.Load());
    EXPECT_FALSE(options.autoLogLocation);
    EXPECT_TRUE(options.promptOpenLog);
    EXPECT_TRUE(IsEqualCLSID(CLSID{}, options.pravikUnit));
    EXPECT_FALSE(options.loadAfterInitNew);
    EXPECT_FALSE(options.handBackOriginals);
    EXPECT_FALSE(options.keepManager);
    EXPECT_FALSE(options.forwardManagerEdit);
    EXPECT_FALSE(options.queueCalls);
    EXPECT_FALSE(options.recordCalls);
    EXPECT_FALSE(options.recordUnlogged);
    EXPECT_FALSE(options.notifyLog);
    EXPECT_FALSE(options.writeDumps);
}

TEST(LogOptions, AreReadBackAsSaved)
{
    const zelt::test::ScratchKey scratch;
    LogOptions saved = OptionsIn(scratch), loaded = OptionsIn(scratch);
    saved.autoLogLocation = true;
    saved.promptOpenLog = false;
    saved.pravikUnit = kUnit;
    saved.loadAfterInitNew = saved.handBackOriginals = saved.keepManager = saved.forwardManagerEdit = true;
    saved.queueCalls = saved.recordCalls = saved.recordUnlogged = saved.notifyLog = saved.writeDumps = true;
    zelt::test::Store(saved);
    EXPECT_TRUE(loaded.Load());
    EXPECT_TRUE(loaded.loadAfterInitNew);
    EXPECT_TRUE(loaded.handBackOriginals);
    EXPECT_TRUE(loaded.keepManager);
    EXPECT_TRUE(loaded.forwardManagerEdit);
    EXPECT_TRUE(loaded.queueCalls);
    EXPECT_TRUE(loaded.recordCalls);
    EXPECT_TRUE(loaded.recordUnlogged);
    EXPECT_TRUE(loaded.notifyLog);
    EXPECT_TRUE(loaded.writeDumps);
    EXPECT_TRUE(loaded.autoLogLocation);
    EXPECT_FALSE(loaded.promptOpenLog);
    EXPECT_TRUE(IsEqualCLSID(kUnit, loaded.pravikUnit));
}

TEST(LogOptions, AreSaidInARecordingWhereTheyDifferFromTheirDefaults)
{
    LogOptions options;
    EXPECT_EQ("", options.Text());
    options.promptOpenLog = false;
    options.notifyLog = true;
    options.pravikUnit = kUnit;
    EXPECT_EQ("PromptOpenLog=0 PRAVIKUnit={2FD53BB5-1013-418D-BAB6-15DF8AD606A6} NotifyLog=1", options.Text());
}

TEST(LogOptions, AreStoredAsNumbersAndSixteenBytes)
{
    const zelt::test::ScratchKey scratch;
    LogOptions options = OptionsIn(scratch);
    options.autoLogLocation = true;
    options.pravikUnit = kUnit;
    zelt::test::Store(options);
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
    EXPECT_TRUE(options.Load());
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
        EXPECT_TRUE(options.Load());
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
    const zelt::Outcome loaded = options.Load(), saved = options.Save(LogOption::AutoLogLocation);
    EXPECT_TRUE(options.autoLogLocation);
    for (const zelt::Outcome* outcome : {&loaded, &saved}) {
        ASSERT_FALSE(*outcome);
        EXPECT_EQ(L"Unable to access the registry; unable to store or load packages", outcome->Failure().text);
    }
    EXPECT_TRUE(messages.All().empty());
}

TEST(LogOptions, AreStoredOneByOneSoThatWhatOthersChangedStays)
{
    const zelt::test::ScratchKey scratch;
    LogOptions ours = OptionsIn(scratch);
    zelt::test::Store(ours);
    RegistryKey key = scratch.Settings();
    const CLSID theirs = {1, 2, 3, {4}};
    key.WriteDword(L"AutoLogLocation", 1);
    key.WriteBytes(L"PRAVIKUnit", REG_BINARY, &theirs, sizeof theirs);
    ours.promptOpenLog = false;
    EXPECT_TRUE(ours.Save(LogOption::PromptOpenLog));
    EXPECT_EQ(1u, key.ReadDword(L"AutoLogLocation"));
    EXPECT_EQ(0u, key.ReadDword(L"PromptOpenLog"));
    LogOptions stored = OptionsIn(scratch);
    EXPECT_TRUE(stored.Load());
    EXPECT_TRUE(IsEqualCLSID(theirs, stored.pravikUnit));

    key.WriteDword(L"PromptOpenLog", 1);
    ours.pravikUnit = kUnit;
    EXPECT_TRUE(ours.Save(LogOption::PravikUnit));
    EXPECT_EQ(1u, key.ReadDword(L"AutoLogLocation"));
    EXPECT_EQ(1u, key.ReadDword(L"PromptOpenLog"));
    EXPECT_TRUE(stored.Load());
    EXPECT_TRUE(IsEqualCLSID(kUnit, stored.pravikUnit));

    // Save stores the value even if only another program has changed it.
    key.WriteDword(L"AutoLogLocation", 1);
    EXPECT_TRUE(ours.Save(LogOption::AutoLogLocation));
    EXPECT_EQ(0u, key.ReadDword(L"AutoLogLocation"));
}

TEST(LogOptions, AreAllStoredWhereTheRegistryHasNoValidValue)
{
    const zelt::test::ScratchKey scratch;
    RegistryKey key = scratch.Settings();
    key.WriteDword(L"PromptOpenLog", 7);
    key.WriteBytes(L"PRAVIKUnit", REG_BINARY, "123456789012345", 15);
    LogOptions options = OptionsIn(scratch);
    EXPECT_TRUE(options.Load());
    options.autoLogLocation = true;
    EXPECT_TRUE(options.Save(LogOption::AutoLogLocation));
    EXPECT_EQ(1u, key.ReadDword(L"AutoLogLocation"));
    EXPECT_EQ(1u, key.ReadDword(L"PromptOpenLog"));
    EXPECT_EQ(std::vector<BYTE>(16), key.ReadBytes(L"PRAVIKUnit", REG_BINARY));
}

TEST(LogOptions, BeyondLoggingAreStoredOnlyWhenTheyAreChanged)
{
    const struct {
        LogOption option;
        const wchar_t* value;
        bool LogOptions::*field;
    } rows[] = {
        {LogOption::LoadAfterInitNew, L"LoadAfterInitNew", &LogOptions::loadAfterInitNew},
        {LogOption::HandBackOriginals, L"HandBackOriginals", &LogOptions::handBackOriginals},
        {LogOption::KeepManager, L"KeepManager", &LogOptions::keepManager},
        {LogOption::ForwardManagerEdit, L"ForwardManagerEdit", &LogOptions::forwardManagerEdit},
        {LogOption::QueueCalls, L"QueueCalls", &LogOptions::queueCalls},
        {LogOption::RecordCalls, L"RecordCalls", &LogOptions::recordCalls},
        {LogOption::RecordUnlogged, L"RecordUnlogged", &LogOptions::recordUnlogged},
        {LogOption::NotifyLog, L"NotifyLog", &LogOptions::notifyLog},
        {LogOption::WriteDumps, L"WriteDumps", &LogOptions::writeDumps},
    };
    const zelt::test::ScratchKey scratch;
    EXPECT_TRUE(OptionsIn(scratch).Save(LogOption::PromptOpenLog));
    for (const auto& row : rows) EXPECT_FALSE(scratch.Settings().ReadDword(row.value));
    for (const auto& row : rows) {
        LogOptions options = OptionsIn(scratch);
        EXPECT_TRUE(options.Load());
        EXPECT_FALSE(options.*row.field);
        options.*row.field = true;
        EXPECT_TRUE(options.Save(row.option));
        EXPECT_EQ(1u, scratch.Settings().ReadDword(row.value));
        LogOptions loaded = OptionsIn(scratch);
        EXPECT_TRUE(loaded.Load());
        EXPECT_TRUE(loaded.*row.field);
        for (const auto& other : rows) EXPECT_EQ(&other <= &row, loaded.*other.field);
    }
    LogOptions options = OptionsIn(scratch);
    EXPECT_TRUE(options.Save(LogOption::KeepManager));
    EXPECT_EQ(0u, scratch.Settings().ReadDword(L"KeepManager"));
}

TEST(LogOptions, SayWhichOneCannotBeStored)
{
    const struct {
        LogOption option;
        const wchar_t *value, *title;
    } rows[] = {
        {LogOption::AutoLogLocation, L"AutoLogLocation", L"Automatic log location"},
        {LogOption::PromptOpenLog, L"PromptOpenLog", L"Prompt for opening log when object terminates"},
        {LogOption::PravikUnit, L"PRAVIKUnit", L"PRAVIK logs unit operation"},
        {LogOption::LoadAfterInitNew, L"LoadAfterInitNew", L"PRAVIK loads after InitNew"},
        {LogOption::HandBackOriginals, L"HandBackOriginals", L"Hand objects back as they came"},
        {LogOption::KeepManager, L"KeepManager", L"Keep the manager of a package"},
        {LogOption::ForwardManagerEdit, L"ForwardManagerEdit", L"Forward Edit of a manager"},
        {LogOption::QueueCalls, L"QueueCalls", L"Queue calls of other clients"},
        {LogOption::RecordCalls, L"RecordCalls", L"Record calls"},
        {LogOption::RecordUnlogged, L"RecordUnlogged", L"Record packages without a log"},
        {LogOption::NotifyLog, L"NotifyLog", L"Notify of logs"},
        {LogOption::WriteDumps, L"WriteDumps", L"Write dumps of faults"},
    };
    for (const auto& row : rows) {
        const zelt::test::ScratchKey scratch;
        const LogOptions options = OptionsIn(scratch);
        {
            const zelt::test::RefusedWrites refused({row.value});
            const zelt::Outcome saved = options.Save(row.option);
            ASSERT_FALSE(saved);
            EXPECT_EQ(std::wstring(L"Failed to store the option \"") + row.title + L"\" in the registry: " +
                          zelt::test::RefusedWrites::Reason(),
                      saved.Failure().text);
            EXPECT_STREQ(L"ZELT", saved.Failure().caption);
            EXPECT_EQ(static_cast<UINT>(MB_OK | MB_ICONERROR | MB_TOPMOST), saved.Failure().flags);
        }
        // It is no failure if another option cannot be stored: the user has not changed it.
        for (const auto& other : rows) {
            if (other.option == row.option) continue;
            const zelt::test::RefusedWrites refused({other.value});
            EXPECT_TRUE(options.Save(row.option));
        }
    }
}

}  // namespace
