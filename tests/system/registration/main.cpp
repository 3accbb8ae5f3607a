// Entry point of the registration tests. They register and unregister the server on this machine, so run them in their
// own Wine prefix or virtual machine.
#include <gtest/gtest.h>
#include <windows.h>

int main(int argc, char** argv)
{
    testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
