#include <gtest/gtest.h>

#include <cape-open.h>
#include <comutil.h>
#include <wrl/client.h>

#include <thread>

#include "log/log_options.h"
#include "res/resource.h"
#include "packages/exported_package_list.h"
#include "tests/windows/controls.h"
#include "tests/windows/program.h"
#include "tests/windows/registered_components.h"
#include "tests/windows/screenshot.h"
#include "tests/system/harness/stored_options.h"
#include "packages/property_package_manager.h"

// The prompt when a logged package has been released, and the viewer that opens if the user answers Yes. Registers the server.
namespace {

using namespace zelt;
using namespace zelt::test;
using Microsoft::WRL::ComPtr;

class LogPrompt : public testing::Test {
protected:
    void SetUp() override
    {
        const Program registration(L"/RegServer");
        ASSERT_TRUE(registration.EndsBy(60'000));
        ASSERT_EQ(0u, registration.ExitCode());
        ExportedPackageList stored;
        auto package = std::make_unique<ExportedPackage>();
        ASSERT_EQ(S_OK, CLSIDFromProgID(L"ZeltSample.PropertyPackageManager", &package->classId));
        package->kind = PackageKind::PropertyPackage11FromManager;
        package->sourceName = package->exportedName = L"Aromatics";
        package->loggingEnabled = true;
        stored.Append(std::move(package));
        EXPECT_TRUE(stored.Save());
        LogOptions options;
        options.autoLogLocation = true;
        options.promptOpenLog = true;
        Store(options);
    }
    void TearDown() override { Program(L"/UnregServer").EndsBy(60'000); }

    // Creates and releases the package, as a simulator does.
    static void CreateAndRelease(HRESULT& result)
    {
        CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);
        {
            ComPtr<ICapeThermoPropertyPackageManager> manager;
            result =
                CoCreateInstance(kPropertyPackageManagerClass, nullptr, CLSCTX_LOCAL_SERVER, IID_PPV_ARGS(&manager));
            ComPtr<IDispatch> package;
            if (manager) result = manager->GetPropertyPackage(_bstr_t(L"Aromatics"), &package);
        }
        CoUninitialize();
    }

    CleanSettings settings;
    RegisteredComponents components;
};

TEST_F(LogPrompt, YesOpensTheViewerOnTheLogAndNoDoesNot)
{
    Program program;
    const HWND window = program.WaitForWindow(L"ZELT Packages:");
    ASSERT_NE(nullptr, window);
    for (const int answer : {IDNO, IDYES}) {
        HRESULT result = E_FAIL;
        std::thread simulator([&result] { CreateAndRelease(result); });
        const HWND box = program.WaitForWindow(L"Object terminated:");
        EXPECT_TRUE(box && KeepScreenshot(box, "log-prompt"));
        const std::wstring question = program.AnswerBox(L"Object terminated:", answer);
        simulator.join();
        ASSERT_EQ(S_OK, result);
        const std::wstring begin = L"Open log file \"";
        ASSERT_EQ(begin, question.substr(0, begin.size()));
        const std::wstring path = question.substr(begin.size(), question.rfind(L'"') - begin.size());
        const std::wstring title = L"Log file " + path.substr(path.rfind(L'\\') + 1) + L":";
        if (answer == IDNO) {
            Sleep(500);
            EXPECT_EQ(nullptr, program.FindVisible(title));
        } else {
            const HWND viewer = program.WaitForWindow(title);
            ASSERT_NE(nullptr, viewer);
            const RemoteTree tree(program.Process(), GetDlgItem(viewer, kLogTree));
            const std::wstring first = tree.Text(tree.Next(TVGN_ROOT));
            EXPECT_EQ(0u, first.find(L"ZELT Logging started at ")) << first.c_str();
            PostMessageW(viewer, WM_CLOSE, 0, 0);
            EXPECT_TRUE(program.WaitUntilGone(viewer));
        }
        DeleteFileW(path.c_str());
    }
    PostCommand(window, kCommandClose);
    EXPECT_TRUE(program.EndsBy(10'000));
}

}  // namespace
