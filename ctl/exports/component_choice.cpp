#include "ctl/exports/component_choice.h"

#include <objbase.h>

#include <algorithm>
#include <vector>

#include "ctl/command.h"
#include "ctl/exports/hosted_components.h"
#include "ctl/exports/session.h"
#include "ctl/exports/width_choice.h"
#include "packages/package_kinds.h"

namespace zelt::ctl {
namespace {

bool SameType(PackageKind kind, const std::wstring& type)
{
    std::wstring text = PackageType(kind), wanted = type;
    std::erase(text, L' ');
    std::erase(wanted, L' ');
    return SameName(text, wanted);
}

void CheckType(const std::string& type)
{
    for (const PackageKindRow& row : PackageKindRows()) {
        if (SameType(row.kind, Wide(type))) return;
    }
    throw UsageError("--type is PP1.1, PP1.0 or RP1.0, not \"" + type + "\"");
}

}  // namespace

bool Means(const std::wstring& word, const ComponentInfo& component)
{
    CLSID classId;
    if (!word.empty() && SUCCEEDED(CLSIDFromString(word.c_str(), &classId)) && classId == component.classId)
        return true;
    return SameName(word, component.name) || SameName(word, component.displayName);
}

ChosenComponent ChooseComponent(const std::string& word, bool manager, const std::optional<std::string>& type,
                                const std::vector<const Edition*>& editions)
{
    if (type) CheckType(*type);
    const auto rows = PackageKindRows();
    const auto components = FindHostedPackages(editions);
    struct Meant {
        PackageKind kind;
        const HostedComponent* component;
    };
    std::vector<Meant> meant;
    bool otherSort = false;
    std::wstring obstacle;
    for (std::size_t index = 0; index < rows.size(); ++index) {
        const PackageKind kind = rows[index].kind;
        if (type && !SameType(kind, Wide(*type))) continue;
        for (const HostedComponent& component : components[index]) {
            if (!Means(Wide(word), component.info)) continue;
            if (component.hosts.empty()) {
                obstacle = component.info.obstacle;
            } else if (IsManager(kind) == manager) {
                meant.push_back({kind, &component});
            } else {
                otherSort = true;
            }
        }
    }
    if (meant.size() > 1) {
        throw Refusal("\"" + word + "\" means more than one component; say its class identifier, --type or --width");
    }
    if (!meant.empty()) {
        const auto& [kind, component] = meant.front();
        if (component->hosts.size() > 1)
            throw Refusal("ZELT and ZELT64 can both export \"" + word + "\"; " + kSayWidth);
        return {kind, component->info, component->hosts.front()};
    }
    if (otherSort && manager) throw Refusal("\"" + word + "\" is a package itself, and no manager of packages");
    if (otherSort) throw Refusal("\"" + word + "\" is a manager; say which of its packages");
    if (!obstacle.empty()) throw Refusal("\"" + word + "\" cannot be exported: " + Utf8(obstacle));
    throw Refusal("no component \"" + word + "\" is installed that can be exported; zeltctl discover lists them");
}

}  // namespace zelt::ctl
