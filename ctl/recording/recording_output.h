// A recording that a command writes. The file appears when it is complete.
#pragma once

#include "ctl/command.h"
#include "ctl/output_file.h"
#include "recording/record_writer.h"

namespace zelt::ctl {

class RecordingOutput {
public:
    // Throws UsageError when the command line has no -o, otherwise as OutputFile.
    explicit RecordingOutput(const Arguments& arguments);

    recording::RecordWriter& Records() { return records; }
    // As OutputFile::Keep.
    void Keep();

private:
    OutputFile file;
    recording::RecordWriter records;
};

}  // namespace zelt::ctl
