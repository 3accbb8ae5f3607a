// The line above the list of errors where the user enters what to filter them by, with the number of errors found. Uses three
// controls of the dialog, which are hidden at first; owns nothing.
#pragma once

#include <windows.h>

#include <string>

namespace zelt {

class Dialog;

class FilterBar {
public:
    explicit FilterBar(Dialog& dialog) : dialog(dialog) {}

    void Attach(HWND labelControl, HWND edit, HWND countControl);
    void Show(bool wanted) const;
    // The height that it takes above the list.
    int Height() const;
    void Place(const RECT& place) const;

    bool HasFocus() const { return edit && GetFocus() == edit; }
    void Focus() const;
    std::wstring Text() const;
    void Clear() const { SetWindowTextW(edit, L""); }
    // "3 of 25"; an empty text when nothing is filtered.
    void SetCount(const std::wstring& text) const { SetWindowTextW(count, text.c_str()); }

private:
    Dialog& dialog;
    HWND label = nullptr;
    HWND edit = nullptr;
    HWND count = nullptr;
};

}  // namespace zelt
