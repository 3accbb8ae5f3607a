// The file of one log: written in whole entries, each in one call of the system, so that no entry is ever half on the disk
// when a process dies. Other programs may read it meanwhile but not write it.
#pragma once

#include <windows.h>

#include <string>
#include <string_view>

namespace zelt {

class LogFile {
public:
    LogFile() = default;
    ~LogFile() { Close(); }
    LogFile(LogFile&& other) noexcept;
    LogFile& operator=(LogFile&& other) noexcept;

    // Creates or truncates the file, denying other writers. Returns 0, or the runtime library's errno.
    int Open(const std::wstring& path);

    bool IsOpen() const { return descriptor >= 0; }

    // Writes an entry. Errors are not reported: a full disk loses entries, never a call. The first entry that cannot be
    // written whole is cut off again and is the last one that is tried: a log that goes on behind a gap would mislead.
    void Write(std::string_view entry);

    void Close();

private:
    void Stop();

    int descriptor = -1;
    HANDLE handle = INVALID_HANDLE_VALUE;  // the descriptor's, borrowed
    LONGLONG size = 0;                     // of the entries that were written whole
    bool hasStopped = false;
};

}  // namespace zelt
