// The classes that the server offers, one row each: what the program registers with COM at start.
#pragma once

#include <span>

#include "com/class_factory.h"

namespace zelt {

std::span<const com::ClassEntry> ServedClasses();

}  // namespace zelt
