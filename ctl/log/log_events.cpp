#include "ctl/log/log_events.h"

#include <filesystem>
#include <fstream>
#include <random>
#include <system_error>
#include <vector>

#include "ctl/log/log_file_input.h"
#include "ctl/log/log_paths.h"
#include "ctl/paths.h"

namespace zelt::ctl {
namespace {

// Rejects a file that is not a log of ZELT, and remembers where a log is damaged.
class LogCheck final : public LogSink {
public:
    LogCheck(LogSink& sink, const std::string& name) : sink(sink), name(name) {}

    void Begin(const LogEvent& event) override
    {
        // A root of another kind arrives as the first event.
        if (!any && event.kind == EventKind::Other) throw InputError(name + ": this is not a log of ZELT");
        any = true;
        sink.Begin(event);
    }
    void End(EventKind kind, int depth) override { sink.End(kind, depth); }
    void LeftOpen(int line) override { sink.LeftOpen(line); }
    void ParseError(int line) override
    {
        if (firstError == 0) firstError = line;
        sink.ParseError(line);
    }
    bool WantsLines() const override { return true; }
    bool WantsArguments() const override { return sink.WantsArguments(); }

    bool Any() const { return any; }
    int FirstError() const { return firstError; }

private:
    LogSink& sink;
    const std::string& name;
    bool any = false;
    int firstError = 0;
};

namespace fs = std::filesystem;

void PrepareOnce()
{
    static const bool prepared = (PrepareLogReader(), true);
    static_cast<void>(prepared);
}

InputError NoLog(const std::string& name) { return InputError(name + ": this is not a log of ZELT, or it is empty"); }

// Stops at the first event.
class FirstEvent final : public LogSink {
public:
    void Begin(const LogEvent& event) override
    {
        any = true;
        foreign = event.kind == EventKind::Other;
    }
    bool Continue() override { return !any; }

    bool any = false, foreign = false;
};

std::string CopyOfStandardInput()
{
    std::random_device random;
    const fs::path path = fs::temp_directory_path() / ("zeltctl-" + std::to_string(random()) + ".zlg");
    LogFileInput input((std::string(kStandardInput)));
    std::ofstream file(path, std::ios::binary);
    std::vector<char> piece(kReadAhead);
    int count;
    while ((count = input.Read(piece.data(), kReadAhead)) > 0) file.write(piece.data(), count);
    file.close();
    if (count < 0 || !file) {
        std::error_code ignored;
        fs::remove(path, ignored);
        throw InputError(NameOfLog(std::string(kStandardInput)) + ": it cannot be read, or cannot be kept in " +
                         Utf8Of(path));
    }
    return Utf8Of(path);
}

}  // namespace

bool ReadEvents(LogInput& input, const std::string& name, LogSink& sink, Output& messages)
{
    PrepareOnce();
    LogCheck check(sink, name);
    switch (ReadLog(input, check)) {
        case LogReadResult::Complete: return true;
        case LogReadResult::NotReadable: throw InputError(name + ": the log reader could not be made");
        default: break;
    }
    if (!check.Any()) throw NoLog(name);
    messages << name << ": line " << check.FirstError()
             << ": the log is cut off or damaged here, so this answer may be incomplete\n";
    return false;
}

bool ReadEvents(const std::string& path, LogSink& sink, Output& messages)
{
    LogFileInput file(path);
    return ReadEvents(file, NameOfLog(path), sink, messages);
}

void RequireLog(const std::string& path)
{
    LogFileInput file(path);
    FirstEvent first;
    PrepareOnce();
    const LogReadResult result = ReadLog(file, first);
    // A complete log may be empty.
    if (first.foreign || (!first.any && result != LogReadResult::Complete)) throw NoLog(path);
}

RereadableLog::RereadableLog(const std::string& path) : path(path)
{
    if (path == kStandardInput) copy = CopyOfStandardInput();
}

RereadableLog::~RereadableLog()
{
    std::error_code ignored;
    if (!copy.empty()) std::filesystem::remove(PathOf(copy), ignored);
}

bool RereadableLog::Read(LogSink& sink, Output& messages) const
{
    LogFileInput file(copy.empty() ? path : copy);
    return ReadEvents(file, NameOfLog(path), sink, messages);
}

}  // namespace zelt::ctl
