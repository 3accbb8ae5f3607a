// Entry of the registration tests. They register and unregister the server on this machine, so they belong into a Wine
// prefix or a virtual machine of their own.
#include <gtest/gtest.h>
#include <windows.h>

int main(int argc, char** argv)
{
    testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
