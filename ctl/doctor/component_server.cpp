#include "ctl/doctor/component_server.h"

#include <algorithm>
#include <optional>
#include <vector>

#include "system/class_obstacle.h"
#include "system/component_scan.h"
#include "system/library_path.h"
#include "ctl/doctor/installation.h"
#include "ctl/exports/session.h"
#include "registration/library_facts.h"
#include "registration/registrar.h"
#include "registration/registration_check.h"
#include "system/file_presence.h"
#include "system/guid_text.h"
#include "system/program_width.h"

namespace zelt::ctl {
namespace {

constexpr char kInstallComponent[] = "install the component again, or zeltctl remove the package";

std::string Bits(int width) { return std::to_string(width) + "-bit"; }

// Whether a process of the other width can use the class.
bool OtherCanServe(const Edition& edition, REFCLSID classId)
{
    const Edition& other = OtherThan(edition);
    const auto component = DescribeComponent(classId, InstalledClasses(other.width));
    return CanRun(other) && component && component->obstacle.empty();
}

std::string Remedy(const Edition& edition, REFCLSID classId)
{
    if (!OtherCanServe(edition, classId)) {
        return "install the component's " + Bits(edition.width) + " version, or zeltctl remove the package";
    }
    const Edition& other = OtherThan(edition);
    return Utf8(other.name) + " can serve it: zeltctl remove the package with --width " +
           std::to_string(edition.width) + ", and zeltctl add it with --width " + std::to_string(other.width);
}

// The default value of a key below HKEY_CLASSES_ROOT, with variables expanded; nothing when it is missing, empty or not a text.
std::optional<std::wstring> ReadText(int width, const std::wstring& path)
{
    RegistryKey key;
    if (key.Open({HKEY_CLASSES_ROOT, ViewOf(width)}, path) != ERROR_SUCCESS) return {};
    const auto value = key.ReadValue(L"");
    if (!value || (value->type != REG_SZ && value->type != REG_EXPAND_SZ)) return {};
    std::wstring text(reinterpret_cast<const wchar_t*>(value->data.data()), value->data.size() / sizeof(wchar_t));
    text.resize(std::min(text.find(L'\0'), text.size()));
    if (text.empty()) return {};
    return value->type == REG_EXPAND_SZ ? ExpandedFor(width, text) : text;
}

bool CheckLibraryFile(const Edition& edition, REFCLSID classId, const std::wstring& path, const std::string& owner,
                      const std::string& effect, Findings& findings)
{
    const ImageFile file = ReadImageFile(LibraryPathFor(edition.width, path));
    const std::string quoted = Utf8(Quoted(path));
    if (file.state == ImageState::Missing) {
        findings.push_back(
            {"package-file", owner + " is served by " + quoted + ", which is not there", effect, kInstallComponent});
    } else if (file.state == ImageState::NoImage) {
        findings.push_back(
            {"package-file", owner + " is served by " + quoted + ", which is not a DLL", effect, kInstallComponent});
    } else if (file.bits != edition.width && !file.suitsBoth) {
        findings.push_back({"package-width", owner + " is served by the " + Bits(file.bits) + " library " + quoted,
                            effect + ", because " + Utf8(edition.name) + " is a " + Bits(edition.width) + " program",
                            Remedy(edition, classId)});
    } else {
        return true;
    }
    return false;
}

// A component that runs as a separate program may be of either width. Its command line may have arguments, so the file can be
// checked only when the command line begins with a path in quotes or has no blank.
bool CheckProgramFile(const std::wstring& commandLine, const std::string& owner, const std::string& effect,
                      Findings& findings)
{
    const std::wstring path = ProgramOf(commandLine);
    const bool canBeChecked = commandLine.starts_with(L'"') || path.find(L' ') == std::wstring::npos;
    if (!canBeChecked || path.find(L'\\') == std::wstring::npos || IsFile(path)) return true;
    findings.push_back({"package-file", owner + " is served by \"" + Utf8(path) + "\", which is not there", effect,
                        kInstallComponent});
    return false;
}

}  // namespace

bool CheckServer(const Edition& edition, REFCLSID classId, const std::string& owner, const std::string& effect,
                 Findings& findings)
{
    const std::wstring path = L"CLSID\\" + GuidText(classId);
    const std::string isOfClass = owner + " is of the class " + Utf8(GuidText(classId));
    const auto component = DescribeComponent(classId, InstalledClasses(edition.width));
    if (!component) {
        if (OtherCanServe(edition, classId)) {
            findings.push_back(
                {"package-width",
                 isOfClass + ", which is registered for " + Bits(OtherThan(edition).width) + " programs only", effect,
                 Remedy(edition, classId)});
        } else {
            findings.push_back({"package-class", isOfClass + ", which is not registered for " + Utf8(edition.name),
                                effect, kInstallComponent});
        }
        return false;
    }
    if (const auto library = ReadText(edition.width, path + L"\\InprocServer32")) {
        if (!IsDotNetLoader(ProgramOf(*library))) {
            return CheckLibraryFile(edition, classId, ProgramOf(*library), owner, effect, findings);
        }
        if (component->obstacle.empty()) return true;
        findings.push_back(
            {"package-width", isOfClass + ", and " + Utf8(component->obstacle), effect, Remedy(edition, classId)});
        return false;
    }
    for (const int width : {32, 64}) {
        const auto program = ReadText(width, path + L"\\LocalServer32");
        if (program) return CheckProgramFile(*program, owner, effect, findings);
    }
    findings.push_back({"package-class", isOfClass + ", which names no server", effect, kInstallComponent});
    return false;
}

}  // namespace zelt::ctl
