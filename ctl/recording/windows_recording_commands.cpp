#include "ctl/recording/windows_recording_commands.h"

namespace zelt::ctl {
namespace {

// clang-format off
constexpr Option kReplayOptions[] = {
    {"--with",      "COMPONENT", "in the place of the recorded component: its class identifier or its registered name"},
    {"--package",   "NAME",      "another package of the manager"},
    {"--tolerance", "T",         "by how much real numbers may differ, relative to the larger; without it, every bit counts"},
    {"--repeat",    "N",         "how many times all calls are made, each time by a new component; once without it"},
    {"--limit",     "N",         "how many differences are shown; 20 without it"},
};

constexpr Command kWindowsRecordingCommands[] = {
    {"recording render", "RECORDING LOG", 2, 2, {}, "Writes the log that belongs to a recording",
     "The log is equal, byte for byte, to the one that was written beside the recording. The zeltctl of the width of the ZELT that\n"
     "recorded renders it.", RenderAsLog},
    {"recording replay", "RECORDING", 1, 1, kReplayOptions, "Makes the recorded calls of a component again, and compares",
     "The component is made as it was then. Stand-ins answer for the simulator's objects as those did. Each difference in results,\n"
     "outputs and the calls that the component makes is shown with the number of its call. A crash of the component is one, too.",
     ReplayRecording},
};
// clang-format on

}  // namespace

std::span<const Command> WindowsRecordingCommands() { return kWindowsRecordingCommands; }

}  // namespace zelt::ctl
