// Entry point of the window tests. They register classes for the whole machine and change the user's settings, so run
// them in their own Wine prefix or virtual machine.
#include <gtest/gtest.h>
#include <windows.h>
#include <objbase.h>

#include <string>

#include "guard/fault_guard.h"
#include "shell/crash_dump.h"
#include "system/owners.h"
#include "system/registry.h"
#include "tests/system/harness/under_wine.h"

namespace {

// Wine leaves window frames to a window manager, which a bare display lacks. This makes Wine draw them itself.
void DrawFramesUnderWine()
{
    if (!zelt::test::UnderWine()) return;
    zelt::RegistryKey key;
    if (key.Create({}, L"Software\\Wine\\AppDefaults\\ZELT.EXE\\X11 Driver") == ERROR_SUCCESS) {
        key.WriteString(L"Managed", L"N");
    }
}

// The tests of dumps make this program fault, not ZELT.EXE: Wine continues to hand out the classes of a server that a fault
// has ended.
int WaitForFault(const std::string& event)
{
    zelt::PrepareGuards();
    if (!zelt::WriteDumpsOfFaults()) return 1;
    const zelt::UniqueHandle prepared(OpenEventA(EVENT_MODIFY_STATE, FALSE, event.c_str()));
    SetEvent(prepared.get());
    Sleep(INFINITE);
    return 0;
}

}  // namespace

int main(int argc, char** argv)
{
    if (argc == 3 && std::string(argv[1]) == "--wait-for-fault") return WaitForFault(argv[2]);
    testing::InitGoogleTest(&argc, argv);
    if (FAILED(CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED))) return 1;
    DrawFramesUnderWine();
    const int result = RUN_ALL_TESTS();
    CoUninitialize();
    return result;
}
