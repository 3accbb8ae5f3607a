#include "shell/log_viewer/log_loader.h"

#include <algorithm>
#include <functional>
#include <memory>
#include <new>

#include "shell/log_viewer/background_reader.h"
#include "shell/log_viewer/file_progress_dialog.h"
#include "shell/log_viewer/shared_log_file.h"
#include "system/dialog.h"
#include "system/exception_text.h"
#include "system/narrow.h"
#include "system/system_text.h"

namespace zelt {
namespace {

// The reading of a log of more bytes shows its progress.
constexpr long long kLengthWithProgress = 50000;

// Receives the log: fills the model, and the tree as long as the whole log seems to fit.
class ViewerSink final : public RowSink {
public:
    ViewerSink(LogModel& model, LogTree& tree, const SharedLogFile& file, CFileProgressDialog* progress,
               const bool& closed, std::function<void(int)> report)
        : model(model),
          tree(tree),
          length(file.Size()),
          progress(progress),
          closed(closed),
          report(std::move(report)),
          position(file.Size())
    {}

    long long& Position() { return position; }

    void Row(const TreeRow& row) override
    {
        const ItemIndex index = model.Add(row);
        if (index + 1 == nextEstimate) Estimate(index + 1);
        if (filling) tree.FillUpTo(index, row.hasChildren);
    }
    void ParseError(int line) override { report(line); }
    bool Continue() override
    {
        return !progress || (progress->Advance([this] { return static_cast<double>(position) / length; }) && !closed);
    }

private:
    // Estimates the file's items from its beginning. If they are too many, a later estimate may be better; if they turn out
    // to be more than estimated, filling ends at the limit.
    void Estimate(ItemIndex items)
    {
        // A short file is read at once.
        const double read =
            position < length ? static_cast<double>(position - kReadAhead) : std::min<double>(length, kReadAhead);
        filling = items < LogTree::kFilledItems && items * length <= LogTree::kFilledItems * read;
        nextEstimate = filling ? LogTree::kFilledItems : items * 2;
    }

    LogModel& model;
    LogTree& tree;
    const double length;
    CFileProgressDialog* const progress;
    const bool& closed;
    const std::function<void(int)> report;
    // How far the file had been read when the last item was read.
    long long position;
    bool filling = false;
    ItemIndex nextEstimate = 1024;
};

}  // namespace

bool LogLoader::Load()
{
    SharedLogFile file;
    if (const DWORD error = file.Open(path)) {
        dialog.ShowBox(
            L"Failed to open \"" + path + L"\" for reading: " + Widen(SystemText(static_cast<HRESULT>(error))),
            L"File error:", MB_ICONERROR);
        return false;
    }
    const LogTree::Unpainted unpainted(tree);
    std::unique_ptr<CFileProgressDialog> progress;
    if (file.Size() > kLengthWithProgress) progress = std::make_unique<CFileProgressDialog>(dialog.Window());
    Read(file, progress.get());
    model.Finish();
    tree.Fill();
    return true;
}

void LogLoader::Read(const SharedLogFile& file, CFileProgressDialog* progress) const
{
    try {
        ViewerSink sink(model, tree, file, progress, closed, [this](int line) { ReportParseError(line); });
        switch (progress ? ReadRowsInBackground(file, sink, sink.Position()) : ReadRows(file, sink)) {
            case LogReadResult::NotReadable:
                dialog.ShowBox(L"Failed to open file for reading", L"Error:", MB_ICONERROR);
                break;
            case LogReadResult::Incomplete:
                dialog.ShowBox(L"XML parse error in \"" + path + L"\"", L"Parse Error:", MB_ICONERROR);
                break;
            default: break;
        }
    } catch (const std::bad_alloc&) {
        dialog.ShowBox(L"The log is larger than the memory for it. Its beginning is shown.", L"Error:", MB_ICONWARNING);
    } catch (...) {
        dialog.ShowBox(L"Reading the log failed: " + TextOfException(), L"Error:", MB_ICONERROR);
    }
}

void LogLoader::ReportParseError(int line) const
{
    dialog.ShowBox(L"Parse error in \"" + path + L"\", line " + std::to_wstring(line), L"Parse error:", MB_ICONERROR);
}

}  // namespace zelt
