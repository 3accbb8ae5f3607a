// log redact: writes the log again, still in the format of a log, with names and values replaced. A log that is cut off stays
// cut off at the same place.
#include <algorithm>
#include <string>
#include <vector>

#include "ctl/log/call_results.h"
#include "ctl/log/log_commands.h"
#include "ctl/log/log_events.h"
#include "ctl/log/redaction/argument_meaning.h"
#include "ctl/log/redaction/compound_names.h"
#include "ctl/log/redaction/fraction_redaction.h"
#include "ctl/log/redaction/held_values.h"
#include "ctl/log/redaction/message_redaction.h"
#include "ctl/log/redaction/standard_name.h"
#include "ctl/log/text/text_memo.h"
#include "log/vocabulary/markup.h"

namespace zelt::ctl {
namespace {

std::size_t FirstMarkup(std::string_view text)
{
    const auto isMarkup = [](char c) { return MarkupEntity(c) != nullptr; };
    return static_cast<std::size_t>(std::find_if(text.begin(), text.end(), isMarkup) - text.begin());
}

std::string Escaped(std::string_view text)
{
    std::string escaped;
    while (true) {
        const std::size_t plain = FirstMarkup(text);
        escaped.append(text.substr(0, plain));
        if (plain == text.size()) return escaped;
        escaped += MarkupEntity(text[plain]);
        text.remove_prefix(plain + 1);
    }
}

// Most values are numbers, which contain nothing to escape.
std::string EscapedValue(std::string&& value)
{
    return FirstMarkup(value) == value.size() ? std::move(value) : Escaped(value);
}

bool IsNumber(std::string_view value)
{
    return !value.empty() && value.find_first_not_of("0123456789+-.e") == std::string_view::npos;
}

class Redactor final : public LogSink {
public:
    Redactor(bool keepsErrors, Output& out) : keepsErrors(keepsErrors), out(out)
    {
        out << "<?xml version=\"1.0\" standalone=\"yes\"?>\r\n<zeltlogdocument>\r\n";
    }

    void Begin(const LogEvent& event) override
    {
        AppendEnds(ends.size());
        if (!held.empty() && event.kind <= EventKind::Argument) FillHeld();
        meanings.Begin(event);
        heldValues.Begin(event);
        AppendBlanks(event.depth);
        switch (event.kind) {
            case EventKind::Call: AppendNamed("<func name=\"", event, "object=\""); break;
            case EventKind::Argument:
                type = event.text;
                flowPlace = 0;
                AppendNamed("<arg name=\"", event, "type=\"");
                break;
            case EventKind::Value: AppendValue(event); break;
            case EventKind::Info: AppendElement("<info value=\"", Message(event, infos), event.hasChildren); break;
            case EventKind::Warning:
                AppendElement("<warning value=\"", Message(event, warnings), event.hasChildren);
                break;
            case EventKind::Error: AppendElement("<error value=\"", Message(event, errors), event.hasChildren); break;
            case EventKind::Other:
                AppendElement("<other value=\"", Escaped(aliases.Text(event.text)), event.hasChildren);
                break;
        }
        if (lines.size() >= kPiece && held.empty() && (!heldValues.AreHeld() || lines.size() >= kMostHeld)) {
            heldValues.Fill(lines, aliases);
            out << lines;
            lines.clear();
        }
        parents.push_back(event.hasChildren);
    }
    void End(EventKind kind, int depth) override
    {
        if (kind <= EventKind::Argument) FillHeld();
        if (kind == EventKind::Call) {
            meanings.EndCall();
            if (heldValues.EndCall(depth)) heldValues.Fill(lines, aliases);
        }
        const std::string_view tag = EndTag(kind, parents.back());
        parents.pop_back();
        // The next Begin or Finish writes the end, because only Finish knows which elements a cut-off log leaves open. These
        // get no end.
        ends.push_back({tag, depth});
    }
    void LeftOpen(int) override { ++leftOpen; }

