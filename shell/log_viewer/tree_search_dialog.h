// The search dialog, and the search that the user confirmed last, which the viewer keeps from one dialog to the next.
#pragma once

#include <windows.h>

#include <string>

#include "system/dialogs/dialog.h"

namespace zelt {

struct TreeSearch {
    std::wstring text;
    bool ignoreCase = false;
    bool wholeItem = false;
    bool forward = true;
    bool confirmed = false;  // a text has been entered
};

class CTreeSearchDlg final : public Dialog {
public:
    explicit CTreeSearchDlg(TreeSearch& search) : search(search) {}

    // Modal. True when the user confirmed.
    bool Run(HWND owner);

private:
    bool OnInit() override;
    bool OnCommand(int id, int notification) override;
    bool Confirm();

    TreeSearch& search;
};

}  // namespace zelt
