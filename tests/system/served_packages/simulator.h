// The sample simulator of either width as a client process: run to its end, or held during a call.
#pragma once

#include <windows.h>

#include <filesystem>
#include <ostream>
#include <string>

#include "system/edition.h"
#include "tests/system/harness/process.h"

namespace zelt::test {

enum class Width { Bits32, Bits64 };

// How the tests' parameters are shown.
inline void PrintTo(Width width, std::ostream* stream) { *stream << (width == Width::Bits32 ? "32 bit" : "64 bit"); }

inline constexpr Width kWidths[] = {Width::Bits32, Width::Bits64};
// The width of this test, and so of the packages that a simulator can use in process.
inline constexpr Width kOwnWidth = kThisEdition.width == 32 ? Width::Bits32 : Width::Bits64;

// A program of the build of that width, which may not exist; `path` is its path inside the build folder.
std::filesystem::path BuiltProgram(Width width, const char* path);

bool HasSimulator(Width width);
inline constexpr char kNoSimulator[] = "the simulator of that width is not built";

// The program's path in quotes, for a command line.
std::wstring SimulatorProgram(Width width);

// A command line for the simulator, which uses `package` of ZELT's manager, or of the given manager.
std::wstring SimulatorCommand(Width width, const std::wstring& package, const std::wstring& options = {},
                              const std::wstring& manager = kThisEdition[OwnClass::PropertyPackageManager].progId);

struct SimulatorResult {
    DWORD exitCode;
    std::string output;  // both streams; lines end in LF
};

SimulatorResult RunSimulator(const std::wstring& commandLine);
// The same for zeltctl of this width; `words` are its command line without the program.
SimulatorResult RunTool(const std::wstring& words);
// Expects that zeltctl finds no difference when it makes the calls of a recording again.
void ExpectReplayed(const std::filesystem::path& recording, const std::wstring& options = {});

// How the output begins when the packages come from ZELT's manager.
std::string ManagerLine();

// The output without the names of the manager and its packages: the part that must not depend on where a package runs.
std::string Results(const std::string& output);

// A file for a process's output, deleted at the end.
class OutputFile {
public:
    OutputFile();
    ~OutputFile();
    OutputFile(const OutputFile&) = delete;
    OutputFile& operator=(const OutputFile&) = delete;
    const std::string& Path() const { return path; }
    // With LF at the line ends.
    std::string Text() const;

private:
    std::string path;
};

// A simulator that waits inside the package's first read of the material, so that both sides are in a call.
class SimulatorInMidCall {
public:
    SimulatorInMidCall(Width width, const std::wstring& package);
    ~SimulatorInMidCall();
    SimulatorInMidCall(const SimulatorInMidCall&) = delete;
    SimulatorInMidCall& operator=(const SimulatorInMidCall&) = delete;

    // False if the simulator did not get into that call in time.
    bool Reached() const { return reached; }
    void Kill() { process.Kill(); }
    // Lets it continue, and waits for its end.
    SimulatorResult Continue();

private:
    std::wstring event;
    HANDLE waiting, go;
    OutputFile output;
    Process process;
    bool reached;
};

}  // namespace zelt::test
