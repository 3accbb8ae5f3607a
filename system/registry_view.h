// The registry views of this Windows: 64-bit Windows shows CLSID and Interface below Software\Classes in two views.
#pragma once

#include <span>

#include "system/registry.h"

namespace zelt {

// Two on 64-bit Windows, in processes of either width; otherwise one.
std::span<const REGSAM> RegistryViews();

// The view of a process of that width, 32 or 64.
REGSAM ViewOf(int width);

// The view of this process.
REGSAM OwnView();

}  // namespace zelt
