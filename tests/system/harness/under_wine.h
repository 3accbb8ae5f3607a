// Whether the test runs under Wine, which differs from Windows in a few things that tests see.
#pragma once

#include <windows.h>

namespace zelt::test {

inline bool UnderWine() { return GetProcAddress(GetModuleHandleW(L"ntdll.dll"), "wine_get_version") != nullptr; }

}  // namespace zelt::test
