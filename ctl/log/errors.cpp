// log errors: lists errors and warnings with the calls that they concern, and what else the callee said about a failure. System
// queries and, except in JSON, repeated warnings are only counted unless the user asks for them.
#include <set>
#include <string>
#include <vector>

#include "ctl/json_writer.h"
#include "ctl/log/call_filter.h"
#include "ctl/log/call_text.h"
#include "ctl/log/log_commands.h"
#include "ctl/log/reused_stack.h"

namespace zelt::ctl {
namespace {

Style StyleOf(MessageKind kind)
{
    switch (kind) {
        case MessageKind::Failure:
        case MessageKind::Violation: return Style::Bad;
        case MessageKind::Query: return Style::Faint;
        default: return Style::Warning;
    }
}

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
    ErrorLister(const Arguments& arguments, Streams& streams)
        : filter(arguments),
          withWarnings(!arguments.Has("--no-warnings")),
          withQueries(arguments.Has("--queries")),
          asJson(arguments.Has("--json")),
          withAlike(asJson || arguments.Has("--all")),
          withContext(arguments.Has("--context")),
          out(streams.data),
          leftOut(streams.leftOut),
          json(out)
    {
        if (asJson) json.BeginArray();
    }

    void Begin(const LogEvent& event) override
    {
        if (withContext) texts.Begin(event);
        said.clear();
        if (!detail.empty()) {
            said = detail;
            if (!IsSuppression(event)) detail.clear();
        }
        if (SaysMore(event)) detail = event.text;
        if (event.kind == EventKind::Call) {
            OpenCall& call = open.Push();
            call.name = event.name;
            call.object = event.text;
            call.line = event.line;
            call.matches = filter.Matches(event);
            return;
        }
        const MessageKind kind = KindOfMessage(event);
        if (kind < MessageKind::Query || (kind <= MessageKind::Warning && !withWarnings)) return;
        if (open.IsEmpty() ? filter.Any() : !open.Top().matches) return;
        if (kind == MessageKind::Query && !withQueries) {
            ++leftOut.queries;
            return;
        }
        found += kind != MessageKind::Query;
        if (kind == MessageKind::Warning && !withAlike && !IsNew(event)) {
            ++leftOut.alike;
            return;
        }
        if (asJson) {
            WriteJson(event, kind);
        } else {
            WriteText(event, kind);
        }
    }
    void End(EventKind kind, int) override
    {
        if (kind != EventKind::Call) return;
        open.Pop();
        if (withContext) texts.Close();
    }
    // An argument between what the callee said and a failure shows that the two do not belong together.
    bool WantsArguments() const override { return withContext || !detail.empty(); }

    const CallFilter& Filter() const { return filter; }

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
        out << event.line << ": " << StyleOf(kind) << NameOf(kind) << Style::Plain;
        if (!open.IsEmpty()) out << " in " << open.Top().name << " (" << open.Top().object << ')';
        out << ": " << event.text << '\n';
        if (!said.empty()) out << "    " << said << '\n';
        if (withContext) WriteContext();
    }
    void WriteContext()
    {
        std::size_t indent = 2;
        for (const CallText& call : texts.open) {
            out.Number(call.line, 12).Fill(indent) << Headline(call) << '\n';
            indent += 2;
        }
        if (texts.open.empty()) return;
        for (const ArgumentText& argument : texts.open.back().arguments) {
            if (!argument.inward) continue;
            out.Number(argument.line, 12).Fill(indent) << argument.name << " = " << argument.Text() << '\n';
        }
    }
    // Whether this is the first such warning in this method; known sentences that differ only in objects or values are alike.
    bool IsNew(const LogEvent& event)
    {
        constexpr std::size_t kMost = 10'000;
        std::string what = open.IsEmpty() ? std::string() : open.Top().name;
        const auto found = SentenceOf(event);
        if (!found) {
            what.append(1, '\n').append(event.text);
        } else {
            what.append(1, '\n').append(std::to_string(static_cast<int>(found->sentence)));
            const std::string_view pattern = RowOf(found->sentence).text;
            if (pattern.find("%i") != std::string_view::npos) what.append(1, '\n').append(found->holes[1]);
        }
        return known.contains(what) ? false : known.size() == kMost || known.insert(what).second;
    }
    void WriteJson(const LogEvent& event, MessageKind kind)
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

    CallFilter filter;
    const bool withWarnings, withQueries, asJson, withAlike, withContext;
    Output& out;
    LeftOut& leftOut;
    JsonWriter json;
    ReusedStack<OpenCall> open;
    std::string detail;  // what the callee said last, kept until the next event that is not a suppression
    std::string said;    // the detail that belongs to the latest event
    long long found = 0;
    CallTexts texts;              // of the open calls, for their context
    std::set<std::string> known;  // the warnings that IsNew has seen, as texts
};

}  // namespace

int ListErrors(const Arguments& arguments, const std::string& log, Streams& streams)
{
    ErrorLister lister(arguments, streams);
    const bool complete = ReadEvents(log, lister, streams.messages);
    lister.Filter().ReportNone(log, streams.messages);
    return CodeOf(complete, lister.Finish());
}

}  // namespace zelt::ctl
