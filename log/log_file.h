// The file of one log or recording: written in whole entries, each normally in one system call, so that a process that dies
// leaves no half entry. Other programs may read it but not write it.
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
    // The same for a file that is written through a mapping, too.
    int OpenForMapping(const std::wstring& path);

    // Accepts entries and writes them nowhere.
    void OpenNothing() { writesNothing = true; }
    bool WritesNothing() const { return writesNothing; }

    bool IsOpen() const { return descriptor >= 0 || writesNothing; }

    // Writes an entry whole or not at all: false when it could not be written; the part that the disk took is then cut off again.
    bool Write(std::string_view entry);

    // Ends the file after `newSize` bytes, if no other program has mapped it. The next entry follows them; false if it cannot.
    bool EndAt(LONGLONG newSize);

    HANDLE Handle() const { return handle; }

    // Whether the disk has room for several entries, and not only for one that happens to be short.
    bool HasRoom() const;

    void Close();

private:
    int Open(const std::wstring& path, int access);

    int descriptor = -1;
    bool writesNothing = false;
    HANDLE handle = INVALID_HANDLE_VALUE;  // the descriptor's, borrowed
    LONGLONG size = 0;                     // of the entries that were written whole
    std::wstring folder;
};

// Writes the bytes like WriteFile. A test replaces it to simulate a full disk; null restores the system's.
using FileWriter = BOOL (*)(HANDLE file, const void* bytes, DWORD count, DWORD* written);
FileWriter SetFileWriter(FileWriter writer);

}  // namespace zelt
