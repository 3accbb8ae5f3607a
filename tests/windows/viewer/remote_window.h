// Windows of another process: finding them, reading them, pressing keys and buttons, keeping pictures. Waiting is bounded;
// what does not come is null or a failure of the test.
#pragma once

#include <windows.h>

#include <functional>
#include <string>

namespace zelt::test {

// Asks again until the answer is true; false when that takes too long.
bool WaitUntil(const std::function<bool()>& condition, DWORD milliseconds = 15'000);

std::wstring TextOf(HWND window);

// A visible top-level window of the process with this caption; null if there is none.
HWND FindNow(DWORD process, const std::wstring& caption);
HWND FindWindowOf(DWORD process, const std::wstring& caption, DWORD milliseconds = 15'000);
int CountWindows(DWORD process);

// Waits for a message box, presses its button and waits until it has gone. Gives its text, "<no box>" if none came.
std::wstring AnswerBox(DWORD process, const std::wstring& caption, int button = IDOK);

void PressButton(HWND dialog, int control);

// Real key strokes into the window's thread, which gets the foreground first.
void PressKey(HWND window, WORD key, WORD modifier = 0);

// The window as it stands on the screen, kept among the build's screenshots as <name>.bmp.
void KeepPicture(HWND window, const std::string& name);

}  // namespace zelt::test
