// A process that a test starts and owns; the destructor ends it if it still runs. Its output goes to a file, because a
// process that it starts may outlive it and would hold a pipe open. Processes that COM starts (the server) are opened
// by id. Failures throw std::runtime_error.
#pragma once

#include <windows.h>

#include <optional>
#include <string>
#include <vector>

namespace zelt::test {

class Process {
public:
    // Starts a command line without a window. Standard output and error go to `outputPath`, or nowhere if it is empty.
    static Process Start(const std::wstring& commandLine, const std::string& outputPath = {});

    // Opens a running process. Nothing if it has already ended or cannot be opened.
    static std::optional<Process> Open(DWORD id);

    Process(Process&& other) noexcept;
    Process& operator=(Process&& other) noexcept;
    ~Process();

    DWORD Id() const { return id; }
    bool Running() const;

    // The exit code, or nothing if the process still runs after this time.
    std::optional<DWORD> Wait(DWORD milliseconds) const;

    // Ends the process and waits up to 10 seconds until it is gone. Does nothing if it has already ended.
    void Kill();

private:
    Process(HANDLE handle, DWORD id) : handle(handle), id(id) {}
    HANDLE handle;
    DWORD id;
};

// Starts a process, waits at most `milliseconds` and returns the exit code; ends a process that takes longer and
// returns nothing.
std::optional<DWORD> RunProcess(const std::wstring& commandLine, const std::string& outputPath, DWORD milliseconds);

// The ids of all processes whose program has this file name.
std::vector<DWORD> ProcessIds(const std::wstring& fileName);

// Waits until no process of this program is left; false if one still runs after this time.
bool WaitUntilGone(const std::wstring& fileName, DWORD milliseconds = 60'000);

}  // namespace zelt::test
