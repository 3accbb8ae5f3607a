// discover: lists the installed packages, the managers with their packages (unless --no-packages was given), and the unit
// operations. Each component is shown with the widths that it can be used in, or the reason why it cannot be used.
#include <algorithm>
#include <string>
#include <vector>

#include "ctl/exports/export_commands.h"
#include "ctl/exports/hosted_components.h"
#include "ctl/exports/manager_host.h"
#include "ctl/exports/session.h"
#include "ctl/exports/width_choice.h"
#include "ctl/json_writer.h"
#include "packages/package_kinds.h"
#include "registration/library_facts.h"
#include "system/guid_text.h"

namespace zelt::ctl {
namespace {

// What a manager answers in a process of one width.
struct Packages {
    const Edition* host;
    std::vector<std::wstring> names;
    std::vector<std::string> failures;
};

Packages Ask(const Edition& host, PackageKind kind, const ComponentInfo& manager)
{
    Packages packages = {&host, {}, {}};
    const auto failed = [&](const std::wstring& text) { packages.failures.push_back(Utf8(text)); };
    packages.names = AskManager(host, kind, manager.classId, failed).value_or(std::vector<std::wstring>());
    return packages;
}

std::string WidthsText(const std::vector<const Edition*>& hosts)
{
    std::string text;
    for (const Edition* host : hosts) text += (text.empty() ? "" : ", ") + WidthText(*host);
    return text;
}

class TextReport {
public:
    explicit TextReport(Streams& streams) : streams(streams) {}

    void Heading(const wchar_t* text) { streams.data << Utf8(text) << '\n'; }
    void Component(const HostedComponent& component, const PackageKindRow*, const std::vector<Packages>& answers)
    {
        const ComponentInfo& info = component.info;
        streams.data << "  " << Utf8(info.displayName) << ' ' << Utf8(GuidText(info.classId));
        if (component.hosts.empty()) {
            streams.data << " - cannot be used: " << Utf8(info.obstacle) << '\n';
        } else {
            streams.data << "  " << WidthsText(component.hosts) << '\n';
        }
        for (std::size_t index = 0; index < answers.size(); ++index) {
            const Packages& packages = answers[index];
            // Both widths of a manager usually have the same packages.
            const bool isNews = index == 0 || packages.names != answers.front().names;
            const std::string width = answers.size() > 1 ? " (" + WidthText(*packages.host) + ')' : "";
            const bool isMarked = answers.size() > 1 && answers.back().names != answers.front().names;
            for (const std::wstring& name : packages.names) {
                if (isNews) streams.data << "    " << Utf8(name) << (isMarked ? width : "") << '\n';
            }
            for (const std::string& failure : packages.failures) {
                streams.messages << "zeltctl: " << Utf8(info.name) << width << ": " << failure << '\n';
            }
        }
    }
    void Finish() {}

private:
    Streams& streams;
};

// Writes an object for each component and width, and one for a component that cannot be used.
class JsonReport {
public:
    explicit JsonReport(Streams& streams) : out(streams.data), json(out) { json.BeginArray(); }

    void Heading(const wchar_t*) {}
    void Component(const HostedComponent& component, const PackageKindRow* row, const std::vector<Packages>& answers)
    {
        if (component.hosts.empty()) Write(component.info, row, nullptr, nullptr);
        for (const Edition* host : component.hosts) {
            const auto answer = std::find_if(answers.begin(), answers.end(),
                                             [&](const Packages& packages) { return packages.host == host; });
            Write(component.info, row, host, answer == answers.end() ? nullptr : &*answer);
        }
    }
    void Finish()
    {
        json.EndArray();
        out << '\n';
    }

private:
    void Write(const ComponentInfo& info, const PackageKindRow* row, const Edition* host, const Packages* packages)
    {
        json.NewLine().BeginObject();
        json.Member("type", row ? Utf8(PackageType(row->kind)) : "unit operation");
        if (row) json.Member("kind", static_cast<long long>(row->kind));
        if (host) json.Member("width", static_cast<long long>(host->width));
        json.Member("class", Utf8(GuidText(info.classId))).Member("name", Utf8(info.name));
        json.Member("displayName", Utf8(info.displayName));
        if (!host) json.Member("obstacle", Utf8(info.obstacle));
        if (packages) {
            json.Key("packages").BeginArray();
            for (const std::wstring& name : packages->names) json.String(Utf8(name));
            json.EndArray().Key("failures").BeginArray();
            for (const std::string& failure : packages->failures) json.String(failure);
            json.EndArray();
        }
        json.EndObject();
    }

    Output& out;
    JsonWriter json;
};

template <class Report>
int Discover(const std::vector<const Edition*>& editions, bool askManagers, Report report)
{
    int result = kFine;
    const auto rows = PackageKindRows();
    const auto components = FindHostedPackages(editions);
    for (std::size_t index = 0; index < rows.size(); ++index) {
        if (!components[index].empty()) report.Heading(rows[index].heading);
        for (const HostedComponent& component : components[index]) {
            std::vector<Packages> answers;
            for (const Edition* host : component.hosts) {
                if (askManagers && IsManager(rows[index].kind)) {
                    answers.push_back(Ask(*host, rows[index].kind, component.info));
                    if (!answers.back().failures.empty()) result = kFinding;
                }
            }
            report.Component(component, &rows[index], answers);
        }
    }
    const auto units = FindHostedUnits(editions);
    if (!units.empty()) report.Heading(L"Unit operations");
    for (const HostedComponent& unit : units) report.Component(unit, nullptr, {});
    report.Finish();
    return result;
}

}  // namespace

int DiscoverComponents(const Arguments& arguments, Streams& streams)
{
    const Session session;
    const bool askManagers = !arguments.Has("--no-packages");
    const auto editions = EditionsFor(arguments);
    return arguments.Has("--json") ? Discover(editions, askManagers, JsonReport(streams))
                                   : Discover(editions, askManagers, TextReport(streams));
}

}  // namespace zelt::ctl