    void Finish(bool complete)
    {
        heldValues.Fill(lines, aliases);
        if (complete) {
            AppendEnds(ends.size());
            lines += "</zeltlogdocument>\r\n";
        } else {
            // The root counts as left open, too, but has no entry in `ends`.
            const std::size_t open = leftOpen ? leftOpen - 1 : 0;
            AppendEnds(ends.size() - std::min(open, ends.size()));
        }
        out << lines;
    }

private:
    struct PendingEnd {
        std::string_view tag;  // empty for an empty element
        int depth;
    };

    static std::string_view EndTag(EventKind kind, bool parent)
    {
        switch (kind) {
            case EventKind::Call: return "</func>\r\n";
            case EventKind::Argument: return "</arg>\r\n";
            case EventKind::Value: return parent ? "</argval>\r\n" : std::string_view();
            case EventKind::Info: return parent ? "</info>\r\n" : std::string_view();
            case EventKind::Warning: return parent ? "</warning>\r\n" : std::string_view();
            case EventKind::Error: return parent ? "</error>\r\n" : std::string_view();
            case EventKind::Other: break;
        }
        return parent ? "</other>\r\n" : std::string_view();
    }
    const std::string& StandardName(std::string_view name)
    {
        return names.Of(name, [this](std::string_view text) {
            return IsStandardName(text) ? Escaped(text) : Escaped(aliases.Text(text));
        });
    }
    const std::string& Object(std::string_view name)
    {
        return objects.Of(name, [this](std::string_view text) { return Escaped(aliases.Name(text)); });
    }
    const std::string& Message(const LogEvent& event, TextMemo& known)
    {
        if (keepsErrors && (SaysMore(event) || KindOfMessage(event) == MessageKind::Failure)) {
            return kept = Escaped(event.text);
        }
        return known.Of(event.text, [&](std::string_view) { return Escaped(RedactMessage(event, aliases)); });
    }
    void AppendValue(const LogEvent& event)
    {
        const ArgumentMeaning meaning = meanings.Meaning();
        const bool parent = event.hasChildren;
        // FillHeld inserts the fractions when all of them are known.
        if (meaning == ArgumentMeaning::Fractions && !parent && held.size() < kMostFractions) {
            held.emplace_back(event.text);
            places.push_back(lines.size() + kValue.size());
            AppendElement(kValue, "", false);
        } else if (meanings.AreHeld() && !parent) {
            const std::size_t place = lines.size() + kValue.size();
            AppendElement(kValue, "", false);
            heldValues.Take({place, std::string(event.text), std::string(meanings.Object()),
                             std::string(meanings.Phase()), meaning == ArgumentMeaning::TotalFlow},
                            lines, aliases);
        } else {
            AppendElement(kValue, Value(event.text, meaning), parent);
        }
    }
    const std::string& Value(std::string_view value, ArgumentMeaning meaning)
    {
        const bool isText = value.starts_with('"');
        switch (meaning) {
            case ArgumentMeaning::Count:
                if (!isText && IsNumber(value)) return kept = value;
                break;
            case ArgumentMeaning::Ordered:
                if (!isText) return Ordered(value);
                break;
            case ArgumentMeaning::Flows:
                if (!isText && meanings.AreAll()) return kept = Escaped(RedactFlow(value, flowPlace++, aliases));
                break;
            case ArgumentMeaning::Compounds:
                if (isText) return compounds.NameOf(value, aliases);
                break;
            case ArgumentMeaning::ErrorText:
                if (keepsErrors) return kept = Escaped(value);
                break;
            default: break;
        }
        return Value(value);
    }
    const std::string& Ordered(std::string_view value)
    {
        // The key includes the type, because whether a number counts as whole depends on it, too.
        (((key = meanings.Order()) += '|') += type) += '|';
        const std::size_t end = key.size();
        return ordered.Of(key += value, [&](std::string_view text) {
            return Escaped(aliases.Ordered(text.substr(end), type, meanings.Order()));
        });
    }
    // A memo keeps the aliases of texts, which recur and do not depend on the type. The aliases of numbers depend on it, and
    // numbers seldom recur.
    const std::string& Value(std::string_view value)
    {
        if (value.starts_with('"')) {
            return texts.Of(value, [this](std::string_view text) { return Escaped(aliases.Value(text, {})); });
        }
        return kept = EscapedValue(aliases.Value(value, type));
    }
    void AppendNamed(std::string_view opening, const LogEvent& event, std::string_view other)
    {
        auto& known = named[event.kind == EventKind::Call][event.inward];
        lines += known.Of(event.name, event.text, [&] {
            std::string line(opening);
            line += StandardName(event.name);
            line += event.inward ? "\" direc=\"in\" " : "\" direc=\"out\" ";
            line += other;
            line += event.kind == EventKind::Call ? Object(event.text) : StandardName(event.text);
            return line += "\">\r\n";
        });
    }
    void AppendElement(std::string_view opening, const std::string& value, bool parent)
    {
        lines += opening;
        lines += value;
        lines += parent ? std::string_view("\">\r\n") : std::string_view("\"/>\r\n");
    }
    // Faster than appending a number of characters.
    void AppendBlanks(int count)
    {
        constexpr std::string_view kBlanks = "                                ";
        for (auto left = static_cast<std::size_t>(count); left > 0;) {
            const std::size_t some = std::min(left, kBlanks.size());
            lines.append(kBlanks.data(), some);
            left -= some;
        }
    }
    // Redacts the fractions and inserts them at their places.
    void FillHeld()
    {
        if (held.empty()) return;
        const std::vector<std::string> redacted = RedactFractions(held, meanings.AreAll(), aliases);
        const std::size_t first = places[0];
        behind.assign(lines, first);
        lines.resize(first);
        std::size_t done = 0;
        for (std::size_t i = 0; i < redacted.size(); ++i) {
            lines.append(behind, done, places[i] - first - done).append(Escaped(redacted[i]));
            done = places[i] - first;
        }
        lines.append(behind, done);
        held.clear();
        places.clear();
    }
    void AppendEnds(std::size_t count)
    {
        for (std::size_t i = 0; i < count; ++i) {
            if (ends[i].tag.empty()) continue;
            AppendBlanks(ends[i].depth);
            lines += ends[i].tag;
        }
        ends.clear();
    }

