// verify.exe: runs the tests of ZELT on a computer with Windows, and answers the open points of docs/unverified.md.
//   verify [/ask] [/long] [/only TEXT] [/result FILE]
// It must lie in the tree of the tests, in build\i686\tests\verification. Exit code: 0 when nothing failed, 1 when something
// did, 2 when it could not begin.
#include <windows.h>

#include <algorithm>
#include <atomic>
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
#include "tests/system/harness/process.h"
#include "tests/verification/computer.h"
#include "tests/verification/computer_state.h"
#include "tests/verification/hidden_names.h"
#include "tests/verification/page.h"
#include "tests/verification/plan.h"
#include "tests/verification/verification.h"

namespace {

namespace fs = std::filesystem;
using namespace zelt::verification;

constexpr char kUsage[] =
    "verify.cmd [/ask] [/long] [/only TEXT] [/result FILE]\n"
    "  /ask     afterwards, asks about the points that only a person can see\n"
    "  /long    also runs tests that take many minutes\n"
    "  /only    tests only the points and programs whose title contains TEXT\n"
    "  /result  writes the results to FILE\n";

// What the user asked for cannot be done; the text says why.
class CannotBegin : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

std::atomic<bool> interrupted = false;

BOOL WINAPI Interrupt(DWORD event)
{
    interrupted = true;
    // After these events, the system ends the process when this handler returns, or after some seconds. The handler waits, so
    // that the main thread can use these seconds to put things back.
    if (event == CTRL_CLOSE_EVENT || event == CTRL_LOGOFF_EVENT || event == CTRL_SHUTDOWN_EVENT) Sleep(INFINITE);
    return TRUE;
}

struct Options {
    bool asks = false;
    Choice choice;
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
            options.choice.takesLong = true;
        else if (words[i] == L"/only")
            options.choice.only = zelt::Narrow(next(), CP_UTF8);
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

// A folder for the files of this run and of the tests, which is removed at the end. It is not in the user's own folder for
// temporary files, whose path may contain letters that CheckSurroundings refuses.
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
    const std::wstring& Path() const { return folder.native(); }

private:
    fs::path folder;
};

// While it exists, programs that end because of a fault show no dialog. Tests cause such faults, and nobody is there to answer.
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

void Ask(Page& page)
{
    std::cerr
        << "\nOnly you can see the rest. Answer y for yes, n for no, or anything else to leave the point open. A\n"
           "remark may follow the letter.\n";
    for (auto& [point, answer] : page.rows) {
        if (answer.verdict != Verdict::ForAPerson || interrupted) continue;
        std::cerr << "\n" << point.what << "\n  " << point.how << "\nDid it happen as described? " << std::flush;
        std::string line;
        if (!std::getline(std::cin, line)) return;
        line = zelt::Narrow(zelt::Widen(line, GetConsoleCP()), CP_UTF8);
        if (line.starts_with('y')) answer = {Verdict::Passed, "by hand: " + line, {}};
        if (line.starts_with('n')) answer = {Verdict::Failed, "by hand: " + line, {}};
    }
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
    std::cerr << "The tests open windows and press keys. Leave the keyboard and the mouse alone until the page is\n"
                 "printed; this takes about half an hour. Ctrl+C ends the tests and puts back what they changed.\n\n";

    Page page = {ZELT_VERSION, Facts(), {}, {}, {}};
    {
        const Scratch scratch(root);
        const ComputerState before(root, isAdministrator);
        {
            const QuietEnds quiet;
            Verification(tree, plan, options.choice, before, scratch.Path(), interrupted).Run(page);
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
