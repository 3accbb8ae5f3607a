// Whether a path names a file.
#pragma once

#include <string>

namespace zelt {

// False for a folder, and if nothing is there or the path cannot be reached.
bool IsFile(const std::wstring& path);

}  // namespace zelt
