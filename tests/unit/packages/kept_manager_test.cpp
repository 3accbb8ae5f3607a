// A foreign manager that is kept as long as its package.
#include "packages/package_manager_fixture.h"
#include "recorded_messages.h"

namespace zelt::test {
namespace {

class KeptManager : public PackageManagerTest {};

INSTANTIATE_TEST_SUITE_P(Each, KeptManager, testing::ValuesIn(kManagers),
                         [](const auto& info) { return std::string(info.param.name); });

TEST_P(KeptManager, LivesAsLongAsItsPackageIfTheUserWantsThat)
{
    TheLogOptions().keepManager = true;
    Export(kind.fromManager, L"Aromatics", kForeignManager);
    ASSERT_EQ(S_OK, Get(L"Aromatics"));
    const std::vector<std::string> opened{"Initialize", "get"};
    EXPECT_EQ(opened, script.calls);
    // Each package has its own manager.
    ComPtr<IDispatch> first = package;
    ASSERT_EQ(S_OK, Get(L"Aromatics"));
    EXPECT_EQ((std::vector<std::string>{"Initialize", "get", "Initialize", "get"}), script.calls);
    script.calls.clear();
    first.Reset();
    EXPECT_EQ((std::vector<std::string>{"Terminate", "released"}), script.calls);
    package.Reset();
    EXPECT_EQ((std::vector<std::string>{"Terminate", "released", "Terminate", "released"}), script.calls);
    EXPECT_EQ((std::vector<std::string>{"package", "Terminate", "package", "Terminate"}), script.ends);
}

TEST_P(KeptManager, GoesIfItHasGivenNoPackage)
{
    TheLogOptions().keepManager = true;
    RecordedMessages messages(IDNO);
    Export(kind.fromManager, L"Aromatics", kForeignManager);
    const std::vector<std::string> all{"Initialize", "get", "Terminate", "released"};
    script.get = E_FAIL;
    EXPECT_EQ(kCreationFailed, Get(L"Aromatics"));
    EXPECT_EQ(all, script.calls);
    script = {};
    script.answersNull = true;
    EXPECT_EQ(kCreationFailed, Get(L"Aromatics"));
    EXPECT_EQ(all, script.calls);
    EXPECT_EQ(2u, messages.All().size());
}

}  // namespace
}  // namespace zelt::test
