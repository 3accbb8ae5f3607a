// A conversation as tables of a database: the calls with their arguments, values and messages, and views for common questions.
// What a log does not have, such as times, is NULL.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "ctl/database/database.h"
#include "ctl/log/call_results.h"

namespace zelt::ctl {

struct CallTiming {
    // In nanoseconds. `start` counts from the start of the first call; `inside` is the time spent in the called object and in
    // the calls that it made.
    std::uint64_t start, duration, inside;
    bool hasFailed;
};

class ConversationTables final : public LogSink {
public:
    explicit ConversationTables(Database& database);

    // A property of the whole conversation, such as when it started.
    void Describe(std::string_view name, std::string_view text);
    // Sets the times of the innermost open call, right before its end.
    void SetTiming(const CallTiming& timing);
    // Sets the start of the innermost open call, right after its beginning: if it never ends, only its start is known.
    void SetStart(std::uint64_t start);
    // Adds the calls that are still open, and makes the tables permanent.
    void Finish();

    void Begin(const LogEvent& event) override;
    void End(EventKind kind, int depth) override;
    bool WantsLines() const override { return true; }
    // Called for each element that a damaged log leaves open, after its End.
    void LeftOpen(int line) override;

private:
    struct OpenCall {
        std::int64_t id;
        int line;
        bool isInward;
        std::string interfaceName, method, object, failure;
        CallResult result;
        std::optional<std::uint64_t> start, duration, inside;
    };

    void BeginCall(const LogEvent& event);
    void BeginArgument(const LogEvent& event);
    void AddValue(std::string_view text);
    void AddMessage(const LogEvent& event);
    void Insert(const OpenCall& call, std::size_t depth, const char* result);

    Database& database;
    RowInserter source, call, argument, value, message;
    std::vector<OpenCall> open;
    std::vector<int> leftOpen;  // the lines of these elements
    std::int64_t calls = 0, arguments = 0, messages = 0, place = 0;
    bool isInArgument = false;
};

}  // namespace zelt::ctl
