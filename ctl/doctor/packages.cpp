// Checks the packages that an edition exports. A manager is asked only once for its packages of one kind, however many of them
// are exported.
#include <algorithm>
#include <map>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "ctl/doctor/checks.h"
#include "ctl/doctor/component_server.h"
#include "ctl/exports/manager_host.h"
#include "ctl/exports/session.h"
#include "ctl/exports/stored_packages.h"
#include "packages/package_kinds.h"
#include "packages/exported_package_list.h"
#include "packages/recorded_export.h"
#include "registration/library_facts.h"
#include "system/file_presence.h"
#include "system/guid_text.h"

namespace zelt::ctl {
namespace {

struct ManagerAnswer {
    std::optional<std::vector<std::wstring>> names;
    std::string failure;
};

class ManagerAnswers {
public:
    explicit ManagerAnswers(const Edition& edition) : edition(edition) {}
    const ManagerAnswer& Of(const ExportedPackage& package)
    {
        const auto key = std::pair(package.kind, GuidText(package.classId));
        const auto known = answers.find(key);
        if (known != answers.end()) return known->second;
        ManagerAnswer answer;
        answer.names = AskManager(edition, package.kind, package.classId,
                                  [&](const std::wstring& text) { answer.failure = Utf8(text); });
        return answers.emplace(key, std::move(answer)).first->second;
    }

private:
    const Edition& edition;
    std::map<std::pair<PackageKind, std::wstring>, ManagerAnswer> answers;
};

constexpr char kNotMade[] = "a simulator that asks for it gets an error";

void CheckInManager(const ExportedPackage& package, const std::string& owner, ManagerAnswers& managers,
                    Findings& findings)
{
    const ManagerAnswer& answer = managers.Of(package);
    if (!answer.failure.empty()) {
        findings.push_back({"package-manager", owner + " comes from a manager that fails (" + answer.failure + ")",
                            kNotMade, "ask the vendor of the manager, or zeltctl remove the package"});
        return;
    }
    const auto& names = *answer.names;
    const bool listed = std::any_of(names.begin(), names.end(),
                                    [&](const std::wstring& name) { return SameName(name, package.sourceName); });
    if (listed) return;
    findings.push_back({"package-name",
                        owner + " is \"" + Utf8(package.sourceName) + "\" in its manager, which does not list that",
                        kNotMade, "zeltctl remove the package, and zeltctl add it under its present name"});
}

void CheckDuplicates(const ExportedPackageList& list, Findings& findings)
{
    for (std::size_t later = 1; later < list.Count(); ++later) {
        for (std::size_t earlier = 0; earlier < later; ++earlier) {
            if (!SameName(list.At(earlier).exportedName, list.At(later).exportedName)) continue;
            findings.push_back({"package-duplicate",
                                "The name \"" + Utf8(list.At(later).exportedName) + "\" is exported more than once",
                                "simulators that ask for it get only the first one",
                                "zeltctl remove the first one, and zeltctl add it under a name of its own"});
            break;
        }
    }
}

void CheckPackage(const Edition& edition, const ExportedPackage& package, ManagerAnswers& managers, Findings& findings)
{
    const std::string owner =
        "The exported package \"" + Utf8(package.exportedName) + '"' + (edition.width == 64 ? " of ZELT64" : "");
    if (IsOwnClass(package.classId)) {
        findings.push_back({"package-own", owner + " comes from ZELT itself", "creating it would never end",
                            "zeltctl remove the package"});
        return;
    }
    if (IsEqualCLSID(package.classId, kRecordedPackageClass)) {
        if (IsFile(package.sourceName)) return;
        findings.push_back(
            {"package-recording",
             owner + " answers from the recording \"" + Utf8(package.sourceName) + "\", which is not there", kNotMade,
             "put the file back, or zeltctl remove the package"});
        return;
    }
    if (!CheckServer(edition, package.classId, owner, kNotMade, findings)) return;
    if (IsManager(package.kind)) CheckInManager(package, owner, managers, findings);
}

}  // namespace

void CheckPackages(const Edition& edition, Findings& findings)
{
    const ExportedPackageList list = ReadPackages(edition);
    for (const int number : list.LeftOut()) {
        findings.push_back({"package-entry",
                            "The entry Package" + std::to_string(number) + " of the list of " +
                                (edition.width == 64 ? "64-bit packages" : "packages") +
                                " is missing or cannot be read",
                            "its package is not exported",
                            "let zeltctl doctor --fix write the list without it, and zeltctl add the package again",
                            Fix::RewriteList});
    }
    CheckDuplicates(list, findings);
    ManagerAnswers managers(edition);
    for (std::size_t index = 0; index < list.Count(); ++index)
        CheckPackage(edition, list.At(index), managers, findings);
}

}  // namespace zelt::ctl
