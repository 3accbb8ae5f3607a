#include <gtest/gtest.h>
#include <windows.h>
#include <objbase.h>

int main(int argc, char** argv)
{
    testing::InitGoogleTest(&argc, argv);
    if (FAILED(CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED))) return 1;
    const int result = RUN_ALL_TESTS();
    CoUninitialize();
    return result;
}
