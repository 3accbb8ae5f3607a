// list, remove, log on and log off: the commands that show the stored lists of packages, or change one entry.
#include <vector>

#include "ctl/exports/export_commands.h"
#include "ctl/exports/package_text.h"
#include "ctl/exports/session.h"
#include "ctl/exports/stored_packages.h"
#include "ctl/exports/width_choice.h"

namespace zelt::ctl {
namespace {

const Edition& ChosenEdition(const Arguments& arguments)
{
    const std::vector<const Edition*> editions = EditionsFor(arguments);
    return EditionThatExports(arguments.Operand(0), editions);
}

int SwitchLog(const Arguments& arguments, Streams& streams, bool on)
{
    const Session session;
    const Edition& edition = ChosenEdition(arguments);
    StoredPackages stored(edition);
    const std::size_t index = stored.Find(arguments.Operand(0));
    stored.List().At(index).loggingEnabled = on;
    stored.Save();
    WritePackage({&edition, stored.List().At(index)}, arguments.Has("--json"), streams.data);
    return kFine;
}

}  // namespace

int ListExports(const Arguments& arguments, Streams& streams)
{
    const Session session;
    std::vector<ListedPackage> packages;
    for (const Edition* edition : EditionsFor(arguments)) {
        const ExportedPackageList list = ReadPackages(*edition);
        for (std::size_t index = 0; index < list.Count(); ++index) packages.push_back({edition, list.At(index)});
    }
    WritePackages(packages, arguments.Has("--json"), streams.data);
    return kFine;
}

int RemoveExport(const Arguments& arguments, Streams& streams)
{
    const Session session;
    const Edition& edition = ChosenEdition(arguments);
    StoredPackages stored(edition);
    const std::size_t index = stored.Find(arguments.Operand(0));
    const ListedPackage removed = {&edition, stored.List().At(index)};
    stored.List().Remove(index);
    stored.Save();
    WritePackage(removed, arguments.Has("--json"), streams.data);
    return kFine;
}

int SwitchLogOn(const Arguments& arguments, Streams& streams) { return SwitchLog(arguments, streams, true); }
int SwitchLogOff(const Arguments& arguments, Streams& streams) { return SwitchLog(arguments, streams, false); }

}  // namespace zelt::ctl
