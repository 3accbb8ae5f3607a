// The classes that the server offers, one row each: what the program registers with COM at start, and what registration writes.
#pragma once

#include "registration/served_class.h"

namespace zelt {

ServedClassRows ServedClasses();

}  // namespace zelt
