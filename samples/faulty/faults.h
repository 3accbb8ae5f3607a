// The menu of faults: what a badly written package may do to the process that loads it. A test selects a fault by name
// through the standard's interfaces. samples/README.md documents the names.
#pragma once

#include <windows.h>

#include <string_view>

namespace zelt::sample {

// Commits the fault with this name (case-sensitive); returns if the menu does not contain the name, or if the fault
// leaves the thread running. Names with a value:
//   raise:CODE    raises the structured exception CODE (hexadecimal), as a continuable one
//   sleep:MS      sleeps MS milliseconds, then returns
void CommitFault(std::wstring_view name);

// The code that "error:CODE" or "silent:CODE" requests; S_OK for any other name. Sets `silent` if the name is
// "silent:CODE": the failure then has an empty description.
HRESULT RequestedError(std::wstring_view name, bool& silent);

}  // namespace zelt::sample
