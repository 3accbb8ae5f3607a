#include "ctl/log/failure_story.h"

#include <algorithm>

#include "ctl/log/text/names.h"

namespace zelt::ctl {
namespace {

constexpr std::size_t kLongestLine = 90;
// With these limits a story fits a screen.
constexpr std::size_t kMostInputs = 8, kMostProperties = 8, kMostAround = 4;

void WriteLine(int line, std::string_view text, Output& out)
{
    out.Number(line, 8).Fill(2) << Shortened(text, kLongestLine) << '\n';
}

void WriteTitle(std::string_view title, Output& out) { out.Fill(2) << Style::Faint << title << Style::Plain << '\n'; }

// For a text that must not be cut.
void WriteWhole(const LineText& line, Output& out) { out.Number(line.line, 8).Fill(2) << line.text << '\n'; }

void WriteNote(std::string_view text, Output& out) { out.Fill(10) << text << '\n'; }

std::string Count(long long number, const char* one, const char* many)
{
    return std::to_string(number) + ' ' + (number == 1 ? one : many);
}

// The inputs of `then` that differ from those of `now`.
std::string OtherInputs(const CallText& then, const CallText& now)
{
    std::string text;
    for (const ArgumentText& argument : then.arguments) {
        if (!argument.inward || argument.IsPointer()) continue;
        const ArgumentText* same = now.Find(argument.name);
        if (same && same->Text() == argument.Text()) continue;
        text.append(text.empty() ? "" : ", ").append(argument.name).append(" = ").append(argument.Text());
    }
    return text;
}

void TellAsked(const std::vector<LineText>& asked, long long total, Output& out)
{
    const long long leftOut = total - static_cast<long long>(asked.size());
    if (leftOut > 0) WriteNote(Count(leftOut, "call", "calls") + " not shown", out);
    for (const LineText& one : asked) WriteLine(one.line, one.text, out);
}

// Whether this is one of the values that a calculation begins with.
bool IsBasic(const KnownProperty& property)
{
    constexpr std::string_view kBasic[] = {"temperature", "pressure", "fraction", "phaseFraction", "phases"};
    const std::string_view name = std::string_view(property.name).substr(0, property.name.find_first_of(" ,"));
    return IsOneOf(name, kBasic);
}

// Shows the latest basic values and, if there is room, the latest of the others.
void TellState(const std::vector<KnownProperty>& state, Output& out)
{
    std::vector<const KnownProperty*> chosen;
    for (const bool basic : {true, false}) {
        for (std::size_t i = state.size(); i-- > 0;) {
            if (IsBasic(state[i]) == basic && chosen.size() < kMostProperties) chosen.push_back(&state[i]);
        }
    }
    std::sort(chosen.begin(), chosen.end());  // in the order of the vector
    const auto leftOut = static_cast<long long>(state.size() - chosen.size());
    if (leftOut > 0) WriteNote(Count(leftOut, "other value", "other values") + " not shown", out);
    for (const KnownProperty* property : chosen)
        WriteLine(property->line, property->name + " = " + property->text, out);
}

void TellSuccess(const FailureStory& story, Output& out)
{
    WriteTitle("When it last succeeded before", out);
    if (!story.hadSuccess) {
        WriteNote("never in this log", out);
        return;
    }
    const Success& success = story.success;
    const std::string other = OtherInputs(success.call, story.call);
    WriteLine(success.call.line, other.empty() ? "with the same inputs" : "with " + other, out);
    TellAsked(success.asked, success.askedTotal, out);
    const std::string results = success.call.List(false);
    if (!results.empty()) WriteNote("it returned " + Shortened(results, kLongestLine - 12), out);
}

}  // namespace

void Latest::Add(LineText text, bool isImportant)
{
    ++total;
    if (isImportant && important.size() < mostImportant) {
        important.push_back(std::move(text));
        return;
    }
    lines.push_back(std::move(text));
    if (lines.size() > most) lines.erase(lines.begin());
}

void Latest::Append(const Latest& other)
{
    total += other.total - static_cast<long long>(other.lines.size() + other.important.size());
    for (const LineText& text : other.important) Add(text, true);
    for (const LineText& text : other.lines) Add(text, false);
}

std::vector<LineText> Latest::Lines() const
{
    std::vector<LineText> all = important;
    all.insert(all.end(), lines.begin(), lines.end());
    std::stable_sort(all.begin(), all.end(), [](const LineText& a, const LineText& b) { return a.line < b.line; });
    return all;
}

std::string InOneLine(const CallText& call, bool isUnfinished)
{
    std::string text(call.inward ? "> " : "< ");
    text.append(call.object).append(": ").append(call.Method());
    const std::string_view method = call.Method();
    if (method.ends_with("Prop") && call.Find("property")) {
        text.append(" ").append(PropertyName(call));
        const ArgumentText* values = call.Find("values");
        if (!values) values = call.Find("results");
        if (values && !call.result.failed) text.append(" = ").append(values->Text());
    } else {
        const std::string inputs = call.List(true), outputs = call.List(false);
        if (!inputs.empty()) text.append(" ").append(inputs);
        if (!outputs.empty() && !call.result.failed) text.append(" -> ").append(outputs);
    }
    // If the line is too long, the text before this end is cut, because the end matters most.
    const std::string_view end = isUnfinished ? " (no answer)" : call.result.failed ? " (failed)" : "";
    return (end.empty() ? text : Shortened(text, kLongestLine - end.size())).append(end);
}

void Tell(const FailureStory& story, long long number, long long count, Output& out)
{
    const CallText& call = story.call;
    out << Style::Heading << "Failure " << number << " of " << count << ": " << call.name << " (" << call.object << ')'
        << Style::Plain << '\n';
    out << Style::Bad;
    for (const LineText& message : story.messages) WriteWhole(message, out);
    out << Style::Plain;
    if (story.isUnfinished) WriteNote("The call never returned: the log is cut off during it.", out);
    if (story.times > 1) {
        std::string again = "The same failure occurred " + Count(story.times - 1, "more time", "more times") + ": line";
        again += story.again.size() > 1 ? "s " : " ";
        for (std::size_t i = 0; i < story.again.size(); ++i)
            again.append(i ? ", " : "").append(std::to_string(story.again[i]));
        if (story.times - 1 > static_cast<long long>(story.again.size())) again += " ...";
        WriteNote(again, out);
    }

    WriteTitle("The call", out);
    const std::size_t skipped = story.around.size() > kMostAround ? story.around.size() - kMostAround : 0;
    for (std::size_t i = skipped; i < story.around.size(); ++i) {
        WriteLine(story.around[i].line, story.around[i].text, out);
    }
    WriteLine(call.line, Headline(call), out);
    std::size_t shown = 0;
    for (const ArgumentText& argument : call.arguments) {
        if (!argument.inward) continue;
        if (++shown <= kMostInputs) WriteLine(argument.line, "    " + argument.name + " = " + argument.Text(), out);
    }
    if (shown > kMostInputs) WriteNote("    ... (" + std::to_string(shown) + " inputs)", out);

    if (!story.asked.empty()) {
        WriteTitle(call.inward ? "What it asked and set before it failed" : "What happened during it", out);
        TellAsked(story.asked, story.askedTotal, out);
    }
    if (!story.state.empty()) {
        WriteTitle("What the log last says about " + story.material, out);
        TellState(story.state, out);
    }
    TellSuccess(story, out);
    if (!story.broken.empty()) {
        WriteTitle("Rules that were broken during it", out);
        for (const LineText& rule : story.broken) WriteWhole(rule, out);
    }
}

}  // namespace zelt::ctl
