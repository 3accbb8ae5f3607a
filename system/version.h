// The version that a program declares in its own resources.
#pragma once

#include <string>

namespace zelt {

// The file version of the program at `path`, such as "1.0.0.0"; "<unknown>" if it has none that can be read.
std::string FileVersionText(const std::wstring& path);

}  // namespace zelt
