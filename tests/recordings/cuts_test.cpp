// Commands that read whole recordings, with recordings cut off at many places; and the trace events of many calls.
#include <gtest/gtest.h>

#include <cstdio>

#include "tests/log_commands/command_runner.h"
#include "tests/recordings/recorded_calls.h"
#include "tests/recordings/sample_recording.h"

namespace zelt::test {
namespace {

TEST(RecordingCuts, EndEachCommandWithAFinding)
{
    const std::string whole = SampleRecording();
    const std::vector<std::vector<std::string>> commands = {{"recording", "info"},
                                                            {"recording", "profile"},
                                                            {"recording", "profile", "--trace-events"},
                                                            {"log", "export", "--sqlite"}};
    // The size of the first record, which is the header: its length byte and its content.
    const std::size_t header = 1 + static_cast<unsigned char>(whole[0]);
    for (const auto& command : commands) {
        // Writing a database takes longer.
        const std::size_t step = command[0] == "log" ? 37 : 1;
        for (std::size_t length = 0; length < whole.size(); length += step) {
            const TemporaryLog cut(whole.substr(0, length), "cut");
            std::vector<std::string> words = command;
            words.push_back(cut.Path());
            const Outcome outcome = RunCommand(words);
            EXPECT_EQ(length < header ? 3 : 1, outcome.code) << command.back() << ", " << length << " bytes";
            EXPECT_NE("", outcome.messages);
            EXPECT_EQ(length < header, outcome.data.empty());
        }
    }
}

TEST(RecordingCuts, LeaveTwoRecordingsThatCanBeCompared)
{
    const std::string whole = SampleRecording();
    const TemporaryLog complete(whole, "whole");
    for (std::size_t length = 200; length < whole.size(); length += 11) {
        const TemporaryLog cut(whole.substr(0, length), "cut");
        EXPECT_EQ(1, RunCommand({"recording", "diff", complete.Path(), cut.Path()}).code) << length;
    }
}

struct Event {
    long long number;
    double begin, end;
};

std::vector<Event> EventsOf(const std::string& json)
{
    std::vector<Event> events;
    for (const std::string& line : LinesOf(json)) {
        const std::size_t time = line.find("\"ts\":"), number = line.find("\"call\":");
        Event event{};
        double duration = 0;
        if (time == std::string::npos || number == std::string::npos) continue;
        EXPECT_EQ(2, std::sscanf(line.c_str() + time, "\"ts\":%lf,\"dur\":%lf", &event.begin, &duration)) << line;
        EXPECT_EQ(1, std::sscanf(line.c_str() + number, "\"call\":%lld", &event.number)) << line;
        event.end = event.begin + duration;
        events.push_back(event);
    }
    return events;
}

// Viewers draw events of one thread as a flame chart: any two must be nested or apart.
TEST(RecordingTraceEvents, NestAsTheCallsDo)
{
    RecordedCalls calls;
    const std::uint32_t feed = calls.NewObject(0x3000);
    for (int i = 0; i < 5; ++i) {
        calls.Call("ICapeThermoPropertyRoutine::CalcSinglePhaseProp", 1, [&] {
            calls.CallOut("ICapeThermoMaterial::GetTPFraction", feed);
            calls.CallOut("ICapeThermoMaterial::SetSinglePhaseProp", feed,
                          [&] { calls.Call("ICapeThermoCompounds::GetNumCompounds", 1); });
        });
    }
    const TemporaryLog recording(calls.Whole(), "recorded");
    const std::vector<Event> events =
        EventsOf(RunCommand({"recording", "profile", "--trace-events", "--inputs", recording.Path()}).data);
    ASSERT_EQ(20u, events.size());
    int within = 0;
    for (const Event& a : events) {
        EXPECT_LT(a.begin, a.end);
        for (const Event& b : events) {
            const bool isApart = a.end <= b.begin || b.end <= a.begin;
            const bool isInside = b.begin <= a.begin && a.end <= b.end;
            const bool isAround = a.begin <= b.begin && b.end <= a.end;
            EXPECT_TRUE(isApart || isInside || isAround) << a.number << " and " << b.number;
            // An event within another began after it.
            if (isInside && !isAround) {
                EXPECT_GT(a.number, b.number);
                ++within;
            }
        }
    }
    // In each of the five rounds, three calls are within the outermost one, and one of the three is also within another.
    EXPECT_EQ(5 * 4, within);
}

}  // namespace
}  // namespace zelt::test
