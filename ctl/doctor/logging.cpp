// Checks the folder on the desktop for logs, and the unit operation that PRAVIK creates.
#include <windows.h>

#include "log/log_location.h"
#include "log/log_options.h"
#include "ctl/doctor/checks.h"
#include "ctl/doctor/component_server.h"
#include "ctl/exports/session.h"
#include "system/owners.h"
#include "registration/library_facts.h"

namespace zelt::ctl {
namespace {

// Creates a file and closes it, which deletes it.
bool CanWriteTo(const std::wstring& folder)
{
    const std::wstring path = folder + L"\\zeltctl-" + std::to_wstring(GetCurrentProcessId()) + L".tmp";
    const HANDLE file = CreateFileW(path.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_NEW,
                                    FILE_ATTRIBUTE_TEMPORARY | FILE_FLAG_DELETE_ON_CLOSE, nullptr);
    if (file == INVALID_HANDLE_VALUE) return false;
    const UniqueHandle owner(file);
    return true;
}

// A folder that does not exist yet is created with the first log, so its parent must be writable.
bool CanHoldLogs(const std::wstring& folder)
{
    const bool exists = GetFileAttributesW(folder.c_str()) != INVALID_FILE_ATTRIBUTES;
    return CanWriteTo(exists ? folder : folder.substr(0, folder.find_last_of(L'\\')));
}

}  // namespace

void CheckLogging(Findings& findings)
{
    LogOptions options;
    options.root = TheLogOptions().root;
    Require(options.Load());
    std::wstring folder;
    if (options.autoLogLocation && (!AutomaticLogFolder(folder) || !CanHoldLogs(folder))) {
        const std::string place = folder.empty()
                                      ? "The desktop's folder cannot be found"
                                      : "The folder \"" + Utf8(folder) + "\" of the logs cannot be written to";
        findings.push_back({"log-folder", place, "packages run without their logs",
                            "give yourself the right to write there, or switch zeltctl options --auto-location off"});
    }
    if (options.pravikUnit == CLSID_NULL) return;
    // It is enough if the PRAVIK of one edition can create the unit operation.
    Findings unit;
    for (const Edition& edition : Editions()) {
        Findings ofEdition;
        if (!CanRun(edition)) continue;
        if (CheckServer(edition, options.pravikUnit, "The unit operation that PRAVIK is set to",
                        "PRAVIK cannot make it", ofEdition))
            return;
        if (unit.empty()) unit = std::move(ofEdition);
    }
    for (Finding& finding : unit) {
        finding.rule.replace(0, finding.rule.find('-'), "unit");
        finding.remedy = "install it again, or choose another with zeltctl options --unit";
        findings.push_back(std::move(finding));
    }
}

}  // namespace zelt::ctl
