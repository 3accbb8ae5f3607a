// The search for installed CAPE-OPEN components: one pass over the registered classes, for any number of categories. Reads the
// registry and creates nothing; a listed component may still fail to be created.
#pragma once

#include <optional>
#include <span>
#include <string>
#include <vector>

#include "system/edition.h"
#include "system/outcome.h"
#include "system/registry.h"

namespace zelt {

inline constexpr wchar_t kUnitOperationCategory[] = L"{678c09a5-7d66-11d2-a67d-00105a42887f}";

struct ComponentInfo {
    CLSID classId;
    std::wstring displayName;  // with the description if there is one
    std::wstring name;         // without it
    // Why a process of the searched width cannot use it; empty when nothing is known against it.
    std::wstring obstacle = {};
};

// The program's own classes, of either edition, are never listed.
struct ComponentSearch {
    const wchar_t* category;
    CLSID leftOut;  // another class that the list omits
};

// Where classes are registered for a process. On 64-bit Windows it reads the classes of its own width, and can also use those that
// only the other view has, as long as the class is a program of its own and not a DLL of the other width. The user's own classes
// are searched for what the machine's lack: HKEY_CLASSES_ROOT does not show them everywhere.
struct ClassSources {
    RegistryRoot own;
    RegistryRoot other;  // without a key when there is one view
    RegistryRoot ownOfUser = {nullptr, 0};
    RegistryRoot otherOfUser = {nullptr, 0};
    int width = kThisEdition.width;  // of the process
};

// What a process of that width finds.
ClassSources InstalledClasses(int width = kThisEdition.width);

// The registered facts of a class, whatever its categories; nothing when the process cannot use it.
std::optional<ComponentInfo> DescribeComponent(REFCLSID classId, const ClassSources& sources = InstalledClasses());

struct FoundComponents {
    // For each search, in the order of the registry; `other`'s follow `own`'s.
    std::vector<std::vector<ComponentInfo>> lists;
    // Fails when the registered classes cannot be read, or memory does not suffice; the lists are then incomplete.
    Outcome outcome;
    // For each search, what is registered for the other width only: each has an obstacle, as may have those of `own` in `lists`.
    std::vector<std::vector<ComponentInfo>> ofOtherWidth = {};
};

FoundComponents FindComponents(std::span<const ComponentSearch> searches,
                               const ClassSources& sources = InstalledClasses());

}  // namespace zelt
