#include "shell/rights_warning.h"

#include <windows.h>

#include "com/failure.h"
#include "system/edition.h"
#include "system/dialogs/message_box.h"
#include "system/owners.h"

namespace zelt {
namespace {

DWORD WINAPI Show(void*)
{
    com::Attempt([] {
        ShowMessage(
            L"Another ZELT is running, one of the two as administrator. Each keeps its own list of packages, and the "
            L"one that stores it last wins. Simulators use the ZELT that has their own rights. Close one of the two.",
            kThisEdition.name, MB_OK | MB_ICONWARNING | MB_TOPMOST);
    });
    return 0;
}

}  // namespace

void WarnOfOtherRights() { const UniqueHandle thread(CreateThread(nullptr, 0, Show, nullptr, 0, nullptr)); }

}  // namespace zelt
