// The program under test, started by a test and driven from outside: its windows are found by their titles, boxes are read
// and answered, keys go to the window in front. Ends the process with its owner.
#pragma once

#include <windows.h>

#include <functional>
#include <string>

#include "system/owners.h"

namespace zelt::test {

// Asks until the answer is true; false when it is not within ten seconds.
bool WaitUntil(const std::function<bool()>& condition);

std::wstring TextOfWindow(HWND window);

class Program {
public:
    // Starts the built program, or the copy of it that is named.
    explicit Program(const std::wstring& arguments = {}, const std::wstring& executable = {});
    ~Program();
    Program(const Program&) = delete;
    Program& operator=(const Program&) = delete;

    HANDLE Process() const { return process.get(); }
    DWORD Id() const { return id; }
    bool EndsBy(DWORD milliseconds) const { return WaitForSingleObject(process.get(), milliseconds) == WAIT_OBJECT_0; }
    DWORD ExitCode() const;

    // A visible top-level window of the program by its title; null when none appears in time.
    HWND WaitForWindow(const std::wstring& title) const;
    HWND FindVisible(const std::wstring& title) const;
    // The same for the end of it.
    bool WaitUntilGone(HWND window) const;

    // Waits for a message box, gives its text, and presses the button. "(no box)" when none appears.
    std::wstring AnswerBox(const std::wstring& caption, int button) const;

private:
    UniqueHandle process;
    DWORD id = 0;
};

// What a menu item or accelerator sends. The window answers when it has acted.
void Command(HWND window, int id);
// The same without waiting, for commands that open a dialog.
void PostCommand(HWND window, int id);

// Presses keys in the window in front: each virtual key down and up, together when `held` is given.
void PressKey(WORD key, WORD held = 0);

}  // namespace zelt::test
