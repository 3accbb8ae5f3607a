// Message boxes without an owner: the one way the server speaks to the user outside its own windows. A test replaces the
// function and answers itself, and so does the program without windows; nothing else does.
#pragma once

#include <windows.h>

#include <string>

namespace zelt {

// Text, caption, MB_ flags; returns the button's id.
using MessageFunction = int (*)(const wchar_t* text, const wchar_t* caption, UINT flags);

// Shows a message box and waits for the answer. Windows' own box pumps messages, so calls may come in meanwhile: what the
// caller holds must be held by reference or looked up again afterwards.
int ShowMessage(const std::wstring& text, const wchar_t* caption, UINT flags);

// Replaces the function and returns the one before; null restores the system's box.
MessageFunction SetMessageFunction(MessageFunction function);

}  // namespace zelt
