#include <windows.h>

#include <cstdio>
#include <stdexcept>

#include "bench/rows.h"
#include "bench/viewer/parts.h"
#include "shell/log_viewer/label_search.h"
#include "shell/log_viewer/pages/paged_log.h"
#include "shell/log_viewer/long_task.h"

namespace zelt::bench {
namespace {

constexpr int kItems = 1'000'000;

void MakeLower(std::string& text)
{
    for (char& character : text) {
        if (character >= 'A' && character <= 'Z') character = static_cast<char>(character - 'A' + 'a');
    }
}

// Adds calls with arguments and values. With fewer different numbers than items, labels recur.
void Fill(PagedLog& model, int differentNumbers)
{
    char label[80];
    const auto add = [&](int depth, SmallImage image, int length) {
        model.Add({depth, image, depth < 2, false, {label, static_cast<std::size_t>(length)}});
    };
    for (int item = 0; item < kItems; item += 5) {
        const int number = item % differentNumbers;
        add(0, kImageCallIn,
            std::snprintf(label, sizeof label, "ICapeThermoMaterial::GetSinglePhaseProp (Feed %d)", number));
        for (int argument = 0; argument < 2; ++argument) {
            add(1, kImageArgumentOut,
                std::snprintf(label, sizeof label, "results %d (type: VT_ARRAY|VT_R8)", number + argument));
            add(2, kImageValue, std::snprintf(label, sizeof label, "%.17g", (number + argument) * 0.618033988749895));
        }
    }
    model.Finish();
}

double Copy(const PagedLog& model, bool lower)
{
    std::string label;
    std::size_t bytes = 0;
    LongTask task(nullptr);
    const Stopwatch watch;
    const ItemIndex start = model.Previous(model.First());
    ItemIndex item = start;
    do {
        item = model.Next(item);
        label = model.Label(item);
        if (lower) MakeLower(label);
        bytes += label.size();
    } while (item != start && task.Continue());
    const double seconds = watch.Seconds();
    if (bytes == 0) throw std::runtime_error("the labels are empty");
    return seconds;
}

double Find(const PagedLog& model, bool ignoreCase, bool wholeItem)
{
    TreeSearch search;
    search.text = L"no label has this";
    search.ignoreCase = ignoreCase;
    search.wholeItem = wholeItem;
    LongTask task(nullptr);
    const Stopwatch watch;
    const ItemIndex found = FindLabel(model, model.Previous(model.First()), search, task);
    const double seconds = watch.Seconds();
    if (found != kNoItem) throw std::runtime_error("the search found what is not there");
    return seconds;
}

}  // namespace

void BenchSearch(int pairs)
{
    const struct {
        const char* what;
        int differentNumbers;
    } kLogs[] = {{"labels that recur", 10'000}, {"labels all different", kItems}};
    for (const auto& log : kLogs) {
        PagedLog model;
        Fill(model, log.differentNumbers);
        for (const bool ignoreCase : {false, true}) {
            for (const bool wholeItem : {false, true}) {
                const std::string what =
                    std::string(log.what) + (ignoreCase ? ", ignore case" : "") + (wholeItem ? ", whole item" : "");
                MeasureRow(
                    what, pairs, {1.15, "ms"}, [&] { return Copy(model, ignoreCase); },
                    [&] { return Find(model, ignoreCase, wholeItem); });
            }
        }
    }
}

}  // namespace zelt::bench
