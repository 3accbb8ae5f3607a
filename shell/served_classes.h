// The classes that the server offers, one row each: what COM is told at start, and what registration writes.
#pragma once

#include <span>

#include "com/class_factory.h"

namespace zelt {

struct ServedClass {
    com::ClassEntry entry;
    int script;             // The registry script in the resources.
    const wchar_t* progId;  // Independent of the version; with ".1" appended it is the versioned one.
};

std::span<const ServedClass> ServedClasses();

}  // namespace zelt
