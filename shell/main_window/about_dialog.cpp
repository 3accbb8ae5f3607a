#include "shell/main_window/about_dialog.h"

#include "system/narrow.h"
#include "res/resource.h"
#include "shell/module.h"

namespace zelt {

void CAboutDlg::Run(HWND owner) { RunModal(kAboutDialog, owner); }

bool CAboutDlg::OnInit()
{
    const std::wstring version = Widen(CZELTModule::Instance()->VersionText());
    SetDlgItemTextW(Window(), kVersionText, (L"Version " + version).c_str());
    return true;
}

}  // namespace zelt
