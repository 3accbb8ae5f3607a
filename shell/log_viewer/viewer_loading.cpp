// How CViewLogDlg loads its log.
#include <algorithm>
#include <functional>
#include <memory>
#include <new>

#include "core/narrow.h"
#include "core/system_text.h"
#include "shell/log_viewer/file_progress_dialog.h"
#include "shell/log_viewer/shared_log_file.h"
#include "shell/log_viewer/view_log_dialog.h"

namespace zelt {
namespace {

// A log of more bytes shows how far it has been read.
constexpr long long kLengthWithProgress = 50000;

class ModelSink final : public LogSink {
public:
    ModelSink(LogModel& model, const SharedLogFile& file, CFileProgressDialog* progress, const bool& closed,
              std::function<void(int)> report)
        : model(model), file(file), length(file.Size()), progress(progress), closed(closed), report(std::move(report))
    {}

    void Item(const LogItem& item) override { model.Add(item); }
    void ParseError(int line) override { report(line); }
    bool Continue() override
    {
        return !progress ||
               (progress->Advance([this] { return static_cast<double>(file.Position()) / length; }) && !closed);
    }

private:
    LogModel& model;
    const SharedLogFile& file;
    const long long length;
    CFileProgressDialog* const progress;
    const bool& closed;
    const std::function<void(int)> report;
};

}  // namespace

void CViewLogDlg::Load()
{
    SharedLogFile file;
    if (const DWORD error = file.Open(path)) {
        Box(L"Failed to open \"" + path + L"\" for reading: " + Widen(SystemText(static_cast<HRESULT>(error))),
            L"File error:", MB_ICONERROR);
        SetIcons();
        return;
    }
    SendMessageW(tree, WM_SETREDRAW, FALSE, 0);
    SendMessageW(list, WM_SETREDRAW, FALSE, 0);
    std::unique_ptr<CFileProgressDialog> progress;
    if (file.Size() > kLengthWithProgress) progress = std::make_unique<CFileProgressDialog>(window);

    try {
        ModelSink sink(model, file, progress.get(), closed, [this](int line) { ReportParseError(line); });
        switch (ReadLog(file.Descriptor(), sink)) {
            case LogReadResult::NotReadable: Box(L"Failed to open file for reading", L"Error:", MB_ICONERROR); break;
            case LogReadResult::Incomplete:
                Box(L"XML parse error in \"" + path + L"\"", L"Parse Error:", MB_ICONERROR);
                break;
            default: break;
        }
    } catch (const std::bad_alloc&) {
        Box(L"The log is larger than the memory for it. Its beginning is shown.", L"Error:", MB_ICONWARNING);
    }
    model.Finish();
    items.Fill();

    progress.reset();
    ListView_SetItemCountEx(list, static_cast<int>(model.Errors().size()), LVSICF_NOINVALIDATEALL);
    SendMessageW(tree, WM_SETREDRAW, TRUE, 0);
    SendMessageW(list, WM_SETREDRAW, TRUE, 0);
    FitErrorColumn();
    SetIcons();
}

void CViewLogDlg::ReportParseError(int line) const
{
    Box(L"Parse error in \"" + path + L"\", line " + std::to_wstring(line), L"Parse error:", MB_ICONERROR);
}

void CViewLogDlg::FitErrorColumn() const
{
    // The list holds no rows of its own to measure. The longest labels in bytes stand for the widest.
    constexpr std::size_t kMeasured = 16;
    std::vector<ItemIndex> longest(std::min(kMeasured, model.Errors().size()));
    std::partial_sort_copy(model.Errors().begin(), model.Errors().end(), longest.begin(), longest.end(),
                           [this](ItemIndex a, ItemIndex b) { return model.Label(a).size() > model.Label(b).size(); });
    RECT client;
    GetClientRect(list, &client);
    int width = client.right;
    for (const ItemIndex item : longest) {
        const std::wstring label = Widen(model.Label(item), CP_UTF8);
        width = std::max(width, ListView_GetStringWidth(list, label.c_str()) + Scaled(16 + 12));
    }
    ListView_SetColumnWidth(list, 0, width);
}

}  // namespace zelt