    const LogAliases aliases;
    const bool keepsErrors;
    Output& out;
    TextMemo names, objects, texts, infos, warnings, errors, ordered;
    Memo<std::string> named[2][2];  // lines of arguments and of calls, by their direction
    std::string key;                // the latest key in `ordered`
    std::string kept;               // the latest value or message, if it is in no memo
    static constexpr std::size_t kPiece = 4096;
    std::string lines;   // the lines to write next; the memory is reused
    std::string behind;  // what comes after the place of the first fraction
    static constexpr std::string_view kValue = "<argval value=\"";
    std::string type;
    std::size_t flowPlace = 0;
    ArgumentMeanings meanings;
    CompoundNames compounds;
    HeldValues heldValues;
    static constexpr std::size_t kMostHeld = 4 << 20;
    std::vector<std::string> held;    // fractions that are not in `lines` yet
    std::vector<std::size_t> places;  // their places in `lines`
    std::vector<char> parents;        // whether the open elements have children
    std::vector<PendingEnd> ends;
    std::size_t leftOpen = 0;
};

}  // namespace

int RedactLog(const Arguments& arguments, const std::string& log, Streams& streams)
{
    Redactor redactor(arguments.Has("--keep-errors"), streams.data);
    const bool complete = ReadEvents(log, redactor, streams.messages);
    redactor.Finish(complete);
    return CodeOf(complete, kFine);
}

}  // namespace zelt::ctl
