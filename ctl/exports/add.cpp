// add: exports a package, as the main window's dialog does, or a recording.
#include <algorithm>
#include <filesystem>
#include <memory>

#include "ctl/exports/component_choice.h"
#include "ctl/exports/export_commands.h"
#include "ctl/exports/manager_host.h"
#include "ctl/exports/package_text.h"
#include "ctl/exports/session.h"
#include "ctl/exports/stored_packages.h"
#include "ctl/exports/width_choice.h"
#include "packages/export_name.h"
#include "packages/recorded_export.h"

namespace zelt::ctl {
namespace {

// The package's name in the manager's own spelling.
std::wstring NameInManager(const ChosenComponent& manager, const std::string& package, Output& messages)
{
    const auto names = AskManager(*manager.host, manager.kind, manager.component.classId,
                                  [&](const std::wstring& text) { messages << "zeltctl: " << Utf8(text) << '\n'; });
    const std::string managerName = Utf8(manager.component.name);
    if (!names) throw Refusal("\"" + managerName + "\" does not list its packages");
    const std::wstring wanted = Wide(package);
    for (const std::wstring& name : *names) {
        if (name == wanted) return name;
    }
    for (const std::wstring& name : *names) {
        if (SameName(name, wanted)) return name;
    }
    throw Refusal("\"" + managerName + "\" has no package \"" + package + "\"; zeltctl discover lists them");
}

// A package, and the edition that serves it.
struct Chosen {
    ExportedPackage package;
    const Edition* host;
};

Chosen ChooseRecording(const std::string& path, const Arguments& arguments)
{
    if (arguments.Operands() > 0) throw UsageError("--recording takes the place of COMPONENT");
    const auto editions = EditionsFor(arguments);
    if (std::find(editions.begin(), editions.end(), &kThisEdition) == editions.end()) {
        throw UsageError("recordings are added by the zeltctl of the width that they were made with");
    }
    try {
        return {ExportOfRecording(std::filesystem::absolute(Wide(path)).wstring()), &kThisEdition};
    } catch (const std::runtime_error& reason) {
        throw InputError(reason.what());
    }
}

Chosen ChoosePackage(const Arguments& arguments, Output& messages)
{
    if (const auto recording = arguments.Value("--recording")) return ChooseRecording(*recording, arguments);
    if (arguments.Operands() == 0) throw UsageError("\"add\" takes COMPONENT [PACKAGE], or --recording FILE");
    const bool managed = arguments.Operands() == 2;
    const ChosenComponent chosen =
        ChooseComponent(arguments.Operand(0), managed, arguments.Value("--type"), EditionsFor(arguments));
    ExportedPackage package;
    package.classId = chosen.component.classId;
    package.kind = chosen.kind;
    package.sourceName = managed ? NameInManager(chosen, arguments.Operand(1), messages) : chosen.component.name;
    package.exportedName = package.sourceName;
    return {package, chosen.host};
}

}  // namespace

int AddExport(const Arguments& arguments, Streams& streams)
{
    const Session session;
    const auto name = arguments.Value("--name");
    if (name && !CanBeExportName(Wide(*name))) throw UsageError("--name is blank, or longer than 255 characters");
    const Chosen chosen = ChoosePackage(arguments, streams.messages);
    auto package = std::make_unique<ExportedPackage>(chosen.package);
    package->loggingEnabled = arguments.Has("--log");

    StoredPackages stored(*chosen.host);
    package->exportedName = name ? Wide(*name) : UniqueExportName(stored.List(), package->exportedName);
    if (!CanBeExportName(package->exportedName))
        throw Refusal("the package's name is blank, or longer than 255 characters; --name gives it another");
    if (IsExported(stored.List(), package->exportedName)) {
        throw Refusal("a package is exported as \"" + Utf8(package->exportedName) +
                      "\" already; --name gives it another name");
    }
    stored.List().Append(std::move(package));
    stored.Save();
    WritePackage({chosen.host, stored.List().At(stored.List().Count() - 1)}, arguments.Has("--json"), streams.data);
    return kFine;
}

}  // namespace zelt::ctl
