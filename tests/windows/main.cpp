// Entry point of the window tests. They register classes for the whole machine and change the user's settings, so run
// them in their own Wine prefix or virtual machine.
#include <gtest/gtest.h>
#include <windows.h>
#include <objbase.h>

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

}  // namespace

int main(int argc, char** argv)
{
    testing::InitGoogleTest(&argc, argv);
    if (FAILED(CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED))) return 1;
    DrawFramesUnderWine();
    const int result = RUN_ALL_TESTS();
    CoUninitialize();
    return result;
}
