// The file of a recording while it is written. Bytes are appended through a window of the file in memory, without a call to the
// system: they are in the file even if the process dies right after. Where a file cannot be mapped well, as on a network drive,
// they are written. Not thread safe.
#pragma once

#include <cstddef>
#include <string_view>

#include "log/log_file.h"

namespace zelt {

class MappedOutput {
public:
    // Takes an empty file that was opened with OpenForMapping.
    explicit MappedOutput(LogFile emptyFile);
    ~MappedOutput() { Close(); }
    MappedOutput(const MappedOutput&) = delete;
    MappedOutput& operator=(const MappedOutput&) = delete;

    // Appends the bytes, of which the first is not 0. Readers see all of them or, in the place of the first, a 0: this is also
    // what the file has after its last byte until it is closed. False when there is no room, and nothing was appended.
    bool Append(std::string_view bytes) noexcept;
    // Ends the file after the last byte.
    void Close() noexcept;

private:
    bool MoveWindow(std::size_t room) noexcept;
    void CloseWindow() noexcept;
    bool CopyToWindow(std::string_view bytes) noexcept;

    LogFile file;
    bool isMapped;      // appended to through the window; otherwise by writing
    LONGLONG size = 0;  // of what was appended
    char* window = nullptr;
    LONGLONG windowBegin = 0, windowEnd = 0;  // its place in the file
};

}  // namespace zelt
