// Message boxes that belong to no window of the program. A test replaces the function that shows them and answers itself;
// nothing else does.
#pragma once

#include <windows.h>

#include <string>

#include "system/outcome.h"

namespace zelt {

// Text, caption, MB_ flags; returns the button's id.
using MessageFunction = int (*)(const wchar_t* text, const wchar_t* caption, UINT flags);

// Shows a message box without an owner and waits for the answer. Windows' own box pumps messages, so calls may come in: the
// caller must hold a reference to what it uses, or look it up again afterwards.
int ShowMessage(const std::wstring& text, const wchar_t* caption, UINT flags);

// The same for an outcome that is a failure; does nothing for a success.
void ShowFailure(const Outcome& outcome);

// Replaces the function and returns the previous one; null restores the system's box.
MessageFunction SetMessageFunction(MessageFunction function);

}  // namespace zelt
