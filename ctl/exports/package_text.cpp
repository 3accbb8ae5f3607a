#include "ctl/exports/package_text.h"

#include <algorithm>
#include <optional>

#include "system/component_scan.h"
#include "ctl/exports/session.h"
#include "ctl/exports/width_choice.h"
#include "packages/package_kinds.h"
#include "packages/recorded_export.h"
#include "registration/library_facts.h"
#include "system/guid_text.h"

namespace zelt::ctl {
namespace {

std::optional<ComponentInfo> ComponentOf(const ListedPackage& listed)
{
    return DescribeComponent(listed.package.classId, InstalledClasses(listed.edition->width));
}

void WriteObject(const ListedPackage& listed, JsonWriter& json)
{
    const ExportedPackage& package = listed.package;
    json.BeginObject().Member("name", Utf8(package.exportedName));
    json.Member("width", static_cast<long long>(listed.edition->width)).Member("type", Utf8(PackageType(package.kind)));
    json.Member("kind", static_cast<long long>(package.kind)).Member("class", Utf8(GuidText(package.classId)));
    if (const auto component = ComponentOf(listed)) json.Member("component", Utf8(component->name));
    if (IsManager(package.kind)) json.Member("source", Utf8(package.sourceName));
    if (IsEqualCLSID(package.classId, kRecordedPackageClass)) json.Member("recording", Utf8(package.sourceName));
    json.Key("log").Bool(package.loggingEnabled).EndObject();
}

void WriteLine(const ListedPackage& listed, std::size_t column, Output& out)
{
    const ExportedPackage& package = listed.package;
    const auto component = ComponentOf(listed);
    out << Utf8(package.exportedName);
    out.Fill(column - package.exportedName.size())
        << "  " << WidthText(*listed.edition) << "  " << Utf8(PackageType(package.kind));
    out << (package.loggingEnabled ? "  log on   " : "  log off  ");
    if (IsManager(package.kind)) out << '"' << Utf8(package.sourceName) << "\" of ";
    if (IsEqualCLSID(package.classId, kRecordedPackageClass)) {
        out << "the recording \"" << Utf8(package.sourceName) << "\"\n";
        return;
    }
    out << (component ? Utf8(component->name) : "a class that is not registered") << ' ';
    out << Utf8(GuidText(package.classId)) << '\n';
}

}  // namespace

void WritePackages(std::span<const ListedPackage> packages, bool asJson, Output& out)
{
    if (asJson) {
        JsonWriter json(out);
        json.BeginArray();
        for (const ListedPackage& package : packages) WriteObject(package, json.NewLine());
        json.EndArray();
        out << '\n';
        return;
    }
    std::size_t column = 0;
    for (const ListedPackage& listed : packages) column = std::max(column, listed.package.exportedName.size());
    for (const ListedPackage& listed : packages) WriteLine(listed, column, out);
}

void WritePackage(const ListedPackage& listed, bool asJson, Output& out)
{
    if (asJson) {
        JsonWriter json(out);
        WriteObject(listed, json);
        out << '\n';
    } else {
        WriteLine(listed, listed.package.exportedName.size(), out);
    }
}

}  // namespace zelt::ctl
