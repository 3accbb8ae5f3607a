// A log on disk, opened for reading while the server still writes it. Owns the descriptor.
#pragma once

#include <string>

#include "log_reader/buffered_file.h"

namespace zelt::ctl {

class LogFileInput final : public LogInput {
public:
    // The path is UTF-8. Throws InputError.
    explicit LogFileInput(const std::string& path);
    ~LogFileInput() override;
    LogFileInput(const LogFileInput&) = delete;
    LogFileInput& operator=(const LogFileInput&) = delete;

    // Returns 0 at the end, and more when the file has grown.
    int Read(char* out, int length) override;

private:
    const int descriptor;
    BufferedFile file;
};

}  // namespace zelt::ctl
