#include "tests/windows/program.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <vector>

#include "tests/system/harness/process.h"
#include "tests/system/harness/under_wine.h"
#include "tests/trees.h"

namespace zelt::test {
namespace {

// In milliseconds. Long, because a machine may be slow; only a wait for what never happens takes all of it.
constexpr DWORD kPatience = 120'000, kPace = 20;

struct Search {
    DWORD process;
    const std::wstring& title;
    HWND found;
};

BOOL CALLBACK Examine(HWND window, LPARAM parameter)
{
    auto& search = *reinterpret_cast<Search*>(parameter);
    DWORD process = 0;
    GetWindowThreadProcessId(window, &process);
    if (process != search.process || !IsWindowVisible(window) || TextOfWindow(window) != search.title) return TRUE;
    search.found = window;
    return FALSE;
}

BOOL CALLBACK CloseIfOf(HWND window, LPARAM wanted)
{
    DWORD process = 0;
    GetWindowThreadProcessId(window, &process);
    if (process == static_cast<DWORD>(wanted) && IsWindowVisible(window) && IsWindowEnabled(window)) {
        PostMessageW(window, WM_CLOSE, 0, 0);
    }
    return TRUE;
}

INPUT KeyInput(WORD key, DWORD flags)
{
    INPUT input = {};
    input.type = INPUT_KEYBOARD;
    input.ki.wVk = key;
    input.ki.wScan = static_cast<WORD>(MapVirtualKeyW(key, MAPVK_VK_TO_VSC));
    input.ki.dwFlags = flags;
    return input;
}

}  // namespace

bool WaitUntil(const std::function<bool()>& condition)
{
    for (DWORD waited = 0; waited < kPatience; waited += kPace) {
        if (condition()) return true;
        Sleep(kPace);
    }
    return condition();
}

std::wstring TextOfWindow(HWND window)
{
    wchar_t text[2048] = L"";
    // Sends a message, because across processes GetWindowText returns a control's original text, not the current one.
    SendMessageW(window, WM_GETTEXT, std::size(text), reinterpret_cast<LPARAM>(text));
    return text;
}

Program::Program(const std::wstring& arguments, const std::wstring& executable)
{
    std::filesystem::path program = executable;
    if (executable.empty()) program = BuiltServer();
    const std::wstring path = std::filesystem::absolute(program).make_preferred().wstring();
    std::wstring commandLine = L'"' + path + L"\" " + arguments;
    STARTUPINFOW startup = {};
    startup.cb = sizeof startup;
    PROCESS_INFORMATION started;
    if (!CreateProcessW(nullptr, commandLine.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr, &startup,
                        &started)) {
        return;
    }
    process.reset(started.hProcess);
    id = started.dwProcessId;
    CloseHandle(started.hThread);
}

Program::~Program()
{
    if (!process) return;
    // COM would still connect to a killed server, so this asks the program to end. Dialogs close before the window
    // behind them.
    if (WaitUntil([this] {
            EnumWindows(CloseIfOf, static_cast<LPARAM>(id));
            return EndsBy(100);
        })) {
        return;
    }
    TerminateProcess(process.get(), 1);
    EndsBy(INFINITE);
}

DWORD Program::ExitCode() const
{
    DWORD code = STILL_ACTIVE;
    GetExitCodeProcess(process.get(), &code);
    return code;
}

HWND Program::FindVisible(const std::wstring& title) const
{
    Search search = {id, title, nullptr};
    EnumWindows(Examine, reinterpret_cast<LPARAM>(&search));
    return search.found;
}

HWND Program::WaitForWindow(const std::wstring& title) const
{
    HWND found = nullptr;
    WaitUntil([&] { return (found = FindVisible(title)) != nullptr; });
    return found;
}

bool Program::WaitUntilGone(HWND window) const
{
    return WaitUntil([&] { return !IsWindow(window); });
}

std::wstring Program::AnswerBox(const std::wstring& caption, int button) const
{
    const HWND box = WaitForWindow(caption);
    if (!box) return L"(no box)";
    constexpr int kBoxText = 0xFFFF;
    const std::wstring text = TextOfWindow(GetDlgItem(box, kBoxText));
    PostMessageW(box, WM_COMMAND, static_cast<WPARAM>(button), 0);
    return WaitUntilGone(box) ? text : L"(box stays)";
}

void Command(HWND window, int id) { SendMessageW(window, WM_COMMAND, static_cast<WPARAM>(id), 0); }

void PostCommand(HWND window, int id) { PostMessageW(window, WM_COMMAND, static_cast<WPARAM>(id), 0); }

namespace {

// Whether keys go to a window of this program or of ZELT. Windows may refuse to put such a window in front; the keys would then
// reach another program of the user. Under Wine, no other program has windows, and there may be no foreground window.
bool HasKeyboard()
{
    if (UnderWine()) return true;
    DWORD owner = 0;
    GetWindowThreadProcessId(GetForegroundWindow(), &owner);
    if (owner == GetCurrentProcessId()) return true;
    const std::vector<DWORD> servers = ProcessIds(L"ZELT.EXE");
    return std::find(servers.begin(), servers.end(), owner) != servers.end();
}

}  // namespace

void PressKey(WORD key, WORD held)
{
    if (!HasKeyboard()) {
        ADD_FAILURE() << "the window of another program is in front";
        return;
    }
    INPUT inputs[4];
    UINT count = 0;
    if (held) inputs[count++] = KeyInput(held, 0);
    inputs[count++] = KeyInput(key, 0);
    inputs[count++] = KeyInput(key, KEYEVENTF_KEYUP);
    if (held) inputs[count++] = KeyInput(held, KEYEVENTF_KEYUP);
    SendInput(count, inputs, sizeof(INPUT));
    Sleep(150);
}

}  // namespace zelt::test
