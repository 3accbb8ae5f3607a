// Why a process of one width cannot use a registered class: for example, because its library is for the other width. Reads the
// registry and the headers of the class's library; creates nothing.
#pragma once

#include <string>

#include "system/registry.h"

namespace zelt {

// `own` and `other` say where the class is registered in the view of `width` and in that of the other width; null where it is
// not. `path` is the path of its key below them. Returns an empty text when nothing is known against the class. A class that
// runs in its own program or in a surrogate serves both widths.
std::wstring ObstacleOf(int width, const RegistryRoot* own, const RegistryRoot* other, const std::wstring& path);

// Whether `library` is the loader of .NET, which is registered as the library of each .NET class.
bool IsDotNetLoader(const std::wstring& library);

}  // namespace zelt
