// zeltctl's commands that read large logs, compared with libxml2's bare reader over the same file: a command should run
// at least half as fast, and need the same memory whatever the length of the log. Usage: bench_ctl [--quick] [word]:
// fewer pairs, and only the commands that begin with the word.
#include <windows.h>

#include <cstdio>
#include <cstring>
#include <exception>
#include <stdexcept>
#include <string>
#include <vector>

#include "bench/ctl/memory.h"
#include "bench/rows.h"
#include "bench/viewer/bare_reader.h"
#include "bench/viewer/written_log.h"
#include "system/narrow.h"
#include "ctl/command.h"
#include "ctl/log/log_commands.h"
#include "log_reader/log_reader.h"

namespace zelt::bench {
namespace {

const std::vector<std::string> kCommands[] = {
    {"show"},   {"show", "--calls"}, {"show", "--result", "failed"}, {"errors"},          {"stats"}, {"check"},
    {"redact"}, {"export", "--csv"}, {"export", "--json"},           {"export", "--html"}};

std::string Joined(const std::vector<std::string>& words)
{
    std::string text = "log";
    for (const std::string& word : words) text += ' ' + word;
    return text;
}

// Runs the command in this process and discards its output.
double RunCommand(const std::vector<std::string>& command, const WrittenLog& log)
{
    std::vector<std::string> words = {"log"};
    words.insert(words.end(), command.begin(), command.end());
    words.push_back(Narrow(log.Path(), CP_UTF8));
    std::FILE* nothing = std::fopen("NUL", "wb");
    if (!nothing) throw std::runtime_error("there is no NUL");
    double seconds;
    {
        ctl::Output data(nothing), messages;
        ctl::Streams streams = {data, messages};
        const Stopwatch watch;
        const int code = ctl::Run(ctl::LogCommands(), words, streams);
        seconds = watch.Seconds();
        if (code > ctl::kFinding) throw std::runtime_error(messages.Text());
    }
    std::fclose(nothing);
    return seconds;
}

void BenchSpeed(const WrittenLog& log, int pairs, const std::string& only)
{
    PrintTitle("zeltctl: the commands over a log of " + std::to_string(static_cast<int>(log.Megabytes())) + " MB");
    for (const auto& command : kCommands) {
        if (!only.empty() && command.front() != only) continue;
        // A call's result comes after what happened during the call, so a filter by result reads twice.
        const double goal = command.back() == "failed" ? 4 : 2;
        PrintRow(Joined(command),
                 Compare(
                     pairs, [&] { return ReadBare(log.Path()); }, [&] { return RunCommand(command, log); }),
                 goal);
    }
}

void BenchMemory(const WrittenLog& small, const WrittenLog& large, const std::string& only)
{
    PrintTitle("zeltctl: peak private memory");
    for (const auto& command : kCommands) {
        if (!only.empty() && command.front() != only) continue;
        const std::string text = Joined(command);
        const auto peak = [&](const WrittenLog& log) {
            return PeakMemory(Widen(text, CP_UTF8) + L" \"" + log.Path() + L'"') / 1e6;
        };
        const double less = peak(small), more = peak(large);
        char size[40];
        std::snprintf(size, sizeof size, ", %.0f MB", small.Megabytes());
        PrintFigure(text + size, less, "MB");
        std::snprintf(size, sizeof size, ", %.0f MB", large.Megabytes());
        // Allows for a page or two, and one bit per call where results are kept.
        PrintFigure(text + size, more, "MB", less + 1);
    }
}

}  // namespace
}  // namespace zelt::bench

int main(int argc, char** argv)
try {
    using namespace zelt::bench;
    bool quick = false;
    std::string only;
    for (int i = 1; i < argc; ++i) {
        if (std::strcmp(argv[i], "--quick") == 0) {
            quick = true;
        } else {
            only = argv[i];
        }
    }
    zelt::PrepareLogReader();
    const WrittenLog small(20'000'000), large(200'000'000);
    BenchSpeed(large, quick ? 1 : 5, only);
    BenchMemory(small, large, only);
    return 0;
} catch (const std::exception& failure) {
    std::printf("bench_ctl: %s\n", failure.what());
    return 1;
}
