#include <windows.h>
#include <io.h>
#include <psapi.h>

#include <atomic>
#include <cstdio>
#include <cstring>
#include <memory>
#include <stdexcept>
#include <thread>
#include <vector>

#include "bench/rows.h"
#include "bench/viewer/parts.h"
#include "bench/viewer/written_log.h"
#include "shell/log_viewer/background_reader.h"
#include "shell/log_viewer/label_search.h"
#include "shell/log_viewer/long_task.h"
#include "shell/log_viewer/pages/paged_log.h"
#include "shell/log_viewer/view_log_dialog.h"

namespace zelt::bench {
namespace {

class PageReceiver final : public RowSink {
public:
    explicit PageReceiver(PagedLog& log) : log(log) {}
    void Pages(PageBatch&& batch) override { log.AddPages(std::move(batch)); }
    void Row(const TreeRow& row) override { log.Add(row); }
    void ParseError(int) override { throw std::runtime_error("the log is not well-formed"); }
    bool Continue() override { return true; }

private:
    PagedLog& log;
};

// The floor: every byte is read and looked at once.
double ReadOnce(const std::wstring& path)
{
    const Stopwatch watch;
    SharedLogFile file;
    if (file.Open(path)) throw std::runtime_error("the log cannot be opened");
    std::vector<char> buffer(PageIndexer::kPageBytes);
    for (int count; (count = _read(file.Descriptor(), buffer.data(), static_cast<unsigned>(buffer.size()))) > 0;) {
        if (std::memchr(buffer.data(), '\0', static_cast<std::size_t>(count))) throw std::runtime_error("not a log");
    }
    return watch.Seconds();
}

double Index(PagedLog& log, const std::wstring& path)
{
    const Stopwatch watch;
    SharedLogFile file;
    auto pages = std::make_unique<PageFile>();
    if (file.Open(path) || pages->Open(path)) throw std::runtime_error("the log cannot be opened");
    log.SetFile(std::move(pages));
    PageReceiver receiver(log);
    long long position = 0;
    ReadRowsInBackground(file, receiver, position, true);
    log.Finish();
    if (!log.HasPages()) throw std::runtime_error("the log has no pages");
    return watch.Seconds();
}

double Find(const PagedLog& log, bool ignoreCase)
{
    TreeSearch search;
    search.text = L"no label has this";
    search.ignoreCase = ignoreCase;
    LongTask task(nullptr);
    const Stopwatch watch;
    if (FindLabel(log, log.Size() - 1, search, task) != kNoItem) {
        throw std::runtime_error("the search found what is not there");
    }
    return watch.Seconds();
}

struct Times {
    double answer = 0, complete = 0;
};

// The times from opening the viewer until its window is shown and answers, and until the log is read.
Times Open(const std::wstring& path)
{
    const std::wstring caption = L"Log file " + path.substr(path.rfind(L'\\') + 1) + L":";
    Times times;
    std::atomic<bool> opened = false;
    const Stopwatch watch;
    std::thread user([&] {
        HWND window = nullptr;
        while (!opened && !((window = FindWindowW(nullptr, caption.c_str())) && IsWindowVisible(window))) Sleep(1);
        DWORD_PTR answer;
        SendMessageTimeoutW(window, WM_NULL, 0, 0, SMTO_NORMAL, 60'000, &answer);
        times.answer = watch.Seconds();
    });
    CViewLogDlg viewer(path, Lock());
    viewer.Open();
    times.complete = watch.Seconds();
    opened = true;
    MSG message;
    // The other thread may still be waiting for its answer.
    while (times.answer == 0) {
        while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) DispatchMessageW(&message);
        Sleep(1);
    }
    user.join();
    return times;
}

std::size_t PrivateBytes()
{
    PROCESS_MEMORY_COUNTERS counters = {};
    counters.cb = sizeof counters;
    GetProcessMemoryInfo(GetCurrentProcess(), &counters, sizeof counters);
    return counters.PagefileUsage;
}

}  // namespace

void BenchPages(const WrittenLog& log, int pairs)
{
    char text[40];
    std::snprintf(text, sizeof text, "%.0f MB: ", log.Megabytes());
    const std::string size = text;
    const auto floor = [&] { return ReadOnce(log.Path()); };
    MeasureRow(size + "pages", pairs, {3}, floor, [&] {
        PagedLog pages;
        return Index(pages, log.Path());
    });
    std::vector<double> answers(static_cast<std::size_t>(pairs));
    const auto open = [&, run = std::size_t{0}]() mutable {
        const Times times = Open(log.Path());
        answers[run++ % answers.size()] = times.answer;
        return times.complete;
    };
    MeasureRow(size + "viewer in pages, until all is read", pairs, {3}, floor, open);
    Require(PrintFigure(size + "viewer in pages, until it answers", Median(answers), "s", 0.1));
    const std::size_t before = PrivateBytes();
    PagedLog pages;
    Index(pages, log.Path());
    for (const bool ignoresCase : {false, true}) {
        MeasureRow(size + (ignoresCase ? "search in pages, ignore case" : "search in pages"), pairs, {2}, floor,
                   [&] { return Find(pages, ignoresCase); });
    }
    Require(PrintFigure(size + "pages, memory", static_cast<double>(PrivateBytes() - before) / 1e6, "MB", 40));
}

}  // namespace zelt::bench
