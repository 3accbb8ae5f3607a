// The lines of a snapshot of the registry, for messages.
#pragma once

#include <string>

#include "tests/system/registration/registry_snapshot.h"

inline std::string Lines(const RegistrySnapshot& snapshot)
{
    std::string text;
    for (const std::string& line : snapshot) text += line + '\n';
    return text;
}
