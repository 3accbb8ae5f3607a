// Stored settings and command lines with arbitrary contents, as other programs may write them or users may type them.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <string>

#include "log/log_options.h"
#include "guarded_bytes.h"
#include "long_run.h"
#include "shell/command_line.h"
#include "packages/exported_package_list.h"
#include "tests/system/harness/scratch_registry.h"
#include "tests/system/harness/stored_options.h"

namespace zelt::test {
namespace {

using namespace std::string_literals;

// Valid and invalid parts of stored entries.
const std::string kPieces[] = {
    "{4CCF55DB-E332-42F8-B685-188989F8E1EC}"s,
    "{00000000-0000-0000-0000-000000000000}"s,
    "{4CCF55DB-E332-42F8-B685-188989F8E1E"s,
    "4CCF55DB-E332-42F8-B685-188989F8E1EC"s,
    "ZELT.PropertyPackageManager"s,
    "0"s,
    "5"s,
    "6"s,
    "-1"s,
    " \t+3x"s,
    "99999999999999999999"s,
    "4294967296"s,
    "0x2"s,
    ""s,
    "true"s,
    "TRUE"s,
    "false"s,
    "A name"s,
    "\xE9\xFC\x81\x8D\xFF"s,
    "<&\"'>\r\n\t"s,
    std::string(300, 'n'),
};

std::string RandomMultiString(Dice& dice)
{
    std::string text;
    for (std::uint32_t i = dice.Below(8); i > 0; --i) {
        text += dice.Of(kPieces);
        if (!dice.Once(8)) text += '\0';
    }
    // A valid class and a kind, which is valid in most cases, make the parser read further.
    if (!dice.Once(3)) text = kPieces[0] + '\0' + std::to_string(dice.Below(7)) + '\0' + text;
    for (std::uint32_t i = dice.Once(2) ? dice.Below(6) : 0; i > 0 && !text.empty(); --i) {
        const std::size_t at = dice.Below(static_cast<std::uint32_t>(text.size()));
        switch (dice.Below(4)) {
            case 0: text[at] = static_cast<char>(dice.Any()); break;
            case 1: text.erase(at, dice.Below(40)); break;
            case 2: text.insert(at, dice.Of(kPieces)); break;
            default: text.resize(at); break;
        }
    }
    text.resize(std::min(text.size(), GuardedBytes::kMost));
    return text;
}

TEST(FuzzSettings, EntriesOfThePackageList)
{
    const int inputs = 20'000 * Effort();
    Dice dice(1);
    GuardedBytes bytes;
    int accepted = 0;
    for (int i = 0; i < inputs; ++i) {
        SCOPED_TRACE(i);
        const std::string text = RandomMultiString(dice);
        bytes.Set(text.data(), text.size());
        ExportedPackage package;
        if (!package.Parse({static_cast<const char*>(bytes.Start()), text.size()})) continue;
        ++accepted;
        ASSERT_LT(static_cast<unsigned>(package.kind), kPackageKinds);
        // The package is the same after it is stored and read again.
        ExportedPackage again;
        const std::string stored = package.Format();
        ASSERT_TRUE(again.Parse(stored));
        ASSERT_TRUE(IsEqualCLSID(package.classId, again.classId));
        ASSERT_EQ(package.kind, again.kind);
        ASSERT_EQ(package.loggingEnabled, again.loggingEnabled);
        ASSERT_EQ(stored, again.Format());
    }
    std::printf("%d inputs, %d accepted\n", inputs, accepted);
    EXPECT_LT(inputs / 20, accepted);
}

// Stores a value of random type and content under `name`, where the settings are kept.
void StoreAnything(ScratchKey& scratch, Dice& dice, const wchar_t* name, bool isEntry)
{
    constexpr DWORD kTypes[] = {REG_NONE,  REG_SZ,       REG_EXPAND_SZ, REG_BINARY,
                                REG_DWORD, REG_MULTI_SZ, REG_QWORD,     0x1234};
    std::string text = isEntry ? RandomMultiString(dice) : std::string(dice.Below(20), static_cast<char>(dice.Any()));
    DWORD type = dice.Of(kTypes);
    if (isEntry && !dice.Once(4)) type = REG_MULTI_SZ;
    if (!isEntry && !dice.Once(3)) {
        type = REG_DWORD;
        const DWORD number = dice.Once(4) ? dice.Any() : dice.Below(12);
        text.assign(reinterpret_cast<const char*>(&number), sizeof number);
    }
    RegistryKey key = scratch.Packages();
    if (type == REG_MULTI_SZ && !dice.Once(2)) {
        const std::wstring narrow(name);
        key.WriteNarrow(std::string(narrow.begin(), narrow.end()).c_str(), type, text);
    } else {
        key.WriteBytes(name, type, text.data(), text.size());  // any number of bytes, including odd numbers
    }
}

TEST(FuzzSettings, WholeKeys)
{
    const int inputs = 100 * Effort();
    Dice dice(2);
    std::size_t loaded = 0;
    for (int i = 0; i < inputs; ++i) {
        SCOPED_TRACE(i);
        ScratchKey scratch;
        const std::uint32_t packages = dice.Below(9);
        for (std::uint32_t number = 1; number <= packages; ++number) {
            StoreAnything(scratch, dice, (L"Package" + std::to_wstring(number)).c_str(), true);
        }
        for (const wchar_t* name :
             {L"NumPackages", L"AutoLogLocation", L"PromptOpenLog", L"PRAVIKUnit", L"KeepManager", L"Package"}) {
            if (!dice.Once(5)) StoreAnything(scratch, dice, name, false);
        }
        ExportedPackageList list(scratch.Root());
        EXPECT_TRUE(list.Load());
        ASSERT_LE(list.Count(), 8u);
        loaded += list.Count();
        LogOptions options;
        options.root = scratch.Root();
        EXPECT_TRUE(options.Load());

        // What was loaded is saved, and loads again unchanged.
        EXPECT_TRUE(list.Save());
        Store(options);
        ExportedPackageList again(scratch.Root());
        EXPECT_TRUE(again.Load());
        ASSERT_EQ(list.Count(), again.Count());
        for (std::size_t at = 0; at < list.Count(); ++at) ASSERT_EQ(list.At(at).Format(), again.At(at).Format());
        LogOptions reloaded;
        reloaded.root = scratch.Root();
        EXPECT_TRUE(reloaded.Load());
        ASSERT_EQ(options.autoLogLocation, reloaded.autoLogLocation);
        ASSERT_EQ(options.promptOpenLog, reloaded.promptOpenLog);
        ASSERT_TRUE(IsEqualCLSID(options.pravikUnit, reloaded.pravikUnit));
        ASSERT_EQ(options.keepManager, reloaded.keepManager);
    }
    std::printf("%d inputs, %zu packages loaded\n", inputs, loaded);
    EXPECT_LT(0u, loaded);
}

bool HasWord(std::wstring text, std::wstring_view word)
{
    for (wchar_t& letter : text) {
        if (letter >= L'A' && letter <= L'Z') letter = static_cast<wchar_t>(letter + 32);
    }
    return text.find(word) != std::wstring::npos;
}

TEST(FuzzSettings, CommandLines)
{
    constexpr const wchar_t* kWords[] = {L"regserver",
                                         L"RegServer",
                                         L"UNREGSERVER",
                                         L"RegServerPerUser",
                                         L"UnregServerPerUser",
                                         L"embedding",
                                         L"-",
                                         L"/",
                                         L"\"",
                                         L" ",
                                         L"\t",
                                         L"log.zlg",
                                         L"C:\\a b\\",
                                         L"\x0130",
                                         L"\xD800",
                                         L"--",
                                         L"\r\n",
                                         L"x"};
    const int inputs = 50'000 * Effort();
    Dice dice(3);
    GuardedBytes bytes;
    int modes[4] = {};
    for (int i = 0; i < inputs; ++i) {
        SCOPED_TRACE(i);
        std::wstring text;
        for (std::uint32_t words = dice.Below(9); words > 0; --words) {
            text += dice.Once(10) ? std::wstring(1, static_cast<wchar_t>(dice.Any())) : dice.Of(kWords);
        }
        bytes.Set(text.data(), text.size() * sizeof(wchar_t));
        const StartPlan plan = ParseCommandLine({static_cast<const wchar_t*>(bytes.Start()), text.size()});
        ++modes[static_cast<int>(plan.mode)];
        ASSERT_EQ(HasWord(text, L"regserver"), plan.mode == StartMode::Registration);
        if (plan.mode != StartMode::Registration) {
            ASSERT_EQ(RegistrationAction::None, plan.action);
        }
        if (plan.mode != StartMode::LogViewer) {
            ASSERT_EQ(L"", plan.logFile);
        }
        ASSERT_NE(std::wstring::npos, text.find(plan.logFile));
        if (plan.mode == StartMode::Server) {
            ASSERT_TRUE(HasWord(text, L"embedding"));
        }
    }
    std::printf("%d inputs: %d registrations, %d viewers, %d servers, %d interactive\n", inputs, modes[0], modes[1],
                modes[2], modes[3]);
    for (const int count : modes) EXPECT_LT(inputs / 200, count);
}

}  // namespace
}  // namespace zelt::test
