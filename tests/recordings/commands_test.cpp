// recording info and recording profile.
#include <gtest/gtest.h>

#include "tests/log_commands/command_runner.h"
#include "ctl/recording/call_profile.h"
#include "ctl/recording/time_text.h"
#include "tests/recordings/sample_recording.h"

namespace zelt::test {
namespace {

TEST(RecordingInfo, SaysWhatItIsOf)
{
    const TemporaryLog recording(SampleRecording(), "recorded");
    const Outcome text = RunCommand({"recording", "info", recording.Path()});
    EXPECT_EQ(0, text.code) << text.messages;
    ExpectKeptRecording("recording_info.txt", text.data);
    ExpectKeptRecording("recording_info.json", RunCommand({"recording", "info", "--json", recording.Path()}).data);
}

TEST(RecordingInfo, SaysHowOneEndsThatDoesNotEndWell)
{
    const std::string open = SampleRecording(false);
    const struct {
        std::string bytes, message;
    } rows[] = {{open, "has no end: its program is still running, or died\n"},
                {open.substr(0, open.size() - 1), "is cut off in the middle of a record\n"},
                // What the file has until its program closes it, and a record without a field.
                {open + std::string(1000, '\0'), "has no end: its program is still running, or died\n"},
                {open + std::string("\1\0", 2),
                 "is damaged at byte " + std::to_string(open.size()) + "; only what comes before is used\n"}};
    for (const auto& row : rows) {
        const TemporaryLog recording(row.bytes, "recorded");
        const Outcome outcome = RunCommand({"recording", "info", recording.Path()});
        EXPECT_EQ(1, outcome.code);
        EXPECT_EQ("zeltctl: " + recording.Path() + ": the recording " + row.message, outcome.messages);
        EXPECT_NE(std::string::npos, outcome.data.find("complete   no\n"));
    }
}

TEST(RecordingInfo, RefusesWhatIsNoRecording)
{
    for (const char* command : {"info", "profile"}) {
        const TemporaryLog log(InLog(""));
        const Outcome outcome = RunCommand({"recording", command, log.Path()});
        EXPECT_EQ(3, outcome.code);
        EXPECT_EQ("zeltctl: " + log.Path() + ": this is not a recording\n", outcome.messages);
        EXPECT_EQ("", outcome.data);
    }
}

TEST(RecordingProfile, ShowsWhereTheTimeWent)
{
    const TemporaryLog recording(SampleRecording(), "recorded");
    const Outcome members = RunCommand({"recording", "profile", recording.Path()});
    EXPECT_EQ(0, members.code) << members.messages;
    ExpectKeptRecording("recording_profile.txt", members.data);
    ExpectKeptRecording("recording_profile_objects.txt",
                        RunCommand({"recording", "profile", "--objects", "--slowest", "0", recording.Path()}).data);
}

TEST(RecordingProfile, WritesTraceEvents)
{
    const TemporaryLog recording(SampleRecording(), "recorded");
    const Outcome outcome = RunCommand({"recording", "profile", "--trace-events", recording.Path()});
    EXPECT_EQ(0, outcome.code);
    ExpectKeptRecording("recording_trace_events.json", outcome.data);
    ExpectKeptRecording("recording_trace_events_with_inputs.json",
                        RunCommand({"recording", "profile", "--trace-events", "--inputs", recording.Path()}).data);
}

TEST(Distribution, IsExactToOnePercent)
{
    ctl::Distribution times;
    EXPECT_EQ(0u, times.At(0.5));
    for (std::uint64_t time = 1; time <= 100'000; ++time) times.Add(time * 1000);
    EXPECT_NEAR(50'000'000, static_cast<double>(times.At(0.5)), 50'000'000 * 0.011);
    EXPECT_NEAR(99'000'000, static_cast<double>(times.At(0.99)), 99'000'000 * 0.011);
    ctl::Distribution few;
    few.Add(7);
    few.Add(63);
    few.Add(100);
    EXPECT_EQ(7u, few.At(0));
    EXPECT_EQ(63u, few.At(0.5));
    EXPECT_EQ(100u, few.At(1));
}

TEST(TimeText, HasThreeDigits)
{
    using ctl::TimeText;
    EXPECT_EQ("0 ns", TimeText(0));
    EXPECT_EQ("999 ns", TimeText(999));
    EXPECT_EQ("1.00 us", TimeText(1000));
    EXPECT_EQ("9.99 us", TimeText(9990));
    EXPECT_EQ("10.0 us", TimeText(9996));
    EXPECT_EQ("123 us", TimeText(123'456));
    EXPECT_EQ("1.00 ms", TimeText(999'999));
    EXPECT_EQ("12.3 s", TimeText(12'345'678'901));
    EXPECT_EQ("5000 s", TimeText(5'000'000'000'000));
}

TEST(DateText, IsInUniversalTime) { EXPECT_EQ("2026-03-05 14:07:33 UTC", ctl::DateText(134'171'932'530'000'000)); }

}  // namespace
}  // namespace zelt::test
