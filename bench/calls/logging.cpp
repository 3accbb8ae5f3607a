#include <comutil.h>
#include <wrl/client.h>

#include <cstdio>
#include <string>
#include <vector>

#include "bench/calls/logged_package.h"
#include "bench/calls/parts.h"
#include "bench/rows.h"

namespace zelt::bench {
namespace {

constexpr int kCalls = 1000;
constexpr int kPairs = 151;

// Splits a log's text after its header into entries: the start of a call, a whole argument, the end of a call.
std::vector<std::string_view> Entries(std::string_view text)
{
    std::vector<std::string_view> entries;
    std::size_t start = text.find("<func");
    while (start < text.size()) {
        const std::size_t content = text.find_first_not_of(' ', start);
        const bool isArgument = text.substr(content, 4) == "<arg";
        std::size_t end = isArgument ? text.find("</arg>", content) : content;
        end = text.find('\n', end);
        if (end == std::string_view::npos) break;
        entries.push_back(text.substr(start, end + 1 - start));
        start = end + 1;
    }
    return entries;
}

// How many bytes a call adds to a recording that already has the call's texts in its tables. The recorder writes them in two
// pieces: one before the call enters the object, the other when the call ends.
template <class Call>
std::size_t RecordedBytesOfACall(Call&& call)
{
    LoggedPackage recorded(Sinks::Recording);
    call(recorded);
    const std::size_t before = recorded.RecordedBytes();
    call(recorded);
    return recorded.RecordedBytes() - before;
}

double TimeFloor(const std::vector<std::string_view>& entriesOfACall)
{
    TemporaryLog log;
    const Stopwatch watch;
    for (int i = 0; i < kCalls; ++i) {
        for (const std::string_view entry : entriesOfACall) log.file.Write(entry);
    }
    return watch.Seconds();
}

template <class Call>
double TimeWith(Sinks sinks, Call&& call)
{
    LoggedPackage logged(sinks);
    const Stopwatch watch;
    for (int i = 0; i < kCalls; ++i) call(logged);
    return watch.Seconds();
}

template <class Call>
std::string TextOfACall(Call&& call)
{
    LoggedPackage logged;
    const std::size_t before = logged.Text().size();
    call(logged);
    return logged.Text().substr(before);
}

template <class Call>
void Row(const std::string& name, Call call)
{
    // This is the first call, so it also looks up the interface, which writes nothing to the log.
    const std::string text = TextOfACall(call);
    const std::vector<std::string_view> entries = Entries(text);
    MeasureRow(
        name + ", " + std::to_string(entries.size()) + " entries, " + std::to_string(text.size()) + " bytes", kPairs,
        {1.1, "ns", kCalls}, [&] { return TimeFloor(entries); }, [&] { return TimeWith(Sinks::Log, call); });
    const std::string recorded(RecordedBytesOfACall(call), 'r');
    const std::string_view piece(recorded.data(), recorded.size() / 2);
    MeasureRow(
        name + ", recorded, 2 pieces, " + std::to_string(recorded.size()) + " bytes", kPairs, {1.2, "ns", kCalls},
        [&] {
            return TimeFloor({piece, piece});
        },
        [&] { return TimeWith(Sinks::Recording, call); });
    MeasureRow(
        name + ", both at once (floor: one after the other)", kPairs, {1, "ns", kCalls},
        [&] { return TimeWith(Sinks::Log, call) + TimeWith(Sinks::Recording, call); },
        [&] { return TimeWith(Sinks::Both, call); });
}

}  // namespace

void MeasureLogging()
{
    PrintTitle("Logged and recorded calls (floor: the same bytes, one write per entry or piece)");
    Row("scalar", [](LoggedPackage& logged) {
        long number = 0;
        logged.compounds->GetNumCompounds(&number);
    });
    const _bstr_t property(L"fugacity"), phase(L"Liquid"), basis(L"");
    _variant_t values;
    values.vt = VT_ARRAY | VT_R8;
    values.parray = SafeArrayCreateVector(VT_R8, 0, 10);
    for (long i = 0; i < 10; ++i) {
        double value = 101325.0 / (i + 3);
        SafeArrayPutElement(values.parray, &i, &value);
    }
    Row("ten doubles in",
        [&](LoggedPackage& logged) { logged.material->SetSinglePhaseProp(property, phase, basis, values); });
}

}  // namespace zelt::bench
