// log check: tells whether a log is complete, and which rules the simulator, the component, or both have broken.
#include <algorithm>
#include <iterator>
#include <set>
#include <string>
#include <vector>

#include "ctl/json_writer.h"
#include "ctl/log/conduct.h"
#include "ctl/log/findings.h"
#include "ctl/log/log_commands.h"
#include "ctl/log/rules/derivative_rule.h"
#include "ctl/log/rules/equilibrium_rules.h"
#include "ctl/log/rules/parameter_rules.h"
#include "ctl/log/text/names.h"
#include "ctl/similar.h"

namespace zelt::ctl {
namespace {

using Rules = std::set<std::string, std::less<>>;

// The rules between the commas of `list`. Throws UsageError for an unknown one.
Rules RulesOf(const std::string& list)
{
    Rules rules;
    for (std::size_t begin = 0; begin <= list.size();) {
        const std::size_t end = std::min(list.find(',', begin), list.size());
        const std::string rule = list.substr(begin, end - begin);
        if (!IsOneOf(rule, kCheckRules)) {
            std::string known;
            for (const std::string_view name : kCheckRules) known.append(known.empty() ? "" : ", ").append(name);
            const std::vector<std::string_view> names(std::begin(kCheckRules), std::end(kCheckRules));
            const std::string meant = DidYouMean(MostSimilar(rule, names));
            throw UsageError("--ignore has no rule \"" + rule + "\"" +
                             (meant.empty() ? "; the rules are " + known : meant));
        }
        rules.insert(rule);
        begin = end + 1;
    }
    return rules;
}

class Reporter {
public:
    Reporter(const Arguments& arguments, Output& out)
        : asJson(arguments.Has("--json")), withQueries(arguments.Has("--queries")), out(out), json(out)
    {
        if (const auto list = arguments.Value("--ignore")) ignored = RulesOf(*list);
        if (asJson) json.BeginArray();
    }

    void Report(int line, const char* rule, const std::string& text)
    {
        if (ignored.contains(std::string_view(rule))) return;
        ++found;
        Write(line, rule, text);
    }
    bool Ignores(std::string_view rule) const { return ignored.contains(rule); }
    // A query is not a finding.
    void Query(int line, const std::string& text)
    {
        if (withQueries) {
            Write(line, "query", text);
        } else {
            ++hidden;
        }
    }
    int Finish(LeftOut& leftOut)
    {
        leftOut.queries += hidden;
        if (asJson) {
            json.EndArray();
            out << '\n';
        }
        return found ? kFinding : kFine;
    }

private:
    void Write(int line, const char* rule, const std::string& text)
    {
        if (asJson) {
            json.NewLine().BeginObject().Member("line", line).Member("rule", rule).Member("text", text).EndObject();
        } else {
            out << line << ": " << Style::Warning << rule << Style::Plain << ": " << text << '\n';
        }
    }

    const bool asJson, withQueries;
    Rules ignored;
    Output& out;
    JsonWriter json;
    long long found = 0, hidden = 0;
};

class Checker final : public LogSink {
public:
    using ReportQuery = std::function<void(int line, const std::string& text)>;

    Checker(const ReportFinding& report, const ReportQuery& reportQuery)
        : report(report),
          reportQuery(reportQuery),
          life(report),
          values(report),
          properties(report),
          versions(report),
          parameters(report),
          equilibria(report),
          derivatives(report)
    {}

