#include "tests/verification/test_program.h"

#include <windows.h>

#include <algorithm>
#include <charconv>
#include <cstdio>
#include <optional>
#include <utility>

#include "system/narrow.h"
#include "tests/system/harness/process.h"

namespace zelt::verification {
namespace {

constexpr DWORD kPace = 500;

// The marks at the beginning of gtest's lines. The number of tests follows kAll; a test's name follows the others. The last
// lines of a program repeat the names of tests that failed or were skipped; no test is in progress then.
constexpr std::string_view kBegin = "[ RUN      ] ", kPassed = "[       OK ] ", kFailed = "[  FAILED  ] ",
                           kSkipped = "[  SKIPPED ] ", kAll = "[==========] Running ";

std::string ReadFile(const std::wstring& path)
{
    std::FILE* file = _wfopen(path.c_str(), L"rb");
    if (!file) return {};
    std::string text;
    char part[65'536];
    for (std::size_t size; (size = std::fread(part, 1, sizeof part, file)) > 0;) text.append(part, size);
    std::fclose(file);
    return text;
}

void WriteFile(const std::wstring& path, const std::string& text)
{
    std::FILE* file = _wfopen(path.c_str(), L"wb");
    if (!file) return;
    std::fwrite(text.data(), 1, text.size(), file);
    std::fclose(file);
}

// Whether the line ends the test, as in "[       OK ] Suite.Name (3 ms)" or
// "[  FAILED  ] Suite.Name, where GetParam() = 3 (3 ms)". If the test has not ended its own last line, that text comes first.
bool Ends(std::string_view line, std::string_view mark, std::string_view test)
{
    const std::size_t place = line.find(mark);
    if (place == line.npos) return false;
    line.remove_prefix(place + mark.size());
    return line.starts_with(test) &&
           (line.size() == test.size() || line[test.size()] == ' ' || line[test.size()] == ',');
}

// The filter without the tests that have ended.
std::string Rest(const std::string& filter, const TestResults& ended)
{
    std::string rest = filter;
    for (const auto& [name, result] : ended) {
        rest += rest.find('-') == std::string::npos ? '-' : ':';
        rest += name;
    }
    return rest;
}

std::string ExitText(DWORD code)
{
    char text[32];
    std::snprintf(text, sizeof text, "0x%08lX", static_cast<unsigned long>(code));
    return text;
}

}  // namespace

Reading ReadOutput(std::string_view output)
{
    Reading reading;
    TestResult current;
    for (std::size_t start = 0; start < output.size();) {
        const std::size_t end = std::min(output.find('\n', start), output.size());
        std::string_view line = output.substr(start, end - start);
        start = end + 1;
        if (line.ends_with('\r')) line.remove_suffix(1);
        if (line.starts_with(kAll)) {
            const std::string_view number = line.substr(kAll.size());
            std::from_chars(number.data(), number.data() + number.size(), reading.announced);
        }
        if (line.starts_with(kBegin)) {
            reading.unfinished = line.substr(kBegin.size());
            current = {};
            continue;
        }
        if (reading.unfinished.empty()) continue;
        const bool passed = Ends(line, kPassed, reading.unfinished), skipped = Ends(line, kSkipped, reading.unfinished);
        if (!passed && !skipped && !Ends(line, kFailed, reading.unfinished)) {
            current.output.append(line) += '\n';
            continue;
        }
        current.state = passed ? State::Passed : skipped ? State::Skipped : State::Failed;
        reading.results[std::exchange(reading.unfinished, {})] = std::move(current);
    }
    if (!reading.unfinished.empty()) reading.results[reading.unfinished] = std::move(current);
    return reading;
}

TestResults RunTests(const Order& order, const Progress& progress)
{
    const std::wstring outputPath = order.scratch + L"\\output.txt", flags = order.scratch + L"\\flags.txt";
    TestResults results;
    std::size_t all = 0;
    for (;;) {
        WriteFile(flags, "--gtest_filter=" + Rest(order.filter, results) + "\n--gtest_color=no\n");
        auto process =
            test::Process::Start(L'"' + order.program + L"\" --gtest_flagfile=\"" + flags + L'"', Narrow(outputPath));
        Reading reading;
        std::optional<DWORD> code;
        std::size_t length = 0;
        for (DWORD silence = 0; !(code = process.Wait(kPace)) && silence < order.patience * 60'000; silence += kPace) {
            const std::string output = ReadFile(outputPath);
            if (output.size() != std::exchange(length, output.size())) silence = 0;
            reading = ReadOutput(output);
            progress(results.size() + reading.results.size(), all ? all : reading.announced);
        }
        process.Kill();
        reading = ReadOutput(ReadFile(outputPath));
        if (!all) all = reading.announced;
        if (!reading.unfinished.empty()) {
            reading.results[reading.unfinished].output +=
                code ? "The program ended in this test, with code " + ExitText(*code) + ".\n"
                     : std::string("The test did not end.\n");
        }
        const bool finished = reading.unfinished.empty();
        results.merge(reading.results);
        const auto failed = [](const auto& result) { return result.second.state == State::Failed; };
        const bool explained = code == 0u || std::any_of(results.begin(), results.end(), failed);
        if (finished && (!explained || results.size() < all)) {
            results["(the program)"] = {State::Failed, "The program ended with code " + ExitText(code.value_or(0)) +
                                                           " after " + std::to_string(results.size()) + " of " +
                                                           std::to_string(all) + " tests.\n"};
        }
        if (finished) return results;
    }
}

}  // namespace zelt::verification
