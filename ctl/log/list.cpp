// log list: lists logs, the newest first. Reads each log completely, to count its calls, but keeps only a row for it.
#include <algorithm>
#include <charconv>
#include <iterator>
#include <optional>
#include <string>
#include <system_error>
#include <vector>

#include "ctl/json_writer.h"
#include "ctl/log/call_results.h"
#include "ctl/log/log_commands.h"
#include "ctl/log/log_paths.h"
#include "ctl/paths.h"

namespace zelt::ctl {
namespace {

struct Row {
    std::string log, package, start;
    std::optional<std::string> sortable;  // `start`, if it is in English
    std::optional<long long> size;
    std::filesystem::file_time_type changed = {};
    long long calls = 0, failures = 0;
    bool complete = false;
};

// "November 21, 2026, 08:48" as "2026-11-21 08:48". The month is in the language of the system that wrote the log; nothing if
// that is not English.
std::optional<std::string> SortableStart(std::string_view text)
{
    constexpr std::string_view kMonths[] = {"January", "February", "March",     "April",   "May",      "June",
                                            "July",    "August",   "September", "October", "November", "December"};
    const std::size_t blank = text.find(' ');
    const auto month = std::find(std::begin(kMonths), std::end(kMonths), text.substr(0, blank));
    if (month == std::end(kMonths)) return {};
    constexpr std::string_view kShape = "00, 0000, 00:00";
    const std::string_view rest = text.substr(blank + 1);
    if (rest.size() != kShape.size()) return {};
    for (std::size_t i = 0; i < rest.size(); ++i) {
        const bool isDigit = rest[i] >= '0' && rest[i] <= '9';
        if (kShape[i] == '0' ? !isDigit : rest[i] != kShape[i]) return {};
    }
    const auto number = static_cast<int>(month - std::begin(kMonths)) + 1;
    std::string start(rest.substr(4, 4));
    start.append(number < 10 ? "-0" : "-").append(std::to_string(number)).append("-").append(rest.substr(0, 2));
    return start.append(" ").append(rest.substr(10));
}

class Summary final : public LogSink {
public:
    explicit Summary(Row& row) : row(row) {}

    void Begin(const LogEvent& event) override
    {
        if (event.kind == EventKind::Call) {
            ++row.calls;
            failed.push_back(false);
        } else if (event.kind == EventKind::Info && failed.empty()) {
            TakeInfo(event);
        } else if (!failed.empty() && KindOfMessage(event) == MessageKind::Failure) {
            failed.back() = true;
        }
    }
    void End(EventKind kind, int) override
    {
        if (kind != EventKind::Call) return;
        row.failures += failed.back();
        failed.pop_back();
    }
    bool WantsArguments() const override { return false; }

private:
    void TakeInfo(const LogEvent& event)
    {
        const auto found = SentenceOf(event);
        if (!found) return;
        if (found->sentence == Sentence::LoggingStarted && row.start.empty()) {
            row.start = found->holes[0];
            row.sortable = SortableStart(found->holes[0]);
            if (row.sortable) row.start = *row.sortable;
        } else if (found->sentence == Sentence::CreatingObject && row.package.empty()) {
            row.package = found->holes[0];
        }
    }

    Row& row;
    std::vector<bool> failed;  // of each open call
};

Row ListRowOf(const std::string& log)
{
    Row row;
    row.log = NameOfLog(log);
    if (log != kStandardInput) {
        std::error_code error;
        const auto size = std::filesystem::file_size(PathOf(log), error);
        if (!error) row.size = static_cast<long long>(size);
        row.changed = std::filesystem::last_write_time(PathOf(log), error);
    }
    Summary summary(row);
    Output ignored;  // the row tells whether the log is cut off
    row.complete = ReadEvents(log, summary, ignored);
    return row;
}

// By the starts of the logs, or by their last changes if the start of any log is not in English.
void SortNewestFirst(std::vector<Row>& rows)
{
    const bool haveStarts = std::all_of(rows.begin(), rows.end(), [](const Row& row) { return row.sortable; });
    std::stable_sort(rows.begin(), rows.end(), [&](const Row& a, const Row& b) {
        // A log gives its start only to the minute, so the last change decides between equal starts.
        return haveStarts && *a.sortable != *b.sortable ? *a.sortable > *b.sortable : a.changed > b.changed;
    });
}

std::string SizeText(const std::optional<long long>& size)
{
    if (!size) return "?";
    if (*size < 1024) return std::to_string(*size) + " B";
    const long long kilobytes = (*size + 1023) / 1024;
    return kilobytes < 10 * 1024 ? std::to_string(kilobytes) + " KB"
                                 : std::to_string((kilobytes + 1023) / 1024) + " MB";
}

struct Cell {
    std::string text;
    bool right;
};

void WriteList(const std::vector<Row>& rows, Output& out)
{
    std::vector<std::vector<Cell>> lines = {{{"start", false},
                                             {"package", false},
                                             {"size", true},
                                             {"calls", true},
                                             {"failures", true},
                                             {"state", false},
                                             {"log", false}}};
    for (const Row& row : rows) {
        lines.push_back({{row.start, false},
                         {row.package, false},
                         {SizeText(row.size), true},
                         {std::to_string(row.calls), true},
                         {std::to_string(row.failures), true},
                         {row.complete ? "complete" : "cut off", false},
                         {row.log, false}});
    }
    std::vector<std::size_t> widths(lines[0].size());
    for (const auto& line : lines) {
        for (std::size_t i = 0; i < line.size(); ++i) widths[i] = std::max(widths[i], WidthOf(line[i].text));
    }
    for (const auto& line : lines) {
        for (std::size_t i = 0; i + 1 < line.size(); ++i) {
            const std::size_t blanks = widths[i] - WidthOf(line[i].text);
            if (line[i].right) out.Fill(blanks);
            out << line[i].text;
            out.Fill(line[i].right ? 2 : blanks + 2);
        }
        out << line.back().text << '\n';
    }
}

void WriteListAsJson(const std::vector<Row>& rows, Output& out)
{
    JsonWriter json(out);
    json.BeginArray();
    for (const Row& row : rows) {
        json.NewLine().BeginObject().Member("log", row.log).Member("package", row.package).Member("start", row.start);
        if (row.size) json.Member("size", *row.size);
        json.Member("calls", row.calls).Member("failures", row.failures).Key("complete").Bool(row.complete).EndObject();
    }
    json.EndArray();
    out << '\n';
}

}  // namespace

int ListLogs(const Arguments& arguments, Streams& streams)
{
    std::vector<Row> rows;
    int code = kFine;
    for (const std::string& log : LogPaths(arguments)) {
        try {
            rows.push_back(ListRowOf(log));
            if (!rows.back().complete) code = std::max<int>(code, kFinding);
        } catch (const InputError& error) {
            streams.messages << "zeltctl: " << error.what() << '\n';
            code = kUnreadable;
        }
    }
    SortNewestFirst(rows);
    if (arguments.Has("--json")) {
        WriteListAsJson(rows, streams.data);
    } else if (!rows.empty()) {
        WriteList(rows, streams.data);
    }
    return code;
}

}  // namespace zelt::ctl
