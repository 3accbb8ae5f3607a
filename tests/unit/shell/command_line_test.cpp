#include "shell/command_line.h"

#include <gtest/gtest.h>

namespace {

using zelt::RegistrationAction;
using zelt::StartMode;

struct Case {
    const wchar_t* tail;
    StartMode mode;
    RegistrationAction action;
    const wchar_t* logFile;
};

constexpr auto kNone = RegistrationAction::None;

// clang-format off
const Case kCases[] = {
    {L"",                                 StartMode::Interactive,  kNone, L""},
    {L" \t ",                             StartMode::Interactive,  kNone, L""},
    {L"-something",                       StartMode::Interactive,  kNone, L""},
    {L"/?",                               StartMode::Interactive,  kNone, L""},
    {L"-",                                StartMode::Interactive,  kNone, L""},

    {L"-Embedding",                       StartMode::Server,       kNone, L""},
    {L"/EMBEDDING",                       StartMode::Server,       kNone, L""},
    {L"  -eMbEdDiNg  ",                   StartMode::Server,       kNone, L""},

    {L"-RegServer",                       StartMode::Registration, RegistrationAction::Register, L""},
    {L"/RegServer",                       StartMode::Registration, RegistrationAction::Register, L""},
    {L"/REGSERVER",                       StartMode::Registration, RegistrationAction::Register, L""},
    {L"\"/RegServer\"",                   StartMode::Registration, RegistrationAction::Register, L""},
    {L"\t/RegServer ",                    StartMode::Registration, RegistrationAction::Register, L""},
    {L"-UnregServer",                     StartMode::Registration, RegistrationAction::Unregister, L""},
    {L"/unregserver",                     StartMode::Registration, RegistrationAction::Unregister, L""},
    {L"/RegServerPerUser",                StartMode::Registration, RegistrationAction::RegisterPerUser, L""},
    {L"-UnregServerPerUser",              StartMode::Registration, RegistrationAction::UnregisterPerUser, L""},
    {L"/UnregServer /RegServer",          StartMode::Registration, RegistrationAction::Unregister, L""},
    {L"/quiet /RegServer",                StartMode::Registration, RegistrationAction::Register, L""},
    {L"-Embedding /RegServer",            StartMode::Registration, RegistrationAction::Register, L""},
    {L"file.zlg /RegServer",              StartMode::Registration, RegistrationAction::Register, L""},
    // Without a dash or slash, or as part of another word, the word requests no action.
    {L"RegServer",                        StartMode::Registration, kNone, L""},
    {L"/RegServers",                      StartMode::Registration, kNone, L""},
    {L"/x_RegServer",                     StartMode::Registration, kNone, L""},
    {L"regserver.zlg",                    StartMode::Registration, kNone, L""},

    {L"C:\\logs\\a.zlg",                  StartMode::LogViewer,    kNone, L"C:\\logs\\a.zlg"},
    {L"\"C:\\my logs\\a b.zlg\"",         StartMode::LogViewer,    kNone, L"C:\\my logs\\a b.zlg"},
    {L" \t\"C:\\my logs\\a b.zlg\" \t",   StartMode::LogViewer,    kNone, L"C:\\my logs\\a b.zlg"},
    {L"C:\\my logs\\a b.zlg",             StartMode::LogViewer,    kNone, L"C:\\my logs\\a b.zlg"},
    {L"\"C:\\a.zlg",                      StartMode::LogViewer,    kNone, L"C:\\a.zlg"},
    {L"C:\\a.zlg\"",                      StartMode::LogViewer,    kNone, L"C:\\a.zlg\""},
    {L"\"",                               StartMode::LogViewer,    kNone, L""},
    {L"\"-a.zlg\"",                       StartMode::LogViewer,    kNone, L"-a.zlg"},
    {L"-a.zlg",                           StartMode::Interactive,  kNone, L""},
    {L"/tmp/a.zlg",                       StartMode::Interactive,  kNone, L""},
    {L"C:\\Embedding\\a.zlg",             StartMode::LogViewer,    kNone, L"C:\\Embedding\\a.zlg"},
    {L"C:\\Logs\\\xC4\xD6.ZLG",           StartMode::LogViewer,    kNone, L"C:\\Logs\\\xC4\xD6.ZLG"},
};
// clang-format on

TEST(CommandLine, SaysWhatAStartIsFor)
{
    for (const Case& c : kCases) {
        const zelt::StartPlan plan = zelt::ParseCommandLine(c.tail);
        EXPECT_EQ(c.mode, plan.mode) << testing::PrintToString(c.tail);
        EXPECT_EQ(c.action, plan.action) << testing::PrintToString(c.tail);
        EXPECT_EQ(std::wstring(c.logFile), plan.logFile) << testing::PrintToString(c.tail);
    }
}

}  // namespace
