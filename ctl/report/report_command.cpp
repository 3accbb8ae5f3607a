#include "ctl/report/report_command.h"

#include <windows.h>
#include <winternl.h>

#include <algorithm>
#include <limits>
#include <string>
#include <vector>

#include "ctl/doctor/doctor.h"
#include "ctl/doctor/installation.h"
#include "ctl/exports/session.h"
#include "ctl/exports/stored_packages.h"
#include "ctl/output_file.h"
#include "ctl/report/report.h"
#include "system/known_folder.h"

namespace zelt::ctl {
namespace {

int ReportProblem(const Arguments& arguments, Streams& streams);

// clang-format off
constexpr Option kOptions[] = {
    {"-o",            "FILE",  "the zip file that is made"},
    {"--keep-errors", nullptr, "keeps what components say about their failures, word for word"},
    {"--yes",         nullptr, "writes it without asking"},
};

constexpr Command kReportCommands[] = {
    {"report", "[LOG...]", 0, std::numeric_limits<std::size_t>::max(), kOptions,
     "Makes a file for the people you ask for help: redacted logs, versions, doctor's answer",
     "A zip file with each log as log redact writes it, but under another name; the versions of ZELT and Windows; and what\n"
     "doctor answers, without the names of packages and of the user's folder. It shows what the file will contain and where\n"
     "you can read it, and writes it only after a yes. Nothing is sent. The exit code is 1 when a log is cut off.",
     ReportProblem},
};
// clang-format on

// The version of Windows. RtlGetVersion reports it even to a program that does not declare support for it.
std::string WindowsVersion()
{
    using GetVersionFunction = LONG(WINAPI*)(OSVERSIONINFOW*);
    OSVERSIONINFOW version = {};
    version.dwOSVersionInfoSize = sizeof version;
    const auto get = reinterpret_cast<GetVersionFunction>(
        reinterpret_cast<void*>(GetProcAddress(GetModuleHandleW(L"ntdll.dll"), "RtlGetVersion")));
    if (!get || get(&version) != 0) return "of an unknown version";
    return std::to_string(version.dwMajorVersion) + '.' + std::to_string(version.dwMinorVersion) + '.' +
           std::to_string(version.dwBuildNumber);
}

std::string Versions()
{
    SYSTEM_INFO system = {};
    GetNativeSystemInfo(&system);
    const bool is64 = system.wProcessorArchitecture != PROCESSOR_ARCHITECTURE_INTEL;
    std::string text = "zeltctl " + OwnVersion() + ", " + std::to_string(kThisEdition.width) + " bit\n";
    for (const Edition& edition : Editions()) {
        const Installation found = FindInstallation(edition);
        text += NameOf(found) + (found.registrable.empty() ? std::string(" is not there") : ' ' + found.version) + '\n';
    }
    return text + "Windows " + WindowsVersion() + (is64 ? ", 64 bit\n" : ", 32 bit\n");
}

void ReplaceEach(std::string& text, const std::string& part, const std::string& replacement)
{
    const auto isSame = [](char a, char b) {
        const auto lower = [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c + ('a' - 'A')) : c; };
        return lower(a) == lower(b);
    };
    std::size_t done = 0;
    while (!part.empty()) {
        const auto found =
            std::search(text.begin() + static_cast<std::ptrdiff_t>(done), text.end(), part.begin(), part.end(), isSame);
        if (found == text.end()) return;
        const auto at = static_cast<std::size_t>(found - text.begin());
        text.replace(at, part.size(), replacement);
        done = at + replacement.size();
    }
}

// A name as doctor's answer shows it.
std::string Shown(const std::wstring& name)
{
    Output output;
    output << Utf8(name);
    return output.Text();
}

// Names of packages and of the user are not needed to understand a finding.
std::string WithoutNames(std::string text)
{
    int number = 0;
    for (const Edition& edition : Editions()) {
        const ExportedPackageList list = ReadPackages(edition);
        for (std::size_t index = 0; index < list.Count(); ++index) {
            const std::string alias = "\"Package-" + std::to_string(++number) + '"';
            for (const std::wstring* name : {&list.At(index).exportedName, &list.At(index).sourceName}) {
                if (!name->empty()) ReplaceEach(text, '"' + Shown(*name) + '"', alias);
            }
        }
    }
    std::wstring profile;
    if (SUCCEEDED(KnownFolder(FOLDERID_Profile, KF_FLAG_DONT_VERIFY, profile))) {
        ReplaceEach(text, Utf8(profile), "%USERPROFILE%");
    }
    return text;
}

std::string DoctorsAnswer()
{
    Output data, messages;
    Streams streams = {data, messages};
    try {
        ExamineInstallation({{}, {}}, streams);
        return WithoutNames(data.Text() + messages.Text());
    } catch (const InputError& error) {
        return std::string(error.what()) + '\n';
    }
}

int ReportProblem(const Arguments& arguments, Streams& streams)
{
    if (!arguments.Has("-o")) return WriteReport(arguments, {}, streams);
    const ReportText texts[] = {
        {"versions.txt", "the versions of ZELT and Windows", Versions()},
        {"doctor.txt", "what zeltctl doctor answers", DoctorsAnswer()},
    };
    return WriteReport(arguments, texts, streams);
}

}  // namespace

std::span<const Command> ReportCommands() { return kReportCommands; }

}  // namespace zelt::ctl
