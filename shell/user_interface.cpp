#include "shell/user_interface.h"

#include "shell/log_viewer/log_viewer.h"
#include "shell/main_window/package_manager_dialog.h"

namespace zelt {

const UserInterface kUserInterface = {CPackageManagerDlg::Show, OpenLogViewer};

}  // namespace zelt
