#include "shell/main_window/help.h"

#include <string>

#include "com/type_info.h"

namespace zelt {
namespace {

// The class of the HTML Help control. Its server is the library that exports HtmlHelpW.
constexpr wchar_t kServerKey[] = L"CLSID\\{ADB880A6-D8FF-11CF-9377-00AA003B7A11}\\InprocServer32";

constexpr UINT kDisplayTopic = 0, kCloseAll = 0x12;

using HtmlHelpFunction = HWND(WINAPI*)(HWND caller, const wchar_t* file, UINT command, DWORD_PTR data);

HtmlHelpFunction function = nullptr;

HtmlHelpFunction LocateHtmlHelp()
{
    wchar_t path[MAX_PATH];
    DWORD size = sizeof path;
    // RRF_RT_REG_SZ also accepts a REG_EXPAND_SZ value, which RegGetValueW expands.
    if (RegGetValueW(HKEY_CLASSES_ROOT, kServerKey, nullptr, RRF_RT_REG_SZ, nullptr, path, &size) != ERROR_SUCCESS) {
        return nullptr;
    }
    // Looks for a bare file name in the system's folder only.
    const bool bare = std::wstring(path).find_first_of(L"\\/") == std::wstring::npos;
    const HMODULE library = LoadLibraryExW(path, nullptr, bare ? LOAD_LIBRARY_SEARCH_SYSTEM32 : 0);
    if (!library) return nullptr;
    return reinterpret_cast<HtmlHelpFunction>(reinterpret_cast<void*>(GetProcAddress(library, "HtmlHelpW")));
}

}  // namespace

void OpenHelp(HWND owner)
{
    const std::wstring file = com::BesideThisModule(L"BRIX.chm");
    if (!function) function = LocateHtmlHelp();
    if (function && function(owner, (file + L"::/utils/zelt.htm").c_str(), kDisplayTopic, 0)) return;
    MessageBoxW(owner, (L"Failed to load HTML Help file " + file).c_str(), L"Error starting Help:",
                MB_OK | MB_ICONERROR);
}

void CloseHelp()
{
    if (function) function(nullptr, nullptr, kCloseAll, 0);
}

}  // namespace zelt
