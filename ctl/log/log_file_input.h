// Reads a file, such as a log that the server may still be writing, or standard input.
#pragma once

#include <string>

#include "log_reader/buffered_file.h"

namespace zelt::ctl {

class LogFileInput final : public LogInput {
public:
    // The path is UTF-8, or "-" for standard input. Throws InputError.
    explicit LogFileInput(const std::string& path);
    ~LogFileInput() override;
    LogFileInput(const LogFileInput&) = delete;
    LogFileInput& operator=(const LogFileInput&) = delete;

    // Returns 0 at the end, and can return more bytes later when the file has grown.
    int Read(char* out, int length) override;

private:
    const bool isStandard;  // whether it is standard input, which stays open
    const int descriptor;
    BufferedFile file;
};

}  // namespace zelt::ctl
