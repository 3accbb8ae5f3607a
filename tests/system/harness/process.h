// A process that a test starts and owns: it is ended with its owner if it still runs. Its output goes to a file, because
// what it starts in turn may outlive it and would hold a pipe open. Processes that COM starts (the server) are taken over
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

    // Takes over a running process. Nothing if it has ended already.
    static std::optional<Process> Open(DWORD id);

    Process(Process&& other) noexcept;
    Process& operator=(Process&& other) noexcept;
    ~Process();

    DWORD Id() const { return id; }
    bool Running() const;

    // The exit code, or nothing when the process still runs after the time.
    std::optional<DWORD> Wait(DWORD milliseconds) const;

    // Ends the process and waits until it is gone. No harm if it has ended.
    void Kill();

private:
    Process(HANDLE handle, DWORD id) : handle(handle), id(id) {}
    HANDLE handle;
    DWORD id;
};

// Starts, waits at most `milliseconds`, and gives the exit code; a process that takes longer is ended, and nothing given.
std::optional<DWORD> RunProcess(const std::wstring& commandLine, const std::string& outputPath, DWORD milliseconds);

// The processes whose program has this file name, whoever started them.
std::vector<DWORD> ProcessIds(const std::wstring& fileName);

// Waits until there is none of them; false when one still runs after the time.
bool WaitUntilGone(const std::wstring& fileName, DWORD milliseconds = 10'000);

}  // namespace zelt::test
