// Names of interfaces for log entries about QueryInterface.
#pragma once

#include <windows.h>

#include <string>

namespace zelt {

// The name registered for the interface, or its identifier in braces.
std::string InterfaceName(REFIID iid);

}  // namespace zelt
