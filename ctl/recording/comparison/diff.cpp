// recording diff: compares two recordings, call by call and, without a tolerance, to the bit. Each is read twice: first to find
// which calls belong together, then to compare them.
#include <algorithm>
#include <map>

#include "ctl/json_writer.h"
#include "ctl/log/comparison/log_alignment.h"
#include "ctl/log/comparison/log_sequence.h"
#include "ctl/recording/comparison/recording_steps.h"
#include "ctl/recording/recording_commands.h"
#include "recording/comparison.h"

namespace zelt::ctl {
namespace {

using recording::ArgumentRecord;

class DifferenceWriter {
public:
    DifferenceWriter(bool asJson, Output& out) : asJson(asJson), out(out), json(out)
    {
        if (asJson) json.BeginObject().Key("differences").BeginArray();
    }

    void Value(const RecordedStep& a, const RecordedStep& b, std::string_view key, std::string_view difference)
    {
        ++values;
        Note(a.call, true);
        if (asJson) {
            BeginJson("value", a, &a, &b).Member("value", key).Member("difference", difference).EndObject();
        } else {
            out << "~ " << Number(a) << ' ' << Number(b) << "  " << a.what << ' ' << key << ": " << difference << '\n';
        }
    }
    void Only(const RecordedStep& step, bool inA)
    {
        ++(inA ? onlyA : onlyB);
        Note(step.call, inA);
        if (asJson) {
            BeginJson(inA ? "only in a" : "only in b", step, inA ? &step : nullptr, inA ? nullptr : &step).EndObject();
        } else {
            out << (inA ? "- " : "+ ") << Number(step) << "  " << step.what << '\n';
        }
    }
    int Finish(bool complete, Output& messages)
    {
        const bool different = values + onlyA + onlyB > 0;
        if (!complete) {
            messages << "the recordings differ too much to be compared call by call between their common beginning and "
                        "end\n";
        }
        if (asJson) {
            json.EndArray().Member("values", values).Member("onlyInA", onlyA).Member("onlyInB", onlyB).EndObject();
            out << '\n';
        } else if (different) {
            out << "Values that differ: " << values << "; calls and messages of the first recording alone: " << onlyA
                << ", of the second alone: " << onlyB << "; the first difference is in call "
                << static_cast<long long>(first) << " of the " << (isFirstInA ? "first" : "second") << '\n';
        }
        return different ? kFinding : kFine;
    }

private:
    static long long Number(const RecordedStep& step) { return static_cast<long long>(step.call); }

    // The name of `named` is written. `a` and `b` are the step in the two recordings, null where it is missing.
    JsonWriter& BeginJson(const char* kind, const RecordedStep& named, const RecordedStep* a, const RecordedStep* b)
    {
        json.NewLine().BeginObject().Member("kind", kind);
        if (a) json.Member("callA", Number(*a));
        if (b) json.Member("callB", Number(*b));
        return json.Member("call", named.what);
    }
    void Note(std::uint64_t call, bool inA)
    {
        if (values + onlyA + onlyB > 1) return;
        first = call;
        isFirstInA = inA;
    }

    const bool asJson;
    Output& out;
    JsonWriter json;
    long long values = 0, onlyA = 0, onlyB = 0;
    std::uint64_t first = 0;
    bool isFirstInA = true;
};

std::string KeyOf(const ArgumentRecord& argument)
{
    return (argument.isOut ? "out " : "in ") + std::string(argument.name);
}

// How two arguments with the same key differ; nothing when they do not.
std::optional<std::string> DifferenceOf(const ArgumentRecord& a, const ArgumentRecord& b, double tolerance)
{
    if (a.kind != b.kind || a.type != b.type) return "another type of argument";
    if (auto difference = recording::Difference(a.value, b.value, tolerance)) return difference;
    if (WithoutNumber(a.shown) == WithoutNumber(b.shown)) return {};
    return '"' + std::string(b.shown) + "\" instead of \"" + std::string(a.shown) + '"';
}

void CompareArguments(const RecordedStep& a, const RecordedStep& b, double tolerance, DifferenceWriter& writer)
{
    std::size_t next = 0;
    const auto onlyInB = [&](std::size_t end) {
        for (; next < end; ++next) {
            writer.Value(a, b, KeyOf(b.arguments[next]), recording::Summary(b.arguments[next].value) + " added");
        }
    };
    for (const ArgumentRecord& argument : a.arguments) {
        const std::string key = KeyOf(argument);
        std::size_t found = next;
        while (found < b.arguments.size() && KeyOf(b.arguments[found]) != key) ++found;
        if (found == b.arguments.size()) {
            writer.Value(a, b, key, recording::Summary(argument.value) + " is missing");
            continue;
        }
        onlyInB(found);
        if (const auto difference = DifferenceOf(argument, b.arguments[next], tolerance)) {
            writer.Value(a, b, key, *difference);
        }
        ++next;
    }
    onlyInB(b.arguments.size());
}

void CompareMessages(const RecordedStep& a, const RecordedStep& b, DifferenceWriter& writer)
{
    const auto at = [](const RecordedStep& step, std::size_t place) {
        return place < step.messages.size() ? step.messages[place] : std::string("nothing");
    };
    for (std::size_t i = 0; i < std::max(a.messages.size(), b.messages.size()); ++i) {
        if (at(a, i) != at(b, i)) writer.Value(a, b, "message", at(b, i) + " instead of " + at(a, i));
    }
}

void CompareSteps(const RecordedStep& a, const RecordedStep& b, double tolerance, DifferenceWriter& writer)
{
    CompareArguments(a, b, tolerance, writer);
    CompareMessages(a, b, writer);
    if (a.result == b.result) return;
    const auto text = [](const RecordedStep& step) { return step.result.empty() ? "none" : step.result; };
    writer.Value(a, b, "result", text(b) + " instead of " + text(a));
}

std::vector<int> NumberedCall(const std::string& path, std::map<std::string, int>& numbers)
{
    RecordedSteps steps(path);
    std::vector<int> out;
    while (const RecordedStep* step = steps.Next()) {
        out.push_back(numbers.emplace(step->alike, static_cast<int>(numbers.size())).first->second);
    }
    return out;
}

}  // namespace

int CompareRecordings(const Arguments& arguments, Streams& streams)
{
    const double tolerance = arguments.Number("--tolerance").value_or(0);
    std::map<std::string, int> numbers;
    const std::vector<int> numberedA = NumberedCall(arguments.Operand(0), numbers);
    const std::vector<int> numberedB = NumberedCall(arguments.Operand(1), numbers);
    const Alignment alignment = Align(numberedA, numberedB);
    RecordedSteps a(arguments.Operand(0)), b(arguments.Operand(1));
    DifferenceWriter writer(arguments.Has("--json"), streams.data);
    // The pairs are in the order of both recordings.
    for (const AlignedPair& pair : alignment.pairs) {
        const RecordedStep* const stepA = pair.a ? a.Next() : nullptr;
        const RecordedStep* const stepB = pair.b ? b.Next() : nullptr;
        if (stepA && stepB) {
            CompareSteps(*stepA, *stepB, tolerance, writer);
        } else if (stepA || stepB) {
            writer.Only(stepA ? *stepA : *stepB, stepA != nullptr);
        }
    }
    // Reads both to their ends, which ReportEnd needs.
    while (a.Next()) continue;
    while (b.Next()) continue;
    const int code = writer.Finish(alignment.complete, streams.messages);
    const int endA = a.ReportEnd(streams.messages), endB = b.ReportEnd(streams.messages);
    return endA == kFine && endB == kFine ? code : kFinding;
}

}  // namespace zelt::ctl
