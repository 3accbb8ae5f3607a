// verify.exe: runs the tests of ZELT on a computer with Windows, and answers the open points of docs/unverified.md.
//   verify [/ask] [/long] [/only TEXT] [/result FILE]
// It lies in the tree of the tests, in build\i686\tests\verification. Exit code: 0 when nothing failed, 1 when something did, 2
// when it could not begin.
#include <windows.h>
#include <io.h>

#include <algorithm>
#include <atomic>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

#include "system/narrow.h"
#include "system/registry.h"
#include "tests/verification/computer.h"
#include "tests/verification/computer_state.h"
#include "tests/verification/page.h"
#include "tests/verification/plan.h"
#include "tests/verification/test_program.h"

namespace {

namespace fs = std::filesystem;
using namespace zelt::verification;

constexpr char kUsage[] =
    "verify.cmd [/ask] [/long] [/only TEXT] [/result FILE]\n"
    "  /ask     afterwards, asks about the points that only a person can see\n"
    "  /long    also tests what takes many minutes\n"
    "  /only    tests only the points and programs whose title contains TEXT\n"
    "  /result  writes the results to FILE, not to verify-result.txt beside verify.cmd\n";

// What the user asked for cannot be done; the text says why.
class CannotBegin : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

// The user has pressed Ctrl+C.
class Interrupted : public std::exception {};

std::atomic<bool> interrupted = false;

BOOL WINAPI Interrupt(DWORD)
{
    interrupted = true;
    return TRUE;
}

struct Options {
    bool asks = false;
    bool takesLong = false;
    std::string only;
    fs::path result;
};

Options ReadOptions(const std::vector<std::wstring>& words)
{
    Options options;
    for (std::size_t i = 0; i < words.size(); ++i) {
        const auto next = [&] {
            if (++i == words.size())
                throw CannotBegin(zelt::Narrow(words[i - 1], CP_UTF8) + " needs a value\n" + kUsage);
            return words[i];
        };
        if (words[i] == L"/ask")
            options.asks = true;
        else if (words[i] == L"/long")
            options.takesLong = true;
        else if (words[i] == L"/only")
            options.only = zelt::Narrow(next(), CP_UTF8);
        else if (words[i] == L"/result")
            options.result = next();
        else
            throw CannotBegin(kUsage);
    }
    return options;
}

std::string ReadText(const fs::path& path)
{
    std::ifstream file(path, std::ios::binary);
    if (!file) throw CannotBegin(path.string() + " is missing. Extract the whole zip first.");
    return {std::istreambuf_iterator<char>(file), {}};
}

fs::path TreeOfThisProgram()
{
    wchar_t path[32'768];
    if (!GetModuleFileNameW(nullptr, path, std::size(path))) return {};
    fs::path tree = path;
    for (const char* part : {"verify.exe", "verification", "tests", "i686", "build"}) {
        if (tree.filename() != part) throw CannotBegin("verify.exe is not in its place. Extract the whole zip first.");
        tree = tree.parent_path();
    }
    return tree;
}

// A folder for the files of this run, and for those of the tests: removed with everything in it.
class Scratch {
public:
    Scratch() : folder(fs::temp_directory_path() / (L"ZELT verification " + std::to_wstring(GetCurrentProcessId())))
    {
        fs::create_directories(folder / L"temp");
        for (const wchar_t* name : {L"TEMP", L"TMP"}) SetEnvironmentVariableW(name, (folder / L"temp").c_str());
    }
    ~Scratch()
    {
        // Programs that have just ended may hold files for a moment.
        std::error_code error;
        for (int tries = 0; fs::remove_all(folder, error), error && tries < 50; ++tries) Sleep(100);
    }
    Scratch(const Scratch&) = delete;
    Scratch& operator=(const Scratch&) = delete;
    std::wstring Path() const { return folder.wstring(); }

private:
    fs::path folder;
};

// While it exists, programs that a fault ends do so without asking the user: tests end some, and nobody is there to answer.
class QuietEnds {
public:
    QuietEnds()
    {
        SetErrorMode(SEM_FAILCRITICALERRORS | SEM_NOGPFAULTERRORBOX);
        if (key.Create({}, L"Software\\Microsoft\\Windows\\Windows Error Reporting") != ERROR_SUCCESS) return;
        before = key.ReadValue(kName);
        [[maybe_unused]] const LSTATUS written = key.WriteDword(kName, 1);
    }
    ~QuietEnds()
    {
        if (!key) return;
        if (before)
            RegSetValueExW(key.Get(), kName, 0, before->type, before->data.data(),
                           static_cast<DWORD>(before->data.size()));
        else
            RegDeleteValueW(key.Get(), kName);
    }
    QuietEnds(const QuietEnds&) = delete;
    QuietEnds& operator=(const QuietEnds&) = delete;

private:
    static constexpr wchar_t kName[] = L"DontShowUI";
    zelt::RegistryKey key;
    std::optional<zelt::RegistryValue> before;
};

class Verification {
public:
    Verification(const fs::path& tree, Plan plan, const Options& options)
        : tree(tree), plan(std::move(plan)), options(options), offers(Offers())
    {
        if (options.takesLong) offers.insert("long");
    }

    void Run(Page& page)
    {
        for (const Program& program : plan.programs) {
            ProgramResult result = {program.title, Unmet(program.needs), {}};
            const std::string filter = Filter(program);
            if (filter.empty()) continue;
            if (result.leftOut.empty()) {
                try {
                    result.results = results[program.name] = RunProgram(program, filter);
                } catch (const Interrupted&) {
                    result.leftOut = "interrupted";
                }
            }
            page.programs.push_back(std::move(result));
        }
        for (const Row& row : plan.rows) {
            if (IsWanted(row.point.what)) page.rows.emplace_back(row.point, AnswerRow(row));
        }
    }

    const Program& ProgramOf(const std::string& name) const
    {
        return *std::find_if(plan.programs.begin(), plan.programs.end(),
                             [&](const Program& program) { return program.name == name; });
    }

private:
    bool IsWanted(const std::string& title) const { return title.find(options.only) != std::string::npos; }

    // Why not all needs are met; empty when they are.
    std::string Unmet(const Needs& needs) const
    {
        for (const std::string& need : needs) {
            if (!offers.contains(need)) return Reason(need);
        }
        return {};
    }

    std::string UnmetOf(const Row& row) const
    {
        std::string unmet = Unmet(row.needs);
        for (const Tests& tests : row.tests) {
            if (unmet.empty()) unmet = Unmet(ProgramOf(tests.program).needs);
        }
        return unmet;
    }

    // The tests of the program that are wanted; empty for none. Suites whose names begin with "Long" are run for their rows only.
    std::string Filter(const Program& program) const
    {
        if (IsWanted(program.title)) return "*-Long*";
        std::string filter;
        for (const Row& row : plan.rows) {
            if (!IsWanted(row.point.what) || !UnmetOf(row).empty() || row.needs.contains("long")) continue;
            for (const Tests& tests : row.tests) {
                if (tests.program == program.name) filter += (filter.empty() ? "" : ":") + tests.filter;
            }
        }
        return filter;
    }

    TestResults RunProgram(const Program& program, const std::string& filter) const
    {
        std::fprintf(stderr, "%s\n", program.title.c_str());
        const bool isConsole = _isatty(_fileno(stderr));
        const auto show = [isConsole](std::size_t ended, std::size_t all) {
            if (isConsole) std::fprintf(stderr, "\r  %zu of %zu ", ended, all);
            if (interrupted) throw Interrupted();
        };
        std::string path = program.path;
        TestResults results =
            RunTests({(tree / fs::path(path).make_preferred()).wstring(), filter, scratch.Path()}, show);
        if (isConsole) std::fprintf(stderr, "\r                    \r");
        return results;
    }

    Answer AnswerRow(const Row& row)
    {
        if (std::string unmet = UnmetOf(row); !unmet.empty()) return {Verdict::LeftOut, unmet};
        if (row.tests.empty()) return {Verdict::ForAPerson, row.point.how};
        if (interrupted) return {Verdict::LeftOut, "interrupted"};
        if (!row.needs.contains("long")) return AnswerOf(row, results);
        std::map<std::string, TestResults> long_;
        SetEnvironmentVariableW(L"ZELT_TEST_EFFORT", L"100");
        try {
            for (const Tests& tests : row.tests)
                long_[tests.program] = RunProgram(ProgramOf(tests.program), tests.filter);
        } catch (const Interrupted&) {
            return {Verdict::LeftOut, "interrupted"};
        }
        SetEnvironmentVariableW(L"ZELT_TEST_EFFORT", nullptr);
        return AnswerOf(row, long_);
    }

    fs::path tree;
    Plan plan;
    Options options;
    Needs offers;
    Scratch scratch;
    std::map<std::string, TestResults> results;
};

void Ask(Page& page)
{
    std::cerr << "\nThe rest is for you to see. Answer y for yes, n for no, anything else to leave the point open; a "
                 "remark may\n"
                 "follow the letter.\n";
    for (auto& [point, answer] : page.rows) {
        if (answer.verdict != Verdict::ForAPerson || interrupted) continue;
        std::cerr << "\n" << point.what << "\n  " << point.how << "\nIs it so? " << std::flush;
        std::string line;
        if (!std::getline(std::cin, line)) return;
        if (line.starts_with('y')) answer = {Verdict::Passed, "by hand: " + line};
        if (line.starts_with('n')) answer = {Verdict::Failed, "by hand: " + line};
    }
}

// Writes no path that names the user.
std::string WithoutUser(std::string text)
{
    wchar_t profile[MAX_PATH] = L"";
    if (!GetEnvironmentVariableW(L"USERPROFILE", profile, std::size(profile))) return text;
    const std::string path = zelt::Narrow(profile, CP_UTF8);
    for (std::size_t place; (place = text.find(path)) != std::string::npos;)
        text.replace(place, path.size(), "%USERPROFILE%");
    return text;
}

int Verify(const std::vector<std::wstring>& words)
{
    Options options = ReadOptions(words);
    const fs::path tree = TreeOfThisProgram();
    if (options.result.empty()) options.result = tree.parent_path() / L"verify-result.txt";
    Plan plan = ReadPlan(ReadText(tree / L"tests" / L"verification" / L"plan.txt"),
                         ReadText(tree / L"docs" / L"unverified.md"));
    for (const std::wstring& server : InstalledServers(tree)) {
        throw CannotBegin("ZELT is registered on this computer: " + zelt::Narrow(server, CP_UTF8) +
                          "\nThe tests register it themselves: remove it first.");
    }
    std::ofstream result(options.result, std::ios::binary);
    if (!result) throw CannotBegin("cannot write " + options.result.string());
    SetEnvironmentVariableW(L"ZELT_TEST_TREE", tree.generic_wstring().c_str());
    SetConsoleCtrlHandler(Interrupt, TRUE);
    std::cerr << "The tests open windows and press keys. Leave keyboard and mouse alone until the page is printed; "
                 "this takes\n"
                 "about a quarter of an hour. Ctrl+C ends the tests and puts back what they changed.\n\n";

    const Needs offers = Offers();
    const ComputerState before(tree, offers.contains("admin"));
    Page page = {ZELT_VERSION, Facts(), {}, {}, {}};
    {
        const QuietEnds quiet;
        Verification verification(tree, std::move(plan), options);
        verification.Run(page);
    }
    page.differences = before.PutBack();
    if (options.asks) Ask(page);
    const std::string text = WithoutUser(Text(page));
    std::cout << text;
    result << text << WithoutUser(Details(page));
    result.close();
    if (!result) throw CannotBegin("cannot write " + options.result.string());
    std::cout << "\nPlease send this file to the developers of ZELT: " << options.result.string() << '\n';
    return HasFailed(page) ? 1 : 0;
}

}  // namespace

int wmain(int argc, wchar_t** argv)
{
    try {
        return Verify(std::vector<std::wstring>(argv + 1, argv + argc));
    } catch (const std::exception& failure) {
        std::cerr << failure.what() << '\n';
        return 2;
    }
}
