// log redact: the log again, in the form of a log, with names and values replaced. A log that is cut off stays cut off at the
// same place.
#include <algorithm>
#include <string>
#include <vector>

#include "log/vocabulary/markup.h"
#include "ctl/log/log_commands.h"
#include "ctl/log/log_events.h"
#include "ctl/log/message_redaction.h"

namespace zelt::ctl {
namespace {

void AppendEscaped(Output& out, std::string_view text)
{
    std::size_t done = 0;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const char* const entity = MarkupEntity(text[i]);
        if (!entity) continue;
        out << text.substr(done, i - done) << entity;
        done = i + 1;
    }
    out << text.substr(done);
}

// The names that the log gives to interfaces, methods, arguments and types are the standard's. Another log may have
// others.
void AppendStandardName(Output& out, std::string_view name, const LogAliases& aliases)
{
    const bool plain = std::all_of(name.begin(), name.end(), [](char c) {
        return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || (c >= '0' && c <= '9') ||
               std::string_view("_:().|<>").find(c) != std::string_view::npos;
    });
    if (plain) {
        AppendEscaped(out, name);
    } else {
        AppendEscaped(out, aliases.Text(name));
    }
}

class Redactor final : public LogSink {
public:
    explicit Redactor(Output& out) : out(out)
    {
        out << "<?xml version=\"1.0\" standalone=\"yes\"?>\r\n<zeltlogdocument>\r\n";
    }

    void Begin(const LogEvent& event) override
    {
        WriteEnds(ends.size());
        out.Fill(static_cast<std::size_t>(event.depth));
        switch (event.kind) {
            case EventKind::Call:
                out << "<func name=\"";
                AppendStandardName(out, event.name, aliases);
                out << "\" direc=\"" << (event.inward ? "in" : "out") << "\" object=\"";
                AppendEscaped(out, aliases.Name(event.text));
                out << "\">\r\n";
                break;
            case EventKind::Argument:
                type = event.text;
                out << "<arg name=\"";
                AppendStandardName(out, event.name, aliases);
                out << "\" direc=\"" << (event.inward ? "in" : "out") << "\" type=\"";
                AppendStandardName(out, event.text, aliases);
                out << "\">\r\n";
                break;
            case EventKind::Value: WriteLine("argval", aliases.Value(event.text, type), event.hasChildren); break;
            case EventKind::Info: WriteLine("info", RedactMessage(event, aliases), event.hasChildren); break;
            case EventKind::Warning: WriteLine("warning", RedactMessage(event, aliases), event.hasChildren); break;
            case EventKind::Error: WriteLine("error", RedactMessage(event, aliases), event.hasChildren); break;
            case EventKind::Other: WriteLine("other", aliases.Text(event.text), event.hasChildren); break;
        }
        parents.push_back(event.hasChildren);
    }
    void End(EventKind kind, int depth) override
    {
        const char* name = EndTag(kind, parents.back());
        parents.pop_back();
        // An end is written when something follows it: the ends of what a cut-off log leaves open are not.
        ends.push_back({name, depth});
    }
    void LeftOpen(int) override { ++leftOpen; }

    void Finish(bool complete)
    {
        if (complete) {
            WriteEnds(ends.size());
            out << "</zeltlogdocument>\r\n";
        } else {
            // What is left open includes the root, which has no end here.
            const std::size_t open = leftOpen ? leftOpen - 1 : 0;
            WriteEnds(ends.size() - std::min(open, ends.size()));
        }
    }

private:
    struct PendingEnd {
        const char* name;  // null for an empty element
        int depth;
    };

    static const char* EndTag(EventKind kind, bool parent)
    {
        switch (kind) {
            case EventKind::Call: return "func";
            case EventKind::Argument: return "arg";
            case EventKind::Value: return parent ? "argval" : nullptr;
            case EventKind::Info: return parent ? "info" : nullptr;
            case EventKind::Warning: return parent ? "warning" : nullptr;
            case EventKind::Error: return parent ? "error" : nullptr;
            case EventKind::Other: break;
        }
        return parent ? "other" : nullptr;
    }
    void WriteLine(const char* element, const std::string& value, bool parent)
    {
        out << '<' << element << " value=\"";
        AppendEscaped(out, value);
        out << (parent ? "\">\r\n" : "\"/>\r\n");
    }
    void WriteEnds(std::size_t count)
    {
        for (std::size_t i = 0; i < count; ++i) {
            if (!ends[i].name) continue;
            out.Fill(static_cast<std::size_t>(ends[i].depth)) << "</" << ends[i].name << ">\r\n";
        }
        ends.clear();
    }

    const LogAliases aliases;
    Output& out;
    std::string type;
    std::vector<bool> parents;
    std::vector<PendingEnd> ends;
    std::size_t leftOpen = 0;
};

}  // namespace

int RedactLog(const Arguments& arguments, Streams& streams)
{
    Redactor redactor(streams.data);
    const bool complete = ReadEvents(arguments.Operand(0), redactor, streams.messages);
    redactor.Finish(complete);
    return CodeOf(complete, kFine);
}

}  // namespace zelt::ctl
