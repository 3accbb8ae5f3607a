// recording render: writes the log that was, or would have been, written beside a recording.
#include <filesystem>

#include "ctl/recording/recording_file.h"
#include "ctl/recording/windows_recording_commands.h"
#include "guard/fault_guard.h"
#include "log/recording/recording_rendering.h"
#include "system/narrow.h"

namespace zelt::ctl {
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
    // Checks the recording before the log is created.
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
