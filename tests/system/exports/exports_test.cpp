// zeltctl list, discover, add, remove, log on and log off.
#include <gtest/gtest.h>

#include "log/log_options.h"
#include "ctl/exports/manager_host.h"
#include "system/narrow.h"
#include "packages/exported_package_list.h"
#include "packages/package_list_hold.h"
#include "registration/registry_mirror.h"
#include "system/registry_view.h"
#include "tests/system/exports/windows_commands.h"
#include "tests/system/harness/golden_file.h"
#include "tests/system/harness/refused_writes.h"
#include "tests/system/harness/registered_class.h"
#include "tests/system/harness/scratch_registry.h"
#include "tests/trees.h"

namespace zelt::test {
namespace {

class Exports : public Zeltctl {};

using Words = std::vector<std::string>;
using Names = std::vector<std::wstring>;

TEST_F(Exports, AreListed)
{
    EXPECT_EQ("", RunZeltctl({"list"}).data);
    EXPECT_EQ("[]\n", RunZeltctl({"list", "--json"}).data);
    ExportSamples();
    const CommandOutcome text = RunZeltctl({"list"}), json = RunZeltctl({"list", "--json"});
    EXPECT_EQ("", MatchGolden("zeltctl_list.txt", text.data));
    EXPECT_EQ("", MatchGolden("zeltctl_list.json", json.data));
    for (const CommandOutcome& outcome : {text, json}) {
        EXPECT_EQ(0, outcome.code);
        EXPECT_EQ("", outcome.messages);
    }
}

TEST_F(Exports, AreFoundAmongWhatIsInstalled)
{
    const CommandOutcome text = RunZeltctl({"discover"});
    EXPECT_EQ(1, text.code) << "some managers fail";
    EXPECT_EQ("", MatchGolden("zeltctl_discover.txt", text.data));
    EXPECT_EQ("", MatchGolden("zeltctl_discover_messages.txt", text.messages));
    const CommandOutcome json = RunZeltctl({"discover", "--json"});
    EXPECT_EQ(1, json.code);
    EXPECT_EQ("", MatchGolden("zeltctl_discover.json", json.data));
    EXPECT_EQ("", json.messages) << "the failures are in the data";
    const CommandOutcome brief = RunZeltctl({"discover", "--no-packages"});
    EXPECT_EQ(0, brief.code);
    EXPECT_EQ("", MatchGolden("zeltctl_discover_no_packages.txt", brief.data));
    EXPECT_EQ("", brief.messages);
}

// Registers a class with a library.
RegisteredClass Register(Scope scope, REGSAM view, const wchar_t* identity, const wchar_t* category,
                         const wchar_t* name)
{
    RegisteredClass made(scope, view, identity, category, name);
    made.AddLibrary();
    return made;
}
constexpr wchar_t kStandAlone11[] = L"{CF51E384-0110-4ed8-ACB7-B50CFDE6908E}";
constexpr wchar_t kManager11[] = L"{CF51E383-0110-4ed8-ACB7-B50CFDE6908E}";

TEST_F(Exports, OfTheOtherWidthAreTheOtherEditions)
{
    if (RegistryViews().size() < 2) GTEST_SKIP() << "this system has one width";
    const RegisteredClass package = Register(Scope::Machine, KEY_WOW64_64KEY, L"{7E57EEEE-0000-0000-0000-000000000001}",
                                             kStandAlone11, L"Wide package");
    const RegisteredClass manager = Register(Scope::Machine, KEY_WOW64_64KEY, L"{7E57EEEE-0000-0000-0000-000000000002}",
                                             kManager11, L"Wide manager");
    const std::string text = RunZeltctl({"discover"}).data;
    EXPECT_NE(std::string::npos, text.find("  Wide package {7E57EEEE-0000-0000-0000-000000000001}  64-bit\n")) << text;
    EXPECT_NE(std::string::npos, text.find("  Wide manager {7E57EEEE-0000-0000-0000-000000000002}  64-bit\n")) << text;
    const std::string json = RunZeltctl({"discover", "--json", "--no-packages"}).data;
    EXPECT_NE(std::string::npos,
              json.find("{\"type\":\"PP 1.1\",\"kind\":0,\"width\":64,\"class\":\"{7E57EEEE-0000-0000-0000-"
                        "000000000002}\",\"name\":\"Wide manager\",\"displayName\":\"Wide manager\"}"))
        << json;
    const std::string narrow = RunZeltctl({"discover", "--no-packages", "--width", "32"}).data;
    const std::string reason = " - cannot be used: registered for 64-bit programs only\n";
    EXPECT_NE(std::string::npos, narrow.find("  Wide package {7E57EEEE-0000-0000-0000-000000000001}" + reason))
        << narrow;

    EXPECT_EQ("Wide package  64-bit  PP 1.1  log off  Wide package {7E57EEEE-0000-0000-0000-000000000001}\n",
              RunZeltctl({"add", "Wide package"}).data);
    EXPECT_EQ(Names{}, StoredNames()) << "the list of ZELT";
    EXPECT_EQ(L"{7E57EEEE-0000-0000-0000-000000000001}|1|Wide package|Wide package|false||",
              SettingText(L"Package1", L"Software\\ZELT\\64-bit"));
    EXPECT_EQ("", RunZeltctl({"list", "--width", "32"}).data);
    EXPECT_EQ("Wide package  64-bit  PP 1.1  log on   Wide package {7E57EEEE-0000-0000-0000-000000000001}\n",
              RunZeltctl({"log", "on", "wide package"}).data);
    const CommandOutcome refused = RunZeltctl({"add", "Wide package", "--width=32"});
    EXPECT_EQ(2, refused.code);
    EXPECT_EQ("zeltctl: \"Wide package\" cannot be exported: registered for 64-bit programs only\n", refused.messages);
    // The library of "Wide manager" does not exist.
    const CommandOutcome failed = RunZeltctl({"add", "Wide manager", "Steam"});
    EXPECT_EQ(2, failed.code);
    EXPECT_TRUE(failed.messages.starts_with("zeltctl: Failed to create property package manager: ")) << failed.messages;
    EXPECT_EQ(0, RunZeltctl({"remove", "Wide package"}).code);
    EXPECT_EQ("", RunZeltctl({"list"}).data);
}

TEST_F(Exports, OfBothWidthsNeedTheWidth)
{
    if (RegistryViews().size() < 2) GTEST_SKIP() << "this system has one width";
    const RegisteredClass package =
        Register(Scope::Machine, KEY_WOW64_64KEY, kSamplePackage, kStandAlone11, L"Sample property package");
    const std::string both = "\"Sample property package\"; say --width 32 or --width 64\n";
    EXPECT_EQ("zeltctl: ZELT and ZELT64 can both export " + both,
              RunZeltctl({"add", "Sample property package"}).messages);
    for (const char* width : {"32", "64"}) {
        EXPECT_EQ(std::string("Sample property package  ") + width +
                      "-bit  PP 1.1  log off  Sample property package {26100AA3-1793-4E26-BD43-EB046B57CFB0}\n",
                  RunZeltctl({"add", "Sample property package", "--width", width}).data);
    }
    for (const Words& words : {Words{"remove"}, Words{"log", "on"}, Words{"log", "off"}}) {
        Words line = words;
        line.push_back("Sample property package");
        const CommandOutcome outcome = RunZeltctl(line);
        EXPECT_EQ(2, outcome.code);
        EXPECT_EQ("zeltctl: ZELT and ZELT64 both export " + both, outcome.messages);
    }
    EXPECT_EQ(0, RunZeltctl({"remove", "Sample property package", "--width", "32"}).code);
    EXPECT_EQ(Names{}, StoredNames());
    EXPECT_EQ(0, RunZeltctl({"remove", "Sample property package"}).code) << "one is left";
}

TEST_F(Exports, TakeNoOtherWidth)
{
    const Words lines[] = {{"list"}, {"discover"}, {"options"}, {"add", "x"}, {"remove", "x"}, {"log", "on", "x"}};
    for (const Words& line : lines) {
        Words words = line;
        words.insert(words.end(), {"--width", "16"});
        const CommandOutcome outcome = RunZeltctl(words);
        EXPECT_EQ(2, outcome.code);
        EXPECT_EQ("zeltctl: --width is 32 or 64, not \"16\"; see zeltctl --help\n", outcome.messages);
    }
}

// zeltctl lets a separate process ask a manager for its packages, so a manager that ends its process does not end zeltctl.
TEST_F(Exports, SayWhenAManagerEndsItsProcess)
{
    std::vector<std::wstring> failures;
    const auto ask = [&](ctl::ToolPath tool) {
        failures.clear();
        ctl::SetToolPath(tool);
        const auto names = ctl::AskManager(kThisEdition, PackageKind::PropertyPackage11FromManager, CLSID_NULL,
                                           [&](const std::wstring& text) { failures.push_back(text); });
        ctl::SetToolPath(nullptr);
        EXPECT_FALSE(names);
    };
    // The sample simulator takes zeltctl's place: it does not understand the request, and ends at once.
    ask([](const Edition&) {
        return std::filesystem::absolute(BuiltFile("samples/SampleSimulator.exe")).make_preferred().wstring();
    });
    ASSERT_EQ(1u, failures.size());
    EXPECT_TRUE(failures[0].starts_with(L"The manager ended the process that asked it, with the code 0x0000000"))
        << Narrow(failures[0]);
    ask([](const Edition&) { return std::wstring(L"C:\\nowhere\\zeltctl.exe"); });
    EXPECT_EQ(
        (Names{L"The program C:\\nowhere\\zeltctl.exe, which asks managers of this width for their packages, cannot "
               L"be started"}),
        failures);
}

// Under Wine, both widths share the user's classes, so the test gives the width.
TEST_F(Exports, RegisteredForTheUserAreFound)
{
    const RegisteredClass package =
        Register(Scope::User, OwnView(), L"{7E57EEEE-0000-0000-0000-000000000003}", kStandAlone11, L"My package");
    EXPECT_NE(std::string::npos, RunZeltctl({"discover", "--no-packages", "--width", "32"})
                                     .data.find("  My package {7E57EEEE-0000-0000-0000-000000000003}  32-bit\n"));
    EXPECT_EQ("My package  32-bit  PP 1.1  log off  My package {7E57EEEE-0000-0000-0000-000000000003}\n",
              RunZeltctl({"add", "My package", "--width", "32"}).data);
}

struct AddCase {
    Words words;
    std::wstring stored;
};

TEST_F(Exports, AreAddedAsTheDialogAddsThem)
{
    // clang-format off
    const AddCase cases[] = {
        {{"Sample property package manager", "Aromatics"}, L"{B55C9180-454E-4B78-A109-B9536A903BF9}|0|Aromatics|Aromatics|false||"},
        // Stores the package's own spelling and a name that is not in use, and switches the log on.
        {{"{b55c9180-454e-4b78-a109-b9536a903bf9}", "aromatics", "--log"}, L"{B55C9180-454E-4B78-A109-B9536A903BF9}|0|Aromatics|Aromatics (2)|true||"},
        {{"Sample property package", "--name", "Mine"}, L"{26100AA3-1793-4E26-BD43-EB046B57CFB0}|1|Sample property package|Mine|false||"},
        {{"Sample thermo system", "Alcohols", "--type", "PP 1.0"}, L"{B8C3C630-1254-403A-B34B-6DE04DB571AB}|2|Alcohols|Alcohols|false||"},
        {{"SAMPLE PROPERTY PACKAGE (CAPE-OPEN 1.0)"}, L"{2D2F66B0-9D34-4AF4-9454-5B24798A32BA}|3|Sample property package (CAPE-OPEN 1.0)|Sample property package (CAPE-OPEN 1.0)|false||"},
        {{"Sample reaction package manager", "Carbonate", "--type=rp1.0"}, L"{21E8D424-AEBF-47C0-BF56-C8721C29DDCA}|4|Carbonate|Carbonate|false||"},
        {{"Sample reaction package"}, L"{0F39FE30-B7EA-43D9-8C45-D714CCB21281}|5|Sample reaction package|Sample reaction package|false||"},
    };
    // clang-format on
    int number = 0;
    for (const AddCase& one : cases) {
        Words words = {"add"};
        words.insert(words.end(), one.words.begin(), one.words.end());
        const CommandOutcome outcome = RunZeltctl(words);
        EXPECT_EQ(0, outcome.code) << outcome.messages;
        EXPECT_EQ("", outcome.messages);
        EXPECT_EQ(one.stored, SettingText((L"Package" + std::to_wstring(++number)).c_str()));
        EXPECT_EQ(static_cast<std::size_t>(number), StoredNames().size());
    }
    EXPECT_EQ("Mine  32-bit  PP 1.1  log off  Sample property package {26100AA3-1793-4E26-BD43-EB046B57CFB0}\n",
              RunZeltctl({"remove", "mine"}).data);
    EXPECT_EQ(
        "{\"name\":\"Mine\",\"width\":32,\"type\":\"PP "
        "1.1\",\"kind\":1,\"class\":\"{26100AA3-1793-4E26-BD43-EB046B57CFB0}\","
        "\"component\":\"Sample property package\",\"log\":true}\n",
        RunZeltctl({"add", "Sample property package", "--json", "--log", "--name=Mine"}).data);
}

TEST_F(Exports, HaveNamesThatNoCodePageHas)
{
    const std::string name =
        "Pl\xC3\xB6"
        "cker \xD0\x9E\xD0\xBC \xE6\xB0\xB4";
    const std::string line =
        name + "  32-bit  PP 1.1  log off  Sample property package {26100AA3-1793-4E26-BD43-EB046B57CFB0}\n";
    EXPECT_EQ(line, RunZeltctl({"add", "Sample property package", "--name", name}).data);
    EXPECT_EQ(line, RunZeltctl({"list"}).data);
    EXPECT_EQ(0, RunZeltctl({"log", "on", name}).code);
    const CommandOutcome twice = RunZeltctl({"add", "Sample property package", "--name", name});
    EXPECT_NE(std::string::npos, twice.messages.find("a package is exported as \"" + name + "\" already"));
    EXPECT_EQ(name + "  32-bit  PP 1.1  log on   Sample property package {26100AA3-1793-4E26-BD43-EB046B57CFB0}\n",
              RunZeltctl({"remove", name}).data);
    EXPECT_EQ("", RunZeltctl({"list"}).data);
}

struct RefusedCase {
    Words words;
    const char* message;
};

TEST_F(Exports, AreRefusedWithOneSentence)
{
    ExportSamples();
    const Names before = StoredNames();
    const std::string longName(256, 'x');
    // clang-format off
    const RefusedCase cases[] = {
        {{"add"}, "\"add\" takes COMPONENT [PACKAGE]"},
        {{"add", "Nothing"}, "no component \"Nothing\" is installed that can be exported"},
        {{"add", "Nothing", "Aromatics"}, "no component \"Nothing\" is installed"},
        {{"add", ""}, "no component \"\" is installed"},
        {{"add", "Sample property package manager"}, "\"Sample property package manager\" is a manager; say which of its packages"},
        {{"add", "Sample property package", "Aromatics"}, "\"Sample property package\" is a package itself, and no manager"},
        {{"add", "Sample property package manager", "Steam"}, "\"Sample property package manager\" has no package \"Steam\""},
        {{"add", "Faulty manager: list", "Menu"}, "\"Faulty manager: list\" does not list its packages"},
        {{"add", "Sample property package", "--name", "aromatics"}, "a package is exported as \"aromatics\" already"},
        {{"add", "Sample property package", "--name", " \t"}, "--name is blank, or longer than 255 characters"},
        {{"add", "Sample property package", "--name", longName}, "--name is blank, or longer"},
        {{"add", "Sample property package", "--type", "PP2"}, "--type is PP1.1, PP1.0 or RP1.0, not \"PP2\""},
        {{"add", "Sample property package", "--type", "RP1.0"}, "no component \"Sample property package\" is installed"},
        // ZELT cannot export the packages of its own managers.
        {{"add", "ZELT Property Package Manager (CAPE-OPEN 1.1)", "Aromatics"}, "no component"},
        {{"remove", "Steam"}, "no package is exported as \"Steam\""},
        {{"remove"}, "\"remove\" takes PACKAGE"},
        {{"log", "on"}, "\"log on\" takes PACKAGE"},
        {{"log", "on", "Steam"}, "no package is exported as \"Steam\""},
        {{"log", "off", "Steam"}, "no package is exported as \"Steam\""},
        {{"list", "--log"}, "\"list\" has no option \"--log\""},
    };
    // clang-format on
    for (const RefusedCase& refused : cases) {
        const CommandOutcome outcome = RunZeltctl(refused.words);
        EXPECT_EQ(2, outcome.code) << refused.message;
        EXPECT_EQ("", outcome.data);
        EXPECT_NE(std::string::npos, outcome.messages.find(refused.message)) << outcome.messages;
    }
    EXPECT_EQ(before, StoredNames());
}

TEST_F(Exports, OfARecordingNeedARecording)
{
    ExportSamples();
    const Names before = StoredNames();
    const CommandOutcome missing = RunZeltctl({"add", "--recording", "C:\\nothing.zlr"});
    EXPECT_EQ(3, missing.code);
    EXPECT_EQ("zeltctl: The recording \"C:\\nothing.zlr\" cannot be opened\n", missing.messages);
    const CommandOutcome another = RunZeltctl({"add", "--recording", "C:\\windows\\regedit.exe"});
    EXPECT_EQ(3, another.code);
    EXPECT_EQ("zeltctl: \"C:\\windows\\regedit.exe\" is not a recording, or was made by a newer version\n",
              another.messages);
    const CommandOutcome both = RunZeltctl({"add", "Sample property package", "--recording", "C:\\nothing.zlr"});
    EXPECT_EQ(2, both.code);
    EXPECT_NE(std::string::npos, both.messages.find("--recording takes the place of COMPONENT")) << both.messages;
    EXPECT_EQ(before, StoredNames());
}

TEST_F(Exports, AreRemovedAndLoggedByTheirNames)
{
    ExportSamples();
    const CommandOutcome off = RunZeltctl({"log", "off", "aromatics"});
    EXPECT_EQ(0, off.code);
    EXPECT_EQ(
        "Aromatics  32-bit  PP 1.1  log off  \"Aromatics\" of Sample property package manager "
        "{B55C9180-454E-4B78-A109-B9536A903BF9}\n",
        off.data);
    EXPECT_EQ(L"{B55C9180-454E-4B78-A109-B9536A903BF9}|0|Aromatics|Aromatics|false||", SettingText(L"Package1"));
    const CommandOutcome on = RunZeltctl({"log", "on", "Alone", "--json"});
    EXPECT_EQ(0, on.code);
    EXPECT_EQ(
        "{\"name\":\"Alone\",\"width\":32,\"type\":\"PP "
        "1.1\",\"kind\":1,\"class\":\"{26100AA3-1793-4E26-BD43-EB046B57CFB0}\","
        "\"component\":\"Sample property package\",\"log\":true}\n",
        on.data);
    EXPECT_EQ(0, RunZeltctl({"log", "on", "Alone"}).code) << "it is on already";
    const CommandOutcome removed = RunZeltctl({"remove", "Carbonate \xC3\xA9tude"});
    EXPECT_EQ(0, removed.code);
    EXPECT_EQ(
        "Carbonate \xC3\xA9tude  32-bit  RP 1.0  log off  \"Carbonate\" of Sample reaction package manager "
        "{21E8D424-AEBF-47C0-BF56-C8721C29DDCA}\n",
        removed.data);
    EXPECT_EQ((Names{L"Aromatics", L"Alone", L"Lost"}), StoredNames());
    EXPECT_EQ(L"{26100AA3-1793-4E26-BD43-EB046B57CFB0}|1||Alone|true||", SettingText(L"Package2"));
}

TEST_F(Exports, AreLeftAloneWhileZeltRuns)
{
    ExportSamples();
    const Names before = StoredNames();
    {
        const auto manager = CreateManager();
        ASSERT_TRUE(manager);
        const Words changes[] = {{"add", "Sample reaction package"},
                                 {"remove", "Alone"},
                                 {"log", "on", "Alone"},
                                 {"log", "off", "Aromatics"}};
        for (const Words& change : changes) {
            const CommandOutcome outcome = RunZeltctl(change);
            EXPECT_EQ(2, outcome.code);
            EXPECT_EQ("", outcome.data);
            EXPECT_EQ(
                "zeltctl: ZELT is running, and would overwrite this change with its own list of packages; close its "
                "window and "
                "the "
                "simulators that use it, then try again\n",
                outcome.messages);
        }
        EXPECT_EQ(0, RunZeltctl({"list"}).code);
        EXPECT_EQ(0, RunZeltctl({"options"}).code);
    }
    EXPECT_EQ(before, StoredNames());
    EXPECT_EQ(L"{26100AA3-1793-4E26-BD43-EB046B57CFB0}|1||Alone|false||", SettingText(L"Package3"));
    EXPECT_TRUE(WaitUntilGone(kServerFile));
    EXPECT_EQ(0, RunZeltctl({"remove", "Alone"}).code);
}

// Two servers of the same user can hold the list; it can be changed when both have ended.
TEST_F(Exports, AreLeftAloneUntilTheLastHolderIsGone)
{
    ExportSamples();
    auto first = std::make_unique<PackageListHold>(), second = std::make_unique<PackageListHold>();
    EXPECT_EQ(2, RunZeltctl({"remove", "Alone"}).code);
    first.reset();
    EXPECT_EQ(2, RunZeltctl({"remove", "Alone"}).code);
    second.reset();
    EXPECT_EQ(0, RunZeltctl({"remove", "Alone"}).code);
}

// A list counts as shared only if its holders have different rights.
TEST_F(Exports, AreSharedByHoldersWithOtherRightsOnly)
{
    const PackageListHold plain(Rights::Plain);
    EXPECT_FALSE(plain.IsShared());
    const PackageListHold equal(Rights::Plain);
    EXPECT_FALSE(plain.IsShared());
    {
        const PackageListHold raised(Rights::Administrator);
        EXPECT_TRUE(raised.IsShared());
        EXPECT_TRUE(plain.IsShared());
    }
    EXPECT_FALSE(plain.IsShared());
}

DWORD WINAPI TakeHold(void* hold)
{
    static_cast<std::optional<PackageListHold>*>(hold)->emplace();
    return 0;
}

TEST_F(Exports, AreHeldOnlyAfterAnEdit)
{
    std::optional<PackageListHold> hold;
    HANDLE holder = nullptr;
    {
        const PackageListEdit edit;
        ASSERT_TRUE(edit.Allowed());
        holder = CreateThread(nullptr, 0, TakeHold, &hold, 0, nullptr);
        EXPECT_EQ(static_cast<DWORD>(WAIT_TIMEOUT), WaitForSingleObject(holder, 300)) << "the edit has not ended";
    }
    EXPECT_EQ(WAIT_OBJECT_0, WaitForSingleObject(holder, INFINITE));
    CloseHandle(holder);
    EXPECT_FALSE(PackageListEdit().Allowed());
    hold.reset();
    EXPECT_TRUE(PackageListEdit().Allowed());
}

// Commands that need the user's registry report that they cannot access it.
TEST_F(Exports, CannotBeReadWithoutTheUsersRegistry)
{
    ScratchKey scratch;
    scratch.MakeInaccessible();
    ExportedPackages().UseRoot(scratch.Root());
    TheLogOptions().root = scratch.Root();
    const Words commands[] = {
        {"list"},    {"add", "Sample property package"}, {"remove", "Alone"}, {"log", "on", "Alone"},
        {"options"}, {"options", "--prompt", "off"},     {"doctor"}};
    for (const Words& words : commands) {
        const CommandOutcome outcome = RunZeltctl(words);
        EXPECT_EQ(3, outcome.code) << words[0];
        EXPECT_EQ("", outcome.data);
        EXPECT_EQ("zeltctl: Unable to access the registry; unable to store or load packages\n", outcome.messages);
    }
    ExportedPackages().UseRoot({});
    TheLogOptions().root = {};
}

// zeltctl reports a change that cannot be stored.
TEST_F(Exports, SayWhatTheRegistryDoesNotTake)
{
    ExportSamples();
    const RegistryRoot user;
    const auto stored = ReadKeyTree(user, L"Software\\ZELT");
    struct Case {
        Words words;
        const char* lost;
    };
    const Case cases[] = {
        {{"options", "--auto-location", "off"}, "the option \"Automatic log location\""},
        {{"options", "--prompt", "off"}, "the option \"Prompt for opening log when object terminates\""},
        {{"options", "--unit", "ask"}, "the option \"PRAVIK logs unit operation\""},
        {{"log", "on", "Alone"}, "the list of packages"},
        {{"remove", "Alone"}, "the list of packages"},
        {{"add", "Sample property package manager", "Aromatics", "--name", "New"}, "the list of packages"},
    };
    for (const Case& each : cases) {
        const RefusedWrites refused;
        const CommandOutcome outcome = RunZeltctl(each.words);
        EXPECT_EQ(3, outcome.code) << each.words[0];
        EXPECT_EQ("", outcome.data);
        EXPECT_EQ("zeltctl: Failed to store " + std::string(each.lost) +
                      " in the registry: " + Narrow(RefusedWrites::Reason(), CP_UTF8) + '\n',
                  outcome.messages);
    }
    EXPECT_TRUE(stored == ReadKeyTree(user, L"Software\\ZELT"));
}

TEST_F(Exports, HaveHelpAndVersion)
{
    const Words commands[] = {{"list"},      {"discover"},   {"add"},     {"remove"},
                              {"log", "on"}, {"log", "off"}, {"options"}, {"doctor"}};
    for (Words words : commands) {
        std::string name;
        for (const std::string& word : words) name += ' ' + word;
        words.push_back("--help");
        const CommandOutcome help = RunZeltctl(words);
        EXPECT_EQ(0, help.code);
        EXPECT_TRUE(help.data.starts_with("zeltctl" + name)) << help.data;
        EXPECT_NE(std::string::npos, help.data.find("--json")) << help.data;
        words.back() = "--version";
        const CommandOutcome version = RunZeltctl(words);
        EXPECT_EQ(0, version.code);
        EXPECT_EQ("zeltctl 1.0.0\n", version.data);
        words.back() = "--nonsense";
        EXPECT_EQ(2, RunZeltctl(words).code);
    }
    EXPECT_EQ("", MatchGolden("zeltctl_help.txt", RunZeltctl({"help"}).data));
}

}  // namespace
}  // namespace zelt::test
