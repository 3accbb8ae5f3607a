#include "shell/log_viewer/log_loader.h"

#include <algorithm>
#include <functional>
#include <memory>
#include <new>
#include <optional>
#include <utility>

#include "shell/log_viewer/background_reader.h"
#include "shell/log_viewer/file_progress_dialog.h"
#include "shell/log_viewer/shared_log_file.h"
#include "system/dialogs/dialog.h"
#include "system/exception_text.h"
#include "system/narrow.h"
#include "system/system_text.h"

namespace zelt {
namespace {

// While a log of more bytes than this is read, a window shows the progress.
constexpr long long kLengthWithProgress = 50000;
// A log of more bytes than this is read in pages. A shorter one is kept in memory; the viewer then no longer needs the file.
constexpr long long kLengthInPages = 1'000'000;
// Milliseconds between two updates of the viewer.
constexpr ULONGLONG kPeriod = 100;

// Receives the log: fills the model, and the tree as long as the whole log seems to fit.
class ViewerSink final : public RowSink {
public:
    ViewerSink(PagedLog& model, LogTree& tree, const LogLoader::Viewer& viewer, const SharedLogFile& file,
               CFileProgressDialog* progress, const bool& closed, std::function<void(int)> report)
        : model(model),
          tree(tree),
          viewer(viewer),
          length(file.Size()),
          progress(progress),
          closed(closed),
          report(std::move(report)),
          position(file.Size())
    {}

    long long& Position() { return position; }

    void Pages(PageBatch&& batch) override
    {
        const bool isFirst = !model.HasPages();
        model.AddPages(std::move(batch));
        if (isFirst && model.HasPages()) viewer.firstPage();
    }
    void Row(const TreeRow& row) override
    {
        const ItemIndex index = model.Add(row);
        rows = true;
        if (model.HasPages()) return;
        if (index + 1 == nextEstimate) Estimate(index + 1);
        if (filling) tree.FillUpTo(index, row.hasChildren);
    }
    void ParseError(int line) override { report(line); }
    bool Continue() override
    {
        if (model.HasPages()) return ContinueInPages();
        return !progress || (progress->Advance([this] { return static_cast<double>(position) / length; }) && !closed);
    }

private:
    // For a log in pages, whose viewer the user is already working with.
    bool ContinueInPages()
    {
        if (++steps % 64 != 0 && rows) return !closed;
        const ULONGLONG now = GetTickCount64();
        if (now - looked >= kPeriod) {
            looked = now;
            viewer.morePages();
        }
        return progress->AdvanceNow(static_cast<double>(position) / length) && !closed;
    }

    // Estimates from the first items how many the file has, and so whether they all fit into the tree. If they seem not to, a
    // later estimate may be better. If there turn out to be more than estimated, filling ends at the limit.
    void Estimate(ItemIndex items)
    {
        // A short file is read in one go, so the position is at its end from the start.
        const double read =
            position < length ? static_cast<double>(position - kReadAhead) : std::min<double>(length, kReadAhead);
        filling = items < LogTree::kFilledItems && items * length <= LogTree::kFilledItems * read;
        nextEstimate = filling ? LogTree::kFilledItems : items * 2;
    }

    PagedLog& model;
    LogTree& tree;
    const LogLoader::Viewer& viewer;
    const double length;
    CFileProgressDialog* const progress;
    const bool& closed;
    const std::function<void(int)> report;
    // How far the file had been read when the latest batch was complete; without batches, the file's size.
    long long position;
    bool filling = false;
    ItemIndex nextEstimate = 1024;
    bool rows = false;
    unsigned steps = 0;
    ULONGLONG looked = 0;
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
    std::unique_ptr<CFileProgressDialog> progress;
    if (file.Size() > kLengthWithProgress) {
        progress = std::make_unique<CFileProgressDialog>(dialog.Window(), viewer.handle);
    }
    bool inPages = file.Size() > kLengthInPages;
    if (inPages) {
        auto pageFile = std::make_unique<PageFile>();
        inPages = pageFile->Open(path) == 0;
        if (inPages) model.SetFile(std::move(pageFile));
    }
    Read(file, progress.get(), inPages);
    model.Finish();
    if (!model.HasPages()) {
        const LogTree::Unpainted unpainted(tree);
        tree.Fill();
    }
    return true;
}

void LogLoader::Read(const SharedLogFile& file, CFileProgressDialog* progress, bool inPages)
{
    try {
        std::optional<LogTree::Unpainted> unpainted(std::in_place, tree);
        Viewer shown = viewer;
        shown.firstPage = [&] {
            tree.Fill();
            unpainted.reset();
            viewer.firstPage();
        };
        ViewerSink sink(model, tree, shown, file, progress, closed, [this](int line) { ReportParseError(line); });
        switch (progress ? ReadRowsInBackground(file, sink, sink.Position(), inPages) : ReadRows(file, sink)) {
            case LogReadResult::NotReadable:
                dialog.ShowBox(L"Failed to open file for reading", L"Error:", MB_ICONERROR);
                break;
            case LogReadResult::Incomplete:
                dialog.ShowBox(L"XML parse error in \"" + path + L"\"", L"Parse Error:", MB_ICONERROR);
                break;
            default: break;
        }
    } catch (const std::bad_alloc&) {
        dialog.ShowBox(L"There is not enough memory for the whole log. Its beginning is shown.", L"Error:",
                       MB_ICONWARNING);
    } catch (...) {
        dialog.ShowBox(L"Reading the log failed: " + TextOfException(), L"Error:", MB_ICONERROR);
    }
}

void LogLoader::ReportParseError(int line) const
{
    dialog.ShowBox(L"Parse error in \"" + path + L"\", line " + std::to_wstring(line), L"Parse error:", MB_ICONERROR);
}

}  // namespace zelt
