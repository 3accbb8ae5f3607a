// Help > Report a problem, in this process, with the built zeltctl: what the dialog shows, the texts that it opens, and the
// file that it writes.
#include <windows.h>
#include <commctrl.h>
#include <commdlg.h>
#include <shellapi.h>

#include <filesystem>
#include <fstream>
#include <functional>
#include <thread>

#include "res/resource.h"
#include "shell/main_window/report_dialog.h"
#include "tests/windows/controls.h"
#include "tests/windows/module_fixture.h"
#include "tests/windows/patched_import.h"
#include "tests/windows/program.h"
#include "tests/windows/recorded_boxes.h"
#include "tests/windows/screenshot.h"
#include "tests/trees.h"

namespace zelt::test {
namespace {

namespace fs = std::filesystem;

// What the user answers in the file dialogs: texts separated by null characters; empty for Cancel.
std::wstring logsToAdd, fileToWrite;
DWORD flagsOfLogs = 0;

BOOL TakeAnswer(OPENFILENAMEW* dialog, const std::wstring& answer)
{
    if (answer.empty()) return FALSE;
    EXPECT_LT(answer.size() + 1, dialog->nMaxFile);
    answer.copy(dialog->lpstrFile, answer.size());
    dialog->lpstrFile[answer.size()] = dialog->lpstrFile[answer.size() + 1] = L'\0';
    return TRUE;
}
BOOL WINAPI TakeLogs(OPENFILENAMEW* dialog)
{
    EXPECT_STREQ(L"Logs for the report:", dialog->lpstrTitle);
    flagsOfLogs = dialog->Flags;
    return TakeAnswer(dialog, logsToAdd);
}
BOOL WINAPI TakeFile(OPENFILENAMEW* dialog)
{
    EXPECT_STREQ(L"Write the report:", dialog->lpstrTitle);
    EXPECT_STREQ(L"ZELT report.zip", dialog->lpstrFile);
    EXPECT_TRUE(dialog->Flags & OFN_OVERWRITEPROMPT);
    return TakeAnswer(dialog, fileToWrite);
}

std::wstring openedProgram, openedFile;
HINSTANCE WINAPI TakeOpened(HWND, const wchar_t*, const wchar_t* program, const wchar_t* file, const wchar_t*, INT)
{
    openedProgram = program;
    openedFile = file;
    return reinterpret_cast<HINSTANCE>(33);
}

class ReportDialog : public ModuleTest {
protected:
    ReportDialog()
    {
        logsToAdd.clear();
        fileToWrite.clear();
        openedFile.clear();
        fs::remove_all(folder);
        fs::create_directories(folder);
    }
    ~ReportDialog() override { fs::remove_all(folder); }

    // Shows the dialog and lets `user` work on it, on another thread. Closes what the user leaves open.
    void Show(const std::function<void()>& user,
              const std::wstring& tool = fs::absolute(BuiltFile("ctl/zeltctl.exe")).make_preferred())
    {
        std::thread hands([&] {
            if (WaitUntil([this] {
                    return (dialog = FindWindowW(nullptr, L"Report a problem:")) && IsWindowVisible(dialog);
                })) {
                user();
            }
            if (IsWindow(dialog)) PostMessageW(dialog, WM_COMMAND, IDCANCEL, 0);
        });
        CReportDlg(tool).Run(nullptr);
        hands.join();
    }
    bool IsReady() const { return IsWindowEnabled(GetDlgItem(dialog, IDOK)); }
    // zeltctl doctor may need longer than one call of WaitUntil waits.
    void WaitUntilReady() const
    {
        for (int i = 0; i < 6 && !WaitUntil([this] { return IsReady(); }); ++i) {
        }
        EXPECT_TRUE(IsReady());
    }
    void Press(int button) const { SendMessageW(dialog, WM_COMMAND, static_cast<WPARAM>(button), 0); }
    RemoteList List() const { return RemoteList(GetCurrentProcess(), GetDlgItem(dialog, kReportList)); }
    std::wstring Rows() const
    {
        std::wstring rows;
        const RemoteList list = List();
        for (int row = 0; row < list.Count(); ++row) {
            const bool isSize = std::stol(list.Text(row, 1)) > 0;
            rows += list.Text(row, 0) + (isSize ? L"|n|" : L"|0|") + list.Text(row, 2) + L'\n';
        }
        return rows;
    }
    std::wstring Status() const { return TextOfWindow(GetDlgItem(dialog, kReportStatus)); }
    std::wstring LogCalled(const wchar_t* name) const
    {
        fs::copy_file(fs::path(SourceFile("tests/golden/sample_simulator_10.zlg")), folder / name);
        return (folder / name).wstring();
    }
    std::string Bytes(const fs::path& file) const
    {
        std::ifstream stream(file, std::ios::binary);
        return {std::istreambuf_iterator<char>(stream), {}};
    }

