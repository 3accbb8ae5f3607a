// Edit of one of ZELT's managers, which forwards the call to the foreign managers of the exported packages.
#include "packages/package_manager_fixture.h"
#include "recorded_messages.h"

namespace zelt::test {
namespace {

class ManagerEdit : public PackageManagerTest {};

INSTANTIATE_TEST_SUITE_P(Each, ManagerEdit, testing::ValuesIn(kManagers),
                         [](const auto& info) { return std::string(info.param.name); });

TEST_P(ManagerEdit, IsForwardedOnlyIfTheUserWantsThat)
{
    Export(kind.fromManager, L"Aromatics", kForeignManager);
    ComPtr<ICapeUtilities> utilities;
    ASSERT_EQ(S_OK, manager.As(&utilities));
    script.edits = {S_OK};
    EXPECT_EQ(E_NOTIMPL, utilities->Edit());
    EXPECT_TRUE(script.calls.empty());

    // Stores the option as another program does, for example zeltctl.
    LogOptions stored;
    stored.root = TheLogOptions().root;
    stored.forwardManagerEdit = true;
    ASSERT_TRUE(stored.Save(LogOption::ForwardManagerEdit));
    EXPECT_EQ(S_OK, utilities->Edit());
    EXPECT_EQ((std::vector<std::string>{"Initialize", "Edit", "Terminate", "released"}), script.calls);
}

TEST_P(ManagerEdit, IsForwardedToEachManagerOnce)
{
    TheLogOptions().forwardManagerEdit = true;
    ComPtr<ICapeUtilities> utilities;
    ASSERT_EQ(S_OK, manager.As(&utilities));
    Export(kind.alone, L"Alone", kStandAlone);
    Export(kind.foreign, L"Foreign", kForeignManager);
    EXPECT_EQ(E_NOTIMPL, utilities->Edit()) << "no manager";
    EXPECT_TRUE(script.calls.empty());

    Export(kind.fromManager, L"A", kForeignManager);
    Export(kind.fromManager, L"B", kOtherManager);
    Export(kind.fromManager, L"C", kForeignManager);
    struct Case {
        std::vector<HRESULT> edits;
        HRESULT result;
    };
    const Case cases[] = {
        {{S_OK, S_OK}, S_OK},
        {{S_OK, S_FALSE}, S_OK},
        {{S_FALSE, S_OK}, S_OK},
        {{S_FALSE, S_FALSE}, S_FALSE},
        {{E_NOTIMPL, S_OK}, S_OK},
        {{S_FALSE, E_NOTIMPL}, S_FALSE},
        {{E_NOTIMPL, E_NOTIMPL}, E_NOTIMPL},
    };
    const std::vector<std::string> twice{"Initialize", "Edit", "Terminate", "released",
                                         "Initialize", "Edit", "Terminate", "released"};
    for (const Case& each : cases) {
        script.calls.clear();
        script.edits = each.edits;
        EXPECT_EQ(each.result, utilities->Edit());
        EXPECT_EQ(twice, script.calls);
    }
    script = {};
    script.lacksUtilities = true;
    EXPECT_EQ(E_NOTIMPL, utilities->Edit());
    EXPECT_EQ((std::vector<std::string>{"released", "released"}), script.calls);
}

TEST_P(ManagerEdit, FailsWithTheManagersWords)
{
    TheLogOptions().forwardManagerEdit = true;
    ComPtr<ICapeUtilities> utilities;
    ASSERT_EQ(S_OK, manager.As(&utilities));
    Export(kind.fromManager, L"A", kForeignManager);
    Export(kind.fromManager, L"B", kOtherManager);
    script.description = L"The data base is locked";
    script.edits = {static_cast<HRESULT>(ECapeUnknownHR), S_OK};
    RecordedMessages messages;
    EXPECT_EQ(static_cast<HRESULT>(ECapeUnknownHR), utilities->Edit());
    EXPECT_EQ((std::vector<std::string>{"Initialize", "Edit", "Terminate", "released"}), script.calls);
    EXPECT_EQ(L"The data base is locked", ErrorText(&ECapeUser::get_description));
    EXPECT_EQ(L"Edit", ErrorText(&ECapeUser::get_scope));
    EXPECT_EQ(L"ICapeUtilities", ErrorText(&ECapeUser::get_interfaceName));

    script = {};
    script.fault = true;
    EXPECT_EQ(kCreationFailed, utilities->Edit());
    EXPECT_TRUE(ErrorText(&ECapeUser::get_description).starts_with(kind.initializeFailure));
    while (ExportedPackages().Count()) ExportedPackages().Remove(0);
    Export(kind.fromManager, L"Gone", kNowhere);
    EXPECT_EQ(kCreationFailed, utilities->Edit());
    EXPECT_EQ(kind.createManagerFailure + L"REGDB_E_CLASSNOTREG", ErrorText(&ECapeUser::get_description));
    EXPECT_TRUE(messages.All().empty()) << "nobody is asked whether to remove a package";
}

}  // namespace
}  // namespace zelt::test
