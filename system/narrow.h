// Conversion between wide strings and 8-bit text. Logs use the system's ANSI code page; the list of packages in the registry
// uses the calling thread's. Characters that the code page lacks are lost, as both formats intend.
#pragma once

#include <windows.h>
#include <wtypes.h>

#include <string>
#include <string_view>

namespace zelt {

// Appends `text` in `codePage` to `out`. Embedded NULs are converted like any other character.
void AppendNarrow(std::string& out, std::wstring_view text, UINT codePage = CP_ACP);

std::string Narrow(std::wstring_view text, UINT codePage = CP_ACP);
std::wstring Widen(std::string_view text, UINT codePage = CP_ACP);

// The text of a BSTR up to its first NUL; empty for a null one.
inline std::wstring_view TextOf(BSTR text) { return text ? std::wstring_view(text) : std::wstring_view(); }

}  // namespace zelt
