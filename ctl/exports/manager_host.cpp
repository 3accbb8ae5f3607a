#include "ctl/exports/manager_host.h"

#include <windows.h>
#include <objbase.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cwchar>
#include <new>
#include <string_view>

#include "com/type_info.h"
#include "ctl/command.h"
#include "ctl/exports/session.h"
#include "registration/registrar.h"
#include "system/file_presence.h"
#include "system/guid_text.h"
#include "system/handle_inheritance.h"
#include "system/owners.h"

namespace zelt::ctl {
namespace {

constexpr char kQuestion[] = "--packages-of";
constexpr DWORD kTimeToEnd = 5000;

// The answer is a sequence of records: a letter, UTF-8 text, a zero byte. The last is kList or kNoList.
enum Record : char { kPackage = 'P', kFailure = 'F', kList = 'L', kNoList = 'N' };

std::wstring Tool(const Edition& edition)
{
    if (edition.width == kThisEdition.width) return com::ModulePath(com::ThisModule());
    return com::BesideThisModule(edition.tool);
}

ToolPath toolPath = Tool;

// Creates a job whose processes end with this process, even when the user interrupts it.
UniqueHandle MakeJob()
{
    UniqueHandle job(CreateJobObjectW(nullptr, nullptr));
    JOBOBJECT_EXTENDED_LIMIT_INFORMATION limits = {};
    limits.BasicLimitInformation.LimitFlags = JOB_OBJECT_LIMIT_KILL_ON_JOB_CLOSE;
    SetInformationJobObject(job.get(), JobObjectExtendedLimitInformation, &limits, sizeof limits);
    return job;
}

// Whether the last record has arrived. The end of the pipe may never come, because a process that the manager started may keep
// the pipe open.
bool IsComplete(std::string_view records)
{
    const std::size_t end = records.size();
    if (end < 2 || records[end - 1] != '\0') return false;
    return (records[end - 2] == kList || records[end - 2] == kNoList) && (end == 2 || records[end - 3] == '\0');
}

std::string ReadRecords(HANDLE reader)
{
    std::string records;
    std::array<char, 4096> piece;
    DWORD size = 0;
    while (!IsComplete(records) && ReadFile(reader, piece.data(), static_cast<DWORD>(piece.size()), &size, nullptr) &&
           size) {
        records.append(piece.data(), size);
    }
    return records;
}

struct Answer {
    std::string records;
    DWORD exitCode = 0;
    DWORD error = ERROR_SUCCESS;  // why the program did not run
};

Answer RunTool(const std::wstring& program, std::wstring commandLine)
{
    Pipe pipe = MakePipe(PipeEnd::Writer);
    const UniqueHandle job = MakeJob();
    // A handle has the same number in 32-bit and 64-bit programs.
    commandLine += L' ' + std::to_wstring(reinterpret_cast<std::uintptr_t>(pipe.writer.get()));
    Inheritance inheritance({pipe.writer.get()});
    STARTUPINFOEXW startup = {};
    startup.StartupInfo.cb = sizeof startup;
    startup.lpAttributeList = inheritance.List();
    PROCESS_INFORMATION process = {};
    constexpr DWORD kFlags = CREATE_NO_WINDOW | CREATE_SUSPENDED | EXTENDED_STARTUPINFO_PRESENT;
    if (!CreateProcessW(program.c_str(), commandLine.data(), nullptr, nullptr, TRUE, kFlags, nullptr, nullptr,
                        &startup.StartupInfo, &process)) {
        return {{}, 0, GetLastError()};
    }
    const UniqueHandle handle(process.hProcess), thread(process.hThread);
    AssignProcessToJobObject(job.get(), handle.get());
    ResumeThread(thread.get());
    pipe.writer.reset();
    Answer answer = {ReadRecords(pipe.reader.get())};
    // Without a complete answer, the exit code is needed, however long the process runs. After a complete answer, the process
    // gets only a few seconds, because it may never end.
    if (!IsComplete(answer.records)) WaitForSingleObject(handle.get(), INFINITE);
    WaitForSingleObject(handle.get(), kTimeToEnd);
    GetExitCodeProcess(handle.get(), &answer.exitCode);
    return answer;
}

std::wstring HexText(DWORD code)
{
    wchar_t text[16];
    std::swprintf(text, std::size(text), L"0x%08lX", code);
    return text;
}

void Say(HANDLE writer, Record record, const std::wstring& text)
{
    const std::string bytes = static_cast<char>(record) + Utf8(text) + '\0';
    DWORD written = 0;
    WriteFile(writer, bytes.data(), static_cast<DWORD>(bytes.size()), &written, nullptr);
}

}  // namespace

std::optional<std::vector<std::wstring>> AskManager(const Edition& edition, PackageKind kind, REFCLSID manager,
                                                    const ListingFailure& failed)
{
    const std::wstring program = toolPath(edition);
    const Answer answer = RunTool(program, Quoted(program) + L' ' + Wide(kQuestion) + L' ' +
                                               std::to_wstring(static_cast<unsigned>(kind)) + L' ' + GuidText(manager));
    if (answer.error != ERROR_SUCCESS) {
        failed(L"The program " + program +
               L", which asks managers of this width for their packages, cannot be started");
        return {};
    }
    std::vector<std::wstring> names;
    for (std::size_t start = 0, end; (end = answer.records.find('\0', start)) != std::string::npos; start = end + 1) {
        const std::wstring text = Wide(answer.records.substr(start + 1, end - start - 1));
        switch (answer.records[start]) {
            case kPackage: names.push_back(text); break;
            case kFailure: failed(text); break;
            case kList: return names;
            default: return {};
        }
    }
    failed(L"The manager ended the process that asked it, with the code " + HexText(answer.exitCode));
    return {};
}

bool HasTool(const Edition& edition) { return IsFile(toolPath(edition)); }

bool IsManagerQuestion(const std::vector<std::string>& words) { return words.size() == 4 && words[0] == kQuestion; }

int AnswerManagerQuestion(const std::vector<std::string>& words)
{
    // Nobody is there to answer the box that the system would show after a crash.
    SetErrorMode(SEM_FAILCRITICALERRORS | SEM_NOGPFAULTERRORBOX);
    const Session session;
    CLSID manager;
    if (FAILED(CLSIDFromString(Wide(words[2]).c_str(), &manager))) return kUsage;
    const auto kind = static_cast<PackageKind>(std::strtoul(words[1].c_str(), nullptr, 10));
    const auto writer =
        reinterpret_cast<HANDLE>(static_cast<std::uintptr_t>(std::strtoull(words[3].c_str(), nullptr, 10)));
    SetHandleInformation(writer, HANDLE_FLAG_INHERIT, 0);
    const auto names = ListPackages(kind, manager, [&](const std::wstring& text) { Say(writer, kFailure, text); });
    for (const std::wstring& name : names.value_or(std::vector<std::wstring>())) Say(writer, kPackage, name);
    Say(writer, names ? kList : kNoList, {});
    return kFine;
}

void SetToolPath(ToolPath path) { toolPath = path ? path : Tool; }

}  // namespace zelt::ctl
