#include "tests/verification/plan.h"

#include <algorithm>
#include <array>
#include <map>

namespace zelt::verification {
namespace {

std::string Trimmed(std::string_view text)
{
    constexpr std::string_view kBlanks = " \t\r";
    const std::size_t first = text.find_first_not_of(kBlanks);
    if (first == std::string_view::npos) return {};
    return std::string(text.substr(first, text.find_last_not_of(kBlanks) - first + 1));
}

std::vector<std::string> Split(std::string_view text, char separator)
{
    std::vector<std::string> parts;
    for (std::size_t start = 0; start <= text.size();) {
        const std::size_t end = std::min(text.find(separator, start), text.size());
        parts.push_back(Trimmed(text.substr(start, end - start)));
        start = end + 1;
    }
    return parts;
}

Needs ReadNeeds(const std::string& text, const std::string& line)
{
    Needs needs;
    if (text == "-") return needs;
    for (const std::string& word : Split(text, ' ')) {
        if (!IsNeed(word)) throw PlanError("unknown need \"" + word + "\": " + line);
        needs.insert(word);
    }
    return needs;
}

std::vector<Tests> ReadTests(const std::string& text, const std::string& line)
{
    std::vector<Tests> all;
    if (text == "-") return all;
    for (const std::string& part : Split(text, ';')) {
        const std::size_t blank = part.find(' ');
        if (blank == std::string::npos) throw PlanError("a program without a filter: " + line);
        all.push_back({part.substr(0, blank), Trimmed(std::string_view(part).substr(blank))});
    }
    return all;
}

// A pattern in which * stands for any text and ? for any character.
bool Matches(std::string_view pattern, std::string_view text)
{
    if (pattern.empty()) return text.empty();
    if (pattern.front() == '*') {
        for (std::size_t skipped = 0; skipped <= text.size(); ++skipped) {
            if (Matches(pattern.substr(1), text.substr(skipped))) return true;
        }
        return false;
    }
    if (text.empty() || (pattern.front() != '?' && pattern.front() != text.front())) return false;
    return Matches(pattern.substr(1), text.substr(1));
}

bool MatchesOneOf(std::string_view patterns, std::string_view text)
{
    const std::vector<std::string> all = Split(patterns, ':');
    return std::any_of(all.begin(), all.end(), [text](const std::string& pattern) { return Matches(pattern, text); });
}

}  // namespace

bool IsNeed(const std::string& word)
{
    constexpr std::array kWords = {"windows", "admin", "plain", "64bit", "32bit", "arm64", "topdown", "long"};
    return std::find(kWords.begin(), kWords.end(), word) != kWords.end();
}

std::vector<OpenPoint> ReadOpenPoints(std::string_view page)
{
    std::vector<OpenPoint> points;
    std::string section;
    // A table's first two lines are its heading.
    int headingLines = 0;
    for (const std::string& line : Split(page, '\n')) {
        if (line.starts_with("## ")) section = line.substr(3);
        if (!line.starts_with('|')) {
            headingLines = 0;
            continue;
        }
        if (++headingLines <= 2) continue;
        const std::vector<std::string> columns = Split(line, '|');
        if (columns.size() != 5) throw PlanError("a row without three columns: " + line);
        points.push_back({section, columns[1], columns[2], columns[3]});
    }
    return points;
}

Plan ReadPlan(std::string_view plan, std::string_view page)
{
    Plan read;
    std::map<std::string, Row> rows;
    for (const std::string& line : Split(plan, '\n')) {
        if (line.empty() || line.starts_with('#')) continue;
        const std::vector<std::string> columns = Split(line, '|');
        if (columns.size() == 6 && columns[0] == "program") {
            read.programs.push_back({columns[1], columns[2], columns[3], ReadNeeds(columns[4], line), columns[5]});
        } else if (columns.size() == 4 && columns[0] == "row") {
            Row row = {{}, ReadNeeds(columns[2], line), ReadTests(columns[3], line)};
            for (const Tests& tests : row.tests) {
                const auto isMeant = [&](const Program& program) { return program.name == tests.program; };
                if (std::none_of(read.programs.begin(), read.programs.end(), isMeant))
                    throw PlanError("unknown program: " + line);
            }
            if (!rows.emplace(columns[1], std::move(row)).second) throw PlanError("the same row again: " + line);
        } else {
            throw PlanError("neither a program nor a row: " + line);
        }
    }
    for (OpenPoint& point : ReadOpenPoints(page)) {
        auto row = rows.extract(point.what);
        if (row.empty()) throw PlanError("the plan has no row for: " + point.what);
        row.mapped().point = std::move(point);
        read.rows.push_back(std::move(row.mapped()));
    }
    if (!rows.empty()) throw PlanError("the page has no row for: " + rows.begin()->first);
    return read;
}

bool Takes(std::string_view filter, std::string_view test)
{
    const std::size_t minus = std::min(filter.find('-'), filter.size());
    const std::string_view wanted = filter.substr(0, minus);
    if (!wanted.empty() && !MatchesOneOf(wanted, test)) return false;
    return minus == filter.size() || !MatchesOneOf(filter.substr(minus + 1), test);
}

}  // namespace zelt::verification
