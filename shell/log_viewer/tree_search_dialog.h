// The search dialog, and what it was confirmed with last. The state is the viewer's and outlives the dialog.
#pragma once

#include <windows.h>

#include <string>

namespace zelt {

struct TreeSearch {
    std::wstring text;
    bool ignoreCase = false;
    bool wholeItem = false;
    bool forward = true;
    bool confirmed = false;  // a text has been entered
};

class CTreeSearchDlg {
public:
    explicit CTreeSearchDlg(TreeSearch& search) : search(search) {}

    // Modal. True when the user confirmed.
    bool Run(HWND owner);

private:
    static INT_PTR CALLBACK Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
    void Initialise(HWND window) const;
    bool Confirm(HWND window);

    TreeSearch& search;
};

}  // namespace zelt
