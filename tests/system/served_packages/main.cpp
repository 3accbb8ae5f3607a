// Entry point of the tests of served packages and of zeltctl. They register the server and the samples on this machine and
// change the user's settings, so run them in their own Wine prefix or virtual machine. The test process is a client itself.
//   served_packages_tests [gtest's options]     registers, tests, unregisters
//   served_packages_tests --register            only registers
//   served_packages_tests --unregister          only unregisters
// With ZELT_TEST_REGISTERED in the environment, the first form only tests.
#include <gtest/gtest.h>
#include <windows.h>
#include <objbase.h>

#include <cstdlib>
#include <string_view>

#include "tests/system/served_packages/served_packages.h"

namespace {

class Registered final : public testing::Environment {
    void SetUp() override { zelt::test::RegisterServerAndSamples(); }
    void TearDown() override { zelt::test::UnregisterServerAndSamples(); }
};

}  // namespace

int main(int argc, char** argv)
{
    testing::InitGoogleTest(&argc, argv);
    if (FAILED(CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED))) return 1;
    const std::string_view action = argc > 1 ? argv[1] : "";
    int result = 0;
    if (action == "--register" || action == "--unregister") {
        action == "--register" ? zelt::test::RegisterServerAndSamples() : zelt::test::UnregisterServerAndSamples();
        result = testing::UnitTest::GetInstance()->Failed() ? 1 : 0;
    } else {
        if (!std::getenv("ZELT_TEST_REGISTERED")) testing::AddGlobalTestEnvironment(new Registered);
        result = RUN_ALL_TESTS();
    }
    CoUninitialize();
    return result;
}
