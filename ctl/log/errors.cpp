// log errors: every error and warning with the call that it concerns.
#include <string>
#include <vector>

#include "ctl/json_writer.h"
#include "ctl/log/call_filter.h"
#include "ctl/log/log_commands.h"

namespace zelt::ctl {
namespace {

const char* NameOf(MessageKind kind)
{
    switch (kind) {
        case MessageKind::Failure: return "failure";
        case MessageKind::Violation: return "violation";
        default: return "warning";
    }
}

class ErrorLister final : public LogSink {
public:
    ErrorLister(const Arguments& arguments, Output& out)
        : filter(arguments),
          withWarnings(!arguments.Has("--no-warnings")),
          asJson(arguments.Has("--json")),
          out(out),
          json(out)
    {
        if (asJson) json.BeginArray();
    }

    void Begin(const LogEvent& event) override
    {
        if (event.kind == EventKind::Call) {
            open.push_back({std::string(event.name), std::string(event.text), event.line, filter.Matches(event)});
            return;
        }
        const MessageKind kind = KindOfMessage(event);
        if (kind < MessageKind::Warning || (kind == MessageKind::Warning && !withWarnings)) return;
        if (open.empty() ? filter.Any() : !open.back().matches) return;
        ++found;
        if (asJson) {
            WriteJson(event, kind);
        } else {
            WriteText(event, kind);
        }
    }
    void End(EventKind kind, int) override
    {
        if (kind == EventKind::Call) open.pop_back();
    }

    int Finish()
    {
        if (asJson) {
            json.EndArray();
            out << '\n';
        }
        return found ? kFinding : kFine;
    }

private:
    struct OpenCall {
        std::string name, object;
        int line;
        bool matches;
    };

    void WriteText(const LogEvent& event, MessageKind kind)
    {
        out << event.line << ": " << NameOf(kind);
        if (!open.empty()) out << " in " << open.back().name << " (" << open.back().object << ')';
        out << ": " << event.text << '\n';
    }
    void WriteJson(const LogEvent& event, MessageKind kind)
    {
        json.NewLine().BeginObject().Member("line", event.line).Member("kind", NameOf(kind));
        json.Member("text", event.text).Key("calls").BeginArray();
        for (const OpenCall& call : open) {
            json.BeginObject().Member("line", call.line).Member("name", call.name).Member("object", call.object);
            json.EndObject();
        }
        json.EndArray().EndObject();
    }

    const CallFilter filter;
    const bool withWarnings, asJson;
    Output& out;
    JsonWriter json;
    std::vector<OpenCall> open;
    long long found = 0;
};

}  // namespace

int ListErrors(const Arguments& arguments, Streams& streams)
{
    ErrorLister lister(arguments, streams.data);
    const bool complete = ReadEvents(arguments.Operand(0), lister, streams.messages);
    return CodeOf(complete, lister.Finish());
}

}  // namespace zelt::ctl
