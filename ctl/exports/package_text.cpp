#include "ctl/exports/package_text.h"

#include <algorithm>

#include "system/component_scan.h"
#include "ctl/exports/session.h"
#include "packages/package_kinds.h"
#include "registration/library_facts.h"
#include "system/guid_text.h"

namespace zelt::ctl {
namespace {

void WriteObject(const ExportedPackage& package, JsonWriter& json)
{
    json.BeginObject().Member("name", Utf8(package.exportedName)).Member("type", Utf8(PackageType(package.kind)));
    json.Member("kind", static_cast<long long>(package.kind)).Member("class", Utf8(GuidText(package.classId)));
    if (const auto component = DescribeComponent(package.classId)) json.Member("component", Utf8(component->name));
    if (IsManager(package.kind)) json.Member("source", Utf8(package.sourceName));
    json.Key("log").Bool(package.loggingEnabled).EndObject();
}

void WriteLine(const ExportedPackage& package, std::size_t width, Output& out)
{
    const auto component = DescribeComponent(package.classId);
    out << Utf8(package.exportedName);
    out.Fill(width - package.exportedName.size()) << "  " << Utf8(PackageType(package.kind));
    out << (package.loggingEnabled ? "  log on   " : "  log off  ");
    if (IsManager(package.kind)) out << '"' << Utf8(package.sourceName) << "\" of ";
    out << (component ? Utf8(component->name) : "a class that is not registered") << ' ';
    out << Utf8(GuidText(package.classId)) << '\n';
}

}  // namespace

void WritePackages(std::span<const ExportedPackage> packages, bool asJson, Output& out)
{
    if (asJson) {
        JsonWriter json(out);
        json.BeginArray();
        for (const ExportedPackage& package : packages) WriteObject(package, json.NewLine());
        json.EndArray();
        out << '\n';
        return;
    }
    std::size_t width = 0;
    for (const ExportedPackage& package : packages) width = std::max(width, package.exportedName.size());
    for (const ExportedPackage& package : packages) WriteLine(package, width, out);
}

void WritePackage(const ExportedPackage& package, bool asJson, Output& out)
{
    if (asJson) {
        JsonWriter json(out);
        WriteObject(package, json);
        out << '\n';
    } else {
        WriteLine(package, package.exportedName.size(), out);
    }
}

}  // namespace zelt::ctl
