// The menu of faults: each is something that a badly written package does to the process that loads it. Selected by name
// where a test can reach it through the standard's interfaces. The names are documented in samples/README.md.
#pragma once

#include <windows.h>

#include <string_view>

namespace zelt::sample {

// Commits the fault of this name, compared with regard to case; returns when the name is none of the menu's, or when the
// fault leaves the thread running. Names with a value:
//   raise:CODE    raises the structured exception CODE, hexadecimal, continuable unless the code says otherwise
//   sleep:MS      sleeps so many milliseconds, then carries on
void CommitFault(std::wstring_view name);

// What "error:CODE" and "silent:CODE" ask for: S_OK for any other name. With `silent` the failure has no description.
HRESULT RequestedError(std::wstring_view name, bool& silent);

}  // namespace zelt::sample
