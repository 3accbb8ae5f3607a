#include "ctl/exports/hosted_components.h"

#include <algorithm>

#include "ctl/exports/session.h"

namespace zelt::ctl {
namespace {

void Add(const ComponentInfo& info, const Edition& edition, std::vector<HostedComponent>& components)
{
    auto known = std::find_if(components.begin(), components.end(),
                              [&](const HostedComponent& one) { return one.info.classId == info.classId; });
    if (known == components.end()) known = components.insert(known, {info, {}});
    if (!info.obstacle.empty()) return;
    known->info.obstacle.clear();
    known->hosts.push_back(&edition);
}

std::vector<std::vector<HostedComponent>> Find(std::span<const ComponentSearch> searches,
                                               const std::vector<const Edition*>& editions)
{
    std::vector<std::vector<HostedComponent>> components(searches.size());
    for (const Edition* edition : editions) {
        const FoundComponents found = FindComponents(searches, InstalledClasses(edition->width));
        Require(found.outcome);
        for (std::size_t index = 0; index < searches.size(); ++index) {
            for (const auto* list : {&found.lists[index], &found.ofOtherWidth[index]}) {
                for (const ComponentInfo& info : *list) Add(info, *edition, components[index]);
            }
        }
    }
    return components;
}

}  // namespace

std::vector<std::vector<HostedComponent>> FindHostedPackages(const std::vector<const Edition*>& editions)
{
    std::vector<ComponentSearch> searches;
    for (const PackageKindRow& row : PackageKindRows()) searches.push_back({row.category, CLSID_NULL});
    return Find(searches, editions);
}

std::vector<HostedComponent> FindHostedUnits(const std::vector<const Edition*>& editions)
{
    const ComponentSearch search[] = {{kUnitOperationCategory, CLSID_NULL}};
    return std::move(Find(search, editions).front());
}

}  // namespace zelt::ctl
