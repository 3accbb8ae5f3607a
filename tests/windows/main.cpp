// Entry of the window tests. They write the classes of this machine and the user's settings, so they belong into a Wine
// prefix or a virtual machine of their own.
#include <gtest/gtest.h>
#include <windows.h>
#include <objbase.h>

#include "system/registry.h"

namespace {

// Wine leaves the frames of windows to a window manager, which a bare display lacks: let it draw them itself.
void DrawFramesUnderWine()
{
    if (!GetProcAddress(GetModuleHandleW(L"ntdll.dll"), "wine_get_version")) return;
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
