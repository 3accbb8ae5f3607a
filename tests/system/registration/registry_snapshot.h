// The parts of the registry that registration may change, as lines of text: every key and value, in each view, below
// Software\Classes of the machine and below Software of the user. Two snapshots are compared as sets of lines.
#pragma once

#include <set>
#include <string>

using RegistrySnapshot = std::set<std::string>;

RegistrySnapshot TakeRegistrySnapshot();

// The lines of `a` that are not in `b`.
RegistrySnapshot Minus(const RegistrySnapshot& a, const RegistrySnapshot& b);

// The lines that contain none of `parts`.
RegistrySnapshot Without(const RegistrySnapshot& lines, const std::set<std::string>& parts);

// The lines that contain `part`.
RegistrySnapshot Only(const RegistrySnapshot& lines, const std::string& part);
