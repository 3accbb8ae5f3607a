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
    // The first record. Throws InputError when the file is no recording that this program can read. Its texts hold until the next
    // record is read.
    const recording::HeaderRecord& ReadHeader();
    // kFinding with a message when the recording did not end as one should, otherwise kFine. `isClosed`: its last record came.
    int ReportEnd(bool isClosed, Output& messages) const;

private:
    const std::string path;
    LogFileInput file;
    recording::RecordReader records;
};

}  // namespace zelt::ctl
