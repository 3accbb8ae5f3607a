// verify.exe: runs the tests of ZELT on a computer with Windows, and answers the open points of docs/unverified.md.
//   verify [/ask] [/long] [/only TEXT] [/result FILE]
// It lies in the tree of the tests, in build\i686\tests\verification. Exit code: 0 when nothing failed, 1 when something did, 2
// when it could not begin.
#include <windows.h>
#include <io.h>

#include <algorithm>
#include <atomic>
#include <cctype>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
#include <map>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

#include "system/narrow.h"
#include "system/registry.h"
#include "tests/system/harness/process.h"
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
    "  /result  writes the results to FILE\n";

// What the user asked for cannot be done; the text says why.
class CannotBegin : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

// The user has pressed Ctrl+C.
class Interrupted : public std::exception {};

std::atomic<bool> interrupted = false;
constexpr char kInterrupted[] = "interrupted";

BOOL WINAPI Interrupt(DWORD event)
{
    interrupted = true;
    // After these, the system ends the process as soon as the handler returns. It leaves some seconds to put things back.
    if (event == CTRL_CLOSE_EVENT || event == CTRL_LOGOFF_EVENT || event == CTRL_SHUTDOWN_EVENT) Sleep(INFINITE);
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

// A folder for the files of this run, and for those of the tests: removed with everything in it. It is not the user's own one, so
// that its path has only the letters of the extracted folder's.
class Scratch {
public:
    explicit Scratch(const fs::path& root) : folder(root / L"scratch")
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
    Verification(const fs::path& tree, Plan plan, const Options& options, const ComputerState& state,
                 std::wstring scratch)
        : tree(tree),
          plan(std::move(plan)),
          options(options),
          state(state),
          offers(Offers()),
          scratch(std::move(scratch))
    {
        if (options.takesLong) offers.insert("long");
    }

    void Run(Page& page)
    {
        for (const Program& program : plan.programs) {
            const std::string filter = Filter(program);
            if (filter.empty()) continue;
            ProgramResult result = {program.title, Unmet(program.needs), {}};
            if (result.leftOut.empty() && interrupted) result.leftOut = kInterrupted;
            if (result.leftOut.empty()) result.results = results[program.name] = RunProgram(program, filter);
            page.programs.push_back(std::move(result));
        }
        for (const Row& row : plan.rows) {
            if (IsWanted(row.point.what)) page.rows.emplace_back(row.point, AnswerRow(row));
        }
    }

private:
    bool IsWanted(const std::string& title) const { return title.find(options.only) != std::string::npos; }

    // Why not all needs are met; empty when they are. Under Wine, that is the reason.
    std::string Unmet(const Needs& needs) const
    {
        const auto lacks = [this](const std::string& need) { return !offers.contains(need); };
        if (needs.contains("windows") && lacks("windows")) return Reason("windows");
        const auto first = std::find_if(needs.begin(), needs.end(), lacks);
        return first == needs.end() ? std::string() : Reason(*first);
    }

    const Program& ProgramOf(const std::string& name) const
    {
        return *std::find_if(plan.programs.begin(), plan.programs.end(),
                             [&](const Program& program) { return program.name == name; });
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

    // A program that cannot be run has failed, and the others are run.
    TestResults RunProgram(const Program& program, const std::string& filter, DWORD patience = 20) const
    {
        std::fprintf(stderr, "%s\n", program.title.c_str());
        const bool isConsole = _isatty(_fileno(stderr));
        const auto show = [isConsole](std::size_t ended, std::size_t all) {
            if (isConsole) std::fprintf(stderr, "\r  %zu of %zu ", ended, all);
            if (interrupted) throw Interrupted();
        };
        TestResults ended;
        try {
            ended =
                RunTests({(tree / fs::path(program.path).make_preferred()).wstring(), filter, scratch, patience}, show);
        } catch (const Interrupted&) {
            ended["(the program)"] = {State::Failed, "Interrupted.\n"};
        } catch (const std::exception& failure) {
            ended["(the program)"] = {State::Failed, std::string(failure.what()) + '\n'};
        }
        if (isConsole) std::fprintf(stderr, "\r                    \r");
        // What a test has left running would be in the way of the next program.
        state.EndPrograms();
        return ended;
    }

    Answer AnswerRow(const Row& row)
    {
        if (std::string unmet = UnmetOf(row); !unmet.empty()) return {Verdict::LeftOut, unmet, {}};
        if (row.tests.empty()) return {Verdict::ForAPerson, row.point.how, {}};
        if (interrupted) return {Verdict::LeftOut, kInterrupted, {}};
        if (!row.needs.contains("long")) return AnswerOf(row, results);
        std::map<std::string, TestResults> ofRow;
        SetEnvironmentVariableW(L"ZELT_TEST_EFFORT", L"100");
        constexpr DWORD kPatience = 180;
        for (const Tests& tests : row.tests)
            ofRow[tests.program] = RunProgram(ProgramOf(tests.program), tests.filter, kPatience);
        SetEnvironmentVariableW(L"ZELT_TEST_EFFORT", nullptr);
        return AnswerOf(row, ofRow);
    }

    fs::path tree;
    Plan plan;
    Options options;
    const ComputerState& state;
    Needs offers;
    std::wstring scratch;
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
        line = zelt::Narrow(zelt::Widen(line, GetConsoleCP()), CP_UTF8);
        if (line.starts_with('y')) answer = {Verdict::Passed, "by hand: " + line, {}};
        if (line.starts_with('n')) answer = {Verdict::Failed, "by hand: " + line, {}};
    }
}

// The text with all occurrences of `old` replaced, in whatever case.
std::string Replaced(std::string text, const std::string& old, const std::string& by)
{
    if (old.empty()) return text;
    const auto same = [](char a, char b) {
        return std::tolower(static_cast<unsigned char>(a)) == std::tolower(static_cast<unsigned char>(b));
    };
    std::string result;
    for (auto from = text.begin();;) {
        const auto found = std::search(from, text.end(), old.begin(), old.end(), same);
        result.append(from, found);
        if (found == text.end()) return result;
        result += by;
        from = found + static_cast<std::ptrdiff_t>(old.size());
    }
}

std::wstring Variable(const wchar_t* name)
{
    wchar_t value[32'767] = L"";
    const DWORD length = GetEnvironmentVariableW(name, value, std::size(value));
    return {value, std::min<std::size_t>(length, std::size(value) - 1)};
}

// Without the profile's path, as tests write paths, and without the name of the computer.
std::string WithoutUser(std::string text)
{
    const std::wstring profile = Variable(L"USERPROFILE");
    wchar_t brief[MAX_PATH] = L"";
    GetShortPathNameW(profile.c_str(), brief, std::size(brief));
    for (const std::wstring& path : {profile, std::wstring(brief)}) {
        const std::string plain = zelt::Narrow(path, CP_UTF8);
        for (const char* separator : {"\\", "/", "\\\\"})
            text = Replaced(std::move(text), Replaced(plain, "\\", separator), "%USERPROFILE%");
    }
    return Replaced(std::move(text), zelt::Narrow(Variable(L"COMPUTERNAME"), CP_UTF8), "%COMPUTERNAME%");
}

// The console shows UTF-8 while this exists.
class Utf8Output {
public:
    Utf8Output() { SetConsoleOutputCP(CP_UTF8); }
    ~Utf8Output() { SetConsoleOutputCP(before); }
    Utf8Output(const Utf8Output&) = delete;
    Utf8Output& operator=(const Utf8Output&) = delete;

private:
    const UINT before = GetConsoleOutputCP();
};

// The tests rely on a computer without ZELT, and on paths that every program can read.
void CheckSurroundings(const fs::path& root)
{
    const std::wstring path = root.wstring();
    if (std::any_of(path.begin(), path.end(), [](wchar_t c) { return c > L'~'; }))
        throw CannotBegin("Extract the zip into a folder whose path has only English letters, such as C:\\zelt.");
    for (const std::wstring& server : InstalledServers(root)) {
        throw CannotBegin("ZELT is registered on this computer: " + zelt::Narrow(server, CP_UTF8) +
                          "\nThe tests register it themselves: remove it first.");
    }
    for (const wchar_t* program : {L"ZELT.EXE", L"ZELT64.EXE"}) {
        if (!zelt::test::ProcessIds(program).empty()) throw CannotBegin("ZELT is running. Close it first.");
    }
}

int Verify(const std::vector<std::wstring>& words)
{
    const Utf8Output utf8;
    Options options = ReadOptions(words);
    const Needs offers = Offers();
    const bool isAdministrator = offers.contains("admin");
    const fs::path tree = TreeOfThisProgram(), root = tree.parent_path();
    if (options.result.empty())
        options.result = root / (isAdministrator ? L"verify-result-administrator.txt" : L"verify-result-user.txt");
    const Plan plan = ReadPlan(ReadText(tree / L"tests" / L"verification" / L"plan.txt"),
                               ReadText(tree / L"docs" / L"unverified.md"));
    CheckSurroundings(root);
    std::ofstream result(options.result, std::ios::binary);
    if (!result) throw CannotBegin("cannot write " + options.result.string());
    SetEnvironmentVariableW(L"ZELT_TEST_TREE", tree.generic_wstring().c_str());
    if (!offers.contains("64bit")) SetEnvironmentVariableW(L"ZELT_TEST_ONE_WIDTH", L"1");
    SetConsoleCtrlHandler(Interrupt, TRUE);
    SetThreadExecutionState(ES_CONTINUOUS | ES_SYSTEM_REQUIRED | ES_DISPLAY_REQUIRED);
    std::cerr << "The tests open windows and press keys. Leave keyboard and mouse alone until the page is printed; "
                 "this takes\n"
                 "about half an hour. Ctrl+C ends the tests and puts back what they changed.\n\n";

    Page page = {ZELT_VERSION, Facts(), {}, {}, {}};
    {
        const Scratch scratch(root);
        const ComputerState before(root, isAdministrator);
        {
            const QuietEnds quiet;
            Verification(tree, plan, options, before, scratch.Path()).Run(page);
        }
        page.differences = before.PutBack();
    }
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
