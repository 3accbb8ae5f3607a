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
    std::wstring name;         // as registered; displayName if there is none
    // Why a process of the searched width cannot use the component; empty when nothing is known against it.
    std::wstring obstacle = {};
};

// The program's own classes, of either edition, are never listed.
struct ComponentSearch {
    const wchar_t* category;
    CLSID leftOut;  // another class that the list omits
};

// Where the classes that a process can use are registered. On 64-bit Windows these are the classes in the view of its own width,
// and those that only the other view has, if they run in their own program and not in a DLL of the other width. The user's own
// classes are searched too, because HKEY_CLASSES_ROOT does not always show them.
struct ClassSources {
    RegistryRoot own;
    RegistryRoot other;  // without a key when there is one view
    RegistryRoot ownOfUser = {nullptr, 0};
    RegistryRoot otherOfUser = {nullptr, 0};
    int width = kThisEdition.width;  // of the process
};

// Where a process of that width finds its classes.
ClassSources InstalledClasses(int width = kThisEdition.width);

// What the registry says about a class of any category. Nothing if the class is not registered, or is registered for the other
// width only and cannot be used.
std::optional<ComponentInfo> DescribeComponent(REFCLSID classId, const ClassSources& sources = InstalledClasses());

struct FoundComponents {
    // For each search, the classes found, in the order of the registry; those of the other view come last.
    std::vector<std::vector<ComponentInfo>> lists;
    // Fails when the registered classes cannot be read, or memory runs out; the lists are then incomplete.
    Outcome outcome;
    // For each search, the classes that are registered for the other width only and cannot be used. Each has an obstacle; classes
    // in `lists` may have one, too.
    std::vector<std::vector<ComponentInfo>> ofOtherWidth = {};
};

FoundComponents FindComponents(std::span<const ComponentSearch> searches,
                               const ClassSources& sources = InstalledClasses());

}  // namespace zelt
