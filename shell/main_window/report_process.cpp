#include "shell/main_window/report_process.h"

#include <sstream>

#include "system/handle_inheritance.h"
#include "system/narrow.h"
#include "system/system_text.h"

namespace zelt {
namespace {

// The parts of zeltctl's output that surround what the window shows.
constexpr char kContents[] = "The report contains:\n", kFolder[] = "\nThe texts are in ",
               kFolderEnd[] = " until you answer", kQuestion[] = "? [y/N] ", kOwnName[] = "zeltctl: ";

std::wstring Wide(std::string_view text) { return Widen(text, CP_UTF8); }

}  // namespace

ReportProcess::ReportProcess(const std::wstring& tool, const std::vector<std::wstring>& logs, const std::wstring& file)
{
    Pipe from = MakePipe(PipeEnd::Writer), to = MakePipe(PipeEnd::Reader);
    std::wstring commandLine = L'"' + tool + L"\" report -o \"" + file + L'"';
    for (const std::wstring& log : logs) commandLine += L" \"" + log + L'"';
    Inheritance inheritance({from.writer.get(), to.reader.get()});
    STARTUPINFOEXW startup = {};
    startup.StartupInfo.cb = sizeof startup;
    startup.StartupInfo.dwFlags = STARTF_USESTDHANDLES;
    startup.StartupInfo.hStdInput = to.reader.get();
    startup.StartupInfo.hStdOutput = startup.StartupInfo.hStdError = from.writer.get();
    startup.lpAttributeList = inheritance.List();
    PROCESS_INFORMATION started = {};
    if (!CreateProcessW(tool.c_str(), commandLine.data(), nullptr, nullptr, TRUE,
                        CREATE_NO_WINDOW | EXTENDED_STARTUPINFO_PRESENT, nullptr, nullptr, &startup.StartupInfo,
                        &started)) {
        error = GetLastError();
        return;
    }
    process.reset(started.hProcess);
    const UniqueHandle thread(started.hThread);
    output = std::move(from.reader);
    input = std::move(to.writer);
}

bool ReportProcess::Read()
{
    DWORD waiting = 0, size = 0;
    while (PeekNamedPipe(output.get(), nullptr, 0, nullptr, &waiting, nullptr)) {
        if (waiting == 0) return true;
        std::string piece(waiting, '\0');
        if (!ReadFile(output.get(), piece.data(), waiting, &size, nullptr)) return false;
        text.append(piece, 0, size);
    }
    return false;
}

ReportProcess::State ReportProcess::Look()
{
    if (!process) return State::Failed;
    const bool goesOn = Read();
    if (!answered && text.ends_with(kQuestion)) return State::Asking;
    // The process ends shortly after its output does.
    if (goesOn || WaitForSingleObject(process.get(), 0) != WAIT_OBJECT_0) return State::Working;
    DWORD code = 0;
    GetExitCodeProcess(process.get(), &code);
    // The exit code 1 means that a log is cut off.
    return answered && code <= 1 ? State::Written : State::Failed;
}

std::vector<ReportPart> ReportProcess::Parts() const
{
    std::vector<ReportPart> parts;
    const std::size_t begin = text.find(kContents);
    if (begin == std::string::npos) return parts;
    std::istringstream lines(text.substr(begin + sizeof kContents - 1));
    for (std::string line; std::getline(lines, line) && line.starts_with(' ');) {
        std::istringstream words(line);
        std::string name, size, unit, what;
        words >> name >> size >> unit >> std::ws;
        std::getline(words, what);
        parts.push_back({Wide(name), Wide(size), Wide(what)});
    }
    return parts;
}

std::wstring ReportProcess::Folder() const
{
    const std::size_t begin = text.rfind(kFolder), end = text.rfind(kFolderEnd);
    if (begin == std::string::npos || end == std::string::npos) return {};
    const std::size_t path = begin + sizeof kFolder - 1;
    return Wide(text.substr(path, end - path));
}

void ReportProcess::SayYes()
{
    answered = true;
    DWORD size = 0;
    WriteFile(input.get(), "y\n", 2, &size, nullptr);
}

std::wstring ReportProcess::Reason() const
{
    if (!process) return Widen(SystemText(HRESULT_FROM_WIN32(error)));
    std::string reason = text.substr(0, text.find(kContents));
    // An error that zeltctl reports after its question is at the end.
    if (const std::size_t own = text.rfind(kOwnName); own != std::string::npos)
        reason = text.substr(own + sizeof kOwnName - 1);
    while (!reason.empty() && (reason.back() == '\n' || reason.back() == '\r')) reason.pop_back();
    return Wide(reason);
}

}  // namespace zelt
