#include <windows.h>
#include <psapi.h>

#include <cstdio>

#include "bench/rows.h"
#include "bench/viewer/bare_reader.h"
#include "bench/viewer/floors.h"
#include "bench/viewer/parts.h"
#include "bench/viewer/written_log.h"
#include "log_reader/log_reader.h"
#include "shell/log_viewer/background_reader.h"
#include "shell/log_viewer/log_model.h"
#include "shell/log_viewer/log_tree.h"
#include "shell/log_viewer/shared_log_file.h"
#include "shell/log_viewer/view_log_dialog.h"

namespace zelt::bench {
namespace {

class NullSink final : public LogSink {
public:
    void Begin(const LogEvent& event) override { bytes += event.name.size() + event.text.size(); }
    std::size_t bytes = 0;
};

class ModelSink final : public RowSink {
public:
    explicit ModelSink(LogModel& model) : model(model) {}
    void Row(const TreeRow& row) override { model.Add(row); }
    void ParseError(int) override {}
    bool Continue() override { return true; }

private:
    LogModel& model;
};

double Parse(const std::wstring& path)
{
    const Stopwatch watch;
    SharedLogFile file;
    file.Open(path);
    NullSink sink;
    ReadLog(file.Descriptor(), sink);
    return watch.Seconds();
}

void Fill(LogModel& model, const std::wstring& path)
{
    SharedLogFile file;
    file.Open(path);
    ModelSink sink(model);
    ReadRows(file, sink);
    model.Finish();
}

double ParseIntoModel(const std::wstring& path)
{
    const Stopwatch watch;
    LogModel model;
    Fill(model, path);
    return watch.Seconds();
}

double Load(const std::wstring& path)
{
    const Stopwatch watch;
    CViewLogDlg viewer(path, Lock());
    viewer.Open();
    return watch.Seconds();
}

// The time to open the windows with a short log that fills them.
double OpenWindows()
{
    static const WrittenLog nothing = WrittenLog::OfBlanks(60'000);
    return Load(nothing.Path());
}

std::size_t PrivateBytes()
{
    PROCESS_MEMORY_COUNTERS counters = {};
    counters.cb = sizeof counters;
    GetProcessMemoryInfo(GetCurrentProcess(), &counters, sizeof counters);
    return counters.PagefileUsage;
}

void BenchMemory(const WrittenLog& log, const std::string& size)
{
    const std::size_t before = PrivateBytes();
    LogModel model;
    Fill(model, log.Path());
    const std::size_t taken = PrivateBytes() - before;
    std::size_t labelBytes = 0;
    std::vector<bool> counted(model.LabelCount());
    for (ItemIndex item = 0; item < model.Size(); ++item) {
        if (counted[model.LabelNumber(item)]) continue;
        counted[model.LabelNumber(item)] = true;
        labelBytes += model.Label(item).size();
    }
    PrintFigure(size + "items", model.Size(), "");
    Require(PrintFigure(size + "model, bytes per item without the labels",
                        (static_cast<double>(taken) - static_cast<double>(labelBytes)) / model.Size(), "bytes", 48));
}

}  // namespace

void BenchLoading(const WrittenLog& log, int pairs)
{
    char text[40];
    std::snprintf(text, sizeof text, "%.0f MB: ", log.Megabytes());
    const std::string size = text;
    const auto floor = [&] { return ReadBare(log.Path()); };
    PrintRow(size + "items", Compare(pairs, floor, [&] { return Parse(log.Path()); }), 0);
    MeasureRow(size + "items into the model", pairs, {1.3}, floor, [&] { return ParseIntoModel(log.Path()); });

    const std::vector<BareItem> items = log.Megabytes() < 20 ? ItemsOf(log.Path()) : std::vector<BareItem>();
    const bool filled = !items.empty() && items.size() <= LogTree::kFilledItems;
    MeasureRow(
        size + (filled ? "viewer, filled" : "viewer"), pairs, {filled ? 1.15 : 1.3},
        [&] { return ReadBare(log.Path()) + (filled ? InsertBare(items) : 0) + OpenWindows(); },
        [&] { return Load(log.Path()); });
    const Comparison bare = Compare(
        pairs, [&] { return ReadBare(log.Path()) + (filled ? InsertBare(items) : 0); },
        [&] {
            const double windows = OpenWindows();
            return Load(log.Path()) - windows;
        });
    PrintRow(size + "less the windows", bare, 0);
    BenchMemory(log, size);
}

void BenchWindows()
{
    OpenWindows();
    std::vector<double> times(9);
    for (double& time : times) time = OpenWindows();
    PrintFigure("the windows alone (part of both columns below)", Median(times) * 1e3, "ms");
}

}  // namespace zelt::bench
