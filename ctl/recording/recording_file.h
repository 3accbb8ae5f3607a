// A recording on disk, opened for reading.
#pragma once

#include <string>

#include "ctl/log/log_file_input.h"
#include "ctl/output.h"
#include "recording/record_reader.h"

namespace zelt::ctl {

class RecordingFile {
public:
    // The path is UTF-8. Throws InputError.
    explicit RecordingFile(const std::string& path);

    recording::RecordReader& Records() { return records; }
    // The first record; its texts are valid until the next record is read. Throws InputError when the file is not a recording
    // that this program can read.
    const recording::HeaderRecord& ReadHeader();
    // kFinding, with a message, when the recording does not end with the record that closes it; otherwise kFine. `isClosed`:
    // whether that record was read.
    int ReportEnd(bool isClosed, Output& messages) const;

private:
    const std::string path;
    LogFileInput file;
    recording::RecordReader records;
};

}  // namespace zelt::ctl
