// log errors: every error and warning with the call that it concerns, and what the callee said of its failure besides.
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
        case MessageKind::Query: return "query";
        default: return "warning";
    }
}

class ErrorLister final : public LogSink {
public:
    ErrorLister(const Arguments& arguments, Output& out)
        : filter(arguments),
          withWarnings(!arguments.Has("--no-warnings")),
          withQueries(arguments.Has("--queries")),
          asJson(arguments.Has("--json")),
          out(out),
          json(out)
    {
        if (asJson) json.BeginArray();
    }

    void Begin(const LogEvent& event) override
    {
        const std::string said = detail;
        if (!IsSuppression(event)) detail = SaysMore(event) ? event.text : std::string_view();
        if (event.kind == EventKind::Call) {
            open.push_back({std::string(event.name), std::string(event.text), event.line, filter.Matches(event)});
            return;
        }
        const MessageKind kind = KindOfMessage(event);
        if (kind < MessageKind::Query || (kind <= MessageKind::Warning && !withWarnings)) return;
        if (open.empty() ? filter.Any() : !open.back().matches) return;
        if (kind == MessageKind::Query && !withQueries) {
            ++hidden;
            return;
        }
        found += kind != MessageKind::Query;
        if (asJson) {
            WriteJson(event, kind, said);
        } else {
            WriteText(event, kind, said);
        }
    }
    void End(EventKind kind, int) override
    {
        if (kind == EventKind::Call) open.pop_back();
    }
    // An argument parts what the callee said from the failure.
    bool WantsArguments() const override { return !detail.empty(); }

    int Finish()
    {
        if (asJson) {
            json.EndArray();
            out << '\n';
        } else if (hidden) {
            out << HiddenQueries(hidden) << '\n';
        }
        return found ? kFinding : kFine;
    }

private:
    struct OpenCall {
        std::string name, object;
        int line;
        bool matches;
    };

    void WriteText(const LogEvent& event, MessageKind kind, const std::string& said)
    {
        out << event.line << ": " << NameOf(kind);
        if (!open.empty()) out << " in " << open.back().name << " (" << open.back().object << ')';
        out << ": " << event.text << '\n';
        if (!said.empty()) out << "    " << said << '\n';
    }
    void WriteJson(const LogEvent& event, MessageKind kind, const std::string& said)
    {
        json.NewLine().BeginObject().Member("line", event.line).Member("kind", NameOf(kind));
        json.Member("text", event.text);
        if (!said.empty()) json.Member("detail", said);
        json.Key("calls").BeginArray();
        for (const OpenCall& call : open) {
            json.BeginObject().Member("line", call.line).Member("name", call.name).Member("object", call.object);
            json.EndObject();
        }
        json.EndArray().EndObject();
    }

    const CallFilter filter;
    const bool withWarnings, withQueries, asJson;
    Output& out;
    JsonWriter json;
    std::vector<OpenCall> open;
    std::string detail;  // what the callee said last, until the failure that it is about
    long long found = 0, hidden = 0;
};

}  // namespace

int ListErrors(const Arguments& arguments, Streams& streams)
{
    ErrorLister lister(arguments, streams.data);
    const bool complete = ReadEvents(arguments.Operand(0), lister, streams.messages);
    return CodeOf(complete, lister.Finish());
}

}  // namespace zelt::ctl
