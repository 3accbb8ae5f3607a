// log why: tells the story of each call that failed or never returned. A failure inside of a call that also failed belongs to
// the story of the outer call. A failure that repeats is told once, and counted. Memory is bounded: it depends on how many
// different methods, materials and failures there are, up to a limit, and on how deep calls nest.
#include <algorithm>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include "ctl/log/conduct.h"
#include "ctl/log/failure_story.h"
#include "ctl/log/log_commands.h"
#include "ctl/log/log_paths.h"
#include "ctl/log/rules/derivative_rule.h"
#include "ctl/log/rules/equilibrium_rules.h"
#include "ctl/log/rules/parameter_rules.h"

namespace zelt::ctl {
namespace {

constexpr std::size_t kMostAsked = 6, kMostFailedAsked = 4, kMostAskedThen = 3;
constexpr std::size_t kMostBroken = 5, kMostMessages = 4, kMostAgain = 8;
constexpr std::size_t kMostStories = 500, kMostSuccesses = 1000, kMostInside = 50;

class StoryTeller final : public LogSink {
public:
    StoryTeller()
        : report([this](int line, const char* rule, const std::string& text) { Broken(line, rule, text); }),
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
        Settle();
        const std::string said = std::exchange(detail, {});
        if (SaysMore(event)) detail = event.text;
        texts.Begin(event);
        summaries.Begin(event);
        equilibria.Begin(event);
        derivatives.Begin(event);
        if (event.kind == EventKind::Call) {
            open.emplace_back();
            life.Begin(event);
            properties.Begin(event);
            versions.Begin(event);
            parameters.Begin(event);
            return;
        }
        if (open.empty()) return;
        const MessageKind kind = KindOfMessage(event);
        if (kind == MessageKind::Failure) {
            AddMessage({event.line, std::string(event.text)});
            if (!said.empty()) AddMessage({event.line, said});
        } else if (kind == MessageKind::Violation) {
            Broken(event.line, "violation", std::string(event.text));
        } else if (IsSuppression(event)) {
            detail = said;
        }
    }
    void End(EventKind kind, int) override
    {
        // Settle handles the end of the call later: only LeftOpen, which comes after End, tells whether the call ended, or just
        // the log.
        if (kind == EventKind::Call) ++ended;
    }
    void LeftOpen(int line) override { leftOpen.push_back(line); }

    int Finish(Output& out)
    {
        Settle();
        for (std::size_t i = 0; i < stories.size(); ++i) {
            if (i) out << '\n';
            Tell(stories[i], static_cast<long long>(i) + 1, static_cast<long long>(stories.size()), out);
        }
        if (untold) {
            out << "\nand " << untold << (untold == 1 ? " other failure" : " other failures")
                << "; log errors lists all\n";
        }
        if (stories.empty()) out << "No call failed.\n";
        return stories.empty() ? kFine : kFinding;
    }

private:
    // What is gathered about an open call.
    struct Gathered {
        std::vector<LineText> messages, broken;
        Latest asked = {kMostAsked, kMostFailedAsked};
        std::vector<std::string> materials;  // the last material that was called during it, if any
        std::vector<FailureStory> failures;  // inside of it
    };

    void AddMessage(LineText message)
    {
        std::vector<LineText>& messages = open.back().messages;
        if (messages.size() < kMostMessages) messages.push_back(std::move(message));
    }
    void Broken(int line, const char* rule, const std::string& text)
    {
        if (open.empty() || open.back().broken.size() == kMostBroken) return;
        open.back().broken.push_back({line, std::string(rule) + ": " + text});
    }

    void Settle()
    {
        for (; ended > 0; --ended) EndCall();
    }

    void EndCall()
    {
        const CallText& call = texts.open.back();
        const bool unfinished = std::find(leftOpen.begin(), leftOpen.end(), call.line) != leftOpen.end();
        const CallSummary& summary = summaries.Close();
        life.End(summary);
        values.End(summary);
        properties.End(summary, open.size() == 1);
        parameters.End(summary);
        const auto depth = static_cast<int>(open.size()) - 1;
        equilibria.EndCall(depth);
        derivatives.EndCall(depth);
        materials.Take(call);

        Gathered gathered = std::move(open.back());
        std::vector<FailureStory> failures = std::move(gathered.failures);
        if (call.result.failed || unfinished) {
            failures.clear();
            failures.push_back(StoryOf(gathered, unfinished));
        } else {
            Remember(gathered);
        }
        open.pop_back();
        if (open.empty()) {
            for (FailureStory& story : failures) Keep(std::move(story));
        } else {
            PassOn(call, unfinished, gathered, std::move(failures));
        }
        texts.Close();
    }

