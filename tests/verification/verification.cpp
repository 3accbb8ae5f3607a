#include "tests/verification/verification.h"

#include <io.h>

#include <algorithm>
#include <cstdio>
#include <exception>

#include "tests/verification/computer.h"

namespace zelt::verification {
namespace {

constexpr char kInterrupted[] = "interrupted";
// Minutes that a test may print nothing.
constexpr DWORD kPatience = 20, kLongPatience = 180;

class Interrupted : public std::exception {
public:
    const char* what() const noexcept override { return kInterrupted; }
};

}  // namespace

Verification::Verification(const std::filesystem::path& tree, const Plan& plan, const Choice& choice,
                           const ComputerState& state, const std::wstring& scratch,
                           const std::atomic<bool>& interrupted)
    : tree(tree), plan(plan), choice(choice), state(state), scratch(scratch), interrupted(interrupted), offers(Offers())
{
    if (choice.takesLong) offers.insert("long");
}

void Verification::Run(Page& page)
{
    for (const Program& program : plan.programs) {
        const std::string filter = Filter(program);
        if (filter.empty()) continue;
        ProgramResult result = {program.title, Unmet(program.needs), {}};
        if (result.leftOut.empty() && interrupted) result.leftOut = kInterrupted;
        if (result.leftOut.empty()) result.results = results[program.name] = RunProgram(program, filter, kPatience);
        page.programs.push_back(std::move(result));
    }
    for (const Row& row : plan.rows) {
        if (IsWanted(row.point.what)) page.rows.emplace_back(row.point, AnswerRow(row));
    }
}

// Why a need is not met; empty when all are. Under Wine, a missing "windows" comes before other reasons.
std::string Verification::Unmet(const Needs& needs) const
{
    const auto lacks = [this](const std::string& need) { return !offers.contains(need); };
    if (needs.contains("windows") && lacks("windows")) return Reason("windows");
    const auto first = std::find_if(needs.begin(), needs.end(), lacks);
    return first == needs.end() ? std::string() : Reason(*first);
}

std::string Verification::UnmetOf(const Row& row) const
{
    std::string unmet = Unmet(row.needs);
    for (const Tests& tests : row.tests) {
        if (unmet.empty()) unmet = Unmet(ProgramOf(tests.program).needs);
    }
    return unmet;
}

// The program exists: ReadPlan refuses rows with unknown programs.
const Program& Verification::ProgramOf(const std::string& name) const
{
    return *std::find_if(plan.programs.begin(), plan.programs.end(),
                         [&](const Program& program) { return program.name == name; });
}

// A filter for the wanted tests of the program; empty if none is wanted.
std::string Verification::Filter(const Program& program) const
{
    if (IsWanted(program.title)) return program.filter;
    std::string filter;
    for (const Row& row : plan.rows) {
        if (!IsWanted(row.point.what) || !UnmetOf(row).empty() || row.needs.contains("long")) continue;
        for (const Tests& tests : row.tests) {
            if (tests.program == program.name) filter += (filter.empty() ? "" : ":") + tests.filter;
        }
    }
    return filter;
}

// A program that cannot be run counts as failed; the others are still run.
TestResults Verification::RunProgram(const Program& program, const std::string& filter, DWORD patience) const
{
    std::fprintf(stderr, "%s\n", program.title.c_str());
    const bool isConsole = _isatty(_fileno(stderr));
    const auto show = [&](std::size_t ended, std::size_t all) {
        if (isConsole) std::fprintf(stderr, "\r  %zu of %zu ", ended, all);
        if (interrupted) throw Interrupted();
    };
    const auto path = tree / std::filesystem::path(program.path).make_preferred();
    TestResults ended;
    try {
        ended = RunTests({path.wstring(), filter, scratch, patience}, show);
    } catch (const std::exception& failure) {
        ended["(the program)"] = {State::Failed, std::string(failure.what()) + '\n'};
    }
    if (isConsole) std::fprintf(stderr, "\r                    \r");
    // What a test has left running would be in the way of the next program.
    state.EndPrograms();
    return ended;
}

Answer Verification::AnswerRow(const Row& row) const
{
    if (std::string unmet = UnmetOf(row); !unmet.empty()) return {Verdict::LeftOut, unmet, {}};
    if (row.tests.empty()) return {Verdict::ForAPerson, row.point.how, {}};
    if (interrupted) return {Verdict::LeftOut, kInterrupted, {}};
    if (!row.needs.contains("long")) return AnswerOf(row, results);
    std::map<std::string, TestResults> ofRow;
    SetEnvironmentVariableW(L"ZELT_TEST_EFFORT", L"100");
    for (const Tests& tests : row.tests)
        ofRow[tests.program] = RunProgram(ProgramOf(tests.program), tests.filter, kLongPatience);
    SetEnvironmentVariableW(L"ZELT_TEST_EFFORT", nullptr);
    return AnswerOf(row, ofRow);
}

}  // namespace zelt::verification
