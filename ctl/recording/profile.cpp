// recording profile: shows where the time of the calls went, or writes every call as a trace event.
#include <algorithm>
#include <cstdio>

#include "ctl/json_writer.h"
#include "ctl/recording/call_profile.h"
#include "ctl/recording/recording_commands.h"
#include "ctl/recording/recording_file.h"
#include "ctl/recording/time_text.h"

namespace zelt::ctl {
namespace {

constexpr std::size_t kSlowest = 10;

// Calls `take(call)` for each call when it has ended. Returns whether the recording has its last record.
template <class Take>
bool ReadCalls(RecordingFile& file, bool wantsInputs, Take&& take)
{
    CallTimes times(wantsInputs);
    while (const recording::Record* record = file.Records().Next()) {
        if (std::holds_alternative<recording::EndRecord>(*record)) return true;
        if (const TimedCall* const call = times.Take(*record)) take(*call);
    }
    return false;
}

void Right(Output& out, const std::string& text, std::size_t width)
{
    out.Fill(width - std::min(width, text.size())) << text;
}

std::string ShareText(std::uint64_t part, std::uint64_t whole)
{
    char text[16];
    std::snprintf(text, sizeof text, "%.0f %%",
                  whole == 0 ? 0 : 100.0 * static_cast<double>(part) / static_cast<double>(whole));
    return text;
}

void WriteShares(const TimeShares& shares, Output& out)
{
    const struct {
        const char* name;
        std::uint64_t time;
    } rows[] = {{"component", shares.component},
                {"simulator", shares.simulator},
                {"transport", shares.transport},
                {"ZELT", shares.zelt}};
    Right(out, TimeText(shares.all), 10);
    out << "  in all calls\n";
    for (const auto& row : rows) {
        Right(out, TimeText(row.time), 10);
        out << "  " << row.name << ", " << ShareText(row.time, shares.all) << '\n';
    }
    out << '\n';
}

void WriteProfileRows(const char* title, const std::map<std::string, CallFigures>& figures, Output& out)
{
    for (const char* column : {"calls", "failed", "total", "self", "median", "99 %"}) Right(out, column, 10);
    out << "  " << title << '\n';
    std::vector<const std::pair<const std::string, CallFigures>*> rows;
    for (const auto& row : figures) rows.push_back(&row);
    std::stable_sort(rows.begin(), rows.end(),
                     [](const auto* a, const auto* b) { return a->second.self > b->second.self; });
    for (const auto* row : rows) {
        const CallFigures& one = row->second;
        Right(out, std::to_string(one.calls), 10);
        Right(out, std::to_string(one.failures), 10);
        for (const std::uint64_t time : {one.total, one.self, one.times.At(0.5), one.times.At(0.99)}) {
            Right(out, TimeText(time), 10);
        }
        out << "  " << row->first << '\n';
    }
}

void WriteSlowest(const std::vector<TimedCall>& slowest, Output& out)
{
    if (slowest.empty()) return;
    out << '\n';
    Right(out, "call", 10);
    Right(out, "time", 10);
    out << "  slowest\n";
    for (const TimedCall& call : slowest) {
        Right(out, std::to_string(call.number), 10);
        Right(out, TimeText(call.duration), 10);
        out << "  " << call.member << " of " << call.object;
        if (!call.inputs.empty()) out << ": " << call.inputs;
        out << '\n';
    }
}

std::string Microseconds(std::uint64_t nanoseconds)
{
    char text[40];
    std::snprintf(text, sizeof text, "%llu.%03llu", static_cast<unsigned long long>(nanoseconds / 1000),
                  static_cast<unsigned long long>(nanoseconds % 1000));
    return text;
}

// Writes each call as a "complete" event of the trace event format. Times are in microseconds. Viewers that sum up calls group
// events with equal arguments, so the number and the inputs of a call are written only on request.
int WriteTraceEvents(RecordingFile& file, bool wantsInputs, Streams& streams)
{
    Output& out = streams.data;
    JsonWriter json(out);
    json.BeginArray();
    const bool isClosed = ReadCalls(file, wantsInputs, [&](const TimedCall& call) {
        json.NewLine()
            .BeginObject()
            .Member("name", call.member)
            .Member("cat", call.isOutward ? "simulator" : "component");
        json.Member("ph", "X").Member("pid", 1LL).Member("tid", 1LL);
        json.Key("ts").Number(Microseconds(call.start)).Key("dur").Number(Microseconds(call.duration));
        json.Key("args").BeginObject().Member("object", call.object);
        if (wantsInputs) json.Member("call", call.number).Member("inputs", call.inputs);
        json.EndObject().EndObject();
    });
    json.EndArray();
    out << '\n';
    return file.ReportEnd(isClosed, streams.messages);
}

}  // namespace

int ProfileRecording(const Arguments& arguments, Streams& streams)
{
    CallProfile profile(arguments.Count("--slowest", 0).value_or(kSlowest));
    RecordingFile file(arguments.Operand(0));
    file.ReadHeader();
    if (arguments.Has("--trace-events")) return WriteTraceEvents(file, arguments.Has("--inputs"), streams);
    const bool isClosed = ReadCalls(file, true, [&](const TimedCall& call) { profile.Add(call); });
    WriteShares(profile.Shares(), streams.data);
    if (arguments.Has("--objects")) {
        WriteProfileRows("object", profile.Objects(), streams.data);
    } else {
        WriteProfileRows("member", profile.Members(), streams.data);
    }
    WriteSlowest(profile.Slowest(), streams.data);
    return file.ReportEnd(isClosed, streams.messages);
}

}  // namespace zelt::ctl
