#include "ctl/recording/recording_tables.h"

#include "ctl/recording/call_times.h"
#include "ctl/recording/recorded_events.h"
#include "ctl/recording/recording_file.h"
#include "ctl/recording/time_text.h"

namespace zelt::ctl {

using namespace recording;

namespace {

void Describe(const HeaderRecord& header, ConversationTables& tables)
{
    tables.Describe("kind", "recording");
    tables.Describe("object", header.objectName);
    tables.Describe("type", header.objectType);
    tables.Describe("program", header.program);
    tables.Describe("width", std::to_string(header.width));
    tables.Describe("started", DateText(header.started));
}

}  // namespace

bool IsRecording(const std::string& path)
{
    if (path == "-") return false;
    RecordingFile file(path);
    const Record* const first = file.Records().Next();
    const auto* header = first ? std::get_if<HeaderRecord>(first) : nullptr;
    return header && header->version != 0;
}

bool FillFromRecording(const std::string& path, ConversationTables& tables, Output& messages)
{
    RecordingFile file(path);
    Describe(file.ReadHeader(), tables);
    CallTimes times(false);
    RecordedEvents events;
    bool isClosed = false;
    while (const Record* record = isClosed ? nullptr : file.Records().Next()) {
        isClosed = std::holds_alternative<EndRecord>(*record);
        if (const TimedCall* call = times.Take(*record)) {
            tables.SetTiming({call->start, call->duration, call->inside, (call->status & 0x80000000u) != 0});
        }
        events.Take(*record, tables);
        if (std::holds_alternative<CallRecord>(*record)) tables.SetStart(times.Now());
    }
    return file.ReportEnd(isClosed, messages) == kFine;
}

}  // namespace zelt::ctl
