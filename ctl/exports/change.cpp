// list, remove, log on and log off: the stored list and single entries of it.
#include <vector>

#include "ctl/exports/export_commands.h"
#include "ctl/exports/package_text.h"
#include "ctl/exports/session.h"
#include "ctl/exports/stored_packages.h"

namespace zelt::ctl {
namespace {

int SwitchLog(const Arguments& arguments, Streams& streams, bool on)
{
    const Session session;
    StoredPackages stored;
    const std::size_t index = stored.Find(arguments.Operand(0));
    stored.List().At(index).loggingEnabled = on;
    stored.Save();
    WritePackage(stored.List().At(index), arguments.Has("--json"), streams.data);
    return kFine;
}

}  // namespace

int ListExports(const Arguments& arguments, Streams& streams)
{
    const Session session;
    Require(LoadPackages());
    std::vector<ExportedPackage> packages;
    for (std::size_t index = 0; index < ExportedPackages().Count(); ++index) {
        packages.push_back(ExportedPackages().At(index));
    }
    WritePackages(packages, arguments.Has("--json"), streams.data);
    return kFine;
}

int RemoveExport(const Arguments& arguments, Streams& streams)
{
    const Session session;
    StoredPackages stored;
    const std::size_t index = stored.Find(arguments.Operand(0));
    const ExportedPackage removed = stored.List().At(index);
    stored.List().Remove(index);
    stored.Save();
    WritePackage(removed, arguments.Has("--json"), streams.data);
    return kFine;
}

int SwitchLogOn(const Arguments& arguments, Streams& streams) { return SwitchLog(arguments, streams, true); }
int SwitchLogOff(const Arguments& arguments, Streams& streams) { return SwitchLog(arguments, streams, false); }

}  // namespace zelt::ctl
