// zeltctl report: what it says about this computer, and that names stay out of it.
#include <gtest/gtest.h>

#include <algorithm>

#include "system/narrow.h"
#include "tests/log_commands/zip_contents.h"
#include "tests/system/exports/windows_commands.h"
#include "tests/system/harness/registered_class.h"
#include "tests/system/harness/text_file.h"

namespace zelt::test {
namespace {

namespace fs = std::filesystem;

class ReportOfThisComputer : public Zeltctl {
protected:
    void TearDown() override
    {
        fs::remove(zip);
        Zeltctl::TearDown();
    }
    std::map<std::string, std::string> Reported(std::vector<std::string> words = {})
    {
        words.insert(words.begin(), {"report", "-o", Narrow(zip.wstring(), CP_UTF8), "--yes"});
        const CommandOutcome outcome = RunZeltctl(words);
        EXPECT_EQ(0, outcome.code) << outcome.messages;
        shown = outcome.data;
        const std::string bytes = ReadWholeFile(zip.string());
        return ZipContents(bytes).Files();
    }

    const fs::path zip = fs::temp_directory_path() / L"zeltctl report test.zip";
    std::string shown;
};

TEST_F(ReportOfThisComputer, SaysTheVersionsAndWhatDoctorAnswers)
{
    Export({{kSamplePackage, 1, L"", L"Alone"}});
    const auto contents = Reported();
    ASSERT_EQ(2u, contents.size());
    const std::string versions = contents.at("versions.txt"), begin = "zeltctl 1.0.0.0, 32 bit\nZELT 1.0.0.0\nZELT64 ";
    EXPECT_EQ(begin, versions.substr(0, begin.size()));
    RegistryKey windows;
    ASSERT_EQ(ERROR_SUCCESS,
              windows.Open({HKEY_LOCAL_MACHINE, KEY_WOW64_64KEY}, L"Software\\Microsoft\\Windows NT\\CurrentVersion"));
    const std::string build = Narrow(windows.ReadString(L"CurrentBuildNumber").value_or(L"(none)"));
    EXPECT_NE(std::string::npos, versions.find("\nWindows ")) << versions;
    EXPECT_TRUE(versions.ends_with('.' + build + ", 64 bit\n")) << versions;
    EXPECT_EQ(4, std::count(versions.begin(), versions.end(), '\n'));
    EXPECT_EQ(RunZeltctl({"doctor"}).data, contents.at("doctor.txt"));
    EXPECT_NE(std::string::npos,
              shown.find("\nversions.txt:\n" + versions + "\ndoctor.txt:\n" + contents.at("doctor.txt")))
        << shown;
}

TEST_F(ReportOfThisComputer, LeavesOutTheNamesOfPackages)
{
    Export({{kSamplePackage, 1, L"", L"Alone"},
            {kNowhere, 3, L"", L"Secret \u00E9tude"},
            {kSampleManager, 0, L"Hidden", L"ALONE"}});
    const std::string doctor = RunZeltctl({"doctor"}).data, reported = Reported().at("doctor.txt");
    for (const char* name : {"\"Secret \xC3\xA9tude\"", "\"Hidden\"", "\"ALONE\""}) {
        EXPECT_NE(std::string::npos, doctor.find(name)) << name << " in " << doctor;
        EXPECT_EQ(std::string::npos, reported.find(name)) << name << " in " << reported;
    }
    EXPECT_NE(std::string::npos, reported.find("The exported package \"Package-2\" ")) << reported;
    EXPECT_EQ(std::count(doctor.begin(), doctor.end(), '\n'), std::count(reported.begin(), reported.end(), '\n'));
}

TEST_F(ReportOfThisComputer, LeavesOutTheFolderOfTheUser)
{
    wchar_t profile[MAX_PATH];
    ASSERT_NE(0u, GetEnvironmentVariableW(L"USERPROFILE", profile, MAX_PATH));
    const RegisteredClass component(Scope::Machine, KEY_WOW64_32KEY, kNowhere,
                                    L"{CF51E384-0110-4ED8-ACB7-B50CFDE6908E}", L"Planted");
    RegistryKey key;
    ASSERT_EQ(ERROR_SUCCESS, key.Create(ClassesHive(Scope::Machine, KEY_WOW64_32KEY),
                                        ClassesPath(std::wstring(L"CLSID\\") + kNowhere + L"\\InprocServer32")));
    ASSERT_EQ(ERROR_SUCCESS, key.WriteString(L"", std::wstring(profile) + L"\\gone.dll"));
    Export({{kNowhere, 1, L"", L"Planted"}});
    const std::string user = Narrow(std::wstring(profile), CP_UTF8);
    EXPECT_NE(std::string::npos, RunZeltctl({"doctor"}).data.find(user));
    const std::string reported = Reported().at("doctor.txt");
    EXPECT_EQ(std::string::npos, reported.find(user)) << reported;
    EXPECT_NE(std::string::npos, reported.find("%USERPROFILE%\\gone.dll")) << reported;
}

TEST_F(ReportOfThisComputer, NeedsAFile)
{
    const CommandOutcome outcome = RunZeltctl({"report"});
    EXPECT_EQ(2, outcome.code);
    EXPECT_EQ("zeltctl: \"report\" needs a file for the report, -o FILE; see zeltctl --help\n", outcome.messages);
}

}  // namespace
}  // namespace zelt::test
