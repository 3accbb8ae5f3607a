#include "shell/main_window/report_dialog.h"

#include <commdlg.h>
#include <shellapi.h>

#include <iterator>

#include "log/log_location.h"
#include "res/resource.h"
#include "system/system_text.h"
#include "system/narrow.h"

namespace zelt {
namespace {

constexpr wchar_t kCaption[] = L"Report a problem:";
constexpr UINT_PTR kTimer = 1;
constexpr UINT kInterval = 100;  // milliseconds

// The path of a new file in the folder for temporary files; empty if it cannot be made.
std::wstring TemporaryFile()
{
    wchar_t folder[MAX_PATH + 1], file[MAX_PATH];
    const DWORD length = GetTempPathW(static_cast<DWORD>(std::size(folder)), folder);
    if (length == 0 || length >= std::size(folder) || !GetTempFileNameW(folder, L"zlt", 0, file)) return {};
    return file;
}

// The files that the user chose in a dialog with multiple selection: `answer` is one path, or a folder and names.
std::vector<std::wstring> ChosenFiles(const wchar_t* answer)
{
    const std::wstring first = answer;
    std::vector<std::wstring> files;
    for (answer += first.size() + 1; *answer; answer += std::wstring(answer).size() + 1)
        files.push_back(first + L'\\' + answer);
    if (files.empty()) files.push_back(first);
    return files;
}

}  // namespace

CReportDlg::~CReportDlg()
{
    if (!written.empty()) DeleteFileW(written.c_str());
}

void CReportDlg::Run(HWND owner) { RunModal(kReportDialog, owner); }

bool CReportDlg::OnInit()
{
    const HWND list = Item(kReportList);
    ListView_SetExtendedListViewStyle(list, LVS_EX_FULLROWSELECT);
    const struct {
        const wchar_t* title;
        int width, format;
    } columns[] = {{L"File", 90, LVCFMT_LEFT}, {L"Bytes", 80, LVCFMT_RIGHT}, {L"Contents", 330, LVCFMT_LEFT}};
    for (int i = 0; const auto& column : columns) {
        LVCOLUMNW record = {};
        record.mask = LVCF_TEXT | LVCF_WIDTH | LVCF_FMT;
        record.pszText = const_cast<wchar_t*>(column.title);
        record.cx = Scaled(column.width);
        record.fmt = column.format;
        ListView_InsertColumn(list, i++, &record);
    }
    Prepare();
    SetTimer(Window(), kTimer, kInterval, nullptr);
    return true;
}

// Starts zeltctl, or starts it again, with the logs that the user has chosen.
void CReportDlg::Prepare()
{
    process.reset();
    isShown = false;
    ListView_DeleteAllItems(Item(kReportList));
    Enable(false);
    SetDlgItemTextW(Window(), kReportStatus, L"Preparing the report...");
    if (written.empty()) written = TemporaryFile();
    process.emplace(tool, logs, written);
}

void CReportDlg::Enable(bool isReady)
{
    for (const int button : {kReportLogs, kReportOpen, IDOK}) EnableWindow(Item(button), isReady);
}

bool CReportDlg::OnOther(UINT message, WPARAM wParam, LPARAM)
{
    if (message != WM_TIMER || wParam != kTimer) return false;
    Look();
    return true;
}

void CReportDlg::Look()
{
    if (!process) return;
    switch (process->Look()) {
        case ReportProcess::State::Working: break;
        case ReportProcess::State::Asking:
            if (!isShown) ShowParts();
            break;
        case ReportProcess::State::Written: KeepReport(); break;
        case ReportProcess::State::Failed: {
            const std::wstring reason = process->Reason();
            // Reset before the box opens, because the timer calls Look again while the box is open.
            process.reset();
            Fail(reason);
            if (Window()) End(IDCANCEL);
        }
    }
}

void CReportDlg::ShowParts()
{
    isShown = true;
    const HWND list = Item(kReportList);
    for (int row = 0; const ReportPart& part : process->Parts()) {
        LVITEMW item = {};
        item.mask = LVIF_TEXT;
        item.iItem = row;
        item.pszText = const_cast<wchar_t*>(part.name.c_str());
        ListView_InsertItem(list, &item);
        ListView_SetItemText(list, row, 1, const_cast<wchar_t*>(part.size.c_str()));
        ListView_SetItemText(list, row, 2, const_cast<wchar_t*>(part.what.c_str()));
        ++row;
    }
    // The last column takes the rest.
    ListView_SetColumnWidth(list, 2, LVSCW_AUTOSIZE_USEHEADER);
    ListView_SetItemState(list, 0, LVIS_SELECTED | LVIS_FOCUSED, LVIS_SELECTED | LVIS_FOCUSED);
    SetDlgItemTextW(
        Window(), kReportStatus,
        L"The report will contain these texts, and nothing is sent: ZELT writes a file, and you decide who gets it.");
    Enable(true);
}

bool CReportDlg::OnCommand(int id, int)
{
    switch (id) {
        case kReportLogs: AddLogs(); return true;
        case kReportOpen: OpenText(); return true;
        case IDOK: Write(); return true;
        case IDCANCEL: End(IDCANCEL); return true;
    }
    return false;
}

bool CReportDlg::OnNotify(const NMHDR& header, LRESULT&)
{
    if (header.idFrom != kReportList || header.code != NM_DBLCLK) return false;
    OpenText();
    return true;
}

void CReportDlg::AddLogs()
{
    // Room for many names.
    std::vector<wchar_t> answer(1 << 15);
    std::wstring folder;
    OPENFILENAMEW dialog = {};
    dialog.lStructSize = sizeof dialog;
    dialog.hwndOwner = Window();
    dialog.lpstrFilter = L"ZELT Log Files (*.zlg)\0*.zlg\0All files (*.*)\0*.*\0";
    dialog.lpstrFile = answer.data();
    dialog.nMaxFile = static_cast<DWORD>(answer.size());
    dialog.lpstrTitle = L"Logs for the report:";
    dialog.lpstrDefExt = L"zlg";
    if (AutomaticLogFolder(folder)) dialog.lpstrInitialDir = folder.c_str();
    dialog.Flags = OFN_EXPLORER | OFN_HIDEREADONLY | OFN_NOCHANGEDIR | OFN_FILEMUSTEXIST | OFN_ALLOWMULTISELECT;
    if (!GetOpenFileNameW(&dialog) || !Window()) return;
    logs = ChosenFiles(answer.data());
    Prepare();
}

void CReportDlg::OpenText()
{
    const int row = ListView_GetNextItem(Item(kReportList), -1, LVNI_SELECTED);
    if (!isShown || row < 0) return;
    const std::wstring file =
        L'"' + process->Folder() + L'\\' + process->Parts()[static_cast<std::size_t>(row)].name + L'"';
    wchar_t editor[MAX_PATH];
    if (GetSystemDirectoryW(editor, MAX_PATH) == 0) return;
    // Not the program registered for the file: a log viewer would not show the text.
    ShellExecuteW(Window(), L"open", (std::wstring(editor) + L"\\notepad.exe").c_str(), file.c_str(), nullptr,
                  SW_SHOWNORMAL);
}

void CReportDlg::Write()
{
    if (!isShown || !chosen.empty()) return;
    wchar_t path[1024] = L"ZELT report.zip";
    OPENFILENAMEW dialog = {};
    dialog.lStructSize = sizeof dialog;
    dialog.hwndOwner = Window();
    dialog.lpstrFilter = L"Zip files (*.zip)\0*.zip\0All files (*.*)\0*.*\0";
    dialog.lpstrFile = path;
    dialog.nMaxFile = static_cast<DWORD>(std::size(path));
    dialog.lpstrTitle = L"Write the report:";
    dialog.lpstrDefExt = L"zip";
    dialog.Flags = OFN_EXPLORER | OFN_HIDEREADONLY | OFN_NOCHANGEDIR | OFN_OVERWRITEPROMPT | OFN_PATHMUSTEXIST;
    if (!GetSaveFileNameW(&dialog) || !Window() || !process) return;
    chosen = path;
    Enable(false);
    SetDlgItemTextW(Window(), kReportStatus, L"Writing the report...");
    process->SayYes();
}

// Moves what zeltctl has written to the place that the user chose.
void CReportDlg::KeepReport()
{
    process.reset();
    if (!MoveFileExW(written.c_str(), chosen.c_str(), MOVEFILE_REPLACE_EXISTING | MOVEFILE_COPY_ALLOWED)) {
        Fail(Widen(SystemText(HRESULT_FROM_WIN32(GetLastError()))));
        if (Window()) End(IDCANCEL);
        return;
    }
    written.clear();
    ShowBox(L"The report was written to " + chosen + L". Nothing was sent.", kCaption, MB_OK | MB_ICONINFORMATION);
    if (Window()) End(IDOK);
}

void CReportDlg::Fail(const std::wstring& reason)
{
    ShowBox(L"The report could not be made: " + reason, kCaption, MB_OK | MB_ICONERROR);
}

}  // namespace zelt
