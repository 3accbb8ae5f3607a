// Help > Report a problem: lists the texts that zeltctl report would write, including the logs that the user adds. The user can
// read the texts, and chooses the file of the report. Nothing is sent. The texts are removed when the dialog ends.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "shell/main_window/report_process.h"
#include "system/dialogs/dialog.h"

namespace zelt {

class CReportDlg final : public Dialog {
public:
    // `tool` is zeltctl.
    explicit CReportDlg(std::wstring tool) : tool(std::move(tool)) {}
    ~CReportDlg() override;
    void Run(HWND owner);

private:
    bool OnInit() override;
    bool OnCommand(int id, int notification) override;
    bool OnNotify(const NMHDR& header, LRESULT& answer) override;
    bool OnOther(UINT message, WPARAM wParam, LPARAM lParam) override;

    void Prepare();
    void Look();
    void ShowParts();
    void Enable(bool isReady);
    void AddLogs();
    void OpenText();
    void Write();
    void KeepReport();
    void Fail(const std::wstring& reason);

    const std::wstring tool;
    std::vector<std::wstring> logs;
    std::wstring written;  // by zeltctl, in the folder for temporary files
    std::wstring chosen;   // by the user; empty until then
    std::optional<ReportProcess> process;
    bool isShown = false;  // whether the list shows what the report contains
};

}  // namespace zelt
