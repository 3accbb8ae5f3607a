#include "system/edition.h"

#include "system/registry_view.h"

namespace zelt {

bool IsOwnClass(REFCLSID classId)
{
    for (const Edition& edition : Editions()) {
        for (const EditionClass& own : edition.classes) {
            if (own.classId == classId) return true;
        }
    }
    return false;
}

bool CanRun(const Edition& edition) { return edition.width == 32 || RegistryViews().size() == 2; }

}  // namespace zelt
