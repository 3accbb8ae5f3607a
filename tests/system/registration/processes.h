// Processes for tests of the server: run one to its end, start one and look at it. What a test started it ends.
#pragma once

#include <windows.h>

#include <filesystem>
#include <string>

#include "shell/handle.h"

std::filesystem::path ServerPath();
std::filesystem::path ClientPath();
// The client of the other width; may not have been built.
std::filesystem::path OtherClientPath();

class Process {
public:
    Process(const std::filesystem::path& program, const std::wstring& arguments);
    // Ends the process if it still runs.
    ~Process();
    Process(const Process&) = delete;
    Process& operator=(const Process&) = delete;

    bool Started() const { return handle != nullptr; }
    DWORD Id() const { return GetProcessId(handle.get()); }
    bool Running() const { return !Wait(0); }
    bool Wait(DWORD milliseconds) const { return WaitForSingleObject(handle.get(), milliseconds) == WAIT_OBJECT_0; }
    DWORD ExitCode() const;

private:
    zelt::UniqueHandle handle;
};

// Runs a program and gives its exit code; an unlikely one of its own when it does not start or does not end in time.
DWORD RunToEnd(const std::filesystem::path& program, const std::wstring& arguments);

// Waits until no process of that program's name runs; false when one still does after ten seconds.
bool WaitUntilGone(const std::wstring& fileName);