    void Begin(const LogEvent& event) override
    {
        CheckPlace(event);
        equilibria.Begin(event);
        derivatives.Begin(event);
        if (event.kind == EventKind::Call) {
            life.Begin(event);
            properties.Begin(event);
            versions.Begin(event);
            parameters.Begin(event);
            latest.ShrinkTo(static_cast<std::size_t>(event.depth));
            while (latest.Size() < static_cast<std::size_t>(event.depth)) latest.Push() = {};
            OpenCall& call = latest.Push();
            call.line = event.line;
            call.name = event.name;
            call.object = event.text;
        } else {
            latest.ShrinkTo(static_cast<std::size_t>(event.depth));
            if (event.kind >= EventKind::Info) CheckMessage(event);
        }
        kinds.resize(static_cast<std::size_t>(event.depth));
        kinds.push_back(event.kind);
        calls.Begin(event);
    }
    void End(EventKind kind, int depth) override
    {
        if (kind != EventKind::Call) return;
        const CallSummary& call = calls.Close();
        life.End(call);
        values.End(call);
        properties.End(call, depth == 0);
        parameters.End(call);
        equilibria.EndCall(depth);
        derivatives.EndCall(depth);
    }
    void LeftOpen(int line) override
    {
        for (const OpenCall& call : latest) {
            if (call.line == line) report(line, "open-call", call.name + " (" + call.object + ") has no end");
        }
    }
    void ParseError(int line) override { damaged = damaged ? damaged : line; }

    void Finish(bool complete)
    {
        if (complete) {
            equilibria.Finish();
            life.Finish();
        } else {
            report(damaged, "damaged", "the log is cut off here, or damaged");
        }
    }

private:
    struct OpenCall {
        int line = 0;
        std::string name, object;
    };

    // A call belongs in the root or in a call, an argument in a call, a value in an argument or in a value; messages are empty.
    void CheckPlace(const LogEvent& event)
    {
        const bool top = event.depth == 0;
        const EventKind outer = top ? EventKind::Other : kinds[static_cast<std::size_t>(event.depth) - 1];
        const char* fault = nullptr;
        switch (event.kind) {
            case EventKind::Call:
                if (!top && outer != EventKind::Call) fault = "a call stands inside something that is not a call";
                break;
            case EventKind::Argument:
                if (outer != EventKind::Call) fault = "an argument stands outside of a call";
                break;
            case EventKind::Value:
                if (outer != EventKind::Argument && outer != EventKind::Value) {
                    fault = "a value stands outside of an argument";
                }
                break;
            case EventKind::Other: fault = "logs have no such element"; break;
            default:
                if (event.hasChildren) fault = "something stands inside a message";
        }
        if (fault) report(event.line, "structure", fault);
    }

    void CheckMessage(const LogEvent& event)
    {
        const MessageKind kind = KindOfMessage(event);
        if (kind < MessageKind::Query) return;
        const std::string where =
            calls.InCall() ? " (in " + calls.Innermost().name + " of \"" + calls.Innermost().object + "\")" : "";
        const std::string text(event.text);
        if (kind == MessageKind::Query) {
            reportQuery(event.line, text + where);
        } else if (kind == MessageKind::Warning &&
                   text.find(" is not released at final release of ") != std::string::npos) {
            report(event.line, "not-released", text);
        } else if (kind == MessageKind::Failure && text.starts_with("Uncaught ")) {
            report(event.line, "exception", text + where);
        } else if (kind == MessageKind::Violation) {
            const bool mix = text.find("wrong thermo version") != std::string::npos;
            report(event.line, mix ? "version-mix" : "violation", text + where);
        }
    }

    const ReportFinding& report;
    const ReportQuery& reportQuery;
    LifeRules life;
    ValueRules values;
    PropertyRules properties;
    VersionRules versions;
    ParameterRules parameters;
    EquilibriumRules equilibria;
    DerivativeRule derivatives;
    CallSummarizer calls;
    std::vector<EventKind> kinds;
    ReusedStack<OpenCall> latest;  // the calls around the latest event, whether they have ended or not
    int damaged = 0;
};

}  // namespace

int CheckLog(const Arguments& arguments, const std::string& log, Streams& streams)
{
    Reporter reporter(arguments, streams.data);
    const ReportFinding report = [&](int line, const char* rule, const std::string& text) {
        reporter.Report(line, rule, text);
    };
    const Checker::ReportQuery reportQuery = [&](int line, const std::string& text) { reporter.Query(line, text); };
    Checker checker(report, reportQuery);
    Output unseen;  // takes the message about a damaged log, which a finding repeats
    const bool complete = ReadEvents(log, checker, reporter.Ignores("damaged") ? streams.messages : unseen);
    checker.Finish(complete);
    return CodeOf(complete, reporter.Finish(streams.leftOut));
}

}  // namespace zelt::ctl
