// zeltctl options: it shows the options and changes them.
#include <gtest/gtest.h>

#include "log/log_options.h"
#include "tests/system/exports/windows_commands.h"
#include "tests/system/harness/refused_writes.h"
#include "tests/system/harness/stored_options.h"

namespace zelt::test {
namespace {

class Options : public Zeltctl {
protected:
    static LogOptions Stored()
    {
        LogOptions options;
        EXPECT_TRUE(options.Load());
        return options;
    }
};

// What zeltctl prints for the options that are not in the menu, when all of these are off.
constexpr char kFurtherOff[] =
    "load-again     off\nhand-back      off\nkeep-manager   off\nforward-edit   off\nqueue          off\n"
    "record         off\nrecord-all     off\nnotify         off\ndumps          off\n";
constexpr char kFurtherOffJson[] =
    ",\"loadAfterInitNew\":false,\"handBackOriginals\":false,\"keepManager\":false,\"forwardManagerEdit\":false,"
    "\"queueCalls\":false,\"recordCalls\":false,\"recordUnlogged\":false,\"notifyLog\":false,\"writeDumps\":false}\n";

TEST_F(Options, AreShownAndChanged)
{
    const CommandOutcome defaults = RunZeltctl({"options"});
    EXPECT_EQ(0, defaults.code);
    EXPECT_EQ(std::string("auto-location  off\nprompt         on\nunit           ask\n") + kFurtherOff, defaults.data);
    EXPECT_EQ(std::string("auto-location  on\nprompt         on\nunit           ask\n") + kFurtherOff,
              RunZeltctl({"options", "--auto-location", "on"}).data);
    EXPECT_TRUE(Stored().autoLogLocation);
    EXPECT_EQ(std::string("{\"autoLocation\":true,\"prompt\":false,\"unit\":\"{34EB525A-7516-49B9-8D8E-897F4615EFE7}\","
                          "\"unitName\":\"Sample valve\"") +
                  kFurtherOffJson,
              RunZeltctl({"options", "--json", "--prompt=off", "--unit", "sample valve"}).data);
    EXPECT_FALSE(Stored().promptOpenLog);
    EXPECT_EQ(
        std::string("auto-location  on\nprompt         off\nunit           {06CFC2D2-51B0-44C9-ABD7-DE63151D3C93} "
                    "Sample splitter\n") +
            kFurtherOff,
        RunZeltctl({"options", "--unit", "{06cfc2d2-51b0-44c9-abd7-de63151d3c93}"}).data);
    EXPECT_EQ(std::string("{\"autoLocation\":true,\"prompt\":false,\"unit\":\"ask\"") + kFurtherOffJson,
              RunZeltctl({"options", "--unit", "ask", "--json"}).data);
    EXPECT_EQ(CLSID_NULL, Stored().pravikUnit);
}

TEST_F(Options, BeyondTheMenuAreChangedOneByOne)
{
    struct Case {
        const char* option;
        bool LogOptions::*field;
        const char* line;
    };
    const Case cases[] = {
        {"--load-again", &LogOptions::loadAfterInitNew, "\nload-again     on\n"},
        {"--hand-back", &LogOptions::handBackOriginals, "\nhand-back      on\n"},
        {"--keep-manager", &LogOptions::keepManager, "\nkeep-manager   on\n"},
        {"--forward-edit", &LogOptions::forwardManagerEdit, "\nforward-edit   on\n"},
        {"--queue", &LogOptions::queueCalls, "\nqueue          on\n"},
        {"--record", &LogOptions::recordCalls, "\nrecord         on\n"},
        {"--record-all", &LogOptions::recordUnlogged, "\nrecord-all     on\n"},
        {"--notify", &LogOptions::notifyLog, "\nnotify         on\n"},
        {"--dumps", &LogOptions::writeDumps, "\ndumps          on\n"},
    };
    for (const Case& each : cases) {
        const std::string shown = RunZeltctl({"options", each.option, "on"}).data;
        EXPECT_NE(std::string::npos, shown.find(each.line)) << shown;
        for (const Case& other : cases) EXPECT_EQ(&other == &each, Stored().*other.field) << other.option;
        EXPECT_EQ(0, RunZeltctl({"options", each.option, "off"}).code);
        EXPECT_FALSE(Stored().*each.field);
    }
}

TEST_F(Options, AreStoredWithoutThoseThatOthersChange)
{
    ASSERT_EQ(0, RunZeltctl({"options", "--auto-location", "off", "--prompt", "on"}).code);
    LogOptions others;
    others.autoLogLocation = true;
    EXPECT_TRUE(others.Save(LogOption::AutoLogLocation));
    const RefusedWrites refused({L"AutoLogLocation", L"PRAVIKUnit"});
    EXPECT_EQ(std::string("auto-location  on\nprompt         off\nunit           ask\n") + kFurtherOff,
              RunZeltctl({"options", "--prompt", "off"}).data);
}

TEST_F(Options, AreRefusedWithOneSentence)
{
    struct Case {
        std::vector<std::string> words;
        const char* message;
    };
    const Case cases[] = {
        {{"options", "--prompt", "yes"}, "--prompt is on or off, not \"yes\""},
        {{"options", "--auto-location", "1"}, "--auto-location is on or off"},
        {{"options", "--auto-location", "on", "--unit", "Nothing"}, "no unit operation \"Nothing\" is installed"},
        // PRAVIK inside PRAVIK would never end.
        {{"options", "--unit", "PRAVIK Logged Unit Operation"}, "no unit operation"},
        {{"options", "on"}, "\"options\" takes nothing but options"},
    };
    for (const Case& refused : cases) {
        const CommandOutcome outcome = RunZeltctl(refused.words);
        EXPECT_EQ(2, outcome.code);
        EXPECT_EQ("", outcome.data);
        EXPECT_NE(std::string::npos, outcome.messages.find(refused.message)) << outcome.messages;
    }
    EXPECT_FALSE(Stored().autoLogLocation) << "all or nothing";
}

TEST_F(Options, NameAUnitOperationThatIsGone)
{
    LogOptions options;
    CLSIDFromString(kNowhere, &options.pravikUnit);
    Store(options);
    EXPECT_EQ(
        std::string("auto-location  off\nprompt         on\nunit           {D0C70125-0000-4000-8000-00000000000A} a "
                    "class that is not registered\n") +
            kFurtherOff,
        RunZeltctl({"options"}).data);
}

TEST_F(Options, AreTakenOverByAZeltThatRuns)
{
    Export({{kSampleManager, 0, L"Aromatics", L"Aromatics"}});
    ASSERT_EQ(0, RunZeltctl({"options", "--auto-location", "off"}).code);
    {
        const auto manager = CreateManager();
        // Otherwise a dialog would ask where to put the log.
        ASSERT_EQ(0, RunZeltctl({"options", "--auto-location", "on"}).code);
        EXPECT_TRUE(GetPackage(L"Aromatics"));
        EXPECT_EQ(1u, Logs().size());
    }
}

}  // namespace
}  // namespace zelt::test
