// zeltctl: ZELT from the command line.
#include <cstdio>
#include <cstdlib>
#include <new>
#include <span>
#include <vector>

#include "ctl/command.h"
#include "ctl/log/log_commands.h"
#include "ctl/recording/recording_commands.h"

#ifdef _WIN32
#include <windows.h>
#include <fcntl.h>
#include <io.h>

#include "system/narrow.h"
#include "ctl/console.h"
#include "ctl/doctor/doctor.h"
#include "ctl/exports/export_commands.h"
#include "ctl/exports/manager_host.h"
#include "ctl/path/path_commands.h"
#include "ctl/recording/windows_recording_commands.h"
#include "ctl/report/report_command.h"
#else
#include <unistd.h>
#endif

namespace {

bool HasColours()
{
#ifdef _WIN32
    const HANDLE console = GetStdHandle(STD_OUTPUT_HANDLE);
    DWORD mode = 0;
    const bool isTerminal =
        GetConsoleMode(console, &mode) && SetConsoleMode(console, mode | ENABLE_VIRTUAL_TERMINAL_PROCESSING);
#else
    const bool isTerminal = isatty(STDOUT_FILENO);
#endif
    return zelt::ctl::WantsColours(isTerminal, std::getenv("NO_COLOR"), std::getenv("TERM"));
}

int RunCommands(const std::vector<std::string>& words)
{
    using namespace zelt::ctl;
#ifdef _WIN32
    if (IsManagerQuestion(words)) return AnswerManagerQuestion(words);
#endif
    Output data(stdout), messages(stderr);
    if (HasColours()) data.UseColours();
    Streams streams = {data, messages};
    std::vector<Command> commands;
    const auto add = [&commands](std::span<const Command> more) {
        commands.insert(commands.end(), more.begin(), more.end());
    };
#ifdef _WIN32
    add(ExportCommands());
#endif
    add(LogCommands());
    add(RecordingCommands());
#ifdef _WIN32
    add(WindowsRecordingCommands());
    add(DoctorCommands());
    add(ReportCommands());
    add(PathCommands());
#endif
    return Run(commands, words, streams);
}

// Runs the program. `words` returns the words of the command line. Reports exhausted memory without allocating.
template <class Words>
int RunProgram(Words&& words) noexcept
{
    try {
        return RunCommands(words());
    } catch (const std::bad_alloc&) {
        std::fputs("zeltctl: out of memory\n", stderr);
    } catch (...) {
        std::fputs("zeltctl: an unexpected error\n", stderr);
    }
    return zelt::ctl::kUnreadable;
}

}  // namespace

#ifdef _WIN32
int wmain(int count, wchar_t** words)
{
    // Line ends stay as written, and a console shows UTF-8.
    _setmode(_fileno(stdout), _O_BINARY);
    _setmode(_fileno(stderr), _O_BINARY);
    const zelt::ctl::Utf8Console console;
    return RunProgram([&] {
        std::vector<std::string> narrow;
        for (int i = 1; i < count; ++i) narrow.push_back(zelt::Narrow(words[i], CP_UTF8));
        return narrow;
    });
}
#else
int main(int count, char** words)
{
    // `count` is 0 if the program was started without even its own name.
    return RunProgram([&] { return std::vector<std::string>(words + (count > 0), words + count); });
}
#endif
