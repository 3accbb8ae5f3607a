// recording render: the log that was written beside a recording, or would have been.
#include <filesystem>

#include "ctl/recording/recording_file.h"
#include "ctl/recording/windows_recording_commands.h"
#include "guard/fault_guard.h"
#include "log/recording/recording_rendering.h"
#include "system/narrow.h"

namespace zelt::ctl {
namespace {

// clang-format off
constexpr Option kReplayOptions[] = {
    {"--with",      "COMPONENT", "in the place of the recorded component: its class identifier or its registered name"},
    {"--package",   "NAME",      "another package of the manager"},
    {"--tolerance", "T",         "by how much real numbers may differ, relative to the larger; without it, not by a bit"},
    {"--repeat",    "N",         "how many times all calls are made, each time by a new component; once without it"},
    {"--limit",     "N",         "how many differences are shown; 20 without it"},
};

constexpr Command kCommands[] = {
    {"recording render", "RECORDING LOG", 2, 2, {}, "Writes the log that belongs to a recording",
     "The log is equal, byte for byte, to the one that was written beside the recording. The zeltctl of the width of the ZELT that\n"
     "recorded renders it.", RenderAsLog},
    {"recording replay", "RECORDING", 1, 1, kReplayOptions, "Makes the recorded calls of a component again, and compares",
     "The component is made as it was then. Stand-ins answer for the simulator's objects as those did. Each difference in results,\n"
     "outputs and the calls that the component makes is shown with the number of its call. A crash of the component is one, too.",
     ReplayRecording},
};
// clang-format on

}  // namespace

std::span<const Command> WindowsRecordingCommands() { return kCommands; }

int RenderAsLog(const Arguments& arguments, Streams& streams)
{
    PrepareGuards();
    RecordingFile file(arguments.Operand(0));
    const std::string& path = arguments.Operand(1);
    const std::wstring log = Widen(path, CP_UTF8);
    std::error_code ignored;
    if (std::filesystem::equivalent(log, Widen(arguments.Operand(0), CP_UTF8), ignored)) {
        throw UsageError("the log cannot take the place of its recording");
    }
    // Checked before the log is made.
    RecordingFile(arguments.Operand(0)).ReadHeader();
    LogFile out;
    if (const int error = out.Open(log)) throw InputError(path + ": " + std::generic_category().message(error));
    const Rendering rendering = RenderRecording(file.Records(), std::move(out));
    if (!rendering.isRecording) {
        std::filesystem::remove(log, ignored);
        throw Refusal(arguments.Operand(0) + ": " + rendering.obstacle);
    }
    if (rendering.lost > 0) throw InputError(path + ": the log could not be written whole");
    if (rendering.end == recording::ReadEnd::Damaged && file.Records().End() != recording::ReadEnd::Damaged) {
        streams.messages << "zeltctl: " << arguments.Operand(0) << ": the record at byte "
                         << static_cast<long long>(rendering.offset)
                         << " has no meaning; only what comes before is used\n";
        return kFinding;
    }
    return file.ReportEnd(rendering.isClosed, streams.messages);
}

}  // namespace zelt::ctl