    const fs::path folder = fs::temp_directory_path() / L"zelt report dialog";
    HWND dialog = nullptr;
    RecordedBoxes boxes;
    const PatchedImport<decltype(GetOpenFileNameW)> open{"GetOpenFileNameW", TakeLogs};
    const PatchedImport<decltype(GetSaveFileNameW)> save{"GetSaveFileNameW", TakeFile};
    const PatchedImport<decltype(ShellExecuteW)> execute{"ShellExecuteW", TakeOpened};
};

constexpr wchar_t kAboutThisComputer[] =
    L"versions.txt|n|the versions of ZELT and Windows\n"
    L"doctor.txt|n|what zeltctl doctor answers\n";

TEST_F(ReportDialog, ShowsTheTextsBeforeAnythingIsWritten)
{
    std::wstring texts;
    Show([&] {
        EXPECT_FALSE(IsReady());
        EXPECT_EQ(L"Preparing the report...", Status());
        WaitUntilReady();
        EXPECT_EQ(kAboutThisComputer, Rows());
        EXPECT_EQ(
            L"The report will contain these texts, and nothing is sent: ZELT writes a file, and you decide who gets "
            L"it.",
            Status());
        List().Select(1);
        Press(kReportOpen);
        EXPECT_TRUE(openedProgram.ends_with(L"\\notepad.exe")) << testing::PrintToString(openedProgram);
        ASSERT_GT(openedFile.size(), 2u);
        texts = openedFile.substr(1, openedFile.size() - 2);
        EXPECT_TRUE(texts.ends_with(L"\\doctor.txt")) << testing::PrintToString(texts);
        EXPECT_NE("", Bytes(texts));
    });
    // If the user does not have the report written, its texts disappear.
    EXPECT_TRUE(WaitUntil([&] { return !fs::exists(fs::path(texts).parent_path()); }));
    EXPECT_TRUE(boxes.All().empty());
    EXPECT_TRUE(fs::is_empty(folder));
}

TEST_F(ReportDialog, WritesTheChosenFile)
{
    fileToWrite = (folder / L"report of \u00E9.zip").wstring();
    Show([&] {
        WaitUntilReady();
        Press(IDOK);
        EXPECT_FALSE(IsReady());
        EXPECT_TRUE(WaitUntil([this] { return !IsWindow(dialog); }));
    });
    const RecordedBoxes::Box box = boxes.TakeOne();
    EXPECT_EQ(L"The report was written to " + fileToWrite + L". Nothing was sent.", box.text);
    EXPECT_EQ(L"Report a problem:", box.caption);
    EXPECT_EQ(static_cast<UINT>(MB_OK | MB_ICONINFORMATION), box.flags);
    const std::string bytes = Bytes(fileToWrite);
    EXPECT_TRUE(bytes.starts_with("PK\x03\x04")) << bytes.size();
    EXPECT_NE(std::string::npos, bytes.find("doctor.txt"));
}

TEST_F(ReportDialog, ContainsTheLogsThatTheUserAdds)
{
    const std::wstring one = LogCalled(L"one.zlg"), two = LogCalled(L"two \u00E9.zlg");
    Show([&] {
        WaitUntilReady();
        logsToAdd = one;
        Press(kReportLogs);
        WaitUntilReady();
        EXPECT_EQ(kAboutThisComputer + (L"log.zlg|n|redacted from " + one + L'\n'), Rows());
        EXPECT_TRUE(flagsOfLogs & OFN_ALLOWMULTISELECT);
        logsToAdd = folder.wstring() + L'\0' + L"one.zlg" + L'\0' + L"two \u00E9.zlg";
        Press(kReportLogs);
        EXPECT_FALSE(IsReady());
        WaitUntilReady();
        EXPECT_EQ(
            kAboutThisComputer + (L"log-1.zlg|n|redacted from " + one + L"\nlog-2.zlg|n|redacted from " + two + L'\n'),
            Rows());
        EXPECT_TRUE(KeepScreenshot(dialog, "report-logs"));
        // Cancel changes nothing.
        logsToAdd.clear();
        Press(kReportLogs);
        EXPECT_TRUE(IsReady());
        Press(IDOK);
        EXPECT_TRUE(IsReady());
    });
    EXPECT_TRUE(boxes.All().empty());
}

TEST_F(ReportDialog, SaysWhyThereIsNoReport)
{
    const fs::path noLog = folder / L"no log.zlg";
    std::ofstream(noLog) << "text";
    Show([&] {
        WaitUntilReady();
        logsToAdd = noLog.wstring();
        Press(kReportLogs);
        EXPECT_TRUE(WaitUntil([this] { return !IsWindow(dialog); }));
    });
    const RecordedBoxes::Box box = boxes.TakeOne();
    const std::wstring begin = L"The report could not be made: " + noLog.wstring() + L": ";
    EXPECT_EQ(begin, box.text.substr(0, begin.size()));
    EXPECT_EQ(L"Report a problem:", box.caption);
    EXPECT_EQ(static_cast<UINT>(MB_OK | MB_ICONERROR), box.flags);
}

TEST_F(ReportDialog, SaysThatItsToolIsMissing)
{
    const std::wstring missing = (folder / L"zeltctl.exe").wstring();
    Show([&] { EXPECT_TRUE(WaitUntil([this] { return !IsWindow(dialog); })); }, missing);
    const std::wstring begin = L"The report could not be made: ";
    const RecordedBoxes::Box box = boxes.TakeOne();
    EXPECT_EQ(begin, box.text.substr(0, begin.size()));
    EXPECT_GT(box.text.size(), begin.size() + 5) << "with the system's reason";
}

// The program itself, with zeltctl beside it as when it is installed.
class ReportProgram : public testing::Test {
protected:
    ReportProgram()
    {
        fs::remove_all(folder);
        fs::create_directories(folder);
        fs::copy_file(BuiltServer(), folder / L"ZELT.EXE");
    }
    ~ReportProgram() override
    {
        std::error_code ignored;
        fs::remove_all(folder, ignored);
    }

