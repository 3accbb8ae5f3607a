// log diff: compares two logs, call by call. Both are held in memory, because the counterpart of a call may be anywhere.
#include <cmath>
#include <map>
#include <string>
#include <vector>

#include "ctl/json_writer.h"
#include "ctl/log/comparison/log_alignment.h"
#include "ctl/log/log_commands.h"
#include "ctl/log/comparison/log_sequence.h"
#include "ctl/log/text/log_values.h"

namespace zelt::ctl {
namespace {

bool Equal(const std::string& a, const std::string& b, double tolerance)
{
    if (a == b) return true;
    const auto first = NumberOf(a), second = NumberOf(b);
    if (!first || !second) return false;
    return std::fabs(*first - *second) <= tolerance * std::fmax(std::fabs(*first), std::fabs(*second));
}

class DifferenceWriter {
public:
    DifferenceWriter(bool asJson, Output& out) : asJson(asJson), out(out), json(out)
    {
        if (asJson) json.BeginObject().Key("differences").BeginArray();
    }

    void Value(const SequenceStep& call, const SequenceValue* a, const SequenceValue* b)
    {
        ++values;
        // For a value that only the second log has, the line in the first log is that of the call.
        const int lineA = a ? a->line : call.line, lineB = b ? b->line : 0;
        Note(lineA, lineB);
        const std::string& key = a ? a->key : b->key;
        const std::string textA = a ? a->text : "(nothing)", textB = b ? b->text : "(nothing)";
        if (asJson) {
            BeginJson("value", a ? lineA : 0, lineB).Member("call", call.what).Member("value", key);
            if (a) json.Member("a", a->text);
            if (b) json.Member("b", b->text);
            json.EndObject();
        } else {
            out << "~ " << lineA << ' ' << lineB << "  " << call.what << ' ' << key << ": " << textA << " -> " << textB
                << '\n';
        }
    }
    void Only(const SequenceStep& step, bool inA)
    {
        ++(inA ? onlyA : onlyB);
        Note(inA ? step.line : 0, inA ? 0 : step.line);
        if (asJson) {
            BeginJson(inA ? "only in a" : "only in b", inA ? step.line : 0, inA ? 0 : step.line);
            json.Member("call", step.what).EndObject();
        } else {
            out << (inA ? "- " : "+ ") << step.line << "  " << step.what << '\n';
        }
    }

    int Finish(bool complete, Output& messages)
    {
        const bool different = values + onlyA + onlyB > 0;
        if (!complete)
            messages << "the logs differ too much to be compared call by call between their common beginning and end\n";
        if (asJson) {
            json.EndArray().Member("values", values).Member("onlyInA", onlyA).Member("onlyInB", onlyB).EndObject();
            out << '\n';
        } else if (different) {
            out << "Values that differ: " << values << "; calls and messages of the first log alone: " << onlyA
                << ", of the second alone: " << onlyB << "; the first difference is in line "
                << (firstA ? firstA : firstB) << " of the " << (firstA ? "first" : "second") << '\n';
        }
        return different ? kFinding : kFine;
    }

private:
    JsonWriter& BeginJson(const char* kind, int lineA, int lineB)
    {
        json.NewLine().BeginObject().Member("kind", kind);
        if (lineA) json.Member("lineA", lineA);
        if (lineB) json.Member("lineB", lineB);
        return json;
    }
    void Note(int lineA, int lineB)
    {
        if (firstA || firstB) return;
        firstA = lineA;
        firstB = lineB;
    }

    const bool asJson;
    Output& out;
    JsonWriter json;
    long long values = 0, onlyA = 0, onlyB = 0;
    int firstA = 0, firstB = 0;
};

// Values are identified by their keys, which are expected to come in the same order in both calls.
void CompareValues(const SequenceStep& a, const SequenceStep& b, double tolerance, DifferenceWriter& writer)
{
    const auto position = [](const std::vector<SequenceValue>& values, std::size_t from, const std::string& key) {
        while (from < values.size() && values[from].key != key) ++from;
        return from;
    };
    std::size_t j = 0;
    for (const SequenceValue& value : a.values) {
        const std::size_t found = position(b.values, j, value.key);
        if (found == b.values.size()) {
            writer.Value(a, &value, nullptr);
            continue;
        }
        for (; j < found; ++j) writer.Value(a, nullptr, &b.values[j]);
        if (!Equal(value.text, b.values[j].text, tolerance)) writer.Value(a, &value, &b.values[j]);
        ++j;
    }
    for (; j < b.values.size(); ++j) writer.Value(a, nullptr, &b.values[j]);
}

std::vector<int> Numbered(const std::vector<SequenceStep>& steps, std::map<std::string, int>& numbers)
{
    std::vector<int> out;
    out.reserve(steps.size());
    for (const SequenceStep& step : steps) {
        out.push_back(numbers.emplace(step.alike, static_cast<int>(numbers.size())).first->second);
    }
    return out;
}

}  // namespace

int CompareLogs(const Arguments& arguments, Streams& streams)
{
    const double tolerance = arguments.Number("--tolerance").value_or(0);
    const auto a = ReadSequence(arguments.Operand(0), streams.messages);
    const auto b = ReadSequence(arguments.Operand(1), streams.messages);
    std::map<std::string, int> numbers;
    const std::vector<int> numberedA = Numbered(a.steps, numbers), numberedB = Numbered(b.steps, numbers);
    const Alignment alignment = Align(numberedA, numberedB);
    DifferenceWriter writer(arguments.Has("--json"), streams.data);
    for (const AlignedPair& pair : alignment.pairs) {
        if (pair.a && pair.b) {
            CompareValues(a.steps[*pair.a], b.steps[*pair.b], tolerance, writer);
        } else {
            writer.Only(pair.a ? a.steps[*pair.a] : b.steps[*pair.b], pair.a.has_value());
        }
    }
    const int code = writer.Finish(alignment.complete, streams.messages);
    return CodeOf(a.complete && b.complete, code);
}

}  // namespace zelt::ctl
