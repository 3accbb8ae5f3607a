#include <gtest/gtest.h>

#include <cape-open.h>
#include <comutil.h>
#include <wrl/client.h>

#include <thread>

#include "res/resource.h"
#include "packages/exported_package_list.h"
#include "tests/windows/controls.h"
#include "tests/windows/program.h"
#include "tests/windows/registered_components.h"
#include "tests/windows/screenshot.h"
#include "packages/property_package_manager.h"

// When a simulator's call changes the list of packages, the main window shows the change. Registers the server.
namespace {

using namespace zelt;
using namespace zelt::test;

class Refresh : public testing::Test {
protected:
    void SetUp() override
    {
        const Program registration(L"/RegServer");
        ASSERT_TRUE(registration.EndsBy(60'000));
        ASSERT_EQ(0u, registration.ExitCode());
        ExportedPackageList stored;
        for (const wchar_t* name : {L"Stays", L"Cannot be made"}) {
            auto package = std::make_unique<ExportedPackage>();
            package->classId = {0x7E57EEEE, 0, 0, {}};
            package->kind = PackageKind::PropertyPackage11StandAlone;
            package->sourceName = package->exportedName = name;
            stored.Append(std::move(package));
        }
        EXPECT_TRUE(stored.Save());
    }
    void TearDown() override { Program(L"/UnregServer").EndsBy(60'000); }

    CleanSettings settings;
};

TEST_F(Refresh, ARemovalAtTheManagersPromptLeavesTheWindow)
{
    Program program;
    const HWND window = program.WaitForWindow(L"ZELT Packages:");
    ASSERT_NE(nullptr, window);
    const RemoteList list(program.Process(), GetDlgItem(window, kPackageList));
    ASSERT_EQ(2, list.Count());
    HRESULT result = S_OK;
    std::thread simulator([&] {
        CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);
        {
            Microsoft::WRL::ComPtr<ICapeThermoPropertyPackageManager> manager;
            result =
                CoCreateInstance(kPropertyPackageManagerClass, nullptr, CLSCTX_LOCAL_SERVER, IID_PPV_ARGS(&manager));
            Microsoft::WRL::ComPtr<IDispatch> package;
            if (manager) result = manager->GetPropertyPackage(_bstr_t(L"Cannot be made"), &package);
        }
        CoUninitialize();
    });
    const HWND box = program.WaitForWindow(L"ZELT:");
    EXPECT_TRUE(box && KeepScreenshot(box, "removal-prompt"));
    const std::wstring text = program.AnswerBox(L"ZELT:", IDYES);
    simulator.join();
    EXPECT_EQ(
        L"Failed to create stand-alone property package: REGDB_E_CLASSNOTREG\r\n"
        L"Remove from list of exported property packages?",
        text);
    EXPECT_EQ(static_cast<HRESULT>(0x8004050F), result);
    EXPECT_EQ(1, list.Count());
    EXPECT_EQ(L"Stays", list.Text(0, 0));
    PostCommand(window, kCommandClose);
    EXPECT_TRUE(program.EndsBy(10'000));
}

}  // namespace
