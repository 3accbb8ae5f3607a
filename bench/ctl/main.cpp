// How long zeltctl's commands for logs take, compared with a bare scan for tags over the same file; and how much memory they
// need, which must not grow with the log. Usage: bench_ctl [--quick] [word]. --quick measures fewer pairs. The word selects the
// commands that begin with it.
#include <windows.h>

#include <cstdio>
#include <cstring>
#include <exception>
#include <stdexcept>
#include <string>
#include <vector>

#include "bench/ctl/memory.h"
#include "bench/rows.h"
#include "bench/tag_scan.h"
#include "bench/viewer/written_log.h"
#include "system/narrow.h"
#include "ctl/command.h"
#include "ctl/log/log_commands.h"
#include "log_reader/log_reader.h"

namespace zelt::bench {
namespace {

struct Command {
    std::vector<std::string> words;
    double goal;  // 0 for none
};
const Command kCommands[] = {{{"stats"}, 3},
                             {{"errors"}, 3},
                             {{"show", "--calls"}, 3},
                             {{"check"}, 8},
                             {{"redact"}, 8},
                             {{"export", "--csv"}, 8},
                             {{"show"}, 0},
                             {{"show", "--result", "failed"}, 0},
                             {{"export", "--json"}, 0},
                             {{"export", "--html"}, 0}};

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
    if (!nothing) throw std::runtime_error("NUL cannot be opened");
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
    PrintTitle("zeltctl: the commands on a log of " + std::to_string(static_cast<int>(log.Megabytes())) + " MB");
    for (const Command& command : kCommands) {
        if (command.goal == 0 || (!only.empty() && command.words.front() != only)) continue;
        MeasureRow(
            Joined(command.words), pairs, {command.goal}, [&] { return ScanForTags(log.Path()); },
            [&] { return RunCommand(command.words, log); });
    }
}

void BenchMemory(const WrittenLog& small, const WrittenLog& large, const std::string& only)
{
    PrintTitle("zeltctl: peak private memory");
    for (const Command& command : kCommands) {
        if (!only.empty() && command.words.front() != only) continue;
        const std::string text = Joined(command.words);
        const auto peak = [&](const WrittenLog& log) {
            return PeakMemory(Widen(text, CP_UTF8) + L" \"" + log.Path() + L'"') / 1e6;
        };
        const double less = peak(small), more = peak(large);
        char size[40];
        std::snprintf(size, sizeof size, ", %.0f MB", small.Megabytes());
        PrintFigure(text + size, less, "MB");
        std::snprintf(size, sizeof size, ", %.0f MB", large.Megabytes());
        // A megabyte more is allowed: commands that select calls by result keep a bit for each call.
        Require(PrintFigure(text + size, more, "MB", less + 1));
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
    BenchSpeed(large, quick ? 1 : 3, only);
    BenchMemory(small, large, only);
    return ExitCode();
} catch (const std::exception& failure) {
    std::printf("bench_ctl: %s\n", failure.what());
    return 1;
}
