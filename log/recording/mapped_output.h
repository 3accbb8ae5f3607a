// The file of a recording while it is written. Bytes are appended through a window of the file in memory, without a call to the
// system: they are in the file even if the process dies right after. A file that is not on a local drive with NTFS or ReFS is
// written. Not thread safe.
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

    // Appends the bytes, of which the first must not be 0. That one is stored last, in the place of a 0: until it is there, a
    // reader finds the end of the recording. False when there is no room; the recording then still ends where it did.
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

// Makes a mapping of the file, with that size, like CreateFileMappingW. A test replaces it to simulate a full disk; null restores
// the system's.
using FileMapper = HANDLE (*)(HANDLE file, LONGLONG size);
FileMapper SetFileMapper(FileMapper mapper);

}  // namespace zelt