    const fs::path folder = fs::temp_directory_path() / L"zelt report program";
    CleanSettings settings;
};

TEST_F(ReportProgram, MakesItsReportWithTheToolBesideIt)
{
    fs::copy_file(BuiltFile("ctl/zeltctl.exe"), folder / L"zeltctl.exe");
    const Program program(L"", (folder / L"ZELT.EXE").wstring());
    const HWND window = program.WaitForWindow(L"ZELT Packages:");
    ASSERT_NE(nullptr, window);
    PostCommand(window, 911);
    const HWND dialog = program.WaitForWindow(L"Report a problem:");
    ASSERT_NE(nullptr, dialog);
    const RemoteList list(program.Process(), GetDlgItem(dialog, kReportList));
    for (int i = 0; i < 6 && !WaitUntil([&] { return list.Count() == 2; }); ++i) {
    }
    ASSERT_EQ(2, list.Count());
    EXPECT_EQ(L"versions.txt", list.Text(0, 0));
    EXPECT_EQ(L"what zeltctl doctor answers", list.Text(1, 2));
    EXPECT_EQ(window, GetWindow(dialog, GW_OWNER));
    EXPECT_TRUE(KeepScreenshot(dialog, "report"));
    PostCommand(dialog, IDCANCEL);
    EXPECT_TRUE(program.WaitUntilGone(dialog));
    PostCommand(window, IDCANCEL);
    EXPECT_TRUE(program.EndsBy(20'000));
}

}  // namespace
}  // namespace zelt::test
