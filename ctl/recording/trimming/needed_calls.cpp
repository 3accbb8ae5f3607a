#include "ctl/recording/trimming/needed_calls.h"

#include <algorithm>
#include <map>
#include <set>

namespace zelt::ctl {
namespace {

using recording::ObjectRecord;

// The component's objects that are called. Each is wanted until the call that gave it is found.
class WantedObjects {
public:
    explicit WantedObjects(const std::vector<ObjectRecord>& objects) : objects(objects) {}

    void Add(std::uint32_t number)
    {
        if (number > objects.size()) return;
        for (const std::uint64_t pointer : {objects[number - 1].pointer, objects[number - 1].proxy}) {
            if (pointer != 0) wanted[pointer].insert(number);
        }
    }
    // Returns whether wanted objects are among `given`, and removes these.
    bool Find(const std::vector<std::uint64_t>& given)
    {
        bool isFound = false;
        for (const std::uint64_t pointer : given) {
            const auto found = wanted.find(pointer);
            if (found == wanted.end()) continue;
            isFound = true;
            const std::set<std::uint32_t> numbers = found->second;
            for (const std::uint32_t number : numbers) Remove(number);
        }
        return isFound;
    }

private:
    void Remove(std::uint32_t number)
    {
        for (const std::uint64_t pointer : {objects[number - 1].pointer, objects[number - 1].proxy}) {
            const auto found = wanted.find(pointer);
            if (found == wanted.end()) continue;
            found->second.erase(number);
            if (found->second.empty()) wanted.erase(found);
        }
    }

    const std::vector<ObjectRecord>& objects;
    std::map<std::uint64_t, std::set<std::uint32_t>> wanted;
};

void MarkObjects(const CallOutline& outline, NeededCalls& needed)
{
    std::set<std::uint64_t> mentioned;
    needed.objects.assign(outline.Objects().size() + 1, false);
    for (std::size_t i = 0; i < needed.calls.size(); ++i) {
        if (!needed.calls[i]) continue;
        const OutlinedCall& call = outline.Calls()[i];
        for (const std::uint32_t number : call.objects) {
            if (number < needed.objects.size()) needed.objects[number] = true;
        }
        mentioned.insert(call.mentioned.begin(), call.mentioned.end());
    }
    for (std::size_t i = 0; i < outline.Objects().size(); ++i) {
        const ObjectRecord& object = outline.Objects()[i];
        if (mentioned.count(object.pointer) || mentioned.count(object.proxy)) needed.objects[i + 1] = true;
    }
}

}  // namespace

NeededCalls CallsNeededFor(const CallOutline& outline, std::uint64_t first, std::uint64_t last)
{
    const std::vector<OutlinedCall>& calls = outline.Calls();
    NeededCalls needed;
    needed.calls.assign(calls.size(), false);
    WantedObjects wanted(outline.Objects());
    std::map<std::uint32_t, Effect> settled;  // groups whose earlier calls are replaced by a later one
    bool hasLast = false, isMade = false;
    for (std::size_t i = calls.size(); i-- > 0;) {
        const OutlinedCall& call = calls[i];
        if (call.first > last) continue;
        const bool isTarget = call.last >= first;
        const bool isSettled = call.group != 0 && settled.count(call.group) != 0;
        const bool gives = wanted.Find(call.given);
        const bool makesState =
            call.makesComponent || call.asksAnew || gives || (call.effect != Effect::None && !isSettled);
        // Nothing that came before the component's creation is needed.
        if (!isTarget && (isMade || !makesState)) continue;
        needed.calls[i] = true;
        needed.count += call.last - call.first + 1;
        if (!hasLast) needed.last = i;
        hasLast = true;
        for (const std::uint32_t number : call.called) wanted.Add(number);
        // This call uses what earlier calls set, so those calls are needed even if later ones replace what they set. A call
        // that failed has set nothing.
        std::erase_if(settled,
                      [&](const auto& group) { return call.effect == Effect::None || call.effect > group.second; });
        if (call.group != 0 && !call.hasFailed) settled.emplace(call.group, call.effect);
        isMade = isMade || call.makesComponent;
    }
    MarkObjects(outline, needed);
    return needed;
}

}  // namespace zelt::ctl
