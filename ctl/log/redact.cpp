// log redact: the log again, in the form of a log, with names and values replaced. A log that is cut off stays cut off at the
// same place.
#include <algorithm>
#include <array>
#include <string>
#include <vector>

#include "log/vocabulary/markup.h"
#include "ctl/log/log_commands.h"
#include "ctl/log/log_events.h"
#include "ctl/log/message_redaction.h"

namespace zelt::ctl {
namespace {

struct ByteSet {
    std::array<bool, 256> has = {};
    bool operator[](unsigned char byte) const { return has[byte]; }
};

constexpr ByteSet kIsMarkup = [] {
    ByteSet set;
    for (unsigned byte = 0; byte < set.has.size(); ++byte) set.has[byte] = MarkupEntity(static_cast<char>(byte));
    return set;
}();

// What the names consist of that the log gives to interfaces, methods, arguments and types, besides angle brackets.
constexpr ByteSet kIsInPlainNames = [] {
    ByteSet set;
    for (const char c : std::string_view("ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789_:().|")) {
        set.has[static_cast<unsigned char>(c)] = true;
    }
    return set;
}();

void AppendEscaped(std::string& out, std::string_view text)
{
    std::size_t done = 0;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (!kIsMarkup[static_cast<unsigned char>(text[i])]) continue;
        out.append(text, done, i - done).append(MarkupEntity(text[i]));
        done = i + 1;
    }
    out.append(text, done);
}

// The names that the log gives to interfaces, methods, arguments and types are the standard's. Another log may have
// others.
void AppendStandardName(std::string& out, std::string_view name, const LogAliases& aliases)
{
    const auto isPlain = [](char c) { return kIsInPlainNames[static_cast<unsigned char>(c)]; };
    if (std::all_of(name.begin(), name.end(), isPlain)) {
        out += name;
    } else if (std::all_of(name.begin(), name.end(), [&](char c) { return isPlain(c) || c == '<' || c == '>'; })) {
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
        AppendEnds(ends.size());
        lines.append(static_cast<std::size_t>(event.depth), ' ');
        switch (event.kind) {
            case EventKind::Call: AppendNamed("<func name=\"", event, "object=\""); break;
            case EventKind::Argument:
                type = event.text;
                AppendNamed("<arg name=\"", event, "type=\"");
                break;
            case EventKind::Value:
                AppendElement("<argval value=\"", aliases.Value(event.text, type), event.hasChildren);
                break;
            case EventKind::Info:
                AppendElement("<info value=\"", RedactMessage(event, aliases), event.hasChildren);
                break;
            case EventKind::Warning:
                AppendElement("<warning value=\"", RedactMessage(event, aliases), event.hasChildren);
                break;
            case EventKind::Error:
                AppendElement("<error value=\"", RedactMessage(event, aliases), event.hasChildren);
                break;
            case EventKind::Other: AppendElement("<other value=\"", aliases.Text(event.text), event.hasChildren); break;
        }
        out << lines;
        lines.clear();
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
            AppendEnds(ends.size());
            lines += "</zeltlogdocument>\r\n";
        } else {
            // What is left open includes the root, which has no end here.
            const std::size_t open = leftOpen ? leftOpen - 1 : 0;
            AppendEnds(ends.size() - std::min(open, ends.size()));
        }
        out << lines;
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
    void AppendNamed(std::string_view opening, const LogEvent& event, std::string_view other)
    {
        lines += opening;
        AppendStandardName(lines, event.name, aliases);
        lines += event.inward ? "\" direc=\"in\" " : "\" direc=\"out\" ";
        lines += other;
        if (event.kind == EventKind::Call) {
            AppendEscaped(lines, aliases.Name(event.text));
        } else {
            AppendStandardName(lines, event.text, aliases);
        }
        lines += "\">\r\n";
    }
    void AppendElement(std::string_view opening, const std::string& value, bool parent)
    {
        lines += opening;
        AppendEscaped(lines, value);
        lines += parent ? "\">\r\n" : "\"/>\r\n";
    }
    void AppendEnds(std::size_t count)
    {
        for (std::size_t i = 0; i < count; ++i) {
            if (!ends[i].name) continue;
            lines.append(static_cast<std::size_t>(ends[i].depth), ' ');
            lines += "</";
            lines += ends[i].name;
            lines += ">\r\n";
        }
        ends.clear();
    }

    const LogAliases aliases;
    Output& out;
    std::string lines;  // the next ones, put together; their memory is used again
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
