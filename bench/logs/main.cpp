// How long it takes to read a log as events and with zeltctl's commands, compared with a bare scan for tags over the same file;
// and how much memory the commands need, for logs and for recordings.
// The times are processor times, so the machine may be busy. The program fails when a goal is missed. Usage: bench_logs
// [--quick] [--large] [word]. --quick measures fewer pairs, --large takes files of 1000 MB. The word selects the commands for
// logs that begin with it; "events" selects the reading of events, "recording" the commands for recordings.
#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <exception>
#include <filesystem>
#include <functional>
#include <stdexcept>
#include <string>
#include <vector>

#include "bench/logs/neighbours.h"
#include "bench/rows.h"
#include "bench/tag_scan.h"
#include "bench/viewer/written_log.h"
#include "bench/written_recording.h"
#include "ctl/command.h"
#include "ctl/log/log_commands.h"
#include "log_reader/log_reader.h"

namespace zelt::bench {
namespace {

struct Command {
    std::vector<std::string> words;
    double goal;  // 0 for none
};
const Command kCommands[] = {{{"log", "stats"}, 3},
                             {{"log", "errors"}, 3},
                             {{"log", "show", "--calls"}, 3},
                             {{"log", "show", "--object", "Nothing"}, 3},
                             {{"log", "check"}, 8},
                             {{"log", "redact"}, 8},
                             {{"log", "export", "--csv"}, 8},
                             {{"log", "show"}, 0},
                             {{"log", "show", "--result", "failed"}, 0},
                             {{"log", "export", "--json"}, 0},
                             {{"log", "export", "--html"}, 0}};

constexpr double kMostMegabytes = 10;
constexpr int kPairsWithoutGoal = 3;

class Counter final : public LogSink {
public:
    explicit Counter(bool wantsLines) : wantsLines(wantsLines) {}
    void Begin(const LogEvent& event) override { bytes += event.name.size() + event.text.size(); }
    bool WantsLines() const override { return wantsLines; }

    std::size_t bytes = 0;

private:
    const bool wantsLines;
};

double ReadEvents(const std::string& path)
{
    const WorkWatch watch;
    const int file = open(path.c_str(), O_RDONLY | O_CLOEXEC);
    Counter counter(true);
    const LogReadResult result = ReadLog(file, counter);
    close(file);
    if (result != LogReadResult::Complete || counter.bytes == 0) throw std::runtime_error("the log is damaged");
    return watch.Seconds();
}

std::string Joined(const std::vector<std::string>& words)
{
    std::string text;
    for (const std::string& word : words) (text += text.empty() ? "" : " ") += word;
    return text;
}

// Runs the command in this process and discards its output.
double RunCommand(const std::vector<std::string>& command, const std::string& path)
{
    std::vector<std::string> words = command;
    words.push_back(path);
    std::FILE* nothing = std::fopen("/dev/null", "wb");
    if (!nothing) throw std::runtime_error("/dev/null cannot be opened");
    double seconds;
    {
        ctl::Output data(nothing), messages;
        ctl::Streams streams = {data, messages};
        const WorkWatch watch;
        const int code = ctl::Run(ctl::LogCommands(), words, streams);
        seconds = watch.Seconds();
        if (code > ctl::kFinding) throw std::runtime_error(messages.Text());
    }
    std::fclose(nothing);
    return seconds;
}

void Measure(const std::string& what, int pairs, double goal, const std::string& path,
             const std::function<double()>& measured)
{
    MeasureRow(
        what, pairs, {goal}, [&] { return ScanForTags(path); }, measured);
}

void MeasureMemory(const std::string& command, std::vector<std::string> words, const std::string& path)
{
    words.insert(words.begin(), ZELT_CONTROL);
    words.push_back(path);
    const Run run = RunProgram(words);
    if (!run.started) throw std::runtime_error("zeltctl cannot be started");
    Require(PrintFigure(command, run.megabytes, "MB", kMostMegabytes));
}

void MeasureRecordings(long long bytes, const std::string& only)
{
    const std::vector<std::string> kUses[] = {{"recording", "info"},
                                              {"recording", "profile"},
                                              {"recording", "profile", "--trace-events"},
                                              {"recording", "redact"}};
    if (!only.empty() && only != "recording") return;
    PrintTitle("Peak memory of zeltctl for a recording of " + std::to_string(bytes / 1'000'000) + " MB");
    const WrittenRecording recording(bytes);
    const std::string path = std::filesystem::path(recording.Path()).string();
    for (const auto& words : kUses) MeasureMemory(Joined(words), words, path);
}

}  // namespace
}  // namespace zelt::bench

int main(int argc, char** argv)
try {
    using namespace zelt::bench;
    int pairs = 7;
    long long bytes = 400'000'000;
    std::string only;
    for (int i = 1; i < argc; ++i) {
        if (std::strcmp(argv[i], "--quick") == 0) {
            pairs = 1;
        } else if (std::strcmp(argv[i], "--large") == 0) {
            bytes = 1'000'000'000;
        } else {
            only = argv[i];
        }
    }
    zelt::PrepareLogReader();
    const WrittenLog log(bytes);
    const std::string path = std::filesystem::path(log.Path()).string();
    const std::string size = std::to_string(static_cast<int>(log.Megabytes())) + " MB";

    PrintTitle("Reading a log of " + size + " (floor: a bare scan for tags)");
    const auto isWanted = [&](const std::string& name) { return only.empty() || name == only; };
    if (isWanted("events")) Measure("events", pairs, 2.5, path, [&] { return ReadEvents(path); });
    for (const Command& command : kCommands) {
        if (!isWanted(command.words[1])) continue;
        const int rowPairs = command.goal > 0 ? pairs : std::min(pairs, kPairsWithoutGoal);
        Measure(Joined(command.words), rowPairs, command.goal, path, [&] { return RunCommand(command.words, path); });
    }
    const std::vector<std::string> kTools[] = {{"rg", "--count", "nothing of the kind", path},
                                               {"xmllint", "--stream", "--noout", path}};
    for (const auto& tool : kTools) {
        if (!only.empty() || !RunProgram({tool[0], "--version"}).started) continue;
        Measure(tool[0] + ' ' + tool[1], 1, 0, path, [&] { return RunProgram(tool).seconds; });
    }

    PrintTitle("Peak memory of zeltctl for a log of " + size);
    for (const Command& command : kCommands) {
        if (isWanted(command.words[1])) MeasureMemory(Joined(command.words), command.words, path);
    }
    MeasureRecordings(bytes, only);
    return ExitCode();
} catch (const std::exception& failure) {
    std::printf("bench_logs: %s\n", failure.what());
    return 1;
}
