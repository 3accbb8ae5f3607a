#include "tests/verification/page.h"

#include <algorithm>
#include <array>

namespace zelt::verification {
namespace {

constexpr std::size_t kWidth = 11;  // of the first column

std::string Padded(std::string text)
{
    text.resize(std::max(text.size() + 1, kWidth), ' ');
    return text;
}

const char* Word(Verdict verdict)
{
    switch (verdict) {
        case Verdict::Passed: return "passed";
        case Verdict::Failed: return "FAILED";
        case Verdict::LeftOut: return "left out";
        default: return "by hand";
    }
}

std::size_t Count(const TestResults& results, State state)
{
    return static_cast<std::size_t>(std::count_if(
        results.begin(), results.end(), [state](const auto& result) { return result.second.state == state; }));
}

std::string Counted(const TestResults& results)
{
    std::string text = std::to_string(Count(results, State::Passed)) + " passed";
    if (const std::size_t failed = Count(results, State::Failed)) text += ", " + std::to_string(failed) + " failed";
    if (const std::size_t skipped = Count(results, State::Skipped)) text += ", " + std::to_string(skipped) + " skipped";
    return text;
}

Verdict VerdictOf(const ProgramResult& program)
{
    if (!program.leftOut.empty()) return Verdict::LeftOut;
    return Count(program.results, State::Failed) ? Verdict::Failed : Verdict::Passed;
}

// The last line of a skipped test's output is the reason for skipping it.
std::string LastLine(std::string text)
{
    while (text.ends_with('\n')) text.pop_back();
    const std::size_t end = text.rfind('\n');
    return end == std::string::npos ? text : text.substr(end + 1);
}

// Without the backquotes that mark code.
std::string Plain(std::string text)
{
    std::erase(text, '`');
    return text;
}

void AppendProgram(std::string& page, const ProgramResult& program)
{
    page += "  " + Padded(Word(VerdictOf(program))) + program.title + ": ";
    page += (program.leftOut.empty() ? Counted(program.results) : program.leftOut) + '\n';
    for (const auto& [name, result] : program.results) {
        if (result.state == State::Failed) page += "  " + Padded("") + "  " + name + '\n';
    }
}

}  // namespace

Answer AnswerOf(const Row& row, const std::map<std::string, TestResults>& results)
{
    std::size_t passed = 0, skipped = 0;
    std::string failed, reason, said;
    for (const Tests& tests : row.tests) {
        const auto program = results.find(tests.program);
        bool found = false;
        if (program != results.end()) {
            for (const auto& [name, result] : program->second) {
                if (!Takes(tests.filter, name)) continue;
                found = true;
                if (result.state == State::Failed) failed += (failed.empty() ? "" : ", ") + name;
                if (result.state == State::Passed) ++passed;
                if (result.state == State::Passed && !result.output.empty()) said += name + '\n' + result.output;
                if (result.state == State::Skipped) ++skipped, reason = LastLine(result.output);
            }
        }
        if (!found) failed += (failed.empty() ? "" : ", ") + ("no test " + tests.filter);
    }
    if (!failed.empty()) return {Verdict::Failed, failed, said};
    if (!passed) return {Verdict::LeftOut, reason, {}};
    return {Verdict::Passed, skipped ? std::to_string(skipped) + " skipped: " + reason : std::string(), said};
}

bool HasFailed(const Page& page)
{
    return std::any_of(page.programs.begin(), page.programs.end(),
                       [](const ProgramResult& program) { return VerdictOf(program) == Verdict::Failed; }) ||
           std::any_of(page.rows.begin(), page.rows.end(),
                       [](const auto& row) { return row.second.verdict == Verdict::Failed; }) ||
           !page.differences.notPutBack.empty();
}

std::string Text(const Page& page)
{
    std::string text = "Verification of ZELT " + page.version + "\n\n";
    for (const auto& [name, fact] : page.facts) text += "  " + Padded(name) + fact + '\n';
    text += "\nTest programs\n";
    for (const ProgramResult& program : page.programs) AppendProgram(text, program);
    std::string section;
    std::array<std::size_t, 4> counts = {};
    for (const auto& [point, answer] : page.rows) {
        if (section != point.section) text += '\n' + (section = point.section) + '\n';
        text += "  " + Padded(Word(answer.verdict)) + Plain(point.what) + '\n';
        if (!answer.remark.empty()) text += "  " + Padded("") + "  " + Plain(answer.remark) + '\n';
        ++counts[static_cast<std::size_t>(answer.verdict)];
    }
    text += "\nThe computer\n  " + std::to_string(page.differences.putBack) + " entries and files were put back\n";
    for (const auto* lines : {&page.differences.notPutBack, &page.differences.others}) {
        for (const std::string& line : *lines) text += "  " + line + '\n';
    }
    text += '\n' + std::to_string(page.rows.size()) + " points: " + std::to_string(counts[0]) + " passed, " +
            std::to_string(counts[1]) + " failed, " + std::to_string(counts[2]) + " left out, " +
            std::to_string(counts[3]) + " by hand\n";
    return text;
}

std::string Details(const Page& page)
{
    std::string text;
    for (const ProgramResult& program : page.programs) {
        for (const auto& [name, result] : program.results) {
            if (result.state != State::Failed) continue;
            text += "\n---- " + program.title + ": " + name + '\n' + result.output;
        }
    }
    for (const auto& [point, answer] : page.rows) {
        if (!answer.said.empty()) text += "\n---- " + Plain(point.what) + '\n' + answer.said;
    }
    return text;
}

}  // namespace zelt::verification
