// log stats: how often each method was called on each object, and how it went. Memory grows with the number of
// different methods and objects, not with the log.
#include <algorithm>
#include <map>
#include <string>
#include <vector>

#include "ctl/json_writer.h"
#include "ctl/log/call_filter.h"
#include "ctl/log/log_commands.h"

namespace zelt::ctl {
namespace {

struct Counts {
    long long calls = 0, failures = 0, warnings = 0, violations = 0;

    void Add(MessageKind kind)
    {
        warnings += kind == MessageKind::Warning;
        violations += kind == MessageKind::Violation;
    }
};

using Table = std::map<std::string, Counts, std::less<>>;

Counts& RowOf(Table& table, std::string_view name)
{
    const auto found = table.find(name);
    return found != table.end() ? found->second : table[std::string(name)];
}

class Counter final : public LogSink {
public:
    explicit Counter(const Arguments& arguments) : filter(arguments) {}

    void Begin(const LogEvent& event) override
    {
        if (event.kind == EventKind::Call) {
            Open(event);
            return;
        }
        const MessageKind kind = KindOfMessage(event);
        if (kind < MessageKind::Warning || (open.empty() && filter.Any())) return;
        if (open.empty()) {
            total.Add(kind);
        } else if (OpenCall& call = open.back(); call.method) {
            call.failed |= kind == MessageKind::Failure;
            total.Add(kind);
            call.method->Add(kind);
            call.object->Add(kind);
        }
    }
    void End(EventKind kind, int) override
    {
        if (kind != EventKind::Call) return;
        if (const OpenCall& call = open.back(); call.failed) {
            ++total.failures;
            ++call.method->failures;
            ++call.object->failures;
        }
        open.pop_back();
    }
    bool WantsArguments() const override { return false; }

    Counts total;
    Table methods, objects;

private:
    struct OpenCall {
        Counts *method, *object;  // null for a call that the filter leaves out
        bool failed = false;      // counted once, however many errors report it
    };

    void Open(const LogEvent& event)
    {
        if (!filter.Matches(event)) {
            open.push_back({nullptr, nullptr});
            return;
        }
        open.push_back({&RowOf(methods, event.name), &RowOf(objects, event.text)});
        ++total.calls;
        ++open.back().method->calls;
        ++open.back().object->calls;
    }

    const CallFilter filter;
    std::vector<OpenCall> open;
};

struct Column {
    const char* name;
    long long Counts::*count;
};
constexpr Column kColumns[] = {{"calls", &Counts::calls},
                               {"failures", &Counts::failures},
                               {"warnings", &Counts::warnings},
                               {"violations", &Counts::violations}};

using Row = std::pair<std::string, Counts>;

// The largest first; equal ones in alphabetical order.
std::vector<Row> Sorted(const Table& table, const std::string& by)
{
    std::vector<Row> rows(table.begin(), table.end());
    if (by == "name") return rows;
    for (const Column& column : kColumns) {
        if (by != column.name) continue;
        std::stable_sort(rows.begin(), rows.end(),
                         [&](const Row& a, const Row& b) { return a.second.*column.count > b.second.*column.count; });
        return rows;
    }
    throw UsageError("--sort is calls, failures, warnings, violations or name");
}

void WriteCounts(const Counts& counts, Output& out)
{
    for (const Column& column : kColumns) {
        const std::string number = std::to_string(counts.*column.count);
        out.Fill(number.size() < 10 ? 10 - number.size() : 0) << number << ' ';
    }
}

void WriteTable(const char* title, const std::vector<Row>& rows, Output& out)
{
    for (const Column& column : kColumns) out.Fill(10 - std::string_view(column.name).size()) << column.name << ' ';
    out << ' ' << title << '\n';
    for (const auto& [name, counts] : rows) {
        WriteCounts(counts, out);
        out << ' ' << name << '\n';
    }
}

void WriteJson(const char* key, const std::vector<Row>& rows, JsonWriter& json)
{
    json.Key(key).BeginArray();
    for (const auto& [name, counts] : rows) {
        json.NewLine().BeginObject().Member("name", name);
        for (const Column& column : kColumns) json.Member(column.name, counts.*column.count);
        json.EndObject();
    }
    json.EndArray();
}

}  // namespace

int CountCalls(const Arguments& arguments, Streams& streams)
{
    const std::string sort = arguments.Value("--sort").value_or("calls");
    Sorted({}, sort);
    Counter counter(arguments);
    const int code = CodeOf(ReadEvents(arguments.Operand(0), counter, streams.messages), kFine);
    const auto methods = Sorted(counter.methods, sort), objects = Sorted(counter.objects, sort);
    if (arguments.Has("--json")) {
        JsonWriter json(streams.data);
        json.BeginObject().Key("total").BeginObject();
        for (const Column& column : kColumns) json.Member(column.name, counter.total.*column.count);
        json.EndObject();
        WriteJson("methods", methods, json);
        WriteJson("objects", objects, json);
        json.EndObject();
        streams.data << '\n';
        return code;
    }
    WriteTable("method", methods, streams.data);
    streams.data << '\n';
    WriteTable("object", objects, streams.data);
    streams.data << '\n';
    WriteTable("all", {{"with what stands outside of calls", counter.total}}, streams.data);
    return code;
}

}  // namespace zelt::ctl
