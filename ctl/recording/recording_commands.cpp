#include "ctl/recording/recording_commands.h"

namespace zelt::ctl {
namespace {

// clang-format off
constexpr Option kInfoOptions[] = {
    {"--json", nullptr, "as JSON"},
};
constexpr Option kProfileOptions[] = {
    {"--slowest",      "N",     "how many of the slowest calls are shown; 10 without it"},
    {"--objects",      nullptr, "a row for each object instead of each member"},
    {"--trace-events", nullptr, "every call as a trace event, in the JSON that Perfetto, Chrome and speedscope open"},
};

constexpr Command kCommands[] = {
    {"recording info", "RECORDING", 1, 1, kInfoOptions, "Says what a recording is of, and how it ends", "", DescribeRecording},
    {"recording profile", "RECORDING", 1, 1, kProfileOptions, "Shows where the time of the calls went",
     "Self is the time in the called object without the calls that it made itself. The simulator's time includes the way there\n"
     "and back. Medians and percentiles are exact to about 1 %.", ProfileRecording},
};
// clang-format on

}  // namespace

std::span<const Command> RecordingCommands() { return kCommands; }

}  // namespace zelt::ctl
