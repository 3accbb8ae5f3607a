// zeltctl.exe itself, beside ZELT.EXE as installed: its output, its exit codes, and a moved installation.
#include <gtest/gtest.h>

#include "system/narrow.h"
#include "tests/system/exports/windows_commands.h"
#include "tests/system/harness/text_file.h"
#include "tests/trees.h"

namespace zelt::test {
namespace {

namespace fs = std::filesystem;

class ZeltctlProgram : public Zeltctl {
protected:
    void SetUp() override
    {
        Zeltctl::SetUp();
        folder = fs::temp_directory_path() / L"zeltctl o'test 100%";
        fs::create_directories(folder);
        fs::copy_file(BuiltFile("ctl/zeltctl.exe"), folder / "zeltctl.exe", fs::copy_options::overwrite_existing);
        fs::copy_file(BuiltFile("shell/ZELT.EXE"), folder / "ZELT.EXE", fs::copy_options::overwrite_existing);
    }
    void TearDown() override
    {
        // Replaces any registration of this folder's ZELT with one of the built ZELT.
        Register(BuiltFile("shell/ZELT.EXE"), L"/UnregServerPerUser");
        Register(BuiltFile("shell/ZELT.EXE"), L"/RegServer");
        std::error_code ignored;
        fs::remove_all(folder, ignored);
        Zeltctl::TearDown();
    }

    static void Register(const fs::path& server, const std::wstring& action)
    {
        const std::wstring program = L'"' + fs::absolute(server).make_preferred().wstring() + L"\" ";
        EXPECT_EQ(0u, RunProcess(program + action, {}, 60'000));
    }

    // Standard output and error go to one file, a new one for each run, because the console's process may hold the file open a
    // little longer than the program does.
    struct Outcome {
        DWORD code;
        std::string output;
    };
    Outcome Run(const std::wstring& words)
    {
        const std::string file = (folder / ("output" + std::to_string(++runs) + ".txt")).string();
        const auto code = RunProcess(L'"' + (folder / "zeltctl.exe").wstring() + L"\" " + words, file, 30'000);
        return {code.value_or(static_cast<DWORD>(-1)), ReadWholeFile(file)};
    }

    std::string Healthy(const char* whom) const
    {
        return "healthy: " + Narrow((folder / "ZELT.EXE").wstring(), CP_UTF8) + " 1.0.0.0, registered for " + whom +
               '\n';
    }

    fs::path folder;
    int runs = 0;
};

TEST_F(ZeltctlProgram, RunsItsCommands)
{
    EXPECT_EQ(0u, Run(L"--help").code);
    EXPECT_EQ("zeltctl 1.0.0\n", Run(L"--version").output);
    const Outcome added = Run(L"add \"Sample property package\" --name \"Caf\u00E9\" --log");
    EXPECT_EQ(0u, added.code);
    EXPECT_EQ("Caf\xC3\xA9  32-bit  PP 1.1  log on   Sample property package {26100AA3-1793-4E26-BD43-EB046B57CFB0}\n",
              added.output);
    EXPECT_EQ(added.output, Run(L"list").output);
    EXPECT_EQ(2u, Run(L"remove Steam").code);
    EXPECT_EQ(2u, Run(L"nonsense").code);
    EXPECT_EQ(3u, Run(L"log show C:\\nothing.zlg").code);
    EXPECT_EQ(0u, Run(L"remove caf\u00E9").code);
    EXPECT_EQ("", Run(L"list").output);
    EXPECT_EQ(0u, Run(L"options --auto-location on").code);
}

TEST_F(ZeltctlProgram, RegistersAnInstallationThatIsNot)
{
    Register(BuiltFile("shell/ZELT.EXE"), L"/UnregServer");
    const Outcome sick = Run(L"doctor");
    EXPECT_EQ(1u, sick.code);
    EXPECT_EQ(
        "not-registered: ZELT is not registered, so no simulator finds it; let zeltctl doctor --fix register ZELT "
        "again.\n",
        sick.output);
    const Outcome fixed = Run(L"doctor --fix");
    EXPECT_EQ(0u, fixed.code);
    EXPECT_EQ("fixed: not-registered: ZELT is not registered.\n" + Healthy("all users"), fixed.output);
}

TEST_F(ZeltctlProgram, RegistersAnInstallationThatMoved)
{
    const fs::path before = folder / "before";
    fs::create_directories(before);
    fs::copy_file(folder / "ZELT.EXE", before / "ZELT.EXE");
    Register(before / "ZELT.EXE", L"/RegServer");
    fs::remove(before / "ZELT.EXE");
    const Outcome sick = Run(L"doctor");
    EXPECT_EQ(1u, sick.code);
    EXPECT_EQ("server-file: The registered program \"" + Narrow((before / "ZELT.EXE").wstring(), CP_UTF8) +
                  "\" is not there, so no simulator can start it; let zeltctl doctor --fix register ZELT again.\n",
              sick.output);
    EXPECT_EQ(0u, Run(L"doctor --fix").code);
    EXPECT_EQ(Healthy("all users"), Run(L"doctor").output);
    fs::remove(folder / "ZELT.EXE");
    const Outcome gone = Run(L"doctor --fix");
    EXPECT_EQ(1u, gone.code);
    EXPECT_TRUE(gone.output.starts_with("server-file: ")) << gone.output;
    EXPECT_TRUE(gone.output.ends_with("; install ZELT again.\n")) << gone.output;
}

TEST_F(ZeltctlProgram, KnowsARegistrationForTheUser)
{
    Register(BuiltFile("shell/ZELT.EXE"), L"/UnregServer");
    Register(folder / "ZELT.EXE", L"/RegServerPerUser");
    EXPECT_EQ(Healthy("the current user"), Run(L"doctor").output);
    DeleteKeyTree({HKEY_CURRENT_USER, KEY_WOW64_64KEY},
                  L"Software\\Classes\\CLSID\\{4CCF55DB-E332-42F8-B685-188989F8E1EC}");
    EXPECT_EQ(1u, Run(L"doctor").code);
    EXPECT_EQ(0u, Run(L"doctor --fix").code);
    RegistryKey machines;
    EXPECT_EQ(ERROR_FILE_NOT_FOUND, machines.Open({HKEY_LOCAL_MACHINE, KEY_WOW64_64KEY},
                                                  L"Software\\Classes\\CLSID\\{4CCF55DB-E332-42F8-B685-188989F8E1EC}"));
}

}  // namespace
}  // namespace zelt::test
