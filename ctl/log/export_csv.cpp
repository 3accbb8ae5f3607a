// A row for each call, value and message, each complete in itself, so that a spreadsheet can sort and filter them. Fields are
// separated by commas and quoted where necessary; lines end in CR LF, as the format requires. No cell is a formula: a package
// chooses names in a log, and a spreadsheet would run a formula.
#include <algorithm>
#include <charconv>
#include <cmath>
#include <iterator>
#include <string>
#include <vector>

#include "ctl/log/call_results.h"
#include "ctl/log/log_export.h"

namespace zelt::ctl {
namespace {

constexpr std::string_view kHeader =
    "line,kind,call,caller,direction,interface,method,object,argument,argument direction,type,index,text\r\n";

// What makes spreadsheets take a cell for a formula: also in the wide forms of East Asian keyboards, and after white space that
// they skip.
constexpr std::string_view kFormulaStarts[] = {"=",  "+",      "-",      "@",      "\t",    "\r",
                                               "\n", "\uff1d", "\uff0b", "\uff0d", "\uff20"};

bool IsNumber(std::string_view text)
{
    double number = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    return error == std::errc() && end == text.data() + text.size() && std::isfinite(number);
}

bool IsFormula(std::string_view text)
{
    return !IsNumber(text) && std::any_of(std::begin(kFormulaStarts), std::end(kFormulaStarts),
                                          [&](std::string_view start) { return text.starts_with(start); });
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
            open.pop_back();
        } else if (kind == EventKind::Argument) {
            // An empty argument gets a row too.
            if (index == 0) WriteRow(argumentLine, "value", {}, true);
            inArgument = false;
        }
    }

private:
    struct OpenCall {
        long long number, caller;
        std::string interfaceName, method, object;
        bool inward;
    };

    void BeginCall(const LogEvent& event)
    {
        const long long caller = open.empty() ? 0 : open.back().number;
        open.push_back({++calls, caller, std::string(event.Interface()), std::string(event.Method()),
                        std::string(event.text), event.inward});
        WriteRow(event.line, "call", {}, false);
    }
    void BeginArgument(const LogEvent& event)
    {
        inArgument = true;
        argument = event.name;
        type = event.text;
        inwardArgument = event.inward;
        argumentLine = event.line;
        index = 0;
    }
    void Row(const LogEvent& event, std::string_view kind, bool counted)
    {
        index += counted;
        WriteRow(event.line, kind, event.text, counted);
    }

    void Field(std::string_view text)
    {
        out << ',';
        const std::string_view guard = IsFormula(text) ? "'" : "";
        const auto isSpecial = [](char c) { return c == ',' || c == '"' || c == '\r' || c == '\n'; };
        if (std::none_of(text.begin(), text.end(), isSpecial)) {
            out << guard << text;
            return;
        }
        out << '"' << guard;
        for (std::size_t quote = text.find('"'); quote != std::string_view::npos; quote = text.find('"')) {
            out << text.substr(0, quote + 1) << '"';
            text.remove_prefix(quote + 1);
        }
        out << text << '"';
    }
    void WriteRow(int line, std::string_view kind, std::string_view text, bool counted)
    {
        out << line << ',' << kind;
        if (open.empty()) {
            out << ",,,,,,";
        } else {
            const OpenCall& call = open.back();
            out << ',' << call.number << ',';
            if (call.caller) out << call.caller;
            out << (call.inward ? ",in" : ",out");
            Field(call.interfaceName);
            Field(call.method);
            Field(call.object);
        }
        if (inArgument && kind != "call") {
            Field(argument);
            out << (inwardArgument ? ",in" : ",out");
            Field(type);
        } else {
            out << ",,,";
        }
        out << ',';
        if (counted && index) out << index;
        Field(text);
        out << "\r\n";
    }

    Output& out;
    std::vector<OpenCall> open;
    long long calls = 0, index = 0;
    bool inArgument = false, inwardArgument = false;
    int argumentLine = 0;
    std::string argument, type;
};

}  // namespace

bool ExportCsv(const std::string& path, Streams& streams)
{
    CsvWriter writer(streams.data);
    return ReadEvents(path, writer, streams.messages);
}

}  // namespace zelt::ctl
