// zeltctl: ZELT from the command line.
#include <span>
#include <vector>

#include "ctl/command.h"
#include "ctl/log/log_commands.h"

#ifdef _WIN32
#include <windows.h>
#include <fcntl.h>
#include <io.h>

#include "core/narrow.h"
#include "ctl/doctor/doctor.h"
#include "ctl/exports/export_commands.h"
#endif

namespace {

int RunProgram(const std::vector<std::string>& words)
{
    using namespace zelt::ctl;
    Output data(stdout), messages(stderr);
    Streams streams = {data, messages};
    std::vector<Command> commands;
    const auto add = [&commands](std::span<const Command> more) {
        commands.insert(commands.end(), more.begin(), more.end());
    };
#ifdef _WIN32
    add(ExportCommands());
#endif
    add(LogCommands());
#ifdef _WIN32
    add(DoctorCommands());
#endif
    return Run(commands, words, streams);
}

}  // namespace

#ifdef _WIN32
int wmain(int count, wchar_t** words)
{
    // Lines end as they are written, and a console shows UTF-8.
    _setmode(_fileno(stdout), _O_BINARY);
    _setmode(_fileno(stderr), _O_BINARY);
    SetConsoleOutputCP(CP_UTF8);
    std::vector<std::string> narrow;
    for (int i = 1; i < count; ++i) narrow.push_back(zelt::Narrow(words[i], CP_UTF8));
    return RunProgram(narrow);
}
#else
int main(int count, char** words) { return RunProgram({words + 1, words + count}); }
#endif