    // Passes on what the story of the call around this one may need.
    void PassOn(const CallText& call, bool unfinished, const Gathered& gathered, std::vector<FailureStory> failures)
    {
        Gathered& outer = open.back();
        outer.asked.Add({call.line, InOneLine(call, unfinished)}, call.result.failed || unfinished);
        outer.asked.Append(gathered.asked);
        for (const LineText& rule : gathered.broken) {
            if (outer.broken.size() < kMostBroken) outer.broken.push_back(rule);
        }
        if (MaterialStates::IsMaterial(call.Interface()))
            outer.materials.assign(1, call.object);
        else if (!gathered.materials.empty())
            outer.materials = gathered.materials;
        for (FailureStory& story : failures) {
            if (outer.failures.size() < kMostInside) {
                outer.failures.push_back(std::move(story));
            } else {
                ++untold;
            }
        }
    }

    FailureStory StoryOf(const Gathered& gathered, bool unfinished)
    {
        FailureStory story;
        story.call = texts.open.back();
        for (std::size_t i = 0; i + 1 < texts.open.size(); ++i) {
            const CallText& outer = texts.open[i];
            story.around.push_back({outer.line, Headline(outer)});
        }
        story.messages = gathered.messages;
        story.broken = gathered.broken;
        story.asked = gathered.asked.Lines();
        story.askedTotal = gathered.asked.Total();
        story.isUnfinished = unfinished;
        const std::string_view interfaceName = story.call.Interface();
        // A calculation that failed before it called its material was probably about the material that was called last.
        const bool isCalculation = story.call.Method().starts_with("Calc");
        story.material = MaterialStates::IsMaterial(interfaceName) ? story.call.object
                         : !gathered.materials.empty()             ? gathered.materials.back()
                         : isCalculation                           ? materials.Latest()
                                                                   : "";
        story.state = materials.StateOf(story.material);
        if (const auto found = successes.find(KeyOf(story.call)); found != successes.end()) {
            story.hadSuccess = true;
            story.success = found->second;
        }
        return story;
    }

    static std::pair<std::string, std::string> KeyOf(const CallText& call) { return {call.name, call.object}; }

    void Remember(const Gathered& gathered)
    {
        const CallText& call = texts.open.back();
        const auto key = KeyOf(call);
        if (successes.size() == kMostSuccesses && !successes.contains(key)) return;
        std::vector<LineText> asked = gathered.asked.Lines();
        if (asked.size() > kMostAskedThen) asked.erase(asked.begin(), asked.end() - kMostAskedThen);
        successes[key] = {call, std::move(asked), gathered.asked.Total()};
    }

    void Keep(FailureStory story)
    {
        std::string what = story.call.name;
        for (const LineText& message : story.messages) what += '\n' + message.text;
        const auto [found, isNew] = numbers.emplace(what, stories.size());
        if (!isNew) {
            FailureStory& first = stories[found->second];
            ++first.times;
            if (first.again.size() < kMostAgain) first.again.push_back(story.call.line);
        } else if (stories.size() == kMostStories) {
            numbers.erase(found);
            ++untold;
        } else {
            stories.push_back(std::move(story));
        }
    }

    const ReportFinding report;
    LifeRules life;
    ValueRules values;
    PropertyRules properties;
    VersionRules versions;
    ParameterRules parameters;
    EquilibriumRules equilibria;
    DerivativeRule derivatives;
    CallTexts texts;
    CallSummarizer summaries;
    MaterialStates materials;
    std::vector<Gathered> open;
    std::string detail;
    int ended = 0;  // how many calls have ended since the latest event began
    std::vector<int> leftOpen;

    std::map<std::pair<std::string, std::string>, Success> successes;
    std::vector<FailureStory> stories;
    std::map<std::string, std::size_t> numbers;
    long long untold = 0;
};

}  // namespace

int ExplainFailures(const Arguments&, const std::string& log, Streams& streams)
{
    StoryTeller teller;
    const bool complete = ReadEvents(log, teller, streams.messages);
    return CodeOf(complete, teller.Finish(streams.data));
}

}  // namespace zelt::ctl
