// CAboutDlg: the program's name, version and purpose.
#pragma once

#include "system/dialogs/dialog.h"

namespace zelt {

class CAboutDlg final : public Dialog {
public:
    void Run(HWND owner);

private:
    bool OnInit() override;
};

}  // namespace zelt
