// The commands for logs accept any bytes: each command ends with one of its exit codes, with a message if it cannot read
// the bytes. No log differs from itself, and a complete log keeps its number of events when it is redacted.
#include <string>
#include <vector>

#include "ctl/command.h"
#include "ctl/log/log_commands.h"
#include "memory_input.h"

namespace zelt::test {
namespace {

using Words = std::vector<std::string>;

int Run(Words words, std::string& data)
{
    ctl::Output out, messages;
    ctl::Streams streams = {out, messages};
    const int code = ctl::Run(ctl::LogCommands(), words, streams);
    CHECK(code == ctl::kFine || code == ctl::kFinding || code == ctl::kUnreadable);
    CHECK(code != ctl::kUnreadable || !messages.Text().empty());
    data = out.Text();
    return code;
}

class Counter final : public LogSink {
public:
    void Begin(const LogEvent&) override { ++events; }
    std::size_t events = 0;
};

LogReadResult CountEvents(std::string_view log, std::size_t& events)
{
    Counter counter;
    Pieces bytes(log, log.size());
    const LogReadResult result = ReadLog(bytes, counter);
    events = counter.events;
    return result;
}

}  // namespace

void Test(std::string_view bytes)
{
    static const Words kCommands[] = {
        {"log", "show"},
        {"log", "show", "--calls"},
        {"log", "show", "--result", "failed"},
        {"log", "errors"},
        {"log", "errors", "--json"},
        {"log", "errors", "--context"},
        {"log", "why"},
        {"log", "show", "--nested", "--method", "*Prop"},
        {"log", "stats"},
        {"log", "stats", "--json"},
        {"log", "check"},
        {"log", "check", "--json"},
        {"log", "export", "--csv"},
        {"log", "export", "--json"},
        {"log", "export", "--html"},
    };
    const MemoryFile log(bytes);
    std::string data;
    for (Words words : kCommands) {
        words.push_back(log.Path());
        Run(words, data);
    }
    Run({"log", "diff", log.Path(), log.Path()}, data);
    CHECK(data.empty());

    const int redacted = Run({"log", "redact", log.Path()}, data);
    std::size_t before = 0, after = 0;
    const LogReadResult result = CountEvents(bytes, before);
    if (redacted == ctl::kFine && result == LogReadResult::Complete) {
        CHECK(CountEvents(data, after) == LogReadResult::Complete);
        CHECK(before == after);
    }
}

}  // namespace zelt::test
