// recording trim: keeps only what is needed to replay certain calls. Reads the recording twice.
#include <charconv>
#include <map>
#include <utility>

#include "ctl/recording/recording_commands.h"
#include "ctl/recording/recording_file.h"
#include "ctl/recording/recording_output.h"
#include "ctl/recording/trimming/needed_calls.h"
#include "recording/record_copy.h"

namespace zelt::ctl {
namespace {

using namespace recording;

struct CallRange {
    std::uint64_t first, last;
};

std::uint64_t NumberFrom(std::string_view text)
{
    std::uint64_t number = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    if (error != std::errc() || end != text.data() + text.size() || number == 0) {
        throw UsageError("calls and failures are numbered from 1: \"" + std::string(text) + "\"");
    }
    return number;
}

// "148" or "100..148".
CallRange RangeFrom(std::string_view text)
{
    const std::size_t dots = text.find("..");
    const std::uint64_t first = NumberFrom(text.substr(0, dots));
    const std::uint64_t last = dots == std::string_view::npos ? first : NumberFrom(text.substr(dots + 2));
    if (last < first) throw UsageError("the last call comes before the first");
    return {first, last};
}

std::string HasOnly(std::uint64_t count, const char* one, const char* many)
{
    return "the recording has " + (count == 0 ? "no" : std::to_string(count)) + ' ' + (count == 1 ? one : many);
}

CallRange WantedCalls(const Arguments& arguments, const CallOutline& outline)
{
    if (const auto calls = arguments.Value("--calls")) {
        const CallRange range = RangeFrom(*calls);
        if (range.last > outline.Count()) throw Refusal(HasOnly(outline.Count(), "call", "calls"));
        return range;
    }
    const std::vector<std::uint64_t> failures = outline.Failures();
    const std::uint64_t number = NumberFrom(*arguments.Value("--failure"));
    if (number > failures.size()) throw Refusal(HasOnly(failures.size(), "call that failed", "calls that failed"));
    const std::uint64_t call = failures[static_cast<std::size_t>(number) - 1];
    return {call, call};
}

// Copies the records that are needed.
class Trimming {
public:
    Trimming(const NeededCalls& needed, std::uint64_t wanted, RecordWriter& records)
        : needed(needed), wanted(wanted), records(records), copier(records)
    {}

    // False when nothing needed comes after the record.
    bool Take(const Record& record)
    {
        const auto* call = std::get_if<CallRecord>(&record);
        if (call && depth++ == 0) ++outermost;
        const bool isKept = depth > 0 ? needed.calls[outermost - 1] : IsKeptOutside(record);
        const auto* query = std::get_if<QueryRecord>(&record);
        if (query) {
            TakeQuery(*query, record);
        } else if (std::holds_alternative<ObjectRecord>(record)) {
            copier.Take(record, needed.objects[++objects]);
        } else {
            copier.Take(record, isKept);
        }
        if (call) {
            ++calls;
            kept += isKept;
            if (calls == wanted) place = kept;
        }
        if (std::holds_alternative<ResultRecord>(record) && depth > 0 && --depth == 0 && outermost > needed.last) {
            records.End();
            return false;
        }
        records.Flush();
        return true;
    }
    // The number of the wanted call in the new recording.
    std::uint64_t Place() const { return place; }

private:
    static bool IsKeptOutside(const Record& record)
    {
        return std::holds_alternative<HeaderRecord>(record) || std::holds_alternative<ComponentRecord>(record);
    }
    // A query to a needed object is kept even if it was made during a call that is left out, because the object answers the
    // same in the calls that are kept. If an object is asked for the same interface again and answers the same, that query is
    // left out.
    void TakeQuery(const QueryRecord& query, const Record& record)
    {
        if (query.object >= needed.objects.size() || !needed.objects[query.object]) return;
        std::string key = std::to_string(query.object);
        key.append(1, ' ').append(query.interfaceId);
        const auto [answer, isNew] = queries.emplace(std::move(key), query.isGranted);
        if (isNew || std::exchange(answer->second, query.isGranted) != query.isGranted) copier.Take(record);
    }

    const NeededCalls& needed;
    const std::uint64_t wanted;
    RecordWriter& records;
    RecordCopier copier;
    std::map<std::string, bool> queries;
    std::size_t outermost = 0, objects = 0, depth = 0;
    std::uint64_t calls = 0, kept = 0, place = 0;
};

}  // namespace

int TrimRecording(const Arguments& arguments, Streams& streams)
{
    if (!arguments.Has("--calls") && !arguments.Has("--failure")) throw UsageError("--calls or --failure is missing");
    if (arguments.Has("--calls") && arguments.Has("--failure")) throw UsageError("--calls does not go with --failure");
    const std::string& path = arguments.Operand(0);
    RecordingFile whole(path);
    whole.ReadHeader();
    CallOutline outline;
    bool isClosed = false;
    while (const Record* record = whole.Records().Next()) {
        isClosed = std::holds_alternative<EndRecord>(*record);
        if (isClosed) break;
        outline.Take(*record);
    }
    const CallRange range = WantedCalls(arguments, outline);
    const NeededCalls needed = CallsNeededFor(outline, range.first, range.last);
    RecordingFile again(path);
    RecordingOutput output(arguments);
    Trimming trimming(needed, range.last, output.Records());
    while (const Record* record = again.Records().Next()) {
        if (!trimming.Take(*record)) break;
    }
    output.Keep();
    streams.data << static_cast<long long>(needed.count) << " of " << static_cast<long long>(outline.Count())
                 << " calls kept; call " << static_cast<long long>(range.last) << " is call "
                 << static_cast<long long>(trimming.Place()) << " now\n";
    return whole.ReportEnd(isClosed, streams.messages);
}

}  // namespace zelt::ctl
