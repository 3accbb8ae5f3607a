#include <gtest/gtest.h>

#include "tests/system/served_packages/served_packages.h"
#include "tests/system/served_packages/simulator.h"

// The server lives while somebody holds one of its objects.
namespace zelt::test {
namespace {

constexpr DWORD kTimeToEnd = 3'000;

class ServerLifetime : public ServedPackages {
protected:
    void SetUp() override
    {
        ServedPackages::SetUp();
        Export({{kSampleManager, 0, L"Aromatics", L"Aromatics", false}});
    }
};

TEST_F(ServerLifetime, EndsSoonAfterTheLastRelease)
{
    auto package = GetPackage(L"Aromatics");
    // The manager is gone; only the package holds the server.
    EXPECT_FALSE(WaitUntilGone(kServerFile, kTimeToEnd));
    const DWORD server = ServerId();
    package.Reset();
    EXPECT_TRUE(WaitUntilGone(kServerFile));

    package = GetPackage(L"Aromatics");
    EXPECT_NE(server, ServerId());
}

// Each activation comes a little later after the previous release: before the server knows that it must end, while it
// revokes its classes, during its pause, and when it is gone.
TEST_F(ServerLifetime, LosesNoActivation)
{
    constexpr int kRounds = 20;
    constexpr DWORD kStep = 60;
    for (int round = 0; round < kRounds; ++round) {
        SCOPED_TRACE(round);
        auto package = GetPackage(L"Aromatics");
        ASSERT_TRUE(package);
        Microsoft::WRL::ComPtr<ICapeThermoCompounds> compounds;
        ASSERT_EQ(S_OK, package.As(&compounds));
        long count = 0;
        ASSERT_EQ(S_OK, compounds->GetNumCompounds(&count));
        ASSERT_EQ(3, count);
        compounds.Reset();
        package.Reset();
        Sleep(static_cast<DWORD>(round) * kStep);
    }
}

}  // namespace
}  // namespace zelt::test
