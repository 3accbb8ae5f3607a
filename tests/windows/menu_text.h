// A menu as text, one line per item: "x" if it is checked, its command, its text, and "(grey)" if it cannot be chosen;
// "-" for a separator. A submenu has no command; its items follow its line, indented.
#pragma once

#include <windows.h>

#include <string>

namespace zelt::test {

inline std::wstring MenuText(HMENU menu, const std::wstring& indent = {})
{
    std::wstring lines;
    for (int position = 0; position < GetMenuItemCount(menu); ++position) {
        wchar_t text[256] = L"";
        MENUITEMINFOW item = {};
        item.cbSize = sizeof item;
        item.fMask = MIIM_FTYPE | MIIM_STATE | MIIM_ID | MIIM_SUBMENU | MIIM_STRING;
        item.dwTypeData = text;
        item.cch = 256;
        if (!GetMenuItemInfoW(menu, static_cast<UINT>(position), TRUE, &item)) return lines + L"(cannot be read)\n";
        lines += indent;
        if (item.fType & MFT_SEPARATOR) {
            lines += L"-\n";
            continue;
        }
        if (item.fState & MFS_CHECKED) lines += L"x ";
        if (!item.hSubMenu) lines += std::to_wstring(item.wID) + L' ';
        lines += text;
        lines += item.fState & MFS_GRAYED ? L" (grey)\n" : L"\n";
        if (item.hSubMenu) lines += MenuText(item.hSubMenu, indent + L' ');
    }
    return lines;
}

}  // namespace zelt::test
