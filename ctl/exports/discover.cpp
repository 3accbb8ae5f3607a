// discover: what the dialog for exporting a package lists, with every manager opened, and the unit operations. What cannot be
// used has the reason.
#include <optional>
#include <string>
#include <vector>

#include "ctl/exports/export_commands.h"
#include "ctl/exports/session.h"
#include "ctl/json_writer.h"
#include "packages/package_kinds.h"
#include "packages/package_listing.h"
#include "registration/library_facts.h"
#include "unit/installed_unit_operations.h"
#include "system/guid_text.h"

namespace zelt::ctl {
namespace {

struct Packages {
    std::vector<std::wstring> names;
    std::vector<std::string> failures;
};

Packages AskManager(PackageKind kind, const ComponentInfo& manager)
{
    Packages packages;
    const auto names =
        ListPackages(kind, manager.classId, [&](const std::wstring& text) { packages.failures.push_back(Utf8(text)); });
    if (names) packages.names = *names;
    return packages;
}

class TextReport {
public:
    explicit TextReport(Streams& streams) : streams(streams) {}

    void Heading(const wchar_t* text) { streams.data << Utf8(text) << '\n'; }
    void Component(const ComponentInfo& component, const PackageKindRow*, const std::optional<Packages>& packages)
    {
        streams.data << "  " << Utf8(component.displayName) << ' ' << Utf8(GuidText(component.classId));
        if (!component.obstacle.empty()) streams.data << " - cannot be used: " << Utf8(component.obstacle);
        streams.data << '\n';
        if (!packages) return;
        for (const std::wstring& name : packages->names) streams.data << "    " << Utf8(name) << '\n';
        for (const std::string& failure : packages->failures) {
            streams.messages << "zeltctl: " << Utf8(component.name) << ": " << failure << '\n';
        }
    }
    void Finish() {}

private:
    Streams& streams;
};

class JsonReport {
public:
    explicit JsonReport(Streams& streams) : out(streams.data), json(out) { json.BeginArray(); }

    void Heading(const wchar_t*) {}
    void Component(const ComponentInfo& component, const PackageKindRow* row, const std::optional<Packages>& packages)
    {
        json.NewLine().BeginObject();
        json.Member("type", row ? Utf8(PackageType(row->kind)) : "unit operation");
        if (row) json.Member("kind", static_cast<long long>(row->kind));
        json.Member("class", Utf8(GuidText(component.classId))).Member("name", Utf8(component.name));
        json.Member("displayName", Utf8(component.displayName));
        if (!component.obstacle.empty()) json.Member("obstacle", Utf8(component.obstacle));
        if (packages) {
            json.Key("packages").BeginArray();
            for (const std::wstring& name : packages->names) json.String(Utf8(name));
            json.EndArray().Key("failures").BeginArray();
            for (const std::string& failure : packages->failures) json.String(failure);
            json.EndArray();
        }
        json.EndObject();
    }
    void Finish()
    {
        json.EndArray();
        out << '\n';
    }

private:
    Output& out;
    JsonWriter json;
};

std::vector<ComponentInfo> Joined(std::vector<ComponentInfo> first, const std::vector<ComponentInfo>& second)
{
    first.insert(first.end(), second.begin(), second.end());
    return first;
}

template <class Report>
int Discover(bool askManagers, Report report)
{
    int result = kFine;
    const auto rows = PackageKindRows();
    const FoundComponents components = FindPackageComponents(rows);
    Require(components.outcome);
    for (std::size_t index = 0; index < rows.size(); ++index) {
        const std::vector<ComponentInfo> found = Joined(components.lists[index], components.ofOtherWidth[index]);
        if (!found.empty()) report.Heading(rows[index].heading);
        for (const ComponentInfo& component : found) {
            std::optional<Packages> packages;
            const bool isAsked = askManagers && IsManager(rows[index].kind) && component.obstacle.empty();
            if (isAsked) packages = AskManager(rows[index].kind, component);
            if (packages && !packages->failures.empty()) result = kFinding;
            report.Component(component, &rows[index], packages);
        }
    }
    const InstalledUnits& units = InstalledUnitOperations();
    Require(units.outcome);
    const std::vector<ComponentInfo> found = Joined(units.found, units.ofOtherWidth);
    if (!found.empty()) report.Heading(L"Unit operations");
    for (const ComponentInfo& unit : found) report.Component(unit, nullptr, {});
    report.Finish();
    return result;
}

}  // namespace

int DiscoverComponents(const Arguments& arguments, Streams& streams)
{
    const Session session;
    const bool askManagers = !arguments.Has("--no-packages");
    return arguments.Has("--json") ? Discover(askManagers, JsonReport(streams))
                                   : Discover(askManagers, TextReport(streams));
}

}  // namespace zelt::ctl
