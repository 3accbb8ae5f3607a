// log stats: counts how often each method and each object was called, and how the calls went. Memory grows with the number of
// different methods and objects, not with the log.
#include <algorithm>
#include <cmath>
#include <limits>
#include <map>
#include <string>
#include <vector>

#include "ctl/json_writer.h"
#include "ctl/log/call_filter.h"
#include "ctl/log/log_commands.h"
#include "ctl/log/text/text_memo.h"

namespace zelt::ctl {
namespace {

struct Counts {
    long long calls = 0, failures = 0, warnings = 0, violations = 0, queries = 0;

    void Add(MessageKind kind)
    {
        warnings += kind == MessageKind::Warning;
        violations += kind == MessageKind::Violation;
        queries += kind == MessageKind::Query;
    }
};

using Table = std::map<std::string, Counts, std::less<>>;
using Rows = Memo<Counts*>;  // finds the rows of recurring names quickly

Counts* RowOf(Table& table, Rows& rows, std::string_view name)
{
    return rows.Of(name, [&](std::string_view text) {
        const auto found = table.find(text);
        return found != table.end() ? &found->second : &table[std::string(text)];
    });
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
        if (kind < MessageKind::Query || (open.empty() && filter.Any())) return;
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

    const CallFilter& Filter() const { return filter; }

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
        open.push_back({RowOf(methods, methodRows, event.name), RowOf(objects, objectRows, event.text)});
        ++total.calls;
        ++open.back().method->calls;
        ++open.back().object->calls;
    }

    CallFilter filter;
    Rows methodRows, objectRows;
    std::vector<OpenCall> open;
};

struct Column {
    const char* name;
    long long Counts::*count;
};
constexpr Column kColumns[] = {{"calls", &Counts::calls},
                               {"failures", &Counts::failures},
                               {"warnings", &Counts::warnings},
                               {"violations", &Counts::violations},
                               {"queries", &Counts::queries}};

using Row = std::pair<std::string, Counts>;

// Sorts by a count, the largest first and equal ones by name; or by name alone.
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
    throw UsageError("--sort is calls, failures, warnings, violations, queries or name");
}

// The column of the calls, and each other column that has anything but zeros. The system's queries have a column only on
// request.
std::vector<Column> ColumnsOf(const std::vector<Row>& rows, bool withQueries)
{
    std::vector<Column> columns;
    for (const Column& column : kColumns) {
        const bool isWanted = withQueries || column.count != &Counts::queries;
        const bool hasAny =
            std::any_of(rows.begin(), rows.end(), [&](const Row& row) { return row.second.*column.count > 0; });
        if (column.count == &Counts::calls || (isWanted && hasAny)) columns.push_back(column);
    }
    return columns;
}

void WriteTable(const char* title, const std::vector<Row>& rows, std::size_t most, bool withQueries, Output& out)
{
    const std::vector<Row> shown(rows.begin(), rows.begin() + static_cast<std::ptrdiff_t>(std::min(most, rows.size())));
    const std::vector<Column> columns = ColumnsOf(shown, withQueries);
    for (const Column& column : columns) out.Fill(10 - std::string_view(column.name).size()) << column.name << ' ';
    out << ' ' << title << '\n';
    for (const Row& row : shown) {
        for (const Column& column : columns) out.Number(row.second.*column.count, 10) << ' ';
        out << ' ' << row.first << '\n';
    }
    if (rows.size() > most) {
        out.Fill(11 * columns.size() + 1) << "and " << static_cast<long long>(rows.size() - most) << " more\n";
    }
}

void WriteCounts(const Counts& counts, bool withQueries, JsonWriter& json)
{
    for (const Column& column : kColumns) {
        if (withQueries || column.count != &Counts::queries) json.Member(column.name, counts.*column.count);
    }
}

void WriteJson(const char* key, const std::vector<Row>& rows, std::size_t most, bool withQueries, JsonWriter& json)
{
    json.Key(key).BeginArray();
    for (std::size_t row = 0; row < std::min(most, rows.size()); ++row) {
        json.NewLine().BeginObject().Member("name", rows[row].first);
        WriteCounts(rows[row].second, withQueries, json);
        json.EndObject();
    }
    json.EndArray();
}

}  // namespace

int CountCalls(const Arguments& arguments, const std::string& log, Streams& streams)
{
    const std::string sort = arguments.Value("--sort").value_or("calls");
    const bool withQueries = arguments.Has("--queries");
    // As many rows as there are, unless the user wants fewer.
    const std::size_t most = arguments.Count("--top", 1).value_or(std::numeric_limits<std::size_t>::max());
    Sorted({}, sort);
    Counter counter(arguments);
    const int code = CodeOf(ReadEvents(log, counter, streams.messages), kFine);
    counter.Filter().ReportNone(log, streams.messages);
    const auto methods = Sorted(counter.methods, sort), objects = Sorted(counter.objects, sort);
    if (arguments.Has("--json")) {
        JsonWriter json(streams.data);
        json.BeginObject().Key("total").BeginObject();
        WriteCounts(counter.total, withQueries, json);
        json.EndObject();
        WriteJson("methods", methods, most, withQueries, json);
        WriteJson("objects", objects, most, withQueries, json);
        json.EndObject();
        streams.data << '\n';
        return code;
    }
    Output& out = streams.data;
    WriteTable("method", methods, most, withQueries, out);
    out << '\n';
    WriteTable("object", objects, most, withQueries, out);
    out << '\n';
    WriteTable("all", {{"including what is outside of calls", counter.total}}, most, withQueries, out);
    if (!withQueries) streams.leftOut.queries += counter.total.queries;
    return code;
}

}  // namespace zelt::ctl
