// Functions that find and read windows of another process, press keys and buttons, and store pictures. Waits have a limit,
// which is long, because a machine may be slow.
#pragma once

#include <windows.h>

#include <functional>
#include <string>

namespace zelt::test {

inline constexpr DWORD kLongestWait = 120'000;

// Waits until the condition is true; false if that takes too long.
bool WaitUntil(const std::function<bool()>& condition, DWORD milliseconds = kLongestWait);

std::wstring TextOf(HWND window);

// A visible top-level window of the process with this caption; null if there is none. FindWindowOf waits for one.
HWND FindNow(DWORD process, const std::wstring& caption);
HWND FindWindowOf(DWORD process, const std::wstring& caption, DWORD milliseconds = kLongestWait);
int CountWindows(DWORD process);

// Waits for a message box, presses its button and waits until it is gone. Returns its text, "<no box>" if none
// appeared.
std::wstring AnswerBox(DWORD process, const std::wstring& caption, int button = IDOK);

void PressButton(HWND dialog, int control);

// Brings the window to the foreground and sends real key strokes. If the window does not get there, a key without a
// modifier is posted instead.
void PressKey(HWND window, WORD key, WORD modifier = 0);

// Stores a picture of the window on the screen in <build>/screenshots/<name>.bmp.
void KeepPicture(HWND window, const std::string& name);

}  // namespace zelt::test
