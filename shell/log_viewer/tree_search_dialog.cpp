#include "shell/log_viewer/tree_search_dialog.h"

#include "com/failure.h"
#include "com/type_info.h"
#include "res/resource.h"

namespace zelt {

bool CTreeSearchDlg::Run(HWND owner)
{
    return DialogBoxParamW(com::ThisModule(), MAKEINTRESOURCEW(kDialogSearch), owner, Procedure,
                           reinterpret_cast<LPARAM>(this)) == IDOK;
}

INT_PTR CALLBACK CTreeSearchDlg::Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam)
{
    auto* const dialog = reinterpret_cast<CTreeSearchDlg*>(GetWindowLongPtrW(window, DWLP_USER));
    switch (message) {
        case WM_INITDIALOG:
            SetWindowLongPtrW(window, DWLP_USER, lParam);
            reinterpret_cast<CTreeSearchDlg*>(lParam)->Initialise(window);
            return TRUE;
        case WM_COMMAND:
            if (LOWORD(wParam) == IDOK &&
                com::NoThrow([&] { return dialog->Confirm(window) ? S_OK : S_FALSE; }) == S_OK) {
                EndDialog(window, IDOK);
            }
            if (LOWORD(wParam) == IDCANCEL) EndDialog(window, IDCANCEL);
            return TRUE;
        default: return FALSE;
    }
}

void CTreeSearchDlg::Initialise(HWND window) const
{
    SetDlgItemTextW(window, kSearchText, search.text.c_str());
    CheckDlgButton(window, kSearchIgnoreCase, search.ignoreCase ? BST_CHECKED : BST_UNCHECKED);
    CheckDlgButton(window, kSearchWholeItem, search.wholeItem ? BST_CHECKED : BST_UNCHECKED);
    SendDlgItemMessageW(window, kSearchText, EM_LIMITTEXT, 0, 0);
    SendDlgItemMessageW(window, kSearchText, EM_SETSEL, 0, -1);
}

bool CTreeSearchDlg::Confirm(HWND window)
{
    const HWND edit = GetDlgItem(window, kSearchText);
    std::wstring text(static_cast<std::size_t>(GetWindowTextLengthW(edit)) + 1, L'\0');
    text.resize(static_cast<std::size_t>(GetWindowTextW(edit, text.data(), static_cast<int>(text.size()))));
    if (text.empty()) {
        MessageBoxW(window, L"Search string cannot be empty", L"Search:", MB_OK | MB_ICONERROR);
        SetFocus(edit);
        return false;
    }
    search.text = text;
    search.ignoreCase = IsDlgButtonChecked(window, kSearchIgnoreCase) == BST_CHECKED;
    search.wholeItem = IsDlgButtonChecked(window, kSearchWholeItem) == BST_CHECKED;
    search.confirmed = true;
    return true;
}

}  // namespace zelt
