// The program under test, started by a test and controlled from outside: finds windows by title, reads and answers
// boxes, and sends keys to the foreground window. The destructor ends the process.
#pragma once

#include <windows.h>

#include <functional>
#include <string>

#include "system/owners.h"

namespace zelt::test {

// Waits until the condition is true; false if it is not true within two minutes.
bool WaitUntil(const std::function<bool()>& condition);

std::wstring TextOfWindow(HWND window);

class Program {
public:
    // Starts the built program, or the copy of it whose path is `executable`.
    explicit Program(const std::wstring& arguments = {}, const std::wstring& executable = {});
    ~Program();
    Program(const Program&) = delete;
    Program& operator=(const Program&) = delete;

    HANDLE Process() const { return process.get(); }
    DWORD Id() const { return id; }
    bool EndsBy(DWORD milliseconds) const { return WaitForSingleObject(process.get(), milliseconds) == WAIT_OBJECT_0; }
    DWORD ExitCode() const;

    // A visible top-level window of the program by its title; null if there is none. WaitForWindow waits for one.
    HWND WaitForWindow(const std::wstring& title) const;
    HWND FindVisible(const std::wstring& title) const;
    // Waits until the window is gone.
    bool WaitUntilGone(HWND window) const;

    // Waits for a message box, presses the button and returns the text. "(no box)" if none appears, "(box stays)" if the
    // box does not close.
    std::wstring AnswerBox(const std::wstring& caption, int button) const;

private:
    UniqueHandle process;
    DWORD id = 0;
};

// Sends what a menu item or accelerator sends. Returns when the window has acted.
void Command(HWND window, int id);
// The same without waiting, for commands that open dialogs.
void PostCommand(HWND window, int id);

// Presses and releases a key in the foreground window, while `held`, if given, is down.
void PressKey(WORD key, WORD held = 0);

}  // namespace zelt::test
