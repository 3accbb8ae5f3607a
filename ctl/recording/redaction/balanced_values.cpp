#include "ctl/recording/redaction/balanced_values.h"

namespace zelt::ctl {
namespace {

// More than a calculation needs. A forged recording may have any number of values to hold.
constexpr std::size_t kMostHeld = 4 << 20;

}  // namespace

BalancedValues::BalancedValues(const std::string& path, const LogAliases& aliases) : aliases(aliases), file(path)
{
    file.ReadHeader();
}

std::string BalancedValues::Next()
{
    while (known.empty()) {
        const recording::Record* const record = file.Records().Next();
        if (record) {
            events.Take(*record, *this);
        } else if (lines.empty()) {
            return {};
        } else {
            Fill();
        }
    }
    std::string next = std::move(known.front());
    known.pop_front();
    return next;
}

void BalancedValues::Begin(const LogEvent& event)
{
    meanings.Begin(event);
    held.Begin(event);
    if (event.kind != EventKind::Value || !meanings.AreHeld()) return;
    const std::size_t place = lines.size();
    lines += '\n';
    held.Take({place, std::string(event.text), std::string(meanings.Object()), std::string(meanings.Phase()),
               meanings.Meaning() == ArgumentMeaning::TotalFlow},
              lines, aliases);
    if (!held.AreHeld() || lines.size() >= kMostHeld) Fill();
}

void BalancedValues::End(EventKind kind, int depth)
{
    if (kind != EventKind::Call) return;
    meanings.EndCall();
    if (held.EndCall(depth)) Fill();
}

void BalancedValues::Fill()
{
    held.Fill(lines, aliases);
    for (std::size_t begin = 0; begin < lines.size();) {
        const std::size_t end = lines.find('\n', begin);
        known.push_back(lines.substr(begin, end - begin));
        begin = end + 1;
    }
    lines.clear();
}

}  // namespace zelt::ctl
