// Whether a path names a file.
#pragma once

#include <string>

namespace zelt {

// False for a folder, and where nothing is or nothing can be reached.
bool IsFile(const std::wstring& path);

}  // namespace zelt
