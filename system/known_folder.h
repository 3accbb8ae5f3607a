// The shell's folders.
#pragma once

#include <windows.h>
#include <shlobj.h>

#include <string>

namespace zelt {

// The path of a known folder (FOLDERID_…), with KF_FLAG_ flags.
[[nodiscard]] HRESULT KnownFolder(REFKNOWNFOLDERID id, DWORD flags, std::wstring& path);

}  // namespace zelt
