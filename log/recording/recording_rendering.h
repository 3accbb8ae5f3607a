// Renders a recording as the log that was written beside it, byte for byte: the same writers get the same values.
#pragma once

#include <cstdint>
#include <string>

#include "log/log_file.h"
#include "recording/record_reader.h"

namespace zelt {

struct Rendering {
    bool isRecording = false;  // if not, the file does not begin like a recording that this program can render
    std::string obstacle;      // why not, as a clause; empty when the file is no recording at all
    recording::ReadEnd end = recording::ReadEnd::None;
    std::uint64_t offset = 0;  // of the record where reading ended
    bool isClosed = false;     // the recording has its last record
    std::int64_t lost = 0;     // entries for which the log had no room
};

// Renders into the file, which is closed afterwards. A recording that is cut off gives a log that is cut off, too.
Rendering RenderRecording(recording::RecordReader& records, LogFile file);

}  // namespace zelt
