// The registry as registration may change it, as lines of text: every key and value below Software\Classes of the
// machine, in each view, and below Software of the user. Two snapshots are compared as sets of lines.
#pragma once

#include <set>
#include <string>

using RegistrySnapshot = std::set<std::string>;

RegistrySnapshot TakeRegistrySnapshot();

// The lines of `a` that `b` lacks.
RegistrySnapshot Minus(const RegistrySnapshot& a, const RegistrySnapshot& b);

// Without the lines that hold one of `parts`.
RegistrySnapshot Without(const RegistrySnapshot& lines, const std::set<std::string>& parts);

// Those lines that hold `part`.
RegistrySnapshot Only(const RegistrySnapshot& lines, const std::string& part);
