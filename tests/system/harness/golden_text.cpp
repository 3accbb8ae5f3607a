#include "tests/system/harness/golden_text.h"

#include <cstdio>
#include <fstream>
#include <iterator>
#include <string_view>
#include <vector>

namespace zelt::test {
namespace {

std::optional<std::string> ReadFile(const std::string& path)
{
    std::ifstream file(path, std::ios::binary);
    if (!file) return {};
    return std::string(std::istreambuf_iterator<char>(file), {});
}

// Each line with its line end.
std::vector<std::string_view> Lines(std::string_view text)
{
    std::vector<std::string_view> lines;
    while (!text.empty()) {
        const std::size_t end = text.find('\n');
        lines.push_back(text.substr(0, end == std::string_view::npos ? end : end + 1));
        text.remove_prefix(lines.back().size());
    }
    return lines;
}

// The lines of the base that a header such as "12,14c20" removes. `first` counts from 0, and `end` is the line after the last.
struct Range {
    std::size_t first, end;
};
std::optional<Range> ReadRange(const std::string& line)
{
    unsigned from = 0, to = 0;
    char kind = 0;
    if (std::sscanf(line.c_str(), "%u,%u%c", &from, &to, &kind) != 3) {
        if (std::sscanf(line.c_str(), "%u%c", &from, &kind) != 2) return {};
        to = from;
    }
    if (kind == 'a') return Range{from, from};
    if ((kind != 'c' && kind != 'd') || from == 0 || to < from) return {};
    return Range{from - 1, to};
}

}  // namespace

std::optional<std::string> Changed(const std::string& base, const std::string& difference)
{
    const std::vector<std::string_view> old = Lines(base), changes = Lines(difference);
    std::string text;
    std::size_t copied = 0, gone = 0;
    for (const std::string_view change : changes) {
        if (change.starts_with("> ")) {
            text += change.substr(2);
        } else if (change.starts_with("< ")) {
            if (gone >= old.size() || old[gone++] != change.substr(2)) return {};
        } else if (!change.starts_with("---")) {
            const auto range = ReadRange(std::string(change));
            if (!range || range->first < copied || range->end > old.size()) return {};
            for (; copied < range->first; ++copied) text += old[copied];
            gone = copied;
            copied = range->end;
        }
    }
    for (; copied < old.size(); ++copied) text += old[copied];
    return text;
}

std::optional<std::string> GoldenText(const std::string& folder, const std::string& name)
{
    if (auto whole = ReadFile(folder + '/' + name)) return whole;
    const auto difference = ReadFile(folder + '/' + name + ".diff");
    constexpr std::string_view kBase = "base: ";
    if (!difference || !difference->starts_with(kBase)) return {};
    const std::size_t end = difference->find('\n');
    const auto base = GoldenText(folder, difference->substr(kBase.size(), end - kBase.size()));
    return base ? Changed(*base, difference->substr(end + 1)) : std::nullopt;
}

}  // namespace zelt::test
