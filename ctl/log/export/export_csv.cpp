// log export --csv: a row for each call, value and message. Each row is complete in itself, so that a spreadsheet can sort and
// filter the rows. Fields are separated by commas and quoted where necessary; lines end in CR LF, as the format requires. A
// text that a spreadsheet would run as a formula gets an apostrophe before it, because a package may choose any names in a log.
#include <algorithm>
#include <iterator>
#include <string>
#include <vector>

#include "ctl/log/call_results.h"
#include "ctl/log/export/log_export.h"
#include "ctl/log/text/log_values.h"

namespace zelt::ctl {
namespace {

constexpr std::string_view kHeader =
    "line,kind,call,caller,direction,interface,method,object,argument,argument direction,type,index,text\r\n";

// The beginnings that make a spreadsheet take a cell for a formula, also in the wide forms of East Asian keyboards. A
// spreadsheet may skip tabs and line ends at the beginning.
constexpr std::string_view kFormulaStarts[] = {"=",  "+",      "-",      "@",      "\t",    "\r",
                                               "\n", "\uff1d", "\uff0b", "\uff0d", "\uff20"};

bool IsFormula(std::string_view text)
{
    // Nearly all cells begin with a letter, a digit or a quote.
    if (text.empty() || (text[0] >= 'A' && text[0] <= 'z') || (text[0] >= '0' && text[0] <= '9') || text[0] == '"')
        return false;
    return std::any_of(std::begin(kFormulaStarts), std::end(kFormulaStarts),
                       [&](std::string_view start) { return text.starts_with(start); }) &&
           !NumberOf(text);
}

void AppendNumber(std::string& out, long long number)
{
    char text[24];
    out.append(text, std::to_chars(text, std::end(text), number).ptr);
}

void AppendField(std::string& out, std::string_view text)
{
    const bool isFormula = IsFormula(text);
    const bool isSpecial =
        std::any_of(text.begin(), text.end(), [](char c) { return c == ',' || c == '"' || c == '\r' || c == '\n'; });
    out += ',';
    if (!isSpecial) {
        if (isFormula) out += '\'';
        out += text;
        return;
    }
    out += '"';
    if (isFormula) out += '\'';
    for (const char c : text) {
        if (c == '"') out += c;
        out += c;
    }
    out += '"';
}

class CsvWriter final : public LogSink {
public:
    explicit CsvWriter(Output& out) : out(out) { out << kHeader; }

    void Begin(const LogEvent& event) override
    {
        switch (event.kind) {
            case EventKind::Call: BeginCall(event); break;
            case EventKind::Argument: BeginArgument(event); break;
            case EventKind::Value: Row(event, "value", true); break;
            case EventKind::Other: Row(event, "other", false); break;
            case EventKind::Info:
                if (!IsBound(event)) Row(event, "info", false);
                break;
            case EventKind::Warning: Row(event, "warning", false); break;
            case EventKind::Error: Row(event, "error", false); break;
        }
    }
    void End(EventKind kind, int) override
    {
        if (kind == EventKind::Call) {
            --depth;
        } else if (kind == EventKind::Argument) {
            // An empty argument gets a row too.
            if (index == 0) WriteRow(argumentLine, "value", {}, true);
            inArgument = false;
        }
    }

private:
    // The cells of a call and of an argument are the same in each of their rows, so they are put together once.
    struct OpenCall {
        long long number;
        std::string cells;
    };

    void BeginCall(const LogEvent& event)
    {
        if (depth == open.size()) open.emplace_back();
        OpenCall& call = open[depth];
        call.number = ++calls;
        call.cells.clear();
        call.cells += ',';
        AppendNumber(call.cells, call.number);
        call.cells += ',';
        if (depth > 0) AppendNumber(call.cells, open[depth - 1].number);
        call.cells += event.inward ? ",in" : ",out";
        AppendField(call.cells, event.Interface());
        AppendField(call.cells, event.Method());
        AppendField(call.cells, event.text);
        ++depth;
        WriteRow(event.line, "call", {}, false);
    }
    void BeginArgument(const LogEvent& event)
    {
        inArgument = true;
        argument.clear();
        AppendField(argument, event.name);
        argument += event.inward ? ",in" : ",out";
        AppendField(argument, event.text);
        argumentLine = event.line;
        index = 0;
    }
    void Row(const LogEvent& event, std::string_view kind, bool counted)
    {
        index += counted;
        WriteRow(event.line, kind, event.text, counted);
    }

    void WriteRow(int line, std::string_view kind, std::string_view text, bool counted)
    {
        row.clear();
        AppendNumber(row, line);
        row += ',';
        row += kind;
        row += depth == 0 ? std::string_view(",,,,,,") : open[depth - 1].cells;
        row += inArgument && kind != "call" ? std::string_view(argument) : ",,,";
        row += ',';
        if (counted && index) AppendNumber(row, index);
        AppendField(row, text);
        out << row << '\r' << '\n';
    }

    Output& out;
    std::vector<OpenCall> open;  // the first `depth` of them are open; the others keep their memory
    std::size_t depth = 0;
    long long calls = 0, index = 0;
    bool inArgument = false;
    int argumentLine = 0;
    std::string argument, row;
};

}  // namespace

bool ExportCsv(const std::string& path, bool, Streams& streams)
{
    CsvWriter writer(streams.data);
    return ReadEvents(path, writer, streams.messages);
}

}  // namespace zelt::ctl
