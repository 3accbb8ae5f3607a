#include "unit/installed_unit_operations.h"

#include <utility>

#include "unit/unit_operation.h"

namespace zelt {

const InstalledUnits& InstalledUnitOperations()
{
    // Nothing here may let messages in: re-entering the initialiser would be undefined behaviour.
    static const InstalledUnits installed = [] {
        const ComponentSearch search[] = {{kUnitOperationCategory, kUnitOperationClass}};
        FoundComponents components = FindComponents(search);
        return InstalledUnits{std::move(components.lists.front()), std::move(components.outcome),
                              std::move(components.ofOtherWidth.front())};
    }();
    return installed;
}

}  // namespace zelt
