#include "system/library_search.h"

#include <windows.h>

namespace zelt {

void KeepCurrentFolderOutOfSearch()
{
    SetDllDirectoryW(L"");
    // The same for SearchPath, with which some libraries look for their helpers.
    SetSearchPathMode(BASE_SEARCH_PATH_ENABLE_SAFE_SEARCHMODE | BASE_SEARCH_PATH_PERMANENT);
}

void LeaveCurrentFolder()
{
    wchar_t folder[MAX_PATH];
    const UINT length = GetSystemDirectoryW(folder, MAX_PATH);
    if (length > 0 && length < MAX_PATH) SetCurrentDirectoryW(folder);
}

std::wstring AbsolutePath(const std::wstring& path)
{
    const DWORD size = GetFullPathNameW(path.c_str(), 0, nullptr, nullptr);
    std::wstring absolute(size, L'\0');
    const DWORD length = GetFullPathNameW(path.c_str(), size, absolute.data(), nullptr);
    if (length == 0 || length >= size) return path;
    absolute.resize(length);
    return absolute;
}

}  // namespace zelt
