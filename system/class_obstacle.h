// Why a process of one width cannot use a registered class: it may be there for the other width only. Reads the
// registry and the headers of the class's library; creates nothing.
#pragma once

#include <string>

#include "system/registry.h"

namespace zelt {

// `own` and `other` are where the class is registered in the views of that width and of the other, null where it is not; `path` is
// that of its key below them. Empty when nothing is known against it. A class that has a program of its own, or a surrogate,
// serves both widths.
std::wstring ObstacleOf(int width, const RegistryRoot* own, const RegistryRoot* other, const std::wstring& path);

// Whether it is the loader of .NET, which is registered as the library of each of its classes.
bool IsDotNetLoader(const std::wstring& library);

}  // namespace zelt
