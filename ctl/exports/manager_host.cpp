#include "ctl/exports/manager_host.h"

#include <windows.h>
#include <objbase.h>

#include <array>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cwchar>

#include "com/type_info.h"
#include "ctl/command.h"
#include "ctl/exports/session.h"
#include "registration/registrar.h"
#include "system/guid_text.h"
#include "system/owners.h"

namespace zelt::ctl {
namespace {

constexpr char kQuestion[] = "--packages-of";

// The answer is a sequence of records: a letter, UTF-8 text, a zero byte. The last is kList or kNoList.
enum Record : char { kPackage = 'P', kFailure = 'F', kList = 'L', kNoList = 'N' };

std::wstring BesideThisProgram(const Edition& edition)
{
    const std::wstring own = com::ModulePath(com::ThisModule());
    return own.substr(0, own.find_last_of(L'\\') + 1) + edition.tool;
}

ToolPath toolPath = BesideThisProgram;

struct Pipe {
    UniqueHandle reader, writer;
};

// Only the writing end goes to the child.
Pipe MakePipe()
{
    HANDLE reader = nullptr, writer = nullptr;
    SECURITY_ATTRIBUTES inherited = {sizeof inherited, nullptr, TRUE};
    if (!CreatePipe(&reader, &writer, &inherited, 0)) return {};
    SetHandleInformation(reader, HANDLE_FLAG_INHERIT, 0);
    return {UniqueHandle(reader), UniqueHandle(writer)};
}

std::string ReadAll(HANDLE reader)
{
    std::string text;
    std::array<char, 4096> piece;
    DWORD size = 0;
    while (ReadFile(reader, piece.data(), static_cast<DWORD>(piece.size()), &size, nullptr) && size) {
        text.append(piece.data(), size);
    }
    return text;
}

struct Answer {
    std::string records;
    DWORD exitCode = 0;
    DWORD error = ERROR_SUCCESS;  // why the program did not run
};

Answer RunTool(const std::wstring& program, std::wstring commandLine)
{
    Pipe pipe = MakePipe();
    // Handles have the same number in programs of both widths.
    commandLine += L' ' + std::to_wstring(reinterpret_cast<std::uintptr_t>(pipe.writer.get()));
    STARTUPINFOW startup = {};
    startup.cb = sizeof startup;
    PROCESS_INFORMATION process = {};
    if (!CreateProcessW(program.c_str(), commandLine.data(), nullptr, nullptr, TRUE, CREATE_NO_WINDOW, nullptr, nullptr,
                        &startup, &process)) {
        return {{}, 0, GetLastError()};
    }
    const UniqueHandle handle(process.hProcess), thread(process.hThread);
    // The child's end is then the last one, so the reading ends with the child.
    pipe.writer.reset();
    Answer answer = {ReadAll(pipe.reader.get())};
    WaitForSingleObject(handle.get(), INFINITE);
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

bool IsManagerQuestion(const std::vector<std::string>& words) { return words.size() == 4 && words[0] == kQuestion; }

int AnswerManagerQuestion(const std::vector<std::string>& words)
{
    const Session session;
    CLSID manager;
    if (FAILED(CLSIDFromString(Wide(words[2]).c_str(), &manager))) return kUsage;
    const auto kind = static_cast<PackageKind>(std::strtoul(words[1].c_str(), nullptr, 10));
    const auto writer =
        reinterpret_cast<HANDLE>(static_cast<std::uintptr_t>(std::strtoull(words[3].c_str(), nullptr, 10)));
    const auto names = ListPackages(kind, manager, [&](const std::wstring& text) { Say(writer, kFailure, text); });
    for (const std::wstring& name : names.value_or(std::vector<std::wstring>())) Say(writer, kPackage, name);
    Say(writer, names ? kList : kNoList, {});
    return kFine;
}

void SetToolPath(ToolPath path) { toolPath = path ? path : BesideThisProgram; }

}  // namespace zelt::ctl
