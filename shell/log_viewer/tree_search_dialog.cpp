#include "shell/log_viewer/tree_search_dialog.h"

#include "res/resource.h"

namespace zelt {

bool CTreeSearchDlg::Run(HWND owner) { return RunModal(kDialogSearch, owner) == IDOK; }

bool CTreeSearchDlg::OnInit()
{
    SetDlgItemTextW(Window(), kSearchText, search.text.c_str());
    CheckDlgButton(Window(), kSearchIgnoreCase, search.ignoreCase ? BST_CHECKED : BST_UNCHECKED);
    CheckDlgButton(Window(), kSearchWholeItem, search.wholeItem ? BST_CHECKED : BST_UNCHECKED);
    SendDlgItemMessageW(Window(), kSearchText, EM_LIMITTEXT, 0, 0);
    SendDlgItemMessageW(Window(), kSearchText, EM_SETSEL, 0, -1);
    return true;
}

bool CTreeSearchDlg::OnCommand(int id, int notification)
{
    if (id == IDOK && !Confirm()) return true;
    return Dialog::OnCommand(id, notification);
}

bool CTreeSearchDlg::Confirm()
{
    const std::wstring text = ItemText(kSearchText);
    if (text.empty()) {
        ShowBox(L"Search string cannot be empty", L"Search:", MB_OK | MB_ICONERROR);
        SetFocus(Item(kSearchText));
        return false;
    }
    search.text = text;
    search.ignoreCase = IsDlgButtonChecked(Window(), kSearchIgnoreCase) == BST_CHECKED;
    search.wholeItem = IsDlgButtonChecked(Window(), kSearchWholeItem) == BST_CHECKED;
    search.confirmed = true;
    return true;
}

}  // namespace zelt
