#include "packages/recorded_export.h"

#include <stdexcept>

#include "packages/package_kinds.h"
#include "replay/recorded_package.h"
#include "system/narrow.h"

namespace zelt {

ExportedPackage ExportOfRecording(const std::wstring& path)
{
    const replay::RecordedPackage recorded(path);
    const PackageKindRow* const kind = FindPackageKind(static_cast<PackageKind>(recorded.Component().kind));
    if (!kind)
        throw std::runtime_error("The recording \"" + Narrow(path, CP_UTF8) + "\" is not a recording of a package");
    ExportedPackage package;
    package.classId = kRecordedPackageClass;
    // The stand-alone kind of the same family.
    package.kind = static_cast<PackageKind>(static_cast<unsigned>(kind->kind) | 1);
    package.sourceName = path;
    package.exportedName = Widen(recorded.Component().exportedName, CP_UTF8);
    return package;
}

}  // namespace zelt
