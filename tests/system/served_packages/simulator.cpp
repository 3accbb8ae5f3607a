#include "tests/system/served_packages/simulator.h"

#include <gtest/gtest.h>

#include <sstream>

#include "system/narrow.h"
#include "tests/system/harness/text_file.h"
#include "tests/trees.h"

namespace zelt::test {
namespace {

constexpr DWORD kTimeToRun = 60'000, kTimeToReach = 20'000;
constexpr DWORD kNotEnded = 0xDEAD;

std::filesystem::path Program(Width width) { return BuiltProgram(width, "samples/SampleSimulator.exe"); }

// Unique among the waiting simulators of this process.
std::wstring NewEventName()
{
    static int number = 0;
    return L"ZeltTest-" + std::to_wstring(GetCurrentProcessId()) + L'-' + std::to_wstring(++number);
}

}  // namespace

std::filesystem::path BuiltProgram(Width width, const char* path)
{
    const bool isOwn = (width == Width::Bits32) == (kThisEdition.width == 32);
    return std::filesystem::path(isOwn ? BuiltFile(path) : OtherBuiltFile(path)).make_preferred();
}

bool HasSimulator(Width width) { return std::filesystem::exists(Program(width)); }

std::wstring SimulatorProgram(Width width) { return L'"' + Program(width).wstring() + L'"'; }

std::wstring SimulatorCommand(Width width, const std::wstring& package, const std::wstring& options,
                              const std::wstring& manager)
{
    return SimulatorProgram(width) + L' ' + manager + L" \"" + package + L"\" --bits " + options;
}

SimulatorResult RunSimulator(const std::wstring& commandLine)
{
    const OutputFile output;
    const DWORD exitCode = RunProcess(commandLine, output.Path(), kTimeToRun).value_or(kNotEnded);
    return {exitCode, output.Text()};
}

SimulatorResult RunTool(const std::wstring& words)
{
    const std::filesystem::path tool = BuiltProgram(kOwnWidth, "ctl") / kThisEdition.tool;
    return RunSimulator(L'"' + tool.wstring() + L"\" " + words);
}

std::string ManagerLine() { return "Manager: " + Narrow(kThisEdition[OwnClass::PropertyPackageManager].name) + '\n'; }

std::string Results(const std::string& output)
{
    std::istringstream lines(output);
    std::string line, rest;
    while (std::getline(lines, line)) {
        if (!line.starts_with("Manager: ") && !line.starts_with("Packages: ")) rest += line + '\n';
    }
    return rest;
}

OutputFile::OutputFile()
{
    static int number = 0;
    path = TemporaryPath("output-" + std::to_string(++number) + ".txt");
}

OutputFile::~OutputFile() { DeleteFileA(path.c_str()); }

std::string OutputFile::Text() const
{
    std::string text = ReadWholeFile(path);
    std::erase(text, '\r');
    return text;
}

SimulatorInMidCall::SimulatorInMidCall(Width width, const std::wstring& package)
    : event(NewEventName()),
      waiting(CreateEventW(nullptr, TRUE, FALSE, event.c_str())),
      go(CreateEventW(nullptr, TRUE, FALSE, (event + L".continue").c_str())),
      process(Process::Start(SimulatorCommand(width, package, L"--wait-in-call 120 --event " + event), output.Path())),
      reached(WaitForSingleObject(waiting, kTimeToReach) == WAIT_OBJECT_0)
{}

SimulatorInMidCall::~SimulatorInMidCall()
{
    CloseHandle(go);
    CloseHandle(waiting);
}

SimulatorResult SimulatorInMidCall::Continue()
{
    SetEvent(go);
    const DWORD exitCode = process.Wait(kTimeToRun).value_or(kNotEnded);
    return {exitCode, output.Text()};
}

void ExpectReplayed(const std::filesystem::path& recording, const std::wstring& options)
{
    const SimulatorResult replay = RunTool(L"recording replay \"" + recording.wstring() + L"\" " + options);
    EXPECT_EQ(0u, replay.exitCode) << replay.output;
    EXPECT_TRUE(replay.output.ends_with(" answered: no difference\n")) << recording << '\n' << replay.output;
}

}  // namespace zelt::test
