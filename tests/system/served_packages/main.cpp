// Entry of the tests of served packages. They register the server and the samples on this machine and change the user's
// settings, so they belong into a Wine prefix or a virtual machine of their own. The test process is a client itself.
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
