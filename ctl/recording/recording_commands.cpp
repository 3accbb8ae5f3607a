#include "ctl/recording/recording_commands.h"

#include "ctl/log/each_log.h"
#include "ctl/output_file.h"

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
    {"--inputs",       nullptr, "with --trace-events: also the number and the inputs of each call"},
};
constexpr Option kTrimOptions[] = {
    {"--calls",   "A..B", "up to these calls, by their numbers; one number is one call"},
    {"--failure", "N",    "up to the Nth call that failed"},
    ZELT_OUTPUT_OPTION,
};
constexpr Option kDiffOptions[] = {
    {"--tolerance", "FRACTION", "numbers count as equal that differ by no more than this part of the larger one; without it, every bit counts"},
    {"--json",      nullptr,    "as JSON"},
    ZELT_OUTPUT_OPTION,
};
constexpr Option kRedactOptions[] = {
    {"--keep-errors", nullptr, "keeps what components say about their failures, word for word"},
    ZELT_OUTPUT_OPTION,
};

constexpr Command kRecordingCommands[] = {
    {"recording info", "RECORDING", 1, 1, kInfoOptions, "Says what a recording is of, and how it ends", "", DescribeRecording},
    {"recording profile", "RECORDING", 1, 1, kProfileOptions, "Shows where the time of the calls went",
     "Self is the time in the called object without the calls that it made itself. Transport is the way to\n"
     "the simulator and back, at most: for each call to it, the time of the shortest of them. Medians and percentiles are exact\n"
     "to about 1 %.", ProfileRecording},
    {"recording diff", "RECORDING RECORDING", 2, 2, kDiffOptions, "Compares two recordings, call by call and to the bit",
     "Addresses, times, numbers at the ends of objects' names and the system's own queries for interfaces are left out.\n"
     "~ is a value that differs, - a call or message of the first recording alone, + one of the second alone, each with the number\n"
     "of its call. The exit code is 1 when the recordings differ.", ToOutputFile<CompareRecordings>},
    {"recording redact", "RECORDING", 1, 1, kRedactOptions, "Writes a recording without its names and values",
     "Names, texts, numbers and addresses are replaced as log redact replaces them; the class of the component and its library, too.\n"
     "Calls, results and durations stay. The redacted recording can be rendered and profiled, but not replayed.", RedactRecording},
    {"recording trim", "RECORDING", 1, 1, kTrimOptions, "Writes the shortest recording that still replays to a call",
     "It has the call, whole, and the calls before it that made what it needs: the component, the objects that are called, and what\n"
     "they were set to. Calls that only ask or calculate are left out.", TrimRecording},
};
// clang-format on

}  // namespace

std::span<const Command> RecordingCommands() { return kRecordingCommands; }

}  // namespace zelt::ctl
