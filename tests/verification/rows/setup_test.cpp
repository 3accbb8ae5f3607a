// The setup program, run from a command line with /S, so that it shows no windows.
#include <gtest/gtest.h>

#include <filesystem>

#include "tests/system/harness/own_scope.h"
#include "tests/system/registration/processes.h"
#include "tests/system/registration/registry_snapshot.h"
#include "tests/trees.h"
#include "tests/verification/rows/lines.h"
#include "tests/verification/rows/needs.h"

namespace zelt::test {
namespace {

namespace fs = std::filesystem;

constexpr DWORD kNeedsAdministrator = 3;

class Setup : public testing::Test {
protected:
    void SetUp() override
    {
        if (!fs::exists(program)) GTEST_SKIP() << "the setup program is not here";
        // Setup requests administrator's rights if the user can have them. A test without these rights must prevent that.
        if (OwnScope() == Scope::User) SetEnvironmentVariableW(L"__COMPAT_LAYER", L"RunAsInvoker");
    }
    ~Setup() override
    {
        if (OwnScope() == Scope::User) SetEnvironmentVariableW(L"__COMPAT_LAYER", nullptr);
        if (fs::exists(folder / "Uninstall.exe")) Uninstall();
    }

    // Setup programs of this kind expect the folder as the last argument, without quotation marks.
    DWORD Install(const std::wstring& arguments) const
    {
        return RunToEnd(program, arguments + L" /D=" + folder.wstring());
    }
    // The uninstaller starts a copy of itself and ends, so this waits until the copy has removed the folder.
    void Uninstall() const
    {
        EXPECT_EQ(0u, RunToEnd(folder / "Uninstall.exe", L"/S"));
        for (int waited = 0; fs::exists(folder) && waited < 60'000; waited += 100) Sleep(100);
        EXPECT_FALSE(fs::exists(folder));
    }

    // Installs ZELT, runs doctor, creates managers for simulators of both widths, and uninstalls ZELT.
    void ServesSimulators(const std::wstring& arguments) const
    {
        const RegistrySnapshot before = TakeRegistrySnapshot();
        ASSERT_EQ(0u, Install(arguments));
        EXPECT_EQ(0u, RunToEnd(folder / "zeltctl.exe", L"doctor"));
        for (const fs::path& client : {ClientPath(), OtherClientPath()}) {
            EXPECT_EQ(0u, RunToEnd(client, L"ZELT.PropertyPackageManager")) << client;
            EXPECT_TRUE(WaitUntilGone(L"ZELT.EXE"));
        }
        EXPECT_EQ(0u, RunToEnd(OtherClientPath(), L"ZELT64.PropertyPackageManager"));
        EXPECT_TRUE(WaitUntilGone(L"ZELT64.EXE"));
        Uninstall();
        EXPECT_EQ("", Lines(Minus(before, TakeRegistrySnapshot())));
        EXPECT_EQ(static_cast<DWORD>(CO_E_CLASSSTRING), RunToEnd(ClientPath(), L"ZELT.PropertyPackageManager"));
    }

    const fs::path program = fs::absolute(SourceFile("zelt-setup.exe")).make_preferred();
    const fs::path folder = fs::temp_directory_path() / L"ZELT of setup";
};

TEST_F(Setup, ForAllServesSimulators)
{
    NEEDS("admin");
    ServesSimulators(L"/S");
}

TEST_F(Setup, ForTheUserServesSimulators)
{
    NEEDS("windows");
    NEEDS("plain");
    ServesSimulators(L"/S /CurrentUser");
}

TEST_F(Setup, ForAllIsRefusedToAPlainUser)
{
    NEEDS("plain");
    const RegistrySnapshot before = TakeRegistrySnapshot();
    EXPECT_EQ(kNeedsAdministrator, Install(L"/S"));
    EXPECT_FALSE(fs::exists(folder));
    EXPECT_EQ("", Lines(Minus(TakeRegistrySnapshot(), before)));
}

}  // namespace
}  // namespace zelt::test
