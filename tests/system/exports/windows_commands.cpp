#include "tests/system/exports/windows_commands.h"

#include "system/narrow.h"
#include "ctl/doctor/doctor.h"
#include "ctl/exports/export_commands.h"
#include "ctl/path/path_commands.h"
#include "ctl/recording/windows_recording_commands.h"
#include "ctl/report/report_command.h"
#include "ctl/exports/manager_host.h"
#include "tests/trees.h"

namespace zelt::test {

namespace {

// The built zeltctl of an edition, which asks managers for their packages.
std::wstring BuiltTool(const Edition& edition)
{
    const std::filesystem::path folder = edition.width == kThisEdition.width ? BuiltFile("ctl") : OtherBuiltFile("ctl");
    return std::filesystem::absolute(folder / edition.tool).make_preferred().wstring();
}

}  // namespace

CommandOutcome RunZeltctl(const std::vector<std::string>& words)
{
    ctl::SetToolPath(BuiltTool);
    std::vector<ctl::Command> commands;
    for (const auto& some : {ctl::ExportCommands(), ctl::WindowsRecordingCommands(), ctl::DoctorCommands(),
                             ctl::ReportCommands(), ctl::PathCommands()}) {
        commands.insert(commands.end(), some.begin(), some.end());
    }
    ctl::Output data, messages;
    ctl::Streams streams = {data, messages};
    const int code = ctl::Run(commands, words, streams);
    return {code, data.Text(), messages.Text()};
}

void Zeltctl::ExportSamples()
{
    Export({{kSampleManager, 0, L"Aromatics", L"Aromatics"},
            {kSampleReactionManager, 4, L"Carbonate", L"Carbonate \u00E9tude", false},
            {kSamplePackage, 1, L"", L"Alone", false},
            {kNowhere, 3, L"", L"Lost"}});
}

std::wstring Zeltctl::SettingText(const wchar_t* value, const wchar_t* path)
{
    RegistryKey key;
    EXPECT_EQ(ERROR_SUCCESS, key.Open({}, path));
    const auto stored = key.ReadNarrow(Narrow(value).c_str(), REG_MULTI_SZ);
    if (!stored) return L"missing";
    std::wstring text = Widen(*stored);
    for (wchar_t& c : text) c = c ? c : L'|';
    return text;
}

}  // namespace zelt::test
