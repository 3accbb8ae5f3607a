// A class that a program offers to other processes, as registration sees it.
#pragma once

#include <windows.h>

#include <span>

#include "com/class_factory.h"

namespace zelt {

struct ServedClass {
    com::ClassEntry entry;
    int script;             // The registry script in the resources.
    const wchar_t* progId;  // Independent of the version; the versioned one has ".1" appended.
};

using ServedClassRows = std::span<const ServedClass>;

}  // namespace zelt
