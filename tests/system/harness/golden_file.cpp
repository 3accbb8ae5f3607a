#include "tests/system/harness/golden_file.h"

#include <windows.h>

#include <algorithm>
#include <cstdio>
#include <string_view>

#include "tests/system/harness/golden_text.h"
#include "tests/system/harness/text_file.h"
#include "tests/trees.h"

namespace zelt::test {
namespace {

std::string Printable(std::string_view text)
{
    std::string out;
    for (const char c : text) {
        if (c >= 0x20 && c < 0x7F) {
            out += c;
        } else {
            char escape[8];
            std::snprintf(escape, sizeof escape, "\\x%02X", static_cast<unsigned char>(c));
            out += c == '\r' ? "\\r" : c == '\n' ? "\\n" : escape;
        }
    }
    return out;
}

// The line that starts at `start`, with its line end; "(end)" at the end of the text.
std::string LineAt(const std::string& text, std::size_t start)
{
    if (start >= text.size()) return "(end)";
    const std::size_t end = text.find('\n', start);
    return Printable(std::string_view(text).substr(start, end == std::string::npos ? end : end + 1 - start));
}

}  // namespace

std::string FirstDifference(const std::string& expected, const std::string& actual)
{
    if (expected == actual) return {};
    const auto differ = std::mismatch(expected.begin(), expected.end(), actual.begin(), actual.end()).first;
    const auto common = static_cast<std::size_t>(differ - expected.begin());
    const std::size_t lineBreak = common == 0 ? std::string::npos : expected.rfind('\n', common - 1);
    const std::size_t start = lineBreak == std::string::npos ? 0 : lineBreak + 1;
    const auto line = 1 + std::count(expected.begin(), expected.begin() + static_cast<std::ptrdiff_t>(start), '\n');

    std::string message = "differs in line " + std::to_string(line) + ", column " + std::to_string(common - start + 1);
    if (start > 1) {
        const std::size_t previousBreak = expected.rfind('\n', start - 2);
        const std::size_t previous = previousBreak == std::string::npos ? 0 : previousBreak + 1;
        message += "\n  after:    " + LineAt(expected, previous);
    }
    return message + "\n  expected: " + LineAt(expected, start) + "\n  actual:   " + LineAt(actual, start);
}

std::string CompareWithGolden(const std::string& path, const std::string& actual, bool update)
{
    const std::size_t slash = path.find_last_of("/\\");
    const auto expected = GoldenText(path.substr(0, slash), path.substr(slash + 1));
    std::string difference = expected ? FirstDifference(*expected, actual) : "does not exist";
    if (difference.empty()) return {};
    if (update) {
        WriteWholeFile(path, actual);
        difference += "\n  rewritten: look at the change, and run again without ZELT_UPDATE_GOLDEN";
        if (FileExists(path + ".diff")) difference += "; then keep it as its difference from the base";
    }
    return path + ' ' + difference;
}

std::string MatchGolden(const std::string& name, const std::string& actual)
{
    char value[4] = {};
    const bool update = GetEnvironmentVariableA("ZELT_UPDATE_GOLDEN", value, sizeof value) == 1 && value[0] == '1';
    return CompareWithGolden(SourceFile("tests/golden/") + name, actual, update);
}

}  // namespace zelt::test
